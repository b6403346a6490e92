// The source of a document, laid out anew.
#pragma once

#include "xml/byte_source.h"
#include "xml/file_encoding.h"
#include "xml/format.h"

namespace uxhost {

// Writes it in its encoding; one that is not UTF-8 is held as a whole. The source was accepted by the
// reader; codePage is the encoding of input without a declared one that is not UTF-8. Throws
// ux::xml::Unkept.
void format_source(const ux::xml::ByteSource& source, ux::xml::FileEncoding codePage,
                   const ux::xml::FormatStyle& style, const ux::xml::WriteBytes& write);

}  // namespace uxhost
