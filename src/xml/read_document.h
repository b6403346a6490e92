// Reading a document, whatever it is: by the strict reader what it knows, in any encoding that can be
// decoded; by expat the rest.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
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
        if (!options_.expatAlone) {
            std::optional<ReadPlace> place;
            if (read_from_start(source_, FileEncoding::kUtf8, place) == ReadResult::kDone)
                return true;
            if (const auto part = told_part(place)) return read_rest(*part, error);
            sink_.restart();
        }
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
    bool reads_decoded(std::optional<FileEncoding> encoding) {
        if (options_.expatAlone) return false;
        if (!encoding.has_value() || *encoding == FileEncoding::kUtf8) return false;
        source_.seek(0);
        DecodedSource decoded(source_, *encoding);
        std::optional<ReadPlace> place;
        if (read_from_start(decoded.source(), *encoding, place) == ReadResult::kDone) return true;
        sink_.restart();
        return false;
    }
    ReadResult read_from_start(const ByteSource& source, FileEncoding encoding,
                               std::optional<ReadPlace>& place) {
        Window window(source, options_.window);
        StrictReader<Sink> reader(window, sink_, encoding);
        const ReadResult result = reader.run();
        place = reader.place();
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

    // What the strict reader left, if the rest cannot show that the input is in another encoding.
    std::optional<InputPart> told_part(const std::optional<ReadPlace>& place) const {
        if (!place.has_value() || options_.codePage != nullptr) return std::nullopt;
        return part_from(source_, place->offset, place->open);
    }
    bool read_rest(const InputPart& part, ReadError& error) {
        std::string_view tags = part.tags;
        const ByteSource rest{[&](char* buffer, std::size_t size) {
                                  if (tags.empty()) return source_.read(buffer, size);
                                  const std::size_t count = tags.copy(buffer, size);
                                  tags.remove_prefix(count);
                                  return static_cast<long>(count);
                              },
                              source_.seek};
        return ExpatReader<Sink>(rest, sink_, "UTF-8", FileEncoding::kUtf8, part).run(error) ==
               ExpatResult::kDone;
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
