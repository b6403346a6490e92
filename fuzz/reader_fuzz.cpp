// The strict reader against the parser alone: the same tree, or the same reason at the same place,
// whatever the size of the reader's window. The first two bytes of an input are that size. What the
// reader accepts it tells a recorder, too, and when the window's size is even as one of many names.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "host/loader.h"
#include "host/node_detail.h"
#include "xml/events.h"

namespace {

std::string loaded_with(const char* bytes, std::size_t size, const uxhost::LoadOptions& options) {
    std::size_t position = 0;
    const ux::xml::ByteSource source{[&](char* buffer, std::size_t wanted) {
                                         const std::size_t count =
                                             std::min(wanted, size - position);
                                         std::copy_n(bytes + position, count, buffer);
                                         position += count;
                                         return static_cast<long>(count);
                                     },
                                     [&](std::uint64_t offset) { position = offset; }};
    UXFileError error;
    const auto document = uxhost::load_document(source, size, options, error);
    if (document == nullptr) {
        return "!" + std::to_string(error.line) + ":" + std::to_string(error.column) + ": " +
               std::string(error.message);
    }
    UXXmlWrapperBase root;
    uxhost::bind(root, document->document, (*document)->root());
    CStringUTF8 text;
    if (root.GetString(text) == 0) std::abort();
    return std::string(text);
}

// NUL bytes and blanks behind the root are no matter to the reader.
std::string_view without_padding(std::string_view xml) {
    return xml.substr(0, xml.find_last_not_of(std::string_view("\0 \t\r\n", 5)) + 1);
}

bool tells_the_same(std::string_view xml, std::size_t window) {
    const uxtest::Reading strict = uxtest::read_strictly(xml, window);
    if (!strict.accepted) return true;
    const uxtest::Reading parsed = uxtest::read_with_expat(without_padding(xml));
    // Some names of encodings are ours alone.
    if (!parsed.accepted && xml.find("encoding") != std::string_view::npos) return true;
    return parsed.accepted && parsed.events == strict.events;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    uxhost::LoadOptions parser;
    parser.parserAlone = true;
    parser.maxNesting = 1000;
    uxhost::LoadOptions both = parser;
    both.parserAlone = false;
    both.window = 16 + (data[0] | static_cast<std::size_t>(data[1] % 4) << 8);
    const char* const bytes = reinterpret_cast<const char*>(data) + 2;
    if (loaded_with(bytes, size - 2, both) != loaded_with(bytes, size - 2, parser)) std::abort();
    if (!tells_the_same({bytes, size - 2}, both.window)) std::abort();
    return 0;
}
