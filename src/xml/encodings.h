// Encodings that the XML parser does not know by itself.
#pragma once

#include <expat.h>

namespace ux::xml {

// The encoding's name for a code page that undeclared input may be in; null when there is none,
// as for UTF-8, which every input is tried as first.
const char* code_page_encoding(int codePage);

// Fills in the characters of a single-byte encoding; false for an unknown name.
bool fill_encoding(const char* name, XML_Encoding& info);

}  // namespace ux::xml
