// Writing elements as XML text.
#pragma once

#include <string>

#include "host/document.h"

namespace uxhost {

// `<tag a="v">content</tag>`, escaped, always with a closing tag.
void serialise(const Document& document, const Element& element, CStringUTF8& text);

// The content of the file that save_file writes; false with a reason, and text as it was, when the
// element has what XML cannot hold.
bool file_content(const Document& document, const Element& element, CStringUTF8& text,
                  std::string& reason);

// Writes the element as the root of an XML file; false with a reason when it could not. The old
// file stays whole then.
bool save_file(const Document& document, const Element& element, const char* path,
               std::string& reason);

}  // namespace uxhost
