// Bad arguments of reference strings and input-data tables.
#include "frame/calls/calls.h"

namespace uxtest {

void add_report_rows(Sweep& sweep) {
    constexpr Row done{.good = 1, .bad = 0};
    constexpr char kNone = '\0';

    sweep.add(UX_ENTRY(report_get_escaped_data_string), done, string().out(), 3, 0, kNone, kNone, 0,
              kNone, 0);
    sweep.add(UX_ENTRY(report_get_escaped_label_data_string), done, string().out(), 4, 2, kNone, 0,
              0, 'E', text("L").optional(), kNone);
    // The result says nothing; unusable rows, unlike missing ones, add nothing.
    sweep.add(UX_ENTRY(report_get_set_data_string), Row{.good = 1, .bad = 1}, strings().appends(),
              1, 0, ints({-1, -9, 2, -9}).optional(), text("L").optional(),
              static_cast<unsigned char>(0));
    sweep.add(UX_ENTRY(report_get_escaped_data_string_ex), done, strings().appends(), 1,
              ints({-1, -9, 2, -9}).optional().wrong_type(1).throwing(0), 0, 0, 0, 0, 0, 0, 0, 0,
              'E', text("L").optional(), 0);
    sweep.add(UX_ENTRY(report_set_escaped_data_string_type), done, string("?$OP:A=1").inout(), 'B');
    sweep.add(UX_ENTRY(report_make_input_data_table_var_row), done, out().optional(), node(), 0, 0,
              1, 1, 0, 0, 0, 1, 8, other().optional().may_be_invalid(), 0, text("x").optional(), 0);
    sweep.add(UX_ENTRY(report_update_input_data_table),
              Row{.good = 1, .bad = -1, .tree = "<r><R1 _ux_id='536872812'/></r>"}, node(), other(),
              1);
}

}  // namespace uxtest
