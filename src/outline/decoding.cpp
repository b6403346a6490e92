#include "outline/decoding.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "outline/byte_search.h"

namespace ux {
namespace {

constexpr std::ptrdiff_t kChunk = 64;

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

// Writes the shortest form, never longer than the form read. Yields the place behind it.
char* encode(std::uint32_t character, char* out) {
    const auto put = [&out](std::uint32_t byte) { *out++ = static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | character >> 6);
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | character >> 12);
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | character >> 18);
        put(0x80 | (character >> 12 & 0x3F));
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    }
    return out;
}

#if UXTREE_SSE2_SEARCH
struct Chunk {
    __m128i lanes[4];
    explicit Chunk(const char* bytes)
        : lanes{load_16(bytes), load_16(bytes + 16), load_16(bytes + 32), load_16(bytes + 48)} {}

    bool plain_ascii() const {  // and no NUL
        const __m128i any =
            _mm_or_si128(_mm_or_si128(lanes[0], lanes[1]), _mm_or_si128(lanes[2], lanes[3]));
        return (static_cast<unsigned>(_mm_movemask_epi8(any)) | nul_bits()) == 0;
    }
    unsigned nul_bits() const {
        const __m128i least =
            _mm_min_epu8(_mm_min_epu8(lanes[0], lanes[1]), _mm_min_epu8(lanes[2], lanes[3]));
        return equal_mask(least, _mm_setzero_si128());
    }
    template <typename Test>
    std::uint64_t bits(Test test) const {
        std::uint64_t result = 0;
        for (int i = 3; i >= 0; --i) {
            result = result << 16 | static_cast<unsigned>(_mm_movemask_epi8(test(lanes[i])));
        }
        return result;
    }
    // The bytes that equal value under mask.
    std::uint64_t matching(int mask, int value) const {
        const __m128i masks = _mm_set1_epi8(static_cast<char>(mask));
        const __m128i values = _mm_set1_epi8(static_cast<char>(value));
        return bits([&](__m128i lane) { return _mm_cmpeq_epi8(_mm_and_si128(lane, masks), values); });
    }
};

// How many bytes of the chunk are whole sequences of one to three bytes in shortest form; 0 when
// there is anything else, which is then looked at byte by byte.
std::ptrdiff_t ordinary_bytes(const Chunk& chunk) {
    if (chunk.nul_bits() != 0) return 0;
    const std::uint64_t high = chunk.bits([](__m128i lane) { return lane; });
    const std::uint64_t continuations = chunk.matching(0xC0, 0x80);
    const std::uint64_t two = chunk.matching(0xE0, 0xC0) & ~chunk.matching(0xFE, 0xC0);
    const std::uint64_t three = chunk.matching(0xF0, 0xE0);
    const std::uint64_t expected = two << 1 | three << 1 | three << 2;
    const std::uint64_t longForms = chunk.matching(0xFF, 0xE0) << 1 & chunk.matching(0xE0, 0x80);
    if (high != (continuations | two | three) || expected != continuations || longForms != 0) {
        return 0;
    }
    if (((two | three) >> 63 & 1) != 0) return kChunk - 1;
    return (three >> 62 & 1) != 0 ? kChunk - 2 : kChunk;
}
#endif

// Steps over whole chunks that are what they decode to.
char* skip_ordinary(char* bytes, const char* end) {
#if UXTREE_SSE2_SEARCH
    while (end - bytes >= kChunk) {
        const Chunk chunk(bytes);
        if (chunk.plain_ascii()) {
            bytes += kChunk;
            continue;
        }
        const std::ptrdiff_t ordinary = ordinary_bytes(chunk);
        if (ordinary == 0) break;
        bytes += ordinary;
    }
#else
    constexpr std::uint64_t kLows = 0x0101010101010101u;
    constexpr std::uint64_t kHighs = 0x8080808080808080u;
    while (end - bytes >= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, sizeof word);
        if (((word | (word - kLows)) & kHighs) != 0) break;
        bytes += 8;
    }
#endif
    return bytes;
}

}  // namespace

Decoded decode_in_place(char* bytes, char* end) {
    char* out = bytes;
    char* next = bytes;
    char* careful = bytes;  // look again for ordinary bytes from here on
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
        out = encode(character, out);
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
