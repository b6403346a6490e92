// The input-data table of a report.
#include <gtest/gtest.h>

#include "uxtree/report/report.h"

#include "support/test_tree.h"

namespace {

using uxtest::TestTree;
using uxtest::to_text;
using uxtest::tree_text;

// The arguments of a row, with what most tests do not care about preset.
struct Row {
    int set = 0;
    int variable = 0;
    int dependent = 1;
    int dataIndex = 1;
    int suffix = 0;
    int tailNumber = 0;
    int paramSet = 0;
    int variablesPerSet = 1;
    int weightMethod = 0;
    UXXmlWrapperBase* paramTree = nullptr;
    int weightColumn = 0;
    const char* label = nullptr;
    int paramIndex = -1;
};

int make(UXXmlWrapperBase* out, UXXmlWrapperBase* table, const Row& row) {
    return report_make_input_data_table_var_row(
        out, table, row.set, row.variable, row.dependent, row.dataIndex, row.suffix, row.tailNumber,
        row.paramSet, row.variablesPerSet, row.weightMethod, row.paramTree, row.weightColumn,
        row.label, row.paramIndex);
}

std::string table_with(const Row& row) {
    TestTree table("<t/>");
    UXXmlWrapperBase out;
    EXPECT_EQ(make(&out, &table, row), 1);
    return to_text(out);
}

// A cell with the identifier of its column.
std::string cell(int column, const std::string& label, const std::string& value) {
    constexpr int kIds[] = {0x1C000, 0x1B000, 0x1E000, 0x1D000, 0x1F000, 0x20000, 0x20001, 0x20002};
    const std::string tag = "C" + std::to_string(column);
    return "<" + tag + " Label=\"" + label + "\" _ux_id=\"" + std::to_string(kIds[column - 1]) +
           "\">" + value + "</" + tag + ">";
}

constexpr char kParams[] =
    "<p><s0><a0>1</a0><b0>2</b0></s0><c0>3</c0><d0>4</d0><e0>5</e0><f0>6</f0></p>";
// numbers: s0 = 0, a0 = 1, b0 = 2, c0 = 3, d0 = 4, e0 = 5, f0 = 6

TEST(report_make_input_data_table_var_row, WritesTheFourColumnsThatEveryRowHas) {
    Row row;
    row.set = 1;
    row.variable = 2;
    row.dataIndex = 7;
    row.suffix = 'X';
    row.tailNumber = 3;
    row.variablesPerSet = 5;
    row.label = "Signal";
    EXPECT_EQ(table_with(row), "<R8 Label=\"Signal\" _ux_id=\"536938350\">" +
                                   cell(1, "Dep/Indep", "Dep") + cell(2, "Data", "?$OP:P=7X3") +
                                   cell(3, "Range", "?$OP:G=7X3") + cell(4, "Weight Type", "None") +
                                   "</R8>");
}

TEST(report_make_input_data_table_var_row, TheIdNamesSetAndVariable) {
    TestTree table("<t/>");
    UXXmlWrapperBase out;
    Row row;
    row.set = 3;
    row.variable = 4;
    row.variablesPerSet = 10;
    make(&out, &table, row);
    int id = 0;
    CStringUTF8 tag;
    out.GetID(id);
    out.GetTagName(tag);
    EXPECT_EQ(id, (0x2003 << 16) | 1904);
    EXPECT_STREQ(tag, "R35");
}

TEST(report_make_input_data_table_var_row, WeightDataNamesItsColumn) {
    Row row;
    row.weightMethod = 1;
    row.weightColumn = 4;
    row.dataIndex = 9;
    EXPECT_EQ(table_with(row), "<R1 _ux_id=\"536872812\">" + cell(1, "Dep/Indep", "Dep") +
                                   cell(2, "Data", "?$OP:P=9") + cell(3, "Range", "?$OP:G=9") +
                                   cell(4, "Weight Type", "Data Squared") +
                                   cell(5, "Weight Data", "?$OP:P=9W5") + "</R1>");
    row.dependent = 0;
    EXPECT_EQ(table_with(row), "<R1 _ux_id=\"536872812\">" + cell(1, "Dep/Indep", "Indep") +
                                   cell(2, "Data", "?$OP:P=9") + cell(3, "Range", "?$OP:G=9") +
                                   cell(4, "Weight Type", "Data Squared") +
                                   cell(5, "Weight Data", "?$OP:P=9T5") + "</R1>");
}

// The cells behind the fourth one.
std::string parameter_cells(Row row, const char* params = kParams) {
    TestTree tree(params);
    row.paramTree = &tree;
    const std::string text = table_with(row);
    const std::string end = "</C4>";
    const std::size_t from = text.find(end) + end.size();
    return text.substr(from, text.rfind("</R") - from);
}

TEST(report_make_input_data_table_var_row, ParametersComeFromTheDepthFirstNumbering) {
    Row row;
    row.weightMethod = 7;
    EXPECT_EQ(parameter_cells(row), cell(6, "a", "") + cell(7, "b", "1") + cell(8, "c", "2"));
    row.variable = 1;
    EXPECT_EQ(parameter_cells(row), cell(6, "a", "3") + cell(7, "b", "4") + cell(8, "c", "5"));
}

TEST(report_make_input_data_table_var_row, TheParameterSetChoosesTheTriple) {
    Row row;
    row.weightMethod = 7;
    row.paramSet = 1;
    row.variablesPerSet = 1;
    EXPECT_EQ(parameter_cells(row), cell(6, "a", "3") + cell(7, "b", "4") + cell(8, "c", "5"));
    row.set = 5;  // of the row only
    EXPECT_EQ(parameter_cells(row), cell(6, "a", "3") + cell(7, "b", "4") + cell(8, "c", "5"));
}

TEST(report_make_input_data_table_var_row, AGivenParameterIndexTakesItsPlace) {
    Row row;
    row.weightMethod = 7;
    row.paramSet = 1;
    row.variable = 9;
    row.paramIndex = 0;
    EXPECT_EQ(parameter_cells(row), cell(6, "a", "") + cell(7, "b", "1") + cell(8, "c", "2"));
    row.paramIndex = 1;
    EXPECT_EQ(parameter_cells(row), cell(6, "a", "3") + cell(7, "b", "4") + cell(8, "c", "5"));
}

TEST(report_make_input_data_table_var_row, ParametersKeepTheirColumns) {
    Row row;
    row.paramIndex = 1;
    row.weightMethod = 6;  // a and b
    EXPECT_EQ(parameter_cells(row), cell(6, "a", "3") + cell(7, "b", "4"));
    row.weightMethod = 8;  // everything
    EXPECT_EQ(parameter_cells(row), cell(5, "Weight Data", "?$OP:P=1W1") + cell(6, "a", "3") +
                                        cell(7, "b", "4") + cell(8, "c", "5"));
}

TEST(report_make_input_data_table_var_row, MissingParametersLeaveTheCells) {
    Row row;
    row.weightMethod = 7;
    row.paramIndex = 2;
    EXPECT_EQ(parameter_cells(row), cell(6, "a", "6") + cell(7, "b", "") + cell(8, "c", ""));
    EXPECT_EQ(parameter_cells(row, "<p/>"), cell(6, "a", "") + cell(7, "b", "") + cell(8, "c", ""));
    row.paramIndex = 2147483647;
    EXPECT_EQ(parameter_cells(row), cell(6, "a", "") + cell(7, "b", "") + cell(8, "c", ""));

    TestTree table("<t><R1><C6>old</C6></R1></t>");
    row.paramIndex = -1;
    EXPECT_EQ(make(nullptr, &table, row), 1);
    EXPECT_EQ(to_text(table.at("R1/C6")), tree_text("<C6 Label='a'>old</C6>"));
}

TEST(report_make_input_data_table_var_row, AnUnknownMethodHasNoNameAndNoFurtherColumns) {
    Row row;
    row.weightMethod = 15;
    EXPECT_EQ(table_with(row), "<R1 _ux_id=\"536872812\">" + cell(1, "Dep/Indep", "Dep") +
                                   cell(2, "Data", "?$OP:P=1") + cell(3, "Range", "?$OP:G=1") +
                                   cell(4, "Weight Type", "") + "</R1>");
}

TEST(report_make_input_data_table_var_row, AFoundRowAndItsCellsKeepTheirIdentifiers) {
    TestTree table(
        "<t><R1 _ux_id='5' Label='old'><C4 _ux_id='6'>x</C4><C5>kept</C5><C1/></R1></t>");
    Row row;
    row.label = "new";
    EXPECT_EQ(make(nullptr, &table, row), 1);
    EXPECT_EQ(table.text(),
              "<t><R1 Label=\"new\" _ux_id=\"5\">"
              "<C4 Label=\"Weight Type\" _ux_id=\"6\">None</C4><C5>kept</C5>"
              "<C1 Label=\"Dep/Indep\">Dep</C1>" +
                  cell(2, "Data", "?$OP:P=1") + cell(3, "Range", "?$OP:G=1") + "</R1></t>");
}

TEST(report_make_input_data_table_var_row, ParametersAreWrittenOnlyIntoTheTable) {
    TestTree params(kParams);
    const std::string before = params.text();
    Row row;
    row.weightMethod = 8;
    row.paramTree = &params;
    table_with(row);
    EXPECT_EQ(params.text(), before);
}

TEST(report_make_input_data_table_var_row, OneHandleMayServeForRowTableAndParameters) {
    TestTree tree("<t><a>1</a><b>2</b><c>3</c></t>");
    UXXmlWrapperBase node = tree;
    Row row;
    row.weightMethod = 7;
    row.paramTree = &node;
    EXPECT_EQ(make(&node, &node, row), 1);
    EXPECT_TRUE(node == tree.at("R1"));
    EXPECT_EQ(to_text(tree.at("R1/C8")), cell(8, "c", "3"));
}

TEST(report_make_input_data_table_var_row, TakesNoParametersFromAnInvalidTree) {
    UXXmlWrapperBase invalid;
    TestTree table("<t/>");
    Row row;
    row.paramTree = &invalid;
    row.weightMethod = 7;
    EXPECT_EQ(make(nullptr, &table, row), 1);
}

// --- report_update_input_data_table --------------------------------------------------------------

TEST(report_update_input_data_table, CopiesTheParametersAgain) {
    TestTree params("<p><a>1</a><b>2</b><c>3</c><d>4</d><e>5</e><f>6</f></p>");
    TestTree table("<t/>");
    Row row;
    row.weightMethod = 8;
    row.paramTree = &params;
    row.variablesPerSet = 1;
    make(nullptr, &table, row);
    row.set = row.paramSet = 1;
    make(nullptr, &table, row);
    const std::string made = table.text();

    EXPECT_EQ(report_update_input_data_table(&table, &params, 1), 2);
    EXPECT_EQ(table.text(), made);

    params.at("b").SetString("20");
    params.at("f").SetString("60");
    EXPECT_EQ(report_update_input_data_table(&table, &params, 1), 2);
    EXPECT_EQ(to_text(table.at("R1/C7")), cell(7, "b", "20"));
    EXPECT_EQ(to_text(table.at("R2/C8")), cell(8, "c", "60"));
    EXPECT_EQ(to_text(table.at("R2/C6")), cell(6, "a", "4"));
}

TEST(report_update_input_data_table, LabelsCellsAndCreatesAndRemovesNothing) {
    TestTree params("<p><a>1</a><b/></p>");
    // 536872812: set 0, variable 0
    TestTree table(
        "<t Label='x'><R9 Label='mine' _ux_id='536872812'><C1 Label='old'>v</C1><C3>w</C3>"
        "<C7>y</C7><C6>x</C6><C8>z</C8><other Label='k'/><C9/></R9></t>");
    EXPECT_EQ(report_update_input_data_table(&table, &params, 1), 1);
    EXPECT_EQ(
        table.text(),
        tree_text("<t Label='x'><R9 Label='mine' _ux_id='536872812'>"
                  "<C1 Label='Dep/Indep'>v</C1><C3 Label='Range'>w</C3><C7 Label='b'/>"
                  "<C6 Label='a'>1</C6><C8 Label='c'>z</C8><other Label='k'/><C9/></R9></t>"));
}

TEST(report_update_input_data_table, PassesOverRowsOfOtherIdentifiers) {
    TestTree params("<p><a>1</a></p>");
    // no ID; no one-set bit; index 1899; a row without cells
    TestTree table(
        "<t><R1><C6>x</C6></R1><R2 _ux_id='1900'><C6>x</C6></R2>"
        "<R3 _ux_id='536872811'><C6>x</C6></R3><R4 _ux_id='536872812'><x/></R4></t>");
    const std::string before = table.text();
    EXPECT_EQ(report_update_input_data_table(&table, &params, 1), 1);
    EXPECT_EQ(table.text(), before);
}

TEST(report_update_input_data_table, ARowsPlaceIsItsSetAndVariable) {
    TestTree params(
        "<p><a/><a/><a/><a/><a/><a/><a/><a/><a/><a/><a/><a/><a/><a/><a/><hit>found</hit></p>");
    TestTree table("<t/>");
    UXXmlWrapperBase row;
    table.AddNode(&row, "R6", (0x2002 << 16) | 1901);  // set 2, variable 1, so place 5
    row.AddNode(nullptr, "C6", -1);
    EXPECT_EQ(report_update_input_data_table(&table, &params, 2), 1);
    EXPECT_EQ(to_text(table.at("R6/C6")), tree_text("<C6 Label='a'>found</C6>"));
}

TEST(report_update_input_data_table, TheTableMayBeTheTree) {
    TestTree tree("<t/>");
    UXXmlWrapperBase node = tree;
    EXPECT_EQ(report_update_input_data_table(&node, &node, 1), 0);
}

}  // namespace
