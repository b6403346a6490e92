// Settings of statistics: box chart, bins, numbers and lists.
#include "uxtree/analysis/stats.h"

#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "analysis/stats_support.h"
#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using uxtest::bits;
using uxtest::child;
using uxtest::kMissingBits;
using uxtest::numbers;
using uxtest::TestTree;
using uxtest::to_text;
using uxtest::tree_text;

// --- box chart -----------------------------------------------------------------------------------

TEST(vctree_stats_get_boxchart_box_node, FindsOrAppends) {
    TestTree tree("<r><BoxChart k='1'/></r>");
    UXXmlWrapperBase out;
    EXPECT_EQ(vctree_stats_get_boxchart_box_node(tree, out), 1);
    EXPECT_TRUE(out == tree.at("BoxChart/Box"));
    EXPECT_EQ(vctree_stats_get_boxchart_box_node(tree, out), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><BoxChart k='1'><Box/></BoxChart></r>"));
    EXPECT_TRUE(out == tree.at("BoxChart/Box"));
}

TEST(vctree_stats_get_boxchart_whisker_node, FindsOrAppends) {
    TestTree tree("<r/>");
    UXXmlWrapperBase node = tree;
    EXPECT_EQ(vctree_stats_get_boxchart_whisker_node(node, node), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><BoxChart><Whisker/></BoxChart></r>"));
    EXPECT_TRUE(node == tree.at("BoxChart/Whisker"));
}

void expect_part_found(int (*find)(UXXmlWrapperBase*, UXXmlWrapperBase*)) {
    TestTree tree("<r/>");
    UXXmlWrapperBase out;
    EXPECT_EQ(find(&tree, &out), 1);
    EXPECT_EQ(find(nullptr, &out), 0);
    EXPECT_EQ(find(&tree, nullptr), 0);
}
TEST(uxtree_stats_get_boxchart_box_node, GivesTheNativeAnswer) {
    expect_part_found(uxtree_stats_get_boxchart_box_node);
}
TEST(uxtree_stats_get_boxchart_whisker_node, GivesTheNativeAnswer) {
    expect_part_found(uxtree_stats_get_boxchart_whisker_node);
}

TEST(vctree_stats_get_set_box_info, StoresInAnotherOrderThanItIsPassed) {
    TestTree tree("<r/>");
    double top = 1;
    double topX = 2;
    double bottom = 3;
    double bottomX = 4;
    double center = 5;
    vctree_stats_get_set_box_info(tree, top, topX, bottom, bottomX, center, 0);
    EXPECT_EQ(tree.text(),
              tree_text("<r><BoxChart><Box><Center>5</Center><Top>1</Top><TopX>2</TopX>"
                        "<Bottom>3</Bottom><BottomX>4</BottomX></Box></BoxChart></r>"));
    top = topX = bottom = bottomX = center = 0;
    vctree_stats_get_set_box_info(tree, top, topX, bottom, bottomX, center, 1);
    EXPECT_THAT((std::vector<double>{top, topX, bottom, bottomX, center}),
                ElementsAre(1, 2, 3, 4, 5));
}

TEST(vctree_stats_get_set_box_info, ReadingCreatesTheBoxButNotItsValues) {
    TestTree tree("<r/>");
    double value = 7;
    vctree_stats_get_set_box_info(tree, value, value, value, value, value, 1);
    EXPECT_EQ(tree.text(), tree_text("<r><BoxChart><Box/></BoxChart></r>"));
    EXPECT_EQ(value, 7);
}

TEST(uxtree_stats_get_set_box_info, GivesTheNativeAnswer) {
    TestTree tree("<r/>");
    double v = 1;
    uxtree_stats_get_set_box_info(&tree, &v, &v, &v, &v, &v, 0);
    EXPECT_EQ(tree.at("BoxChart/Box").GetNodeCount(), 5);
}

TEST(vctree_stats_get_set_whisker_info, GoesBothWays) {
    TestTree tree("<r/>");
    double top = 1;
    double bottom = 2;
    vctree_stats_get_set_whisker_info(tree, top, bottom, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><BoxChart><Whisker><Top>1</Top>"
                                     "<Bottom>2</Bottom></Whisker></BoxChart></r>"));
    top = bottom = 0;
    vctree_stats_get_set_whisker_info(tree, top, bottom, 1);
    EXPECT_EQ(top, 1);
    EXPECT_EQ(bottom, 2);
}

TEST(uxtree_stats_get_set_whisker_info, GivesTheNativeAnswer) {
    TestTree tree("<r/>");
    double v = 1;
    uxtree_stats_get_set_whisker_info(&tree, &v, &v, 0);
    EXPECT_EQ(tree.at("BoxChart/Whisker").GetNodeCount(), 2);
}

// --- bins ----------------------------------------------------------------------------------------

TEST(vctree_stats_get_set_bin_info, GoesBothWaysBySize) {
    TestTree tree("<r/>");
    double min = -1.5;
    double max = 2;
    double size = 0.1;
    int space = 4;
    vctree_stats_get_set_bin_info(tree, min, max, size, space, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><Bin><Min>-1.5</Min><Max>2</Max><Size>0.1</Size>"
                                     "<Space>4</Space></Bin></r>"));
    min = max = size = 0;
    space = 0;
    vctree_stats_get_set_bin_info(tree, min, max, size, space, 1);
    EXPECT_THAT((std::vector<double>{min, max, size}), ElementsAre(-1.5, 2, 0.1));
    EXPECT_EQ(space, 4);
}

TEST(vctree_stats_get_set_bin_info, GoesBothWaysByIntervals) {
    TestTree tree("<r/>");
    double min = 0;
    double max = 10;
    int intervals = 5;
    int space = 1;
    vctree_stats_get_set_bin_info(tree, min, max, intervals, space, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><Bin><Min>0</Min><Max>10</Max><Intervals>5</Intervals>"
                                     "<Space>1</Space></Bin></r>"));
    intervals = 0;
    vctree_stats_get_set_bin_info(tree, min, max, intervals, space, 1);
    EXPECT_EQ(intervals, 5);
}

TEST(vctree_stats_get_set_bin_info, OnlyTheSpaceBecomesZeroWhenUnreadable) {
    for (const char* xml : {"<r/>", "<r><Bin/></r>",
                            "<r><Bin><Min>x</Min><Size>y</Size><Space>z</Space></Bin></r>"}) {
        TestTree tree(xml);
        const std::string before = tree.text();
        double min = 1;
        double max = 2;
        double size = 3;
        int space = 4;
        vctree_stats_get_set_bin_info(tree, min, max, size, space, 1);
        EXPECT_THAT((std::vector<double>{min, max, size}), ElementsAre(1, 2, 3));
        EXPECT_EQ(space, 0);
        EXPECT_EQ(tree.text(), before);
    }
}

TEST(uxtree_stats_get_set_bin_info, ANullSpaceWritesZero) {
    TestTree tree("<r><Bin><Space>9</Space></Bin></r>");
    double v = 1;
    uxtree_stats_get_set_bin_info(&tree, &v, &v, &v, nullptr, 1);
    EXPECT_EQ(tree.text(), tree_text("<r><Bin><Space>9</Space></Bin></r>"));
    uxtree_stats_get_set_bin_info(&tree, &v, &v, &v, nullptr, 0);
    EXPECT_EQ(
        tree.text(),
        tree_text("<r><Bin><Space>0</Space><Min>1</Min><Max>1</Max><Size>1</Size></Bin></r>"));
}

TEST(uxtree_stats_get_set_bin_intervals, CallsTheIntervalForm) {
    TestTree tree("<r/>");
    double v = 1;
    int intervals = 6;
    int space = 2;
    uxtree_stats_get_set_bin_intervals(&tree, &v, &v, &intervals, &space, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><Bin><Min>1</Min><Max>1</Max><Intervals>6</Intervals>"
                                     "<Space>2</Space></Bin></r>"));
    uxtree_stats_get_set_bin_intervals(&tree, &v, &v, &intervals, nullptr, 0);
    EXPECT_EQ(to_text(tree.at("Bin/Space")), tree_text("<Space>0</Space>"));
}

TEST(vctree_stats_is_bin_auto, IsOnUnlessTheTreeSaysOtherwise) {
    const auto ask = [](const char* xml) {
        TestTree tree(xml);
        const std::string before = tree.text();
        const int result = vctree_stats_is_bin_auto(tree);
        EXPECT_EQ(tree.text(), before);
        return result;
    };
    EXPECT_EQ(ask("<r/>"), 1);
    EXPECT_EQ(ask("<r><Bin/></r>"), 1);
    EXPECT_EQ(ask("<r><Bin><Auto>x</Auto></Bin></r>"), 1);
    EXPECT_EQ(ask("<r><Bin><Auto>0</Auto></Bin></r>"), 0);
    EXPECT_EQ(ask("<r><Bin><Auto>5</Auto></Bin></r>"), 5);
}

TEST(uxtree_stats_is_bin_auto, GivesTheNativeAnswer) {
    TestTree tree("<r/>");
    EXPECT_EQ(uxtree_stats_is_bin_auto(&tree), 1);
}

TEST(vctree_stats_is_by_intervals, IsOffUnlessTheTreeSaysOtherwise) {
    const auto ask = [](const char* xml) {
        TestTree tree(xml);
        return vctree_stats_is_by_intervals(tree);
    };
    EXPECT_EQ(ask("<r/>"), 0);
    EXPECT_EQ(ask("<r><Bin><StepBy>x</StepBy></Bin></r>"), 0);
    EXPECT_EQ(ask("<r><Bin><StepBy>1</StepBy></Bin></r>"), 1);
}

TEST(uxtree_stats_is_by_intervals, GivesTheNativeAnswer) {
    TestTree tree("<r><Bin><StepBy>1</StepBy></Bin></r>");
    EXPECT_EQ(uxtree_stats_is_by_intervals(&tree), 1);
}

// An empty tree after a setting was written, and tried on a node that is none.
std::string after_native(void (*set)(UXXmlWrapperBase&, int), int value) {
    TestTree tree("<r/>");
    UXXmlWrapperBase invalid;
    set(tree, value);
    set(invalid, value + 1);
    return tree.text();
}
std::string after_script(void (*set)(UXXmlWrapperBase*, int), int value) {
    TestTree tree("<r/>");
    set(&tree, value);
    set(nullptr, value);
    return tree.text();
}

TEST(vctree_stats_set_bin_auto, WritesTheValue) {
    EXPECT_EQ(after_native(vctree_stats_set_bin_auto, 0), "<r><Bin><Auto>0</Auto></Bin></r>");
}
TEST(uxtree_stats_set_bin_auto, GivesTheNativeAnswer) {
    EXPECT_EQ(after_script(uxtree_stats_set_bin_auto, 3), "<r><Bin><Auto>3</Auto></Bin></r>");
}
TEST(vctree_stats_set_by_intervals, WritesTheValue) {
    EXPECT_EQ(after_native(vctree_stats_set_by_intervals, 1),
              "<r><Bin><StepBy>1</StepBy></Bin></r>");
}
TEST(uxtree_stats_set_by_intervals, GivesTheNativeAnswer) {
    EXPECT_EQ(after_script(uxtree_stats_set_by_intervals, 1),
              "<r><Bin><StepBy>1</StepBy></Bin></r>");
}

// --- single numbers ------------------------------------------------------------------------------

struct IntSetting {
    int (*transfer)(UXXmlWrapperBase&, int&, int);
    int (*script)(UXXmlWrapperBase*, int*, int);
    const char* written;  // with the value 3
    const char* unreadable;
};
class IntSettings : public testing::TestWithParam<IntSetting> {};

TEST_P(IntSettings, GoBothWays) {
    TestTree tree("<r/>");
    int value = 3;
    EXPECT_EQ(GetParam().transfer(tree, value, 0), 1);
    EXPECT_EQ(tree.text(), GetParam().written);
    value = 0;
    EXPECT_EQ(GetParam().transfer(tree, value, 1), 1);
    EXPECT_EQ(value, 3);
    value = 0;
    EXPECT_EQ(GetParam().transfer(tree, value, -5), 1);
    EXPECT_EQ(value, 3);
}
TEST_P(IntSettings, KeepTheVariableWhenTheyCannotBeRead) {
    for (const char* xml : {"<r/>", GetParam().unreadable}) {
        TestTree tree(xml);
        const std::string before = tree.text();
        int value = 7;
        EXPECT_EQ(GetParam().transfer(tree, value, 1), 0);
        EXPECT_EQ(value, 7);
        EXPECT_EQ(tree.text(), before);
    }
}
TEST_P(IntSettings, HaveAScriptForm) {
    TestTree tree("<r/>");
    int value = 3;
    EXPECT_EQ(GetParam().script(nullptr, &value, 0), 0);
    EXPECT_EQ(GetParam().script(&tree, nullptr, 0), 0);
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
    EXPECT_EQ(GetParam().script(&tree, &value, 0), 1);
    EXPECT_EQ(tree.text(), GetParam().written);
}
INSTANTIATE_TEST_SUITE_P(vctree_stats_get_set_interpolate, IntSettings,
                         testing::Values(IntSetting{
                             vctree_stats_get_set_interpolate, uxtree_stats_get_set_interpolate,
                             "<r><Computation><Interpolate>3</Interpolate></Computation></r>",
                             "<r><Computation><Interpolate>x</Interpolate></Computation></r>"}));
INSTANTIATE_TEST_SUITE_P(vctree_stats_get_set_var_divisor, IntSettings,
                         testing::Values(IntSetting{
                             vctree_stats_get_set_var_divisor, uxtree_stats_get_set_var_divisor,
                             "<r><Computation><VarDivisor>3</VarDivisor></Computation></r>",
                             "<r><Computation><VarDivisor/></Computation></r>"}));
INSTANTIATE_TEST_SUITE_P(vctree_stats_get_set_trials_num, IntSettings,
                         testing::Values(IntSetting{vctree_stats_get_set_trials_num,
                                                    uxtree_stats_get_set_trials_num,
                                                    "<r><BinoTrialsNum>3</BinoTrialsNum></r>",
                                                    "<r><BinoTrialsNum>3 4</BinoTrialsNum></r>"}));

TEST(vctree_stats_get_set_output_distribution, GoesBothWays) {
    TestTree tree("<r/>");
    int value = 2;
    vctree_stats_get_set_output_distribution(tree, value, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><Distribution>2</Distribution></r>"));
    value = 0;
    vctree_stats_get_set_output_distribution(tree, value, 1);
    EXPECT_EQ(value, 2);
}

TEST(uxtree_stats_get_set_output_distribution, GivesTheNativeAnswer) {
    TestTree tree("<r/>");
    int value = 2;
    uxtree_stats_get_set_output_distribution(&tree, &value, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><Distribution>2</Distribution></r>"));
}

TEST(vctree_stats_get_set_sum, GoesBothWays) {
    TestTree tree("<r/>");
    double value = 0.1;
    vctree_stats_get_set_sum(tree, value, 1);
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
    EXPECT_EQ(value, 0.1);
    vctree_stats_get_set_sum(tree, value, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><Sum>0.1</Sum></r>"));
    value = 0;
    vctree_stats_get_set_sum(tree, value, 1);
    EXPECT_EQ(value, 0.1);
}

TEST(vctree_stats_get_set_conf_interval_probability, GoesBothWays) {
    TestTree tree("<r/>");
    double prob0 = 0.9;
    double prob1 = 0.95;
    vctree_stats_get_set_conf_interval_probability(tree, prob0, prob1, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><Prob0>0.9</Prob0><Prob1>0.95</Prob1></r>"));
    prob0 = prob1 = 0;
    vctree_stats_get_set_conf_interval_probability(tree, prob0, prob1, 1);
    EXPECT_EQ(prob0, 0.9);
    EXPECT_EQ(prob1, 0.95);
}

TEST(vctree_stats_get_set_sum, EveryDoubleComesBackBitForBit) {
    for (double value : {0.1, -0.0, 1e-310, 1.7976931348623157e308, 1.0 / 3}) {
        TestTree tree("<r/>");
        double back = 7;
        double out = value;
        vctree_stats_get_set_sum(tree, out, 0);
        vctree_stats_get_set_sum(tree, back, 1);
        EXPECT_EQ(bits(back), bits(value)) << tree.text();
    }
}

TEST(vctree_stats_get_set_sum, WhatIsNotFiniteIsStoredAsTheMissingValue) {
    TestTree tree("<r/>");
    double value = std::numeric_limits<double>::quiet_NaN();
    vctree_stats_get_set_sum(tree, value, 0);
    vctree_stats_get_set_sum(tree, value, 1);
    EXPECT_EQ(bits(value), kMissingBits);
}

// --- lists ---------------------------------------------------------------------------------------

struct ListSetting {
    const char* tag;
    void (*transfer)(UXXmlWrapperBase&, CArray<double, double>&, int);
};
class ListSettings : public testing::TestWithParam<ListSetting> {};

TEST_P(ListSettings, GoBothWays) {
    TestTree tree("<r/>");
    CArray<double, double> values = uxtest::number_list<double>({1, 2.5, -3});
    GetParam().transfer(tree, values, 0);
    EXPECT_EQ(tree.text(), "<r>" + child(GetParam().tag, "1 2.5 -3") + "</r>");
    CArray<double, double> back;
    GetParam().transfer(tree, back, 1);
    EXPECT_THAT(numbers(back), ElementsAre(1, 2.5, -3));
}
TEST_P(ListSettings, AreCreatedByReadingToo) {
    TestTree tree("<r/>");
    CArray<double, double> values = uxtest::number_list<double>({1});
    GetParam().transfer(tree, values, 1);
    EXPECT_EQ(tree.text(), "<r>" + child(GetParam().tag, "") + "</r>");
    EXPECT_THAT(numbers(values), ElementsAre(1));
}
INSTANTIATE_TEST_SUITE_P(vctree_stats_get_set_counts, ListSettings,
                         testing::Values(ListSetting{"Counts", vctree_stats_get_set_counts}));
INSTANTIATE_TEST_SUITE_P(vctree_stats_get_set_percentiles, ListSettings,
                         testing::Values(ListSetting{"Percentiles",
                                                     vctree_stats_get_set_percentiles}));
INSTANTIATE_TEST_SUITE_P(vctree_stats_get_set_custom_quantiles, ListSettings,
                         testing::Values(ListSetting{"CustomPercentiles",
                                                     vctree_stats_get_set_custom_quantiles}));

TEST(uxtree_stats_get_set_counts, GivesTheNativeAnswer) {
    TestTree tree("<r/>");
    auto values = uxtest::script_doubles({1, 2});
    uxtree_stats_get_set_counts(&tree, &values, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><Counts>1 2</Counts></r>"));
}
TEST(uxtree_stats_get_set_percentiles, GivesTheNativeAnswer) {
    TestTree tree("<r><Percentiles>5 95</Percentiles></r>");
    auto values = uxtest::script_doubles({});
    uxtree_stats_get_set_percentiles(&tree, &values, 1);
    EXPECT_THAT(numbers(values.array()), ElementsAre(5, 95));
}

TEST(vctree_stats_get_set_output_distr_curve_type, GoesBothWaysWithoutCreatingOnReading) {
    TestTree tree("<r/>");
    CArray<int, int> values = uxtest::number_list<int>({4, 5});
    vctree_stats_get_set_output_distr_curve_type(tree, values, 1);
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
    EXPECT_THAT(numbers(values), ElementsAre(4, 5));
    vctree_stats_get_set_output_distr_curve_type(tree, values, 0);
    EXPECT_EQ(tree.text(), tree_text("<r><DistrCurveTypes>4 5</DistrCurveTypes></r>"));
    values.RemoveAll();
    vctree_stats_get_set_output_distr_curve_type(tree, values, 1);
    EXPECT_THAT(numbers(values), ElementsAre(4, 5));
}

TEST(vctree_stats_result_get_set_counts, ReadsWithoutCreating) {
    TestTree tree("<r/>");
    CArray<double, double> values = uxtest::number_list<double>({1.5});
    EXPECT_EQ(vctree_stats_result_get_set_counts(tree, values, 1), 0);
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
    EXPECT_EQ(vctree_stats_result_get_set_counts(tree, values, 0), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><Counts>1.5</Counts></r>"));
    values.RemoveAll();
    EXPECT_EQ(vctree_stats_result_get_set_counts(tree, values, 1), 1);
    EXPECT_THAT(numbers(values), ElementsAre(1.5));
}

TEST(vctree_stats_result_get_set_counts, AnUnreadableListGivesZero) {
    TestTree tree("<r><Counts>1 x</Counts></r>");
    CArray<double, double> values = uxtest::number_list<double>({9});
    EXPECT_EQ(vctree_stats_result_get_set_counts(tree, values, 1), 0);
    EXPECT_THAT(numbers(values), ElementsAre(9));
}

TEST(uxtree_stats_result_get_set_counts, GivesTheNativeAnswer) {
    TestTree tree("<r><Counts>1</Counts></r>");
    auto values = uxtest::script_doubles({});
    EXPECT_EQ(uxtree_stats_result_get_set_counts(&tree, &values, 1), 1);
    EXPECT_THAT(numbers(values.array()), ElementsAre(1));
}

TEST(vctree_stats_result_get_set_panel_name, GoesBothWays) {
    TestTree tree("<r/>");
    CStringUTF8 name = "kept";
    EXPECT_EQ(vctree_stats_result_get_set_panel_name(tree, name, 1), 0);
    EXPECT_STREQ(name, "kept");
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
    name = "Panel <1>";
    EXPECT_EQ(vctree_stats_result_get_set_panel_name(tree, name, 0), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><PanelName>Panel &lt;1&gt;</PanelName></r>"));
    name.Empty();
    EXPECT_EQ(vctree_stats_result_get_set_panel_name(tree, name, 1), 1);
    EXPECT_STREQ(name, "Panel <1>");
}

}  // namespace
