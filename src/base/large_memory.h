// Memory that may get large, for containers of the standard library and for stores.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include "base/platform.h"

namespace ux {

// Large blocks are aligned and advised for large pages: what fills them otherwise spends more time
// in page faults than in its own work, and what jumps about in them waits for addresses too.
template <typename Item>
struct LargeMemory {
    using value_type = Item;
    static constexpr std::size_t kLargeBytes = std::size_t{1} << 21;

    LargeMemory() = default;
    template <typename Other>
    LargeMemory(const LargeMemory<Other>& /*other*/) {}

    Item* allocate(std::size_t count) const {
        const std::size_t bytes = count * kItemBytes;
        void* const memory = ::operator new(bytes, alignment_of(bytes));
        if (bytes >= kLargeBytes) use_large_pages(memory, bytes);
        return static_cast<Item*>(memory);
    }
    void deallocate(Item* memory, std::size_t count) const noexcept {
        ::operator delete(memory, alignment_of(count * kItemBytes));
    }
    // Items that have no constructor are not cleared: most are written before they are read.
    template <typename Other>
    void construct(Other* item) const {
        ::new (static_cast<void*>(item)) Other;
    }
    template <typename Other, typename... Arguments>
    void construct(Other* item, Arguments&&... arguments) const {
        ::new (static_cast<void*>(item)) Other(std::forward<Arguments>(arguments)...);
    }
    template <typename Other>
    bool operator==(const LargeMemory<Other>& /*other*/) const {
        return true;
    }

private:
    // NOLINTNEXTLINE(bugprone-sizeof-expression): items may be pointers
    static constexpr std::size_t kItemBytes = sizeof(Item);

    static std::align_val_t alignment_of(std::size_t bytes) {
        return std::align_val_t{bytes >= kLargeBytes ? kLargeBytes : 64};
    }
};

}  // namespace ux
