// The order in which the exchange sort of children leaves equal keys, in less than its time.
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <limits>
#include <numeric>

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
using Items = std::vector<KeyedItem>;

// Many items go through one pass for every byte in which their keys differ, which keeps the order
// of equal keys.
void sort_by_bytes(Items& items) {
    constexpr unsigned kBytes = 4;
    constexpr std::size_t kByteValues = 256;
    const auto byte_of = [](const KeyedItem& item, unsigned byte) {
        return item.key >> 8 * byte & (kByteValues - 1);
    };
    std::array<std::array<Index, kByteValues>, kBytes> counts{};
    for (const KeyedItem& item : items) {
        for (unsigned byte = 0; byte < kBytes; ++byte) ++counts[byte][byte_of(item, byte)];
    }
    Items sorted(items.size());
    for (unsigned byte = 0; byte < kBytes; ++byte) {
        auto& places = counts[byte];
        if (places[byte_of(items[0], byte)] == items.size()) continue;
        std::exclusive_scan(places.begin(), places.end(), places.begin(), Index{0});
        for (const KeyedItem& item : items) sorted[places[byte_of(item, byte)]++] = item;
        items.swap(sorted);
    }
}

// By key, equal ones in their first order.
void sort_by_key(Items& items) {
    constexpr std::size_t kFew = 256;
    if (items.size() >= kFew) return sort_by_bytes(items);
    std::sort(items.begin(), items.end(), [](const KeyedItem& a, const KeyedItem& b) {
        return a.key != b.key ? a.key < b.key : a.number < b.number;
    });
}

// How many were added below a position, in logarithmic time.
class CountTree {
public:
    explicit CountTree(std::size_t size) : sums_(size + 1, 0) {}
    void add(std::size_t position) {
        for (std::size_t i = position + 1; i < sums_.size(); i += i & (~i + 1)) ++sums_[i];
    }
    Index count_before(std::size_t position) const {
        Index sum = 0;
        for (std::size_t i = position; i > 0; i &= i - 1) sum += sums_[i];
        return sum;
    }

private:
    std::vector<Index> sums_;
};

// Where the runs of equal keys begin among the items sorted by key, and behind them the end.
std::vector<Index> run_bounds(const Items& sorted) {
    std::vector<Index> bounds;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (i == 0 || sorted[i].key != sorted[i - 1].key) bounds.push_back(static_cast<Index>(i));
    }
    bounds.push_back(static_cast<Index>(sorted.size()));
    return bounds;
}

// For every item, by its number, how many items before it have a smaller key.
std::vector<Index> smaller_before(const Items& sorted, const std::vector<Index>& bounds) {
    constexpr Index kNoItem = std::numeric_limits<Index>::max();
    Index last = 0;
    for (const KeyedItem& item : sorted) last = std::max(last, item.number);
    std::vector<Index> runs(std::size_t{last} + 1, kNoItem);
    for (std::size_t run = 0; run + 1 < bounds.size(); ++run) {
        for (Index i = bounds[run]; i < bounds[run + 1]; ++i) {
            runs[sorted[i].number] = static_cast<Index>(run);
        }
    }
    std::vector<Index>& counts = runs;  // each takes the place of what is no longer needed
    CountTree met(bounds.size() - 1);
    for (Index& run : runs) {
        if (run == kNoItem) continue;
        const Index own = run;
        run = met.count_before(own);
        met.add(own);
    }
    return counts;
}

// Places on a circle that are taken one after the other.
class Circle {
public:
    // All places are left, and the first one is next.
    void reset(std::size_t size) {
        left_.assign((size + kBits - 1) / kBits, ~std::uint64_t{0});
        if (size % kBits != 0) left_.back() >>= kBits - size % kBits;
        counts_.assign(left_.size(), kBits);
        counts_.back() = static_cast<std::uint8_t>(size - (left_.size() - 1) * kBits);
        enter(0);
    }
    // Takes the place that is next after passing over others; fewer than are left.
    std::size_t take(std::size_t others) {
        while (others >= aheadCount_) {
            others -= aheadCount_;
            enter(word_ + 1 == left_.size() ? 0 : word_ + 1);
        }
        aheadCount_ -= others + 1;
        for (; others > 0; --others) ahead_ &= ahead_ - 1;
        const auto bit = static_cast<std::size_t>(std::countr_zero(ahead_));
        ahead_ &= ahead_ - 1;
        left_[word_] &= ~(std::uint64_t{1} << bit);
        --counts_[word_];
        return word_ * kBits + bit;
    }

private:
    static constexpr std::size_t kBits = 64;

    void enter(std::size_t word) {
        word_ = word;
        ahead_ = left_[word];
        aheadCount_ = counts_[word];
    }

    std::vector<std::uint64_t> left_;   // a bit for each place
    std::vector<std::uint8_t> counts_;  // of the bits in each word
    std::size_t word_ = 0;
    std::uint64_t ahead_ = 0;  // the places left of this word that are still ahead
    std::size_t aheadCount_ = 0;
};

// Orders one run. Worked backwards on the circle of the run's final places, from the last one down:
// undo the rotation that followed an item's arrival, and the item stands on the next place left.
class RunSorter {
public:
    RunSorter(Items& items, const std::vector<Index>& smaller) : items_(items), smaller_(smaller) {}
    void order(std::size_t first, std::size_t end) {
        const std::size_t size = end - first;
        arrived_.resize(size);
        for (std::size_t i = 0; i < size; ++i) arrived_[i] = items_[first + i].number;
        circle_.reset(size);
        std::size_t seen = first;  // smaller items met by then, all in the end
        for (std::size_t left = size; left > 0; --left) {
            const Index item = arrived_[left - 1];
            const std::size_t rotation = seen - smaller_[item];
            const std::size_t place = circle_.take(rotation < left ? rotation : rotation % left);
            items_[end - 1 - place].number = item;
            seen = smaller_[item];
        }
    }

private:
    Items& items_;
    const std::vector<Index>& smaller_;
    std::vector<Index> arrived_;
    Circle circle_;
};

}  // namespace

void exchange_sort(std::vector<KeyedItem>& items) {
    sort_by_key(items);
    const auto same_key = [](const KeyedItem& a, const KeyedItem& b) { return a.key == b.key; };
    if (std::adjacent_find(items.begin(), items.end(), same_key) == items.end()) return;
    const std::vector<Index> bounds = run_bounds(items);
    const std::vector<Index> smaller = smaller_before(items, bounds);
    RunSorter runs(items, smaller);
    for (std::size_t run = 0; run + 1 < bounds.size(); ++run) {
        if (bounds[run + 1] - bounds[run] > 1) runs.order(bounds[run], bounds[run + 1]);
    }
}

}  // namespace ux
