// The theme bound to a tree, and lookups in a theme tree.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
UXTREE_API bool uxtree_tree_get_theme_file_name(UXXmlWrapperBase* tree, CStringUTF8* out);
UXTREE_API bool uxtree_tree_set_theme_file_name(UXXmlWrapperBase* tree, const char* name);
UXTREE_API int uxtree_tree_get_theme_type(UXXmlWrapperBase* tree);
UXTREE_API bool uxtree_is_inclist_theme(UXXmlWrapperBase* node);
UXTREE_API int uxtree_theme_tree_get_node_by_id(UXXmlWrapperBase* out, UXXmlWrapperBase* themeTree,
                                                int id, int depth, bool recursive);
UXTREE_API int uxtree_theme_tree_get_node_by_index(UXXmlWrapperBase* out,
                                                   UXXmlWrapperBase* themeTree, int id, int index,
                                                   int depth, bool recursive);
UXTREE_API int uxtree_theme_tree_get_range_from_range_style(UXXmlWrapperBase* style, int* left,
                                                            int* top, int* right, int* bottom);
UXTREE_API int uxtree_set_theme(UXXmlWrapperBase* target, UXScriptObject* ids,
                                UXScriptObject* values, const char* comment);
UXTREE_API void uxtree_get_theme(UXXmlWrapperBase* document, UXScriptObject* ids,
                                 UXScriptObject* values, CStringUTF8* comment,
                                 UXScriptObject* labels);
}
