// Loading a document: limits, progress, and which reader reads.
#include "host/loader.h"

#include <algorithm>
#include <string>
#include <utility>

#include "uxtree/host/services.h"

#include "host/tree_sink.h"
#include "xml/encodings.h"
#include "xml/read_document.h"

namespace uxhost {
namespace {

using ux::xml::ByteSource;

// An input that ends with a reason when a limit is passed or when whoever watches says so.
class WatchedInput {
public:
    WatchedInput(const ByteSource& source, std::uint64_t total, const LoadOptions& options,
                 const TreeSink& sink)
        : source_(source), total_(total), options_(options), sink_(sink) {}

    ByteSource source() {
        return {[this](char* buffer, std::size_t size) { return read(buffer, size); },
                [this](std::uint64_t offset) {
                    source_.seek(offset);
                    done_ = offset;
                }};
    }
    // Why it ended, "" when it did not.
    const std::string& reason() const { return reason_; }

private:
    static constexpr std::size_t kStepBytes = std::size_t{1} << 20;

    long read(char* buffer, std::size_t size) {
        if (reason_.empty()) check();
        if (!reason_.empty()) return -1;
        const long got = source_.read(buffer, std::min(size, kStepBytes));
        if (got > 0) done_ += static_cast<std::uint64_t>(got);
        return got;
    }
    void check() {
        if (passes(options_.maxBytes, std::max(done_, total_))) {
            reason_ = "larger than " + std::to_string(options_.maxBytes) + " bytes";
        } else if (passes(options_.maxMemory, sink_.memory_bytes())) {
            reason_ = "takes more than " + std::to_string(options_.maxMemory) + " bytes of memory";
        } else if (options_.progress && !options_.progress(done_, total_)) {
            reason_ = "cancelled";
        }
    }
    static bool passes(std::uint64_t limit, std::uint64_t value) {
        return limit != 0 && value > limit;
    }

    const ByteSource& source_;
    std::uint64_t total_;
    const LoadOptions& options_;
    const TreeSink& sink_;
    std::uint64_t done_ = 0;
    std::string reason_;
};

}  // namespace

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
    WatchedInput input(source, totalBytes, options, sink);
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
