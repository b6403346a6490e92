// Settings and results of descriptive statistics and histograms.
//
// Every get_set function ends with the direction: nonzero reads the tree into the caller's
// variables, 0 writes them into the tree. Writing creates every node it needs. Reading leaves a
// variable as it was when the tree has no readable value for it, so that callers preset defaults;
// exceptions are stated. A double that is absent from a result reads as the missing value
// (UXMissingValue), which is compared by its bits. An invalid node changes nothing.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// The place of a result; -1 and -1 for a single one.
struct tagPOINT {
    int x;  // zero-based row
    int y;  // zero-based column
};

// Descriptive statistics, each in a child of "Results" of the same name.
struct tagDescStatResults {
    int N;
    int Missing;
    double Mean, SD, SEM, LCL, UCL, Variance, Sum, Skewness, Kurtosis, UncorSumSq, CorSumSq, COV,
        MAD, SDx2, SDx3, GeoMean, GeoSD, Mode, WeightSum;
};

// Results of a histogram, each in a child of "Details" of the same name.
struct tagHistogramStatsResult {
    int N;
    int Missing;
    double Min, Max, Sum, Mean, SD, SEM, LCL, UCL, Q1, Median, Q3, LnMean, LnSD, WblMean, WblSD,
        Scale;
    int Bandwidth;
    double Width, Gamalpha, Gamtheta;
};

// Finds or appends the result at a place: the child "Result_row_column", both counted from 1 there,
// or "Result" when a coordinate is negative. 1, or 0 with out untouched for an invalid node.
UXTREE_API int vctree_stats_create_result_node(UX_EDITS UXXmlWrapperBase& node,
                                               UX_OUT UXXmlWrapperBase& out, const tagPOINT& pos)
    UX_RETURNS(done, unusable = 0);
// Steps cur to the next result among the children of parent; an invalid cur begins with the first.
// A result is any child whose tag begins with "Result" in any case. pos (may be null) receives its
// place, -1 for a number that the tag lacks. 1, or 0 at the end, where cur stays on the last child.
UXTREE_API int vctree_stats_enum_result_node(UX_IN UXXmlWrapperBase& parent,
                                             UX_MAY_BE_INVALID UX_INOUT UXXmlWrapperBase& cur,
                                             UX_OPT UX_OUT tagPOINT* pos)
    UX_RETURNS(done, not_found = 0);
// Find or append "BoxChart" and the part below it. 1, or 0 with out untouched for an invalid node.
UXTREE_API int vctree_stats_get_boxchart_box_node(UX_EDITS UXXmlWrapperBase& node,
                                                  UX_OUT UXXmlWrapperBase& out)
    UX_RETURNS(done, unusable = 0);
UXTREE_API int vctree_stats_get_boxchart_whisker_node(UX_EDITS UXXmlWrapperBase& node,
                                                      UX_OUT UXXmlWrapperBase& out)
    UX_RETURNS(done, unusable = 0);
// The bins of a histogram, by their size or by their number. A space that cannot be read becomes 0.
UXTREE_API void vctree_stats_get_set_bin_info(UX_EDITS UXXmlWrapperBase& node,
                                              UX_GETSET double& min, UX_GETSET double& max,
                                              UX_GETSET double& size, UX_GETSET int& space,
                                              int get);
UXTREE_API void vctree_stats_get_set_bin_info(UX_EDITS UXXmlWrapperBase& node,
                                              UX_GETSET double& min, UX_GETSET double& max,
                                              UX_GETSET int& intervals, UX_GETSET int& space,
                                              int get);
// The box and the whiskers of a box chart. Reading creates their nodes, too.
UXTREE_API void vctree_stats_get_set_box_info(UX_EDITS UXXmlWrapperBase& node,
                                              UX_GETSET double& top, UX_GETSET double& topX,
                                              UX_GETSET double& bottom, UX_GETSET double& bottomX,
                                              UX_GETSET double& center, int get);
UXTREE_API void vctree_stats_get_set_whisker_info(UX_EDITS UXXmlWrapperBase& node,
                                                  UX_GETSET double& top, UX_GETSET double& bottom,
                                                  int get);
UXTREE_API void vctree_stats_get_set_conf_interval_probability(UX_EDITS UXXmlWrapperBase& node,
                                                               UX_GETSET double& prob0,
                                                               UX_GETSET double& prob1, int get);
// Lists of numbers. Reading creates their nodes, too.
UXTREE_API void vctree_stats_get_set_counts(UX_EDITS UXXmlWrapperBase& node,
                                            UX_GETSET CArray<double, double>& values, int get);
UXTREE_API void vctree_stats_get_set_percentiles(UX_EDITS UXXmlWrapperBase& node,
                                                 UX_GETSET CArray<double, double>& values, int get);
UXTREE_API void vctree_stats_get_set_custom_quantiles(UX_EDITS UXXmlWrapperBase& node,
                                                      UX_GETSET CArray<double, double>& values,
                                                      int get);
// Single settings; those with a result yield 1 when the value was read or written, else 0.
UXTREE_API int vctree_stats_get_set_interpolate(UX_EDITS UXXmlWrapperBase& node,
                                                UX_GETSET int& value, int get)
    UX_RETURNS(done, not_found = 0);
UXTREE_API int vctree_stats_get_set_var_divisor(UX_EDITS UXXmlWrapperBase& node,
                                                UX_GETSET int& value, int get)
    UX_RETURNS(done, not_found = 0);
UXTREE_API int vctree_stats_get_set_trials_num(UX_EDITS UXXmlWrapperBase& node,
                                               UX_GETSET int& value, int get)
    UX_RETURNS(done, not_found = 0);
UXTREE_API void vctree_stats_get_set_output_distribution(UX_EDITS UXXmlWrapperBase& node,
                                                         UX_GETSET int& value, int get);
UXTREE_API void vctree_stats_get_set_output_distr_curve_type(UX_EDITS UXXmlWrapperBase& node,
                                                             UX_GETSET CArray<int, int>& values,
                                                             int get);
UXTREE_API void vctree_stats_get_set_sum(UX_EDITS UXXmlWrapperBase& node, UX_GETSET double& value,
                                         int get);
// All descriptive statistics of a result, below "Results", which reading creates, too. A field that
// is absent reads as 0 (counts) or the missing value; min and max have no such default.
UXTREE_API void vctree_stats_get_set_stats_results(UX_EDITS UXXmlWrapperBase& node,
                                                   UX_GETSET tagDescStatResults& results,
                                                   UX_GETSET double& min, UX_GETSET double& max,
                                                   int get);
// All results of a histogram, below "Details". Absent fields read as above. 1 when at least one
// field was there or was written; 0 otherwise, with the record untouched when there is no
// "Details".
UXTREE_API int vctree_stats_result_get_set_details(UX_EDITS UXXmlWrapperBase& node,
                                                   UX_GETSET tagHistogramStatsResult& details,
                                                   int get) UX_RETURNS(done, not_found = 0);
// The counts and the panel name of a result, read without creating. 1 when read or written, else 0.
// An empty panel name reads as "", with the result 0.
UXTREE_API int vctree_stats_result_get_set_counts(UX_EDITS UXXmlWrapperBase& node,
                                                  UX_GETSET CArray<double, double>& values, int get)
    UX_RETURNS(done, not_found = 0);
UXTREE_API int vctree_stats_result_get_set_panel_name(UX_EDITS UXXmlWrapperBase& node,
                                                      UX_GETSET CStringUTF8& name, int get)
    UX_RETURNS(done, not_found = 0);
// Are the bins chosen automatically (1 when absent or unreadable), and by their number instead of
// their size (0 when absent or unreadable)? The stored value; 0 for an invalid node.
UXTREE_API int vctree_stats_is_bin_auto(UX_IN UXXmlWrapperBase& node)
    UX_RETURNS(stored, unusable = 0);
UXTREE_API int vctree_stats_is_by_intervals(UX_IN UXXmlWrapperBase& node)
    UX_RETURNS(stored, unusable = 0);
UXTREE_API void vctree_stats_set_bin_auto(UX_EDITS UXXmlWrapperBase& node, int value);
UXTREE_API void vctree_stats_set_by_intervals(UX_EDITS UXXmlWrapperBase& node, int value);
extern "C" {
// Script forms: all pointers are needed but space, row and col; with one missing nothing happens
// and the result is 0. Arrays are vectors of doubles. Writing without space writes 0.
UXTREE_API int uxtree_stats_enum_result_node(UX_IN UXXmlWrapperBase* parent,
                                             UX_MAY_BE_INVALID UX_INOUT UXXmlWrapperBase* cur,
                                             UX_OPT UX_OUT int* row, UX_OPT UX_OUT int* col)
    UX_RETURNS(done, not_found = 0);
UXTREE_API int uxtree_stats_get_boxchart_box_node(UX_EDITS UXXmlWrapperBase* node,
                                                  UX_OUT UXXmlWrapperBase* out)
    UX_RETURNS(done, unusable = 0);
UXTREE_API int uxtree_stats_get_boxchart_whisker_node(UX_EDITS UXXmlWrapperBase* node,
                                                      UX_OUT UXXmlWrapperBase* out)
    UX_RETURNS(done, unusable = 0);
UXTREE_API void uxtree_stats_get_set_bin_info(UX_EDITS UXXmlWrapperBase* node,
                                              UX_GETSET double* min, UX_GETSET double* max,
                                              UX_GETSET double* size, UX_OPT UX_GETSET int* space,
                                              int get);
UXTREE_API void uxtree_stats_get_set_bin_intervals(UX_EDITS UXXmlWrapperBase* node,
                                                   UX_GETSET double* min, UX_GETSET double* max,
                                                   UX_GETSET int* intervals,
                                                   UX_OPT UX_GETSET int* space, int get);
UXTREE_API void uxtree_stats_get_set_box_info(UX_EDITS UXXmlWrapperBase* node,
                                              UX_GETSET double* top, UX_GETSET double* topX,
                                              UX_GETSET double* bottom, UX_GETSET double* bottomX,
                                              UX_GETSET double* center, int get);
UXTREE_API void uxtree_stats_get_set_counts(UX_EDITS UXXmlWrapperBase* node,
                                            UX_GETSET UX_DOUBLES UXScriptObject* values, int get);
UXTREE_API int uxtree_stats_get_set_interpolate(UX_EDITS UXXmlWrapperBase* node,
                                                UX_GETSET int* value, int get)
    UX_RETURNS(done, not_found = 0);
UXTREE_API void uxtree_stats_get_set_output_distribution(UX_EDITS UXXmlWrapperBase* node,
                                                         UX_GETSET int* value, int get);
UXTREE_API void uxtree_stats_get_set_percentiles(UX_EDITS UXXmlWrapperBase* node,
                                                 UX_GETSET UX_DOUBLES UXScriptObject* values,
                                                 int get);
UXTREE_API void uxtree_stats_get_set_stats_results(UX_EDITS UXXmlWrapperBase* node,
                                                   UX_GETSET tagDescStatResults* results,
                                                   UX_GETSET double* min, UX_GETSET double* max,
                                                   int get);
UXTREE_API int uxtree_stats_get_set_trials_num(UX_EDITS UXXmlWrapperBase* node,
                                               UX_GETSET int* value, int get)
    UX_RETURNS(done, not_found = 0);
UXTREE_API int uxtree_stats_get_set_var_divisor(UX_EDITS UXXmlWrapperBase* node,
                                                UX_GETSET int* value, int get)
    UX_RETURNS(done, not_found = 0);
UXTREE_API void uxtree_stats_get_set_whisker_info(UX_EDITS UXXmlWrapperBase* node,
                                                  UX_GETSET double* top, UX_GETSET double* bottom,
                                                  int get);
UXTREE_API int uxtree_stats_is_bin_auto(UX_IN UXXmlWrapperBase* node)
    UX_RETURNS(stored, unusable = 0);
UXTREE_API int uxtree_stats_is_by_intervals(UX_IN UXXmlWrapperBase* node)
    UX_RETURNS(stored, unusable = 0);
UXTREE_API int uxtree_stats_result_get_set_counts(UX_EDITS UXXmlWrapperBase* node,
                                                  UX_GETSET UX_DOUBLES UXScriptObject* values,
                                                  int get) UX_RETURNS(done, not_found = 0);
UXTREE_API int uxtree_stats_result_get_set_details(UX_EDITS UXXmlWrapperBase* node,
                                                   UX_GETSET tagHistogramStatsResult* details,
                                                   int get) UX_RETURNS(done, not_found = 0);
UXTREE_API void uxtree_stats_set_bin_auto(UX_EDITS UXXmlWrapperBase* node, int value);
UXTREE_API void uxtree_stats_set_by_intervals(UX_EDITS UXXmlWrapperBase* node, int value);
}
