// Classes, case and comparisons of ASCII, which leave all other bytes alone.
#include "base/ascii.h"

#include <cctype>
#include <string>

#include <gtest/gtest.h>

TEST(ascii, ClassesAndCaseAreThoseOfTheCLocale) {
    for (int byte = 0; byte < 0x80; ++byte) {
        const char c = static_cast<char>(byte);
        EXPECT_EQ(ux::is_space(c), std::isspace(byte) != 0) << byte;
        EXPECT_EQ(ux::is_digit(c), std::isdigit(byte) != 0) << byte;
        EXPECT_EQ(ux::is_letter(c), std::isalpha(byte) != 0) << byte;
        EXPECT_EQ(ux::to_lower(c), static_cast<char>(std::tolower(byte))) << byte;
        EXPECT_EQ(ux::to_upper(c), static_cast<char>(std::toupper(byte))) << byte;
    }
    for (int byte = 0x80; byte < 0x100; ++byte) {
        const char c = static_cast<char>(byte);
        EXPECT_FALSE(ux::is_space(c) || ux::is_digit(c) || ux::is_letter(c)) << byte;
        EXPECT_EQ(ux::to_lower(c), c);
        EXPECT_EQ(ux::to_upper(c), c);
    }
}

TEST(ascii, TextsCompareWithoutTheCaseOfLetters) {
    EXPECT_TRUE(ux::equal_no_case("Data[1]", "dATA[1]"));
    EXPECT_FALSE(ux::equal_no_case("Data", "Data "));
    EXPECT_FALSE(ux::equal_no_case("@", "`"));  // 20 apart, and no letters
    EXPECT_FALSE(ux::equal_no_case("\xC3\x84", "\xC3\xA4"));
    EXPECT_TRUE(ux::starts_with_no_case("ParameterA", "PARAM"));
    EXPECT_TRUE(ux::starts_with_no_case("a", ""));
    EXPECT_FALSE(ux::starts_with_no_case("Par", "param"));
    EXPECT_EQ(ux::folded("MiXed \xC3\x84 9"), "mixed \xC3\x84 9");
    EXPECT_EQ(ux::trimmed(" \t a b\n"), "a b");
    EXPECT_EQ(ux::trimmed(" \r\n"), "");
}
