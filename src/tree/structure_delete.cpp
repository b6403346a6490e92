// Removing and hiding nodes chosen by an attribute or by being empty.
#include "uxtree/tree/structure.h"

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/walk.h"
#include "marks/names.h"

using namespace ux;

namespace {

// Adds up removals; the first negative code stays.
void add_code(int& total, int code) {
    if (total < 0) return;
    total = code < 0 ? code : total + code;
}

struct MissingAttributeRule {
    UXNameKey attrName;
    bool recursive;
    bool removeAttrFromKept;
    bool keepBranches;
    bool checkSelf;

    bool has(const UXXmlWrapperBase& node) const { return node.HasProperty(attrName) != 0; }
    void release(UXXmlWrapperBase& kept) const {
        if (removeAttrFromKept) kept.RemoveProperty(attrName);
    }
    // Does the node carry the attribute for its whole branch?
    bool protects(UXXmlWrapperBase& node) const {
        if (!checkSelf || !has(node)) return false;
        release(node);
        return true;
    }
};

int delete_where_missing(UXXmlWrapperBase& tree, const MissingAttributeRule& rule) {
    if (rule.protects(tree)) return 0;
    int removed = 0;
    const auto enter = [&](UXXmlWrapperBase& node) {
        return into_branch_if(rule.recursive && !is_leaf(node) && !rule.protects(node));
    };
    const auto leave = [&](UXXmlWrapperBase& node, bool entered) {
        const bool keptBranch = !is_leaf(node) || (entered && rule.keepBranches);
        if (keptBranch) return false;  // Intended: a kept branch never loses the attribute here
        if (rule.has(node)) {
            rule.release(node);
            return false;
        }
        ++removed;
        return true;
    };
    visit_around(tree, enter, leave);
    return removed;
}

}  // namespace

extern "C" {

int uxtree_delete_nodes_by_attribute(UXXmlWrapperBase* tree, const char* attrName, int value,
                                     int recursive, const char* exemptAttr, int keepBranches) {
    return at_boundary(kBadArgument, [&] {
        if (attrName == nullptr || !usable(tree)) return kBadArgument;
        int total = 0;
        const UXNameKey name(attrName);
        const UXNameKey exempt(exemptAttr);
        for (BranchCursor at(*tree); at.more();) {
            UXXmlWrapperBase& node = at.node();
            // Intended: exemption and branch keeping end below the first level, and what they
            // spare is still entered.
            const auto spared = [&] {
                return at.level() == 0 &&
                       ((keepBranches != 0 && !is_leaf(node)) || node.HasProperty(exempt) != 0);
            };
            if (has_int(node, name, value) && !spared()) {
                add_code(total, at.remove());
            } else if (recursive != 0) {
                at.into();
            } else {
                at.over();
            }
        }
        return total;
    });
}

int uxtree_delete_nodes_by_missing_attribute(UXXmlWrapperBase* tree, const char* attrName,
                                             int recursive, int removeAttrFromKept,
                                             int keepBranches, int checkSelf) {
    return at_boundary(kBadArgument, [&] {
        if (attrName == nullptr || !usable(tree)) return kBadArgument;
        return delete_where_missing(
            *tree, {UXNameKey(attrName), recursive != 0, removeAttrFromKept != 0, keepBranches != 0,
                    checkSelf != 0});
    });
}

int uxtree_remove_nodes_by_attribute(UXXmlWrapperBase* tree, const char* attrName, int value) {
    return at_boundary(kBadArgument, [&] {
        if (attrName == nullptr || !usable(tree)) return kBadArgument;
        int removed = 0;
        const UXNameKey name(attrName);
        for (BranchCursor at(*tree); at.more();) {
            if (has_int(at.node(), name, value)) {
                at.remove();
                ++removed;
            } else {
                at.into();
            }
        }
        return removed;
    });
}

int uxtree_remove_empty_child_nodes(UXXmlWrapperBase* tree, bool recursive) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(tree)) return kBadArgument;
        int kept = 0;
        const auto enter = [&](const UXXmlWrapperBase&) { return into_branch_if(recursive); };
        const auto leave = [&](const UXXmlWrapperBase& node, bool entered) {
            // Intended: a branch in which nothing was kept goes, also when it has a text itself.
            if (entered) return is_leaf(node);
            if (node.IsEmpty()) return true;
            ++kept;
            return false;
        };
        visit_around(*tree, enter, leave);
        return kept;
    });
}

int uxtree_hide_empty_nodes(UXXmlWrapperBase* tree, bool recursive, bool showNonEmpty) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(tree)) return kBadArgument;
        int hidden = 0;
        const UXNameKey show(kShow);
        visit_below(*tree, [&](UXXmlWrapperBase& node) {
            if (!is_leaf(node)) return into_branch_if(recursive);
            if (node.IsEmpty()) {
                node.SetPropertyValue(show, 0);
                ++hidden;
            } else if (showNonEmpty) {
                node.RemoveProperty(show);
            }
            return Step::kOverBranch;
        });
        return hidden;
    });
}

}  // extern "C"
