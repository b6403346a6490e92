// uxtree edit delete, keep, prune, hide, strip: fewer nodes and attributes.
#include "uxtree/uxtree_Utils.h"

#include "edits.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

struct DeleteOptions {
    std::string attribute;
    int value = 0;
    bool recursive = false;
    bool everywhere = false;
    std::string exempt;
    bool keepBranches = false;
};

// What is below a node that goes has gone with it.
Told delete_items(EditedNodes& nodes) {
    for (EditedItem& item : nodes.items) {
        switch (item.kind) {
            case UXSelectedKind::kAttribute:
                item.node.RemoveProperty(item.attribute.c_str());
                break;
            case UXSelectedKind::kText:
                item.node.ResetValue();
                break;
            default:
                item.node.RemoveNode();
        }
    }
    return {static_cast<long long>(nodes.items.size()), noun_of(nodes.items[0].kind), "removed"};
}

Told delete_by_attribute(UXXmlWrapperBase& node, const DeleteOptions& o) {
    const char* name = o.attribute.c_str();
    const int count = o.everywhere
                          ? uxtree_remove_nodes_by_attribute(&node, name, o.value)
                          : uxtree_delete_nodes_by_attribute(&node, name, o.value, o.recursive,
                                                             o.exempt.c_str(), o.keepBranches);
    return {count, "node", "removed"};
}

void add_delete(CLI::App& app, const Edit& edit) {
    add_edit(
        app, edit, "delete", "Remove the selected nodes, or those whose attribute has a value",
        [](CLI::App& sub) {
            auto o = std::make_shared<DeleteOptions>();
            CLI::Option* name = add_attribute(sub, o->attribute);
            CLI::Option* value = sub.add_option("-v,--value", o->value, "Its integer value")
                                     ->type_name("N")
                                     ->needs(name);
            name->needs(value);
            sub.add_flag("-r,--recursive", o->recursive, "Below the first level as well")
                ->needs(name);
            CLI::Option* all =
                sub.add_flag("--everywhere", o->everywhere, "On every level, without exceptions")
                    ->needs(name);
            sub.add_option("--exempt", o->exempt,
                           "Spare nodes of the first level with this attribute")
                ->type_name("NAME")
                ->needs(name)
                ->excludes(all);
            sub.add_flag("--keep-branches", o->keepBranches, "Spare branches of the first level")
                ->needs(name)
                ->excludes(all);
            const EditWork below =
                on_each([o](UXXmlWrapperBase& node) { return delete_by_attribute(node, *o); });
            return [o, name, below](EditedNodes& nodes) {
                if (name->count() > 0) return below(nodes);
                if (nodes.selected) return delete_items(nodes);
                throw Failure(kUsage, "delete", "say what to delete",
                              "--select PATH for nodes, or -a NAME -v N");
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
        add_attribute(sub, o->attribute)->required();
        sub.add_flag("-r,--recursive", o->recursive, "Enter branches, and judge them afterwards");
        sub.add_flag("--take-attr", o->removeAttribute, "Take the attribute from what stays");
        sub.add_flag("--keep-branches", o->keepBranches, "Keep branches that were emptied");
        sub.add_flag("--whole-branches", o->wholeBranches,
                     "The attribute protects the whole branch of its node");
        return on_each([o](UXXmlWrapperBase& node) {
            const int count = uxtree_delete_nodes_by_missing_attribute(
                &node, o->attribute.c_str(), o->recursive, o->removeAttribute, o->keepBranches,
                o->wholeBranches);
            return Told(count, "node", "removed");
        });
    });
}

void add_prune_and_hide(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "prune", "Remove empty leaves", [](CLI::App& sub) {
        auto recursive = std::make_shared<bool>(false);
        sub.add_flag("-r,--recursive", *recursive, "In branches too, and branches left empty");
        return on_each([recursive](UXXmlWrapperBase& node) {
            return Told(uxtree_remove_empty_child_nodes(&node, *recursive), "node", "kept");
        });
    });
    add_edit(app, edit, "hide", "Hide empty leaves", [](CLI::App& sub) {
        auto recursive = std::make_shared<bool>(false);
        auto showFilled = std::make_shared<bool>(false);
        sub.add_flag("-r,--recursive", *recursive, "In branches too");
        sub.add_flag("--show-filled", *showFilled, "Show leaves that have a value");
        return on_each([recursive, showFilled](UXXmlWrapperBase& node) {
            return Told(uxtree_hide_empty_nodes(&node, *recursive, *showFilled), "node", "hidden");
        });
    });
}

void add_strip(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "strip", "Remove all attributes but DataID", [](CLI::App&) {
        return on_each([](UXXmlWrapperBase& node) {
            uxtree_polish_tree_keep_DataID(&node);
            return Told();
        });
    });
}

}  // namespace

void add_removing_edits(CLI::App& app, const Edit& edit) {
    add_delete(app, edit);
    add_keep(app, edit);
    add_prune_and_hide(app, edit);
    add_strip(app, edit);
}

}  // namespace uxtool
