// Decimal numbers in texts, read to the nearest double with every standard library alike.
#pragma once

#include <cstddef>
#include <string_view>

namespace ux {

enum class DecimalRange { kInside, kTooLarge, kTooSmall };

struct DecimalRead {
    std::size_t length = 0;  // of the number; 0 when the text begins with none
    DecimalRange range = DecimalRange::kInside;
};

// Reads the longest number at the start of a text: perhaps "-", digits with at most one point among
// or beside them, and perhaps an exponent. No "+" before it, no white space, no hexadecimal digits,
// infinities or NaN. The value is the nearest double, ties to even; a signed infinity when it is too
// large, a signed zero when it is too small; untouched when there is no number.
DecimalRead read_decimal(std::string_view text, double& value);

// The same by integers alone: what read_decimal does where the standard library cannot help.
DecimalRead read_decimal_by_integers(std::string_view text, double& value);

}  // namespace ux
