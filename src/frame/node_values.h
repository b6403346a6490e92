// What a node holds, as a value.
#pragma once

#include <string_view>

#include "uxtree/host/node.h"

namespace ux {

inline CStringUTF8 tag_of(const UXXmlWrapperBase& node) {
    CStringUTF8 tag;
    node.GetTagName(tag);
    return tag;
}

// "" for a node without a text.
inline CStringUTF8 text_of(UXXmlWrapperBase& node) {
    CStringUTF8 text;
    node.NodeValue(text, 1, 1, nullptr);
    return text;
}

// "" for a node without the attribute.
inline CStringUTF8 attribute_of(const UXXmlWrapperBase& node, const char* name) {
    CStringUTF8 text;
    node.GetPropertyValue(name, text, 0);
    return text;
}

// The same as a view, which holds until the next change of the node's document.
inline std::string_view view_of(const UXXmlWrapperBase& node, const UXNameKey& name) {
    std::string_view text;
    node.GetPropertyView(name, text);
    return text;
}

// The attribute's integer; the fallback for a node that has none.
inline int int_attribute_of(const UXXmlWrapperBase& node, const char* name, int fallback = 0) {
    int value = fallback;
    node.GetPropertyValue(name, value, 0);
    return value;
}
inline int int_attribute_of(const UXXmlWrapperBase& node, const UXNameKey& name, int fallback = 0) {
    int value = fallback;
    node.GetPropertyValue(name, value);
    return value;
}
inline unsigned bits_of(const UXXmlWrapperBase& node, const char* name) {
    return static_cast<unsigned>(int_attribute_of(node, name));
}
inline bool has_int(const UXXmlWrapperBase& node, const UXNameKey& name, int wanted) {
    int value = 0;
    return node.GetPropertyValue(name, value) != 0 && value == wanted;
}

}  // namespace ux
