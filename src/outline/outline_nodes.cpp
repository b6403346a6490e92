// Writing an outline as nodes.
#include "outline/outline_nodes.h"

#include <cstddef>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "uxtree/host/name_key.h"

using namespace ux;
namespace {

// The host tells a failure, which on valid nodes is a shortage of memory, only by its result.
void require(int hostResult) {
    if (hostResult == 0) throw std::bad_alloc();
}

class EntryWriter {
public:
    // Adds the entry with its attributes, without its children.
    UXXmlWrapperBase write(UXXmlWrapperBase& parent, const LayoutNode& entry) const {
        UXXmlWrapperBase node;
        UXXmlWrapperBase attribute;
        add_labelled(parent, "Node", entry.name, node);
        for (const auto& [name, known] : entry.attributes) {
            add_labelled(node, "Attr", "@" + name, attribute);
        }
        return node;
    }

    void write_children(const UXXmlWrapperBase& rootNode, const LayoutNode& root) const {
        struct Place {
            const LayoutNode* entry;
            std::size_t nextChild;
            UXXmlWrapperBase node;
        };
        std::vector<Place> path{{&root, 0, rootNode}};
        while (!path.empty()) {
            Place& place = path.back();
            if (place.nextChild == place.entry->children.size()) {
                path.pop_back();
                continue;
            }
            const LayoutNode& child = *place.entry->children[place.nextChild++];
            UXXmlWrapperBase node = write(place.node, child);
            if (!child.children.empty()) path.push_back({&child, 0, std::move(node)});
        }
    }

private:
    void add_labelled(UXXmlWrapperBase& parent, const char* tag, std::string_view label,
                      UXXmlWrapperBase& added) const {
        require(parent.AddNode(&added, tag, -1));
        require(added.SetPropertyView(label_, label));
    }

    UXNameKey label_{"Label"};
};

// All that write appends to the target, or nothing.
template <typename Write>
void append_whole(UXXmlWrapperBase& target, Write&& write) {
    const int before = target.GetNodeCount();
    try {
        write();
    } catch (...) {
        target.SetSizeTrimFromEnd(before);
        throw;
    }
}

}  // namespace

void ux::write_outline(UXXmlWrapperBase& target, const LayoutNode& root) {
    const EntryWriter writer;
    append_whole(target, [&] { writer.write_children(writer.write(target, root), root); });
}

void ux::write_outlines(UXXmlWrapperBase& target, const LayoutNode& parent) {
    const EntryWriter writer;
    append_whole(target, [&] { writer.write_children(target, parent); });
}
