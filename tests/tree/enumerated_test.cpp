// Numbered tags and nodes.
#include "uxtree/tree/enumerated.h"

#include <climits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

using namespace uxtest;

namespace {

// Result and name as "3 Set3".
std::string next_name(const char* tree, int numbered) {
    TestTree parsed(tree);
    CStringUTF8 name = "(as it was)";
    const int result = uxtree_get_next_enum_tag_name(&parsed, &name, numbered);
    return std::to_string(result) + " " + std::string(name);
}

std::string column_names(int count) {
    std::string out = "<r>";
    for (int i = 0; i < count; ++i) {
        std::string name;
        for (int n = i + 1; n > 0; n = (n - 1) / 26) {
            name.insert(name.begin(), static_cast<char>('A' + (n - 1) % 26));
        }
        out += "<" + name + "/>";
    }
    return out + "</r>";
}

TEST(uxtree_get_next_enum_tag_name, LettersCountLikeColumns) {
    EXPECT_EQ(next_name("<r/>", 0), "0 A");
    EXPECT_EQ(next_name("<r><A/><B/><C/></r>", 0), "0 D");
    EXPECT_EQ(next_name(column_names(26).c_str(), 0), "0 AA");
    EXPECT_EQ(next_name(column_names(52).c_str(), 0), "0 BA");
    EXPECT_EQ(next_name(column_names(26 + 26 * 26).c_str(), 0), "0 AAA");
}

TEST(uxtree_get_next_enum_tag_name, LettersIgnoreCaseAndOtherNames) {
    EXPECT_EQ(next_name("<r><a/><B/><c1/><Other/></r>", 0), "0 C");
    EXPECT_EQ(next_name("<r><B/><A/></r>", 0), "0 C");
    EXPECT_EQ(next_name("<r><B/><C/></r>", 0), "0 A");
}

TEST(uxtree_get_next_enum_tag_name, NumbersFillTheFirstGap) {
    EXPECT_EQ(next_name("<r><Set1/><Set2/><Set4/></r>", 1), "3 Set3");
    EXPECT_EQ(next_name("<r><Set1/><Set2/><Set3/><Set5/></r>", 1), "4 Set4");
    EXPECT_EQ(next_name("<r><Set4/><Set2/><Set1/></r>", 1), "3 Set3");
    EXPECT_EQ(next_name("<r><Set2/><Set3/></r>", 1), "1 Set1");
    EXPECT_EQ(next_name("<r><Set1/></r>", 1), "2 Set2");
}

TEST(uxtree_get_next_enum_tag_name, ZeroOrARepeatedNumberBreaksTheRun) {
    EXPECT_EQ(next_name("<r><Set0/><Set1/><Set2/></r>", 1), "1 Set1");
    EXPECT_EQ(next_name("<r><Set1/><Set1/><Set2/></r>", 1), "2 Set2");
    EXPECT_EQ(next_name("<r><Set1/><Set2/><Set02/><Set3/></r>", 1), "3 Set3");
}

TEST(uxtree_get_next_enum_tag_name, OnlyThePrefixOfTheFirstChildCounts) {
    EXPECT_EQ(next_name("<r><Set1/><set2/><Set2x/><Other2/><Set/></r>", 1), "2 Set2");
    EXPECT_EQ(next_name("<r><a1b1/><a1b2/><a2/></r>", 1), "3 a1b3");
}

TEST(uxtree_get_next_enum_tag_name, HugeNumbersAreFarAway) {
    EXPECT_EQ(next_name("<r><Set99999999999999999999/><Set1/></r>", 1), "2 Set2");
    EXPECT_EQ(next_name("<r><Set4294967297/></r>", 1), "1 Set1");
}

TEST(uxtree_get_next_enum_tag_name, NeedsANumberedFirstChild) {
    EXPECT_EQ(next_name("<r/>", 1), "-1 (as it was)");
    EXPECT_EQ(next_name("<r><Set/><Set1/></r>", 1), "-1 (as it was)");
}

TEST(uxtree_get_next_enum_tag_name, TheNumberedFormNeedsNoOutput) {
    TestTree tree("<r><Set1/></r>");

    EXPECT_EQ(uxtree_get_next_enum_tag_name(&tree, nullptr, 1), 2);
}

std::string node_name(const char* tree, const char* prefix) {
    TestTree parsed(tree);
    CStringUTF8 name = "before";
    uxtree_get_enum_node_name(&parsed, &name, prefix);
    return std::string(name);
}

TEST(uxtree_get_enum_node_name, TakesTheFirstFreeNumber) {
    EXPECT_EQ(node_name("<r><Range/><Range1/></r>", "Range"), "Range2");
    EXPECT_EQ(node_name("<r><Range/><Range2/></r>", "Range"), "Range1");
    EXPECT_EQ(node_name("<r><Range/></r>", "Range"), "Range1");
}

TEST(uxtree_get_enum_node_name, ThePrefixAloneWhenItIsFree) {
    EXPECT_EQ(node_name("<r/>", "Range"), "Range");
    EXPECT_EQ(node_name("<r><Range1/></r>", "Range"), "Range");
    EXPECT_EQ(node_name("<r><range/></r>", "Range"), "Range");
    EXPECT_EQ(node_name("<r><a/></r>", nullptr), "");
}

TEST(uxtree_get_enum_node_name, NumbersAreComparedAsTexts) {
    EXPECT_EQ(node_name("<r><Range/><Range01/><Range1x/></r>", "Range"), "Range1");
    EXPECT_EQ(node_name("<r><R1/><R11/><R12/></r>", "R1"), "R13");
}

TEST(uxtree_get_enum_node_name, ThePrefixMayBeTheOutput) {
    TestTree tree("<r><Range/></r>");
    CStringUTF8 name = "Range";

    uxtree_get_enum_node_name(&tree, &name, name);

    EXPECT_EQ(std::string(name), "Range1");
}

std::string attribute_name(const char* tree, const char* prefix, const char* suffix) {
    TestTree parsed(tree);
    CStringUTF8 name = "before";
    uxtree_get_enum_attribute_value(&parsed, &name, "k", prefix, suffix);
    return std::string(name);
}

TEST(uxtree_get_enum_attribute_value, TheSuffixIsSearchedButNotReturned) {
    const char* const tree = "<r><a k='Set (x)'/><b k='Set1 (x)'/><c k='Set2'/></r>";

    EXPECT_EQ(attribute_name(tree, "Set", " (x)"), "Set2");
    EXPECT_EQ(attribute_name(tree, "Set", nullptr), "Set");
    EXPECT_EQ(attribute_name(tree, "Set", " (y)"), "Set");
}

TEST(uxtree_get_enum_attribute_value, AMissingAttributeIsAnEmptyText) {
    EXPECT_EQ(attribute_name("<r><a/></r>", "", ""), "1");
    EXPECT_EQ(attribute_name("<r><a/><b k='1'/></r>", nullptr, nullptr), "2");
    EXPECT_EQ(attribute_name("<r/>", "", ""), "");
}

TEST(uxtree_get_enum_attribute_value, PrefixAndSuffixMayNotShareCharacters) {
    EXPECT_EQ(attribute_name("<r><a k='aba'/></r>", "ab", "ba"), "ab");
}

TEST(uxtree_check_add_enumerated_node, FindsOrCreatesTheNumberedChild) {
    TestTree tree("<r><Set1/></r>");
    UXXmlWrapperBase out;

    uxtree_check_add_enumerated_node(&out, &tree, "Set", 1, 7, "k", "v");
    EXPECT_TRUE(out == tree.at("Set1"));
    uxtree_check_add_enumerated_node(&out, &tree, "Set", 2, 7, nullptr, nullptr);
    EXPECT_TRUE(out == tree.at("Set2"));

    EXPECT_EQ(tree.text(), tree_text("<r><Set1 k='v'/><Set2 _ux_id='7'/></r>"));
}

TEST(uxtree_check_add_enumerated_node, DoesNothingWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out = tree;

    uxtree_check_add_enumerated_node(&out, nullptr, "Set", 1, 0, nullptr, nullptr);
    uxtree_check_add_enumerated_node(&out, &invalid, "Set", 1, 0, nullptr, nullptr);
    uxtree_check_add_enumerated_node(nullptr, &tree, "Set", 1, 0, nullptr, nullptr);
    EXPECT_TRUE(out == tree);
    uxtree_check_add_enumerated_node(&out, &tree, nullptr, 1, 0, nullptr, nullptr);

    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

TEST(uxtree_check_add_all_enumerated_nodes, AddsOneNumberedChildPerValue) {
    TestTree tree("<r><Set1/></r>");
    auto values = script_doubles({1.5, 2});

    EXPECT_TRUE(uxtree_check_add_all_enumerated_nodes(&tree, "Set", &values));

    EXPECT_EQ(tree.text(), tree_text("<r><Set1/><Set2 Label='Set2' _ux_id='536870914'>1.5</Set2>"
                                     "<Set3 Label='Set3' _ux_id='536870915'>2</Set3></r>"));
}

TEST(uxtree_check_add_all_enumerated_nodes, FindsExistingChildrenAndTakesTheTexts) {
    TestTree tree("<r><Set2 k='1'>old</Set2><Set2/></r>");
    auto values = script_doubles({10, 20, 30});
    auto labels = script_texts({"first", ""});

    EXPECT_TRUE(
        uxtree_check_add_all_enumerated_nodes(&tree, "Set", &values, 0, -1, 1, "any", &labels));

    EXPECT_EQ(tree.text(), tree_text("<r><Set2 k='1' Label='any'>20</Set2><Set2/>"
                                     "<Set1 Label='first' _ux_id='536936449'>10</Set1>"
                                     "<Set3 Label='any' _ux_id='536936451'>30</Set3></r>"));
}

TEST(uxtree_check_add_all_enumerated_nodes, TagsWithLeadingZerosAreOtherNames) {
    TestTree tree("<r><S01/><s1/><S1x/></r>");
    auto values = script_doubles({1});

    EXPECT_TRUE(uxtree_check_add_all_enumerated_nodes(&tree, "S", &values, 0));

    EXPECT_EQ(tree.text(),
              tree_text("<r><S01/><s1/><S1x/><S1 Label='S1' _ux_id='536870913'>1</S1></r>"));
}

TEST(uxtree_check_add_all_enumerated_nodes, StopsAtTheMaximumOfChildren) {
    TestTree tree("<r><x/></r>");
    auto values = script_doubles({1, 2, 3});

    EXPECT_TRUE(uxtree_check_add_all_enumerated_nodes(&tree, "S", &values, 0, 3, 0));

    EXPECT_EQ(tree.text(), tree_text("<r><x/><S1 Label='S1' _ux_id='536870913'>1</S1>"
                                     "<S2 Label='S2' _ux_id='536870914'>2</S2></r>"));
}

TEST(uxtree_check_add_all_enumerated_nodes, AnUnusablePrefixAddsNothing) {
    TestTree tree("<r/>");
    auto values = script_doubles({1});

    EXPECT_TRUE(uxtree_check_add_all_enumerated_nodes(&tree, nullptr, &values));

    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

TEST(uxtree_check_add_all_enumerated_nodes, NumbersWrapBehindTheLargest) {
    TestTree tree("<r/>");
    auto values = script_doubles({1});

    EXPECT_TRUE(uxtree_check_add_all_enumerated_nodes(&tree, "S", &values, INT_MAX));
    EXPECT_TRUE(uxtree_check_add_all_enumerated_nodes(&tree, "S", &values, INT_MAX));

    EXPECT_EQ(
        tree.text(),
        tree_text("<r><S-2147483648 Label='S-2147483648' _ux_id='536870912'>1</S-2147483648></r>"));
}

}  // namespace
