// Marking the nodes that changed, and stripping a tree to them.
//
// A node is marked as changed by its attribute "OldValue", whose text is the value before the
// change.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// The text of a leaf; "" for a branch and an invalid node.
UXTREE_API void VCTreeNodeGetValue(UX_IN UXXmlWrapperBase& node, UX_OUT CStringUTF8& out);
// Compares the nodes below tree, in document order, with the old values, case-sensitively: branches
// have an entry, too, and the value "". A node that differs is marked with its old value, any other
// one, and those beyond the list, lose their mark. Returns the number of marked nodes; -1 for an
// unusable tree or a null list.
UXTREE_API int VCTreeUpdateChanges(UX_EDITS UXXmlWrapperBase* tree,
                                   UX_IN CWBOStringArray* oldValues)
    UX_RETURNS(count, unusable = -1);
// Appends the positions at which the lists differ to indices and returns the length of indices; -1
// when the lists differ in length or one is null.
UXTREE_API __int64 VCTreeGetChanged(UX_APPENDS CArray<__int64, __int64>& indices,
                                    UX_IN CWBOStringArray* first, UX_IN CWBOStringArray* second,
                                    bool caseSensitive) UX_RETURNS(count, unusable = -1);
// The first position at which the lists differ; -1 when they are equal, -2 when they differ in
// length or one is null.
UXTREE_API __int64 VCTreeGetChanged(UX_IN CWBOStringArray* first, UX_IN CWBOStringArray* second,
                                    bool caseSensitive)
    UX_RETURNS(count, equal = -1, lengths_differ = -2);
// 1 when the arrays are equal, else 0; 0 also for a null array.
UXTREE_API int VCTreeIsSame(UX_IN CArray<int, int>* a, UX_IN CArray<int, int>* b)
    UX_RETURNS(yes, no = 0);
extern "C" {
// set 0: 1 when the node is marked, else 0. Otherwise marks the node with oldValue ("" included),
// or, when oldValue is null, removes the mark and "OldName"; 1. 0 for an unusable node.
UXTREE_API int uxtree_node_changed(UX_EDITS UXXmlWrapperBase* node, int set,
                                   UX_NULL_COUNTS const char* oldValue) UX_RETURNS(yes, no = 0);
// Removes from target the leaves whose values equal those of reference under the same identifier,
// ignoring ASCII case, and the branches that lose all their children thereby. The attribute names
// are "DataID" when null or empty.
//
// Returns the number of removed nodes, 0 when reference has no identifiers, or
//   -1  a tree is unusable
//   -4  reference has an identifier below 1 twice; one of 1 or more twice gives it negated
//   -5  a node of target breaks the rules of repeated identifiers; what was removed stays removed
UXTREE_API int uxtree_remove_unchange_nodes_by_id(UX_IN UXXmlWrapperBase* reference,
                                                  UX_EDITS UXXmlWrapperBase* target,
                                                  UX_OPT const char* referenceIdAttribute,
                                                  UX_OPT const char* targetIdAttribute)
    UX_RETURNS(count, unusable = -1, broken_repeat_rule = -5, duplicate_id = other);
// Script forms; -1, 0 and -2 when an object is no such array.
UXTREE_API int uxtree_update_changes(UX_EDITS UXXmlWrapperBase* tree,
                                     UX_STRINGS UXScriptObject* oldValues)
    UX_RETURNS(count, unusable = -1);
UXTREE_API int ux_is_same(UX_INTS UXScriptObject* a, UX_INTS UXScriptObject* b)
    UX_RETURNS(yes, no = 0);
UXTREE_API int uxget_changed(UX_STRINGS UXScriptObject* first, UX_STRINGS UXScriptObject* second,
                             bool caseSensitive) UX_RETURNS(count, equal = -1, lengths_differ = -2);
}
