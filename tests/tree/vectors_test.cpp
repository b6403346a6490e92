// Vectors as children of a node.
#include "uxtree/tree/vectors.h"

#include <climits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

using namespace uxtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string with_values(const char* xml, const std::vector<int>& values) {
    TestTree tree(xml);
    auto list = script_ints(values);
    uxtree_value_from_vec_int_to_tree_sub_nodes(&list, &tree);
    return tree.text();
}

TEST(uxtree_value_from_vec_int_to_tree_sub_nodes, CreatesOneChildPerElement) {
    EXPECT_EQ(with_values("<r DataID='1000'/>", {7, -8}),
              tree_text("<r DataID='1000'><Value1 DataID='1001'>7</Value1>"
                        "<Value2 DataID='1002'>-8</Value2></r>"));
}

TEST(uxtree_value_from_vec_int_to_tree_sub_nodes, FindsChildrenByTheirDataIdAlone) {
    EXPECT_EQ(with_values("<r DataID='10'><x DataID='12'>old</x><y/></r>", {1, 2}),
              tree_text("<r DataID='10'><x DataID='12'>2</x><y/>"
                        "<Value1 DataID='11'>1</Value1></r>"));
}

TEST(uxtree_value_from_vec_int_to_tree_sub_nodes, TheFirstOfEqualDataIdsIsWritten) {
    EXPECT_EQ(with_values("<r DataID='10'><x DataID='11'/><y DataID='11'/></r>", {1, 2, 3}),
              tree_text("<r DataID='10'><x DataID='11'>1</x><y DataID='11'/>"
                        "<Value2 DataID='12'>2</Value2><Value3 DataID='13'>3</Value3></r>"));
}

TEST(uxtree_value_from_vec_int_to_tree_sub_nodes, CutsSurplusChildrenAndWritesByPosition) {
    EXPECT_EQ(
        with_values("<r DataID='10'><a DataID='99'/><b/><c/><d DataID='11'/><e/></r>", {1, 2, 3}),
        tree_text("<r DataID='10'><a DataID='99'>1</a><b>2</b><c>3</c></r>"));
}

TEST(uxtree_value_from_vec_int_to_tree_sub_nodes, AnEmptyVectorRemovesAllChildren) {
    EXPECT_EQ(with_values("<r DataID='10'><a/><b/></r>", {}), tree_text("<r DataID='10'/>"));
}

TEST(uxtree_value_from_vec_int_to_tree_sub_nodes, WritesAtMost999Elements) {
    TestTree tree("<r DataID='1000'/>");
    auto values = script_ints(std::vector<int>(1200, 5));

    uxtree_value_from_vec_int_to_tree_sub_nodes(&values, &tree);

    EXPECT_EQ(tree.GetNodeCount(), 999);
    UXXmlWrapperBase last;
    tree.GetChild(&last, 998);
    EXPECT_EQ(to_text(last), tree_text("<Value999 DataID='1999'>5</Value999>"));
}

TEST(uxtree_value_from_vec_int_to_tree_sub_nodes, IdentifiersBelowOneAreNotWritten) {
    EXPECT_EQ(with_values("<r DataID='-2'/>", {1, 2, 3}),
              tree_text("<r DataID='-2'><Value1>1</Value1><Value2>2</Value2>"
                        "<Value3 DataID='1'>3</Value3></r>"));
}

TEST(uxtree_value_from_vec_int_to_tree_sub_nodes, ANodeWithoutDataIdIsNotFilled) {
    TestTree tree("<r DataID='10'><n/></r>");
    UXXmlWrapperBase bare = tree.at("n");
    auto values = script_ints({1});

    uxtree_value_from_vec_int_to_tree_sub_nodes(&values, &bare);

    EXPECT_EQ(tree.text(), tree_text("<r DataID='10'><n/></r>"));
}

TEST(uxtree_value_from_vec_double_to_tree_sub_nodes, WritesNumbersThatReadBackEqual) {
    TestTree tree("<r DataID='10'/>");
    auto values = script_doubles({0.1, 1e300});

    uxtree_value_from_vec_double_to_tree_sub_nodes(&values, &tree);

    EXPECT_EQ(tree.text(), tree_text("<r DataID='10'><Value1 DataID='11'>0.1</Value1>"
                                     "<Value2 DataID='12'>1e+300</Value2></r>"));
}

TEST(uxtree_value_from_vec_bool_to_tree_sub_nodes, WritesOneAndZero) {
    TestTree tree("<r DataID='10'/>");
    auto values = script_bools({true, false});

    uxtree_value_from_vec_bool_to_tree_sub_nodes(&values, &tree);

    EXPECT_EQ(tree.text(), tree_text("<r DataID='10'><Value1 DataID='11'>1</Value1>"
                                     "<Value2 DataID='12'>0</Value2></r>"));
}

TEST(uxtree_value_from_vec_string_to_tree_sub_nodes, WritesTextsAsTheyAre) {
    TestTree tree("<r DataID='10'/>");
    auto values = script_texts({"a|b", "", "<c>"});

    uxtree_value_from_vec_string_to_tree_sub_nodes(&values, &tree);

    EXPECT_EQ(tree.text(),
              tree_text("<r DataID='10'><Value1 DataID='11'>a|b</Value1>"
                        "<Value2 DataID='12'/><Value3 DataID='13'>&lt;c></Value3></r>"));
}

TEST(uxtree_value_from_tree_sub_nodes_to_vector_int, FillsTheSlotsAndKeepsTheSize) {
    TestTree tree("<r><a>1</a><b>2</b><c>3</c><d>4</d></r>");
    auto two = script_ints({0, 0});
    auto five = script_ints({9, 9, 9, 9, 9});

    EXPECT_EQ(uxtree_value_from_tree_sub_nodes_to_vector_int(&tree, &two), 2);
    EXPECT_EQ(uxtree_value_from_tree_sub_nodes_to_vector_int(&tree, &five), 4);

    EXPECT_THAT(numbers(two.array()), ElementsAre(1, 2));
    EXPECT_THAT(numbers(five.array()), ElementsAre(1, 2, 3, 4, 9));
}

TEST(uxtree_value_from_tree_sub_nodes_to_vector_int, EmptyChildrenUseNoSlotAndOthersDo) {
    TestTree tree("<r><a/><b>x</b><c k='1'/><d><e/></d><f>4</f></r>");
    auto values = script_ints({7, 8, 9});

    EXPECT_EQ(uxtree_value_from_tree_sub_nodes_to_vector_int(&tree, &values), 3);

    EXPECT_THAT(numbers(values.array()), ElementsAre(7, 8, 4));  // b and d do not convert
}

TEST(uxtree_value_from_tree_sub_nodes_to_vector_int, AnEmptyNodeOrVectorReadsNothing) {
    TestTree tree("<r><a>1</a></r>");
    UXXmlWrapperBase leaf = tree.at("a");
    auto values = script_ints({7});
    auto none = script_ints({});

    EXPECT_EQ(uxtree_value_from_tree_sub_nodes_to_vector_int(&leaf, &values), 0);
    EXPECT_EQ(uxtree_value_from_tree_sub_nodes_to_vector_int(&tree, &none), 0);

    EXPECT_THAT(numbers(values.array()), ElementsAre(7));
}

TEST(uxtree_value_from_tree_sub_nodes_to_vector_double, ReadsNumbers) {
    TestTree tree("<r><a>1.5</a><b/><c>1e2</c></r>");
    auto values = script_doubles({0, 0});

    EXPECT_EQ(uxtree_value_from_tree_sub_nodes_to_vector_double(&tree, &values), 2);

    EXPECT_THAT(numbers(values.array()), ElementsAre(1.5, 100));
}

TEST(uxtree_value_from_tree_sub_nodes_to_vector_bool, ReadsTruthValues) {
    TestTree tree("<r><a>true</a><b/><c>0</c><d>-3</d></r>");
    auto values = script_bools({false, true, false});

    EXPECT_EQ(uxtree_value_from_tree_sub_nodes_to_vector_bool(&tree, &values), 3);

    EXPECT_TRUE(values.array()[0]);
    EXPECT_FALSE(values.array()[1]);
    EXPECT_TRUE(values.array()[2]);
}

TEST(uxtree_value_from_tree_sub_nodes_to_vector_string, ReadsEmptyChildrenToo) {
    TestTree tree("<r><a>x</a><b/><c>own<d/></c></r>");
    auto values = script_texts({"1", "2", "3", "4"});

    EXPECT_EQ(uxtree_value_from_tree_sub_nodes_to_vector_string(&tree, &values), 3);

    EXPECT_THAT(texts(values.array()), ElementsAre("x", "", "own", "4"));
}

TEST(vctree_get_all_children_values_as_string_array, AppendsOneEntryPerDirectChild) {
    TestTree tree("<r><a>x</a><b/><c><d>deep</d></c></r>");
    CWBOStringArray values = string_list({"before"});

    vctree_get_all_children_values_as_string_array(tree, values);

    EXPECT_THAT(texts(values), ElementsAre("before", "x", "", ""));
}

TEST(VCTokenizedStringToArrayOfDoubles, ReadsNumbersBetweenBlanks) {
    CArray<double, double> out = number_list<double>({9});

    EXPECT_EQ(VCTokenizedStringToArrayOfDoubles(out, " 1  2.5\t-3e2\n", 1), 3);

    EXPECT_THAT(numbers(out), ElementsAre(1, 2.5, -300));
}

TEST(VCTokenizedStringToArrayOfDoubles, NoTokensAreAnError) {
    CArray<double, double> out = number_list<double>({9});

    EXPECT_EQ(VCTokenizedStringToArrayOfDoubles(out, "", 0), -1);
    EXPECT_THAT(numbers(out), IsEmpty());
    EXPECT_EQ(VCTokenizedStringToArrayOfDoubles(out, "  ", 1), -1);
}

TEST(VCTokenizedStringToArrayOfDoubles, AWrongTokenFailsOnlyWhenStrict) {
    CArray<double, double> out;

    EXPECT_EQ(VCTokenizedStringToArrayOfDoubles(out, "1 x 3", 0), 3);
    EXPECT_THAT(numbers(out), ElementsAre(1, 0, 3));
    EXPECT_EQ(VCTokenizedStringToArrayOfDoubles(out, "1 x 3", 1), -1);
    EXPECT_THAT(numbers(out), IsEmpty());
}

}  // namespace
