// Moving, appending, stripping, copying and renaming nodes.
#include "uxtree/tree/structure.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "uxtree/tree/lookup.h"

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "frame/wrapping.h"
#include "marks/names.h"
#include "tree/text_set_detail.h"

using namespace ux;

namespace {

// ---- moving -----------------------------------------------------------------------------------

bool add_after(UXXmlWrapperBase& place, const char* tag, UXXmlWrapperBase& added) {
    UXXmlWrapperBase parent;
    UXXmlWrapperBase next;
    if (!place.GetParent(&parent)) return false;
    if (place.NextSibling(&next)) return parent.InsertNodeBefore(next, tag, -1, &added) != 0;
    return parent.AddNode(&added, tag, -1) != 0;
}

bool add_before(UXXmlWrapperBase& place, const char* tag, UXXmlWrapperBase& added) {
    UXXmlWrapperBase parent;
    return place.GetParent(&parent) && parent.InsertNodeBefore(place, tag, -1, &added);
}

// ---- appending --------------------------------------------------------------------------------

std::vector<UXXmlWrapperBase> children_with_prefix(const UXXmlWrapperBase& parent,
                                                   const char* prefix) {
    std::vector<UXXmlWrapperBase> matching;
    CStringUTF8 tag;
    for (const UXXmlWrapperBase& child : children(parent)) {
        child.GetTagName(tag);
        if (starts_with_no_case(view_of(tag), prefix)) matching.push_back(child);
    }
    return matching;
}

// -1 when none of them has an ID. All may lie below that.
int largest_id(const std::vector<UXXmlWrapperBase>& nodes) {
    std::optional<int> largest;
    for (const UXXmlWrapperBase& node : nodes) {
        int id = 0;
        if (node.GetID(id)) largest = std::max(largest.value_or(id), id);
    }
    return largest.value_or(-1);
}

// ---- stripping --------------------------------------------------------------------------------

void strip_attributes(UXXmlWrapperBase& node, CWBOStringArray& names) {
    node.GetPropertyNames(names);
    for (int i = names.GetSize() - 1; i >= 0; --i) {
        if (names[i] != kDataId) node.RemoveProperty(names[i]);
    }
}

// At most maxBytes of the text, without cutting a character in two.
CStringUTF8 cut_at_character(const CStringUTF8& text, int maxBytes) {
    int length = std::min(text.GetLength(), maxBytes);
    const auto continues = [&](int at) {
        return (static_cast<unsigned int>(text[at]) & 0xC0U) == 0x80U;
    };
    while (length > 0 && length < text.GetLength() && continues(length)) --length;
    return text.Left(length);
}

// ---- copying ----------------------------------------------------------------------------------

constexpr int kCopyFailed = -2;

bool is_within(const UXXmlWrapperBase& node, const UXXmlWrapperBase& top) {
    for (UXXmlWrapperBase place = node; place.IsNodeValid(); place.GetParent(&place)) {
        if (place == top) return true;
    }
    return false;
}

bool has_any(const UXXmlWrapperBase& node, const CWBOStringArray* names) {
    if (names == nullptr) return false;
    for (int i = 0; i < names->GetSize(); ++i) {
        if (node.HasProperty(names->GetAt(i), 0)) return true;
    }
    return false;
}

// Copies a branch below a target, without the nodes that are to be skipped and without what then
// has no value.
class ValueCopier {
public:
    ValueCopier(UXXmlWrapperBase& target, const CWBOStringArray* skipAttrs)
        : levels_{{target, 0}}, skipAttrs_(skipAttrs) {}

    // Number of children kept at the top level, or kCopyFailed.
    int copy(const UXXmlWrapperBase& source) {
        const bool copied = visit_around(
            source, [&](UXXmlWrapperBase& node) { return begin(node); },
            [&](UXXmlWrapperBase&, bool entered) {
                if (entered) end_branch();
                return false;
            });
        return copied ? levels_.front().kept : kCopyFailed;
    }

private:
    struct OpenCopy {
        UXXmlWrapperBase target;
        int kept;
    };

    // Copies one node, unless the target refuses it.
    Step begin(UXXmlWrapperBase& node) {
        if (has_any(node, skipAttrs_)) return Step::kOverBranch;
        const bool leaf = is_leaf(node);
        // Intended: a leaf without text is not copied, whatever attributes it has.
        if (leaf && !node.NodeValue(text_, 1, 1, nullptr)) return Step::kOverBranch;
        UXXmlWrapperBase copy;
        if (!levels_.back().target.AddNodeCopy(&node, 0, &copy)) return Step::kStop;
        if (!leaf) {
            levels_.push_back({copy, 0});
            return Step::kGoOn;
        }
        copy.NodeValue(text_, 0, 1, nullptr);
        ++levels_.back().kept;
        return Step::kOverBranch;
    }
    void end_branch() {
        OpenCopy branch = std::move(levels_.back());
        levels_.pop_back();
        if (branch.kept == 0) {
            branch.target.RemoveNode();
        } else {
            ++levels_.back().kept;
        }
    }

    std::vector<OpenCopy> levels_;
    const CWBOStringArray* skipAttrs_;
    CStringUTF8 text_;
};

}  // namespace

int VCTreeCopyWithSkipping(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
                           CWBOStringArray* skipAttrs, DWORD) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(target) || !usable(source)) return kBadArgument;
        if (has_any(*source, skipAttrs)) return 0;
        UXXmlWrapperBase from = *source;
        // A target inside the source receives the source as it was before the call.
        if (is_within(*target, from)) source->Clone(&from, 1);
        target->CopyAllAttributes(from, 1);
        if (is_leaf(from)) {
            CStringUTF8 text;
            if (from.NodeValue(text, 1, 1, nullptr)) target->NodeValue(text, 0, 1, nullptr);
            return 0;
        }
        return ValueCopier(*target, skipAttrs).copy(from);
    });
}

int VCTreeSetTagName(UXXmlWrapperBase* node, const char* newName) {
    return at_boundary(kFail, [&] {
        if (!usable(node) || !given(newName)) return kFail;
        return node->SetTagName(newName) ? kOk : kFail;
    });
}

extern "C" {

int uxtree_move_node(UXXmlWrapperBase* tree, int fromIndex, int toIndex, unsigned int flags,
                     const char* attrName) {
    return at_boundary(kFail, [&] {
        if (!usable(tree)) return kFail;
        UXXmlWrapperBase source;
        UXXmlWrapperBase target;
        uxtree_get_node_ex(tree, &source, fromIndex, flags, attrName);
        if (!usable(source)) return kFail;
        uxtree_get_node_ex(tree, &target, toIndex, flags, attrName);
        if (!usable(target) && toIndex >= 0) return kFail;

        const CStringUTF8 tag = tag_of(source);
        UXXmlWrapperBase added;
        if (!usable(target)) {
            tree->AddNode(&added, tag, -1);
        } else if (fromIndex <= toIndex) {
            add_after(target, tag, added);
        } else {
            add_before(target, tag, added);
        }
        if (!usable(added)) return kFail;
        // Intended: the node is replaced by a copy, so handles to it become invalid, and one that
        // is moved into its own branch is lost with that branch.
        if (!added.Replace(&source, 1, 0, 0)) {
            added.RemoveNode();
            return kFail;
        }
        source.RemoveNode();
        return kOk;
    });
}

int uxtree_append_children(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
                           const char* tagPrefix) {
    return at_boundary(kFail, [&] {
        if (!usable(target) || !usable(source)) return kFail;
        const char* prefix = text_or(tagPrefix, "");
        // Intended: without a matching child in target, identifiers start at 0, which is given to
        // no copy; the copies then keep their own and the result is 0. So it is with identifiers
        // that would start below 0.
        int id = wrapping_sum(largest_id(children_with_prefix(*target, prefix)), 1);
        UXXmlWrapperBase place = *target;
        for (UXXmlWrapperBase& child : children_with_prefix(*source, prefix)) {
            UXXmlWrapperBase copy;
            if (!place.AddNodeCopy(&child, 1, &copy) || id <= 0) continue;
            copy.SetID(id, false);
            id = wrapping_sum(id, 1);
        }
        return id;
    });
}

void uxtree_polish_tree_keep_DataID(UXXmlWrapperBase* tree) {
    at_boundary([&] {
        if (!usable(tree)) return;
        CWBOStringArray names;
        strip_attributes(*tree, names);
        visit_below(*tree, [&](UXXmlWrapperBase& node) { strip_attributes(node, names); });
    });
}

int uxtree_adapt_for_tagname(CStringUTF8* name) {
    return at_boundary(kFail, [&] {
        constexpr int kLongestTag = 1023;
        if (name == nullptr || name->IsEmpty()) return kFail;
        CStringUTF8 tag;
        call_out(UXGetHostServices().cleanName, tag, cut_at_character(*name, kLongestTag));
        if (tag == *name) return kFail;
        *name = tag;
        return kOk;
    });
}

int uxtree_copy_with_skipping(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
                              UXScriptObject* skipAttrs, DWORD flags) {
    return at_boundary(kBadArgument, [&] {
        CWBOStringArray* names = string_array(skipAttrs);
        if (refused(skipAttrs, names)) return kBadArgument;
        return VCTreeCopyWithSkipping(target, source, names, flags);
    });
}

}  // extern "C"
