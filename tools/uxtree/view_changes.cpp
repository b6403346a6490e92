// What is different in two documents of a page.
#include "view_changes.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "support/alignment.h"

namespace uxtool {
namespace {

constexpr std::size_t kAbsent = ChildPair::kNone;

struct ViewPair {
    std::size_t before;
    std::size_t after;
};
struct ViewRun {
    ViewPair first;
    std::size_t count;
};

const std::vector<std::string>& view_keys() {
    static const std::vector<std::string> names{"DataID", "xml:id", "id",  "ID",
                                                "key",    "name",   "Name"};
    return names;
}

struct ViewChildren {
    std::vector<std::size_t> nodes;
    ChildKeys keys;
};

ViewChildren view_children(const ViewData& data, std::size_t parent) {
    ViewChildren children;
    const std::size_t end = parent + data.size_below(parent) + 1;
    for (std::size_t i = parent + 1; i < end; i += data.size_below(i) + 1) {
        const auto attributes = data.attributes(i);
        const auto attributeOf = [&](std::string_view name) -> std::optional<std::string> {
            const auto found = std::find_if(attributes.begin(), attributes.end(),
                                            [&](const auto& one) { return one.name == name; });
            if (found == attributes.end()) return std::nullopt;
            return std::string(found->value);
        };
        children.nodes.push_back(i);
        children.keys.add(std::string(data.tag(i)), key_condition(view_keys(), attributeOf));
    }
    return children;
}

// In any order.
std::vector<ViewData::Attribute> sorted_attributes(const ViewData& data, std::size_t i) {
    std::vector<ViewData::Attribute> attributes = data.attributes(i);
    std::sort(attributes.begin(), attributes.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    return attributes;
}

class ViewComparison {
public:
    ViewComparison(const ViewData& before, const ViewData& after)
        : before_(before), after_(after) {}

    void run() {
        std::vector<ViewPair> waiting{{0, 0}};
        while (!waiting.empty()) {
            const ViewPair pair = waiting.back();
            waiting.pop_back();
            if (pair.after == kAbsent) {
                add(pair, before_.size_below(pair.before) + 1);
            } else if (pair.before == kAbsent) {
                add(pair, after_.size_below(pair.after) + 1);
            } else {
                if (differs(pair)) changed_.push_back(size_);
                add(pair, 1);
                add_children(pair, waiting);
            }
        }
    }

    void write(Output& out) const {
        out.write("{\"runs\":[");
        for (const ViewRun& run : runs_) {
            out.print("{}[{},{},{}]", &run == &runs_.front() ? "" : ",", number(run.first.before),
                      number(run.first.after), run.count);
        }
        out.write("],\"changed\":[");
        for (const std::size_t& place : changed_) {
            out.print("{}{}", &place == &changed_.front() ? "" : ",", place);
        }
        out.write("]}");
    }

private:
    static long long number(std::size_t node) {
        return node == kAbsent ? -1 : static_cast<long long>(node);
    }

    bool differs(const ViewPair& pair) const {
        return before_.tag(pair.before) != after_.tag(pair.after) ||
               before_.text(pair.before) != after_.text(pair.after) ||
               sorted_attributes(before_, pair.before) != sorted_attributes(after_, pair.after);
    }

    void add(const ViewPair& pair, std::size_t count) {
        size_ += count;
        if (!runs_.empty()) {
            ViewRun& last = runs_.back();
            const auto follows = [&](std::size_t node, std::size_t first) {
                return first == kAbsent ? node == kAbsent : node == first + last.count;
            };
            if (follows(pair.before, last.first.before) && follows(pair.after, last.first.after)) {
                last.count += count;
                return;
            }
        }
        runs_.push_back({pair, count});
    }

    void add_children(const ViewPair& pair, std::vector<ViewPair>& waiting) const {
        const ViewChildren before = view_children(before_, pair.before);
        const ViewChildren after = view_children(after_, pair.after);
        const std::vector<ChildPair> pairs = corresponding(before.keys, after.keys);
        for (auto child = pairs.rbegin(); child != pairs.rend(); ++child) {
            waiting.push_back({child->before == kAbsent ? kAbsent : before.nodes[child->before],
                               child->after == kAbsent ? kAbsent : after.nodes[child->after]});
        }
    }

    const ViewData& before_;
    const ViewData& after_;
    std::vector<ViewRun> runs_;
    std::vector<std::size_t> changed_;
    std::size_t size_ = 0;  // nodes in all runs
};

}  // namespace

void write_view_changes(Output& out, const ViewData& before, const ViewData& after) {
    ViewComparison comparison(before, after);
    comparison.run();
    comparison.write(out);
}

}  // namespace uxtool
