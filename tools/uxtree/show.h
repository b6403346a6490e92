// What `show` prints, for other commands that show trees.
#pragma once

#include "uxtree/host/host.h"

#include "support/output.h"

namespace uxtool {

// The node with everything below it, as `show` prints a tree.
void show_tree(Output& out, const UXXmlWrapperBase& top);

}  // namespace uxtool
