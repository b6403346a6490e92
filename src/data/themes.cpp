// The theme bound to a tree, and lookups in a theme tree.
#include "uxtree/data/themes.h"

#include <array>

#include "uxtree/data/saved.h"

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/walk.h"

using namespace ux;

namespace {

constexpr char kThemeFile[] = "ThemeFile";
constexpr char kThemeType[] = "ThemeType";
constexpr int kDefaultThemeType = 4;

constexpr int kIncludeListObjects = 0x40000000;
constexpr unsigned kPropertiesMask = 0x1F000;
constexpr unsigned kProperties2Mask = 0xF000;

constexpr unsigned kLow16 = 0xFFFF;

bool has_low_id(const UXXmlWrapperBase& node, int id) {
    int own = 0;
    int dataId = 0;
    node.GetID(own);
    node.GetDataID(dataId);
    const auto matches = [id](int value) {
        return static_cast<int>(static_cast<unsigned>(value) & kLow16) == id;
    };
    return matches(own) || matches(dataId);
}

bool find_by_low_id(const UXXmlWrapperBase& tree, int id, int depth, bool recursive,
                    UXXmlWrapperBase& found) {
    if (depth < 0) return false;
    return !visit_levels(tree, depth, [&](UXXmlWrapperBase& node, int& left, int& below) {
        if (has_low_id(node, id)) {
            found = node;
            return Step::kStop;
        }
        if (!recursive || is_leaf(node)) return Step::kOverBranch;
        // Intended: not given back, so the branches further on are searched less deep.
        below = --left;
        return into_branch_if(below >= 0);
    });
}

}  // namespace

extern "C" bool uxtree_tree_get_theme_file_name(UXXmlWrapperBase* tree, CStringUTF8* out) {
    return at_boundary(false, [&] {
        if (!usable(tree) || any_null(out)) return false;
        out->Empty();
        return tree->GetPropertyValue(kThemeFile, *out, 0) != 0;
    });
}

extern "C" bool uxtree_tree_set_theme_file_name(UXXmlWrapperBase* tree, const char* name) {
    return at_boundary(false, [&] {
        if (!usable(tree)) return false;
        if (name == nullptr) {
            tree->RemoveProperty(kThemeFile);
        } else {
            tree->SetPropertyValue(kThemeFile, CStringUTF8(name));
        }
        return true;
    });
}

extern "C" int uxtree_tree_get_theme_type(UXXmlWrapperBase* tree) {
    return at_boundary(kFail, [&] {
        return usable(tree) ? int_attribute_of(*tree, kThemeType, kDefaultThemeType) : kFail;
    });
}

extern "C" bool uxtree_is_inclist_theme(UXXmlWrapperBase* node) {
    return at_boundary(false, [&] {
        if (!usable(node) || int_attribute_of(*node, "Count") != 1 ||
            int_attribute_of(*node, "Objects") != kIncludeListObjects) {
            return false;
        }
        // Intended: both names are spelt so in every theme that exists.
        const unsigned properties = bits_of(*node, "Properies");
        const unsigned properties2 = bits_of(*node, "Properies2");
        if ((properties & ~kPropertiesMask) != 0 || (properties2 & ~kProperties2Mask) != 0) {
            return false;
        }
        return properties != 0 || properties2 != 0;
    });
}

extern "C" int uxtree_theme_tree_get_node_by_id(UXXmlWrapperBase* out, UXXmlWrapperBase* themeTree,
                                                int id, int depth, bool recursive) {
    return at_boundary(kFail, [&] {
        if (any_null(out) || !usable(themeTree)) return kFail;
        return find_by_low_id(*themeTree, id, depth, recursive, *out) ? kOk : kFail;
    });
}

extern "C" int uxtree_theme_tree_get_node_by_index(UXXmlWrapperBase* out,
                                                   UXXmlWrapperBase* themeTree, int id, int index,
                                                   int depth, bool recursive) {
    return at_boundary(kFail, [&] {
        UXXmlWrapperBase node;
        if (any_null(out) || index < 1 ||
            !uxtree_theme_tree_get_node_by_id(&node, themeTree, id, depth, recursive) ||
            node.GetNodeCount() < index) {
            return kFail;
        }
        node.GetChild(&node, index - 1);
        *out = node;
        return kOk;
    });
}

extern "C" int uxtree_theme_tree_get_range_from_range_style(UXXmlWrapperBase* style, int* left,
                                                            int* top, int* right, int* bottom) {
    return at_boundary(kFail, [&] {
        if (!usable(style)) return kFail;
        struct Side {
            const char* tag;
            int* out;
        };
        const std::array<Side, 4> sides{
            {{"Left", left}, {"Right", right}, {"Top", top}, {"Bottom", bottom}}};
        int read = 0;
        CStringUTF8 tag;
        for (UXXmlWrapperBase& child : children(*style)) {
            child.GetTagName(tag);
            for (const Side& side : sides) {
                if (tag.CompareNoCase(side.tag) != 0) continue;
                int passedOver = 0;
                read += child.NodeValue(side.out == nullptr ? passedOver : *side.out, 1);
            }
        }
        return read == static_cast<int>(sides.size()) ? kOk : kFail;
    });
}

extern "C" int uxtree_set_theme(UXXmlWrapperBase* target, UXScriptObject* ids,
                                UXScriptObject* values, const char* comment) {
    return at_boundary(kFail, [&] {
        const bool done = vctree_set_theme(target, int_vector(ids), string_array(values), comment);
        return done ? kOk : kFail;
    });
}

extern "C" void uxtree_get_theme(UXXmlWrapperBase* document, UXScriptObject* ids,
                                 UXScriptObject* values, CStringUTF8* comment,
                                 UXScriptObject* labels) {
    at_boundary([&] {
        CWBOStringArray* const labelArray = string_array(labels);
        if (refused(labels, labelArray)) return;
        vctree_get_theme(document, int_vector(ids), string_array(values), comment, labelArray);
    });
}
