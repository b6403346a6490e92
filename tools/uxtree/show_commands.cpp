// uxtree show: a tree as a person reads it.
#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include "uxtree/host/embedded.h"

#include "show.h"
#include "support/command.h"
#include "support/input.h"
#include "support/json.h"
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
    std::string format = "tree";
    bool attributes = false;
    bool full = false;
    int depth = std::numeric_limits<int>::max();
};

// ---- as a person reads it ---------------------------------------------------------------------

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

// ---- as JSON ----------------------------------------------------------------------------------

// {"name":...,"attributes":{...},"text":...} for an element without children, and
// {"name":...,"attributes":{...},"children":[...]} for one with: objects, and strings where text
// stands among them. Only the outermost one has "file".
class JsonShower {
public:
    JsonShower(Output& out, const std::string& file) : out_(out), file_(file) {}

    void show(const UXXmlWrapperBase& top) {
        walk(
            top,
            [&](const UXXmlWrapperBase& node, std::size_t level) {
                enter(node, level);
                return true;
            },
            [&](const UXXmlWrapperBase& node, std::size_t) { leave(node); });
    }

private:
    // An element with children that is not yet at its end.
    struct Open {
        std::string text;
        std::vector<UXTextRun> runs;
        std::size_t run = 0;   // the next one
        std::size_t used = 0;  // bytes of the text
        int children = 0;
        bool any = false;
    };

    void enter(const UXXmlWrapperBase& node, std::size_t level) {
        if (level > 0) begin_child();
        out_.write("{");
        if (level == 0) out_.write("\"file\":" + json_string(input_name(file_)) + ",");
        out_.write("\"name\":" + json_string(tag_of(node)) +
                   ",\"attributes\":" + json_text(attributes_of(node)));
        if (node.GetNodeCount() == 0) {
            out_.write(",\"text\":" + json_string(value_of(node)) + "}");
            return;
        }
        out_.write(",\"children\":[");
        open_.push_back(opened(node));
    }

    void leave(const UXXmlWrapperBase& node) {
        if (node.GetNodeCount() == 0) return;
        write_texts();
        open_.pop_back();
        out_.write("]}");
    }

    void begin_child() {
        write_texts();
        Open& parent = open_.back();
        separate(parent);
        ++parent.children;
    }

    // Every child in a line of its own.
    void separate(Open& parent) {
        constexpr std::size_t kDeepest = 40;
        out_.write(parent.any ? ",\n" : "\n");
        out_.write(std::string(2 + 2 * std::min(open_.size(), kDeepest), ' '));
        parent.any = true;
    }

    // Those that stand before the next child.
    void write_texts() {
        Open& parent = open_.back();
        for (; parent.run < parent.runs.size(); ++parent.run) {
            const UXTextRun& run = parent.runs[parent.run];
            if (run.childrenBefore > parent.children) return;
            separate(parent);
            out_.write(json_string(std::string_view(parent.text).substr(parent.used, run.length)));
            parent.used += run.length;
        }
    }

    Json attributes_of(const UXXmlWrapperBase& node) const {
        Json attributes = Json::object();
        for (const auto& [name, value] : all_attributes(node)) attributes[name] = value;
        int id = 0;
        if (node.GetID(id) != 0) attributes["_ux_id"] = std::to_string(id);
        return attributes;
    }

    Open opened(const UXXmlWrapperBase& node) {
        Open open;
        open.text = value_of(node);
        if (open.text.empty()) return open;
        if (!order_) order_.emplace(node);
        if (!order_->Runs(node, open.runs)) {
            throw Failure(kRefused, input_name(file_),
                          "it is not known where the text of " + place_of(node) +
                              " stands among its children",
                          "text of an entity beside children has no place of its own");
        }
        return open;
    }

    Output& out_;
    const std::string& file_;
    std::optional<UXTextOrder> order_;
    std::vector<Open> open_;
};

// ---- show -------------------------------------------------------------------------------------

// The element of each result, once.
std::vector<UXXmlWrapperBase> selected_nodes(const ShowOptions& options,
                                             const UXXmlWrapperBase& root) {
    if (options.select.empty()) return {root};
    const Selection selection(options.select);
    const UXSelected selected = selection.run(root, options.file);
    if (selected.size() == 0) throw selection.nothing(root, options.file);
    std::vector<UXXmlWrapperBase> nodes;
    for (std::size_t i = 0; i < selected.size(); ++i) {
        UXXmlWrapperBase node = selected.node(i);
        if (nodes.empty() || !(node == nodes.back())) nodes.push_back(std::move(node));
    }
    return nodes;
}

int run_show(const ShowOptions& options) {
    const bool isJson = options.format == "json";
    const UXXmlWrapperBase root = isJson ? open_tree_for_editing(options.file)
                                         : open_tree_to_select(options.file, options.select);
    Output out(options.output);
    const std::vector<UXXmlWrapperBase> nodes = selected_nodes(options, root);
    if (!isJson) {
        for (const UXXmlWrapperBase& node : nodes) {
            show_tree(out, options, node, !options.select.empty());
        }
        return out.finish();
    }
    JsonList list(out);
    for (const UXXmlWrapperBase& node : nodes) {
        list.begin_entry();
        JsonShower(out, options.file).show(node);
    }
    list.finish();
    return out.finish();
}

const Command kShow{
    "show", "Show a tree with its tags, ids, labels and values",
    "uxtree show tree.xml\n"
    "uxtree show -a -d 2 tree.xml       # with all attributes, two levels deep\n"
    "uxtree show -f json tree.xml       # everything, see docs/output.md\n"
    "uxtree show tree.xml --select \"//Range[@Show='1']\"\n"
    "zcat tree.xml.gz | uxtree show -   # from standard input",
    runs<run_show>([](CLI::App& app, ShowOptions& options) {
        add_file(app, options.file);
        add_format(app, options.format, {"tree", "json"});
        app.add_flag("-a,--attributes", options.attributes, "Show all other attributes as well");
        app.add_option("-d,--depth", options.depth, "Show this many levels below the root")
            ->type_name("N")
            ->check(CLI::Range(0, std::numeric_limits<int>::max()));
        add_select(app, options.select);
        app.add_flag("--full", options.full, "Show long texts whole");
        add_output(app, options.output);
    })};

}  // namespace

void show_tree(Output& out, const UXXmlWrapperBase& top) {
    show_tree(out, ShowOptions(), top, false);
}

}  // namespace uxtool
