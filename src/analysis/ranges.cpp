// Trees of data ranges and their sub-ranges.
#include "uxtree/analysis/ranges.h"

#include "uxtree/data/ids.h"

#include "analysis/ranges_detail.h"
#include "frame/guards.h"
#include "frame/messages.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr char kRangeTag[] = "Range";
constexpr char kSeparatorTag[] = "S";
constexpr char kBranch[] = "Branch";
constexpr char kActionObjectId[] = "_ACTION_OBJECT_ID";
constexpr char kEntireWorksheet[] = "_EntireWorksheet";

constexpr int kFirstRepeatId = 128;
constexpr int kRepeatIdStep = 16;
constexpr int kDefaultSlotId = 51;

constexpr int kTypeWithErrors = 2;    // the third slot is "ED"
constexpr int kTypeWithFollower = 4;  // the third slot is whatever follows "Y"

// A separator, and also the end of the siblings.
bool ends_range(const UXXmlWrapperBase& node) {
    CStringUTF8 tag;
    return !node.GetTagName(tag) || tag == kSeparatorTag;
}

CStringUTF8 range_label(int number) {
    // Loaded once per process: a tree whose ranges change their language half way helps nobody.
    static const CStringUTF8 word = message_text(kMessageRange);
    CStringUTF8 label;
    label.Format("%s %d", static_cast<const char*>(word), number);
    return label;
}

void set_next_repeat_id(UXXmlWrapperBase& range) {
    UXXmlWrapperBase previous;
    int id = 0;
    const bool follows = range.PrevSibling(&previous) && VCTreeGetRepeatId(previous, id);
    VCTreeSetRepeatId(range, follows ? id + kRepeatIdStep : kFirstRepeatId);
}

int set_action_id(UXXmlWrapperBase& node, int id) {
    return node.SetPropertyValue(kActionObjectId, id);
}

bool append_range(UXXmlWrapperBase& tree, UXXmlWrapperBase& out, int id) {
    // Intended: numbered by the count of all children, even when that tag is taken.
    if (!append_numbered_range(tree, out, tree.GetNodeCount() + 1, id)) return false;
    out.SetPropertyValue(kBranch, 0);
    return true;
}

void append_slot(UXXmlWrapperBase& range, const UXRangeSlots& slots, int index, int id) {
    const CStringUTF8& tag = slots.tags[index];
    UXXmlWrapperBase slot;
    if (!range.AddNode(&slot, tag, id)) return;
    const bool labelled = index < slots.labels.GetSize() && !slots.labels[index].IsEmpty();
    slot.SetLabel(labelled ? slots.labels[index] : tag);
    slot.SetDataID(index < slots.dataIds.GetSize() ? slots.dataIds[index] : kDefaultSlotId);
    set_action_id(slot, slots.actionId);
}

// Intended: slots are appended each time, also to a range that has some.
void append_slots(UXXmlWrapperBase& range, int id, int stored, int rangeType) {
    UXRangeSlots slots;
    call_out(UXGetHostServices().rangeSlots, rangeType, stored, slots);
    set_action_id(range, slots.actionId);
    for (int i = 0; i < slots.tags.GetSize(); ++i) append_slot(range, slots, i, id);
}

void renumber_in_place(UXXmlWrapperBase& rangeTree) {
    int number = 0;
    // Intended: separators count and are labelled like ranges.
    for (UXXmlWrapperBase& range : children(rangeTree)) {
        range.SetLabel(range_label(++number));
        set_next_repeat_id(range);
    }
}

void rebuild_numbered(UXXmlWrapperBase& rangeTree) {
    // Beside the tree, which takes it only when it is whole.
    UXXmlWrapperBase rebuilt;
    if (!rangeTree.Clone(&rebuilt, 1)) return;
    rebuilt.RemoveAllChildren();
    int number = 0;
    for (UXXmlWrapperBase& source : children(rangeTree)) {
        UXXmlWrapperBase range;  // the copy was emptied, so no child has this tag yet
        if (!rebuilt.AddNode(&range, numbered(kRangeTag, ++number), -1) ||
            !range.Replace(&source, 0, 0, 0)) {
            return;
        }
        range.SetLabel(range_label(number));
        set_next_repeat_id(range);
    }
    rangeTree.Replace(&rebuilt, 0, 0, 0);
}

const char* third_slot_tag(int rangeType) {
    return rangeType == kTypeWithErrors ? "ED" : "Z";
}

bool read_text(UXXmlWrapperBase& node, CStringUTF8& text) {
    if (!usable(node)) return false;
    text = text_of(node);
    return true;
}

bool write_child_text(UXXmlWrapperBase& parent, const char* tag, const char* text) {
    UXXmlWrapperBase child;
    return parent.FindChild(tag, &child, 1) && child.SetString(text);
}

void write_following_text(const UXXmlWrapperBase& node, const char* text) {
    UXXmlWrapperBase follower;
    if (node.NextSibling(&follower)) follower.SetString(text);
}

int read_slots(UXXmlWrapperBase& range, CStringUTF8& x, CStringUTF8& y, CStringUTF8& z,
               int rangeType) {
    UXXmlWrapperBase slot;
    range.FindChild("X", &slot, 1);
    if (!read_text(slot, x)) return kFail;
    range.FindChild("Y", &slot, 1);
    if (!read_text(slot, y)) return kFail;
    if (rangeType == kTypeWithFollower) {
        slot.NextSibling(&slot);
        read_text(slot, z);
        return kOk;
    }
    range.FindChild(third_slot_tag(rangeType), &slot, 1);
    return read_text(slot, z) ? kOk : kFail;
}

int write_slots(UXXmlWrapperBase& range, const char* x, const char* y, const char* z, int rangeType,
                bool join) {
    if (!write_child_text(range, "X", x)) return kFail;
    if (!write_child_text(range, "Y", y)) return kFail;
    if (rangeType != kTypeWithFollower) {
        return write_child_text(range, third_slot_tag(rangeType), z) ? kOk : kFail;
    }
    UXXmlWrapperBase slot;
    range.FindChild("Y", &slot, 1);
    if (!join) {
        write_following_text(slot, z);
        return kOk;
    }
    CStringUTF8 both;
    both.Format("%s,%s", y, z);
    slot.SetString(both);
    return kOk;
}

}  // namespace

namespace ux {

bool append_numbered_range(UXXmlWrapperBase& tree, UXXmlWrapperBase& out, int number, int id) {
    UXXmlWrapperBase range;
    if (!tree.AddNode(&range, numbered(kRangeTag, number), id)) return false;
    range.SetLabel(range_label(number));
    out = range;
    return true;
}

}  // namespace ux

// --- iterators -----------------------------------------------------------------------------------

VCRangeTreeIterator::VCRangeTreeIterator(UXXmlWrapperBase& rangeTree) {
    rangeTree.FirstChild(&position_);
    // Intended: the first child alone tells the shape of the whole tree.
    hierarchical_ = position_.GetNodeCount() > 0 ? 1 : 0;
}
VCRangeTreeIterator::VCRangeTreeIterator(const VCRangeTreeIterator& other) = default;
VCRangeTreeIterator::VCRangeTreeIterator(VCRangeTreeIterator&& other) noexcept = default;
VCRangeTreeIterator::~VCRangeTreeIterator() = default;
VCRangeTreeIterator& VCRangeTreeIterator::operator=(const VCRangeTreeIterator& other) = default;
VCRangeTreeIterator& VCRangeTreeIterator::operator=(VCRangeTreeIterator&& other) noexcept = default;

int VCRangeTreeIterator::IsHierarchical() const {
    return hierarchical_;
}

int VCRangeTreeIterator::Get(UXXmlWrapperBase& firstSubRange) {
    return at_boundary(kFail, [&] {
        if (!usable(position_)) return kFail;
        if (hierarchical_) {
            // Intended: a childless range gives 0, and the next call goes on behind it.
            position_.FirstChild(&firstSubRange);
            position_.NextSibling(&position_);
            return firstSubRange.IsNodeValid();
        }
        while (usable(position_) && ends_range(position_)) position_.NextSibling(&position_);
        if (!usable(position_)) return kFail;
        firstSubRange = position_;
        while (!ends_range(position_)) position_.NextSibling(&position_);
        return kOk;
    });
}

VCSubRangeTreeIterator::VCSubRangeTreeIterator(UXXmlWrapperBase& firstSubRange)
    : position_(firstSubRange) {}
VCSubRangeTreeIterator::VCSubRangeTreeIterator(const VCSubRangeTreeIterator& other) = default;
VCSubRangeTreeIterator::VCSubRangeTreeIterator(VCSubRangeTreeIterator&& other) noexcept = default;
VCSubRangeTreeIterator::~VCSubRangeTreeIterator() = default;
VCSubRangeTreeIterator& VCSubRangeTreeIterator::operator=(const VCSubRangeTreeIterator& other) =
    default;
VCSubRangeTreeIterator& VCSubRangeTreeIterator::operator=(VCSubRangeTreeIterator&& other) noexcept =
    default;

int VCSubRangeTreeIterator::Get(UXXmlWrapperBase& subRange) {
    return at_boundary(kFail, [&] {
        // Intended: a separator is never passed, whatever the shape of the tree.
        if (ends_range(position_)) return kFail;
        subRange = position_;
        position_.NextSibling(&position_);
        return kOk;
    });
}

// --- ranges and their slots ----------------------------------------------------------------------

int vctree_add_subrange_to_composite_range(UXXmlWrapperBase& range, UXXmlWrapperBase& rangeTree,
                                           int addFlags, int stored, int rangeType) {
    return at_boundary(kFail, [&] {
        if (!usable(range)) {
            if (!usable(rangeTree)) return kFail;
            if (!append_range(rangeTree, range, addFlags)) return kFail;
        }
        set_next_repeat_id(range);
        append_slots(range, addFlags, stored, rangeType);
        call_out(UXGetHostServices().finishRange, rangeTree, rangeType);
        return kOk;
    });
}

void vctree_reenum_subranges_in_range_tree(UXXmlWrapperBase& rangeTree, int mode) {
    at_boundary([&] {
        if (!usable(rangeTree)) return;
        if (mode == 0) {
            renumber_in_place(rangeTree);
        } else {
            rebuild_numbered(rangeTree);
        }
    });
}

int vctree_get_composite_subrange_values(UXXmlWrapperBase& range, CStringUTF8& x, CStringUTF8& y,
                                         CStringUTF8& z, int rangeType) {
    return at_boundary(kFail, [&] { return read_slots(range, x, y, z, rangeType); });
}

int vctree_set_composite_subrange_values(UXXmlWrapperBase& range, const char* x, const char* y,
                                         const char* z, int stored, int rangeType, int join,
                                         int reset) {
    return at_boundary(kFail, [&] {
        if (!usable(range)) return kFail;
        if (reset) range.ResetNode(1);
        UXXmlWrapperBase noTree;
        // Intended: without reset, a range that has slots gets a second set behind them, and the
        // values go into the first.
        vctree_add_subrange_to_composite_range(range, noTree, -1, stored, rangeType);
        return write_slots(range, text_or(x, ""), text_or(y, ""), text_or(z, ""), rangeType,
                           join != 0);
    });
}

// --- settings of one node ------------------------------------------------------------------------

int vctree_composite_range_get_entire_worksheet_support(UXXmlWrapperBase& node) {
    return at_boundary(kFail, [&] {
        if (!node.HasProperty(kEntireWorksheet, 0)) return 0;
        return int_attribute_of(node, kEntireWorksheet) == 1 ? 1 : -1;
    });
}

void vctree_composite_range_set_entire_worksheet_support(UXXmlWrapperBase& node, int value) {
    at_boundary([&] {
        if (value == 1) node.SetPropertyValue(kEntireWorksheet, 1);
        // Intended: -1 keeps the support and switches it off, 0 takes it away.
        if (value == -1) node.SetPropertyValue(kEntireWorksheet, 0);
        if (value == 0) node.RemoveProperty(kEntireWorksheet);
    });
}

int vctree_get_set_node_action_id(UXXmlWrapperBase& node, int& id, int get) {
    return at_boundary(kFail, [&] {
        return get != 0 ? node.GetPropertyValue(kActionObjectId, id, 0) : set_action_id(node, id);
    });
}

int VCTreeSetCompositeSubRangeNodeActionId(UXXmlWrapperBase& node, int id, int childId) {
    return at_boundary(kFail, [&] {
        if (!set_action_id(node, id)) return kFail;
        if (childId < 1) return kOk;
        for (UXXmlWrapperBase& child : children(node)) {
            if (!set_action_id(child, childId)) return kFail;
        }
        return kOk;
    });
}

// --- script forms --------------------------------------------------------------------------------

extern "C" int uxtree_composite_range_get_entire_worksheet_support(UXXmlWrapperBase* node) {
    return node == nullptr ? kFail : vctree_composite_range_get_entire_worksheet_support(*node);
}

extern "C" void uxtree_composite_range_set_entire_worksheet_support(UXXmlWrapperBase* node,
                                                                    int value) {
    if (node != nullptr) vctree_composite_range_set_entire_worksheet_support(*node, value);
}

extern "C" int uxtree_set_composite_subrange_values(UXXmlWrapperBase* range, const char* x,
                                                    const char* y, const char* z, int stored,
                                                    int rangeType, int join, int reset) {
    if (range == nullptr) return kFail;
    return vctree_set_composite_subrange_values(*range, x, y, z, stored, rangeType, join, reset);
}
