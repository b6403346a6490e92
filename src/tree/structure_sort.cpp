// Sorting children by an integer attribute.
#include <cstddef>
#include <cstdint>

#include "uxtree/tree/structure.h"

#include "frame/guards.h"
#include "frame/walk.h"
#include "tree/exchange_order_detail.h"

using namespace ux;

namespace {

std::uint32_t key_of(int value, bool ascending) {
    const std::uint32_t rising = static_cast<std::uint32_t>(value) ^ 0x80000000U;
    return ascending ? rising : ~rising;
}

// For every child, the number of the child whose content it gets: those with the attribute stand
// in the order of an exchange sort, the others keep their own.
CArray<int, int> sorted_order(const UXXmlWrapperBase& parent, const char* attrName,
                              bool ascending) {
    constexpr int kKeyed = -1;
    CArray<int, int> order;
    order.SetSize(parent.GetNodeCount());
    int* const numbers = order.GetData();
    LargeVector<KeyedItem> keyed;
    keyed.reserve(static_cast<std::size_t>(order.GetSize()));
    const UXNameKey key(attrName);
    int number = 0;
    for (const UXXmlWrapperBase& child : children(parent)) {
        int value = 0;
        const bool hasKey = child.GetPropertyValue(key, value) != 0;
        if (hasKey) keyed.push_back({key_of(value, ascending), static_cast<std::uint32_t>(number)});
        numbers[number] = hasKey ? kKeyed : number;
        ++number;
    }
    exchange_sort(keyed);
    auto next = keyed.begin();
    for (int i = 0; i < order.GetSize(); ++i) {
        if (numbers[i] == kKeyed) numbers[i] = static_cast<int>(next++->number);
    }
    return order;
}

}  // namespace

extern "C" bool uxtree_sort_children_by_int_attribute(UXXmlWrapperBase* node, const char* attrName,
                                                      int ascending) {
    return at_boundary(false, [&] {
        if (!usable(node) || node->GetNodeCount() < 2 || !given(attrName)) return false;
        // Intended: the order is that of an exchange sort, which is not stable, and children
        // without the attribute keep their places.
        return node->ArrangeChildContents(sorted_order(*node, attrName, ascending != 0)) != 0;
    });
}
