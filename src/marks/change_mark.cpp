#include "marks/change_mark.h"

#include "marks/names.h"

namespace ux {

bool is_marked_changed(const UXXmlWrapperBase& node) {
    return node.HasProperty(kOldValue, 0) != 0;
}

void mark_changed(UXXmlWrapperBase& node, const CStringUTF8& oldValue) {
    node.SetPropertyValue(kOldValue, oldValue);
}

void clear_change_mark(UXXmlWrapperBase& node) {
    node.RemoveProperty(kOldValue);
    node.RemoveProperty(kOldName);
}

}  // namespace ux
