// The order in which the exchange sort of children leaves equal keys, in less than its time.
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <limits>
#include <numeric>
#include <vector>

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
using Items = LargeVector<KeyedItem>;
using Indices = LargeVector<Index>;

// Many items go through one pass for every byte in which their keys differ, which keeps the order
// of equal keys.
void sort_by_bytes(Items& items) {
    constexpr unsigned kBytes = 4;
    constexpr std::size_t kByteValues = 256;
    const auto byteOf = [](const KeyedItem& item, unsigned byte) {
        return item.key >> 8 * byte & (kByteValues - 1);
    };
    std::array<std::array<Index, kByteValues>, kBytes> counts{};
    for (const KeyedItem& item : items) {
        for (unsigned byte = 0; byte < kBytes; ++byte) ++counts[byte][byteOf(item, byte)];
    }
    Items sorted(items.size());
    for (unsigned byte = 0; byte < kBytes; ++byte) {
        auto& places = counts[byte];
        if (places[byteOf(items[0], byte)] == items.size()) continue;
        std::exclusive_scan(places.begin(), places.end(), places.begin(), Index{0});
        for (const KeyedItem& item : items) sorted[places[byteOf(item, byte)]++] = item;
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

// Counts by position, summed up for the left half of every part of a halved range of positions.
class CountTree {
public:
    explicit CountTree(std::size_t size) : leaves_(std::bit_ceil(size)), left_(leaves_, 0) {}
    // Adds one at a position; yields how many were at the positions below.
    Index add(std::size_t position) {
        Index below = 0;
        for (std::size_t node = leaves_ + position; node > 1; node /= 2) {
            const Index inRight = node % 2;
            Index& left = left_[node / 2];
            below += left * inRight;
            left += 1 - inRight;
        }
        return below;
    }

private:
    std::size_t leaves_;
    Indices left_;  // the root is 1, the halves of i are 2 * i and 2 * i + 1
};

// Where the runs of equal keys begin among the items sorted by key, and behind them the end.
Indices run_bounds(const Items& sorted) {
    Indices bounds;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (i == 0 || sorted[i].key != sorted[i - 1].key) bounds.push_back(static_cast<Index>(i));
    }
    bounds.push_back(static_cast<Index>(sorted.size()));
    return bounds;
}

// For every item, in the order of sorted, how many items before it have a smaller key.
Indices smaller_before(const Items& sorted, const Indices& bounds) {
    constexpr Index kNoItem = std::numeric_limits<Index>::max();
    Index last = 0;
    for (const KeyedItem& item : sorted) last = std::max(last, item.number);
    Indices runs(std::size_t{last} + 1, kNoItem);  // of the items in their first order
    for (std::size_t run = 0; run + 1 < bounds.size(); ++run) {
        for (Index i = bounds[run]; i < bounds[run + 1]; ++i) {
            runs[sorted[i].number] = static_cast<Index>(run);
        }
    }
    Indices counts(sorted.size());
    Indices next = bounds;
    CountTree met(bounds.size() - 1);
    for (const Index run : runs) {
        if (run != kNoItem) counts[next[run]++] = met.add(run);
    }
    return counts;
}

// The place of the set bit that has so many set bits below it: its byte, and its place in the byte.
// Both are found without a branch, which would mostly go the way that was not foreseen.
unsigned place_of_bit(std::uint64_t word, unsigned below) {
    constexpr std::uint64_t kOnes = ~std::uint64_t{0} / 0xff;  // one in each byte
    constexpr std::uint64_t kDiagonal = 0x8040201008040201U;   // bit i in byte i
    // Multiplied by kOnes, each byte becomes the sum of the bytes up to it. How many of these sums
    // are not above a limit?
    const auto countUpTo = [](std::uint64_t limit, std::uint64_t sums) {
        return static_cast<unsigned>((((limit | 0x80) * kOnes - sums) >> 7 & kOnes) * kOnes >> 56);
    };
    std::uint64_t bits = word - (word >> 1 & kOnes * 0x55);
    bits = (bits & kOnes * 0x33) + (bits >> 2 & kOnes * 0x33);
    const std::uint64_t sums = ((bits + (bits >> 4)) & kOnes * 0x0f) * kOnes;
    const unsigned shift = 8 * countUpTo(below, sums);
    const std::uint64_t spread = (word >> shift & 0xff) * kOnes & kDiagonal;
    const std::uint64_t places = ((spread + kOnes * 0x7f) >> 7 & kOnes) * kOnes;
    return shift + countUpTo(below - ((sums << 8) >> shift & 0xff), places);
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
    std::size_t take(Index others) {
        while (others >= aheadCount_) {
            others -= aheadCount_;
            enter(word_ + 1 == left_.size() ? 0 : word_ + 1);
        }
        aheadCount_ -= others + 1;
        const unsigned bit = place_of_bit(ahead_, others);
        ahead_ &= ~std::uint64_t{1} << bit;
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
    Index aheadCount_ = 0;
};

// Orders one run. Worked backwards on the circle of the run's final places, from the last one down:
// undo the rotation that followed an item's arrival, and the item stands on the next place left.
class RunSorter {
public:
    RunSorter(Items& items, const Indices& smaller) : items_(items), smaller_(smaller) {}
    void order(Index first, Index end) {
        const Index size = end - first;
        arrived_.assign(items_.begin() + first, items_.begin() + end);
        circle_.reset(size);
        Index seen = first;  // smaller items met by then, all in the end
        for (Index left = size; left > 0; --left) {
            const Index smaller = smaller_[first + left - 1];
            const Index rotation = seen - smaller;
            const std::size_t place = circle_.take(rotation < left ? rotation : rotation % left);
            items_[end - 1 - place].number = arrived_[left - 1].number;
            seen = smaller;
        }
    }

private:
    Items& items_;
    const Indices& smaller_;
    Items arrived_;
    Circle circle_;
};

}  // namespace

void exchange_sort(LargeVector<KeyedItem>& items) {
    sort_by_key(items);
    const auto sameKey = [](const KeyedItem& a, const KeyedItem& b) { return a.key == b.key; };
    if (std::adjacent_find(items.begin(), items.end(), sameKey) == items.end()) return;
    const Indices bounds = run_bounds(items);
    const Indices smaller = smaller_before(items, bounds);
    RunSorter runs(items, smaller);
    for (std::size_t run = 0; run + 1 < bounds.size(); ++run) {
        if (bounds[run + 1] - bounds[run] > 1) runs.order(bounds[run], bounds[run + 1]);
    }
}

}  // namespace ux
