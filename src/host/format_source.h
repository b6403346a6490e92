// The source of a document, laid out anew.
#pragma once

#include <string>

#include "host/layout.h"
#include "xml/format.h"

namespace uxhost {

// Appends it in its encoding. The source was accepted by the reader. Throws ux::xml::Unkept.
void format_source(const LayoutSource& source, const ux::xml::FormatStyle& style, std::string& out);

}  // namespace uxhost
