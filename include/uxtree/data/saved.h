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
UXTREE_API bool vctree_save_values_with_ids(UXXmlWrapperBase* target, CArray<int, int>* ids,
                                            CWBOStringArray* values, const char* comment,
                                            CWBOStringArray* labels);
// Builds the document and saves it as an XML file. 1 when it was written; otherwise 0, and the old
// file is whole. Pass a typed null for a missing path: the overloads differ in it alone.
UXTREE_API int vctree_save_values_with_ids(const char* path, CArray<int, int>* ids,
                                           CWBOStringArray* values, const char* comment,
                                           CWBOStringArray* labels);
// Empties ids and values, and fills them from a saved document. comment may be null and is
// untouched when the file has none. False when the file cannot be loaded or an argument is missing.
UXTREE_API bool vctree_read_values_with_ids(const char* path, CArray<int, int>* ids,
                                            CWBOStringArray* values, CStringUTF8* comment);
// The tree form of saving, without labels; an invalid target gets a document of its own.
UXTREE_API bool vctree_set_theme(UXXmlWrapperBase* target, CArray<int, int>* ids,
                                 CWBOStringArray* values, const char* comment);
// Appends the document's entries to the arrays. The identifier is the number at the start of the
// tag behind "node"; a tag without a number there gives 0. The document's own tag is not looked at.
// comment and labels may be null; comment is untouched when there is none.
UXTREE_API void vctree_get_theme(UXXmlWrapperBase* document, CArray<int, int>* ids,
                                 CWBOStringArray* values, CStringUTF8* comment,
                                 CWBOStringArray* labels);
extern "C" {
// Script form of saving into a tree; 0 also when an object is no such array.
UXTREE_API int uxtree_save_values_with_ids(UXXmlWrapperBase* target, UXScriptObject* ids,
                                           UXScriptObject* values, const char* comment,
                                           UXScriptObject* labels);
// Script form of saving into a file.
UXTREE_API int uxtree_tree_save_values_with_ids(const char* path, UXScriptObject* ids,
                                                UXScriptObject* values, const char* comment,
                                                UXScriptObject* labels);
// Script form of reading a file.
UXTREE_API int uxtree_tree_read_values_with_ids(const char* path, UXScriptObject* ids,
                                                UXScriptObject* values, CStringUTF8* comment);
}
