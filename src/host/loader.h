// Reading XML files into documents.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "uxtree/host/embedded.h"

#include "host/document.h"

namespace uxhost {

// Where the bytes of an input come from. read yields how many were put into the buffer, 0 at the
// end and a negative number for a failure; rewind goes back to the start.
struct ByteSource {
    std::function<long(char* buffer, std::size_t size)> read;
    std::function<void()> rewind;
};

// Parses the input into the new document; false with the reason and its place when it is refused.
bool parse_document(Document& document, const ByteSource& source, UXFileError& error);

}  // namespace uxhost
