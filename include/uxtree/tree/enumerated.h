// Families of children named by a prefix and a number, or by column letters.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
UXTREE_API int uxtree_get_next_enum_tag_name(UXXmlWrapperBase* tree, CStringUTF8* out,
                                             int numbered);
UXTREE_API void uxtree_get_enum_node_name(UXXmlWrapperBase* tree, CStringUTF8* out,
                                          const char* prefix);
UXTREE_API void uxtree_get_enum_attribute_value(UXXmlWrapperBase* tree, CStringUTF8* out,
                                                const char* attrName, const char* prefix,
                                                const char* suffix);
UXTREE_API void uxtree_check_add_enumerated_node(UXXmlWrapperBase* out, UXXmlWrapperBase* parent,
                                                 const char* prefix, int number, int id,
                                                 const char* attrName, const char* attrValue);
UXTREE_API bool uxtree_check_add_all_enumerated_nodes(UXXmlWrapperBase* parent, const char* prefix,
                                                      UXScriptObject* values, int existing = -1,
                                                      int maxChildren = -1, unsigned short set = 0,
                                                      const char* label = nullptr,
                                                      UXScriptObject* texts = nullptr);
}
