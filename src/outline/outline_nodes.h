// Outlines as nodes.
#pragma once

#include "uxtree/host/node.h"

#include "outline/outline_builder.h"

namespace ux {

// Appends the outline to the target: elements "Node" and "Attr" with the names as labels. Nothing is
// appended when there is no memory for all of it; it throws std::bad_alloc then.
void write_outline(UXXmlWrapperBase& target, const LayoutNode& root);
// The same with the children of an entry.
void write_outlines(UXXmlWrapperBase& target, const LayoutNode& parent);

}  // namespace ux
