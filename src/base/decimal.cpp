// The nearest double to a decimal number: a guess that is set right by comparing whole numbers.
#include "base/decimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <limits>

#include "base/ascii.h"

namespace ux {
namespace {

// No number halfway between two doubles has more digits; of further ones it only counts whether one
// is not 0.
constexpr int kMostDigits = 800;
constexpr std::int64_t kLargestExponent = std::int64_t{1} << 40;
constexpr int kExactPower = 22;  // 10^22 is exact as a double
constexpr std::array<double, kExactPower + 1> kPowersOfTen{
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// digits * 10^exponent, the digits without zeros in front.
struct Decimal {
    std::array<char, kMostDigits + 1> digits;
    int count = 0;
    std::int64_t exponent = 0;
    bool cut = false;  // a digit other than 0 did not fit

    void add(char digit, bool isFraction) {
        const bool fits = count < kMostDigits;
        if (fits && (count > 0 || digit != '0')) digits[static_cast<std::size_t>(count++)] = digit;
        if (!fits && digit != '0') cut = true;
        if (fits == isFraction) exponent += isFraction ? -1 : 1;
    }
    // Stands for the digits that did not fit: more than nothing, less than one more.
    void finish() {
        if (!cut) return;
        digits[static_cast<std::size_t>(count++)] = '1';
        --exponent;
    }
};

// The length of an exponent at the start of a text; 0 when there is none.
std::size_t take_exponent(std::string_view text, std::int64_t& exponent) {
    if (text.empty() || (text[0] != 'e' && text[0] != 'E')) return 0;
    std::size_t at = 1;
    const bool negative = at < text.size() && text[at] == '-';
    if (negative || (at < text.size() && text[at] == '+')) ++at;
    const std::size_t start = at;
    std::int64_t value = 0;
    for (; at < text.size() && is_digit(text[at]); ++at) {
        value = std::min(value * 10 + (text[at] - '0'), kLargestExponent);
    }
    if (at == start) return 0;
    exponent += negative ? -value : value;
    return at;
}

// The length of the number behind its sign; 0 when there is none.
std::size_t take_apart(std::string_view text, Decimal& decimal) {
    std::size_t at = 0;
    std::size_t seen = 0;
    bool isFraction = false;
    for (; at < text.size(); ++at) {
        if (is_digit(text[at])) {
            decimal.add(text[at], isFraction);
            ++seen;
        } else if (text[at] == '.' && !isFraction) {
            isFraction = true;
        } else {
            break;
        }
    }
    if (seen == 0) return 0;
    at += take_exponent(text.substr(at), decimal.exponent);
    decimal.finish();
    return at;
}

// A whole number of any size that is needed here: 801 digits, or 54 bits times 5^1131.
class WholeNumber {
public:
    explicit WholeNumber(std::uint64_t value) {
        for (; value != 0; value >>= 32) push(value);
    }
    explicit WholeNumber(const Decimal& decimal) {
        for (int at = 0; at < decimal.count; at += 9) {
            std::uint32_t chunk = 0;
            std::uint32_t factor = 1;
            for (int i = at; i < std::min(at + 9, decimal.count); ++i, factor *= 10) {
                const char digit = decimal.digits[static_cast<std::size_t>(i)];
                chunk = chunk * 10 + static_cast<std::uint32_t>(digit - '0');
            }
            multiply_and_add(factor, chunk);
        }
    }

    void multiply_by_power_of_five(std::int64_t power) {
        constexpr std::uint32_t kFiveTo13 = 1220703125;
        for (; power >= 13; power -= 13) multiply_and_add(kFiveTo13, 0);
        for (; power > 0; --power) multiply_and_add(5, 0);
    }
    void shift_left(std::int64_t bits) {
        const auto limbs = static_cast<std::size_t>(bits / 32);
        std::copy_backward(limbs_.begin(), limbs_.begin() + size_, limbs_.begin() + size_ + limbs);
        std::fill_n(limbs_.begin(), limbs, 0U);
        size_ += limbs;
        multiply_and_add(std::uint32_t{1} << (bits % 32), 0);
    }
    // Below, at or above 0 as this one is smaller, the same or larger.
    int compare(const WholeNumber& other) const {
        if (size_ != other.size_) return size_ < other.size_ ? -1 : 1;
        for (std::size_t i = size_; i-- > 0;) {
            if (limbs_[i] != other.limbs_[i]) return limbs_[i] < other.limbs_[i] ? -1 : 1;
        }
        return 0;
    }

private:
    void push(std::uint64_t limb) { limbs_[size_++] = static_cast<std::uint32_t>(limb); }
    void multiply_and_add(std::uint32_t factor, std::uint64_t carry) {
        for (std::size_t i = 0; i < size_; ++i, carry >>= 32) {
            carry += std::uint64_t{limbs_[i]} * factor;
            limbs_[i] = static_cast<std::uint32_t>(carry);
        }
        if (carry != 0) push(carry);
    }

    std::array<std::uint32_t, 128> limbs_{};  // the lowest first
    std::size_t size_ = 0;
};

// How a number lies to the point halfway between a double, given by its bits, and the next larger
// one: below, at or above 0.
int compare_with_halfway(const Decimal& decimal, std::uint64_t bits) {
    const std::uint64_t fraction = bits & ((std::uint64_t{1} << 52) - 1);
    const auto scale = static_cast<std::int64_t>(bits >> 52);
    const std::uint64_t significand = scale == 0 ? fraction : fraction | std::uint64_t{1} << 52;
    const std::int64_t halfwayExponent = std::max<std::int64_t>(scale, 1) - 1076;

    WholeNumber number(decimal);
    WholeNumber halfway(2 * significand + 1);
    number.multiply_by_power_of_five(decimal.exponent);
    halfway.multiply_by_power_of_five(-decimal.exponent);
    const std::int64_t shift = decimal.exponent - halfwayExponent;
    (shift > 0 ? number : halfway).shift_left(shift > 0 ? shift : -shift);
    return number.compare(halfway);
}

// Near the number, within a few of the doubles around it.
double guess(const Decimal& decimal) {
    std::uint64_t first = 0;
    const int taken = std::min(decimal.count, 19);
    for (int i = 0; i < taken; ++i) {
        const char digit = decimal.digits[static_cast<std::size_t>(i)];
        first = first * 10 + static_cast<std::uint64_t>(digit - '0');
    }
    auto value = static_cast<double>(first);
    std::int64_t exponent = decimal.exponent + decimal.count - taken;
    for (; exponent > kExactPower; exponent -= kExactPower) value *= kPowersOfTen.back();
    for (; exponent < -kExactPower; exponent += kExactPower) value /= kPowersOfTen.back();
    // Below 2^53 and with one of these powers alone, this is the number itself, rounded once.
    const auto power = kPowersOfTen[static_cast<std::size_t>(exponent < 0 ? -exponent : exponent)];
    value = exponent < 0 ? value / power : value * power;
    return std::min(value, std::numeric_limits<double>::max());
}

bool is_exact(const Decimal& decimal) {
    return std::numeric_limits<double>::is_iec559 && decimal.count <= 15 &&
           decimal.exponent >= -kExactPower && decimal.exponent <= kExactPower;
}

// The nearest double's bits; those of infinity and of 0 stand for what is out of range.
std::uint64_t nearest(const Decimal& decimal) {
    constexpr std::uint64_t kInfinity = std::uint64_t{0x7FF} << 52;
    if (decimal.count == 0 || decimal.count + decimal.exponent < -330) return 0;
    if (decimal.count + decimal.exponent > 310) return kInfinity;
    auto bits = std::bit_cast<std::uint64_t>(guess(decimal));
    if (is_exact(decimal)) return bits;
    const auto isAbove = [&](std::uint64_t lower) {  // nearer to the double above this one
        const int side = compare_with_halfway(decimal, lower);
        return side > 0 || (side == 0 && lower % 2 == 1);
    };
    while (bits < kInfinity && isAbove(bits)) ++bits;
    while (bits > 0 && !isAbove(bits - 1)) --bits;
    return bits;
}

}  // namespace

DecimalRead read_decimal_by_integers(std::string_view text, double& value) {
    Decimal decimal;
    const std::size_t sign = !text.empty() && text[0] == '-' ? 1 : 0;
    const std::size_t length = take_apart(text.substr(sign), decimal);
    if (length == 0) return {};
    const auto magnitude = std::bit_cast<double>(nearest(decimal));
    value = sign == 1 ? -magnitude : magnitude;
    DecimalRead read{sign + length, DecimalRange::kInside};
    if (magnitude > std::numeric_limits<double>::max()) read.range = DecimalRange::kTooLarge;
    if (magnitude == 0 && decimal.count > 0) read.range = DecimalRange::kTooSmall;
    return read;
}

#if defined(__cpp_lib_to_chars)

DecimalRead read_decimal(std::string_view text, double& value) {
    // Only "inf" and "nan" have neither a digit nor a point here.
    const std::size_t sign = !text.empty() && text[0] == '-' ? 1 : 0;
    if (sign == text.size() || (!is_digit(text[sign]) && text[sign] != '.')) return {};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) return read_decimal_by_integers(text, value);
    if (error != std::errc()) return {};
    return {static_cast<std::size_t>(end - text.data()), DecimalRange::kInside};
}

#else

DecimalRead read_decimal(std::string_view text, double& value) {
    return read_decimal_by_integers(text, value);
}

#endif

}  // namespace ux
