// Selection: the tree as an expression sees it, by handles or through an index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "base/text_view.h"
#include "kit/blocks.h"
#include "kit/select_program.h"

namespace uxkit {

using Names = std::vector<std::string>;
constexpr int kAnyName = -1;
constexpr int kOtherName = -2;

// The text of an element with everything in it. Not known when it depends on where the text of an
// element with text and children stands; the length is right even then.
struct Text {
    std::string_view view;
    bool known = true;
};

// Thrown where a question needs the text of whole branches, the places of texts among children, or
// the order of nodes within each other, and the tree is not indexed.
struct NeedsIndex {};

// Names as keys, for one run.
using Keys = std::vector<UXNameKey>;
Keys keys_of(const Names& names);

// What the host says of one element.
inline std::string_view tag_of(const UXXmlWrapperBase& node) {
    std::string_view tag;
    node.GetTagView(tag);
    return tag;
}
inline std::optional<std::string_view> attribute_of(const UXXmlWrapperBase& node,
                                                    const UXNameKey& name) {
    std::string_view value;
    if (node.GetPropertyView(name, value) == 0) return std::nullopt;
    return value;
}
inline std::string_view own_text(const UXXmlWrapperBase& node, CStringUTF8& scratch) {
    std::string_view text;
    node.NodeValueView(text, scratch);
    return text;
}
inline bool is_branch(const UXXmlWrapperBase& node) {
    return node.GetNodeCount() > 0;
}
// An attribute, or a text of an element.
struct Leaf {
    std::string name;  // "" of a text
    std::string text;
    // Of one of several texts: where it begins in the text of the element, and the node that comes
    // next in the document.
    std::size_t offset = 0;
    std::uint32_t next = 0;
};
// The attributes that are no declarations of namespaces.
std::vector<Leaf> attributes_of(const UXXmlWrapperBase& node);
UXXmlWrapperBase root_of(const UXXmlWrapperBase& node);

// Nodes are handles. The document, which holds the root, is the invalid handle.
class HandleTree {
public:
    using Node = UXXmlWrapperBase;
    static constexpr bool kIndexed = false;

    HandleTree(const Names& names, const UXXmlWrapperBase& context)
        : keys_(keys_of(names)), context_(context) {}

    Node document() const { return {}; }
    const Node& context() const { return context_; }
    static const UXXmlWrapperBase& handle(const Node& node) { return node; }
    static bool is_document(const Node& node) { return node.IsNodeValid() == 0; }

    // The first child of a name, and the next one behind a child.
    bool first_child(const Node& node, int name, Node& out) {
        if (is_document(node)) {
            out = root();
            return matches(out, name);
        }
        return (name == kAnyName ? node.FirstChild(&out) : node.FindChild(key(name), &out)) != 0;
    }
    bool next_sibling(Node& node, int name) const {
        return (name == kAnyName ? node.NextSibling(&node) : node.NextSibling(key(name), &node)) !=
               0;
    }
    // The last child of a name, of a node that is not the document.
    bool last_child(const Node& node, int name, Node& out) const {
        bool any = node.GetChild(&out, node.GetNodeCount() - 1) != 0;
        while (any && !matches(out, name)) any = out.PrevSibling(&out) != 0;
        return any;
    }
    // The next node of a name below top, in order.
    bool next_below(const Node& top, int name, Node& node) const {
        return node.NextBelow(top, name == kAnyName ? nullptr : &key(name), &node) != 0;
    }
    // The same behind the whole branch of a node below top.
    bool next_behind(const Node& top, int name, Node& node) const {
        Node next;
        while (node.NextSibling(&next) == 0) {
            if (node.GetParent(&node) == 0 || node == top) return false;
        }
        node = std::move(next);
        return matches(node, name) || next_below(top, name, node);
    }
    bool parent(Node& node) const {
        if (is_document(node)) return false;
        node.GetParent(&node);  // the root's is the document
        return true;
    }
    std::optional<std::string_view> attribute(const Node& node, int name) const {
        return attribute_of(node, key(name));
    }
    bool is_branch(const Node& node) const { return uxkit::is_branch(node); }
    std::string_view own_text(const Node& node, CStringUTF8& scratch) const {
        return uxkit::own_text(node, scratch);
    }
    Text string_value(const Node& node, CStringUTF8& scratch) const {
        if (is_document(node) || uxkit::is_branch(node)) throw NeedsIndex();
        return {uxkit::own_text(node, scratch)};
    }
    bool keeps_layout() const { return UXKeepsLayout(&context_) != 0; }
    bool split_text(const Node& /*node*/, std::string_view /*text*/,
                    std::vector<Leaf>& /*pieces*/) const {
        if (keeps_layout()) throw NeedsIndex();
        return false;
    }

private:
    const UXNameKey& key(int name) const { return keys_[static_cast<std::size_t>(name)]; }
    bool matches(const Node& node, int name) const {
        return name == kAnyName || tag_of(node) == key(name).text();
    }
    const UXXmlWrapperBase& root() {
        if (root_.IsNodeValid() == 0) root_ = root_of(context_);
        return root_;
    }

    Keys keys_;
    UXXmlWrapperBase context_;
    UXXmlWrapperBase root_;
};

// Nodes are numbers in the order of the document; the document itself is 0, and the first element
// of what is indexed 1.
class IndexTree {
public:
    using Node = std::uint32_t;
    static constexpr bool kIndexed = true;

    // Indexes the branch of the context or, when whole, the document that it is in.
    IndexTree(const Names& names, const UXXmlWrapperBase& context, bool whole);

    Node document() const { return 0; }
    Node context() const { return context_; }
    Node end() const { return static_cast<Node>(entries_.size()); }
    // One behind the last node in the branch of a node.
    Node end_of(Node node) const { return entries_[node].end; }
    const UXXmlWrapperBase& handle(Node node) const { return handles_[node]; }
    static bool is_document(Node node) { return node == 0; }

    bool first_child(Node node, int name, Node& out) const {
        out = node + 1;
        return entries_[node].end > out && (matches(out, name) || next_sibling(out, name));
    }
    bool next_sibling(Node& node, int name) const {
        const Node behind = entries_[entries_[node].parent].end;
        do {
            node = entries_[node].end;
        } while (node < behind && !matches(node, name));
        return node < behind;
    }
    bool parent(Node& node) const {
        if (node == 0) return false;
        node = entries_[node].parent;
        return true;
    }
    bool matches(Node node, int name) const {
        return name == kAnyName ? node != 0 : entries_[node].name == name;
    }
    std::optional<std::string_view> attribute(Node node, int name) const {
        return attribute_of(handles_[node], keys_[static_cast<std::size_t>(name)]);
    }
    bool is_branch(Node node) const { return entries_[node].end > node + 1; }
    std::string_view own_text(Node node, CStringUTF8& scratch) const {
        return node == 0 ? std::string_view() : uxkit::own_text(handles_[node], scratch);
    }
    Text string_value(Node node, CStringUTF8& scratch);
    // Can the places of texts among children be told?
    bool keeps_layout() const { return UXKeepsLayout(&handles_[0]) != 0; }
    // The texts that an element with children has, given all of them joined. False when their places
    // are not known.
    bool split_text(Node node, std::string_view text, std::vector<Leaf>& pieces);
    // Does the text stand in that of a branch? site numbers the questions.
    bool branch_contains(Node node, const std::string& text, std::size_t site);

private:
    struct Entry {
        Node parent = 0;
        Node end = 0;
        int name = kOtherName;
    };

    int name_of(const UXXmlWrapperBase& node);
    void describe(Node parent);
    void read_texts();

    const Names names_;
    const Keys keys_;
    std::unordered_map<std::string_view, int> numbers_;
    std::vector<Entry> entries_;
    Blocks<UXXmlWrapperBase> handles_;
    Node context_ = 1;
    // All texts, one behind the other, and where that of each node stands.
    struct Span {
        std::size_t start = 0;
        std::size_t end = 0;
    };
    bool textsAreRead_ = false;
    std::string texts_;
    std::vector<Span> spans_;
    std::vector<Node> mixed_;           // those whose texts have no known places
    std::optional<UXTextOrder> order_;  // made when it is first asked for
    std::unordered_map<std::size_t, std::vector<std::size_t>> places_;  // of searched texts
};

// Where a text stands in another, overlapping places included.
std::vector<std::size_t> places_in(std::string_view text, std::string_view wanted);

}  // namespace uxkit
