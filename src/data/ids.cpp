// Combining identifiers at a node, and what is said when that fails.
#include "uxtree/data/ids.h"

#include "data/id_index.h"
#include "data/ids_detail.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/wrapping.h"
#include "marks/ids.h"
#include "marks/names.h"

using namespace ux;

namespace ux {

int _tree_combine_id_with_repeat_id(UXXmlWrapperBase& node, int& dataId, int& repeatOut,
                                    int inheritedRepeat) {
    int own = -1;
    read_repeat_id(node, own);
    return combine_id(own, dataId, repeatOut, inheritedRepeat);
}

int _tree_apply_repeat_node_id(UXXmlWrapperBase& node, int& dataId) {
    int marker = -1;
    read_repeat_node_id(node, marker);
    return apply_node_id(marker, dataId);
}

int _tree_find_dup_id(const CArray<int, int>& ids, int* dupOut) {
    const int first = IdIndex(ids).first_repeated();
    if (first < 0) return kOk;
    if (dupOut != nullptr) *dupOut = ids[first];
    return kFail;
}

void _tree_format_repeat_id_error(const UXXmlWrapperBase& node, int code, int dataId,
                                  int inheritedRepeat, CStringUTF8* errorText) {
    if (errorText == nullptr) return;
    const char* what = nullptr;
    if (code == kRepeatInvalid) what = "Repeat ID invalid";
    if (code == kRepeatConflict) what = "Repeat ID conflict";
    if (code == kIdTooLarge) what = "DataID conflict with RepeatID";
    if (what == nullptr) return;
    const CStringUTF8 tag = tag_of(node);
    const CStringUTF8 label = attribute_of(node, kLabel);
    // Intended: an identifier that is too large stands where the others print the inherited
    // RepeatID. Authors of trees search for these texts.
    errorText->Format("%s for Node with Name = %s, Label = %s, Repeat ID = %d", what,
                      static_cast<const char*>(tag), static_cast<const char*>(label),
                      code == kIdTooLarge ? dataId : inheritedRepeat);
}

void _tree_format_repeat_node_id_error(const UXXmlWrapperBase& node, int code, int dataId,
                                       CStringUTF8* errorText) {
    if (errorText == nullptr || code >= kIdUnchanged) return;
    const CStringUTF8 tag = tag_of(node);
    const CStringUTF8 label = attribute_of(node, kLabel);
    // Intended: the RepeatNodeID itself is not known here and prints as -1.
    if (code == kRepeatConflict) {
        errorText->Format(
            "Repeat Node ID conflict for Node with Name = %s, Label = %s, Repeat Node ID = %d, "
            "ID = %d",
            static_cast<const char*>(tag), static_cast<const char*>(label), -1, dataId);
        return;
    }
    errorText->Format(
        "Repeat Node ID invalid for Node with Name = %s, Label = %s, Repeat Node ID = %d",
        static_cast<const char*>(tag), static_cast<const char*>(label), -1);
}

void format_missing_data_id(const UXXmlWrapperBase& node, CStringUTF8& errorText) {
    // Intended: "Name" is the attribute here and the tag in the messages above.
    const CStringUTF8 name = attribute_of(node, kName);
    const CStringUTF8 label = attribute_of(node, kLabel);
    errorText.Format("Missing DataID for Node with Name = %s, Label = %s",
                     static_cast<const char*>(name), static_cast<const char*>(label));
}

void format_id_problem(const IdProblem& problem, CStringUTF8& errorText) {
    switch (problem.fault) {
        case IdFault::kNone:
            return;
        case IdFault::kRepeat:
            _tree_format_repeat_id_error(problem.node, problem.code, problem.id,
                                         problem.inheritedRepeat, &errorText);
            return;
        case IdFault::kRepeatNode:
            _tree_format_repeat_node_id_error(problem.node, problem.code, problem.id, &errorText);
            return;
        case IdFault::kMissing:
            format_missing_data_id(problem.node, errorText);
            return;
    }
}

void format_duplicate_id(int id, int inheritedRepeat, CStringUTF8& errorText) {
    errorText.Format("\n******  _tree_set_values_by_ids found dup id = %d, %X. RepeatID = %d\n", id,
                     static_cast<unsigned>(id), inheritedRepeat);
}

}  // namespace ux

int VCTreeGetRepeatId(UXXmlWrapperBase& node, int& out) {
    return at_boundary(kFail, [&] { return read_repeat_id(node, out); });
}

int VCTreeSetRepeatId(UXXmlWrapperBase& node, int id) {
    return at_boundary(kFail, [&] { return write_repeat_id(node, id); });
}

int VCTreeGetRepeatNodeId(UXXmlWrapperBase& node, int& out) {
    return at_boundary(kFail, [&] { return read_repeat_node_id(node, out); });
}

int VCTreeSetRepeatNodeId(UXXmlWrapperBase& node, int id) {
    return at_boundary(kFail, [&] { return write_repeat_node_id(node, id); });
}

extern "C" int uxtree_make_one_set_ID(unsigned short index, unsigned short set) {
    return one_set_id(index, set);
}

extern "C" int uxtree_is_ID_in_one_set(int id, unsigned short set) {
    return static_cast<unsigned>(id) >> 16 == one_set_high_word(set) ? kOk : kFail;
}

extern "C" int uxtree_is_in_ids_range(UXXmlWrapperBase* node, int low, int high, int extra) {
    return at_boundary(kFail, [&] {
        if (!usable(node) || low > high || low < 0 || high < 0) return kFail;
        int id = 0;
        node->GetID(id);
        // Intended: the upper end wraps at 32 bits, so an extra beyond them admits nothing.
        return low <= id && id <= wrapping_sum(high, extra) ? kOk : kFail;
    });
}

extern "C" int uxtree_combine_treenode_id_with_repeat_id(UXXmlWrapperBase* node, int* dataId,
                                                         int* repeatOut, int inheritedRepeat) {
    return at_boundary(kFail, [&] {
        if (any_null(dataId, repeatOut) || !usable(node)) return kFail;
        return _tree_combine_id_with_repeat_id(*node, *dataId, *repeatOut, inheritedRepeat);
    });
}
