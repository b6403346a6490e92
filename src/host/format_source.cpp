// Laying out a source anew, in its encoding.
#include "host/format_source.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "host/layout_source.h"
#include "host/memory_source.h"

namespace uxhost {

using namespace ux::xml;

namespace {

constexpr const char* kUnreadable = "the file cannot be read again";

// Until the end, or until take yields false.
template <typename Take>
void read_pieces(const ByteSource& source, Take&& take) {
    std::array<char, 65536> block;
    source.seek(0);
    for (;;) {
        const long got = source.read(block.data(), block.size());
        if (got < 0) throw Unkept(kUnreadable);
        if (got == 0 || !take(std::string_view(block.data(), static_cast<std::size_t>(got))))
            return;
    }
}

// Does the start of the source say that all of it is UTF-8?
bool is_surely_utf8(const ByteSource& source, FileEncoding codePage) {
    bool sure = false;
    read_pieces(source, [&](std::string_view start) {
        const bool decided = codePage == FileEncoding::kUtf8 || has_encoding_mark(start);
        sure = decided && encoding_of(start, FileEncoding::kUtf8) == FileEncoding::kUtf8;
        return false;
    });
    return sure;
}

void format_whole(const LayoutSource& source, const FormatStyle& style, const WriteBytes& write) {
    SourceText text;
    read_source(source, text);
    if (!text.tail.empty()) throw Unkept("the file ends in the middle of a character");
    std::string formatted;
    std::size_t position = 0;
    const bool done = format_document(memory_source(text.text, position), style,
                                      [&](std::string_view bytes) { formatted += bytes; });
    if (!done) throw Unkept(kUnreadable);
    std::string encoded;
    append_encoded(encoded, formatted, text.encoding);
    write(encoded);
}

}  // namespace

void format_source(const ByteSource& source, FileEncoding codePage, const FormatStyle& style,
                   const WriteBytes& write) {
    if (is_surely_utf8(source, codePage)) {
        if (!format_document(source, style, write)) throw Unkept(kUnreadable);
        return;
    }
    LayoutSource whole{"", codePage};
    read_pieces(source, [&](std::string_view bytes) {
        whole.bytes += bytes;
        return true;
    });
    format_whole(whole, style, write);
}

}  // namespace uxhost
