// Reports: reference strings, and an input-data table with its weighting parameters.
#include <cstdio>

#include "uxtree/uxtree_Utils.h"

namespace {

// Three values per variable, in the order of the variables: a, b, c.
constexpr const char kParameters[] =
    "<Params><a>1</a><b>0.5</b><c>2</c><a>3</a><b>0.25</b><c>4</c></Params>";

bool add_row(UXXmlWrapperBase& table, UXXmlWrapperBase& params, int variable, const char* label) {
    constexpr int kSet = 0;
    constexpr int kParamSet = 0;
    constexpr int kVariablesPerSet = 2;
    constexpr int kPowerVariance = 7;
    constexpr int kFromSetAndVariable = -1;
    const int dependent = variable > 0 ? 1 : 0;
    return report_make_input_data_table_var_row(
               nullptr, &table, kSet, variable, dependent, variable + 1, 'X', 0, kParamSet,
               kVariablesPerSet, kPowerVariance, &params, 0, label, kFromSetAndVariable) == 1;
}

void print_table(const UXXmlWrapperBase& table) {
    UXXmlWrapperBase row;
    for (table.FirstChild(&row); row.IsNodeValid() != 0; row.NextSibling(&row)) {
        CStringUTF8 label;
        row.GetPropertyValue("Label", label, 0);
        std::printf("%s:", static_cast<const char*>(label));
        UXXmlWrapperBase cell;
        for (row.FirstChild(&cell); cell.IsNodeValid() != 0; cell.NextSibling(&cell)) {
            CStringUTF8 value;
            cell.GetPropertyValue("Label", label, 0);
            cell.NodeValue(value, 1, 1, nullptr);
            std::printf(" [%s %s]", static_cast<const char*>(label),
                        static_cast<const char*>(value));
        }
        std::printf("\n");
    }
}

bool print_strings() {
    UXScriptArray<CWBOStringArray> strings;
    UXScriptArray<CArray<int, int>> labelRows;
    for (int row : {-1, 2, -9}) labelRows.array().Add(row);  // data, a row by number, one by name
    report_get_set_data_string(&strings, 3, 0, &labelRows, "Units", 0);
    for (int i = 0; i < strings.array().GetSize(); ++i) {
        std::printf("%s\n", static_cast<const char*>(strings.array()[i]));
    }
    return strings.array().GetSize() == 3 && strings.array()[2] == "?$OP:E\"Units\"=4X";
}

}  // namespace

int main() {
    UXXmlWrapperBase params;
    UXXmlWrapperBase table;
    if (params.LoadFromMemory(kParameters, sizeof kParameters - 1) == 0) return 1;
    table.CreateNew(0, "Table");
    if (!print_strings()) return 1;
    if (!add_row(table, params, 0, "Time") || !add_row(table, params, 1, "Signal")) return 1;
    print_table(table);

    UXXmlWrapperBase last;
    UXXmlWrapperBase cell;
    params.GetChild(&last, 5);
    last.SetString("40");  // the fit went on: take its parameters over
    if (report_update_input_data_table(&table, &params, 2) != 2) return 1;
    double c = 0;
    if (wbxfu_tree_get_node(cell, table, "R2", "C8", nullptr) == 0) return 1;
    cell.NodeValue(c, 1);
    std::printf("c of Signal is now %g\n", c);
    return c == 40 ? 0 : 1;
}
