// Nodes for C.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "uxtree/data/labels.h"
#include "uxtree/host/embedded.h"
#include "uxtree/kit/c.h"

#include "base/xml_names.h"
#include "kit/c_arguments.h"
#include "kit/c_last_error.h"
#include "kit/c_texts.h"

using namespace ux::kit;

namespace {

using Node = UXXmlWrapperBase;

// Assigns what a lookup found.
int found(Node* out, Node& node, const char* otherwise) {
    if (node.IsNodeValid() == 0) return refused(0, otherwise);
    *out = std::move(node);
    return 1;
}

Node* load_failed() {
    const UXFileError& failure = UXGetLastLoadFailure();
    last_error().line = narrow(failure.line);
    last_error().column = narrow(failure.column);
    return refused<Node*>(nullptr, static_cast<const char*>(UXGetLastLoadError()));
}

bool only_flags(unsigned int known, unsigned int flags) {
    const unsigned int unknown = flags & ~known;
    return unknown == 0 || refused(false, "unknown flags " + std::to_string(unknown));
}
bool has_both(unsigned int flags, unsigned int pair) {
    return (flags & pair) == pair;
}

bool save_flags(const Node& node, unsigned int flags) {
    constexpr unsigned int kForms = UX_SAVE_PLAIN | UX_SAVE_INDENTED;
    constexpr unsigned int kIds = UX_SAVE_IDS | UX_SAVE_NO_IDS;
    if (!only_flags(kForms | kIds, flags)) return false;
    if (has_both(flags, kForms) || has_both(flags, kIds)) {
        return refused(false, "flags that exclude each other");
    }
    const bool plain =
        (flags & kForms) == UX_SAVE_PLAIN || ((flags & kForms) == 0 && UXKeepsLayout(&node) == 0);
    return !plain || (flags & UX_SAVE_NO_IDS) == 0 ||
           refused(false, "a tree without a layout is written with all IDs");
}

UXSaveOptions save_options(unsigned int flags) {
    UXSaveOptions options;
    if ((flags & UX_SAVE_PLAIN) != 0) options.form = UXSaveForm::kPlain;
    if ((flags & UX_SAVE_INDENTED) != 0) options.form = UXSaveForm::kIndented;
    if ((flags & UX_SAVE_IDS) != 0) options.ids = UXSaveIds::kWrite;
    if ((flags & UX_SAVE_NO_IDS) != 0) options.ids = UXSaveIds::kLeaveOut;
    return options;
}

int save_failed() {
    return refused(0, static_cast<const char*>(UXGetLastSaveError()));
}

// Reads a text of a node into a string that is assigned last.
template <typename Read>
int read_text(const Node* node, CStringUTF8* out, Read read) {
    return guarded(0, [&] {
        if (!usable(node) || !given(out)) return 0;
        CStringUTF8 text;
        read(*node, text);
        *out = std::move(text);
        return 1;
    });
}

Node child_along(const Node& start, std::string_view path) {
    Node node = start;
    while (!path.empty() && node.IsNodeValid() != 0) {
        const std::size_t end = path.find('/');
        const std::string tag(path.substr(0, end));
        Node child;
        node.FindChild(tag.c_str(), &child, 0);
        // A path that ends in a separator has one more step, with an empty tag.
        if (end != std::string_view::npos && end + 1 == path.size()) return Node();
        path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
        node = std::move(child);
    }
    return node;
}

}  // namespace

Node* ux_node_new(const char* tag) {
    return guarded<Node*>(nullptr, [&]() -> Node* {
        auto node = std::make_unique<Node>();
        if (tag == nullptr) return node.release();
        if (!accept_text(tag)) return nullptr;
        if (!ux::is_name(tag)) return refused<Node*>(nullptr, "the tag is no element name");
        return node->CreateNew(0, tag) != 0 ? node.release() : nullptr;
    });
}

Node* ux_node_copy(const Node* node) {
    return guarded<Node*>(nullptr, [&]() -> Node* {
        if (!usable(node)) return nullptr;
        auto copy = std::make_unique<Node>();
        if (node->Clone(copy.get(), 0) == 0) return refused<Node*>(nullptr, "out of memory");
        return copy.release();
    });
}

void ux_node_free(Node* node) {
    delete node;
}

int ux_node_valid(const Node* node) {
    return guarded(0, [&] { return node != nullptr && node->IsNodeValid() != 0 ? 1 : 0; });
}

int ux_node_same(const Node* a, const Node* b) {
    return guarded(0, [&] { return usable(a) && usable(b) && *a == *b ? 1 : 0; });
}

Node* ux_load(const char* path, unsigned int flags) {
    return guarded<Node*>(nullptr, [&]() -> Node* {
        if (!accept_text(path) || !only_flags(UX_LOAD_LAYOUT, flags)) return nullptr;
        auto node = std::make_unique<Node>();
        const bool loaded =
            (flags != 0 ? UXLoadForEditing(node.get(), path) : node->load(path, 0, false)) != 0;
        return loaded ? node.release() : load_failed();
    });
}

Node* ux_load_memory(const char* bytes, size_t size, unsigned int flags) {
    return guarded<Node*>(nullptr, [&]() -> Node* {
        if (bytes == nullptr) return refused<Node*>(nullptr, "there are no bytes");
        if (size > static_cast<std::size_t>(PTRDIFF_MAX)) {
            return refused<Node*>(nullptr, "the size is larger than any memory");
        }
        if (!only_flags(UX_LOAD_LAYOUT, flags)) return nullptr;
        auto node = std::make_unique<Node>();
        const bool loaded = (flags != 0 ? UXLoadForEditingFromMemory(node.get(), bytes, size)
                                        : node->LoadFromMemory(bytes, size)) != 0;
        return loaded ? node.release() : load_failed();
    });
}

int ux_save(const Node* node, const char* path, unsigned int flags) {
    return guarded(0, [&] {
        if (!usable(node) || !accept_text(path) || !save_flags(*node, flags)) return 0;
        return UXSaveAs(node, path, save_options(flags), nullptr) != 0 ? 1 : save_failed();
    });
}

int ux_save_memory(const Node* node, unsigned int flags, CStringUTF8* out) {
    return guarded(0, [&] {
        if (!usable(node) || !given(out) || !save_flags(*node, flags)) return 0;
        return UXSaveToMemory(node, out, save_options(flags), nullptr) != 0 ? 1 : save_failed();
    });
}

int ux_node_child(const Node* node, const char* path, Node* out) {
    return guarded(0, [&] {
        if (!usable(node) || !accept_text(path) || !given(out)) return 0;
        Node child = child_along(*node, path);
        return found(out, child, "there is no such child");
    });
}

int ux_node_child_at(const Node* node, int index, Node* out) {
    return guarded(0, [&] {
        if (!usable(node) || !given(out)) return 0;
        Node child;
        if (index >= 0) node->GetChild(&child, index);
        return found(out, child, "there is no child at that position");
    });
}

int ux_node_parent(const Node* node, Node* out) {
    return guarded(0, [&] {
        if (!usable(node) || !given(out)) return 0;
        Node parent;
        node->GetParent(&parent);
        return found(out, parent, "the node is a root");
    });
}

int ux_node_count(const Node* node) {
    return guarded(-1, [&] { return usable(node) ? node->GetNodeCount() : -1; });
}

int ux_node_tag(const Node* node, CStringUTF8* out) {
    return read_text(node, out, [](const Node& of, CStringUTF8& text) { of.GetTagName(text); });
}

int ux_node_value(const Node* node, CStringUTF8* out) {
    return read_text(node, out, [](const Node& of, CStringUTF8& text) {
        of.GetNodeStringWithBlobInfo(text, 0);
    });
}

int ux_node_xml(const Node* node, CStringUTF8* out) {
    return read_text(node, out, [](const Node& of, CStringUTF8& text) {
        if (of.GetString(text, 0) == 0) throw std::bad_alloc();
    });
}

int ux_node_label(const Node* node, CStringUTF8* out) {
    return read_text(node, out,
                     [](Node of, CStringUTF8& text) { text = uxtree_get_node_label(&of, 1); });
}

int ux_node_set_value(Node* node, const char* value) {
    return guarded(0, [&] {
        if (!usable(node) || !accept_value(value)) return 0;
        return node->SetString(value);
    });
}

int ux_node_attr(const Node* node, const char* name, CStringUTF8* out) {
    return guarded(0, [&] {
        if (!usable(node) || !accept_text(name) || !given(out)) return 0;
        CStringUTF8 text;
        if (node->GetPropertyValue(name, text, 0) == 0) return refused(0, "no such attribute");
        *out = std::move(text);
        return 1;
    });
}

int ux_node_set_attr(Node* node, const char* name, const char* value) {
    return guarded(0, [&] {
        if (!usable(node) || !accept_text(name) || !accept_value(value)) return 0;
        if (value == nullptr) return node->RemoveProperty(name);
        if (node->SetPropertyValue(name, CStringUTF8(value)) != 0) return 1;
        return refused(0, "the name is no attribute name");
    });
}

int ux_node_add(Node* node, const char* tag, Node* out) {
    return guarded(0, [&] {
        if (!usable(node) || !accept_text(tag)) return 0;
        Node added;
        if (node->AddNode(&added, tag, 0) == 0) return refused(0, "the tag is no element name");
        if (out != nullptr) *out = std::move(added);
        return 1;
    });
}

int ux_node_remove(Node* node) {
    return guarded(0, [&] { return usable(node) ? node->RemoveNode() : 0; });
}
