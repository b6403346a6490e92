// Option trees that drive dialogs.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API bool XVarNode_IsInput(UXXmlWrapperBase& node, bool strict);
UXTREE_API bool XVarNode_IsOutput(UXXmlWrapperBase& node, bool strict);
UXTREE_API bool XVarNode_IsUseLabelForValue(UXXmlWrapperBase* node);
UXTREE_API bool VCTreeCheckAddInputDataBranch(UXXmlWrapperBase* range, UXXmlWrapperBase* inputTree,
                                              const CWBOStringArray* names,
                                              const CWBOStringArray* labels, int addFlags,
                                              int rangeIndex, int valueIndex, const char* value);
UXTREE_API int vctree_GETN_reset_hidden_values(UXXmlWrapperBase* node, CArray<int, int>* dataIds,
                                               bool recursive);
UXTREE_API int VCTreePrepareForMenu(UXXmlWrapperBase* node, DWORD& nextId);
UXTREE_API int vctree_test_ICOPT_recursively(UXXmlWrapperBase& node, DWORD mask);
UXTREE_API int vctree_copy_branch_options(UXXmlWrapperBase& destination, UXXmlWrapperBase& source,
                                          DWORD mask);
UXTREE_API int vctree_set_plot_uid_to_tree(UXXmlWrapperBase& tree, int uid);
UXTREE_API int vctree_get_plot_uid_from_tree(UXXmlWrapperBase& tree, int& uid);
UXTREE_API int vctree_set_data_marker_id_to_tree(UXXmlWrapperBase& tree, int id);
UXTREE_API int vctree_get_data_marker_id_from_tree(UXXmlWrapperBase& tree, int& id);
UXTREE_API int vctree_copy_plot_uid_from_tree_to_tree(UXXmlWrapperBase& destination,
                                                      UXXmlWrapperBase& source);
extern "C" {
UXTREE_API int uxtree_tree_check_add_input_data_branch(
    UXXmlWrapperBase* range, UXXmlWrapperBase* inputTree, UXScriptObject* names,
    UXScriptObject* labels, int addFlags, int rangeIndex, int valueIndex, const char* value);
UXTREE_API int uxtree_GETN_reset_hidden_values(UXXmlWrapperBase* node, UXScriptObject* dataIds,
                                               bool recursive);
}
