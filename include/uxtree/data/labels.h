// Display labels of nodes, combined labels and localized texts.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API bool VCTreeAccessBlockLocalization(bool* value, bool get);
extern "C" {
UXTREE_API int uxtree_combine_data_label(CStringUTF8* out, UXScriptObject* labels, bool addPrefix,
                                         bool parenthesizeAlways, bool strict);
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
UXTREE_API CStringUTF8 uxtree_get_node_label(UXXmlWrapperBase* node, int mode);
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
UXTREE_API int uxtree_get_localization_node(UXXmlWrapperBase* out, UXXmlWrapperBase* tree, int id,
                                            int fallbackId, int parentId, int checkEmpty,
                                            int category);
UXTREE_API bool uxtree_get_replaced_combined_label(CStringUTF8* out, CStringUTF8* label,
                                                   UXScriptObject* find,
                                                   UXScriptObject* replacements,
                                                   const char* prefix);
UXTREE_API int uxtree_recursively_replace_label_attributes(UXXmlWrapperBase* node,
                                                           const char* oldText,
                                                           const char* newText);
UXTREE_API int uxtree_recursively_replace_combined_label_attributes(UXXmlWrapperBase* node,
                                                                    UXScriptObject* find,
                                                                    UXScriptObject* replacements,
                                                                    const char* prefix);
}
