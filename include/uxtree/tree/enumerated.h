// Families of children named by a prefix and a number, or by column letters.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
// The next free name among the children of tree. numbered 0: a column letter (A to Z, AA, AB ...)
// that is no child's tag in any case; the result is 0, and -1 for a null out. numbered nonzero: the
// tag of the first child without its number, followed by the first number that is missing in 1, 2,
// 3 ...; the result is that number, and out may be null. -1 for an unusable tree, and in the
// numbered form when the first child's tag ends in no number or there is no child; out is then
// untouched.
UXTREE_API int uxtree_get_next_enum_tag_name(UX_IN UXXmlWrapperBase* tree,
                                             UX_OPT UX_OUT CStringUTF8* out, int numbered)
    UX_RETURNS(count, unusable = -1);
// The prefix when no child has it as its tag, else the prefix with the first number from 1 that
// makes it free. A null prefix is "".
UXTREE_API void uxtree_get_enum_node_name(UX_IN UXXmlWrapperBase* tree, UX_OUT CStringUTF8* out,
                                          UX_OPT const char* prefix);
// The same for the values of an attribute of the children. The suffix takes part in the comparison,
// but is not part of the result.
UXTREE_API void uxtree_get_enum_attribute_value(UX_IN UXXmlWrapperBase* tree,
                                                UX_OUT CStringUTF8* out, UX_IN const char* attrName,
                                                UX_OPT const char* prefix,
                                                UX_OPT const char* suffix);
// Finds or creates the child with the tag prefix + number as uxtree_tree_check_get_node does.
UXTREE_API void uxtree_check_add_enumerated_node(UX_OUT_RELEASED UXXmlWrapperBase* out,
                                                 UX_EDITS UXXmlWrapperBase* parent,
                                                 UX_IN const char* prefix, int number, int id,
                                                 UX_OPT const char* attrName,
                                                 UX_OPT const char* attrValue);
// Finds or creates a child for each value, with the tag prefix + number and the value as its text.
//
//   existing     the first number is one above it; negative: above the number of children.
//   maxChildren  parent gets no more children than that; negative: no limit.
//   set          the ID of the child is that of entry `number` of this set (see
//                uxtree_make_one_set_ID).
//   label        the child's "Label", unless texts has a text for it that is not empty; null or
//                empty: its tag.
//   texts        labels of single children, by position; may be null.
//
// True; false for an unusable parent, when values is no vector of doubles, or when texts is given
// and no string array.
UXTREE_API bool uxtree_check_add_all_enumerated_nodes(
    UX_EDITS UXXmlWrapperBase* parent, UX_IN const char* prefix, UX_DOUBLES UXScriptObject* values,
    int existing = -1, int maxChildren = -1, unsigned short set = 0,
    UX_OPT const char* label = nullptr, UX_OPT UX_STRINGS UXScriptObject* texts = nullptr)
    UX_RETURNS(done, unusable = 0);
}
