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
    // Looks at a node: yields the text of a leaf, "" for a branch. scratch may hold it.
    std::string_view look(const UXXmlWrapperBase& node, CStringUTF8& scratch) {
        node.Look(names_, look_);
        if (look_.childCount > 0) return {};
        if (!look_.textAtHand) node.NodeValueView(look_.value, scratch);
        return look_.value;
    }
    // Removes what the last look at the node saw.
    void clear_seen(UXXmlWrapperBase& node) const {
        if (look_.present != 0) clear(node);
    }
    // Removes "OldName" with it.
    void clear(UXXmlWrapperBase& node) const {
        node.RemoveProperty(oldValue_);
        node.RemoveProperty(oldName_);
    }

private:
    UXNameKey oldValue_{kOldValue};
    UXNameKey oldName_{kOldName};
    UXNameKeys names_{kOldValue, kOldName};
    UXNodeLook look_;
};

}  // namespace ux
