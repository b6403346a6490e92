// The rules by which identifiers are combined along a path, and their error texts.
#pragma once

#include "uxtree/host/array.h"
#include "uxtree/host/node.h"

#include "marks/node_marks.h"

namespace ux {

// The codes of both combining rules; 1 and 2 occur in the first one only.
enum : int {
    kIdUnchanged = 0,
    kRepeatStarted = 1,
    kRepeatMerged = 2,
    kIdCombined = 3,
    kIdTooLarge = -1,
    kRepeatConflict = -2,
    kRepeatInvalid = -3,
};

// See uxtree_combine_treenode_id_with_repeat_id.
int _tree_combine_id_with_repeat_id(UXXmlWrapperBase& node, int& dataId, int& repeatOut,
                                    int inheritedRepeat);

// Places the node's RepeatNodeID in the top byte of dataId: kIdCombined; kIdUnchanged when there is
// no identifier or no RepeatNodeID; kRepeatConflict when bits are taken; kRepeatInvalid.
int _tree_apply_repeat_node_id(UXXmlWrapperBase& node, int& dataId);

// 1 when all entries differ. Otherwise 0, and dupOut, when given, receives the value of the
// first entry that occurs again.
int _tree_find_dup_id(const CArray<int, int>& ids, int* dupOut);

// What went wrong at a node, assigned to errorText when one is given and code is an error.
void _tree_format_repeat_id_error(const UXXmlWrapperBase& node, int code, int dataId,
                                  int inheritedRepeat, CStringUTF8* errorText);
void _tree_format_repeat_node_id_error(const UXXmlWrapperBase& node, int code, int dataId,
                                       CStringUTF8* errorText);
void format_missing_data_id(const UXXmlWrapperBase& node, CStringUTF8& errorText);
void format_duplicate_id(int id, int inheritedRepeat, CStringUTF8& errorText);

// A node's identifier as it travels, and the RepeatID that its branch inherits.
struct TransportId {
    int id;
    int repeat;
};
// The identifier before any combination: the attribute's value, -1 when it is absent or no number.
inline TransportId read_id(const NodeMarks& marks, int inheritedRepeat) {
    return {marks.number_or(Mark::kId, -1), inheritedRepeat};
}
// The two rules with their messages, in the order in which every walk applies them; false on error.
// The marks are the node's. Most nodes have nothing to combine.
bool apply_repeat(const UXXmlWrapperBase& node, const NodeMarks& marks, int inheritedRepeat,
                  TransportId& out, CStringUTF8* errorText);
bool apply_repeat_node(const UXXmlWrapperBase& node, const NodeMarks& marks, TransportId& out,
                       CStringUTF8* errorText);
inline bool combine_with_repeat(const UXXmlWrapperBase& node, const NodeMarks& marks,
                                int inheritedRepeat, TransportId& out, CStringUTF8* errorText) {
    return (inheritedRepeat < 1 && !marks.has(Mark::kRepeat)) ||
           apply_repeat(node, marks, inheritedRepeat, out, errorText);
}
inline bool combine_with_repeat_node(const UXXmlWrapperBase& node, const NodeMarks& marks,
                                     TransportId& out, CStringUTF8* errorText) {
    return !marks.has(Mark::kRepeatNode) || apply_repeat_node(node, marks, out, errorText);
}

}  // namespace ux
