// Reading and writing of the text of automatic updates.
#include "marks/auto_text.h"

#include "uxtree/host/utilities.h"

#include "frame/guards.h"
#include "frame/messages.h"
#include "frame/results.h"
#include "marks/names.h"

namespace ux {
namespace {

constexpr char kDefaultName[] = "Auto";  // of a text without name
constexpr int kModeOff = 0;              // in a text
constexpr int kNoTextWritten = 0;        // a result

bool store(UXXmlWrapperBase& node, int mode, const char* name, int count) {
    CStringUTF8 currentName;
    int currentCount = kDefaultAutoCount;
    const bool present = read_auto(node, currentName, currentCount) != 0;
    if (name == nullptr && present) name = currentName;
    const int newCount = count == kKeepAutoCount ? currentCount : count;
    return node.SetPropertyValue(kAuto, make_auto_text(mode, name, newCount)) != 0;
}

}  // namespace

CStringUTF8 make_auto_text(int mode, const char* name, int count) {
    const CStringUTF8 given = name != nullptr ? CStringUTF8(name) : message_text(kMessageAutoName);
    CStringUTF8 text;
    // Intended: the name is not quoted, so one that holds "|" is not read back as it was.
    text.Format("%d|%s|%d", mode, static_cast<const char*>(given), count);
    return text;
}

int parse_auto_text(const char* text, int& mode, CStringUTF8& name, int& count) {
    CWBOStringArray tokens;
    const int n = UXGetTokens(tokens, text, '|', '"');
    if (n < 1) return kFail;
    mode = UXLeadingInt(tokens[0]);
    name = n < 2 ? CStringUTF8(kDefaultName) : tokens[1];
    count = n < 3 ? kDefaultAutoCount : UXLeadingInt(tokens[2]);
    return kOk;
}

int read_auto(const UXXmlWrapperBase& node, CStringUTF8& name, int& count) {
    CStringUTF8 text;
    int mode = kModeOff;
    if (!node.GetPropertyValue(kAuto, text, 0)) return kFail;
    if (!parse_auto_text(text, mode, name, count)) return kFail;
    return mode != kModeOff ? mode : kAutoKeptOff;
}

int write_auto(UXXmlWrapperBase& node, int mode, const char* name, int count) {
    if (!usable(node)) return kFail;
    switch (mode) {
        case kAutoRemoved:
            node.RemoveProperty(kAuto);
            return kNoTextWritten;  // Intended: also when a text was removed
        case kAutoOn:
            // A node is updated either automatically or by its own formula.
            node.RemoveProperty(kDynaFx);
            return store(node, kAutoOn, name, count) ? kOk : kFail;
        case kAutoKeptOff:
            return store(node, kModeOff, name, count) ? kOk : kFail;
        default:
            return kNoTextWritten;  // Intended: other modes exist in texts only and are never set
    }
}

void switch_auto_off(UXXmlWrapperBase& node) {
    CStringUTF8 name;
    int count = kDefaultAutoCount;
    if (read_auto(node, name, count) == 0) return;
    write_auto(node, kAutoKeptOff, nullptr, kKeepAutoCount);
}

}  // namespace ux
