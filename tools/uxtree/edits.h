// The kinds of edit of uxtree edit, by what they do.
#pragma once

#include "support/edit.h"

namespace uxtool {

void add_removing_edits(CLI::App& app, const Edit& edit);  // delete, keep, prune, hide, strip
void add_filter(CLI::App& app, const Edit& edit);          // filter
void add_placing_edits(CLI::App& app, const Edit& edit);   // insert, append, copy, add, move
void add_sort(CLI::App& app, const Edit& edit);            // sort
void add_writing_edits(CLI::App& app, const Edit& edit);   // set, rename

}  // namespace uxtool
