// Outlines of parts become the outline of the whole.
#include <cstddef>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "uxtree/host/name_key.h"
#include "uxtree/kit/outline.h"

#include "base/seeded_hash.h"
#include "frame/guards.h"
#include "frame/walk.h"
#include "outline/outline_builder.h"
#include "outline/outline_nodes.h"

using namespace ux;
namespace {

// What is read of the elements that outlines are written in.
class OutlineElement {
public:
    bool is_entry(const UXXmlWrapperBase& node) { return has_tag(node, "Node"); }
    bool is_attribute(const UXXmlWrapperBase& node) { return has_tag(node, "Attr"); }
    // Valid until the next change of the tree.
    std::string_view label(const UXXmlWrapperBase& node) {
        std::string_view text;
        node.GetPropertyView(label_, text);
        return text;
    }

private:
    static bool has_tag(const UXXmlWrapperBase& node, std::string_view wanted) {
        std::string_view tag;
        return node.GetTagView(tag) != 0 && tag == wanted;
    }

    UXNameKey label_{"Label"};
};

// Reads the outlines below top: children of a nameless root. It is read as a whole before anything
// is written, so that target and source may be in one tree.
void read_outlines(const UXXmlWrapperBase& top, LayoutNode& root) {
    OutlineElement element;
    std::vector<LayoutNode*> path{&root};
    for (BranchCursor at(top); at.more();) {
        const UXXmlWrapperBase& node = at.node();
        path.resize(at.level() + 1);
        LayoutNode& parent = *path.back();
        const std::string_view label = element.label(node);
        if (element.is_entry(node)) {
            LayoutNode* const known = parent.find_child(label);
            path.push_back(known != nullptr ? known : &parent.add_child(label));
            at.into();
            continue;
        }
        if (element.is_attribute(node) && at.level() > 0 && !label.empty() &&
            label.front() == '@') {
            parent.attributes.try_emplace(std::string(label.substr(1)));
        }
        at.over();
    }
}

void require(int hostResult) {
    if (hostResult == 0) throw std::bad_alloc();  // it has no other reason on valid nodes
}

// Adds the attributes that the entry lacks, each at its place.
void merge_attributes(UXXmlWrapperBase& entry, const LayoutNode& more) {
    OutlineElement element;
    UXXmlWrapperBase next;  // the first that is not before the name's place
    int hasNext = entry.FirstChild(&next);
    for (const auto& [name, attribute] : more.attributes) {
        const std::string label = std::string("@").append(name);
        const auto isNextBefore = [&] {
            return hasNext != 0 && element.is_attribute(next) && element.label(next) < label;
        };
        while (isNextBefore()) hasNext = next.NextSibling(&next);
        if (hasNext != 0 && element.is_attribute(next) && element.label(next) == label) continue;
        UXXmlWrapperBase added;
        require(hasNext != 0 ? entry.InsertNodeBefore(next, "Attr", -1, &added)
                             : entry.AddNode(&added, "Attr", -1));
        try {
            require(added.SetPropertyValue("Label", CStringUTF8(label.c_str())));
        } catch (...) {
            added.RemoveNode();
            throw;
        }
    }
}

using EntriesByLabel = std::unordered_map<std::string, UXXmlWrapperBase, SeededHash>;

EntriesByLabel entries_below(const UXXmlWrapperBase& parent) {
    OutlineElement element;
    EntriesByLabel entries;
    for (const UXXmlWrapperBase& child : children(parent)) {
        if (element.is_entry(child)) entries.emplace(element.label(child), child);
    }
    return entries;
}

void merge(const UXXmlWrapperBase& top, const LayoutNode& root) {
    std::vector<std::pair<UXXmlWrapperBase, const LayoutNode*>> open{{top, &root}};
    while (!open.empty()) {
        auto [parent, more] = std::move(open.back());
        open.pop_back();
        if (more->children.empty()) continue;
        EntriesByLabel entries = entries_below(parent);
        for (const auto& child : more->children) {
            const auto known = entries.find(child->name);
            if (known == entries.end()) {
                write_outline(parent, *child);
                continue;
            }
            merge_attributes(known->second, *child);
            open.emplace_back(std::move(known->second), child.get());
        }
    }
}

}  // namespace

int UXMergeOutline(UXXmlWrapperBase* target, const UXXmlWrapperBase* source) {
    return at_boundary(0, [&] {
        if (!usable(target) || !usable(source)) return 0;
        LayoutNode more;
        read_outlines(*source, more);
        merge(*target, more);
        return 1;
    });
}
