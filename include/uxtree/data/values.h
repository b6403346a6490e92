// Collecting the values of a tree by identifier, and setting them.
//
// Values travel as two parallel arrays, entry i of the values belonging to identifier i. The
// identifier of a node is its attribute `idAttribute` ("DataID" when null or empty), combined with
// the RepeatIDs of the branches above it and with its own RepeatNodeID (see ids.h). A leaf's value
// is its text; a branch's is its attribute "Use". The attributes "DynaFx", "Auto" and "DynaUseChck"
// of a node travel in front of its value, each as "::{name=value}".
//
// Theme attributes of a branch steer both directions:
//
//   "TreeGetByIdIgnore"     above 0: the node and its branch are not collected.
//   "ThemeApplicability"    a flag word, inherited by the branch. 0x10000: do not set the value;
//                           0x20000: do not set embedded attributes; 0x40000: validate first;
//                           0x100000: a branch's value is its attribute "Data", and collection
//                           does not go below the branch.
//   "ThemeApplicabilityEx"  the branch has a second value, under the negated identifier: its "Data"
//                           when the attribute is nonzero, else its "Use".
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Empties ids and values and fills them with the values of the nodes below tree, in document order.
//
//   recursive        0: the children of tree only.
//   onlyChanged      nonzero: only nodes whose "OldValue" differs from the value; it is refreshed.
//   inheritedRepeat  RepeatID under which tree itself stands; 0 for none.
//   themeFlag        nonzero: branches without "Use" are collected too, with the value "-1".
//   errorText        may be null. Receives the text of the last broken rule of repeated
//                    identifiers; nodes that break one are collected under the identifier they
//                    have. While it is empty, the first node of a kind that needs a DataID and has
//                    none is reported in it.
//
// Returns the number of entries; -1 for an unusable tree or null arrays.
UXTREE_API int vctree_get_values_with_ids(
    UX_EDITS UXXmlWrapperBase* tree, UX_OUT CArray<int, int>* ids, UX_OUT CWBOStringArray* values,
    int recursive, int onlyChanged, int inheritedRepeat, UX_OPT const char* idAttribute,
    int themeFlag, UX_OPT UX_OUT CStringUTF8* errorText) UX_RETURNS(count, unusable = -1);
// Writes values into the nodes below tree that carry their identifiers. Every node of an identifier
// is written; of equal identifiers in the array the first one counts.
//
//   duplicate  null: duplicates are accepted. Otherwise they are refused before anything is
//              written, and the first repeated identifier is stored here.
//   setMode    handed to the host's write.
//   errorText  may be null; receives the text of a refusal.
//
// Returns the number of values written, or
//   -1  the tree is unusable, or an array is null
//   -2  an array is empty
//   -3  the arrays differ in length
//   -4  an identifier stands twice in ids
//   -5  a node breaks the rules of repeated identifiers; values written before it stay
UXTREE_API int vctree_set_values_by_ids(UX_EDITS UXXmlWrapperBase* tree,
                                        UX_IN CArray<int, int>* ids, UX_IN CWBOStringArray* values,
                                        int inheritedRepeat, UX_OPT UX_OUT int* duplicate,
                                        int setMode, UX_OPT const char* idAttribute,
                                        UX_OPT UX_OUT CStringUTF8* errorText)
    UX_RETURNS(count, unusable = -1, empty_array = -2, lengths_differ = -3, duplicate_id = -4,
               broken_repeat_rule = -5);
// Empties the value of every leaf below tree that has a "DataID" other than -1. Returns their
// number; -1 for an unusable tree.
UXTREE_API int vctree_empty_values_with_ids(UX_EDITS UXXmlWrapperBase* tree)
    UX_RETURNS(count, unusable = -1);
// Writes values into the leaves below tree by their attribute "NodeID", without any combination.
// Returns the number of leaves written, or -1 for an unusable tree or null arrays, -2 when an array
// is empty, -3 when the arrays differ in length.
UXTREE_API int vctree_set_values_by_nodeids(UX_EDITS UXXmlWrapperBase* tree,
                                            UX_IN CArray<int, int>* ids,
                                            UX_IN CWBOStringArray* values)
    UX_RETURNS(count, unusable = -1, empty_array = -2, lengths_differ = -3);
// Appends the values of node and of everything below it in document order: a leaf's text, and ""
// for a branch. With childrenOnly a branch gives "" and then each child's own text. Always 0; an
// unusable node or null array appends nothing.
UXTREE_API int VCTreeGetValues(UX_IN UXXmlWrapperBase* node, UX_APPENDS CWBOStringArray* values,
                               bool childrenOnly) UX_RETURNS(says_nothing);
extern "C" {
// Script forms; -1 also when an object is no such array.
UXTREE_API int uxtree_get_values_with_ids(UX_EDITS UXXmlWrapperBase* tree,
                                          UX_OUT UX_INTS UXScriptObject* ids,
                                          UX_OUT UX_STRINGS UXScriptObject* values, int recursive,
                                          int onlyChanged, int inheritedRepeat,
                                          UX_OPT const char* idAttribute, int themeFlag,
                                          UX_OPT UX_OUT CStringUTF8* errorText)
    UX_RETURNS(count, unusable = -1);
UXTREE_API int uxtree_set_values_by_ids(UX_EDITS UXXmlWrapperBase* tree,
                                        UX_INTS UXScriptObject* ids,
                                        UX_STRINGS UXScriptObject* values, int inheritedRepeat,
                                        UX_OPT UX_OUT int* duplicate, int setMode,
                                        UX_OPT const char* idAttribute,
                                        UX_OPT UX_OUT CStringUTF8* errorText)
    UX_RETURNS(count, unusable = -1, empty_array = -2, lengths_differ = -3, duplicate_id = -4,
               broken_repeat_rule = -5);
UXTREE_API int uxtree_set_values_by_nodeids(UX_EDITS UXXmlWrapperBase* tree,
                                            UX_INTS UXScriptObject* ids,
                                            UX_STRINGS UXScriptObject* values)
    UX_RETURNS(count, unusable = -1, empty_array = -2, lengths_differ = -3);
// -1 when values is no string array, else 0.
UXTREE_API int uxtree_get_values(UX_IN UXXmlWrapperBase* node,
                                 UX_APPENDS UX_STRINGS UXScriptObject* values, bool childrenOnly)
    UX_RETURNS(says_nothing, wrong_array = -1);
// Empties the value of every leaf below tree, never of tree itself.
UXTREE_API void uxtree_clear_all_value(UX_EDITS UXXmlWrapperBase* tree);
// Replaces oldText by newText in the values of all leaves of the branch, node included. A null or
// empty oldText replaces nothing; a null newText is "".
UXTREE_API void uxtree_recursively_replace_values(UX_EDITS UXXmlWrapperBase* node,
                                                  UX_OPT const char* oldText,
                                                  UX_OPT const char* newText);
}
