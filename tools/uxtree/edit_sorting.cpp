// uxtree edit sort: children, or selected nodes among their siblings, in another order.
#include <algorithm>
#include <numeric>
#include <optional>

#include "edits.h"
#include "support/selection.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

struct SortOptions {
    std::string attribute;
    std::string by;
    std::string as;  // "number", "text", or "" for what goes with the key
    bool descending = false;

    bool is_numeric() const { return as.empty() ? by.empty() : as == "number"; }
    std::string key_name() const { return by.empty() ? attribute : by; }
};

// What one child is sorted by.
struct SortKey {
    int child;
    std::string text;
    double number = 0;
};

class Sorter {
public:
    explicit Sorter(const SortOptions& options) : options_(options) {
        if (!options.by.empty()) selection_.emplace(options.by);
    }

    // Of the children, those with the given numbers exchange their places; the others, and those
    // without a key, keep theirs. Equal ones keep their order.
    void sort(UXXmlWrapperBase& parent, const std::vector<int>& numbers) {
        std::vector<SortKey> keys = keys_of(parent, numbers);
        candidates_ += numbers.size();
        sorted_ += keys.size();
        if (keys.size() < 2) return;
        std::vector<int> places;
        places.reserve(keys.size());
        for (const SortKey& key : keys) places.push_back(key.child);
        std::stable_sort(keys.begin(), keys.end(), [this](const SortKey& a, const SortKey& b) {
            return options_.descending ? is_before(b, a) : is_before(a, b);
        });
        std::vector<int> order(static_cast<std::size_t>(parent.GetNodeCount()));
        std::iota(order.begin(), order.end(), 0);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            order[static_cast<std::size_t>(places[i])] = keys[i].child;
        }
        CArray<int, int> contents;
        contents.SetSize(static_cast<int>(order.size()));
        std::copy(order.begin(), order.end(), contents.GetData());
        parent.ArrangeChildContents(contents);
    }

    Told told() const {
        if (candidates_ < 2) return {"there are not two nodes to sort"};
        if (sorted_ == candidates_) return {};
        const std::string what =
            options_.is_numeric() ? " is missing there or no number" : " is missing there";
        if (sorted_ == 0) {
            throw Failure(kRefused, "sort",
                          "no node has '" + options_.key_name() + "'" +
                              (options_.is_numeric() ? " with a number" : ""),
                          options_.is_numeric() ? "--as text sorts by texts" : "");
        }
        return {fmt::format("{} of {} keep their places: '{}'{}", candidates_ - sorted_,
                            counted(candidates_, "node"), options_.key_name(), what)};
    }

private:
    std::vector<SortKey> keys_of(const UXXmlWrapperBase& parent, const std::vector<int>& numbers) {
        std::vector<SortKey> keys;
        auto wanted = numbers.begin();
        int number = 0;
        for_each_child(parent, [&](const UXXmlWrapperBase& child) {
            if (wanted == numbers.end() || *wanted != number++) return;
            ++wanted;
            const std::optional<std::string> text = text_of(child);
            SortKey key{number - 1, text.value_or(""), 0};
            const bool fits =
                text.has_value() && (!options_.is_numeric() || UXParseDouble(key.text, key.number));
            if (fits) keys.push_back(std::move(key));
        });
        return keys;
    }

    std::optional<std::string> text_of(const UXXmlWrapperBase& child) {
        if (!selection_) return attribute_of(child, options_.attribute.c_str());
        const UXSelected found = selection_->run(child, "--by");
        if (found.size() == 0) return std::nullopt;
        return Selection::text(found, 0, "--by");
    }

    bool is_before(const SortKey& a, const SortKey& b) const {
        return options_.is_numeric() ? a.number < b.number : a.text < b.text;
    }

    const SortOptions& options_;
    std::optional<Selection> selection_;
    std::size_t candidates_ = 0;
    std::size_t sorted_ = 0;
};

std::vector<int> all_children(const UXXmlWrapperBase& parent) {
    std::vector<int> numbers(static_cast<std::size_t>(parent.GetNodeCount()));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

// The selected nodes of each parent, the innermost parents first: sorting moves what is below.
void sort_selected(Sorter& sorter, EditedNodes& nodes) {
    struct Open {
        int children = 0;
        std::vector<int> selected;
    };
    std::vector<Open> open(1);  // one for each level, of the node whose children are passed
    std::size_t next = 0;
    walk(
        nodes.root,
        [&](const UXXmlWrapperBase& node, std::size_t level) {
            open.resize(level + 1);
            const bool isNext = next < nodes.items.size() && nodes.items[next].node == node;
            if (isNext) open[level].selected.push_back(open[level].children);
            if (isNext) ++next;
            ++open[level].children;
            open.emplace_back();
            return true;
        },
        [&](UXXmlWrapperBase node, std::size_t level) {
            if (!open[level + 1].selected.empty()) sorter.sort(node, open[level + 1].selected);
            open[level + 1] = {};
        });
}

Told sort_items(EditedNodes& nodes, const SortOptions& options) {
    if (options.by.empty() && options.attribute.empty()) {
        throw Failure(kUsage, "sort", "say what to sort by", "-a NAME or --by PATH");
    }
    Sorter sorter(options);
    for (const EditedItem& item : nodes.items) {
        if (item.kind == UXSelectedKind::kElement) continue;
        throw Failure(kUsage, "--select", "only elements are sorted");
    }
    if (nodes.selected) {
        sort_selected(sorter, nodes);
    } else {
        sorter.sort(nodes.items[0].node, all_children(nodes.items[0].node));
    }
    return sorter.told();
}

}  // namespace

void add_sort(CLI::App& app, const Edit& edit) {
    add_edit(app, edit, "sort", "Sort the children, or the selected nodes among their siblings",
             [](CLI::App& sub) {
                 auto o = std::make_shared<SortOptions>();
                 CLI::Option* attribute = add_attribute(sub, o->attribute);
                 sub.add_option("--by", o->by, "By what a path finds in each, such as title or @id")
                     ->type_name("PATH")
                     ->excludes(attribute);
                 sub.add_option("--as", o->as,
                                "How to compare (number with -a, text with --by); texts go by "
                                "their bytes")
                     ->check(CLI::IsMember({"number", "text"}));
                 sub.add_flag("-d,--descending", o->descending, "The largest first");
                 return [o](EditedNodes& nodes) { return sort_items(nodes, *o); };
             });
}

}  // namespace uxtool
