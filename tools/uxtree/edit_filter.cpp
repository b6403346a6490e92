// uxtree edit filter: of the nodes with one DataID those that pass a test.
#include "uxtree/uxtree_Utils.h"

#include "edits.h"
#include "support/tree.h"

namespace uxtool {
namespace {

struct FilterOptions {
    int id = 0;
    std::string attribute;
    std::string find;
    std::string match;
    bool caseSensitive = false;
    bool atStart = false;
    int valueId = 0;
    std::vector<std::string> any;
    std::vector<std::string> all;
    int exceptId = 0;
    std::vector<std::string> exceptAny;
    std::vector<std::string> exceptAll;
};

Told run_filter(UXXmlWrapperBase& node, const FilterOptions& o, bool finds, bool matches) {
    if (finds) {
        uxtree_filter_by_attrib_find(&node, o.id, o.attribute.c_str(), o.find.c_str(),
                                     o.caseSensitive, o.atStart);
    } else if (matches) {
        uxtree_filter_by_attrib_match(&node, o.id, o.attribute.c_str(), o.match.c_str(),
                                      o.caseSensitive);
    } else {
        auto listA = script_texts(o.all.empty() ? o.any : o.all);
        auto listB = script_texts(o.exceptAll.empty() ? o.exceptAny : o.exceptAll);
        uxtree_filter(&node, o.id, o.all.empty() ? 1 : 0, o.valueId, &listA,
                      o.exceptAll.empty() ? 1 : 2, o.exceptId, &listB);
    }
    return {};
}

}  // namespace

void add_filter(CLI::App& app, const Edit& edit) {
    add_edit(
        app, edit, "filter", "Keep of the nodes with one DataID those that pass a test",
        [](CLI::App& sub) {
            auto o = std::make_shared<FilterOptions>();
            sub.add_option("--id", o->id, "DataID of the nodes to test")
                ->type_name("N")
                ->required();
            CLI::Option* attribute =
                sub.add_option("-a,--attr", o->attribute, "Test this attribute")->type_name("NAME");
            CLI::Option* find =
                sub.add_option("--find", o->find, "The attribute must hold this text")
                    ->type_name("TEXT")
                    ->needs(attribute);
            CLI::Option* match =
                sub.add_option("--match", o->match, "The attribute must match this pattern")
                    ->type_name("PATTERN")
                    ->needs(attribute)
                    ->excludes(find);
            sub.add_flag("-c,--case", o->caseSensitive, "Case counts");
            sub.add_flag("--start", o->atStart, "With --find: at the start")->needs(find);
            sub.add_option("--value-id", o->valueId, "Test values below, of this DataID")
                ->type_name("N")
                ->excludes(attribute);
            CLI::Option* any =
                sub.add_option("--any", o->any, "One of them must be there")->type_name("TEXT");
            sub.add_option("--all", o->all, "All must be there")->type_name("TEXT")->excludes(any);
            sub.add_option("--except-id", o->exceptId, "Exclude by values of this DataID")
                ->type_name("N")
                ->excludes(attribute);
            CLI::Option* notAny =
                sub.add_option("--except-any", o->exceptAny, "None of them may be there")
                    ->type_name("TEXT");
            sub.add_option("--except-all", o->exceptAll, "Not all of them may be there")
                ->type_name("TEXT")
                ->excludes(notAny);
            return on_each([o, find, match](UXXmlWrapperBase& node) {
                return run_filter(node, *o, find->count() > 0, match->count() > 0);
            });
        });
}

}  // namespace uxtool
