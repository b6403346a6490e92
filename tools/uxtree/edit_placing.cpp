// uxtree edit insert, append, copy, add, move: more nodes, and other places for them.
#include "uxtree/uxtree_Utils.h"

#include "edits.h"
#include "support/input.h"
#include "support/selection.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

// Loaded when the first edit wants it.
class OtherTree {
public:
    std::string file;
    UXXmlWrapperBase& root() {
        if (root_.IsNodeValid() == 0) root_ = open_tree(file);
        return root_;
    }

private:
    UXXmlWrapperBase root_;
};

// ---- insert -----------------------------------------------------------------------------------

struct InsertOptions {
    std::string xml;
    bool before = false;
    bool after = false;
    bool into = false;  // said, and done anyway
    UXXmlWrapperBase holder;
};

// Also when they only seem to be some, in a CDATA section.
bool has_comments(std::string_view xml) {
    if (xml.starts_with("<?xml ")) xml.remove_prefix(2);
    return xml.find("<!--") != std::string_view::npos || xml.find("<?") != std::string_view::npos;
}

// The elements of a text, below a node that holds them.
UXXmlWrapperBase parsed_elements(const std::string& xml) {
    const std::string text = "<x>" + xml + "</x>";
    UXXmlWrapperBase holder;
    if (holder.LoadFromMemory(text.data(), text.size()) == 0) {
        const UXFileError& why = UXGetLastLoadFailure();
        throw Failure(kUsage, "insert", "the XML is broken: " + to_string(why.message),
                      "such as '<note id=\"1\">a text</note>', or the name of a file");
    }
    if (!value_of(holder).empty() || holder.GetNodeCount() == 0) {
        throw Failure(kUsage, "insert", "only elements are inserted",
                      "'edit set' writes a text, 'attr set' an attribute");
    }
    if (has_comments(xml)) {
        throw Failure(kRefused, "insert", "comments and instructions cannot be inserted");
    }
    return holder;
}

// What is to be inserted: the elements of the text, or the root of the file.
UXXmlWrapperBase& inserted(InsertOptions& options) {
    if (options.holder.IsNodeValid() != 0) return options.holder;
    if (options.xml.starts_with("<")) {
        options.holder = parsed_elements(options.xml);
        return options.holder;
    }
    UXXmlWrapperBase root = open_tree_for_editing(options.xml);
    CStringUTF8 source;
    UXGetSourceBytes(&root, &source);
    if (has_comments(to_string(source))) {
        note(input_name(options.xml) + ": its comments and instructions are left out");
    }
    options.holder.CreateNew(0, "x");
    options.holder.AddNodeCopy(&root, 1, nullptr);
    return options.holder;
}

void insert_before(UXXmlWrapperBase& parent, const UXXmlWrapperBase& place,
                   UXXmlWrapperBase& source) {
    UXXmlWrapperBase made;
    if (parent.InsertNodeBefore(place, tag_of(source).c_str(), 0, &made) == 0 ||
        made.ReplaceByNodeCopy(&source, 0, 0) == 0) {
        throw Failure(kRefused, "insert", "the element could not be inserted");
    }
}

void insert_at(UXXmlWrapperBase& node, InsertOptions& options) {
    UXXmlWrapperBase& holder = inserted(options);
    UXXmlWrapperBase parent;
    UXXmlWrapperBase place = node;
    if (!options.before && !options.after) {
        parent = node;
        place.ReleaseNode();
    } else if (node.GetParent(&parent) == 0) {
        throw Failure(kRefused, "insert", "nothing stands beside the root element",
                      "--into puts it below the root");
    } else if (options.after) {
        place.NextSibling(&place);
    }
    for_each_child(holder, [&](UXXmlWrapperBase source) {
        if (place.IsNodeValid() == 0) {
            parent.AddNodeCopy(&source, 1, nullptr);
        } else {
            insert_before(parent, place, source);
        }
    });
}

void add_insert(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "insert", "Insert elements before, behind or into others",
             [](CLI::App& sub) {
                 auto o = std::make_shared<InsertOptions>();
                 sub.add_option("XML", o->xml, "Such as '<note>text</note>', or the name of a file")
                     ->required()
                     ->type_name("");
                 CLI::Option* into =
                     sub.add_flag("--into", o->into, "As the last children (what happens anyway)");
                 CLI::Option* before =
                     sub.add_flag("--before", o->before, "In front of each")->excludes(into);
                 sub.add_flag("--after", o->after, "Behind each")->excludes(into)->excludes(before);
                 return on_each([o](UXXmlWrapperBase& node) {
                     insert_at(node, *o);
                     return Told(o->holder.GetNodeCount(), "node", "inserted");
                 });
             });
}

// ---- append, copy, add, move ------------------------------------------------------------------

constexpr unsigned int kBranchesOnly = 0x20000;  // a flag of uxtree_move_node

void add_append_and_copy(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "append", "Append the children of another tree", [](CLI::App& sub) {
        auto other = std::make_shared<OtherTree>();
        auto prefix = std::make_shared<std::string>();
        sub.add_option("SOURCE", other->file, "The other tree")->required()->type_name("");
        sub.add_option("--prefix", *prefix, "Only children whose tags start with this")
            ->type_name("TEXT");
        return on_each([other, prefix](UXXmlWrapperBase& node) -> Told {
            const int next = uxtree_append_children(&node, &other->root(), prefix->c_str());
            if (next <= 0) return {};
            return fmt::format("the next ID is {}", next);
        });
    });
    add_edit(app, edit, "copy", "Copy what has values from another tree", [](CLI::App& sub) {
        auto other = std::make_shared<OtherTree>();
        auto skip = std::make_shared<std::vector<std::string>>();
        sub.add_option("SOURCE", other->file, "The other tree")->required()->type_name("");
        sub.add_option("--skip", *skip, "Leave out branches with this attribute")
            ->type_name("NAME")
            ->allow_extra_args(false);
        return on_each([other, skip](UXXmlWrapperBase& node) {
            auto names = script_texts(*skip);
            const int copies = uxtree_copy_with_skipping(&node, &other->root(), &names, 0);
            return Told(copies, "branch", "copied");
        });
    });
}

void add_numbered(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "add", "Add numbered children with values", [](CLI::App& sub) {
        auto prefix = std::make_shared<std::string>();
        auto values = std::make_shared<std::vector<double>>();
        sub.add_option("PREFIX", *prefix, "Start of the tags")->required()->type_name("");
        sub.add_option("VALUE", *values, "Numbers, one for each child")->required()->type_name("");
        return on_each([prefix, values](UXXmlWrapperBase& node) -> Told {
            UXScriptArray<CArray<double, double>> list;
            for (const double value : *values) list.array().Add(value);
            const int before = node.GetNodeCount();
            uxtree_check_add_all_enumerated_nodes(&node, prefix->c_str(), &list);
            if (node.GetNodeCount() == before && !values->empty()) {
                throw Failure(kRefused, "add", "'" + *prefix + "1' is no element name");
            }
            return {};
        });
    });
}

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

void add_move(CLI::App& app, const Edit& edit) {
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
                 return on_each([from, to, branches](UXXmlWrapperBase& node) -> Told {
                     const unsigned int flags = *branches ? kBranchesOnly : 0U;
                     refuse_move_into_itself(node, *from, *to, flags);
                     if (uxtree_move_node(&node, *from, *to, flags, nullptr) == 1) return {};
                     throw Failure(kNothingFound, "move", "there is no node with that number",
                                   "numbers start at 0 below the root, or below --at");
                 });
             });
}

}  // namespace

void add_placing_edits(CLI::App& app, const Edit& edit) {
    add_insert(app, edit);
    add_append_and_copy(app, edit);
    add_numbered(app, edit);
    add_move(app, edit);
}

}  // namespace uxtool
