// Setting values by their identifiers.
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/data/copy.h"
#include "uxtree/data/value_watch.h"

#include "data/values_support.h"

namespace {

using testing::ElementsAre;
using uxtest::after_setting;
using uxtest::Entries;
using uxtest::set_values;
using uxtest::TestTree;
using uxtest::tree_text;

constexpr int kUntouchedCount = -777;

// Sets through the entry point, with a duplicate output and an error text.
struct SetOutcome {
    int result;
    int duplicate;
    std::string error;
    std::string tree;
};
SetOutcome set_checked(const char* xml, const std::vector<int>& ids,
                       const std::vector<std::string>& values, int inheritedRepeat = 0) {
    TestTree tree(xml);
    CArray<int, int> idArray = uxtest::number_list(ids);
    CWBOStringArray valueArray = uxtest::string_list(values);
    SetOutcome outcome{0, kUntouchedCount, {}, {}};
    CStringUTF8 error;
    outcome.result = vctree_set_values_by_ids(&tree, &idArray, &valueArray, inheritedRepeat,
                                              &outcome.duplicate, 0, nullptr, &error);
    outcome.error = error;
    outcome.tree = tree.text();
    return outcome;
}

// --- leaves and branches -----------------------------------------------------------------------

TEST(vctree_set_values_by_ids, WritesEveryNodeThatCarriesAnIdentifier) {
    TestTree tree(
        "<r><a DataID='1'>o</a><b DataID='2'><c DataID='1'>o</c><d DataID='0'>o</d></b>"
        "<e>o</e><f DataID='-1'>o</f><g DataID='5'>o</g></r>");
    CArray<int, int> ids = uxtest::number_list<int>({1, 2, 0, -1, 99});
    CWBOStringArray values = uxtest::string_list({"x", "1", "", "no", "no"});

    EXPECT_EQ(vctree_set_values_by_ids(&tree, &ids, &values, 0, nullptr, 0, nullptr, nullptr), 4);
    EXPECT_EQ(tree.text(),
              tree_text("<r><a DataID='1'>x</a><b DataID='2' Use='1'><c DataID='1'>x</c>"
                        "<d DataID='0'></d></b><e>o</e><f DataID='-1'>o</f><g DataID='5'>o</g>"
                        "</r>"));
}

TEST(vctree_set_values_by_ids, CombinesRepeatIdsAlongThePath) {
    EXPECT_EQ(after_setting("<r><g RepeatID='1'><a DataID='7'/></g><g RepeatID='2'>"
                            "<a DataID='7'/><a DataID='7' RepeatNodeID='3'/></g></r>",
                            {{0x10007, "x"}, {0x20007, "y"}, {0x3020007, "z"}, {7, "no"}}),
              tree_text("<r><g RepeatID='1'><a DataID='7'>x</a></g><g RepeatID='2'>"
                        "<a DataID='7'>y</a><a DataID='7' RepeatNodeID='3'>z</a></g></r>"));
}

TEST(vctree_set_values_by_ids, TakesTheFirstOfEqualIdentifiersWithoutADuplicateOutput) {
    EXPECT_EQ(after_setting("<r><a DataID='1'/></r>", {{1, "first"}, {1, "second"}}),
              tree_text("<r><a DataID='1'>first</a></r>"));
}

TEST(vctree_set_values_by_ids, IgnoresTheCollectionMark) {
    EXPECT_EQ(after_setting("<r><b TreeGetByIdIgnore='1'><a DataID='1'/></b></r>", {{1, "x"}}),
              tree_text("<r><b TreeGetByIdIgnore='1'><a DataID='1'>x</a></b></r>"));
}

TEST(vctree_set_values_by_ids, LeavesABranchAloneForMinusOne) {
    TestTree tree("<r><b DataID='1' Use='0'><c/></b></r>");

    EXPECT_EQ(set_values(tree, {{1, "-1"}}), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><b DataID='1' Use='0'><c/></b></r>"));
}

TEST(vctree_set_values_by_ids, ReadsAnotherIdentifierAttribute) {
    ux::SetOptions options;
    options.idAttribute = "Key";

    EXPECT_EQ(after_setting("<r><a Key='1'/><a DataID='1'/></r>", {{1, "x"}}, options),
              tree_text("<r><a Key='1'>x</a><a DataID='1'/></r>"));
}

// --- refusals ----------------------------------------------------------------------------------

TEST(vctree_set_values_by_ids, RefusesEmptyAndUnequalArrays) {
    const char* const xml = "<r><a DataID='1'>o</a></r>";

    EXPECT_EQ(set_checked(xml, {}, {}).result, -2);
    EXPECT_EQ(set_checked(xml, {}, {"x"}).result, -2);
    EXPECT_EQ(set_checked(xml, {1}, {}).result, -2);
    EXPECT_EQ(set_checked(xml, {1, 2}, {"x"}).result, -3);
    EXPECT_EQ(set_checked(xml, {1}, {"x", "y"}).result, -3);
    EXPECT_EQ(set_checked(xml, {1}, {"x", "y"}).tree, tree_text(xml));
}

TEST(vctree_set_values_by_ids, RefusesADuplicateBeforeWritingAnything) {
    const char* const xml = "<r><a DataID='1'>o</a></r>";
    const SetOutcome outcome = set_checked(xml, {1, 30, 2, 2, 30}, {"a", "b", "c", "d", "e"}, 4);

    EXPECT_EQ(outcome.result, -4);
    EXPECT_EQ(outcome.duplicate, 30);
    EXPECT_EQ(outcome.error,
              "\n******  _tree_set_values_by_ids found dup id = 30, 1E. RepeatID = 4\n");
    EXPECT_EQ(outcome.tree, tree_text(xml));
}

TEST(vctree_set_values_by_ids, RefusesADuplicateWithoutAMessageWhenNoTextIsGiven) {
    TestTree tree("<r><a DataID='1'>o</a></r>");
    int duplicate = kUntouchedCount;
    ux::SetOptions options;
    options.duplicate = &duplicate;

    EXPECT_EQ(set_values(tree, {{1, "x"}, {1, "y"}}, options), -4);
    EXPECT_EQ(duplicate, 1);
    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1'>o</a></r>"));
}

TEST(vctree_set_values_by_ids, LeavesTheDuplicateOutputAloneWhenThereIsNone) {
    const SetOutcome outcome = set_checked("<r><a DataID='1'/></r>", {1, 2}, {"x", "y"});

    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.duplicate, kUntouchedCount);
    EXPECT_EQ(outcome.error, "");
}

TEST(vctree_set_values_by_ids, StopsAtARepeatConflictAndKeepsWhatWasWritten) {
    const SetOutcome outcome = set_checked(
        "<r><a DataID='1'/><g RepeatID='2'><h RepeatID='2' Label='in'/></g>"
        "<a DataID='1'/></r>",
        {1}, {"x"});

    EXPECT_EQ(outcome.result, -5);
    EXPECT_EQ(outcome.error,
              "Repeat ID conflict for Node with Name = h, Label = in, Repeat ID = 2");
    EXPECT_EQ(outcome.tree, tree_text("<r><a DataID='1'>x</a><g RepeatID='2'>"
                                      "<h RepeatID='2' Label='in'/></g><a DataID='1'/></r>"));
}

TEST(vctree_set_values_by_ids, StopsAtEveryBrokenRule) {
    EXPECT_EQ(set_checked("<r><g RepeatID='32767'/></r>", {1}, {"x"}).error,
              "Repeat ID invalid for Node with Name = g, Label = , Repeat ID = 0");
    EXPECT_EQ(set_checked("<r><g DataID='65536'/></r>", {1}, {"x"}, 1).error,
              "DataID conflict with RepeatID for Node with Name = g, Label = , Repeat ID = 65536");
    EXPECT_EQ(set_checked("<r><g DataID='1' RepeatNodeID='32767'/></r>", {1}, {"x"}).error,
              "Repeat Node ID invalid for Node with Name = g, Label = , Repeat Node ID = -1");
    EXPECT_EQ(set_checked("<r><g DataID='16777216' RepeatNodeID='1'/></r>", {1}, {"x"}).error,
              "Repeat Node ID conflict for Node with Name = g, Label = , Repeat Node ID = -1, "
              "ID = 16777216");
    EXPECT_EQ(set_checked("<r><g DataID='1' RepeatNodeID='32767'/></r>", {1}, {"x"}).result, -5);
}

TEST(vctree_set_values_by_ids, ReportsTheFirstRuleThatANodeBreaks) {
    EXPECT_EQ(set_checked("<r><g DataID='65536' RepeatNodeID='32767'/></r>", {1}, {"x"}, 1).error,
              "DataID conflict with RepeatID for Node with Name = g, Label = , Repeat ID = 65536");
}

TEST(uxtree_set_values_by_ids, TakesScriptArrays) {
    TestTree tree("<r><a DataID='1'/></r>");
    auto ids = uxtest::script_ints({1});
    auto values = uxtest::script_texts({"x"});

    EXPECT_EQ(uxtree_set_values_by_ids(&tree, &ids, &values, 0, nullptr, 0, nullptr, nullptr), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1'>x</a></r>"));
}

// --- the second value of a branch --------------------------------------------------------------

TEST(vctree_set_values_by_ids, GivesABranchItsSecondValueOnlyWithTheMark) {
    const Entries both{{1, "1"}, {-1, "d"}};

    EXPECT_EQ(after_setting("<r><b DataID='1' ThemeApplicabilityEx='1'><c/></b></r>", both),
              tree_text("<r><b DataID='1' ThemeApplicabilityEx='1' Use='1' Data='d'><c/></b></r>"));
    EXPECT_EQ(after_setting("<r><b DataID='1' ThemeApplicabilityEx='0'><c/></b></r>", both),
              tree_text("<r><b DataID='1' ThemeApplicabilityEx='0' Use='d'><c/></b></r>"));
    EXPECT_EQ(after_setting("<r><b DataID='1'><c/></b></r>", both),
              tree_text("<r><b DataID='1' Use='1'><c/></b></r>"));
}

TEST(vctree_set_values_by_ids, CountsTheSecondValueToo) {
    TestTree tree("<r><b DataID='1' ThemeApplicabilityEx='1'><c/></b></r>");

    EXPECT_EQ(set_values(tree, {{1, "1"}, {-1, "d"}}), 2);
    EXPECT_EQ(set_values(tree, {{1, "1"}, {-1, ""}}), 1);  // empty "Data" is held back
}

TEST(vctree_set_values_by_ids, WantsTheNegatedIdentifierDirectlyBehind) {
    const char* const xml = "<r><b DataID='1' ThemeApplicabilityEx='1'><c/></b></r>";
    const std::string firstOnly =
        tree_text("<r><b DataID='1' ThemeApplicabilityEx='1' Use='1'><c/></b></r>");

    EXPECT_EQ(after_setting(xml, {{1, "1"}, {5, "x"}, {-1, "d"}}), firstOnly);
    EXPECT_EQ(after_setting(xml, {{-1, "d"}, {1, "1"}}), firstOnly);
    EXPECT_EQ(after_setting(xml, {{-1, "d"}}), tree_text(xml));
}

TEST(vctree_set_values_by_ids, GivesLeavesNoSecondValue) {
    EXPECT_EQ(
        after_setting("<r><a DataID='1' ThemeApplicabilityEx='1'/></r>", {{1, "x"}, {-1, "d"}}),
        tree_text("<r><a DataID='1' ThemeApplicabilityEx='1'>x</a></r>"));
}

TEST(vctree_set_values_by_ids, PutsTheSecondValueWhereItsMarkSaysWhateverTheFlagWordSays) {
    EXPECT_EQ(
        after_setting("<r><b DataID='1' ThemeApplicability='1048576' ThemeApplicabilityEx='0'>"
                      "<c/></b></r>",
                      {{1, "d"}, {-1, "1"}}),
        tree_text("<r><b DataID='1' ThemeApplicability='1048576' ThemeApplicabilityEx='0' "
                  "Data='d' Use='1'><c/></b></r>"));
}

// --- the flag word -----------------------------------------------------------------------------

TEST(vctree_set_values_by_ids, HoldsTheValueBackUnderBit16ButAppliesItsSettings) {
    TestTree tree("<r><a DataID='1' ThemeApplicability='65536' DynaFx='f'>o</a></r>");

    EXPECT_EQ(set_values(tree, {{1, "::{Auto=1}x"}}), 0);
    EXPECT_EQ(tree.text(),
              tree_text("<r><a DataID='1' ThemeApplicability='65536' Auto='1'>o</a></r>"));
}

TEST(vctree_set_values_by_ids, StripsSettingsWithoutApplyingThemUnderBit17) {
    EXPECT_EQ(after_setting("<r><a DataID='1' ThemeApplicability='131072' DynaFx='f'>o</a></r>",
                            {{1, "::{Auto=1}x"}}),
              tree_text("<r><a DataID='1' ThemeApplicability='131072'>x</a></r>"));
    EXPECT_EQ(after_setting("<r><a DataID='1' ThemeApplicability='131072' DynaFx='f'>o</a></r>",
                            {{1, "::{DynaFx=g}x"}}),
              tree_text("<r><a DataID='1' ThemeApplicability='131072' DynaFx='f'>x</a></r>"));
}

TEST(vctree_set_values_by_ids, ValidatesUnderBit18) {
    uxtest::FakeHostServices services;
    services->validateValue = [](UXXmlWrapperBase&, const CStringUTF8& value) {
        return value != "bad";
    };
    TestTree tree(
        "<r><a DataID='1' ThemeApplicability='262144'>o</a><a DataID='2'>o</a>"
        "<a DataID='3' ThemeApplicability='262144'>o</a></r>");
    const Entries given{{1, "::{Auto=1}bad"}, {2, "bad"}, {3, "good"}};

    EXPECT_EQ(set_values(tree, given), 2);
    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1' ThemeApplicability='262144' Auto='1'>o</a>"
                                     "<a DataID='2'>bad</a>"
                                     "<a DataID='3' ThemeApplicability='262144'>good</a></r>"));
    ux::SetOptions off;
    off.validateOff = true;
    EXPECT_EQ(set_values(tree, given, off), 3);
}

TEST(vctree_set_values_by_ids, WritesABranchIntoDataUnderBit20) {
    TestTree tree("<r><b DataID='1' ThemeApplicability='1048576' Data='o'><c DataID='2'/></b></r>");

    EXPECT_EQ(set_values(tree, {{1, "d"}, {2, "x"}}), 2);
    EXPECT_EQ(tree.text(), tree_text("<r><b DataID='1' ThemeApplicability='1048576' Data='d'>"
                                     "<c DataID='2'>x</c></b></r>"));
    EXPECT_EQ(set_values(tree, {{1, ""}}), 0);
    EXPECT_EQ(tree.text(), tree_text("<r><b DataID='1' ThemeApplicability='1048576' Data='d'>"
                                     "<c DataID='2'>x</c></b></r>"));
}

TEST(vctree_set_values_by_ids, HandsTheFlagWordDownUntilANodeHasItsOwn) {
    EXPECT_EQ(after_setting("<r><b ThemeApplicability='65536'><a DataID='1'>o</a><c>"
                            "<a DataID='1'>o</a><a DataID='1' ThemeApplicability='0'>o</a></c>"
                            "</b><a DataID='1'>o</a></r>",
                            {{1, "x"}}),
              tree_text("<r><b ThemeApplicability='65536'><a DataID='1'>o</a><c>"
                        "<a DataID='1'>o</a><a DataID='1' ThemeApplicability='0'>x</a></c>"
                        "</b><a DataID='1'>x</a></r>"));
}

TEST(_tree_set_values_by_ids, StartsFromTheDefaultFlagWord) {
    ux::SetOptions options;
    options.defaultFlags = ux::kThemeNoValue;

    EXPECT_EQ(after_setting("<r><a DataID='1'>o</a></r>", {{1, "x"}}, options),
              tree_text("<r><a DataID='1'>o</a></r>"));
}

TEST(_tree_set_values_by_ids, TakesALeafWithBit21InItsIdentifierAsABranchForBit20) {
    // RepeatID 32 is bit 21 of the identifier.
    const char* const xml =
        "<r><g RepeatID='32' ThemeApplicability='1048576'><a DataID='1'>o</a></g>"
        "<g RepeatID='32'><a DataID='2'>o</a></g>"
        "<g RepeatID='1' ThemeApplicability='1048576'><a DataID='1'>o</a></g></r>";
    const Entries given{{0x200001, "x"}, {0x200002, "y"}, {0x10001, "z"}};
    ux::SetOptions themeOff;
    themeOff.callFlags = ux::kThemeOff;

    EXPECT_EQ(
        after_setting(xml, given),
        tree_text("<r><g RepeatID='32' ThemeApplicability='1048576'>"
                  "<a DataID='1' Data='x'>o</a></g>"
                  "<g RepeatID='32'><a DataID='2'>y</a></g>"
                  "<g RepeatID='1' ThemeApplicability='1048576'><a DataID='1'>z</a></g></r>"));
    EXPECT_EQ(
        after_setting(xml, given, themeOff),
        tree_text("<r><g RepeatID='32' ThemeApplicability='1048576'>"
                  "<a DataID='1'>x</a></g>"
                  "<g RepeatID='32'><a DataID='2'>y</a></g>"
                  "<g RepeatID='1' ThemeApplicability='1048576'><a DataID='1'>z</a></g></r>"));
}

TEST(_tree_set_values_by_ids, KeepsDataForBranchesWithThemeHandlingOff) {
    ux::SetOptions themeOff;
    themeOff.callFlags = ux::kThemeOff;

    EXPECT_EQ(after_setting("<r><b DataID='1' ThemeApplicability='1048576'><c/></b></r>",
                            {{1, "d"}}, themeOff),
              tree_text("<r><b DataID='1' ThemeApplicability='1048576' Data='d'><c/></b></r>"));
}

// --- leading settings -------------------------------------------------------------------------

struct LeadingCase {
    const char* value;
    const char* attributes;  // of the node afterwards
    const char* text;
};

class LeadingSettings : public testing::TestWithParam<LeadingCase> {};

TEST_P(LeadingSettings, AreCutOutOfTheValueAndSet) {
    const LeadingCase& one = GetParam();
    TestTree expected((std::string("<r><a DataID='1'") + one.attributes + "/></r>").c_str());
    UXXmlWrapperBase leaf = expected.at("a");
    leaf.SetString(one.text);

    EXPECT_EQ(after_setting("<r><a DataID='1'>o</a></r>", {{1, one.value}}), expected.text());
}

INSTANTIATE_TEST_SUITE_P(
    vctree_set_values_by_ids, LeadingSettings,
    testing::Values(
        LeadingCase{"x::{Auto=1}12", " Auto='1'", "12"}, LeadingCase{"::{a=b}", " a='b'", ""},
        LeadingCase{"::{a=b", "", "::{a=b"},
        LeadingCase{"::{a=}", "", "::{a=}"},    // too short to be parsed
        LeadingCase{"::{aa=}", "", "::{aa=}"},  // no value
        LeadingCase{"::{=xx}", "", "::{=xx}"},  // no name
        LeadingCase{"::{ab}c", "", "::{ab}c"},  // no "="
        LeadingCase{"::{ab}c=d}", "", "::{ab}c=d}"},
        LeadingCase{"::{a=b}::{c=d}e", " a='b' c='d'", "e"},
        LeadingCase{"x::{a=b}y::{c=d}e", " a='b' c='d'", "e"},
        LeadingCase{"::{a=b}y::{=d}e", " a='b'", "y::{=d}e"}, LeadingCase{"p::{a=b", "", "p::{a=b"},
        LeadingCase{"::{a={b}c}d", " a='{b}c'", "d"}, LeadingCase{"::{a={b}c", "", "::{a={b}c"},
        LeadingCase{"::{a=b=c}d", " a='b=c'", "d"}, LeadingCase{"::{a=b}}c", " a='b'", "}c"},
        LeadingCase{"::{a=::{b=c}}d", " a='::{b=c}'", "d"},
        LeadingCase{"::{1a=b}c", "", "c"},  // no attribute can be named so
        LeadingCase{"::{a=1}::{a=2}c", " a='2'", "c"},
        LeadingCase{"::{DynaFx=f}x", " DynaFx='f'", "x"},
        LeadingCase{"plain text", "", "plain text"}));

TEST(vctree_set_values_by_ids, RemovesDynaFxThatAValueDoesNotCarry) {
    const char* const xml = "<r><a DataID='1' DynaFx='f' Auto='1'>o</a></r>";

    EXPECT_EQ(after_setting(xml, {{1, "x"}}), tree_text("<r><a DataID='1' Auto='1'>x</a></r>"));
    EXPECT_EQ(after_setting(xml, {{1, "::{Auto=2}x"}}),
              tree_text("<r><a DataID='1' Auto='2'>x</a></r>"));
    EXPECT_EQ(after_setting(xml, {{1, "::{DynaFx=g}x"}}),
              tree_text("<r><a DataID='1' DynaFx='g' Auto='1'>x</a></r>"));
}

TEST(vctree_set_values_by_ids, ComparesDynaFxExactly) {
    EXPECT_EQ(after_setting("<r><a DataID='1' DynaFx='f'>o</a></r>", {{1, "::{dynafx=g}x"}}),
              tree_text("<r><a DataID='1' dynafx='g'>x</a></r>"));
}

TEST(_tree_set_values_by_ids, ResetsAutomaticSupportThatAValueDoesNotCarry) {
    const char* const xml = "<r><a DataID='1' Auto='1|Input|3'>o</a></r>";
    ux::SetOptions options;
    options.callFlags = ux::kResetAutomatic;

    EXPECT_EQ(after_setting(xml, {{1, "x"}}, options),
              tree_text("<r><a DataID='1' Auto='0|Input|3'>x</a></r>"));
    EXPECT_EQ(after_setting(xml, {{1, "::{AUTO=7}x"}}, options),
              tree_text("<r><a DataID='1' Auto='1|Input|3' AUTO='7'>x</a></r>"));
    EXPECT_EQ(after_setting("<r><a DataID='1'>o</a></r>", {{1, "x"}}, options),
              tree_text("<r><a DataID='1'>x</a></r>"));
    EXPECT_EQ(after_setting(xml, {{1, "x"}}),
              tree_text("<r><a DataID='1' Auto='1|Input|3'>x</a></r>"));
}

TEST(_tree_set_values_by_ids, SwitchesAnExistingDynaUseCheckOnThatAValueDoesNotCarry) {
    const char* const xml = "<r><a DataID='1' DynaUseChck='0'>o</a></r>";
    ux::SetOptions options;
    options.callFlags = ux::kCheckDynaUse;

    EXPECT_EQ(after_setting(xml, {{1, "x"}}, options),
              tree_text("<r><a DataID='1' DynaUseChck='1'>x</a></r>"));
    EXPECT_EQ(after_setting(xml, {{1, "::{dynausechck=0}x"}}, options),
              tree_text("<r><a DataID='1' DynaUseChck='0' dynausechck='0'>x</a></r>"));
    EXPECT_EQ(after_setting("<r><a DataID='1'>o</a></r>", {{1, "x"}}, options),
              tree_text("<r><a DataID='1'>x</a></r>"));
    EXPECT_EQ(after_setting(xml, {{1, "x"}}),
              tree_text("<r><a DataID='1' DynaUseChck='0'>x</a></r>"));
}

// --- attributes of the record ------------------------------------------------------------------

TEST(_tree_set_values_by_ids, WritesAndRemovesTransportedAttributes) {
    TestTree tree(
        "<r><a DataID='1' P='o' Q='o'>o</a><b DataID='2' P='o' ThemeApplicabilityEx='1' "
        "ThemeApplicability='65536'><c/></b></r>");
    const CArray<int, int> ids = uxtest::number_list<int>({1, 2, -2});
    CWBOStringArray values = uxtest::string_list({"x", "1", "d"});
    CWBOStringArray first = uxtest::string_list({"p", "q", ""});
    CWBOStringArray second = uxtest::string_list({"", "", "r"});

    EXPECT_EQ(ux::_tree_set_values_by_ids(tree, ids, {&values, "P", &first, "Q", &second}, {}),
              1);  // bit 16 holds both values of the branch back, never its attributes
    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1' P='p'>x</a><b DataID='2' "
                                     "ThemeApplicabilityEx='1' ThemeApplicability='65536' Q='r'>"
                                     "<c/></b></r>"));
}

TEST(_tree_set_values_by_ids, WritesAttributesAloneWithoutAValuesArray) {
    TestTree tree("<r><a DataID='1' DynaFx='f'>o</a></r>");
    const CArray<int, int> ids = uxtest::number_list<int>({1});
    CWBOStringArray first = uxtest::string_list({"p"});

    EXPECT_EQ(ux::_tree_set_values_by_ids(tree, ids, {nullptr, "P", &first}, {}), 0);
    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1' DynaFx='f' P='p'>o</a></r>"));
}

TEST(_tree_set_values_by_ids, RefusesAttributeListsOfAnotherLength) {
    TestTree tree("<r><a DataID='1'>o</a></r>");
    const CArray<int, int> ids = uxtest::number_list<int>({1});
    CWBOStringArray two = uxtest::string_list({"p", "q"});
    CWBOStringArray none;

    EXPECT_EQ(ux::_tree_set_values_by_ids(tree, ids, {nullptr, "P", &two}, {}), -3);
    EXPECT_EQ(ux::_tree_set_values_by_ids(tree, ids, {nullptr, nullptr, nullptr, "P", &none}, {}),
              -3);
}

// --- the watch ---------------------------------------------------------------------------------

struct Watch : _SETVALUESBYIDS {
    int calls = 0;
    int progressDuringCall = 0;
    std::string seen;
    std::string replacement;
};

void on_write(_SETVALUESBYIDS* record) {
    Watch& watch = *static_cast<Watch*>(record);
    ++watch.calls;
    watch.progressDuringCall = watch.inProgress;
    watch.seen = static_cast<const char*>(*watch.value);
    if (!watch.replacement.empty()) *watch.value = watch.replacement.c_str();
}

Watch watch_for(int id) {
    Watch watch;
    watch.callback = on_write;
    watch.id = id;
    watch.inProgress = 0;
    watch.value = nullptr;
    return watch;
}

TEST(_tree_set_values_by_ids, CallsTheWatchBeforeItsLeafIsWritten) {
    Watch watch = watch_for(0x10001);
    watch.replacement = "changed";
    ux::SetOptions options;
    options.callback = &watch;

    EXPECT_EQ(after_setting("<r><g RepeatID='1'><a DataID='1'/></g><a DataID='1'/></r>",
                            {{0x10001, "::{Auto=1}x"}, {1, "y"}}, options),
              tree_text("<r><g RepeatID='1'><a DataID='1' Auto='1'>changed</a></g>"
                        "<a DataID='1'>y</a></r>"));
    EXPECT_EQ(watch.calls, 1);
    EXPECT_EQ(watch.seen, "x");
    EXPECT_EQ(watch.progressDuringCall, 1);
    EXPECT_EQ(watch.inProgress, 0);
    EXPECT_EQ(watch.value, nullptr);
}

TEST(vctree_copy_values_by_id, LeavesNoPointerInAWatchThatThrows) {
    TestTree from("<r><a DataID='1'>x</a></r>");
    TestTree to("<r><a DataID='1'>old</a></r>");
    _SETVALUESBYIDS watch{[](_SETVALUESBYIDS*) { throw std::runtime_error("no"); }, 1, 0, nullptr};

    EXPECT_EQ(vctree_copy_values_by_id(&from, &to, 0, nullptr, nullptr, 0, &watch, 0, 0, 0, 0), -1);

    EXPECT_EQ(watch.value, nullptr);
    EXPECT_EQ(watch.inProgress, 0);
    EXPECT_EQ(to.text(), tree_text("<r><a DataID='1'>old</a></r>"));
}

TEST(_tree_set_values_by_ids, LeavesAWatchInProgressAlone) {
    Watch watch = watch_for(1);
    watch.inProgress = 1;
    ux::SetOptions options;
    options.callback = &watch;

    after_setting("<r><a DataID='1'/></r>", {{1, "x"}}, options);

    EXPECT_EQ(watch.calls, 0);
    EXPECT_EQ(watch.inProgress, 1);
}

TEST(_tree_set_values_by_ids, CallsNoWatchForBranchesHeldBackValuesAndMissingEntries) {
    for (const char* xml :
         {"<r><b DataID='1'><c/></b></r>", "<r><a DataID='1' ThemeApplicability='65536'/></r>",
          "<r><a DataID='2'/></r>"}) {
        Watch watch = watch_for(1);
        ux::SetOptions options;
        options.callback = &watch;

        after_setting(xml, {{1, "x"}}, options);

        EXPECT_EQ(watch.calls, 0) << xml;
        EXPECT_EQ(watch.inProgress, 0) << xml;
    }
}

TEST(_tree_set_values_by_ids, EndsTheLevelWhenTheWatchRemovesTheNode) {
    static UXXmlWrapperBase doomed;
    TestTree tree("<r><g><a DataID='1'/><a DataID='2'/></g></r>");
    doomed = tree.at("g/a");
    _SETVALUESBYIDS watch{[](_SETVALUESBYIDS*) { doomed.RemoveNode(); }, 1, 0, nullptr};
    ux::SetOptions options;
    options.callback = &watch;

    set_values(tree, {{1, "x"}, {2, "y"}}, options);

    EXPECT_EQ(watch.inProgress, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><g><a DataID='2'/></g></r>"));
    doomed.ReleaseNode();
}

}  // namespace
