// Character classes and case of ASCII, whatever the locale.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace ux {

inline bool is_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
// White space as XML has it.
inline bool is_blank(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}
inline bool is_digit(char c) {
    return c >= '0' && c <= '9';
}
inline bool is_letter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
inline char to_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
inline char to_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

inline std::string folded(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = to_lower(c);
    return out;
}

// Equal, but for the case of ASCII letters?
inline bool equal_no_case(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return to_lower(x) == to_lower(y); });
}

inline bool starts_with_no_case(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && equal_no_case(text.substr(0, start.size()), start);
}

inline std::string_view trimmed(std::string_view text) {
    while (!text.empty() && is_space(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_space(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace ux
