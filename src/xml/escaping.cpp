// Characters that a document may have, and references for those that cannot stand as they are.
#include "xml/escaping.h"

#include <cstddef>

#include "base/utf8.h"
#include "base/xml_names.h"

namespace ux::xml {
namespace {

// Bytes of the character at text[0]; 0 when XML does not allow what stands there.
std::size_t character_length(std::string_view text) {
    const unsigned char bits = class_of(text[0]);
    if ((bits & kForbidden) != 0) return 0;
    if ((bits & kHigh) == 0) return 1;
    const Utf8Char character = decode_utf8(text, 0);
    return is_xml_character(character.code) ? character.length : 0;
}

}  // namespace

bool holds_only_characters(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = character_length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string_view reference_for(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\t':
            return "&#9;";
        case '\n':
            return "&#10;";
        case '\r':
            return "&#13;";
        default:
            return "&#32;";
    }
}

}  // namespace ux::xml
