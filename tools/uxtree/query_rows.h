// The table of uxtree query: what is selected, row by row.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "uxtree/host/host.h"

#include "support/output.h"

namespace uxtool {

// The columns are attributes as "@id", then the texts of the elements below, by their path: of those
// without children, and of those that have text beside them. What occurs several times in any row has
// a list in every row.
class QueryRows {
public:
    void begin_row(const std::string& file);
    // A value of the row that was begun last.
    void add(const std::string& column, std::string_view text);
    // All values of an element.
    void add_element(const UXXmlWrapperBase& node);
    void append(QueryRows&& rows);
    bool is_empty() const { return rows_.empty(); }

    // The column of the elements' own texts, when none has any and there are other columns.
    void drop_empty_text();
    // With the names of the files in a column of their own, if they are wanted.
    void write(Output& out, const std::string& format, bool named) const;
    void write_schema(Output& out, const std::string& format) const;

private:
    struct Row {
        std::size_t file;
        std::size_t begin;  // of its values
    };
    struct Value {
        std::size_t end;  // of its text among all of them
        std::uint32_t column;
    };
    struct Column {
        std::string name;
        std::size_t most = 0;   // values in one row; 0: it was dropped
        std::size_t rows = 0;   // that have any
        std::size_t row = 0;    // the last one of them, from 1
        std::size_t inRow = 0;  // values there
        bool hasText = false;
    };
    // The texts of a row, by the number of the column.
    using RowTexts = std::vector<std::vector<std::string_view>>;

    std::uint32_t number_of(const std::string& column);
    template <typename Visit>
    void for_each_row(Visit&& visit) const;
    std::vector<std::string> headings(bool named) const;
    void write_json(Output& out) const;

    std::vector<std::string> files_;
    std::vector<Row> rows_;
    std::vector<Value> values_;
    std::string texts_;
    std::vector<Column> columns_;
    std::map<std::string, std::uint32_t> numbers_;
};

}  // namespace uxtool
