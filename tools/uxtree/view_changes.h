// What is different in the two documents of a page of uxtree view.
#pragma once

#include "support/output.h"
#include "view_data.h"

namespace uxtool {

// Writes both documents as one list of nodes: {"runs":[[before,after,count],...],"changed":[...]}. A
// run stands for so many nodes that follow each other in both documents, from these numbers on; -1 is
// that of a document without them. The nodes of the list that are in both and differ are numbered by
// their places in it.
void write_view_changes(Output& out, const ViewData& before, const ViewData& after);

}  // namespace uxtool
