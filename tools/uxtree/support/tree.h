// Reading nodes as standard strings, and walking them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "uxtree/host/host.h"

namespace uxtool {

std::string to_string(const CStringUTF8& text);
std::vector<std::string> to_strings(const CWBOStringArray& texts);
UXScriptArray<CWBOStringArray> script_texts(const std::vector<std::string>& texts);
std::string tag_of(const UXXmlWrapperBase& node);
// Nothing when the node lacks the attribute.
std::optional<std::string> attribute_of(const UXXmlWrapperBase& node, const char* name);
std::vector<std::string> attribute_names(const UXXmlWrapperBase& node);
// Names and values, in the order of the document.
std::vector<std::pair<std::string, std::string>> all_attributes(const UXXmlWrapperBase& node);
// The element's own text, "" when there is none.
std::string value_of(const UXXmlWrapperBase& node);

// Calls enter(node, level) for top and everything below it in document order, and leave(node,
// level) after a node's branch. When enter yields false, the branch below that node is left out.
// Works along the links, so that depth costs no stack. Neither may remove nodes.
template <typename Enter, typename Leave>
void walk(const UXXmlWrapperBase& top, Enter&& enter, Leave&& leave) {
    UXXmlWrapperBase node = top;
    std::size_t level = 0;
    for (;;) {
        UXXmlWrapperBase next;
        if (enter(node, level) && node.FirstChild(&next) != 0) {
            node = next;
            ++level;
            continue;
        }
        leave(node, level);
        while (level > 0 && node.NextSibling(&next) == 0) {
            if (node.GetParent(&next) == 0) return;
            node = next;
            --level;
            leave(node, level);
        }
        if (level == 0) return;
        node = next;
    }
}

// Calls visit(node, level) for top and everything below it in document order.
template <typename Visit>
void walk(const UXXmlWrapperBase& top, Visit&& visit) {
    walk(
        top,
        [&](const UXXmlWrapperBase& node, std::size_t level) {
            visit(node, level);
            return true;
        },
        [](const UXXmlWrapperBase&, std::size_t) {});
}

// Calls visit(child) for the direct children. It must not remove them.
template <typename Visit>
void for_each_child(const UXXmlWrapperBase& parent, Visit&& visit) {
    UXXmlWrapperBase child;
    for (parent.FirstChild(&child); child.IsNodeValid() != 0; child.NextSibling(&child)) {
        visit(child);
    }
}

}  // namespace uxtool
