// Settings and results of descriptive statistics and histograms.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

struct tagPOINT {
    int x;  // zero-based row
    int y;  // zero-based column
};

struct tagDescStatResults {
    int N;
    int Missing;
    double Mean, SD, SEM, LCL, UCL, Variance, Sum, Skewness, Kurtosis, UncorSumSq, CorSumSq, COV,
        MAD, SDx2, SDx3, GeoMean, GeoSD, Mode, WeightSum;
};

struct tagHistogramStatsResult {
    int N;
    int Missing;
    double Min, Max, Sum, Mean, SD, SEM, LCL, UCL, Q1, Median, Q3, LnMean, LnSD, WblMean, WblSD,
        Scale;
    int Bandwidth;
    double Width, Gamalpha, Gamtheta;
};

UXTREE_API int vctree_stats_create_result_node(UXXmlWrapperBase& node, UXXmlWrapperBase& out,
                                               const tagPOINT& pos);
UXTREE_API int vctree_stats_enum_result_node(UXXmlWrapperBase& parent, UXXmlWrapperBase& cur,
                                             tagPOINT* pos);
UXTREE_API int vctree_stats_get_boxchart_box_node(UXXmlWrapperBase& node, UXXmlWrapperBase& out);
UXTREE_API int vctree_stats_get_boxchart_whisker_node(UXXmlWrapperBase& node,
                                                      UXXmlWrapperBase& out);
UXTREE_API void vctree_stats_get_set_bin_info(UXXmlWrapperBase& node, double& min, double& max,
                                              double& size, int& space, int get);
UXTREE_API void vctree_stats_get_set_bin_info(UXXmlWrapperBase& node, double& min, double& max,
                                              int& intervals, int& space, int get);
UXTREE_API void vctree_stats_get_set_box_info(UXXmlWrapperBase& node, double& top, double& topX,
                                              double& bottom, double& bottomX, double& center,
                                              int get);
UXTREE_API void vctree_stats_get_set_whisker_info(UXXmlWrapperBase& node, double& top,
                                                  double& bottom, int get);
UXTREE_API void vctree_stats_get_set_conf_interval_probability(UXXmlWrapperBase& node,
                                                               double& prob0, double& prob1,
                                                               int get);
UXTREE_API void vctree_stats_get_set_counts(UXXmlWrapperBase& node, CArray<double, double>& values,
                                            int get);
UXTREE_API void vctree_stats_get_set_percentiles(UXXmlWrapperBase& node,
                                                 CArray<double, double>& values, int get);
UXTREE_API void vctree_stats_get_set_custom_quantiles(UXXmlWrapperBase& node,
                                                      CArray<double, double>& values, int get);
UXTREE_API int vctree_stats_get_set_interpolate(UXXmlWrapperBase& node, int& value, int get);
UXTREE_API int vctree_stats_get_set_var_divisor(UXXmlWrapperBase& node, int& value, int get);
UXTREE_API int vctree_stats_get_set_trials_num(UXXmlWrapperBase& node, int& value, int get);
UXTREE_API void vctree_stats_get_set_output_distribution(UXXmlWrapperBase& node, int& value,
                                                         int get);
UXTREE_API void vctree_stats_get_set_output_distr_curve_type(UXXmlWrapperBase& node,
                                                             CArray<int, int>& values, int get);
UXTREE_API void vctree_stats_get_set_sum(UXXmlWrapperBase& node, double& value, int get);
UXTREE_API void vctree_stats_get_set_stats_results(UXXmlWrapperBase& node,
                                                   tagDescStatResults& results, double& min,
                                                   double& max, int get);
UXTREE_API int vctree_stats_result_get_set_details(UXXmlWrapperBase& node,
                                                   tagHistogramStatsResult& details, int get);
UXTREE_API int vctree_stats_result_get_set_counts(UXXmlWrapperBase& node,
                                                  CArray<double, double>& values, int get);
UXTREE_API int vctree_stats_result_get_set_panel_name(UXXmlWrapperBase& node, CStringUTF8& name,
                                                      int get);
UXTREE_API int vctree_stats_is_bin_auto(UXXmlWrapperBase& node);
UXTREE_API int vctree_stats_is_by_intervals(UXXmlWrapperBase& node);
UXTREE_API void vctree_stats_set_bin_auto(UXXmlWrapperBase& node, int value);
UXTREE_API void vctree_stats_set_by_intervals(UXXmlWrapperBase& node, int value);
extern "C" {
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
