// References to characters, and what they make of values.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ux::xml {

struct Reference {
    std::ptrdiff_t length = 0;  // of what was understood
    std::uint32_t code = 0;
    bool isWhole = false;
};

// The reference at "&": to one of the five predefined entities, or to a character by its number. A
// byte that cannot belong to one must stand behind the input.
Reference read_reference(const char* at);

// Replaces references by their characters and white space by blanks in an attribute value that was
// found to be well-formed. Yields its new length, which is at most the old one.
std::uint32_t unescape_value(char* value, std::uint32_t size);

}  // namespace ux::xml
