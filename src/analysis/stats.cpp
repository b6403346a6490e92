// Settings and results of descriptive statistics and histograms.
#include "uxtree/analysis/stats.h"

#include <array>
#include <variant>

#include "uxtree/frame/path_lookup.h"
#include "uxtree/tree/lookup.h"

#include "frame/guards.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/wrapping.h"

using namespace ux;

namespace {

constexpr char kBin[] = "Bin";
constexpr char kBoxChart[] = "BoxChart";
constexpr char kComputation[] = "Computation";
constexpr char kCounts[] = "Counts";
constexpr char kDetails[] = "Details";
constexpr char kResult[] = "Result";
constexpr char kResults[] = "Results";

// --- single values -------------------------------------------------------------------------------

template <typename Value>
int transfer(UXXmlWrapperBase& node, Value& value, int get) {
    return node.NodeValue(value, get);
}
int transfer(UXXmlWrapperBase& node, CStringUTF8& text, int get) {
    return node.NodeValue(text, get, 1, nullptr);
}

// Transfers the value at a path of tags. Reading does not create the path: when it is missing the
// result is 0 and the variable keeps what it held. Writing creates it.
template <typename Value, typename... Tags>
int transfer_at(UXXmlWrapperBase& node, Value& value, int get, Tags... path) {
    UXXmlWrapperBase place;
    const int found = get != 0 ? wbxfu_tree_get_node(place, node, path..., nullptr)
                               : wbxfu_tree_check_get_node(place, node, path..., nullptr);
    return found ? transfer(place, value, get) : kFail;
}

// Intended: reading, too, creates the node of a list of settings.
void transfer_list(UXXmlWrapperBase& node, CArray<double, double>& values, int get,
                   const char* tag) {
    UXXmlWrapperBase place;
    if (wbxfu_tree_check_get_node(place, node, tag, nullptr)) place.NodeValue(values, get);
}

template <typename Steps>
void transfer_bin(UXXmlWrapperBase& node, double& min, double& max, Steps& steps,
                  const char* stepsTag, int& space, int get) {
    if (!usable(node)) return;
    transfer_at(node, min, get, kBin, "Min");
    transfer_at(node, max, get, kBin, "Max");
    transfer_at(node, steps, get, kBin, stepsTag);
    const int done = transfer_at(node, space, get, kBin, "Space");
    // Intended: unlike the other values an unreadable space does not keep what it held.
    if (get != 0 && !done) space = 0;
}

int find_boxchart_part(UXXmlWrapperBase& node, const char* tag, UXXmlWrapperBase& out) {
    UXXmlWrapperBase chart;
    UXXmlWrapperBase part;
    if (!uxtree_tree_check_get_node(&chart, &node, kBoxChart, 0)) return kFail;
    if (!uxtree_tree_check_get_node(&part, &chart, tag, 0)) return kFail;
    out = part;
    return kOk;
}

// --- records -------------------------------------------------------------------------------------

// One field of a record and the child that stores it. An absent count reads as 0, an absent
// double as the missing value.
template <typename Record>
struct Field {
    const char* name;
    std::variant<int Record::*, double Record::*> member;
};

using Desc = tagDescStatResults;
constexpr std::array<Field<Desc>, 21> kDescFields{{{"N", &Desc::N},
                                                   {"Missing", &Desc::Missing},
                                                   {"Mean", &Desc::Mean},
                                                   {"SD", &Desc::SD},
                                                   {"SEM", &Desc::SEM},
                                                   {"LCL", &Desc::LCL},
                                                   {"UCL", &Desc::UCL},
                                                   {"Variance", &Desc::Variance},
                                                   {"Sum", &Desc::Sum},
                                                   {"Skewness", &Desc::Skewness},
                                                   {"Kurtosis", &Desc::Kurtosis},
                                                   {"UncorSumSq", &Desc::UncorSumSq},
                                                   {"CorSumSq", &Desc::CorSumSq},
                                                   {"COV", &Desc::COV},
                                                   {"MAD", &Desc::MAD},
                                                   {"SDx2", &Desc::SDx2},
                                                   {"SDx3", &Desc::SDx3},
                                                   {"GeoMean", &Desc::GeoMean},
                                                   {"GeoSD", &Desc::GeoSD},
                                                   {"Mode", &Desc::Mode},
                                                   {"WeightSum", &Desc::WeightSum}}};

using Histogram = tagHistogramStatsResult;
constexpr std::array<Field<Histogram>, 22> kHistogramFields{{{"N", &Histogram::N},
                                                             {"Missing", &Histogram::Missing},
                                                             {"Min", &Histogram::Min},
                                                             {"Max", &Histogram::Max},
                                                             {"Sum", &Histogram::Sum},
                                                             {"Mean", &Histogram::Mean},
                                                             {"SD", &Histogram::SD},
                                                             {"SEM", &Histogram::SEM},
                                                             {"LCL", &Histogram::LCL},
                                                             {"UCL", &Histogram::UCL},
                                                             {"Q1", &Histogram::Q1},
                                                             {"Median", &Histogram::Median},
                                                             {"Q3", &Histogram::Q3},
                                                             {"LnMean", &Histogram::LnMean},
                                                             {"LnSD", &Histogram::LnSD},
                                                             {"WblMean", &Histogram::WblMean},
                                                             {"WblSD", &Histogram::WblSD},
                                                             {"Scale", &Histogram::Scale},
                                                             {"Bandwidth", &Histogram::Bandwidth},
                                                             {"Width", &Histogram::Width},
                                                             {"Gamalpha", &Histogram::Gamalpha},
                                                             {"Gamtheta", &Histogram::Gamtheta}}};

void set_absent(int& value) {
    value = 0;
}
void set_absent(double& value) {
    value = UXMissingValue();
}

// True when the node has the field, which may still be unreadable and then keeps what it held.
template <typename Value>
bool read_field(const UXXmlWrapperBase& node, const char* name, Value& value) {
    UXXmlWrapperBase child;
    if (!node.FindChild(name, &child, 1)) {
        set_absent(value);
        return false;
    }
    child.NodeValue(value, 1);
    return true;
}

// The number of fields met or written.
template <typename Fields, typename Record>
int transfer_fields(UXXmlWrapperBase& node, const Fields& fields, Record& record, int get) {
    int count = 0;
    for (const Field<Record>& field : fields) {
        const auto one = [&](auto member) {
            auto& value = record.*member;
            return get != 0 ? read_field(node, field.name, value)
                            : transfer_at(node, value, 0, field.name) != 0;
        };
        if (std::visit(one, field.member)) ++count;
    }
    return count;
}

// --- names of result nodes -----------------------------------------------------------------------

int from_zero_based(int index) {
    return wrapping_sum(index, 1);
}
int to_zero_based(const CStringUTF8& text) {
    return wrapping_sum(UXLeadingInt(text), -1);
}

CStringUTF8 result_name(const tagPOINT& pos) {
    if (pos.x < 0 || pos.y < 0) return kResult;
    CStringUTF8 name;
    name.Format("%s_%d_%d", kResult, from_zero_based(pos.x), from_zero_based(pos.y));
    return name;
}

tagPOINT result_position(const CStringUTF8& name) {
    const int first = name.Find('_');
    if (first < 0) return {-1, -1};
    const int second = name.Find('_', first + 1);
    if (second < 0) return {to_zero_based(name.Mid(first + 1)), -1};
    return {to_zero_based(name.Mid(first + 1, second - first - 1)),
            to_zero_based(name.Mid(second + 1))};
}

// Intended: a prefix in any case, so "Results" counts too.
bool is_result_name(const CStringUTF8& name) {
    constexpr int kPrefixLength = 6;
    return name.Left(kPrefixLength).CompareNoCase(kResult) == 0;
}

bool step_to_next_result(const UXXmlWrapperBase& parent, UXXmlWrapperBase& cur, CStringUTF8& name) {
    for (;;) {
        UXXmlWrapperBase next;
        if (!(usable(cur) ? cur.NextSibling(&next) : parent.FirstChild(&next))) return false;
        cur = next;
        cur.GetTagName(name);
        if (is_result_name(name)) return true;
    }
}

}  // namespace

// --- nodes ---------------------------------------------------------------------------------------

int vctree_stats_create_result_node(UXXmlWrapperBase& node, UXXmlWrapperBase& out,
                                    const tagPOINT& pos) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) return kFail;
        return wbxfu_tree_check_get_node(out, node, result_name(pos), nullptr);
    });
}

int vctree_stats_enum_result_node(UXXmlWrapperBase& parent, UXXmlWrapperBase& cur, tagPOINT* pos) {
    return at_boundary(kFail, [&] {
        CStringUTF8 name;
        if (!usable(parent)) return kFail;
        // Intended: at the end cur stays on the last child, so that asking again gives 0 again.
        if (!step_to_next_result(parent, cur, name)) return kFail;
        if (pos != nullptr) *pos = result_position(name);
        return kOk;
    });
}

int vctree_stats_get_boxchart_box_node(UXXmlWrapperBase& node, UXXmlWrapperBase& out) {
    return at_boundary(kFail, [&] { return find_boxchart_part(node, "Box", out); });
}

int vctree_stats_get_boxchart_whisker_node(UXXmlWrapperBase& node, UXXmlWrapperBase& out) {
    return at_boundary(kFail, [&] { return find_boxchart_part(node, "Whisker", out); });
}

// --- settings ------------------------------------------------------------------------------------

void vctree_stats_get_set_bin_info(UXXmlWrapperBase& node, double& min, double& max, double& size,
                                   int& space, int get) {
    at_boundary([&] { transfer_bin(node, min, max, size, "Size", space, get); });
}

void vctree_stats_get_set_bin_info(UXXmlWrapperBase& node, double& min, double& max, int& intervals,
                                   int& space, int get) {
    at_boundary([&] { transfer_bin(node, min, max, intervals, "Intervals", space, get); });
}

void vctree_stats_get_set_box_info(UXXmlWrapperBase& node, double& top, double& topX,
                                   double& bottom, double& bottomX, double& center, int get) {
    at_boundary([&] {
        UXXmlWrapperBase box;
        if (!find_boxchart_part(node, "Box", box)) return;
        // Intended: stored in another order than passed.
        transfer_at(box, center, get, "Center");
        transfer_at(box, top, get, "Top");
        transfer_at(box, topX, get, "TopX");
        transfer_at(box, bottom, get, "Bottom");
        transfer_at(box, bottomX, get, "BottomX");
    });
}

void vctree_stats_get_set_whisker_info(UXXmlWrapperBase& node, double& top, double& bottom,
                                       int get) {
    at_boundary([&] {
        UXXmlWrapperBase whisker;
        if (!find_boxchart_part(node, "Whisker", whisker)) return;
        transfer_at(whisker, top, get, "Top");
        transfer_at(whisker, bottom, get, "Bottom");
    });
}

void vctree_stats_get_set_conf_interval_probability(UXXmlWrapperBase& node, double& prob0,
                                                    double& prob1, int get) {
    at_boundary([&] {
        transfer_at(node, prob0, get, "Prob0");
        transfer_at(node, prob1, get, "Prob1");
    });
}

void vctree_stats_get_set_counts(UXXmlWrapperBase& node, CArray<double, double>& values, int get) {
    at_boundary([&] { transfer_list(node, values, get, kCounts); });
}

void vctree_stats_get_set_percentiles(UXXmlWrapperBase& node, CArray<double, double>& values,
                                      int get) {
    at_boundary([&] { transfer_list(node, values, get, "Percentiles"); });
}

void vctree_stats_get_set_custom_quantiles(UXXmlWrapperBase& node, CArray<double, double>& values,
                                           int get) {
    at_boundary([&] { transfer_list(node, values, get, "CustomPercentiles"); });
}

int vctree_stats_get_set_interpolate(UXXmlWrapperBase& node, int& value, int get) {
    return at_boundary(kFail,
                       [&] { return transfer_at(node, value, get, kComputation, "Interpolate"); });
}

int vctree_stats_get_set_var_divisor(UXXmlWrapperBase& node, int& value, int get) {
    return at_boundary(kFail,
                       [&] { return transfer_at(node, value, get, kComputation, "VarDivisor"); });
}

int vctree_stats_get_set_trials_num(UXXmlWrapperBase& node, int& value, int get) {
    return at_boundary(kFail, [&] { return transfer_at(node, value, get, "BinoTrialsNum"); });
}

void vctree_stats_get_set_output_distribution(UXXmlWrapperBase& node, int& value, int get) {
    at_boundary([&] { transfer_at(node, value, get, "Distribution"); });
}

void vctree_stats_get_set_output_distr_curve_type(UXXmlWrapperBase& node, CArray<int, int>& values,
                                                  int get) {
    at_boundary([&] { transfer_at(node, values, get, "DistrCurveTypes"); });
}

void vctree_stats_get_set_sum(UXXmlWrapperBase& node, double& value, int get) {
    at_boundary([&] { transfer_at(node, value, get, "Sum"); });
}

int vctree_stats_is_bin_auto(UXXmlWrapperBase& node) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) return kFail;
        int value = 1;
        transfer_at(node, value, 1, kBin, "Auto");
        return value;
    });
}

int vctree_stats_is_by_intervals(UXXmlWrapperBase& node) {
    return at_boundary(kFail, [&] {
        int value = 0;
        transfer_at(node, value, 1, kBin, "StepBy");
        return value;
    });
}

void vctree_stats_set_bin_auto(UXXmlWrapperBase& node, int value) {
    at_boundary([&] { transfer_at(node, value, 0, kBin, "Auto"); });
}

void vctree_stats_set_by_intervals(UXXmlWrapperBase& node, int value) {
    at_boundary([&] { transfer_at(node, value, 0, kBin, "StepBy"); });
}

// --- results -------------------------------------------------------------------------------------

void vctree_stats_get_set_stats_results(UXXmlWrapperBase& node, tagDescStatResults& results,
                                        double& min, double& max, int get) {
    at_boundary([&] {
        UXXmlWrapperBase place;
        // Intended: reading, too, creates "Results".
        if (!wbxfu_tree_check_get_node(place, node, kResults, nullptr)) return;
        transfer_fields(place, kDescFields, results, get);
        // Intended: unlike the fields of the record these two have no default.
        transfer_at(node, min, get, kResults, "Min");
        transfer_at(node, max, get, kResults, "Max");
    });
}

int vctree_stats_result_get_set_details(UXXmlWrapperBase& node, tagHistogramStatsResult& details,
                                        int get) {
    return at_boundary(kFail, [&] {
        UXXmlWrapperBase place;
        const int found = get != 0 ? wbxfu_tree_get_node(place, node, kDetails, nullptr)
                                   : wbxfu_tree_check_get_node(place, node, kDetails, nullptr);
        if (!found) return kFail;
        return transfer_fields(place, kHistogramFields, details, get) > 0 ? kOk : kFail;
    });
}

int vctree_stats_result_get_set_counts(UXXmlWrapperBase& node, CArray<double, double>& values,
                                       int get) {
    return at_boundary(kFail, [&] { return transfer_at(node, values, get, kCounts); });
}

int vctree_stats_result_get_set_panel_name(UXXmlWrapperBase& node, CStringUTF8& name, int get) {
    return at_boundary(kFail, [&] { return transfer_at(node, name, get, "PanelName"); });
}

// --- script forms --------------------------------------------------------------------------------

extern "C" {

int uxtree_stats_enum_result_node(UXXmlWrapperBase* parent, UXXmlWrapperBase* cur, int* row,
                                  int* col) {
    if (any_null(parent, cur)) return kFail;
    tagPOINT pos{-1, -1};
    const int found = vctree_stats_enum_result_node(*parent, *cur, &pos);
    if (found && row != nullptr) *row = pos.x;
    if (found && col != nullptr) *col = pos.y;
    return found;
}

int uxtree_stats_get_boxchart_box_node(UXXmlWrapperBase* node, UXXmlWrapperBase* out) {
    return any_null(node, out) ? kFail : vctree_stats_get_boxchart_box_node(*node, *out);
}

int uxtree_stats_get_boxchart_whisker_node(UXXmlWrapperBase* node, UXXmlWrapperBase* out) {
    return any_null(node, out) ? kFail : vctree_stats_get_boxchart_whisker_node(*node, *out);
}

void uxtree_stats_get_set_bin_info(UXXmlWrapperBase* node, double* min, double* max, double* size,
                                   int* space, int get) {
    if (any_null(node, min, max, size)) return;
    int noSpace = 0;
    vctree_stats_get_set_bin_info(*node, *min, *max, *size, space != nullptr ? *space : noSpace,
                                  get);
}

void uxtree_stats_get_set_bin_intervals(UXXmlWrapperBase* node, double* min, double* max,
                                        int* intervals, int* space, int get) {
    if (any_null(node, min, max) || intervals == nullptr) return;
    int noSpace = 0;
    vctree_stats_get_set_bin_info(*node, *min, *max, *intervals,
                                  space != nullptr ? *space : noSpace, get);
}

void uxtree_stats_get_set_box_info(UXXmlWrapperBase* node, double* top, double* topX,
                                   double* bottom, double* bottomX, double* center, int get) {
    if (any_null(node, top, topX, bottom, bottomX, center)) return;
    vctree_stats_get_set_box_info(*node, *top, *topX, *bottom, *bottomX, *center, get);
}

void uxtree_stats_get_set_whisker_info(UXXmlWrapperBase* node, double* top, double* bottom,
                                       int get) {
    if (any_null(node, top, bottom)) return;
    vctree_stats_get_set_whisker_info(*node, *top, *bottom, get);
}

void uxtree_stats_get_set_counts(UXXmlWrapperBase* node, UXScriptObject* values, int get) {
    at_boundary([&] {
        CArray<double, double>* array = double_vector(values);
        if (!any_null(node, array)) vctree_stats_get_set_counts(*node, *array, get);
    });
}

void uxtree_stats_get_set_percentiles(UXXmlWrapperBase* node, UXScriptObject* values, int get) {
    at_boundary([&] {
        CArray<double, double>* array = double_vector(values);
        if (!any_null(node, array)) vctree_stats_get_set_percentiles(*node, *array, get);
    });
}

int uxtree_stats_get_set_interpolate(UXXmlWrapperBase* node, int* value, int get) {
    return any_null(node, value) ? kFail : vctree_stats_get_set_interpolate(*node, *value, get);
}

int uxtree_stats_get_set_var_divisor(UXXmlWrapperBase* node, int* value, int get) {
    return any_null(node, value) ? kFail : vctree_stats_get_set_var_divisor(*node, *value, get);
}

int uxtree_stats_get_set_trials_num(UXXmlWrapperBase* node, int* value, int get) {
    return any_null(node, value) ? kFail : vctree_stats_get_set_trials_num(*node, *value, get);
}

void uxtree_stats_get_set_output_distribution(UXXmlWrapperBase* node, int* value, int get) {
    if (!any_null(node, value)) vctree_stats_get_set_output_distribution(*node, *value, get);
}

void uxtree_stats_get_set_stats_results(UXXmlWrapperBase* node, tagDescStatResults* results,
                                        double* min, double* max, int get) {
    if (any_null(node, results, min, max)) return;
    vctree_stats_get_set_stats_results(*node, *results, *min, *max, get);
}

int uxtree_stats_result_get_set_details(UXXmlWrapperBase* node, tagHistogramStatsResult* details,
                                        int get) {
    if (any_null(node, details)) return kFail;
    return vctree_stats_result_get_set_details(*node, *details, get);
}

int uxtree_stats_result_get_set_counts(UXXmlWrapperBase* node, UXScriptObject* values, int get) {
    return at_boundary(kFail, [&] {
        CArray<double, double>* array = double_vector(values);
        return any_null(node, array) ? kFail
                                     : vctree_stats_result_get_set_counts(*node, *array, get);
    });
}

int uxtree_stats_is_bin_auto(UXXmlWrapperBase* node) {
    return node == nullptr ? kFail : vctree_stats_is_bin_auto(*node);
}

int uxtree_stats_is_by_intervals(UXXmlWrapperBase* node) {
    return node == nullptr ? kFail : vctree_stats_is_by_intervals(*node);
}

void uxtree_stats_set_bin_auto(UXXmlWrapperBase* node, int value) {
    if (node != nullptr) vctree_stats_set_bin_auto(*node, value);
}

void uxtree_stats_set_by_intervals(UXXmlWrapperBase* node, int value) {
    if (node != nullptr) vctree_stats_set_by_intervals(*node, value);
}

}  // extern "C"
