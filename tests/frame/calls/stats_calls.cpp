// Bad arguments of settings and results of statistics, in both directions.
#include "frame/calls/calls.h"

namespace uxtest {
namespace {

constexpr char kSettings[] =
    "<r><Bin><Min>1</Min><Max>2</Max><Size>3</Size><Intervals>4</Intervals><Space>5</Space>"
    "<Auto>1</Auto><StepBy>1</StepBy></Bin><Prob0>1</Prob0><Prob1>2</Prob1><Counts>1 2</Counts>"
    "<Computation><Interpolate>1</Interpolate><VarDivisor>1</VarDivisor></Computation>"
    "<DistrCurveTypes>1 2</DistrCurveTypes><Distribution>1</Distribution><Sum>1</Sum>"
    "<BinoTrialsNum>1</BinoTrialsNum><Details><N>1</N></Details><PanelName>p</PanelName>"
    "<Result_1_1/><Result_2_3/></r>";

constexpr Row kNoResult{.tree = kSettings};
constexpr Row kResult{.good = 1, .bad = 0, .tree = kSettings};

using BinSize = void (*)(UXXmlWrapperBase&, double&, double&, double&, int&, int);
using BinIntervals = void (*)(UXXmlWrapperBase&, double&, double&, int&, int&, int);

void add_native_rows(Sweep& sweep, int get) {
    const auto number = value(7.5);
    const auto count = value(7);

    sweep.add(UX_ENTRY_AS(vctree_stats_get_set_bin_info,
                          static_cast<BinSize>(&vctree_stats_get_set_bin_info)),
              kNoResult, node(), number.getset(), number.getset(), number.getset(), count.getset(),
              get);
    sweep.add(UX_ENTRY_AS(vctree_stats_get_set_bin_info,
                          static_cast<BinIntervals>(&vctree_stats_get_set_bin_info)),
              kNoResult, node(), number.getset(), number.getset(), count.getset(), count.getset(),
              get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_box_info), kNoResult, node(), number.getset(),
              number.getset(), number.getset(), number.getset(), number.getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_whisker_info), kNoResult, node(), number.getset(),
              number.getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_conf_interval_probability), kNoResult, node(),
              number.getset(), number.getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_counts), kNoResult, node(), doubles({7.5}).getset(),
              get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_percentiles), kNoResult, node(),
              doubles({7.5}).getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_custom_quantiles), kNoResult, node(),
              doubles({7.5}).getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_interpolate), kResult, node(), count.getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_var_divisor), kResult, node(), count.getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_trials_num), kResult, node(), count.getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_output_distribution), kNoResult, node(), count.getset(),
              get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_output_distr_curve_type), kNoResult, node(),
              ints({7}).getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_sum), kNoResult, node(), number.getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_get_set_stats_results), kNoResult, node(),
              value(tagDescStatResults{}).getset(), number.getset(), number.getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_result_get_set_details), kResult, node(),
              value(tagHistogramStatsResult{}).getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_result_get_set_counts), kResult, node(),
              doubles({7.5}).getset(), get);
    sweep.add(UX_ENTRY(vctree_stats_result_get_set_panel_name), kResult, node(), string().getset(),
              get);
}

void add_script_rows(Sweep& sweep, int get) {
    const auto number = value(7.5);
    const auto count = value(7);

    sweep.add(UX_ENTRY(uxtree_stats_get_set_bin_info), kNoResult, node(), number.getset(),
              number.getset(), number.getset(), count.optional().getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_bin_intervals), kNoResult, node(), number.getset(),
              number.getset(), count.getset(), count.optional().getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_box_info), kNoResult, node(), number.getset(),
              number.getset(), number.getset(), number.getset(), number.getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_whisker_info), kNoResult, node(), number.getset(),
              number.getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_counts), kNoResult, node(), doubles({7.5}).getset(),
              get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_percentiles), kNoResult, node(),
              doubles({7.5}).getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_interpolate), kResult, node(), count.getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_var_divisor), kResult, node(), count.getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_trials_num), kResult, node(), count.getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_output_distribution), kNoResult, node(), count.getset(),
              get);
    sweep.add(UX_ENTRY(uxtree_stats_get_set_stats_results), kNoResult, node(),
              value(tagDescStatResults{}).getset(), number.getset(), number.getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_result_get_set_details), kResult, node(),
              value(tagHistogramStatsResult{}).getset(), get);
    sweep.add(UX_ENTRY(uxtree_stats_result_get_set_counts), kResult, node(),
              doubles({7.5}).getset(), get);
}

}  // namespace

void add_stats_rows(Sweep& sweep) {
    for (const int get : {0, 1}) {
        add_native_rows(sweep, get);
        add_script_rows(sweep, get);
    }

    sweep.add(UX_ENTRY(vctree_stats_create_result_node), kResult, node(), out(),
              value(tagPOINT{3, 4}));
    // Enumeration starts at the first child when there is no current one.
    sweep.add(UX_ENTRY(vctree_stats_enum_result_node), kResult, node(),
              node("Result_1_1").may_be_invalid(), value(tagPOINT{7, 7}).optional().out());
    sweep.add(UX_ENTRY(uxtree_stats_enum_result_node), kResult, node(),
              node("Result_1_1").may_be_invalid(), value(7).optional().out(),
              value(7).optional().out());
    sweep.add(UX_ENTRY(vctree_stats_get_boxchart_box_node), kResult, node(), out());
    sweep.add(UX_ENTRY(uxtree_stats_get_boxchart_box_node), kResult, node(), out());
    sweep.add(UX_ENTRY(vctree_stats_get_boxchart_whisker_node), kResult, node(), out());
    sweep.add(UX_ENTRY(uxtree_stats_get_boxchart_whisker_node), kResult, node(), out());
    sweep.add(UX_ENTRY(vctree_stats_is_bin_auto), kResult, node());
    sweep.add(UX_ENTRY(uxtree_stats_is_bin_auto), kResult, node());
    sweep.add(UX_ENTRY(vctree_stats_is_by_intervals), kResult, node());
    sweep.add(UX_ENTRY(uxtree_stats_is_by_intervals), kResult, node());
    sweep.add(UX_ENTRY(vctree_stats_set_bin_auto), kNoResult, node(), 0);
    sweep.add(UX_ENTRY(uxtree_stats_set_bin_auto), kNoResult, node(), 0);
    sweep.add(UX_ENTRY(vctree_stats_set_by_intervals), kNoResult, node(), 0);
    sweep.add(UX_ENTRY(uxtree_stats_set_by_intervals), kNoResult, node(), 0);
}

}  // namespace uxtest
