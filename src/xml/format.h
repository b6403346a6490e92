// A document with other white space between its elements.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ux::xml {

struct FormatStyle {
    std::string_view indent = "  ";  // of one level
    bool compact = false;            // no lines at all
};

// Appends a well-formed document in UTF-8 with each element that has child elements and no text laid
// out anew: every child, comment and instruction in a line of its own. All else stays as it is; so do
// leaves, mixed content and what xml:space="preserve" is said of, byte by byte, but for the white
// space in start tags. False when the text is no document.
bool format_document(std::string_view text, const FormatStyle& style, std::string& out);

}  // namespace ux::xml
