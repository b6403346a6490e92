// Hashes of texts that come from outside.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ux {

// The same for equal texts of one process, and another in the next: it is mixed with secrets that
// the process draws at random, so that nobody can choose texts whose hashes collide.
std::uint64_t seeded_hash(std::string_view text);
// Likewise of 16 bytes.
std::uint64_t seeded_hash(std::uint64_t low, std::uint64_t high);

// An odd number to multiply integers by, likewise drawn by the process: the high bits of the product
// spread any integers that were chosen without knowing it.
std::uint64_t seeded_multiplier();

// For the containers of the standard library.
struct SeededHash {
    std::size_t operator()(std::string_view text) const { return seeded_hash(text); }
};

}  // namespace ux
