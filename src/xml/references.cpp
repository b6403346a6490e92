// Reading references, and putting the characters that they stand for into values.
#include "xml/references.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "base/utf8.h"
#include "base/xml_names.h"
#include "xml/scan.h"

namespace ux::xml {
namespace {

struct Predefined {
    std::string_view text;
    char character;
};
constexpr std::array<Predefined, 5> kPredefined{
    {{"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}}};

bool stands_at(const char* at, std::string_view text) {
    return std::equal(text.begin(), text.end(), at);  // stops at the first other byte
}

// Of the bytes at which the search stops: quotes and what is not ASCII.
bool stands_for_itself(char c) {
    return static_cast<signed char>(c) < 0 || c == '"' || c == '\'';
}

constexpr std::uint32_t kMostCode = 0x10FFFF;

// The value of a digit, 16 when it is none.
std::uint32_t digit_of(char c) {
    if (c >= '0' && c <= '9') return static_cast<std::uint32_t>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<std::uint32_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<std::uint32_t>(c - 'A' + 10);
    return 16;
}

Reference numbered(const char* at) {
    const bool hex = at[2] == 'x';
    const std::uint32_t base = hex ? 16 : 10;
    const char* const first = at + (hex ? 3 : 2);
    const char* p = first;
    std::uint32_t code = 0;
    for (; digit_of(*p) < base; ++p) {
        code = code * base + digit_of(*p);
        if (code > kMostCode) code = kMostCode + 1;
    }
    if (p == first || *p != ';' || !is_xml_character(code)) return {0, 0, p - at};
    return {code, static_cast<std::uint32_t>(p + 1 - at), 0};
}

}  // namespace

Reference read_reference(const char* at) {
    if (at[1] == '#') return numbered(at);
    for (const Predefined& known : kPredefined) {
        if (stands_at(at + 1, known.text)) {
            return {static_cast<unsigned char>(known.character),
                    static_cast<std::uint32_t>(known.text.size() + 1), 0};
        }
    }
    return {};
}

std::uint32_t unescape_value(char* value, std::uint32_t size) {
    char* const end = value + size;
    char* out = value;
    for (char* at = value;;) {
        char* const stop = std::min(find_value_stop<'&'>(at), end);
        if (out != at) std::memmove(out, at, static_cast<std::size_t>(stop - at));
        out += stop - at;
        at = stop;
        while (at != end && *at == '&') {
            const Reference reference = read_reference(at);
            at += reference.length;
            out = encode_utf8(reference.code, out);
        }
        while (at != end && is_blank(*at)) {
            at += at[0] == '\r' && at[1] == '\n' ? 2 : 1;
            *out++ = ' ';
        }
        while (at != end && stands_for_itself(*at)) *out++ = *at++;
        if (at == end) return static_cast<std::uint32_t>(out - value);
    }
}

}  // namespace ux::xml
