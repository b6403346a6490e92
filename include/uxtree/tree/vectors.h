// Lists of values kept as the children of one node.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Appends the texts of the children to out, "" for a child without value.
UXTREE_API void vctree_get_all_children_values_as_string_array(UX_IN UXXmlWrapperBase& node,
                                                               UX_APPENDS CWBOStringArray& out);
// Reads numbers separated by white space into out, which is emptied first. A token that is no
// number becomes 0, or with strict nonzero makes the call fail. Returns the size of out; -1, with
// an empty out, for a text without tokens or a failure.
UXTREE_API int VCTokenizedStringToArrayOfDoubles(UX_OUT CArray<double, double>& out,
                                                 const CStringUTF8& text, int strict)
    UX_RETURNS(count, no_numbers = -1);
extern "C" {
// Writes a vector into the children of a node with a "DataID": element k, from 1, into the child
// with "DataID" + k, which is appended with the tag "Value" + k when there is none. When the node
// has more children than the vector has elements, the last ones are removed and the rest is written
// in order. At most 999 elements are written. Nothing happens for an unusable node, one without
// "DataID", or an object that is no such vector.
UXTREE_API void uxtree_value_from_vec_int_to_tree_sub_nodes(UX_INTS UXScriptObject* values,
                                                            UX_EDITS UXXmlWrapperBase* node);
UXTREE_API void uxtree_value_from_vec_double_to_tree_sub_nodes(UX_DOUBLES UXScriptObject* values,
                                                               UX_EDITS UXXmlWrapperBase* node);
UXTREE_API void uxtree_value_from_vec_bool_to_tree_sub_nodes(UX_BOOLS UXScriptObject* values,
                                                             UX_EDITS UXXmlWrapperBase* node);
UXTREE_API void uxtree_value_from_vec_string_to_tree_sub_nodes(UX_STRINGS UXScriptObject* values,
                                                               UX_EDITS UXXmlWrapperBase* node);
// Reads the values of the children into the elements of a vector, in order, until either ends; the
// vector keeps its size. Children without value are passed over, except for texts; a value that
// does not convert leaves its element as it was. Returns the number of elements used, -1 for an
// unusable node or an object that is no such vector.
UXTREE_API int uxtree_value_from_tree_sub_nodes_to_vector_int(
    UX_IN UXXmlWrapperBase* node, UX_INOUT UX_INTS UXScriptObject* values)
    UX_RETURNS(count, unusable = -1);
UXTREE_API int uxtree_value_from_tree_sub_nodes_to_vector_double(
    UX_IN UXXmlWrapperBase* node, UX_INOUT UX_DOUBLES UXScriptObject* values)
    UX_RETURNS(count, unusable = -1);
UXTREE_API int uxtree_value_from_tree_sub_nodes_to_vector_bool(
    UX_IN UXXmlWrapperBase* node, UX_INOUT UX_BOOLS UXScriptObject* values)
    UX_RETURNS(count, unusable = -1);
UXTREE_API int uxtree_value_from_tree_sub_nodes_to_vector_string(
    UX_IN UXXmlWrapperBase* node, UX_INOUT UX_STRINGS UXScriptObject* values)
    UX_RETURNS(count, unusable = -1);
}
