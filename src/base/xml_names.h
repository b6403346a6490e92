// Which characters may stand in an XML document, and in its names.
#pragma once

#include <cstdint>
#include <string_view>

namespace ux {

// May a name start with the character: "_", ":" or a letter, which is any base character or
// ideograph of XML 1.0, fourth edition.
bool starts_name(std::uint32_t character);

// May the character stand in a name behind its first character: what may start one, digits, ".",
// "-", combining characters and extenders.
bool continues_name(std::uint32_t character);

// May the character stand in a document at all? Control characters, surrogates and two more may not.
inline bool is_xml_character(std::uint32_t character) {
    if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
    if (character >= 0xD800 && character <= 0xDFFF) return false;
    return character <= 0x10FFFF && character != 0xFFFE && character != 0xFFFF;
}

// Is the whole text, in UTF-8, a name?
bool is_name(std::string_view text);

}  // namespace ux
