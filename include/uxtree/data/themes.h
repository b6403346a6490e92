// The theme bound to a tree, and lookups in a theme tree.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
// The tree's attribute "ThemeFile". True when there is one, also an empty one; otherwise false with
// an empty out. False for a null argument, out then untouched.
UXTREE_API bool uxtree_tree_get_theme_file_name(UX_IN UXXmlWrapperBase* tree,
                                                UX_OUT CStringUTF8* out) UX_RETURNS(yes, no = 0);
// Writes "ThemeFile", or removes it when name is null. False for an unusable tree.
UXTREE_API bool uxtree_tree_set_theme_file_name(UX_EDITS UXXmlWrapperBase* tree,
                                                UX_NULL_COUNTS const char* name)
    UX_RETURNS(done, unusable = 0);
// The tree's attribute "ThemeType", 4 without one; 0 for an unusable tree.
UXTREE_API int uxtree_tree_get_theme_type(UX_IN UXXmlWrapperBase* tree)
    UX_RETURNS(stored, unusable = 0);
// Does the node describe a theme with an include list? True when "Count" is 1, "Objects" is
// 0x40000000, and "Properies" has bits within 0x1F000 or "Properies2" within 0xF000 (so spelt), and
// neither has any other bit.
UXTREE_API bool uxtree_is_inclist_theme(UX_IN UXXmlWrapperBase* node) UX_RETURNS(yes, no = 0);
// The first node below themeTree whose ID or "DataID" has id (0 to 65535) in its low 16 bits; a
// missing one counts as 0.
//
//   depth      levels to search below the first one; negative finds nothing.
//   recursive  false: the children of themeTree only.
//
// The depth falls by one with every branch that is entered, also for the branches after it. 1 with
// the node in out, else 0 with out untouched.
UXTREE_API int uxtree_theme_tree_get_node_by_id(UX_OUT UXXmlWrapperBase* out,
                                                UX_IN UXXmlWrapperBase* themeTree, int id,
                                                int depth, bool recursive)
    UX_RETURNS(done, not_found = 0);
// Child number index (from 1) of the node found by id. 1, or 0 with out untouched.
UXTREE_API int uxtree_theme_tree_get_node_by_index(UX_OUT UXXmlWrapperBase* out,
                                                   UX_IN UXXmlWrapperBase* themeTree, int id,
                                                   int index, int depth, bool recursive)
    UX_RETURNS(done, not_found = 0);
// The integers of the children "Left", "Top", "Right" and "Bottom", in any case; a null output is
// passed over. 1 when exactly four were read; a side that stands twice counts twice.
UXTREE_API int uxtree_theme_tree_get_range_from_range_style(
    UX_IN UXXmlWrapperBase* style, UX_OPT UX_OUT int* left, UX_OPT UX_OUT int* top,
    UX_OPT UX_OUT int* right, UX_OPT UX_OUT int* bottom) UX_RETURNS(done, not_found = 0);
// Script forms of vctree_set_theme and vctree_get_theme (see saved.h); nothing happens when an
// object is no such array.
UXTREE_API int uxtree_set_theme(UX_MAY_BE_INVALID UX_EDITS UXXmlWrapperBase* target,
                                UX_INTS UXScriptObject* ids, UX_STRINGS UXScriptObject* values,
                                UX_NULL_COUNTS const char* comment) UX_RETURNS(done, not_done = 0);
UXTREE_API void uxtree_get_theme(UX_IN UXXmlWrapperBase* document,
                                 UX_APPENDS UX_INTS UXScriptObject* ids,
                                 UX_APPENDS UX_STRINGS UXScriptObject* values,
                                 UX_OPT UX_OUT CStringUTF8* comment,
                                 UX_OPT UX_APPENDS UX_STRINGS UXScriptObject* labels);
}
