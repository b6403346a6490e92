// Emptying, clearing, replacing and listing values.
#include "uxtree/data/values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/values_support.h"

namespace {

using testing::ElementsAre;
using uxtest::TestTree;
using uxtest::texts;
using uxtest::tree_text;

// --- clearing ----------------------------------------------------------------------------------

TEST(vctree_empty_values_with_ids, EmptiesLeavesWithAnIdentifierOtherThanMinusOne) {
    TestTree tree(
        "<r DataID='1'><a DataID='1'>x</a><a>x</a><a DataID='-1'>x</a><a DataID='-2'>x</a>"
        "<b DataID='-1'>own<a DataID='0'>x</a></b><b>own<a DataID='3'/></b></r>");

    EXPECT_EQ(vctree_empty_values_with_ids(&tree), 4);
    EXPECT_EQ(tree.text(),
              tree_text("<r DataID='1'><a DataID='1'/><a>x</a><a DataID='-1'>x</a><a DataID='-2'/>"
                        "<b DataID='-1'>own<a DataID='0'/></b><b>own<a DataID='3'/></b></r>"));
}

TEST(vctree_empty_values_with_ids, NeverTouchesTheStartNode) {
    TestTree tree("<r DataID='1'>x</r>");

    EXPECT_EQ(vctree_empty_values_with_ids(&tree), 0);
    EXPECT_EQ(tree.text(), tree_text("<r DataID='1'>x</r>"));
}

TEST(uxtree_clear_all_value, EmptiesEveryLeafBelow) {
    TestTree tree("<r>own<a DataID='1'>x</a><b>own<a>y</a></b></r>");

    uxtree_clear_all_value(&tree);

    EXPECT_EQ(tree.text(), tree_text("<r>own<a DataID='1'/><b>own<a/></b></r>"));
}

TEST(uxtree_clear_all_value, NeverTouchesTheStartNode) {
    TestTree tree("<r>x</r>");

    uxtree_clear_all_value(&tree);

    EXPECT_EQ(tree.text(), tree_text("<r>x</r>"));
}

// --- by node ID --------------------------------------------------------------------------------

int set_by_nodeids(UXXmlWrapperBase root, const std::vector<int>& ids,
                   const std::vector<std::string>& values) {
    CArray<int, int> idArray = uxtest::number_list(ids);
    CWBOStringArray valueArray = uxtest::string_list(values);
    return vctree_set_values_by_nodeids(&root, &idArray, &valueArray);
}

TEST(vctree_set_values_by_nodeids, WritesLeavesByTheirNodeId) {
    TestTree tree(
        "<r><a NodeID='1'>o</a><b NodeID='2' RepeatID='4'>o<a NodeID='2' DynaFx='f'>o</a></b>"
        "<a DataID='1'>o</a><a NodeID='x'>o</a><a NodeID='9'>o</a><a NodeID='-1'>o</a></r>");

    EXPECT_EQ(set_by_nodeids(tree, {2, 1, 2, -1}, {"::{Auto=1}x", "y", "no", ""}), 3);
    EXPECT_EQ(tree.text(), tree_text("<r><a NodeID='1'>y</a><b NodeID='2' RepeatID='4'>o"
                                     "<a NodeID='2' DynaFx='f'>::{Auto=1}x</a></b>"
                                     "<a DataID='1'>o</a><a NodeID='x'>o</a><a NodeID='9'>o</a>"
                                     "<a NodeID='-1'/></r>"));
}

TEST(vctree_set_values_by_nodeids, RefusesEmptyAndUnequalArrays) {
    TestTree tree("<r><a NodeID='1'>o</a></r>");

    EXPECT_EQ(set_by_nodeids(tree, {}, {"x"}), -2);
    EXPECT_EQ(set_by_nodeids(tree, {1}, {}), -2);
    EXPECT_EQ(set_by_nodeids(tree, {1, 2}, {"x"}), -3);
    EXPECT_EQ(tree.text(), tree_text("<r><a NodeID='1'>o</a></r>"));
}

TEST(uxtree_set_values_by_nodeids, TakesScriptArrays) {
    TestTree tree("<r><a NodeID='1'>o</a></r>");
    auto ids = uxtest::script_ints({1});
    auto values = uxtest::script_texts({"x"});

    EXPECT_EQ(uxtree_set_values_by_nodeids(&tree, &ids, &values), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><a NodeID='1'>x</a></r>"));
}

// --- listing -----------------------------------------------------------------------------------

std::vector<std::string> listed(const char* xml, bool childrenOnly) {
    TestTree tree(xml);
    CWBOStringArray values = uxtest::string_list({"kept"});
    EXPECT_EQ(VCTreeGetValues(&tree, &values, childrenOnly), 0);
    return texts(values);
}

TEST(VCTreeGetValues, AppendsOneEntryForALeaf) {
    EXPECT_THAT(listed("<r>x</r>", false), ElementsAre("kept", "x"));
    EXPECT_THAT(listed("<r/>", true), ElementsAre("kept", ""));
}

TEST(VCTreeGetValues, AppendsAnEmptyEntryForABranchBeforeItsChildren) {
    EXPECT_THAT(listed("<r>own<a>x</a><b>own<c>y</c></b><d/></r>", false),
                ElementsAre("kept", "", "x", "", "y", ""));
}

TEST(VCTreeGetValues, GoesOneLevelDeepWithChildrenOnly) {
    EXPECT_THAT(listed("<r>own<a>x</a><b>own<c>y</c></b><d/></r>", true),
                ElementsAre("kept", "", "x", "own", ""));
}

TEST(uxtree_get_values, FillsAStringArray) {
    TestTree tree("<r>x</r>");
    auto values = uxtest::script_texts({});

    EXPECT_EQ(uxtree_get_values(&tree, &values, false), 0);
    EXPECT_THAT(texts(values.array()), ElementsAre("x"));
}

// --- replacing ---------------------------------------------------------------------------------

std::string replaced(const char* xml, const char* oldText, const char* newText) {
    TestTree tree(xml);
    uxtree_recursively_replace_values(&tree, oldText, newText);
    return tree.text();
}

TEST(uxtree_recursively_replace_values, ReplacesInTheLeavesOfTheBranch) {
    EXPECT_EQ(replaced("<r>aba<x>aba<y/></x><z k='a'>caac</z></r>", "a", "--"),
              tree_text("<r>aba<x>aba<y/></x><z k='a'>c----c</z></r>"));
}

TEST(uxtree_recursively_replace_values, IncludesTheStartNode) {
    EXPECT_EQ(replaced("<r>aaa</r>", "aa", "b"), tree_text("<r>ba</r>"));
}

TEST(uxtree_recursively_replace_values, TakesANullNewTextAsEmptyAndNeedsAnOldText) {
    EXPECT_EQ(replaced("<r><a>xyx</a></r>", "x", nullptr), tree_text("<r><a>y</a></r>"));
    EXPECT_EQ(replaced("<r><a>xyx</a></r>", "", "z"), tree_text("<r><a>xyx</a></r>"));
    EXPECT_EQ(replaced("<r><a>xyx</a></r>", nullptr, "z"), tree_text("<r><a>xyx</a></r>"));
}

}  // namespace
