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
UXTREE_API int vctree_stats_create_result_node(UXXmlWrapperBase& node, UXXmlWrapperBase& out,
                                               const tagPOINT& pos);
// Steps cur to the next result among the children of parent; an invalid cur begins with the first.
// A result is any child whose tag begins with "Result" in any case. pos (may be null) receives its
// place, -1 for a number that the tag lacks. 1, or 0 at the end, where cur stays on the last child.
UXTREE_API int vctree_stats_enum_result_node(UXXmlWrapperBase& parent, UXXmlWrapperBase& cur,
                                             tagPOINT* pos);
// Find or append "BoxChart" and the part below it. 1, or 0 with out untouched for an invalid node.
UXTREE_API int vctree_stats_get_boxchart_box_node(UXXmlWrapperBase& node, UXXmlWrapperBase& out);
UXTREE_API int vctree_stats_get_boxchart_whisker_node(UXXmlWrapperBase& node,
                                                      UXXmlWrapperBase& out);
// The bins of a histogram, by their size or by their number. A space that cannot be read becomes 0.
UXTREE_API void vctree_stats_get_set_bin_info(UXXmlWrapperBase& node, double& min, double& max,
                                              double& size, int& space, int get);
UXTREE_API void vctree_stats_get_set_bin_info(UXXmlWrapperBase& node, double& min, double& max,
                                              int& intervals, int& space, int get);
// The box and the whiskers of a box chart. Reading creates their nodes, too.
UXTREE_API void vctree_stats_get_set_box_info(UXXmlWrapperBase& node, double& top, double& topX,
                                              double& bottom, double& bottomX, double& center,
                                              int get);
UXTREE_API void vctree_stats_get_set_whisker_info(UXXmlWrapperBase& node, double& top,
                                                  double& bottom, int get);
UXTREE_API void vctree_stats_get_set_conf_interval_probability(UXXmlWrapperBase& node,
                                                               double& prob0, double& prob1,
                                                               int get);
// Lists of numbers. Reading creates their nodes, too.
UXTREE_API void vctree_stats_get_set_counts(UXXmlWrapperBase& node, CArray<double, double>& values,
                                            int get);
UXTREE_API void vctree_stats_get_set_percentiles(UXXmlWrapperBase& node,
                                                 CArray<double, double>& values, int get);
UXTREE_API void vctree_stats_get_set_custom_quantiles(UXXmlWrapperBase& node,
                                                      CArray<double, double>& values, int get);
// Single settings; those with a result yield 1 when the value was read or written, else 0.
UXTREE_API int vctree_stats_get_set_interpolate(UXXmlWrapperBase& node, int& value, int get);
UXTREE_API int vctree_stats_get_set_var_divisor(UXXmlWrapperBase& node, int& value, int get);
UXTREE_API int vctree_stats_get_set_trials_num(UXXmlWrapperBase& node, int& value, int get);
UXTREE_API void vctree_stats_get_set_output_distribution(UXXmlWrapperBase& node, int& value,
                                                         int get);
UXTREE_API void vctree_stats_get_set_output_distr_curve_type(UXXmlWrapperBase& node,
                                                             CArray<int, int>& values, int get);
UXTREE_API void vctree_stats_get_set_sum(UXXmlWrapperBase& node, double& value, int get);
// All descriptive statistics of a result, below "Results", which reading creates, too. A field that
// is absent reads as 0 (counts) or the missing value; min and max have no such default.
UXTREE_API void vctree_stats_get_set_stats_results(UXXmlWrapperBase& node,
                                                   tagDescStatResults& results, double& min,
                                                   double& max, int get);
// All results of a histogram, below "Details". Absent fields read as above. 1 when at least one
// field was there or was written; 0 otherwise, with the record untouched when there is no
// "Details".
UXTREE_API int vctree_stats_result_get_set_details(UXXmlWrapperBase& node,
                                                   tagHistogramStatsResult& details, int get);
// The counts and the panel name of a result, read without creating. 1 when read or written, else 0.
UXTREE_API int vctree_stats_result_get_set_counts(UXXmlWrapperBase& node,
                                                  CArray<double, double>& values, int get);
UXTREE_API int vctree_stats_result_get_set_panel_name(UXXmlWrapperBase& node, CStringUTF8& name,
                                                      int get);
// Are the bins chosen automatically (1 when absent or unreadable), and by their number instead of
// their size (0 when absent or unreadable)? The stored value; 0 for an invalid node.
UXTREE_API int vctree_stats_is_bin_auto(UXXmlWrapperBase& node);
UXTREE_API int vctree_stats_is_by_intervals(UXXmlWrapperBase& node);
UXTREE_API void vctree_stats_set_bin_auto(UXXmlWrapperBase& node, int value);
UXTREE_API void vctree_stats_set_by_intervals(UXXmlWrapperBase& node, int value);
extern "C" {
// Script forms: all pointers are needed but space, row and col; with one missing nothing happens
// and the result is 0. Arrays are vectors of doubles. Writing without space writes 0.
UXTREE_API int uxtree_stats_enum_result_node(UXXmlWrapperBase* parent, UXXmlWrapperBase* cur,
                                             int* row, int* col);
UXTREE_API int uxtree_stats_get_boxchart_box_node(UXXmlWrapperBase* node, UXXmlWrapperBase* out);
UXTREE_API int uxtree_stats_get_boxchart_whisker_node(UXXmlWrapperBase* node,
                                                      UXXmlWrapperBase* out);
UXTREE_API void uxtree_stats_get_set_bin_info(UXXmlWrapperBase* node, double* min, double* max,
                                              double* size, int* space, int get);
UXTREE_API void uxtree_stats_get_set_bin_intervals(UXXmlWrapperBase* node, double* min, double* max,
                                                   int* intervals, int* space, int get);
UXTREE_API void uxtree_stats_get_set_box_info(UXXmlWrapperBase* node, double* top, double* topX,
                                              double* bottom, double* bottomX, double* center,
                                              int get);
UXTREE_API void uxtree_stats_get_set_counts(UXXmlWrapperBase* node, UXScriptObject* values,
                                            int get);
UXTREE_API int uxtree_stats_get_set_interpolate(UXXmlWrapperBase* node, int* value, int get);
UXTREE_API void uxtree_stats_get_set_output_distribution(UXXmlWrapperBase* node, int* value,
                                                         int get);
UXTREE_API void uxtree_stats_get_set_percentiles(UXXmlWrapperBase* node, UXScriptObject* values,
                                                 int get);
UXTREE_API void uxtree_stats_get_set_stats_results(UXXmlWrapperBase* node,
                                                   tagDescStatResults* results, double* min,
                                                   double* max, int get);
UXTREE_API int uxtree_stats_get_set_trials_num(UXXmlWrapperBase* node, int* value, int get);
UXTREE_API int uxtree_stats_get_set_var_divisor(UXXmlWrapperBase* node, int* value, int get);
UXTREE_API void uxtree_stats_get_set_whisker_info(UXXmlWrapperBase* node, double* top,
                                                  double* bottom, int get);
UXTREE_API int uxtree_stats_is_bin_auto(UXXmlWrapperBase* node);
UXTREE_API int uxtree_stats_is_by_intervals(UXXmlWrapperBase* node);
UXTREE_API int uxtree_stats_result_get_set_counts(UXXmlWrapperBase* node, UXScriptObject* values,
                                                  int get);
UXTREE_API int uxtree_stats_result_get_set_details(UXXmlWrapperBase* node,
                                                   tagHistogramStatsResult* details, int get);
UXTREE_API void uxtree_stats_set_bin_auto(UXXmlWrapperBase* node, int value);
UXTREE_API void uxtree_stats_set_by_intervals(UXXmlWrapperBase* node, int value);
}
