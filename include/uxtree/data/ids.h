// The identifiers under which values travel between trees.
//
// A node's value is addressed by its attribute "DataID" (0 to 65535 where it is to be combined). A
// branch with the attribute "RepeatID" is one of several copies of the same branch: the bits of its
// RepeatID, together with those of the repeated branches above, fill bits 16 to 31 of the
// identifiers of its leaves. The attribute "RepeatNodeID" marks a single repeated node; its low
// byte fills bits 24 to 31 of that node's identifier. An absent identifier reads as -1.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Reads the RepeatID into out, -1 when there is none. 1 when it is 0 to 32767; otherwise 0, with
// the value as read in out.
UXTREE_API int VCTreeGetRepeatId(UX_IN UXXmlWrapperBase& node, UX_OUT int& out)
    UX_RETURNS(done, not_found = 0);
// Writes the RepeatID, or removes it when id is below 1. 1 when done, 0 for an invalid node.
UXTREE_API int VCTreeSetRepeatId(UX_EDITS UXXmlWrapperBase& node, int id)
    UX_RETURNS(done, unusable = 0);
// Reads the RepeatNodeID into out, -1 when there is none. 1 when it is 1 to 32767; otherwise 0,
// with the value as read in out.
UXTREE_API int VCTreeGetRepeatNodeId(UX_IN UXXmlWrapperBase& node, UX_OUT int& out)
    UX_RETURNS(done, not_found = 0);
// Writes the RepeatNodeID, or removes it when id is below 1. 1 when done, 0 for an invalid node.
UXTREE_API int VCTreeSetRepeatNodeId(UX_EDITS UXXmlWrapperBase& node, int id)
    UX_RETURNS(done, unusable = 0);
extern "C" {
// The identifier of entry `index` of a one-set: the set's number, with bit 13 forced on, in bits 16
// to 31, the index in bits 0 to 15.
UXTREE_API int uxtree_make_one_set_ID(unsigned short index, unsigned short set) UX_RETURNS(stored);
// 1 when id was made for this set, else 0.
UXTREE_API int uxtree_is_ID_in_one_set(int id, unsigned short set) UX_RETURNS(yes, no = 0);
// 1 when the node's intrinsic ID (0 without one) is low to high + extra. 0 otherwise, and for an
// unusable node, low above high, or a negative low or high.
UXTREE_API int uxtree_is_in_ids_range(UX_IN UXXmlWrapperBase* node, int low, int high, int extra)
    UX_RETURNS(yes, no = 0);
// One step of combining identifiers along a path from the root. inheritedRepeat is the combined
// RepeatID from above, below 1 for none; *dataId is the node's own identifier, negative for none.
//
// Results:
//    3  the inherited RepeatID was stamped into *dataId
//    2  *repeatOut is the inherited RepeatID with the node's own; *dataId is untouched
//    1  *repeatOut is the node's own RepeatID; *dataId is untouched
//    0  nothing to combine; also for a null pointer or an invalid node
//   -1  *dataId is 65536 or more and cannot be combined
//   -2  the node's RepeatID shares bits with the inherited one
//   -3  the node's RepeatID is out of range
// *repeatOut is also set, to the inherited RepeatID, when the node's own RepeatID is 0 and there is
// an inherited one; in every other case it is left alone.
UXTREE_API int uxtree_combine_treenode_id_with_repeat_id(UX_IN UXXmlWrapperBase* node,
                                                         UX_INOUT int* dataId,
                                                         UX_OUT int* repeatOut, int inheritedRepeat)
    UX_RETURNS(number, stamped = 3, repeat_combined = 2, own = 1, not_combined = 0, too_large = -1,
               repeat_overlaps = -2, repeat_out_of_range = -3);
}
