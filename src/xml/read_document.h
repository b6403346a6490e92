// Reading a document, whatever it is: by the strict reader what it knows, in any encoding that can be
// decoded; by expat the rest.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "xml/byte_source.h"
#include "xml/decoded_source.h"
#include "xml/expat_reader.h"
#include "xml/expat_support.h"
#include "xml/file_encoding.h"
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
        if (reads_strictly(source_, FileEncoding::kUtf8)) return true;
        const std::string start = first_bytes();
        const auto encoding = encoding_of(start, FileEncoding::kUtf8);
        if (reads_decoded(encoding)) return true;
        ExpatResult result = read_with_expat(settled_encoding(start), encoding, error);
        if (result == ExpatResult::kInvalidUndeclared && options_.codePage != nullptr) {
            sink_.restart();
            const auto codePage = encoding_by_name(options_.codePage);
            if (reads_decoded(codePage)) return true;
            result = read_with_expat(options_.codePage, codePage, error);
        }
        return result == ExpatResult::kDone;
    }

private:
    // False when the strict reader gave up.
    bool reads_strictly(const ByteSource& source, FileEncoding encoding) {
        if (options_.expatAlone) return false;
        if (read_from_start(source, encoding) == ReadResult::kDone) return true;
        sink_.restart();
        return false;
    }
    bool reads_decoded(std::optional<FileEncoding> encoding) {
        if (!encoding.has_value() || *encoding == FileEncoding::kUtf8) return false;
        source_.seek(0);
        DecodedSource decoded(source_, *encoding);
        return reads_strictly(decoded.source(), *encoding);
    }
    ReadResult read_from_start(const ByteSource& source, FileEncoding encoding) {
        Window window(source, options_.window);
        StrictReader<Sink> reader(window, sink_, encoding);
        const ReadResult result = reader.run();
        return result == ReadResult::kDoctype ? read_behind_doctype(source) : result;
    }
    // The parser reads what a DTD declares; the content follows only few rules of it.
    ReadResult read_behind_doctype(const ByteSource& source) {
        auto doctype = read_doctype(source);
        if (!doctype.has_value()) return ReadResult::kGaveUp;
        source.seek(doctype->end);
        Window window(source, options_.window);
        StrictReader<Sink> reader(window, sink_);
        return reader.run_behind_doctype(std::move(doctype->typed));
    }

    // settled is what the parser is told.
    ExpatResult read_with_expat(const char* settled, std::optional<FileEncoding> encoding,
                                ReadError& error) {
        source_.seek(0);
        const FileEncoding known = encoding.value_or(FileEncoding::kUtf8);
        return ExpatReader<Sink>(source_, sink_, settled, known).run(error);
    }
    std::string first_bytes() const {
        std::string start(512, '\0');
        source_.seek(0);
        std::size_t size = 0;
        long got = 1;
        while (got > 0 && size < start.size()) {
            got = source_.read(start.data() + size, start.size() - size);
            if (got > 0) size += static_cast<std::size_t>(got);
        }
        start.resize(size);
        return start;
    }

    const ByteSource& source_;
    Sink& sink_;
    const ReadOptions& options_;
};

}  // namespace ux::xml
