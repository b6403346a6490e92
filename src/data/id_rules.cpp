// The rules by which identifiers are combined, and the walks that look for what breaks them.
#include "data/id_rules.h"

#include <string_view>

#include "data/leading_settings.h"
#include "frame/walk.h"
#include "frame/wrapping.h"
#include "marks/ids.h"
#include "marks/names.h"

namespace ux {
namespace {

constexpr int kLargestCombinedRepeat = 32766;  // what can be combined, one less than is read
constexpr int kLargestCombinedId = 0xFFFF;

constexpr unsigned kLow16 = 0xFFFF;
constexpr unsigned kThemedBranch = 0x100000;  // of "ThemeApplicability"

// Kinds of nodes that need no DataID, by their intrinsic ID.
constexpr int kNoKind = 0;
constexpr int kExemptKind = 77;

void state(IdProblem* problem, IdFault fault, int code, const UXXmlWrapperBase& node, int id,
           int inheritedRepeat) {
    if (problem != nullptr) *problem = {fault, code, node, id, inheritedRepeat};
}

}  // namespace

int combine_id(int own, int& dataId, int& repeatOut, int inheritedRepeat) {
    if (own >= 0 && own <= kLargestRepeat) {
        // Intended: 32767 is read as a RepeatID and then refused, whatever is inherited.
        if (own > kLargestCombinedRepeat) return kRepeatInvalid;
        if (inheritedRepeat < 1) {
            repeatOut = own;
            return kRepeatStarted;
        }
        if ((inheritedRepeat & own) != 0) return kRepeatConflict;
        repeatOut = own | inheritedRepeat;
        // Intended: a repeated branch hands the merged RepeatID down and leaves its own
        // identifier alone, so that its copies share it.
        if (own > 0) return kRepeatMerged;
    }
    if (dataId < 0 || inheritedRepeat < 1) return kIdUnchanged;
    if (dataId > kLargestCombinedId) return kIdTooLarge;
    // Intended: the inherited RepeatID is stamped, not the merged one.
    const unsigned high = static_cast<unsigned>(inheritedRepeat) & kLow16;
    dataId = static_cast<int>(high << 16 | static_cast<unsigned>(dataId));
    return kIdCombined;
}

int apply_node_id(int marker, int& dataId) {
    if (dataId < 0 || marker < 1 || marker > kLargestRepeat) return kIdUnchanged;
    if (marker > kLargestCombinedRepeat) return kRepeatInvalid;
    // Intended: only the low byte of a RepeatNodeID counts; from 128 on it makes the identifier
    // negative, which no leaf is collected or set by.
    const unsigned bits = static_cast<unsigned>(marker) << 24;
    if ((static_cast<unsigned>(dataId) & bits) != 0) return kRepeatConflict;
    dataId = static_cast<int>(static_cast<unsigned>(dataId) | bits);
    return kIdCombined;
}

bool combine_with_repeat(const UXXmlWrapperBase& node, const NodeMarks& marks, int inheritedRepeat,
                         TransportId& out, IdProblem* problem) {
    const int code =
        combine_id(marks.number_or(Mark::kRepeat, -1), out.id, out.repeat, inheritedRepeat);
    if (code >= kIdUnchanged) return true;
    state(problem, IdFault::kRepeat, code, node, out.id, inheritedRepeat);
    return false;
}

bool combine_with_repeat_node(const UXXmlWrapperBase& node, const NodeMarks& marks,
                              int inheritedRepeat, TransportId& out, IdProblem* problem) {
    const int code = apply_node_id(marks.number_or(Mark::kRepeatNode, -1), out.id);
    if (code >= kIdUnchanged) return true;
    state(problem, IdFault::kRepeatNode, code, node, out.id, inheritedRepeat);
    return false;
}

bool combine_marked(const UXXmlWrapperBase& node, const NodeMarks& marks, int inheritedRepeat,
                    TransportId& out, IdProblem* problem, BrokenRule broken) {
    const bool good = combine_with_repeat(node, marks, inheritedRepeat, out, problem);
    if (!good && broken == BrokenRule::kEnds) return false;
    return combine_with_repeat_node(node, marks, inheritedRepeat, out, problem) && good;
}

bool is_themed(const NodeMarks& marks) {
    return (marks.bits(Mark::kTheme) & kThemedBranch) != 0;
}

bool needs_data_id(const UXXmlWrapperBase& node) {
    int kind = kNoKind;
    node.GetID(kind);
    return kind != kNoKind && kind != kExemptKind;
}

void note_missing_id(const UXXmlWrapperBase& node, int id, int inheritedRepeat,
                     IdProblem& problem) {
    if (id != -1 || problem.fault != IdFault::kNone || !needs_data_id(node)) return;
    state(&problem, IdFault::kMissing, kIdUnchanged, node, id, inheritedRepeat);
}

IdProblem collecting_problem(const UXXmlWrapperBase& tree, const char* idAttribute,
                             int inheritedRepeat) {
    const bool byDefault = std::string_view(idAttribute) == kDataId;
    NodeMarks marks(idAttribute);
    IdProblem problem;
    visit_levels(tree, inheritedRepeat, [&](UXXmlWrapperBase& node, int& repeat, int& below) {
        marks.read(node);
        if (is_ignored(marks)) return Step::kOverBranch;
        TransportId id = read_id(marks, repeat);
        if (byDefault) note_missing_id(node, id.id, repeat, problem);
        combine(node, marks, repeat, id, &problem, BrokenRule::kIsPassedOver);
        below = id.repeat;
        return into_branch_if(!is_leaf(node) && !is_themed(marks));
    });
    return problem;
}

std::vector<CollectedNode> collected_nodes(const UXXmlWrapperBase& tree, const char* idAttribute,
                                           int inheritedRepeat) {
    NodeMarks marks(idAttribute);
    std::vector<CollectedNode> nodes;
    visit_levels(tree, inheritedRepeat, [&](UXXmlWrapperBase& node, int& repeat, int& below) {
        marks.read(node);
        if (is_ignored(marks)) return Step::kOverBranch;
        TransportId id = read_id(marks, repeat);
        combine(node, marks, repeat, id, nullptr, BrokenRule::kIsPassedOver);
        below = id.repeat;
        if (marks.is_leaf()) {
            if (id.id >= 0) nodes.push_back({node, id.id});
            return Step::kOverBranch;
        }
        // A branch has a value where one is said, or settings in front of one.
        const auto add = [&](bool fromData, int own) {
            const bool isSaid = marks.has(fromData ? Mark::kDataText : Mark::kUseText);
            if (isSaid || has_leading_settings(marks)) nodes.push_back({node, own});
        };
        const bool themed = is_themed(marks);
        int second = 0;
        if (id.id != -1) {
            add(themed, id.id);
            if (marks.number(Mark::kThemeEx, second)) add(second != 0, negated(id.id));
        }
        return into_branch_if(!themed);
    });
    return nodes;
}

IdProblem setting_problem(const UXXmlWrapperBase& tree, const char* idAttribute,
                          int inheritedRepeat) {
    NodeMarks marks(idAttribute);
    IdProblem problem;
    visit_levels(tree, inheritedRepeat, [&](UXXmlWrapperBase& node, int& repeat, int& below) {
        marks.read(node);
        TransportId id = read_id(marks, repeat);
        if (!combine(node, marks, repeat, id, &problem)) return Step::kStop;
        below = id.repeat;
        return Step::kGoOn;
    });
    return problem;
}

}  // namespace ux
