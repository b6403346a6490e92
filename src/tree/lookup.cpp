// Finding nodes by identifier, tag and attribute; finding or making a child.
#include "uxtree/tree/lookup.h"

#include "frame/child_by_tag.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/walk.h"
#include "marks/ids.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr int kAnyValue = -39999;     // matches every value of the attribute
constexpr int kNoRepeatId = -1;       // any repeat identifier
constexpr int kInconsistentIds = -2;  // result of the chain of identifiers

// ---- attributes and identifiers ---------------------------------------------------------------

bool has_id(const UXXmlWrapperBase& node, const UXNameKey& dataId, int id) {
    int own = 0;
    return (node.GetID(own) && own == id) || has_int(node, dataId, id);
}

bool has_wanted(const UXXmlWrapperBase& node, const UXNameKey& name, int wanted) {
    return wanted == kAnyValue ? node.HasProperty(name) != 0 : has_int(node, name, wanted);
}

bool has_repeat_id(const UXXmlWrapperBase& node, int wanted) {
    int value = 0;
    read_repeat_id(node, value);
    return value > 0 && value == wanted;
}

struct IdSearch {
    const char* attrName;
    int value;
    bool recursive;
    int depth;     // levels below the first one that are searched when not recursive
    int repeatId;  // below 1: any
};

// found is changed by a success alone, and may be the tree's own handle.
bool find_by_id(const UXXmlWrapperBase& tree, const IdSearch& search, UXXmlWrapperBase& found) {
    const UXNameKey name(search.attrName);
    const std::size_t depth = search.depth < 0 ? 0 : static_cast<std::size_t>(search.depth);
    for (BranchCursor at(tree); at.more();) {
        // Intended: the repeat identifier constrains the first level only. A node found deeper
        // matches with any repeat identifier.
        const bool repeatIdCounts = at.level() == 0 && search.repeatId >= 1;
        if (has_wanted(at.node(), name, search.value) &&
            (!repeatIdCounts || has_repeat_id(at.node(), search.repeatId))) {
            found = at.node();
            return true;
        }
        search.recursive || at.level() < depth ? at.into() : at.over();
    }
    return false;
}

bool find_direct_by_data_id(const UXXmlWrapperBase& tree, int id, UXXmlWrapperBase& out) {
    return find_by_id(tree, {kDataId, id, false, 0, kNoRepeatId}, out);
}

// ---- several attributes -----------------------------------------------------------------------

int check_ints(const UXXmlWrapperBase& node, const CWBOStringArray& names,
               const CArray<int, int>& values) {
    if (names.GetSize() != values.GetSize()) return kFail;
    for (int i = 0; i < names.GetSize(); ++i) {
        int value = 0;
        if (!node.GetPropertyValue(names[i], value, 0) || value != values[i]) return kFail;
    }
    return kOk;
}

int check_texts(const UXXmlWrapperBase& node, const CWBOStringArray& names,
                const CWBOStringArray& values, bool noCase) {
    if (names.GetSize() != values.GetSize()) return kFail;
    CStringUTF8 value;
    for (int i = 0; i < names.GetSize(); ++i) {
        if (!node.GetPropertyValue(names[i], value, 0)) return kFail;
        if ((noCase ? value.CompareNoCase(values[i]) : value.Compare(values[i])) != 0) return kFail;
    }
    return kOk;
}

// The node that passes after `occurrence` passing siblings; out may be null. What is still to be
// found is counted per level: a branch is searched with what the level above has left, and gives
// nothing back.
template <typename Passes>
int find_occurrence(const UXXmlWrapperBase& tree, bool recursive, int occurrence,
                    UXXmlWrapperBase* out, Passes&& passes) {
    const bool missing =
        visit_levels(tree, occurrence, [&](const UXXmlWrapperBase& node, int& left, int& below) {
            const bool counts = passes(node);
            if (counts && left == 0) {
                if (out != nullptr) *out = node;
                return Step::kStop;
            }
            if (counts && left > 0) --left;
            below = left;
            return into_branch_if(recursive);
        });
    return missing ? kFail : kOk;
}

// ---- attribute and child value ----------------------------------------------------------------

bool passes_attribute(const UXXmlWrapperBase& node, const char* name, const char* value) {
    if (any_null(name, value)) return true;
    // Intended: the attribute's value is not compared; having it is enough, and lacking it is
    // enough when the wanted value is empty. Existing dialogs rely on this lenient test.
    return node.HasProperty(name, 0) != 0 || *value == '\0';
}

bool has_leaf_child(const UXXmlWrapperBase& node, const char* tag, const char* value) {
    for (UXXmlWrapperBase& child : children(node)) {
        if (tag_of(child) != tag || !is_leaf(child)) continue;
        if (text_of(child).CompareNoCase(value) == 0) return true;
    }
    return false;
}

// ---- help -------------------------------------------------------------------------------------

constexpr int kFirstHelpCategory = 256;
constexpr int kLastHelpCategory = 1024;

int help_category(UXXmlWrapperBase& out, UXXmlWrapperBase& tree, int id, int category) {
    if (category >= kFirstHelpCategory && category <= kLastHelpCategory) return category;
    const auto& service = UXGetHostServices().helpCategory;
    return service ? call_out(service, out, tree, id, category) : category;
}

// The DataID of the direct child that holds the help, 0 when the help stands under its category.
int direct_help_id(int id, int category) {
    const bool firstCategory = category == kFirstHelpCategory;
    switch (id) {
        case 440:
            return firstCategory ? 310 : 0;
        case 448:
            return firstCategory ? 391 : 0;
        case 305:
        case 430:
        case 442:
        case 446:
            return id;
        default:
            return 0;
    }
}

}  // namespace

extern "C" {

int uxtree_get_node_by_id(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, int id, bool recursive) {
    return at_boundary(kFail, [&] {
        if (out == nullptr || !usable(tree)) return kFail;
        const UXNameKey dataId(kDataId);
        const bool missing = visit_below(*tree, [&](const UXXmlWrapperBase& node) {
            if (!has_id(node, dataId, id)) return into_branch_if(recursive);
            *out = node;
            return Step::kStop;
        });
        return missing ? kFail : kOk;
    });
}

int uxtree_get_node_by_tagname(UXXmlWrapperBase* node, UXXmlWrapperBase* out, const char* tag,
                               bool recursive, bool caseSensitive, bool leavesOnly) {
    return at_boundary(kFail, [&] {
        if (!usable(node) || !given(tag)) return kFail;
        CStringUTF8 name;
        UXXmlWrapperBase found;
        const auto test = [&](const UXXmlWrapperBase& candidate) {
            if (leavesOnly && !is_leaf(candidate)) return Step::kGoOn;
            candidate.GetTagName(name);
            if ((caseSensitive ? name.Compare(tag) : name.CompareNoCase(tag)) != 0) {
                return Step::kGoOn;
            }
            found = candidate;
            return Step::kStop;
        };
        if (test(*node) != Step::kStop && recursive) visit_below(*node, test);
        if (!usable(found)) return kFail;
        if (out != nullptr) *out = found;
        return kOk;
    });
}

int uxtree_find_node(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, const char* attrName, int value,
                     bool recursive, int depth, int repeatId) {
    return at_boundary(kFail, [&] {
        if (any_null(out, attrName) || !usable(tree)) return kFail;
        return find_by_id(*tree, {attrName, value, recursive, depth, repeatId}, *out) ? kOk : kFail;
    });
}

int uxtree_find_node_ex(UXXmlWrapperBase* tree, UXXmlWrapperBase* out, const char* attrName, int id,
                        int parentId, int parentRepeatId, int grandParentId,
                        int grandParentRepeatId) {
    return at_boundary(kBadArgument, [&] {
        if (any_null(out, attrName) || !usable(tree)) return kBadArgument;
        if (id == 0 || (grandParentId != 0 && parentId == 0)) return kInconsistentIds;
        UXXmlWrapperBase place = *tree;
        bool wholeTree = true;
        // One link of the chain: among the direct children of the last ancestor found, or in the
        // whole tree when there is none yet.
        // Intended: the last ancestor found stays in out when a later link is missing. Callers
        // test the result, which names that link.
        const auto follow = [&](int link, int repeatId) {
            if (!find_by_id(place, {attrName, link, wholeTree, 0, repeatId}, place)) return false;
            *out = place;
            wholeTree = false;
            return true;
        };
        if (grandParentId != 0 && !follow(grandParentId, grandParentRepeatId)) return grandParentId;
        if (parentId != 0 && !follow(parentId, parentRepeatId)) return parentId;
        return follow(id, kNoRepeatId) ? 0 : id;
    });
}

int uxtree_find_node_by_dataID(UXXmlWrapperBase* out, UXXmlWrapperBase* tree, int id, int parentId,
                               int parentRepeatId, int grandParentId, int grandParentRepeatId) {
    return at_boundary(kFail, [&] {
        if (out == nullptr) return kFail;
        UXXmlWrapperBase found;
        const int missing = uxtree_find_node_ex(tree, &found, kDataId, id, parentId, parentRepeatId,
                                                grandParentId, grandParentRepeatId);
        *out = missing == 0 ? found : UXXmlWrapperBase();
        return missing == 0 ? kOk : kFail;
    });
}

int uxtree_find_node_with_attr_child(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
                                     const char* attrName, const char* attrValue,
                                     const char* childTag, const char* childValue) {
    return at_boundary(kFail, [&] {
        if (out == nullptr || !usable(tree)) return kFail;
        const bool anyChild = any_null(childTag, childValue);
        for (UXXmlWrapperBase& node : children(*tree)) {
            if (!passes_attribute(node, attrName, attrValue)) continue;
            if (!anyChild && !has_leaf_child(node, childTag, childValue)) continue;
            *out = node;
            return kOk;
        }
        return kFail;
    });
}

int uxtree_check_node_int_attr(UXXmlWrapperBase* node, UXScriptObject* names,
                               UXScriptObject* values) {
    return at_boundary(kFail, [&] {
        if (any_null(names, values) || !usable(node)) return kFail;
        const CWBOStringArray* nameList = string_array(names);
        const CArray<int, int>* valueList = int_vector(values);
        if (any_null(nameList, valueList)) return kBadArgument;
        return check_ints(*node, *nameList, *valueList);
    });
}

int uxtree_check_node_str_attr(UXXmlWrapperBase* node, UXScriptObject* names,
                               UXScriptObject* values, int noCase) {
    return at_boundary(kFail, [&] {
        if (any_null(names, values) || !usable(node)) return kFail;
        const CWBOStringArray* nameList = string_array(names);
        const CWBOStringArray* valueList = string_array(values);
        if (any_null(nameList, valueList)) return kBadArgument;
        return check_texts(*node, *nameList, *valueList, noCase != 0);
    });
}

int uxtree_find_node_with_int_attr(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
                                   UXScriptObject* names, UXScriptObject* values, bool recursive,
                                   int occurrence) {
    return at_boundary(kFail, [&] {
        if (!usable(tree)) return kFail;
        const CWBOStringArray* nameList = string_array(names);
        const CArray<int, int>* valueList = int_vector(values);
        if (any_null(nameList, valueList)) return kFail;
        return find_occurrence(*tree, recursive, occurrence, out, [&](const auto& node) {
            return check_ints(node, *nameList, *valueList) == kOk;
        });
    });
}

int uxtree_find_node_with_str_attr(UXXmlWrapperBase* tree, UXXmlWrapperBase* out,
                                   UXScriptObject* names, UXScriptObject* values, bool recursive,
                                   int occurrence) {
    return at_boundary(kFail, [&] {
        if (!usable(tree)) return kFail;
        const CWBOStringArray* nameList = string_array(names);
        const CWBOStringArray* valueList = string_array(values);
        if (any_null(nameList, valueList)) return kFail;
        return find_occurrence(*tree, recursive, occurrence, out, [&](const auto& node) {
            return check_texts(node, *nameList, *valueList, false) == kOk;
        });
    });
}

int uxtree_tree_check_get_node(UXXmlWrapperBase* out, UXXmlWrapperBase* parent, const char* tag,
                               int id, const char* attrName, const char* attrValue, int findFlag) {
    return at_boundary(kFail, [&] {
        if (out == nullptr || !usable(parent)) return kFail;
        if (!find_or_add_child(*out, *parent, tag, id, findFlag)) return kFail;
        if (given(attrName) && given(attrValue)) {
            out->SetPropertyValue(attrName, CStringUTF8(attrValue));
        }
        return kOk;
    });
}

int uxtree_tree_check_get_node_by_attribute(UXXmlWrapperBase* out, UXXmlWrapperBase* parent,
                                            const char* attrName, const char* attrValue, int flag,
                                            const char* newTag) {
    return at_boundary(kFail, [&] {
        if (any_null(out, attrName, attrValue) || !usable(parent)) return kFail;
        UXXmlWrapperBase place = *parent;  // out may be the parent's own handle
        if (place.FindNodeByAttribute(out, attrName, attrValue, 0, flag)) return kOk;
        CStringUTF8 tag = newTag != nullptr ? newTag : attrValue;
        // Intended: the tag "0" means that the caller wants nothing created.
        if (tag == "0") return kFail;
        if (!tag.IsEmpty()) {
            const CStringUTF8 wanted = tag;
            call_out(UXGetHostServices().cleanName, tag, wanted);
        }
        if (!place.AddNode(out, tag, -1)) return kFail;
        out->SetPropertyValue(attrName, CStringUTF8(attrValue));
        return kOk;
    });
}

int uxtree_check_get_node_by_dataid(UXXmlWrapperBase* parent, UXXmlWrapperBase* out,
                                    const char* tag, int dataId, const char* attrName,
                                    const char* attrValue) {
    return at_boundary(kFail, [&] {
        if (out == nullptr || !usable(parent)) return kFail;
        if (find_direct_by_data_id(*parent, dataId, *out)) return kOk;
        UXXmlWrapperBase added;
        // Intended: 1 also when the tag cannot be created; out then stays as it was.
        if (!parent->AddNode(&added, tag, -1)) return kOk;
        if (given(attrName) && given(attrValue)) {
            added.SetPropertyValue(attrName, CStringUTF8(attrValue));
        }
        if (dataId > 0) added.SetDataID(dataId);
        *out = added;
        return kOk;
    });
}

int uxtree_get_help_node(UXXmlWrapperBase* out, UXXmlWrapperBase* tree, int id, int category) {
    return at_boundary(kFail, [&] {
        if (out == nullptr || !usable(tree)) return kFail;
        UXXmlWrapperBase place = *tree;  // out may be the tree's own handle
        const int known = help_category(*out, place, id, category);
        const int direct = direct_help_id(id, known);
        if (direct != 0) return find_direct_by_data_id(place, direct, *out) ? kOk : kFail;
        constexpr int kHelpTopics = 420;
        return uxtree_find_node_by_dataID(out, &place, id, kHelpTopics, known, 0, kNoRepeatId);
    });
}

}  // extern "C"
