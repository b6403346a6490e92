// Random sequences of edits over random trees: the operations of the tree room and the node
// operations under them. After each one the links, counts and parents of every tree are checked,
// and the handles held so far: each is valid and reachable from its root, or invalid for good.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "uxtree/uxtree_Utils.h"

namespace {

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    bool empty() const { return at_ >= size_; }
    unsigned next() { return empty() ? 0U : data_[at_++]; }
    unsigned below(unsigned limit) { return next() % limit; }
    bool flag() { return (next() & 1U) != 0; }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

// ---- invariants -------------------------------------------------------------------------------

void check_children(const UXXmlWrapperBase& node) {
    int count = 0;
    UXXmlWrapperBase before;
    UXXmlWrapperBase child;
    for (node.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
        UXXmlWrapperBase parent;
        UXXmlWrapperBase previous;
        require(child.GetParent(&parent) && parent == node, "a child's parent");
        require(child.PrevSibling(&previous) == (count > 0), "having a previous sibling");
        require(previous == before, "the previous sibling");
        before = child;
        ++count;
    }
    require(count == node.GetNodeCount(), "the number of children");
    require((count > 0) == (node.HasChildren(0) != 0), "having children");
    UXXmlWrapperBase last;
    require(node.GetChild(&last, count - 1) == (count > 0) && last == before, "the last child");
    require(!node.GetChild(&last, count), "a child behind the last");
}

int check_tree(const UXXmlWrapperBase& root) {
    require(root.IsRootNode(0) != 0, "a root");
    int nodes = 0;
    UXXmlWrapperBase node = root;
    for (;;) {
        ++nodes;
        check_children(node);
        UXXmlWrapperBase next;
        if (node.FirstChild(&next)) {
            node = next;
            continue;
        }
        while (!node.NextSibling(&next)) {
            if (node == root || !node.GetParent(&node) || node == root) return nodes;
        }
        node = next;
    }
}

UXXmlWrapperBase root_of(const UXXmlWrapperBase& node) {
    UXXmlWrapperBase place = node;
    UXXmlWrapperBase parent;
    while (place.GetParent(&parent)) {
        UXXmlWrapperBase child;
        bool listed = false;
        for (parent.FirstChild(&child); child.IsNodeValid() && !listed;) {
            listed = child == place;
            child.NextSibling(&child);
        }
        require(listed, "a valid handle is reachable from its root");
        place = parent;
    }
    return place;
}

void check_invalid(UXXmlWrapperBase& node) {
    UXXmlWrapperBase out;
    CStringUTF8 text;
    int number = 0;
    require(!node.IsNodeValid(), "an invalid handle stays invalid");
    require(!node.FirstChild(&out) && !node.GetParent(&out) && !node.NextSibling(&out),
            "an invalid handle leads nowhere");
    require(!node.GetTagName(text) && !node.GetDataID(number) && node.GetNodeCount() == 0,
            "an invalid handle tells nothing");
    require(!node.AddNode(&out, "n", -1) && !node.RemoveNode() && !node.SetLabel("l"),
            "an invalid handle changes nothing");
}

// A serialised tree reads back as the same tree.
void check_text(const UXXmlWrapperBase& root) {
    CStringUTF8 text;
    CStringUTF8 again;
    UXXmlWrapperBase copy;
    root.GetString(text);
    require(copy.LoadFromMemory(text, static_cast<std::size_t>(text.GetLength())) != 0,
            "serialised text loads");
    copy.GetString(again);
    require(text == again, "serialised text reads back");
}

// ---- the edited world -------------------------------------------------------------------------

constexpr std::array kTags = {"a",    "b",      "A",      "B",   "Z",        "Set",
                              "Set1", "Set2",   "Value1", "AA",  "no name",  "",
                              "n",    "Value2", "x:y",    "c.d", "Set00002", "set3"};
constexpr std::array kNames = {"k",     "DataID", "RepeatID", "Show",    "Auto", "StorePrefixk",
                               "Label", "DynaFx", "mark",     "no name", "",     "EventRootOption"};
constexpr std::array kTexts = {"", "1", "2", "-39999", "text", "TEXT", "a b|c", "1|Auto|2", " 3 "};
constexpr std::array kNumbers = {0, 1, 2, 3, -1, 7, 100, -39999, 2147483647, -2147483647 - 1};
constexpr std::size_t kHeld = 12;
constexpr int kMostNodes = 400;

class World {
public:
    explicit World(Bytes bytes) : in(bytes), held(kHeld) {
        held[0].CreateNew(0, "r");
        held[1].CreateNew(0, "s");
    }

    UXXmlWrapperBase& node() { return held[slot()]; }
    UXXmlWrapperBase& out() { return held[slot()]; }  // may be the handle that is asked
    const char* tag() { return kTags[in.below(kTags.size())]; }
    const char* name() { return kNames[in.below(kNames.size())]; }
    const char* text() { return kTexts[in.below(kTexts.size())]; }
    int number() { return kNumbers[in.below(kNumbers.size())]; }
    int flag() { return in.flag() ? 1 : 0; }
    bool may_grow() const { return nodes_ < kMostNodes; }

    UXScriptArray<CWBOStringArray> texts() {
        UXScriptArray<CWBOStringArray> list;
        for (unsigned i = in.below(4); i > 0; --i) list.array().Add(text());
        return list;
    }
    UXScriptArray<CArray<int, int>> ints() {
        UXScriptArray<CArray<int, int>> list;
        for (unsigned i = in.below(6); i > 0; --i) list.array().Add(number());
        return list;
    }
    UXScriptArray<CArray<double, double>> doubles() {
        UXScriptArray<CArray<double, double>> list;
        for (unsigned i = in.below(6); i > 0; --i) list.array().Add(number() / 2.0);
        return list;
    }

    void check() {
        nodes_ = 0;
        std::vector<UXXmlWrapperBase> roots;
        for (UXXmlWrapperBase& handle : held) {
            if (!handle.IsNodeValid()) {
                check_invalid(handle);
                continue;
            }
            const UXXmlWrapperBase root = root_of(handle);
            bool known = false;
            for (const UXXmlWrapperBase& other : roots) known = known || other == root;
            if (known) continue;
            roots.push_back(root);
            nodes_ += check_tree(root);
        }
        // Old copies of handles: once invalid, invalid for good.
        for (std::size_t i = 0; i < shadows_.size(); ++i) {
            if (shadowDead_[i]) check_invalid(shadows_[i]);
            shadowDead_[i] = shadows_[i].IsNodeValid() == 0;
        }
    }
    void check_texts() const {
        for (const UXXmlWrapperBase& handle : held) {
            if (handle.IsNodeValid()) check_text(root_of(handle));
        }
    }
    // Remembers where a handle stands, so that later edits are seen through an old copy of it.
    void remember() {
        const UXXmlWrapperBase& handle = node();
        if (!handle.IsNodeValid()) return;
        if (shadows_.size() == 2 * kHeld) {
            shadows_.erase(shadows_.begin());
            shadowDead_.erase(shadowDead_.begin());
        }
        shadows_.push_back(handle);
        shadowDead_.push_back(false);
    }

    Bytes in;
    std::vector<UXXmlWrapperBase> held;

private:
    std::size_t slot() { return in.below(kHeld); }

    std::vector<UXXmlWrapperBase> shadows_;
    std::vector<bool> shadowDead_;
    int nodes_ = 0;
};

using Operation = void (*)(World&);

// ---- moving handles and node operations -------------------------------------------------------

constexpr std::array<Operation, 35> kNodeOperations = {
    [](World& w) { w.node().FirstChild(&w.out()); },
    [](World& w) { w.node().NextSibling(&w.out()); },
    [](World& w) { w.node().GetParent(&w.out()); },
    [](World& w) { w.node().GetChild(&w.out(), static_cast<int>(w.in.below(8))); },
    [](World& w) { w.out() = w.node(); },
    [](World& w) { w.remember(); },
    [](World& w) { w.remember(); },
    [](World& w) {
        UXXmlWrapperBase& handle = w.node();
        if (!handle.IsNodeValid()) handle.CreateNew(0, "r");
    },
    [](World& w) { w.node().AddNode(&w.out(), w.tag(), w.number()); },
    [](World& w) { w.node().AddNode(&w.out(), w.tag(), -1); },
    [](World& w) { w.node().AddNode(nullptr, w.tag(), -1); },
    [](World& w) { w.node().AddTextNode(nullptr, w.tag(), w.text(), -1, 0, nullptr); },
    [](World& w) { w.node().AddChildNode(w.tag(), nullptr, w.number(), w.text()); },
    [](World& w) { w.node().InsertNodeBefore(w.node(), w.tag(), -1, &w.out()); },
    [](World& w) {
        UXXmlWrapperBase place = w.node();
        UXXmlWrapperBase parent;
        place.GetParent(&parent);
        parent.InsertNodeBefore(place, w.tag(), -1, &w.out());
    },
    [](World& w) {
        if (w.may_grow()) w.node().AddNodeCopy(&w.node(), w.flag(), &w.out());
    },
    [](World& w) { w.node().Clone(&w.out(), 1); },
    [](World& w) {
        if (w.may_grow()) w.node().Replace(&w.node(), 1, 0, 0);
    },
    [](World& w) {
        if (w.may_grow()) w.node().ReplaceByNodeCopy(&w.node(), 1, 0);
    },
    [](World& w) {
        UXXmlWrapperBase& parent = w.node();
        CArray<int, int> order;
        for (int i = 0; i < parent.GetNodeCount(); ++i) order.Add(i);
        for (int i = order.GetSize() - 1; i > 0; --i) {
            std::swap(order[i], order[static_cast<int>(w.in.below(static_cast<unsigned>(i + 1)))]);
        }
        require(parent.ArrangeChildContents(order) == parent.IsNodeValid(), "arranging children");
        order.Add(order.GetSize() / 2);
        require(!parent.ArrangeChildContents(order), "too many numbers");
    },
    [](World& w) { w.node().RemoveNode(); },
    [](World& w) { w.node().RemoveChild(&w.node(), nullptr); },
    [](World& w) {
        UXXmlWrapperBase child = w.node();
        UXXmlWrapperBase parent;
        int index = -1;
        if (!child.GetParent(&parent)) return;
        require(parent.RemoveChild(&child, &index) == 1 && index >= 0, "removing a child");
    },
    [](World& w) { w.node().RemoveAllChildren(); },
    [](World& w) { w.node().ResetNode(1); },
    [](World& w) { w.node().SetSizeTrimFromEnd(static_cast<int>(w.in.below(5)) - 1); },
    [](World& w) { w.node().SetPropertyValue(w.name(), w.number()); },
    [](World& w) { w.node().SetPropertyValue(w.name(), CStringUTF8(w.text())); },
    [](World& w) { w.node().RemoveProperty(w.name()); },
    [](World& w) { w.node().SetString(w.text()); },
    [](World& w) { w.node().SetTagName(w.tag()); },
    [](World& w) { w.node().CopyAllAttributes(w.node(), 1); },
    [](World& w) { w.node().SetID(w.number(), false); },
    [](World& w) { w.node().FindCreateNode("a/b/A", &w.out(), -1, w.text(), 0, 0, nullptr); },
    [](World& w) { w.node().ReleaseNode(); },
};

// ---- lookups ----------------------------------------------------------------------------------

constexpr std::array<Operation, 16> kLookups = {
    [](World& w) {
        UXXmlWrapperBase& tree = w.node();
        const auto index = static_cast<int>(w.in.below(20));
        uxtree_get_node_ex(&tree, &w.out(), index, w.in.below(8) << 16 | w.in.below(4), w.name());
    },
    [](World& w) { uxtree_get_root_node(&w.node(), &w.out()); },
    [](World& w) {
        CStringUTF8 path;
        uxtree_get_level(&path, &w.node(), &w.node(), w.flag());
    },
    [](World& w) { uxtree_get_row_number(&w.node(), "r.a.b"); },
    [](World& w) { uxtree_get_node_by_id(&w.node(), &w.out(), w.number(), w.in.flag()); },
    [](World& w) {
        uxtree_get_node_by_tagname(&w.node(), &w.out(), w.tag(), w.in.flag(), w.in.flag(),
                                   w.in.flag());
    },
    [](World& w) {
        uxtree_find_node(&w.node(), &w.out(), w.name(), w.number(), w.in.flag(), w.number(),
                         w.number());
    },
    [](World& w) {
        uxtree_find_node_ex(&w.node(), &w.out(), w.name(), w.number(), w.number(), w.number(),
                            w.number(), w.number());
    },
    [](World& w) {
        uxtree_find_node_by_dataID(&w.out(), &w.node(), w.number(), w.number(), -1, 0, -1);
    },
    [](World& w) {
        uxtree_find_node_with_attr_child(&w.node(), &w.out(), w.name(), w.text(), w.tag(),
                                         w.text());
    },
    [](World& w) {
        auto names = w.texts();
        auto values = w.ints();
        uxtree_find_node_with_int_attr(&w.node(), &w.out(), &names, &values, w.in.flag(),
                                       static_cast<int>(w.in.below(4)));
    },
    [](World& w) {
        auto names = w.texts();
        auto values = w.texts();
        uxtree_find_node_with_str_attr(&w.node(), &w.out(), &names, &values, w.in.flag(),
                                       static_cast<int>(w.in.below(4)));
    },
    [](World& w) {
        uxtree_tree_check_get_node(&w.out(), &w.node(), w.tag(), w.number(), w.name(), w.text());
    },
    [](World& w) {
        uxtree_tree_check_get_node_by_attribute(&w.out(), &w.node(), w.name(), w.text(), w.flag(),
                                                w.in.flag() ? w.tag() : nullptr);
    },
    [](World& w) {
        uxtree_check_get_node_by_dataid(&w.node(), &w.out(), w.tag(), w.number(), w.name(),
                                        w.text());
    },
    [](World& w) { wbxfu_tree_check_get_node(w.out(), w.node(), w.tag(), w.tag(), nullptr); },
};

// ---- attributes -------------------------------------------------------------------------------

constexpr std::array<Operation, 14> kAttributeOperations = {
    [](World& w) { uxtree_modify_attribute(&w.node(), w.name(), w.in.next(), w.in.next()); },
    [](World& w) { vctree_modify_DWORD_attribute(&w.node(), w.name(), w.in.next(), w.in.next()); },
    [](World& w) { uxtree_remove_attribute(&w.node(), w.name(), w.flag()); },
    [](World& w) {
        UXXmlWrapperBase& tree = w.node();
        const char* name = w.name();
        const int stored = uxtree_store_attribute(&tree, name);
        const int restored = w.in.flag() ? uxtree_restore_attribute(&tree, name) : stored;
        require(restored >= stored, "what was stored is restored");
    },
    [](World& w) { uxtree_restore_attribute(&w.node(), w.name()); },
    [](World& w) { uxtree_copy_atts(&w.node(), &w.node(), w.name(), w.flag()); },
    [](World& w) {
        uxtree_set_attribute_bit_if_not_empty(&w.node(), w.name(), w.in.next(), w.in.flag());
    },
    [](World& w) {
        uxtree_set_attribute_to_all_nodes(&w.node(), w.name(), w.text(), w.in.flag(), w.in.flag());
    },
    [](World& w) {
        auto skip = w.texts();
        uxtree_set_attribute_with_skip(&w.node(), w.name(), w.text(), w.name(), &skip, w.in.flag(),
                                       w.in.flag());
    },
    [](World& w) {
        uxtree_count_items_by_attribute(&w.node(), w.name(), w.text(), w.flag(), w.flag());
    },
    [](World& w) {
        UXXmlWrapperBase& tree = w.node();
        const char* name = w.name();
        const int all = uxtree_count_items_by_attribute(&tree, nullptr, nullptr, 0, 1);
        const int with = uxtree_count_items_by_attribute(&tree, name, nullptr, 0, 1);
        if (all < 0) return;
        require(uxtree_all_nodes_has_attrib(&tree, name) == (all == with), "counts agree");
        CWBOStringArray values;
        vctree_get_attributes(&tree, &values, name, false);
        require(values.GetSize() == all, "one entry per node");
    },
    [](World& w) {
        auto values = w.ints();
        uxtree_attribute_values(&w.node(), w.name(), w.number(), w.in.flag() ? &values : nullptr,
                                w.flag());
    },
    [](World& w) {
        auto ids = w.ints();
        VCTreeSetAttributes(&w.node(), &ids.array(), w.text(), w.name(), w.name(), w.in.flag());
    },
    [](World& w) {
        auto names = w.texts();
        uxtree_get_node_names(&w.node(), &names, w.flag());
    },
};

// ---- structure, families, lists ---------------------------------------------------------------

void require_sorted(const UXXmlWrapperBase& tree, const char* name, bool ascending) {
    bool first = true;
    int last = 0;
    UXXmlWrapperBase child;
    for (tree.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
        int value = 0;
        if (!child.GetPropertyValue(name, value, 0)) continue;
        require(first || (ascending ? last <= value : last >= value), "sorted children");
        last = value;
        first = false;
    }
}

constexpr std::array<Operation, 22> kStructureOperations = {
    [](World& w) {
        uxtree_delete_nodes_by_attribute(&w.node(), w.name(), w.number(), w.flag(), w.name(),
                                         w.flag());
    },
    [](World& w) {
        uxtree_delete_nodes_by_missing_attribute(&w.node(), w.name(), w.flag(), w.flag(), w.flag(),
                                                 w.flag());
    },
    [](World& w) {
        UXXmlWrapperBase& tree = w.node();
        const char* name = w.name();
        const int value = w.number();
        uxtree_remove_nodes_by_attribute(&tree, name, value);
        UXXmlWrapperBase left;
        require(!tree.FindNodeByAttribute(&left, name, value, 1), "none is left");
    },
    [](World& w) { uxtree_remove_empty_child_nodes(&w.node(), w.in.flag()); },
    [](World& w) { uxtree_hide_empty_nodes(&w.node(), w.in.flag(), w.in.flag()); },
    [](World& w) {
        if (!w.may_grow()) return;
        uxtree_move_node(&w.node(), static_cast<int>(w.in.below(12)),
                         static_cast<int>(w.in.below(12)) - 1, w.in.below(8) << 16, w.name());
    },
    [](World& w) {
        UXXmlWrapperBase& tree = w.node();
        const char* name = w.name();
        const bool ascending = w.in.flag();
        if (uxtree_sort_children_by_int_attribute(&tree, name, ascending ? 1 : 0)) {
            require_sorted(tree, name, ascending);
        }
    },
    [](World& w) {
        if (w.may_grow()) uxtree_append_children(&w.node(), &w.node(), w.tag());
    },
    [](World& w) {
        auto listA = w.texts();
        auto listB = w.texts();
        uxtree_filter(&w.node(), w.number(), w.flag(), w.number(), &listA,
                      static_cast<int>(w.in.below(3)), w.number(), &listB);
    },
    [](World& w) {
        uxtree_filter_by_attrib_find(&w.node(), w.number(), w.name(), w.text(), w.flag(), w.flag());
    },
    [](World& w) {
        uxtree_filter_by_attrib_match(&w.node(), w.number(), w.name(), "*1?", w.flag());
    },
    [](World& w) { uxtree_polish_tree_keep_DataID(&w.node()); },
    [](World& w) {
        auto skip = w.texts();
        if (w.may_grow()) uxtree_copy_with_skipping(&w.node(), &w.node(), &skip, 0);
    },
    [](World& w) { VCTreeSetTagName(&w.node(), w.tag()); },
    [](World& w) {
        CStringUTF8 name;
        UXXmlWrapperBase& tree = w.node();
        if (uxtree_get_next_enum_tag_name(&tree, &name, 0) == 0) {
            UXXmlWrapperBase found;
            require(!tree.FindChild(name, &found, 1), "a free column name");
        }
        uxtree_get_next_enum_tag_name(&tree, &name, 1);
    },
    [](World& w) {
        CStringUTF8 name;
        UXXmlWrapperBase& tree = w.node();
        uxtree_get_enum_node_name(&tree, &name, w.tag());
        UXXmlWrapperBase found;
        require(!tree.FindChild(name, &found, 1), "a free node name");
        uxtree_get_enum_attribute_value(&tree, &name, w.name(), w.text(), w.text());
    },
    [](World& w) {
        uxtree_check_add_enumerated_node(&w.out(), &w.node(), w.tag(), w.number(), w.number(),
                                         w.name(), w.text());
    },
    [](World& w) {
        auto values = w.doubles();
        auto labels = w.texts();
        uxtree_check_add_all_enumerated_nodes(&w.node(), w.tag(), &values, w.number(), w.number(),
                                              1, w.text(), &labels);
    },
    [](World& w) {
        auto values = w.ints();
        UXXmlWrapperBase& tree = w.node();
        uxtree_value_from_vec_int_to_tree_sub_nodes(&values, &tree);
        uxtree_value_from_tree_sub_nodes_to_vector_int(&tree, &values);
    },
    [](World& w) {
        auto values = w.doubles();
        UXXmlWrapperBase& tree = w.node();
        uxtree_value_from_vec_double_to_tree_sub_nodes(&values, &tree);
        uxtree_value_from_tree_sub_nodes_to_vector_double(&tree, &values);
    },
    [](World& w) {
        auto values = w.texts();
        UXXmlWrapperBase& tree = w.node();
        uxtree_value_from_vec_string_to_tree_sub_nodes(&values, &tree);
        uxtree_value_from_tree_sub_nodes_to_vector_string(&tree, &values);
    },
    [](World& w) {
        CWBOStringArray values;
        UXXmlWrapperBase& tree = w.node();
        vctree_get_all_children_values_as_string_array(tree, values);
        require(values.GetSize() == tree.GetNodeCount(), "one value per child");
    },
};

template <std::size_t count>
void run_one(World& world, const std::array<Operation, count>& operations) {
    operations[world.in.below(count)](world);
}

void step(World& world) {
    switch (world.in.below(8)) {
        case 0:
            return run_one(world, kLookups);
        case 1:
        case 2:
            return run_one(world, kAttributeOperations);
        case 3:
        case 4:
            return run_one(world, kStructureOperations);
        default:
            return run_one(world, kNodeOperations);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int kMostSteps = 300;
    World world(Bytes(data, size));
    for (int i = 0; i < kMostSteps && !world.in.empty(); ++i) {
        step(world);
        world.check();
    }
    world.check_texts();
    return 0;
}
