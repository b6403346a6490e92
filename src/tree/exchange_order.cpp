#include <algorithm>
#include <bit>
#include <cstddef>

#include "tree/exchange_order_detail.h"

// Why this is the order of the exchange sort: what round i carries past item j does not depend on
// later items, so that after item j the items 0..j stand as the sort of these items alone would
// leave them. Item j meets that sorted list from its start, and the rules of the exchange then do
// two things: the item goes to the end of the run of items with its own key, and in each run with a
// larger key the first item goes to the end of the run. So the run of one key is a queue that takes
// its items in their first order and is rotated by one step for every smaller item that comes
// along.

namespace ux {
namespace {

using Index = std::uint32_t;

// Counts below a position, or the position of the k-th counted one, in logarithmic time.
class CountTree {
public:
    explicit CountTree(std::size_t size) : sums_(size + 1, 0) {}
    // Every position counts one.
    void fill() {
        for (std::size_t i = 1; i < sums_.size(); ++i) sums_[i] = static_cast<Index>(i & (~i + 1));
    }
    void add(std::size_t position, int change) {
        for (std::size_t i = position + 1; i < sums_.size(); i += i & (~i + 1)) {
            sums_[i] += static_cast<Index>(change);
        }
    }
    Index count_before(std::size_t position) const {
        Index sum = 0;
        for (std::size_t i = position; i > 0; i &= i - 1) sum += sums_[i];
        return sum;
    }
    std::size_t position_of(Index k) const {
        std::size_t position = 0;
        for (std::size_t step = std::bit_floor(sums_.size() - 1); step > 0; step /= 2) {
            const std::size_t next = position + step;
            if (next >= sums_.size() || sums_[next] > k) continue;
            k -= sums_[next];
            position = next;
        }
        return position;
    }

private:
    std::vector<Index> sums_;
};

// The items by key, and then in their first order.
std::vector<Index> sorted_items(const std::vector<std::uint32_t>& keys) {
    std::vector<std::uint64_t> keyed(keys.size());  // key and item in one word: fast to compare
    for (std::size_t i = 0; i < keys.size(); ++i) keyed[i] = std::uint64_t{keys[i]} << 32 | i;
    std::sort(keyed.begin(), keyed.end());
    std::vector<Index> items(keys.size());
    for (std::size_t i = 0; i < items.size(); ++i) items[i] = static_cast<Index>(keyed[i]);
    return items;
}

struct Run {  // of equal keys, among the items sorted by key and then by their first order
    std::size_t first;
    std::size_t size;
};

std::vector<Run> runs_of_equal_keys(const std::vector<std::uint32_t>& keys,
                                    const std::vector<Index>& sorted) {
    std::vector<Run> runs;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (i > 0 && keys[sorted[i]] == keys[sorted[i - 1]]) {
            ++runs.back().size;
        } else {
            runs.push_back({i, 1});
        }
    }
    return runs;
}

// For every item, how many items before it have a smaller key.
std::vector<Index> smaller_before(const std::vector<Index>& sorted, const std::vector<Run>& runs) {
    std::vector<Index> runOf(sorted.size());
    for (std::size_t run = 0; run < runs.size(); ++run) {
        for (std::size_t i = 0; i < runs[run].size; ++i) {
            runOf[sorted[runs[run].first + i]] = static_cast<Index>(run);
        }
    }
    std::vector<Index> counts(sorted.size());
    CountTree met(runs.size());
    for (std::size_t item = 0; item < counts.size(); ++item) {
        counts[item] = met.count_before(runOf[item]);
        met.add(runOf[item], 1);
    }
    return counts;
}

// Orders one run. Worked backwards on the circle of the run's final places: undo the rotation that
// followed an item's arrival, then the item stands just before the head; take its place out.
void order_run(const Run& run, const std::vector<Index>& smaller, std::vector<Index>& sorted) {
    const std::vector<Index> items(
        sorted.begin() + static_cast<std::ptrdiff_t>(run.first),
        sorted.begin() + static_cast<std::ptrdiff_t>(run.first + run.size));
    CountTree places(run.size);
    places.fill();
    std::size_t head = 0;          // among the places left
    std::size_t seen = run.first;  // smaller items met by then, all in the end
    for (std::size_t left = run.size; left > 0; --left) {
        const Index item = items[left - 1];
        const std::size_t rotation = (seen - smaller[item]) % left;
        head = (head + left - rotation) % left;
        const std::size_t last = (head + left - 1) % left;
        const std::size_t place = places.position_of(static_cast<Index>(last));
        sorted[run.first + place] = item;
        places.add(place, -1);
        if (head > last) --head;  // head is 0 when the last place is behind it
        seen = smaller[item];
    }
}

}  // namespace

std::vector<Index> exchange_sort_order(const std::vector<std::uint32_t>& keys) {
    std::vector<Index> sorted = sorted_items(keys);
    const std::vector<Run> runs = runs_of_equal_keys(keys, sorted);
    if (runs.size() == sorted.size()) return sorted;  // distinct keys: one order only
    const std::vector<Index> smaller = smaller_before(sorted, runs);
    for (const Run& run : runs) {
        if (run.size > 1) order_run(run, smaller, sorted);
    }
    return sorted;
}

}  // namespace ux
