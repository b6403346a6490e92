// Trees as plain values, for models that share nothing with the library: rules written a second
// time, recursively and without regard to speed, which the library must agree with.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace uxmodel {

struct Node {
    std::string tag;
    std::optional<int> id = std::nullopt;
    std::vector<std::pair<std::string, std::string>> attributes = {};
    std::string text = "";
    std::vector<Node> children = {};

    bool leaf() const { return children.empty(); }
    const std::string* find(const std::string& name) const;  // null: no such attribute
    bool has(const std::string& name) const { return find(name) != nullptr; }
    std::string value_of(const std::string& name) const { return has(name) ? *find(name) : ""; }
    std::optional<int> number(const std::string& name) const;  // of an attribute
    void set(const std::string& name, const std::string& value);
    void remove(const std::string& name);
};

// The serialised tree, equal to uxtest::to_text of the same tree.
std::string to_xml(const Node& node);

// Decimal numbers, between blanks or not: a fraction is cut off, and what fits 32 bits without sign
// only is taken modulo 2 to the 32.
std::optional<int> to_number(const std::string& text);
std::string lower(std::string text);
bool same_text(const std::string& a, const std::string& b, bool caseSensitive);
// Is the text, of ASCII, an XML name?
bool is_name(const std::string& text);

// --- random trees -------------------------------------------------------------------------------

// The same seed gives the same choices.
class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}
    int below(int bound) { return static_cast<int>(engine_() % static_cast<unsigned>(bound)); }
    bool one_in(int n) { return below(n) == 0; }
    template <typename T>
    const T& pick(const std::vector<T>& from) {
        return from[static_cast<std::size_t>(below(static_cast<int>(from.size())))];
    }
    template <typename T>
    T pick(std::initializer_list<T> from) {
        return from.begin()[below(static_cast<int>(from.size()))];
    }

private:
    std::mt19937 engine_;
};

// An attribute that one node in oneIn has, with one of the values.
struct AttributeChoice {
    std::string name;
    int oneIn;
    std::vector<std::string> values;
};

struct Words {
    std::vector<std::string> tags;
    std::vector<AttributeChoice> attributes;  // their order in a node is random
    std::vector<std::string> texts;
    std::vector<std::optional<int>> ids = {std::nullopt};
};

// A tree of at most maxNodes nodes.
Node random_tree(Random& random, const Words& words, int maxNodes);

}  // namespace uxmodel
