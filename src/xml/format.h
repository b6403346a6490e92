// A document with other white space between its elements.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "xml/byte_source.h"
#include "xml/window.h"

namespace ux::xml {

struct FormatStyle {
    std::string_view indent = "  ";  // of one level
    bool compact = false;            // no lines at all
};

// Takes the document piece by piece.
using WriteBytes = std::function<void(std::string_view)>;

// Writes a well-formed document in UTF-8 with each element that has child elements and no text laid
// out anew: every child, comment and instruction in a line of its own. All else stays as it is; so do
// leaves, mixed content and what xml:space="preserve" is said of, byte by byte, but for the white
// space in start tags. The source is read twice, and of it the longest tag, comment or section is
// held, and a byte for each element. False when it is no document: what was written is then cut.
// window is how much is read at once at first, for tests.
bool format_document(const ByteSource& source, const FormatStyle& style, const WriteBytes& write,
                     std::size_t window = Window::kCapacity);

}  // namespace ux::xml
