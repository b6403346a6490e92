#include "uxtree/host/utilities.h"

#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <expat.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/utf8.h"

namespace {
using testing::ElementsAre;
using testing::IsEmpty;

const char* const kNoText = nullptr;

std::vector<std::string> all(const CWBOStringArray& array) {
    std::vector<std::string> items;
    for (int i = 0; i < array.GetSize(); ++i) items.emplace_back(array[i]);
    return items;
}

CWBOStringArray strings(std::initializer_list<const char*> items) {
    CWBOStringArray array;
    for (const char* item : items) array.Add(item);
    return array;
}

std::vector<std::string> tokens(const char* text, char separator, char quote = '"') {
    CWBOStringArray array = strings({"old"});
    const int count = UXGetTokens(array, text, separator, quote);
    EXPECT_EQ(count, array.GetSize());
    return all(array);
}

// --- tokens ------------------------------------------------------------------------------------

TEST(UXGetTokens, SplitsAtTheSeparator) {
    EXPECT_THAT(tokens("a.bc.d", '.'), ElementsAre("a", "bc", "d"));
    EXPECT_THAT(tokens("abc", '.'), ElementsAre("abc"));
}

TEST(UXGetTokens, KeepsEmptyTokens) {
    EXPECT_THAT(tokens(".", '.'), ElementsAre("", ""));
    EXPECT_THAT(tokens(".a..b.", '.'), ElementsAre("", "a", "", "b", ""));
}

TEST(UXGetTokens, FindsNoneInAnEmptyOrNullText) {
    EXPECT_THAT(tokens("", '.'), IsEmpty());
    EXPECT_THAT(tokens(kNoText, '.'), IsEmpty());
    EXPECT_THAT(tokens("", ' '), IsEmpty());
    EXPECT_THAT(tokens(kNoText, ' '), IsEmpty());
}

TEST(UXGetTokens, QuotesTurnSeparatorsIntoText) {
    EXPECT_THAT(tokens("\"a.b\".c", '.'), ElementsAre("a.b", "c"));
    EXPECT_THAT(tokens("a\".\"b.c", '.'), ElementsAre("a.b", "c"));
    EXPECT_THAT(tokens("a.'b.c'", '.', '\''), ElementsAre("a", "b.c"));
}

TEST(UXGetTokens, RemovesQuotesAnywhereInAToken) {
    EXPECT_THAT(tokens("a\"b\"c.d", '.'), ElementsAre("abc", "d"));
    EXPECT_THAT(tokens("\"\"", '.'), ElementsAre(""));
    EXPECT_THAT(tokens("\"\".\"\"", '.'), ElementsAre("", ""));
}

TEST(UXGetTokens, ADoubledQuoteInsideQuotesIsOneQuote) {
    EXPECT_THAT(tokens("\"a\"\"b\".c", '.'), ElementsAre("a\"b", "c"));
    EXPECT_THAT(tokens("\"\"\"\"", '.'), ElementsAre("\""));
    EXPECT_THAT(tokens("\"a\"\"\"", '.'), ElementsAre("a\""));
    EXPECT_THAT(tokens("a\"\"b", '.'), ElementsAre("ab"));  // outside: opened and closed
}

TEST(UXGetTokens, AnUnclosedQuoteRunsToTheEnd) {
    EXPECT_THAT(tokens("a.\"b.c", '.'), ElementsAre("a", "b.c"));
    EXPECT_THAT(tokens("a.\"", '.'), ElementsAre("a", ""));
    EXPECT_THAT(tokens("\"a\"\".b", '.'), ElementsAre("a\".b"));
    EXPECT_THAT(tokens("\"a.", '.'), ElementsAre("a."));
}

TEST(UXGetTokens, AZeroQuoteMeansNoQuoting) {
    EXPECT_THAT(tokens("\"a.b\"", '.', '\0'), ElementsAre("\"a", "b\""));
}

TEST(UXGetTokens, AZeroSeparatorLeavesOneToken) {
    EXPECT_THAT(tokens("a.b c", '\0'), ElementsAre("a.b c"));
}

TEST(UXGetTokens, ABlankSeparatesAtRunsOfWhiteSpace) {
    EXPECT_THAT(tokens(" a  b\t\r\n c ", ' '), ElementsAre("a", "b", "c"));
    EXPECT_THAT(tokens(" \t\r\n", ' '), IsEmpty());
    EXPECT_THAT(tokens("a\vb\fc", ' '), ElementsAre("a\vb\fc"));
}

TEST(UXGetTokens, ABlankKeepsQuotedWhiteSpaceButNoEmptyToken) {
    EXPECT_THAT(tokens("\"a b\" c", ' '), ElementsAre("a b", "c"));
    EXPECT_THAT(tokens("a \"\" b", ' '), ElementsAre("a", "b"));
}

TEST(UXGetTokens, AnotherSeparatorLeavesWhiteSpaceAlone) {
    EXPECT_THAT(tokens(" a , b\t", ','), ElementsAre(" a ", " b\t"));
    EXPECT_THAT(tokens("a\t b", '\t'), ElementsAre("a", " b"));
}

TEST(UXGetTokens, TextMayBeOneOfTheOldTokens) {
    CWBOStringArray array = strings({"a.b", "x"});

    EXPECT_EQ(UXGetTokens(array, array[0], '.', 0), 2);

    EXPECT_THAT(all(array), ElementsAre("a", "b"));
}

TEST(UXSeparateByString, SplitsAtEveryOccurrenceAndKeepsEmptyPieces) {
    CWBOStringArray pieces = strings({"old"});

    EXPECT_EQ(UXSeparateByString(pieces, "a::b::::c", "::"), 4);
    EXPECT_THAT(all(pieces), ElementsAre("a", "b", "", "c"));
    EXPECT_EQ(UXSeparateByString(pieces, "::", "::"), 2);
    EXPECT_THAT(all(pieces), ElementsAre("", ""));
    EXPECT_EQ(UXSeparateByString(pieces, "|a|", "|"), 3);
    EXPECT_THAT(all(pieces), ElementsAre("", "a", ""));
    EXPECT_EQ(UXSeparateByString(pieces, ":::", "::"), 2);
    EXPECT_THAT(all(pieces), ElementsAre("", ":"));
}

TEST(UXSeparateByString, KnowsNoQuotes) {
    CWBOStringArray pieces;

    EXPECT_EQ(UXSeparateByString(pieces, "\"a|b\"", "|"), 2);

    EXPECT_THAT(all(pieces), ElementsAre("\"a", "b\""));
}

TEST(UXSeparateByString, AnEmptyTextHasNoPieces) {
    CWBOStringArray pieces = strings({"old"});

    EXPECT_EQ(UXSeparateByString(pieces, "", "|"), 0);
    EXPECT_THAT(all(pieces), IsEmpty());
    pieces = strings({"old"});
    EXPECT_EQ(UXSeparateByString(pieces, kNoText, "|"), 0);
    EXPECT_THAT(all(pieces), IsEmpty());
}

TEST(UXSeparateByString, WithoutSeparatorThereIsOnePiece) {
    CWBOStringArray pieces;

    EXPECT_EQ(UXSeparateByString(pieces, "abc", ""), 1);
    EXPECT_THAT(all(pieces), ElementsAre("abc"));
    EXPECT_EQ(UXSeparateByString(pieces, "abc", kNoText), 1);
    EXPECT_THAT(all(pieces), ElementsAre("abc"));
}

TEST(UXSeparateByString, TextMayBeOneOfTheOldPieces) {
    CWBOStringArray pieces = strings({"x", "a|b"});

    EXPECT_EQ(UXSeparateByString(pieces, pieces[1], "|"), 2);

    EXPECT_THAT(all(pieces), ElementsAre("a", "b"));
}

TEST(UXJoinTokens, PutsTheSeparatorBetween) {
    CStringUTF8 out("old");

    EXPECT_EQ(UXJoinTokens(out, strings({"a", "", "c"}), ", "), 3);
    EXPECT_STREQ(out, "a, , c");
    EXPECT_EQ(UXJoinTokens(out, strings({"a"}), ", "), 1);
    EXPECT_STREQ(out, "a");
    EXPECT_EQ(UXJoinTokens(out, strings({"a", "b"}), kNoText), 2);
    EXPECT_STREQ(out, "ab");
    EXPECT_EQ(UXJoinTokens(out, CWBOStringArray(), ", "), 0);
    EXPECT_STREQ(out, "");
}

TEST(UXJoinTokens, OutMayBeATokenOrTheSeparator) {
    CWBOStringArray array = strings({"a", "b"});
    CStringUTF8 separator("-");

    EXPECT_EQ(UXJoinTokens(array[0], array, "+"), 2);
    EXPECT_THAT(all(array), ElementsAre("a+b", "b"));
    EXPECT_EQ(UXJoinTokens(separator, strings({"x", "y", "z"}), separator), 3);
    EXPECT_STREQ(separator, "x-y-z");
}

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
    EXPECT_EQ(UXLeadingInt(kNoText), 0);
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

// --- names -------------------------------------------------------------------------------------

std::string utf8_of(char32_t code) {
    const auto byte = [](char32_t value) {
        return static_cast<char>(static_cast<unsigned char>(value));
    };
    if (code < 0x80) return {byte(code)};
    if (code < 0x800) return {byte(0xC0 | code >> 6), byte(0x80 | (code & 0x3F))};
    if (code < 0x10000) {
        return {byte(0xE0 | code >> 12), byte(0x80 | (code >> 6 & 0x3F)),
                byte(0x80 | (code & 0x3F))};
    }
    return {byte(0xF0 | code >> 18), byte(0x80 | (code >> 12 & 0x3F)),
            byte(0x80 | (code >> 6 & 0x3F)), byte(0x80 | (code & 0x3F))};
}

// Whether the XML parser reads the document and gives back the name as an element's tag and as an
// attribute's name.
class NameReader {
public:
    NameReader() : parser_(XML_ParserCreate("UTF-8")) {}

    bool reads(const std::string& name) {
        XML_ParserReset(parser_.get(), "UTF-8");
        XML_SetUserData(parser_.get(), this);
        XML_SetStartElementHandler(parser_.get(), &NameReader::start);
        tag_.clear();
        attribute_.clear();
        const std::string document = "<" + name + " " + name + "='v'></" + name + ">";
        const int length = static_cast<int>(document.size());
        const bool parsed = XML_Parse(parser_.get(), document.data(), length, 1) == XML_STATUS_OK;
        return parsed && tag_ == name && attribute_ == name;
    }

private:
    static void XMLCALL start(void* self, const XML_Char* tag, const XML_Char** attributes) {
        auto* const reader = static_cast<NameReader*>(self);
        reader->tag_ = tag;
        if (attributes[0] != nullptr) reader->attribute_ = attributes[0];
    }
    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Free> parser_;
    std::string tag_;
    std::string attribute_;
};

bool surrogate(char32_t code) {
    return code >= 0xD800 && code <= 0xDFFF;
}

TEST(UXIsName, EqualsTheXmlParserOverTheWholeBmp) {
    NameReader reader;
    for (char32_t code = 1; code < 0x10000; ++code) {
        if (surrogate(code)) continue;
        const std::string first = utf8_of(code);
        const std::string second = "a" + first;
        ASSERT_EQ(UXIsName(first), reader.reads(first)) << std::hex << static_cast<int>(code);
        ASSERT_EQ(UXIsName(second), reader.reads(second)) << std::hex << static_cast<int>(code);
    }
}

TEST(UXIsName, EqualsTheXmlParserAboveTheBmp) {
    NameReader reader;
    for (char32_t code = 0x10000; code < 0x110000; code += 0xFD) {
        const std::string first = utf8_of(code);
        const std::string second = "a" + first;
        ASSERT_EQ(UXIsName(first), reader.reads(first)) << std::hex << static_cast<int>(code);
        ASSERT_EQ(UXIsName(second), reader.reads(second)) << std::hex << static_cast<int>(code);
    }
}

TEST(UXIsName, EqualsTheXmlParserOnRandomNames) {
    const std::string pieces[] = {"a",        "Z",       "_",   ":",        "-",
                                  ".",        "5",       "xml", "\xC3\xA9", "\xE4\xB8\xAD",
                                  "\xCC\x81", "\xC2\xB7"};
    std::mt19937 random(3);
    NameReader reader;
    for (int i = 0; i < 20000; ++i) {
        std::string name;
        for (auto n = random() % 6 + 1; n > 0; --n) name += pieces[random() % std::size(pieces)];
        ASSERT_EQ(UXIsName(name), reader.reads(name)) << name;
    }
}

TEST(UXIsName, AColonIsAnOrdinaryCharacter) {
    for (const char* name : {"dt:dt", ":", ":a", "a:", "a:b:c", "xmlns", "xmlns:x", "xml"}) {
        EXPECT_TRUE(UXIsName(name)) << name;
    }
}

TEST(UXIsName, AcceptsDigitsAndPunctuationOnlyInside) {
    EXPECT_TRUE(UXIsName("a1"));
    EXPECT_TRUE(UXIsName("a-b.c_d"));
    EXPECT_FALSE(UXIsName("1a"));
    EXPECT_FALSE(UXIsName("-a"));
    EXPECT_FALSE(UXIsName(".a"));
    EXPECT_TRUE(UXIsName("_"));
}

TEST(UXIsName, RefusesWhatIsNoName) {
    for (const char* name : {"", " ", "a b", " a", "a ", "a/b", "a<b", "a>", "a&b", "a'b", "a\"b",
                             "a=b", "a\tb", "a\x7F", "\xC3\x97"}) {
        EXPECT_FALSE(UXIsName(name)) << name;
    }
    EXPECT_FALSE(UXIsName(std::string_view("a\0", 2)));
    EXPECT_FALSE(UXIsName(std::string_view()));
}

TEST(UXIsName, RefusesBytesThatAreNotUtf8) {
    const char* const broken[] = {"\xC3",          // cut off
                                  "a\xC3",         //
                                  "a\xE4\xB8",     //
                                  "\xA9",          // a continuation alone
                                  "a\xA9",         //
                                  "\xC1\xA1",      // overlong "a"
                                  "\xE0\x81\xA1",  // overlong "a"
                                  "\xE0\x83\xA9",  // overlong e with acute accent
                                  "\xED\xA0\x80",  // surrogate
                                  "\xED\xB0\x80",  // surrogate
                                  "\xC3"
                                  "a",  // no continuation
                                  "a\xE4"
                                  "b\xAD",             //
                                  "\xF4\x90\x80\x80",  // above U+10FFFF
                                  "\xF8\x88\x80\x80\x80",
                                  "\xFF",
                                  "\xFE"};
    NameReader reader;
    for (const char* name : broken) {
        EXPECT_FALSE(UXIsName(name));
        EXPECT_FALSE(reader.reads(name));
    }
}

TEST(DecodeUtf8, ReadsEveryCharacterAndNothingElse) {
    for (char32_t code = 0; code < 0x110000; ++code) {
        const std::string text = utf8_of(code);
        const uxhost::Utf8Char c = uxhost::decode_utf8(text, 0);
        if (surrogate(code)) {
            ASSERT_EQ(c.length, 0U);
        } else {
            ASSERT_EQ(c.code, code);
            ASSERT_EQ(c.length, text.size());
        }
    }
}

// --- files -------------------------------------------------------------------------------------

class UXAccessTest : public testing::Test {
protected:
    UXAccessTest() {
        char name[] = "/tmp/uxtree_access_XXXXXX";
        folder_ = mkdtemp(name);
    }
    ~UXAccessTest() override {
        unlink(path("file").c_str());
        unlink(path("link").c_str());
        unlink(path("pipe").c_str());
        rmdir(folder_.c_str());
    }
    std::string path(const char* name) const { return folder_ + "/" + name; }

    std::string folder_;
};

TEST_F(UXAccessTest, IsZeroForAReadableFile) {
    std::ofstream(path("file")) << "x";
    ASSERT_EQ(symlink(path("file").c_str(), path("link").c_str()), 0);

    EXPECT_EQ(UXAccess(path("file").c_str(), 0), 0);
    EXPECT_EQ(UXAccess(path("file").c_str(), 4), 0);
    EXPECT_EQ(UXAccess(path("link").c_str(), 0), 0);
}

TEST_F(UXAccessTest, IsMinusOneForEverythingElse) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);

    EXPECT_EQ(UXAccess(kNoText, 0), -1);
    EXPECT_EQ(UXAccess("", 0), -1);
    EXPECT_EQ(UXAccess(path("missing").c_str(), 0), -1);
    EXPECT_EQ(UXAccess(folder_.c_str(), 0), -1);
    EXPECT_EQ(UXAccess(path("pipe").c_str(), 0), -1);
    EXPECT_EQ(UXAccess("/dev/null", 0), -1);
}

// Acts as a user without rights, when root runs the tests.
class PlainUser {
public:
    PlainUser() : switched_(geteuid() == 0 && seteuid(65534) == 0) {}
    ~PlainUser() {
        if (switched_ && seteuid(0) != 0) std::abort();
    }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;

private:
    bool switched_;
};

TEST_F(UXAccessTest, IsMinusOneForAFileThatMayNotBeRead) {
    std::ofstream(path("file")) << "x";
    ASSERT_EQ(chmod(folder_.c_str(), 0755), 0);
    ASSERT_EQ(chmod(path("file").c_str(), 0644), 0);
    {
        const PlainUser user;
        EXPECT_EQ(UXAccess(path("file").c_str(), 0), 0);
    }
    ASSERT_EQ(chmod(path("file").c_str(), 0200), 0);
    {
        const PlainUser user;
        EXPECT_EQ(UXAccess(path("file").c_str(), 0), -1);
    }
}
}  // namespace
