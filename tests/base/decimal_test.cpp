// Reading decimal numbers, with and without the standard library's help.
#include "base/decimal.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

using ux::DecimalRange;
using ux::DecimalRead;
using ux::read_decimal;
using ux::read_decimal_by_integers;

constexpr double kUntouched = 0.7;

std::uint64_t bits_of(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

// Both ways of reading agree on a text.
void expect_read(const std::string& text, std::size_t length, double value,
                 DecimalRange range = DecimalRange::kInside) {
    for (const auto read : {read_decimal, read_decimal_by_integers}) {
        double found = kUntouched;
        const DecimalRead result = read(text, found);
        EXPECT_EQ(result.length, length) << text;
        EXPECT_EQ(result.range, range) << text;
        EXPECT_EQ(bits_of(found), bits_of(value)) << text << ": " << found;
    }
}

TEST(read_decimal, NumbersEndWhereTheyDo) {
    expect_read("1", 1, 1);
    expect_read("-12.5e1x", 7, -125);
    expect_read(".5", 2, 0.5);
    expect_read("5.", 2, 5);
    expect_read("1.2.3", 3, 1.2);
    expect_read("1e", 1, 1);
    expect_read("1e+", 1, 1);
    expect_read("1E-2", 4, 0.01);
    expect_read("1e+2", 4, 100);
    expect_read("0x10", 1, 0);
    expect_read("-0", 2, -0.0);
    expect_read("0e999999999999999999999", 23, 0);
    expect_read("007", 3, 7);
}

TEST(read_decimal, WhatIsNoNumberLeavesTheValue) {
    for (const char* text : {"", "-", "+1", " 1", ".", "-.", "e1", ".e1", "inf", "-inf", "nan",
                             "NAN(1)", "infinity", "--1", "x"}) {
        expect_read(text, 0, kUntouched);
    }
}

TEST(read_decimal, WhatIsOutOfRangeSaysWhere) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    expect_read("1e309", 5, kInfinity, DecimalRange::kTooLarge);
    expect_read("-1e99999999999999999999", 23, -kInfinity, DecimalRange::kTooLarge);
    expect_read("1e-400", 6, 0, DecimalRange::kTooSmall);
    expect_read("-1e-99999999999999999999", 24, -0.0, DecimalRange::kTooSmall);
    expect_read("1" + std::string(400, '0'), 401, kInfinity, DecimalRange::kTooLarge);
    expect_read("0." + std::string(400, '0') + "1", 403, 0, DecimalRange::kTooSmall);
    expect_read("0." + std::string(400, '0') + "1e401", 407, 1);
    expect_read("1" + std::string(400, '0') + "e-400", 406, 1);
    // The largest double, half a step above it, and a little less than that.
    expect_read("1.7976931348623157e308", 22, std::numeric_limits<double>::max());
    expect_read(
        "1.7976931348623158079372897140530341507993413271003782693617377898044496829276475"
        "09462364e308",
        93, std::numeric_limits<double>::max());
    expect_read("1.797693134862315808e308", 24, kInfinity, DecimalRange::kTooLarge);
    // The smallest one, and half of it.
    expect_read("4.94065645841246544e-324", 24, std::numeric_limits<double>::denorm_min());
    expect_read("2.4703282292062328e-324", 23, std::numeric_limits<double>::denorm_min());
    expect_read("2.4703282292062327e-324", 23, 0, DecimalRange::kTooSmall);
}

TEST(read_decimal, NumbersHalfwayGoToTheEvenOne) {
    expect_read("9007199254740993", 16, 9007199254740992);
    expect_read("9007199254740995", 16, 9007199254740996);
    // One more digit, however far behind, decides.
    expect_read("9007199254740993." + std::string(1000, '0') + "1", 1018, 9007199254740994);
    expect_read("9007199254740993." + std::string(1000, '0'), 1017, 9007199254740992);
}

#if defined(__cpp_lib_to_chars)

// Texts of many kinds: short ones, those that programs write, and long ones near halfway points.
std::string random_text(std::mt19937_64& random) {
    const auto below = [&](std::uint64_t limit) { return random() % limit; };
    const auto digits = [&](std::uint64_t most) {
        std::string text;
        for (std::uint64_t i = below(most + 1); i > 0; --i) {
            text += static_cast<char>('0' + below(10));
        }
        return text;
    };
    std::string text = below(4) == 0 ? "-" : "";
    std::array<char, 1100> buffer;
    double value = std::bit_cast<double>(random() & ~(std::uint64_t{1} << 63));
    if (!std::isfinite(value)) value = 1;
    const auto written = [&](int precision) {
        const char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                              std::chars_format::scientific, precision)
                                    .ptr;
        return std::string(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    };
    switch (below(6)) {
        case 0:
            return text + digits(6) + (below(2) == 0 ? "." + digits(6) : "");
        case 1:
            return text + digits(25) + "." + digits(25) + "e" + std::to_string(below(700)) + "x";
        case 2:
            return text + digits(20) + "." + digits(30) + "e-" + std::to_string(below(400));
        case 3:
            return text + written(static_cast<int>(below(20)));
        case 4:
            return text + written(16);
        default:
            break;
    }
    // All digits of the point halfway to the next double, at times with its last one changed.
    const double next = std::nextafter(value, std::numeric_limits<double>::infinity());
    const long double middle = (static_cast<long double>(value) + next) / 2;
    std::string all(1200, '\0');
    const int size = std::snprintf(all.data(), all.size(), "%.780Le", middle);
    all.resize(static_cast<std::size_t>(size));
    const std::uint64_t change = below(3);
    if (change > 0) all[all.find('e') - 1] = change == 1 ? '1' : '9';
    return text + all;
}

// UXTREE_DECIMAL_TEXTS in the environment says how many texts; 10 million take a minute.
TEST(read_decimal, AgreesWithTheStandardLibraryOnRandomTexts) {
    const char* const wanted = std::getenv("UXTREE_DECIMAL_TEXTS");
    const int count = wanted == nullptr ? 50000 : std::atoi(wanted);
    ASSERT_GT(count, 0);
    std::mt19937_64 random(20261122);
    int inside = 0;
    for (int i = 0; i < count; ++i) {
        const std::string text = random_text(random);
        double expected = kUntouched;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), expected);
        double found = kUntouched;
        const DecimalRead read = read_decimal_by_integers(text, found);
        const bool isNumber = error != std::errc::invalid_argument;
        const bool isInside = read.range == DecimalRange::kInside;
        ASSERT_EQ(read.length, isNumber ? static_cast<std::size_t>(end - text.data()) : 0) << text;
        ASSERT_EQ(isInside, error != std::errc::result_out_of_range) << text;
        if (isInside) {
            ASSERT_EQ(bits_of(found), bits_of(expected)) << text;
            ++inside;
        }
    }
    EXPECT_GT(inside, count / 2);
    EXPECT_LT(inside, count);
}

#endif

}  // namespace
