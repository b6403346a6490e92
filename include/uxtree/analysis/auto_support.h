// Automatic-update support of a node: a text "mode|name|count" in its attribute "Auto".
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int vctree_create_auto_support_string(CStringUTF8& out, int mode, const char* name,
                                                 int count);
UXTREE_API int vctree_parse_auto_support_string(const char* text, int& mode, CStringUTF8& name,
                                                int& count);
UXTREE_API int vctree_get_auto_support(UXXmlWrapperBase& node, CStringUTF8& name, int& count);
UXTREE_API int vctree_set_auto_support(UXXmlWrapperBase& node, int mode, const char* name,
                                       int count);
UXTREE_API void vctree_check_reset_auto_support(UXXmlWrapperBase& node);
extern "C" {
UXTREE_API int uxtree_get_auto_support(UXXmlWrapperBase* node, CStringUTF8* name, int* count);
UXTREE_API int uxtree_set_auto_support(UXXmlWrapperBase* node, int mode, const char* name,
                                       int count);
}
