// uxtree query with a selection: texts, elements, or a table.
#include <algorithm>
#include <optional>

#include "uxtree/host/embedded.h"

#include "query.h"
#include "query_rows.h"
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

class SelectionQuery {
public:
    SelectionQuery(const QueryOptions& options, Output& out)
        : options_(options), out_(out), selection_(options.path) {}

    // What one file yields.
    struct Answer {
        std::string file;
        std::optional<Failure> nothing;  // why
        std::vector<std::string> values;
        QueryRows rows;
    };

    // For any thread. What only a tree that is loaded for editing tells makes the file be read again,
    // so that all others cost no more memory than their trees.
    Answer read(const std::string& file) const {
        if (!options_.xml && is_regular_file(file)) {
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
        rows_.append(std::move(answer.rows));
        for (const std::string& value : answer.values) {
            write_value(out_, list_, options_, value, answer.file);
        }
        return kSuccess;
    }

    int finish(int exitCode) {
        rows_.drop_empty_text();
        if (options_.schema) {
            rows_.write_schema(out_, options_.format);
        } else if (options_.table && (!rows_.is_empty() || options_.format == "json")) {
            rows_.write(out_, options_.format, options_.names_files());
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
                answer.rows.begin_row(answer.file);
                add_values(answer.rows, selected, i, file);
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

    static void add_values(QueryRows& rows, const UXSelected& selected, std::size_t i,
                           const std::string& file) {
        if (is_element(selected, i)) return rows.add_element(selected.node(i));
        const bool isText = selected.kind(i) == UXSelectedKind::kText;
        rows.add(isText ? tag_of(selected.node(i)) : std::string("@") + selected.attribute(i),
                 Selection::text(selected, i, file));
    }

    const QueryOptions& options_;
    Output& out_;
    Selection selection_;
    JsonList list_{out_};
    QueryRows rows_;
};

}  // namespace

void write_value(Output& out, JsonList& list, const QueryOptions& options, const std::string& value,
                 const std::string& file) {
    const bool named = options.names_files();
    if (options.format == "json") return list.add({{"file", file}, {"value", value}});
    if (options.format == "csv") {
        return write_csv_line(out, named ? Fields{file, value} : Fields{value});
    }
    if (named) out.write(out.palette().paint(Role::kDim, visible(file) + ":") + " ");
    out.write((options.xml ? visible_lines(value) : visible(value)) + "\n");
}

int run_selection_query(const QueryOptions& options) {
    Output out(options.output);
    SelectionQuery query(options, out);
    const int result = for_each_in_order(
        options.files, options.jobs, [&](const std::string& file) { return query.read(file); },
        [&](SelectionQuery::Answer answer) { return query.take(std::move(answer)); });
    return query.finish(result);
}

}  // namespace uxtool
