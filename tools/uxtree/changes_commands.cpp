// uxtree changes: what differs between two states of a tree.
#include <map>
#include <optional>

#include "uxtree/uxtree_Utils.h"

#include "support/command.h"
#include "support/input.h"
#include "support/output.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"
#include "support/values.h"
#include "support/xml_changes.h"

namespace uxtool {
namespace {

struct ChangesOptions {
    std::string tree;
    std::string old;
    std::string format = "text";
    std::string by;  // "": id when both trees have identifiers, else key
    std::vector<std::string> keys;
    bool mark = false;
    bool strip = false;
    EditTarget target;
};

struct State {
    std::optional<std::string> value;
    std::string label;
    std::string place;
};

std::map<int, State> states_of(const UXXmlWrapperBase& root, const std::string& file) {
    const ValueList list = collect_values(root, file);
    std::map<int, State> states;
    for (int i = 0; i < list.ids.GetSize(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        const bool known = i < list.labels.GetSize();
        states.emplace(list.ids[i],
                       State{to_string(list.values[i]), known ? to_string(list.labels[i]) : "",
                             known ? list.places[at] : ""});
    }
    return states;
}

// One row per identifier whose value differs, or that only one of the trees has.
Table differences(const UXXmlWrapperBase& tree, const UXXmlWrapperBase& old,
                  const ChangesOptions& options) {
    const std::map<int, State> now = states_of(tree, options.tree);
    const std::map<int, State> before = states_of(old, options.old);
    Table table({"id", "label", "old", "new", "node"});
    const auto add = [&](int id, const State& known, const std::optional<std::string>& was,
                         const std::optional<std::string>& is) {
        if (was == is) return;
        table.add({static_cast<long long>(id), known.label, optional_cell(was), optional_cell(is),
                   known.place});
    };
    auto one = now.begin();
    auto other = before.begin();
    while (one != now.end() || other != before.end()) {
        const bool onlyNow =
            other == before.end() || (one != now.end() && one->first < other->first);
        const bool onlyBefore = !onlyNow && (one == now.end() || other->first < one->first);
        if (onlyNow) {
            add(one->first, one->second, std::nullopt, one->second.value);
        } else if (onlyBefore) {
            add(other->first, other->second, other->second.value, std::nullopt);
        } else {
            add(one->first, one->second, other->second.value, one->second.value);
        }
        if (!onlyBefore) ++one;
        if (!onlyNow) ++other;
    }
    return table;
}

std::vector<std::string> shape_of(const UXXmlWrapperBase& root) {
    std::vector<std::string> shape;
    walk(root, [&](const UXXmlWrapperBase& node, std::size_t level) {
        shape.push_back(std::to_string(level) + ' ' + tag_of(node));
    });
    return shape;
}

// Marks pair the nodes by their place, so the trees must have the same one for each.
int mark(UXXmlWrapperBase& tree, UXXmlWrapperBase& old, const ChangesOptions& options) {
    if (shape_of(tree) != shape_of(old)) {
        throw Failure(kRefused, input_name(options.tree),
                      "not the same nodes as in " + input_name(options.old),
                      "without --mark, values are compared by identifier");
    }
    CWBOStringArray values;
    VCTreeGetValues(&old, &values, false);
    values.RemoveAt(0);  // the entry of the root itself, which is not compared
    return VCTreeUpdateChanges(&tree, &values);
}

int strip(UXXmlWrapperBase& tree, UXXmlWrapperBase& old, const ChangesOptions& options) {
    const int removed = uxtree_remove_unchange_nodes_by_id(&old, &tree, nullptr, nullptr);
    if (removed < 0) {
        // Below the codes there are the identifiers that stand twice, negated.
        const int code = removed < kRepeatConflict ? kDuplicateIdentifier : removed;
        throw_refusal(code, -removed, tree, options.tree);
    }
    return removed;
}

bool has_identifiers(const UXXmlWrapperBase& root) {
    bool found = false;
    walk(
        root,
        [&](const UXXmlWrapperBase& node, std::size_t) {
            found = found || node.HasProperty("DataID", 0) != 0;
            return !found;
        },
        [](const UXXmlWrapperBase&, std::size_t) {});
    return found;
}

Table table_by(const UXXmlWrapperBase& tree, const UXXmlWrapperBase& old,
               const ChangesOptions& options) {
    const bool chosen = !options.by.empty() || !options.keys.empty();
    const bool byId = chosen ? options.by == "id" : has_identifiers(tree) && has_identifiers(old);
    if (byId) return differences(tree, old, options);
    if (options.by == "position") return changes_of(old, tree, {});
    static const std::vector<std::string> kKeys{"xml:id", "id", "name", "key"};
    return changes_of(old, tree, options.keys.empty() ? kKeys : options.keys);
}

int run_changes(const ChangesOptions& options) {
    UXXmlWrapperBase tree = options.target.open(options.tree);
    UXXmlWrapperBase old = open_tree(options.old);
    if (options.mark || options.strip) {
        const int count = options.mark ? mark(tree, old, options) : strip(tree, old, options);
        options.target.save(tree, options.tree);
        note(counted(count, "node") + (options.mark ? " marked" : " removed"));
        return kSuccess;
    }
    const Table table = table_by(tree, old, options);
    Output out("");
    if (!table.rows.empty() || options.format != "text") write_table(out, table, options.format);
    return out.finish(table.rows.empty() ? kNothingFound : kSuccess);
}

const Command kChanges{
    "changes", "List what changed in an XML file against an older one",
    "uxtree changes dialog.xml --against dialog.xml.bak       # by DataID, where both have some\n"
    "uxtree changes books.xml --against old.xml --key isbn    # any XML, by an attribute\n"
    "uxtree changes books.xml --against old.xml --by position\n"
    "uxtree changes dialog.xml --against old.xml --mark -o marked.xml   # as \"OldValue\"\n"
    "uxtree changes dialog.xml --against old.xml --strip -o changed.xml   # changed nodes only",
    runs<run_changes>([](CLI::App& app, ChangesOptions& options) {
        app.add_option("TREE", options.tree, "The tree as it is now")->required();
        app.add_option("--against", options.old, "The tree as it was")
            ->type_name("OLD")
            ->required();
        CLI::Option* by =
            app.add_option("--by", options.by,
                           "By what nodes correspond: values of one DataID, or any elements with "
                           "the same key attribute, or at the same position (id when both files "
                           "have DataIDs, else key)")
                ->check(CLI::IsMember({"id", "key", "position"}));
        app.add_option("--key", options.keys,
                       "By key: this attribute, or several in turn (xml:id, id, name, key)")
            ->type_name("NAME")
            ->allow_extra_args(false);
        add_format(app, options.format, table_formats());
        CLI::Option* mark =
            app.add_flag("--mark", options.mark, "Write the tree with its changed nodes marked");
        CLI::Option* strip =
            app.add_flag("--strip", options.strip, "Write the tree without its unchanged nodes")
                ->excludes(mark);
        by->excludes(mark)->excludes(strip);
        options.target.add_options(app);
    })};

}  // namespace
}  // namespace uxtool
