#include <utility>

#include "data/embedded.h"
#include "data/ids_detail.h"
#include "data/level_walk.h"
#include "data/range_text.h"
#include "data/values_detail.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/wrapping.h"
#include "marks/names.h"

namespace ux {
namespace {

constexpr char kIgnore[] = "TreeGetByIdIgnore";

// Kinds of nodes that need no DataID, by their intrinsic ID.
constexpr int kNoKind = 0;
constexpr int kExemptKind = 77;

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

struct Level {
    int inheritedRepeat;
    bool themeFlag;
};

class Collector {
public:
    Collector(CArray<int, int>& ids, const ValueRecord& record, const CollectOptions& options)
        : ids_(ids),
          record_(record),
          options_(options),
          idAttribute_(text_or(options.idAttribute, kDataId)),
          defaultAttribute_(CStringUTF8(idAttribute_) == kDataId) {}

    Step visit(UXXmlWrapperBase& node, Level& level, Level& below) {
        int ignore = 0;
        if (node.GetPropertyValue(kIgnore, ignore, 0) && ignore > 0) return Step::kOverBranch;

        TransportId id = read_id(node, idAttribute_, level.inheritedRepeat);
        report_missing_id(node, id.id);
        // A broken rule costs a message only: the node travels under the identifier it has.
        combine_with_repeat(node, level.inheritedRepeat, id, options_.errorText);
        combine_with_repeat_node(node, id, options_.errorText);

        if (is_leaf(node)) {
            collect_leaf(node, id.id, level);
            return Step::kOverBranch;
        }
        const bool themed = collect_branch(node, id.id, level);
        below = {id.repeat, level.themeFlag};
        return options_.recursive && !themed ? Step::kIntoBranch : Step::kOverBranch;
    }

private:
    void report_missing_id(const UXXmlWrapperBase& node, int id) {
        CStringUTF8* const text = options_.errorText;
        if (text == nullptr || !defaultAttribute_ || id != -1 || !text->IsEmpty()) return;
        int kind = kNoKind;
        node.GetID(kind);
        if (kind != kNoKind && kind != kExemptKind) format_missing_data_id(node, *text);
    }

    void collect_leaf(UXXmlWrapperBase& node, int id, const Level& level) {
        if (id < 0) return;
        const bool fromUse = options_.useFlag && node.HasProperty(kUse, 0);
        collect(node, id, fromUse ? ValueSource::kUseAttribute : ValueSource::kOwnText,
                level.themeFlag);
    }

    // True for a themed branch: its value stands for everything below it.
    //
    // Intended: what clears the theme flag here clears it for the rest of the level, so that a
    // theme ends where the first themed branch of a level begins.
    bool collect_branch(UXXmlWrapperBase& node, int id, Level& level) {
        const bool themed = (bits_of(node, kThemeApplicability) & kThemeData) != 0;
        if (themed) level.themeFlag = false;
        if (id == -1) return themed;
        collect(node, id, themed ? ValueSource::kDataAttribute : ValueSource::kUseAttribute,
                level.themeFlag);

        int second = 0;
        if (node.GetPropertyValue(kThemeApplicabilityEx, second, 0)) {
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
        append_attribute(node, record_.firstName, record_.firstValues);
        append_attribute(node, record_.secondName, record_.secondValues);
    }

    bool collect_value(UXXmlWrapperBase& node, ValueSource source, bool themeFlag) {
        if (!read_node_value(node, source, themeFlag, text_)) return false;
        if (options_.onlyChanged && !refresh_change(node, text_)) return false;
        record_.values->Add(text_);
        return true;
    }

    bool carries_attribute(const UXXmlWrapperBase& node) {
        return (record_.firstValues != nullptr && has_text(node, record_.firstName)) ||
               (record_.secondValues != nullptr && has_text(node, record_.secondName));
    }
    bool has_text(const UXXmlWrapperBase& node, const char* name) {
        return node.GetPropertyValue(name, text_, 0) != 0 && !text_.IsEmpty();
    }

    static void append_attribute(const UXXmlWrapperBase& node, const char* name,
                                 CWBOStringArray* values) {
        if (values != nullptr) values->Add(attribute_of(node, name));
    }

    CArray<int, int>& ids_;
    const ValueRecord& record_;
    const CollectOptions& options_;
    const char* idAttribute_;
    bool defaultAttribute_;
    CStringUTF8 text_;  // of the node at hand
};

}  // namespace

bool read_node_value(const UXXmlWrapperBase& node, ValueSource source, bool keepMissing,
                     CStringUTF8& out) {
    bool found = true;
    if (source == ValueSource::kOwnText) {
        node.GetNodeStringWithBlobInfo(out, 0);
    } else if (source == ValueSource::kDataAttribute) {
        out.Empty();
        found = node.GetPropertyValue(kData, out, 0) != 0;
        convert_numeric_separator(out);
    } else {
        out = "-1";  // stands for "nothing to say" and changes nothing when it is set
        found = node.GetPropertyValue(kUse, out, 0) != 0;
    }
    const bool embedded = add_embedded_settings(node, out);
    return found || embedded || keepMissing;
}

int _tree_get_values_by_ids(const UXXmlWrapperBase& tree, CArray<int, int>& ids,
                            const ValueRecord& record, const CollectOptions& options) {
    ids.RemoveAll();
    CWBOStringArray before;  // the attribute's name and the error text may stand in it
    if (record.values != nullptr) before = std::exchange(*record.values, {});
    Collector collector(ids, record, options);
    visit_levels(tree, Level{options.inheritedRepeat, options.themeFlag},
                 [&](UXXmlWrapperBase& node, Level& level, Level& below) {
                     return collector.visit(node, level, below);
                 });
    return ids.GetSize();
}

}  // namespace ux
