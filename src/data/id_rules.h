// The rules by which identifiers are combined along a path, and what breaks them. A part of the
// product and of the kit, so nothing here keeps a state.
#pragma once

#include <vector>

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

// The rules themselves, by the RepeatID or RepeatNodeID of a node, -1 when it has none.
int combine_id(int own, int& dataId, int& repeatOut, int inheritedRepeat);
int apply_node_id(int marker, int& dataId);

// What a walk met at a node.
enum class IdFault {
    kNone,
    kRepeat,      // the RepeatID breaks a rule
    kRepeatNode,  // the RepeatNodeID does
    kMissing,     // a node of a kind that needs a DataID has none
};
struct IdProblem {
    IdFault fault = IdFault::kNone;
    int code = kIdUnchanged;  // of the rule
    UXXmlWrapperBase node;
    int id = -1;  // as it was when the rule was broken
    int inheritedRepeat = 0;
};

// A node's identifier as it travels, and the RepeatID that its branch inherits.
struct TransportId {
    int id;
    int repeat;
};
// The identifier before any combination: the attribute's value, -1 when it is absent or no number.
inline TransportId read_id(const NodeMarks& marks, int inheritedRepeat) {
    return {marks.number_or(Mark::kId, -1), inheritedRepeat};
}
// The two rules; false, with the problem stated when it is asked for, when one is broken. The marks
// are the node's.
bool combine_with_repeat(const UXXmlWrapperBase& node, const NodeMarks& marks, int inheritedRepeat,
                         TransportId& out, IdProblem* problem);
bool combine_with_repeat_node(const UXXmlWrapperBase& node, const NodeMarks& marks,
                              int inheritedRepeat, TransportId& out, IdProblem* problem);
// Both, in the order in which every walk applies them. Most nodes have nothing to combine.
enum class BrokenRule { kEnds, kIsPassedOver };
bool combine_marked(const UXXmlWrapperBase& node, const NodeMarks& marks, int inheritedRepeat,
                    TransportId& out, IdProblem* problem, BrokenRule broken);
inline bool combine(const UXXmlWrapperBase& node, const NodeMarks& marks, int inheritedRepeat,
                    TransportId& out, IdProblem* problem, BrokenRule broken = BrokenRule::kEnds) {
    return (inheritedRepeat < 1 && !marks.has_any(Mark::kRepeat, Mark::kRepeatNode)) ||
           combine_marked(node, marks, inheritedRepeat, out, problem, broken);
}

// --- the walks of collecting and of setting, as far as identifiers go

// Is the node left out of a collection with its branch?
inline bool is_ignored(const NodeMarks& marks) {
    return marks.number_or(Mark::kIgnored, 0) > 0;
}
// Does the value of a branch stand for everything below it?
bool is_themed(const NodeMarks& marks);
// Is the node of a kind that needs a DataID?
bool needs_data_id(const UXXmlWrapperBase& node);
// States a missing DataID, unless there is a problem already.
void note_missing_id(const UXXmlWrapperBase& node, int id, int inheritedRepeat, IdProblem& problem);

// The problem that a collection from tree reports: the last broken rule, else the first missing
// DataID, which is looked for under the attribute "DataID" alone.
IdProblem collecting_problem(const UXXmlWrapperBase& tree, const char* idAttribute,
                             int inheritedRepeat);
// The nodes whose values are collected from tree and everything below, without a theme flag: one entry
// for each value, in the same order, with the identifier that it gets.
struct CollectedNode {
    UXXmlWrapperBase node;
    int id;
};
std::vector<CollectedNode> collected_nodes(const UXXmlWrapperBase& tree, const char* idAttribute,
                                           int inheritedRepeat);
// The problem that stops setting values in tree: the first broken rule.
IdProblem setting_problem(const UXXmlWrapperBase& tree, const char* idAttribute,
                          int inheritedRepeat);

}  // namespace ux
