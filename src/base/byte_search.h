// Looking at many bytes at once: vector instructions where the compiler has them, plain loops
// otherwise. Both forms give the same answers; the tests run over both.
//
// Every function may look at up to kReadAhead bytes behind the end that it is given (the bytes
// there must be readable, their values are ignored).
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__) && !defined(UXTREE_PORTABLE_SEARCH)
#define UXTREE_SSE2_SEARCH 1
#include <emmintrin.h>
#else
#define UXTREE_SSE2_SEARCH 0
#endif

namespace ux {

inline constexpr std::size_t kReadAhead = 64;

#if UXTREE_SSE2_SEARCH
inline __m128i load_16(const char* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}
inline unsigned equal_mask(__m128i a, __m128i b) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(a, b)));
}
#endif

// The first wanted byte of [bytes, end), or end.
inline const char* find_byte(const char* bytes, const char* end, char wanted) {
#if UXTREE_SSE2_SEARCH
    const __m128i pattern = _mm_set1_epi8(wanted);
    for (int i = 0; i < 4; ++i, bytes += 16) {  // most answers are near
        const unsigned mask = equal_mask(load_16(bytes), pattern);
        if (mask != 0) {
            bytes += __builtin_ctz(mask);
            if (__builtin_expect(bytes >= end, 0)) return end;  // a branch: nothing waits for it
            return bytes;
        }
        if (bytes + 16 >= end) return end;
    }
    for (; bytes < end; bytes += 64) {
        const __m128i a = _mm_cmpeq_epi8(load_16(bytes), pattern);
        const __m128i b = _mm_cmpeq_epi8(load_16(bytes + 16), pattern);
        const __m128i c = _mm_cmpeq_epi8(load_16(bytes + 32), pattern);
        const __m128i d = _mm_cmpeq_epi8(load_16(bytes + 48), pattern);
        if (_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d))) == 0) continue;
        const auto bits = [](__m128i lanes) {
            return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(lanes)));
        };
        const std::uint64_t mask = bits(a) | bits(b) << 16 | bits(c) << 32 | bits(d) << 48;
        return std::min(bytes + __builtin_ctzll(mask), end);
    }
    return end;
#else
    if (bytes == end) return end;
    const void* found = std::memchr(bytes, wanted, static_cast<std::size_t>(end - bytes));
    return found != nullptr ? static_cast<const char*>(found) : end;
#endif
}

// A text prepared for the question whether it stands at some place.
class KnownText {
public:
    KnownText() = default;
    // Keeps a view of the text, which must live as long.
    explicit KnownText(std::string_view text) : text_(text) {
        std::copy_n(text.data(), std::min(text.size(), head_.size()), head_.data());
#if UXTREE_SSE2_SEARCH
        headMask_ = text.size() >= head_.size() ? 0xFFFFu : (1u << text.size()) - 1u;
#endif
        if (!text.empty()) last_ = text.back();
    }
    std::string_view text() const {
        return text_;
    }
    std::size_t size() const {
        return text_.size();
    }
    char last() const {
        return last_;
    }

    // True when the text and at least one further byte stand in [bytes, end).
    bool stands_at(const char* bytes, const char* end) const {
        if (static_cast<std::size_t>(end - bytes) <= text_.size()) return false;
#if UXTREE_SSE2_SEARCH
        const unsigned mask = equal_mask(load_16(bytes), load_16(head_.data()));
        if ((mask & headMask_) != headMask_) return false;
        return text_.size() <= head_.size() || tail_stands_at(bytes);
#else
        return std::memcmp(bytes, text_.data(), text_.size()) == 0;
#endif
    }

private:
    bool tail_stands_at(const char* bytes) const {
        return std::memcmp(bytes + head_.size(), text_.data() + head_.size(),
                           text_.size() - head_.size()) == 0;
    }

    std::array<char, 16> head_{};
    std::string_view text_;
    [[maybe_unused]] unsigned headMask_ = 0;  // of the vector form
    char last_ = 0;
};

}  // namespace ux
