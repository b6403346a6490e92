// The content of a document as one text, as the strict reader tells it and as expat does.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "xml/file_encoding.h"

namespace uxtest {

struct Reading {
    bool accepted = false;
    std::string events;    // of an accepted document
    std::string expected;  // names, by the strict reader, a blank in front of each
};

// With a window of so many bytes at first, from an input that yields at most as many at a time. When
// they are even, the document is read as one of many names.
Reading read_strictly(std::string_view xml, std::size_t window,
                      ux::xml::FileEncoding encoding = ux::xml::FileEncoding::kUtf8);
Reading read_with_expat(std::string_view xml);

}  // namespace uxtest
