// Which elements of two documents correspond.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <fmt/format.h>

namespace uxtool {

// By what an element is found again: the first of the key attributes that it carries, such as
// "@id='7'", or "" without one. attributeOf(name) yields an optional text.
template <typename AttributeOf>
std::string key_condition(const std::vector<std::string>& keyNames, AttributeOf&& attributeOf) {
    for (const std::string& name : keyNames) {
        const std::optional<std::string> value = attributeOf(name);
        if (!value) continue;
        const char quote = value->find('\'') == std::string::npos ? '\'' : '"';
        return fmt::format("@{0}={1}{2}{1}", name, quote, *value);
    }
    return "";
}

// The children of one element, in their order, by tag and key. The same ones go by their order.
class ChildKeys {
public:
    // How many children with this tag and key there are up to this one.
    int add(const std::string& tag, const std::string& condition);
    const std::vector<std::string>& all() const { return keys_; }

private:
    std::vector<std::string> keys_;  // no two are the same
    std::unordered_map<std::string, int> counts_;
};

struct ChildPair {
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::size_t before = kNone;  // number among the children; kNone for a child that was added
    std::size_t after = kNone;   // the same for one that was removed
};

// The children of two corresponding elements, in the order of the new one; those that were removed
// stand before the first that stood behind them.
std::vector<ChildPair> corresponding(const ChildKeys& before, const ChildKeys& after);

}  // namespace uxtool
