// Outlines of the three kinds of documents.
#pragma once

#include "uxtree/host/node.h"

#include "outline/outline_builder.h"

namespace ux {

// Reads the file in blocks. What it holds of characters that the scanner does not know ends it.
void outline_streamed_file(const char* fileName, OutlineBuilder& outline);

// Reads the file through a mapping and compares bytes without decoding them: nothing but a syntax
// error ends the scan, and every byte from 80 up may stand in a name.
//
// With a list of paths, each a sequence of tags separated by "|" from the top-level element on,
// only what lies on the way to one of them, at it or below it is kept. Without one (count 0)
// everything is.
void outline_mapped_file(const char* fileName, OutlineBuilder& outline,
                         const char* const* paths = nullptr, int count = 0);

// Folds a node and the branch below it.
void outline_tree(UXXmlWrapperBase& source, OutlineBuilder& outline);

}  // namespace ux
