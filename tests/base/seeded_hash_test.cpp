// Hashes that nobody can choose collisions for.
#include "base/seeded_hash.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

TEST(SeededHash, TellsTextsOfEveryLengthApart) {
    std::set<std::uint64_t> hashes;
    std::string text;
    for (int length = 0; length < 70; ++length, text += 'x') {
        hashes.insert(ux::seeded_hash(text));
        for (std::size_t i = 0; i < text.size(); ++i) {
            std::string other = text;
            other[i] = 'y';
            hashes.insert(ux::seeded_hash(other));
            EXPECT_EQ(ux::seeded_hash(other), ux::seeded_hash(std::string(other)));
        }
    }
    EXPECT_EQ(hashes.size(), 70U + 69U * 70U / 2U);
}

// Tables take the lowest bits of a hash, or the highest of its lower half.
constexpr unsigned kShifts[] = {0, 20};
std::uint64_t slot_of(const std::string& name, unsigned shift) {
    return ux::seeded_hash(name) >> shift & 0xFFF;
}

// Names that were chosen to share one slot of a table whose hash everybody can compute.
TEST(SeededHash, SpreadsNamesThatCollideInAnUnseededHash) {
    const auto unseeded = [](const std::string& name) {
        std::uint32_t hash = 2166136261U;
        for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
        return (hash ^ hash >> 15) & 0xFFFU;
    };
    std::set<std::string> chosen;
    for (int i = 0; chosen.size() < 256; ++i) {
        const std::string name = "n" + std::to_string(i);
        if (unseeded(name) == 0) chosen.insert(name);
    }

    for (const unsigned shift : kShifts) {
        std::set<std::uint64_t> slots;
        for (const std::string& name : chosen) slots.insert(slot_of(name, shift));
        EXPECT_GT(slots.size(), 220U);  // of 256; chance alone gives 248
    }
}

TEST(SeededHash, SpreadsOverTheSlotsOfATable) {
    for (const unsigned shift : kShifts) {
        std::set<std::uint64_t> slots;
        for (int i = 0; i < 4096; ++i) slots.insert(slot_of("n" + std::to_string(i), shift));
        EXPECT_GT(slots.size(), 2300U);  // of 4096; chance alone gives 2589
        EXPECT_LT(slots.size(), 2900U);
    }
}

TEST(seeded_multiplier, LaysFewNumbersThatFollowEachOtherIntoOnePlace) {
    constexpr std::uint64_t kNumbers = 2048;
    std::vector<int> places(2 * kNumbers);
    for (std::uint64_t number = 0; number < kNumbers; ++number) {
        ++places[number * ux::seeded_multiplier() >> 52];
    }
    EXPECT_LE(*std::max_element(places.begin(), places.end()), 4);
    EXPECT_EQ(ux::seeded_multiplier() % 2, 1U);
}

}  // namespace
