// uxtree names: the names in a tree.
#include "uxtree/uxtree_Utils.h"

#include "support/command.h"
#include "support/input.h"
#include "support/node_path.h"
#include "support/output.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

struct NamesOptions {
    std::string file;
    std::string output;
    std::string at;
    bool direct = false;
    bool nextColumn = false;
    bool nextNumber = false;
    std::string free;
};

// The one name that was asked for; false when all are to be listed.
bool asked_name(UXXmlWrapperBase& node, const NamesOptions& options, CStringUTF8& name) {
    if (options.nextColumn) {
        uxtree_get_next_enum_tag_name(&node, &name, 0);
    } else if (options.nextNumber) {
        if (uxtree_get_next_enum_tag_name(&node, &name, 1) < 0) {
            throw Failure(kNothingFound, "names", "the first child's tag ends in no number");
        }
    } else if (!options.free.empty()) {
        uxtree_get_enum_node_name(&node, &name, options.free.c_str());
    } else {
        return false;
    }
    return true;
}

int run_names(const NamesOptions& options) {
    UXXmlWrapperBase node = open_node(options.file, options.at);
    Output out(options.output);
    CStringUTF8 name;
    if (asked_name(node, options, name)) {
        out.print("{}\n", to_string(name));
        return out.finish();
    }
    CWBOStringArray names;
    vctree_get_node_names(&node, &names, options.direct);
    for (const std::string& tag : to_strings(names)) out.print("{}\n", visible(tag));
    return out.finish(names.IsEmpty() ? kNothingFound : kSuccess);
}

const Command kNames{
    "names", "Print the tags of a tree, or the next free one",
    "uxtree names tree.xml\n"
    "uxtree names tree.xml --at Columns --next          # A, B, ..., Z, AA, ...\n"
    "uxtree names tree.xml --at Ranges --next-numbered  # Range1, Range2, ...\n"
    "uxtree names tree.xml --free Plot",
    runs<run_names>([](CLI::App& app, NamesOptions& options) {
        add_file(app, options.file);
        add_at(app, options.at);
        app.add_flag("--children", options.direct, "Only of the direct children");
        CLI::Option* column = app.add_flag("--next", options.nextColumn,
                                           "The next free column letter among the children");
        CLI::Option* number =
            app.add_flag("--next-numbered", options.nextNumber,
                         "The next free numbered name of the first child's family")
                ->excludes(column);
        app.add_option("--free", options.free, "This name, or with the first free number")
            ->type_name("PREFIX")
            ->excludes(column)
            ->excludes(number);
        add_output(app, options.output);
    })};

}  // namespace
}  // namespace uxtool
