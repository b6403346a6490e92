// Lists of values kept as the children of one node.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API void vctree_get_all_children_values_as_string_array(UXXmlWrapperBase& node,
                                                               CWBOStringArray& out);
UXTREE_API int VCTokenizedStringToArrayOfDoubles(CArray<double, double>& out,
                                                 const CStringUTF8& text, int strict);
extern "C" {
UXTREE_API void uxtree_value_from_vec_int_to_tree_sub_nodes(UXScriptObject* values,
                                                            UXXmlWrapperBase* node);
UXTREE_API void uxtree_value_from_vec_double_to_tree_sub_nodes(UXScriptObject* values,
                                                               UXXmlWrapperBase* node);
UXTREE_API void uxtree_value_from_vec_bool_to_tree_sub_nodes(UXScriptObject* values,
                                                             UXXmlWrapperBase* node);
UXTREE_API void uxtree_value_from_vec_string_to_tree_sub_nodes(UXScriptObject* values,
                                                               UXXmlWrapperBase* node);
UXTREE_API int uxtree_value_from_tree_sub_nodes_to_vector_int(UXXmlWrapperBase* node,
                                                              UXScriptObject* values);
UXTREE_API int uxtree_value_from_tree_sub_nodes_to_vector_double(UXXmlWrapperBase* node,
                                                                 UXScriptObject* values);
UXTREE_API int uxtree_value_from_tree_sub_nodes_to_vector_bool(UXXmlWrapperBase* node,
                                                               UXScriptObject* values);
UXTREE_API int uxtree_value_from_tree_sub_nodes_to_vector_string(UXXmlWrapperBase* node,
                                                                 UXScriptObject* values);
}
