#include "uxtree/data/values.h"

#include "data/id_index.h"
#include "data/names.h"
#include "data/values_detail.h"
#include "frame/guards.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/walk.h"

namespace {

constexpr char kNodeId[] = "NodeID";

void append_text(UXXmlWrapperBase& node, CWBOStringArray& values) {
    CStringUTF8 text;
    node.NodeValue(text, 1, 1, nullptr);
    values.Add(std::move(text));
}

void write_text(UXXmlWrapperBase& node, CStringUTF8& text) {
    node.NodeValue(text, 0, 1, nullptr);
}

template <typename Visit>
void visit_leaves_below(const UXXmlWrapperBase& top, Visit&& visit) {
    ux::visit_below(top, [&](UXXmlWrapperBase& node) {
        if (!ux::is_leaf(node)) return ux::Step::kIntoBranch;
        visit(node);
        return ux::Step::kOverBranch;
    });
}

void replace_in_leaf(UXXmlWrapperBase& node, const char* oldText, const char* newText) {
    CStringUTF8 text;
    node.NodeValue(text, 1, 1, nullptr);
    if (text.Replace(oldText, newText) > 0) write_text(node, text);
}

}  // namespace

int vctree_get_values_with_ids(UXXmlWrapperBase* tree, CArray<int, int>* ids,
                               CWBOStringArray* values, int recursive, int onlyChanged,
                               int inheritedRepeat, const char* idAttribute, int themeFlag,
                               CStringUTF8* errorText) {
    return ux::at_boundary(ux::kBadArgument, [&] {
        if (!ux::usable(tree) || ux::any_null(ids, values)) {
            return ux::kBadArgument;
        }
        ux::ValueRecord record;
        record.values = values;
        ux::CollectOptions options;
        options.recursive = recursive != 0;
        options.onlyChanged = onlyChanged != 0;
        options.inheritedRepeat = inheritedRepeat;
        options.idAttribute = idAttribute;
        options.themeFlag = themeFlag != 0;
        options.errorText = errorText;
        return ux::_tree_get_values_by_ids(*tree, *ids, record, options);
    });
}

int vctree_set_values_by_ids(UXXmlWrapperBase* tree, CArray<int, int>* ids, CWBOStringArray* values,
                             int inheritedRepeat, int* duplicate, int setMode,
                             const char* idAttribute, CStringUTF8* errorText) {
    return ux::at_boundary(ux::kBadArgument, [&] {
        if (!ux::usable(tree) || ux::any_null(ids, values)) {
            return ux::kBadArgument;
        }
        ux::ValueRecord record;
        record.values = values;
        ux::SetOptions options;
        options.inheritedRepeat = inheritedRepeat;
        options.duplicate = duplicate;
        options.setMode = setMode;
        options.idAttribute = idAttribute;
        options.errorText = errorText;
        return ux::_tree_set_values_by_ids(*tree, *ids, record, options);
    });
}

int vctree_empty_values_with_ids(UXXmlWrapperBase* tree) {
    return ux::at_boundary(ux::kBadArgument, [&] {
        if (!ux::usable(tree)) return ux::kBadArgument;
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
    return ux::at_boundary(ux::kBadArgument, [&] {
        if (!ux::usable(tree) || ux::any_null(ids, values)) {
            return ux::kBadArgument;
        }
        ux::ValueRecord record;
        record.values = values;
        const int checked = ux::check_lists(*ids, record);
        if (checked != ux::kOk) return checked;
        ux::IdIndex index(*ids);
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
    return ux::at_boundary(kAlways, [&] {
        if (!ux::usable(node) || ux::any_null(values)) return kAlways;
        if (ux::is_leaf(*node)) {
            append_text(*node, *values);
            return kAlways;
        }
        values->Add(CStringUTF8());
        ux::visit_below(*node, [&](UXXmlWrapperBase& below) {
            if (childrenOnly || ux::is_leaf(below)) {
                append_text(below, *values);
                return ux::Step::kOverBranch;
            }
            values->Add(CStringUTF8());
            return ux::Step::kIntoBranch;
        });
        return kAlways;
    });
}

extern "C" int uxtree_get_values_with_ids(UXXmlWrapperBase* tree, UXScriptObject* ids,
                                          UXScriptObject* values, int recursive, int onlyChanged,
                                          int inheritedRepeat, const char* idAttribute,
                                          int themeFlag, CStringUTF8* errorText) {
    return ux::at_boundary(ux::kBadArgument, [&] {
        return vctree_get_values_with_ids(tree, ux::int_vector(ids), ux::string_array(values),
                                          recursive, onlyChanged, inheritedRepeat, idAttribute,
                                          themeFlag, errorText);
    });
}

extern "C" int uxtree_set_values_by_ids(UXXmlWrapperBase* tree, UXScriptObject* ids,
                                        UXScriptObject* values, int inheritedRepeat, int* duplicate,
                                        int setMode, const char* idAttribute,
                                        CStringUTF8* errorText) {
    return ux::at_boundary(ux::kBadArgument, [&] {
        return vctree_set_values_by_ids(tree, ux::int_vector(ids), ux::string_array(values),
                                        inheritedRepeat, duplicate, setMode, idAttribute,
                                        errorText);
    });
}

extern "C" int uxtree_set_values_by_nodeids(UXXmlWrapperBase* tree, UXScriptObject* ids,
                                            UXScriptObject* values) {
    return ux::at_boundary(ux::kBadArgument, [&] {
        return vctree_set_values_by_nodeids(tree, ux::int_vector(ids), ux::string_array(values));
    });
}

extern "C" int uxtree_get_values(UXXmlWrapperBase* node, UXScriptObject* values,
                                 bool childrenOnly) {
    return ux::at_boundary(ux::kBadArgument, [&] {
        CWBOStringArray* const array = ux::string_array(values);
        return array == nullptr ? ux::kBadArgument : VCTreeGetValues(node, array, childrenOnly);
    });
}

extern "C" void uxtree_clear_all_value(UXXmlWrapperBase* tree) {
    ux::at_boundary([&] {
        if (!ux::usable(tree)) return;
        CStringUTF8 nothing;
        visit_leaves_below(*tree, [&](UXXmlWrapperBase& node) { write_text(node, nothing); });
    });
}

extern "C" void uxtree_recursively_replace_values(UXXmlWrapperBase* node, const char* oldText,
                                                  const char* newText) {
    ux::at_boundary([&] {
        if (!ux::usable(node) || !ux::given(oldText)) return;
        const char* const replacement = ux::text_or(newText, "");
        if (ux::is_leaf(*node)) replace_in_leaf(*node, oldText, replacement);
        visit_leaves_below(
            *node, [&](UXXmlWrapperBase& leaf) { replace_in_leaf(leaf, oldText, replacement); });
    });
}
