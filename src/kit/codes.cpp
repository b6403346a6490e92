// Names and meanings of result codes, looked up in the table made of the annotations.
#include "kit/codes.h"

#include <algorithm>
#include <cstring>

#include "uxtree/kit/c.h"

#include "kit/c_last_error.h"

namespace {

using ux::kit::Code;

// The row of a code: its own one, or else the first that stands for further codes and reaches it.
const Code* find(const char* function, int code) {
    const Code* const end = ux::kit::kCodes + ux::kit::kCodeCount;
    const Code* row = std::lower_bound(
        ux::kit::kCodes, end, function,
        [](const Code& each, const char* name) { return std::strcmp(each.function, name) < 0; });
    const Code* further = nullptr;
    for (; row != end && std::strcmp(row->function, function) == 0; ++row) {
        if (!row->any && row->code == code) return row;
        if (row->any && further == nullptr && code >= row->code) further = row;
    }
    return further;
}

const char* text_of(const char* function, int code, const char* Code::*member) {
    return ux::kit::guarded<const char*>(nullptr, [&]() -> const char* {
        if (function == nullptr)
            return ux::kit::refused<const char*>(nullptr, "the function is null");
        const Code* const row = find(function, code);
        if (row == nullptr)
            return ux::kit::refused<const char*>(nullptr, "no such function, or no such code");
        return row->*member;
    });
}

}  // namespace

const char* ux_code_name(const char* function, int code) {
    return text_of(function, code, &Code::name);
}
const char* ux_describe(const char* function, int code) {
    return text_of(function, code, &Code::sentence);
}
