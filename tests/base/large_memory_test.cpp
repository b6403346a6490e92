// Memory for large tables.
#include "base/large_memory.h"

#include <cstdint>

#include <gtest/gtest.h>

// What one allocator gave may be returned by another, of other items too.
TEST(LargeMemory, IsTheSameForAllItems) {
    const ux::LargeMemory<char> bytes;
    const ux::LargeMemory<std::uint64_t> words(bytes);
    EXPECT_TRUE(words == bytes);
    EXPECT_FALSE(bytes != words);
    for (const std::size_t count : {std::size_t{1}, std::size_t{1} << 20}) {
        char* const memory = bytes.allocate(count * sizeof(std::uint64_t));
        words.deallocate(reinterpret_cast<std::uint64_t*>(memory), count);
    }
}
