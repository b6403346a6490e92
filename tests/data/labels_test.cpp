// Labels: those of nodes, combined ones, replaced texts.
#include "uxtree/data/labels.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/labels_detail.h"
#include "support/test_tree.h"

namespace {

using uxtest::script_ints;
using uxtest::script_texts;
using uxtest::TestTree;

// --- labels of nodes ---------------------------------------------------------------------------

std::string label(const char* xml, int mode) {
    TestTree tree(xml);
    return static_cast<const char*>(uxtree_get_node_label(&tree, mode));
}

TEST(uxtree_get_node_label, GivesTheTagTheLabelOrAll) {
    const char* const xml = "<Col Label='Time' SubHeader0='s' SubHeader1='raw' SubHeader3='no'/>";

    EXPECT_EQ(label(xml, 0), "Col");
    EXPECT_EQ(label(xml, 1), "Time");
    EXPECT_EQ(label(xml, 2), "Col(Time)(s)(raw)");
}

TEST(uxtree_get_node_label, FallsBackToTheTag) {
    for (const char* xml : {"<Col/>", "<Col SubHeader0='s'/>", "<Col Label='' SubHeader0='s'/>"}) {
        for (const int mode : {0, 1, 2}) EXPECT_EQ(label(xml, mode), "Col") << xml << mode;
    }
}

TEST(uxtree_get_node_label, EnclosesAnEmptySubHeader) {
    EXPECT_EQ(label("<Col Label='T' SubHeader0='' SubHeader1='x'/>", 2), "Col(T)()(x)");
}

TEST(uxtree_get_node_label, IsEmptyForOtherModes) {
    EXPECT_EQ(label("<Col Label='T'/>", 3), "");
    EXPECT_EQ(label("<Col Label='T'/>", -1), "");
}

// --- combining ---------------------------------------------------------------------------------

struct Flags {
    bool addPrefix = false;
    bool parenthesizeAlways = false;
    bool strict = false;
};
std::string combined(const std::vector<std::string>& labels, Flags flags = {}) {
    auto array = script_texts(labels);
    CStringUTF8 out("old");
    EXPECT_EQ(uxtree_combine_data_label(&out, &array, flags.addPrefix, flags.parenthesizeAlways,
                                        flags.strict),
              1);
    return static_cast<const char*>(out);
}

TEST(uxtree_combine_data_label, JoinsPartsInParentheses) {
    EXPECT_EQ(combined({"?$OP:A", "?$OP:B"}, {true}), "?$OP:(A) (\" - \") (B)");
    EXPECT_EQ(combined({"A", "f(x)", "C"}), "(A) (\" - \") f(x) (\" - \") (C)");
    EXPECT_EQ(combined({"", ""}), "() (\" - \") ()");
}

TEST(uxtree_combine_data_label, EnclosesASinglePartOnRequestOnly) {
    EXPECT_EQ(combined({"A"}), "A");
    EXPECT_EQ(combined({"A"}, {false, true}), "(A)");
    EXPECT_EQ(combined({"f(x)"}, {false, true}), "f(x)");
    EXPECT_EQ(combined({"A"}, {true}), "?$OP:A");
    EXPECT_EQ(combined({"A)"}, {false, true}), "(A))");
}

TEST(uxtree_combine_data_label, CutsFiveCharactersWhereverTheMarkerStands) {
    EXPECT_EQ(combined({"abcdef?$OP:g"}), "f?$OP:g");
    EXPECT_EQ(combined({"?$OP:"}), "");
    EXPECT_EQ(combined({"?$op:A"}), "?$op:A");
}

TEST(uxtree_combine_data_label, JoinsTheLabelsAsTheyStandWhenStrictFails) {
    EXPECT_EQ(combined({"?$OP:A", "B"}, {true, true, true}), "?$OP:A - B");
    EXPECT_EQ(combined({"?$OP:A", "?$OP:B"}, {false, false, true}), "(A) (\" - \") (B)");
    EXPECT_EQ(combined({"B"}, {false, false, true}), "B");
}

TEST(uxtree_combine_data_label, YieldsZeroForMissingOrEmptyLists) {
    auto none = script_texts({});
    auto ints = script_ints({1});
    auto one = script_texts({"A"});
    CStringUTF8 out("old");

    EXPECT_EQ(uxtree_combine_data_label(&out, &none, true, false, false), 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(uxtree_combine_data_label(&out, &none, true, false, true), 0);
    EXPECT_EQ(uxtree_combine_data_label(&out, &ints, true, false, false), 0);
    EXPECT_EQ(uxtree_combine_data_label(&out, nullptr, true, false, false), 0);
    EXPECT_EQ(uxtree_combine_data_label(nullptr, &one, true, false, false), 0);
}

TEST(_tree_combine_data_label, HoldsWhatWasBuiltWhenStrictStops) {
    const CWBOStringArray labels = uxtest::string_list({"?$OP:A", "?$OP:B", "C", "?$OP:D"});
    CStringUTF8 out("old");

    EXPECT_EQ(ux::_tree_combine_data_label(&out, &labels, true, false, true), -2);
    EXPECT_EQ(out, "?$OP:(A) (\" - \") (B)");
    EXPECT_EQ(ux::_tree_combine_data_label(&out, nullptr, true, false, true), -1);
    EXPECT_EQ(ux::_tree_combine_data_label(nullptr, &labels, true, false, true), -1);
}

TEST(_tree_combine_data_label, ReadsBeforeItWrites) {
    CWBOStringArray labels = uxtest::string_list({"A", "B"});

    EXPECT_EQ(ux::_tree_combine_data_label(&labels[0], &labels, false, false, false), 0);
    EXPECT_EQ(labels[0], "(A) (\" - \") (B)");
}

// --- replacing a part --------------------------------------------------------------------------

struct Rewritten {
    bool done;
    std::string text;
    bool operator==(const Rewritten& other) const {
        return done == other.done && text == other.text;
    }
};
std::ostream& operator<<(std::ostream& out, const Rewritten& one) {
    return out << one.done << ' ' << one.text;
}
Rewritten replaced(const char* text, const std::vector<std::string>& find,
                   const std::vector<std::string>& replacements, const char* prefix = nullptr) {
    auto finds = script_texts(find);
    auto parts = script_texts(replacements);
    CStringUTF8 in(text);
    CStringUTF8 out("old");
    CStringUTF8 shared(text);
    const bool done = uxtree_get_replaced_combined_label(&out, &in, &finds, &parts, prefix);
    EXPECT_EQ(uxtree_get_replaced_combined_label(&shared, &shared, &finds, &parts, prefix), done);
    EXPECT_EQ(shared, out);
    EXPECT_EQ(in, text);
    return {done, static_cast<const char*>(out)};
}

TEST(uxtree_get_replaced_combined_label, ReplacesOnePartBySeveral) {
    EXPECT_EQ(replaced("?$OP:(A) (\" - \") (B)", {"A"}, {"X", "Y"}, "?$OP:"),
              (Rewritten{true, "?$OP:(X) (\" - \") (Y) (\" - \") (B)"}));
}

TEST(uxtree_get_replaced_combined_label, KeepsWhatFollowsTheFoundTextBehindEachReplacement) {
    EXPECT_EQ(replaced("(A.x) rest", {"A"}, {"X", "Y"}),
              (Rewritten{true, "(X.x) (\" - \") (Y.x) rest"}));
}

TEST(uxtree_get_replaced_combined_label, RunsFromTheFirstFoundTextToTheLast) {
    EXPECT_EQ(replaced("(a:b/c) z", {"a", ":", "/"}, {"X"}), (Rewritten{true, "(Xc) z"}));
}

TEST(uxtree_get_replaced_combined_label, GoesOnInTheTail) {
    EXPECT_EQ(replaced("(A) (A) (B) (A)", {"A"}, {"X"}), (Rewritten{true, "(X) (X) (B) (X)"}));
    EXPECT_EQ(replaced("(A) (A)", {"A"}, {"A", "A"}),  // replaced text is not searched again
              (Rewritten{true, "(A) (\" - \") (A) (A) (\" - \") (A)"}));
}

TEST(uxtree_get_replaced_combined_label, TakesTheLabelsEndForAMissingParenthesis) {
    EXPECT_EQ(replaced("A.x", {"A"}, {"X", "Y"}), (Rewritten{true, "(X.x) (\" - \") (Y.x)"}));
}

TEST(uxtree_get_replaced_combined_label, TrimsAllParenthesesBeforeAClosingTail) {
    EXPECT_EQ(replaced("(A)", {"A"}, {"((X))"}), (Rewritten{true, "(X)"}));
}

TEST(uxtree_get_replaced_combined_label, HasNoMiddleWhereTheTextItselfHoldsTheParenthesis) {
    EXPECT_EQ(replaced("(A)B) c", {"A)B"}, {"X"}), (Rewritten{true, "(X)B) c"}));
}

TEST(uxtree_get_replaced_combined_label, LooksAtTheRewrittenTail) {
    // The tail ")..." begins, once rewritten, with what stands for its own ")".
    EXPECT_EQ(replaced("a)b", {")"}, {"X", "Y"}), (Rewritten{true, "a(Xb) (\" - \") (Yb)"}));
    EXPECT_EQ(replaced("))", {")"}, {"X", "Y"}),
              (Rewritten{true, "(X) (\" - \") (Y)(X) (\" - \") (Y)"}));
}

TEST(uxtree_get_replaced_combined_label, GivesTheLabelBackWhenSomethingIsMissing) {
    EXPECT_EQ(replaced("(A) (B)", {"C"}, {"X"}), (Rewritten{false, "(A) (B)"}));
    EXPECT_EQ(replaced("(A) (B)", {"A", "C"}, {"X"}), (Rewritten{false, "(A) (B)"}));
    EXPECT_EQ(replaced("(A)", {"A"}, {"X"}, "?$OP:"), (Rewritten{false, "(A)"}));
    EXPECT_EQ(replaced("x?$OP:(A)", {"A"}, {"X"}, "?$OP:"), (Rewritten{false, "x?$OP:(A)"}));
    EXPECT_EQ(replaced("", {"A"}, {"X"}), (Rewritten{false, ""}));
    EXPECT_EQ(replaced("(A)", {"A"}, {"X"}, ""), (Rewritten{true, "(X)"}));
}

TEST(uxtree_get_replaced_combined_label, ReplacesEverythingForAnEmptyFindList) {
    EXPECT_EQ(replaced("(A) (B)", {}, {"X", "Y"}), (Rewritten{true, "(X) (\" - \") (Y)"}));
    EXPECT_EQ(replaced("(A) (B)", {}, {}), (Rewritten{true, ""}));
}

TEST(uxtree_get_replaced_combined_label, TakesAnEmptyReplacementListAsNothing) {
    EXPECT_EQ(replaced("(A) (B)", {"A"}, {}), (Rewritten{true, "() (B)"}));
}

TEST(uxtree_get_replaced_combined_label, EndsForEmptyFindTexts) {
    EXPECT_EQ(replaced("a)b", {""}, {"X"}), (Rewritten{true, "XaX)b"}));
    EXPECT_EQ(replaced("))", {""}, {"X"}), (Rewritten{true, "X)X)"}));
}

// --- replacing labels of a branch --------------------------------------------------------------

TEST(uxtree_recursively_replace_label_attributes, RewritesTheBranchItsStartIncluded) {
    TestTree tree("<r Label='aXa'><b Label='X'><c Label='no'>X</c><d/></b><e Label='XX'/></r>");

    EXPECT_EQ(uxtree_recursively_replace_label_attributes(&tree, "X", "-"), 3);
    EXPECT_EQ(tree.text(), TestTree("<r Label='a-a'><b Label='-'><c Label='no'>X</c><d/></b>"
                                    "<e Label='--'/></r>")
                               .text());
    EXPECT_EQ(uxtree_recursively_replace_label_attributes(&tree, "-", nullptr), 3);
    EXPECT_EQ(
        tree.text(),
        TestTree("<r Label='aa'><b Label=''><c Label='no'>X</c><d/></b><e Label=''/></r>").text());
}

TEST(uxtree_recursively_replace_label_attributes, CountsALabelThatStaysTheSame) {
    TestTree tree("<r Label='X'/>");

    EXPECT_EQ(uxtree_recursively_replace_label_attributes(&tree, "X", "X"), 1);
}

TEST(uxtree_recursively_replace_label_attributes, FindsNoEmptyText) {
    TestTree tree("<r Label='X'/>");

    EXPECT_EQ(uxtree_recursively_replace_label_attributes(&tree, "", "Y"), 0);
}

TEST(uxtree_recursively_replace_combined_label_attributes, CountsLabelsThatDiffer) {
    TestTree tree(
        "<r Label='?$OP:(A)'><b Label='(A)'/><c Label='?$OP:(B)'/><d/><e Label='?$OP:(A) (A)'/>"
        "</r>");
    auto find = script_texts({"A"});
    auto replacements = script_texts({"X"});

    EXPECT_EQ(
        uxtree_recursively_replace_combined_label_attributes(&tree, &find, &replacements, "?$OP:"),
        2);
    EXPECT_EQ(tree.text(), TestTree("<r Label='?$OP:(X)'><b Label='(A)'/><c Label='?$OP:(B)'/><d/>"
                                    "<e Label='?$OP:(X) (X)'/></r>")
                               .text());
    EXPECT_EQ(uxtree_recursively_replace_combined_label_attributes(&tree, &replacements,
                                                                   &replacements, nullptr),
              0);
}

// --- localization nodes ------------------------------------------------------------------------

struct Localized {
    int result;
    std::string node;
    bool operator==(const Localized& other) const {
        return result == other.result && node == other.node;
    }
};
std::ostream& operator<<(std::ostream& out, const Localized& one) {
    return out << one.result << ' ' << one.node;
}

constexpr char kMessages[] =
    "<r><f DataID='90'>fallback</f>"
    "<p DataID='420' RepeatID='1'><a DataID='7'>first</a></p>"
    "<p DataID='420' RepeatID='2'><a DataID='7'>second</a><b DataID='8'>  </b><c DataID='9'/>"
    "<d DataID='10'>&#9;</d><e DataID='91'>deep</e></p></r>";

Localized localized(int id, int fallbackId, int checkEmpty, int category) {
    TestTree tree(kMessages);
    UXXmlWrapperBase out = tree;
    const int result =
        uxtree_get_localization_node(&out, &out, id, fallbackId, 420, checkEmpty, category);
    return {result, uxtest::to_text(out)};
}

TEST(uxtree_get_localization_node, FindsTheNodeUnderTheParentOfTheCategory) {
    EXPECT_EQ(localized(7, 90, 1, 2), (Localized{1, "<a DataID=\"7\">second</a>"}));
    EXPECT_EQ(localized(7, 90, 1, 1), (Localized{1, "<a DataID=\"7\">first</a>"}));
}

TEST(uxtree_get_localization_node, TakesAnyRepeatIdForACategoryBelowOne) {
    EXPECT_EQ(localized(7, 90, 1, 0), (Localized{1, "<a DataID=\"7\">first</a>"}));
    EXPECT_EQ(localized(7, 90, 1, -5), (Localized{1, "<a DataID=\"7\">first</a>"}));
}

TEST(uxtree_get_localization_node, AsksTheHostForACategoryBelowOne) {
    uxtest::FakeHostServices services;
    services->helpCategory = [](UXXmlWrapperBase&, UXXmlWrapperBase&, int, int category) {
        return category == -3 ? 2 : category;
    };

    EXPECT_EQ(localized(7, 90, 1, -3), (Localized{1, "<a DataID=\"7\">second</a>"}));
    EXPECT_EQ(localized(7, 90, 1, 1), (Localized{1, "<a DataID=\"7\">first</a>"}));
}

TEST(uxtree_get_localization_node, FallsBackWhenNothingIsFound) {
    EXPECT_EQ(localized(77, 90, 0, 2), (Localized{1, "<f DataID=\"90\">fallback</f>"}));
    EXPECT_EQ(localized(77, 91, 0, 2), (Localized{0, "(invalid)"}));  // direct children only
}

TEST(uxtree_get_localization_node, FallsBackFromABlankTextOnRequest) {
    EXPECT_EQ(localized(8, 90, 1, 2), (Localized{1, "<f DataID=\"90\">fallback</f>"}));
    EXPECT_EQ(localized(9, 90, 1, 2), (Localized{1, "<f DataID=\"90\">fallback</f>"}));
    EXPECT_EQ(localized(9, 90, 0, 2), (Localized{1, "<c DataID=\"9\"></c>"}));
    EXPECT_EQ(localized(10, 90, 1, 2).node.substr(0, 2), "<d");  // blanks are spaces
    EXPECT_EQ(localized(9, 99, 1, 2), (Localized{0, "<c DataID=\"9\"></c>"}));
}

// --- the switch --------------------------------------------------------------------------------

TEST(VCTreeAccessBlockLocalization, ReadsAndSetsTheSwitch) {
    bool value = true;

    EXPECT_FALSE(VCTreeAccessBlockLocalization(nullptr, true));
    EXPECT_FALSE(VCTreeAccessBlockLocalization(&value, true));
    EXPECT_FALSE(value);
    value = true;
    EXPECT_TRUE(VCTreeAccessBlockLocalization(&value, false));
    EXPECT_TRUE(VCTreeAccessBlockLocalization(nullptr, false));
    value = false;
    EXPECT_TRUE(VCTreeAccessBlockLocalization(&value, true));
    EXPECT_TRUE(value);
    value = false;
    EXPECT_FALSE(VCTreeAccessBlockLocalization(&value, false));
}

}  // namespace
