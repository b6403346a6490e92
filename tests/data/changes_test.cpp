// What changed in a tree: marks, lists, removal of the unchanged.
#include "uxtree/data/changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/values_support.h"

namespace {

using testing::ElementsAre;
using uxtest::numbers;
using uxtest::script_ints;
using uxtest::script_texts;
using uxtest::string_list;
using uxtest::TestTree;
using uxtest::tree_text;

// --- the mark ----------------------------------------------------------------------------------

TEST(uxtree_node_changed, TellsWhetherTheMarkIsThere) {
    TestTree tree("<r><a OldValue=''/><b OldName='x'/></r>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase b = tree.at("b");

    EXPECT_EQ(uxtree_node_changed(&a, 0, nullptr), 1);
    EXPECT_EQ(uxtree_node_changed(&b, 0, "ignored"), 0);
    EXPECT_EQ(tree.text(), tree_text("<r><a OldValue=''/><b OldName='x'/></r>"));
}

TEST(uxtree_node_changed, SetsTheMarkAlsoToAnEmptyText) {
    TestTree tree("<r OldName='n'/>");

    EXPECT_EQ(uxtree_node_changed(&tree, 1, "x"), 1);
    EXPECT_EQ(tree.text(), tree_text("<r OldName='n' OldValue='x'/>"));
    EXPECT_EQ(uxtree_node_changed(&tree, -1, ""), 1);
    EXPECT_EQ(tree.text(), tree_text("<r OldName='n' OldValue=''/>"));
}

TEST(uxtree_node_changed, ClearsTheMarkWithTheOldName) {
    TestTree tree("<r OldName='n' OldValue='x' k='1'/>");

    EXPECT_EQ(uxtree_node_changed(&tree, 1, nullptr), 1);
    EXPECT_EQ(uxtree_node_changed(&tree, 1, nullptr), 1);
    EXPECT_EQ(tree.text(), tree_text("<r k='1'/>"));
}

TEST(VCTreeNodeGetValue, GivesTheTextOfALeafOnly) {
    TestTree tree("<r>own<a>x</a><b/></r>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase b = tree.at("b");
    UXXmlWrapperBase invalid;
    CStringUTF8 out("old");

    VCTreeNodeGetValue(a, out);
    EXPECT_EQ(out, "x");
    VCTreeNodeGetValue(tree, out);
    EXPECT_EQ(out, "");
    out = "old";
    VCTreeNodeGetValue(b, out);
    EXPECT_EQ(out, "");
    out = "old";
    VCTreeNodeGetValue(invalid, out);
    EXPECT_EQ(out, "");
}

// --- updating the marks ------------------------------------------------------------------------

int update(const UXXmlWrapperBase& tree, const std::vector<std::string>& oldValues) {
    UXXmlWrapperBase root = tree;
    CWBOStringArray values = string_list(oldValues);
    return VCTreeUpdateChanges(&root, &values);
}

TEST(VCTreeUpdateChanges, MarksWhatDiffersInDocumentOrder) {
    TestTree tree("<r><a>x</a><b>own<c>y</c><d OldValue='q' OldName='n'>z</d></b><e>w</e></r>");

    EXPECT_EQ(update(tree, {"X", "", "y", "z", "v"}), 2);
    EXPECT_EQ(tree.text(), tree_text("<r><a OldValue='X'>x</a><b>own<c>y</c><d>z</d></b>"
                                     "<e OldValue='v'>w</e></r>"));
}

TEST(VCTreeUpdateChanges, MarksABranchWhoseOldValueIsNotEmpty) {
    TestTree tree("<r><b>own<c>y</c></b></r>");

    EXPECT_EQ(update(tree, {"own", "y"}), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><b OldValue='own'>own<c>y</c></b></r>"));
}

TEST(VCTreeUpdateChanges, ClearsTheMarksBeyondTheList) {
    TestTree tree("<r><a>x</a><b OldValue='o'>y</b><c OldValue='o'><d OldName='o'/></c></r>");

    EXPECT_EQ(update(tree, {"w"}), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><a OldValue='w'>x</a><b>y</b><c><d/></c></r>"));
    EXPECT_EQ(update(tree, {}), 0);
    EXPECT_EQ(tree.text(), tree_text("<r><a>x</a><b>y</b><c><d/></c></r>"));
}

TEST(VCTreeUpdateChanges, StartsBelowTheTreeWhereTheListingStartsWithIt) {
    TestTree tree("<r><a>x</a><b>y</b></r>");
    CWBOStringArray values;
    VCTreeGetValues(&tree, &values, false);

    values.RemoveAt(0);  // the entry of the tree itself

    EXPECT_EQ(VCTreeUpdateChanges(&tree, &values), 0);
}

TEST(uxtree_update_changes, TakesAStringArray) {
    TestTree tree("<r><a>x</a></r>");
    auto values = script_texts({"w"});

    EXPECT_EQ(uxtree_update_changes(&tree, &values), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><a OldValue='w'>x</a></r>"));
}

// --- comparing lists ---------------------------------------------------------------------------

TEST(VCTreeGetChanged, ListsTheDifferencesBehindEarlierEntries) {
    CArray<__int64, __int64> indices;
    indices.Add(42);
    CWBOStringArray first = string_list({"a", "B", "c", "d"});
    CWBOStringArray second = string_list({"a", "b", "x", "d"});
    CWBOStringArray none;

    EXPECT_EQ(VCTreeGetChanged(indices, &first, &second, true), 3);
    EXPECT_THAT(numbers(indices), ElementsAre(42, 1, 2));
    EXPECT_EQ(VCTreeGetChanged(indices, &first, &second, false), 4);
    EXPECT_THAT(numbers(indices), ElementsAre(42, 1, 2, 2));
    EXPECT_EQ(VCTreeGetChanged(indices, &none, &none, true), 4);
}

TEST(VCTreeGetChanged, RefusesListsOfDifferentLengthAndNullLists) {
    CArray<__int64, __int64> indices;
    CWBOStringArray one = string_list({"a"});
    CWBOStringArray two = string_list({"a", "b"});

    EXPECT_EQ(VCTreeGetChanged(indices, &one, &two, true), -1);
    EXPECT_EQ(VCTreeGetChanged(indices, nullptr, &two, true), -1);
    EXPECT_EQ(VCTreeGetChanged(indices, &one, nullptr, true), -1);
    EXPECT_TRUE(indices.IsEmpty());
    EXPECT_EQ(VCTreeGetChanged(&one, &two, true), -2);
    EXPECT_EQ(VCTreeGetChanged(nullptr, &two, true), -2);
    EXPECT_EQ(VCTreeGetChanged(&one, nullptr, true), -2);
}

TEST(VCTreeGetChanged, FindsTheFirstDifference) {
    CWBOStringArray first = string_list({"a", "ABC", "c"});
    CWBOStringArray second = string_list({"a", "abc", "x"});
    CWBOStringArray none;

    EXPECT_EQ(VCTreeGetChanged(&first, &second, true), 1);
    EXPECT_EQ(VCTreeGetChanged(&first, &second, false), 2);
    EXPECT_EQ(VCTreeGetChanged(&first, &first, true), -1);
    EXPECT_EQ(VCTreeGetChanged(&none, &none, true), -1);
}

TEST(uxget_changed, IsTheFirstDifferenceOfScriptArrays) {
    auto first = script_texts({"a", "B"});
    auto second = script_texts({"a", "b"});
    auto shorter = script_texts({"a"});

    EXPECT_EQ(uxget_changed(&first, &second, true), 1);
    EXPECT_EQ(uxget_changed(&first, &second, false), -1);
    EXPECT_EQ(uxget_changed(&first, &shorter, false), -2);
}

TEST(VCTreeIsSame, ComparesLengthsAndElements) {
    CArray<int, int> one = uxtest::number_list<int>({1, 2});
    CArray<int, int> same = uxtest::number_list<int>({1, 2});
    CArray<int, int> other = uxtest::number_list<int>({1, 3});
    CArray<int, int> shorter = uxtest::number_list<int>({1});
    CArray<int, int> none;

    EXPECT_EQ(VCTreeIsSame(&one, &same), 1);
    EXPECT_EQ(VCTreeIsSame(&one, &other), 0);
    EXPECT_EQ(VCTreeIsSame(&one, &shorter), 0);
    EXPECT_EQ(VCTreeIsSame(&none, &none), 1);
}

TEST(ux_is_same, ComparesScriptVectors) {
    auto one = script_ints({1, 2});
    auto same = script_ints({1, 2});

    EXPECT_EQ(ux_is_same(&one, &same), 1);
    EXPECT_EQ(ux_is_same(nullptr, nullptr), 0);
}

// --- removing what did not change --------------------------------------------------------------

using Outcome = std::pair<int, std::string>;
Outcome stripped(const char* reference, const char* target, const char* referenceId = nullptr,
                 const char* targetId = nullptr) {
    TestTree from(reference);
    TestTree to(target);
    const int result = uxtree_remove_unchange_nodes_by_id(&from, &to, referenceId, targetId);
    return {result, to.text()};
}
Outcome strip_outcome(int result, const char* xml) {
    return {result, tree_text(xml)};
}

TEST(uxtree_remove_unchange_nodes_by_id, RemovesEqualLeavesIgnoringCase) {
    EXPECT_EQ(stripped("<r><a DataID='1'>abc</a><a DataID='2'>x</a><a DataID='3'/></r>",
                       "<r><a DataID='1'>ABC</a><a DataID='2'>y</a><a DataID='3'/>"
                       "<a DataID='4'>new</a><a>none</a><a DataID='-1'/></r>"),
              strip_outcome(2,
                            "<r><a DataID='2'>y</a><a DataID='4'>new</a><a>none</a>"
                            "<a DataID='-1'/></r>"));
}

TEST(uxtree_remove_unchange_nodes_by_id, RemovesBranchesThatLoseAllTheirChildren) {
    EXPECT_EQ(stripped("<r><a DataID='1'>x</a><a DataID='2'>y</a></r>",
                       "<r><g DataID='8' Use='changed'><h><a DataID='1'>x</a></h></g>"
                       "<k><a DataID='1'>x</a><a DataID='2'>new</a></k><a DataID='1'>x</a></r>"),
              strip_outcome(5, "<r><k><a DataID='2'>new</a></k></r>"));
}

TEST(uxtree_remove_unchange_nodes_by_id, MayEmptyTheTargetButKeepsItsRoot) {
    EXPECT_EQ(stripped("<r><a DataID='1'>x</a></r>", "<r><g><a DataID='1'>x</a></g></r>"),
              strip_outcome(2, "<r/>"));
}

TEST(uxtree_remove_unchange_nodes_by_id, CombinesRepeatIdsOnBothSides) {
    EXPECT_EQ(stripped("<r><g RepeatID='1'><a DataID='1'>x</a></g><g RepeatID='2'>"
                       "<a DataID='1'>y</a></g></r>",
                       "<r><g RepeatID='1'><a DataID='1'>x</a></g><g RepeatID='2'>"
                       "<a DataID='1'>x</a></g></r>"),
              strip_outcome(2, "<r><g RepeatID='2'><a DataID='1'>x</a></g></r>"));
}

TEST(uxtree_remove_unchange_nodes_by_id, ComparesLeadingSettingsWithTheValue) {
    EXPECT_EQ(stripped("<r><a DataID='1' Auto='1'>x</a><a DataID='2' Auto='1'>x</a></r>",
                       "<r><a DataID='1' Auto='1'>x</a><a DataID='2' Auto='2'>x</a></r>"),
              strip_outcome(1, "<r><a DataID='2' Auto='2'>x</a></r>"));
}

TEST(uxtree_remove_unchange_nodes_by_id, UsesTheNamedIdentifierAttributes) {
    EXPECT_EQ(stripped("<r><a F='1' DataID='9'>x</a></r>",
                       "<r><a T='1'>x</a><a DataID='1'>x</a></r>", "F", "T"),
              strip_outcome(1, "<r><a DataID='1'>x</a></r>"));
}

TEST(uxtree_remove_unchange_nodes_by_id, YieldsTheCodesOfSetting) {
    const char* const target = "<r><a DataID='1'>x</a><g RepeatID='32767'/><a DataID='1'>x</a></r>";

    EXPECT_EQ(stripped("<r><a>x</a></r>", target), strip_outcome(0, target));
    EXPECT_EQ(stripped("<r><a DataID='7'/><a DataID='7'/></r>", target), strip_outcome(-7, target));
    EXPECT_EQ(stripped("<r><a DataID='0'/><a DataID='0'/></r>", target), strip_outcome(-4, target));
    EXPECT_EQ(stripped("<r><a DataID='1'>x</a></r>", target),
              strip_outcome(-5, "<r><g RepeatID='32767'/><a DataID='1'>x</a></r>"));
}

TEST(uxtree_remove_unchange_nodes_by_id, StripsATreeAgainstItself) {
    TestTree tree("<r><a DataID='1'>x</a><g><a DataID='2'>y</a></g><a>z</a></r>");

    EXPECT_EQ(uxtree_remove_unchange_nodes_by_id(&tree, &tree, "", ""), 3);
    EXPECT_EQ(tree.text(), tree_text("<r><a>z</a></r>"));
}

}  // namespace
