// uxtree edit: changing the nodes of files.
#include "edits.h"
#include "support/edit.h"

namespace uxtool {
namespace {

const Command kEdit{
    "edit", "Delete, set, insert, rename, sort, filter or move nodes of XML files",
    "uxtree edit books.xml --select \"//book[@lang='fr']\" delete   # nodes by a path\n"
    "uxtree edit books.xml --select '//book/@lang' delete          # attributes\n"
    "uxtree edit *.xml --select '//price[. > 100]' set 100 -i      # several files, in place\n"
    "uxtree edit books.xml --select //book/title rename name\n"
    "uxtree edit books.xml --select //book sort --by price --as number\n"
    "uxtree edit books.xml --select '//book[1]' insert '<book id=\"0\"/>' --before\n"
    "uxtree edit tree.xml delete -a Use -v 0 -r -n        # print what would go\n"
    "uxtree edit tree.xml -i.bak sort -a Order            # in place, keeping tree.xml.bak\n"
    "uxtree edit tree.xml --at Plots append new.xml --prefix Plot\n"
    "uxtree edit tree.xml filter --id 12 -a Label --find peak\n"
    "uxtree edit sort --help                              # the options of one edit",
    [](CLI::App& app) {
        Edit options = add_edit_options(app);
        add_removing_edits(app, options);
        add_writing_edits(app, options);
        add_placing_edits(app, options);
        add_sort(app, options);
        add_filter(app, options);
        options->hint = "uxtree edit --help lists delete, set, sort and the other edits";
        return [options] { return run_edit(*options); };
    }};

}  // namespace
}  // namespace uxtool
