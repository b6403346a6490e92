// Tables as aligned text, CSV or JSON.
#include "support/table.h"

#include <algorithm>

#include "support/json.h"
#include "support/text.h"

namespace uxtool {
namespace {

bool is_number(const Cell& cell) {
    return std::holds_alternative<long long>(cell) || std::holds_alternative<double>(cell);
}

std::string text_of(const Cell& cell) {
    if (const auto* text = std::get_if<std::string>(&cell)) return *text;
    if (const auto* number = std::get_if<long long>(&cell)) return fmt::format("{}", *number);
    if (const auto* number = std::get_if<double>(&cell)) return fmt::format("{}", *number);
    return "";
}

std::string padded(const std::string& text, std::size_t width, bool toTheRight) {
    const std::size_t used = display_width(text);
    const std::string blanks(width > used ? width - used : 0, ' ');
    return toTheRight ? blanks + text : text + blanks;
}

// A column of numbers, apart from empty cells, is aligned to the right.
std::vector<bool> numeric_columns(const Table& table) {
    std::vector<bool> numeric(table.columns.size(), false);
    for (std::size_t column = 0; column < numeric.size(); ++column) {
        bool any = false;
        numeric[column] = std::all_of(table.rows.begin(), table.rows.end(), [&](const auto& row) {
            any = any || is_number(row[column]);
            return is_number(row[column]) || row[column].index() == 0;
        });
        numeric[column] = numeric[column] && any;
    }
    return numeric;
}

std::vector<std::size_t> column_widths(const Table& table) {
    std::vector<std::size_t> widths;
    for (const std::string& name : table.columns) widths.push_back(display_width(visible(name)));
    for (const auto& row : table.rows) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            widths[column] = std::max(widths[column], display_width(visible(text_of(row[column]))));
        }
    }
    return widths;
}

void write_text(Output& out, const Table& table) {
    const std::vector<std::size_t> widths = column_widths(table);
    const std::vector<bool> numeric = numeric_columns(table);
    const auto writeLine = [&](const auto& cellAt, bool heading) {
        std::string line;
        for (std::size_t column = 0; column < widths.size(); ++column) {
            if (column > 0) line += "  ";
            line += padded(visible(cellAt(column)), widths[column], numeric[column]);
        }
        line.resize(line.find_last_not_of(' ') + 1);
        if (heading) line = out.palette().paint(Role::kHeading, line);
        out.write(line);
        out.write("\n");
    };
    writeLine([&](std::size_t column) { return table.columns[column]; }, true);
    for (const auto& row : table.rows) {
        writeLine([&](std::size_t column) { return text_of(row[column]); }, false);
    }
}

bool csvIsSafe = false;

std::string csv_field(const std::string& text, bool isNumber) {
    const bool isFormula = csvIsSafe && !isNumber && !text.empty() &&
                           std::string_view("=+-@\t\r").find(text[0]) != std::string_view::npos;
    if (!isFormula && text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = isFormula ? "\"'" : "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

void write_csv(Output& out, const Table& table) {
    write_csv_line(out, table.columns);
    for (const auto& row : table.rows) {
        std::string line;
        for (const Cell& cell : row) {
            if (&cell != &row.front()) line += ',';
            line += csv_field(text_of(cell), is_number(cell));
        }
        out.write(line + "\n");
    }
}

Json json_of(const Cell& cell) {
    return std::visit(
        [](const auto& value) -> Json {
            using Value = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<Value, std::monostate>) {
                return nullptr;
            } else {
                return value;
            }
        },
        cell);
}

void write_objects(Output& out, const Table& table) {
    JsonList list(out);
    for (const auto& row : table.rows) {
        Json entry = Json::object();
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            entry[table.columns[column]] = json_of(row[column]);
        }
        list.add(entry);
    }
    list.finish();
}

}  // namespace

Cell text_cell(const std::string& text) {
    return text.empty() ? Cell() : Cell(text);
}

Cell optional_cell(std::optional<std::string> text) {
    return text ? Cell(*std::move(text)) : Cell();
}

Cell count_cell(std::size_t count) {
    return static_cast<long long>(count);
}

void Table::add(std::vector<Cell> cells) {
    cells.resize(columns.size());
    rows.push_back(std::move(cells));
}

void set_csv_safe(bool safe) {
    csvIsSafe = safe;
}

// An empty line would be read as no row, so a lone empty field is quoted.
void write_csv_line(Output& out, const Fields& fields) {
    std::string line;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) line += ',';
        line += csv_field(fields[i], false);
    }
    out.write(line.empty() ? "\"\"" : line);
    out.write("\n");
}

void write_csv_numbers(Output& out, const Fields& numbers) {
    out.write(join(numbers, ",") + "\n");
}

void write_table(Output& out, const Table& table, const std::string& format) {
    if (format == "csv") return write_csv(out, table);
    if (format == "json") return write_objects(out, table);
    write_text(out, table);
}

int print_table(const std::string& output, const Table& table, const std::string& format,
                ExitCode code) {
    Output out(output);
    write_table(out, table, format);
    return out.finish(code);
}

const std::vector<std::string>& table_formats() {
    static const std::vector<std::string> formats{"text", "csv", "json"};
    return formats;
}

}  // namespace uxtool
