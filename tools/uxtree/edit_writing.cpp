// uxtree edit set, rename: other texts and names.
#include <algorithm>

#include "uxtree/uxtree_Utils.h"

#include "edits.h"
#include "support/selection.h"
#include "support/tree.h"

namespace uxtool {
namespace {

// An element with children would have its text beside them, which is hardly what was meant.
void refuse_children(const UXXmlWrapperBase& node) {
    if (node.GetNodeCount() == 0) return;
    throw Failure(kRefused, "set",
                  place_of(node) + " has children, which a text would stand beside",
                  "select what is below it, or delete its children first");
}

Told set_text(EditedNodes& nodes, const std::string& text) {
    for (EditedItem& item : nodes.items) {
        if (item.kind == UXSelectedKind::kAttribute) {
            item.node.SetPropertyValue(item.attribute.c_str(), CStringUTF8(text.c_str()));
        } else {
            refuse_children(item.node);
            item.node.SetString(text.c_str());
        }
    }
    return {static_cast<long long>(nodes.items.size()), noun_of(nodes.items[0].kind), "set"};
}

[[noreturn]] void throw_no_name(const std::string& name, const char* what) {
    throw Failure(kRefused, "rename", fmt::format("'{}' is no {} name", name, what),
                  "--adapt makes one of it");
}

// Attributes keep their order: those behind are written again.
void rename_attribute(EditedItem& item, const std::string& name) {
    if (name == item.attribute) return;
    const bool taken = item.node.HasProperty(name.c_str(), 0) != 0;
    if (taken) {
        throw Failure(kRefused, "rename",
                      fmt::format("{} has an attribute '{}' already", place_of(item.node), name));
    }
    const auto attributes = all_attributes(item.node);
    const auto from = std::find_if(attributes.begin(), attributes.end(),
                                   [&](const auto& pair) { return pair.first == item.attribute; });
    if (from == attributes.end()) return;
    if (item.node.SetPropertyValue(name.c_str(), CStringUTF8(from->second.c_str())) == 0) {
        throw_no_name(name, "attribute");
    }
    item.node.RemoveProperty(item.attribute.c_str());
    for (auto behind = from + 1; behind != attributes.end(); ++behind) {
        item.node.RemoveProperty(behind->first.c_str());
        item.node.SetPropertyValue(behind->first.c_str(), CStringUTF8(behind->second.c_str()));
    }
}

Told rename_items(EditedNodes& nodes, const std::string& name) {
    for (EditedItem& item : nodes.items) {
        if (item.kind == UXSelectedKind::kText) {
            throw Failure(kUsage, "--select", "a text has no name", "select its element");
        }
        if (item.kind == UXSelectedKind::kAttribute) {
            rename_attribute(item, name);
        } else if (VCTreeSetTagName(&item.node, name.c_str()) != 1) {
            throw_no_name(name, "element");
        }
    }
    if (!nodes.selected) return {};
    return {static_cast<long long>(nodes.items.size()), noun_of(nodes.items[0].kind), "renamed"};
}

}  // namespace

void add_writing_edits(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "set", "Give elements without children, or attributes, another text",
             [](CLI::App& sub) {
                 auto text = std::make_shared<std::string>();
                 sub.add_option("TEXT", *text, "The new text")->required()->type_name("");
                 return [text](EditedNodes& nodes) { return set_text(nodes, *text); };
             });
    add_edit(app, edit, "rename", "Give elements, or attributes, another name", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>();
        auto adapt = std::make_shared<bool>(false);
        sub.add_option("NAME", *name, "The new name")->required()->type_name("");
        sub.add_flag("--adapt", *adapt, "Make a valid name of any text");
        return [name, adapt](EditedNodes& nodes) {
            CStringUTF8 wanted = name->c_str();
            if (*adapt) uxtree_adapt_for_tagname(&wanted);
            return rename_items(nodes, to_string(wanted));
        };
    });
}

}  // namespace uxtool
