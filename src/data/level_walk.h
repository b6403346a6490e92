// A walk below a node that hands a state down from level to level.
#pragma once

#include <vector>

#include "frame/walk.h"

namespace ux {

// As visit_below, with a state per level: visit(node, level, below). What visit changes in `level`
// holds for the node's later siblings and their branches; `below`, preset to a copy of it, becomes
// the state of the node's own branch. Returns false when a visit stopped the walk.
template <typename Level, typename Visit>
bool visit_levels(const UXXmlWrapperBase& top, const Level& first, Visit&& visit) {
    UXXmlWrapperBase node;
    if (!top.FirstChild(&node)) return true;
    std::vector<Level> levels{first};
    for (;;) {
        Level below = levels.back();
        const Step step = visit(node, levels.back(), below);
        if (step == Step::kStop) return false;
        if (step == Step::kIntoBranch && step_into_first_child(node)) {
            levels.push_back(below);
            continue;
        }
        while (!step_to_next_sibling(node)) {
            levels.pop_back();
            if (levels.empty() || !step_to_parent(node)) return true;
        }
    }
}

}  // namespace ux
