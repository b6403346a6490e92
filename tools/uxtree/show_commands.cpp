// uxtree show: a tree as a person reads it.
#include <algorithm>
#include <array>
#include <limits>

#include "show.h"
#include "support/command.h"
#include "support/input.h"
#include "support/output.h"
#include "support/selection.h"
#include "support/text.h"
#include "support/tree.h"
#include "support/tree_lines.h"

namespace uxtool {
namespace {

struct ShowOptions {
    std::string file;
    std::string output;
    std::string select;
    bool attributes = false;
    bool full = false;
    long long depth = std::numeric_limits<long long>::max();
};

struct IdAttribute {
    const char* name;
    const char* shownAs;
};

constexpr std::array<IdAttribute, 4> kIds{{{"DataID", "id"},
                                           {"RepeatID", "repeat"},
                                           {"RepeatNodeID", "repeat node"},
                                           {"NodeID", "node id"}}};

bool is_shown_by_itself(const std::string& name) {
    return name == "Label" || std::any_of(kIds.begin(), kIds.end(),
                                          [&](const IdAttribute& id) { return name == id.name; });
}

// Writes the line of one node after another.
class Shower {
public:
    // Alone: its siblings are not shown.
    Shower(Output& out, const ShowOptions& options, bool alone)
        : out_(out), options_(options), alone_(alone) {}

    // Yields whether the branch is shown.
    bool show(const UXXmlWrapperBase& node, std::size_t level) {
        UXXmlWrapperBase next;
        const bool isLast = (alone_ && level == 0) || node.NextSibling(&next) == 0;
        out_.write(palette().paint(Role::kDim, lines_.prefix(level, isLast)));
        out_.write(palette().paint(Role::kTag, visible(tag_of(node))));
        show_ids(node);
        show_label(node);
        show_value(node);
        show_marks(node);
        if (options_.attributes) show_attributes(node);
        const int children = node.GetNodeCount();
        const bool cut = static_cast<long long>(level) >= options_.depth && children > 0;
        if (cut) add(Role::kDim, fmt::format("({} below)", children));
        out_.write("\n");
        return !cut;
    }

private:
    const Palette& palette() const { return out_.palette(); }

    void add(Role role, const std::string& text) {
        out_.write("  ");
        out_.write(palette().paint(role, text));
    }

    std::string shown(const std::string& text) const {
        return clipped(text, options_.full ? 0 : 72);
    }

    void show_ids(const UXXmlWrapperBase& node) {
        int elementId = 0;
        if (node.GetID(elementId) != 0) add(Role::kId, fmt::format("#{}", elementId));
        for (const IdAttribute& id : kIds) {
            const auto text = attribute_of(node, id.name);
            if (text) add(Role::kId, fmt::format("{} {}", id.shownAs, visible(*text)));
        }
    }

    void show_label(const UXXmlWrapperBase& node) {
        const auto label = attribute_of(node, "Label");
        if (label) add(Role::kLabel, "\"" + shown(*label) + "\"");
    }

    void show_value(const UXXmlWrapperBase& node) {
        const std::string value = value_of(node);
        if (!value.empty()) add(Role::kValue, "= " + shown(value));
    }

    void show_marks(const UXXmlWrapperBase& node) {
        int show = 1;
        if (node.GetShow(show) != 0 && show == 0) add(Role::kDim, "(hidden)");
        const auto old = attribute_of(node, "OldValue");
        if (old) add(Role::kDim, "(was \"" + shown(*old) + "\")");
    }

    void show_attributes(const UXXmlWrapperBase& node) {
        for (const auto& [name, value] : all_attributes(node)) {
            if (is_shown_by_itself(name)) continue;
            add(Role::kAttribute, fmt::format("@{}=\"{}\"", visible(name), shown(value)));
        }
    }

    Output& out_;
    const ShowOptions& options_;
    bool alone_;
    TreeLines lines_;
};

// Another tree with lines of its own.
void show_tree(Output& out, const ShowOptions& options, const UXXmlWrapperBase& top, bool alone) {
    Shower shower(out, options, alone);
    walk(
        top, [&](const auto& node, std::size_t level) { return shower.show(node, level); },
        [](const auto&, std::size_t) {});
}

// The element of each result, once.
int show_selected(const ShowOptions& options, const UXXmlWrapperBase& root) {
    const Selection selection(options.select);
    const UXSelected selected = selection.run(root, options.file);
    if (selected.size() == 0) throw selection.nothing(root, options.file);
    Output out(options.output);
    UXXmlWrapperBase last;
    for (std::size_t i = 0; i < selected.size(); ++i) {
        UXXmlWrapperBase node = selected.node(i);
        if (i == 0 || !(node == last)) show_tree(out, options, node, true);
        last = std::move(node);
    }
    return out.finish();
}

int run_show(const ShowOptions& options) {
    const UXXmlWrapperBase root = open_tree(options.file);
    if (!options.select.empty()) return show_selected(options, root);
    Output out(options.output);
    show_tree(out, options, root, false);
    return out.finish();
}

const Command kShow{
    "show", "Show a tree with its tags, ids, labels and values",
    "uxtree show tree.xml\n"
    "uxtree show -a -d 2 tree.xml       # with all attributes, two levels deep\n"
    "uxtree show tree.xml --select \"//Range[@Show='1']\"\n"
    "zcat tree.xml.gz | uxtree show -   # from standard input",
    [](CLI::App& app) {
        auto options = std::make_shared<ShowOptions>();
        add_file(app, options->file);
        app.add_flag("-a,--attributes", options->attributes, "Show all other attributes as well");
        app.add_option("-d,--depth", options->depth, "Show this many levels below the root")
            ->type_name("N")
            ->check(CLI::NonNegativeNumber);
        add_select(app, options->select);
        app.add_flag("--full", options->full, "Show long texts whole");
        add_output(app, options->output);
        return [options] { return run_show(*options); };
    }};

}  // namespace

void show_tree(Output& out, const UXXmlWrapperBase& top) {
    show_tree(out, ShowOptions(), top, false);
}

}  // namespace uxtool
