// The table of uxtree query.
#include "query_rows.h"

#include <algorithm>

#include "support/json.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {

void QueryRows::begin_row(const std::string& file) {
    if (files_.empty() || files_.back() != file) files_.push_back(file);
    rows_.push_back({files_.size() - 1, values_.size()});
}

std::uint32_t QueryRows::number_of(const std::string& column) {
    const auto [place, isNew] =
        numbers_.emplace(column, static_cast<std::uint32_t>(columns_.size()));
    if (isNew) {
        columns_.emplace_back();
        columns_.back().name = column;
    }
    return place->second;
}

void QueryRows::add(const std::string& name, std::string_view text) {
    const std::uint32_t number = number_of(name);
    texts_ += text;
    values_.push_back({texts_.size(), number});
    Column& column = columns_[number];
    const bool isFirst = column.row != rows_.size();
    column.row = rows_.size();
    column.inRow = isFirst ? 1 : column.inRow + 1;
    column.rows += isFirst ? 1 : 0;
    column.most = std::max(column.most, column.inRow);
    column.hasText = column.hasText || !text.empty();
}

void QueryRows::add_element(const UXXmlWrapperBase& node) {
    for (const auto& [name, value] : all_attributes(node)) add("@" + name, value);
    std::vector<std::string> path;
    walk(node, [&](const UXXmlWrapperBase& at, std::size_t level) {
        path.resize(level > 0 ? level - 1 : 0);
        if (level > 0) path.push_back(tag_of(at));
        const std::string text = value_of(at);
        if (at.GetNodeCount() > 0 && text.empty()) return;
        add(level > 0 ? join(path, "/") : ".", text);
    });
}

template <typename Visit>
void QueryRows::for_each_row(Visit&& visit) const {
    RowTexts texts(columns_.size());
    std::size_t begin = 0;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        for (auto& column : texts) column.clear();
        const std::size_t end = i + 1 < rows_.size() ? rows_[i + 1].begin : values_.size();
        for (std::size_t k = rows_[i].begin; k < end; ++k) {
            const std::string_view text(texts_.data() + begin, values_[k].end - begin);
            texts[values_[k].column].push_back(text);
            begin = values_[k].end;
        }
        visit(files_[rows_[i].file], texts);
    }
}

void QueryRows::append(QueryRows&& rows) {
    if (is_empty()) {
        *this = std::move(rows);
        return;
    }
    rows.for_each_row([&](const std::string& file, const RowTexts& texts) {
        begin_row(file);
        for (std::size_t k = 0; k < texts.size(); ++k) {
            for (const std::string_view text : texts[k]) add(rows.columns_[k].name, text);
        }
    });
}

void QueryRows::drop_empty_text() {
    const auto found = numbers_.find(".");
    if (found == numbers_.end() || columns_.size() == 1) return;
    Column& column = columns_[found->second];
    if (!column.hasText) column.most = 0;
}

std::vector<std::string> QueryRows::headings(bool named) const {
    std::vector<std::string> names;
    if (named) names.emplace_back("file");
    for (const Column& column : columns_) {
        for (std::size_t i = 0; i < column.most; ++i) {
            names.push_back(column.most == 1 ? column.name
                                             : column.name + "[" + std::to_string(i + 1) + "]");
        }
    }
    return names;
}

void QueryRows::write(Output& out, const std::string& format, bool named) const {
    if (format == "json") return write_json(out);
    Table table(headings(named));
    const bool isCsv = format == "csv";
    if (isCsv) write_csv_line(out, table.columns);
    for_each_row([&](const std::string& file, const RowTexts& texts) {
        Fields fields;
        if (named) fields.push_back(file);
        for (std::size_t k = 0; k < columns_.size(); ++k) {
            for (std::size_t i = 0; i < columns_[k].most; ++i) {
                fields.emplace_back(i < texts[k].size() ? texts[k][i] : "");
            }
        }
        if (isCsv) return write_csv_line(out, fields);
        table.add({fields.begin(), fields.end()});
    });
    if (!isCsv) write_table(out, table, format);
}

// What a row does not have is not there; an empty text is "".
void QueryRows::write_json(Output& out) const {
    JsonList list(out);
    for_each_row([&](const std::string& file, const RowTexts& texts) {
        Json values = Json::object();
        for (std::size_t k = 0; k < columns_.size(); ++k) {
            const Column& column = columns_[k];
            if (column.most == 0 || texts[k].empty()) continue;
            if (column.most == 1) {
                values[column.name] = texts[k].front();
            } else {
                values[column.name] = texts[k];
            }
        }
        list.add({{"file", file}, {"values", values}});
    });
    list.finish();
}

void QueryRows::write_schema(Output& out, const std::string& format) const {
    Table table({"column", "rows", "most"});
    for (const Column& column : columns_) {
        if (column.most == 0) continue;
        table.add({column.name, count_cell(column.rows), count_cell(column.most)});
    }
    write_table(out, table, format);
}

}  // namespace uxtool
