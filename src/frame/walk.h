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

class ChildAheadIterator {
public:
    explicit ChildAheadIterator(const UXXmlWrapperBase& parent) {
        parent.FirstChild(&node_);
        node_.NextSibling(&next_);
    }
    UXXmlWrapperBase& operator*() { return node_; }
    ChildAheadIterator& operator++() {
        node_ = std::move(next_);
        node_.NextSibling(&next_);
        return *this;
    }
    bool operator!=(End) const { return node_.IsNodeValid() != 0; }

private:
    UXXmlWrapperBase node_;
    UXXmlWrapperBase next_;
};

template <typename Iterator>
class Range {
public:
    explicit Range(const UXXmlWrapperBase& parent) : parent_(parent) {}
    Iterator begin() const { return Iterator(parent_); }
    End end() const { return {}; }

private:
    const UXXmlWrapperBase& parent_;
};
}  // namespace detail

// for (UXXmlWrapperBase& child : children(node)): the direct children, stepping after the body, so
// that a child appended by the body is still reached. The body must not remove the child.
inline detail::Range<detail::ChildIterator> children(const UXXmlWrapperBase& parent) {
    return detail::Range<detail::ChildIterator>(parent);
}
// The same, stepping before the body: use it, and only it, where the body may remove the child.
// The body must not remove the child's next sibling.
inline detail::Range<detail::ChildAheadIterator> children_ahead(const UXXmlWrapperBase& parent) {
    return detail::Range<detail::ChildAheadIterator>(parent);
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
