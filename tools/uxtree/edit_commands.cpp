// uxtree edit, attr, names: changing a tree, and the names in it.
#include <algorithm>
#include <memory>
#include <utility>

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

// ---- what all edits share ---------------------------------------------------------------------

struct EditOptions {
    std::string file;
    std::string at;
    EditTarget target;
    std::string hint;  // for a call without an edit
    // Edits the branch below a node; yields what to tell the user, "" for nothing.
    std::function<std::string(UXXmlWrapperBase& node)> edit;
};

using Edit = std::shared_ptr<EditOptions>;

int run_edit(const EditOptions& options) {
    if (!options.edit) throw Failure(kUsage, "uxtree", "say what to do after FILE", options.hint);
    const UXXmlWrapperBase root = options.target.open(options.file);
    UXXmlWrapperBase node = node_at(root, options.at, options.file);
    const std::string told = options.edit(node);
    if (root.IsNodeValid() == 0) {
        throw Failure(kRefused, input_name(options.file), "the edit would remove the whole tree");
    }
    if (!told.empty()) note(told);
    options.target.save(root, options.file);
    return kSuccess;
}

Edit add_edit_options(CLI::App& app) {
    auto options = std::make_shared<EditOptions>();
    add_file(app, options->file);
    add_at(app, options->at);
    options->target.add_options(app);
    app.fallthrough();
    return options;
}

// Declares one kind of edit: setup adds its options to the subcommand and yields the work.
template <typename Setup>
void add_edit(CLI::App& app, const Edit& options, const char* name, const char* summary,
              Setup&& setup) {
    CLI::App* sub = app.add_subcommand(name, summary);
    auto work = setup(*sub);
    sub->callback([options, work] { options->edit = work; });
}

std::string removed(int count) {
    if (count < 0) throw Failure(kRefused, "uxtree", "a node could not be removed");
    return counted(count, "node") + " removed";
}

CLI::Option* add_attribute(CLI::App& app, std::string& name) {
    return app.add_option("-a,--attr", name, "The attribute")->type_name("NAME")->required();
}

// ---- edit: removing ---------------------------------------------------------------------------

void add_delete(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "delete", "Remove nodes whose attribute has a value", [](CLI::App& sub) {
        struct Options {
            std::string attribute;
            int value = 0;
            bool recursive = false;
            bool everywhere = false;
            std::string exempt;
            bool keepBranches = false;
        };
        auto o = std::make_shared<Options>();
        add_attribute(sub, o->attribute);
        sub.add_option("-v,--value", o->value, "Its integer value")->type_name("N")->required();
        sub.add_flag("-r,--recursive", o->recursive, "Below the first level as well");
        CLI::Option* all =
            sub.add_flag("--everywhere", o->everywhere, "On every level, without exceptions");
        sub.add_option("--exempt", o->exempt, "Spare nodes of the first level with this attribute")
            ->type_name("NAME")
            ->excludes(all);
        sub.add_flag("--keep-branches", o->keepBranches, "Spare branches of the first level")
            ->excludes(all);
        return [o](UXXmlWrapperBase& node) {
            const char* name = o->attribute.c_str();
            if (o->everywhere) {
                return removed(uxtree_remove_nodes_by_attribute(&node, name, o->value));
            }
            return removed(uxtree_delete_nodes_by_attribute(&node, name, o->value, o->recursive,
                                                            o->exempt.c_str(), o->keepBranches));
        };
    });
}

void add_keep(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "keep", "Remove nodes that lack an attribute", [](CLI::App& sub) {
        struct Options {
            std::string attribute;
            bool recursive = false;
            bool removeAttribute = false;
            bool keepBranches = false;
            bool wholeBranches = false;
        };
        auto o = std::make_shared<Options>();
        add_attribute(sub, o->attribute);
        sub.add_flag("-r,--recursive", o->recursive, "Enter branches, and judge them afterwards");
        sub.add_flag("--take-attr", o->removeAttribute, "Take the attribute from what stays");
        sub.add_flag("--keep-branches", o->keepBranches, "Keep branches that were emptied");
        sub.add_flag("--whole-branches", o->wholeBranches,
                     "The attribute protects the whole branch of its node");
        return [o](UXXmlWrapperBase& node) {
            return removed(uxtree_delete_nodes_by_missing_attribute(
                &node, o->attribute.c_str(), o->recursive, o->removeAttribute, o->keepBranches,
                o->wholeBranches));
        };
    });
}

void add_prune_and_hide(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "prune", "Remove empty leaves", [](CLI::App& sub) {
        auto recursive = std::make_shared<bool>(false);
        sub.add_flag("-r,--recursive", *recursive, "In branches too, and branches left empty");
        return [recursive](UXXmlWrapperBase& node) {
            const int kept = uxtree_remove_empty_child_nodes(&node, *recursive);
            return fmt::format("{} kept", counted(kept, "node"));
        };
    });
    add_edit(app, edit, "hide", "Hide empty leaves", [](CLI::App& sub) {
        auto recursive = std::make_shared<bool>(false);
        auto showFilled = std::make_shared<bool>(false);
        sub.add_flag("-r,--recursive", *recursive, "In branches too");
        sub.add_flag("--show-filled", *showFilled, "Show leaves that have a value");
        return [recursive, showFilled](UXXmlWrapperBase& node) {
            const int hidden = uxtree_hide_empty_nodes(&node, *recursive, *showFilled);
            return fmt::format("{} hidden", counted(hidden, "node"));
        };
    });
}

void add_strip(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "strip", "Remove all attributes but DataID", [](CLI::App&) {
        return [](UXXmlWrapperBase& node) {
            uxtree_polish_tree_keep_DataID(&node);
            return std::string();
        };
    });
}

// ---- edit: filtering --------------------------------------------------------------------------

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

std::string run_filter(UXXmlWrapperBase& node, const FilterOptions& o, bool finds, bool matches) {
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
    return "";
}

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
            return [o, find, match](UXXmlWrapperBase& node) {
                return run_filter(node, *o, find->count() > 0, match->count() > 0);
            };
        });
}

// ---- edit: order, copies, names ---------------------------------------------------------------

// The library makes the copy there and removes it with its source.
void refuse_move_into_itself(UXXmlWrapperBase& top, int from, int to, unsigned int flags) {
    UXXmlWrapperBase source;
    UXXmlWrapperBase place;
    uxtree_get_node_ex(&top, &source, from, flags, nullptr);
    uxtree_get_node_ex(&top, &place, to, flags, nullptr);
    if (source.IsNodeValid() == 0 || place == source) return;
    while (place.IsNodeValid() != 0 && place.GetParent(&place) != 0) {
        if (!(place == source)) continue;
        throw Failure(
            kRefused, "move",
            fmt::format("number {} is inside the branch of number {}: it would be lost", to, from));
    }
}

// Children whose attribute is no integer keep their places. Says how many of them there are.
std::string tell_unsorted(const UXXmlWrapperBase& node, const std::string& attribute) {
    int others = 0;
    for_each_child(node, [&](const UXXmlWrapperBase& child) {
        int number = 0;
        if (child.GetPropertyValue(attribute.c_str(), number, 0) == 0) ++others;
    });
    if (others == 0) return "";
    if (others == node.GetNodeCount()) {
        throw Failure(kRefused, "sort", "no child has an integer in '" + attribute + "'",
                      "sorting is by integers alone");
    }
    return fmt::format("{} of {} keep their places: '{}' is missing there or no integer", others,
                       counted(node.GetNodeCount(), "node"), attribute);
}

void add_move_and_sort(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "move", "Move a node to another place, counted in document order",
             [](CLI::App& sub) {
                 auto from = std::make_shared<int>(0);
                 auto to = std::make_shared<int>(0);
                 auto branches = std::make_shared<bool>(false);
                 sub.add_option("--from", *from, "Number of the node, from 0")
                     ->type_name("N")
                     ->required();
                 sub.add_option("--to", *to, "Number of the place; -1 is the end of the tree")
                     ->type_name("N")
                     ->required();
                 sub.add_flag("--branches", *branches, "Count only nodes with children");
                 return [from, to, branches](UXXmlWrapperBase& node) -> std::string {
                     const unsigned int flags = *branches ? 0x20000U : 0U;
                     refuse_move_into_itself(node, *from, *to, flags);
                     if (uxtree_move_node(&node, *from, *to, flags, nullptr) == 1) return "";
                     throw Failure(kNothingFound, "move", "there is no node with that number",
                                   "numbers start at 0 below the root, or below --at");
                 };
             });
    add_edit(app, edit, "sort", "Sort the children by an integer attribute", [](CLI::App& sub) {
        auto attribute = std::make_shared<std::string>();
        auto descending = std::make_shared<bool>(false);
        add_attribute(sub, *attribute);
        sub.add_flag("-d,--descending", *descending, "The largest first");
        return [attribute, descending](UXXmlWrapperBase& node) -> std::string {
            if (node.GetNodeCount() < 2) return "there are not two children to sort";
            const std::string told = tell_unsorted(node, *attribute);
            uxtree_sort_children_by_int_attribute(&node, attribute->c_str(), !*descending);
            return told;
        };
    });
}

void add_append_and_copy(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "append", "Append the children of another tree", [](CLI::App& sub) {
        auto source = std::make_shared<std::string>();
        auto prefix = std::make_shared<std::string>();
        sub.add_option("SOURCE", *source, "The other tree")->required()->type_name("");
        sub.add_option("--prefix", *prefix, "Only children whose tags start with this")
            ->type_name("TEXT");
        return [source, prefix](UXXmlWrapperBase& node) {
            UXXmlWrapperBase other = open_tree(*source);
            const int next = uxtree_append_children(&node, &other, prefix->c_str());
            return next > 0 ? fmt::format("the next ID is {}", next) : std::string();
        };
    });
    add_edit(app, edit, "copy", "Copy what has values from another tree", [](CLI::App& sub) {
        auto source = std::make_shared<std::string>();
        auto skip = std::make_shared<std::vector<std::string>>();
        sub.add_option("SOURCE", *source, "The other tree")->required()->type_name("");
        sub.add_option("--skip", *skip, "Leave out branches with this attribute")
            ->type_name("NAME")
            ->allow_extra_args(false);
        return [source, skip](UXXmlWrapperBase& node) {
            UXXmlWrapperBase other = open_tree(*source);
            auto names = script_texts(*skip);
            const int kept = uxtree_copy_with_skipping(&node, &other, &names, 0);
            if (kept < 0) throw Failure(kRefused, "copy", "the tree could not be copied");
            return fmt::format("{} copied", counted(kept, "branch"));
        };
    });
}

void add_rename_and_add(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "rename", "Give the root, or the node of --at, another tag",
             [](CLI::App& sub) {
                 auto tag = std::make_shared<std::string>();
                 auto adapt = std::make_shared<bool>(false);
                 sub.add_option("TAG", *tag, "The new tag")->required()->type_name("");
                 sub.add_flag("--adapt", *adapt, "Make a valid tag of any text");
                 return [tag, adapt](UXXmlWrapperBase& node) -> std::string {
                     CStringUTF8 name = tag->c_str();
                     if (*adapt) uxtree_adapt_for_tagname(&name);
                     if (VCTreeSetTagName(&node, name) == 1) return "";
                     throw Failure(kRefused, "rename", "'" + *tag + "' is no element name",
                                   "--adapt makes one of it");
                 };
             });
    add_edit(app, edit, "add", "Add numbered children with values", [](CLI::App& sub) {
        auto prefix = std::make_shared<std::string>();
        auto values = std::make_shared<std::vector<double>>();
        sub.add_option("PREFIX", *prefix, "Start of the tags")->required()->type_name("");
        sub.add_option("VALUE", *values, "Numbers, one for each child")->required()->type_name("");
        return [prefix, values](UXXmlWrapperBase& node) {
            UXScriptArray<CArray<double, double>> list;
            for (const double value : *values) list.array().Add(value);
            const int before = node.GetNodeCount();
            uxtree_check_add_all_enumerated_nodes(&node, prefix->c_str(), &list);
            if (node.GetNodeCount() == before && !values->empty()) {
                throw Failure(kRefused, "add", "'" + *prefix + "1' is no element name");
            }
            return std::string();
        };
    });
}

const Command kEdit{
    "edit", "Delete, filter, sort, move, append or rename nodes of a tree",
    "uxtree edit tree.xml delete -a Use -v 0 -r -n        # print what would go\n"
    "uxtree edit tree.xml -i.bak sort -a Order            # in place, keeping tree.xml.bak\n"
    "uxtree edit tree.xml prune -r -o small.xml\n"
    "uxtree edit tree.xml --at Plots append new.xml --prefix Plot\n"
    "uxtree edit tree.xml filter --id 12 -a Label --find peak\n"
    "uxtree edit tree.xml sort --help                     # the options of one edit",
    [](CLI::App& app) {
        Edit options = add_edit_options(app);
        add_delete(app, options);
        add_keep(app, options);
        add_prune_and_hide(app, options);
        add_filter(app, options);
        add_move_and_sort(app, options);
        add_append_and_copy(app, options);
        add_rename_and_add(app, options);
        add_strip(app, options);
        options->hint = "uxtree edit --help lists delete, keep, sort and the other edits";
        return [options] { return run_edit(*options); };
    }};

// ---- attr -------------------------------------------------------------------------------------

int print_attributes(const EditOptions& options, const std::string& name, bool direct,
                     const std::string& format) {
    UXXmlWrapperBase node = open_node(options.file, options.at);
    CWBOStringArray tags;
    CWBOStringArray values;
    vctree_get_node_names(&node, &tags, direct);
    vctree_get_attributes(&node, &values, name.c_str(), direct);
    Table table({"tag", name});
    for (int i = 0; i < tags.GetSize(); ++i) {
        if (values[i].IsEmpty()) continue;
        table.add({to_string(tags[i]), to_string(values[i])});
    }
    Output out("");
    if (table.rows.empty()) {
        note("no node has the attribute '" + name + "'");
        return out.finish(kNothingFound);
    }
    write_table(out, table, format);
    return out.finish();
}

std::string changed(int count) {
    if (count < 0) throw Failure(kRefused, "uxtree", "the attribute could not be changed");
    return counted(count, "attribute") + " changed";
}

CLI::Option* add_name(CLI::App& app, std::string& name) {
    return app.add_option("NAME", name, "The attribute")->required()->type_name("");
}

struct SetOptions {
    std::string name;
    std::string value;
    std::vector<int> ids;
    std::string key;
    bool childrenOnly = false;
    bool branchesOnly = false;
};

std::string run_set(UXXmlWrapperBase& node, const SetOptions& o) {
    if (o.ids.empty()) {
        uxtree_set_attribute_to_all_nodes(&node, o.name.c_str(), o.value.c_str(), o.childrenOnly,
                                          o.branchesOnly);
        return "";
    }
    CArray<int, int> ids;
    for (const int id : o.ids) ids.Add(id);
    const std::string key = o.key.empty() ? "DataID" : o.key;
    CArray<int, int> carried;
    VCTreeAttributeValues(&node, key.c_str(), 0, &carried, 0, 0);
    const int* const end = carried.GetData() + carried.GetSize();
    const auto set = std::count_if(static_cast<const int*>(carried.GetData()), end, [&](int id) {
        return std::find(o.ids.begin(), o.ids.end(), id) != o.ids.end();
    });
    VCTreeSetAttributes(&node, &ids, o.value.c_str(), o.name.c_str(), key.c_str(), true);
    return counted(set, "node") + " set";
}

void add_attr_set(CLI::App& app, const Edit& edit) {
    add_edit(
        app, edit, "set", "Set an attribute on all nodes, or on those with an identifier",
        [](CLI::App& sub) {
            auto o = std::make_shared<SetOptions>();
            add_name(sub, o->name);
            sub.add_option("VALUE", o->value, "Its new text")->required()->type_name("");
            CLI::Option* ids = sub.add_option("--ids", o->ids, "Only nodes with these identifiers")
                                   ->type_name("N");
            sub.add_option("--key", o->key, "Attribute of the identifiers (DataID)")
                ->type_name("NAME")
                ->needs(ids);
            sub.add_flag("--children", o->childrenOnly, "Only the direct children")->excludes(ids);
            sub.add_flag("--branches", o->branchesOnly, "Only nodes with children")->excludes(ids);
            return [o](UXXmlWrapperBase& node) { return run_set(node, *o); };
        });
}

// What is put aside and brought back is an integer: another text would become 0.
void require_integers(const UXXmlWrapperBase& top, const std::string& name) {
    walk(top, [&](const UXXmlWrapperBase& node, std::size_t) {
        int number = 0;
        const auto text = attribute_of(node, name.c_str());
        if (!text || UXParseInt(text->c_str(), number)) return;
        throw Failure(kRefused, "uxtree",
                      fmt::format("'{}' of <{}> is no integer: \"{}\"", name, tag_of(node), *text),
                      "only integers can be put aside; nothing was changed");
    });
}

void add_attr_changes(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "remove", "Remove an attribute below the root", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>();
        auto self = std::make_shared<bool>(false);
        add_name(sub, *name);
        sub.add_flag("--self", *self, "From the root, or the node of --at, too");
        return [name, self](UXXmlWrapperBase& node) {
            return changed(uxtree_remove_attribute(&node, name->c_str(), *self));
        };
    });
    add_edit(app, edit, "store", "Put an integer attribute aside", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>();
        add_name(sub, *name);
        return [name](UXXmlWrapperBase& node) {
            require_integers(node, *name);
            return changed(uxtree_store_attribute(&node, name->c_str()));
        };
    });
    add_edit(app, edit, "restore", "Bring back what was put aside", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>();
        add_name(sub, *name);
        return [name](UXXmlWrapperBase& node) {
            require_integers(node, "StorePrefix" + *name);
            return changed(uxtree_restore_attribute(&node, name->c_str()));
        };
    });
    add_edit(app, edit, "bits", "Set and clear bits of an integer attribute", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>();
        auto set = std::make_shared<unsigned int>(0);
        auto clear = std::make_shared<unsigned int>(0);
        add_name(sub, *name);
        sub.add_option("--set", *set, "Bits to set; they win")->type_name("N");
        sub.add_option("--clear", *clear, "Bits to clear")->type_name("N");
        return [name, set, clear](UXXmlWrapperBase& node) -> std::string {
            if (uxtree_modify_attribute(&node, name->c_str(), *set, *clear)) return "";
            throw Failure(kRefused, "bits", "'" + *name + "' is no attribute name");
        };
    });
}

const Command kAttr{
    "attr", "Read, set, remove, put aside and bring back an attribute over a tree",
    "uxtree attr tree.xml get Label\n"
    "uxtree attr tree.xml set Show 0 --ids 12 13 -i       # on the nodes with these DataIDs\n"
    "uxtree attr tree.xml remove OldValue --self -n       # print what would change\n"
    "uxtree attr tree.xml store Use -o stored.xml",
    [](CLI::App& app) {
        Edit options = add_edit_options(app);
        auto name = std::make_shared<std::string>();
        auto direct = std::make_shared<bool>(false);
        auto format = std::make_shared<std::string>("text");
        CLI::App* get = app.add_subcommand("get", "Print an attribute of the nodes that have it");
        add_name(*get, *name);
        get->add_flag("--children", *direct, "Only of the direct children");
        add_format(*get, *format, table_formats());
        add_attr_set(app, options);
        add_attr_changes(app, options);
        options->hint = "uxtree attr --help lists get, set, remove and the others";
        return [options, name, direct, format, get] {
            if (get->parsed()) return print_attributes(*options, *name, *direct, *format);
            return run_edit(*options);
        };
    }};

// ---- names ------------------------------------------------------------------------------------

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
bool next_name(UXXmlWrapperBase& node, const NamesOptions& options, CStringUTF8& name) {
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
    if (next_name(node, options, name)) {
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
    [](CLI::App& app) {
        auto options = std::make_shared<NamesOptions>();
        add_file(app, options->file);
        add_at(app, options->at);
        app.add_flag("--children", options->direct, "Only of the direct children");
        CLI::Option* column = app.add_flag("--next", options->nextColumn,
                                           "The next free column letter among the children");
        CLI::Option* number =
            app.add_flag("--next-numbered", options->nextNumber,
                         "The next free numbered name of the first child's family")
                ->excludes(column);
        app.add_option("--free", options->free, "This name, or with the first free number")
            ->type_name("PREFIX")
            ->excludes(column)
            ->excludes(number);
        add_output(app, options->output);
        return [options] { return run_names(*options); };
    }};

}  // namespace
}  // namespace uxtool
