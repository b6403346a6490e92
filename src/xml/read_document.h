// Reading a document, whatever it is: by the strict reader what it knows, by expat the rest.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "xml/byte_source.h"
#include "xml/expat_reader.h"
#include "xml/expat_support.h"
#include "xml/read_error.h"
#include "xml/strict_reader.h"
#include "xml/window.h"

namespace ux::xml {

struct ReadOptions {
    // The encoding of input that declares none and is not UTF-8; null: such input is refused.
    const char* codePage = nullptr;
    // For tests: everything is read by expat, or the window is smaller.
    bool expatAlone = false;
    std::size_t window = Window::kCapacity;
};

// Tells the sink a whole document. False, with the reason and its place, when it is refused. The
// sink has what the strict reader asks for (see there) and
//   void restart()                   nothing of what was told counts; it is told again
//   const std::string& refusal()     why start returned false
// A source that returns a negative number ends the reading for good.
template <class Sink>
class DocumentReader {
public:
    DocumentReader(const ByteSource& source, Sink& sink, const ReadOptions& options)
        : source_(source), sink_(sink), options_(options) {}

    bool run(ReadError& error) {
        if (!options_.expatAlone) {
            const ReadResult result = read_strictly();
            if (result == ReadResult::kDone) return true;
            sink_.restart();
        }
        ExpatResult result = read_with_expat(settled_by_start(), error);
        if (result == ExpatResult::kInvalidUndeclared && options_.codePage != nullptr) {
            sink_.restart();
            result = read_with_expat(options_.codePage, error);
        }
        return result == ExpatResult::kDone;
    }

private:
    ReadResult read_strictly() {
        Window window(source_, options_.window);
        StrictReader<Sink> reader(window, sink_);
        const ReadResult result = reader.run();
        return result == ReadResult::kDoctype ? read_behind_doctype() : result;
    }
    // The parser reads what a DTD declares; the content follows only few rules of it.
    ReadResult read_behind_doctype() {
        auto doctype = read_doctype(source_);
        if (!doctype.has_value()) return ReadResult::kGaveUp;
        source_.seek(doctype->end);
        Window window(source_, options_.window);
        StrictReader<Sink> reader(window, sink_);
        return reader.run_behind_doctype(std::move(doctype->typed));
    }

    ExpatResult read_with_expat(const char* encoding, ReadError& error) {
        source_.seek(0);
        return ExpatReader<Sink>(source_, sink_, encoding).run(error);
    }
    const char* settled_by_start() const {
        std::array<char, 512> start{};
        source_.seek(0);
        std::size_t size = 0;
        long got = 1;
        while (got > 0 && size < start.size()) {
            got = source_.read(start.data() + size, start.size() - size);
            if (got > 0) size += static_cast<std::size_t>(got);
        }
        return settled_encoding({start.data(), size});
    }

    const ByteSource& source_;
    Sink& sink_;
    const ReadOptions& options_;
};

}  // namespace ux::xml
