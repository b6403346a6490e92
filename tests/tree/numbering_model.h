// The numbers of nodes, as lookups and moves count them.
#pragma once

#include <string>

#include "support/model_tree.h"

namespace uxmodel {

struct Numbering {
    int index;
    int maxLevel;           // below 0: none
    std::string attribute;  // empty: none
    bool skipsMarked;       // else what is not marked is left out
    bool branchesOnly;

    static Numbering of_flags(int index, unsigned flags, const std::string& attribute) {
        return {index, (flags & 0x40000U) != 0 ? static_cast<int>(flags & 0xFFU) : -1, attribute,
                (flags & 0x10000U) == 0, (flags & 0x20000U) != 0};
    }
};

// The node below top with the number; null when there is none. The counter goes on from what it is.
template <typename AnyNode>
AnyNode* numbered_node(AnyNode& top, const Numbering& rule, int level, int& counter) {
    if (rule.index < 0 || (rule.maxLevel >= 0 && level > rule.maxLevel)) return nullptr;
    for (auto& child : top.children) {
        const bool marked = !rule.attribute.empty() && child.has(rule.attribute);
        if (!rule.skipsMarked && !rule.attribute.empty() && !marked) continue;
        if (rule.branchesOnly && child.leaf()) continue;
        if (counter == rule.index) return &child;
        ++counter;
        if (child.leaf() || (rule.skipsMarked && marked)) continue;
        if (AnyNode* found = numbered_node<AnyNode>(child, rule, level + 1, counter)) return found;
    }
    return nullptr;
}

inline unsigned random_numbering_flags(Random& random) {
    unsigned flags = random.pick({0U, 0U, 1U, 2U, 255U});
    for (const unsigned bit : {0x10000U, 0x20000U, 0x40000U}) {
        if (random.one_in(2)) flags |= bit;
    }
    return flags;
}

}  // namespace uxmodel
