// Carrying values, attributes and identifiers from one tree to another.
#include "uxtree/data/copy.h"

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "data/ids_detail.h"
#include "data/values_detail.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/walk.h"
#include "frame/wrapping.h"
#include "marks/names.h"

using namespace ux;

namespace {

// --- homologous trees --------------------------------------------------------------------------

constexpr int kSameShape = 0;
constexpr int kDestinationRanOut = 1;

void copy_attributes(UXXmlWrapperBase& destination, UXXmlWrapperBase& source,
                     const CWBOStringArray* kept) {
    const int count = kept == nullptr ? 0 : kept->GetSize();
    CWBOStringArray own;
    own.SetSize(count);
    for (int i = 0; i < count; ++i) destination.GetPropertyValue((*kept)[i], own[i], 0);
    destination.CopyAllAttributes(source, 1);
    // Intended: a kept attribute that is empty here takes the source's text.
    for (int i = 0; i < count; ++i) {
        if (!own[i].IsEmpty()) destination.SetPropertyValue((*kept)[i], own[i]);
    }
}

void copy_node_value(UXXmlWrapperBase& destination, const UXXmlWrapperBase& source,
                     NodeMarks& marks, bool dynamicChecks) {
    const DWORD callFlags = dynamicChecks ? kResetAutomatic | kCheckDynaUse : 0;
    const NodeWrite how{.branch = !is_leaf(source), .callFlags = callFlags};
    CStringUTF8 value;
    marks.read(source);
    read_node_value(source, marks, how.branch ? ValueSource::kUseAttribute : ValueSource::kOwnText,
                    true, value);
    marks.read(destination);
    write_node_value(destination, marks, value, how);
}

// Calls copy for the two nodes and the pairs at the same places below and behind them, in
// pre-order, until the source has no more or the destination runs out.
template <typename Copy>
int copy_homologous(UXXmlWrapperBase destination, UXXmlWrapperBase source, Copy&& copy) {
    for (;;) {
        copy(source, destination);
        const bool paired =
            visit_pairs(source, destination, [&](UXXmlWrapperBase& from, UXXmlWrapperBase& to) {
                if (!usable(to)) return Step::kStop;
                copy(from, to);
                return Step::kGoOn;
            });
        if (!paired) return kDestinationRanOut;
        if (!step_to_next_sibling(source)) return kSameShape;
        if (!step_to_next_sibling(destination)) return kDestinationRanOut;
    }
}

// --- copies by identifier ----------------------------------------------------------------------

void remove_empty_entries(CArray<int, int>& ids, CWBOStringArray& values) {
    int kept = 0;
    for (int i = 0; i < ids.GetSize(); ++i) {
        if (values[i].IsEmpty()) continue;
        if (kept != i) {
            ids[kept] = ids[i];
            values[kept] = std::move(values[i]);
        }
        ++kept;
    }
    ids.SetSize(kept);
    values.SetSize(kept);
}

// Identifiers by which a lookup below a tree finds a node.
std::unordered_set<int> identifiers_below(const UXXmlWrapperBase& tree) {
    std::unordered_set<int> known;
    visit_below(tree, [&](const UXXmlWrapperBase& node) {
        int id = 0;
        if (node.GetID(id)) known.insert(id);
        if (node.GetDataID(id)) known.insert(id);
    });
    return known;
}

// Appends what destination lacks, flat at its top level wherever it stood in source.
class StructureCompleter {
public:
    explicit StructureCompleter(UXXmlWrapperBase& destination)
        : destination_(destination), known_(identifiers_below(destination)) {}

    void add_if_missing(const UXXmlWrapperBase& node) {
        int id = 0;
        if (!node.GetDataID(id) || known_.count(id) != 0) return;
        CStringUTF8 text;
        node.GetTagName(text);
        UXXmlWrapperBase added;
        if (!destination_.AddNode(&added, text, -1)) return;
        if (node.GetPropertyValue(kLabel, text, 0)) added.SetLabel(text);
        added.SetDataID(id);
        known_.insert(id);
    }

private:
    UXXmlWrapperBase& destination_;
    std::unordered_set<int> known_;
};

// --- identifiers by tag name -------------------------------------------------------------------

std::string folded_tag(const UXXmlWrapperBase& node) {
    CStringUTF8 tag = tag_of(node);
    tag.MakeLower();
    return static_cast<const char*>(tag);
}

// The first node of each tag, tree itself included.
std::unordered_map<std::string, UXXmlWrapperBase> first_nodes_by_tag(const UXXmlWrapperBase& tree,
                                                                     bool leavesOnly) {
    std::unordered_map<std::string, UXXmlWrapperBase> nodes;
    const auto note = [&](const UXXmlWrapperBase& node) {
        if (!leavesOnly || is_leaf(node)) nodes.emplace(folded_tag(node), node);
    };
    note(tree);
    visit_below(tree, note);
    return nodes;
}

}  // namespace

int vctree_copy_values_between_homologous_trees(UXXmlWrapperBase& destination,
                                                UXXmlWrapperBase& source, int copyAttributes,
                                                CWBOStringArray* keptAttributes,
                                                int dynamicChecks) {
    return at_boundary(kSameShape, [&] {
        if (!usable(source)) return kSameShape;
        if (!usable(destination)) return kDestinationRanOut;
        // Intended: the checks apply to the first pair only, the node that the caller edits.
        bool checks = dynamicChecks != 0;
        NodeMarks marks;
        const auto copy = [&](UXXmlWrapperBase& from, UXXmlWrapperBase& to) {
            if (copyAttributes != 0) copy_attributes(to, from, keptAttributes);
            copy_node_value(to, from, marks, checks);
            checks = false;
        };
        return copy_homologous(destination, source, copy);
    });
}

int vctree_copy_values_by_id(UXXmlWrapperBase* source, UXXmlWrapperBase* destination, int setMode,
                             const char* sourceIdAttribute, const char* destinationIdAttribute,
                             int themeFlag, _SETVALUESBYIDS* callback, int validateOff,
                             int skipEmpty, int useFlag, int themeOff) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(source) || !usable(destination)) return kBadArgument;
        CArray<int, int> ids;
        CWBOStringArray values;
        const ValueRecord record{.values = &values};
        const CollectOptions from{
            .idAttribute = sourceIdAttribute, .themeFlag = themeFlag != 0, .useFlag = useFlag != 0};
        if (_tree_get_values_by_ids(*source, ids, record, from) == 0) return 0;

        if (callback != nullptr) callback->inProgress = 0;
        // Intended: before the duplicate test, so that an empty second value is no duplicate.
        if (skipEmpty != 0) remove_empty_entries(ids, values);
        int duplicate = 0;
        const SetOptions to{.duplicate = &duplicate,
                            .setMode = setMode,
                            .idAttribute = destinationIdAttribute,
                            .callback = callback,
                            .callFlags = themeOff != 0 ? DWORD{kThemeOff} : DWORD{0},
                            .validateOff = validateOff != 0};
        const int result = _tree_set_values_by_ids(*destination, ids, record, to);
        // Intended: a duplicated 5 reads as the code -5. Callers live with it.
        return duplicate >= 1 ? -duplicate : result;
    });
}

extern "C" int uxtree_copy_values_by_id(UXXmlWrapperBase* source, UXXmlWrapperBase* destination,
                                        int setMode, const char* sourceIdAttribute,
                                        const char* destinationIdAttribute, int themeFlag,
                                        int validateOff, int skipEmpty, int useFlag, int themeOff) {
    return vctree_copy_values_by_id(source, destination, setMode, sourceIdAttribute,
                                    destinationIdAttribute, themeFlag, nullptr, validateOff,
                                    skipEmpty, useFlag, themeOff);
}

extern "C" int uxtree_whole_copy_values_by_id(UXXmlWrapperBase* source,
                                              UXXmlWrapperBase* destination) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(source) || !usable(destination)) return kBadArgument;
        StructureCompleter completer(*destination);
        completer.add_if_missing(*source);
        visit_below(*source, [&](const UXXmlWrapperBase& node) { completer.add_if_missing(node); });
        return vctree_copy_values_by_id(source, destination, 0, nullptr, nullptr, 1, nullptr, 0, 0,
                                        0, 0);
    });
}

extern "C" int uxtree_copy_atts_by_id(UXXmlWrapperBase* source, UXXmlWrapperBase* destination,
                                      const char* attribute, const char* sourceIdAttribute,
                                      const char* destinationIdAttribute,
                                      const char* secondAttribute, int rename) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(source) || !usable(destination)) return kBadArgument;
        CWBOStringArray first;
        CWBOStringArray second;
        ValueRecord record;
        if (given(attribute)) {
            record.firstName = attribute;
            record.firstValues = &first;
        }
        if (given(secondAttribute) && rename == 0) {
            record.secondName = secondAttribute;
            record.secondValues = &second;
        }
        CArray<int, int> ids;
        const CollectOptions from{.idAttribute = sourceIdAttribute, .themeFlag = true};
        if (_tree_get_values_by_ids(*source, ids, record, from) == 0) return 0;

        if (rename != 0) record.firstName = secondAttribute;
        int duplicate = 0;
        const SetOptions to{.duplicate = &duplicate, .idAttribute = destinationIdAttribute};
        _tree_set_values_by_ids(*destination, ids, record, to);
        // Intended: no count, and a duplicated 0 reads as success.
        return negated(duplicate);
    });
}

extern "C" int uxtree_copy_ids_by_tagname(UXXmlWrapperBase* source, UXXmlWrapperBase* destination,
                                          bool leavesOnly) {
    return at_boundary(0, [&] {
        if (!usable(source) || !usable(destination)) return 0;
        const auto nodes = first_nodes_by_tag(*destination, leavesOnly);
        int copied = 0;
        CArray<int, int> ids;
        CArray<UXXmlWrapperBase, UXXmlWrapperBase> targets;
        // All identifiers are read before any is written: the trees may share nodes.
        visit_below(*source, [&](const UXXmlWrapperBase& node) {
            if (leavesOnly && !is_leaf(node)) return;
            const auto found = nodes.find(folded_tag(node));
            if (found == nodes.end()) return;
            int id = 0;
            node.GetDataID(id);
            ids.Add(id);
            targets.Add(found->second);
        });
        for (int i = 0; i < ids.GetSize(); ++i) copied += targets[i].SetDataID(ids[i]);
        return copied;
    });
}
