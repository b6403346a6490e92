// A plain model of collecting and setting values.
#include "data/values_model.h"

#include <cstdio>
#include <cstdlib>
#include <ostream>

namespace uxmodel {
namespace {

unsigned bits(int number) {
    return static_cast<unsigned>(number);
}

void report(std::string* error, const std::string& text) {
    if (error != nullptr) *error = text;
}

std::string named(const std::string& what, const Node& node, const std::string& name) {
    return what + " for Node with Name = " + name + ", Label = " + node.value_of("Label");
}

// --- settings in front of a value ---------------------------------------------------------------

struct Setting {
    std::string name;
    std::string value;
};

// Cuts one setting off a value; nothing when there is no well-formed one.
std::optional<Setting> take_setting(std::string& value) {
    const std::size_t opening = value.find("::{");
    if (opening == std::string::npos) return std::nullopt;
    int depth = 0;
    for (std::size_t at = opening + 2; at < value.size(); ++at) {
        if (value[at] == '{') ++depth;
        if (value[at] == '}') --depth;
        if (depth > 0) continue;
        const std::string body = value.substr(opening + 3, at - opening - 3);
        const std::size_t equals = body.find('=');
        if (equals == std::string::npos || equals == 0 || equals + 1 == body.size()) break;
        value = value.substr(at + 1);
        return Setting{body.substr(0, equals), body.substr(equals + 1)};
    }
    return std::nullopt;
}

// "2|name|5" -> "0|name|5": off, with the name and the count it has.
void reset_automatic(Node& node) {
    std::string text = node.value_of("Auto");
    if (text.empty()) return;
    std::vector<std::string> parts;
    for (std::size_t bar = text.find('|'); bar != std::string::npos; bar = text.find('|')) {
        parts.push_back(text.substr(0, bar));
        text = text.substr(bar + 1);
    }
    parts.push_back(text);
    const std::string name = parts.size() < 2 ? "Auto" : parts[1];
    const int count = parts.size() < 3 ? 1 : std::atoi(parts[2].c_str());
    node.set("Auto", "0|" + name + "|" + std::to_string(count));
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Entry& entry) {
    return out << entry.id << ": '" << entry.value << "' '" << entry.first << "' '" << entry.second
               << "' '" << entry.label << "'";
}

int negated(int id) {
    return static_cast<int>(0U - bits(id));
}

// --- identifiers -------------------------------------------------------------------------------

Combination combine_with_repeat(const Node& node, int id, int inherited) {
    Combination out{0, id, std::nullopt};
    const int own = node.number("RepeatID").value_or(-1);
    if (own >= 0 && own <= 32767) {
        if (own > 32766) return {-3, id, std::nullopt};
        if (inherited < 1) return {1, id, own};
        if ((own & inherited) != 0) return {-2, id, std::nullopt};
        out.repeat = own | inherited;
        if (own > 0) return {2, id, out.repeat};
    }
    if (id < 0 || inherited < 1) return out;
    if (id > 65535) return {-1, id, out.repeat};
    out.id = static_cast<int>((bits(inherited) & 0xFFFFU) << 16 | bits(id));
    out.code = 3;
    return out;
}

Combination combine_with_repeat_node(const Node& node, int id) {
    const int own = node.number("RepeatNodeID").value_or(-1);
    if (id < 0 || own < 1 || own > 32767) return {0, id, std::nullopt};
    if (own > 32766) return {-3, id, std::nullopt};
    const unsigned mark = bits(own) << 24;
    if ((bits(id) & mark) != 0) return {-2, id, std::nullopt};
    return {3, static_cast<int>(bits(id) | mark), std::nullopt};
}

TravelId travel_id(const Node& node, const std::string& idAttribute, int inherited, bool stops,
                   std::string* error) {
    TravelId out{node.number(idAttribute).value_or(-1), inherited, false};
    const Combination branch = combine_with_repeat(node, out.id, inherited);
    if (branch.code < 0) {
        const char* const what = branch.code == -3   ? "Repeat ID invalid"
                                 : branch.code == -2 ? "Repeat ID conflict"
                                                     : "DataID conflict with RepeatID";
        const int number = branch.code == -1 ? out.id : inherited;
        report(error, named(what, node, node.tag) + ", Repeat ID = " + std::to_string(number));
        out.broken = true;
    }
    out.repeat = branch.repeat.value_or(inherited);
    out.id = branch.id;
    if (out.broken && stops) return out;
    const Combination own = combine_with_repeat_node(node, out.id);
    if (own.code == -3) {
        report(error, named("Repeat Node ID invalid", node, node.tag) + ", Repeat Node ID = -1");
    } else if (own.code == -2) {
        report(error, named("Repeat Node ID conflict", node, node.tag) +
                          ", Repeat Node ID = -1, ID = " + std::to_string(out.id));
    }
    out.broken = out.broken || own.code < 0;
    out.id = own.id;
    return out;
}

std::optional<int> first_duplicate(const Entries& given) {
    for (std::size_t i = 0; i < given.size(); ++i) {
        for (std::size_t j = i + 1; j < given.size(); ++j) {
            if (given[i].id == given[j].id) return given[i].id;
        }
    }
    return std::nullopt;
}

// --- collecting --------------------------------------------------------------------------------

std::optional<std::string> value_of(const Node& node, Source source, bool keepsMissing) {
    std::string text = node.text;
    bool found = true;
    if (source != Source::kText) {
        const char* const name = source == Source::kData ? "Data" : "Use";
        found = node.has(name);
        text = found ? node.value_of(name) : source == Source::kData ? "" : "-1";
    }
    for (const char* const name : {"DynaUseChck", "Auto", "DynaFx"}) {
        if (!node.has(name)) continue;
        text = std::string("::{") + name + "=" + node.value_of(name) + "}" + text;
        found = true;
    }
    if (!found && !keepsMissing) return std::nullopt;
    return text;
}

namespace {

void collect_one(Node& node, int id, Source source, const CollectRules& rules, Entries& out) {
    Entry entry{id, "", node.value_of(rules.cargo.firstName), node.value_of(rules.cargo.secondName),
                node.has("Label") ? node.value_of("Label") : node.tag};
    if (!rules.cargo.values) {
        if (!entry.first.empty() || !entry.second.empty()) out.push_back(entry);
        return;
    }
    const std::optional<std::string> text = value_of(node, source, rules.themeFlag);
    if (!text) return;
    if (rules.onlyChanged) {
        if (!node.has("OldValue") || node.value_of("OldValue") == *text) return;
        node.set("OldValue", *text);
    }
    entry.value = *text;
    out.push_back(entry);
}

void report_missing(const Node& node, const CollectRules& rules) {
    if (rules.error == nullptr || !rules.error->empty() || rules.idAttribute != "DataID") return;
    const int kind = node.id.value_or(0);
    if (node.number("DataID").value_or(-1) != -1 || kind == 0 || kind == 77) return;
    *rules.error = named("Missing DataID", node, node.value_of("Name"));
}

// The branch's own entries; true when what is below it is not to be collected.
bool collect_branch(Node& branch, int id, CollectRules& level, Entries& out) {
    const bool themed = (bits(branch.number("ThemeApplicability").value_or(0)) & 0x100000U) != 0;
    if (themed) level.themeFlag = false;
    if (id == -1) return themed;
    collect_one(branch, id, themed ? Source::kData : Source::kUse, level, out);
    if (const std::optional<int> second = branch.number("ThemeApplicabilityEx")) {
        if (*second != 0) level.themeFlag = false;
        collect_one(branch, negated(id), *second != 0 ? Source::kData : Source::kUse, level, out);
    }
    return themed;
}

void collect_below(Node& tree, CollectRules level, Entries& out) {
    for (Node& child : tree.children) {
        if (child.number("TreeGetByIdIgnore").value_or(0) > 0) continue;
        report_missing(child, level);
        const TravelId id =
            travel_id(child, level.idAttribute, level.inheritedRepeat, false, level.error);
        if (child.leaf()) {
            const bool use = level.useFlag && child.has("Use");
            if (id.id >= 0) {
                collect_one(child, id.id, use ? Source::kUse : Source::kText, level, out);
            }
            continue;
        }
        const bool themed = collect_branch(child, id.id, level, out);
        if (!level.recursive || themed) continue;
        CollectRules below = level;
        below.inheritedRepeat = id.repeat;
        collect_below(child, below, out);
    }
}

}  // namespace

Entries collect(Node& tree, const CollectRules& rules) {
    Entries out;
    collect_below(tree, rules, out);
    return out;
}

// --- setting -----------------------------------------------------------------------------------

int write(Node& node, std::string value, const WriteRules& rules) {
    bool hasFx = false;
    bool hasAuto = false;
    bool hasDynaUse = false;
    if (value.size() >= 7) {
        while (const std::optional<Setting> setting = take_setting(value)) {
            const bool applies = (rules.flags & 0x20000U) == 0 && is_name(setting->name);
            if (applies) node.set(setting->name, setting->value);
            hasFx = hasFx || setting->name == "DynaFx";
            hasAuto = hasAuto || lower(setting->name) == "auto";
            hasDynaUse = hasDynaUse || lower(setting->name) == "dynausechck";
        }
    }
    if (!hasFx) node.remove("DynaFx");
    if (rules.resetsAuto && !hasAuto) reset_automatic(node);
    if (rules.checksDynaUse && !hasDynaUse && node.has("DynaUseChck")) {
        node.set("DynaUseChck", "1");
    }
    if ((rules.flags & 0x10000U) != 0) return 0;
    const bool validates = (rules.flags & 0x40000U) != 0 && !rules.validateOff;
    if (validates && value.find(kRefused) != std::string::npos) return 0;
    if (rules.watch != nullptr) {
        rules.watch->seen.push_back(value);
        value += "+seen";
    }
    if (rules.toData) {
        if (value.empty()) return 0;
        node.set("Data", value);
    } else if (!rules.branch) {
        node.text = value;
    } else if (value != "-1") {
        node.set("Use", value);
    }
    return 1;
}

namespace {

void transport(Node& node, const std::string& name, const std::string& value) {
    if (name.empty()) return;
    if (value.empty()) {
        node.remove(name);
    } else {
        node.set(name, value);
    }
}

int set_one(Node& node, const Entry& entry, const Cargo& cargo, const WriteRules& how) {
    const int written = cargo.values ? write(node, entry.value, how) : 0;
    transport(node, cargo.firstName, entry.first);
    transport(node, cargo.secondName, entry.second);
    return written;
}

int set_child(Node& child, int id, unsigned flags, const Entries& given, const SetRules& rules) {
    std::size_t at = 0;
    while (at < given.size() && given[at].id != id) ++at;
    if (id < 0 || at == given.size()) return 0;
    const bool asBranch = !child.leaf() || (!rules.themeOff && (bits(id) & 0x200000U) != 0);
    WriteRules how{!child.leaf(),
                   asBranch && (flags & 0x100000U) != 0,
                   flags,
                   rules.resetsAuto,
                   rules.checksDynaUse,
                   rules.validateOff,
                   nullptr};
    if (child.leaf() && rules.watch != nullptr && rules.watch->id == id) how.watch = rules.watch;
    const int written = set_one(child, given[at], rules.cargo, how);
    const std::optional<int> second = child.number("ThemeApplicabilityEx");
    if (child.leaf() || !second || at + 1 == given.size()) return written;
    if (given[at + 1].id != negated(id)) return written;
    how.toData = *second != 0;
    return written + set_one(child, given[at + 1], rules.cargo, how);
}

int set_below(Node& tree, const Entries& given, unsigned flags, int inherited,
              const SetRules& rules) {
    int written = 0;
    for (Node& child : tree.children) {
        const TravelId id = travel_id(child, rules.idAttribute, inherited, true, rules.error);
        if (id.broken) return -5;
        const std::optional<int> own = child.number("ThemeApplicability");
        const unsigned word = own ? bits(*own) : flags;
        written += set_child(child, id.id, word, given, rules);
        if (child.leaf()) continue;
        const int below = set_below(child, given, word, id.repeat, rules);
        if (below < 0) return below;
        written += below;
    }
    return written;
}

}  // namespace

int set(Node& tree, const Entries& given, const SetRules& rules, int& duplicate) {
    if (given.empty()) return -2;
    const std::optional<int> twice = first_duplicate(given);
    if (rules.refusesDuplicates && twice) {
        duplicate = *twice;
        char text[200];
        std::snprintf(text, sizeof text,
                      "\n******  _tree_set_values_by_ids found dup id = %d, %X. RepeatID = %d\n",
                      *twice, bits(*twice), rules.inheritedRepeat);
        report(rules.error, text);
        return -4;
    }
    return set_below(tree, given, rules.defaultFlags, rules.inheritedRepeat, rules);
}

// --- random trees ------------------------------------------------------------------------------

Words value_words(int repeatOneIn) {
    const std::vector<std::string> texts{"",
                                         "x",
                                         "X",
                                         "-1",
                                         "0",
                                         "::{Auto=1}y",
                                         "::{a=}b",
                                         "a::{b=c}d::{e=f}",
                                         "::{DynaFx=f}v",
                                         "::{x={y}}z",
                                         "::{1=b}rest",
                                         "::{a=b",
                                         "no bad text",
                                         "a <&> \"b\""};
    const std::vector<std::string> ids{"0",  "1",  "2", "3", "4",        "65535",  "65536",
                                       "-1", "-2", "x", "",  "16777217", "131074", " 3 "};
    const std::vector<std::string> words{"0",       "65536",   "131072",  "262144", "1048576",
                                         "1310720", "1114112", "2097152", "x"};
    const std::vector<std::string> small{"0", "1", "2", "-1", "x"};
    return {{"a", "b", "c"},
            {{"DataID", 2, ids},
             {"NodeID", 3, ids},
             {"RepeatID", repeatOneIn, {"0", "1", "2", "4", "32", "32767", "40000", "-1", ""}},
             {"RepeatNodeID", 3 * repeatOneIn / 2, {"0", "1", "3", "128", "256", "32767", "x"}},
             {"Use", 2, texts},
             {"Data", 4, texts},
             {"OldValue", 4, texts},
             {"ThemeApplicability", 6, words},
             {"ThemeApplicabilityEx", 6, small},
             {"TreeGetByIdIgnore", 12, small},
             {"DynaUseChck", 8, {"", "0", "1"}},
             {"DynaFx", 8, {"", "f"}},
             {"Auto", 8, {"", "1", "0|Fit|3", "2|n", "1|m|x", "x"}},
             {"Label", 3, {"", "L"}},
             {"Name", 3, {"N"}},
             {"v", 3, {"", "1", "2"}},
             {"w", 3, {"", "1"}}},
            texts,
            {std::nullopt, std::nullopt, 0, 5, 77}};
}

}  // namespace uxmodel
