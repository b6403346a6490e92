// The order in which an exchange sort leaves its items, without the exchanges.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "uxtree/host/array.h"

namespace ux {

// Takes memory from the host, as its arrays do: much of it has large pages, without which a million
// items that are put into a thousand places in turn would wait for addresses.
template <typename T>
struct HostMemory {
    using value_type = T;
    HostMemory() = default;
    template <typename Other>
    HostMemory(const HostMemory<Other>& /*unused*/) {}
    T* allocate(std::size_t count) {
        return static_cast<T*>(UXResizeMemory(nullptr, 0, count * sizeof(T)));
    }
    void deallocate(T* memory, std::size_t /*unused*/) { std::free(memory); }
    bool operator==(const HostMemory& /*unused*/) const { return true; }
};
template <typename T>
using HostVector = std::vector<T, HostMemory<T>>;

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
void exchange_sort(HostVector<KeyedItem>& items);

}  // namespace ux
