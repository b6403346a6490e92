// Weights of a fitter's data, compact and expanded.
#include "uxtree/analysis/fitter.h"

#include <array>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using uxtest::FakeHostServices;
using uxtest::TestTree;
using uxtest::texts;
using uxtest::to_text;
using uxtest::tree_text;

// --- VCTreeGetFitterWeightStrings ----------------------------------------------------------------

TEST(VCTreeGetFitterWeightStrings, GivesAllNamesAndTheOneAskedFor) {
    CStringUTF8 name;
    CWBOStringArray all = uxtest::string_list({"old"});
    EXPECT_EQ(VCTreeGetFitterWeightStrings(8, &name, &all, 0), 15);
    EXPECT_STREQ(name, "Data Power Variance");
    EXPECT_THAT(texts(all), SizeIs(15));
    EXPECT_STREQ(all[0], "None");
    EXPECT_STREQ(all[14], "Two Parameter");
}

TEST(VCTreeGetFitterWeightStrings, BothOutputsMayBeNull) {
    CStringUTF8 name;
    EXPECT_EQ(VCTreeGetFitterWeightStrings(0, nullptr, nullptr, 0), 15);
    EXPECT_EQ(VCTreeGetFitterWeightStrings(14, &name, nullptr, 0), 15);
    EXPECT_STREQ(name, "Two Parameter");
}

TEST(VCTreeGetFitterWeightStrings, AnUnknownMethodClearsBothWhenItsNameIsAskedFor) {
    for (int method : {-1, 15, std::numeric_limits<int>::min()}) {
        CStringUTF8 name = "old";
        CWBOStringArray all = uxtest::string_list({"old"});
        EXPECT_EQ(VCTreeGetFitterWeightStrings(method, &name, &all, 0), -1);
        EXPECT_STREQ(name, "");
        EXPECT_THAT(texts(all), IsEmpty());
        EXPECT_EQ(VCTreeGetFitterWeightStrings(method, &name, nullptr, 0), -1);
    }
}

TEST(VCTreeGetFitterWeightStrings, WithoutANameAnyMethodWillDo) {
    CWBOStringArray all;
    EXPECT_EQ(VCTreeGetFitterWeightStrings(-1, nullptr, &all, 0), 15);
    EXPECT_THAT(texts(all), SizeIs(15));
}

TEST(VCTreeGetFitterWeightStrings, HandsTheOptionToTheHost) {
    FakeHostServices services;
    int asked = 0;
    int option = 0;
    services->messageText = [&](int number, int given, CStringUTF8& out) {
        asked = number;
        option = given;
        out = "a||b";
        return true;
    };
    CStringUTF8 name;
    CWBOStringArray all;
    EXPECT_EQ(VCTreeGetFitterWeightStrings(2, &name, &all, 9), 3);
    EXPECT_EQ(asked, 1935);
    EXPECT_EQ(option, 9);
    EXPECT_THAT(texts(all), ElementsAre("a", "", "b"));
}

TEST(VCTreeGetFitterWeightStrings, AHostWithoutNamesHasNone) {
    FakeHostServices services;
    services->messageText = [](int, int, CStringUTF8&) { return false; };
    CWBOStringArray all = uxtest::string_list({"old"});
    CStringUTF8 name;
    EXPECT_EQ(VCTreeGetFitterWeightStrings(0, nullptr, &all, 0), 0);
    EXPECT_THAT(texts(all), IsEmpty());
    EXPECT_EQ(VCTreeGetFitterWeightStrings(0, &name, &all, 0), -1);
}

// --- uxtree_fitter_get_weight_mth_info -----------------------------------------------------------

struct MethodRow {
    int method;
    std::array<int, 4> uses;  // data, A, B, C
    const char* name;
};
class WeightMethods : public testing::TestWithParam<MethodRow> {};
TEST_P(WeightMethods, UseTheirInputs) {
    const MethodRow& row = GetParam();
    CStringUTF8 name;
    std::array<int, 4> uses{-1, -1, -1, -1};
    EXPECT_EQ(uxtree_fitter_get_weight_mth_info(row.method, &name, &uses[0], &uses[1], &uses[2],
                                                &uses[3]),
              1);
    EXPECT_STREQ(name, row.name);
    EXPECT_EQ(uses, row.uses);
    const bool namesData = name.Find("Data") >= 0;
    EXPECT_EQ(namesData, row.uses[0] == 1);
}
INSTANTIATE_TEST_SUITE_P(uxtree_fitter_get_weight_mth_info, WeightMethods,
                         testing::Values(MethodRow{0, {0, 0, 0, 0}, "None"},
                                         MethodRow{1, {1, 0, 0, 0}, "Data Squared"},
                                         MethodRow{2, {0, 0, 0, 0}, "Statistical"},
                                         MethodRow{3, {1, 0, 0, 0}, "Data Inverse"},
                                         MethodRow{4, {1, 0, 0, 0}, "Data Direct"},
                                         MethodRow{5, {0, 0, 0, 0}, "Squared Y"},
                                         MethodRow{6, {0, 1, 1, 0}, "Linear Variance"},
                                         MethodRow{7, {0, 1, 1, 1}, "Power Variance"},
                                         MethodRow{8, {1, 1, 1, 1}, "Data Power Variance"},
                                         MethodRow{9, {0, 0, 0, 0}, "Fitted Statistical"},
                                         MethodRow{10, {0, 0, 0, 0}, "Fitted Squared"},
                                         MethodRow{11, {0, 1, 1, 0}, "Fitted Linear Variance"},
                                         MethodRow{12, {0, 1, 1, 1}, "Fitted Power Variance"},
                                         MethodRow{13, {1, 1, 1, 1}, "Fitted Data Power Variance"},
                                         MethodRow{14, {0, 1, 1, 0}, "Two Parameter"}));

TEST(uxtree_fitter_get_weight_mth_info, AnUnknownMethodHasNoNameAndUsesNothing) {
    for (int method : {15, -1, 1000}) {
        CStringUTF8 name = "old";
        std::array<int, 4> uses{7, 7, 7, 7};
        EXPECT_EQ(uxtree_fitter_get_weight_mth_info(method, &name, &uses[0], &uses[1], &uses[2],
                                                    &uses[3]),
                  0);
        EXPECT_STREQ(name, "");
        EXPECT_EQ(uses, (std::array<int, 4>{0, 0, 0, 0}));
    }
}

TEST(uxtree_fitter_get_weight_mth_info, EveryOutputMayBeNull) {
    EXPECT_EQ(uxtree_fitter_get_weight_mth_info(8, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(uxtree_fitter_get_weight_mth_info(15, nullptr, nullptr, nullptr, nullptr, nullptr),
              0);
}

TEST(uxtree_fitter_get_weight_mth_info, TheTableDecidesEvenWhenTheHostHasFewerNames) {
    FakeHostServices services;
    int option = 0;
    services->messageText = [&](int, int given, CStringUTF8& out) {
        option = given;
        out = "a|b";
        return true;
    };
    CStringUTF8 name = "old";
    EXPECT_EQ(uxtree_fitter_get_weight_mth_info(8, &name, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(option, 1);
}

// --- vctree_extract_weight_info ------------------------------------------------------------------

struct Extracted {
    int result;
    int method = -9;
    double a = -9;
    double b = -9;
    double c = -9;
    bool operator==(const Extracted&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Extracted& e) {
    return out << e.result << ": " << e.method << " " << e.a << " " << e.b << " " << e.c;
}

Extracted extract(const char* xml, const char* tag) {
    TestTree tree(xml);
    Extracted out{};
    out.result = vctree_extract_weight_info(tree, tag, &out.method, &out.a, &out.b, &out.c);
    return out;
}

TEST(vctree_extract_weight_info, ReadsACompactWeight) {
    const char* xml = "<Weight1 WeightMethod='7' Weight_A='1.5' Weight_B='-2' Weight_C='1e3'/>";
    EXPECT_EQ(extract(xml, nullptr), (Extracted{1, 7, 1.5, -2, 1000}));
    EXPECT_EQ(extract(xml, ""), (Extracted{1, 7, 1.5, -2, 1000}));
}

TEST(vctree_extract_weight_info, WhatIsMissingOrUnreadableIsZero) {
    EXPECT_EQ(extract("<W/>", nullptr), (Extracted{1, 0, 0, 0, 0}));
    EXPECT_EQ(extract("<W WeightMethod='x' Weight_A='y'/>", nullptr), (Extracted{1, 0, 0, 0, 0}));
}

TEST(vctree_extract_weight_info, OnlyATagThatBeginsWithWIsAWeight) {
    EXPECT_EQ(extract("<Whatever WeightMethod='3'/>", nullptr), (Extracted{1, 3, 0, 0, 0}));
    EXPECT_EQ(extract("<weight WeightMethod='3'/>", nullptr), Extracted{0});
    EXPECT_EQ(extract("<Range WeightMethod='3'/>", nullptr), Extracted{0});
}

TEST(vctree_extract_weight_info, AGivenTagTakesTheTagsPlace) {
    EXPECT_EQ(extract("<Range WeightMethod='3'/>", "W"), (Extracted{1, 3, 0, 0, 0}));
    EXPECT_EQ(extract("<Weight WeightMethod='3'/>", "Range"), Extracted{0});
}

TEST(vctree_extract_weight_info, EveryOutputMayBeNull) {
    TestTree tree("<W/>");
    EXPECT_EQ(vctree_extract_weight_info(tree, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
}

// --- vctree_update_fitter_data_weight_node -------------------------------------------------------

// The tags of the inputs that are not hidden.
std::vector<std::string> shown_inputs(const UXXmlWrapperBase& weight) {
    std::vector<std::string> out;
    UXXmlWrapperBase child;
    for (weight.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
        int show = 1;
        CStringUTF8 tag;
        child.GetTagName(tag);
        child.GetShow(show);
        if (show != 0 && tag != "WeightMethod") out.emplace_back(static_cast<const char*>(tag));
    }
    return out;
}

TEST(vctree_update_fitter_data_weight_node, BuildsTheWholeBranch) {
    TestTree weight("<w Combo='A|B' _ACTION_OBJECT_ID='44'/>");
    DWORD change = 99;
    double a = 0.1;
    double b = -2;
    double c = 1e300;

    EXPECT_EQ(vctree_update_fitter_data_weight_node(weight, 6, change, "Col(3)", &a, &b, &c, 0, 1),
              1);

    EXPECT_EQ(weight.text(),
              tree_text("<w _ACTION_OBJECT_ID='44' DisableWeightMethod='1' BranchComboDisable='1'>"
                        "<WeightMethod _ux_id='11'>6</WeightMethod>"
                        "<WeightData Label='Weight Data' Combo='A|B' _ACTION_OBJECT_ID='44' "
                        "Show='0' _ux_id='13'>Col(3)</WeightData>"
                        "<WeightA Label='a' _ux_id='14'>0.1</WeightA>"
                        "<WeightB Label='b' _ux_id='14'>-2</WeightB>"
                        "<WeightC Label='c' Show='0' _ux_id='14'>1e+300</WeightC></w>"));
    EXPECT_EQ(change, 1U);  // four new inputs counted as shown, two are now
}

TEST(vctree_update_fitter_data_weight_node, MethodEightShowsAllAndMethodZeroNone) {
    TestTree weight("<w/>");
    DWORD change = 0;
    vctree_update_fitter_data_weight_node(weight, 8, change, nullptr, nullptr, nullptr, nullptr, 0,
                                          0);
    EXPECT_THAT(shown_inputs(weight), ElementsAre("WeightData", "WeightA", "WeightB", "WeightC"));
    vctree_update_fitter_data_weight_node(weight, 0, change, nullptr, nullptr, nullptr, nullptr, 0,
                                          0);
    EXPECT_THAT(shown_inputs(weight), IsEmpty());
}

TEST(vctree_update_fitter_data_weight_node, ChangeTellsWhetherMoreOrFewerAreShown) {
    TestTree weight("<w/>");
    const auto update = [&](int method) {
        DWORD change = 99;
        vctree_update_fitter_data_weight_node(weight, method, change, nullptr, nullptr, nullptr,
                                              nullptr, 0, 0);
        return change;
    };
    EXPECT_EQ(update(8), 0U);  // new inputs count as shown
    EXPECT_EQ(update(8), 0U);
    EXPECT_EQ(update(1), 1U);
    EXPECT_EQ(update(3), 0U);
    EXPECT_EQ(update(6), 2U);
    EXPECT_EQ(update(0), 1U);
    EXPECT_EQ(update(0), 0U);
    EXPECT_EQ(update(7), 2U);
}

TEST(vctree_update_fitter_data_weight_node, AnInputWithAnyReadableShowCountsAsHidden) {
    TestTree weight("<w><WeightData Show='1'/><WeightA/><WeightB/><WeightC Show='x'/></w>");
    DWORD change = 99;
    vctree_update_fitter_data_weight_node(weight, 8, change, nullptr, nullptr, nullptr, nullptr, 0,
                                          0);
    EXPECT_EQ(change, 2U);  // three before, four now
}

TEST(vctree_update_fitter_data_weight_node, NullValuesAreKeptAndAnEmptyTextClears) {
    const char* xml =
        "<w><WeightMethod>8</WeightMethod><WeightData>d</WeightData><WeightA>1</WeightA>"
        "<WeightB>2</WeightB><WeightC>3</WeightC></w>";
    TestTree weight(xml);
    DWORD change = 0;
    double b = 7;
    vctree_update_fitter_data_weight_node(weight, 8, change, nullptr, nullptr, &b, nullptr, 0, 0);
    EXPECT_EQ(to_text(weight.at("WeightData")),
              tree_text("<WeightData Label='Weight Data'>d</WeightData>"));
    EXPECT_EQ(to_text(weight.at("WeightA")), tree_text("<WeightA Label='a'>1</WeightA>"));
    EXPECT_EQ(to_text(weight.at("WeightB")), tree_text("<WeightB Label='b'>7</WeightB>"));
    vctree_update_fitter_data_weight_node(weight, 8, change, "", nullptr, nullptr, nullptr, 0, 0);
    EXPECT_EQ(to_text(weight.at("WeightData")), tree_text("<WeightData Label='Weight Data'/>"));
}

TEST(vctree_update_fitter_data_weight_node, HiddenInputsAreWrittenToo) {
    TestTree weight("<w/>");
    DWORD change = 0;
    double a = 5;
    vctree_update_fitter_data_weight_node(weight, 0, change, "d", &a, nullptr, nullptr, 0, 0);
    EXPECT_EQ(to_text(weight.at("WeightA")),
              tree_text("<WeightA Label='a' Show='0' _ux_id='14'>5</WeightA>"));
}

TEST(vctree_update_fitter_data_weight_node, WithoutACombinationTheDataKeepsItsOwn) {
    TestTree weight("<w><WeightData Combo='own' Label='old' _ACTION_OBJECT_ID='5'/></w>");
    DWORD change = 0;
    vctree_update_fitter_data_weight_node(weight, 8, change, nullptr, nullptr, nullptr, nullptr, 0,
                                          0);
    EXPECT_EQ(to_text(weight.at("WeightData")),
              tree_text("<WeightData Combo='own' Label='Weight Data' _ACTION_OBJECT_ID='5'/>"));
}

TEST(vctree_update_fitter_data_weight_node, TheSameMethodIsLeftAloneWhenOnlyChangesCount) {
    TestTree weight("<w Combo='c'><WeightMethod>3</WeightMethod></w>");
    DWORD change = 99;
    EXPECT_EQ(vctree_update_fitter_data_weight_node(weight, 3, change, "d", nullptr, nullptr,
                                                    nullptr, 1, 2),
              0);
    EXPECT_EQ(weight.text(),
              tree_text("<w Combo='c' DisableWeightMethod='2' BranchComboDisable='2'>"
                        "<WeightMethod>3</WeightMethod></w>"));
    EXPECT_EQ(change, 99U);
    EXPECT_EQ(vctree_update_fitter_data_weight_node(weight, 4, change, "d", nullptr, nullptr,
                                                    nullptr, 1, 2),
              1);
}

TEST(vctree_update_fitter_data_weight_node, AMethodWithoutReadableValueAlwaysChanges) {
    for (const char* xml : {"<w/>", "<w><WeightMethod>x</WeightMethod></w>"}) {
        TestTree weight(xml);
        DWORD change = 0;
        EXPECT_EQ(vctree_update_fitter_data_weight_node(weight, 0, change, nullptr, nullptr,
                                                        nullptr, nullptr, 1, 0),
                  1);
    }
}

TEST(vctree_update_fitter_data_weight_node, AnUnknownMethodStillLocksTheBranch) {
    for (int method : {15, -1}) {
        TestTree weight("<w Combo='c'><WeightMethod>3</WeightMethod></w>");
        DWORD change = 99;
        EXPECT_EQ(vctree_update_fitter_data_weight_node(weight, method, change, "d", nullptr,
                                                        nullptr, nullptr, 0, 1),
                  0);
        EXPECT_EQ(weight.text(),
                  tree_text("<w Combo='c' DisableWeightMethod='1' BranchComboDisable='1'>"
                            "<WeightMethod>3</WeightMethod></w>"));
        EXPECT_EQ(change, 99U);
    }
}

// --- vctree_fitter_data_weight_node_compact_to_expanded ------------------------------------------

TEST(vctree_fitter_data_weight_node_compact_to_expanded, ExpandsEverything) {
    TestTree compact(
        "<W WeightMethod='8' Weight_A='1' Weight_B='2.5' Weight_C='-3' Combo='x|y' "
        "DisableWeightMethod='1'>Col(A)</W>");
    TestTree expanded("<e/>");
    const std::string before = compact.text();

    EXPECT_EQ(vctree_fitter_data_weight_node_compact_to_expanded(expanded, compact), 1);

    EXPECT_EQ(
        expanded.text(),
        tree_text("<e Label='Weight' DisableWeightMethod='1' BranchComboDisable='1'>"
                  "<WeightMethod _ux_id='11'>8</WeightMethod>"
                  "<WeightData Label='Weight Data' Combo='x|y' _ux_id='13'>Col(A)</WeightData>"
                  "<WeightA Label='a' _ux_id='14'>1</WeightA>"
                  "<WeightB Label='b' _ux_id='14'>2.5</WeightB>"
                  "<WeightC Label='c' _ux_id='14'>-3</WeightC></e>"));
    EXPECT_EQ(compact.text(), before);
}

TEST(vctree_fitter_data_weight_node_compact_to_expanded, WhatIsMissingIsZeroOrEmpty) {
    TestTree compact("<W/>");
    TestTree expanded("<e><WeightData>old</WeightData></e>");
    EXPECT_EQ(vctree_fitter_data_weight_node_compact_to_expanded(expanded, compact), 1);
    EXPECT_EQ(expanded.text(),
              tree_text("<e Label='Weight' DisableWeightMethod='0' BranchComboDisable='0'>"
                        "<WeightData Label='Weight Data' Show='0'/>"
                        "<WeightMethod _ux_id='11'>0</WeightMethod>"
                        "<WeightA Label='a' Show='0' _ux_id='14'>0</WeightA>"
                        "<WeightB Label='b' Show='0' _ux_id='14'>0</WeightB>"
                        "<WeightC Label='c' Show='0' _ux_id='14'>0</WeightC></e>"));
}

TEST(vctree_fitter_data_weight_node_compact_to_expanded, YieldsOneAlsoForAnUnknownMethod) {
    TestTree compact("<W WeightMethod='15' Combo='c'/>");
    TestTree expanded("<e/>");
    EXPECT_EQ(vctree_fitter_data_weight_node_compact_to_expanded(expanded, compact), 1);
    EXPECT_EQ(
        expanded.text(),
        tree_text("<e Label='Weight' Combo='c' DisableWeightMethod='0' BranchComboDisable='0'>"
                  "<WeightMethod _ux_id='11'/></e>"));
}

// --- vctree_fitter_data_weight_node_expanded_to_compact ------------------------------------------

constexpr char kExpanded[] =
    "<e><WeightMethod>8</WeightMethod><WeightData>Col(A)</WeightData><WeightA>1</WeightA>"
    "<WeightB>2.5</WeightB><WeightC>-3</WeightC></e>";

TEST(vctree_fitter_data_weight_node_expanded_to_compact, ComesBackAsItWas) {
    TestTree compact("<W WeightMethod='8' Weight_A='0.1' Weight_B='2.5' Weight_C='-3'>Col(A)</W>");
    TestTree expanded("<e/>");
    TestTree back("<W/>");
    vctree_fitter_data_weight_node_compact_to_expanded(expanded, compact);
    EXPECT_EQ(vctree_fitter_data_weight_node_expanded_to_compact(back, expanded), 1);
    EXPECT_EQ(back.text(), compact.text());
}

TEST(vctree_fitter_data_weight_node_expanded_to_compact, CopiesOnlyWhatCanBeRead) {
    TestTree expanded(
        "<e><WeightMethod>x</WeightMethod><WeightData/><WeightA>1</WeightA>"
        "<WeightB>?</WeightB><WeightC/></e>");
    TestTree compact("<W WeightMethod='2' Weight_B='9'>old</W>");
    EXPECT_EQ(vctree_fitter_data_weight_node_expanded_to_compact(compact, expanded), 1);
    EXPECT_EQ(compact.text(), tree_text("<W WeightMethod='2' Weight_B='9' Weight_A='1'>old</W>"));
}

TEST(vctree_fitter_data_weight_node_expanded_to_compact, AMissingChildWritesNothing) {
    for (const char* missing : {"WeightMethod", "WeightData", "WeightA", "WeightB", "WeightC"}) {
        TestTree expanded(kExpanded);
        TestTree compact("<W/>");
        UXXmlWrapperBase child = expanded.at(missing);
        child.RemoveNode();
        EXPECT_EQ(vctree_fitter_data_weight_node_expanded_to_compact(compact, expanded), 0)
            << missing;
        EXPECT_EQ(compact.text(), tree_text("<W/>"));
    }
}

}  // namespace
