// Trees of data ranges and their sub-ranges.
//
// A range tree is hierarchical (its children are the ranges, theirs the sub-ranges) or flat (its
// children are sub-ranges, and nodes of the tag "S" separate one range from the next). The first
// child alone tells which: a tree whose first child has children is hierarchical.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Walks the ranges of a tree. A value: a copy goes on by itself.
class UXTREE_API VCRangeTreeIterator {
public:
    explicit VCRangeTreeIterator(UXXmlWrapperBase& rangeTree);
    VCRangeTreeIterator(const VCRangeTreeIterator& other);
    VCRangeTreeIterator(VCRangeTreeIterator&& other) noexcept;
    ~VCRangeTreeIterator();
    VCRangeTreeIterator& operator=(const VCRangeTreeIterator& other);
    VCRangeTreeIterator& operator=(VCRangeTreeIterator&& other) noexcept;
    int IsHierarchical() const;
    // Hands out the first sub-range of the next range. 1, or 0 at the end, where firstSubRange is
    // untouched. A hierarchical range without sub-ranges also gives 0, makes firstSubRange invalid,
    // and is passed: the next call goes on behind it.
    int Get(UXXmlWrapperBase& firstSubRange);

private:
    UXXmlWrapperBase position_;
    int hierarchical_;
};

// Walks the sub-ranges of one range, beginning with the given node.
class UXTREE_API VCSubRangeTreeIterator {
public:
    explicit VCSubRangeTreeIterator(UXXmlWrapperBase& firstSubRange);
    VCSubRangeTreeIterator(const VCSubRangeTreeIterator& other);
    VCSubRangeTreeIterator(VCSubRangeTreeIterator&& other) noexcept;
    ~VCSubRangeTreeIterator();
    VCSubRangeTreeIterator& operator=(const VCSubRangeTreeIterator& other);
    VCSubRangeTreeIterator& operator=(VCSubRangeTreeIterator&& other) noexcept;
    // 1, or 0 with subRange untouched at the end of the siblings or at a separator, which is never
    // passed.
    int Get(UXXmlWrapperBase& subRange);

private:
    UXXmlWrapperBase position_;
};

// Gives a range its slots: children with the tags, labels and DataIDs that the host keeps for the
// range type. An invalid range is first appended to rangeTree as "Range" and the number of children
// plus 1, with that number in its label, and comes back in range. The range gets a RepeatID: 16
// more than that of the sibling before it, else 128. Slots are appended even when there are some.
//
//   addFlags   the ID of every new node, -1 for none
//   stored     handed to the host's slot provider
//
// 1, or 0 when both range and rangeTree are invalid.
UXTREE_API int vctree_add_subrange_to_composite_range(
    UX_MAY_BE_INVALID UX_EDITS UXXmlWrapperBase& range,
    UX_MAY_BE_INVALID UX_EDITS UXXmlWrapperBase& rangeTree, int addFlags, int stored, int rangeType)
    UX_RETURNS(done, unusable = 0);
// Numbers all children from 1 in their labels, and their RepeatIDs from 128 in steps of 16. Mode 0
// leaves their tags; any other mode also makes the tags "Range1", "Range2" and so on.
UXTREE_API void vctree_reenum_subranges_in_range_tree(UX_EDITS UXXmlWrapperBase& rangeTree,
                                                      int mode);
// Support of entire worksheets by a node: 1 on, -1 present but off or unreadable, 0 absent.
UXTREE_API int vctree_composite_range_get_entire_worksheet_support(UX_IN UXXmlWrapperBase& node)
    UX_RETURNS(stored, none = 0);
// 1 switches it on, -1 off but kept, 0 removes it; other values change nothing.
UXTREE_API void vctree_composite_range_set_entire_worksheet_support(UX_EDITS UXXmlWrapperBase& node,
                                                                    int value);
// Reads the node's action object id (get nonzero) or writes it (get 0). 1, or 0 with id untouched
// when there is none to read or the node is invalid.
UXTREE_API int vctree_get_set_node_action_id(UX_EDITS UXXmlWrapperBase& node, UX_GETSET int& id,
                                             int get) UX_RETURNS(done, not_found = 0);
// Writes id as the action object id of the node and, when childId is at least 1, childId as that of
// every child. 1, or 0 for an invalid node.
UXTREE_API int VCTreeSetCompositeSubRangeNodeActionId(UX_EDITS UXXmlWrapperBase& node, int id,
                                                      int childId) UX_RETURNS(done, unusable = 0);
// Reads the texts of a range's slots "X", "Y" and a third one: "ED" for range type 2, whatever
// follows "Y" for type 4 (z is untouched when nothing does), "Z" for all others. 1, or 0 at the
// first slot that is missing; what was read before stays.
UXTREE_API int vctree_get_composite_subrange_values(UX_IN UXXmlWrapperBase& range,
                                                    UX_OUT CStringUTF8& x, UX_OUT CStringUTF8& y,
                                                    UX_OUT CStringUTF8& z, int rangeType)
    UX_RETURNS(done, not_found = 0);
// Gives the range its slots, as vctree_add_subrange_to_composite_range does, and writes the texts
// into the first slot of each tag; null texts are empty.
//
//   join    for range type 4: "y,z" goes into "Y" and the third slot stays as it is
//   reset   removes all children and the text of the range first
//
// 1, or 0 for an invalid range and at the first slot that is missing.
UXTREE_API int vctree_set_composite_subrange_values(UX_EDITS UXXmlWrapperBase& range,
                                                    UX_OPT const char* x, UX_OPT const char* y,
                                                    UX_OPT const char* z, int stored, int rangeType,
                                                    int join, int reset)
    UX_RETURNS(done, not_done = 0);
extern "C" {
// Script forms; 0 or nothing for a null node.
UXTREE_API int uxtree_composite_range_get_entire_worksheet_support(UX_IN UXXmlWrapperBase* node)
    UX_RETURNS(stored, none = 0);
UXTREE_API void uxtree_composite_range_set_entire_worksheet_support(UX_EDITS UXXmlWrapperBase* node,
                                                                    int value);
UXTREE_API int uxtree_set_composite_subrange_values(UX_EDITS UXXmlWrapperBase* range,
                                                    UX_OPT const char* x, UX_OPT const char* y,
                                                    UX_OPT const char* z, int stored, int rangeType,
                                                    int join, int reset)
    UX_RETURNS(done, not_done = 0);
}
