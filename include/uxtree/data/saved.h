// Values with identifiers kept as a small document, in a file or in a tree.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API bool vctree_save_values_with_ids(UXXmlWrapperBase* target, CArray<int, int>* ids,
                                            CWBOStringArray* values, const char* comment,
                                            CWBOStringArray* labels);
UXTREE_API int vctree_save_values_with_ids(const char* path, CArray<int, int>* ids,
                                           CWBOStringArray* values, const char* comment,
                                           CWBOStringArray* labels);
UXTREE_API bool vctree_read_values_with_ids(const char* path, CArray<int, int>* ids,
                                            CWBOStringArray* values, CStringUTF8* comment);
UXTREE_API bool vctree_set_theme(UXXmlWrapperBase* target, CArray<int, int>* ids,
                                 CWBOStringArray* values, const char* comment);
UXTREE_API void vctree_get_theme(UXXmlWrapperBase* document, CArray<int, int>* ids,
                                 CWBOStringArray* values, CStringUTF8* comment,
                                 CWBOStringArray* labels);
extern "C" {
// tree form
UXTREE_API int uxtree_save_values_with_ids(UXXmlWrapperBase* target, UXScriptObject* ids,
                                           UXScriptObject* values, const char* comment,
                                           UXScriptObject* labels);
// file form
UXTREE_API int uxtree_tree_save_values_with_ids(const char* path, UXScriptObject* ids,
                                                UXScriptObject* values, const char* comment,
                                                UXScriptObject* labels);
UXTREE_API int uxtree_tree_read_values_with_ids(const char* path, UXScriptObject* ids,
                                                UXScriptObject* values, CStringUTF8* comment);
}
