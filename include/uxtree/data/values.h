// Collecting the values of a tree by identifier, and setting them.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int vctree_get_values_with_ids(UXXmlWrapperBase* tree, CArray<int, int>* ids,
                                          CWBOStringArray* values, int recursive, int onlyChanged,
                                          int inheritedRepeat, const char* idAttribute,
                                          int themeFlag, CStringUTF8* errorText);
UXTREE_API int vctree_set_values_by_ids(UXXmlWrapperBase* tree, CArray<int, int>* ids,
                                        CWBOStringArray* values, int inheritedRepeat,
                                        int* duplicate, int setMode, const char* idAttribute,
                                        CStringUTF8* errorText);
UXTREE_API int vctree_empty_values_with_ids(UXXmlWrapperBase* tree);
UXTREE_API int vctree_set_values_by_nodeids(UXXmlWrapperBase* tree, CArray<int, int>* ids,
                                            CWBOStringArray* values);
UXTREE_API int VCTreeGetValues(UXXmlWrapperBase* node, CWBOStringArray* values, bool childrenOnly);
extern "C" {
UXTREE_API int uxtree_get_values_with_ids(UXXmlWrapperBase* tree, UXScriptObject* ids,
                                          UXScriptObject* values, int recursive, int onlyChanged,
                                          int inheritedRepeat, const char* idAttribute,
                                          int themeFlag, CStringUTF8* errorText);
UXTREE_API int uxtree_set_values_by_ids(UXXmlWrapperBase* tree, UXScriptObject* ids,
                                        UXScriptObject* values, int inheritedRepeat, int* duplicate,
                                        int setMode, const char* idAttribute,
                                        CStringUTF8* errorText);
UXTREE_API int uxtree_set_values_by_nodeids(UXXmlWrapperBase* tree, UXScriptObject* ids,
                                            UXScriptObject* values);
UXTREE_API int uxtree_get_values(UXXmlWrapperBase* node, UXScriptObject* values, bool childrenOnly);
UXTREE_API void uxtree_clear_all_value(UXXmlWrapperBase* tree);
UXTREE_API void uxtree_recursively_replace_values(UXXmlWrapperBase* node, const char* oldText,
                                                  const char* newText);
}
