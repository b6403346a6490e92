// UTF-8, one character at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ux {

struct Utf8Char {
    char32_t code = 0;
    std::size_t length = 0;  // in bytes; 0 when no well-formed character stands there
};

inline bool is_continuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// The well-formed character at a position inside the text. Overlong forms, surrogates and codes
// above U+10FFFF are not well-formed.
inline Utf8Char decode_utf8(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
    const unsigned char first = byte(0);
    if (first < 0x80U) return {first, 1};
    if (first < 0xC2U || first > 0xF4U) return {};

    const std::size_t length = first < 0xE0U ? 2 : first < 0xF0U ? 3 : 4;
    if (text.size() - at < length) return {};
    char32_t code = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!is_continuation(text[at + i])) return {};
        code = (code << 6U) | (byte(i) & 0x3FU);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kSmallest[length] || code > 0x10FFFF || surrogate) return {};
    return {code, length};
}

// Bytes to step over at a position: one character, or one byte that belongs to none.
inline std::size_t utf8_step(std::string_view text, std::size_t at) {
    const std::size_t length = decode_utf8(text, at).length;
    return length == 0 ? 1 : length;
}

// Writes the shortest form, at most four bytes. Yields the place behind it.
inline char* encode_utf8(std::uint32_t character, char* out) {
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

}  // namespace ux
