// Two documents, element by element.
#include "support/xml_changes.h"

#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include <fmt/format.h>

#include "support/tree.h"

namespace uxtool {
namespace {

constexpr std::size_t kNoParent = static_cast<std::size_t>(-1);

// A child, by what it is found again.
struct Child {
    UXXmlWrapperBase node;
    std::string key;   // the same for children that correspond
    std::string step;  // "/book[2]" or "/book[@id='7']"
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
        const auto cell = [](Text& text) { return text ? Cell(std::move(*text)) : Cell(); };
        table_.add({std::string(change), place(step), std::move(what), cell(before), cell(after)});
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

    std::vector<Child> children_of(const UXXmlWrapperBase& parent) const {
        std::vector<Child> children;
        std::unordered_map<std::string, int> tags;
        std::unordered_map<std::string, int> keys;
        for_each_child(parent, [&](const UXXmlWrapperBase& node) {
            const std::string tag = tag_of(node);
            const int number = ++tags[tag];
            std::string condition = key_of(node);
            std::string key = tag + "[" + condition + "]";
            const int same = ++keys[key];
            if (same > 1) {
                key += std::to_string(same);
                condition.clear();
            }
            if (condition.empty()) condition = std::to_string(number);
            children.push_back({node, std::move(key), "/" + tag + "[" + condition + "]"});
        });
        for (Child& child : children) {  // "/a" where there is one alone
            const std::string tag = tag_of(child.node);
            if (tags[tag] == 1 && child.step == "/" + tag + "[1]") child.step = "/" + tag;
        }
        return children;
    }

    // "@id='7'", "" without a key.
    std::string key_of(const UXXmlWrapperBase& node) const {
        for (const std::string& name : keys_) {
            const auto value = attribute_of(node, name.c_str());
            if (!value) continue;
            const char quote = value->find('\'') == std::string::npos ? '\'' : '"';
            return fmt::format("@{0}={1}{2}{1}", name, quote, *value);
        }
        return "";
    }

    std::size_t step_below(std::size_t parent, std::string text) {
        steps_.push_back({parent, std::move(text)});
        return steps_.size() - 1;
    }

    // What was removed is told behind the children that stay and come.
    void compare_children(const Work& work) {
        std::vector<Child> before = children_of(work.before);
        std::vector<Child> after = children_of(work.after);
        std::unordered_map<std::string, std::size_t> places;
        for (std::size_t i = 0; i < before.size(); ++i) places.emplace(before[i].key, i);
        std::vector<Work> found;
        std::vector<bool> stays(before.size());
        std::size_t last = 0;
        bool inOrder = true;
        for (Child& child : after) {
            const std::size_t step = step_below(work.step, std::move(child.step));
            const auto place = places.find(child.key);
            if (place == places.end()) {
                found.push_back({UXXmlWrapperBase(), child.node, step});
                continue;
            }
            inOrder = inOrder && place->second >= last;
            last = place->second;
            stays[last] = true;
            found.push_back({before[last].node, child.node, step});
        }
        if (!inOrder) add("moved", work.step, "order", std::nullopt, std::nullopt);
        for (std::size_t i = 0; i < before.size(); ++i) {
            if (stays[i]) continue;
            const std::size_t step = step_below(work.step, std::move(before[i].step));
            found.push_back({before[i].node, UXXmlWrapperBase(), step});
        }
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
