// What the tests of nodes ask for in one call.
#pragma once

#include <string>

#include "uxtree/host/node.h"

namespace uxtest {

inline std::string tag_of(const UXXmlWrapperBase& node) {
    CStringUTF8 tag("(unchanged)");
    node.GetTagName(tag);
    return static_cast<const char*>(tag);
}
inline std::string value_of(UXXmlWrapperBase node) {
    CStringUTF8 text("(unchanged)");
    node.NodeValue(text, 1, 1, nullptr);
    return static_cast<const char*>(text);
}
inline std::string attribute_of(const UXXmlWrapperBase& node, const char* name) {
    CStringUTF8 text("(unchanged)");
    node.GetPropertyValue(name, text, 0);
    return static_cast<const char*>(text);
}

}  // namespace uxtest
