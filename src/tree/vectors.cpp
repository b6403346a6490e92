// Lists of values kept as the children of one node, read and written.
#include "uxtree/tree/vectors.h"

#include <algorithm>
#include <type_traits>
#include <unordered_map>

#include "uxtree/tree/lookup.h"

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "frame/wrapping.h"

using namespace ux;

namespace {

constexpr int kLongestList = 999;  // list bases lie 1000 apart

// ---- one element ------------------------------------------------------------------------------

template <typename T>
void write_value(UXXmlWrapperBase& node, T& element) {
    node.NodeValue(element, 0);
}
void write_value(UXXmlWrapperBase& node, CStringUTF8& element) {
    node.NodeValue(element, 0, 1, nullptr);
}

template <typename T>
void read_value(UXXmlWrapperBase& node, T& element) {
    node.NodeValue(element, 1);  // a value that does not convert leaves the element as it is
}
void read_value(UXXmlWrapperBase& node, CStringUTF8& element) {
    node.NodeValue(element, 1, 1, nullptr);  // "" without a value
}

// ---- list nodes -------------------------------------------------------------------------------

// The children of a list node by DataID, the first of each, so that a long list is not searched
// again for every element.
class ListChildren {
public:
    explicit ListChildren(UXXmlWrapperBase& node) : node_(node) {
        for (const UXXmlWrapperBase& child : children(node)) {
            int id = 0;
            if (child.GetDataID(id)) byId_.try_emplace(id, child);
        }
    }
    UXXmlWrapperBase find_or_add(int position, int id) {
        CStringUTF8 tag;
        tag.Format("Value%d", position);
        UXXmlWrapperBase child;
        if (id <= 0) {  // the general finder decides what such identifiers mean
            uxtree_check_get_node_by_dataid(&node_, &child, tag, id, nullptr, nullptr);
            return child;
        }
        const auto found = byId_.find(id);
        if (found != byId_.end()) return found->second;
        if (node_.AddNode(&child, tag, -1)) child.SetDataID(id);
        return child;
    }

private:
    UXXmlWrapperBase& node_;
    std::unordered_map<int, UXXmlWrapperBase> byId_;
};

template <typename Array>
void write_by_id(UXXmlWrapperBase& node, int base, Array& values, int count) {
    ListChildren list(node);
    for (int k = 1; k <= count; ++k) {
        UXXmlWrapperBase child = list.find_or_add(k, wrapping_sum(base, k));
        write_value(child, values.ElementAt(k - 1));
    }
}

template <typename Array>
void write_by_position(UXXmlWrapperBase& node, Array& values) {
    int k = 0;
    for (UXXmlWrapperBase& child : children(node)) write_value(child, values.ElementAt(k++));
}

template <typename Array>
void vector_to_children(Array* values, UXXmlWrapperBase* node) {
    int base = 0;
    if (values == nullptr || !usable(node) || !node->GetDataID(base)) return;
    const int count = std::min(values->GetSize(), kLongestList);
    if (node->GetNodeCount() <= count) {
        write_by_id(*node, base, *values, count);
        return;
    }
    // Intended: surplus children are cut off and the rest is written by position, without a
    // look at their DataIDs.
    node->SetSizeTrimFromEnd(count);
    write_by_position(*node, *values);
}

template <typename Array>
int children_to_vector(UXXmlWrapperBase* node, Array* values) {
    if (values == nullptr || !usable(node)) return kBadArgument;
    constexpr bool readsEmpty = std::is_same_v<Array, CWBOStringArray>;
    int read = 0;
    for (UXXmlWrapperBase& child : children(*node)) {
        if (read == values->GetSize()) break;
        if (!readsEmpty && child.IsEmpty()) continue;
        read_value(child, values->ElementAt(read++));
    }
    return read;
}

}  // namespace

void vctree_get_all_children_values_as_string_array(UXXmlWrapperBase& node, CWBOStringArray& out) {
    at_boundary([&] {
        for (UXXmlWrapperBase& child : children(node)) out.Add(text_of(child));
    });
}

int VCTokenizedStringToArrayOfDoubles(CArray<double, double>& out, const CStringUTF8& text,
                                      int strict) {
    return at_boundary(kFail, [&] {
        constexpr int kNoNumbers = -1;
        out.RemoveAll();
        CWBOStringArray tokens;
        if (UXGetTokens(tokens, text, ' ', '\0') != tokens.GetSize()) return kFail;
        // Intended: no tokens are an error of their own, not an empty list.
        if (tokens.IsEmpty()) return kNoNumbers;
        out.SetSize(tokens.GetSize());
        for (int i = 0; i < tokens.GetSize(); ++i) {
            if (UXParseDouble(view_of(tokens[i]), out[i]) || strict == 0) continue;
            out.RemoveAll();
            return kNoNumbers;
        }
        return out.GetSize();
    });
}

extern "C" {

void uxtree_value_from_vec_int_to_tree_sub_nodes(UXScriptObject* values, UXXmlWrapperBase* node) {
    at_boundary([&] { vector_to_children(int_vector(values), node); });
}
void uxtree_value_from_vec_double_to_tree_sub_nodes(UXScriptObject* values,
                                                    UXXmlWrapperBase* node) {
    at_boundary([&] { vector_to_children(double_vector(values), node); });
}
void uxtree_value_from_vec_bool_to_tree_sub_nodes(UXScriptObject* values, UXXmlWrapperBase* node) {
    at_boundary([&] { vector_to_children(bool_vector(values), node); });
}
void uxtree_value_from_vec_string_to_tree_sub_nodes(UXScriptObject* values,
                                                    UXXmlWrapperBase* node) {
    at_boundary([&] { vector_to_children(string_array(values), node); });
}

int uxtree_value_from_tree_sub_nodes_to_vector_int(UXXmlWrapperBase* node, UXScriptObject* values) {
    return at_boundary(kBadArgument, [&] { return children_to_vector(node, int_vector(values)); });
}
int uxtree_value_from_tree_sub_nodes_to_vector_double(UXXmlWrapperBase* node,
                                                      UXScriptObject* values) {
    return at_boundary(kBadArgument,
                       [&] { return children_to_vector(node, double_vector(values)); });
}
int uxtree_value_from_tree_sub_nodes_to_vector_bool(UXXmlWrapperBase* node,
                                                    UXScriptObject* values) {
    return at_boundary(kBadArgument, [&] { return children_to_vector(node, bool_vector(values)); });
}
int uxtree_value_from_tree_sub_nodes_to_vector_string(UXXmlWrapperBase* node,
                                                      UXScriptObject* values) {
    return at_boundary(kBadArgument,
                       [&] { return children_to_vector(node, string_array(values)); });
}

}  // extern "C"
