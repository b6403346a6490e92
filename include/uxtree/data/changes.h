// Marking the nodes that changed, and stripping a tree to them.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API void VCTreeNodeGetValue(UXXmlWrapperBase& node, CStringUTF8& out);
UXTREE_API int VCTreeUpdateChanges(UXXmlWrapperBase* tree, CWBOStringArray* oldValues);
UXTREE_API __int64 VCTreeGetChanged(CArray<__int64, __int64>& indices, CWBOStringArray* first,
                                    CWBOStringArray* second, bool caseSensitive);
UXTREE_API __int64 VCTreeGetChanged(CWBOStringArray* first, CWBOStringArray* second,
                                    bool caseSensitive);
UXTREE_API int VCTreeIsSame(CArray<int, int>* a, CArray<int, int>* b);
extern "C" {
UXTREE_API int uxtree_node_changed(UXXmlWrapperBase* node, int set, const char* oldValue);
UXTREE_API int uxtree_remove_unchange_nodes_by_id(UXXmlWrapperBase* reference,
                                                  UXXmlWrapperBase* target,
                                                  const char* referenceIdAttribute,
                                                  const char* targetIdAttribute);
UXTREE_API int uxtree_update_changes(UXXmlWrapperBase* tree, UXScriptObject* oldValues);
UXTREE_API int ux_is_same(UXScriptObject* a, UXScriptObject* b);
UXTREE_API int uxget_changed(UXScriptObject* first, UXScriptObject* second, bool caseSensitive);
}
