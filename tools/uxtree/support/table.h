// Tables as aligned text, CSV or JSON.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "support/output.h"

namespace uxtool {

// One cell: nothing, a text or a number.
using Cell = std::variant<std::monostate, std::string, long long, double>;

// Nothing for an empty text, and for one that is not there.
Cell text_cell(const std::string& text);
Cell optional_cell(std::optional<std::string> text);
Cell count_cell(std::size_t count);

class Table {
public:
    explicit Table(std::vector<std::string> columnNames) : columns(std::move(columnNames)) {}
    // Adds a row; missing cells at its end are empty.
    void add(std::vector<Cell> cells);

    std::vector<std::string> columns;
    std::vector<std::vector<Cell>> rows;
};

// Writes a table as "text" (aligned, with a heading, numbers to the right), "csv" (RFC 4180
// quoting, heading first) or "json" (a list with one object per row: column -> text, number or
// null).
void write_table(Output& out, const Table& table, const std::string& format);

// The same to the file of -o, or to standard output; yields the exit code.
int print_table(const std::string& output, const Table& table, const std::string& format,
                ExitCode code = kSuccess);

// One line of CSV.
using Fields = std::vector<std::string>;
void write_csv_line(Output& out, const Fields& fields);
// One of numbers, or nothing in their place: also below 0 they are no formulas.
void write_csv_numbers(Output& out, const Fields& numbers);

// From now on, texts in CSV that begin with = + - @ TAB or CR, which spreadsheets take for formulas,
// are quoted and begin with an apostrophe. Numbers of write_table stay numbers.
void set_csv_safe(bool safe);

// The formats of write_table, for add_format.
const std::vector<std::string>& table_formats();

}  // namespace uxtool
