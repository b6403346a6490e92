// What values have against being collected or set, in parts.
#include "uxtree/kit/c.h"

#include "data/id_rules.h"
#include "kit/c_last_error.h"
#include "kit/c_texts.h"
#include "marks/names.h"

using namespace ux::kit;

namespace {

enum : int {
    kNoProblem = 0,
    kUnusable = -1,
    kRepeatOverlaps = 1,
    kRepeatOutOfRange = 2,
    kTooLarge = 3,
    kNodeOverlaps = 4,
    kNodeOutOfRange = 5,
    kMissingId = 6,
};

int code_of(const ux::IdProblem& problem) {
    const bool overlaps = problem.code == ux::kRepeatConflict;
    switch (problem.fault) {
        case ux::IdFault::kRepeat:
            if (problem.code == ux::kIdTooLarge) return kTooLarge;
            return overlaps ? kRepeatOverlaps : kRepeatOutOfRange;
        case ux::IdFault::kRepeatNode:
            return overlaps ? kNodeOverlaps : kNodeOutOfRange;
        case ux::IdFault::kMissing:
            return kMissingId;
        default:
            return kNoProblem;
    }
}

}  // namespace

int ux_values_problem(const UXXmlWrapperBase* tree, int setting, const char* idAttribute,
                      int inheritedRepeat, UXXmlWrapperBase* node, int* identifier, int* repeat) {
    return guarded(int{kUnusable}, [&]() -> int {
        if (tree == nullptr) return refused(int{kUnusable}, "the node is null");
        if (tree->IsNodeValid() == 0)
            return refused(int{kUnusable}, "the handle refers to no node");
        const bool named = idAttribute != nullptr && *idAttribute != '\0';
        if (named && !ux::kit::accept_text(idAttribute)) return kUnusable;
        const char* const attribute = named ? idAttribute : ux::kDataId;
        const ux::IdProblem problem =
            setting != 0 ? ux::setting_problem(*tree, attribute, inheritedRepeat)
                         : ux::collecting_problem(*tree, attribute, inheritedRepeat);
        const int code = code_of(problem);
        if (code == kNoProblem) return code;
        if (node != nullptr) *node = problem.node;
        if (identifier != nullptr) *identifier = problem.id;
        if (repeat != nullptr) *repeat = problem.inheritedRepeat;
        return code;
    });
}
