// Transfers of whole number arrays between an element's value and a caller's array.
#pragma once

#include <string_view>

#include "uxtree/host/vector_desc.h"

#include "host/document.h"

namespace uxhost {

// Any nonzero number and "true" are true, 0 and "false" are false; false result for other texts.
bool parse_bool(std::string_view text, bool& value);

// Reads the numbers of the value, which is there; the array is untouched when one of them does not
// convert or does not fit.
bool read_numbers(const Document& document, const Element& element, const UXVectorDesc& vector);
// Writes the numbers, doubles as they are and others as text; an empty array clears the value.
bool write_numbers(Document& document, Element& element, const UXVectorDesc& vector);

}  // namespace uxhost
