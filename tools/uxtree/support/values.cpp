// Values with identifiers: collected, read from files, set and saved.
#include "support/values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <set>

#include <nlohmann/json.hpp>

#include "uxtree/kit/c.h"
#include "uxtree/kit/values.h"
#include "uxtree/uxtree_Utils.h"

#include "support/failure.h"
#include "support/input.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

// By the codes of ux_values_problem.
constexpr std::array<const char*, 7> kProblems{"",
                                               "repeat ID conflict",
                                               "repeat ID invalid",
                                               "DataID conflict with RepeatID",
                                               "repeat Node ID conflict",
                                               "repeat Node ID invalid",
                                               "missing DataID"};

// What is wrong with the values of a tree, as "repeat ID conflict at Range2 "Second""; "" for
// nothing.
std::string problem_of(const UXXmlWrapperBase& root, bool setting) {
    UXXmlWrapperBase node;
    const int code = ux_values_problem(&root, setting ? 1 : 0, nullptr, 0, &node, nullptr, nullptr);
    if (code <= 0) return "";
    std::string what = kProblems.at(static_cast<std::size_t>(code));
    what += " at " + tag_of(node);
    CStringUTF8 label;
    if (node.GetPropertyValue("Label", label, 0) != 0 && !label.IsEmpty()) {
        what += " \"" + to_string(label) + "\"";
    }
    return visible(what);
}

// "dialog.Input.X": the tags from the root down.
std::string tags_down_to(const UXXmlWrapperBase& node) {
    std::vector<std::string> tags;
    for (UXXmlWrapperBase step = node; step.IsNodeValid() != 0; step.GetParent(&step)) {
        tags.push_back(tag_of(step));
    }
    std::reverse(tags.begin(), tags.end());
    return join(tags, ".");
}

// The identifiers of the values of some nodes, which stand in document order.
std::set<int> ids_of(const UXXmlWrapperBase& root, const std::vector<UXXmlWrapperBase>& nodes) {
    std::set<int> ids;
    const std::vector<UXValueNode> values = UXValueNodes(root);
    auto value = values.begin();
    auto next = nodes.begin();
    walk(root, [&](const UXXmlWrapperBase& node, std::size_t) {
        const bool isWanted = next != nodes.end() && *next == node;
        if (isWanted) ++next;
        for (; value != values.end() && value->node == node; ++value) {
            if (isWanted) ids.insert(value->id);
        }
    });
    return ids;
}

Failure not_values(const std::string& file, const std::string& why) {
    return {
        kUnreadable, input_name(file), why,
        "values are a saved document, a CSV table or a JSON list with the columns id and value"};
}

// Splits one CSV text (RFC 4180) into rows of fields.
std::vector<std::vector<std::string>> csv_rows(const std::string& file, const std::string& text) {
    std::vector<std::vector<std::string>> rows{{""}};
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        std::string& field = rows.back().back();
        if (quoted) {
            if (c != '"') {
                field += c;
            } else if (i + 1 < text.size() && text[i + 1] == '"') {
                field += text[++i];
            } else {
                quoted = false;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            rows.back().emplace_back();
        } else if (c == '\n') {
            rows.push_back({""});
        } else if (c != '\r') {
            field += c;
        }
    }
    if (quoted) throw not_values(file, "a quoted field is not closed");
    if (rows.back() == std::vector<std::string>{""}) rows.pop_back();
    return rows;
}

// The library reads "5.7" as 5 and counts beyond its largest integer from below again; here both are
// no identifiers.
int id_of(const std::string& file, const std::string& text) {
    int id = 0;
    const std::size_t first = text.find_first_not_of(" \t");
    const std::size_t last = text.find_last_not_of(" \t");
    const std::string_view digits = first == std::string::npos
                                        ? std::string_view()
                                        : std::string_view(text).substr(first, last + 1 - first);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), id);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()) {
        throw not_values(file, "\"" + visible(text) + "\" is no identifier");
    }
    return id;
}

ValueList values_of_csv(const std::string& file, const std::string& text) {
    const auto rows = csv_rows(file, text);
    std::size_t idColumn = std::numeric_limits<std::size_t>::max();
    std::size_t valueColumn = idColumn;
    for (std::size_t i = 0; !rows.empty() && i < rows[0].size(); ++i) {
        if (rows[0][i] == "id") idColumn = i;
        if (rows[0][i] == "value") valueColumn = i;
    }
    ValueList list;
    for (std::size_t row = 1; row < rows.size(); ++row) {
        if (rows[row].size() <= std::max(idColumn, valueColumn)) {
            throw not_values(file, "row " + std::to_string(row + 1) + " lacks an id or a value");
        }
        list.ids.Add(id_of(file, rows[row][idColumn]));
        list.values.Add(CStringUTF8(rows[row][valueColumn].c_str()));
    }
    if (list.ids.IsEmpty()) throw not_values(file, "no values in it");
    return list;
}

ValueList values_of_json(const std::string& file, const std::string& text) {
    const auto json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_array()) throw not_values(file, "not a JSON list");
    ValueList list;
    for (const auto& row : json) {
        if (!row.is_object() || !row.contains("id") || !row.contains("value")) {
            throw not_values(file, "a row of the list lacks id or value");
        }
        const auto textOf = [](const nlohmann::json& cell) {
            return cell.is_string() ? cell.get<std::string>() : cell.is_null() ? "" : cell.dump();
        };
        list.ids.Add(id_of(file, textOf(row["id"])));
        list.values.Add(CStringUTF8(textOf(row["value"]).c_str()));
    }
    return list;
}

}  // namespace

ValueList collect_values(const UXXmlWrapperBase& root, const std::string& file) {
    UXXmlWrapperBase tree = root;
    ValueList list;
    vctree_get_values_with_ids(&tree, &list.ids, &list.values, 1, 0, 0, nullptr, 0, nullptr);
    const std::string problem = problem_of(root, false);
    if (!problem.empty()) warn(input_name(file) + ": " + problem);
    for (UXValueNode& value : UXValueNodes(root)) {
        list.labels.Add(uxtree_get_node_label(&value.node, 1));
        list.places.push_back(tags_down_to(value.node));
    }
    return list;
}

void throw_refusal(int code, int duplicate, const UXXmlWrapperBase& root, const std::string& file) {
    const std::string name = input_name(file);
    const std::string problem = code == kRepeatConflict ? problem_of(root, true) : "";
    switch (code) {
        case kNoValues:
            throw Failure(kRefused, name, "no values to set");
        case kDuplicateIdentifier:
            throw Failure(kRefused, name, fmt::format("duplicate identifier {}", duplicate),
                          "each identifier may stand once among the values");
        case kRepeatConflict:
            throw Failure(kRefused, name, problem.empty() ? "repeat id conflict" : problem,
                          "nested repeated branches need RepeatIDs without common bits");
        default:
            throw Failure(kRefused, name, fmt::format("refused with code {}", code));
    }
}

void keep_values_of(const UXXmlWrapperBase& root, const std::vector<UXXmlWrapperBase>& nodes,
                    ValueList& list) {
    const std::set<int> wanted = ids_of(root, nodes);
    ValueList kept;
    kept.comment = list.comment;
    for (int i = 0; i < list.ids.GetSize(); ++i) {
        if (wanted.count(list.ids[i]) == 0) continue;
        kept.ids.Add(list.ids[i]);
        kept.values.Add(list.values[i]);
        if (i < list.labels.GetSize()) kept.labels.Add(list.labels[i]);
        if (!list.places.empty()) kept.places.push_back(list.places[static_cast<std::size_t>(i)]);
    }
    list = std::move(kept);
}

std::vector<std::string> unknown_ids(const UXXmlWrapperBase& root, const ValueList& list) {
    UXXmlWrapperBase tree = root;
    CArray<int, int> ids;
    CWBOStringArray values;
    vctree_get_values_with_ids(&tree, &ids, &values, 1, 0, 0, nullptr, 1, nullptr);
    std::set<int> known(ids.GetData(), ids.GetData() + ids.GetSize());
    std::vector<std::string> unknown;
    for (int i = 0; i < list.ids.GetSize(); ++i) {
        if (known.insert(list.ids[i]).second) unknown.push_back(std::to_string(list.ids[i]));
    }
    return unknown;
}

int set_values(const UXXmlWrapperBase& root, ValueList& list, const std::string& file) {
    UXXmlWrapperBase tree = root;
    int duplicate = 0;
    const int written = vctree_set_values_by_ids(&tree, &list.ids, &list.values, 0, &duplicate, 0,
                                                 nullptr, nullptr);
    if (written < 0) throw_refusal(written, duplicate, root, file);
    return written;
}

namespace {

ValueList values_of_document(UXXmlWrapperBase document, const std::string& file,
                             const std::string& hint) {
    if (tag_of(document) != "Settings") {
        throw Failure(kRefused, input_name(file),
                      "not a theme: its root is <" + visible(tag_of(document)) + ">", hint);
    }
    ValueList list;
    CStringUTF8 comment;
    vctree_get_theme(&document, &list.ids, &list.values, &comment, &list.labels);
    list.comment = to_string(comment);
    return list;
}

}  // namespace

ValueList read_saved_values(const std::string& file) {
    return values_of_document(open_tree(file), file,
                              "a theme begins with <Settings>; \"uxtree theme save\" writes one");
}

ValueList read_values(const std::string& file) {
    const std::string text = read_all(file);
    const std::size_t first = text.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    if (first == std::string::npos) throw not_values(file, "empty");
    if (text[first] == '[') return values_of_json(file, text.substr(first));
    if (text.substr(first).starts_with("id")) return values_of_csv(file, text.substr(first));
    UXXmlWrapperBase document;
    if (document.LoadFromMemory(text.data(), text.size()) == 0) {
        throw_refused_text(input_name(file), text);
    }
    return values_of_document(document, file,
                              "the tree comes first, then what \"uxtree values export\" wrote");
}

UXXmlWrapperBase saved_values(ValueList& list, const char* comment) {
    UXXmlWrapperBase document;
    document.CreateNew(0, nullptr);
    CWBOStringArray* const labels = list.labels.IsEmpty() ? nullptr : &list.labels;
    vctree_save_values_with_ids(&document, &list.ids, &list.values, comment, labels);
    return document;
}

Table table_of(const ValueList& list) {
    Table table({"id", "label", "value"});
    if (!list.places.empty()) table.columns.emplace_back("node");
    for (int i = 0; i < list.ids.GetSize(); ++i) {
        std::vector<Cell> row{static_cast<long long>(list.ids[i])};
        row.emplace_back(i < list.labels.GetSize() ? to_string(list.labels[i]) : std::string());
        row.emplace_back(to_string(list.values[i]));
        if (!list.places.empty()) row.emplace_back(list.places[static_cast<std::size_t>(i)]);
        table.add(std::move(row));
    }
    return table;
}

}  // namespace uxtool
