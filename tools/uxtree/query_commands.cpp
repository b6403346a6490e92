// uxtree query: the values that a path reaches.
#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>

#include "uxtree/outline/xpath.h"

#include "query.h"
#include "support/command.h"
#include "support/input.h"
#include "support/json.h"
#include "support/output.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"
#include "support/work_ahead.h"

namespace uxtool {
namespace {

// What one file yields, made by a thread of its own.
struct Result {
    std::string file;
    std::optional<Failure> nothing;  // why
    CWBOStringArray values;
    CArray<unsigned int> offsets;
    CWBOStringArray names;
};

constexpr const char* kPathHint =
    "a path is /root|child|@attribute: the root's tag, then child tags, separated by |";

// The steps as the library splits them: behind a separator the next character always begins the
// next step.
std::vector<std::string> split_steps(const std::string& path) {
    std::vector<std::string> steps;
    std::string step;
    for (std::size_t i = 1; i < path.size(); ++i) {
        if (path[i] == '|') {
            steps.push_back(std::exchange(step, ""));
            if (++i == path.size()) return steps;
        }
        step += path[i];
    }
    steps.push_back(step);
    return steps;
}

// Says which step of a path without results failed, and what there is in its place.
class Diagnosis {
public:
    Diagnosis(const std::string& path, const std::string& file) : path_(path), file_(file) {}

    Failure explain(const UXXmlWrapperBase& root) const {
        const std::vector<std::string> steps = split_steps(path_);
        if (steps[0] != tag_of(root)) return wrong_root(steps[0], tag_of(root));
        std::vector<UXXmlWrapperBase> nodes{root};
        for (std::size_t i = 1; i < steps.size() && !steps[i].starts_with("@"); ++i) {
            std::vector<UXXmlWrapperBase> next = children_named(nodes, steps[i]);
            if (next.empty()) return missing_child(steps, i, nodes);
            nodes = std::move(next);
        }
        if (steps.back().starts_with("@")) return missing_attribute(steps, nodes);
        return nothing(counted(nodes.size(), "element") + " matched, but none holds a text",
                       "ask for an attribute with a last step @name, or for their children");
    }

private:
    using Nodes = std::vector<UXXmlWrapperBase>;

    static Nodes children_named(const Nodes& nodes, const std::string& tag) {
        Nodes found;
        for (const UXXmlWrapperBase& node : nodes) {
            for_each_child(node, [&](const UXXmlWrapperBase& child) {
                if (tag_of(child) == tag) found.push_back(child);
            });
        }
        return found;
    }

    // Unique, in order of first appearance.
    template <typename NamesOf>
    static std::vector<std::string> distinct(const Nodes& nodes, NamesOf&& namesOf) {
        std::set<std::string> seen;
        std::vector<std::string> names;
        for (const UXXmlWrapperBase& node : nodes) {
            for (const std::string& name : namesOf(node)) {
                if (seen.insert(name).second) names.push_back(name);
            }
        }
        return names;
    }

    static std::vector<std::string> child_tags(const UXXmlWrapperBase& node) {
        std::vector<std::string> tags;
        for_each_child(node, [&](const UXXmlWrapperBase& child) { tags.push_back(tag_of(child)); });
        return tags;
    }

    Failure nothing(const std::string& message, const std::string& hint) const {
        return Failure(kNothingFound, file_, message, hint);
    }

    Failure wrong_root(const std::string& step, const std::string& tag) const {
        const bool slashes = step.find('/') != std::string::npos;
        const std::string rest =
            path_.find('|') == std::string::npos ? "" : path_.substr(path_.find('|'));
        return nothing("step 1, '" + step + "': the root element is '" + tag + "'",
                       slashes ? std::string(kPathHint) : "try '/" + tag + rest + "'");
    }

    Failure missing_child(const std::vector<std::string>& steps, std::size_t i,
                          const Nodes& parents) const {
        const std::string message = fmt::format("step {}, '{}': no '{}' has a child of that name",
                                                i + 1, steps[i], steps[i - 1]);
        if (steps[i].find('/') != std::string::npos) return nothing(message, kPathHint);
        return nothing(message, names_hint(steps[i], distinct(parents, child_tags), "children"));
    }

    Failure missing_attribute(const std::vector<std::string>& steps, const Nodes& nodes) const {
        const std::string wanted = steps.back().substr(1);
        const std::string message =
            fmt::format("step {}, '{}': none of {} has that attribute", steps.size(), steps.back(),
                        counted(nodes.size(), "element"));
        return nothing(message, names_hint(wanted, distinct(nodes, attribute_names), "attributes"));
    }

    static std::string names_hint(const std::string& wanted, const std::vector<std::string>& names,
                                  const std::string& what) {
        if (names.empty()) return "there are no " + what;
        const std::string meant = nearest(wanted, names);
        const std::string list = what + " there: " + short_list(names);
        return meant.empty() ? list : "did you mean '" + meant + "'? " + list;
    }

    const std::string& path_;
    std::string file_;
};

// Collects the results of all files and writes them at the end, or line by line where it can.
class Querier {
public:
    Querier(const QueryOptions& options, Output& out)
        : options_(options), out_(out), named_(options.names_files()) {}

    // For any thread.
    std::shared_ptr<Result> read(const std::string& file) const {
        UXXmlWrapperBase root = open_tree(file);
        auto result = std::make_shared<Result>();
        result->file = input_name(file);
        const int code = TreeEvalXPath(&result->values, &result->offsets, &result->names, &root,
                                       nullptr, options_.path.c_str(), options_.table);
        if (code != 0 || result->values.GetSize() == 0) {
            result->nothing = Diagnosis(options_.path, result->file).explain(root);
        }
        return result;
    }

    // In the order of the files.
    ExitCode take(const Result& result) {
        if (result.nothing) {
            report(*result.nothing);
            return kNothingFound;
        }
        if (options_.table) {
            add_rows(result);
            return kSuccess;
        }
        for (const std::string& value : to_strings(result.values)) {
            write_value(out_, list_, options_, value, result.file);
        }
        return kSuccess;
    }

    int finish(int exitCode) {
        if (options_.table) write_rows();
        if (options_.format == "json") list_.finish();
        return out_.finish(exitCode);
    }

private:
    // The table comes as columns: column k holds the k-th value of every matched element. The names
    // are those of the element with the most values, over all files.
    void add_rows(const Result& result) {
        const int columns = result.names.GetSize();
        const int rows = columns == 0 ? 0 : result.values.GetSize() / columns;
        if (static_cast<std::size_t>(columns) > columns_.size()) {
            columns_.clear();
            for (int k = 0; k < columns; ++k) columns_.push_back(to_string(result.names[k]));
        }
        for (int row = 0; row < rows; ++row) {
            Fields fields;
            for (int k = 0; k < columns; ++k)
                fields.push_back(to_string(result.values[k * rows + row]));
            rows_.push_back({result.file, std::move(fields)});
        }
    }

    void write_rows() {
        if (options_.format == "json") return write_json_rows();
        Table table(columns_);
        if (named_) table.columns.insert(table.columns.begin(), "file");
        for (Row& row : rows_) {
            std::vector<Cell> cells(row.fields.begin(), row.fields.end());
            if (named_) cells.insert(cells.begin(), Cell(row.file));
            table.add(std::move(cells));
        }
        if (!columns_.empty()) write_table(out_, table, options_.format);
    }

    // Each name holds the list of a row's values under it, so that an element with several children
    // of one name, or none, has the same shape as the others.
    void write_json_rows() {
        for (const Row& row : rows_) {
            Json values = Json::object();
            for (const std::string& name : columns_) values[name] = Json::array();
            for (std::size_t k = 0; k < row.fields.size(); ++k) {
                if (!row.fields[k].empty()) values[columns_[k]].push_back(row.fields[k]);
            }
            list_.add({{"file", row.file}, {"values", values}});
        }
    }

    struct Row {
        std::string file;
        Fields fields;
    };

    const QueryOptions& options_;
    Output& out_;
    bool named_;
    JsonList list_{out_};
    Fields columns_;
    std::vector<Row> rows_;
};

// What the library would refuse for any tree is refused before a file is read.
void check_path(const std::string& path) {
    std::string problem;
    if (!path.starts_with("/")) problem = "does not begin with /";
    if (path == "/" || path.starts_with("/|")) problem = "names no element";
    if (!problem.empty()) {
        throw Failure(kUsage, "uxtree query", "the path '" + path + "' " + problem, kPathHint);
    }
}

// Steps separated by "|" are the library's own language; "|" stands in no selection.
bool has_old_steps(const std::string& path) {
    char quote = '\0';
    for (const char c : path) {
        if (quote != '\0') {
            if (c == quote) quote = '\0';
        } else if (c == '\'' || c == '"') {
            quote = c;
        } else if (c == '|') {
            return true;
        }
    }
    return false;
}

// Other tools take the file first.
void check_order(const QueryOptions& options) {
    const std::string& file = options.files.front();
    std::error_code unknown;  // such as of a name that is too long for a file
    if (file == "-" || std::filesystem::exists(file, unknown) ||
        !std::filesystem::exists(options.path, unknown)) {
        return;
    }
    throw Failure(kUsage, "uxtree query", "the path comes first: '" + options.path + "' is a file",
                  fmt::format("uxtree query '{}' {}", file, options.path));
}

int run_query(const QueryOptions& options) {
    check_order(options);
    if (!has_old_steps(options.path)) return run_selection_query(options);
    if (options.schema || options.xml) {
        throw Failure(kUsage, "uxtree query",
                      "--schema and --xml want a path with / between the steps", "");
    }
    check_path(options.path);
    Output out(options.output);
    Querier querier(options, out);
    const int result = for_each_in_order(
        options.files, options.jobs, [&](const std::string& file) { return querier.read(file); },
        [&](const std::shared_ptr<Result>& read) { return querier.take(*read); });
    return querier.finish(result);
}

const Command kQuery{
    "query", "Print what a path selects",
    "uxtree query '//book/@id' catalog.xml                  # an attribute of each book\n"
    "uxtree query \"//book[@lang='fr']/title\" *.xml        # texts, with the file names\n"
    "uxtree query '/catalog/book[price > 10]' c.xml --xml   # whole elements\n"
    "uxtree query -t //book catalog.xml                     # a table: one row for each book\n"
    "uxtree query -t -f csv //book catalog.xml              # the same as CSV, or json\n"
    "uxtree query '/catalog|book|@id' catalog.xml           # the older form, with | for steps\n"
    "uxtree outline -f paths catalog.xml                    # the paths that there are",
    runs<run_query>([](CLI::App& app, QueryOptions& options) {
        app.add_option("PATH", options.path,
                       "Such as //book[@lang='fr']/title: a part of XPath 1.0")
            ->required()
            ->type_name("");
        add_files(app, options.files);
        app.add_flag("-t,--table", options.table,
                     "One row for each element: its attributes, and the texts below it");
        app.add_flag("--schema", options.schema, "Print the columns of that table instead");
        app.add_flag("--xml", options.xml, "Print elements as XML instead of their texts");
        add_format(app, options.format, table_formats());
        CLI::Option* with = app.add_flag("-H,--with-filename", options.withName,
                                         "Print file names (default with several files)");
        app.add_flag("--no-filename", options.withoutName, "Never print file names")
            ->excludes(with);
        add_jobs(app, options.jobs);
        add_output(app, options.output);
    })};

}  // namespace
}  // namespace uxtool
