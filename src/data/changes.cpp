// Marking the nodes that changed, stripping a tree to them, and comparing lists.
#include "uxtree/data/changes.h"

#include <string_view>
#include <vector>

#include "data/ids_detail.h"
#include "data/leading_settings.h"
#include "data/values_detail.h"
#include "frame/guards.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "marks/change_mark.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr __int64 kEqualLists = -1;
constexpr __int64 kUnequalToList = -1;  // the form that lists all differences
constexpr __int64 kUnequalLists = -2;   // the form that finds the first one

bool differ(const CStringUTF8& a, const CStringUTF8& b, bool caseSensitive) {
    return (caseSensitive ? a.Compare(b) : a.CompareNoCase(b)) != 0;
}

bool comparable(const CWBOStringArray* first, const CWBOStringArray* second) {
    return !any_null(first, second) && first->GetSize() == second->GetSize();
}

// Takes out of a tree what a reference holds unchanged: leaves first, then the branches that have
// lost all their children.
class UnchangedRemover {
public:
    UnchangedRemover(IdIndex& index, const CWBOStringArray& values, const char* idAttribute)
        : index_(index), values_(values), marks_(text_or(idAttribute, kDataId)) {}

    // The number of removed nodes, or kRepeatError.
    int run(const UXXmlWrapperBase& target) {
        int removed = 0;
        const auto enter = [&](const UXXmlWrapperBase& node) { return read(node); };
        const auto leave = [&](const UXXmlWrapperBase& node, bool entered) {
            if (entered) inheritedRepeats_.pop_back();
            // Intended: whatever a branch itself carries, it goes with its last child.
            const bool goes = entered ? is_leaf(node) : is_unchanged(node);
            if (goes) ++removed;
            return goes;
        };
        return visit_around(target, enter, leave) ? removed : int{kRepeatError};
    }

private:
    Step read(const UXXmlWrapperBase& node) {
        marks_.read(node);
        id_ = read_id(marks_, inheritedRepeats_.back());
        if (!combine(node, marks_, inheritedRepeats_.back(), id_, nullptr)) return Step::kStop;
        if (marks_.is_leaf()) return Step::kOverBranch;
        inheritedRepeats_.push_back(id_.repeat);
        return Step::kGoOn;
    }
    bool is_unchanged(const UXXmlWrapperBase& leaf) {
        const int found = id_.id < 0 ? -1 : index_.find(id_.id);
        if (found < 0) return false;
        const CStringUTF8& value = values_[found];
        if (has_plain_text(marks_) && marks_.own_text() == view_of(value)) return true;
        read_node_value(leaf, marks_, ValueSource::kOwnText, true, value_);
        return !differ(value_, value, false);
    }

    IdIndex& index_;
    const CWBOStringArray& values_;
    NodeMarks marks_;  // of the node at hand
    TransportId id_{};
    std::vector<int> inheritedRepeats_{0};
    CStringUTF8 value_;
};

}  // namespace

void VCTreeNodeGetValue(UXXmlWrapperBase& node, CStringUTF8& out) {
    at_boundary([&] {
        out.Empty();
        if (usable(node) && is_leaf(node)) node.NodeValue(out, 1, 1, nullptr);
    });
}

int VCTreeUpdateChanges(UXXmlWrapperBase* tree, CWBOStringArray* oldValues) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(tree) || any_null(oldValues)) return kBadArgument;
        int position = 0;
        int marked = 0;
        CStringUTF8 scratch;
        ChangeMark mark;
        visit_below(*tree, [&](UXXmlWrapperBase& node) {
            const std::string_view value = mark.look(node, scratch);
            if (position < oldValues->GetSize() && view_of((*oldValues)[position]) != value) {
                mark.set(node, view_of((*oldValues)[position]));
                ++marked;
            } else {
                mark.clear_seen(node);
            }
            ++position;
        });
        return marked;
    });
}

__int64 VCTreeGetChanged(CArray<__int64, __int64>& indices, CWBOStringArray* first,
                         CWBOStringArray* second, bool caseSensitive) {
    return at_boundary(kUnequalToList, [&]() -> __int64 {
        if (!comparable(first, second)) return kUnequalToList;
        for (int i = 0; i < first->GetSize(); ++i) {
            if (differ((*first)[i], (*second)[i], caseSensitive)) indices.Add(i);
        }
        // Intended: the whole length, entries of earlier calls included.
        return indices.GetSize();
    });
}

__int64 VCTreeGetChanged(CWBOStringArray* first, CWBOStringArray* second, bool caseSensitive) {
    return at_boundary(kUnequalLists, [&]() -> __int64 {
        if (!comparable(first, second)) return kUnequalLists;
        for (int i = 0; i < first->GetSize(); ++i) {
            if (differ((*first)[i], (*second)[i], caseSensitive)) return i;
        }
        return kEqualLists;
    });
}

int VCTreeIsSame(CArray<int, int>* a, CArray<int, int>* b) {
    return at_boundary(kFail, [&] {
        if (any_null(a, b) || a->GetSize() != b->GetSize()) return kFail;
        for (int i = 0; i < a->GetSize(); ++i) {
            if ((*a)[i] != (*b)[i]) return kFail;
        }
        return kOk;
    });
}

extern "C" int uxtree_node_changed(UXXmlWrapperBase* node, int set, const char* oldValue) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) return kFail;
        if (set == 0) return ChangeMark().is_set(*node) ? kOk : kFail;
        if (oldValue == nullptr) {
            ChangeMark().clear(*node);
        } else {
            ChangeMark().set(*node, oldValue);
        }
        return kOk;
    });
}

extern "C" int uxtree_remove_unchange_nodes_by_id(UXXmlWrapperBase* reference,
                                                  UXXmlWrapperBase* target,
                                                  const char* referenceIdAttribute,
                                                  const char* targetIdAttribute) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(reference) || !usable(target)) return kBadArgument;
        CArray<int, int> ids;
        CWBOStringArray values;
        const CollectOptions from{.idAttribute = referenceIdAttribute, .themeFlag = true};
        if (_tree_get_values_by_ids(*reference, ids, {.values = &values}, from) == 0) return 0;

        IdIndex index(ids);
        int duplicate = 0;
        if (refuses_duplicate(ids, index, 0, &duplicate, nullptr)) {
            return duplicate >= 1 ? -duplicate : int{kDuplicateId};
        }
        return UnchangedRemover(index, values, targetIdAttribute).run(*target);
    });
}

extern "C" int uxtree_update_changes(UXXmlWrapperBase* tree, UXScriptObject* oldValues) {
    return at_boundary(kBadArgument,
                       [&] { return VCTreeUpdateChanges(tree, string_array(oldValues)); });
}

extern "C" int ux_is_same(UXScriptObject* a, UXScriptObject* b) {
    return at_boundary(kFail, [&] { return VCTreeIsSame(int_vector(a), int_vector(b)); });
}

extern "C" int uxget_changed(UXScriptObject* first, UXScriptObject* second, bool caseSensitive) {
    return at_boundary(static_cast<int>(kUnequalLists), [&] {
        return static_cast<int>(
            VCTreeGetChanged(string_array(first), string_array(second), caseSensitive));
    });
}
