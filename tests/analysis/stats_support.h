// What the tests of statistics write and compare.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

namespace uxtest {

// The missing value, as stored.
inline constexpr std::uint64_t kMissingBits = 0x81AA74FE1C132C0E;

inline std::uint64_t bits(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

inline std::string child(const std::string& tag, const std::string& value) {
    return "<" + tag + ">" + value + "</" + tag + ">";
}

}  // namespace uxtest
