// The mark of a changed node: its attribute "OldValue", whose text is the value before the change.
#pragma once

#include "uxtree/host/node.h"

#include "marks/names.h"

namespace ux {

// Made once for a walk.
class ChangeMark {
public:
    bool is_set(const UXXmlWrapperBase& node) const { return node.HasProperty(oldValue_) != 0; }
    void set(UXXmlWrapperBase& node, std::string_view oldValue) const {
        node.SetPropertyView(oldValue_, oldValue);
    }
    // Removes "OldName" with it.
    void clear(UXXmlWrapperBase& node) const {
        node.RemoveProperty(oldValue_);
        node.RemoveProperty(oldName_);
    }

private:
    UXNameKey oldValue_{kOldValue};
    UXNameKey oldName_{kOldName};
};

}  // namespace ux
