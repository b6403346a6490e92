// Finding the encoding of an input, the facts of its prolog and its references, with expat.
#include "xml/expat_support.h"

#include <algorithm>
#include <array>
#include <new>

#include "base/ascii.h"
#include "xml/file_encoding.h"

namespace ux::xml {
namespace {

bool begins_with(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

// Is it nothing but NUL bytes and white space?
bool is_padding(std::string_view text) {
    return text.find_first_not_of(std::string_view("\0 \t\r\n", 5)) == std::string_view::npos;
}

long long count_characters(std::string_view text) {
    return std::count_if(text.begin(), text.end(),
                         [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; });
}

// Adds the line ends of a text, which are LF, CR or both, and goes to the column at its end. last is
// what stands in front of it.
void count_lines(std::string_view text, char last, InputPart& part) {
    part.lines += std::count(text.begin(), text.end(), '\n');
    if (last == '\r' && text[0] == '\n') --part.lines;
    for (std::size_t at = text.find('\r'); at < text.size(); at = text.find('\r', at + 1)) {
        if (text.substr(at + 1, 1) != "\n") ++part.lines;
    }
    const auto end =
        std::find_if(text.rbegin(), text.rend(), [](char c) { return c == '\n' || c == '\r'; });
    if (end != text.rend()) part.columns = 0;
    const auto behind = static_cast<std::size_t>(end - text.rbegin());
    part.columns += count_characters(text.substr(text.size() - behind));
}

constexpr std::array<std::string_view, 5> kPredefined{"lt", "gt", "amp", "apos", "quot"};

bool is_predefined(std::string_view name) {
    return std::find(kPredefined.begin(), kPredefined.end(), name) != kPredefined.end();
}

// The names behind "&" in a text, without references to characters.
std::vector<std::string_view> references_in(std::string_view text) {
    std::vector<std::string_view> names;
    for (std::size_t at = text.find('&'); at != std::string_view::npos;
         at = text.find('&', at + 1)) {
        const std::string_view name = text.substr(at + 1, text.find(';', at) - at - 1);
        if (!name.empty() && name[0] != '#') names.push_back(name);
    }
    return names;
}

// What the handlers of a DOCTYPE share.
struct DoctypeReader {
    XML_Parser parser;
    Doctype doctype;
    bool foundEnd = false;
};

void XMLCALL doctype_ends(void* data) {
    auto& reader = *static_cast<DoctypeReader*>(data);
    reader.doctype.end = static_cast<std::uint64_t>(XML_GetCurrentByteIndex(reader.parser)) +
                         static_cast<std::uint64_t>(XML_GetCurrentByteCount(reader.parser));
    reader.foundEnd = true;
    XML_StopParser(reader.parser, XML_FALSE);
}
void XMLCALL attribute_declared(void* data, const XML_Char* element, const XML_Char* name,
                                const XML_Char* type, const XML_Char* /*value*/,
                                int /*isRequired*/) {
    auto& reader = *static_cast<DoctypeReader*>(data);
    if (std::string_view(type) == "CDATA") return;
    try {
        reader.doctype.typed.emplace(element, name);
    } catch (...) {
        XML_StopParser(reader.parser, XML_FALSE);  // no end is found then
    }
}

}  // namespace

const char* settled_encoding(std::string_view start) {
    if (begins_with(start, "\xEF\xBB\xBF")) return "UTF-8";
    if (begins_with(start, "\xFE\xFF") || begins_with(start, "\xFF\xFE")) return "UTF-16";
    const std::string_view declared = declared_encoding(start);
    return equal_no_case(declared, "utf8") ? "UTF-8" : nullptr;
}

Feeder::Step Feeder::step() {
    void* const buffer = XML_GetBuffer(parser_, static_cast<int>(block_));
    if (buffer == nullptr) {
        return XML_GetErrorCode(parser_) == XML_ERROR_NO_MEMORY ? Step::kNoMemory : Step::kRefused;
    }
    const long got = source_.read(static_cast<char*>(buffer), block_);
    if (got < 0) return Step::kUnreadable;
    fed_ += static_cast<std::uint64_t>(got);
    const bool isLast = got == 0;
    if (XML_ParseBuffer(parser_, static_cast<int>(got), isLast) != XML_STATUS_OK) {
        return XML_GetErrorCode(parser_) == XML_ERROR_NO_MEMORY ? Step::kNoMemory : Step::kRefused;
    }
    const XML_Index reached = std::max<XML_Index>(XML_GetCurrentByteIndex(parser_), 0);
    const std::uint64_t waiting = fed_ - std::min(static_cast<std::uint64_t>(reached), fed_);
    block_ = waiting < block_ / 2 ? kBlockBytes : std::min(block_ * 2, kMostBytes);
    return isLast ? Step::kEnd : Step::kFed;
}

bool Feeder::only_padding_follows() {
    int offset = 0;
    int size = 0;
    const char* const context = XML_GetInputContext(parser_, &offset, &size);
    if (context == nullptr) return false;
    const auto rest = static_cast<std::size_t>(std::max(size - offset, 0));
    if (!is_padding({context + offset, rest})) return false;
    std::vector<char> block(kBlockBytes);
    for (;;) {
        const long got = source_.read(block.data(), block.size());
        if (got <= 0) return got == 0;
        if (!is_padding({block.data(), static_cast<std::size_t>(got)})) return false;
    }
}

std::optional<InputPart> part_from(const ByteSource& source, std::uint64_t offset,
                                   const std::vector<std::string>& open) {
    InputPart part;
    part.tagCount = open.size();
    part.isBehindRoot = open.empty();
    if (open.empty()) part.tags = "<r/>";
    for (const std::string& name : open) part.tags += '<' + name + '>';
    source.seek(0);
    std::vector<char> block(std::size_t{1} << 16);
    char last = '\n';
    while (offset > 0) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(offset, block.size()));
        const long got = source.read(block.data(), wanted);
        if (got <= 0) return std::nullopt;
        offset -= static_cast<std::uint64_t>(got);
        count_lines({block.data(), static_cast<std::size_t>(got)}, last, part);
        last = block[static_cast<std::size_t>(got) - 1];
    }
    if (last == '\r') return std::nullopt;
    part.columns -= count_characters(part.tags);
    return part;
}

void DeclaredEntities::declare(std::string_view name, std::string_view text) {
    texts_.emplace(name, text);
}

std::optional<std::string> DeclaredEntities::first_unknown(std::string_view text) const {
    std::set<std::string_view> seen;
    std::vector<std::string_view> pending{text};
    while (!pending.empty()) {
        const std::vector<std::string_view> names = references_in(pending.back());
        pending.pop_back();
        for (const std::string_view name : names) {
            if (is_predefined(name) || !seen.insert(name).second) continue;
            const auto found = texts_.find(name);
            if (found == texts_.end()) return std::string(name);
            pending.push_back(found->second);
        }
    }
    return std::nullopt;
}

std::optional<Doctype> read_doctype(const ByteSource& source) {
    const ParserHandle parser(XML_ParserCreate("UTF-8"));
    if (parser == nullptr) throw std::bad_alloc();
    DoctypeReader reader{parser.get(), {}};
    XML_SetUserData(parser.get(), &reader);
    XML_SetEndDoctypeDeclHandler(parser.get(), doctype_ends);
    XML_SetAttlistDeclHandler(parser.get(), attribute_declared);
    source.seek(0);
    Feeder feeder(parser.get(), source);
    while (feeder.step() == Feeder::Step::kFed) {
    }
    if (!reader.foundEnd) return std::nullopt;
    return std::move(reader.doctype);
}

}  // namespace ux::xml
