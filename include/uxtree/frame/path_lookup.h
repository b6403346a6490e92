// Lookup and creation of nodes along a path of tags, and the default code page.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int wbxfu_tree_get_node(UXXmlWrapperBase& out, const UXXmlWrapperBase& start,
                                   const char* name, ...) UXTREE_SENTINEL;
UXTREE_API int wbxfu_tree_check_get_node(UXXmlWrapperBase& out, UXXmlWrapperBase& start,
                                         const char* name, ...) UXTREE_SENTINEL;
UXTREE_API int wbxfu_tree_check_get_node_ex(UXXmlWrapperBase& out, UXXmlWrapperBase& start,
                                            int create, const char* name, va_list rest);
UXTREE_API int wbxfu_tree_node_vector_value(UXXmlWrapperBase& tree, UXVectorDesc& vector, int get,
                                            const char* name, ...) UXTREE_SENTINEL;
extern "C" {
UXTREE_API int uxtree_set_default_code_page(int codePage);
}
