// Weights and parameter settings of the fitter.
//
// A weight has a method (0 to 14) and, as the method needs them, weight data and the parameters A,
// B and C. The compact form, for storage, is one node: attributes "WeightMethod", "Weight_A",
// "Weight_B", "Weight_C", the weight data as its text. The expanded form, for dialogs, is a branch
// with the children "WeightMethod", "WeightData", "WeightA", "WeightB", "WeightC", of which those
// that the method does not need are hidden.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// The names of all methods into all (emptied first; may be null), and that of one method into name
// (may be null). messageOption is handed to the host's message table.
//
// The number of methods; or -1, with both outputs emptied, when a name is asked for and the host
// has none for the method.
UXTREE_API int VCTreeGetFitterWeightStrings(int method, UX_OPT UX_OUT CStringUTF8* name,
                                            UX_OPT UX_OUT CWBOStringArray* all, int messageOption)
    UX_RETURNS(count, not_found = -1);
// Reads a compact weight into the outputs, each of which may be null; what is missing is 0. A
// weight is a node whose tag begins with "W"; a tag that is given takes the place of the node's
// own. 1, or 0 with the outputs untouched for any other tag or an invalid node.
UXTREE_API int vctree_extract_weight_info(UX_IN UXXmlWrapperBase& node, UX_OPT const char* tag,
                                          UX_OPT UX_OUT int* method, UX_OPT UX_OUT double* a,
                                          UX_OPT UX_OUT double* b, UX_OPT UX_OUT double* c)
    UX_RETURNS(done, not_found = 0);
// Fills in the expanded form from the compact one. 1, also when the method is unknown and no inputs
// are made; 0 when a node is invalid.
UXTREE_API int vctree_fitter_data_weight_node_compact_to_expanded(
    UX_EDITS UXXmlWrapperBase& expanded, UX_IN UXXmlWrapperBase& compact)
    UX_RETURNS(done, unusable = 0);
// Copies the values of the expanded form, each only when it can be read, into the compact one. 1,
// or 0 with nothing written when one of the five children is missing.
UXTREE_API int vctree_fitter_data_weight_node_expanded_to_compact(
    UX_EDITS UXXmlWrapperBase& compact, UX_IN UXXmlWrapperBase& expanded)
    UX_RETURNS(done, not_found = 0);
// Gives an expanded weight another method: its inputs are created where missing, labelled, and
// shown or hidden as the method asks. data, a, b and c are written unless null, also into hidden
// inputs; "" clears the data.
//
//   change          0: as many inputs are shown as before, 1: fewer, 2: more. A new input counts as
//                   shown before.
//   onlyIfChanged   nonzero: the method the branch already has changes nothing and gives 0
//   disable         nonzero: the method may not be changed. Written in any case.
//
// 1, or 0 with change untouched for an unknown method or an invalid node.
UXTREE_API int vctree_update_fitter_data_weight_node(UX_EDITS UXXmlWrapperBase& weight, int method,
                                                     UX_OUT DWORD& change,
                                                     UX_NULL_COUNTS const char* data,
                                                     UX_OPT UX_IN double* a, UX_OPT UX_IN double* b,
                                                     UX_OPT UX_IN double* c, int onlyIfChanged,
                                                     int disable) UX_RETURNS(done, not_done = 0);
extern "C" {
// The name of a method and what it uses, 1 or 0 each; every output may be null. 1, or 0 with an
// empty name and all flags 0 for an unknown method.
UXTREE_API int uxtree_fitter_get_weight_mth_info(int method, UX_OPT UX_OUT CStringUTF8* name,
                                                 UX_OPT UX_OUT int* usesData,
                                                 UX_OPT UX_OUT int* usesA, UX_OPT UX_OUT int* usesB,
                                                 UX_OPT UX_OUT int* usesC)
    UX_RETURNS(done, not_found = 0);
// Prepares a branch of parameter settings: DataID 2900, three switches (2906 to 2908), and thirteen
// lists, found among the children by DataID, each with one child per parameter whose DataID is the
// list's plus 1, 2, ... Longer lists are trimmed. An invalid handle is bound to a new tree; a count
// below 0 is 0.
UXTREE_API void uxtree_nlsf_add_params_node_DataID(
    UX_MAY_BE_INVALID UX_EDITS UXXmlWrapperBase* params, int count);
// Write a vector into the list among the children of params that has the DataID, as
// uxtree_value_from_vec_*_to_tree_sub_nodes does. False, with nothing written, for a null or
// invalid params, a missing or wrong vector, and when no child has that DataID.
UXTREE_API bool uxtree_nlf_set_bool_param_from_user_params_setting(
    UX_EDITS UXXmlWrapperBase* params, UX_BOOLS UXScriptObject* values, int listDataID)
    UX_RETURNS(done, not_found = 0);
UXTREE_API bool uxtree_nlf_set_double_param_from_user_params_setting(
    UX_EDITS UXXmlWrapperBase* params, UX_DOUBLES UXScriptObject* values, int listDataID)
    UX_RETURNS(done, not_found = 0);
UXTREE_API bool uxtree_nlf_set_int_param_from_user_params_setting(UX_EDITS UXXmlWrapperBase* params,
                                                                  UX_INTS UXScriptObject* values,
                                                                  int listDataID)
    UX_RETURNS(done, not_found = 0);
}
