// Carrying values and attributes from one tree to another.
#pragma once

#include "uxtree/data/value_watch.h"
#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Copies the values of source and of its later siblings, with everything below them, onto
// destination and its later siblings, pairing the nodes by their place alone. A branch's value is
// its "Use"; embedded attributes travel with the values (see values.h).
//
//   copyAttributes  nonzero: all attributes are copied too; those named in keptAttributes (may be
//                   null) keep their destination text where it is not empty.
//   dynamicChecks   nonzero: for the first pair only, a value without "Auto" resets the node's
//                   automatic support, and one without "DynaUseChck" switches an existing one on.
//
// Returns 0 when the walk ended with both trees at the same place or destination had more nodes,
// 1 at the first level on which destination ran out; what was copied before stays.
UXTREE_API int vctree_copy_values_between_homologous_trees(
    UX_EDITS UXXmlWrapperBase& destination, UX_IN UXXmlWrapperBase& source, int copyAttributes,
    UX_OPT UX_IN CWBOStringArray* keptAttributes, int dynamicChecks) UX_RETURNS(zero, ran_out = 1);
// Collects the values of source and sets them into destination (see values.h).
//
//   setMode     handed to the host's write.
//   themeFlag   nonzero: branches without "Use" are collected too.
//   callback    a watch on one leaf of destination; may be null.
//   validateOff nonzero: values are never validated.
//   skipEmpty   nonzero: empty values are not set.
//   useFlag     nonzero: leaves that have "Use" give it in place of their text.
//   themeOff    nonzero: bit 21 of an identifier has no meaning.
//
// Returns the number of values written; 0 when source yields none; the negated identifier when
// source yields one of 1 or more twice; -1 for unusable trees; otherwise the codes of
// vctree_set_values_by_ids.
UXTREE_API int vctree_copy_values_by_id(UX_IN UXXmlWrapperBase* source,
                                        UX_EDITS UXXmlWrapperBase* destination, int setMode,
                                        UX_OPT const char* sourceIdAttribute,
                                        UX_OPT const char* destinationIdAttribute, int themeFlag,
                                        UX_OPT UX_INOUT _SETVALUESBYIDS* callback, int validateOff,
                                        int skipEmpty, int useFlag, int themeOff)
    UX_RETURNS(count, unusable = -1, broken_repeat_rule = -5, duplicate_id = other)
        UX_NATIVE_ONLY("takes a record with a function");
extern "C" {
// The same without a watch.
UXTREE_API int uxtree_copy_values_by_id(UX_IN UXXmlWrapperBase* source,
                                        UX_EDITS UXXmlWrapperBase* destination, int setMode,
                                        UX_OPT const char* sourceIdAttribute,
                                        UX_OPT const char* destinationIdAttribute, int themeFlag,
                                        int validateOff, int skipEmpty, int useFlag, int themeOff)
    UX_RETURNS(count, unusable = -1, broken_repeat_rule = -5, duplicate_id = other);
// Appends to destination, at its top level, a node for every identifier of source (its own node
// included) that no node of destination has, with the source node's tag and label; then copies the
// values by identifier, branches without "Use" included. Returns what the copy returns.
UXTREE_API int uxtree_whole_copy_values_by_id(UX_IN UXXmlWrapperBase* source,
                                              UX_EDITS UXXmlWrapperBase* destination)
    UX_RETURNS(count, unusable = -1, broken_repeat_rule = -5, duplicate_id = other);
// Copies one attribute, or two, from the nodes of source to the nodes of destination with the same
// identifier. With two, an attribute that is empty in source while the other one is not is removed
// from destination. With rename, `attribute` is written under the name secondAttribute. Returns 0,
// the negated identifier when source yields one twice, or -1 for unusable trees.
UXTREE_API int uxtree_copy_atts_by_id(UX_IN UXXmlWrapperBase* source,
                                      UX_EDITS UXXmlWrapperBase* destination,
                                      UX_OPT const char* attribute,
                                      UX_OPT const char* sourceIdAttribute,
                                      UX_OPT const char* destinationIdAttribute,
                                      UX_OPT const char* secondAttribute, int rename)
    UX_RETURNS(zero, unusable = -1, duplicate_id = other);
// For every node below source (leaves only, when asked), gives its "DataID" (0 without one) to the
// first node of destination, itself included, with the same tag in any case. Returns how often a
// node was found.
UXTREE_API int uxtree_copy_ids_by_tagname(UX_IN UXXmlWrapperBase* source,
                                          UX_EDITS UXXmlWrapperBase* destination, bool leavesOnly)
    UX_RETURNS(count, none = 0);
}
