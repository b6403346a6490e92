// One attribute over a branch: set, removed, saved, restored, copied, collected and counted.
#include "uxtree/tree/attributes.h"

#include <string_view>
#include <utility>

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "marks/attribute_match.h"
#include "marks/auto_text.h"
#include "marks/names.h"
#include "tree/text_set_detail.h"

using namespace ux;

namespace {

// ---- one attribute of one node ----------------------------------------------------------------

bool write_bits(UXXmlWrapperBase& node, const char* name, unsigned int bits) {
    return node.SetPropertyValue(name, static_cast<int>(bits)) != 0;
}

bool remove_attribute(UXXmlWrapperBase& node, const UXNameKey& name) {
    return node.HasProperty(name) && node.RemoveProperty(name);
}

bool copy_attribute(const UXXmlWrapperBase& source, UXXmlWrapperBase& target,
                    const UXNameKey& name) {
    std::string_view text;
    return source.GetPropertyView(name, text) && target.SetPropertyView(name, text);
}

// Moves the integer of attribute `from` into attribute `to`.
bool move_int_attribute(UXXmlWrapperBase& node, const UXNameKey& from, const UXNameKey& to) {
    if (!node.HasProperty(from)) return false;
    // Intended: only integers survive. A text that is no integer counts as 0, and comes back so.
    return node.SetPropertyValue(to, int_attribute_of(node, from)) && node.RemoveProperty(from);
}

// ---- whole branches ---------------------------------------------------------------------------

// Counts the nodes for which change yields true: everything below top, and top itself when it is
// included.
template <typename Change>
int count_changes(UXXmlWrapperBase& top, bool includeSelf, Change&& change) {
    int changed = includeSelf && change(top) ? 1 : 0;
    visit_below(top, [&](UXXmlWrapperBase& node) { changed += change(node) ? 1 : 0; });
    return changed;
}

CStringUTF8 saved_name(const char* name) {
    return CStringUTF8("StorePrefix") + name;
}
int move_everywhere(UXXmlWrapperBase& tree, const char* from, const char* to) {
    const UXNameKey fromName(from);
    const UXNameKey toName(to);
    return count_changes(tree, true, [&](UXXmlWrapperBase& node) {
        return move_int_attribute(node, fromName, toName);
    });
}

bool has_filled_leaf(const UXXmlWrapperBase& top, bool deep) {
    return !visit_below(top, [&](const UXXmlWrapperBase& node) {
        if (!is_leaf(node)) return into_branch_if(deep);
        return node.IsEmpty() ? Step::kOverBranch : Step::kStop;
    });
}

// ---- setting everywhere -----------------------------------------------------------------------

class AttributeSetter {
public:
    AttributeSetter(const char* name, const char* value)
        : name_(name), value_(value), switchesAuto_(std::string_view(name) == kAuto) {}
    void operator()(UXXmlWrapperBase& node) const {
        // Intended: "Auto" switches the automatic support on, whatever the value says.
        if (switchesAuto_) {
            write_auto(node, kAutoOn, nullptr, kKeepAutoCount);
        } else {
            node.SetPropertyView(name_, view_of(value_));
        }
    }

private:
    UXNameKey name_;
    CStringUTF8 value_;
    bool switchesAuto_;
};

// ---- collecting -------------------------------------------------------------------------------

void append_below(const UXXmlWrapperBase& top, CWBOStringArray& out, const UXNameKey& name) {
    visit_below(top, [&](const UXXmlWrapperBase& node) { out.AddText(view_of(node, name)); });
}

// A tree with one child per identifier, which carries it in keyAttr and has the value.
UXXmlWrapperBase tree_of_ids(const CArray<int, int>& ids, const char* value, const char* keyAttr) {
    UXXmlWrapperBase root;
    root.CreateNew(0, nullptr);
    const UXNameKey key(keyAttr);
    UXXmlWrapperBase child;
    for (int i = 0; i < ids.GetSize(); ++i) {
        root.AddTextNode(&child, "id", value, -1, 0, nullptr);
        child.SetPropertyValue(key, ids[i]);
    }
    return root;
}

}  // namespace

void vctree_modify_DWORD_attribute(UXXmlWrapperBase* node, const char* name, unsigned int clearBits,
                                   unsigned int setBits) {
    at_boundary([&] {
        if (name == nullptr || !usable(node)) return;
        if (setBits == 0 && !node->HasProperty(name, 0)) return;
        // Intended: clearing wins over setting here, the reverse of uxtree_modify_attribute.
        write_bits(*node, name, (bits_of(*node, name) | setBits) & ~clearBits);
    });
}

int VCTreeAttributeValues(UXXmlWrapperBase* tree, const char* name, int value,
                          CArray<int, int>* values, int removeIfNegative, int includeSelf) {
    return at_boundary(0, [&] {
        if (name == nullptr || !usable(tree)) return 0;
        const bool removes = removeIfNegative != 0 && value < 0;
        const UXNameKey key(name);
        const auto step = [&](UXXmlWrapperBase& node) {
            if (values != nullptr) {
                values->Add(int_attribute_of(node, key, -1));
            } else if (removes) {
                node.RemoveProperty(key);
            } else {
                node.SetPropertyValue(key, value);
            }
        };
        if (includeSelf != 0) step(*tree);
        visit_below(*tree, step);
        return 0;
    });
}

int VCTreeGetAttributes(UXXmlWrapperBase* tree, CWBOStringArray* out, const char* name,
                        bool directOnly, std::function<bool(UXXmlWrapperBase&)> skip) {
    return at_boundary(0, [&] {
        if (any_null(out, name) || !usable(tree)) return 0;
        const CStringUTF8 kept = name;  // it may be a text of out
        const UXNameKey attribute(kept);
        for (UXXmlWrapperBase& child : children(*tree)) {
            if (skip && call_out(skip, child)) continue;
            out->AddText(view_of(child, attribute));
            // Intended: skip does not reach below the first level. It leaves out whole
            // top-level branches; every deeper node of a kept branch has its entry.
            if (!directOnly) append_below(child, *out, attribute);
        }
        return 0;
    });
}

int vctree_get_attributes(UXXmlWrapperBase* tree, CWBOStringArray* out, const char* name,
                          bool directOnly) {
    return VCTreeGetAttributes(tree, out, name, directOnly, nullptr);
}

void vctree_get_node_names(UXXmlWrapperBase* tree, CWBOStringArray* out, bool directOnly) {
    at_boundary([&] {
        if (out == nullptr || !usable(tree)) return;
        visit_below(*tree, [&](const UXXmlWrapperBase& node) {
            std::string_view tag;
            node.GetTagView(tag);
            out->AddText(tag);
            return into_branch_if(!directOnly);
        });
    });
}

bool VCTreeSetAttributes(UXXmlWrapperBase* tree, const CArray<int, int>* ids, const char* value,
                         const char* attribute, const char* keyAttr, bool flag) {
    return at_boundary(false, [&] {
        if (ids == nullptr || !usable(tree)) return false;
        const char* key = text_or(keyAttr, kDataId);
        UXXmlWrapperBase source = tree_of_ids(*ids, value, key);
        // Intended: the result is that of the last identifier searched for, so it may be false
        // although nodes were set.
        return copy_matching_values(source, *tree,
                                    {UXNameKey(text_or(attribute, kShow)), UXNameKey(key),
                                     UXNameKey(), true, true, flag}) != 0;
    });
}

extern "C" {

bool uxtree_modify_attribute(UXXmlWrapperBase* node, const char* name, unsigned int setBits,
                             unsigned int clearBits) {
    return at_boundary(false, [&] {
        if (name == nullptr || !usable(node)) return false;
        // Intended: setting wins over clearing, and the attribute is created even with 0.
        return write_bits(*node, name, (bits_of(*node, name) & ~clearBits) | setBits);
    });
}

int uxtree_remove_attribute(UXXmlWrapperBase* tree, const char* name, int includeSelf) {
    return at_boundary(kBadArgument, [&] {
        if (name == nullptr || !usable(tree)) return kBadArgument;
        const UXNameKey key(name);
        return count_changes(*tree, includeSelf != 0,
                             [&](UXXmlWrapperBase& node) { return remove_attribute(node, key); });
    });
}

int uxtree_store_attribute(UXXmlWrapperBase* tree, const char* name) {
    return at_boundary(kBadArgument, [&] {
        if (name == nullptr || !usable(tree)) return kBadArgument;
        return move_everywhere(*tree, name, saved_name(name));
    });
}

int uxtree_restore_attribute(UXXmlWrapperBase* tree, const char* name) {
    return at_boundary(kBadArgument, [&] {
        if (name == nullptr || !usable(tree)) return kBadArgument;
        return move_everywhere(*tree, saved_name(name), name);
    });
}

int uxtree_node_copy_attribute(UXXmlWrapperBase* source, UXXmlWrapperBase* target,
                               const char* name) {
    return at_boundary(kFail, [&] {
        if (name == nullptr || !usable(source) || !usable(target)) return kFail;
        return copy_attribute(*source, *target, UXNameKey(name)) ? kOk : kFail;
    });
}

int uxtree_copy_atts(UXXmlWrapperBase* source, UXXmlWrapperBase* target, const char* name,
                     int childrenOnly) {
    return at_boundary(kBadArgument, [&] {
        if (name == nullptr || !usable(source) || !usable(target)) return kBadArgument;
        // childrenOnly spares this top pair alone.
        const UXNameKey key(name);
        int copied = childrenOnly == 0 && copy_attribute(*source, *target, key) ? 1 : 0;
        visit_pairs(*source, *target, [&](const UXXmlWrapperBase& from, UXXmlWrapperBase& to) {
            if (copy_attribute(from, to, key)) ++copied;
            return into_branch_if(usable(to));
        });
        return copied;
    });
}

int uxtree_set_attribute_bit_if_not_empty(UXXmlWrapperBase* node, const char* name,
                                          unsigned int bits, bool deep) {
    return at_boundary(kFail, [&] {
        if (name == nullptr || !usable(node) || !has_filled_leaf(*node, deep)) return kFail;
        int current = 0;
        if (!node->GetPropertyValue(name, current, 0)) return kFail;
        return write_bits(*node, name, static_cast<unsigned int>(current) | bits) ? kOk : kFail;
    });
}

void uxtree_set_attribute_to_all_nodes(UXXmlWrapperBase* tree, const char* name, const char* value,
                                       bool childrenOnly, bool branchesOnly) {
    at_boundary([&] {
        if (name == nullptr || !usable(tree)) return;
        const AttributeSetter set(name, value);
        const auto visit = [&](UXXmlWrapperBase& node) {
            if (!branchesOnly || !is_leaf(node)) set(node);
            return into_branch_if(!childrenOnly);
        };
        if (!childrenOnly) visit(*tree);
        visit_below(*tree, visit);
    });
}

void uxtree_set_attribute_with_skip(UXXmlWrapperBase* tree, const char* name, const char* value,
                                    const char* skipAttr, UXScriptObject* skipValues,
                                    bool branchesToo, bool remove) {
    at_boundary([&] {
        const CWBOStringArray* skipList = string_array(skipValues);
        if (name == nullptr || !usable(tree) || refused(skipValues, skipList)) return;
        FoldedTexts skipped;
        if (given(skipAttr) && skipList != nullptr) skipped.add_all(*skipList);
        const CStringUTF8 text = value;
        const UXNameKey key(name);
        const UXNameKey skipKey(skipAttr);
        std::string_view mark;
        // Intended: a skipped branch does not protect its nodes.
        const auto visit = [&](UXXmlWrapperBase& node) {
            const bool asked = branchesToo || is_leaf(node);
            const bool isSkipped = asked && !skipped.empty() &&
                                   node.GetPropertyView(skipKey, mark) && skipped.contains(mark);
            if (asked && !isSkipped) {
                remove ? node.RemoveProperty(key) : node.SetPropertyView(key, view_of(text));
            }
        };
        visit(*tree);
        visit_below(*tree, visit);
    });
}

int uxtree_count_items_by_attribute(UXXmlWrapperBase* tree, const char* name, const char* value,
                                    int countMissing, int recursive) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(tree)) return kBadArgument;
        int count = 0;
        const UXNameKey key(name);
        const auto counts = [&](const UXXmlWrapperBase& node) {
            std::string_view text;
            if (name == nullptr) return true;
            // Intended: countMissing is about nodes without the attribute, not about those with
            // another value.
            if (!node.GetPropertyView(key, text)) return countMissing != 0;
            return value == nullptr || text == value;
        };
        visit_below(*tree, [&](const UXXmlWrapperBase& node) {
            if (counts(node)) ++count;
            return into_branch_if(recursive != 0);
        });
        return count;
    });
}

int uxtree_all_nodes_has_attrib(UXXmlWrapperBase* tree, const char* name) {
    return at_boundary(kFail, [&] {
        if (name == nullptr || !usable(tree)) return kFail;
        const UXNameKey key(name);
        const bool all = visit_below(*tree, [&](const UXXmlWrapperBase& node) {
            return node.HasProperty(key) ? Step::kGoOn : Step::kStop;
        });
        return all ? kOk : kFail;
    });
}

int uxtree_attribute_values(UXXmlWrapperBase* tree, const char* name, int value,
                            UXScriptObject* values, int removeIfNegative) {
    return at_boundary(kBadArgument, [&] {
        CArray<int, int>* list = int_vector(values);
        // An unusable list must not turn the request to collect into one to write.
        if (refused(values, list)) return kBadArgument;
        return VCTreeAttributeValues(tree, name, value, list, removeIfNegative, 0);
    });
}

int uxtree_get_attributes(UXXmlWrapperBase* tree, UXScriptObject* out, const char* name,
                          int directOnly) {
    return at_boundary(kBadArgument, [&] {
        CWBOStringArray* list = string_array(out);
        if (list == nullptr) return kBadArgument;
        return VCTreeGetAttributes(tree, list, name, directOnly != 0, nullptr);
    });
}

int uxtree_set_attributes(UXXmlWrapperBase* tree, UXScriptObject* ids, const char* value,
                          const char* attribute, const char* keyAttr, bool flag) {
    return at_boundary(kFail, [&] {
        return VCTreeSetAttributes(tree, int_vector(ids), value, attribute, keyAttr, flag) ? kOk
                                                                                           : kFail;
    });
}

int uxtree_get_node_names(UXXmlWrapperBase* tree, UXScriptObject* out, int directOnly) {
    return at_boundary(kBadArgument, [&] {
        CWBOStringArray* list = string_array(out);
        if (list == nullptr) return kBadArgument;
        vctree_get_node_names(tree, list, directOnly != 0);
        return 0;
    });
}

}  // extern "C"
