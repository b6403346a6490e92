// Loading a document: limits, progress, and which reader reads.
#include "host/loader.h"

#include "uxtree/host/services.h"

#include "host/tree_sink.h"
#include "host/watched_input.h"

namespace uxhost {
using ux::xml::ByteSource;

LoadOptions options_of_services() {
    const UXHostServices& services = UXGetHostServices();
    LoadOptions options;
    options.maxNesting = services.maxNesting;
    options.maxBytes = services.maxLoadBytes;
    options.maxElements = services.maxLoadElements;
    options.maxMemory = services.maxLoadMemory;
    options.progress = services.loadProgress;
    return options;
}

std::unique_ptr<DocumentHolder> load_document(const ByteSource& source, std::uint64_t totalBytes,
                                              const LoadOptions& options, UXFileError& error) {
    TreeSink sink(options);
    const auto memory = [&sink] { return sink.memory_bytes(); };
    if (!read_watched(source, totalBytes, options, memory, sink, error)) return nullptr;
    return sink.take_document();
}

}  // namespace uxhost
