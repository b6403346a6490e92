// The engine that collects values by identifier.
#include <utility>

#include "data/ids_detail.h"
#include "data/leading_settings.h"
#include "data/range_text.h"
#include "data/values_detail.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/walk.h"
#include "frame/wrapping.h"
#include "marks/names.h"

namespace ux {
namespace {

CStringUTF8 label_or_tag(const UXXmlWrapperBase& node) {
    CStringUTF8 label;
    if (!node.GetPropertyValue(kLabel, label, 0)) node.GetTagName(label);
    return label;
}

// A changed node keeps the value it is collected with as its next old value.
bool refresh_change(UXXmlWrapperBase& node, const CStringUTF8& text) {
    CStringUTF8 oldValue;
    if (!node.GetPropertyValue(kOldValue, oldValue, 0) || oldValue == text) return false;
    node.SetPropertyValue(kOldValue, text);
    return true;
}

struct Inherited {
    int inheritedRepeat;
    bool themeFlag;
};

class Collector {
public:
    Collector(CArray<int, int>& ids, const ValueRecord& record, const CollectOptions& options)
        : ids_(ids),
          record_(record),
          options_(options),
          marks_(text_or(options.idAttribute, kDataId)),
          // What stands in the text already is not replaced by a missing identifier.
          reportsMissing_(options.errorText != nullptr && options.errorText->IsEmpty() &&
                          CStringUTF8(text_or(options.idAttribute, kDataId)) == kDataId),
          problem_(options.errorText != nullptr ? &met_ : nullptr) {}

    Step visit(UXXmlWrapperBase& node, Inherited& level, Inherited& below) {
        marks_.read(node);
        if (is_ignored(marks_)) return Step::kOverBranch;

        TransportId id = read_id(marks_, level.inheritedRepeat);
        if (reportsMissing_) note_missing_id(node, id.id, level.inheritedRepeat, met_);
        // A broken rule costs a message only: the node travels under the identifier it has.
        combine(node, marks_, level.inheritedRepeat, id, problem_, BrokenRule::kIsPassedOver);

        if (marks_.is_leaf()) {
            collect_leaf(node, id.id, level);
            return Step::kOverBranch;
        }
        const bool themed = collect_branch(node, id.id, level);
        below = {id.repeat, level.themeFlag};
        return into_branch_if(options_.recursive && !themed);
    }

    const IdProblem& problem() const { return met_; }

private:
    void collect_leaf(UXXmlWrapperBase& node, int id, const Inherited& level) {
        if (id < 0) return;
        if (ownTextsOnly_ && has_plain_text(marks_)) {  // the usual leaf
            record_.values->AddText(marks_.own_text());
            ids_.Add(id);
            return;
        }
        const bool fromUse = options_.useFlag && marks_.has(Mark::kUseText);
        collect(node, id, fromUse ? ValueSource::kUseAttribute : ValueSource::kOwnText,
                level.themeFlag);
    }

    // True for a themed branch: its value stands for everything below it.
    //
    // Intended: what clears the theme flag here clears it for the rest of the level, so that a
    // theme ends where the first themed branch of a level begins.
    bool collect_branch(UXXmlWrapperBase& node, int id, Inherited& level) {
        const bool themed = is_themed(marks_);
        if (themed) level.themeFlag = false;
        if (id == -1) return themed;
        collect(node, id, themed ? ValueSource::kDataAttribute : ValueSource::kUseAttribute,
                level.themeFlag);

        int second = 0;
        if (marks_.number(Mark::kThemeEx, second)) {
            if (second != 0) level.themeFlag = false;
            collect(node, negated(id),
                    second != 0 ? ValueSource::kDataAttribute : ValueSource::kUseAttribute,
                    level.themeFlag);
        }
        return themed;
    }

    void collect(UXXmlWrapperBase& node, int id, ValueSource source, bool themeFlag) {
        const bool taken = record_.values != nullptr ? collect_value(node, source, themeFlag)
                                                     : carries_attribute(node);
        if (!taken) return;
        ids_.Add(id);
        if (record_.labels != nullptr) record_.labels->Add(label_or_tag(node));
        append_attribute(node, firstName_, record_.firstValues);
        append_attribute(node, secondName_, record_.secondValues);
    }

    bool collect_value(UXXmlWrapperBase& node, ValueSource source, bool themeFlag) {
        CStringUTF8 text;
        if (!read_node_value(node, marks_, source, themeFlag, text)) return false;
        if (options_.onlyChanged) {
            if (!refresh_change(node, text)) return false;
            marks_.read(node);
        }
        record_.values->Add(std::move(text));
        return true;
    }

    bool carries_attribute(const UXXmlWrapperBase& node) {
        return (record_.firstValues != nullptr && !view_of(node, firstName_).empty()) ||
               (record_.secondValues != nullptr && !view_of(node, secondName_).empty());
    }
    static void append_attribute(const UXXmlWrapperBase& node, const UXNameKey& name,
                                 CWBOStringArray* values) {
        if (values != nullptr) values->AddText(view_of(node, name));
    }

    CArray<int, int>& ids_;
    const ValueRecord& record_;
    const CollectOptions& options_;
    UXNameKey firstName_{record_.firstName};
    UXNameKey secondName_{record_.secondName};
    NodeMarks marks_;  // of the node at hand
    bool reportsMissing_;
    IdProblem met_;
    IdProblem* problem_;  // null when nobody asks
    bool ownTextsOnly_ = record_.values != nullptr && record_.labels == nullptr &&
                         record_.firstValues == nullptr && record_.secondValues == nullptr &&
                         !options_.onlyChanged && !options_.useFlag;
};

}  // namespace

bool read_node_value(const UXXmlWrapperBase& node, const NodeMarks& marks, ValueSource source,
                     bool keepMissing, CStringUTF8& out) {
    bool found = true;
    if (source == ValueSource::kOwnText) {
        marks.own_text(node, out);
    } else if (source == ValueSource::kDataAttribute) {
        out = CStringUTF8(marks.text(Mark::kDataText));
        found = marks.has(Mark::kDataText);
        convert_numeric_separator(out);
    } else {
        // "-1" stands for "nothing to say" and changes nothing when it is set.
        found = marks.has(Mark::kUseText);
        out = found ? CStringUTF8(marks.text(Mark::kUseText)) : CStringUTF8("-1");
    }
    if (!has_leading_settings(marks)) return found || keepMissing;
    return add_leading_settings(marks, out);
}

int _tree_get_values_by_ids(const UXXmlWrapperBase& tree, CArray<int, int>& ids,
                            const ValueRecord& record, const CollectOptions& options) {
    ids.RemoveAll();
    CWBOStringArray before;  // the attribute's name and the error text may stand in it
    if (record.values != nullptr) before = std::exchange(*record.values, {});
    Collector collector(ids, record, options);
    visit_levels(tree, Inherited{options.inheritedRepeat, options.themeFlag},
                 [&](UXXmlWrapperBase& node, Inherited& level, Inherited& below) {
                     return collector.visit(node, level, below);
                 });
    if (options.errorText != nullptr) format_id_problem(collector.problem(), *options.errorText);
    return ids.GetSize();
}

}  // namespace ux
