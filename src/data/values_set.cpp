// The engine that sets values by identifier.
#include "uxtree/host/services.h"

#include "data/id_index.h"
#include "data/ids_detail.h"
#include "data/leading_settings.h"
#include "data/values_detail.h"
#include "frame/guards.h"
#include "frame/results.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "frame/wrapping.h"
#include "marks/auto_text.h"
#include "marks/names.h"

namespace ux {
namespace {

// What a value that is about to be written says about attributes it does not mention.
void apply_missing_settings(UXXmlWrapperBase& node, const NodeMarks& marks,
                            const LeadingNames& names, DWORD callFlags) {
    // Intended: a formula lasts only as long as the values that carry it.
    if (!names.dynaFx && marks.has(Mark::kFormula)) node.RemoveProperty(kDynaFx);
    if ((callFlags & kResetAutomatic) != 0 && !names.automatic) {
        switch_auto_off(node);
    }
    if ((callFlags & kCheckDynaUse) != 0 && !names.dynaUseCheck && marks.has(Mark::kDynaCheck)) {
        node.SetPropertyValue(kDynaUseCheck, 1);
    }
}

bool store(UXXmlWrapperBase& node, const CStringUTF8& value, const NodeWrite& how) {
    if (!how.toData) {
        node.CheckSetValue(how.setMode, value, how.branch ? 1 : 0);
        return true;
    }
    if (value.IsEmpty()) return false;
    node.SetPropertyValue(kData, value);
    return true;
}

// The text that the watch leaves to be written.
CStringUTF8 announced(_SETVALUESBYIDS& record, CStringUTF8 value) {
    struct Shown {
        _SETVALUESBYIDS& to;
        ~Shown() { to.value = nullptr; }
    } const shown{record};
    record.value = &value;
    if (record.callback != nullptr) call_out(record.callback, &record);
    return value;
}

// Writes a value whose settings were taken out, unless it is held back.
bool write_plain_value(UXXmlWrapperBase& node, const NodeMarks& marks, const CStringUTF8& value,
                       const LeadingNames& names, const NodeWrite& how) {
    apply_missing_settings(node, marks, names, how.callFlags);
    if ((how.flags & kThemeNoValue) != 0) return false;
    if ((how.flags & kThemeValidate) != 0 && !how.validateOff &&
        !call_out(UXGetHostServices().validateValue, node, value)) {
        return false;
    }
    return how.callback == nullptr ? store(node, value, how)
                                   : store(node, announced(*how.callback, value), how);
}

void write_attribute(UXXmlWrapperBase& node, const UXNameKey& name, const CWBOStringArray* values,
                     int index) {
    if (values == nullptr) return;
    const CStringUTF8& value = (*values)[index];
    value.IsEmpty() ? node.RemoveProperty(name) : node.SetPropertyView(name, view_of(value));
}

// The caller's record while the node it watches is being written.
class Arming {
public:
    Arming(_SETVALUESBYIDS* record, int id)
        : record_(record != nullptr && record->inProgress == 0 && record->id == id ? record
                                                                                   : nullptr) {
        if (record_ != nullptr) record_->inProgress = 1;
    }
    ~Arming() {
        if (record_ != nullptr) record_->inProgress = 0;
    }
    Arming(const Arming&) = delete;
    Arming& operator=(const Arming&) = delete;
    _SETVALUESBYIDS* record() const { return record_; }

private:
    _SETVALUESBYIDS* record_;
};

struct Inherited {
    int inheritedRepeat;
    DWORD flags;
};

class Setter {
public:
    Setter(const CArray<int, int>& ids, IdIndex& index, const ValueRecord& record,
           const SetOptions& options)
        : ids_(ids),
          index_(index),
          record_(record),
          options_(options),
          marks_(text_or(options.idAttribute, kDataId)) {}

    Step visit(UXXmlWrapperBase& node, const Inherited& level, Inherited& below) {
        marks_.read(node);
        TransportId id = read_id(marks_, level.inheritedRepeat);
        if (!combine(node, marks_, level.inheritedRepeat, id, &problem_)) return Step::kStop;
        below.inheritedRepeat = id.repeat;
        int own = 0;
        if (marks_.number(Mark::kTheme, own)) {
            below.flags = static_cast<DWORD>(own);
        }
        const bool leaf = marks_.is_leaf();
        if (id.id >= 0) {
            if (leaf) {
                set_leaf(node, id.id, below.flags);
            } else {
                set_branch(node, id.id, below.flags);
            }
        }
        return into_branch_if(!leaf);
    }

    int written() const { return written_; }
    const IdProblem& problem() const { return problem_; }

private:
    void set_leaf(UXXmlWrapperBase& node, int id, DWORD flags) {
        const Arming arming(options_.callback, id);
        const int found = index_.find(id);
        if (found < 0) return;
        const bool asBranch =
            (static_cast<DWORD>(id) & kIdAsBranch) != 0 && (options_.callFlags & kThemeOff) == 0;
        const bool toData = asBranch && (flags & kThemeData) != 0;
        if (valuesOnly_ && !toData && (flags & (kThemeNoValue | kThemeValidate)) == 0 &&
            arming.record() == nullptr && !marks_.has(Mark::kFormula) &&
            !may_hold_leading_settings((*record_.values)[found])) {  // the usual leaf
            written_ += node.CheckSetValue(options_.setMode, (*record_.values)[found], 0);
            return;
        }
        write(node, found, how(false, toData, flags, arming.record()));
    }

    void set_branch(UXXmlWrapperBase& node, int id, DWORD flags) {
        const int found = index_.find(id);
        if (found < 0) return;
        write(node, found, how(true, (flags & kThemeData) != 0, flags, nullptr));
        if (found + 1 >= ids_.GetSize() || ids_[found + 1] != negated(id)) return;
        int second = 0;
        marks_.read(node);
        if (!marks_.number(Mark::kThemeEx, second)) return;
        // Intended: where the second value goes depends on this attribute alone, so that a theme
        // is set as it was collected.
        write(node, found + 1, how(true, second != 0, flags, nullptr));
    }

    NodeWrite how(bool branch, bool toData, DWORD flags, _SETVALUESBYIDS* callback) const {
        return {options_.setMode,     branch,  toData, flags, options_.callFlags,
                options_.validateOff, callback};
    }

    void write(UXXmlWrapperBase& node, int index, const NodeWrite& how) {
        if (record_.values != nullptr &&
            write_node_value(node, marks_, (*record_.values)[index], how)) {
            ++written_;
        }
        write_attribute(node, firstName_, record_.firstValues, index);
        write_attribute(node, secondName_, record_.secondValues, index);
    }

    const CArray<int, int>& ids_;
    IdIndex& index_;
    const ValueRecord& record_;
    const SetOptions& options_;
    UXNameKey firstName_{record_.firstName};
    UXNameKey secondName_{record_.secondName};
    NodeMarks marks_;  // of the node at hand
    bool valuesOnly_ = record_.values != nullptr && record_.firstValues == nullptr &&
                       record_.secondValues == nullptr &&
                       (options_.callFlags & (kResetAutomatic | kCheckDynaUse)) == 0;
    int written_ = 0;
    IdProblem problem_;
};

bool length_differs(const CWBOStringArray* values, const CArray<int, int>& ids) {
    return values != nullptr && values->GetSize() != ids.GetSize();
}

}  // namespace

bool write_node_value(UXXmlWrapperBase& node, const NodeMarks& marks, const CStringUTF8& value,
                      const NodeWrite& how) {
    if (!may_hold_leading_settings(value)) return write_plain_value(node, marks, value, {}, how);
    CStringUTF8 own = value;
    const LeadingNames names =
        take_leading_settings(node, own, (how.flags & kThemeNoSettings) == 0);
    NodeMarks changed = marks;
    changed.read(node);
    return write_plain_value(node, changed, own, names, how);
}

int check_lists(const CArray<int, int>& ids, const ValueRecord& record) {
    if (ids.IsEmpty()) return kNoIds;
    if (record.values != nullptr && record.values->IsEmpty()) return kNoIds;
    const bool unequal = length_differs(record.values, ids) ||
                         length_differs(record.firstValues, ids) ||
                         length_differs(record.secondValues, ids);
    return unequal ? kUnequal : kOk;
}

bool refuses_duplicate(const CArray<int, int>& ids, const IdIndex& index, int inheritedRepeat,
                       int* duplicate, CStringUTF8* errorText) {
    if (duplicate == nullptr || index.first_repeated() < 0) return false;
    *duplicate = ids[index.first_repeated()];
    if (errorText != nullptr) format_duplicate_id(*duplicate, inheritedRepeat, *errorText);
    return true;
}

int _tree_set_values_by_ids(const UXXmlWrapperBase& tree, const CArray<int, int>& ids,
                            const ValueRecord& record, const SetOptions& options) {
    const int checked = check_lists(ids, record);
    if (checked != kOk) return checked;
    IdIndex index(ids);
    if (refuses_duplicate(ids, index, options.inheritedRepeat, options.duplicate,
                          options.errorText)) {
        return kDuplicateId;
    }
    Setter setter(ids, index, record, options);
    const bool finished =
        visit_levels(tree, Inherited{options.inheritedRepeat, options.defaultFlags},
                     [&](UXXmlWrapperBase& node, Inherited& level, Inherited& below) {
                         return setter.visit(node, level, below);
                     });
    if (finished) return setter.written();
    if (options.errorText != nullptr) format_id_problem(setter.problem(), *options.errorText);
    return kRepeatError;
}

}  // namespace ux
