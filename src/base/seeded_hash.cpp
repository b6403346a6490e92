// Hashes of texts with a secret of this process.
#include "base/seeded_hash.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>

namespace ux {
namespace {

struct Secrets {
    std::uint64_t first;
    std::uint64_t second;
    std::uint64_t third;
    std::uint64_t multiplier;
};

// Do the products of numbers that follow each other keep apart? By six multipliers in seven some do
// not, and by a few in a hundred so many that a table of them is slow.
bool spreads_runs(std::uint64_t multiplier) {
    constexpr std::uint64_t kLongest = 512;
    constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();
    for (std::uint64_t step = 1; step < kLongest; ++step) {
        const std::uint64_t apart = multiplier * step;
        if (std::min(apart, kAll - apart) < kAll / (8 * step)) return false;
    }
    return true;
}

const Secrets& secrets() {
    static const Secrets drawn = [] {
        std::random_device source;
        const auto word = [&source] {
            const std::uint64_t high = source();
            return high << 32 | source();
        };
        Secrets made{word(), word(), word(), word() | 1U};
        while (!spreads_runs(made.multiplier)) made.multiplier *= 6364136223846793005U;
        return made;
    }();
    return drawn;
}

// Both halves of the product, one on the other: every bit of both factors has its part in it.
std::uint64_t fold(std::uint64_t a, std::uint64_t b) {
    __extension__ using Product = unsigned __int128;
    const Product product = static_cast<Product>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

template <typename Word>
std::uint64_t word_at(const char* bytes) {
    Word word = 0;
    std::memcpy(&word, bytes, sizeof(word));
    return word;
}

}  // namespace

std::uint64_t seeded_multiplier() {
    return secrets().multiplier;
}

std::uint64_t seeded_hash(std::uint64_t low, std::uint64_t high) {
    const Secrets& secret = secrets();
    const std::uint64_t hash = fold(low ^ secret.second, high ^ secret.first);
    return fold(hash ^ secret.third, secret.second);
}

std::uint64_t seeded_hash(std::string_view text) {
    const Secrets& secret = secrets();
    const char* at = text.data();
    std::size_t left = text.size();
    std::uint64_t hash = secret.first;
    for (; left > 16; at += 16, left -= 16) {
        hash =
            fold(word_at<std::uint64_t>(at) ^ secret.second, word_at<std::uint64_t>(at + 8) ^ hash);
    }
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    if (left >= 8) {
        low = word_at<std::uint64_t>(at);
        high = word_at<std::uint64_t>(at + left - 8);
    } else if (left >= 4) {
        low = word_at<std::uint32_t>(at);
        high = word_at<std::uint32_t>(at + left - 4);
    } else if (left > 0) {
        low = word_at<std::uint8_t>(at);
        high = word_at<std::uint8_t>(at + left / 2) << 8 | word_at<std::uint8_t>(at + left - 1);
    }
    hash = fold(low ^ secret.second, high ^ hash);
    return fold(hash ^ secret.third, text.size() ^ secret.second);
}

}  // namespace ux
