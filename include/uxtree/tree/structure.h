// Deleting, pruning, hiding, moving, sorting, appending, filtering and renaming nodes.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int VCTreeCopyWithSkipping(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
                                      CWBOStringArray* skipAttrs, DWORD flags);
UXTREE_API int VCTreeSetTagName(UXXmlWrapperBase* node, const char* newName);
extern "C" {
UXTREE_API int uxtree_delete_nodes_by_attribute(UXXmlWrapperBase* tree, const char* attrName,
                                                int value, int recursive, const char* exemptAttr,
                                                int keepBranches);
UXTREE_API int uxtree_delete_nodes_by_missing_attribute(UXXmlWrapperBase* tree,
                                                        const char* attrName, int recursive,
                                                        int removeAttrFromKept, int keepBranches,
                                                        int checkSelf);
UXTREE_API int uxtree_remove_nodes_by_attribute(UXXmlWrapperBase* tree, const char* attrName,
                                                int value);
UXTREE_API int uxtree_remove_empty_child_nodes(UXXmlWrapperBase* tree, bool recursive);
UXTREE_API int uxtree_hide_empty_nodes(UXXmlWrapperBase* tree, bool recursive, bool showNonEmpty);
UXTREE_API int uxtree_move_node(UXXmlWrapperBase* tree, int fromIndex, int toIndex,
                                unsigned int flags, const char* attrName);
UXTREE_API bool uxtree_sort_children_by_int_attribute(UXXmlWrapperBase* node, const char* attrName,
                                                      int ascending);
UXTREE_API int uxtree_append_children(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
                                      const char* tagPrefix);
UXTREE_API int uxtree_filter(UXXmlWrapperBase* tree, int dataId, int modeA, int idA,
                             UXScriptObject* listA, int modeB, int idB, UXScriptObject* listB);
UXTREE_API int uxtree_filter_by_attrib_find(UXXmlWrapperBase* tree, int dataId,
                                            const char* attrName, const char* text,
                                            int caseSensitive, int atStart);
UXTREE_API int uxtree_filter_by_attrib_match(UXXmlWrapperBase* tree, int dataId,
                                             const char* attrName, const char* pattern,
                                             int matchFlag);
UXTREE_API void uxtree_polish_tree_keep_DataID(UXXmlWrapperBase* tree);
UXTREE_API int uxtree_adapt_for_tagname(CStringUTF8* name);
UXTREE_API int uxtree_copy_with_skipping(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
                                         UXScriptObject* skipAttrs, DWORD flags);
}
