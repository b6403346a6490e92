// Branches as key and value text, and dotted node paths.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// The tags from the topmost node down to node, joined by ".". False, with an empty out, for an
// unusable node.
UXTREE_API bool VCTreeGetPathStr(UX_OUT CStringUTF8& out, UX_IN UXXmlWrapperBase* node)
    UX_RETURNS(done, unusable = 0);
// Joins tokens that were split at an escaped separator: a token that ends in an odd number of
// backslashes takes up the one behind it, the last backslash becoming the separator. Unless
// keepEscapes, doubled backslashes become single ones in every token but the last.
UXTREE_API void vctree_convert_escape_character(UX_INOUT CWBOStringArray& tokens, char separator,
                                                bool keepEscapes);
extern "C" {
// The children of branch as "tag key-separator text pair-separator", the last pair included,
// without any quoting. 0, with an empty out, for an unusable branch or one without children; 0 for
// a null out; otherwise 1.
UXTREE_API int uxtree_branch_to_key_value_pairs_str(UX_IN UXXmlWrapperBase* branch,
                                                    UX_OUT CStringUTF8* out, char keySeparator,
                                                    char pairSeparator) UX_RETURNS(done, none = 0);
// Replaces the children of branch by one leaf per pair of text, with the key as tag; both sides are
// trimmed. A stretch in double quotes may contain the pair separator. Pairs without a key that can
// be a tag are ignored. 1 when branch has children afterwards, else 0; 0 with branch untouched for
// an unusable branch or a null text.
UXTREE_API int uxtree_key_value_pairs_str_to_branch(UX_EDITS UXXmlWrapperBase* branch,
                                                    UX_IN const char* text, char keySeparator,
                                                    char pairSeparator) UX_RETURNS(done, none = 0);
// Writes into the attribute of every node of branch its dotted path, which begins with branch's own
// tag (includeSelf) or below it. Without recursive, branch alone is written, if at all. 1, or 0 for
// an unusable branch or a missing attribute name.
UXTREE_API int uxtree_add_path_str(UX_EDITS UXXmlWrapperBase* branch, UX_IN const char* attribute,
                                   int recursive, int includeSelf) UX_RETURNS(done, unusable = 0);
}
