// uxtree report: reference strings and input-data tables of reports.
#include "uxtree/uxtree_Utils.h"

#include "support/command.h"
#include "support/node_path.h"
#include "support/output.h"
#include "support/table.h"
#include "support/tree.h"

namespace uxtool {
namespace {

// --- reference strings ---------------------------------------------------------------------------

struct StringOptions {
    int index = 0;
    int row = 0;
    std::string name;
    bool dotted = false;
    std::string type;
    std::string suffix;
    std::string separator;
    int flags = 0;
    int tail = 0;
    std::string output;
};

char first_char(const std::string& text) {
    return text.empty() ? '\0' : text.front();
}

std::string check_one_char(const std::string& text) {
    return text.size() == 1 ? "" : "must be one ASCII character";
}

CLI::Option* add_char(CLI::App& app, const char* name, std::string& value, const char* about) {
    return app.add_option(name, value, about)
        ->type_name("C")
        ->check(CLI::Validator(check_one_char, ""));
}

void add_common(CLI::App& app, StringOptions& options) {
    app.add_option("INDEX", options.index, "One-based index of the data")->required();
    app.add_flag("--dotted", options.dotted, "Put a dot before the index");
    add_char(app, "--type", options.type, "Column type");
    add_char(app, "--suffix", options.suffix, "Character behind the index");
    add_char(app, "--separator", options.separator, "Separator character");
    app.add_option("--tail", options.tail, "Number behind the suffix")->type_name("N");
    add_output(app, options.output);
}

int print_text(const std::string& file, const CStringUTF8& text) {
    Output out(file);
    out.print("{}\n", to_string(text));
    return out.finish();
}

int run_string(const StringOptions& options) {
    CStringUTF8 text;
    report_get_escaped_data_string(&text, options.index, options.dotted ? 1 : 0,
                                   first_char(options.type), first_char(options.suffix),
                                   options.flags, first_char(options.separator), options.tail);
    return print_text(options.output, text);
}

const Command kString{"report string", "Print the reference string of a data column",
                      "uxtree report string 3\n"
                      "uxtree report string 3 --type P --suffix X --tail 2",
                      runs<run_string>([](CLI::App& app, StringOptions& options) {
                          add_common(app, options);
                          app.add_option("--flags", options.flags,
                                         "Type flags: 1 adds \" G\", 2 adds the high 16 bits")
                              ->type_name("N");
                      })};

int run_label(const StringOptions& options) {
    constexpr int kNamedRow = -9;
    CStringUTF8 text;
    const int row = options.name.empty() ? options.row : kNamedRow;
    report_get_escaped_label_data_string(
        &text, options.index, row, first_char(options.suffix), options.tail, options.dotted ? 1 : 0,
        first_char(options.separator), options.name.c_str(), first_char(options.type));
    return print_text(options.output, text);
}

const Command kLabel{
    "report label", "Print the reference string of a column's label row",
    "uxtree report label 4 --row 2\n"
    "uxtree report label 4 --name Units",
    runs<run_label>([](CLI::App& app, StringOptions& options) {
        options.separator = "E";
        add_common(app, options);
        auto* which = app.add_option_group("label row");
        which->add_option("--row", options.row, "Number of the label row")->type_name("N");
        which->add_option("--name", options.name, "Name of the label row");
        which->require_option(1);
    })};

int run_retype(const StringOptions& options) {
    CStringUTF8 text = options.name.c_str();
    if (report_set_escaped_data_string_type(&text, first_char(options.type)) == 0) {
        throw Failure(kRefused, "uxtree", "not a reference string: " + options.name,
                      "one looks like ?$OP:A=3");
    }
    return print_text(options.output, text);
}

const Command kRetype{"report retype", "Give a reference string another type",
                      "uxtree report retype '?$OP:A G=3' B",
                      runs<run_retype>([](CLI::App& app, StringOptions& options) {
                          app.add_option("STRING", options.name, "Reference string")->required();
                          add_char(app, "TYPE", options.type, "New column type")->required();
                          add_output(app, options.output);
                      })};

// --- input-data table ----------------------------------------------------------------------------

struct TableOptions {
    std::string file;
    std::string at;
    std::string format = "text";
    std::string output;
};

// The weight of a sub-range: its first child in the compact form.
UXXmlWrapperBase find_weight(const UXXmlWrapperBase& subRange) {
    UXXmlWrapperBase child;
    for (subRange.FirstChild(&child); child.IsNodeValid() != 0; child.NextSibling(&child)) {
        if (vctree_extract_weight_info(child, nullptr, nullptr, nullptr, nullptr, nullptr) != 0) {
            break;
        }
    }
    return child;
}

// Turns the ranges of a dialog's tree into the rows of a report table: a range is a data set, a
// sub-range a variable, "X" an independent one.
class TableBuilder {
public:
    TableBuilder() {
        table_.CreateNew(0, "Table");
        params_.CreateNew(0, "Params");
    }

    void add_ranges(UXXmlWrapperBase& root) {
        VCRangeTreeIterator ranges(root);
        // A childless range of a hierarchical tree yields 0 without being the end.
        for (int left = root.GetNodeCount(); left > 0; --left) {
            UXXmlWrapperBase first;
            if (ranges.Get(first) != 0) add_variables(first);
        }
    }
    const UXXmlWrapperBase& table() const { return table_; }

private:
    void add_variables(UXXmlWrapperBase& first) {
        VCSubRangeTreeIterator subRanges(first);
        UXXmlWrapperBase subRange;
        while (subRanges.Get(subRange) != 0) add_variable(subRange);
    }

    // Variables are numbered on through the sets, so that each has a row and parameters of its own.
    void add_variable(const UXXmlWrapperBase& subRange) {
        const std::string tag = tag_of(subRange);
        const std::string label = attribute_of(subRange, "Label").value_or(tag);
        const int dependent = tag == "X" ? 0 : 1;
        const int method = add_parameters(subRange);
        report_make_input_data_table_var_row(nullptr, &table_, 0, variable_, dependent,
                                             variable_ + 1, 0, 0, 0, 0, method, &params_, variable_,
                                             label.c_str(), variable_);
        ++variable_;
    }

    int add_parameters(const UXXmlWrapperBase& subRange) {
        UXXmlWrapperBase weight = find_weight(subRange);
        int method = 0;
        double values[3] = {0, 0, 0};
        vctree_extract_weight_info(weight, nullptr, &method, &values[0], &values[1], &values[2]);
        for (double value : values) {
            UXXmlWrapperBase node;
            params_.AddNode(&node, "Value", -1);
            node.NodeValue(value, 0);
        }
        return method;
    }

    UXXmlWrapperBase table_;
    UXXmlWrapperBase params_;
    int variable_ = 0;
};

Cell cell_value(const UXXmlWrapperBase& row, int column) {
    UXXmlWrapperBase cell;
    if (row.FindChild(fmt::format("C{}", column).c_str(), &cell, 1) == 0) return {};
    return value_of(cell);
}

int run_table(const TableOptions& options) {
    constexpr int kColumns = 8;
    UXXmlWrapperBase root = open_node(options.file, options.at);
    TableBuilder builder;
    builder.add_ranges(root);
    Table table({"variable", "role", "data", "range", "weight", "weight data", "a", "b", "c"});
    for_each_child(builder.table(), [&](const UXXmlWrapperBase& row) {
        std::vector<Cell> cells{attribute_of(row, "Label").value_or("")};
        for (int column = 1; column <= kColumns; ++column) {
            cells.push_back(cell_value(row, column));
        }
        table.add(std::move(cells));
    });
    return print_table(options.output, table, options.format,
                       table.rows.empty() ? kNothingFound : kSuccess);
}

const Command kTable{"report table", "Print the input-data table of a dialog's ranges",
                     "uxtree report table dialog.xml --at InputData\n"
                     "uxtree report table -f csv ranges.xml",
                     runs<run_table>([](CLI::App& app, TableOptions& options) {
                         add_file(app, options.file);
                         add_at(app, options.at);
                         add_format(app, options.format, table_formats());
                         add_output(app, options.output);
                     })};

}  // namespace
}  // namespace uxtool
