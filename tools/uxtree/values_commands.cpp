// uxtree values, copy: values by identifier.
#include "uxtree/uxtree_Utils.h"

#include "support/command.h"
#include "support/input.h"
#include "support/output.h"
#include "support/selection.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"
#include "support/values.h"

namespace uxtool {
namespace {

// --- values list, values export ----------------------------------------------------------------

struct ValueListOptions {
    std::string file;
    std::string select;
    std::string output;
    std::string format;
};

int write_values(const ValueListOptions& options) {
    const UXXmlWrapperBase root = open_tree_to_select(options.file, options.select);
    ValueList list = collect_values(root, options.file);
    if (!options.select.empty()) {
        keep_values_of(root, Selection(options.select).elements(root, options.file), list);
    }
    if (list.ids.IsEmpty()) {
        note(input_name(options.file) + ": no node has a value and a DataID");
        return kNothingFound;
    }
    if (options.format == "xml") {
        save_tree(saved_values(list, nullptr), options.output);
        return kSuccess;
    }
    return print_table(options.output, table_of(list), options.format);
}

Action prepare_list(CLI::App& app, const char* standardFormat) {
    auto options = std::make_shared<ValueListOptions>();
    options->format = standardFormat;
    add_file(app, options->file);
    add_select(app, options->select);
    std::vector<std::string> formats = table_formats();
    formats.emplace_back("xml");
    add_format(app, options->format, formats);
    add_output(app, options->output);
    return [options] { return write_values(*options); };
}

const Command kListValues{"values list",
                          "List the values of a tree with their identifiers and labels",
                          "uxtree values list dialog.xml\n"
                          "uxtree values list dialog.xml --select \"//Fit//*\"   # of these nodes\n"
                          "uxtree values list -f json dialog.xml   # one object per value",
                          [](CLI::App& app) { return prepare_list(app, "text"); }};

const Command kExportValues{
    "values export", "Write the values of a tree as a document that can be set again",
    "uxtree values export dialog.xml -o values.xml\n"
    "uxtree values export -f csv dialog.xml -o values.csv   # for a spreadsheet; with\n"
    "# --csv-safe no text in it is a formula to one, but such texts then begin with '",
    [](CLI::App& app) { return prepare_list(app, "xml"); }};

// --- values import -----------------------------------------------------------------------------

struct ImportOptions {
    std::string file;
    std::string select;
    std::string values;
    EditTarget target;
};

int import_values(const ImportOptions& options) {
    ValueList list = read_values(options.values);
    UXXmlWrapperBase root = options.target.open(options.file);
    const std::vector<std::string> unknown = unknown_ids(root, list);
    if (!options.select.empty()) {
        keep_values_of(root, Selection(options.select).elements(root, options.file), list);
        if (list.ids.IsEmpty()) {
            throw Failure(kNothingFound, input_name(options.file),
                          "no value is for a node of '" + options.select + "'");
        }
    }
    const int written = set_values(root, list, options.file);
    options.target.save(root, options.file);
    note(counted(written, "value") + " written");
    if (!unknown.empty()) warn("no node has the identifier " + short_list(unknown));
    return kSuccess;
}

const Command kImportValues{
    "values import", "Set values into a tree by their identifiers",
    "uxtree values import dialog.xml values.csv -o changed.xml\n"
    "uxtree values import -i.bak dialog.xml values.xml   # the old file stays as dialog.xml.bak",
    runs<import_values>([](CLI::App& app, ImportOptions& options) {
        add_file(app, options.file);
        add_select(app, options.select);
        app.add_option("VALUES", options.values,
                       "What 'values export' wrote: xml, csv or json; - is standard input")
            ->required();
        options.target.add_options(app);
    })};

// --- copy --------------------------------------------------------------------------------------

struct CopyOptions {
    std::string from;
    std::string to;
    std::string by = "id";
    std::string match;
    std::string attribute;
    bool skipEmpty = false;
    bool all = false;
    EditTarget target;
};

int copy_by_id(UXXmlWrapperBase& from, UXXmlWrapperBase& to, const CopyOptions& options) {
    ValueList list = collect_values(from, options.from);
    if (list.ids.IsEmpty()) return 0;
    if (options.skipEmpty) {
        const int written =
            vctree_copy_values_by_id(&from, &to, 0, nullptr, nullptr, 0, nullptr, 0, 1, 0, 0);
        if (written >= 0) return written;
        if (written == kNoValues) return 0;
    }
    int duplicate = 0;
    const int written =
        vctree_set_values_by_ids(&to, &list.ids, &list.values, 0, &duplicate, 0, nullptr, nullptr);
    if (written >= 0) return written;
    throw_refusal(written, duplicate, to,
                  written == kDuplicateIdentifier ? options.from : options.to);
}

void copy_by_shape(UXXmlWrapperBase& from, UXXmlWrapperBase& to, const CopyOptions& options) {
    if (vctree_copy_values_between_homologous_trees(to, from, 0, nullptr, 0) == 0) return;
    throw Failure(kRefused, options.to, "fewer nodes than " + input_name(options.from),
                  "--by id copies between trees of different shapes");
}

int run_copy(const CopyOptions& options) {
    UXXmlWrapperBase from = open_tree(options.from);
    UXXmlWrapperBase to = options.target.open(options.to);
    std::string told;
    if (options.by == "id") {
        told = counted(copy_by_id(from, to, options), "value") + " written";
    } else if (options.by == "shape") {
        copy_by_shape(from, to, options);
    } else if (options.by == "tag") {
        told = counted(uxtree_copy_ids_by_tagname(&from, &to, true), "identifier") + " given";
    } else {
        uxtree_copy_values_to_attributes_by_attribute_matching(
            &from, &to, options.attribute.c_str(), options.match.c_str(), nullptr, 1,
            options.all ? 1 : 0, 1);
    }
    options.target.save(to, options.to);
    if (!told.empty()) note(told);
    return kSuccess;
}

const Command kCopy{
    "copy", "Copy values from one tree into another",
    "uxtree copy old.xml new.xml -o merged.xml        # by identifier\n"
    "uxtree copy --by shape old.xml new.xml -o new2.xml   # node by node, whatever the ids\n"
    "uxtree copy --by tag ids.xml plain.xml -i        # gives DataIDs to nodes of the same tag\n"
    "uxtree copy --by attr --match DataID --to-attr Show shown.xml dialog.xml -i",
    runs<run_copy>([](CLI::App& app, CopyOptions& options) {
        app.add_option("FROM", options.from, "The tree to copy from")->required();
        app.add_option("TO", options.to, "The tree to copy into")->required();
        app.add_option("--by", options.by,
                       "How nodes correspond: id, shape, tag (copies DataIDs of leaves) or attr "
                       "(writes values into attributes)")
            ->check(CLI::IsMember({"id", "shape", "tag", "attr"}))
            ->capture_default_str();
        app.add_flag("--skip-empty", options.skipEmpty, "By id: leave empty values out");
        app.add_option("--match", options.match, "By attr: the attribute to compare (DataID)");
        app.add_option("--to-attr", options.attribute, "By attr: the attribute to write (Show)");
        app.add_flag("--all", options.all, "By attr: write every match, not the first alone");
        options.target.add_options(app);
    })};

}  // namespace
}  // namespace uxtool
