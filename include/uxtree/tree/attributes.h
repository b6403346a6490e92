// Reading, setting, removing, saving and restoring one attribute over a branch.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int VCTreeAttributeValues(UXXmlWrapperBase* tree, const char* name, int value,
                                     CArray<int, int>* values, int removeIfNegative,
                                     int includeSelf);
UXTREE_API int VCTreeGetAttributes(UXXmlWrapperBase* tree, CWBOStringArray* out, const char* name,
                                   bool directOnly, std::function<bool(UXXmlWrapperBase&)> skip);
UXTREE_API bool VCTreeSetAttributes(UXXmlWrapperBase* tree, const CArray<int, int>* ids,
                                    const char* value, const char* attribute, const char* keyAttr,
                                    bool flag);
UXTREE_API int vctree_get_attributes(UXXmlWrapperBase* tree, CWBOStringArray* out, const char* name,
                                     bool directOnly);
UXTREE_API void vctree_get_node_names(UXXmlWrapperBase* tree, CWBOStringArray* out,
                                      bool directOnly);
UXTREE_API void vctree_modify_DWORD_attribute(UXXmlWrapperBase* node, const char* name,
                                              unsigned int clearBits, unsigned int setBits);
extern "C" {
UXTREE_API bool uxtree_modify_attribute(UXXmlWrapperBase* node, const char* name,
                                        unsigned int setBits, unsigned int clearBits);
UXTREE_API int uxtree_remove_attribute(UXXmlWrapperBase* tree, const char* name, int includeSelf);
UXTREE_API int uxtree_store_attribute(UXXmlWrapperBase* tree, const char* name);
UXTREE_API int uxtree_restore_attribute(UXXmlWrapperBase* tree, const char* name);
UXTREE_API int uxtree_node_copy_attribute(UXXmlWrapperBase* source, UXXmlWrapperBase* target,
                                          const char* name);
UXTREE_API int uxtree_copy_atts(UXXmlWrapperBase* source, UXXmlWrapperBase* target,
                                const char* name, int childrenOnly);
UXTREE_API int uxtree_set_attribute_bit_if_not_empty(UXXmlWrapperBase* node, const char* name,
                                                     unsigned int bits, bool deep);
UXTREE_API void uxtree_set_attribute_to_all_nodes(UXXmlWrapperBase* tree, const char* name,
                                                  const char* value, bool childrenOnly,
                                                  bool branchesOnly);
UXTREE_API void uxtree_set_attribute_with_skip(UXXmlWrapperBase* tree, const char* name,
                                               const char* value, const char* skipAttr,
                                               UXScriptObject* skipValues, bool branchesToo,
                                               bool remove);
UXTREE_API int uxtree_count_items_by_attribute(UXXmlWrapperBase* tree, const char* name,
                                               const char* value, int countMissing, int recursive);
UXTREE_API int uxtree_all_nodes_has_attrib(UXXmlWrapperBase* tree, const char* name);
UXTREE_API int uxtree_attribute_values(UXXmlWrapperBase* tree, const char* name, int value,
                                       UXScriptObject* values, int removeIfNegative);
UXTREE_API int uxtree_get_attributes(UXXmlWrapperBase* tree, UXScriptObject* out, const char* name,
                                     int directOnly);
UXTREE_API int uxtree_set_attributes(UXXmlWrapperBase* tree, UXScriptObject* ids, const char* value,
                                     const char* attribute, const char* keyAttr, bool flag);
UXTREE_API int uxtree_get_node_names(UXXmlWrapperBase* tree, UXScriptObject* out, int directOnly);
}
