// Bad arguments of the lookups and of finding or creating a child.
#include "frame/calls/calls.h"

namespace uxtest {

void add_lookup_rows(Sweep& sweep) {
    constexpr Row found{.good = 1, .bad = 0};
    constexpr Row foundOrReleased{.good = 1, .bad = 0, .clearsOutputs = true};

    sweep.add(UX_ENTRY(uxtree_get_node), found, node(), out(), 0, value(0).inout(), -1,
              text("Label").optional(), true, false, 0);
    sweep.add(UX_ENTRY(uxtree_get_node_ex), found, node().null(1).invalid(1), out(), 0, 0u,
              text("Label").optional());
    sweep.add(UX_ENTRY(uxtree_get_root_node), found, node("b/c"), out());
    sweep.add(UX_ENTRY(uxtree_get_level), Row{.good = 2, .bad = -1}, string().out(), node("b/c"),
              node().optional(), 0);
    sweep.add(UX_ENTRY(uxtree_get_row_number), Row{.good = 3, .bad = -1}, node(), text("r.b"));
    sweep.add(UX_ENTRY(uxtree_get_node_by_id), found, node(), out(), 13, true);
    sweep.add(UX_ENTRY(uxtree_get_node_by_tagname), found, node(), out().optional(), text("c"),
              true, true, false);
    sweep.add(UX_ENTRY(uxtree_find_node), found, node(), out(), text("DataID"), 13, true, 0, -1);
    sweep.add(UX_ENTRY(uxtree_find_node_ex), Row{.good = 0, .bad = -1}, node(), out(),
              text("DataID"), 13, 0, -1, 0, -1);
    sweep.add(UX_ENTRY(uxtree_find_node_by_dataID), foundOrReleased, out(), node(), 13, 0, -1, 0,
              -1);
    sweep.add(UX_ENTRY(uxtree_find_node_with_attr_child), found, node(), out(),
              text("Label").optional(), text("B").optional(), text("c").optional(),
              text("2").optional());

    sweep.add(UX_ENTRY(uxtree_check_node_int_attr), found, node("a"),
              strings({"n"}).wrong_type(-1).throwing(0), ints({5}).wrong_type(-1).throwing(0));
    sweep.add(UX_ENTRY(uxtree_check_node_str_attr), found, node("a"),
              strings({"Label"}).wrong_type(-1).throwing(0),
              strings({"A"}).wrong_type(-1).throwing(0), 0);
    sweep.add(UX_ENTRY(uxtree_find_node_with_int_attr), found, node(), out().optional(),
              strings({"n"}), ints({5}), true, 0);
    sweep.add(UX_ENTRY(uxtree_find_node_with_str_attr), found, node(), out().optional(),
              strings({"Label"}), strings({"C"}), true, 0);

    sweep.add(UX_ENTRY(uxtree_tree_check_get_node), foundOrReleased, out(), node(), text("new"), 7,
              text("x").optional(), text("y").optional(), 1);
    sweep.add(UX_ENTRY(uxtree_tree_check_get_node_by_attribute), foundOrReleased, out(), node(),
              text("Label"), text("A"), 0, text("new").optional());
    sweep.add(UX_ENTRY(uxtree_tree_check_get_node_by_attribute), foundOrReleased, out(), node(),
              text("key"), text("new"), 0, text("tag").optional());
    sweep.add(UX_ENTRY(uxtree_check_get_node_by_dataid), found, node(), out(), text("new").null(1),
              77, text("x").optional(), text("y").optional());
    sweep.add(UX_ENTRY(uxtree_get_help_node),
              Row{.good = 1, .bad = 0, .tree = "<r><h DataID='430'/></r>"}, out(), node(), 430,
              256);
    sweep.add(UX_ENTRY(uxtree_get_help_node),
              Row{.good = 1,
                  .bad = 0,
                  .tree = "<r><p DataID='420' RepeatID='300'><h DataID='5'/></p></r>",
                  .clearsOutputs = true},
              out(), node(), 5, 300);
}

}  // namespace uxtest
