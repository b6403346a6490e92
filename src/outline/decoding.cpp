// Decoding the scanner's input in place, ordinary text many bytes at a time.
#include "outline/decoding.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/byte_search.h"
#include "base/utf8.h"

namespace ux {
namespace {

// Intended: four-byte sequences start with F8 to FF; the ordinary leads F0 to F7 have no length,
// so that the input ends there.
int sequence_length(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xC0) return 0;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    return lead < 0xF8 ? 0 : 4;
}

bool continuations_follow(const char* lead, int length) {
    for (int i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(lead[i]) & 0xC0u) != 0x80u) return false;
    }
    return true;
}

std::uint32_t payload(const char* lead, int length) {
    constexpr unsigned kLeadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    std::uint32_t character = static_cast<unsigned char>(lead[0]) & kLeadBits[length];
    for (int i = 1; i < length; ++i) {
        character = character << 6 | (static_cast<unsigned char>(lead[i]) & 0x3Fu);
    }
    return character;
}

#if UXTREE_SSE2_SEARCH
constexpr int kLane = 16;
constexpr std::ptrdiff_t kChunk = 64;
constexpr std::ptrdiff_t kLargeChunk = 1024;

__m128i all_lanes(int byte) {
    return _mm_set1_epi8(static_cast<char>(byte));
}
unsigned sign_bits(__m128i lane) {
    return static_cast<unsigned>(_mm_movemask_epi8(lane));
}
__m128i are_below(__m128i lane, int byte) {  // both from 80 up, or both below
    return _mm_cmpgt_epi8(all_lanes(byte), lane);
}
bool any_at_most(__m128i lane, int byte) {
    return equal_mask(_mm_min_epu8(lane, all_lanes(byte)), lane) != 0;
}

// Do lanes of 16 bytes hold only whole characters of one to three bytes, of which the last may be
// cut off? The two bytes before a lane must be readable.
class OrdinaryLanes {
public:
    void look_at(const char* lane) {
        const __m128i here = load_16(lane);
        // For what follows a lead byte: its distance from C0, or for the second byte behind a lead
        // byte of three, from E0; otherwise -1. Ordinary text never asks in both ways at once.
        const __m128i byAny = _mm_subs_epu8(load_16(lane - 1), all_lanes(0xBF));
        const __m128i byThree = _mm_subs_epu8(load_16(lane - 2), all_lanes(0xDF));
        const __m128i asked = _mm_sub_epi8(_mm_or_si128(byAny, byThree), all_lanes(1));
        fits_ = _mm_and_si128(fits_, _mm_xor_si128(asked, are_below(here, 0xC0)));
        leastAsked_ = _mm_min_epu8(leastAsked_, asked);
        leastShifted_ = _mm_min_epu8(leastShifted_, _mm_add_epi8(here, all_lanes(0x10)));
    }
    // Continuation bytes stand exactly where they must, and there is neither NUL nor F0 to FF.
    bool are_ordinary() const {
        return sign_bits(fits_) == 0xFFFF && !any_at_most(leastShifted_, 0x10);
    }
    // Was there a lead byte C0, C1, E0 or E1?
    bool may_have_long_forms() const { return any_at_most(leastAsked_, 1); }

private:
    __m128i fits_ = all_lanes(0xFF);  // in the sign bits
    __m128i leastAsked_ = all_lanes(0xFF);
    __m128i leastShifted_ = all_lanes(0xFF);  // so that F0 to FF and NUL come lowest
};

// Is no character in a longer form than it needs?
bool has_no_long_forms(const char* chunk, std::ptrdiff_t size) {
    __m128i longForms = _mm_setzero_si128();
    for (; size > 0; size -= kLane, chunk += kLane) {
        const __m128i here = load_16(chunk);
        const __m128i isC0orC1 =
            _mm_cmpeq_epi8(_mm_and_si128(here, all_lanes(0xFE)), all_lanes(0xC0));
        const __m128i followsE0 = _mm_cmpeq_epi8(load_16(chunk - 1), all_lanes(0xE0));
        const __m128i longBehindE0 = _mm_and_si128(followsE0, are_below(here, 0xA0));
        longForms = _mm_or_si128(longForms, _mm_or_si128(isC0orC1, longBehindE0));
    }
    return sign_bits(longForms) == 0;
}

// Only characters of one to three bytes in shortest form, though the last may be cut off?
bool is_ordinary(const char* chunk) {
    OrdinaryLanes lanes;
    for (int i = 0; i < kChunk; i += kLane) lanes.look_at(chunk + i);
    if (!lanes.are_ordinary()) return false;
    return !lanes.may_have_long_forms() || has_no_long_forms(chunk, kChunk);
}

// The same for a large chunk. Nearly all text is ASCII for the most part: first the places that
// are not are listed, without a branch that could be foreseen wrongly, and then looked at.
bool is_large_ordinary(const char* chunk) {
    constexpr std::ptrdiff_t kPlace = std::ptrdiff_t{2} * kLane;
    const char* places[kLargeChunk / kPlace];
    std::size_t found = 0;
    __m128i least = load_16(chunk);
    for (const char* place = chunk; place != chunk + kLargeChunk; place += kPlace) {
        const __m128i first = load_16(place);
        const __m128i second = load_16(place + kLane);
        least = _mm_min_epu8(least, _mm_min_epu8(first, second));
        places[found] = place;
        found += sign_bits(_mm_or_si128(_mm_or_si128(first, second), load_16(place - 2))) != 0;
    }
    if (any_at_most(least, 0)) return false;
    OrdinaryLanes lanes;
    for (std::size_t i = 0; i < found; ++i) {
        lanes.look_at(places[i]);
        lanes.look_at(places[i] + kLane);
    }
    if (!lanes.are_ordinary()) return false;
    return !lanes.may_have_long_forms() || has_no_long_forms(chunk, kLargeChunk);
}

std::ptrdiff_t without_cut_off(const char* chunk, std::ptrdiff_t size) {
    if (static_cast<unsigned char>(chunk[size - 1]) >= 0xC0) return size - 1;
    if (static_cast<unsigned char>(chunk[size - 2]) >= 0xE0) return size - 2;
    return size;
}

// Steps over what is seen at once to be what it decodes to. The two bytes before must be readable
// and, like all before them, belong to whole characters.
char* skip_ordinary(char* bytes, const char* end) {
    while (end - bytes >= kLargeChunk && is_large_ordinary(bytes)) {
        bytes += without_cut_off(bytes, kLargeChunk);
    }
    while (end - bytes >= kChunk && is_ordinary(bytes)) {
        bytes += without_cut_off(bytes, kChunk);
    }
    return bytes;
}
#else
constexpr std::ptrdiff_t kChunk = 8;

char* skip_ordinary(char* bytes, const char* end) {
    constexpr std::uint64_t kLows = 0x0101010101010101u;
    constexpr std::uint64_t kHighs = 0x8080808080808080u;
    for (; end - bytes >= kChunk; bytes += kChunk) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, sizeof word);
        if (((word | (word - kLows)) & kHighs) != 0) break;  // a byte from 80 up, or a NUL
    }
    return bytes;
}
#endif

}  // namespace

Decoded decode_in_place(char* bytes, char* end) {
    char* out = bytes;
    char* next = bytes;
    char* careful = bytes + 2;  // from here on look for ordinary bytes again
    while (next < end) {
        if (next == out && next >= careful) {
            out = next = skip_ordinary(next, end);
            careful = next + kChunk;
            if (next == end) break;
        }
        const int length = sequence_length(static_cast<unsigned char>(*next));
        if (length == 0) return {out, next, true};
        if (length > end - next) return {out, next, false};
        if (!continuations_follow(next, length)) return {out, next, true};
        const std::uint32_t character = payload(next, length);
        if (character == 0) return {out, next, true};
        // Never longer than the form read.
        out = encode_utf8(character, out);
        next += length;
    }
    return {out, next, false};
}

Character character_at(const char* bytes) {
    const auto lead = static_cast<unsigned char>(*bytes);
    const int length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    return {payload(bytes, length), length};
}

}  // namespace ux
