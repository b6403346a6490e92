// Sums of numbers that callers choose: they wrap around at the ends of an int, as the identifiers
// and positions of existing callers do.
#pragma once

namespace ux {

inline int wrapping_sum(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

// The same number in the other sign; the lowest one stays itself.
inline int negated(int number) {
    return static_cast<int>(0U - static_cast<unsigned>(number));
}

}  // namespace ux
