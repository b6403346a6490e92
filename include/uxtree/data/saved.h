// Values with identifiers kept as a small document, in a file or in a tree.
//
// The document's root is <Settings Comment="...">, with the text "Settings". It holds one element
// per entry, in the order of the arrays: its tag is "node" and the identifier in decimal, its text
// the value, its attribute "Label" the entry's label. A theme is such a document.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Builds the document in place of target, which takes the tag "Settings" and keeps its place.
//
//   comment  null: none; "" is a comment.
//   labels   null: none. A list shorter than the identifiers leaves the rest without label.
//
// False, with target untouched, when target is unusable, an array is null or empty, or the arrays
// differ in length. Entries added before a later failure stay.
UXTREE_API bool vctree_save_values_with_ids(UX_EDITS UXXmlWrapperBase* target,
                                            UX_IN CArray<int, int>* ids,
                                            UX_IN CWBOStringArray* values,
                                            UX_NULL_COUNTS const char* comment,
                                            UX_OPT UX_IN CWBOStringArray* labels)
    UX_RETURNS(done, not_done = 0);
// Builds the document and saves it as an XML file. 1 when it was written; otherwise 0, and the old
// file is whole. Pass a typed null for a missing path: the overloads differ in it alone.
UXTREE_API int vctree_save_values_with_ids(UX_FILE const char* path, UX_IN CArray<int, int>* ids,
                                           UX_IN CWBOStringArray* values,
                                           UX_NULL_COUNTS const char* comment,
                                           UX_OPT UX_IN CWBOStringArray* labels)
    UX_RETURNS(done, not_done = 0);
// Empties ids and values, and fills them from a saved document. comment may be null and is
// untouched when the file has none. False when the file cannot be loaded or an argument is missing.
UXTREE_API bool vctree_read_values_with_ids(UX_FILE const char* path, UX_OUT CArray<int, int>* ids,
                                            UX_OUT CWBOStringArray* values,
                                            UX_OPT UX_OUT CStringUTF8* comment)
    UX_RETURNS(done, not_done = 0);
// The tree form of saving, without labels; an invalid target gets a document of its own.
UXTREE_API bool vctree_set_theme(UX_MAY_BE_INVALID UX_EDITS UXXmlWrapperBase* target,
                                 UX_IN CArray<int, int>* ids, UX_IN CWBOStringArray* values,
                                 UX_NULL_COUNTS const char* comment) UX_RETURNS(done, not_done = 0);
// Appends the document's entries to the arrays. The identifier is the number at the start of the
// tag behind "node"; a tag without a number there gives 0. The document's own tag is not looked at.
// comment and labels may be null; comment is untouched when there is none.
UXTREE_API void vctree_get_theme(UX_IN UXXmlWrapperBase* document, UX_APPENDS CArray<int, int>* ids,
                                 UX_APPENDS CWBOStringArray* values,
                                 UX_OPT UX_OUT CStringUTF8* comment,
                                 UX_OPT UX_APPENDS CWBOStringArray* labels);
extern "C" {
// Script form of saving into a tree; 0 also when an object is no such array.
UXTREE_API int uxtree_save_values_with_ids(UX_EDITS UXXmlWrapperBase* target,
                                           UX_INTS UXScriptObject* ids,
                                           UX_STRINGS UXScriptObject* values,
                                           UX_NULL_COUNTS const char* comment,
                                           UX_OPT UX_STRINGS UXScriptObject* labels)
    UX_RETURNS(done, not_done = 0);
// Script form of saving into a file.
UXTREE_API int uxtree_tree_save_values_with_ids(UX_FILE const char* path,
                                                UX_INTS UXScriptObject* ids,
                                                UX_STRINGS UXScriptObject* values,
                                                UX_NULL_COUNTS const char* comment,
                                                UX_OPT UX_STRINGS UXScriptObject* labels)
    UX_RETURNS(done, not_done = 0);
// Script form of reading a file.
UXTREE_API int uxtree_tree_read_values_with_ids(UX_FILE const char* path,
                                                UX_OUT UX_INTS UXScriptObject* ids,
                                                UX_OUT UX_STRINGS UXScriptObject* values,
                                                UX_OPT UX_OUT CStringUTF8* comment)
    UX_RETURNS(done, not_done = 0);
}
