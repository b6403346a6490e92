// Parameter settings of the fitter: its lists, and filling them from arrays.
#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>

#include "uxtree/analysis/fitter.h"
#include "uxtree/tree/lookup.h"
#include "uxtree/tree/vectors.h"

#include "analysis/fitter_detail.h"
#include "frame/guards.h"
#include "frame/script_args.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "frame/wrapping.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr char kAssignDelay[] = "DataIDAssignDelay";
constexpr int kDelay = 10;
constexpr int kSettingsId = 2900;

struct Setting {
    const char* tag;
    const char* dataId;
};
constexpr std::array<Setting, 3> kSwitches{
    {{"AutoParamsInit", "2906"}, {"LinearConstraints", "2907"}, {"UseInitialFormula", "2908"}}};

struct List {
    const char* tag;
    int base;  // DataID of the list; entry k has base + k
};
// In order of creation. Intended: "FixedValues" comes third although its base is larger.
constexpr std::array<List, 13> kLists{{{"Share", 5000},
                                       {"Fixed", 6000},
                                       {"FixedValues", 15000},
                                       {"LowerBounds", 7000},
                                       {"LowerBoundsExclusive", 8000},
                                       {"LowerBoundsEnable", 9000},
                                       {"UpperBounds", 10000},
                                       {"UpperBoundsExclusive", 11000},
                                       {"UpperBoundsEnable", 12000},
                                       {"Values", 13000},
                                       {"SignificantDigit", 14000},
                                       {"Format", 16000},
                                       {"CustomDisplay", 18000}}};
// Lists that others create.
constexpr std::array<List, 3> kForeignLists{
    {{"Functions", 19100}, {"FuncFileNames", 19200}, {"FuncCategories", 19300}}};

std::unordered_set<int> child_ids(const UXXmlWrapperBase& node) {
    std::unordered_set<int> ids;
    for (UXXmlWrapperBase& child : children(node)) {
        int id = 0;
        if (child.GetDataID(id)) ids.insert(id);
    }
    return ids;
}

void append_missing_entries(UXXmlWrapperBase& list, int base, int count) {
    const std::unordered_set<int> present = child_ids(list);
    for (int number = 1; number <= count; ++number) {
        const int id = wrapping_sum(base, number);
        UXXmlWrapperBase entry;
        if (present.count(id) != 0) continue;
        if (!list.AddNode(&entry, numbered("Value", number), -1)) return;
        entry.SetDataID(id);
    }
}

void size_list(UXXmlWrapperBase& params, const List& row, int count) {
    UXXmlWrapperBase list;
    uxtree_check_get_node_by_dataid(&params, &list, row.tag, row.base, nullptr, nullptr);
    if (list.GetNodeCount() > count) {
        list.SetSizeTrimFromEnd(count);
    } else {
        append_missing_entries(list, row.base, count);
    }
}

// The identifiers travel as texts; they are set on children that were there before, too.
void add_switches(UXXmlWrapperBase& params) {
    for (const Setting& setting : kSwitches) {
        UXXmlWrapperBase node;
        uxtree_tree_check_get_node(&node, &params, setting.tag, 0, kDataId, setting.dataId);
    }
    UXXmlWrapperBase formula;
    if (!params.FindChild(kSwitches.back().tag, &formula, 1)) return;
    formula.SetPropertyValue(kAssignDelay, kDelay);
}

template <typename Rows>
bool has_tag(const Rows& rows, std::string_view tag) {
    return std::any_of(rows.begin(), rows.end(), [&](const List& row) { return row.tag == tag; });
}

using Writer = void (*)(UXScriptObject* values, UXXmlWrapperBase* node);

bool fill_list(UXXmlWrapperBase* params, UXScriptObject* values, const void* array, int listDataID,
               Writer write) {
    if (array == nullptr || !usable(params)) return false;
    UXXmlWrapperBase list;
    constexpr int kDirectChildren = 0;
    if (!params->FindNodeByAttribute(&list, kDataId, listDataID, kDirectChildren)) return false;
    write(values, &list);
    return true;
}

}  // namespace

namespace ux {

bool is_parameter_list_tag(const char* tag) {
    return tag != nullptr && (has_tag(kLists, tag) || has_tag(kForeignLists, tag));
}

}  // namespace ux

extern "C" {

void uxtree_nlsf_add_params_node_DataID(UXXmlWrapperBase* params, int count) {
    at_boundary([&] {
        if (params == nullptr) return;
        if (!usable(params)) params->CreateNew(0, nullptr);
        params->SetDataID(kSettingsId);
        add_switches(*params);
        for (const List& row : kLists) size_list(*params, row, std::max(count, 0));
    });
}

bool uxtree_nlf_set_bool_param_from_user_params_setting(UXXmlWrapperBase* params,
                                                        UXScriptObject* values, int listDataID) {
    return at_boundary(false, [&] {
        return fill_list(params, values, bool_vector(values), listDataID,
                         uxtree_value_from_vec_bool_to_tree_sub_nodes);
    });
}

bool uxtree_nlf_set_double_param_from_user_params_setting(UXXmlWrapperBase* params,
                                                          UXScriptObject* values, int listDataID) {
    return at_boundary(false, [&] {
        return fill_list(params, values, double_vector(values), listDataID,
                         uxtree_value_from_vec_double_to_tree_sub_nodes);
    });
}

bool uxtree_nlf_set_int_param_from_user_params_setting(UXXmlWrapperBase* params,
                                                       UXScriptObject* values, int listDataID) {
    return at_boundary(false, [&] {
        return fill_list(params, values, int_vector(values), listDataID,
                         uxtree_value_from_vec_int_to_tree_sub_nodes);
    });
}

}  // extern "C"
