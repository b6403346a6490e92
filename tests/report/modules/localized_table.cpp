// Builds and refreshes a report table while a message module translates "text" to "[text|0]".
#include <cstdio>
#include <string>

#include "uxtree/data/labels.h"
#include "uxtree/report/report.h"

#include "support/test_tree.h"

namespace {

int failures = 0;

void expect(const std::string& actual, const std::string& wanted) {
    if (actual == wanted) return;
    std::printf("%s\ninstead of\n%s\n", actual.c_str(), wanted.c_str());
    ++failures;
}

void make(UXXmlWrapperBase& table, const char* label) {
    report_make_input_data_table_var_row(nullptr, &table, 0, 0, 1, 1, 0, 0, 0, 1, 0, nullptr, 0,
                                         label, -1);
}

std::string row_text(const std::string& label, const std::string& before, const char* after) {
    const auto cell = [&](int column, int id, const std::string& name, const std::string& value) {
        const std::string tag = "C" + std::to_string(column);
        return "<" + tag + " Label=\"" + before + name + after + "\" _ux_id=\"" +
               std::to_string(id) + "\">" + value + "</" + tag + ">";
    };
    return "<t><R1 Label=\"" + label + "\" _ux_id=\"536872812\">" +
           cell(1, 0x1C000, "Dep/Indep", "Dep") + cell(2, 0x1B000, "Data", "?$OP:P=1") +
           cell(3, 0x1E000, "Range", "?$OP:G=1") + cell(4, 0x1D000, "Weight Type", "None") +
           "</R1></t>";
}

}  // namespace

int main() {
    uxtest::TestTree tree("<t/>");
    UXXmlWrapperBase table = tree;
    make(table, "Signal");
    expect(tree.text(), row_text("[Signal|0]", "[", "|0]"));

    bool blocked = true;
    VCTreeAccessBlockLocalization(&blocked, false);
    report_update_input_data_table(&table, &table, 1);
    expect(tree.text(), row_text("[Signal|0]", "", ""));  // a refresh knows no label of the row

    blocked = false;
    VCTreeAccessBlockLocalization(&blocked, false);
    report_update_input_data_table(&table, &table, 1);
    expect(tree.text(), row_text("[Signal|0]", "[", "|0]"));
    return failures == 0 ? 0 : 1;
}
