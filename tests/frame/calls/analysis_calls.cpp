// Bad arguments of ranges, fitter trees and dialog options.
#include "frame/calls/calls.h"

namespace uxtest {
namespace {

int first_range(UXXmlWrapperBase& tree, UXXmlWrapperBase& out) {
    return VCRangeTreeIterator(tree).Get(out);
}
int first_sub_range(UXXmlWrapperBase& range, UXXmlWrapperBase& out) {
    return VCSubRangeTreeIterator(range).Get(out);
}

auto no_node() {
    return value(UXXmlWrapperBase()).may_be_invalid();
}

void add_auto_support_rows(Sweep& sweep) {
    constexpr Row supported{.good = 1, .bad = 0, .tree = "<r Auto='1|A|2'/>"};

    sweep.add(UX_ENTRY(vctree_create_auto_support_string), Row{.good = 1, .bad = 0}, string().out(),
              1, text("A").optional(), 1);
    sweep.add(UX_ENTRY(vctree_parse_auto_support_string), Row{.good = 1, .bad = 0}, text("1|A|2"),
              value(7).out(), string().out(), value(7).out());
    sweep.add(UX_ENTRY(vctree_get_auto_support), supported, node(), string().out(), value(7).out());
    sweep.add(UX_ENTRY(uxtree_get_auto_support), supported, node(), string().optional().out(),
              value(7).optional().out());
    sweep.add(UX_ENTRY(vctree_set_auto_support), supported, node(), 1, text("B").optional(), 3);
    sweep.add(UX_ENTRY(uxtree_set_auto_support), supported, node(), 1, text("B").optional(), 3);
    sweep.add(UX_ENTRY(vctree_check_reset_auto_support), Row{.tree = "<r Auto='1|A|2'/>"}, node());
}

void add_range_rows(Sweep& sweep) {
    constexpr Row done{.good = 1, .bad = 0};
    constexpr Row slots{.good = 1, .bad = 0, .tree = "<r><X>1</X><Y>2</Y><Z>3</Z></r>"};
    constexpr Row worksheet{.good = 1, .bad = 0, .tree = "<r _EntireWorksheet='1'/>"};

    sweep.add(UX_CLASS(VCRangeTreeIterator, first_range),
              Row{.good = 1, .bad = 0, .tree = "<r><R1><X/></R1></r>"}, node(), out());
    sweep.add(UX_CLASS(VCSubRangeTreeIterator, first_sub_range), slots, node("X"), out());
    // A range may stand outside a range tree, and a range tree makes the range it lacks.
    sweep.add(UX_ENTRY(vctree_add_subrange_to_composite_range), done, node("a").may_be_invalid(),
              node().may_be_invalid(), -1, 0, 1);
    sweep.add(UX_ENTRY(vctree_add_subrange_to_composite_range), done, no_node(),
              node().needed_here(), -1, 0, 1);
    sweep.add(UX_ENTRY(vctree_reenum_subranges_in_range_tree), Row{}, node(), 0);
    sweep.add(UX_ENTRY(vctree_reenum_subranges_in_range_tree), Row{}, node(), 1);
    sweep.add(UX_ENTRY(vctree_composite_range_get_entire_worksheet_support), worksheet, node());
    sweep.add(UX_ENTRY(uxtree_composite_range_get_entire_worksheet_support), worksheet, node());
    sweep.add(UX_ENTRY(vctree_composite_range_set_entire_worksheet_support), Row{}, node(), 1);
    sweep.add(UX_ENTRY(uxtree_composite_range_set_entire_worksheet_support), Row{}, node(), 1);
    for (const int get : {0, 1}) {
        sweep.add(UX_ENTRY(vctree_get_set_node_action_id),
                  Row{.good = 1, .bad = 0, .tree = "<r _ACTION_OBJECT_ID='4'/>"}, node(),
                  value(7).getset(), get);
    }
    sweep.add(UX_ENTRY(VCTreeSetCompositeSubRangeNodeActionId), done, node(), 5, 6);
    sweep.add(UX_ENTRY(vctree_get_composite_subrange_values), slots, node(), string().out(),
              string().out(), string().out(), 1);
    sweep.add(UX_ENTRY(vctree_set_composite_subrange_values), slots, node(), text("x").optional(),
              text("y").optional(), text("z").optional(), 0, 1, 0, 1);
    sweep.add(UX_ENTRY(uxtree_set_composite_subrange_values), slots, node(), text("x").optional(),
              text("y").optional(), text("z").optional(), 0, 1, 0, 1);
}

void add_fitter_rows(Sweep& sweep) {
    constexpr Row done{.good = 1, .bad = 0};
    constexpr Row compact{.good = 1, .bad = 0, .tree = "<W WeightMethod='1'/>"};
    constexpr Row expanded{.good = 1,
                           .bad = 0,
                           .tree =
                               "<r><WeightMethod>8</WeightMethod><WeightData>d</WeightData>"
                               "<WeightA>1</WeightA><WeightB>2</WeightB><WeightC>3</WeightC></r>"};
    constexpr Row list{.good = 1, .bad = 0, .tree = "<r><Share DataID='5000'/></r>"};
    const auto flag = value(7).optional();
    const auto parameter = value(7.5).optional();

    sweep.add(UX_ENTRY(VCTreeGetFitterWeightStrings), Row{.good = 15, .bad = -1}, 3,
              string().optional().out(), strings().optional().out(), 1);
    sweep.add(UX_ENTRY(uxtree_fitter_get_weight_mth_info), done, 8, string().optional().out(),
              flag.out(), flag.out(), flag.out(), flag.out());
    sweep.add(UX_ENTRY(vctree_extract_weight_info), compact, node(), text("W").optional(),
              flag.out(), parameter.out(), parameter.out(), parameter.out());
    sweep.add(UX_ENTRY(vctree_fitter_data_weight_node_compact_to_expanded), compact, other(),
              node());
    sweep.add(UX_ENTRY(vctree_fitter_data_weight_node_expanded_to_compact), expanded, other(),
              node());
    sweep.add(UX_ENTRY(vctree_update_fitter_data_weight_node), done, node(), 8,
              value(DWORD{7}).out(), text("d").optional(), parameter, parameter, parameter, 0, 0);
    // An invalid handle gets a tree of its own.
    sweep.add(UX_ENTRY(uxtree_nlsf_add_params_node_DataID), Row{}, node().may_be_invalid(), 2);
    sweep.add(UX_ENTRY(uxtree_nlf_set_bool_param_from_user_params_setting), list, node(),
              bools({true}), 5000);
    sweep.add(UX_ENTRY(uxtree_nlf_set_double_param_from_user_params_setting), list, node(),
              doubles({1.5}), 5000);
    sweep.add(UX_ENTRY(uxtree_nlf_set_int_param_from_user_params_setting), list, node(), ints({1}),
              5000);
}

void add_dialog_rows(Sweep& sweep) {
    constexpr Row done{.good = 1, .bad = 0};
    constexpr Row counted{.good = 1, .bad = -1};
    constexpr Row identified{.good = 1, .bad = 0, .tree = "<r PlotObjUID='3' DataMarkerID='4'/>"};

    sweep.add(UX_ENTRY(XVarNode_IsInput), Row{.good = 1, .bad = 0, .tree = "<r><io>0</io></r>"},
              node(), true);
    sweep.add(UX_ENTRY(XVarNode_IsOutput), Row{.good = 1, .bad = 0, .tree = "<r><io>1</io></r>"},
              node(), true);
    sweep.add(UX_ENTRY(XVarNode_IsUseLabelForValue),
              Row{.good = 1, .bad = 0, .tree = "<r DispFormat='16384'/>"}, node());
    sweep.add(UX_ENTRY(VCTreeCheckAddInputDataBranch), done, out(), node(), strings({"X"}),
              strings({"L"}).optional(), -1, 1, -1, text("v").optional());
    sweep.add(UX_ENTRY(uxtree_tree_check_add_input_data_branch), done, out(), node(),
              strings({"X"}), strings({"L"}).optional(), -1, 1, -1, text("v").optional());
    sweep.add(UX_ENTRY(vctree_GETN_reset_hidden_values), counted, node(), ints({11}), true);
    sweep.add(UX_ENTRY(uxtree_GETN_reset_hidden_values), counted, node(), ints({11}), true);
    sweep.add(UX_ENTRY(VCTreePrepareForMenu), Row{.good = 2, .bad = -1, .tree = "<r><a/><b/></r>"},
              node(), value(DWORD{100}).inout());
    sweep.add(UX_ENTRY(vctree_test_ICOPT_recursively),
              Row{.good = 1, .bad = 0, .tree = "<r InteractiveOptions='4'><a/></r>"}, node("a"),
              DWORD{4});
    sweep.add(UX_ENTRY(vctree_copy_branch_options),
              Row{.good = 1, .bad = 0, .tree = "<r Branch='3'/>"}, other(), node(), DWORD{1});
    sweep.add(UX_ENTRY(vctree_set_plot_uid_to_tree), identified, node(), 5);
    sweep.add(UX_ENTRY(vctree_get_plot_uid_from_tree), identified, node(), value(7).out());
    sweep.add(UX_ENTRY(vctree_set_data_marker_id_to_tree), identified, node(), 5);
    sweep.add(UX_ENTRY(vctree_get_data_marker_id_from_tree), identified, node(), value(7).out());
    sweep.add(UX_ENTRY(vctree_copy_plot_uid_from_tree_to_tree), identified, other(), node());
}

}  // namespace

void add_analysis_rows(Sweep& sweep) {
    add_auto_support_rows(sweep);
    add_range_rows(sweep);
    add_fitter_rows(sweep);
    add_dialog_rows(sweep);
}

}  // namespace uxtest
