#include "uxtree/data/changes.h"

#include <vector>

#include "data/change_mark.h"
#include "data/ids_detail.h"
#include "data/names.h"
#include "data/values_detail.h"
#include "frame/guards.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/walk.h"

namespace {

constexpr __int64 kEqualLists = -1;
constexpr __int64 kUnequalToList = -1;  // the form that lists all differences
constexpr __int64 kUnequalLists = -2;   // the form that finds the first one

bool differ(const CStringUTF8& a, const CStringUTF8& b, bool caseSensitive) {
    return (caseSensitive ? a.Compare(b) : a.CompareNoCase(b)) != 0;
}

bool comparable(const CWBOStringArray* first, const CWBOStringArray* second) {
    return !ux::any_null(first, second) && first->GetSize() == second->GetSize();
}

// Takes out of a tree what a reference holds unchanged: leaves first, then the branches that have
// lost all their children.
class UnchangedRemover {
public:
    UnchangedRemover(ux::IdIndex& index, const CWBOStringArray& values, const char* idAttribute)
        : index_(index), values_(values), idAttribute_(ux::text_or(idAttribute, ux::kDataId)) {}

    // The number of removed nodes, or kRepeatError.
    int run(const UXXmlWrapperBase& target) {
        UXXmlWrapperBase node = target;
        if (!ux::step_into_first_child(node)) return 0;
        std::vector<int> inheritedRepeats{0};
        for (;;) {
            ux::TransportId id = ux::read_id(node, idAttribute_, inheritedRepeats.back());
            if (!ux::combine_with_repeat(node, inheritedRepeats.back(), id, nullptr) ||
                !ux::combine_with_repeat_node(node, id, nullptr)) {
                return ux::kRepeatError;
            }
            if (ux::step_into_first_child(node)) {
                inheritedRepeats.push_back(id.repeat);
                continue;
            }
            bool more = step_past(node, is_unchanged(node, id.id));
            while (!more) {
                inheritedRepeats.pop_back();
                if (inheritedRepeats.empty()) return removed_;
                // Intended: whatever the branch itself carries, it goes with its last child.
                more = step_past(node, ux::is_leaf(node));
            }
        }
    }

private:
    bool is_unchanged(const UXXmlWrapperBase& leaf, int id) {
        if (id < 0) return false;
        const int found = index_.find(id);
        if (found < 0) return false;
        ux::read_node_value(leaf, ux::ValueSource::kOwnText, true, value_);
        return !differ(value_, values_[found], false);
    }

    // Steps to the next sibling, or else to the parent and yields false, before removing the node.
    bool step_past(UXXmlWrapperBase& node, bool remove) {
        UXXmlWrapperBase next;
        const bool more = node.NextSibling(&next) != 0;
        if (!more) node.GetParent(&next);
        if (remove) removed_ += node.RemoveNode();
        node = std::move(next);
        return more;
    }

    ux::IdIndex& index_;
    const CWBOStringArray& values_;
    const char* idAttribute_;
    CStringUTF8 value_;
    int removed_ = 0;
};

}  // namespace

void VCTreeNodeGetValue(UXXmlWrapperBase& node, CStringUTF8& out) {
    ux::at_boundary([&] {
        out.Empty();
        if (ux::usable(node) && ux::is_leaf(node)) node.NodeValue(out, 1, 1, nullptr);
    });
}

int VCTreeUpdateChanges(UXXmlWrapperBase* tree, CWBOStringArray* oldValues) {
    return ux::at_boundary(ux::kBadArgument, [&] {
        if (!ux::usable(tree) || ux::any_null(oldValues)) return ux::kBadArgument;
        int position = 0;
        int marked = 0;
        CStringUTF8 value;
        ux::visit_below(*tree, [&](UXXmlWrapperBase& node) {
            VCTreeNodeGetValue(node, value);
            if (position < oldValues->GetSize() && (*oldValues)[position] != value) {
                ux::mark_changed(node, (*oldValues)[position]);
                ++marked;
            } else {
                ux::clear_change_mark(node);
            }
            ++position;
            return ux::Step::kIntoBranch;
        });
        return marked;
    });
}

__int64 VCTreeGetChanged(CArray<__int64, __int64>& indices, CWBOStringArray* first,
                         CWBOStringArray* second, bool caseSensitive) {
    return ux::at_boundary(kUnequalToList, [&]() -> __int64 {
        if (!comparable(first, second)) return kUnequalToList;
        for (int i = 0; i < first->GetSize(); ++i) {
            if (differ((*first)[i], (*second)[i], caseSensitive)) indices.Add(i);
        }
        // Intended: the whole length, entries of earlier calls included.
        return indices.GetSize();
    });
}

__int64 VCTreeGetChanged(CWBOStringArray* first, CWBOStringArray* second, bool caseSensitive) {
    return ux::at_boundary(kUnequalLists, [&]() -> __int64 {
        if (!comparable(first, second)) return kUnequalLists;
        for (int i = 0; i < first->GetSize(); ++i) {
            if (differ((*first)[i], (*second)[i], caseSensitive)) return i;
        }
        return kEqualLists;
    });
}

int VCTreeIsSame(CArray<int, int>* a, CArray<int, int>* b) {
    return ux::at_boundary(ux::kFail, [&] {
        if (ux::any_null(a, b) || a->GetSize() != b->GetSize()) return ux::kFail;
        for (int i = 0; i < a->GetSize(); ++i) {
            if ((*a)[i] != (*b)[i]) return ux::kFail;
        }
        return ux::kOk;
    });
}

extern "C" int uxtree_node_changed(UXXmlWrapperBase* node, int set, const char* oldValue) {
    return ux::at_boundary(ux::kFail, [&] {
        if (!ux::usable(node)) return ux::kFail;
        if (set == 0) return ux::is_marked_changed(*node) ? ux::kOk : ux::kFail;
        if (oldValue == nullptr) {
            ux::clear_change_mark(*node);
        } else {
            ux::mark_changed(*node, oldValue);
        }
        return ux::kOk;
    });
}

extern "C" int uxtree_remove_unchange_nodes_by_id(UXXmlWrapperBase* reference,
                                                  UXXmlWrapperBase* target,
                                                  const char* referenceIdAttribute,
                                                  const char* targetIdAttribute) {
    return ux::at_boundary(ux::kBadArgument, [&] {
        if (!ux::usable(reference) || !ux::usable(target)) return ux::kBadArgument;
        CArray<int, int> ids;
        CWBOStringArray values;
        ux::ValueRecord record;
        record.values = &values;
        ux::CollectOptions from;
        from.idAttribute = referenceIdAttribute;
        from.themeFlag = true;
        if (ux::_tree_get_values_by_ids(*reference, ids, record, from) == 0) return 0;

        ux::IdIndex index(ids);
        int duplicate = 0;
        if (ux::refuses_duplicate(ids, index, 0, &duplicate, nullptr)) {
            return duplicate >= 1 ? -duplicate : int{ux::kDuplicateId};
        }
        return UnchangedRemover(index, values, targetIdAttribute).run(*target);
    });
}

extern "C" int uxtree_update_changes(UXXmlWrapperBase* tree, UXScriptObject* oldValues) {
    return ux::at_boundary(ux::kBadArgument,
                           [&] { return VCTreeUpdateChanges(tree, ux::string_array(oldValues)); });
}

extern "C" int ux_is_same(UXScriptObject* a, UXScriptObject* b) {
    return ux::at_boundary(ux::kFail,
                           [&] { return VCTreeIsSame(ux::int_vector(a), ux::int_vector(b)); });
}

extern "C" int uxget_changed(UXScriptObject* first, UXScriptObject* second, bool caseSensitive) {
    return ux::at_boundary(static_cast<int>(kUnequalLists), [&] {
        return static_cast<int>(
            VCTreeGetChanged(ux::string_array(first), ux::string_array(second), caseSensitive));
    });
}
