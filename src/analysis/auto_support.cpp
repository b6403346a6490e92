#include "uxtree/analysis/auto_support.h"

#include "data/names.h"
#include "frame/guards.h"
#include "frame/messages.h"
#include "frame/results.h"

using namespace ux;

namespace {

constexpr char kDefaultName[] = "Auto";  // of a text without name
constexpr int kDefaultCount = 1;
constexpr int kKeepCount = -1;  // as an argument

constexpr int kModeOff = 0;
constexpr int kModeOn = 1;
constexpr int kKeptButOff = -1;  // as an argument and as a result

bool store(UXXmlWrapperBase& node, int mode, const char* name, int count) {
    CStringUTF8 currentName;
    int currentCount = kDefaultCount;
    const bool present = vctree_get_auto_support(node, currentName, currentCount) != 0;
    if (name == nullptr && present) name = currentName;
    CStringUTF8 text;
    vctree_create_auto_support_string(text, mode, name, count == kKeepCount ? currentCount : count);
    return node.SetPropertyValue(kAuto, text) != 0;
}

}  // namespace

int vctree_create_auto_support_string(CStringUTF8& out, int mode, const char* name, int count) {
    return at_boundary(kFail, [&] {
        const CStringUTF8 text =
            name != nullptr ? CStringUTF8(name) : message_text(kMessageAutoName);
        // Intended: the name is not quoted, so one that holds "|" is not read back as it was.
        out.Format("%d|%s|%d", mode, static_cast<const char*>(text), count);
        return kOk;
    });
}

int vctree_parse_auto_support_string(const char* text, int& mode, CStringUTF8& name, int& count) {
    return at_boundary(kFail, [&] {
        CWBOStringArray tokens;
        const int n = UXGetTokens(tokens, text, '|', '"');
        if (n < 1) return kFail;
        mode = UXLeadingInt(tokens[0]);
        name = n < 2 ? CStringUTF8(kDefaultName) : tokens[1];
        count = n < 3 ? kDefaultCount : UXLeadingInt(tokens[2]);
        return kOk;
    });
}

int vctree_get_auto_support(UXXmlWrapperBase& node, CStringUTF8& name, int& count) {
    return at_boundary(kFail, [&] {
        CStringUTF8 text;
        int mode = kModeOff;
        if (!node.GetPropertyValue(kAuto, text, 0)) return kFail;
        if (!vctree_parse_auto_support_string(text, mode, name, count)) return kFail;
        return mode != kModeOff ? mode : kKeptButOff;
    });
}

int vctree_set_auto_support(UXXmlWrapperBase& node, int mode, const char* name, int count) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) return kFail;
        switch (mode) {
            case kModeOff:
                node.RemoveProperty(kAuto);
                return kFail;  // Intended: 1 means that a text was written
            case kModeOn:
                // A node is updated either automatically or by its own formula.
                node.RemoveProperty(kDynaFx);
                return store(node, kModeOn, name, count) ? kOk : kFail;
            case kKeptButOff:
                return store(node, kModeOff, name, count) ? kOk : kFail;
            default:
                return kFail;  // Intended: other modes exist in texts only and are never set
        }
    });
}

void vctree_check_reset_auto_support(UXXmlWrapperBase& node) {
    at_boundary([&] {
        CStringUTF8 name;
        int count = kDefaultCount;
        if (vctree_get_auto_support(node, name, count) == 0) return;
        vctree_set_auto_support(node, kKeptButOff, nullptr, kKeepCount);
    });
}

extern "C" int uxtree_get_auto_support(UXXmlWrapperBase* node, CStringUTF8* name, int* count) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) return kFail;
        CStringUTF8 unusedName;
        int unusedCount = 0;
        return vctree_get_auto_support(*node, name != nullptr ? *name : unusedName,
                                       count != nullptr ? *count : unusedCount);
    });
}

extern "C" int uxtree_set_auto_support(UXXmlWrapperBase* node, int mode, const char* name,
                                       int count) {
    return node == nullptr ? kFail : vctree_set_auto_support(*node, mode, name, count);
}
