// Character classes and case of ASCII, whatever the locale.
#pragma once

#include <string_view>

namespace ux {

inline bool is_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
inline bool is_digit(char c) {
    return c >= '0' && c <= '9';
}
inline char to_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
inline char to_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

inline std::string_view trimmed(std::string_view text) {
    while (!text.empty() && is_space(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_space(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace ux
