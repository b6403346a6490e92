// Nodes named by the tags that lead to them.
#pragma once

#include <string>

#include "uxtree/host/host.h"

#include "support/command.h"

namespace uxtool {

// --at PATH: the node to work on, as tags below the root separated by "/".
CLI::Option* add_at(CLI::App& app, std::string& path);

// The tree of a file, or the node at path in it. Throws Failure with kNothingFound when the tree
// has no such node, and as open_tree does.
UXXmlWrapperBase open_node(const std::string& file, const std::string& path);

// The node at path below the root of a tree that was loaded from a file.
UXXmlWrapperBase node_at(const UXXmlWrapperBase& root, const std::string& path,
                         const std::string& file);

// "Fit/Range1/X": the tags from below top down to node, "." for top itself.
std::string path_below(const UXXmlWrapperBase& top, const UXXmlWrapperBase& node);

}  // namespace uxtool
