// Attributes, values and node paths of import trees.
//
// A path is the list of the names of the nodes from a tree's top down to a node. The name of a
// node is its "Label" when that is not empty, else its tag.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Appends the names of the node's attributes, in their order, to names, and the values to values,
// which may be null. "Label", "FileSourcePath", "DataID" and "FileDataDimsVector" are always left
// out; bits of filter leave out more:
//   0x10000   "FileDataType"
//   0x20000   "DataTreeNodeType", "DataTreeObjFinder", "DataTreeOtherString",
//             "FileImportLayerType"
//   0x40000   "BlobArrElementaryType", "xmlns:dt", "dt:dt"
//   0x80000   "TypeID"
//   0x100000  "ColDesignation", "Comment", "Unit"
// Returns 1, or 0 when names is null or node is unusable.
UXTREE_API int vctree_XDE_XML_get_attributes(
    UX_APPENDS CWBOStringArray* names, UX_OPT UX_APPENDS CWBOStringArray* values,
    UX_IN UXXmlWrapperBase* node,
    DWORD filter UX_BITS(no_data_type = 0x10000, no_tree_info = 0x20000, no_blob_info = 0x40000,
                         no_type_id = 0x80000, no_column_info = 0x100000))
    UX_RETURNS(done, unusable = 0);

// Joins the names by "|". With escape a backslash is written as two and "|" as backslash and "|".
// Returns the number of names, 0 when an argument is null.
UXTREE_API int vctree_XDE_treenode_path_array_to_string(UX_OUT CStringUTF8* text,
                                                        UX_IN const CWBOStringArray* path,
                                                        bool escape)
    UX_RETURNS(count, unusable = 0);

// Splits text at every "|" into path; empty names are kept. With escape the escapes are undone in
// every name but the last, whose doubled backslashes stay, so that a single name is taken as it
// is. Returns 1; 0 with an empty path for a null or empty text, 0 when path is null.
UXTREE_API int vctree_XDE_treenode_path_string_to_array(UX_OUT CWBOStringArray* path,
                                                        UX_IN const char* text, bool escape)
    UX_RETURNS(done, none = 0);

// Joins the names by "/", without escapes. Returns the number of names, 0 when path is null.
UXTREE_API int VCTreeXDETreenodeOnePathAsArrayToString(UX_OUT CStringUTF8& text,
                                                       UX_IN const CWBOStringArray* path)
    UX_RETURNS(count, unusable = 0);

// The node's name in a path. Returns 1, or 0 when name is null or node is unusable.
UXTREE_API int vctree_get_XDE_treenode_string_for_path_in_tree(UX_OUT CStringUTF8* name,
                                                               UX_IN UXXmlWrapperBase* node)
    UX_RETURNS(done, unusable = 0);

// Finds the node that a path leads to, and assigns it to found.
//
//   start       index of the name that stands for tree itself; earlier names are not looked at
//   byTagOnly   nonzero: below tree, names are compared with tags alone, not with labels
//   rest        when given: emptied, and the first "*" of the path with all names behind it moves
//               from path into it, so that the search ends before the wildcard
//   allowSlice  nonzero: a name that leads nowhere is tried again without its selection, the
//               trailing groups in square brackets, as in "Counts[0:9,3]"
//
// The first child with the label wins, then the first with the tag. The name of tree itself is
// always compared by label or tag, with and without its selection. Returns 1, or 0 when the node
// is not found or an argument is unusable; found is released unless an argument is unusable.
UXTREE_API int vctree_find_XDE_treenode_from_path_in_tree(
    UX_OUT_RELEASED UXXmlWrapperBase* found, UX_IN UXXmlWrapperBase* tree,
    UX_INOUT CWBOStringArray* path, int start, int byTagOnly, UX_OPT UX_OUT CWBOStringArray* rest,
    int allowSlice) UX_RETURNS(done, not_found = 0);

// The value of a node for display: the text of a leaf, or the texts of a branch's leaves in
// document order, joined by ", ". Returns 1; 0 with an empty out when node is unusable.
UXTREE_API int VCTreeXDEConvertTreeValToString(UX_OUT CStringUTF8& out,
                                               UX_IN UXXmlWrapperBase* node)
    UX_RETURNS(done, unusable = 0);

// Prepares tree as a source of the data navigator: every node without a label gets its tag as
// "Label", and the path of every leaf, tree's name first and with escapes, is appended to paths,
// which may be null. flags are reserved. Returns the number of leaves, -1 when tree is unusable.
UXTREE_API int VCTreeXDEDatNavPrepareStandardSourceTree(UX_EDITS UXXmlWrapperBase& tree,
                                                        UX_OPT UX_APPENDS CWBOStringArray* paths,
                                                        DWORD flags)
    UX_RETURNS(count, unusable = -1);
extern "C" {
// Script forms of the operations above. An object that does not hold a string array makes them
// return what they return for an unusable argument; values, rest and paths may be null.
UXTREE_API int uxtree_XDE_get_attributes(
    UX_APPENDS UX_STRINGS UXScriptObject* names,
    UX_OPT UX_APPENDS UX_STRINGS UXScriptObject* values, UX_IN UXXmlWrapperBase* node,
    DWORD filter UX_BITS(no_data_type = 0x10000, no_tree_info = 0x20000, no_blob_info = 0x40000,
                         no_type_id = 0x80000, no_column_info = 0x100000))
    UX_RETURNS(done, unusable = 0);
UXTREE_API int uxtree_XDE_treenode_path_array_to_string(UX_OUT CStringUTF8* text,
                                                        UX_STRINGS UXScriptObject* path,
                                                        bool escape)
    UX_RETURNS(count, unusable = 0);
UXTREE_API int uxtree_XDE_treenode_path_string_to_array(UX_OUT UX_STRINGS UXScriptObject* path,
                                                        UX_IN const char* text, bool escape)
    UX_RETURNS(done, none = 0);
UXTREE_API int uxtree_XDE_treenode_one_path_as_array_to_string(UX_OUT CStringUTF8* text,
                                                               UX_STRINGS UXScriptObject* path)
    UX_RETURNS(count, unusable = 0);
UXTREE_API int uxtree_get_XDE_treenode_string_for_path_in_tree(UX_OUT CStringUTF8* name,
                                                               UX_IN UXXmlWrapperBase* node)
    UX_RETURNS(done, unusable = 0);
UXTREE_API int uxtree_find_XDE_treenode_from_path_in_tree(
    UX_OUT_RELEASED UXXmlWrapperBase* found, UX_IN UXXmlWrapperBase* tree,
    UX_INOUT UX_STRINGS UXScriptObject* path, int start, int byTagOnly,
    UX_OPT UX_OUT UX_STRINGS UXScriptObject* rest, int allowSlice) UX_RETURNS(done, not_found = 0);
UXTREE_API int uxtree_XDE_convert_tree_val_to_string(UX_OUT CStringUTF8* out,
                                                     UX_IN UXXmlWrapperBase* node)
    UX_RETURNS(done, unusable = 0);
// The value of the whole tree that node belongs to, from its topmost ancestor on.
UXTREE_API int uxtree_XDE_convert_whole_tree_val_to_string(UX_OUT CStringUTF8* out,
                                                           UX_IN UXXmlWrapperBase* node)
    UX_RETURNS(done, unusable = 0);
UXTREE_API int uxtree_XDE_DatNav_prepare_standard_source_tree(
    UX_EDITS UXXmlWrapperBase* tree, UX_OPT UX_APPENDS UX_STRINGS UXScriptObject* paths,
    DWORD flags) UX_RETURNS(count, unusable = -1);
// Saves the size of an array node: rows and cols, rows alone when cols is below 1, or no size at
// all when rows is below 1. Returns 1, or 0 when node is unusable.
UXTREE_API int uxtree_save_XDE_array_info(UX_EDITS UXXmlWrapperBase* node, int rows, int cols)
    UX_RETURNS(done, unusable = 0);
// Sets the DataID of a file-information node; a negative dataId removes it. Returns 1, or 0 when
// node is unusable.
UXTREE_API int uxtree_set_XDE_file_info_data_id(UX_EDITS UXXmlWrapperBase* node, int dataId)
    UX_RETURNS(done, unusable = 0);
}
