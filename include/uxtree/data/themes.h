// The theme bound to a tree, and lookups in a theme tree.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
// The tree's attribute "ThemeFile". True when there is one, also an empty one; otherwise false with
// an empty out. False for a null argument, out then untouched.
UXTREE_API bool uxtree_tree_get_theme_file_name(UXXmlWrapperBase* tree, CStringUTF8* out);
// Writes "ThemeFile", or removes it when name is null. False for an unusable tree.
UXTREE_API bool uxtree_tree_set_theme_file_name(UXXmlWrapperBase* tree, const char* name);
// The tree's attribute "ThemeType", 4 without one; 0 for an unusable tree.
UXTREE_API int uxtree_tree_get_theme_type(UXXmlWrapperBase* tree);
// Does the node describe a theme with an include list? True when "Count" is 1, "Objects" is
// 0x40000000, and "Properies" has bits within 0x1F000 or "Properies2" within 0xF000 (so spelt), and
// neither has any other bit.
UXTREE_API bool uxtree_is_inclist_theme(UXXmlWrapperBase* node);
// The first node below themeTree whose ID or "DataID" has id (0 to 65535) in its low 16 bits; a
// missing one counts as 0.
//
//   depth      levels to search below the first one; negative finds nothing.
//   recursive  false: the children of themeTree only.
//
// The depth falls by one with every branch that is entered, also for the branches after it. 1 with
// the node in out, else 0 with out untouched.
UXTREE_API int uxtree_theme_tree_get_node_by_id(UXXmlWrapperBase* out, UXXmlWrapperBase* themeTree,
                                                int id, int depth, bool recursive);
// Child number index (from 1) of the node found by id. 1, or 0 with out untouched.
UXTREE_API int uxtree_theme_tree_get_node_by_index(UXXmlWrapperBase* out,
                                                   UXXmlWrapperBase* themeTree, int id, int index,
                                                   int depth, bool recursive);
// The integers of the children "Left", "Top", "Right" and "Bottom", in any case; a null output is
// passed over. 1 when exactly four were read; a side that stands twice counts twice.
UXTREE_API int uxtree_theme_tree_get_range_from_range_style(UXXmlWrapperBase* style, int* left,
                                                            int* top, int* right, int* bottom);
// Script forms of vctree_set_theme and vctree_get_theme (see saved.h); nothing happens when an
// object is no such array.
UXTREE_API int uxtree_set_theme(UXXmlWrapperBase* target, UXScriptObject* ids,
                                UXScriptObject* values, const char* comment);
UXTREE_API void uxtree_get_theme(UXXmlWrapperBase* document, UXScriptObject* ids,
                                 UXScriptObject* values, CStringUTF8* comment,
                                 UXScriptObject* labels);
}
