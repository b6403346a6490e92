// A plain recursive model of collecting and setting, on trees of its own, written from the rules
// alone: what the engines must agree with.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace uxmodel {

struct Node {
    std::string tag;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
    std::vector<Node> children;

    const std::string* find(const std::string& name) const {
        for (const auto& [known, value] : attributes) {
            if (known == name) return &value;
        }
        return nullptr;
    }
    std::optional<int> number(const std::string& name) const {
        const std::string* value = find(name);
        if (value == nullptr || value->empty()) return std::nullopt;
        char* end = nullptr;
        const long long number = std::strtoll(value->c_str(), &end, 10);
        if (*end != '\0') return std::nullopt;
        return static_cast<int>(number);
    }
    void set(const std::string& name, const std::string& value) {
        for (auto& [known, old] : attributes) {
            if (known == name) {
                old = value;
                return;
            }
        }
        attributes.emplace_back(name, value);
    }
    void remove(const std::string& name) {
        std::erase_if(attributes, [&](const auto& one) { return one.first == name; });
    }
};

inline std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}
inline std::string to_xml(const Node& node) {
    std::string out = "<" + node.tag;
    for (const auto& [name, value] : node.attributes) {
        out += " " + name + "=\"" + escaped(value) + "\"";
    }
    out += ">" + escaped(node.text);
    for (const Node& child : node.children) out += to_xml(child);
    return out + "</" + node.tag + ">";
}

// --- identifiers -------------------------------------------------------------------------------

struct Combined {
    int id;
    int repeat;
    bool broken;
};
// Collection goes on after a broken rule, setting does not look further.
inline Combined combine(const Node& node, int inherited) {
    Combined out{node.number("DataID").value_or(-1), inherited, false};
    const int own = node.number("RepeatID").value_or(-1);
    bool stamp = out.id >= 0 && inherited >= 1;
    if (own >= 0 && own <= 32767) {
        if (own == 32767) {
            out.broken = true;
            stamp = false;
        } else if (inherited < 1) {
            out.repeat = own;
            stamp = false;
        } else if ((own & inherited) != 0) {
            out.broken = true;
            stamp = false;
        } else {
            out.repeat = own | inherited;
            if (own > 0) stamp = false;
        }
    }
    if (stamp && out.id > 65535) {
        out.broken = true;
    } else if (stamp) {
        out.id = static_cast<int>(static_cast<std::uint32_t>(inherited) << 16 |
                                  static_cast<std::uint32_t>(out.id));
    }
    const int marker = node.number("RepeatNodeID").value_or(-1);
    if (out.id >= 0 && marker >= 1 && marker <= 32767) {
        const std::uint32_t bits = static_cast<std::uint32_t>(marker) << 24;
        if (marker == 32767 || (static_cast<std::uint32_t>(out.id) & bits) != 0) {
            out.broken = true;
        } else {
            out.id = static_cast<int>(static_cast<std::uint32_t>(out.id) | bits);
        }
    }
    return out;
}
inline int negated(int id) {
    return static_cast<int>(0U - static_cast<std::uint32_t>(id));
}

// --- collecting --------------------------------------------------------------------------------

using Entries = std::vector<std::pair<int, std::string>>;
struct CollectRules {
    bool recursive = true;
    bool onlyChanged = false;
    bool useFlag = false;
};

inline void collect_one(Node& node, int id, const std::string& source, bool theme,
                        const CollectRules& rules, Entries& out) {
    std::string text = node.text;
    bool found = true;
    if (!source.empty()) {
        const std::string* value = node.find(source);
        found = value != nullptr;
        text = found ? *value : source == "Use" ? "-1" : "";
    }
    for (const char* name : {"DynaUseChck", "Auto", "DynaFx"}) {
        if (const std::string* value = node.find(name)) {
            text = std::string("::{") + name + "=" + *value + "}" + text;
            found = true;
        }
    }
    if (!found && !theme) return;
    if (rules.onlyChanged) {
        const std::string* old = node.find("OldValue");
        if (old == nullptr || *old == text) return;
        node.set("OldValue", text);
    }
    out.emplace_back(id, text);
}

inline void collect(Node& tree, int inherited, bool theme, const CollectRules& rules,
                    Entries& out) {
    for (Node& child : tree.children) {
        if (child.number("TreeGetByIdIgnore").value_or(0) > 0) continue;
        const Combined id = combine(child, inherited);
        if (child.children.empty()) {
            const bool use = rules.useFlag && child.find("Use") != nullptr;
            if (id.id >= 0) collect_one(child, id.id, use ? "Use" : "", theme, rules, out);
            continue;
        }
        const bool themed =
            (static_cast<std::uint32_t>(child.number("ThemeApplicability").value_or(0)) &
             0x100000U) != 0;
        if (themed) theme = false;
        if (id.id != -1) {
            collect_one(child, id.id, themed ? "Data" : "Use", theme, rules, out);
            if (const auto second = child.number("ThemeApplicabilityEx")) {
                if (*second != 0) theme = false;
                collect_one(child, negated(id.id), *second != 0 ? "Data" : "Use", theme, rules,
                            out);
            }
        }
        if (rules.recursive && !themed) collect(child, id.repeat, theme, rules, out);
    }
}

// --- setting -----------------------------------------------------------------------------------

struct SetRules {
    bool themeOff = false;
    bool checkDynaUse = false;
};

inline std::string lower(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

// Cuts one setting off the front part of a value; false when there is no good one.
inline bool take_setting(std::string& value, std::string& name, std::string& setting) {
    const std::size_t opening = value.find("::{");
    if (opening == std::string::npos) return false;
    int depth = 0;
    for (std::size_t at = opening + 2; at < value.size(); ++at) {
        if (value[at] == '{') ++depth;
        if (value[at] == '}') --depth;
        if (depth > 0) continue;
        const std::string body = value.substr(opening + 3, at - opening - 3);
        const std::size_t equals = body.find('=');
        if (equals == std::string::npos || equals == 0 || equals + 1 == body.size()) return false;
        name = body.substr(0, equals);
        setting = body.substr(equals + 1);
        value = value.substr(at + 1);
        return true;
    }
    return false;
}

inline int write(Node& node, std::string value, bool branch, bool toData, std::uint32_t flags,
                 const SetRules& rules) {
    bool dynaFx = false;
    bool dynaUse = false;
    std::string name;
    std::string setting;
    while (value.size() >= 7 && take_setting(value, name, setting)) {
        if ((flags & 0x20000U) == 0) node.set(name, setting);
        dynaFx = dynaFx || name == "DynaFx";
        dynaUse = dynaUse || lower(name) == "dynausechck";
    }
    if (!dynaFx) node.remove("DynaFx");
    if (rules.checkDynaUse && !dynaUse && node.find("DynaUseChck") != nullptr) {
        node.set("DynaUseChck", "1");
    }
    if ((flags & 0x10000U) != 0) return 0;
    if (toData) {
        if (value.empty()) return 0;
        node.set("Data", value);
    } else if (!branch) {
        node.text = value;
    } else if (value != "-1") {
        node.set("Use", value);
    }
    return 1;
}

// The number of values written, or -5.
inline int set(Node& tree, const Entries& given, int inherited, std::uint32_t flags,
               const SetRules& rules) {
    int written = 0;
    for (Node& child : tree.children) {
        const Combined id = combine(child, inherited);
        if (id.broken) return -5;
        const bool leaf = child.children.empty();
        const std::optional<int> own = child.number("ThemeApplicability");
        const std::uint32_t word = own ? static_cast<std::uint32_t>(*own) : flags;
        for (std::size_t i = 0; id.id >= 0 && i < given.size(); ++i) {
            if (given[i].first != id.id) continue;
            const bool asBranch =
                !leaf || (!rules.themeOff && (static_cast<std::uint32_t>(id.id) & 0x200000U) != 0);
            written += write(child, given[i].second, !leaf, asBranch && (word & 0x100000U) != 0,
                             word, rules);
            const auto second = child.number("ThemeApplicabilityEx");
            if (!leaf && second && i + 1 < given.size() && given[i + 1].first == negated(id.id)) {
                written += write(child, given[i + 1].second, true, *second != 0, word, rules);
            }
            break;
        }
        if (leaf) continue;
        const int below = set(child, given, id.repeat, word, rules);
        if (below < 0) return below;
        written += below;
    }
    return written;
}

}  // namespace uxmodel
