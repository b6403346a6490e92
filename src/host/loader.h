// Reading XML files into documents.
#pragma once

#include <cstdint>
#include <memory>

#include "uxtree/host/embedded.h"

#include "host/document.h"
#include "host/load_options.h"
#include "xml/byte_source.h"

namespace uxhost {

// The document of an input of so many bytes; null, with the reason and its place, when it is
// refused.
std::unique_ptr<DocumentHolder> load_document(const ux::xml::ByteSource& source,
                                              std::uint64_t totalBytes, const LoadOptions& options,
                                              UXFileError& error);

}  // namespace uxhost
