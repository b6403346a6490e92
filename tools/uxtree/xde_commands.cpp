// uxtree xde: descriptions of imported files.
#include <memory>
#include <string>

#include "uxtree/import/xde_paths.h"
#include "uxtree/import/xde_prepare.h"

#include "support/command.h"
#include "support/input.h"
#include "support/output.h"
#include "support/tree.h"

namespace uxtool {
namespace {

constexpr DWORD kPreview = 0x10000;  // a flag of XDE_prepare_XML

// ---- prepare ----------------------------------------------------------------------------------

struct PrepareOptions {
    std::string file;
    std::string output;
    bool preview = false;
};

int run_prepare(const PrepareOptions& options) {
    const NamedInput input(options.file);
    UXXmlWrapperBase holder;
    holder.CreateNew(0, "Prepared");
    const int result =
        uxtree_XDE_prepare_XML(&holder, input.path().c_str(), options.preview ? kPreview : 0);
    if (result == -2018) open_tree(input.path(), input_name(options.file));  // throws the reason
    if (result != 0) {
        throw Failure(kRefused, input_name(options.file),
                      fmt::format("cannot be prepared ({})", result));
    }
    UXXmlWrapperBase prepared;
    holder.FirstChild(&prepared);
    save_tree(prepared, options.output);
    return kSuccess;
}

const Command kPrepare{
    "xde prepare",
    "Turn the description of a file into a tree whose repeated structures are arrays",
    "uxtree xde prepare description.xml -o tree.xml\n"
    "uxtree xde prepare --preview description.xml   # a few elements of each array",
    runs<run_prepare>([](CLI::App& app, PrepareOptions& options) {
        add_file(app, options.file);
        app.add_flag("--preview", options.preview,
                     "Copy 5 elements of an array and 200 children of any other element");
        add_output(app, options.output);
    })};

// ---- paths ------------------------------------------------------------------------------------

struct PathsOptions {
    std::string file;
    std::string output;
};

int run_paths(const PathsOptions& options) {
    UXXmlWrapperBase root = open_tree(options.file);
    CWBOStringArray paths;
    VCTreeXDEDatNavPrepareStandardSourceTree(root, &paths, 0);
    Output out(options.output);
    for (const std::string& path : to_strings(paths)) out.print("{}\n", path);
    return out.finish();
}

const Command kPaths{"xde paths", "List the paths of all leaves of a tree, by label or tag",
                     "uxtree xde paths tree.xml\n"
                     "# names are joined by |; backslash and | in a name have a backslash before",
                     runs<run_paths>([](CLI::App& app, PathsOptions& options) {
                         add_file(app, options.file);
                         add_output(app, options.output);
                     })};

// ---- find -------------------------------------------------------------------------------------

struct FindOptions {
    std::string file;
    std::string path;
    std::string output;
    bool byTags = false;
    bool exact = false;
    bool asXml = false;
};

int run_find(const FindOptions& options) {
    UXXmlWrapperBase root = open_tree(options.file);
    CWBOStringArray path;
    vctree_XDE_treenode_path_string_to_array(&path, options.path.c_str(), true);
    UXXmlWrapperBase found;
    if (vctree_find_XDE_treenode_from_path_in_tree(&found, &root, &path, 0, options.byTags ? 1 : 0,
                                                   nullptr, options.exact ? 0 : 1) != 1) {
        throw Failure(kNothingFound, input_name(options.file), "no node at '" + options.path + "'",
                      "uxtree xde paths lists those of all leaves");
    }
    if (options.asXml) {
        save_tree(found, options.output);
        return kSuccess;
    }
    CStringUTF8 text;
    VCTreeXDEConvertTreeValToString(text, &found);
    Output out(options.output);
    out.print("{}\n", to_string(text));
    return out.finish();
}

const Command kFind{
    "xde find", "Find a node by its path and print its value",
    "uxtree xde find tree.xml 'Data|Points|Point_3'\n"
    "uxtree xde find tree.xml 'Data|Counts[0:9]'      # a selection is taken off\n"
    "uxtree xde find --xml tree.xml 'Data|Points'     # the branch itself",
    runs<run_find>([](CLI::App& app, FindOptions& options) {
        add_file(app, options.file);
        app.add_option("PATH", options.path, "Names from the root down, joined by |")->required();
        app.add_flag("-t,--tags", options.byTags, "Compare tags only below the root, no labels");
        app.add_flag("-e,--exact", options.exact, "Do not take selections in brackets off");
        app.add_flag("--xml", options.asXml, "Print the node as XML");
        add_output(app, options.output);
    })};

}  // namespace
}  // namespace uxtool
