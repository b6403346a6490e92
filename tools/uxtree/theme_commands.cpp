// uxtree theme: settings kept in a file of their own.
#include <algorithm>

#include "uxtree/uxtree_Utils.h"

#include "support/command.h"
#include "support/input.h"
#include "support/output.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"
#include "support/values.h"

namespace uxtool {
namespace {

struct SaveOptions {
    std::string tree;
    std::string comment;
    std::string output;
};

// A theme with an identifier twice could never be applied.
void refuse_duplicates(const ValueList& list, const std::string& file) {
    std::vector<int> seen(list.ids.GetData(), list.ids.GetData() + list.ids.GetSize());
    std::sort(seen.begin(), seen.end());
    const auto twice = std::adjacent_find(seen.begin(), seen.end());
    if (twice != seen.end()) {
        throw_refusal(kDuplicateIdentifier, *twice, UXXmlWrapperBase(), file);
    }
}

int run_save(const SaveOptions& options) {
    ValueList list = collect_values(open_tree(options.tree), options.tree);
    if (list.ids.IsEmpty()) {
        throw Failure(kRefused, input_name(options.tree), "no values to save",
                      "only nodes with a DataID have values in a theme");
    }
    refuse_duplicates(list, options.tree);
    const UXXmlWrapperBase theme =
        saved_values(list, options.comment.empty() ? nullptr : options.comment.c_str());
    save_tree(theme, options.output);
    note(counted(list.ids.GetSize(), "value") + " saved");
    return kSuccess;
}

const Command kSave{
    "theme save", "Save the values of a tree as a theme",
    "uxtree theme save dialog.xml -o mine.xml --comment 'large print'",
    runs<run_save>([](CLI::App& app, SaveOptions& options) {
        add_file(app, options.tree);
        add_output(app, options.output);
        app.add_option("--comment", options.comment, "A text kept in the theme")->type_name("TEXT");
    })};

struct ThemeShowOptions {
    std::string theme;
    std::string output;
    std::string format = "text";
};

int run_show_theme(const ThemeShowOptions& options) {
    const ValueList list = read_saved_values(options.theme);
    Output out(options.output);
    if (options.format == "text" && !list.comment.empty()) {
        out.print("{}\n\n", out.palette().paint(Role::kHeading, visible(list.comment)));
    }
    write_table(out, table_of(list), options.format);
    return out.finish(list.ids.IsEmpty() ? kNothingFound : kSuccess);
}

const Command kShowTheme{
    "theme show", "Show what a theme holds",
    "uxtree theme show mine.xml\n"
    "uxtree theme show -f csv mine.xml",
    runs<run_show_theme>([](CLI::App& app, ThemeShowOptions& options) {
        app.add_option("THEME", options.theme, "The theme; - is standard input")->required();
        add_format(app, options.format, table_formats());
        add_output(app, options.output);
    })};

struct ApplyOptions {
    std::string theme;
    std::string tree;
    EditTarget target;
};

int run_apply(const ApplyOptions& options) {
    ValueList list = read_saved_values(options.theme);
    const UXXmlWrapperBase root = options.target.open(options.tree);
    const std::vector<std::string> unknown = unknown_ids(root, list);
    const int written = set_values(root, list, options.tree);
    options.target.save(root, options.tree);
    note(counted(written, "value") + " written");
    if (!unknown.empty()) warn("no node has the identifier " + short_list(unknown));
    return kSuccess;
}

const Command kApply{"theme apply", "Set the values of a theme into a tree",
                     "uxtree theme apply mine.xml dialog.xml -o changed.xml\n"
                     "uxtree theme apply mine.xml dialog.xml -i.bak",
                     runs<run_apply>([](CLI::App& app, ApplyOptions& options) {
                         app.add_option("THEME", options.theme, "The theme")->required();
                         app.add_option("TREE", options.tree, "The tree to change")->required();
                         options.target.add_options(app);
                     })};

}  // namespace
}  // namespace uxtool
