// Bad arguments of attributes, structural edits, enumerated nodes and lists of values.
#include "frame/calls/calls.h"

namespace uxtest {
namespace {

int get_attributes(UXXmlWrapperBase* tree, CWBOStringArray* out, const char* name,
                   bool directOnly) {
    return VCTreeGetAttributes(tree, out, name, directOnly, nullptr);
}

void add_attribute_rows(Sweep& sweep) {
    constexpr Row done{.good = 1, .bad = 0};
    constexpr Row counted{.good = 1, .bad = -1};
    constexpr Row moved{.good = 1, .bad = -1};
    constexpr Row always{.good = 0, .bad = 0};
    constexpr Row scripted{.good = 0, .bad = 0, .shortage = {-1}};
    constexpr Row nothing{};

    // Without a list the values are written instead of collected.
    sweep.add(UX_ENTRY(VCTreeAttributeValues), always, node(), text("n"), 5,
              ints().optional().appends(), 0, 0);
    sweep.add(UX_WRAPPED(VCTreeGetAttributes, get_attributes), always, node(), strings().appends(),
              text("n"), false);
    sweep.add(UX_ENTRY(VCTreeSetAttributes),
              Row{.good = 1, .bad = 0, .tree = "<r><b><c/></b><a DataID='11'/></r>"}, node(),
              ints({11}), text("v").optional(), text("x").optional(), text("DataID").optional(),
              true);
    sweep.add(UX_ENTRY(vctree_get_attributes), always, node(), strings().appends(), text("n"),
              false);
    sweep.add(UX_ENTRY(vctree_get_node_names), nothing, node(), strings().appends(), false);
    sweep.add(UX_ENTRY(vctree_modify_DWORD_attribute), nothing, node("a"), text("n"), 1u, 2u);

    sweep.add(UX_ENTRY(uxtree_modify_attribute), done, node("a"), text("n"), 2u, 1u);
    sweep.add(UX_ENTRY(uxtree_remove_attribute), counted, node(), text("n"), 1);
    sweep.add(UX_ENTRY(uxtree_store_attribute), moved, node(), text("n"));
    sweep.add(UX_ENTRY(uxtree_restore_attribute),
              Row{.good = 1, .bad = -1, .tree = "<r><a StorePrefixn='5'/></r>"}, node(), text("n"));
    sweep.add(UX_ENTRY(uxtree_node_copy_attribute), done, node("a"), other("b"), text("n"));
    sweep.add(UX_ENTRY(uxtree_copy_atts), Row{.good = 4, .bad = -1}, node(), other(), text("Label"),
              0);
    sweep.add(UX_ENTRY(uxtree_set_attribute_bit_if_not_empty),
              Row{.good = 1, .bad = 0, .tree = "<r n='1'><a>1</a></r>"}, node(), text("n"), 6u,
              false);
    sweep.add(UX_ENTRY(uxtree_set_attribute_to_all_nodes), nothing, node(), text("x"),
              text("v").optional(), false, false);
    sweep.add(UX_ENTRY(uxtree_set_attribute_with_skip), nothing, node(), text("x"),
              text("v").optional(), text("Label").optional(), strings({"A"}).optional(), true,
              false);
    sweep.add(UX_ENTRY(uxtree_count_items_by_attribute), counted, node(), text("Label").optional(2),
              text("A").optional(2), 0, 0);
    sweep.add(UX_ENTRY(uxtree_all_nodes_has_attrib), done, node(), text("DataID"));
    sweep.add(UX_ENTRY(uxtree_attribute_values), scripted, node(), text("n"), 5,
              ints().optional().wrong_type(-1).appends(), 0);
    sweep.add(UX_ENTRY(uxtree_get_attributes), scripted, node(),
              strings().null(-1).wrong_type(-1).appends(), text("n"), 1);
    sweep.add(UX_ENTRY(uxtree_set_attributes),
              Row{.good = 1, .bad = 0, .tree = "<r><b><c/></b><a DataID='11'/></r>"}, node(),
              ints({11}), text("v").optional(), text("x").optional(), text("DataID").optional(),
              true);
    sweep.add(UX_ENTRY(uxtree_get_node_names), scripted, node(),
              strings().null(-1).wrong_type(-1).appends(), 1);
}

void add_structure_rows(Sweep& sweep) {
    constexpr Row done{.good = 1, .bad = 0};
    constexpr Row counted{.good = 1, .bad = -1};
    constexpr Row two{.good = 2, .bad = -1};
    constexpr Row copied{.good = 2, .bad = -1};

    sweep.add(UX_ENTRY(VCTreeCopyWithSkipping), copied, other("a"), node(),
              strings({"none"}).optional(), DWORD{0});
    sweep.add(UX_ENTRY(uxtree_copy_with_skipping), copied, other("a"), node(),
              strings({"none"}).optional(), DWORD{0});
    sweep.add(UX_ENTRY(VCTreeSetTagName), done, node("a"), text("z"));
    sweep.add(UX_ENTRY(uxtree_delete_nodes_by_attribute), counted, node(), text("n"), 5, 1,
              text("none").optional(), 0);
    sweep.add(UX_ENTRY(uxtree_delete_nodes_by_missing_attribute), two, node(), text("n"), 1, 0, 0,
              0);
    sweep.add(UX_ENTRY(uxtree_remove_nodes_by_attribute), counted, node(), text("n"), 5);
    sweep.add(UX_ENTRY(uxtree_remove_empty_child_nodes), two, node(), true);
    sweep.add(UX_ENTRY(uxtree_hide_empty_nodes), Row{.good = 1, .bad = -1, .tree = "<r><a/></r>"},
              node(), true, true);
    sweep.add(UX_ENTRY(uxtree_move_node), done, node(), 0, 1, 0u, text("x").optional());
    sweep.add(UX_ENTRY(uxtree_sort_children_by_int_attribute),
              Row{.good = 1, .bad = 0, .tree = "<r><a n='2'/><b n='1'/></r>"}, node(), text("n"),
              1);
    sweep.add(UX_ENTRY(uxtree_append_children),
              Row{.good = 6, .bad = 0, .tree = "<r><a _ux_id='4'/></r>"}, node(), other(),
              text("a").optional());
    sweep.add(UX_ENTRY(uxtree_filter), counted, node(), 12, 1, 13, strings({"2"}), 1, 13,
              strings());
    sweep.add(UX_ENTRY(uxtree_filter_by_attrib_find), done, node(), 12, text("Label"), text("x"), 0,
              0);
    sweep.add(UX_ENTRY(uxtree_filter_by_attrib_match), done, node(), 12, text("Label"), text("x*"),
              0);
    sweep.add(UX_ENTRY(uxtree_polish_tree_keep_DataID), Row{}, node());
    sweep.add(UX_ENTRY(uxtree_adapt_for_tagname), done, string("a b").inout());
}

void add_enumerated_rows(Sweep& sweep) {
    constexpr Row nothing{};

    sweep.add(UX_ENTRY(uxtree_get_next_enum_tag_name), Row{.good = 0, .bad = -1}, node(),
              string().out().needed_here(), 0);
    sweep.add(UX_ENTRY(uxtree_get_next_enum_tag_name),
              Row{.good = 2, .bad = -1, .tree = "<r><Set1/></r>"}, node(),
              string().optional().out(), 1);
    sweep.add(UX_ENTRY(uxtree_get_enum_node_name), nothing, node(), string().out(),
              text("a").optional());
    sweep.add(UX_ENTRY(uxtree_get_enum_attribute_value), nothing, node(), string().out(),
              text("Label"), text("A").optional(), text("x").optional());
    sweep.add(UX_ENTRY(uxtree_check_add_enumerated_node), Row{.clearsOutputs = true}, out(), node(),
              text("Range"), 1, 7, text("x").optional(), text("y").optional());
    sweep.add(UX_ENTRY(uxtree_check_add_all_enumerated_nodes), Row{.good = 1, .bad = 0}, node(),
              text("Range").null(1), doubles({1.5}), -1, -1, static_cast<unsigned short>(0),
              text("L").optional(), strings({"T"}).optional());
}

void add_vector_rows(Sweep& sweep) {
    constexpr Row nothing{.tree = "<r DataID='100'><a>1</a></r>"};
    constexpr Row read{.good = 2, .bad = -1, .tree = "<r DataID='100'><a>1</a><b>0</b></r>"};

    sweep.add(UX_ENTRY(vctree_get_all_children_values_as_string_array), nothing, node(),
              strings().appends());
    sweep.add(UX_ENTRY(VCTokenizedStringToArrayOfDoubles),
              Row{.good = 2, .bad = -1, .shortage = {0}}, doubles().out(), string("1 2"), 1);
    sweep.add(UX_ENTRY(uxtree_value_from_vec_int_to_tree_sub_nodes), nothing, ints({4, 5}), node());
    sweep.add(UX_ENTRY(uxtree_value_from_vec_double_to_tree_sub_nodes), nothing,
              doubles({4.5, 5.5}), node());
    sweep.add(UX_ENTRY(uxtree_value_from_vec_bool_to_tree_sub_nodes), nothing, bools({true, false}),
              node());
    sweep.add(UX_ENTRY(uxtree_value_from_vec_string_to_tree_sub_nodes), nothing,
              strings({"x", "y"}), node());
    sweep.add(UX_ENTRY(uxtree_value_from_tree_sub_nodes_to_vector_int), read, node(),
              ints({7, 7}).inout());
    sweep.add(UX_ENTRY(uxtree_value_from_tree_sub_nodes_to_vector_double), read, node(),
              doubles({7, 7}).inout());
    sweep.add(UX_ENTRY(uxtree_value_from_tree_sub_nodes_to_vector_bool), read, node(),
              bools({true, true}).inout());
    sweep.add(UX_ENTRY(uxtree_value_from_tree_sub_nodes_to_vector_string), read, node(),
              strings({"x", "y"}).inout());
}

}  // namespace

void add_tree_rows(Sweep& sweep) {
    add_attribute_rows(sweep);
    add_structure_rows(sweep);
    add_enumerated_rows(sweep);
    add_vector_rows(sweep);
}

}  // namespace uxtest
