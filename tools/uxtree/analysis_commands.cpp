// uxtree ranges, fitter, stats: what the trees of analyses hold.
#include "uxtree/uxtree_Utils.h"

#include "support/command.h"
#include "support/input.h"
#include "support/node_path.h"
#include "support/output.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

struct ResultOptions {
    std::string file;
    std::string at;
    std::string format = "text";
    std::string output;
};

using Fill = void (*)(UXXmlWrapperBase& root, Table& table);

// What a command does that shows one table about the node it is given.
Action show_table(CLI::App& app, std::vector<std::string> columns, Fill fill) {
    auto options = std::make_shared<ResultOptions>();
    add_file(app, options->file);
    add_at(app, options->at);
    add_format(app, options->format, table_formats());
    add_output(app, options->output);
    return [options, columns = std::move(columns), fill] {
        UXXmlWrapperBase root = open_node(options->file, options->at);
        Table table(columns);
        fill(root, table);
        return print_table(options->output, table, options->format,
                           table.rows.empty() ? kNothingFound : kSuccess);
    };
}

Cell attribute_cell(const UXXmlWrapperBase& node, const char* name) {
    return text_cell(attribute_of(node, name).value_or(""));
}

// --- ranges --------------------------------------------------------------------------------------

// "on", "off", "" without support; name and count behind the first two.
std::string auto_support(UXXmlWrapperBase& node) {
    CStringUTF8 name;
    int count = 0;
    const int mode = uxtree_get_auto_support(&node, &name, &count);
    if (mode == 0) return "";
    return fmt::format("{} {} {}", mode > 0 ? "on" : "off", to_string(name), count);
}

void add_sub_range(Table& table, long long number, const Cell& rangeTag, const Cell& repeat,
                   UXXmlWrapperBase& subRange) {
    table.add({number, rangeTag, repeat, tag_of(subRange), attribute_cell(subRange, "Label"),
               attribute_cell(subRange, "DataID"), text_cell(auto_support(subRange)),
               text_cell(value_of(subRange))});
}

void fill_range(Table& table, long long number, bool hierarchical, UXXmlWrapperBase& first) {
    UXXmlWrapperBase range;
    Cell tag;
    Cell repeat;
    if (hierarchical && first.GetParent(&range) != 0) {
        tag = tag_of(range);
        repeat = attribute_cell(range, "RepeatID");
    }
    VCSubRangeTreeIterator subRanges(first);
    UXXmlWrapperBase subRange;
    while (subRanges.Get(subRange) != 0) add_sub_range(table, number, tag, repeat, subRange);
}

void fill_ranges(UXXmlWrapperBase& root, Table& table) {
    VCRangeTreeIterator ranges(root);
    const bool hierarchical = ranges.IsHierarchical() != 0;
    long long number = 0;
    // A childless range of a hierarchical tree yields 0 without being the end.
    for (int left = root.GetNodeCount(); left > 0; --left) {
        UXXmlWrapperBase first;
        if (ranges.Get(first) != 0) {
            fill_range(table, ++number, hierarchical, first);
        } else if (hierarchical) {
            ++number;
        } else {
            break;
        }
    }
}

const Command kRanges{
    "ranges show", "Show the ranges and sub-ranges of a range tree",
    "uxtree ranges show dialog.xml --at InputData\n"
    "uxtree ranges show -f json ranges.xml",
    [](CLI::App& app) {
        return show_table(app,
                          {"range", "tag", "repeat", "sub-range", "label", "id", "auto", "value"},
                          fill_ranges);
    }};

// --- fitter --------------------------------------------------------------------------------------

std::string method_text(int method) {
    CStringUTF8 name;
    const int known =
        uxtree_fitter_get_weight_mth_info(method, &name, nullptr, nullptr, nullptr, nullptr);
    return known != 0 ? fmt::format("{} {}", method, to_string(name))
                      : fmt::format("{} (unknown)", method);
}

void add_weight(Table& table, const std::string& path, const char* form, UXXmlWrapperBase compact) {
    int method = 0;
    double a = 0;
    double b = 0;
    double c = 0;
    int usesData = 0;
    int usesA = 0;
    int usesC = 0;
    vctree_extract_weight_info(compact, "W", &method, &a, &b, &c);
    uxtree_fitter_get_weight_mth_info(method, nullptr, &usesData, &usesA, nullptr, &usesC);
    table.add({path, form, "method", method_text(method)});
    if (usesData != 0) table.add({path, form, "data", text_cell(value_of(compact))});
    if (usesA != 0) table.add({path, form, "a", a});
    if (usesA != 0) table.add({path, form, "b", b});
    if (usesC != 0) table.add({path, form, "c", c});
}

void add_expanded_weight(Table& table, const std::string& path, UXXmlWrapperBase& expanded) {
    UXXmlWrapperBase compact;
    compact.CreateNew(0, "W");
    if (vctree_fitter_data_weight_node_expanded_to_compact(compact, expanded) != 0) {
        add_weight(table, path, "expanded", compact);
    }
}

void add_parameter_lists(Table& table, const std::string& path, const UXXmlWrapperBase& params) {
    for_each_child(params, [&](UXXmlWrapperBase& list) {
        if (list.GetNodeCount() == 0) return;
        CWBOStringArray values;
        vctree_get_all_children_values_as_string_array(list, values);
        table.add({path, "settings", tag_of(list), join(to_strings(values), ", ")});
    });
}

void fill_fitter_node(const UXXmlWrapperBase& root, UXXmlWrapperBase node, Table& table) {
    constexpr int kSettingsId = 2900;
    UXXmlWrapperBase method;
    int id = 0;
    if (node.FindChild("WeightMethod", &method, 1) != 0) {
        add_expanded_weight(table, path_below(root, node), node);
    }
    if (node.HasProperty("WeightMethod", 0) != 0 &&
        vctree_extract_weight_info(node, nullptr, nullptr, nullptr, nullptr, nullptr) != 0) {
        add_weight(table, path_below(root, node), "compact", node);
    }
    if (node.GetDataID(id) != 0 && id == kSettingsId) {
        add_parameter_lists(table, path_below(root, node), node);
    }
}

void fill_fitter(UXXmlWrapperBase& root, Table& table) {
    walk(root,
         [&](const UXXmlWrapperBase& node, std::size_t) { fill_fitter_node(root, node, table); });
}

const Command kFitter{"fitter show", "Show the weights and parameter settings of a fitter's tree",
                      "uxtree fitter show fit.xml\n"
                      "uxtree fitter show -f csv --at Fit fit.xml",
                      [](CLI::App& app) {
                          return show_table(app, {"node", "form", "item", "value"}, fill_fitter);
                      }};

// --- statistics ----------------------------------------------------------------------------------

// Every value of a branch, by its path below top.
void add_values(Table& table, const std::string& where, const UXXmlWrapperBase& top,
                const UXXmlWrapperBase& branch) {
    walk(branch, [&](const UXXmlWrapperBase& node, std::size_t) {
        const std::string value = value_of(node);
        if (!value.empty()) table.add({where, path_below(top, node), value});
    });
}

void add_bin_choices(Table& table, UXXmlWrapperBase& root) {
    UXXmlWrapperBase bin;
    if (root.FindChild("Bin", &bin, 1) == 0) return;
    table.add({"settings", "bins", vctree_stats_is_bin_auto(root) != 0 ? "automatic" : "given"});
    table.add({"settings", "bins by",
               vctree_stats_is_by_intervals(root) != 0 ? "number of intervals" : "size"});
}

bool is_result(const UXXmlWrapperBase& node) {
    CStringUTF8 tag;
    node.GetTagName(tag);
    return tag.Left(6).CompareNoCase("Result") == 0;
}

void add_settings(Table& table, UXXmlWrapperBase& root) {
    add_bin_choices(table, root);
    for_each_child(root, [&](const UXXmlWrapperBase& child) {
        if (!is_result(child)) add_values(table, "settings", root, child);
    });
}

std::string result_place(const UXXmlWrapperBase& result, const tagPOINT& pos) {
    if (pos.x < 0 || pos.y < 0) return tag_of(result);
    return fmt::format("row {} column {}", pos.x + 1LL, pos.y + 1LL);
}

void fill_stats(UXXmlWrapperBase& root, Table& table) {
    add_settings(table, root);
    UXXmlWrapperBase result;
    tagPOINT pos{-1, -1};
    while (vctree_stats_enum_result_node(root, result, &pos) != 0) {
        add_values(table, result_place(result, pos), result, result);
    }
}

const Command kStats{"stats show", "Show the settings and results of statistics",
                     "uxtree stats show stats.xml\n"
                     "uxtree stats show -f json --at Statistics analysis.xml",
                     [](CLI::App& app) {
                         return show_table(app, {"where", "item", "value"}, fill_stats);
                     }};

}  // namespace
}  // namespace uxtool
