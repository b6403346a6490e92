// The two engines that move values between trees and arrays.
#pragma once

#include "uxtree/data/value_watch.h"
#include "uxtree/host/array.h"
#include "uxtree/host/node.h"

#include "data/id_index.h"
#include "marks/node_marks.h"

namespace ux {

// The arrays that travel beside the identifiers, entry i of each belonging to identifier i. Null
// arrays do not travel, and a null name stands for no attribute.
struct ValueRecord {
    CWBOStringArray* values = nullptr;
    const char* firstName = nullptr;
    CWBOStringArray* firstValues = nullptr;
    const char* secondName = nullptr;
    CWBOStringArray* secondValues = nullptr;
    CWBOStringArray* labels = nullptr;  // collection only
};

// Bits of a flag word ("ThemeApplicability"), read as the same on both sides.
enum : DWORD {
    kThemeNoValue = 0x10000,     // the value is not written
    kThemeNoSettings = 0x20000,  // leading settings are cut out and not applied
    kThemeValidate = 0x40000,    // the value is validated first
    kThemeData = 0x100000,       // a branch keeps its value in "Data"
    kIdAsBranch = 0x200000,      // in a leaf's identifier: kThemeData holds for it as for a branch
};

// Flags of a whole setting call.
enum : DWORD {
    kResetAutomatic = 0x10000,  // a value without "Auto" resets the node's automatic support
    kCheckDynaUse = 0x20000,    // a value without "DynaUseChck" switches an existing one on
    kThemeOff = 0x80000,        // kIdAsBranch has no meaning
};

// --- collecting --------------------------------------------------------------------------------

enum class ValueSource { kOwnText, kUseAttribute, kDataAttribute };

// The value of one node, by its marks, its leading settings in front. False when it has none to
// give: a source attribute is missing, so are settings, and keepMissing is not set.
bool read_node_value(const UXXmlWrapperBase& node, const NodeMarks& marks, ValueSource source,
                     bool keepMissing, CStringUTF8& out);

struct CollectOptions {
    bool recursive = true;
    bool onlyChanged = false;  // only values that differ from "OldValue", which is then refreshed
    int inheritedRepeat = 0;
    const char* idAttribute = nullptr;  // null or empty: "DataID"
    bool themeFlag = false;             // branches without "Use" give "-1"
    CStringUTF8* errorText = nullptr;
    bool useFlag = false;  // leaves that have "Use" give it
};

// Empties ids and the record's values, and appends an entry per collected node to them and to the
// record's other arrays. Without a values array the nodes with a transported attribute are
// collected. Returns the number of entries.
int _tree_get_values_by_ids(const UXXmlWrapperBase& tree, CArray<int, int>& ids,
                            const ValueRecord& record, const CollectOptions& options);

// --- setting -----------------------------------------------------------------------------------

// Results of setting that are no count.
enum : int {
    kNoIds = -2,        // identifiers or values are empty
    kUnequal = -3,      // the arrays differ in length
    kDuplicateId = -4,  // an identifier stands twice in the array
    kRepeatError = -5,  // the rules of repeated identifiers are broken at a node
};

// How one value is written into one node.
struct NodeWrite {
    int setMode = 0;
    bool branch = false;  // the value goes into "Use"
    bool toData = false;  // the value goes into "Data", when it is not empty
    DWORD flags = 0;      // the node's flag word, without kThemeData and kIdAsBranch
    DWORD callFlags = 0;
    bool validateOff = true;
    _SETVALUESBYIDS* callback = nullptr;  // armed for this node
};
// True when a value was written, as opposed to held back. The marks are the node's.
bool write_node_value(UXXmlWrapperBase& node, const NodeMarks& marks, const CStringUTF8& value,
                      const NodeWrite& how);

struct SetOptions {
    DWORD defaultFlags = 0;
    int inheritedRepeat = 0;
    int* duplicate = nullptr;  // given: duplicates are refused, and the first one is reported here
    int setMode = 0;
    const char* idAttribute = nullptr;  // null or empty: "DataID"
    CStringUTF8* errorText = nullptr;
    _SETVALUESBYIDS* callback = nullptr;
    DWORD callFlags = 0;
    bool validateOff = false;
};

// kOk, kNoIds or kUnequal.
int check_lists(const CArray<int, int>& ids, const ValueRecord& record);

// True, with the first repeated identifier in *duplicate and a message, when duplicate is given and
// an identifier stands twice.
bool refuses_duplicate(const CArray<int, int>& ids, const IdIndex& index, int inheritedRepeat,
                       int* duplicate, CStringUTF8* errorText);

// Writes the entries into the nodes below tree that carry their identifiers; the first entry of an
// identifier counts, and every node that carries it is written. Returns the number of values
// written, or a negative code; what was written before a kRepeatError stays.
int _tree_set_values_by_ids(const UXXmlWrapperBase& tree, const CArray<int, int>& ids,
                            const ValueRecord& record, const SetOptions& options);

}  // namespace ux
