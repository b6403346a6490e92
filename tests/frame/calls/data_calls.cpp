// Bad arguments of identifiers, values, saved documents, copies, changes and themes.
#include "frame/calls/calls.h"

namespace uxtest {
namespace {

const TemporaryFolder& data_folder() {
    static const TemporaryFolder whole;
    return whole;
}
std::string saved_file() {
    static const std::string path = data_folder().write(
        "saved.xml", "<Settings Comment='c'>Settings<node5>a</node5></Settings>");
    return path;
}

void add_id_rows(Sweep& sweep) {
    // The identifier reads as -1 when there is none.
    sweep.add(UX_ENTRY(VCTreeGetRepeatId),
              Row{.good = 1, .bad = 0, .tree = "<r RepeatID='3'/>", .clearsOutputs = true}, node(),
              value(7).out());
    sweep.add(UX_ENTRY(VCTreeGetRepeatNodeId),
              Row{.good = 1, .bad = 0, .tree = "<r RepeatNodeID='3'/>", .clearsOutputs = true},
              node(), value(7).out());
    for (const int id : {0, 5}) {
        sweep.add(UX_ENTRY(VCTreeSetRepeatId), Row{.good = 1, .bad = 0}, node(), id);
        sweep.add(UX_ENTRY(VCTreeSetRepeatNodeId), Row{.good = 1, .bad = 0}, node(), id);
    }
    sweep.add(UX_ENTRY(uxtree_make_one_set_ID), Row{.good = 536936453, .bad = 0},
              static_cast<unsigned short>(5), static_cast<unsigned short>(1));
    sweep.add(UX_ENTRY(uxtree_is_ID_in_one_set), Row{.good = 1, .bad = 0}, 536936453,
              static_cast<unsigned short>(1));
    sweep.add(UX_ENTRY(uxtree_is_in_ids_range), Row{.good = 1, .bad = 0, .tree = "<r _ux_id='5'/>"},
              node(), 0, 9, 0);
    sweep.add(UX_ENTRY(uxtree_combine_treenode_id_with_repeat_id), Row{.good = 3, .bad = 0}, node(),
              value(7).inout(), value(0).out(), 4);
}

void add_value_rows(Sweep& sweep) {
    constexpr Row collected{.good = 3, .bad = -1};
    constexpr Row written{.good = 1, .bad = -1};
    constexpr Row byNodeId{.good = 1, .bad = -1, .tree = "<r><a NodeID='4'>1</a></r>"};

    sweep.add(UX_ENTRY(vctree_get_values_with_ids), collected, node(), ints().out(),
              strings().out(), 1, 0, 0, text("DataID").optional(), 1, string("").optional().out());
    sweep.add(UX_ENTRY(uxtree_get_values_with_ids), collected, node(), ints().out(),
              strings().out(), 1, 0, 0, text("DataID").optional(), 1, string("").optional().out());
    sweep.add(UX_ENTRY(vctree_set_values_by_ids), written, node(), ints({11}), strings({"x"}), 0,
              value(0).optional().out(), 0, text("DataID").optional(), string().optional().out());
    sweep.add(UX_ENTRY(uxtree_set_values_by_ids), written, node(), ints({11}), strings({"x"}), 0,
              value(0).optional().out(), 0, text("DataID").optional(), string().optional().out());
    sweep.add(UX_ENTRY(vctree_empty_values_with_ids), Row{.good = 2, .bad = -1}, node());
    sweep.add(UX_ENTRY(vctree_set_values_by_nodeids), byNodeId, node(), ints({4}), strings({"x"}));
    sweep.add(UX_ENTRY(uxtree_set_values_by_nodeids), byNodeId, node(), ints({4}), strings({"x"}));
    sweep.add(UX_ENTRY(VCTreeGetValues), Row{.good = 0, .bad = 0}, node(), strings().appends(),
              false);
    sweep.add(UX_ENTRY(uxtree_get_values), Row{.good = 0, .bad = 0, .shortage = {-1}}, node(),
              strings().null(-1).wrong_type(-1).appends(), false);
    sweep.add(UX_ENTRY(uxtree_clear_all_value), Row{}, node());
    sweep.add(UX_ENTRY(uxtree_recursively_replace_values), Row{}, node(), text("1").optional(),
              text("x").optional());
}

void add_saved_rows(Sweep& sweep) {
    constexpr Row done{.good = 1, .bad = 0};
    constexpr Row emptied{.good = 1, .bad = 0, .clearsOutputs = true};
    const std::string target = data_folder().path("target.xml");

    sweep.add(UX_ENTRY_AS(vctree_save_values_with_ids,
                          static_cast<bool (*)(UXXmlWrapperBase*, CArray<int, int>*,
                                               CWBOStringArray*, const char*, CWBOStringArray*)>(
                              &vctree_save_values_with_ids)),
              done, node("a"), ints({5}), strings({"v"}), text("c").optional(),
              strings({"L"}).optional());
    sweep.add(UX_ENTRY_AS(
                  vctree_save_values_with_ids,
                  static_cast<int (*)(const char*, CArray<int, int>*, CWBOStringArray*, const char*,
                                      CWBOStringArray*)>(&vctree_save_values_with_ids)),
              done, text(target), ints({5}), strings({"v"}), text("c").optional(),
              strings({"L"}).optional());
    sweep.add(UX_ENTRY(vctree_read_values_with_ids), emptied, text(saved_file()), ints({1}).out(),
              strings({"x"}).out(), string().optional().out());
    sweep.add(UX_ENTRY(uxtree_save_values_with_ids), done, node("a"), ints({5}), strings({"v"}),
              text("c").optional(), strings({"L"}).optional());
    sweep.add(UX_ENTRY(uxtree_tree_save_values_with_ids), done, text(target), ints({5}),
              strings({"v"}), text("c").optional(), strings({"L"}).optional());
    sweep.add(UX_ENTRY(uxtree_tree_read_values_with_ids), emptied, text(saved_file()),
              ints({1}).out(), strings({"x"}).out(), string().optional().out());

    // An invalid handle gets a document of its own.
    sweep.add(UX_ENTRY(vctree_set_theme), done, node("a").may_be_invalid(), ints({5}),
              strings({"v"}), text("c").optional());
    sweep.add(UX_ENTRY(uxtree_set_theme), done, node("a").may_be_invalid(), ints({5}),
              strings({"v"}), text("c").optional());
    sweep.add(UX_ENTRY(vctree_get_theme), Row{}, node(), ints({1}).appends(),
              strings({"x"}).appends(), string().optional().out(), strings().optional().appends());
    sweep.add(UX_ENTRY(vctree_get_theme),
              Row{.tree = "<r Comment='read'><node1>a</node1><node2>b</node2></r>"}, node(),
              ints({1}).appends(), strings({"x"}).appends(), string().optional().out(),
              strings({"l"}).optional().appends());
    sweep.add(UX_ENTRY(uxtree_get_theme), Row{}, node(), ints({1}).appends(),
              strings({"x"}).appends(), string().optional().out(), strings().optional().appends());
}

void add_copy_rows(Sweep& sweep) {
    constexpr Row three{.good = 3, .bad = -1};

    // A destination without a node is short of one; a source without one has nothing to give.
    sweep.add(UX_ENTRY(vctree_copy_values_between_homologous_trees), Row{.good = 0, .bad = 1},
              other(), node().invalid(0), 1, strings({"Label"}).optional(), 1);
    sweep.add(UX_ENTRY(vctree_copy_values_by_id), three, node(), other(), 0,
              text("DataID").optional(), text("DataID").optional(), 1, nullptr, 0, 0, 0, 0);
    sweep.add(UX_ENTRY(uxtree_copy_values_by_id), three, node(), other(), 0,
              text("DataID").optional(), text("DataID").optional(), 1, 0, 0, 0, 0);
    sweep.add(UX_ENTRY(uxtree_whole_copy_values_by_id), three, node(), other());
    sweep.add(UX_ENTRY(uxtree_copy_atts_by_id), Row{.good = 0, .bad = -1}, node(), other(),
              text("Label").optional(), text("DataID").optional(), text("DataID").optional(),
              text("n").optional(), 0);
    sweep.add(UX_ENTRY(uxtree_copy_ids_by_tagname), Row{.good = 3, .bad = 0}, node(), other(),
              false);
    sweep.add(UX_ENTRY(uxtree_copy_values_to_attributes_by_attribute_matching),
              Row{.good = 1, .bad = 0}, node(), other(), text("Show").optional(),
              text("DataID").optional(), text("Label").optional(), 1, 0, 1);
}

void add_change_rows(Sweep& sweep) {
    const auto differences = static_cast<__int64 (*)(CArray<__int64, __int64>&, CWBOStringArray*,
                                                     CWBOStringArray*, bool)>(&VCTreeGetChanged);
    const auto firstDifference =
        static_cast<__int64 (*)(CWBOStringArray*, CWBOStringArray*, bool)>(&VCTreeGetChanged);

    sweep.add(UX_ENTRY(uxtree_node_changed), Row{.good = 1, .bad = 0}, node("a"), 1,
              text("old").optional());
    sweep.add(UX_ENTRY(VCTreeNodeGetValue), Row{.clearsOutputs = true}, node("a"), string().out());
    sweep.add(UX_ENTRY(VCTreeUpdateChanges), Row{.good = 1, .bad = -1}, node(), strings({"x"}));
    sweep.add(UX_ENTRY(uxtree_update_changes), Row{.good = 1, .bad = -1}, node(), strings({"x"}));
    sweep.add(UX_ENTRY_AS(VCTreeGetChanged, differences), Row{.good = 1, .bad = -1},
              value(CArray<__int64, __int64>()).appends(), strings({"x"}), strings({"y"}), true);
    sweep.add(UX_ENTRY_AS(VCTreeGetChanged, firstDifference), Row{.good = 0, .bad = -2},
              strings({"x"}), strings({"y"}), true);
    sweep.add(UX_ENTRY(uxget_changed), Row{.good = 0, .bad = -2}, strings({"x"}), strings({"y"}),
              true);
    sweep.add(UX_ENTRY(VCTreeIsSame), Row{.good = 1, .bad = 0}, ints({1}), ints({1}));
    sweep.add(UX_ENTRY(ux_is_same), Row{.good = 1, .bad = 0}, ints({1}), ints({1}));
    sweep.add(UX_ENTRY(uxtree_remove_unchange_nodes_by_id), Row{.good = 3, .bad = -1}, node(),
              other(), text("DataID").optional(), text("DataID").optional());
}

void add_theme_rows(Sweep& sweep) {
    constexpr Row found{.good = 1, .bad = 0};
    const auto side = value(0).optional();

    sweep.add(UX_ENTRY(uxtree_tree_get_theme_file_name),
              Row{.good = 1, .bad = 0, .tree = "<r ThemeFile='f'/>", .clearsOutputs = true}, node(),
              string().out());
    sweep.add(UX_ENTRY(uxtree_tree_set_theme_file_name), found, node(), text("f").optional());
    sweep.add(UX_ENTRY(uxtree_tree_get_theme_type), Row{.good = 4, .bad = 0}, node());
    sweep.add(
        UX_ENTRY(uxtree_is_inclist_theme),
        Row{.good = 1, .bad = 0, .tree = "<r Count='1' Objects='1073741824' Properies='4096'/>"},
        node());
    sweep.add(UX_ENTRY(uxtree_theme_tree_get_node_by_id), found, out(), node(), 13, 5, true);
    sweep.add(UX_ENTRY(uxtree_theme_tree_get_node_by_index), found, out(), node(), 12, 1, 5, true);
    sweep.add(UX_ENTRY(uxtree_theme_tree_get_range_from_range_style),
              Row{.good = 1,
                  .bad = 0,
                  .tree = "<r><Left>1</Left><Top>2</Top><Right>3</Right><Bottom>4</Bottom></r>"},
              node(), side.out(), side.out(), side.out(), side.out());
}

}  // namespace

void add_data_rows(Sweep& sweep) {
    add_id_rows(sweep);
    add_value_rows(sweep);
    add_saved_rows(sweep);
    add_copy_rows(sweep);
    add_change_rows(sweep);
    add_theme_rows(sweep);
}

void add_label_rows(Sweep& sweep) {
    constexpr Row done{.good = 1, .bad = 0};
    constexpr Row emptied{.good = 1, .bad = 0, .clearsOutputs = true};
    constexpr Row labelled{.good = 1, .bad = 0, .tree = "<r><a Label='?$OP:(A)'/></r>"};

    sweep.add(UX_ENTRY(VCTreeAccessBlockLocalization), Row{.good = 0, .bad = 0},
              value(true).optional().getset(), true);
    sweep.add(UX_ENTRY(uxtree_combine_data_label), emptied, string().out(), strings({"A"}), true,
              true, false);
    sweep.add(UX_ENTRY(uxtree_combine_data_label), emptied, string().out(), strings({"A", "B"}),
              true, true, true);
    sweep.add(UX_ENTRY(uxtree_get_node_label), Row{.good = "a", .bad = ""}, node("a"), 0);
    sweep.add(UX_ENTRY(uxtree_get_localization_node), emptied, out(), node(), 13, 11, 12, 0, 0);
    sweep.add(UX_ENTRY(uxtree_get_replaced_combined_label), done, string().out(),
              string("?$OP:(A)"), strings({"A"}), strings({"X"}), text("?$OP:").optional());
    sweep.add(UX_ENTRY(uxtree_recursively_replace_label_attributes), done, node(), text("A"),
              text("x").optional());
    sweep.add(UX_ENTRY(uxtree_recursively_replace_combined_label_attributes), labelled, node(),
              strings({"A"}), strings({"X"}), text("?$OP:").optional());

    sweep.add(UX_ENTRY(VCTreeGetPathStr), emptied, string().out(), node("b/c"));
    sweep.add(UX_ENTRY(vctree_convert_escape_character), Row{}, strings({"a\\", "b"}).inout(), ',',
              false);
    sweep.add(UX_ENTRY(uxtree_branch_to_key_value_pairs_str), emptied, node(), string().out(), '=',
              ';');
    sweep.add(UX_ENTRY(uxtree_key_value_pairs_str_to_branch), done, node(), text("k=v;"), '=', ';');
    sweep.add(UX_ENTRY(uxtree_add_path_str), done, node(), text("p"), 1, 1);
}

}  // namespace uxtest
