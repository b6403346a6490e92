// Searches for the bytes that mean something in the content of an XML document, and what is done to
// the runs between them. They look at many bytes at once where the compiler has vector
// instructions, and at one after the other otherwise.
//
// None of them has an end to watch: a NUL byte must stand behind the input, with kReadAhead
// readable bytes. Every search stops there at the latest.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/ascii.h"
#include "base/byte_search.h"

namespace ux::xml {
// Both forms may be linked into one program, as a test of them is.
#if UXTREE_SSE2_SEARCH
inline namespace vector_search {
#else
inline namespace plain_search {
#endif

using ux::is_blank;

// Kinds of bytes, as bits.
enum ByteKind : std::uint8_t {
    kTextStop = 1,   // ends a run of plain text
    kValueStop = 2,  // ends one of an attribute value, whatever its quotes
    kNameStop = 4,   // cannot stand in a name, or is not ASCII
    kOdd = 8,  // is no plain character anywhere: a control character other than TAB and LF, or
               // not ASCII
    kNamePart = 16,   // stands in names, as far as it is ASCII
    kNameStart = 32,  // starts one
};

constexpr std::array<std::uint8_t, 256> make_byte_kinds() {
    std::array<std::uint8_t, 256> kinds{};
    const auto mark = [&kinds](std::string_view bytes, std::uint8_t kind) {
        for (const char c : bytes) kinds[static_cast<unsigned char>(c)] |= kind;
    };
    for (std::size_t c = 0; c < kinds.size(); ++c) {
        if (c < 0x20 || c >= 0x80) kinds[c] = kTextStop | kValueStop | kNameStop | kOdd;
    }
    for (const char c : {'\n', '\t'}) kinds[static_cast<unsigned char>(c)] = kValueStop | kNameStop;
    mark("<&]", kTextStop);
    mark("<&\"'", kValueStop);
    mark(" /=>", kNameStop);
    mark("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_:", kNameStart | kNamePart);
    mark("0123456789.-", kNamePart);
    return kinds;
}
inline constexpr std::array<std::uint8_t, 256> kByteKinds = make_byte_kinds();

inline bool is_kind(char c, ByteKind kind) {
    return (kByteKinds[static_cast<unsigned char>(c)] & kind) != 0;
}
// The first byte of a kind.
template <typename Char>
Char* find_kind(Char* bytes, ByteKind kind) {
    while (!is_kind(*bytes, kind)) ++bytes;
    return bytes;
}

// The first byte of a kind if it is one of the next few. Where it often is, looking at one after the
// other is faster than a search, which has to be waited for.
template <typename Char>
Char* skip_few(Char* bytes, ByteKind kind) {
    for (int i = 0; i < 4 && !is_kind(*bytes, kind); ++i) ++bytes;
    return bytes;
}

#if UXTREE_SSE2_SEARCH
// Which of 16 bytes are from the first to the last: the last is made the largest number.
inline __m128i bytes_between(__m128i block, unsigned char first, unsigned char last) {
    const __m128i moved = _mm_add_epi8(block, _mm_set1_epi8(static_cast<char>(0x7F - last)));
    return _mm_cmpgt_epi8(moved, _mm_set1_epi8(static_cast<char>(0x7E - last + first)));
}
inline unsigned bits_of(__m128i bytes) {
    return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

// Which of 16 bytes are control characters other than TAB and LF, or not ASCII.
inline __m128i odd_bytes(__m128i block) {
    const __m128i firstPlain = _mm_set1_epi8(0x20);
    const __m128i lines = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n')),
                                       _mm_cmpeq_epi8(block, _mm_set1_epi8('\t')));
    return _mm_andnot_si128(lines, _mm_cmplt_epi8(block, firstPlain));
}
// Which are white space other than blanks.
inline __m128i line_bytes(__m128i block) {
    return _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\r')),
                        _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n')),
                                     _mm_cmpeq_epi8(block, _mm_set1_epi8('\t'))));
}
// Likewise odd ones without CR.
inline __m128i odd_bytes_but_returns(__m128i block) {
    return _mm_andnot_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\r')), odd_bytes(block));
}
#endif

// The first byte that ends a run of plain text: markup, a reference, "]" or an odd byte.
inline char* find_text_stop(char* bytes) {
#if UXTREE_SSE2_SEARCH
    for (;; bytes += 16) {
        const __m128i block = load_16(bytes);
        const __m128i markup = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('<')),
                                            _mm_cmpeq_epi8(block, _mm_set1_epi8('&')));
        const __m128i bracket = _mm_cmpeq_epi8(block, _mm_set1_epi8(']'));
        const __m128i stop = _mm_or_si128(_mm_or_si128(odd_bytes(block), markup), bracket);
        const unsigned stops = bits_of(stop);
        if (stops != 0) return bytes + __builtin_ctz(stops);
    }
#else
    return find_kind(bytes, kTextStop);
#endif
}

// The first place where the two characters follow each other, or of an odd byte; CR may be none.
template <char kFirst, char kSecond, bool kStopsAtReturns>
char* find_pair(char* bytes) {
#if UXTREE_SSE2_SEARCH
    for (;; bytes += 16) {
        const __m128i block = load_16(bytes);
        const __m128i pairs =
            _mm_and_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8(kFirst)),
                          _mm_cmpeq_epi8(load_16(bytes + 1), _mm_set1_epi8(kSecond)));
        const __m128i odd = kStopsAtReturns ? odd_bytes(block) : odd_bytes_but_returns(block);
        const unsigned stops = bits_of(_mm_or_si128(odd, pairs));
        if (stops != 0) return bytes + __builtin_ctz(stops);
    }
#else
    const auto isPlain = [](char c) {
        return !is_kind(c, kOdd) || (c == '\r' && !kStopsAtReturns);
    };
    while (isPlain(*bytes) && (bytes[0] != kFirst || bytes[1] != kSecond)) ++bytes;
    return bytes;
#endif
}

// The first byte that ends a run of plain characters in a value with such quotes. The other quote
// may end it too. White space other than blanks does not in a value that is going to be unescaped.
template <char kQuote, bool kStopsAtLines>
char* find_value_stop(char* bytes) {
#if UXTREE_SSE2_SEARCH
    const __m128i firstPlain = _mm_set1_epi8(0x20);
    const __m128i quotes = _mm_set1_epi8(kQuote);
    for (;; bytes += 16) {
        const __m128i block = load_16(bytes);
        const __m128i odd =
            _mm_or_si128(_mm_cmplt_epi8(block, firstPlain), _mm_cmpeq_epi8(block, quotes));
        const __m128i markup = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('<')),
                                            _mm_cmpeq_epi8(block, _mm_set1_epi8('&')));
        unsigned stops = bits_of(_mm_or_si128(odd, markup));
        if (!kStopsAtLines && stops != 0) stops &= ~bits_of(line_bytes(block));
        if (stops != 0) return bytes + __builtin_ctz(stops);
    }
#else
    while (!is_kind(*bytes, kValueStop) || (!kStopsAtLines && is_blank(*bytes))) ++bytes;
    return bytes;
#endif
}

// The place of the first byte that ends an ASCII name, 16 when it is none of the first 16.
inline unsigned name_length(const char* bytes) {
#if UXTREE_SSE2_SEARCH
    const __m128i block = load_16(bytes);
    const __m128i ends = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('/')),
                                      _mm_cmpeq_epi8(block, _mm_set1_epi8('=')));
    const __m128i close = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('>')),
                                       _mm_cmplt_epi8(block, _mm_set1_epi8(0x21)));
    return static_cast<unsigned>(__builtin_ctz(bits_of(_mm_or_si128(ends, close)) | 0x10000U));
#else
    unsigned length = 0;
    while (length < 16 && !is_kind(bytes[length], kNameStop)) ++length;
    return length;
#endif
}

// The first byte that does not stand in names, or is not ASCII.
inline char* skip_name_parts(char* bytes) {
#if UXTREE_SSE2_SEARCH
    for (;; bytes += 16) {
        const __m128i block = load_16(bytes);
        const __m128i letters = bytes_between(_mm_or_si128(block, _mm_set1_epi8(0x20)), 'a', 'z');
        const __m128i slashes = _mm_cmpeq_epi8(block, _mm_set1_epi8('/'));
        const __m128i others =
            _mm_or_si128(_mm_andnot_si128(slashes, bytes_between(block, '-', ':')),
                         _mm_cmpeq_epi8(block, _mm_set1_epi8('_')));
        const unsigned stops = bits_of(_mm_or_si128(letters, others)) ^ 0xFFFFU;
        if (stops != 0) return bytes + __builtin_ctz(stops);
    }
#else
    while (is_kind(*bytes, kNamePart)) ++bytes;
    return bytes;
#endif
}

// The first "<", or control character up to the last: one with blanks stands before attributes too.
template <char kLast>
char* find_name_opening(char* bytes) {
#if UXTREE_SSE2_SEARCH
    for (;; bytes += 16) {
        const __m128i block = load_16(bytes);
        const __m128i controls = _mm_cmpeq_epi8(_mm_min_epu8(block, _mm_set1_epi8(kLast)), block);
        const __m128i stop = _mm_or_si128(controls, _mm_cmpeq_epi8(block, _mm_set1_epi8('<')));
        const unsigned stops = bits_of(stop);
        if (stops != 0) return bytes + __builtin_ctz(stops);
    }
#else
    while (*bytes != '<' && static_cast<unsigned char>(*bytes) > kLast) ++bytes;
    return bytes;
#endif
}

// Which of 16 bytes are equal, as bits.
inline unsigned equal_bytes(const char* a, const char* b) {
#if UXTREE_SSE2_SEARCH
    return equal_mask(load_16(a), load_16(b));
#else
    unsigned equal = 0;
    for (unsigned i = 0; i < 16; ++i) equal |= static_cast<unsigned>(a[i] == b[i]) << i;
    return equal;
#endif
}

// Is all of it white space? So many bytes as the search looks ahead can be read behind it.
inline bool is_all_blank(const char* bytes, std::size_t size) {
#if UXTREE_SSE2_SEARCH
    for (;;) {
        const __m128i block = load_16(bytes);
        const __m128i lines = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n')),
                                           _mm_cmpeq_epi8(block, _mm_set1_epi8('\r')));
        const __m128i gaps = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8(' ')),
                                          _mm_cmpeq_epi8(block, _mm_set1_epi8('\t')));
        const auto run =
            static_cast<std::size_t>(__builtin_ctz(~bits_of(_mm_or_si128(lines, gaps))));
        if (run >= size) return true;
        if (run < 16) return false;
        bytes += 16;
        size -= 16;
    }
#else
    return std::all_of(bytes, bytes + size, is_blank);
#endif
}

// How many bytes one well-formed character that is not ASCII takes; 0 when none stands there.
// U+FFFE and U+FFFF are none: XML does not allow them.
inline std::size_t high_character(const char* bytes) {
    const auto byte = [bytes](int i) { return static_cast<unsigned char>(bytes[i]); };
    const auto follows = [byte](int i) { return (byte(i) & 0xC0U) == 0x80U; };
    const unsigned first = byte(0);
    if (first < 0xC2 || first > 0xF4 || !follows(1)) return 0;
    if (first < 0xE0) return 2;
    if (!follows(2)) return 0;
    if (first < 0xF0) {
        if (first == 0xE0) return byte(1) >= 0xA0 ? 3 : 0;
        if (first == 0xED) return byte(1) < 0xA0 ? 3 : 0;
        return first == 0xEF && byte(1) == 0xBF && byte(2) >= 0xBE ? 0 : 3;
    }
    if (!follows(3)) return 0;
    if (first == 0xF0) return byte(1) >= 0x90 ? 4 : 0;
    return first < 0xF4 || byte(1) < 0x90 ? 4 : 0;
}

// What ends any of the runs above.
inline constexpr auto kAnyStop = static_cast<ByteKind>(kTextStop | kValueStop);

// The end of a run of well-formed characters, of which the first is not ASCII: before any byte at
// which one of the searches above could stop, or where none follow that are not ASCII.
__attribute__((noinline)) inline char* skip_high(char* bytes) {
#if UXTREE_SSE2_SEARCH
    // A word, as a rule, of letters of two bytes before markup.
    const __m128i word = load_16(bytes);
    const __m128i kinds = _mm_and_si128(word, _mm_set1_epi16(static_cast<short>(0xC0E0)));
    const __m128i pairs = _mm_cmpeq_epi16(kinds, _mm_set1_epi16(static_cast<short>(0x80C0)));
    const __m128i firsts = _mm_and_si128(word, _mm_set1_epi16(0x00FE));
    const __m128i overlong = _mm_cmpeq_epi16(firsts, _mm_set1_epi16(0x00C0));
    bytes += __builtin_ctz(~bits_of(_mm_andnot_si128(overlong, pairs)));
    if (is_kind(*bytes, kAnyStop) && static_cast<signed char>(*bytes) >= 0) return bytes;
#endif
    for (;;) {
#if UXTREE_SSE2_SEARCH
        // Of two or three bytes, unless the second one has to be looked at.
        const __m128i block = load_16(bytes);
        const unsigned high = bits_of(block);
        if (high == 0) return bytes;
        const unsigned two = bits_of(bytes_between(block, 0xC2, 0xDF));
        const unsigned behind = bits_of(_mm_cmplt_epi8(block, _mm_set1_epi8('\xC0')));
        unsigned three = 0;
        if ((two | behind) != high) {
            three = bits_of(_mm_or_si128(bytes_between(block, 0xE1, 0xEC),
                                         _mm_cmpeq_epi8(block, _mm_set1_epi8('\xEE'))));
        }
        const unsigned second = (two | three) << 1;
        const unsigned third = three << 2;
        const unsigned wrong = (behind ^ (second | third)) | (high ^ (two | three | behind));
        // With some that stop no search.
        const __m128i low = _mm_andnot_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8(' ')),
                                             bytes_between(block, 0, '\''));
        const __m128i marks = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('-')),
                                           _mm_cmpeq_epi8(block, _mm_set1_epi8(']')));
        const __m128i others = _mm_or_si128(marks, bytes_between(block, '<', '?'));
        const unsigned stops = bits_of(_mm_or_si128(low, others));
        const unsigned run = static_cast<unsigned>(__builtin_ctz(wrong | stops | 0x10000U));
        // Of the last character a part may stand there alone.
        bytes += run - ((second >> run & 1U) != 0 ? 1 : (third >> run & 1U) != 0 ? 2 : 0);
        if (run == 16) continue;
#endif
        if (static_cast<signed char>(*bytes) >= 0) return bytes;
        do {
            const std::size_t length = high_character(bytes);
            if (length == 0) return bytes;
            bytes += length;
        } while (static_cast<signed char>(*bytes) < 0);
    }
}

}  // inline namespace
}  // namespace ux::xml
