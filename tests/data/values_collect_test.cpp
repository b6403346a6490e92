// Collecting values with their identifiers.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/values_support.h"

namespace {

using testing::ElementsAre;
using uxtest::collected;
using uxtest::Entries;
using uxtest::TestTree;
using uxtest::texts;
using uxtest::tree_text;

ux::CollectOptions themed() {
    ux::CollectOptions options;
    options.themeFlag = true;
    return options;
}

std::string error_of(const char* xml, const char* before = "", const char* idAttribute = nullptr) {
    TestTree tree(xml);
    CStringUTF8 text(before);
    ux::CollectOptions options;
    options.errorText = &text;
    options.idAttribute = idAttribute;
    collected(tree, options);
    return static_cast<const char*>(text);
}

// --- leaves ------------------------------------------------------------------------------------

TEST(vctree_get_values_with_ids, CollectsLeavesInDocumentOrderAndEmptiesTheArraysFirst) {
    TestTree tree(
        "<r DataID='9'><a DataID='3'>x</a><b><c DataID='1'>y</c><d DataID='0'/></b>"
        "<e>no id</e><f DataID='-1'>no</f><g DataID='-4'>no</g><h DataID='65536'>z</h></r>");
    CArray<int, int> ids = uxtest::number_list<int>({77});
    CWBOStringArray values = uxtest::string_list({"old", "old"});

    EXPECT_EQ(vctree_get_values_with_ids(&tree, &ids, &values, 1, 0, 0, nullptr, 0, nullptr), 4);
    EXPECT_EQ(uxtest::entries(ids, values), (Entries{{3, "x"}, {1, "y"}, {0, ""}, {65536, "z"}}));
}

TEST(vctree_get_values_with_ids, WritesNumbersThatTheHostKeepsAsSuch) {
    TestTree tree("<r><a DataID='1'/><b DataID='2'>x</b></r>");
    UXXmlWrapperBase a;
    ASSERT_EQ(tree.FindChild("a", &a, 1), 1);
    CArray<double, double> numbers = uxtest::number_list<double>({1.5, -2, 1e100});
    ASSERT_EQ(a.NodeValue(numbers, 0), 1);

    EXPECT_EQ(collected(tree), (Entries{{1, "1.5 -2 1e+100"}, {2, "x"}}));
}

TEST(vctree_get_values_with_ids, StaysOnTheFirstLevelWithoutRecursion) {
    TestTree tree("<r><a DataID='1'>x</a><b DataID='2' Use='1'><c DataID='3'>y</c></b></r>");
    CArray<int, int> ids;
    CWBOStringArray values;

    EXPECT_EQ(vctree_get_values_with_ids(&tree, &ids, &values, 0, 0, 0, "", 0, nullptr), 2);
    EXPECT_EQ(uxtest::entries(ids, values), (Entries{{1, "x"}, {2, "1"}}));
}

TEST(vctree_get_values_with_ids, ReadsAnotherIdentifierAttribute) {
    ux::CollectOptions options;
    options.idAttribute = "Key";

    EXPECT_EQ(collected("<r><a DataID='1' Key='8'>x</a><b DataID='2'>y</b></r>", options),
              (Entries{{8, "x"}}));
}

TEST(uxtree_get_values_with_ids, FillsScriptArrays) {
    TestTree tree("<r><a DataID='1'>x</a></r>");
    auto ids = uxtest::script_ints({});
    auto values = uxtest::script_texts({});

    EXPECT_EQ(uxtree_get_values_with_ids(&tree, &ids, &values, 1, 0, 0, nullptr, 0, nullptr), 1);
    EXPECT_EQ(uxtest::entries(ids.array(), values.array()), (Entries{{1, "x"}}));
}

TEST(vctree_get_values_with_ids, SkipsNodesMarkedToBeIgnored) {
    EXPECT_EQ(collected("<r><b TreeGetByIdIgnore='1' DataID='1' Use='1'><c DataID='2'>x</c></b>"
                        "<b TreeGetByIdIgnore='0'><c DataID='3'>y</c></b>"
                        "<b TreeGetByIdIgnore='-1'><c DataID='4'>z</c></b>"
                        "<b TreeGetByIdIgnore='x'><c DataID='5'>w</c></b>"
                        "<c TreeGetByIdIgnore='2' DataID='6'>leaf</c></r>"),
              (Entries{{3, "y"}, {4, "z"}, {5, "w"}}));
}

// --- repeated identifiers ----------------------------------------------------------------------

TEST(vctree_get_values_with_ids, CombinesRepeatIdsAlongThePath) {
    EXPECT_EQ(
        collected("<r><g RepeatID='1' DataID='5' Use='0'><a DataID='7'>x</a>"
                  "<h RepeatID='4' DataID='6' Use='1'><a DataID='7'>y</a></h></g>"
                  "<g RepeatID='2'><a DataID='7'>z</a>"
                  "<a DataID='7' RepeatNodeID='3'>w</a></g></r>"),
        (Entries{
            {5, "0"}, {0x10007, "x"}, {6, "1"}, {0x50007, "y"}, {0x20007, "z"}, {0x3020007, "w"}}));
}

TEST(vctree_get_values_with_ids, StartsFromTheInheritedRepeatId) {
    ux::CollectOptions options;
    options.inheritedRepeat = 4;

    EXPECT_EQ(collected("<r><a DataID='7'>x</a><b DataID='8' Use='1' RepeatID='0'><c DataID='9'>y"
                        "</c></b></r>",
                        options),
              (Entries{{0x40007, "x"}, {0x40008, "1"}, {0x40009, "y"}}));
}

TEST(vctree_get_values_with_ids, CollectsNothingUnderANegativeIdentifier) {
    EXPECT_EQ(collected("<r><a DataID='7' RepeatNodeID='128'>x</a></r>"), (Entries{}));
}

TEST(vctree_get_values_with_ids, OnlyReportsABrokenRuleAndGoesOn) {
    TestTree tree(
        "<r><g RepeatID='2'><h RepeatID='2' Label='inner'><a DataID='7'>x</a></h></g>"
        "<k RepeatID='32767'><a DataID='8'>y</a></k><a DataID='9' RepeatNodeID='32767'>z</a></r>");
    CStringUTF8 text;
    ux::CollectOptions options;
    options.errorText = &text;

    EXPECT_EQ(collected(tree, options), (Entries{{0x20007, "x"}, {8, "y"}, {9, "z"}}));
    EXPECT_EQ(text,  // the last failing node wins
              "Repeat Node ID invalid for Node with Name = a, Label = , Repeat Node ID = -1");
}

TEST(vctree_get_values_with_ids, ReportsARepeatConflict) {
    EXPECT_EQ(error_of("<r><g RepeatID='2'><h RepeatID='2' Label='inner'><a/></h></g></r>"),
              "Repeat ID conflict for Node with Name = h, Label = inner, Repeat ID = 2");
}

TEST(vctree_get_values_with_ids, PrintsTheIdentifierAfterCombinationInARepeatNodeConflict) {
    EXPECT_EQ(error_of("<r><g RepeatID='256'><a DataID='1' RepeatNodeID='1'>x</a></g></r>"),
              "Repeat Node ID conflict for Node with Name = a, Label = , Repeat Node ID = -1, "
              "ID = 16777217");
}

TEST(vctree_get_values_with_ids, ReportsTheFirstNodeOfAKindWithoutDataId) {
    const char* const xml =
        "<r><a/><a _ux_id='77'/><a _ux_id='0'/><a _ux_id='5' DataID='1'/>"
        "<b _ux_id='6' Name='first' Label='L'><c _ux_id='7' Name='second'/></b></r>";

    EXPECT_EQ(error_of(xml), "Missing DataID for Node with Name = first, Label = L");
    EXPECT_EQ(error_of(xml, "", ""), "Missing DataID for Node with Name = first, Label = L");
    EXPECT_EQ(error_of(xml, "", "DataID"), "Missing DataID for Node with Name = first, Label = L");
    EXPECT_EQ(error_of(xml, "earlier"), "earlier");
    EXPECT_EQ(error_of(xml, "", "Key"), "");
}

TEST(vctree_get_values_with_ids, LetsAMissingDataIdBeReplacedByARepeatMessage) {
    EXPECT_EQ(error_of("<r><a _ux_id='5' Name='n'/><b RepeatID='32767'><c/></b></r>"),
              "Repeat ID invalid for Node with Name = b, Label = , Repeat ID = 0");
}

// --- branches ----------------------------------------------------------------------------------

TEST(vctree_get_values_with_ids, TakesABranchFromItsUse) {
    EXPECT_EQ(collected("<r><b DataID='1' Use='0'>own text<c/></b><b DataID='2' Use=''><c/></b>"
                        "<b DataID='3'><c/></b><b DataID='-2' Use='1'><c/></b>"
                        "<b Use='1'><c/></b></r>"),
              (Entries{{1, "0"}, {2, ""}, {-2, "1"}}));
}

TEST(vctree_get_values_with_ids, GivesMinusOneForABranchWithoutUseUnderTheThemeFlag) {
    EXPECT_EQ(collected("<r><b DataID='1'><c/></b></r>", themed()), (Entries{{1, "-1"}}));
    EXPECT_EQ(collected("<r><b DataID='1'><c/></b></r>"), (Entries{}));
}

TEST(vctree_get_values_with_ids, CollectsABranchWithAnLeadingSettingInAnyCase) {
    EXPECT_EQ(collected("<r><b DataID='1' Auto='2'><c/></b></r>"), (Entries{{1, "::{Auto=2}-1"}}));
}

TEST(vctree_get_values_with_ids, TakesAThemedBranchFromItsDataAndDoesNotEnterIt) {
    EXPECT_EQ(collected("<r><b DataID='1' ThemeApplicability='1048576' Data='1:3' Use='0'>"
                        "<c DataID='2'>x</c></b></r>",
                        themed()),
              (Entries{{1, "1:3"}}));
}

TEST(vctree_get_values_with_ids, GivesNothingForAThemedBranchWithoutData) {
    EXPECT_EQ(collected("<r><b DataID='1' ThemeApplicability='1048576' Use='0'>"
                        "<c DataID='2'>x</c></b></r>",
                        themed()),
              (Entries{}));
    EXPECT_EQ(collected("<r><b DataID='1' ThemeApplicability='1048576' Auto='1'><c/></b></r>"),
              (Entries{{1, "::{Auto=1}"}}));
}

TEST(vctree_get_values_with_ids, LeavesOtherBitsOfTheFlagWordAlone) {
    EXPECT_EQ(collected("<r><b DataID='1' ThemeApplicability='2097151' Data='d'>"
                        "<c DataID='2'>x</c></b>"
                        "<b DataID='3' ThemeApplicability='983040' Use='1'>"
                        "<c DataID='4'>y</c></b></r>"),
              (Entries{{1, "d"}, {3, "1"}, {4, "y"}}));
}

TEST(vctree_get_values_with_ids, KeepsAClearedThemeFlagForTheRestOfTheLevel) {
    EXPECT_EQ(collected("<r><p DataID='1'><c/></p>"
                        "<q DataID='2'>"
                        "  <p DataID='3'><c/></p>"
                        "  <t ThemeApplicability='1048576'><c/></t>"
                        "  <p DataID='4'><c/></p>"
                        "  <u><p DataID='5'><c/></p></u>"
                        "</q>"
                        "<p DataID='6'><c/></p></r>",
                        themed()),
              (Entries{{1, "-1"}, {2, "-1"}, {3, "-1"}, {6, "-1"}}));
}

TEST(vctree_get_values_with_ids, CollectsASecondValueUnderTheNegatedIdentifier) {
    EXPECT_EQ(collected("<r><b DataID='1' ThemeApplicabilityEx='1' Use='0' Data='d'>"
                        "<c DataID='2'>x</c></b>"
                        "<b DataID='3' ThemeApplicabilityEx='0' Use='1' Data='e'><c/></b></r>"),
              (Entries{{1, "0"}, {-1, "d"}, {2, "x"}, {3, "1"}, {-3, "1"}}));
}

TEST(vctree_get_values_with_ids, ClearsTheThemeFlagAtANonzeroSecondValue) {
    EXPECT_EQ(collected("<r><b DataID='1' ThemeApplicabilityEx='1'><p DataID='2'><c/></p></b>"
                        "<p DataID='3'><c/></p></r>",
                        themed()),
              (Entries{{1, "-1"}}));
    EXPECT_EQ(collected("<r><b DataID='1' ThemeApplicabilityEx='0'><p DataID='2'><c/></p></b>"
                        "<p DataID='3'><c/></p></r>",
                        themed()),
              (Entries{{1, "-1"}, {-1, "-1"}, {2, "-1"}, {3, "-1"}}));
}

TEST(vctree_get_values_with_ids, NeedsAnIdentifierForTheSecondValue) {
    EXPECT_EQ(collected("<r><b ThemeApplicabilityEx='1' Data='d'><p DataID='2'><c/></p></b></r>",
                        themed()),
              (Entries{{2, "-1"}}));
}

TEST(vctree_get_values_with_ids, NegatesTheLowestIdentifierIntoItself) {
    EXPECT_EQ(collected("<r><b DataID='-2147483648' ThemeApplicabilityEx='0' Use='1'><c/></b></r>"),
              (Entries{{-2147483647 - 1, "1"}, {-2147483647 - 1, "1"}}));
}

// --- leading settings -------------------------------------------------------------------------

TEST(vctree_get_values_with_ids, PutsLeadingSettingsInFrontInReverseOrder) {
    EXPECT_EQ(collected("<r><a DataID='1' DynaUseChck='0' Auto='1|n|2' DynaFx='x+1'>v</a>"
                        "<a DataID='2' Auto=''>w</a></r>"),
              (Entries{{1, "::{DynaFx=x+1}::{Auto=1|n|2}::{DynaUseChck=0}v"}, {2, "::{Auto=}w"}}));
}

// --- options of the engine ---------------------------------------------------------------------

TEST(_tree_get_values_by_ids, TakesLeavesFromTheirUseUnderTheUseFlag) {
    ux::CollectOptions options;
    options.useFlag = true;

    EXPECT_EQ(collected("<r><a DataID='1' Use='0'>x</a><a DataID='2'>y</a>"
                        "<a DataID='3' Use=''>z</a></r>",
                        options),
              (Entries{{1, "0"}, {2, "y"}, {3, ""}}));
}

TEST(_tree_get_values_by_ids, KeepsChangedNodesOnlyAndRefreshesTheirMark) {
    TestTree tree(
        "<r><a DataID='1' OldValue='x'>x</a><a DataID='2' OldValue='X'>x</a><a DataID='3'>x</a>"
        "<a DataID='4' OldValue='' Auto='1'>x</a><b DataID='5' Use='1' OldValue='0'><c/></b></r>");
    ux::CollectOptions options;
    options.onlyChanged = true;

    EXPECT_EQ(collected(tree, options), (Entries{{2, "x"}, {4, "::{Auto=1}x"}, {5, "1"}}));
    EXPECT_EQ(tree.text(),
              tree_text("<r><a DataID='1' OldValue='x'>x</a><a DataID='2' OldValue='x'>x</a>"
                        "<a DataID='3'>x</a>"
                        "<a DataID='4' OldValue='::{Auto=1}x' Auto='1'>x</a>"
                        "<b DataID='5' Use='1' OldValue='1'><c/></b></r>"));
    EXPECT_EQ(collected(tree, options), (Entries{}));
}

TEST(_tree_get_values_by_ids, AppendsLabelsAndAttributesBesideEachValue) {
    TestTree tree(
        "<r><a DataID='1' Label='L' P='p'>x</a><b DataID='2' Use='1' Label='' Q='q'>"
        "<c DataID='3'>y</c></b></r>");
    CArray<int, int> ids;
    CWBOStringArray values = uxtest::string_list({"gone"});
    CWBOStringArray first = uxtest::string_list({"kept"});
    CWBOStringArray second;
    CWBOStringArray labels = uxtest::string_list({"kept"});

    EXPECT_EQ(
        ux::_tree_get_values_by_ids(tree, ids, {&values, "P", &first, "Q", &second, &labels}, {}),
        3);
    EXPECT_THAT(uxtest::numbers(ids), ElementsAre(1, 2, 3));
    EXPECT_THAT(texts(values), ElementsAre("x", "1", "y"));
    EXPECT_THAT(texts(first), ElementsAre("kept", "p", "", ""));
    EXPECT_THAT(texts(second), ElementsAre("", "q", ""));
    EXPECT_THAT(texts(labels), ElementsAre("kept", "L", "", "c"));
}

TEST(_tree_get_values_by_ids, CollectsByAttributesAloneWithoutAValuesArray) {
    TestTree tree(
        "<r><a DataID='1' P='p'>x</a><a DataID='2'>x</a><a DataID='3' P='' Q='q'/>"
        "<b DataID='4' P='r' ThemeApplicabilityEx='1'><c DataID='5' P=''/></b></r>");
    CArray<int, int> ids;
    CWBOStringArray first;
    CWBOStringArray second;
    CWBOStringArray labels;
    ux::CollectOptions options;
    options.onlyChanged = true;  // has no meaning without values

    EXPECT_EQ(ux::_tree_get_values_by_ids(tree, ids, {nullptr, "P", &first, "Q", &second, &labels},
                                          options),
              4);
    EXPECT_THAT(uxtest::numbers(ids), ElementsAre(1, 3, 4, -4));
    EXPECT_THAT(texts(first), ElementsAre("p", "", "r", "r"));
    EXPECT_THAT(texts(second), ElementsAre("", "q", "", ""));
    EXPECT_THAT(texts(labels), ElementsAre("a", "a", "b", "b"));
}

TEST(_tree_get_values_by_ids, WalksDeepTreesWithoutMachineStack) {
    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    UXXmlWrapperBase node = root;
    for (int i = 0; i < 200000; ++i) node.AddNode(&node, "b", -1);
    node.SetDataID(4);
    node.SetString("deep");

    EXPECT_EQ(collected(root), (Entries{{4, "deep"}}));
    EXPECT_EQ(uxtest::set_values(root, {{4, "new"}}), 1);
    EXPECT_EQ(collected(root), (Entries{{4, "new"}}));
}

}  // namespace
