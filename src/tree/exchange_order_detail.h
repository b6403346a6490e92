// The order in which an exchange sort leaves its items, without the exchanges.
#pragma once

#include <cstdint>
#include <vector>

#include "base/large_memory.h"

namespace ux {

// A million items that are put into a thousand places in turn would wait for addresses.
template <typename T>
using LargeVector = std::vector<T, LargeMemory<T>>;

struct KeyedItem {
    std::uint32_t key;
    std::uint32_t number;
};

// The exchange sort compares every item i with every later item j and exchanges the two when the
// key of i is larger than that of j. Leaves the items, whose numbers must rise, in the order that
// it ends with. The sort is not stable; this is exactly its order.
//
// Different keys take linear time. With equal ones each item also costs the logarithm of the number
// of different keys, and at most sqrt(n) / 32 steps over a table of counts; both are far from the
// n * n / 2 exchanges.
void exchange_sort(LargeVector<KeyedItem>& items);

}  // namespace ux
