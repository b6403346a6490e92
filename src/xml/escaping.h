// What XML can hold as text, and how what it cannot hold as it stands is written.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace ux::xml {

// What the bytes of a text ask for. A text is looked at once; all questions are answered from what
// was found then.
enum TextClass : unsigned char {
    kInText = 1,       // has a reference of its own in the text of an element
    kInAttribute = 2,  // and in an attribute's value
    kForbidden = 4,    // stands in no XML document
    kHigh = 8,         // part of a longer character, or no character at all
    kNotBlank = 16,
};

namespace detail {
constexpr std::array<unsigned char, 256> byte_classes() {
    std::array<unsigned char, 256> classes{};
    for (int c = 0; c < 256; ++c) {
        unsigned char bits = c == ' ' ? 0 : kNotBlank;
        if (c < 0x20) bits = kForbidden | kNotBlank;
        if (c >= 0x80) bits |= kHigh;
        classes[static_cast<std::size_t>(c)] = bits;
    }
    classes['\t'] = classes['\n'] = kInAttribute;
    classes['\r'] = kInText | kInAttribute;
    classes['&'] = classes['<'] = classes['>'] = kInText | kInAttribute | kNotBlank;
    classes['"'] = kInAttribute | kNotBlank;
    return classes;
}
inline constexpr std::array<unsigned char, 256> kClasses = byte_classes();
}  // namespace detail

inline unsigned char class_of(char c) {
    return detail::kClasses[static_cast<unsigned char>(c)];
}
// Of all bytes together.
inline unsigned classes_in(std::string_view text) {
    unsigned found = 0;
    for (const char c : text) found |= class_of(c);
    return found;
}

// Is the whole text UTF-8, and made of characters that a document may have?
bool holds_only_characters(std::string_view text);

// "&lt;", "&#10;" and the like, for the bytes that ask for one and for a space.
std::string_view reference_for(char c);

}  // namespace ux::xml
