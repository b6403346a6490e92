// Automatic-update support of a node: a text "mode|name|count" in its attribute "Auto".
//
// A node with support in mode 1 is updated whenever its source changes. Mode 0 keeps the name and
// the count while the support is off. A node without "Auto" has no support.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Writes "mode|name|count" into out. A null name is the host's default name; "" is a real name.
// Always 1.
UXTREE_API int vctree_create_auto_support_string(UX_OUT CStringUTF8& out, int mode,
                                                 UX_NULL_COUNTS const char* name, int count)
    UX_RETURNS(done, not_done = 0);
// Reads such a text. Double quotes protect "|". A missing name is "Auto" and a missing count 1;
// mode and count are the leading digits of their tokens, 0 when there are none. 1, or 0 with all
// outputs untouched for a null or empty text.
UXTREE_API int vctree_parse_auto_support_string(UX_IN const char* text, UX_OUT int& mode,
                                                UX_OUT CStringUTF8& name, UX_OUT int& count)
    UX_RETURNS(done, none = 0);
// Reads the support of a node. The stored mode when it is not 0 (so 1 for a node with support), -1
// when the support is kept but off, 0 when the node has none; name and count are then untouched.
UXTREE_API int vctree_get_auto_support(UX_IN UXXmlWrapperBase& node, UX_OUT CStringUTF8& name,
                                       UX_OUT int& count) UX_RETURNS(stored, none = 0);
// Switches the support of a node on (mode 1, which also removes the node's "DynaFx"), off but kept
// (-1), or removes it (0); other modes change nothing. A null name and a count of -1 keep what the
// node has, or else take the host's default name and 1. 1 when a text was written, so 0 for mode 0,
// other modes, and an invalid node.
UXTREE_API int vctree_set_auto_support(UX_EDITS UXXmlWrapperBase& node, int mode,
                                       UX_NULL_COUNTS const char* name, int count)
    UX_RETURNS(done, not_done = 0);
// Switches existing support off, keeping its name and count; a node without support stays so.
UXTREE_API void vctree_check_reset_auto_support(UX_EDITS UXXmlWrapperBase& node);
extern "C" {
// Script forms, 0 for a null node. name and count may be null.
UXTREE_API int uxtree_get_auto_support(UX_IN UXXmlWrapperBase* node,
                                       UX_OPT UX_OUT CStringUTF8* name, UX_OPT UX_OUT int* count)
    UX_RETURNS(stored, none = 0);
UXTREE_API int uxtree_set_auto_support(UX_EDITS UXXmlWrapperBase* node, int mode,
                                       UX_NULL_COUNTS const char* name, int count)
    UX_RETURNS(done, not_done = 0);
}
