// How ranges are named, for every tree that holds some.
#pragma once

#include "uxtree/host/node.h"

namespace ux {

// Appends a range with its number in tag and label; `id` is the new node's ID. False, with out
// untouched, when the tree takes no child.
bool append_numbered_range(UXXmlWrapperBase& tree, UXXmlWrapperBase& out, int number, int id);

}  // namespace ux
