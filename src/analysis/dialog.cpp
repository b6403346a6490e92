// Option trees that drive dialogs.
#include "uxtree/analysis/dialog.h"

#include <algorithm>
#include <vector>

#include "uxtree/tree/lookup.h"

#include "analysis/ranges_detail.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/walk.h"
#include "frame/wrapping.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr char kDisplayFormat[] = "DispFormat";
constexpr char kInteractiveOptions[] = "InteractiveOptions";
constexpr char kBranchOptions[] = "Branch";
constexpr char kPlotUid[] = "PlotObjUID";
constexpr char kDataMarkerId[] = "DataMarkerID";

// Kinds of nodes, which are their IDs.
constexpr int kCheckKind = 10;
constexpr int kMenuItemKind = 11;
constexpr int kChoiceKind = 13;
constexpr int kInputDataKind = 35;
constexpr int kBranchKind = 0x10000000;

constexpr DWORD kLabelIsValue = 0x4000;

enum Role { kInput = 0, kOutput = 1 };

bool has_role(UXXmlWrapperBase& node, Role role, bool strict) {
    UXXmlWrapperBase io;
    if (!node.FindChild("io", &io, 1)) return false;
    int value = kInput;  // Intended: what cannot be read is an input
    io.NodeValue(value, 1);
    if (value == kInput || value == kOutput) return value == role;
    return !strict;
}

int kind_of(const UXXmlWrapperBase& node) {
    int kind = 0;
    return node.GetID(kind) ? kind : 0;
}

int data_id_of(const UXXmlWrapperBase& node) {
    int id = 0;
    return node.GetDataID(id) ? id : 0;
}

// --- input data ----------------------------------------------------------------------------------

UXXmlWrapperBase find_or_append_range(UXXmlWrapperBase& tree, int addFlags, int index) {
    UXXmlWrapperBase range;
    if (index == 0) return tree;
    // Intended: the child at the position counts, whatever its tag; a negative index always adds.
    if (index > 0 && tree.GetChild(&range, index - 1, nullptr)) return range;
    const int number = index > 0 ? index : negated(index);
    append_numbered_range(tree, range, number, addFlags);
    return range;
}

const char* label_at(const CWBOStringArray* labels, int index) {
    if (labels == nullptr || index >= labels->GetSize()) return nullptr;
    return labels->GetAt(index);
}

void add_items(UXXmlWrapperBase& range, const CWBOStringArray& names, const CWBOStringArray* labels,
               int valueIndex, const char* value) {
    for (int i = 0; i < names.GetSize(); ++i) {
        UXXmlWrapperBase item;
        if (!uxtree_tree_check_get_node(&item, &range, names[i], kInputDataKind, kLabel,
                                        label_at(labels, i))) {
            continue;
        }
        if (given(value) && (valueIndex < 0 || valueIndex == i)) item.SetString(value);
    }
}

// --- hidden values -------------------------------------------------------------------------------

// The identifiers that a search from the front reaches when it stops at the first larger element:
// those without a larger one before them. They come out ascending.
std::vector<int> reachable_ids(const CArray<int, int>& ids) {
    std::vector<int> reachable;
    for (int i = 0; i < ids.GetSize(); ++i) {
        if (reachable.empty() || ids[i] >= reachable.back()) reachable.push_back(ids[i]);
    }
    return reachable;
}

void reset_value(UXXmlWrapperBase& node) {
    int nothing = 0;
    switch (kind_of(node)) {
        case kCheckKind:
        case kChoiceKind:
            node.NodeValue(nothing, 0);
            break;
        case kBranchKind:
            if (node.HasProperty(kUse, 0)) node.SetPropertyValue(kUse, nothing);
            break;
        default:
            break;
    }
}

int reset_values(UXXmlWrapperBase& top, const std::vector<int>& ids, bool recursive) {
    int count = 0;
    visit_below(top, [&](UXXmlWrapperBase& node) {
        const int id = data_id_of(node);
        if (id > 0 && std::binary_search(ids.begin(), ids.end(), id)) {
            reset_value(node);
            ++count;  // Intended: nodes of other kinds count although they stay as they are
        }
        return into_branch_if(recursive);
    });
    return count;
}

// --- menus ---------------------------------------------------------------------------------------

int prepare_one(UXXmlWrapperBase& node, DWORD& nextId) {
    if (!is_leaf(node)) {
        node.SetID(kBranchKind, false);
        return 0;
    }
    if (data_id_of(node) > 0) return 0;
    node.SetID(kMenuItemKind, false);
    node.SetDataID(static_cast<int>(nextId++));
    return 1;
}

}  // namespace

bool XVarNode_IsInput(UXXmlWrapperBase& node, bool strict) {
    return at_boundary(false, [&] { return has_role(node, kInput, strict); });
}

bool XVarNode_IsOutput(UXXmlWrapperBase& node, bool strict) {
    return at_boundary(false, [&] { return has_role(node, kOutput, strict); });
}

bool XVarNode_IsUseLabelForValue(UXXmlWrapperBase* node) {
    return at_boundary(false, [&] {
        return usable(node) && (bits_of(*node, kDisplayFormat) & kLabelIsValue) != 0;
    });
}

bool VCTreeCheckAddInputDataBranch(UXXmlWrapperBase* range, UXXmlWrapperBase* inputTree,
                                   const CWBOStringArray* names, const CWBOStringArray* labels,
                                   int addFlags, int rangeIndex, int valueIndex,
                                   const char* value) {
    return at_boundary(false, [&] {
        if (any_null(range, names) || !usable(inputTree)) return false;
        UXXmlWrapperBase place = find_or_append_range(*inputTree, addFlags, rangeIndex);
        add_items(place, *names, labels, valueIndex, value);
        *range = place;
        return true;
    });
}

int vctree_GETN_reset_hidden_values(UXXmlWrapperBase* node, CArray<int, int>* dataIds,
                                    bool recursive) {
    return at_boundary(kBadArgument, [&] {
        if (dataIds == nullptr || !usable(node)) return kBadArgument;
        return reset_values(*node, reachable_ids(*dataIds), recursive);
    });
}

int VCTreePrepareForMenu(UXXmlWrapperBase* node, DWORD& nextId) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(node)) return kBadArgument;
        int count = prepare_one(*node, nextId);
        visit_below(*node, [&](UXXmlWrapperBase& below) { count += prepare_one(below, nextId); });
        return count;
    });
}

int vctree_test_ICOPT_recursively(UXXmlWrapperBase& node, DWORD mask) {
    return at_boundary(kFail, [&] {
        for (UXXmlWrapperBase place = node; usable(place); step_to_parent(place)) {
            int options = 0;
            if (!place.GetPropertyValue(kInteractiveOptions, options, 0)) continue;
            // Intended: the nearest node that has options decides, also when none is set.
            return (static_cast<DWORD>(options) & mask) != 0 ? kOk : kFail;
        }
        return kFail;
    });
}

int vctree_copy_branch_options(UXXmlWrapperBase& destination, UXXmlWrapperBase& source,
                               DWORD mask) {
    return at_boundary(kFail, [&] {
        int options = 0;
        if (!source.GetPropertyValue(kBranchOptions, options, 0)) return kFail;
        const DWORD kept = static_cast<DWORD>(options) & mask;
        return destination.SetPropertyValue(kBranchOptions, static_cast<int>(kept));
    });
}

int vctree_set_plot_uid_to_tree(UXXmlWrapperBase& tree, int uid) {
    return at_boundary(kFail, [&] { return tree.SetPropertyValue(kPlotUid, uid); });
}

int vctree_get_plot_uid_from_tree(UXXmlWrapperBase& tree, int& uid) {
    return at_boundary(kFail, [&] { return tree.GetPropertyValue(kPlotUid, uid, 0); });
}

int vctree_set_data_marker_id_to_tree(UXXmlWrapperBase& tree, int id) {
    return at_boundary(kFail, [&] { return tree.SetPropertyValue(kDataMarkerId, id); });
}

int vctree_get_data_marker_id_from_tree(UXXmlWrapperBase& tree, int& id) {
    return at_boundary(kFail, [&] { return tree.GetPropertyValue(kDataMarkerId, id, 0); });
}

int vctree_copy_plot_uid_from_tree_to_tree(UXXmlWrapperBase& destination,
                                           UXXmlWrapperBase& source) {
    return at_boundary(kFail, [&] {
        int uid = 0;
        if (!vctree_get_plot_uid_from_tree(source, uid)) return kFail;
        return vctree_set_plot_uid_to_tree(destination, uid);
    });
}

extern "C" int uxtree_tree_check_add_input_data_branch(
    UXXmlWrapperBase* range, UXXmlWrapperBase* inputTree, UXScriptObject* names,
    UXScriptObject* labels, int addFlags, int rangeIndex, int valueIndex, const char* value) {
    return at_boundary(kFail, [&] {
        const CWBOStringArray* labelTexts = string_array(labels);
        if (refused(labels, labelTexts)) return kFail;
        const bool done =
            VCTreeCheckAddInputDataBranch(range, inputTree, string_array(names), labelTexts,
                                          addFlags, rangeIndex, valueIndex, value);
        return done ? kOk : kFail;
    });
}

extern "C" int uxtree_GETN_reset_hidden_values(UXXmlWrapperBase* node, UXScriptObject* dataIds,
                                               bool recursive) {
    return at_boundary(kBadArgument, [&] {
        return vctree_GETN_reset_hidden_values(node, int_vector(dataIds), recursive);
    });
}
