// The script entry points for C. Written by tools/dev/make_c_header.py: do not edit.
//
// What each of them does stands in the header named above it. Handles of nodes, strings and script
// arrays are made and read with the functions of uxtree/kit/c.h.
#ifndef UXTREE_C_H
#define UXTREE_C_H

#include "uxtree/kit/c.h"

#ifdef __cplusplus
// A C++ compiler sees both sets of declarations, and refuses this header where they differ.
#include "uxtree/uxtree_Utils.h"
extern "C" {
#else

typedef struct tagDescStatResults {
    int N;
    int Missing;
    double Mean, SD, SEM, LCL, UCL, Variance, Sum, Skewness, Kurtosis, UncorSumSq, CorSumSq, COV,
        MAD, SDx2, SDx3, GeoMean, GeoSD, Mode, WeightSum;
} tagDescStatResults;

typedef struct tagHistogramStatsResult {
    int N;
    int Missing;
    double Min, Max, Sum, Mean, SD, SEM, LCL, UCL, Q1, Median, Q3, LnMean, LnSD, WblMean, WblSD,
        Scale;
    int Bandwidth;
    double Width, Gamalpha, Gamtheta;
} tagHistogramStatsResult;

#endif  // __cplusplus

// --- uxtree/frame/path_lookup.h

int uxtree_set_default_code_page(int codePage);

// --- uxtree/tree/attributes.h

bool uxtree_modify_attribute(UXXmlWrapperBase* node, const char* name, unsigned int setBits,
    unsigned int clearBits);
int uxtree_remove_attribute(UXXmlWrapperBase* tree, const char* name, int includeSelf);
int uxtree_store_attribute(UXXmlWrapperBase* tree, const char* name);
int uxtree_restore_attribute(UXXmlWrapperBase* tree, const char* name);
int uxtree_node_copy_attribute(UXXmlWrapperBase* source, UXXmlWrapperBase* target,
    const char* name);
int uxtree_copy_atts(UXXmlWrapperBase* source, UXXmlWrapperBase* target, const char* name,
    int childrenOnly);
int uxtree_set_attribute_bit_if_not_empty(UXXmlWrapperBase* node, const char* name,
    unsigned int bits, bool deep);
void uxtree_set_attribute_to_all_nodes(UXXmlWrapperBase* tree, const char* name, const char* value,
    bool childrenOnly, bool branchesOnly);
void uxtree_set_attribute_with_skip(UXXmlWrapperBase* tree, const char* name, const char* value,
    const char* skipAttr, UXScriptObject* skipValues, bool branchesToo, bool remove);
int uxtree_count_items_by_attribute(UXXmlWrapperBase* tree, const char* name, const char* value,
    int countMissing, int recursive);
int uxtree_all_nodes_has_attrib(UXXmlWrapperBase* tree, const char* name);
int uxtree_attribute_values(UXXmlWrapperBase* tree, const char* name, int value,
    UXScriptObject* values, int removeIfNegative);
int uxtree_get_attributes(UXXmlWrapperBase* tree, UXScriptObject* out, const char* name,
    int directOnly);
int uxtree_set_attributes(UXXmlWrapperBase* tree, UXScriptObject* ids, const char* value,
    const char* attribute, const char* keyAttr, bool flag);
int uxtree_get_node_names(UXXmlWrapperBase* tree, UXScriptObject* out, int directOnly);

// --- uxtree/tree/enumerated.h

int uxtree_get_next_enum_tag_name(UXXmlWrapperBase* tree, CStringUTF8* out, int numbered);
void uxtree_get_enum_node_name(UXXmlWrapperBase* tree, CStringUTF8* out, const char* prefix);
void uxtree_get_enum_attribute_value(UXXmlWrapperBase* tree, CStringUTF8* out, const char* attrName,
    const char* prefix, const char* suffix);
void uxtree_check_add_enumerated_node(UXXmlWrapperBase* out, UXXmlWrapperBase* parent,
    const char* prefix, int number, int id, const char* attrName, const char* attrValue);
bool uxtree_check_add_all_enumerated_nodes(UXXmlWrapperBase* parent, const char* prefix,
    UXScriptObject* values, int existing, int maxChildren, unsigned short set, const char* label,
    UXScriptObject* texts);

// --- uxtree/tree/lookup.h

int uxtree_get_node(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, int index, int* counter,
    int maxLevel, const char* attrName, bool skipSubtreeOfMarked, bool branchesOnly, int level);
int uxtree_get_node_ex(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, int index, unsigned int flags,
    const char* attrName);
int uxtree_get_root_node(UXXmlWrapperBase* node, UXXmlWrapperBase* out);
int uxtree_get_level(CStringUTF8* path, UXXmlWrapperBase* node, UXXmlWrapperBase* top,
    int useEventRoot);
int uxtree_get_row_number(UXXmlWrapperBase* tree, const char* path);
int uxtree_get_node_by_id(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, int id, bool recursive);
int uxtree_get_node_by_tagname(UXXmlWrapperBase* node, UXXmlWrapperBase* out, const char* tag,
    bool recursive, bool caseSensitive, bool leavesOnly);
int uxtree_find_node(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, const char* attrName, int value,
    bool recursive, int depth, int repeatId);
int uxtree_find_node_ex(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, const char* attrName, int id,
    int parentId, int parentRepeatId, int grandParentId, int grandParentRepeatId);
int uxtree_find_node_by_dataID(UXXmlWrapperBase* out, UXXmlWrapperBase* tree, int id, int parentId,
    int parentRepeatId, int grandParentId, int grandParentRepeatId);
int uxtree_find_node_with_attr_child(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
    const char* attrName, const char* attrValue, const char* childTag, const char* childValue);
int uxtree_check_node_int_attr(UXXmlWrapperBase* node, UXScriptObject* names,
    UXScriptObject* values);
int uxtree_check_node_str_attr(UXXmlWrapperBase* node, UXScriptObject* names,
    UXScriptObject* values, int noCase);
int uxtree_find_node_with_int_attr(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
    UXScriptObject* names, UXScriptObject* values, bool recursive, int occurrence);
int uxtree_find_node_with_str_attr(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
    UXScriptObject* names, UXScriptObject* values, bool recursive, int occurrence);
int uxtree_tree_check_get_node(UXXmlWrapperBase* out, UXXmlWrapperBase* parent, const char* tag,
    int id, const char* attrName, const char* attrValue, int findFlag);
int uxtree_tree_check_get_node_by_attribute(UXXmlWrapperBase* out, UXXmlWrapperBase* parent,
    const char* attrName, const char* attrValue, int flag, const char* newTag);
int uxtree_check_get_node_by_dataid(UXXmlWrapperBase* parent, UXXmlWrapperBase* out,
    const char* tag, int dataId, const char* attrName, const char* attrValue);
int uxtree_get_help_node(UXXmlWrapperBase* out, UXXmlWrapperBase* tree, int id, int category);

// --- uxtree/tree/structure.h

int uxtree_delete_nodes_by_attribute(UXXmlWrapperBase* tree, const char* attrName, int value,
    int recursive, const char* exemptAttr, int keepBranches);
int uxtree_delete_nodes_by_missing_attribute(UXXmlWrapperBase* tree, const char* attrName,
    int recursive, int removeAttrFromKept, int keepBranches, int checkSelf);
int uxtree_remove_nodes_by_attribute(UXXmlWrapperBase* tree, const char* attrName, int value);
int uxtree_remove_empty_child_nodes(UXXmlWrapperBase* tree, bool recursive);
int uxtree_hide_empty_nodes(UXXmlWrapperBase* tree, bool recursive, bool showNonEmpty);
int uxtree_move_node(UXXmlWrapperBase* tree, int fromIndex, int toIndex, unsigned int flags,
    const char* attrName);
bool uxtree_sort_children_by_int_attribute(UXXmlWrapperBase* node, const char* attrName,
    int ascending);
int uxtree_append_children(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
    const char* tagPrefix);
int uxtree_filter(UXXmlWrapperBase* tree, int dataId, int modeA, int idA, UXScriptObject* listA,
    int modeB, int idB, UXScriptObject* listB);
int uxtree_filter_by_attrib_find(UXXmlWrapperBase* tree, int dataId, const char* attrName,
    const char* text, int caseSensitive, int atStart);
int uxtree_filter_by_attrib_match(UXXmlWrapperBase* tree, int dataId, const char* attrName,
    const char* pattern, int matchFlag);
void uxtree_polish_tree_keep_DataID(UXXmlWrapperBase* tree);
int uxtree_adapt_for_tagname(CStringUTF8* name);
int uxtree_copy_with_skipping(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
    UXScriptObject* skipAttrs, DWORD flags);

// --- uxtree/tree/vectors.h

void uxtree_value_from_vec_int_to_tree_sub_nodes(UXScriptObject* values, UXXmlWrapperBase* node);
void uxtree_value_from_vec_double_to_tree_sub_nodes(UXScriptObject* values, UXXmlWrapperBase* node);
void uxtree_value_from_vec_bool_to_tree_sub_nodes(UXScriptObject* values, UXXmlWrapperBase* node);
void uxtree_value_from_vec_string_to_tree_sub_nodes(UXScriptObject* values, UXXmlWrapperBase* node);
int uxtree_value_from_tree_sub_nodes_to_vector_int(UXXmlWrapperBase* node, UXScriptObject* values);
int uxtree_value_from_tree_sub_nodes_to_vector_double(UXXmlWrapperBase* node,
    UXScriptObject* values);
int uxtree_value_from_tree_sub_nodes_to_vector_bool(UXXmlWrapperBase* node, UXScriptObject* values);
int uxtree_value_from_tree_sub_nodes_to_vector_string(UXXmlWrapperBase* node,
    UXScriptObject* values);

// --- uxtree/data/attribute_match.h

int uxtree_copy_values_to_attributes_by_attribute_matching(UXXmlWrapperBase* source,
    UXXmlWrapperBase* target, const char* targetAttribute, const char* matchAttribute,
    const char* extraAttribute, int recursive, int all, int caseSensitive);

// --- uxtree/data/changes.h

int uxtree_node_changed(UXXmlWrapperBase* node, int set, const char* oldValue);
int uxtree_remove_unchange_nodes_by_id(UXXmlWrapperBase* reference, UXXmlWrapperBase* target,
    const char* referenceIdAttribute, const char* targetIdAttribute);
int uxtree_update_changes(UXXmlWrapperBase* tree, UXScriptObject* oldValues);
int ux_is_same(UXScriptObject* a, UXScriptObject* b);
int uxget_changed(UXScriptObject* first, UXScriptObject* second, bool caseSensitive);

// --- uxtree/data/copy.h

int uxtree_copy_values_by_id(UXXmlWrapperBase* source, UXXmlWrapperBase* destination, int setMode,
    const char* sourceIdAttribute, const char* destinationIdAttribute, int themeFlag,
    int validateOff, int skipEmpty, int useFlag, int themeOff);
int uxtree_whole_copy_values_by_id(UXXmlWrapperBase* source, UXXmlWrapperBase* destination);
int uxtree_copy_atts_by_id(UXXmlWrapperBase* source, UXXmlWrapperBase* destination,
    const char* attribute, const char* sourceIdAttribute, const char* destinationIdAttribute,
    const char* secondAttribute, int rename);
int uxtree_copy_ids_by_tagname(UXXmlWrapperBase* source, UXXmlWrapperBase* destination,
    bool leavesOnly);

// --- uxtree/data/ids.h

int uxtree_make_one_set_ID(unsigned short index, unsigned short set);
int uxtree_is_ID_in_one_set(int id, unsigned short set);
int uxtree_is_in_ids_range(UXXmlWrapperBase* node, int low, int high, int extra);
int uxtree_combine_treenode_id_with_repeat_id(UXXmlWrapperBase* node, int* dataId, int* repeatOut,
    int inheritedRepeat);

// --- uxtree/data/key_values.h

int uxtree_branch_to_key_value_pairs_str(UXXmlWrapperBase* branch, CStringUTF8* out,
    char keySeparator, char pairSeparator);
int uxtree_key_value_pairs_str_to_branch(UXXmlWrapperBase* branch, const char* text,
    char keySeparator, char pairSeparator);
int uxtree_add_path_str(UXXmlWrapperBase* branch, const char* attribute, int recursive,
    int includeSelf);

// --- uxtree/data/labels.h

int uxtree_combine_data_label(CStringUTF8* out, UXScriptObject* labels, bool addPrefix,
    bool parenthesizeAlways, bool strict);
// uxtree_get_node_label passes a class by value, so C cannot call it.
int uxtree_get_localization_node(UXXmlWrapperBase* out, UXXmlWrapperBase* tree, int id,
    int fallbackId, int parentId, int checkEmpty, int category);
bool uxtree_get_replaced_combined_label(CStringUTF8* out, CStringUTF8* label, UXScriptObject* find,
    UXScriptObject* replacements, const char* prefix);
int uxtree_recursively_replace_label_attributes(UXXmlWrapperBase* node, const char* oldText,
    const char* newText);
int uxtree_recursively_replace_combined_label_attributes(UXXmlWrapperBase* node,
    UXScriptObject* find, UXScriptObject* replacements, const char* prefix);

// --- uxtree/data/saved.h

int uxtree_save_values_with_ids(UXXmlWrapperBase* target, UXScriptObject* ids,
    UXScriptObject* values, const char* comment, UXScriptObject* labels);
int uxtree_tree_save_values_with_ids(const char* path, UXScriptObject* ids, UXScriptObject* values,
    const char* comment, UXScriptObject* labels);
int uxtree_tree_read_values_with_ids(const char* path, UXScriptObject* ids, UXScriptObject* values,
    CStringUTF8* comment);

// --- uxtree/data/themes.h

bool uxtree_tree_get_theme_file_name(UXXmlWrapperBase* tree, CStringUTF8* out);
bool uxtree_tree_set_theme_file_name(UXXmlWrapperBase* tree, const char* name);
int uxtree_tree_get_theme_type(UXXmlWrapperBase* tree);
bool uxtree_is_inclist_theme(UXXmlWrapperBase* node);
int uxtree_theme_tree_get_node_by_id(UXXmlWrapperBase* out, UXXmlWrapperBase* themeTree, int id,
    int depth, bool recursive);
int uxtree_theme_tree_get_node_by_index(UXXmlWrapperBase* out, UXXmlWrapperBase* themeTree, int id,
    int index, int depth, bool recursive);
int uxtree_theme_tree_get_range_from_range_style(UXXmlWrapperBase* style, int* left, int* top,
    int* right, int* bottom);
int uxtree_set_theme(UXXmlWrapperBase* target, UXScriptObject* ids, UXScriptObject* values,
    const char* comment);
void uxtree_get_theme(UXXmlWrapperBase* document, UXScriptObject* ids, UXScriptObject* values,
    CStringUTF8* comment, UXScriptObject* labels);

// --- uxtree/data/values.h

int uxtree_get_values_with_ids(UXXmlWrapperBase* tree, UXScriptObject* ids, UXScriptObject* values,
    int recursive, int onlyChanged, int inheritedRepeat, const char* idAttribute, int themeFlag,
    CStringUTF8* errorText);
int uxtree_set_values_by_ids(UXXmlWrapperBase* tree, UXScriptObject* ids, UXScriptObject* values,
    int inheritedRepeat, int* duplicate, int setMode, const char* idAttribute,
    CStringUTF8* errorText);
int uxtree_set_values_by_nodeids(UXXmlWrapperBase* tree, UXScriptObject* ids,
    UXScriptObject* values);
int uxtree_get_values(UXXmlWrapperBase* node, UXScriptObject* values, bool childrenOnly);
void uxtree_clear_all_value(UXXmlWrapperBase* tree);
void uxtree_recursively_replace_values(UXXmlWrapperBase* node, const char* oldText,
    const char* newText);

// --- uxtree/outline/layout.h

int uxtree_layout(UXXmlWrapperBase* target, UXXmlWrapperBase* source, const char* fileName,
    DWORD flags);

// --- uxtree/outline/xpath.h

int uxtree_xpath(UXScriptObject* values, UXScriptObject* offsets, UXScriptObject* names,
    UXXmlWrapperBase* tree, const char* reserved, const char* path, bool table);

// --- uxtree/import/n42.h

int uxtree_n42(UXXmlWrapperBase* tree, const char* path, UXScriptObject* detectors,
    UXXmlWrapperBase* infoTree, DWORD flags);

// --- uxtree/import/xde_paths.h

int uxtree_XDE_get_attributes(UXScriptObject* names, UXScriptObject* values, UXXmlWrapperBase* node,
    DWORD filter);
int uxtree_XDE_treenode_path_array_to_string(CStringUTF8* text, UXScriptObject* path, bool escape);
int uxtree_XDE_treenode_path_string_to_array(UXScriptObject* path, const char* text, bool escape);
int uxtree_XDE_treenode_one_path_as_array_to_string(CStringUTF8* text, UXScriptObject* path);
int uxtree_get_XDE_treenode_string_for_path_in_tree(CStringUTF8* name, UXXmlWrapperBase* node);
int uxtree_find_XDE_treenode_from_path_in_tree(UXXmlWrapperBase* found, UXXmlWrapperBase* tree,
    UXScriptObject* path, int start, int byTagOnly, UXScriptObject* rest, int allowSlice);
int uxtree_XDE_convert_tree_val_to_string(CStringUTF8* out, UXXmlWrapperBase* node);
int uxtree_XDE_convert_whole_tree_val_to_string(CStringUTF8* out, UXXmlWrapperBase* node);
int uxtree_XDE_DatNav_prepare_standard_source_tree(UXXmlWrapperBase* tree, UXScriptObject* paths,
    DWORD flags);
int uxtree_save_XDE_array_info(UXXmlWrapperBase* node, int rows, int cols);
int uxtree_set_XDE_file_info_data_id(UXXmlWrapperBase* node, int dataId);

// --- uxtree/import/xde_prepare.h

int uxtree_XDE_prepare_XML(UXXmlWrapperBase* tree, const char* path, DWORD flags);

// --- uxtree/analysis/auto_support.h

int uxtree_get_auto_support(UXXmlWrapperBase* node, CStringUTF8* name, int* count);
int uxtree_set_auto_support(UXXmlWrapperBase* node, int mode, const char* name, int count);

// --- uxtree/analysis/dialog.h

int uxtree_tree_check_add_input_data_branch(UXXmlWrapperBase* range, UXXmlWrapperBase* inputTree,
    UXScriptObject* names, UXScriptObject* labels, int addFlags, int rangeIndex, int valueIndex,
    const char* value);
int uxtree_GETN_reset_hidden_values(UXXmlWrapperBase* node, UXScriptObject* dataIds,
    bool recursive);

// --- uxtree/analysis/fitter.h

int uxtree_fitter_get_weight_mth_info(int method, CStringUTF8* name, int* usesData, int* usesA,
    int* usesB, int* usesC);
void uxtree_nlsf_add_params_node_DataID(UXXmlWrapperBase* params, int count);
bool uxtree_nlf_set_bool_param_from_user_params_setting(UXXmlWrapperBase* params,
    UXScriptObject* values, int listDataID);
bool uxtree_nlf_set_double_param_from_user_params_setting(UXXmlWrapperBase* params,
    UXScriptObject* values, int listDataID);
bool uxtree_nlf_set_int_param_from_user_params_setting(UXXmlWrapperBase* params,
    UXScriptObject* values, int listDataID);

// --- uxtree/analysis/ranges.h

int uxtree_composite_range_get_entire_worksheet_support(UXXmlWrapperBase* node);
void uxtree_composite_range_set_entire_worksheet_support(UXXmlWrapperBase* node, int value);
int uxtree_set_composite_subrange_values(UXXmlWrapperBase* range, const char* x, const char* y,
    const char* z, int stored, int rangeType, int join, int reset);

// --- uxtree/analysis/stats.h

int uxtree_stats_enum_result_node(UXXmlWrapperBase* parent, UXXmlWrapperBase* cur, int* row,
    int* col);
int uxtree_stats_get_boxchart_box_node(UXXmlWrapperBase* node, UXXmlWrapperBase* out);
int uxtree_stats_get_boxchart_whisker_node(UXXmlWrapperBase* node, UXXmlWrapperBase* out);
void uxtree_stats_get_set_bin_info(UXXmlWrapperBase* node, double* min, double* max, double* size,
    int* space, int get);
void uxtree_stats_get_set_bin_intervals(UXXmlWrapperBase* node, double* min, double* max,
    int* intervals, int* space, int get);
void uxtree_stats_get_set_box_info(UXXmlWrapperBase* node, double* top, double* topX,
    double* bottom, double* bottomX, double* center, int get);
void uxtree_stats_get_set_counts(UXXmlWrapperBase* node, UXScriptObject* values, int get);
int uxtree_stats_get_set_interpolate(UXXmlWrapperBase* node, int* value, int get);
void uxtree_stats_get_set_output_distribution(UXXmlWrapperBase* node, int* value, int get);
void uxtree_stats_get_set_percentiles(UXXmlWrapperBase* node, UXScriptObject* values, int get);
void uxtree_stats_get_set_stats_results(UXXmlWrapperBase* node, tagDescStatResults* results,
    double* min, double* max, int get);
int uxtree_stats_get_set_trials_num(UXXmlWrapperBase* node, int* value, int get);
int uxtree_stats_get_set_var_divisor(UXXmlWrapperBase* node, int* value, int get);
void uxtree_stats_get_set_whisker_info(UXXmlWrapperBase* node, double* top, double* bottom,
    int get);
int uxtree_stats_is_bin_auto(UXXmlWrapperBase* node);
int uxtree_stats_is_by_intervals(UXXmlWrapperBase* node);
int uxtree_stats_result_get_set_counts(UXXmlWrapperBase* node, UXScriptObject* values, int get);
int uxtree_stats_result_get_set_details(UXXmlWrapperBase* node, tagHistogramStatsResult* details,
    int get);
void uxtree_stats_set_bin_auto(UXXmlWrapperBase* node, int value);
void uxtree_stats_set_by_intervals(UXXmlWrapperBase* node, int value);

// --- uxtree/report/report.h

int report_get_escaped_data_string(CStringUTF8* out, int index, int dotted, char typeChar,
    char suffix, int typeFlags, char separator, int tailNumber);
int report_get_escaped_label_data_string(CStringUTF8* out, int index, int labelRow, char suffix,
    int tailNumber, int dotted, char separator, const char* labelName, char typeChar);
int report_get_set_data_string(UXScriptObject* out, int index, int reserved,
    UXScriptObject* labelRows, const char* labelName, unsigned char set);
int report_get_escaped_data_string_ex(UXScriptObject* out, int index, UXScriptObject* labelRows,
    int suffix, int dataDotted, int dataTypeChar, int typeFlags, int dataSeparator,
    int dataTailNumber, int labelTailNumber, int labelDotted, int labelSeparator,
    const char* labelName, int labelTypeChar);
int report_set_escaped_data_string_type(CStringUTF8* text, char type);
int report_make_input_data_table_var_row(UXXmlWrapperBase* row, UXXmlWrapperBase* table, int set,
    int variable, int dependent, int dataIndex, int suffix, int tailNumber, int paramSet,
    int variablesPerSet, int weightMethod, UXXmlWrapperBase* paramTree, int weightColumn,
    const char* rowLabel, int paramIndex);
int report_update_input_data_table(UXXmlWrapperBase* table, UXXmlWrapperBase* paramTree,
    int variablesPerSet);

#ifdef __cplusplus
}
#endif
#endif
