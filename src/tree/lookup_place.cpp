// Places of nodes in a tree: numbered nodes, the root, levels and rows.
#include <vector>

#include "uxtree/tree/lookup.h"

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/walk.h"

using namespace ux;

namespace {

// ---- numbering --------------------------------------------------------------------------------

enum NodeFlag : unsigned int {
    kLevelMask = 0xFF,
    kMarkedOnly = 0x10000,
    kBranchesOnly = 0x20000,
    kLimitLevel = 0x40000,
};

struct Numbering {
    int index;
    int maxLevel;  // negative: no limit
    const char* attrName;
    bool skipSubtreeOfMarked;
    bool branchesOnly;
};

bool number_nodes(const UXXmlWrapperBase& tree, const Numbering& rule, int level, int& counter,
                  UXXmlWrapperBase& found) {
    const bool limited = rule.maxLevel >= 0;
    if (rule.index < 0 || (limited && level > rule.maxLevel)) return false;
    const bool marked = given(rule.attrName);
    const UXNameKey mark(rule.attrName);
    const auto levelsBelow =
        static_cast<std::size_t>(static_cast<long long>(rule.maxLevel) - level);
    for (BranchCursor at(tree); at.more();) {
        const bool hasMark = marked && at.node().HasProperty(mark) != 0;
        const bool unmarked = marked && !rule.skipSubtreeOfMarked && !hasMark;
        if (unmarked || (rule.branchesOnly && is_leaf(at.node()))) {
            at.over();
            continue;
        }
        if (counter == rule.index) {
            found = at.node();
            return true;
        }
        ++counter;
        const bool deepest = limited && at.level() >= levelsBelow;
        (rule.skipSubtreeOfMarked && hasMark) || deepest ? at.over() : at.into();
    }
    return false;
}

// ---- level and row ----------------------------------------------------------------------------

enum class LevelStop { kGoOn, kFound, kRefused };

LevelStop test_level_stop(const UXXmlWrapperBase& node, const UXXmlWrapperBase* top,
                          bool useEventRoot) {
    if (top == nullptr) return LevelStop::kGoOn;
    if (useEventRoot) {
        const int option = int_attribute_of(node, "EventRootOption");
        if (option == -1) return LevelStop::kRefused;
        if (option > 0) return LevelStop::kFound;
        // Intended: a value below -1 neither stops the walk nor lets the node be compared with
        // top. Only -1 refuses, only a positive value marks a local root.
        if (option != 0) return LevelStop::kGoOn;
    }
    return node == *top ? LevelStop::kFound : LevelStop::kGoOn;
}

// The tags, given from the bottom up, joined by "." from the top down.
CStringUTF8 dotted_path(const std::vector<CStringUTF8>& tagsUpward) {
    CStringUTF8 path;
    for (auto tag = tagsUpward.rbegin(); tag != tagsUpward.rend(); ++tag) {
        path += *tag;
        path += '.';
    }
    path.TrimRight('.');
    return path;
}

int branch_size(const UXXmlWrapperBase& node) {
    int size = 1;
    visit_below(node, [&](const UXXmlWrapperBase&) { ++size; });
    return size;
}

// Steps to the first child with the tag, adding the rows passed over and its own; false when no
// child has it.
bool step_to_row(UXXmlWrapperBase& node, const CStringUTF8& tag, int& row) {
    for (UXXmlWrapperBase& child : children(node)) {
        if (tag_of(child).CompareNoCase(tag) == 0) {
            ++row;
            node = child;
            return true;
        }
        row += branch_size(child);
    }
    return false;
}

}  // namespace

extern "C" {

int uxtree_get_node(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, int index, int* counter,
                    int maxLevel, const char* attrName, bool skipSubtreeOfMarked, bool branchesOnly,
                    int level) {
    return at_boundary(kFail, [&] {
        if (any_null(out, counter) || !usable(tree)) return kFail;
        UXXmlWrapperBase found;
        const Numbering rule{index, maxLevel, attrName, skipSubtreeOfMarked, branchesOnly};
        if (!number_nodes(*tree, rule, level, *counter, found)) return kFail;
        *out = found;
        return kOk;
    });
}

int uxtree_get_node_ex(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, int index, unsigned int flags,
                       const char* attrName) {
    return at_boundary(kFail, [&] {
        if (out == nullptr) return kFail;
        int counter = 0;
        const int maxLevel = (flags & kLimitLevel) != 0 ? static_cast<int>(flags & kLevelMask) : -1;
        // Intended: 1 also when there is no such node. Callers pass a fresh handle and test it.
        uxtree_get_node(tree, out, index, &counter, maxLevel, attrName, (flags & kMarkedOnly) == 0,
                        (flags & kBranchesOnly) != 0, 0);
        return kOk;
    });
}

int uxtree_get_root_node(UXXmlWrapperBase* node, UXXmlWrapperBase* out) {
    return at_boundary(kFail, [&] {
        if (out == nullptr || !usable(node)) return kFail;
        UXXmlWrapperBase root = *node;
        UXXmlWrapperBase parent;
        while (root.GetParent(&parent)) root = parent;
        *out = root;
        return kOk;
    });
}

int uxtree_get_level(CStringUTF8* path, UXXmlWrapperBase* node, UXXmlWrapperBase* top,
                     int useEventRoot) {
    return at_boundary(kBadArgument, [&] {
        if (path == nullptr || !usable(node)) return kBadArgument;
        std::vector<CStringUTF8> tags;
        LevelStop stop = LevelStop::kGoOn;
        UXXmlWrapperBase place = *node;
        for (UXXmlWrapperBase next = place; next.IsNodeValid(); next.GetParent(&next)) {
            place = next;
            tags.push_back(tag_of(place));
            stop = test_level_stop(place, top, useEventRoot != 0);
            if (stop != LevelStop::kGoOn) break;
        }
        if (stop == LevelStop::kRefused) return kBadArgument;
        if (top != nullptr && stop != LevelStop::kFound) return kBadArgument;
        *path = dotted_path(tags);
        if (top != nullptr) *top = place;
        return static_cast<int>(tags.size()) - 1;
    });
}

int uxtree_get_row_number(UXXmlWrapperBase* tree, const char* path) {
    return at_boundary(kBadArgument, [&] {
        if (path == nullptr || !usable(tree)) return kBadArgument;
        CWBOStringArray tokens;
        UXGetTokens(tokens, path, '.', '"');
        if (tokens.IsEmpty() || tag_of(*tree).CompareNoCase(tokens[0]) != 0) return kBadArgument;
        int row = 1;
        UXXmlWrapperBase node = *tree;
        for (int i = 1; i < tokens.GetSize(); ++i) {
            if (!step_to_row(node, tokens[i], row)) return kBadArgument;
        }
        return row;
    });
}

}  // extern "C"
