// Reading and writing numbers.
#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "uxtree/host/utilities.h"

namespace {

const char* const kNoNumber = nullptr;

// --- reading numbers ---------------------------------------------------------------------------

struct DoubleCase {
    std::string text;
    double value;
};

class DoubleTexts : public testing::TestWithParam<DoubleCase> {};

TEST_P(DoubleTexts, AreRead) {
    double value = 99;

    ASSERT_TRUE(UXParseDouble(GetParam().text, value));

    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(GetParam().value));
}

INSTANTIATE_TEST_SUITE_P(
    UXParseDouble, DoubleTexts,
    testing::Values(DoubleCase{"0", 0.0}, DoubleCase{"-0", -0.0}, DoubleCase{"+0", 0.0},
                    DoubleCase{"7", 7}, DoubleCase{"+7", 7}, DoubleCase{"-7", -7},
                    DoubleCase{"007", 7}, DoubleCase{".5", 0.5}, DoubleCase{"+.5", 0.5},
                    DoubleCase{"-.5", -0.5}, DoubleCase{"5.", 5}, DoubleCase{"5.e1", 50},
                    DoubleCase{"1.25", 1.25}, DoubleCase{"1e3", 1000}, DoubleCase{"1E3", 1000},
                    DoubleCase{"1e+3", 1000}, DoubleCase{"1e-3", 0.001},
                    DoubleCase{" \t\r\n\v\f1.5 \t\r\n\v\f", 1.5}, DoubleCase{"0.1", 0.1},
                    DoubleCase{"1.7976931348623157e308", DBL_MAX}, DoubleCase{"5e-324", 0x1p-1074},
                    DoubleCase{"3e-324", 0x1p-1074}, DoubleCase{"2e-324", 0.0},
                    DoubleCase{"-2e-324", -0.0}, DoubleCase{"1e-400", 0.0},
                    DoubleCase{"-1e-400", -0.0}, DoubleCase{"+1e-400", 0.0},
                    DoubleCase{"1e-99999999999999999999", 0.0},
                    DoubleCase{"0e99999999999999999999", 0.0}, DoubleCase{"0.0e400", 0.0},
                    DoubleCase{"-0e999", -0.0}, DoubleCase{"0." + std::string(400, '0') + "1", 0.0},
                    DoubleCase{"0." + std::string(400, '0') + "1e401", 1.0},
                    DoubleCase{"1" + std::string(400, '0') + "e-400", 1.0},
                    DoubleCase{"9007199254740993", 9007199254740992.0},
                    DoubleCase{"-1.23456789E-300", std::bit_cast<double>(0x81AA74FE1C132C0EULL)}));

TEST(UXParseDouble, RefusesEverythingElse) {
    const std::string texts[] = {"",
                                 " ",
                                 "+",
                                 "-",
                                 ".",
                                 "e5",
                                 "1e",
                                 "1e+",
                                 "1e5.0",
                                 "1.2.3",
                                 "+-1",
                                 "-+1",
                                 "++1",
                                 "--1",
                                 "1 2",
                                 "1,5",
                                 "0x10",
                                 "1f",
                                 "abc",
                                 "inf",
                                 "-inf",
                                 "infinity",
                                 "+inf",
                                 "nan",
                                 "-nan",
                                 "nan(1)",
                                 "INF",
                                 "1e400",
                                 "-1e400",
                                 "+1e400",
                                 "1.8e308",
                                 "1e99999999999999999999",
                                 "- 1",
                                 "1_000",
                                 "\xC2\xA0"
                                 "1",
                                 "+ 1",
                                 "1" + std::string(400, '0'),
                                 std::string("1\0", 2),
                                 std::string("1\0"
                                             "2",
                                             3)};
    for (const std::string& text : texts) {
        double value = 99;
        EXPECT_FALSE(UXParseDouble(text, value)) << text;
        EXPECT_EQ(value, 99) << text;
    }
}

TEST(UXParseDouble, ReadsOnlyInsideTheView) {
    double value = 0;

    EXPECT_TRUE(UXParseDouble(std::string_view("12345", 2), value));

    EXPECT_EQ(value, 12);
}

struct IntCase {
    const char* text;
    int value;
};

class IntTexts : public testing::TestWithParam<IntCase> {};

TEST_P(IntTexts, AreRead) {
    int value = 99;

    ASSERT_TRUE(UXParseInt(GetParam().text, value)) << GetParam().text;

    EXPECT_EQ(value, GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(UXParseInt, IntTexts,
                         testing::Values(IntCase{"0", 0}, IntCase{"-0", 0}, IntCase{"42", 42},
                                         IntCase{"+42", 42}, IntCase{"-42", -42},
                                         IntCase{" \t\n42\r ", 42}, IntCase{"007", 7},
                                         IntCase{"2147483647", INT_MAX},
                                         IntCase{"-2147483648", INT_MIN}));
INSTANTIATE_TEST_SUITE_P(UXParseIntOfRealText, IntTexts,
                         testing::Values(IntCase{"1.9", 1}, IntCase{"-1.9", -1}, IntCase{".9", 0},
                                         IntCase{"-.9", 0}, IntCase{"5.", 5}, IntCase{"1.5e1", 15},
                                         IntCase{"1e3", 1000}, IntCase{"12345e-2", 123},
                                         IntCase{"1e-400", 0}, IntCase{"0e99999999999999", 0},
                                         IntCase{"0.00000000000000000000001e25", 100},
                                         IntCase{"12e-5", 0},
                                         IntCase{"2147483647.99999999999999999999", INT_MAX},
                                         IntCase{"-2147483648.99999999999999999999", INT_MIN}));
INSTANTIATE_TEST_SUITE_P(UXParseIntOfFlagWords, IntTexts,
                         testing::Values(IntCase{"2147483648", INT_MIN}, IntCase{"4294967295", -1},
                                         IntCase{"+4294967295", -1}, IntCase{"4294967295.9", -1},
                                         IntCase{"3e9", -1294967296},
                                         IntCase{"2147483648.5", INT_MIN}));

TEST(UXParseInt, RefusesEverythingElse) {
    const std::string texts[] = {"",
                                 " ",
                                 "+",
                                 "-",
                                 ".",
                                 "1e",
                                 "4294967296",
                                 "-2147483649",
                                 "1e10",
                                 "-3e9",
                                 "1e400",
                                 "0x1F",
                                 "inf",
                                 "nan",
                                 "abc",
                                 "1 2",
                                 "1,2",
                                 "12a",
                                 "--1",
                                 "+-1",
                                 "1e5e5",
                                 "1.2.3",
                                 "true",
                                 "4294967296.0",
                                 "1e99999999999999999999",
                                 std::string("1\0", 2)};
    for (const std::string& text : texts) {
        int value = 99;
        EXPECT_FALSE(UXParseInt(text, value)) << text;
        EXPECT_EQ(value, 99) << text;
    }
}

TEST(UXParseInt, AgreesWithTheDoubleOnRandomNumbers) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> magnitudes(-3e9, 5e9);
    for (int i = 0; i < 20000; ++i) {
        char text[64];
        std::snprintf(text, sizeof text, "%.*g", i % 2 == 0 ? 17 : 7, magnitudes(random));
        double real = 0;
        ASSERT_TRUE(UXParseDouble(text, real));
        const double whole = std::trunc(real);
        const bool fits = whole >= -2147483648.0 && whole <= 4294967295.0;

        int value = 99;
        ASSERT_EQ(UXParseInt(text, value), fits) << text;

        const auto bits = static_cast<std::uint32_t>(static_cast<std::int64_t>(fits ? whole : 99));
        EXPECT_EQ(static_cast<std::uint32_t>(value), bits) << text;
    }
}

TEST(UXLeadingInt, ReadsTheNumberAtTheStart) {
    EXPECT_EQ(UXLeadingInt("12abc"), 12);
    EXPECT_EQ(UXLeadingInt(" \t\r\n\v\f-7.9"), -7);
    EXPECT_EQ(UXLeadingInt("+5"), 5);
    EXPECT_EQ(UXLeadingInt("0x10"), 0);
    EXPECT_EQ(UXLeadingInt("1e5"), 1);
    EXPECT_EQ(UXLeadingInt("0012"), 12);
}

TEST(UXLeadingInt, IsZeroWithoutANumber) {
    EXPECT_EQ(UXLeadingInt(kNoNumber), 0);
    EXPECT_EQ(UXLeadingInt(""), 0);
    EXPECT_EQ(UXLeadingInt("  "), 0);
    EXPECT_EQ(UXLeadingInt("abc"), 0);
    EXPECT_EQ(UXLeadingInt("-"), 0);
    EXPECT_EQ(UXLeadingInt("+-5"), 0);
    EXPECT_EQ(UXLeadingInt("- 5"), 0);
}

TEST(UXLeadingInt, TakesTheNearestNumberOf32Bits) {
    EXPECT_EQ(UXLeadingInt("2147483647"), INT_MAX);
    EXPECT_EQ(UXLeadingInt("2147483648"), INT_MAX);
    EXPECT_EQ(UXLeadingInt("-2147483648"), INT_MIN);
    EXPECT_EQ(UXLeadingInt("-2147483649"), INT_MIN);
    EXPECT_EQ(UXLeadingInt("99999999999999999999999"), INT_MAX);
    EXPECT_EQ(UXLeadingInt("-99999999999999999999999x"), INT_MIN);
}

// --- writing numbers ---------------------------------------------------------------------------

std::string formatted(double value) {
    CStringUTF8 text("old");
    UXFormatDouble(value, text);
    return static_cast<const char*>(text);
}

// The rule in the words of printf; the test runs in the locale "C".
std::string printed(double value) {
    char buffer[64];
    for (int precision = 15; precision <= 17; ++precision) {
        std::snprintf(buffer, sizeof buffer, "%.*g", precision, value);
        const double back = std::strtod(buffer, nullptr);
        if (std::bit_cast<std::uint64_t>(back) == std::bit_cast<std::uint64_t>(value)) break;
    }
    return buffer;
}

TEST(UXFormatDouble, WritesTheShortestOfThreePrecisions) {
    EXPECT_EQ(formatted(0), "0");
    EXPECT_EQ(formatted(-0.0), "-0");
    EXPECT_EQ(formatted(1), "1");
    EXPECT_EQ(formatted(-17), "-17");
    EXPECT_EQ(formatted(0.1), "0.1");
    EXPECT_EQ(formatted(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(formatted(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(formatted(1e100), "1e+100");
    EXPECT_EQ(formatted(1e5), "100000");
    EXPECT_EQ(formatted(1e-5), "1e-05");
    EXPECT_EQ(formatted(0.0001), "0.0001");
    EXPECT_EQ(formatted(123456789012345), "123456789012345");
    EXPECT_EQ(formatted(999999999999999), "999999999999999");
    EXPECT_EQ(formatted(1e15), "1e+15");
    EXPECT_EQ(formatted(1234567890123456), "1234567890123456");
    EXPECT_EQ(formatted(DBL_MAX), "1.7976931348623157e+308");
    EXPECT_EQ(formatted(0x1p-1074), "4.94065645841247e-324");
    EXPECT_EQ(formatted(DBL_MIN), printed(DBL_MIN));
}

TEST(UXFormatDouble, WritesTheMissingValueForWhatHasNoText) {
    const std::string missing = printed(UXMissingValue());

    EXPECT_EQ(formatted(std::numeric_limits<double>::infinity()), missing);
    EXPECT_EQ(formatted(-std::numeric_limits<double>::infinity()), missing);
    EXPECT_EQ(formatted(std::numeric_limits<double>::quiet_NaN()), missing);
    EXPECT_EQ(formatted(UXMissingValue()), missing);
}

TEST(UXFormatDouble, AgreesWithPrintfOnEveryKindOfDouble) {
    std::mt19937_64 random(20);
    for (int i = 0; i < 60000; ++i) {
        const std::uint64_t bits = random();
        const double anyBits = std::bit_cast<double>(bits);
        const auto integer = static_cast<double>(static_cast<std::int64_t>(bits >> (bits % 50)));
        const double decimal = static_cast<double>(bits % 1000000) / 1000;
        const double power = std::ldexp(1.0, static_cast<int>(bits % 2098) - 1074);
        const double subnormal = std::bit_cast<double>(bits >> (12 + bits % 52));
        for (const double value : {anyBits, integer, -decimal, power, subnormal}) {
            if (std::isfinite(value)) {
                ASSERT_EQ(formatted(value), printed(value)) << std::hexfloat << value;
            }
        }
    }
}

TEST(UXFormatDouble, AgreesWithPrintfAroundPowersOfTen) {
    for (int exponent = -323; exponent <= 308; ++exponent) {
        char text[32];
        std::snprintf(text, sizeof text, "1e%d", exponent);
        const double power = std::strtod(text, nullptr);
        for (const double value : {power, std::nextafter(power, 0), std::nextafter(power, DBL_MAX),
                                   power * 9.5, power * 1.25}) {
            if (std::isfinite(value)) {
                ASSERT_EQ(formatted(value), printed(value));
            }
        }
    }
}

TEST(UXFormatDouble, AgreesWithPrintfWhereDigitsEndInTheMiddle) {
    // Fractions that end exactly half way between two texts of 16 or 17 digits.
    std::mt19937_64 random(22);
    for (int i = 0; i < 40000; ++i) {
        const std::uint64_t bits = random();
        for (int fraction = 1; fraction <= 8; ++fraction) {
            const std::uint64_t mantissa = (bits >> 11U) | 1U << (bits % 3);
            const double value = std::ldexp(static_cast<double>(mantissa), -fraction);
            ASSERT_EQ(formatted(value), printed(value)) << std::hexfloat << value;
        }
        const double few =
            std::ldexp(static_cast<double>(bits >> 50U), static_cast<int>(bits % 200) - 100);
        ASSERT_EQ(formatted(few), printed(few)) << std::hexfloat << few;
    }
}

TEST(UXFormatDouble, LaysOutEveryExponent) {
    for (const char* text : {"0.0001", "0.00012", "-0.00012345678901234", "0.1", "0.25", "-1.5",
                             "10.5", "123456.789", "99999999999999.5", "-999999999999999.5",
                             "1e-05", "1.5e-05", "-1.5e+15", "1.5e+300", "123456789012345.6",
                             "1234567890123456.8", "12345678901234568", "1.2345678901234566e+17"}) {
        EXPECT_EQ(formatted(std::strtod(text, nullptr)), printed(std::strtod(text, nullptr)));
        EXPECT_EQ(formatted(std::strtod(text, nullptr)), text);
    }
}

TEST(UXFormatDouble, EveryTextReadsBackEqual) {
    std::mt19937_64 random(21);
    for (int i = 0; i < 100000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;

        double back = 0;
        ASSERT_TRUE(UXParseDouble(formatted(value), back));

        ASSERT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(value));
    }
}

TEST(UXMissingValue, HasTheAgreedBits) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(UXMissingValue()), 0x81AA74FE1C132C0EULL);
}

}  // namespace
