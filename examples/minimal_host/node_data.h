// What stands behind a handle of the minimal host.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "uxtree/host/node.h"

namespace minimal {

struct Node;
using NodePtr = std::shared_ptr<Node>;
using Children = std::list<NodePtr>;

inline constexpr int kNoId = -1;

// What a copy takes over.
struct Content {
    std::string tag;
    std::string text;
    int id = kNoId;
    std::vector<std::pair<std::string, std::string>> attributes;
};

// Its parent's list is a node's only lasting owner, so that removing it makes every handle expire.
struct Node : Content, std::enable_shared_from_this<Node> {
    Node* parent = nullptr;
    Children children;
    Children::iterator place;  // in the parent's children
    ~Node();
};

struct Tree {
    NodePtr root;
};

// What handles share that were copied from each other: they keep the whole tree, and refer to a
// node until it is removed.
struct Link {
    std::shared_ptr<Tree> tree;
    std::weak_ptr<Node> node;
    long handles;
};

// The node of a handle, null when there is none or it was removed.
NodePtr node_of(const UXXmlWrapperBase& handle);
// Makes the handle the first one of a new tree; 0 without a root.
int bind_root(UXXmlWrapperBase& handle, const NodePtr& root);

inline std::string_view view(const char* text) {
    return text == nullptr ? "" : text;
}
inline std::string_view view(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}

Node& insert(Node& parent, Children::iterator before, const NodePtr& node);
NodePtr copy_of(const Node& source, bool deep);
void take_content(Node& node, Node& copy);  // of a copy that goes
Node* sibling_after(const Node& node);
Node* next_below(const Node& top, const Node& node);  // in pre-order

// The XML text of a branch; an ID is written for a file only.
std::string to_xml(const Node& top, bool forFile);
// The root of a parsed document, null when it is refused.
NodePtr from_xml(const char* bytes, std::size_t length);

}  // namespace minimal
