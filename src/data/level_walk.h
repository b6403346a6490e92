// A walk below a node that hands a state down from level to level.
#pragma once

#include <utility>
#include <vector>

#include "frame/walk.h"

namespace ux {

// As visit_below, with a state per level: visit(node, level, below). What visit changes in `level`
// holds for the node's later siblings and their branches; `below`, preset to a copy of it, becomes
// the state of the node's own branch. Returns false when a visit stopped the walk.
template <typename Level, typename Visit>
bool visit_levels(const UXXmlWrapperBase& top, const Level& first, Visit&& visit) {
    struct Open {
        Level level;
        UXXmlWrapperBase branch;  // whose children this level is
    };
    UXXmlWrapperBase node;
    if (!top.FirstChild(&node)) return true;
    std::vector<Open> open{{first, top}};
    for (;;) {
        Level below = open.back().level;
        const Step step = visit(node, open.back().level, below);
        if (step == Step::kStop) return false;
        if (step == Step::kIntoBranch && node.GetNodeCount() > 0) {
            open.push_back({below, node});
            node.FirstChild(&node);
            continue;
        }
        while (!node.NextSibling(&node)) {
            node = std::move(open.back().branch);
            open.pop_back();
            if (open.empty()) return true;
        }
    }
}

}  // namespace ux
