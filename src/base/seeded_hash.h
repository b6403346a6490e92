// Hashes of texts that come from outside.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ux {

// The same for equal texts of one process, and another in the next: it is mixed with secrets that
// the process draws at random, so that nobody can choose texts whose hashes collide.
std::uint64_t seeded_hash(std::string_view text);

// For the containers of the standard library.
struct SeededHash {
    std::size_t operator()(std::string_view text) const { return seeded_hash(text); }
};

}  // namespace ux
