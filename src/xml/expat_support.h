// What reading with expat needs besides handlers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <expat.h>

#include "xml/byte_source.h"
#include "xml/start_tag.h"

namespace ux::xml {

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserHandle = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

// The encoding that the start of an input settles whatever is declared, null when it leaves that to
// the declaration: a byte order mark, and "utf8" for UTF-8.
const char* settled_encoding(std::string_view start);

// Gives an input to a parser. The blocks double while a token does not end, because the parser
// begins it again with each block.
class Feeder {
public:
    Feeder(XML_Parser parser, const ByteSource& source) : parser_(parser), source_(source) {}

    enum class Step { kFed, kEnd, kRefused, kUnreadable, kNoMemory };
    // Gives the next block; kEnd when it was the last one and all is well.
    Step step();
    std::uint64_t fed() const { return fed_; }
    // After kRefused: is all that follows the place of the error, to the end of the input, NUL
    // bytes and white space?
    bool only_padding_follows();

private:
    static constexpr std::size_t kBlockBytes = std::size_t{1} << 16;
    static constexpr std::size_t kMostBytes = std::size_t{1} << 29;

    XML_Parser parser_;
    const ByteSource& source_;
    std::size_t block_ = kBlockBytes;
    std::uint64_t fed_ = 0;
};

// A part of an input, from a place inside its root or behind it on, as a document by itself: the start
// tags that are open there stand in front of it, or an empty root.
struct InputPart {
    std::string tags;
    std::size_t tagCount = 0;
    bool isBehindRoot = false;
    // What places in the part have to be moved by; columns only in its first line.
    long long lines = 0;
    long long columns = 0;
};
// Reads the source up to the place, where the next read begins. Nothing when that cannot be read, or
// when the place is within a line end.
std::optional<InputPart> part_from(const ByteSource& source, std::uint64_t offset,
                                   const std::vector<std::string>& open);

// The entities that a document declares with a text of their own.
class DeclaredEntities {
public:
    void declare(std::string_view name, std::string_view text);
    // The first name in a text, or in what it expands to, that is neither declared nor predefined.
    std::optional<std::string> first_unknown(std::string_view text) const;

private:
    std::map<std::string, std::string, std::less<>> texts_;
};

struct Doctype {
    std::uint64_t end = 0;  // the place behind it, in bytes
    TypedAttributes typed;
};
// Reads a document of UTF-8 to the end of its DOCTYPE. Nothing when that is not well-formed.
std::optional<Doctype> read_doctype(const ByteSource& source);

}  // namespace ux::xml
