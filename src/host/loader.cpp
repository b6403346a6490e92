// Loading a document: limits, progress, and which reader reads.
#include "host/loader.h"

#include <string>
#include <utility>

#include "uxtree/host/services.h"

#include "host/tree_sink.h"
#include "host/watched_input.h"
#include "xml/encodings.h"
#include "xml/read_document.h"

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
    TreeSink sink(options.maxNesting, options.maxElements);
    WatchedInput input(source, totalBytes, options, [&sink] { return sink.memory_bytes(); });
    ux::xml::ReadOptions reading;
    reading.codePage = ux::xml::code_page_encoding(default_code_page());
    reading.expatAlone = options.parserAlone;
    reading.window = options.window;

    const ByteSource watched = input.source();
    ux::xml::ReadError problem;
    ux::xml::DocumentReader<TreeSink> reader(watched, sink, reading);
    if (reader.run(problem)) return sink.take_document();
    if (!input.reason().empty()) problem = {input.reason()};
    error.message = problem.message.c_str();
    error.line = problem.line;
    error.column = problem.column;
    return nullptr;
}

}  // namespace uxhost
