// uxtree query with a selection: texts, elements, or a table.
#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>

#include "uxtree/host/embedded.h"

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

// The columns of a table: attributes as "@id", then the texts of the elements below, by their path: of
// those without children, and of those that have text beside them. What occurs several times in any
// row has a list in every row.
class Rows {
public:
    using Values = std::vector<std::string>;

    using Fields = std::vector<std::pair<std::string, std::string>>;  // columns and values

    static Fields fields_of(const UXXmlWrapperBase& node) {
        Fields fields;
        for (const auto& [name, value] : all_attributes(node))
            fields.emplace_back("@" + name, value);
        std::vector<std::string> path;
        walk(node, [&](const UXXmlWrapperBase& at, std::size_t level) {
            path.resize(level > 0 ? level - 1 : 0);
            if (level > 0) path.push_back(tag_of(at));
            std::string text = value_of(at);
            if (at.GetNodeCount() > 0 && text.empty()) return;
            fields.emplace_back(level > 0 ? join(path, "/") : ".", std::move(text));
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

    // For any thread. What only a tree that is loaded for editing tells makes the file be read again,
    // so that all others cost no more memory than their trees.
    Answer read(const std::string& file) const {
        if (!options_.xml && std::filesystem::is_regular_file(file)) {
            try {
                return answer(open_tree(file), file);
            } catch (const MixedText&) {
            }
        }
        return answer(open_tree_for_editing(file), file);
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
    Answer answer(const UXXmlWrapperBase& root, const std::string& file) const {
        const UXSelected selected = selection_.run(root, file);
        Answer answer{input_name(file), std::nullopt, {}, {}};
        if (selected.size() == 0) answer.nothing = selection_.nothing(root, file);
        std::optional<UXTextOrder> source;
        if (options_.xml) source.emplace(root);
        for (std::size_t i = 0; i < selected.size(); ++i) {
            if (options_.table || options_.schema) {
                answer.rows.push_back(fields_of(selected, i, file));
            } else {
                const bool isXml = options_.xml && is_element(selected, i);
                answer.values.push_back(isXml ? written(*source, selected.node(i))
                                              : Selection::text(selected, i, file));
            }
        }
        return answer;
    }

    static bool is_element(const UXSelected& selected, std::size_t i) {
        return selected.kind(i) == UXSelectedKind::kElement ||
               selected.kind(i) == UXSelectedKind::kDocument;
    }

    // As the file has it; what an entity brought along as the tree has it.
    static std::string written(const UXTextOrder& source, const UXXmlWrapperBase& node) {
        CStringUTF8 xml;
        if (!source.Written(node, xml)) node.GetString(xml);
        return to_string(xml);
    }

    static Rows::Fields fields_of(const UXSelected& selected, std::size_t i,
                                  const std::string& file) {
        if (is_element(selected, i)) return Rows::fields_of(selected.node(i));
        const bool isText = selected.kind(i) == UXSelectedKind::kText;
        return {{isText ? tag_of(selected.node(i)) : std::string("@") + selected.attribute(i),
                 Selection::text(selected, i, file)}};
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
