// uxtree query with a selection: texts, elements, or a table.
#include <algorithm>
#include <map>
#include <optional>

#include "query.h"
#include "support/command.h"
#include "support/input.h"
#include "support/json.h"
#include "support/output.h"
#include "support/selection.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"
#include "support/work_ahead.h"

namespace uxtool {
namespace {

// The columns of a table: attributes as "@id", then the texts of the elements below that have no
// children, by their path. What occurs several times in any row has a list in every row.
class Rows {
public:
    using Values = std::vector<std::string>;

    using Fields = std::vector<std::pair<std::string, std::string>>;  // columns and values

    static Fields fields_of(const UXXmlWrapperBase& node, const std::string& ownText) {
        Fields fields;
        for (const auto& [name, value] : all_attributes(node))
            fields.emplace_back("@" + name, value);
        if (node.GetNodeCount() == 0) {
            fields.emplace_back(".", ownText);
            return fields;
        }
        std::vector<std::string> path;
        walk(node, [&](const UXXmlWrapperBase& below, std::size_t level) {
            if (level == 0) return;
            path.resize(level - 1);
            path.push_back(tag_of(below));
            if (below.GetNodeCount() == 0) fields.emplace_back(join(path, "/"), value_of(below));
        });
        return fields;
    }

    void add(const std::string& file, Fields fields) {
        rows_.push_back({file, {}});
        for (auto& [name, value] : fields) add_value(name, std::move(value));
    }

    bool is_empty() const { return rows_.empty(); }

    // The column of the elements' own texts, when none has any and there are other columns.
    void drop_empty_text() {
        const auto found = numbers_.find(".");
        if (found == numbers_.end() || columns_.size() == 1) return;
        const std::size_t column = found->second;
        for (const Row& row : rows_) {
            const auto texts = row.values.find(column);
            if (texts != row.values.end() && !texts->second.front().empty()) return;
        }
        for (Row& row : rows_) row.values.erase(column);
        columns_[column].most = 0;
    }

    void write(Output& out, const std::string& format, bool named) const {
        if (format == "json") return write_json(out);
        std::vector<std::string> names;
        for (const Column& column : columns_) {
            for (std::size_t i = 0; i < column.most; ++i) {
                names.push_back(column.most == 1 ? column.name
                                                 : column.name + "[" + std::to_string(i + 1) + "]");
            }
        }
        if (named) names.insert(names.begin(), "file");
        Table table(names);
        for (const Row& row : rows_) {
            std::vector<Cell> cells;
            if (named) cells.emplace_back(row.file);
            for (std::size_t k = 0; k < columns_.size(); ++k) {
                const auto found = row.values.find(k);
                for (std::size_t i = 0; i < columns_[k].most; ++i) {
                    const bool there = found != row.values.end() && i < found->second.size();
                    cells.push_back(there ? Cell(found->second[i]) : Cell());
                }
            }
            table.add(std::move(cells));
        }
        write_table(out, table, format);
    }

    void write_schema(Output& out, const std::string& format) const {
        Table table({"column", "rows", "most"});
        for (std::size_t k = 0; k < columns_.size(); ++k) {
            if (columns_[k].most == 0) continue;
            const auto rows = std::count_if(rows_.begin(), rows_.end(), [&](const Row& row) {
                return row.values.count(k) != 0;
            });
            table.add({columns_[k].name, static_cast<long long>(rows),
                       static_cast<long long>(columns_[k].most)});
        }
        write_table(out, table, format);
    }

private:
    struct Row {
        std::string file;
        std::map<std::size_t, Values> values;  // by column
    };
    struct Column {
        std::string name;
        std::size_t most = 0;  // values in one row
    };

    void add_value(const std::string& name, std::string text) {
        const auto [place, isNew] = numbers_.emplace(name, columns_.size());
        if (isNew) columns_.push_back({name, 0});
        Values& values = rows_.back().values[place->second];
        values.push_back(std::move(text));
        Column& column = columns_[place->second];
        column.most = std::max(column.most, values.size());
    }

    // What a row does not have is not there; an empty text is "".
    void write_json(Output& out) const {
        JsonList list(out);
        for (const Row& row : rows_) {
            Json values = Json::object();
            for (const auto& [k, texts] : row.values) {
                if (columns_[k].most == 1) {
                    values[columns_[k].name] = texts.front();
                } else {
                    values[columns_[k].name] = texts;
                }
            }
            list.add({{"file", row.file}, {"values", values}});
        }
        list.finish();
    }

    std::vector<Row> rows_;
    std::vector<Column> columns_;
    std::map<std::string, std::size_t> numbers_;
};

class SelectionQuery {
public:
    SelectionQuery(const QueryOptions& options, Output& out)
        : options_(options),
          out_(out),
          selection_(options.path),
          named_(options.withName || (options.files.size() > 1 && !options.withoutName)) {}

    // What one file yields.
    struct Answer {
        std::string file;
        std::optional<Failure> nothing;  // why
        std::vector<std::string> values;
        std::vector<Rows::Fields> rows;
    };

    // For any thread.
    Answer read(const std::string& file) const {
        const UXXmlWrapperBase root = open_tree(file);
        const UXSelected selected = selection_.run(root, file);
        Answer answer{input_name(file), std::nullopt, {}, {}};
        if (selected.size() == 0) answer.nothing = selection_.nothing(root, file);
        for (std::size_t i = 0; i < selected.size(); ++i) {
            const std::string text = text_of(selected, i, file);
            if (is_table()) {
                answer.rows.push_back(fields_of(selected, i, text));
            } else {
                answer.values.push_back(text);
            }
        }
        return answer;
    }

    // In the order of the files.
    ExitCode take(Answer answer) {
        if (answer.nothing) {
            report(*answer.nothing);
            return kNothingFound;
        }
        for (Rows::Fields& row : answer.rows) rows_.add(answer.file, std::move(row));
        for (const std::string& value : answer.values) write_value(value, answer.file);
        return kSuccess;
    }

    int finish(int exitCode) {
        rows_.drop_empty_text();
        if (options_.schema) {
            rows_.write_schema(out_, options_.format);
        } else if (options_.table && (!rows_.is_empty() || options_.format == "json")) {
            rows_.write(out_, options_.format, named_);
        } else if (options_.format == "json" && !options_.table) {
            list_.finish();
        }
        return out_.finish(exitCode);
    }

private:
    bool is_table() const { return options_.table || options_.schema; }

    std::string text_of(const UXSelected& selected, std::size_t i, const std::string& file) const {
        const bool isElement = selected.kind(i) == UXSelectedKind::kElement ||
                               selected.kind(i) == UXSelectedKind::kDocument;
        if (isElement && options_.xml) {
            CStringUTF8 xml;
            selected.node(i).GetString(xml);
            return to_string(xml);
        }
        if (isElement && is_table()) return value_of(selected.node(i));
        return Selection::text(selected, i, file);
    }

    static Rows::Fields fields_of(const UXSelected& selected, std::size_t i,
                                  const std::string& text) {
        switch (selected.kind(i)) {
            case UXSelectedKind::kAttribute:
                return {{std::string("@") + selected.attribute(i), text}};
            case UXSelectedKind::kText:
                return {{tag_of(selected.node(i)), text}};
            default:
                return Rows::fields_of(selected.node(i), text);
        }
    }

    void write_value(const std::string& value, const std::string& file) {
        if (options_.format == "json") return list_.add({{"file", file}, {"value", value}});
        if (options_.format == "csv") {
            return write_csv_line(out_, named_ ? Fields{file, value} : Fields{value});
        }
        if (named_) out_.write(out_.palette().paint(Role::kDim, visible(file) + ":") + " ");
        out_.write((options_.xml ? visible_lines(value) : visible(value)) + "\n");
    }

    const QueryOptions& options_;
    Output& out_;
    Selection selection_;
    bool named_;
    JsonList list_{out_};
    Rows rows_;
};

}  // namespace

int run_selection_query(const QueryOptions& options) {
    Output out(options.output);
    SelectionQuery query(options, out);
    const int result = for_each_in_order(
        options.files, options.jobs, [&](const std::string& file) { return query.read(file); },
        [&](SelectionQuery::Answer answer) { return query.take(std::move(answer)); });
    return query.finish(result);
}

}  // namespace uxtool
