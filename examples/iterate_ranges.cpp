// Ranges: build a range tree, walk its ranges and sub-ranges, renumber it.
#include <cstdio>

#include "uxtree/uxtree_Utils.h"

namespace {

// An invalid range asks for a new one: it comes back with its number, label and slots.
bool add_range(UXXmlWrapperBase& tree, const char* x, const char* y, const char* z) {
    constexpr int kNoId = -1;
    constexpr int kPlainType = 0;
    constexpr int kReset = 1;
    UXXmlWrapperBase range;
    if (vctree_add_subrange_to_composite_range(range, tree, kNoId, 0, kPlainType) == 0) {
        return false;
    }
    return vctree_set_composite_subrange_values(range, x, y, z, 0, kPlainType, 0, kReset) == 1;
}

// The same loop serves hierarchical and flat trees.
int print_ranges(UXXmlWrapperBase& tree) {
    int count = 0;
    VCRangeTreeIterator ranges(tree);
    UXXmlWrapperBase first;
    while (ranges.Get(first) != 0) {
        std::printf("range %d:", ++count);
        VCSubRangeTreeIterator subRanges(first);
        UXXmlWrapperBase subRange;
        while (subRanges.Get(subRange) != 0) {
            CStringUTF8 tag;
            CStringUTF8 value;
            subRange.GetTagName(tag);
            subRange.NodeValue(value, 1, 1, nullptr);
            std::printf(" %s=%s", static_cast<const char*>(tag), static_cast<const char*>(value));
        }
        std::printf("\n");
    }
    return count;
}

}  // namespace

int main() {
    UXXmlWrapperBase tree;
    tree.CreateNew(0, "InputData");
    if (!add_range(tree, "Col(A)", "Col(B)", "")) return 1;
    if (!add_range(tree, "Col(A)", "Col(C)", "Col(D)")) return 1;
    if (!add_range(tree, "Col(E)", "Col(F)", "")) return 1;
    if (print_ranges(tree) != 3) return 1;

    UXXmlWrapperBase second;
    tree.FindChild("Range2", &second, 1);
    second.RemoveNode();
    constexpr int kContiguousTags = 1;  // 0 keeps the tags and numbers the labels alone
    vctree_reenum_subranges_in_range_tree(tree, kContiguousTags);
    std::printf("after removing the second:\n");
    if (print_ranges(tree) != 2) return 1;

    UXXmlWrapperBase renumbered;
    CStringUTF8 label;
    if (tree.FindChild("Range2", &renumbered, 1) == 0) return 1;
    renumbered.GetPropertyValue("Label", label, 0);
    std::printf("the last is now \"%s\"\n", static_cast<const char*>(label));
    return label == "Range 2" ? 0 : 1;
}
