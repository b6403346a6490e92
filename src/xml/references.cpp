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

// Copies plain text of a value to the same place or one before, with a blank for each white space,
// up to a reference or a CR before a LF. Moves both places behind it.
void copy_with_blanks(const char*& bytes, const char* end, char*& target) {
#if UXTREE_SSE2_SEARCH
    for (;;) {
        const __m128i block = load_16(bytes);
        const __m128i gaps = line_bytes(block);
        const __m128i references = _mm_cmpeq_epi8(block, _mm_set1_epi8('&'));
        const auto left = end - bytes;
        if (bytes == target && left >= 16 && bits_of(_mm_or_si128(gaps, references)) == 0) {
            bytes += 16;
            target += 16;
            continue;
        }
        const __m128i pairs =
            _mm_and_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\r')),
                          _mm_cmpeq_epi8(load_16(bytes + 1), _mm_set1_epi8('\n')));
        const unsigned stops = bits_of(_mm_or_si128(pairs, references));
        const auto count = std::min<std::ptrdiff_t>(left, __builtin_ctz(stops | 0x10000U));
        const __m128i copied =
            _mm_or_si128(_mm_andnot_si128(gaps, block), _mm_and_si128(gaps, _mm_set1_epi8(' ')));
        // What is not copied yet stays as it is.
        if (bytes - target >= 16 - count) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(target), copied);
        } else {
            std::array<char, 16> part;
            _mm_storeu_si128(reinterpret_cast<__m128i*>(part.data()), copied);
            std::memcpy(target, part.data(), static_cast<std::size_t>(count));
        }
        bytes += count;
        target += count;
        if (count < 16) return;
    }
#else
    for (; bytes != end && *bytes != '&' && (bytes[0] != '\r' || bytes[1] != '\n'); ++bytes) {
        *target++ = is_blank(*bytes) ? ' ' : *bytes;
    }
#endif
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
