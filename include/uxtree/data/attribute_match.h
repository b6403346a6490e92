// Values of one tree written into attributes of the nodes of another that carry the same attribute.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
// For every leaf below source that has the match attribute, in order: writes the leaf's value into
// the target attribute of the nodes below target whose match attribute has the same text, and,
// when an extra attribute is named, the leaf's extra attribute ("" when absent) into theirs.
//
//   targetAttribute  null or empty: "Show".       matchAttribute  null or empty: "DataID".
//   extraAttribute   null or empty: none.         recursive       0: the children of both only.
//   all              0: the first match only.     caseSensitive   0: ASCII case is ignored.
//
// The time grows with the two trees together. Only when the target or the extra attribute is the
// match attribute itself, so that what one leaf writes changes what the next one finds, does every
// leaf walk the target: the time then grows with the leaves times the nodes.
//
// 1 or 0, for a match or none in the last search made. With `all`, a search reports only about the
// nodes behind the last branch of target it entered. A recursive pass over a branch of source that
// holds no leaf to match ends with 0. 0 also for an unusable tree.
UXTREE_API int uxtree_copy_values_to_attributes_by_attribute_matching(
    UX_IN UXXmlWrapperBase* source, UX_EDITS UXXmlWrapperBase* target,
    UX_OPT const char* targetAttribute, UX_OPT const char* matchAttribute,
    UX_OPT const char* extraAttribute, int recursive, int all, int caseSensitive)
    UX_RETURNS(yes, no = 0);
}
