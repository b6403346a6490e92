// The order in which an exchange sort leaves its items, without the exchanges.
#pragma once

#include <cstdint>
#include <vector>

namespace ux {

// For keys k[0], k[1], ... the exchange sort compares every item i with every later item j and
// exchanges the two when k[i] > k[j]. Yields, for each place, the item that ends up there. The sort
// is not stable; this is exactly its order.
//
// O(n log n) comparisons for any keys, equal ones included, instead of n * n / 2.
std::vector<std::uint32_t> exchange_sort_order(const std::vector<std::uint32_t>& keys);

}  // namespace ux
