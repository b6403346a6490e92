// Reading, setting, removing, saving and restoring one attribute over a branch.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Appends to values the integer attribute of every node below tree, in document order, and first of
// tree itself when includeSelf is nonzero; -1 where there is none. With null values, writes value
// into the attribute of all of them instead, or, when removeIfNegative is nonzero and value is
// negative, removes it. Always 0.
UXTREE_API int VCTreeAttributeValues(UXXmlWrapperBase* tree, const char* name, int value,
                                     CArray<int, int>* values, int removeIfNegative,
                                     int includeSelf);
// Appends one text per node to out, in document order: the node's attribute, or "" where it has
// none, so that entry i always belongs to the i-th node.
//
//   directOnly  true: the children of tree alone; false: everything below tree.
//   skip        a child of tree for which it yields true is left out with its branch; may be empty.
//               Only the children of tree are asked.
//
// Always 0.
UXTREE_API int VCTreeGetAttributes(UXXmlWrapperBase* tree, CWBOStringArray* out, const char* name,
                                   bool directOnly, std::function<bool(UXXmlWrapperBase&)> skip);
// Writes value into the attribute (null or empty: "Show") of every node below tree whose key
// attribute (null or empty: "DataID") is one of ids. flag true compares the keys case-sensitively.
// Returns whether the search for the last identifier ended with a match, so it may be false
// although nodes were written.
UXTREE_API bool VCTreeSetAttributes(UXXmlWrapperBase* tree, const CArray<int, int>* ids,
                                    const char* value, const char* attribute, const char* keyAttr,
                                    bool flag);
// VCTreeGetAttributes without a skip test. Always 0.
UXTREE_API int vctree_get_attributes(UXXmlWrapperBase* tree, CWBOStringArray* out, const char* name,
                                     bool directOnly);
// Appends the tags of the nodes below tree to out, in document order; directOnly: of its children.
UXTREE_API void vctree_get_node_names(UXXmlWrapperBase* tree, CWBOStringArray* out,
                                      bool directOnly);
// Sets and then clears bits of an integer attribute, so that clearing wins. A missing attribute
// counts as 0, and is not created when there are no bits to set.
UXTREE_API void vctree_modify_DWORD_attribute(UXXmlWrapperBase* node, const char* name,
                                              unsigned int clearBits, unsigned int setBits);
extern "C" {
// Clears and then sets bits of an integer attribute, so that setting wins. A missing attribute
// counts as 0 and is created. True when it was written.
UXTREE_API bool uxtree_modify_attribute(UXXmlWrapperBase* node, const char* name,
                                        unsigned int setBits, unsigned int clearBits);
// Removes the attribute from everything below tree, and from tree itself when includeSelf is
// nonzero. Returns how many nodes had it, -1 for an unusable tree or null name.
UXTREE_API int uxtree_remove_attribute(UXXmlWrapperBase* tree, const char* name, int includeSelf);
// Moves the integer attribute of tree and of every node below it to the name "StorePrefix" + name.
// A text that is no integer becomes 0. Returns the number of nodes, -1 for an unusable tree or null
// name.
UXTREE_API int uxtree_store_attribute(UXXmlWrapperBase* tree, const char* name);
// Moves the stored attributes back. Returns the number of nodes, -1 for an unusable tree or null
// name.
UXTREE_API int uxtree_restore_attribute(UXXmlWrapperBase* tree, const char* name);
// Copies one attribute to another node. 1, or 0 when source does not have it.
UXTREE_API int uxtree_node_copy_attribute(UXXmlWrapperBase* source, UXXmlWrapperBase* target,
                                          const char* name);
// Copies one attribute from the nodes of source to those of target, paired by their places as long
// as both sides have children. childrenOnly nonzero leaves out the pair of source and target
// itself. Returns the number of attributes copied, -1 for an unusable tree or null name.
UXTREE_API int uxtree_copy_atts(UXXmlWrapperBase* source, UXXmlWrapperBase* target,
                                const char* name, int childrenOnly);
// Sets bits of an integer attribute that node has, when one of its child leaves (deep: one of all
// the leaves below it) has a value. 1 when written, else 0.
UXTREE_API int uxtree_set_attribute_bit_if_not_empty(UXXmlWrapperBase* node, const char* name,
                                                     unsigned int bits, bool deep);
// Writes the attribute into tree and everything below it, or into its children alone
// (childrenOnly); branchesOnly leaves leaves out. A null value is "". The name "Auto" switches the
// automatic support of the nodes on (see uxtree/analysis/auto_support.h), whatever the value.
UXTREE_API void uxtree_set_attribute_to_all_nodes(UXXmlWrapperBase* tree, const char* name,
                                                  const char* value, bool childrenOnly,
                                                  bool branchesOnly);
// Writes the attribute into tree and everything below it, or removes it (remove). Nodes with
// children take part when branchesToo is true. A node whose skip attribute has one of the skip
// values, in any case, is left out; what is below it is not. A null value is "", a null skipValues
// skips nothing, and an object that is no string array makes the call do nothing.
UXTREE_API void uxtree_set_attribute_with_skip(UXXmlWrapperBase* tree, const char* name,
                                               const char* value, const char* skipAttr,
                                               UXScriptObject* skipValues, bool branchesToo,
                                               bool remove);
// Counts the children of tree, with recursive nonzero everything below it: all when name is null;
// otherwise those whose attribute equals value, case-sensitively (null: has any value), and with
// countMissing nonzero also those without the attribute. -1 for an unusable tree.
UXTREE_API int uxtree_count_items_by_attribute(UXXmlWrapperBase* tree, const char* name,
                                               const char* value, int countMissing, int recursive);
// 1 when every node below tree has the attribute, also when there is no node; 0 otherwise and for
// an unusable tree.
UXTREE_API int uxtree_all_nodes_has_attrib(UXXmlWrapperBase* tree, const char* name);
// Script form of VCTreeAttributeValues without tree itself; -1 when values is no integer vector.
UXTREE_API int uxtree_attribute_values(UXXmlWrapperBase* tree, const char* name, int value,
                                       UXScriptObject* values, int removeIfNegative);
// Script form of vctree_get_attributes; -1 when out is no string array.
UXTREE_API int uxtree_get_attributes(UXXmlWrapperBase* tree, UXScriptObject* out, const char* name,
                                     int directOnly);
// Script form of VCTreeSetAttributes; 0 also when ids is no integer vector.
UXTREE_API int uxtree_set_attributes(UXXmlWrapperBase* tree, UXScriptObject* ids, const char* value,
                                     const char* attribute, const char* keyAttr, bool flag);
// Script form of vctree_get_node_names: 0, or -1 when out is no string array.
UXTREE_API int uxtree_get_node_names(UXXmlWrapperBase* tree, UXScriptObject* out, int directOnly);
}
