// Finding nodes by position, identifier, tag, attribute and path; finding or creating a child.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
UXTREE_API int uxtree_get_node(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, int index,
                               int* counter, int maxLevel, const char* attrName,
                               bool skipSubtreeOfMarked, bool branchesOnly, int level);
UXTREE_API int uxtree_get_node_ex(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, int index,
                                  unsigned int flags, const char* attrName);
UXTREE_API int uxtree_get_root_node(UXXmlWrapperBase* node, UXXmlWrapperBase* out);
UXTREE_API int uxtree_get_level(CStringUTF8* path, UXXmlWrapperBase* node, UXXmlWrapperBase* top,
                                int useEventRoot);
UXTREE_API int uxtree_get_row_number(UXXmlWrapperBase* tree, const char* path);
UXTREE_API int uxtree_get_node_by_id(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, int id,
                                     bool recursive);
UXTREE_API int uxtree_get_node_by_tagname(UXXmlWrapperBase* node, UXXmlWrapperBase* out,
                                          const char* tag, bool recursive, bool caseSensitive,
                                          bool leavesOnly);
UXTREE_API int uxtree_find_node(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, const char* attrName,
                                int value, bool recursive, int depth, int repeatId);
UXTREE_API int uxtree_find_node_ex(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
                                   const char* attrName, int id, int parentId, int parentRepeatId,
                                   int grandParentId, int grandParentRepeatId);
UXTREE_API int uxtree_find_node_by_dataID(UXXmlWrapperBase* out, UXXmlWrapperBase* tree, int id,
                                          int parentId, int parentRepeatId, int grandParentId,
                                          int grandParentRepeatId);
UXTREE_API int uxtree_find_node_with_attr_child(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
                                                const char* attrName, const char* attrValue,
                                                const char* childTag, const char* childValue);
UXTREE_API int uxtree_check_node_int_attr(UXXmlWrapperBase* node, UXScriptObject* names,
                                          UXScriptObject* values);
UXTREE_API int uxtree_check_node_str_attr(UXXmlWrapperBase* node, UXScriptObject* names,
                                          UXScriptObject* values, int noCase);
UXTREE_API int uxtree_find_node_with_int_attr(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
                                              UXScriptObject* names, UXScriptObject* values,
                                              bool recursive, int occurrence);
UXTREE_API int uxtree_find_node_with_str_attr(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
                                              UXScriptObject* names, UXScriptObject* values,
                                              bool recursive, int occurrence);
UXTREE_API int uxtree_tree_check_get_node(UXXmlWrapperBase* out, UXXmlWrapperBase* parent,
                                          const char* tag, int id, const char* attrName = nullptr,
                                          const char* attrValue = nullptr, int findFlag = 1);
UXTREE_API int uxtree_tree_check_get_node_by_attribute(UXXmlWrapperBase* out,
                                                       UXXmlWrapperBase* parent,
                                                       const char* attrName, const char* attrValue,
                                                       int flag, const char* newTag);
UXTREE_API int uxtree_check_get_node_by_dataid(UXXmlWrapperBase* parent, UXXmlWrapperBase* out,
                                               const char* tag, int dataId, const char* attrName,
                                               const char* attrValue);
UXTREE_API int uxtree_get_help_node(UXXmlWrapperBase* out, UXXmlWrapperBase* tree, int id,
                                    int category);
}
