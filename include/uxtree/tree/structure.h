// Deleting, pruning, hiding, moving, sorting, appending, filtering and renaming nodes.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Copies the attributes of source to target, and below target those branches of source that lead to
// a leaf with a value. Nodes with one of the attributes skipAttrs (may be null) are left out with
// their branches. What target has stays. flags are reserved.
//
// Returns the number of children of source that were copied, or
//    0  source itself has one of skipAttrs; nothing is copied
//   -1  an unusable node
//   -2  a node could not be copied; what was copied until then stays
UXTREE_API int VCTreeCopyWithSkipping(UX_EDITS UXXmlWrapperBase* target,
                                      UX_IN UXXmlWrapperBase* source,
                                      UX_OPT UX_IN CWBOStringArray* skipAttrs, DWORD flags)
    UX_RETURNS(count, unusable = -1, not_copied = -2);
// Gives the node another tag; everything else stays. 1, or 0 when the name is no element name.
UXTREE_API int VCTreeSetTagName(UX_EDITS UXXmlWrapperBase* node, UX_IN const char* newName)
    UX_RETURNS(done, not_done = 0);
extern "C" {
// Removes the nodes whose integer attribute has the value: children of tree, and with recursive
// nonzero nodes inside the children that stay.
//
//   exemptAttr    children of tree that have this attribute stay; null or empty: none.
//   keepBranches  nonzero: children of tree that have children stay.
//
// Exemptions hold for the children of tree only, not inside them. Returns the number of nodes
// removed, the host's negative code when it refused one, or -1 for a bad argument.
UXTREE_API int uxtree_delete_nodes_by_attribute(UX_EDITS UXXmlWrapperBase* tree,
                                                UX_IN const char* attrName, int value,
                                                int recursive, UX_OPT const char* exemptAttr,
                                                int keepBranches)
    UX_RETURNS(count, unusable = -1, host_refused = other);
// Removes the leaves among the children of tree that lack the attribute; with recursive nonzero, on
// all levels, and also the branches that are left without children and lack it.
//
//   removeAttrFromKept  nonzero: the leaves that stay lose the attribute.
//   keepBranches        nonzero: branches stay.
//   checkSelf           nonzero: a node that has the attribute, beginning with tree, protects
//                       everything below it.
//
// Returns the number of nodes removed, -1 for a bad argument.
UXTREE_API int uxtree_delete_nodes_by_missing_attribute(UX_EDITS UXXmlWrapperBase* tree,
                                                        UX_IN const char* attrName, int recursive,
                                                        int removeAttrFromKept, int keepBranches,
                                                        int checkSelf)
    UX_RETURNS(count, unusable = -1);
// Removes every node below tree whose integer attribute has the value, with its branch. Returns the
// number of nodes removed, not counting those inside their branches; -1 for an unusable tree.
UXTREE_API int uxtree_remove_nodes_by_attribute(UX_EDITS UXXmlWrapperBase* tree,
                                                UX_IN const char* attrName, int value)
    UX_RETURNS(count, unusable = -1);
// Removes the leaves without a value among the children of tree; with recursive on all levels, and
// also the branches in which nothing is left. Returns the number of nodes kept (with recursive, of
// leaves), -1 for an unusable tree.
UXTREE_API int uxtree_remove_empty_child_nodes(UX_EDITS UXXmlWrapperBase* tree, bool recursive)
    UX_RETURNS(count, unusable = -1);
// Hides the leaves without a value ("Show" becomes 0); with showNonEmpty the others lose "Show".
// With recursive on all levels. Returns the number of nodes hidden, -1 for an unusable tree.
UXTREE_API int uxtree_hide_empty_nodes(UX_EDITS UXXmlWrapperBase* tree, bool recursive,
                                       bool showNonEmpty) UX_RETURNS(count, unusable = -1);
// Moves the node with one number to the place of the node with another, behind it when it moves
// forward. Numbers, flags and attrName are those of uxtree_get_node_ex. A negative toIndex that
// names no node moves the node to the end of tree. The node is replaced by a copy: handles to it
// become invalid. 1; 0 with nothing moved when a number names no node or tree is unusable.
UXTREE_API int uxtree_move_node(UX_EDITS UXXmlWrapperBase* tree, int fromIndex, int toIndex,
                                unsigned int flags UX_BITS(whole_levels = 0x10000,
                                                           branches_only = 0x20000,
                                                           limit_levels = 0x40000),
                                UX_OPT const char* attrName) UX_RETURNS(done, not_found = 0);
// Sorts the children by an integer attribute; ascending 0 puts the largest first. Children without
// it keep their places. Children change their contents, not their identity: a handle to a child
// sees what stands at its place, and a handle into the branch of a child that moved becomes
// invalid. The order of equal values is not kept: it is that of an exchange sort, reached without
// the exchanges: each content moves once. True, or false with nothing changed for fewer than two
// children, an empty name, an unusable node or when memory runs out.
UXTREE_API bool uxtree_sort_children_by_int_attribute(UX_EDITS UXXmlWrapperBase* node,
                                                      UX_IN const char* attrName, int ascending)
    UX_RETURNS(done, not_done = 0);
// Appends copies of the children of source whose tags begin with the prefix, in any case (null or
// empty: all). They get the IDs that follow the largest one among such children of target. When
// these have none, the copies keep their own IDs, and the result is 0; when the next ID would be
// below 0, they keep them too, and it is the result. Otherwise returns the next free ID; 0 for an
// unusable node.
UXTREE_API int uxtree_append_children(UX_EDITS UXXmlWrapperBase* target,
                                      UX_IN UXXmlWrapperBase* source, UX_OPT const char* tagPrefix)
    UX_RETURNS(count, unusable = 0);
// Removes the nodes with the "DataID" dataId, tree included, that fail a test of the values below
// them. The values of an identifier are the texts of the nodes below with that "DataID", compared
// in any case.
//
//   modeB  excludes first. 1: a node with an entry of listB among the values of idB; 2: with all of
//          them; 0: a node that has a value of idA outside listA, or an empty listA. An empty listB
//          excludes nothing. Any other mode excludes all.
//   modeA  keeps. 0: all entries of listA are among the values of idA; 1: some entry is. An empty
//          listA keeps all; otherwise any other mode keeps none.
//
// Nodes inside a tested one are not looked at. 1, or -1 when an object is no string array or tree
// is unusable.
UXTREE_API int uxtree_filter(UX_EDITS UXXmlWrapperBase* tree, int dataId, int modeA, int idA,
                             UX_STRINGS UXScriptObject* listA, int modeB, int idB,
                             UX_STRINGS UXScriptObject* listB) UX_RETURNS(done, unusable = -1);
// Removes the nodes with the "DataID" dataId, tree included, that lack the attribute or in whose
// attribute the text is not found (atStart nonzero: not at its start). caseSensitive 0 ignores
// ASCII case. Nodes inside a tested one are not looked at. 1; 0 with nothing removed for a bad
// argument.
UXTREE_API int uxtree_filter_by_attrib_find(UX_EDITS UXXmlWrapperBase* tree, int dataId,
                                            UX_IN const char* attrName, UX_IN const char* text,
                                            int caseSensitive, int atStart)
    UX_RETURNS(done, unusable = 0);
// The same with the host's wildcard match ("*" any run, "?" one character); a nonzero matchFlag
// compares case-sensitively.
UXTREE_API int uxtree_filter_by_attrib_match(UX_EDITS UXXmlWrapperBase* tree, int dataId,
                                             UX_IN const char* attrName, UX_IN const char* pattern,
                                             int matchFlag) UX_RETURNS(done, unusable = 0);
// Removes all attributes but "DataID" from tree and everything below it.
UXTREE_API void uxtree_polish_tree_keep_DataID(UX_EDITS UXXmlWrapperBase* tree);
// Makes an element name of the first 1023 bytes of name. 1 when that changed it, else 0.
UXTREE_API int uxtree_adapt_for_tagname(UX_INOUT CStringUTF8* name) UX_RETURNS(yes, no = 0);
// Script form of VCTreeCopyWithSkipping; -1 also when skipAttrs is given and no string array.
UXTREE_API int uxtree_copy_with_skipping(UX_EDITS UXXmlWrapperBase* target,
                                         UX_IN UXXmlWrapperBase* source,
                                         UX_OPT UX_STRINGS UXScriptObject* skipAttrs, DWORD flags)
    UX_RETURNS(count, unusable = -1, not_copied = -2);
}
