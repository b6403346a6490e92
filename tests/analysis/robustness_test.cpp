// Odd trees through every entry point of the room: nothing crashes, reading creates nothing it
// should not, and what was written comes back.
#include <functional>

#include <gtest/gtest.h>

#include "uxtree/uxtree_Utils.h"

#include "support/random_tree.h"
#include "support/test_tree.h"

namespace {

using uxtest::RandomTree;
using uxtest::to_text;

const uxtest::Vocabulary kVocabulary{
    {"S",
     "X",
     "Y",
     "Z",
     "ED",
     "Range1",
     "Range2",
     "W",
     "WeightMethod",
     "WeightData",
     "WeightA",
     "WeightB",
     "WeightC",
     "io",
     "Result",
     "Result_1_2",
     "result_x_",
     "Results",
     "Details",
     "Counts",
     "Bin",
     "Min",
     "Auto",
     "N",
     "Mean",
     "BoxChart",
     "Box",
     "UseInitialFormula",
     "Share"},
    {"Label", "RepeatID", "DataID", "Auto", "DynaFx", "_EntireWorksheet", "_ACTION_OBJECT_ID",
     "WeightMethod", "Weight_A", "Weight_B", "Combo", "Show", "Use", "InteractiveOptions", "Branch",
     "DispFormat", "PlotObjUID"},
    {"",    "0",     "1",       "-1",         "2",           "8",          "14",          "15",
     "128", "32767", "5000",    "2147483647", "-2147483648", "4294967295", "99999999999", "1.5",
     "-0",  "1e400", "x",       "1|Fit|3",    "0|a|b|c",     "|",          "\"|",         "1 2 3",
     "1 x", "%s%n",  "\xC3\xA4"},
    {-1, 0, 10, 13, 35, 0x10000000}};

const char* text_or_null(RandomTree& random) {
    return random.number(0, 5) == 0 ? nullptr : random.value().c_str();
}

using Call = std::function<void(RandomTree&)>;

void auto_support(RandomTree& random) {
    UXXmlWrapperBase node = random.any_node();
    CStringUTF8 name;
    int count = 0;
    int mode = 0;
    vctree_parse_auto_support_string(text_or_null(random), mode, name, count);
    vctree_create_auto_support_string(name, mode, text_or_null(random), count);
    vctree_get_auto_support(node, name, count);
    const int written = vctree_set_auto_support(node, random.number(-2, 2), text_or_null(random),
                                                random.number(-1, 3));
    EXPECT_TRUE(written == 0 || vctree_get_auto_support(node, name, count) != 0) << to_text(node);
    vctree_check_reset_auto_support(node);
}

void walk_ranges(RandomTree& random) {
    UXXmlWrapperBase tree = random.any_node();
    const std::string before = to_text(tree);
    VCRangeTreeIterator ranges(tree);
    UXXmlWrapperBase first;
    int steps = tree.GetNodeCount() + 1;
    while (--steps >= 0) {
        if (ranges.Get(first) == 0) continue;
        EXPECT_TRUE(first.IsNodeValid());
        VCSubRangeTreeIterator subRanges(first);
        UXXmlWrapperBase subRange;
        while (subRanges.Get(subRange) != 0) EXPECT_TRUE(subRange.IsNodeValid());
    }
    EXPECT_EQ(ranges.Get(first), 0);
    EXPECT_EQ(to_text(tree), before);
}

void change_ranges(RandomTree& random) {
    UXXmlWrapperBase node = random.any_node();
    UXXmlWrapperBase tree = random.any_node();
    const int type = random.number(-1, 5);
    if (random.number(0, 1) == 0) node.ReleaseNode();
    const bool possible = node.IsNodeValid() != 0 || tree.IsNodeValid() != 0;
    EXPECT_EQ(vctree_add_subrange_to_composite_range(node, tree, random.number(-1, 3), 0, type),
              possible ? 1 : 0);
    vctree_set_composite_subrange_values(node, text_or_null(random), text_or_null(random),
                                         text_or_null(random), 0, type, random.number(0, 1),
                                         random.number(0, 1));
    CStringUTF8 x;
    vctree_get_composite_subrange_values(node, x, x, x, type);
    vctree_composite_range_set_entire_worksheet_support(tree, random.number(-2, 2));
    vctree_composite_range_get_entire_worksheet_support(tree);
    VCTreeSetCompositeSubRangeNodeActionId(tree, random.number(-1, 3), random.number(-1, 3));
    int id = 0;
    vctree_get_set_node_action_id(tree, id, random.number(0, 1));
    vctree_reenum_subranges_in_range_tree(tree, random.number(0, 1));
}

void fitter(RandomTree& random) {
    UXXmlWrapperBase node = random.any_node();
    UXXmlWrapperBase other = random.any_node();
    int method = 0;
    double a = 0;
    vctree_extract_weight_info(node, text_or_null(random), &method, &a, nullptr, &a);
    vctree_fitter_data_weight_node_compact_to_expanded(node, other);
    vctree_fitter_data_weight_node_expanded_to_compact(other, node);
    DWORD change = 0;
    vctree_update_fitter_data_weight_node(node, random.number(-1, 16), change, text_or_null(random),
                                          &a, nullptr, &a, random.number(0, 1), 0);
    EXPECT_LE(change, 2U);
    uxtree_nlsf_add_params_node_DataID(&node, random.number(-1, 4));
    auto values = uxtest::script_doubles({1, 2, 3});
    EXPECT_TRUE(uxtree_nlf_set_double_param_from_user_params_setting(&node, &values, 13000));
}

void read_statistics(RandomTree& random) {
    UXXmlWrapperBase node = random.any_node();
    const std::string before = to_text(node);
    double d = 0;
    int i = 0;
    CArray<double, double> doubles;
    CArray<int, int> ints;
    CStringUTF8 text;
    tagHistogramStatsResult details{};
    vctree_stats_get_set_bin_info(node, d, d, d, i, 1);
    vctree_stats_get_set_bin_info(node, d, d, i, i, 1);
    vctree_stats_get_set_conf_interval_probability(node, d, d, 1);
    vctree_stats_get_set_interpolate(node, i, 1);
    vctree_stats_get_set_var_divisor(node, i, 1);
    vctree_stats_get_set_trials_num(node, i, 1);
    vctree_stats_get_set_output_distribution(node, i, 1);
    vctree_stats_get_set_output_distr_curve_type(node, ints, 1);
    vctree_stats_get_set_sum(node, d, 1);
    vctree_stats_result_get_set_details(node, details, 1);
    vctree_stats_result_get_set_counts(node, doubles, 1);
    vctree_stats_result_get_set_panel_name(node, text, 1);
    vctree_stats_is_bin_auto(node);
    vctree_stats_is_by_intervals(node);
    UXXmlWrapperBase cur;
    tagPOINT pos{};
    while (vctree_stats_enum_result_node(node, cur, &pos) != 0) EXPECT_TRUE(cur.IsNodeValid());
    EXPECT_EQ(to_text(node), before);
}

void write_statistics(RandomTree& random) {
    UXXmlWrapperBase node = random.any_node();
    UXXmlWrapperBase out;
    double d = 2.5;
    int i = random.number(-3, 3);
    CArray<double, double> doubles = uxtest::number_list<double>({1, 2});
    tagDescStatResults results{};
    tagHistogramStatsResult details{};
    const int get = random.number(0, 1);
    vctree_stats_create_result_node(node, out, {i, random.number(-1, 2)});
    vctree_stats_get_set_box_info(node, d, d, d, d, d, get);
    vctree_stats_get_set_whisker_info(node, d, d, get);
    vctree_stats_get_set_counts(node, doubles, get);
    vctree_stats_get_set_percentiles(node, doubles, get);
    vctree_stats_get_set_custom_quantiles(node, doubles, get);
    vctree_stats_get_set_stats_results(node, results, d, d, get);
    vctree_stats_result_get_set_details(node, details, get);
    vctree_stats_set_bin_auto(node, i);
    vctree_stats_set_by_intervals(node, i);
    if (node.IsNodeValid() != 0) {
        EXPECT_EQ(vctree_stats_is_bin_auto(node), i);
        EXPECT_EQ(vctree_stats_is_by_intervals(node), i);
    }
}

void dialog(RandomTree& random) {
    UXXmlWrapperBase node = random.any_node();
    UXXmlWrapperBase other = random.any_node();
    const bool input = XVarNode_IsInput(node, true);
    EXPECT_FALSE(input && XVarNode_IsOutput(node, true));
    XVarNode_IsUseLabelForValue(&node);
    vctree_test_ICOPT_recursively(node, static_cast<DWORD>(random.number(0, 9)));
    vctree_copy_branch_options(node, other, 5);
    vctree_copy_plot_uid_from_tree_to_tree(node, other);
    const CWBOStringArray names = uxtest::string_list({random.value(), "X", ""});
    UXXmlWrapperBase range;
    VCTreeCheckAddInputDataBranch(&range, &node, &names, &names, -1, random.number(-2, 2),
                                  random.number(-1, 2), text_or_null(random));
    CArray<int, int> ids = uxtest::number_list<int>({1, 8, 2, 128});
    vctree_GETN_reset_hidden_values(&node, &ids, random.number(0, 1) == 1);
    DWORD next = 7;
    const int count = VCTreePrepareForMenu(&node, next);
    if (count >= 0) {
        EXPECT_EQ(next, 7U + static_cast<DWORD>(count));
        EXPECT_EQ(VCTreePrepareForMenu(&node, next), 0);
    }
}

class EveryTree : public testing::TestWithParam<int> {};
TEST_P(EveryTree, SurvivesEveryEntryPoint) {
    const Call calls[] = {auto_support,    walk_ranges,      change_ranges, fitter,
                          read_statistics, write_statistics, dialog};
    for (int round = 0; round < 40; ++round) {
        RandomTree random(static_cast<unsigned>(GetParam() * 1000 + round), kVocabulary);
        for (int i = 0; i < 10; ++i) calls[random.number(0, 6)](random);
        UXXmlWrapperBase again;
        const std::string text = to_text(random.root());
        EXPECT_TRUE(again.LoadFromMemory(text.c_str(), text.size())) << text;
        EXPECT_EQ(to_text(again), text);
    }
}
INSTANTIATE_TEST_SUITE_P(Seeds, EveryTree, testing::Range(0, 8));

}  // namespace
