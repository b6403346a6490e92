// A plain tree that stands for the host's in models.
#include "support/model_tree.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>

namespace uxmodel {
namespace {

std::string escaped(const std::string& text, bool attribute) {
    std::string out;
    for (const char c : text) {
        if (c == '&') {
            out += "&amp;";
        } else if (c == '<') {
            out += "&lt;";
        } else if (c == '>') {
            out += "&gt;";
        } else if (c == '"' && attribute) {
            out += "&quot;";
        } else {
            out += c;
        }
    }
    return out;
}

bool is_letter(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}
bool is_digit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

void decorate(Random& random, const Words& words, Node& node) {
    node.tag = random.pick(words.tags);
    node.text = random.pick(words.texts);
    node.id = random.pick(words.ids);
    for (const AttributeChoice& choice : words.attributes) {
        if (!random.one_in(choice.oneIn)) continue;
        const auto place =
            static_cast<std::ptrdiff_t>(random.below(static_cast<int>(node.attributes.size()) + 1));
        node.attributes.insert(node.attributes.begin() + place,
                               {choice.name, random.pick(choice.values)});
    }
}

Node grow(Random& random, const Words& words, int nodes) {
    Node node;
    decorate(random, words, node);
    for (int left = nodes - 1; left > 0;) {
        const int branch = random.one_in(2) ? 1 : 1 + random.below(left);
        node.children.push_back(grow(random, words, branch));
        left -= branch;
    }
    return node;
}

}  // namespace

const std::string* Node::find(const std::string& name) const {
    for (const auto& [known, value] : attributes) {
        if (known == name) return &value;
    }
    return nullptr;
}

std::optional<int> Node::number(const std::string& name) const {
    const std::string* value = find(name);
    return value == nullptr ? std::nullopt : to_number(*value);
}

void Node::set(const std::string& name, const std::string& value) {
    for (auto& [known, old] : attributes) {
        if (known == name) {
            old = value;
            return;
        }
    }
    attributes.emplace_back(name, value);
}

void Node::remove(const std::string& name) {
    std::erase_if(attributes, [&](const auto& one) { return one.first == name; });
}

std::string to_xml(const Node& node) {
    std::string out = "<" + node.tag;
    for (const auto& [name, value] : node.attributes) {
        out += " " + name + "=\"" + escaped(value, true) + "\"";
    }
    if (node.id) out += " _ux_id=\"" + std::to_string(*node.id) + "\"";
    out += ">" + escaped(node.text, false);
    for (const Node& child : node.children) out += to_xml(child);
    return out + "</" + node.tag + ">";
}

std::optional<int> to_number(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return std::nullopt;
    const std::string body = text.substr(first, text.find_last_not_of(' ') - first + 1);
    if (body.find_first_not_of("0123456789+-.eE") != std::string::npos) return std::nullopt;
    char* end = nullptr;
    const double number = std::trunc(std::strtod(body.c_str(), &end));
    if (*end != '\0' || number < -2147483648.0 || number > 4294967295.0) return std::nullopt;
    return static_cast<int>(static_cast<unsigned>(static_cast<long long>(number)));
}

std::string lower(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

bool same_text(const std::string& a, const std::string& b, bool caseSensitive) {
    return caseSensitive ? a == b : lower(a) == lower(b);
}

bool is_name(const std::string& text) {
    const auto starts = [](char c) { return is_letter(c) || c == '_' || c == ':'; };
    const auto follows = [&](char c) { return starts(c) || is_digit(c) || c == '-' || c == '.'; };
    return !text.empty() && starts(text[0]) && std::all_of(text.begin(), text.end(), follows);
}

Node random_tree(Random& random, const Words& words, int maxNodes) {
    return grow(random, words, 1 + random.below(maxNodes));
}

}  // namespace uxmodel
