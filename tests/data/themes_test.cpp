// Themes: file names, types, nodes of a theme tree, lists of themes.
#include "uxtree/data/themes.h"

#include <climits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

namespace {

using uxtest::TestTree;
using uxtest::tree_text;

// --- the theme of a tree -----------------------------------------------------------------------

TEST(uxtree_tree_get_theme_file_name, IsTrueForAnEmptyStoredName) {
    TestTree tree("<r ThemeFile='my.xml'><a ThemeFile=''/><b/></r>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase b = tree.at("b");
    CStringUTF8 out;

    EXPECT_TRUE(uxtree_tree_get_theme_file_name(&tree, &out));
    EXPECT_EQ(out, "my.xml");
    EXPECT_TRUE(uxtree_tree_get_theme_file_name(&a, &out));
    EXPECT_EQ(out, "");
    out = "old";
    EXPECT_FALSE(uxtree_tree_get_theme_file_name(&b, &out));
    EXPECT_EQ(out, "");
}

TEST(uxtree_tree_set_theme_file_name, RemovesForNullOnly) {
    TestTree tree("<r/>");

    EXPECT_TRUE(uxtree_tree_set_theme_file_name(&tree, "my.xml"));
    EXPECT_EQ(tree.text(), tree_text("<r ThemeFile='my.xml'/>"));
    EXPECT_TRUE(uxtree_tree_set_theme_file_name(&tree, ""));
    EXPECT_EQ(tree.text(), tree_text("<r ThemeFile=''/>"));
    EXPECT_TRUE(uxtree_tree_set_theme_file_name(&tree, nullptr));
    EXPECT_TRUE(uxtree_tree_set_theme_file_name(&tree, nullptr));
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

TEST(uxtree_tree_get_theme_type, DefaultsToFour) {
    TestTree tree("<r><a ThemeType='7'/><b ThemeType='x'/><c ThemeType='0'/></r>");
    const auto type = [](UXXmlWrapperBase node) { return uxtree_tree_get_theme_type(&node); };

    EXPECT_EQ(type(tree), 4);
    EXPECT_EQ(type(tree.at("a")), 7);
    EXPECT_EQ(type(tree.at("b")), 4);
    EXPECT_EQ(type(tree.at("c")), 0);
}

bool is_include_list(const std::string& attributes) {
    TestTree tree(("<r " + attributes + "/>").c_str());
    return uxtree_is_inclist_theme(&tree);
}

TEST(uxtree_is_inclist_theme, NeedsBitsWithinBothMasks) {
    const std::string head = "Count='1' Objects='1073741824' ";

    EXPECT_TRUE(is_include_list(head + "Properies='4096'"));
    EXPECT_TRUE(is_include_list(head + "Properies='126976'"));  // 0x1F000
    EXPECT_TRUE(is_include_list(head + "Properies2='61440'"));  // 0xF000
    EXPECT_TRUE(is_include_list(head + "Properies='65536' Properies2='4096'"));
    EXPECT_FALSE(is_include_list(head + "Properies='1'"));
    EXPECT_FALSE(is_include_list(head + "Properies='4097'"));
    EXPECT_FALSE(is_include_list(head + "Properies='4096' Properies2='65536'"));
    EXPECT_FALSE(is_include_list(head + "Properies='-1'"));
    EXPECT_FALSE(is_include_list(head + "Properies='0' Properies2='0'"));
    EXPECT_FALSE(is_include_list(head));
    EXPECT_FALSE(is_include_list(head + "Properties='4096'"));  // not the published spelling
    EXPECT_TRUE(is_include_list(head + "Properies='4096' Properies2='x'"));
}

TEST(uxtree_is_inclist_theme, NeedsCountAndObjectsExactly) {
    EXPECT_FALSE(is_include_list("Objects='1073741824' Properies='4096'"));
    EXPECT_FALSE(is_include_list("Count='2' Objects='1073741824' Properies='4096'"));
    EXPECT_FALSE(is_include_list("Count='1' Properies='4096'"));
    EXPECT_FALSE(is_include_list("Count='1' Objects='1073741825' Properies='4096'"));
}

// --- lookups in a theme tree -------------------------------------------------------------------

std::string by_id(const char* xml, int id, int depth, bool recursive) {
    TestTree tree(xml);
    UXXmlWrapperBase out = tree;
    const int result = uxtree_theme_tree_get_node_by_id(&out, &tree, id, depth, recursive);
    if (result == 0) {
        EXPECT_TRUE(out == tree);
        return "none";
    }
    CStringUTF8 tag;
    out.GetTagName(tag);
    return static_cast<const char*>(tag);
}

TEST(uxtree_theme_tree_get_node_by_id, MatchesTheLow16BitsOfEitherIdentifier) {
    EXPECT_EQ(by_id("<r><a/><b DataID='65541'/><c DataID='5'/></r>", 5, 0, false), "b");
    EXPECT_EQ(by_id("<r><a DataID='1'/><b DataID='2' _ux_id='65541'/></r>", 5, 0, false), "b");
    EXPECT_EQ(by_id("<r><a DataID='-1'/></r>", 65535, 0, false), "a");
}

TEST(uxtree_theme_tree_get_node_by_id, TakesMissingIdentifiersAsZero) {
    EXPECT_EQ(by_id("<r><a DataID='3' _ux_id='4'/><b DataID='7'/></r>", 0, 0, false), "b");
}

TEST(uxtree_theme_tree_get_node_by_id, NeverMatchesIdentifiersBeyond16Bits) {
    EXPECT_EQ(by_id("<r><a DataID='65541'/></r>", 65541, 0, false), "none");
    EXPECT_EQ(by_id("<r><a DataID='-1'/></r>", -1, 0, false), "none");
}

TEST(uxtree_theme_tree_get_node_by_id, SearchesBranchesAsFarAsTheDepthAllows) {
    const char* const xml =
        "<r><a DataID='1'><b DataID='2'><c DataID='3'/></b></a><d DataID='3'/></r>";

    EXPECT_EQ(by_id(xml, 2, 0, true), "none");
    EXPECT_EQ(by_id(xml, 2, 1, true), "b");
    EXPECT_EQ(by_id(xml, 2, 1, false), "none");
    EXPECT_EQ(by_id(xml, 3, 1, true), "d");
    EXPECT_EQ(by_id(xml, 3, 2, true), "c");
    EXPECT_EQ(by_id(xml, 1, -1, true), "none");
    EXPECT_EQ(by_id(xml, 1, INT_MIN, true), "none");
}

TEST(uxtree_theme_tree_get_node_by_id, DoesNotGiveTheDepthBack) {
    EXPECT_EQ(by_id("<r><a DataID='1'><b DataID='2'/></a><c DataID='1'><d DataID='3'/></c></r>", 3,
                    1, true),
              "none");
    EXPECT_EQ(by_id("<r><a DataID='1'><b DataID='2'/></a><c DataID='1'><d DataID='3'/></c></r>", 3,
                    2, true),
              "d");
    EXPECT_EQ(by_id("<r><a DataID='1'><b DataID='2'><x/></b><c DataID='2'><y/></c></a>"
                    "<d DataID='1'><e DataID='3'/></d></r>",
                    3, 2, true),
              "e");  // what a branch used up below itself does not count here
}

TEST(uxtree_theme_tree_get_node_by_id, FindsNothingInALeaf) {
    TestTree tree("<r><a DataID='5'/></r>");
    UXXmlWrapperBase leaf = tree.at("a");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_theme_tree_get_node_by_id(&out, &leaf, 5, 0, false), 0);
    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_theme_tree_get_node_by_index, CountsChildrenFromOne) {
    TestTree tree("<r><a DataID='5'><x/><y/></a></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_theme_tree_get_node_by_index(&out, &tree, 5, 2, 0, false), 1);
    EXPECT_TRUE(out == tree.at("a/y"));
    EXPECT_EQ(uxtree_theme_tree_get_node_by_index(&out, &tree, 5, 1, 0, false), 1);
    EXPECT_TRUE(out == tree.at("a/x"));
    for (const int index : {0, -1, 3}) {
        EXPECT_EQ(uxtree_theme_tree_get_node_by_index(&out, &tree, 5, index, 0, false), 0);
    }
    EXPECT_EQ(uxtree_theme_tree_get_node_by_index(&out, &tree, 6, 1, 0, false), 0);
    EXPECT_TRUE(out == tree.at("a/x"));
}

// --- range styles ------------------------------------------------------------------------------

struct Sides {
    int result;
    int left;
    int top;
    int right;
    int bottom;
    bool operator==(const Sides& o) const {
        return result == o.result && left == o.left && top == o.top && right == o.right &&
               bottom == o.bottom;
    }
};
Sides sides_of(const char* xml) {
    TestTree tree(xml);
    Sides sides{0, -1, -1, -1, -1};
    sides.result = uxtree_theme_tree_get_range_from_range_style(&tree, &sides.left, &sides.top,
                                                                &sides.right, &sides.bottom);
    return sides;
}

TEST(uxtree_theme_tree_get_range_from_range_style, ReadsTheFourSidesInAnyOrderAndCase) {
    EXPECT_EQ(
        sides_of("<s><BOTTOM>4</BOTTOM><left>1</left><x>9</x><Right>3</Right><Top>2</Top></s>"),
        (Sides{1, 1, 2, 3, 4}));
}

TEST(uxtree_theme_tree_get_range_from_range_style, NeedsExactlyFourReadings) {
    EXPECT_EQ(sides_of("<s><Left>1</Left><Top>2</Top><Right>3</Right></s>"),
              (Sides{0, 1, 2, 3, -1}));
    EXPECT_EQ(sides_of("<s><Left>1</Left><Top>2</Top><Right>3</Right><Bottom>4</Bottom>"
                       "<Left>5</Left></s>"),
              (Sides{0, 5, 2, 3, 4}));
    EXPECT_EQ(sides_of("<s><Left>1</Left><Top>2</Top><Right>3</Right><Bottom>x</Bottom></s>"),
              (Sides{0, 1, 2, 3, -1}));
    EXPECT_EQ(sides_of("<s><Left>1</Left><Top>2</Top><Top>3</Top><Top>4</Top></s>"),
              (Sides{1, 1, 4, -1, -1}));
}

TEST(uxtree_theme_tree_get_range_from_range_style, PassesOverNullOutputsButCountsThem) {
    TestTree tree("<s><Left>1</Left><Top>2</Top><Right>3</Right><Bottom>4</Bottom></s>");
    int right = -1;

    EXPECT_EQ(
        uxtree_theme_tree_get_range_from_range_style(&tree, nullptr, nullptr, &right, nullptr), 1);
    EXPECT_EQ(right, 3);
}

}  // namespace
