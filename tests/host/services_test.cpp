// What a host does for the library: words, messages, limits.
#include "uxtree/host/services.h"

#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/host/node.h"
#include "uxtree/host/utilities.h"

#include "support/test_tree.h"

namespace {
using testing::ElementsAre;

UXHostServices& services() {
    return UXGetHostServices();
}

TEST(UXGetHostServices, IsOneObjectWithEveryServiceFilledIn) {
    EXPECT_EQ(&UXGetHostServices(), &UXGetHostServices());
    EXPECT_TRUE(services().messageText);
    EXPECT_TRUE(services().helpCategory);
    EXPECT_TRUE(services().wildcardMatch);
    EXPECT_TRUE(services().validateValue);
    EXPECT_TRUE(services().rangeSlots);
    EXPECT_TRUE(services().finishRange);
    EXPECT_TRUE(services().cleanName);
    EXPECT_EQ(services().utilityModule, "");
    EXPECT_EQ(services().messageModule, "");
    EXPECT_EQ(services().maxNesting, 10000);
}

TEST(UXGetHostServices, AServiceMayBeReplacedAndTakenAway) {
    CStringUTF8 text;
    services().messageText = [](int, int, CStringUTF8& out) {
        out = "mine";
        return true;
    };
    EXPECT_TRUE(services().messageText(0, 0, text));
    EXPECT_STREQ(text, "mine");

    services().messageText = nullptr;

    EXPECT_TRUE(services().messageText(1624, 0, text));
    EXPECT_STREQ(text, "Auto");
}

std::string message(int number, int option = 0) {
    CStringUTF8 text("old");
    EXPECT_TRUE(services().messageText(number, option, text)) << number;
    return static_cast<const char*>(text);
}

TEST(MessageText, HasTheDefaultTexts) {
    EXPECT_EQ(message(1624), "Auto");
    EXPECT_EQ(message(1627), "Weight Data");
    EXPECT_EQ(message(1628), "a");
    EXPECT_EQ(message(1629), "b");
    EXPECT_EQ(message(1630), "c");
    EXPECT_EQ(message(1631), "Weight");
    EXPECT_EQ(message(1996), "Range");
}

TEST(MessageText, IgnoresTheOption) {
    EXPECT_EQ(message(1996, 7), "Range");
    EXPECT_EQ(message(1996, -1), "Range");
}

TEST(MessageText, NamesTheFifteenWeightMethods) {
    CWBOStringArray names;

    EXPECT_EQ(UXSeparateByString(names, message(1935).c_str(), "|"), 15);
    EXPECT_THAT(
        uxtest::texts(names),
        ElementsAre("None", "Data Squared", "Statistical", "Data Inverse", "Data Direct",
                    "Squared Y", "Linear Variance", "Power Variance", "Data Power Variance",
                    "Fitted Statistical", "Fitted Squared", "Fitted Linear Variance",
                    "Fitted Power Variance", "Fitted Data Power Variance", "Two Parameter"));
}

TEST(MessageText, AnUnknownNumberGivesFalseAndAnEmptyText) {
    for (const int number : {0, -1, 1623, 1625, 1626, 1632, 1936, 1997}) {
        CStringUTF8 text("old");
        EXPECT_FALSE(services().messageText(number, 0, text)) << number;
        EXPECT_STREQ(text, "") << number;
    }
}

bool matches(const char* text, const char* pattern, int matchFlag = 1) {
    return services().wildcardMatch(text, pattern, matchFlag);
}

TEST(WildcardMatch, ComparesTheWholeText) {
    EXPECT_TRUE(matches("abc", "abc"));
    EXPECT_FALSE(matches("abcd", "abc"));
    EXPECT_FALSE(matches("abc", "abcd"));
    EXPECT_TRUE(matches("", ""));
    EXPECT_FALSE(matches("a", ""));
    EXPECT_FALSE(matches("", "a"));
}

TEST(WildcardMatch, AStarIsAnyRun) {
    EXPECT_TRUE(matches("", "*"));
    EXPECT_TRUE(matches("abc", "*"));
    EXPECT_TRUE(matches("abc", "a*"));
    EXPECT_TRUE(matches("abc", "*c"));
    EXPECT_TRUE(matches("abc", "a*c"));
    EXPECT_TRUE(matches("abc", "abc*"));
    EXPECT_TRUE(matches("abc", "***a***c***"));
    EXPECT_TRUE(matches("aXbXc", "a*b*c"));
    EXPECT_TRUE(matches("abab", "*ab"));
    EXPECT_TRUE(matches("mississippi", "*iss*ip*"));
    EXPECT_FALSE(matches("abc", "a*d"));
    EXPECT_FALSE(matches("abc", "*b"));
}

TEST(WildcardMatch, AQuestionMarkIsOneCharacter) {
    EXPECT_TRUE(matches("abc", "a?c"));
    EXPECT_TRUE(matches("abc", "???"));
    EXPECT_FALSE(matches("abc", "??"));
    EXPECT_FALSE(matches("abc", "????"));
    EXPECT_FALSE(matches("", "?"));
    EXPECT_TRUE(matches("abc", "?*"));
    EXPECT_TRUE(matches("abc", "*???"));
    EXPECT_FALSE(matches("abc", "*????"));
}

TEST(WildcardMatch, ACharacterMayHaveSeveralBytes) {
    EXPECT_TRUE(matches("\xC3\xA9", "?"));
    EXPECT_FALSE(matches("\xC3\xA9", "??"));
    EXPECT_FALSE(matches("\xC3\xA9", "*??"));
    EXPECT_TRUE(matches("\xE2\x82\xAC", "?"));
    EXPECT_FALSE(matches("\xE2\x82\xAC", "*??"));
    EXPECT_TRUE(matches("\xF0\x9F\x98\x80!", "?!"));
    EXPECT_FALSE(matches("\xF0\x9F\x98\x80", "*??"));
    EXPECT_TRUE(
        matches("a\xE2\x82\xAC"
                "b\xE2\x82\xAC",
                "*?b?"));
    EXPECT_TRUE(matches("x\xE2\x82\xACy", "x*\xE2\x82\xAC?"));
}

TEST(WildcardMatch, ABrokenByteIsOneCharacter) {
    EXPECT_TRUE(matches("\xFF", "?"));
    EXPECT_TRUE(matches("\xC3", "?"));
    EXPECT_TRUE(matches("\xC3x", "??"));
}

TEST(WildcardMatch, TheFlagComparesCaseSensitively) {
    EXPECT_FALSE(matches("ABC", "abc", 1));
    EXPECT_FALSE(matches("ABC", "abc", -5));
    EXPECT_TRUE(matches("ABC", "abc", 0));
    EXPECT_TRUE(matches("aBc", "A*C", 0));
    EXPECT_FALSE(matches("\xC3\xA9", "\xC3\x89", 0));  // only ASCII letters fold
}

TEST(WildcardMatch, OtherCharactersArePlain) {
    EXPECT_TRUE(matches("a[b]\\.+", "a[b]\\.+"));
    EXPECT_FALSE(matches("ab", "a[b]"));
    EXPECT_TRUE(matches("a*c", "a*c"));
    EXPECT_TRUE(matches("a?c", "a?c"));
}

TEST(WildcardMatch, ManyStarsStayCheap) {
    const std::string text(20000, 'a');
    const auto start = std::chrono::steady_clock::now();

    EXPECT_FALSE(matches(text.c_str(), "*a*a*a*a*a*a*a*a*a*a*b"));
    EXPECT_FALSE(matches(text.c_str(), "*aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab*"));

    // Trying every star again would take longer than anyone waits.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(WildcardMatch, AgreesWithASlowRecursiveMatch) {
    struct Slow {
        static bool match(const char* t, const char* p) {
            if (*p == '\0') return *t == '\0';
            if (*p == '*') return match(t, p + 1) || (*t != '\0' && match(t + 1, p));
            return *t != '\0' && (*p == '?' || *p == *t) && match(t + 1, p + 1);
        }
    };
    const std::string letters = "ab?*";
    unsigned state = 1;
    const auto next = [&](unsigned bound) {
        state = state * 1664525U + 1013904223U;
        return (state >> 16U) % bound;
    };
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        std::string pattern;
        for (unsigned n = next(8); n > 0; --n) text += letters[next(2)];
        for (unsigned n = next(7); n > 0; --n) pattern += letters[next(4)];
        ASSERT_EQ(matches(text.c_str(), pattern.c_str()),
                  Slow::match(text.c_str(), pattern.c_str()))
            << text << " " << pattern;
    }
}

std::string cleaned(const char* name, bool changed) {
    CStringUTF8 out("old");
    EXPECT_EQ(services().cleanName(out, name), changed) << name;
    EXPECT_TRUE(UXIsName(static_cast<const char*>(out))) << name;
    return static_cast<const char*>(out);
}

TEST(CleanName, KeepsAName) {
    EXPECT_EQ(cleaned("abc", false), "abc");
    EXPECT_EQ(cleaned("_a-b.c9", false), "_a-b.c9");
    EXPECT_EQ(cleaned("\xC3\xA9t\xC3\xA9", false), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(cleaned("a\xCC\x81", false), "a\xCC\x81");
    EXPECT_EQ(cleaned("_", false), "_");
}

TEST(CleanName, ReplacesEachCharacterThatIsNotAllowed) {
    EXPECT_EQ(cleaned("a b", true), "a_b");
    EXPECT_EQ(cleaned("a/(b)", true), "a__b_");
    EXPECT_EQ(cleaned(" a", true), "_a");
    EXPECT_EQ(cleaned("a\xE2\x82\xAC"
                      "b",
                      true),
              "a_b");  // the euro sign: one character
    EXPECT_EQ(cleaned("a\xF0\x9F\x98\x80"
                      "b",
                      true),
              "a_b");  // above U+FFFF: one character
    EXPECT_EQ(cleaned("<>", true), "__");
}

TEST(CleanName, ReplacesTheColon) {
    EXPECT_EQ(cleaned("a:b", true), "a_b");
    EXPECT_EQ(cleaned(":a", true), "_a");
}

TEST(CleanName, PutsAnUnderscoreBeforeWhatCannotStart) {
    EXPECT_EQ(cleaned("1a", true), "_1a");
    EXPECT_EQ(cleaned("-a", true), "_-a");
    EXPECT_EQ(cleaned(".", true), "_.");
    EXPECT_EQ(cleaned("\xCC\x81", true), "_\xCC\x81");  // a combining character
}

TEST(CleanName, AnEmptyTextBecomesAnUnderscore) {
    EXPECT_EQ(cleaned("", true), "_");
}

TEST(CleanName, ReplacesBrokenBytesOneByOne) {
    EXPECT_EQ(cleaned("a\xFF\xC3", true), "a__");
    EXPECT_EQ(cleaned("\xC3", true), "_");
}

TEST(CleanName, TheOutputMayBeTheName) {
    CStringUTF8 name("1 a");

    EXPECT_TRUE(services().cleanName(name, name));
    EXPECT_STREQ(name, "_1_a");
    EXPECT_FALSE(services().cleanName(name, name));
    EXPECT_STREQ(name, "_1_a");
}

UXRangeSlots slots(int rangeType, int stored = 0) {
    UXRangeSlots result;
    result.tags.Add("old");
    result.labels.Add("old");
    result.dataIds.Add(-1);
    result.actionId = 9;
    services().rangeSlots(rangeType, stored, result);
    return result;
}

std::vector<std::string> tags(int rangeType, int stored = 0) {
    const UXRangeSlots result = slots(rangeType, stored);
    std::vector<std::string> items;
    for (int i = 0; i < result.tags.GetSize(); ++i) items.emplace_back(result.tags[i]);
    return items;
}

TEST(RangeSlots, DefaultToXyAndErrorsForTypes2And4) {
    EXPECT_THAT(tags(2), ElementsAre("X", "Y", "ED"));
    EXPECT_THAT(tags(4), ElementsAre("X", "Y", "ED"));
}

TEST(RangeSlots, DefaultToXyzOtherwise) {
    for (const int type : {-1, 0, 1, 3, 5, 100}) {
        EXPECT_THAT(tags(type), ElementsAre("X", "Y", "Z")) << type;
    }
    EXPECT_THAT(tags(3, 2), ElementsAre("X", "Y", "Z"));  // what is stored makes no difference
}

TEST(RangeSlots, ReplaceWhatWasThere) {
    const UXRangeSlots result = slots(3);

    EXPECT_EQ(result.labels.GetSize(), 0);
    ASSERT_EQ(result.dataIds.GetSize(), 3);
    EXPECT_EQ(result.dataIds[0], 51);
    EXPECT_EQ(result.dataIds[1], 52);
    EXPECT_EQ(result.dataIds[2], 53);
    EXPECT_EQ(result.actionId, 0);
}

TEST(HelpCategory, DefaultsToTheGivenOne) {
    UXXmlWrapperBase out;
    UXXmlWrapperBase tree;

    EXPECT_EQ(services().helpCategory(out, tree, 7, 300), 300);
    EXPECT_EQ(services().helpCategory(out, tree, 7, -1), -1);
}

TEST(ValidateValue, AcceptsEverything) {
    UXXmlWrapperBase node;

    EXPECT_TRUE(services().validateValue(node, "anything"));
    EXPECT_TRUE(services().validateValue(node, ""));
}

TEST(FinishRange, DoesNothing) {
    UXXmlWrapperBase invalid;

    services().finishRange(invalid, 4);

    EXPECT_EQ(invalid.IsNodeValid(), 0);
}
}  // namespace
