// Blocks of bytes that are given back in bulk.
#include "host/arena.h"

#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

using namespace uxhost;

namespace {

struct Block {
    Ref ref;
    std::size_t bytes;
    char mark;
};

std::size_t random_size(std::mt19937& random) {
    switch (random() % 8) {
        case 0:
            return 1 + random() % 600'000;
        case 1:
        case 2:
            return 1 + random() % 140'000;
        case 3:
        case 4:
            return 1 + random() % 5'000;
        default:
            return 1 + random() % 600;
    }
}

Block allocated(ByteArena& arena, std::size_t bytes, char mark) {
    const Ref ref = arena.allocate(bytes);
    std::fill_n(arena.at(ref), bytes, mark);
    return {ref, bytes, mark};
}

bool is_intact(const ByteArena& arena, const Block& block) {
    const char* const bytes = arena.at(block.ref);
    return std::all_of(bytes, bytes + block.bytes, [&](char c) { return c == block.mark; });
}

TEST(ByteArena, BlocksKeepTheirBytesWhateverHappensToOthers) {
    std::mt19937 random(11);
    ByteArena arena;
    std::vector<Block> blocks;
    for (int step = 0; step < 6000; ++step) {
        // Grows to some hundred blocks, then to none, and again.
        const bool growing = step / 1000 % 2 == 0;
        if (blocks.empty() || random() % 10 < (growing ? 6U : 3U)) {
            blocks.push_back(allocated(arena, random_size(random), static_cast<char>(step)));
        } else {
            std::swap(blocks[random() % blocks.size()], blocks.back());
            ASSERT_TRUE(is_intact(arena, blocks.back())) << step;
            arena.release(blocks.back().ref, blocks.back().bytes);
            blocks.pop_back();
        }
        if (step % 1500 != 1499) continue;
        ByteArena copy;
        copy.copy_from(arena);
        std::vector<Block> more;
        for (int i = 0; i < 50; ++i) more.push_back(allocated(copy, random_size(random), 'm'));
        for (const Block& block : blocks) ASSERT_TRUE(is_intact(copy, block)) << step;
        for (const Block& block : more) ASSERT_TRUE(is_intact(copy, block)) << step;
        for (const Block& block : blocks) copy.release(block.ref, block.bytes);
        for (const Block& block : more) ASSERT_TRUE(is_intact(copy, block)) << step;
    }
    for (const Block& block : blocks) ASSERT_TRUE(is_intact(arena, block));
}

// The number of a reference's chunk tells whether one was given back.
TEST(ByteArena, GivesBackChunksOfLongBlocksThatAreAllFree) {
    constexpr std::size_t kBytes = std::size_t{1} << 17;
    constexpr std::size_t kBlocks = 160;
    const auto chunk_of = [](Ref ref) { return ref >> 18; };
    ByteArena arena;
    for (int round = 0; round < 5; ++round) {
        std::vector<Ref> blocks;
        for (std::size_t i = 0; i < kBlocks; ++i) blocks.push_back(arena.allocate(kBytes));
        const Ref last = chunk_of(*std::max_element(blocks.begin(), blocks.end()));
        EXPECT_GE(last, 10U);
        EXPECT_LE(last, 16U);
        for (const Ref block : blocks) arena.release(block, kBytes);
        const Ref own = arena.allocate(3 * kFullChunkBytes);
        EXPECT_LT(chunk_of(own), last);
        arena.release(own, 3 * kFullChunkBytes);
    }
}

}  // namespace
