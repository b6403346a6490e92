// The table behind searches for identifiers, made only when it pays.
#include "data/id_index.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>

#include "base/seeded_hash.h"

namespace ux {
namespace {

constexpr int kLinearSize = 16;
constexpr unsigned kBucketBits = 4;
constexpr std::size_t kBucketSize = std::size_t{1} << kBucketBits;
constexpr int kFree = -1;

bool ascend(const int* ids, int size) {
    return std::adjacent_find(ids, ids + size, std::greater_equal<>()) == ids + size;
}

// Identifiers that lie close together are told apart by a bit for each that there may be, which
// takes no more memory than they do. False also for those that are scattered.
bool differ_at_close_range(const int* ids, int size) {
    constexpr std::int64_t kBitsPerId = 32;
    const auto [least, most] = std::minmax_element(ids, ids + size);
    const std::int64_t range = std::int64_t{*most} - *least + 1;
    if (range > size * kBitsPerId) return false;
    std::vector<bool> met(static_cast<std::size_t>(range));
    for (int i = 0; i < size; ++i) {
        auto bit = met[static_cast<std::size_t>(std::int64_t{ids[i]} - *least)];
        if (bit) return false;
        bit = true;
    }
    return true;
}

}  // namespace

// Where no identifier repeats, the table waits until a search misses the entries that are next in
// order.
IdIndex::IdIndex(const CArray<int, int>& ids) : ids_(ids.GetData()), size_(ids.GetSize()) {
    if (ascend(ids_, size_) || differ_at_close_range(ids_, size_)) return;
    if (size_ > kLinearSize) {
        build();
        return;
    }
    for (int i = 0; i < size_ && repeated_ < 0; ++i) {
        if (std::find(ids_ + i + 1, ids_ + size_, ids_[i]) != ids_ + size_) repeated_ = i;
    }
}

int IdIndex::look_up(int id) {
    int index = kFree;
    if (size_ <= kLinearSize) {
        const int* const found = std::find(ids_, ids_ + size_, id);
        if (found != ids_ + size_) index = static_cast<int>(found - ids_);
    } else {
        if (table_.empty()) build();
        index = slot_of(id).index;
    }
    if (index >= 0) next_ = index + 1;
    return index;
}

void IdIndex::build() {
    const std::size_t buckets =
        std::bit_ceil(2 * static_cast<std::size_t>(size_) / kBucketSize + 1);
    bucketShift_ = 64U - static_cast<unsigned>(std::countr_zero(buckets));
    multiplier_ = seeded_multiplier();
    table_.assign(buckets * kBucketSize, Entry{0, kFree});
    for (int i = 0; i < size_; ++i) {
        Entry& entry = slot_of(ids_[i]);
        if (entry.index == kFree) {
            entry = {ids_[i], i};
        } else if (repeated_ < 0 || entry.index < repeated_) {
            repeated_ = entry.index;
        }
    }
}

// Identifiers that follow each other share a bucket, hence a cache line; the buckets are spread by
// multiplication with a secret, so that no pattern of identifiers crowds one of them, chosen or not.
IdIndex::Entry& IdIndex::slot_of(int id) {
    const std::uint64_t key = static_cast<std::uint32_t>(id) >> kBucketBits;
    const std::uint64_t bucket = bucketShift_ == 64U ? 0 : (key * multiplier_) >> bucketShift_;
    std::size_t slot = static_cast<std::size_t>(bucket) * kBucketSize +
                       (static_cast<std::uint32_t>(id) & (kBucketSize - 1));
    while (table_[slot].index != kFree && table_[slot].id != id) {
        slot = slot + 1 == table_.size() ? 0 : slot + 1;
    }
    return table_[slot];
}

}  // namespace ux
