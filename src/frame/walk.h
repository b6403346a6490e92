// Loops over children and branches. None recurses, so the depth of a tree costs no machine stack.
#pragma once

#include <utility>

#include "uxtree/host/node.h"

namespace ux {

inline bool step_into_first_child(UXXmlWrapperBase& node) {
    UXXmlWrapperBase child;
    if (!node.FirstChild(&child)) return false;
    node = std::move(child);
    return true;
}
inline bool step_to_next_sibling(UXXmlWrapperBase& node) {
    UXXmlWrapperBase next;
    if (!node.NextSibling(&next)) return false;
    node = std::move(next);
    return true;
}
inline bool step_to_parent(UXXmlWrapperBase& node) {
    return node.GetParent(&node) != 0;
}

inline bool is_leaf(const UXXmlWrapperBase& node) {
    return node.GetNodeCount() < 1;
}

namespace detail {
struct End {};

class ChildIterator {
public:
    explicit ChildIterator(const UXXmlWrapperBase& parent) { parent.FirstChild(&node_); }
    UXXmlWrapperBase& operator*() { return node_; }
    ChildIterator& operator++() {
        node_.NextSibling(&node_);
        return *this;
    }
    bool operator!=(End) const { return node_.IsNodeValid() != 0; }

private:
    UXXmlWrapperBase node_;
};

class Children {
public:
    explicit Children(const UXXmlWrapperBase& parent) : parent_(parent) {}
    ChildIterator begin() const { return ChildIterator(parent_); }
    End end() const { return {}; }

private:
    const UXXmlWrapperBase& parent_;
};
}  // namespace detail

// for (UXXmlWrapperBase& child : children(node)): the direct children, stepping after the body, so
// that a child appended by the body is still reached. The body must not remove the child: one that
// does keeps the next sibling itself.
inline detail::Children children(const UXXmlWrapperBase& parent) {
    return detail::Children(parent);
}

enum class Step { kIntoBranch, kOverBranch, kStop };

// Calls visit(node, level) for every node below top, a node before its branch, never top itself; the
// children of top are at firstLevel. Returns false when a visit stopped the walk. Steps along the
// tree's own links. visit must not remove nodes; changing the handle it is given changes only where
// the walk goes on, so it must not.
template <typename Visit>
bool visit_with_level(const UXXmlWrapperBase& top, long long firstLevel, Visit&& visit) {
    UXXmlWrapperBase node;
    UXXmlWrapperBase next;
    if (!top.FirstChild(&node)) return true;
    for (long long level = firstLevel;;) {
        const Step step = visit(node, level);
        if (step == Step::kStop) return false;
        if (step == Step::kIntoBranch && !is_leaf(node)) {
            node.FirstChild(&node);
            ++level;
            continue;
        }
        while (!node.NextSibling(&next)) {
            if (level-- == firstLevel || !step_to_parent(node)) return true;
        }
        node = std::move(next);
    }
}

// The same without the level.
template <typename Visit>
bool visit_below(const UXXmlWrapperBase& top, Visit&& visit) {
    return visit_with_level(top, 0, [&](UXXmlWrapperBase& node, long long) { return visit(node); });
}

}  // namespace ux
