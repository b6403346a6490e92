// Reading, setting, removing, saving and restoring one attribute over a branch.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Appends to values the integer attribute of every node below tree, in document order, and first of
// tree itself when includeSelf is nonzero; -1 where there is none. With null values, writes value
// into the attribute of all of them instead, or, when removeIfNegative is nonzero and value is
// negative, removes it. Always 0.
UXTREE_API int VCTreeAttributeValues(UX_EDITS UXXmlWrapperBase* tree, UX_IN const char* name,
                                     int value, UX_OPT UX_APPENDS CArray<int, int>* values,
                                     int removeIfNegative, int includeSelf)
    UX_RETURNS(says_nothing);
// Appends one text per node to out, in document order: the node's attribute, or "" where it has
// none, so that entry i always belongs to the i-th node.
//
//   directOnly  true: the children of tree alone; false: everything below tree.
//   skip        a child of tree for which it yields true is left out with its branch; may be empty.
//               Only the children of tree are asked.
//
// Always 0.
UXTREE_API int VCTreeGetAttributes(UX_IN UXXmlWrapperBase* tree, UX_APPENDS CWBOStringArray* out,
                                   UX_IN const char* name, bool directOnly,
                                   std::function<bool(UXXmlWrapperBase&)> skip)
    UX_RETURNS(says_nothing) UX_NATIVE_ONLY("takes a function");
// Writes value into the attribute (null or empty: "Show") of every node below tree whose key
// attribute (null or empty: "DataID") is one of ids. flag true compares the keys case-sensitively.
// Returns whether the search for the last identifier ended with a match, so it may be false
// although nodes were written.
UXTREE_API bool VCTreeSetAttributes(UX_EDITS UXXmlWrapperBase* tree,
                                    UX_IN const CArray<int, int>* ids, UX_OPT const char* value,
                                    UX_OPT const char* attribute, UX_OPT const char* keyAttr,
                                    bool flag) UX_RETURNS(yes, no = 0);
// VCTreeGetAttributes without a skip test. Always 0.
UXTREE_API int vctree_get_attributes(UX_IN UXXmlWrapperBase* tree, UX_APPENDS CWBOStringArray* out,
                                     UX_IN const char* name, bool directOnly)
    UX_RETURNS(says_nothing);
// Appends the tags of the nodes below tree to out, in document order; directOnly: of its children.
UXTREE_API void vctree_get_node_names(UX_IN UXXmlWrapperBase* tree, UX_APPENDS CWBOStringArray* out,
                                      bool directOnly);
// Sets and then clears bits of an integer attribute, so that clearing wins. A missing attribute
// counts as 0, and is not created when there are no bits to set.
UXTREE_API void vctree_modify_DWORD_attribute(UX_EDITS UXXmlWrapperBase* node,
                                              UX_IN const char* name, unsigned int clearBits,
                                              unsigned int setBits);
extern "C" {
// Clears and then sets bits of an integer attribute, so that setting wins. A missing attribute
// counts as 0 and is created. True when it was written.
UXTREE_API bool uxtree_modify_attribute(UX_EDITS UXXmlWrapperBase* node, UX_IN const char* name,
                                        unsigned int setBits, unsigned int clearBits)
    UX_RETURNS(done, not_done = 0);
// Removes the attribute from everything below tree, and from tree itself when includeSelf is
// nonzero. Returns how many nodes had it, -1 for an unusable tree or null name.
UXTREE_API int uxtree_remove_attribute(UX_EDITS UXXmlWrapperBase* tree, UX_IN const char* name,
                                       int includeSelf) UX_RETURNS(count, unusable = -1);
// Moves the integer attribute of tree and of every node below it to the name "StorePrefix" + name.
// A text that is no integer becomes 0. Returns the number of nodes, -1 for an unusable tree or null
// name.
UXTREE_API int uxtree_store_attribute(UX_EDITS UXXmlWrapperBase* tree, UX_IN const char* name)
    UX_RETURNS(count, unusable = -1);
// Moves the stored attributes back. Returns the number of nodes, -1 for an unusable tree or null
// name.
UXTREE_API int uxtree_restore_attribute(UX_EDITS UXXmlWrapperBase* tree, UX_IN const char* name)
    UX_RETURNS(count, unusable = -1);
// Copies one attribute to another node. 1, or 0 when source does not have it.
UXTREE_API int uxtree_node_copy_attribute(UX_IN UXXmlWrapperBase* source,
                                          UX_EDITS UXXmlWrapperBase* target, UX_IN const char* name)
    UX_RETURNS(done, not_found = 0);
// Copies one attribute from the nodes of source to those of target, paired by their places as long
// as both sides have children. childrenOnly nonzero leaves out the pair of source and target
// itself. Returns the number of attributes copied, -1 for an unusable tree or null name.
UXTREE_API int uxtree_copy_atts(UX_IN UXXmlWrapperBase* source, UX_EDITS UXXmlWrapperBase* target,
                                UX_IN const char* name, int childrenOnly)
    UX_RETURNS(count, unusable = -1);
// Sets bits of an integer attribute that node has, when one of its child leaves (deep: one of all
// the leaves below it) has a value. 1 when written, else 0.
UXTREE_API int uxtree_set_attribute_bit_if_not_empty(UX_EDITS UXXmlWrapperBase* node,
                                                     UX_IN const char* name, unsigned int bits,
                                                     bool deep) UX_RETURNS(done, not_done = 0);
// Writes the attribute into tree and everything below it, or into its children alone
// (childrenOnly); branchesOnly leaves leaves out. A null value is "". The name "Auto" switches the
// automatic support of the nodes on (see uxtree/analysis/auto_support.h), whatever the value.
UXTREE_API void uxtree_set_attribute_to_all_nodes(UX_EDITS UXXmlWrapperBase* tree,
                                                  UX_IN const char* name, UX_OPT const char* value,
                                                  bool childrenOnly, bool branchesOnly);
// Writes the attribute into tree and everything below it, or removes it (remove). Nodes with
// children take part when branchesToo is true. A node whose skip attribute has one of the skip
// values, in any case, is left out; what is below it is not. A null value is "", a null skipValues
// skips nothing, and an object that is no string array makes the call do nothing.
UXTREE_API void uxtree_set_attribute_with_skip(UX_EDITS UXXmlWrapperBase* tree,
                                               UX_IN const char* name, UX_OPT const char* value,
                                               UX_OPT const char* skipAttr,
                                               UX_OPT UX_STRINGS UXScriptObject* skipValues,
                                               bool branchesToo, bool remove);
// Counts the children of tree, with recursive nonzero everything below it: all when name is null;
// otherwise those whose attribute equals value, case-sensitively (null: has any value), and with
// countMissing nonzero also those without the attribute. -1 for an unusable tree.
UXTREE_API int uxtree_count_items_by_attribute(UX_IN UXXmlWrapperBase* tree,
                                               UX_NULL_COUNTS const char* name,
                                               UX_NULL_COUNTS const char* value, int countMissing,
                                               int recursive) UX_RETURNS(count, unusable = -1);
// 1 when every node below tree has the attribute, also when there is no node; 0 otherwise and for
// an unusable tree.
UXTREE_API int uxtree_all_nodes_has_attrib(UX_IN UXXmlWrapperBase* tree, UX_IN const char* name)
    UX_RETURNS(yes, no = 0);
// Script form of VCTreeAttributeValues without tree itself; -1 when values is no integer vector.
UXTREE_API int uxtree_attribute_values(UX_EDITS UXXmlWrapperBase* tree, UX_IN const char* name,
                                       int value, UX_OPT UX_APPENDS UX_INTS UXScriptObject* values,
                                       int removeIfNegative)
    UX_RETURNS(says_nothing, wrong_array = -1);
// Script form of vctree_get_attributes; -1 when out is no string array.
UXTREE_API int uxtree_get_attributes(UX_IN UXXmlWrapperBase* tree,
                                     UX_APPENDS UX_STRINGS UXScriptObject* out,
                                     UX_IN const char* name, int directOnly)
    UX_RETURNS(says_nothing, wrong_array = -1);
// Script form of VCTreeSetAttributes; 0 also when ids is no integer vector.
UXTREE_API int uxtree_set_attributes(UX_EDITS UXXmlWrapperBase* tree, UX_INTS UXScriptObject* ids,
                                     UX_OPT const char* value, UX_OPT const char* attribute,
                                     UX_OPT const char* keyAttr, bool flag) UX_RETURNS(yes, no = 0);
// Script form of vctree_get_node_names: 0, or -1 when out is no string array.
UXTREE_API int uxtree_get_node_names(UX_IN UXXmlWrapperBase* tree,
                                     UX_APPENDS UX_STRINGS UXScriptObject* out, int directOnly)
    UX_RETURNS(says_nothing, wrong_array = -1);
}
