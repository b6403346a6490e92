// Keeping, of the nodes with one DataID, those whose values or attributes pass a test.
#include <cstddef>
#include <utility>
#include <vector>

#include "uxtree/tree/structure.h"

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "marks/names.h"
#include "tree/text_set_detail.h"

using namespace ux;

namespace {

// Removes the nodes with the DataID that fail the test: tree itself, or else the topmost ones below
// it. A tested node is not entered.
template <typename Keep>
void filter_nodes(UXXmlWrapperBase& tree, int dataId, Keep&& keep) {
    const UXNameKey idName(kDataId);
    if (has_int(tree, idName, dataId)) {
        if (!keep(tree)) tree.RemoveNode();
        return;
    }
    for (BranchCursor at(tree); at.more();) {
        if (!has_int(at.node(), idName, dataId)) {
            at.into();
        } else if (keep(at.node())) {
            at.over();
        } else {
            at.remove();
        }
    }
}

// How the values of one identifier below a node meet a list. Texts are compared ignoring case.
struct Overlap {
    std::size_t values = 0;        // values met
    std::size_t valuesInList = 0;  // of them, those in the list
    std::size_t listInValues = 0;  // different entries of the list among them
};

class ValueList {
public:
    ValueList(int id, const CWBOStringArray& list) : id_(id) {
        list_.add_all(list);
        lastMeeting_.resize(list_.size());
    }
    bool empty() const { return list_.empty(); }
    std::size_t size() const { return list_.size(); }
    Overlap meet(const UXXmlWrapperBase& node) {
        ++meeting_;
        Overlap overlap;
        visit_below(node, [&](UXXmlWrapperBase& below) {
            if (has_int(below, idName_, id_)) add(below, overlap);
        });
        return overlap;
    }

private:
    void add(UXXmlWrapperBase& node, Overlap& overlap) {
        std::string_view text;
        node.NodeValueView(text, scratch_);  // "" without a value
        ++overlap.values;
        const std::size_t number = list_.number_of(text);
        if (number == list_.size()) return;
        ++overlap.valuesInList;
        if (lastMeeting_[number] == meeting_) return;
        lastMeeting_[number] = meeting_;
        ++overlap.listInValues;
    }

    int id_;
    UXNameKey idName_{kDataId};
    FoldedTexts list_;
    std::vector<std::size_t> lastMeeting_;  // per entry, the last node below which it was met
    std::size_t meeting_ = 0;
    CStringUTF8 scratch_;
};

// What a node is kept and left out by, as callers give it; other numbers keep none, or leave out all.
enum KeepMode : int { kKeepWholeList = 0, kKeepSomeEntry = 1 };
enum ExcludeMode : int { kExcludeAllInList = 0, kExcludeSomeEntry = 1, kExcludeWholeList = 2 };

class KeepTest {
public:
    KeepTest(int keepMode, ValueList a, int excludeMode, ValueList b)
        : keepMode_(keepMode), a_(std::move(a)), excludeMode_(excludeMode), b_(std::move(b)) {}
    bool operator()(const UXXmlWrapperBase& node) {
        const bool needsA = excludeMode_ == kExcludeAllInList || !a_.empty();
        const Overlap a = needsA ? a_.meet(node) : Overlap();
        return !excluded(node, a) && included(a);
    }

private:
    bool excluded(const UXXmlWrapperBase& node, const Overlap& a) {
        switch (excludeMode_) {
            case kExcludeAllInList:
                // Intended: this mode looks at the first criterion's identifier and list, and
                // nothing is "all in" an empty list, not even no values at all.
                return a_.empty() || a.valuesInList != a.values;
            case kExcludeSomeEntry:
                return !b_.empty() && b_.meet(node).listInValues > 0;
            case kExcludeWholeList:
                return !b_.empty() && b_.meet(node).listInValues == b_.size();
            default:
                return true;
        }
    }
    bool included(const Overlap& a) const {
        if (a_.empty()) return true;
        if (keepMode_ == kKeepWholeList) return a.listInValues == a_.size();
        return keepMode_ == kKeepSomeEntry && a.listInValues > 0;
    }

    int keepMode_;
    ValueList a_;
    int excludeMode_;
    ValueList b_;
};

}  // namespace

extern "C" {

int uxtree_filter(UXXmlWrapperBase* tree, int dataId, int modeA, int idA, UXScriptObject* listA,
                  int modeB, int idB, UXScriptObject* listB) {
    return at_boundary(kBadArgument, [&] {
        const CWBOStringArray* textsA = string_array(listA);
        const CWBOStringArray* textsB = string_array(listB);
        if (any_null(textsA, textsB) || !usable(tree)) return kBadArgument;
        filter_nodes(*tree, dataId,
                     KeepTest(modeA, ValueList(idA, *textsA), modeB, ValueList(idB, *textsB)));
        return kOk;
    });
}

int uxtree_filter_by_attrib_find(UXXmlWrapperBase* tree, int dataId, const char* attrName,
                                 const char* text, int caseSensitive, int atStart) {
    return at_boundary(kFail, [&] {
        if (any_null(attrName, text) || !usable(tree)) return kFail;
        CStringUTF8 wanted = text;
        if (caseSensitive == 0) wanted.MakeUpper();
        CStringUTF8 value;
        filter_nodes(*tree, dataId, [&](const UXXmlWrapperBase& node) {
            if (!node.GetPropertyValue(attrName, value, 0)) return false;
            if (caseSensitive == 0) value.MakeUpper();
            if (atStart != 0) return view_of(value).starts_with(view_of(wanted));
            return value.Find(wanted) >= 0;
        });
        return kOk;
    });
}

int uxtree_filter_by_attrib_match(UXXmlWrapperBase* tree, int dataId, const char* attrName,
                                  const char* pattern, int matchFlag) {
    return at_boundary(kFail, [&] {
        if (any_null(attrName, pattern) || !usable(tree)) return kFail;
        const auto& matches = UXGetHostServices().wildcardMatch;
        const CStringUTF8 wanted = pattern;
        CStringUTF8 value;
        filter_nodes(*tree, dataId, [&](const UXXmlWrapperBase& node) {
            return node.GetPropertyValue(attrName, value, 0) &&
                   call_out(matches, value, wanted, matchFlag);
        });
        return kOk;
    });
}

}  // extern "C"
