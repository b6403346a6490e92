// Weights and parameter settings of the fitter.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int VCTreeGetFitterWeightStrings(int method, CStringUTF8* name, CWBOStringArray* all,
                                            int messageOption);
UXTREE_API int vctree_extract_weight_info(UXXmlWrapperBase& node, const char* tag, int* method,
                                          double* a, double* b, double* c);
UXTREE_API int vctree_fitter_data_weight_node_compact_to_expanded(UXXmlWrapperBase& expanded,
                                                                  UXXmlWrapperBase& compact);
UXTREE_API int vctree_fitter_data_weight_node_expanded_to_compact(UXXmlWrapperBase& compact,
                                                                  UXXmlWrapperBase& expanded);
UXTREE_API int vctree_update_fitter_data_weight_node(UXXmlWrapperBase& weight, int method,
                                                     DWORD& change, const char* data, double* a,
                                                     double* b, double* c, int onlyIfChanged,
                                                     int disable);
extern "C" {
UXTREE_API int uxtree_fitter_get_weight_mth_info(int method, CStringUTF8* name, int* usesData,
                                                 int* usesA, int* usesB, int* usesC);
UXTREE_API void uxtree_nlsf_add_params_node_DataID(UXXmlWrapperBase* params, int count);
UXTREE_API bool uxtree_nlf_set_bool_param_from_user_params_setting(UXXmlWrapperBase* params,
                                                                   UXScriptObject* values,
                                                                   int listDataID);
UXTREE_API bool uxtree_nlf_set_double_param_from_user_params_setting(UXXmlWrapperBase* params,
                                                                     UXScriptObject* values,
                                                                     int listDataID);
UXTREE_API bool uxtree_nlf_set_int_param_from_user_params_setting(UXXmlWrapperBase* params,
                                                                  UXScriptObject* values,
                                                                  int listDataID);
}
