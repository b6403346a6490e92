// Walks over branches whose nodes are removed on the way. None recurses.
#pragma once

#include <utility>

#include "frame/walk.h"

namespace ux {

// A place in the branch below a top node, in pre-order. Every step moves on to the next place, so
// that removing a node never breaks the walk.
//
//   for (BranchCursor at(tree); at.more();) { ... at.into(), at.over() or at.remove() ... }
class BranchCursor {
public:
    explicit BranchCursor(const UXXmlWrapperBase& top) : parent_(top) { top.FirstChild(&node_); }
    bool more() const { return node_.IsNodeValid() != 0; }
    UXXmlWrapperBase& node() { return node_; }
    bool at_first_level() const { return level_ == 0; }

    void into() {
        UXXmlWrapperBase child;
        if (!node_.FirstChild(&child)) return over();
        parent_ = std::move(node_);
        node_ = std::move(child);
        ++level_;
    }
    void over() {
        UXXmlWrapperBase next;
        node_.NextSibling(&next);
        step_to(std::move(next));
    }
    // Removes the node with its branch; yields what the host's RemoveChild reports.
    int remove() {
        UXXmlWrapperBase next;
        node_.NextSibling(&next);
        const int code = parent_.RemoveChild(&node_, nullptr);
        step_to(std::move(next));
        return code;
    }

private:
    // To the next sibling, or when there is none to that of the nearest ancestor that has one.
    void step_to(UXXmlWrapperBase&& next) {
        node_ = std::move(next);
        while (!node_.IsNodeValid() && level_ > 0) {
            parent_.NextSibling(&node_);
            step_to_parent(parent_);
            --level_;
        }
    }

    UXXmlWrapperBase parent_;
    UXXmlWrapperBase node_;
    long long level_ = 0;
};

// Calls enter(node) before and leave(node, entered) after the branch of every node below top.
// enter tells whether to walk inside; entered tells whether that happened, which it does not for a
// leaf. The node is removed when leave yields true.
template <typename Enter, typename Leave>
void visit_around(const UXXmlWrapperBase& top, Enter&& enter, Leave&& leave) {
    UXXmlWrapperBase node;
    if (!top.FirstChild(&node)) return;
    for (long long level = 0;;) {
        if (enter(node) && step_into_first_child(node)) {
            ++level;
            continue;
        }
        for (bool entered = false;; entered = true) {
            UXXmlWrapperBase next;
            UXXmlWrapperBase parent;
            const bool last = !node.NextSibling(&next);
            const bool removed = leave(node, entered);
            if (removed || last) node.GetParent(&parent);
            if (removed) parent.RemoveChild(&node, nullptr);
            if (!last) {
                node = std::move(next);
                break;
            }
            if (level-- == 0) return;
            node = std::move(parent);
        }
    }
}

}  // namespace ux
