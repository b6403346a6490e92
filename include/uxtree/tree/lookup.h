// Finding nodes by position, identifier, tag, attribute and path; finding or creating a child.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
// Finds a node by its number: the nodes below tree are counted in document order, from *counter on,
// and the one that is met when *counter equals index is assigned to out. tree itself is not
// counted.
//
//   maxLevel             0: the children of tree only, 1: theirs, too, ...; negative: no limit.
//   attrName             null or empty: all nodes take part.
//   skipSubtreeOfMarked  true: nodes with the attribute are counted, but what is below them is
//                        not; false: nodes without the attribute are left out with all below them.
//   branchesOnly         true: only nodes with children are counted.
//   level                what counts against maxLevel already; 0 at the start.
//
// *counter is never reset: it grows by the number of nodes counted, so an index that is out of
// reach counts them all. 1 when found; 0 when not, for a negative index, and for an unusable tree
// or a null out or counter. out is then untouched.
UXTREE_API int uxtree_get_node(UX_IN UXXmlWrapperBase* tree, UX_OUT UXXmlWrapperBase* out,
                               int index, UX_INOUT int* counter, int maxLevel,
                               UX_OPT const char* attrName, bool skipSubtreeOfMarked,
                               bool branchesOnly, int level) UX_RETURNS(done, not_found = 0);
// The same with flags: 0x40000 limits the levels to the low byte; 0x10000 turns skipSubtreeOfMarked
// off; 0x20000 counts branches only. Numbers start at 0.
//
// Returns 1 also when there is no such node, and for an unusable tree: pass a fresh handle and test
// it. 0 for a null out.
UXTREE_API int uxtree_get_node_ex(UX_IN UXXmlWrapperBase* tree, UX_OUT UXXmlWrapperBase* out,
                                  int index,
                                  unsigned int flags UX_BITS(whole_levels = 0x10000,
                                                             branches_only = 0x20000,
                                                             limit_levels = 0x40000),
                                  UX_OPT const char* attrName)
    UX_RETURNS(says_nothing, unusable = 0);
// The topmost ancestor of node, which may be node itself. 1, or 0 for an unusable node or null out.
UXTREE_API int uxtree_get_root_node(UX_IN UXXmlWrapperBase* node, UX_OUT UXXmlWrapperBase* out)
    UX_RETURNS(done, unusable = 0);
// How many levels node stands below top (null: the root of its tree, which has level 0), and into
// path the tags from there down to node, joined by ".".
//
//   useEventRoot  nonzero with a top: the integer attribute "EventRootOption" of the nodes on the
//                 way decides, too. -1 makes the call fail; above 0 makes that node the top, which
//                 is then also assigned to top.
//
// -1 when top is not met, for an unusable node, and for a null path; path is then untouched.
UXTREE_API int uxtree_get_level(UX_OUT CStringUTF8* path, UX_IN UXXmlWrapperBase* node,
                                UX_OPT UX_INOUT UXXmlWrapperBase* top, int useEventRoot)
    UX_RETURNS(count, unusable = -1);
// The row of the node that a path of tags leads to, when tree is row 1 and every node below it
// takes one row, in document order. The path begins with the tag of tree and is joined by "."; a
// tag in double quotes may contain dots. Tags are compared in any case, and at each level the first
// child with the tag counts. -1 when there is no such node, and for an unusable tree or a null
// path.
UXTREE_API int uxtree_get_row_number(UX_IN UXXmlWrapperBase* tree, UX_IN const char* path)
    UX_RETURNS(count, not_found = -1);
// The first node below tree whose ID is id, or else whose "DataID" is id; without recursive among
// its children only. 1 with the node in out; otherwise 0, and out is untouched.
UXTREE_API int uxtree_get_node_by_id(UX_IN UXXmlWrapperBase* tree, UX_OUT UXXmlWrapperBase* out,
                                     int id, bool recursive) UX_RETURNS(done, not_found = 0);
// The first node with the tag, beginning with node itself; without recursive that node only. With
// leavesOnly, only nodes without children count. out may be null. 1 when found, else 0.
UXTREE_API int uxtree_get_node_by_tagname(UX_IN UXXmlWrapperBase* node,
                                          UX_OPT UX_OUT UXXmlWrapperBase* out,
                                          UX_IN const char* tag, bool recursive, bool caseSensitive,
                                          bool leavesOnly) UX_RETURNS(done, not_found = 0);
// The first node below tree whose integer attribute has the value; -39999 stands for any value.
//
//   recursive  true: all levels; otherwise the children and `depth` levels below them.
//   repeatId   1 or more: the node must have this RepeatID (see uxtree/data/ids.h). It binds the
//              children of tree only, not the levels below them.
//
// 1 with the node in out; otherwise 0, and out is untouched.
UXTREE_API int uxtree_find_node(UX_IN UXXmlWrapperBase* tree, UX_OUT UXXmlWrapperBase* out,
                                UX_IN const char* attrName, int value, bool recursive, int depth,
                                int repeatId) UX_RETURNS(done, not_found = 0);
// The node with an identifier below a chain of nodes with identifiers: the first grandparent
// anywhere below tree, a child of it as parent, and a child of that as the node. Identifiers of 0
// leave a link out: without a grandparent the parent, and without both the node, is looked for
// anywhere below tree. The repeat identifiers bind their link as in uxtree_find_node.
//
// Returns
//    0  found, the node is in out
//   -1  tree is unusable, or out or attrName is null
//   -2  id is 0, or there is a grandparent without a parent
// otherwise the identifier that was not found. out then holds the last link that was.
UXTREE_API int uxtree_find_node_ex(UX_IN UXXmlWrapperBase* tree, UX_OUT UXXmlWrapperBase* out,
                                   UX_IN const char* attrName, int id, int parentId,
                                   int parentRepeatId, int grandParentId, int grandParentRepeatId)
    UX_RETURNS(zero, unusable = -1, no_identifier = -2, not_found = other);
// uxtree_find_node_ex by the attribute "DataID". 1 when found; otherwise 0, and out is invalid.
UXTREE_API int uxtree_find_node_by_dataID(UX_OUT_RELEASED UXXmlWrapperBase* out,
                                          UX_IN UXXmlWrapperBase* tree, int id, int parentId,
                                          int parentRepeatId, int grandParentId,
                                          int grandParentRepeatId) UX_RETURNS(done, not_found = 0);
// The first child of tree that has the attribute and, below it, a leaf of the child tag with the
// child value, in any case. The attribute's value is not compared: having it is enough, and lacking
// it is, too, when attrValue is "". A null attrName or attrValue asks for no attribute, a null
// childTag or childValue for no child. 1 with the child of tree in out; otherwise 0, and out is
// untouched.
UXTREE_API int uxtree_find_node_with_attr_child(
    UX_IN UXXmlWrapperBase* tree, UX_OUT UXXmlWrapperBase* out, UX_NULL_COUNTS const char* attrName,
    UX_NULL_COUNTS const char* attrValue, UX_NULL_COUNTS const char* childTag,
    UX_NULL_COUNTS const char* childValue) UX_RETURNS(done, not_found = 0);
// Does node have all the integer attributes with the values at the same places? 1 or 0; 1 when
// there are no names, and 0 when the arrays differ in length or an argument is missing. -1 when an
// object is no such array: compare the result with 1.
UXTREE_API int uxtree_check_node_int_attr(UX_IN UXXmlWrapperBase* node,
                                          UX_STRINGS UXScriptObject* names,
                                          UX_INTS UXScriptObject* values)
    UX_RETURNS(yes, no = 0, wrong_array = -1);
// The same for texts; noCase nonzero ignores ASCII case.
UXTREE_API int uxtree_check_node_str_attr(UX_IN UXXmlWrapperBase* node,
                                          UX_STRINGS UXScriptObject* names,
                                          UX_STRINGS UXScriptObject* values, int noCase)
    UX_RETURNS(yes, no = 0, wrong_array = -1);
// The node below tree that passes uxtree_check_node_int_attr for the occurrence-th time, from 0.
// Without recursive only the children are looked at. The occurrences in the branch of an earlier
// sibling do not count for its later siblings. out may be null. 1 when found, else 0.
UXTREE_API int uxtree_find_node_with_int_attr(UX_IN UXXmlWrapperBase* tree,
                                              UX_OPT UX_OUT UXXmlWrapperBase* out,
                                              UX_STRINGS UXScriptObject* names,
                                              UX_INTS UXScriptObject* values, bool recursive,
                                              int occurrence) UX_RETURNS(done, not_found = 0);
// The same with uxtree_check_node_str_attr, case-sensitively.
UXTREE_API int uxtree_find_node_with_str_attr(UX_IN UXXmlWrapperBase* tree,
                                              UX_OPT UX_OUT UXXmlWrapperBase* out,
                                              UX_STRINGS UXScriptObject* names,
                                              UX_STRINGS UXScriptObject* values, bool recursive,
                                              int occurrence) UX_RETURNS(done, not_found = 0);
// The first child of parent with the tag, which is appended with the ID (0: none) when there is
// none. When an attribute name and value are given, and not empty, the attribute is set on the
// child, also on one that was there. findFlag is handed to the host. 1 with the child in out; 0 for
// an unusable parent or null out, and, with an invalid out, when the tag is no element name.
UXTREE_API int uxtree_tree_check_get_node(UX_OUT_RELEASED UXXmlWrapperBase* out,
                                          UX_EDITS UXXmlWrapperBase* parent, UX_IN const char* tag,
                                          int id, UX_OPT const char* attrName = nullptr,
                                          UX_OPT const char* attrValue = nullptr, int findFlag = 1)
    UX_RETURNS(done, not_done = 0);
// The first node whose attribute has the value, among the children of parent (flag 0) or anywhere
// below it. When there is none, a child with the attribute is appended, with newTag, or the value
// when that is null, made into an element name; "0" creates nothing. 1 with the node in out;
// otherwise 0.
UXTREE_API int uxtree_tree_check_get_node_by_attribute(UX_OUT_RELEASED UXXmlWrapperBase* out,
                                                       UX_EDITS UXXmlWrapperBase* parent,
                                                       UX_IN const char* attrName,
                                                       UX_IN const char* attrValue, int flag,
                                                       UX_NULL_COUNTS const char* newTag)
    UX_RETURNS(done, not_done = 0);
// The first child of parent with the "DataID". When there is none, a child with the tag is
// appended, with the attribute when its name and value are not empty, and with the "DataID" when it
// is above 0. 1, also when the tag is no element name and out stays as it was; 0 for an unusable
// parent or a null out.
UXTREE_API int uxtree_check_get_node_by_dataid(UX_EDITS UXXmlWrapperBase* parent,
                                               UX_OUT UXXmlWrapperBase* out, UX_IN const char* tag,
                                               int dataId, UX_OPT const char* attrName,
                                               UX_OPT const char* attrValue)
    UX_RETURNS(done, unusable = 0);
// The node of a help tree for a help identifier: a child of tree for the identifiers 305, 430, 442
// and 446, and in category 256 for 440 (the child 310) and 448 (391); otherwise the node with
// "DataID" id below the one with "DataID" 420 whose RepeatID is the category. A category outside
// 256 to 1024 is replaced by the host's. 1 with the node in out, else 0.
UXTREE_API int uxtree_get_help_node(UX_OUT_RELEASED UXXmlWrapperBase* out,
                                    UX_IN UXXmlWrapperBase* tree, int id, int category)
    UX_RETURNS(done, not_found = 0);
}
