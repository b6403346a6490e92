// Option trees that drive dialogs.
//
// The kind of a node is its ID: 10 and 13 are values that reset to 0, 11 a menu item, 35 an
// input-data item, 0x10000000 a branch. A node without ID has kind 0.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// The role of a variable by its child "io": 0 or unreadable is an input, 1 an output, any other
// number both, or neither when strict. A node without "io" is neither.
UXTREE_API bool XVarNode_IsInput(UX_IN UXXmlWrapperBase& node, bool strict) UX_RETURNS(yes, no = 0);
UXTREE_API bool XVarNode_IsOutput(UX_IN UXXmlWrapperBase& node, bool strict)
    UX_RETURNS(yes, no = 0);
// Does the node show its label as its value (bit 0x4000 of "DispFormat")? False for a bad node.
UXTREE_API bool XVarNode_IsUseLabelForValue(UX_IN UXXmlWrapperBase* node) UX_RETURNS(yes, no = 0);
// Finds or creates input-data items in a range of an input tree; range receives that range.
//
//   labels       parallel to names; null, missing and empty entries write no label
//   addFlags     the ID of a range that is added
//   rangeIndex   0: the tree itself. k above 0: the child at position k - 1 whatever its tag, else
//                a new range of number k. -k: always a new one.
//   valueIndex   which item gets value; negative: all of them. A null or empty value is not
//                written.
//
// True, or false with nothing changed for a null range, tree or names, or an invalid tree.
UXTREE_API bool VCTreeCheckAddInputDataBranch(
    UX_OUT UXXmlWrapperBase* range, UX_EDITS UXXmlWrapperBase* inputTree,
    UX_IN const CWBOStringArray* names, UX_OPT UX_IN const CWBOStringArray* labels, int addFlags,
    int rangeIndex, int valueIndex, UX_OPT const char* value) UX_RETURNS(done, unusable = 0);
// Resets the children (recursive: all nodes below) whose DataID is above 0 and among dataIds, which
// must be sorted ascending: the search stops at the first larger element. Values become 0, a
// branch's "Use" becomes 0, nodes of other kinds stay. The number of nodes found, of whatever kind;
// -1 for bad arguments.
UXTREE_API int vctree_GETN_reset_hidden_values(UX_EDITS UXXmlWrapperBase* node,
                                               UX_IN CArray<int, int>* dataIds, bool recursive)
    UX_RETURNS(count, unusable = -1);
// Makes a menu of a tree, the given node included: leaves whose DataID is missing or below 1 become
// items and get nextId, which counts on; nodes with children become branches. The number of leaves
// that got an identifier; -1 for a bad node.
UXTREE_API int VCTreePrepareForMenu(UX_EDITS UXXmlWrapperBase* node, UX_INOUT DWORD& nextId)
    UX_RETURNS(count, unusable = -1);
// Is one of the interactive options in mask set? The nearest node with readable
// "InteractiveOptions", from the node itself upward, decides. 1 or 0.
UXTREE_API int vctree_test_ICOPT_recursively(UX_IN UXXmlWrapperBase& node, DWORD mask)
    UX_RETURNS(yes, no = 0);
// Overwrites the destination's "Branch" with the source's, masked. 1, or 0 when the source has none
// or a node is invalid.
UXTREE_API int vctree_copy_branch_options(UX_EDITS UXXmlWrapperBase& destination,
                                          UX_IN UXXmlWrapperBase& source, DWORD mask)
    UX_RETURNS(done, not_found = 0);
// Ids of the plot and the data marker that belong to a tree. 1, or 0 for an invalid node and, with
// the variable or the destination untouched, when there is none to read.
UXTREE_API int vctree_set_plot_uid_to_tree(UX_EDITS UXXmlWrapperBase& tree, int uid)
    UX_RETURNS(done, unusable = 0);
UXTREE_API int vctree_get_plot_uid_from_tree(UX_IN UXXmlWrapperBase& tree, UX_OUT int& uid)
    UX_RETURNS(done, not_found = 0);
UXTREE_API int vctree_set_data_marker_id_to_tree(UX_EDITS UXXmlWrapperBase& tree, int id)
    UX_RETURNS(done, unusable = 0);
UXTREE_API int vctree_get_data_marker_id_from_tree(UX_IN UXXmlWrapperBase& tree, UX_OUT int& id)
    UX_RETURNS(done, not_found = 0);
UXTREE_API int vctree_copy_plot_uid_from_tree_to_tree(UX_EDITS UXXmlWrapperBase& destination,
                                                      UX_IN UXXmlWrapperBase& source)
    UX_RETURNS(done, not_found = 0);
extern "C" {
// Script forms. The first yields 1 or 0; both refuse arrays of another type as null ones.
UXTREE_API int uxtree_tree_check_add_input_data_branch(
    UX_OUT UXXmlWrapperBase* range, UX_EDITS UXXmlWrapperBase* inputTree,
    UX_STRINGS UXScriptObject* names, UX_OPT UX_STRINGS UXScriptObject* labels, int addFlags,
    int rangeIndex, int valueIndex, UX_OPT const char* value) UX_RETURNS(done, unusable = 0);
UXTREE_API int uxtree_GETN_reset_hidden_values(UX_EDITS UXXmlWrapperBase* node,
                                               UX_INTS UXScriptObject* dataIds, bool recursive)
    UX_RETURNS(count, unusable = -1);
}
