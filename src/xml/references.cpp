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

constexpr std::uint32_t kMostCode = 0x10FFFF;

// The values of digits, 16 for what is none.
constexpr auto kDigits = [] {
    std::array<std::uint8_t, 256> digits{};
    digits.fill(16);
    for (unsigned i = 0; i < 10; ++i) digits['0' + i] = static_cast<std::uint8_t>(i);
    for (unsigned i = 10; i < 16; ++i) {
        digits['a' + i - 10] = digits['A' + i - 10] = static_cast<std::uint8_t>(i);
    }
    return digits;
}();
std::uint32_t digit_of(char c) {
    return kDigits[static_cast<unsigned char>(c)];
}

// The digits begin at first.
template <std::uint32_t kBase>
Reference numbered(const char* at, const char* first) {
    const char* p = first;
    std::uint32_t code = 0;
    for (; digit_of(*p) < kBase; ++p) {
        code = code * kBase + digit_of(*p);
        if (code > kMostCode) code = kMostCode + 1;
    }
    if (p == first || *p != ';' || !is_xml_character(code)) return {p - at, 0, false};
    return {p + 1 - at, code, true};
}

}  // namespace

Reference read_reference(const char* at) {
    if (at[1] == '#') return at[2] == 'x' ? numbered<16>(at, at + 3) : numbered<10>(at, at + 2);
    for (const Predefined& known : kPredefined) {
        if (stands_at(at + 1, known.text)) {
            return {static_cast<std::ptrdiff_t>(known.text.size()) + 1,
                    static_cast<unsigned char>(known.character), true};
        }
    }
    return {};
}

std::uint32_t unescape_value(char* value, std::uint32_t size) {
    const char* const end = value + size;
    char* out = value;
    const char* at = value;
    for (;;) {
        copy_with_blanks(at, end, out);
        if (at == end) return static_cast<std::uint32_t>(out - value);
        do {
            if (*at == '&') {
                const Reference reference = read_reference(at);
                at += reference.length;
                out = encode_utf8(reference.code, out);
            } else {
                at += 2;
                *out++ = ' ';
            }
            const char* const plain = at;
            at = std::min(skip_few(at, kValueStop), end);
            out = std::copy(plain, at, out);
        } while (at != end && (*at == '&' || (at[0] == '\r' && at[1] == '\n')));
    }
}

}  // namespace ux::xml
