// Two documents, element by element.
#include "support/xml_changes.h"

#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "support/alignment.h"
#include "support/tree.h"

namespace uxtool {
namespace {

constexpr std::size_t kNoParent = static_cast<std::size_t>(-1);

struct Children {
    std::vector<UXXmlWrapperBase> nodes;
    std::vector<std::string> steps;  // "/book[2]" or "/book[@id='7']"
    ChildKeys keys;
};

class Comparison {
public:
    explicit Comparison(const std::vector<std::string>& keys) : keys_(keys) {}

    Table run(const UXXmlWrapperBase& before, const UXXmlWrapperBase& after) {
        const std::string tag = tag_of(after);
        steps_.push_back({kNoParent, "/" + tag});
        if (tag_of(before) != tag) add("changed", 0, "name", tag_of(before), tag);
        work_.push_back({before, after, 0});
        while (!work_.empty()) {
            const Work work = std::move(work_.back());
            work_.pop_back();
            compare(work);
        }
        return std::move(table_);
    }

private:
    // Corresponding elements, or one that only one of the documents has.
    struct Work {
        UXXmlWrapperBase before;
        UXXmlWrapperBase after;
        std::size_t step;
    };
    struct Step {
        std::size_t parent;
        std::string text;
    };
    using Text = std::optional<std::string>;

    void add(const char* change, std::size_t step, std::string what, Text before, Text after) {
        table_.add({std::string(change), place(step), std::move(what),
                    optional_cell(std::move(before)), optional_cell(std::move(after))});
    }

    std::string place(std::size_t step) const {
        std::vector<const std::string*> texts;
        for (; step != kNoParent; step = steps_[step].parent) texts.push_back(&steps_[step].text);
        std::string out;
        for (auto text = texts.rbegin(); text != texts.rend(); ++text) out += **text;
        return out;
    }

    void compare(const Work& work) {
        if (work.before.IsNodeValid() == 0) {
            return add("added", work.step, "element", std::nullopt, leaf_text(work.after));
        }
        if (work.after.IsNodeValid() == 0) {
            return add("removed", work.step, "element", leaf_text(work.before), std::nullopt);
        }
        compare_attributes(work);
        const std::string before = value_of(work.before);
        const std::string after = value_of(work.after);
        if (before != after) add("changed", work.step, "text", before, after);
        compare_children(work);
    }

    static Text leaf_text(const UXXmlWrapperBase& node) {
        const std::string text = value_of(node);
        return text.empty() ? Text() : Text(text);
    }

    static std::vector<std::pair<std::string, std::string>> attributes_of(
        const UXXmlWrapperBase& node) {
        auto attributes = all_attributes(node);
        int id = 0;
        if (node.GetID(id) != 0) attributes.emplace_back("_ux_id", std::to_string(id));
        return attributes;
    }

    void compare_attributes(const Work& work) {
        std::map<std::string, std::string> before;
        for (auto& [name, value] : attributes_of(work.before)) before.emplace(name, value);
        for (auto& [name, value] : attributes_of(work.after)) {
            const auto old = before.find(name);
            if (old == before.end()) {
                add("added", work.step, "@" + name, std::nullopt, value);
                continue;
            }
            if (old->second != value) add("changed", work.step, "@" + name, old->second, value);
            before.erase(old);
        }
        for (auto& [name, value] : before) {
            add("removed", work.step, "@" + name, value, std::nullopt);
        }
    }

    Children children_of(const UXXmlWrapperBase& parent) const {
        Children children;
        std::unordered_map<std::string, int> tags;
        for_each_child(parent, [&](const UXXmlWrapperBase& node) {
            const std::string tag = tag_of(node);
            const int number = ++tags[tag];
            std::string condition = key_condition(
                keys_, [&](const std::string& name) { return attribute_of(node, name.c_str()); });
            if (children.keys.add(tag, condition) > 1) condition.clear();
            if (condition.empty()) condition = std::to_string(number);
            children.nodes.push_back(node);
            children.steps.push_back("/" + tag + "[" + condition + "]");
        });
        for (std::size_t i = 0; i < children.nodes.size(); ++i) {  // "/a" where there is one alone
            const std::string tag = tag_of(children.nodes[i]);
            if (tags[tag] == 1 && children.steps[i] == "/" + tag + "[1]") {
                children.steps[i] = "/" + tag;
            }
        }
        return children;
    }

    std::size_t step_below(std::size_t parent, std::string text) {
        steps_.push_back({parent, std::move(text)});
        return steps_.size() - 1;
    }

    void compare_children(const Work& work) {
        const Children before = children_of(work.before);
        const Children after = children_of(work.after);
        std::vector<Work> found;
        std::size_t last = 0;
        bool inOrder = true;
        for (const ChildPair& pair : corresponding(before.keys, after.keys)) {
            const bool isRemoved = pair.after == ChildPair::kNone;
            const bool isAdded = pair.before == ChildPair::kNone;
            const std::string& step =
                isRemoved ? before.steps[pair.before] : after.steps[pair.after];
            found.push_back({isAdded ? UXXmlWrapperBase() : before.nodes[pair.before],
                             isRemoved ? UXXmlWrapperBase() : after.nodes[pair.after],
                             step_below(work.step, step)});
            if (isRemoved || isAdded) continue;
            inOrder = inOrder && pair.before >= last;
            last = pair.before;
        }
        if (!inOrder) add("moved", work.step, "order", std::nullopt, std::nullopt);
        while (!found.empty()) {
            work_.push_back(std::move(found.back()));
            found.pop_back();
        }
    }

    const std::vector<std::string>& keys_;
    Table table_{{"change", "node", "what", "old", "new"}};
    std::vector<Step> steps_;
    std::vector<Work> work_;
};

}  // namespace

Table changes_of(const UXXmlWrapperBase& before, const UXXmlWrapperBase& after,
                 const std::vector<std::string>& keys) {
    return Comparison(keys).run(before, after);
}

}  // namespace uxtool
