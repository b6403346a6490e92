// Reading XML files without making a tree of them.
#pragma once

#include <cstdint>

#include "uxtree/host/embedded.h"

#include "host/load_options.h"
#include "xml/byte_source.h"

namespace uxhost {

// Of the limits, those of bytes and of cancelling hold. False, with the reason and its place, when
// the input is refused; what the listener throws passes through.
bool read_events(const ux::xml::ByteSource& source, std::uint64_t totalBytes,
                 const LoadOptions& options, UXXmlEvents& events, UXFileError& error);

}  // namespace uxhost
