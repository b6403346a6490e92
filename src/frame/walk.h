// Loops over children and branches. None recurses, so the depth of a tree costs no machine stack.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

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

// A place in the branch below a top node, which is no part of it, in pre-order. Each step moves on
// to the next place, so that a removed node never breaks the walk.
//
//   for (BranchCursor at(tree); at.more();) { ... at.into(), at.over() or at.remove() ... }
class BranchCursor {
public:
    explicit BranchCursor(const UXXmlWrapperBase& top)
        : parent_(top), more_(top.FirstChild(&node_) != 0) {}
    bool more() const { return more_; }
    // The walk goes on from this handle, so it must not be bound to another node.
    UXXmlWrapperBase& node() { return node_; }
    std::size_t level() const { return level_; }  // 0 for the children of top

    void into() {
        if (is_leaf(node_)) return over();
        parent_ = node_;
        node_.FirstChild(&node_);
        ++level_;
    }
    void over() {
        if (!node_.NextSibling(&node_)) leave_branch();
    }
    // Removes the node with its branch; yields what the host's RemoveChild reports.
    int remove() {
        const bool last = !node_.NextSibling(&next_);
        const int code = parent_.RemoveChild(&node_, nullptr);
        node_ = std::move(next_);
        if (last) leave_branch();
        return code;
    }

private:
    // To the next sibling of the nearest ancestor that has one.
    void leave_branch() {
        for (more_ = false; !more_ && level_ > 0; --level_) {
            more_ = parent_.NextSibling(&node_) != 0;
            step_to_parent(parent_);
        }
    }

    UXXmlWrapperBase parent_;
    UXXmlWrapperBase node_;
    UXXmlWrapperBase next_;  // kept only to spare the work of making it
    std::size_t level_ = 0;
    bool more_;
};

enum class Step { kGoOn, kOverBranch, kStop };

inline Step into_branch_if(bool into) {
    return into ? Step::kGoOn : Step::kOverBranch;
}

// Calls visit(node) for every node below top, a node before its branch. Returns false when a visit
// stopped the walk; one that yields nothing goes on.
template <typename Visit>
bool visit_below(const UXXmlWrapperBase& top, Visit&& visit) {
    for (BranchCursor at(top); at.more();) {
        if constexpr (std::is_void_v<decltype(visit(at.node()))>) {
            visit(at.node());
            at.into();
        } else {
            const Step step = visit(at.node());
            if (step == Step::kStop) return false;
            step == Step::kGoOn ? at.into() : at.over();
        }
    }
    return true;
}

// The same with a state per level: visit(node, level, below). What visit changes in `level` holds
// for the node's later siblings and their branches; `below`, preset to a copy of it, becomes the
// state of the node's own branch.
template <typename Level, typename Visit>
bool visit_levels(const UXXmlWrapperBase& top, const Level& first, Visit&& visit) {
    std::vector<Level> levels{first};
    for (BranchCursor at(top); at.more();) {
        const std::size_t level = at.level();
        Level below = levels[level];
        const Step step = visit(at.node(), levels[level], below);
        if (step == Step::kStop) return false;
        step == Step::kGoOn ? at.into() : at.over();
        if (at.level() != level) levels.resize(at.level() + 1, below);
    }
    return true;
}

// The same with the node at the same place below another top: visit(node, counterpart), whose
// second handle is invalid where there is none.
template <typename Visit>
bool visit_pairs(const UXXmlWrapperBase& top, const UXXmlWrapperBase& otherTop, Visit&& visit) {
    std::vector<UXXmlWrapperBase> counterparts(1);  // of the nodes from top to here
    otherTop.FirstChild(&counterparts[0]);
    for (BranchCursor at(top); at.more();) {
        const std::size_t level = at.level();
        const Step step = visit(at.node(), counterparts[level]);
        if (step == Step::kStop) return false;
        step == Step::kGoOn ? at.into() : at.over();
        if (at.level() > level) {
            counterparts.emplace_back();
            counterparts[level].FirstChild(&counterparts.back());
        }
        counterparts[level].NextSibling(&counterparts[level]);
        counterparts.resize(at.level() + 1);
    }
    return true;
}

// Calls enter(node) before and leave(node, entered) after the branch of every node below top;
// entered tells whether the branch was walked, which that of a leaf never is. The node is removed
// when leave yields true. Returns false when enter stopped the walk.
template <typename Enter, typename Leave>
bool visit_around(const UXXmlWrapperBase& top, Enter&& enter, Leave&& leave) {
    UXXmlWrapperBase node;
    UXXmlWrapperBase next;
    std::size_t level = 0;
    for (bool more = top.FirstChild(&node) != 0; more;) {
        const Step step = enter(node);
        if (step == Step::kStop) return false;
        if (step == Step::kGoOn && !is_leaf(node)) {
            node.FirstChild(&node);
            ++level;
            continue;
        }
        // The node is left, and with the last child the branch around it.
        bool entered = false;
        do {
            more = node.NextSibling(&next) != 0;
            if (!more) node.GetParent(&next);
            if (leave(node, entered)) node.RemoveNode();
            node = std::move(next);
            entered = true;
        } while (!more && level-- > 0);
    }
    return true;
}

}  // namespace ux
