// uxtree attr: an attribute over a tree, or of selected nodes.
#include <algorithm>

#include "uxtree/uxtree_Utils.h"

#include "support/edit.h"
#include "support/input.h"
#include "support/node_path.h"
#include "support/selection.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

// ---- get --------------------------------------------------------------------------------------

struct GetOptions {
    std::string name;
    bool direct = false;
    std::string format = "text";
};

void add_selected_rows(Table& table, const UXXmlWrapperBase& root, const std::string& file,
                       const Selection& selection, const std::string& name) {
    const UXSelected selected = selection.run(root, file);
    for (std::size_t i = 0; i < selected.size(); ++i) {
        if (selected.kind(i) != UXSelectedKind::kElement) continue;
        const UXXmlWrapperBase node = selected.node(i);
        const auto value = attribute_of(node, name.c_str());
        if (value) table.add({tag_of(node), *value});
    }
}

void add_rows_below(Table& table, UXXmlWrapperBase node, const GetOptions& get) {
    CWBOStringArray tags;
    CWBOStringArray values;
    vctree_get_node_names(&node, &tags, get.direct);
    vctree_get_attributes(&node, &values, get.name.c_str(), get.direct);
    for (int i = 0; i < tags.GetSize(); ++i) {
        if (!values[i].IsEmpty()) table.add({to_string(tags[i]), to_string(values[i])});
    }
}

int print_attributes(const EditOptions& options, const GetOptions& get) {
    if (options.files.size() != 1) throw Failure(kUsage, "attr get", "one FILE, please");
    const std::string& file = options.files[0];
    Table table({"tag", get.name});
    const UXXmlWrapperBase root = open_tree_to_select(file, options.select);
    if (options.select.empty()) {
        add_rows_below(table, node_at(root, options.at, file), get);
    } else {
        add_selected_rows(table, root, file, Selection(options.select), get.name);
    }
    if (!table.rows.empty()) return print_table("", table, get.format);
    note(options.select.empty()
             ? "no node below has the attribute '" + get.name + "'; --select /* is about the root"
             : "no selected node has the attribute '" + get.name + "'");
    return kNothingFound;
}

// ---- changes ----------------------------------------------------------------------------------

// Work on each selected node alone, or else on the branch of the node of --at.
EditWork alone_or_branch(std::function<Told(UXXmlWrapperBase&)> alone,
                         std::function<Told(UXXmlWrapperBase&)> branch) {
    return [each = on_each(std::move(alone)), whole = on_each(std::move(branch))](
               EditedNodes& nodes) { return nodes.selected ? each(nodes) : whole(nodes); };
}

Told changed(int count) {
    return {count, "attribute", "changed"};
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

Told set_on_branch(UXXmlWrapperBase& node, const SetOptions& o) {
    if (o.ids.empty()) {
        uxtree_set_attribute_to_all_nodes(&node, o.name.c_str(), o.value.c_str(), o.childrenOnly,
                                          o.branchesOnly);
        return {};
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
    return {set, "node", "set"};
}

Told set_alone(UXXmlWrapperBase& node, const SetOptions& o) {
    if (!o.ids.empty() || o.childrenOnly || o.branchesOnly) {
        throw Failure(kUsage, "attr set", "--select says which nodes, and so do these options",
                      "a condition such as [@DataID='12'] says it in the path");
    }
    if (node.SetPropertyValue(o.name.c_str(), CStringUTF8(o.value.c_str())) == 0) {
        throw Failure(kRefused, "attr set", "'" + o.name + "' is no attribute name");
    }
    return {1, "node", "set"};
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
            return alone_or_branch([o](UXXmlWrapperBase& node) { return set_alone(node, *o); },
                                   [o](UXXmlWrapperBase& node) { return set_on_branch(node, *o); });
        });
}

// What is put aside and brought back is an integer: another text would become 0.
void require_integer(const UXXmlWrapperBase& node, const std::string& name) {
    int number = 0;
    const auto text = attribute_of(node, name.c_str());
    if (!text || UXParseInt(text->c_str(), number)) return;
    throw Failure(kRefused, "uxtree",
                  fmt::format("'{}' of <{}> is no integer: \"{}\"", name, tag_of(node), *text),
                  "only integers can be put aside; nothing was changed");
}

void require_integers(const UXXmlWrapperBase& top, const std::string& name) {
    walk(top, [&](const UXXmlWrapperBase& node, std::size_t) { require_integer(node, name); });
}

// What storing and restoring do with a branch, for one node.
Told move_integer(UXXmlWrapperBase& node, const std::string& from, const std::string& to) {
    require_integer(node, from);
    int number = 0;
    if (node.GetPropertyValue(from.c_str(), number, 0) == 0) return changed(0);
    node.SetPropertyValue(to.c_str(), number);
    node.RemoveProperty(from.c_str());
    return changed(1);
}

void add_attr_remove(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "remove", "Remove an attribute below the root", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>();
        auto self = std::make_shared<bool>(false);
        add_name(sub, *name);
        sub.add_flag("--self", *self, "From the root, or the node of --at, too");
        return alone_or_branch(
            [name](UXXmlWrapperBase& node) {
                const bool had = node.HasProperty(name->c_str(), 0) != 0;
                node.RemoveProperty(name->c_str());
                return changed(had ? 1 : 0);
            },
            [name, self](UXXmlWrapperBase& node) {
                return changed(uxtree_remove_attribute(&node, name->c_str(), *self));
            });
    });
}

void add_attr_store(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "store", "Put an integer attribute aside", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>();
        add_name(sub, *name);
        return alone_or_branch(
            [name](UXXmlWrapperBase& node) {
                return move_integer(node, *name, "StorePrefix" + *name);
            },
            [name](UXXmlWrapperBase& node) {
                require_integers(node, *name);
                return changed(uxtree_store_attribute(&node, name->c_str()));
            });
    });
    add_edit(app, edit, "restore", "Bring back what was put aside", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>();
        add_name(sub, *name);
        return alone_or_branch(
            [name](UXXmlWrapperBase& node) {
                return move_integer(node, "StorePrefix" + *name, *name);
            },
            [name](UXXmlWrapperBase& node) {
                require_integers(node, "StorePrefix" + *name);
                return changed(uxtree_restore_attribute(&node, name->c_str()));
            });
    });
}

void add_attr_bits(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "bits", "Set and clear bits of an integer attribute", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>();
        auto set = std::make_shared<unsigned int>(0);
        auto clear = std::make_shared<unsigned int>(0);
        add_name(sub, *name);
        sub.add_option("--set", *set, "Bits to set; they win")->type_name("N");
        sub.add_option("--clear", *clear, "Bits to clear")->type_name("N");
        return on_each([name, set, clear](UXXmlWrapperBase& node) -> Told {
            if (uxtree_modify_attribute(&node, name->c_str(), *set, *clear)) return {};
            throw Failure(kRefused, "bits", "'" + *name + "' is no attribute name");
        });
    });
}

const Command kAttr{
    "attr", "Read, set, remove, put aside and bring back an attribute over a tree",
    "uxtree attr tree.xml get Label\n"
    "uxtree attr books.xml --select \"//book[@lang='fr']\" set seen 1   # on these nodes alone\n"
    "uxtree attr tree.xml set Show 0 --ids 12 13 -i       # on the nodes with these DataIDs\n"
    "uxtree attr tree.xml remove OldValue --self -n       # print what would change\n"
    "uxtree attr tree.xml store Use -o stored.xml",
    [](CLI::App& app) {
        Edit options = add_edit_options(app);
        auto get = std::make_shared<GetOptions>();
        CLI::App* sub = app.add_subcommand("get", "Print an attribute of the nodes that have it");
        options->names.emplace_back("get");
        add_name(*sub, get->name);
        sub->add_flag("--children", get->direct, "Only of the direct children");
        add_format(*sub, get->format, table_formats());
        add_attr_set(app, options);
        add_attr_remove(app, options);
        add_attr_store(app, options);
        add_attr_bits(app, options);
        options->hint = "uxtree attr --help lists get, set, remove and the others";
        return [options, get, sub] {
            if (sub->parsed()) return print_attributes(*options, *get);
            return run_edit(*options);
        };
    }};

}  // namespace
}  // namespace uxtool
