// The rules of identifiers, of collecting and of setting once more, recursively over plain trees:
// what the engines must agree with.
#pragma once

#include <string>
#include <vector>

#include "support/model_tree.h"

namespace uxmodel {

// --- identifiers -------------------------------------------------------------------------------

// One application of a rule: its code, and the identifiers as it leaves them.
struct Combination {
    int code;
    int id;
    std::optional<int> repeat;  // nothing: the rule writes none
};
Combination combine_with_repeat(const Node& node, int id, int inherited);
Combination combine_with_repeat_node(const Node& node, int id);

// The identifier under which a node's value travels, and what its branch inherits.
struct TravelId {
    int id;
    int repeat;
    bool broken;
};
// Setting stops at the first broken rule, collecting reports it and goes on. The error text may be
// null, here and below.
TravelId travel_id(const Node& node, const std::string& idAttribute, int inherited, bool stops,
                   std::string* error);

int negated(int id);

// --- collecting --------------------------------------------------------------------------------

struct Entry {
    int id;
    std::string value;
    std::string first;  // the transported attributes
    std::string second;
    std::string label;
    bool operator==(const Entry&) const = default;
};
using Entries = std::vector<Entry>;
std::ostream& operator<<(std::ostream& out, const Entry& entry);

// What travels beside the identifiers; attributes without name do not.
struct Cargo {
    bool values = true;
    std::string firstName = "";
    std::string secondName = "";
};

enum class Source { kText, kUse, kData };
// A node's value with its settings in front; nothing when it has none to give.
std::optional<std::string> value_of(const Node& node, Source source, bool keepsMissing);

struct CollectRules {
    Cargo cargo = {};
    bool recursive = true;
    bool onlyChanged = false;
    int inheritedRepeat = 0;
    std::string idAttribute = "DataID";
    bool themeFlag = false;
    bool useFlag = false;
    std::string* error = nullptr;
};
Entries collect(Node& tree, const CollectRules& rules);

// --- setting -----------------------------------------------------------------------------------

// A watch notes the text about to be written and writes it with "+seen" behind it.
struct Watch {
    int id;
    std::vector<std::string> seen;
};

// Validation refuses texts with this in them.
inline constexpr char kRefused[] = "bad";

struct WriteRules {
    bool branch = false;
    bool toData = false;
    unsigned flags = 0;
    bool resetsAuto = false;
    bool checksDynaUse = false;
    bool validateOff = false;
    Watch* watch = nullptr;
};
// 1 when a value was written.
int write(Node& node, std::string value, const WriteRules& rules);

struct SetRules {
    Cargo cargo = {};
    unsigned defaultFlags = 0;
    int inheritedRepeat = 0;
    std::string idAttribute = "DataID";
    bool refusesDuplicates = false;
    bool resetsAuto = false;
    bool checksDynaUse = false;
    bool themeOff = false;
    bool validateOff = false;
    std::string* error = nullptr;
    Watch* watch = nullptr;
};
// The number of values written, or a negative code; a duplicate that is refused is stored.
int set(Node& tree, const Entries& given, const SetRules& rules, int& duplicate);

// The entry of an identifier that stands twice: the one with the lowest place.
std::optional<int> first_duplicate(const Entries& given);

// --- random trees ------------------------------------------------------------------------------

// Words with every attribute that the engines look at; one node in repeatOneIn has a RepeatID.
Words value_words(int repeatOneIn);

}  // namespace uxmodel
