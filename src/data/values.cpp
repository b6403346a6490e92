// Collecting and setting values by identifier: the entry points, and plain lists of values.
#include "uxtree/data/values.h"

#include "data/id_index.h"
#include "data/values_detail.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/walk.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr char kNodeId[] = "NodeID";

void write_text(UXXmlWrapperBase& node, CStringUTF8& text) {
    node.NodeValue(text, 0, 1, nullptr);
}

template <typename Visit>
void visit_leaves_below(const UXXmlWrapperBase& top, Visit&& visit) {
    visit_below(top, [&](UXXmlWrapperBase& node) {
        if (!is_leaf(node)) return Step::kGoOn;
        visit(node);
        return Step::kOverBranch;
    });
}

void replace_in_leaf(UXXmlWrapperBase& node, const char* oldText, const char* newText) {
    CStringUTF8 text = text_of(node);
    if (text.Replace(oldText, newText) > 0) write_text(node, text);
}

}  // namespace

int vctree_get_values_with_ids(UXXmlWrapperBase* tree, CArray<int, int>* ids,
                               CWBOStringArray* values, int recursive, int onlyChanged,
                               int inheritedRepeat, const char* idAttribute, int themeFlag,
                               CStringUTF8* errorText) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(tree) || any_null(ids, values)) return kBadArgument;
        const CollectOptions options{.recursive = recursive != 0,
                                     .onlyChanged = onlyChanged != 0,
                                     .inheritedRepeat = inheritedRepeat,
                                     .idAttribute = idAttribute,
                                     .themeFlag = themeFlag != 0,
                                     .errorText = errorText};
        return _tree_get_values_by_ids(*tree, *ids, {.values = values}, options);
    });
}

int vctree_set_values_by_ids(UXXmlWrapperBase* tree, CArray<int, int>* ids, CWBOStringArray* values,
                             int inheritedRepeat, int* duplicate, int setMode,
                             const char* idAttribute, CStringUTF8* errorText) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(tree) || any_null(ids, values)) return kBadArgument;
        const SetOptions options{.inheritedRepeat = inheritedRepeat,
                                 .duplicate = duplicate,
                                 .setMode = setMode,
                                 .idAttribute = idAttribute,
                                 .errorText = errorText};
        return _tree_set_values_by_ids(*tree, *ids, {.values = values}, options);
    });
}

int vctree_empty_values_with_ids(UXXmlWrapperBase* tree) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(tree)) return kBadArgument;
        int emptied = 0;
        CStringUTF8 nothing;
        // Intended: only -1 is spared; any other negative DataID is an identifier here.
        visit_leaves_below(*tree, [&](UXXmlWrapperBase& node) {
            int id = -1;
            node.GetDataID(id);
            if (id == -1) return;
            write_text(node, nothing);
            ++emptied;
        });
        return emptied;
    });
}

int vctree_set_values_by_nodeids(UXXmlWrapperBase* tree, CArray<int, int>* ids,
                                 CWBOStringArray* values) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(tree) || any_null(ids, values)) return kBadArgument;
        const int checked = check_lists(*ids, {.values = values});
        if (checked != kOk) return checked;
        IdIndex index(*ids);
        int written = 0;
        visit_leaves_below(*tree, [&](UXXmlWrapperBase& node) {
            int id = 0;
            if (!node.GetPropertyValue(kNodeId, id, 0)) return;
            const int found = index.find(id);
            if (found < 0) return;
            write_text(node, (*values)[found]);
            ++written;
        });
        return written;
    });
}

int VCTreeGetValues(UXXmlWrapperBase* node, CWBOStringArray* values, bool childrenOnly) {
    constexpr int kAlways = 0;
    return at_boundary(kAlways, [&] {
        if (!usable(node) || any_null(values)) return kAlways;
        if (is_leaf(*node)) {
            values->Add(text_of(*node));
            return kAlways;
        }
        values->Add(CStringUTF8());
        visit_below(*node, [&](UXXmlWrapperBase& below) {
            if (childrenOnly || is_leaf(below)) {
                values->Add(text_of(below));
                return Step::kOverBranch;
            }
            values->Add(CStringUTF8());
            return Step::kGoOn;
        });
        return kAlways;
    });
}

extern "C" int uxtree_get_values_with_ids(UXXmlWrapperBase* tree, UXScriptObject* ids,
                                          UXScriptObject* values, int recursive, int onlyChanged,
                                          int inheritedRepeat, const char* idAttribute,
                                          int themeFlag, CStringUTF8* errorText) {
    return at_boundary(kBadArgument, [&] {
        return vctree_get_values_with_ids(tree, int_vector(ids), string_array(values), recursive,
                                          onlyChanged, inheritedRepeat, idAttribute, themeFlag,
                                          errorText);
    });
}

extern "C" int uxtree_set_values_by_ids(UXXmlWrapperBase* tree, UXScriptObject* ids,
                                        UXScriptObject* values, int inheritedRepeat, int* duplicate,
                                        int setMode, const char* idAttribute,
                                        CStringUTF8* errorText) {
    return at_boundary(kBadArgument, [&] {
        return vctree_set_values_by_ids(tree, int_vector(ids), string_array(values),
                                        inheritedRepeat, duplicate, setMode, idAttribute,
                                        errorText);
    });
}

extern "C" int uxtree_set_values_by_nodeids(UXXmlWrapperBase* tree, UXScriptObject* ids,
                                            UXScriptObject* values) {
    return at_boundary(kBadArgument, [&] {
        return vctree_set_values_by_nodeids(tree, int_vector(ids), string_array(values));
    });
}

extern "C" int uxtree_get_values(UXXmlWrapperBase* node, UXScriptObject* values,
                                 bool childrenOnly) {
    return at_boundary(kBadArgument, [&] {
        CWBOStringArray* const array = string_array(values);
        return array == nullptr ? kBadArgument : VCTreeGetValues(node, array, childrenOnly);
    });
}

extern "C" void uxtree_clear_all_value(UXXmlWrapperBase* tree) {
    at_boundary([&] {
        if (!usable(tree)) return;
        CStringUTF8 nothing;
        visit_leaves_below(*tree, [&](UXXmlWrapperBase& node) { write_text(node, nothing); });
    });
}

extern "C" void uxtree_recursively_replace_values(UXXmlWrapperBase* node, const char* oldText,
                                                  const char* newText) {
    at_boundary([&] {
        if (!usable(node) || !given(oldText)) return;
        const char* const replacement = text_or(newText, "");
        if (is_leaf(*node)) replace_in_leaf(*node, oldText, replacement);
        visit_leaves_below(
            *node, [&](UXXmlWrapperBase& leaf) { replace_in_leaf(leaf, oldText, replacement); });
    });
}
