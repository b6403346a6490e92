// What an edit changes in a tree, as a person reads it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "uxtree/host/host.h"

#include "support/output.h"

namespace uxtool {

// One line per node, in document order.
struct TreeLine {
    std::string text;  // tag, ID, attributes and value
    std::string tag;
    std::size_t level;   // 0 for the root
    std::size_t parent;  // index of the parent's line; the root's is its own
};
std::vector<TreeLine> lines_of(const UXXmlWrapperBase& root);

// Writes the lines that differ, "-" in front of those that go and "+" in front of those that come,
// with a few lines around them and the path to them. Yields whether there are any.
bool write_tree_diff(Output& out, const std::vector<TreeLine>& before,
                     const std::vector<TreeLine>& after);

}  // namespace uxtool
