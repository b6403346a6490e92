// Path queries over a tree.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Collects the values that a path reaches in a tree. A path is "/" and steps separated by "|": the
// tag of tree itself, tags of children, and perhaps a last step "@" with an attribute name. So
// "/r|a|@x" reads the attribute x of every child a of r. The character behind a separator begins
// the next step whatever it is; a separator at the very end adds nothing.
//
// Steps behind a first "@" step are not applied, yet the last step decides what is read. With an
// attribute, each node reached gives its value if it has it. Without one, a node gives the texts of
// all leaves below it, or its own when it is a leaf; a leaf without text gives nothing.
//
//   values, offsets, names   the results; all must be given
//   reserved                 not used; may be null
//   table false: the values are appended to values, and the last step as written to names; offsets
//                becomes two positions in values, where these begin and end.
//   table true:  values becomes a table, a row for each node and a column for each place in it,
//                column by column, with empty texts where a node has fewer values than the most;
//                offsets becomes the start of each column and the end. names becomes the labels of
//                the columns: the tags of the leaves, or "@" and the attribute name, of the first
//                node that has the most values.
//
// Returns 0 when evaluated, also when nothing was found. Otherwise the results are as they were: 1
// when an argument is null, and when a table would be too large; 4 when path does not begin with
// "/"; 5 when tree is invalid or its tag is not the first step. 1 as well when memory runs out,
// with what was appended by then in the results.
UXTREE_API int TreeEvalXPath(UX_INOUT CWBOStringArray* values, UX_OUT CArray<unsigned int>* offsets,
                             UX_INOUT CWBOStringArray* names, UX_IN UXXmlWrapperBase* tree,
                             UX_OPT const char* reserved, UX_IN const char* path, bool table)
    UX_RETURNS(zero, unusable = 1, bad_path = 4, wrong_root = 5);
extern "C" {
// The same for scripts: values and names are string arrays, offsets is an integer vector. Also 1
// when an object is not of its type.
UXTREE_API int uxtree_xpath(UX_INOUT UX_STRINGS UXScriptObject* values,
                            UX_OUT UX_INTS UXScriptObject* offsets,
                            UX_INOUT UX_STRINGS UXScriptObject* names, UX_IN UXXmlWrapperBase* tree,
                            UX_OPT const char* reserved, UX_IN const char* path, bool table)
    UX_RETURNS(zero, unusable = 1, bad_path = 4, wrong_root = 5);
}
