// The text that says whether and how a range finds its own data.
#include "uxtree/analysis/auto_support.h"

#include <gtest/gtest.h>

#include "support/test_tree.h"

namespace {

using uxtest::FakeHostServices;
using uxtest::TestTree;
using uxtest::tree_text;

// What a text parses to; the outputs are preset, so that untouched ones show.
struct Parsed {
    int result;
    int mode = 77;
    std::string name = "preset";
    int count = 88;
    bool operator==(const Parsed&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Parsed& p) {
    return out << p.result << ": " << p.mode << ", \"" << p.name << "\", " << p.count;
}

Parsed parse(const char* text) {
    Parsed parsed{};
    CStringUTF8 name = parsed.name.c_str();
    parsed.result = vctree_parse_auto_support_string(text, parsed.mode, name, parsed.count);
    parsed.name = static_cast<const char*>(name);
    return parsed;
}

std::string create(int mode, const char* name, int count) {
    CStringUTF8 text = "before";
    EXPECT_EQ(vctree_create_auto_support_string(text, mode, name, count), 1);
    return static_cast<const char*>(text);
}

// --- create and parse ----------------------------------------------------------------------------

TEST(vctree_create_auto_support_string, JoinsModeNameAndCount) {
    EXPECT_EQ(create(1, "Fit", 3), "1|Fit|3");
    EXPECT_EQ(create(-7, "", -1), "-7||-1");
}

TEST(vctree_create_auto_support_string, ANullNameIsTheHostsDefault) {
    EXPECT_EQ(create(0, nullptr, 1), "0|Auto|1");

    FakeHostServices services;
    services->messageText = [](int number, int, CStringUTF8& out) {
        out = number == 1624 ? "Selbst" : "?";
        return true;
    };
    EXPECT_EQ(create(0, nullptr, 1), "0|Selbst|1");
}

TEST(vctree_create_auto_support_string, TheNameMayBeTheOutputItself) {
    CStringUTF8 text = "Fit";
    vctree_create_auto_support_string(text, 1, text, 2);
    EXPECT_STREQ(text, "1|Fit|2");
}

TEST(vctree_create_auto_support_string, ANameWithASeparatorDoesNotComeBack) {
    EXPECT_EQ(create(1, "a|b", 5), "1|a|b|5");
    EXPECT_EQ(parse("1|a|b|5"), (Parsed{1, 1, "a", 0}));
}

TEST(vctree_create_auto_support_string, AHostFailureGivesZero) {
    FakeHostServices services;
    services->messageText = [](int, int, CStringUTF8&) -> bool { throw 1; };
    CStringUTF8 text = "before";
    EXPECT_EQ(vctree_create_auto_support_string(text, 1, nullptr, 1), 0);
    EXPECT_STREQ(text, "before");
}

TEST(vctree_parse_auto_support_string, ReadsAllThreeTokens) {
    EXPECT_EQ(parse("0|Fit|3"), (Parsed{1, 0, "Fit", 3}));
    EXPECT_EQ(parse("2|x|-4|more"), (Parsed{1, 2, "x", -4}));
}

TEST(vctree_parse_auto_support_string, MissingTokensHaveDefaults) {
    EXPECT_EQ(parse("1"), (Parsed{1, 1, "Auto", 1}));
    EXPECT_EQ(parse("1|Fit"), (Parsed{1, 1, "Fit", 1}));
    EXPECT_EQ(parse("1|"), (Parsed{1, 1, "", 1}));
    EXPECT_EQ(parse("1||"), (Parsed{1, 1, "", 0}));
}

TEST(vctree_parse_auto_support_string, NumbersAreLeadingDigits) {
    EXPECT_EQ(parse("1x|Fit|2y"), (Parsed{1, 1, "Fit", 2}));
    EXPECT_EQ(parse("on|Fit|two"), (Parsed{1, 0, "Fit", 0}));
}

TEST(vctree_parse_auto_support_string, DoubleQuotesProtectSeparators) {
    EXPECT_EQ(parse("1|\"a|b\"|2"), (Parsed{1, 1, "a|b", 2}));
    EXPECT_EQ(parse("1|\"say \"\"hi\"\"\"|2"), (Parsed{1, 1, "say \"hi\"", 2}));
    EXPECT_EQ(parse("1|\"open|2"), (Parsed{1, 1, "open|2", 1}));
}

TEST(vctree_parse_auto_support_string, NoTextLeavesTheOutputsAlone) {
    EXPECT_EQ(parse(""), Parsed{0});
    EXPECT_EQ(parse(nullptr), Parsed{0});
}

TEST(vctree_parse_auto_support_string, TheTextMayBeTheNameItself) {
    int mode = 0;
    int count = 0;
    CStringUTF8 text = "1|Fit|3";
    EXPECT_EQ(vctree_parse_auto_support_string(text, mode, text, count), 1);
    EXPECT_STREQ(text, "Fit");
    EXPECT_EQ(count, 3);
}

// --- get -----------------------------------------------------------------------------------------

Parsed get(const char* xml) {
    TestTree tree(xml);
    Parsed parsed{};
    CStringUTF8 name = parsed.name.c_str();
    parsed.result = vctree_get_auto_support(tree, name, parsed.count);
    parsed.name = static_cast<const char*>(name);
    return parsed;
}

TEST(vctree_get_auto_support, TellsOnOffAndAbsentApart) {
    EXPECT_EQ(get("<a Auto='1|Fit|3'/>"), (Parsed{1, 77, "Fit", 3}));
    EXPECT_EQ(get("<a Auto='0|Fit|3'/>"), (Parsed{-1, 77, "Fit", 3}));
    EXPECT_EQ(get("<a/>"), (Parsed{0}));
}

TEST(vctree_get_auto_support, YieldsTheStoredModeWhateverItIs) {
    EXPECT_EQ(get("<a Auto='2|Fit|3'/>"), (Parsed{2, 77, "Fit", 3}));
    EXPECT_EQ(get("<a Auto='-3|Fit|3'/>"), (Parsed{-3, 77, "Fit", 3}));
}

TEST(vctree_get_auto_support, AnEmptyTextCountsAsAbsent) {
    EXPECT_EQ(get("<a Auto=''/>"), (Parsed{0}));
}

// --- set -----------------------------------------------------------------------------------------

struct Set {
    int result;
    std::string tree;
    bool operator==(const Set&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Set& s) {
    return out << s.result << ": " << s.tree;
}

Set set(const char* xml, int mode, const char* name, int count) {
    TestTree tree(xml);
    const int result = vctree_set_auto_support(tree, mode, name, count);
    return {result, tree.text()};
}

TEST(vctree_set_auto_support, ModeOneWritesAndRemovesDynaFx) {
    EXPECT_EQ(set("<a DynaFx='f' x='1'/>", 1, "Fit", 3),
              (Set{1, "<a x=\"1\" Auto=\"1|Fit|3\"></a>"}));
}

TEST(vctree_set_auto_support, ModeMinusOneKeepsItOffAndKeepsDynaFx) {
    EXPECT_EQ(set("<a DynaFx='f'/>", -1, "Fit", 3),
              (Set{1, "<a DynaFx=\"f\" Auto=\"0|Fit|3\"></a>"}));
}

TEST(vctree_set_auto_support, ModeZeroRemovesAndYieldsZero) {
    EXPECT_EQ(set("<a Auto='1|Fit|3'/>", 0, "New", 9), (Set{0, "<a></a>"}));
    EXPECT_EQ(set("<a/>", 0, "New", 9), (Set{0, "<a></a>"}));
}

TEST(vctree_set_auto_support, OtherModesWriteNothing) {
    for (int mode : {2, -2, 100}) {
        EXPECT_EQ(set("<a Auto='1|Fit|3' DynaFx='f'/>", mode, "New", 9),
                  (Set{0, "<a Auto=\"1|Fit|3\" DynaFx=\"f\"></a>"}));
    }
}

TEST(vctree_set_auto_support, ANullNameAndCountMinusOneKeepWhatIsThere) {
    EXPECT_EQ(set("<a Auto='0|Fit|3'/>", 1, nullptr, -1), (Set{1, "<a Auto=\"1|Fit|3\"></a>"}));
    EXPECT_EQ(set("<a Auto='0|Fit|3'/>", 1, nullptr, 9), (Set{1, "<a Auto=\"1|Fit|9\"></a>"}));
    EXPECT_EQ(set("<a Auto='0|Fit|3'/>", 1, "New", -1), (Set{1, "<a Auto=\"1|New|3\"></a>"}));
    EXPECT_EQ(set("<a Auto='0||3'/>", 1, nullptr, -1), (Set{1, "<a Auto=\"1||3\"></a>"}));
}

TEST(vctree_set_auto_support, WithoutSupportTheDefaultsAreMessageAndOne) {
    EXPECT_EQ(set("<a/>", 1, nullptr, -1), (Set{1, "<a Auto=\"1|Auto|1\"></a>"}));
}

TEST(vctree_set_auto_support, AnEmptyNameIsARealName) {
    EXPECT_EQ(set("<a Auto='0|Fit|3'/>", 1, "", -1), (Set{1, "<a Auto=\"1||3\"></a>"}));
    EXPECT_EQ(set("<a/>", 1, "", 0), (Set{1, "<a Auto=\"1||0\"></a>"}));
}

// --- reset ---------------------------------------------------------------------------------------

std::string reset(const char* xml) {
    TestTree tree(xml);
    vctree_check_reset_auto_support(tree);
    return tree.text();
}

TEST(vctree_check_reset_auto_support, SwitchesOffWhatIsThere) {
    EXPECT_EQ(reset("<a Auto='1|Fit|3' DynaFx='f'/>"), "<a Auto=\"0|Fit|3\" DynaFx=\"f\"></a>");
    EXPECT_EQ(reset("<a Auto='0|Fit|3'/>"), "<a Auto=\"0|Fit|3\"></a>");
    EXPECT_EQ(reset("<a Auto='1'/>"), "<a Auto=\"0|Auto|1\"></a>");
}

TEST(vctree_check_reset_auto_support, LeavesANodeWithoutSupportAlone) {
    EXPECT_EQ(reset("<a DynaFx='f'/>"), "<a DynaFx=\"f\"></a>");
    EXPECT_EQ(reset("<a Auto=''/>"), "<a Auto=\"\"></a>");
}

// --- script forms --------------------------------------------------------------------------------

TEST(uxtree_get_auto_support, GivesTheNativeAnswerAndAcceptsNullOutputs) {
    TestTree tree("<a Auto='0|Fit|3'/>");
    CStringUTF8 name;
    int count = 0;
    EXPECT_EQ(uxtree_get_auto_support(&tree, &name, &count), -1);
    EXPECT_STREQ(name, "Fit");
    EXPECT_EQ(count, 3);
    EXPECT_EQ(uxtree_get_auto_support(&tree, nullptr, nullptr), -1);
}

TEST(uxtree_set_auto_support, GivesTheNativeAnswer) {
    TestTree tree("<a/>");
    EXPECT_EQ(uxtree_set_auto_support(&tree, 1, "Fit", 3), 1);
    EXPECT_EQ(tree.text(), tree_text("<a Auto='1|Fit|3'/>"));
    EXPECT_EQ(uxtree_set_auto_support(&tree, 2, "Fit", 3), 0);
}

}  // namespace
