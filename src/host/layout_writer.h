// Writing a document that was loaded for editing with the bytes it was read from, except where its
// tree has changed.
#pragma once

#include <cstddef>

#include "host/document.h"
#include "host/kept_document.h"
#include "host/layout_tags.h"

namespace uxhost {

// The element as the root of a file. A document's root is written with everything before and behind
// it, another element with a declaration of its own, in UTF-8. Throws ux::xml::Unkept, with the
// place, when something cannot be kept. The document must have a layout and outlive the result.
void write_kept(const Document& document, const Element& top, IdPolicy ids, KeptDocument& out);

// The element as the root of a file in UTF-8 that is formatted anew: every element without text on
// a line of its own, indented by step blanks a level. Comments are not in the tree and so not
// written.
void write_indented(const Document& document, const Element& top, std::size_t step, IdPolicy ids,
                    KeptDocument& out);

}  // namespace uxhost
