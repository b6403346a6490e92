// Display labels of nodes, combined labels and localized texts.
//
// A label that begins with "?$OP:" is an expression. Several labels are combined into one by
// joining them with the quoted text " - ": ?$OP:(A) (" - ") (B).
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// The process-wide switch that keeps texts in English, off at start. get true stores it into
// *value, get false sets it from *value, and a null value only reads. Returns the switch.
UXTREE_API bool VCTreeAccessBlockLocalization(UX_OPT UX_GETSET bool* value, bool get)
    UX_RETURNS(stored);
extern "C" {
// Combines the labels into out. A label that contains "?$OP:" loses its first five characters.
//
//   addPrefix           puts "?$OP:" in front of the result.
//   parenthesizeAlways  a single label is enclosed in parentheses, too; two or more always are. A
//                       label that contains "(" never is.
//   strict              a label without "?$OP:" makes the labels be joined as they stand instead,
//                       with " - " between them.
//
// 1, or 0 for a missing out, an object that is no string array, or an empty list (out is then "").
UXTREE_API int uxtree_combine_data_label(UX_OUT CStringUTF8* out, UX_STRINGS UXScriptObject* labels,
                                         bool addPrefix, bool parenthesizeAlways, bool strict)
    UX_RETURNS(done, none = 0);
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
// The node's label. mode 0: its tag; 1: its "Label", or the tag when that is missing or empty; 2:
// as 1, and a node with a label gives the tag, the label and the attributes "SubHeader0",
// "SubHeader1" ... up to the first missing one, all but the tag in parentheses. "" for an unusable
// node and any other mode.
UXTREE_API CStringUTF8 uxtree_get_node_label(UX_IN UXXmlWrapperBase* node, int mode)
    UX_RETURNS(text);
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
// The node that holds a localized text: the one with "DataID" id under the parent with parentId
// whose RepeatID is category (the host's help category when category is below 1). When there is
// none, or checkEmpty is set and its text is blank: the child of tree with "DataID" fallbackId. 1
// with the node in out, else 0; out is then what the first lookup found, or invalid.
UXTREE_API int uxtree_get_localization_node(UX_OUT_RELEASED UXXmlWrapperBase* out,
                                            UX_IN UXXmlWrapperBase* tree, int id, int fallbackId,
                                            int parentId, int checkEmpty, int category)
    UX_RETURNS(done, not_found = 0);
// Replaces one part of a combined label by several. The texts of `find` locate it: the part begins
// with the first of them, and what stands between the last one and the next ")" is kept behind each
// replacement. Further occurrences behind that ")" are replaced as well. With a prefix, only a
// label that begins with it is rewritten. out and label may be the same string.
//
// True when the label was rewritten. Otherwise false: out is the label when a text or the prefix
// was missing, or when the result would be more than 16 MiB longer than the label (parts may
// overlap, so that each repeats most of it), and untouched for a null out or label or objects that
// are no string arrays.
UXTREE_API bool uxtree_get_replaced_combined_label(UX_OUT CStringUTF8* out,
                                                   UX_IN CStringUTF8* label,
                                                   UX_STRINGS UXScriptObject* find,
                                                   UX_STRINGS UXScriptObject* replacements,
                                                   UX_OPT const char* prefix)
    UX_RETURNS(done, not_found = 0);
// Replaces oldText by newText (null: "") in the attribute "Label" of node and of everything below
// it. Returns the number of labels changed; 0 for an unusable node or an empty oldText.
UXTREE_API int uxtree_recursively_replace_label_attributes(UX_EDITS UXXmlWrapperBase* node,
                                                           UX_IN const char* oldText,
                                                           UX_OPT const char* newText)
    UX_RETURNS(count, none = 0);
// Applies uxtree_get_replaced_combined_label to the same labels. Returns the number of labels
// changed; 0 for an unusable node or objects that are no string arrays.
UXTREE_API int uxtree_recursively_replace_combined_label_attributes(
    UX_EDITS UXXmlWrapperBase* node, UX_STRINGS UXScriptObject* find,
    UX_STRINGS UXScriptObject* replacements, UX_OPT const char* prefix) UX_RETURNS(count, none = 0);
}
