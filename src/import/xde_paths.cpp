// Attributes, values and node paths of import trees.
#include "uxtree/import/xde_paths.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "uxtree/data/key_values.h"

#include "base/text_view.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/walk.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr char kSeparator = '|';
constexpr const char* kWildcard = "*";

// ---- attributes -------------------------------------------------------------------------------

struct Bookkeeping {
    std::string_view name;
    DWORD filter;  // the bit that leaves it out; 0: always
};
constexpr std::array<Bookkeeping, 16> kBookkeeping{{{kLabel, 0},
                                                    {"FileSourcePath", 0},
                                                    {kDataId, 0},
                                                    {"FileDataDimsVector", 0},
                                                    {"DataTreeNodeType", 0x20000},
                                                    {"DataTreeObjFinder", 0x20000},
                                                    {"DataTreeOtherString", 0x20000},
                                                    {"FileImportLayerType", 0x20000},
                                                    {"FileDataType", 0x10000},
                                                    {"BlobArrElementaryType", 0x40000},
                                                    {"xmlns:dt", 0x40000},
                                                    {"dt:dt", 0x40000},
                                                    {"TypeID", 0x80000},
                                                    {"ColDesignation", 0x100000},
                                                    {"Comment", 0x100000},
                                                    {"Unit", 0x100000}}};

bool is_listed(std::string_view name, DWORD filter) {
    return std::none_of(kBookkeeping.begin(), kBookkeeping.end(), [&](const Bookkeeping& row) {
        return row.name == name && (row.filter == 0 || (filter & row.filter) != 0);
    });
}

// ---- names and paths --------------------------------------------------------------------------

CStringUTF8 path_name(const UXXmlWrapperBase& node) {
    const CStringUTF8 label = attribute_of(node, kLabel);
    return label.IsEmpty() ? tag_of(node) : label;
}

CStringUTF8 escaped(const CStringUTF8& name) {
    CStringUTF8 out = name;
    out.Replace("\\", "\\\\");
    out.Replace("|", "\\|");
    return out;
}

bool is_selection_char(char c) {
    return (c >= '0' && c <= '9') || std::string_view(":,;*- ").find(c) != std::string_view::npos;
}

// The name without its trailing selections, or the name itself when it has none.
CStringUTF8 without_selection(const CStringUTF8& name) {
    const std::string_view text = static_cast<const char*>(name);
    std::size_t end = text.size();
    while (end > 0 && text[end - 1] == ']') {
        std::size_t open = end - 1;
        while (open > 0 && is_selection_char(text[open - 1])) --open;
        if (open < 2 || text[open - 1] != '[') break;  // a name stands before the selection
        end = open - 1;
    }
    return name.Left(static_cast<int>(end));
}

bool find_child_by_label(const UXXmlWrapperBase& parent, const CStringUTF8& label,
                         UXXmlWrapperBase& found) {
    CStringUTF8 text;
    for (UXXmlWrapperBase& child : children(parent)) {
        if (child.GetPropertyValue(kLabel, text, 0) && text == label) {
            found = child;
            return true;
        }
    }
    return false;
}

bool find_child_by_name(const UXXmlWrapperBase& parent, const CStringUTF8& name, bool byTagOnly,
                        UXXmlWrapperBase& found) {
    if (!byTagOnly && find_child_by_label(parent, name, found)) return true;
    UXXmlWrapperBase child;
    if (!parent.FindChild(name, &child, 1)) return false;
    found = child;
    return true;
}

// Moves the first wildcard and what follows it from the path into rest.
void cut_at_wildcard(CWBOStringArray& path, CWBOStringArray& rest) {
    rest.RemoveAll();
    int cut = 0;
    while (cut < path.GetSize() && path[cut] != kWildcard) ++cut;
    for (int i = cut; i < path.GetSize(); ++i) rest.Add(path[i]);
    path.SetSize(cut);
}

// Intended: the name of the tree itself is compared by label or tag even where only tags count
// below it, with its selection or without. A path always begins with the name a user sees.
bool names_tree(const UXXmlWrapperBase& tree, const CStringUTF8& item) {
    const CStringUTF8 name = path_name(tree);
    return name == item || name == without_selection(item);
}

bool descend(const UXXmlWrapperBase& tree, const CWBOStringArray& path, int from, bool byTagOnly,
             bool allowSlice, UXXmlWrapperBase& found) {
    UXXmlWrapperBase node = tree;
    for (int i = from; i < path.GetSize(); ++i) {
        const CStringUTF8& item = path[i];
        UXXmlWrapperBase child;
        if (!find_child_by_name(node, item, byTagOnly, child) &&
            !(allowSlice && find_child_by_name(node, without_selection(item), byTagOnly, child))) {
            return false;
        }
        node = child;
    }
    found = node;
    return true;
}

// ---- values and source trees ------------------------------------------------------------------

CStringUTF8 display_value(UXXmlWrapperBase& node) {
    if (is_leaf(node)) return text_of(node);
    CStringUTF8 out;
    bool first = true;
    visit_below(node, [&](UXXmlWrapperBase& below) {
        if (!is_leaf(below)) return Step::kGoOn;
        if (!first) out += ", ";
        first = false;
        out += text_of(below);
        return Step::kOverBranch;
    });
    return out;
}

void label_if_unlabelled(UXXmlWrapperBase& node) {
    if (attribute_of(node, kLabel).IsEmpty()) node.SetLabel(tag_of(node));
}

// Labels the tree and counts its leaves; their paths go into paths when that is given.
int prepare_source_tree(UXXmlWrapperBase& tree, CWBOStringArray* paths) {
    int leaves = 0;
    std::string path;
    // Each level knows the length of its parent's path.
    const auto visit = [&](UXXmlWrapperBase& node, std::size_t parent, std::size_t& below) {
        label_if_unlabelled(node);
        leaves += is_leaf(node) ? 1 : 0;
        if (paths == nullptr) return Step::kGoOn;
        path.resize(parent);
        if (node != tree) path += kSeparator;
        path += view_of(escaped(path_name(node)));
        if (is_leaf(node)) paths->AddText(path);
        below = path.size();
        return Step::kGoOn;
    };
    std::size_t own = 0;
    visit(tree, 0, own);
    visit_levels(tree, own, visit);
    return leaves;
}

}  // namespace

int vctree_XDE_XML_get_attributes(CWBOStringArray* names, CWBOStringArray* values,
                                  UXXmlWrapperBase* node, DWORD filter) {
    return at_boundary(kFail, [&] {
        if (names == nullptr || !usable(node)) return kFail;
        const UXPropertyFilter keep = [filter](const char* name) {
            return is_listed(name, filter);
        };
        return node->GetPropertyNamesAndValues(*names, values, &keep);
    });
}

int vctree_XDE_treenode_path_array_to_string(CStringUTF8* text, const CWBOStringArray* path,
                                             bool escape) {
    return at_boundary(kFail, [&] {
        if (any_null(text, path)) return kFail;
        CStringUTF8 joined;
        for (int i = 0; i < path->GetSize(); ++i) {
            const CStringUTF8& name = path->GetAt(i);
            if (i > 0) joined += kSeparator;
            joined += escape ? escaped(name) : name;
        }
        const int count = path->GetSize();
        *text = joined;
        return count;
    });
}

int vctree_XDE_treenode_path_string_to_array(CWBOStringArray* path, const char* text, bool escape) {
    return at_boundary(kFail, [&] {
        if (path == nullptr) return kFail;
        CWBOStringArray names;
        const bool split = UXGetTokens(names, text, kSeparator, 0) > 0;
        // Intended: the last name keeps its doubled backslashes, also when it is the only one.
        // Callers that want a single name unescaped do it themselves.
        if (split && escape) vctree_convert_escape_character(names, kSeparator, false);
        path->Copy(names);
        return split ? kOk : kFail;
    });
}

int VCTreeXDETreenodeOnePathAsArrayToString(CStringUTF8& text, const CWBOStringArray* path) {
    return at_boundary(kFail, [&] {
        if (path == nullptr) return kFail;
        CStringUTF8 joined;
        const int count = UXJoinTokens(joined, *path, "/");
        text = joined;
        return count;
    });
}

int vctree_get_XDE_treenode_string_for_path_in_tree(CStringUTF8* name, UXXmlWrapperBase* node) {
    return at_boundary(kFail, [&] {
        if (name == nullptr || !usable(node)) return kFail;
        *name = path_name(*node);
        return kOk;
    });
}

int vctree_find_XDE_treenode_from_path_in_tree(UXXmlWrapperBase* found, UXXmlWrapperBase* tree,
                                               CWBOStringArray* path, int start, int byTagOnly,
                                               CWBOStringArray* rest, int allowSlice) {
    return at_boundary(kFail, [&] {
        if (any_null(found, path) || !usable(tree)) return kFail;
        const UXXmlWrapperBase top = *tree;
        found->ReleaseNode();
        if (start < 0 || start >= path->GetSize()) return kFail;
        if (rest != nullptr) cut_at_wildcard(*path, *rest);
        if (start >= path->GetSize() || !names_tree(top, path->GetAt(start))) return kFail;
        return descend(top, *path, start + 1, byTagOnly != 0, allowSlice != 0, *found) ? kOk
                                                                                       : kFail;
    });
}

int VCTreeXDEConvertTreeValToString(CStringUTF8& out, UXXmlWrapperBase* node) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) {
            out.Empty();
            return kFail;
        }
        out = display_value(*node);
        return kOk;
    });
}

int VCTreeXDEDatNavPrepareStandardSourceTree(UXXmlWrapperBase& tree, CWBOStringArray* paths,
                                             DWORD /*flags*/) {
    return at_boundary(kBadArgument, [&] {
        return usable(tree) ? prepare_source_tree(tree, paths) : kBadArgument;
    });
}

extern "C" int uxtree_XDE_get_attributes(UXScriptObject* names, UXScriptObject* values,
                                         UXXmlWrapperBase* node, DWORD filter) {
    return at_boundary(kFail, [&] {
        CWBOStringArray* valueTexts = string_array(values);
        if (refused(values, valueTexts)) return kFail;
        return vctree_XDE_XML_get_attributes(string_array(names), valueTexts, node, filter);
    });
}

extern "C" int uxtree_XDE_treenode_path_array_to_string(CStringUTF8* text, UXScriptObject* path,
                                                        bool escape) {
    return at_boundary(kFail, [&] {
        return vctree_XDE_treenode_path_array_to_string(text, string_array(path), escape);
    });
}

extern "C" int uxtree_XDE_treenode_path_string_to_array(UXScriptObject* path, const char* text,
                                                        bool escape) {
    return at_boundary(kFail, [&] {
        return vctree_XDE_treenode_path_string_to_array(string_array(path), text, escape);
    });
}

extern "C" int uxtree_XDE_treenode_one_path_as_array_to_string(CStringUTF8* text,
                                                               UXScriptObject* path) {
    return at_boundary(kFail, [&] {
        if (text == nullptr) return kFail;
        return VCTreeXDETreenodeOnePathAsArrayToString(*text, string_array(path));
    });
}

extern "C" int uxtree_get_XDE_treenode_string_for_path_in_tree(CStringUTF8* name,
                                                               UXXmlWrapperBase* node) {
    return vctree_get_XDE_treenode_string_for_path_in_tree(name, node);
}

extern "C" int uxtree_find_XDE_treenode_from_path_in_tree(UXXmlWrapperBase* found,
                                                          UXXmlWrapperBase* tree,
                                                          UXScriptObject* path, int start,
                                                          int byTagOnly, UXScriptObject* rest,
                                                          int allowSlice) {
    return at_boundary(kFail, [&] {
        CWBOStringArray* restNames = string_array(rest);
        if (refused(rest, restNames)) return kFail;
        return vctree_find_XDE_treenode_from_path_in_tree(found, tree, string_array(path), start,
                                                          byTagOnly, restNames, allowSlice);
    });
}

extern "C" int uxtree_XDE_convert_tree_val_to_string(CStringUTF8* out, UXXmlWrapperBase* node) {
    return at_boundary(kFail, [&] {
        return out == nullptr ? kFail : VCTreeXDEConvertTreeValToString(*out, node);
    });
}

extern "C" int uxtree_XDE_convert_whole_tree_val_to_string(CStringUTF8* out,
                                                           UXXmlWrapperBase* node) {
    return at_boundary(kFail, [&] {
        if (out == nullptr) return kFail;
        UXXmlWrapperBase top;
        for (UXXmlWrapperBase up = node == nullptr ? top : *node; usable(up);) {
            top = up;
            step_to_parent(up);
        }
        return VCTreeXDEConvertTreeValToString(*out, &top);
    });
}

extern "C" int uxtree_XDE_DatNav_prepare_standard_source_tree(UXXmlWrapperBase* tree,
                                                              UXScriptObject* paths, DWORD flags) {
    return at_boundary(kBadArgument, [&] {
        CWBOStringArray* pathTexts = string_array(paths);
        if (tree == nullptr || refused(paths, pathTexts)) return kBadArgument;
        return VCTreeXDEDatNavPrepareStandardSourceTree(*tree, pathTexts, flags);
    });
}

extern "C" int uxtree_save_XDE_array_info(UXXmlWrapperBase* node, int rows, int cols) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) return kFail;
        if (rows >= 1 && cols >= 1) return node->SaveXDE2DArraySize(rows, cols);
        return node->SaveXDEArraySize(rows);  // below 1: removes the size
    });
}

extern "C" int uxtree_set_XDE_file_info_data_id(UXXmlWrapperBase* node, int dataId) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) return kFail;
        return dataId < 0 ? node->RemoveProperty(kDataId) : node->SetDataID(dataId);
    });
}
