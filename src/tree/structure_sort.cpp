// Sorting children by an integer attribute.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "uxtree/tree/structure.h"

#include "frame/guards.h"
#include "frame/walk.h"
#include "tree/exchange_order_detail.h"

using namespace ux;

namespace {

// Children with the attribute, in document order, and their keys in the order to sort by.
struct KeyedChildren {
    std::vector<UXXmlWrapperBase> nodes;
    std::vector<std::uint32_t> keys;
};

std::uint32_t key_of(int value, bool ascending) {
    const std::uint32_t rising = static_cast<std::uint32_t>(value) ^ 0x80000000U;
    return ascending ? rising : ~rising;
}

KeyedChildren keyed_children(const UXXmlWrapperBase& parent, const char* attrName, bool ascending) {
    KeyedChildren keyed;
    keyed.nodes.reserve(static_cast<std::size_t>(parent.GetNodeCount()));
    for (const UXXmlWrapperBase& child : children(parent)) {
        int value = 0;
        if (!child.GetPropertyValue(attrName, value, 0)) continue;
        keyed.nodes.push_back(child);
        keyed.keys.push_back(key_of(value, ascending));
    }
    return keyed;
}

// Gives every node the content of the node at order[place]. Each content that changes place is
// copied once along its cycle; the first of a cycle waits as a copy on a tree of its own. When a
// copy cannot be made, the cycle is closed where it stands and the rest keeps its places, so that
// at most the content in waiting is lost; false then.
bool exchange_contents(std::vector<UXXmlWrapperBase>& nodes, std::vector<std::uint32_t> order) {
    UXXmlWrapperBase waitingRoom;
    waitingRoom.CreateNew(0, nullptr);
    for (std::uint32_t first = 0; first < order.size(); ++first) {
        if (order[first] == first) continue;
        UXXmlWrapperBase waiting;
        if (!waitingRoom.AddNodeCopy(&nodes[first], 1, &waiting)) return false;
        std::uint32_t place = first;
        bool copied = true;
        while (order[place] != first) {
            const std::uint32_t source = order[place];
            copied = nodes[place].ReplaceByNodeCopy(&nodes[source], 1, 0) != 0;
            if (!copied) break;
            order[place] = place;
            place = source;
        }
        if (!nodes[place].ReplaceByNodeCopy(&waiting, 1, 0) || !copied) return false;
        order[place] = place;
        waiting.RemoveNode();
    }
    return true;
}

}  // namespace

extern "C" bool uxtree_sort_children_by_int_attribute(UXXmlWrapperBase* node, const char* attrName,
                                                      int ascending) {
    return at_boundary(false, [&] {
        if (!usable(node) || node->GetNodeCount() < 2 || !given(attrName)) return false;
        KeyedChildren keyed = keyed_children(*node, attrName, ascending != 0);
        // Intended: the order is that of an exchange sort, which is not stable, and children
        // without the attribute keep their places.
        return exchange_contents(keyed.nodes, exchange_sort_order(keyed.keys));
    });
}
