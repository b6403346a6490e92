// Reading inputs that somebody keeps an eye on.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "uxtree/host/embedded.h"

#include "host/document.h"
#include "host/load_options.h"
#include "xml/byte_source.h"
#include "xml/encodings.h"
#include "xml/read_document.h"

namespace uxhost {

// An input that ends with a reason when a limit is passed or when whoever watches says so.
class WatchedInput {
public:
    WatchedInput(const ux::xml::ByteSource& source, std::uint64_t total, const LoadOptions& options,
                 std::function<std::size_t()> memory)
        : source_(source), total_(total), options_(options), memory_(std::move(memory)) {}

    ux::xml::ByteSource source() {
        return {[this](char* buffer, std::size_t size) { return read(buffer, size); },
                [this](std::uint64_t offset) {
                    source_.seek(offset);
                    done_ = offset;
                    atEnd_ = false;
                }};
    }
    // Why it ended, "" when it did not.
    const std::string& reason() const { return reason_; }

private:
    static constexpr std::size_t kStepBytes = std::size_t{1} << 20;

    long read(char* buffer, std::size_t size) {
        if (reason_.empty()) check();
        if (!reason_.empty()) return -1;
        if (atEnd_) return 0;
        const long got = source_.read(buffer, std::min(size, kStepBytes));
        atEnd_ = got == 0;
        if (got > 0) done_ += static_cast<std::uint64_t>(got);
        return got;
    }
    void check() {
        if (passes(options_.maxBytes, std::max(done_, total_))) {
            reason_ = "larger than " + std::to_string(options_.maxBytes) + " bytes";
        } else if (passes(options_.maxMemory, memory_())) {
            reason_ = "takes more than " + std::to_string(options_.maxMemory) + " bytes of memory";
        } else if (options_.progress && !options_.progress(done_, total_)) {
            reason_ = "cancelled";
        }
    }
    static bool passes(std::uint64_t limit, std::uint64_t value) {
        return limit != 0 && value > limit;
    }

    const ux::xml::ByteSource& source_;
    std::uint64_t total_;
    const LoadOptions& options_;
    std::function<std::size_t()> memory_;
    std::uint64_t done_ = 0;
    bool atEnd_ = false;
    std::string reason_;
};

// Reads a whole input into a sink, as DocumentReader does. False, with the reason and its place,
// when it is refused.
template <class Sink>
bool read_watched(const ux::xml::ByteSource& source, std::uint64_t total,
                  const LoadOptions& options, std::function<std::size_t()> memory, Sink& sink,
                  UXFileError& error) {
    WatchedInput input(source, total, options, std::move(memory));
    ux::xml::ReadOptions reading;
    reading.codePage = ux::xml::code_page_encoding(default_code_page());
    reading.expatAlone = options.parserAlone;
    reading.window = options.window;
    // The whole of a small input, and room to see that nothing follows.
    if (total != 0 && total < reading.window) reading.window = static_cast<std::size_t>(total) + 1;

    const ux::xml::ByteSource watched = input.source();
    ux::xml::ReadError problem;
    if (ux::xml::DocumentReader<Sink>(watched, sink, reading).run(problem)) return true;
    if (!input.reason().empty()) problem = {input.reason()};
    error.message = problem.message.c_str();
    error.line = problem.line;
    error.column = problem.column;
    return false;
}

}  // namespace uxhost
