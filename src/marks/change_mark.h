// The mark of a changed node: its attribute "OldValue", whose text is the value before the change.
#pragma once

#include "uxtree/host/node.h"

namespace ux {

bool is_marked_changed(const UXXmlWrapperBase& node);
void mark_changed(UXXmlWrapperBase& node, const CStringUTF8& oldValue);
// Removes the mark, and "OldName" with it.
void clear_change_mark(UXXmlWrapperBase& node);

}  // namespace ux
