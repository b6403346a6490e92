// Finding entries of an identifier array by value, at the same cost for a million as for ten.
#pragma once

#include <cstdint>
#include <vector>

#include "uxtree/host/array.h"

namespace ux {

// The outcome is that of a search from the first entry on. The array must stay as it is while the
// index is in use.
class IdIndex {
public:
    explicit IdIndex(const CArray<int, int>& ids);

    // Index of the first entry equal to id, -1 when there is none. Asking in the array's order,
    // with few left out, is the cheapest.
    int find(int id) {
        constexpr int kLookAhead = 4;
        // The next entries may be taken at once only where no earlier one can be equal.
        for (int i = next_; repeated_ < 0 && i < size_ && i - next_ < kLookAhead; ++i) {
            if (ids_[i] != id) continue;
            next_ = i + 1;
            return i;
        }
        return look_up(id);
    }
    // Index of the first entry that occurs again further on, -1 when all differ.
    int first_repeated() const { return repeated_; }

private:
    struct Entry {
        int id;
        int index;
    };

    void build();
    int look_up(int id);
    Entry& slot_of(int id);

    const int* ids_;
    int size_;
    int next_ = 0;
    int repeated_ = -1;
    unsigned bucketShift_ = 0;
    std::uint64_t multiplier_ = 0;
    std::vector<Entry> table_;
};

}  // namespace ux
