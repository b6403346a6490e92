#include "host/loader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string_view>
#include <type_traits>
#include <vector>

#include <expat.h>

#include "uxtree/host/services.h"
#include "uxtree/host/utilities.h"

#include "host/text_runs.h"
#include "xml/encodings.h"

namespace uxhost {
namespace {

constexpr int kBlockBytes = 1 << 16;

bool is_blank(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; });
}

// Builds a document from the parser's events. A text piece is what stands between two tags.
class Builder {
public:
    Builder(Document& document, XML_Parser parser)
        : document_(document), parser_(parser), maxDepth_(UXGetHostServices().maxNesting) {
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, start_element, end_element);
        XML_SetCharacterDataHandler(parser, character_data);
        XML_SetCdataSectionHandler(parser, start_cdata, end_cdata);
        XML_SetXmlDeclHandler(parser, xml_declaration);
        XML_SetStartDoctypeDeclHandler(parser, start_doctype);
        XML_SetSkippedEntityHandler(parser, skipped_entity);
        XML_SetUnknownEncodingHandler(parser, unknown_encoding, nullptr);
    }

    const std::string& refusal() const { return refusal_; }
    bool root_closed() const { return open_.empty() && document_.root() != nullptr; }
    bool declared_encoding() const { return declaredEncoding_; }
    // Is what follows the content of an element, read as markup and text?
    bool in_content() const { return !open_.empty() && !inCdata_; }
    // Takes a piece of such content that has no markup, as if the parser had reported it.
    void add_plain_text(std::string_view text) { text_.append(text); }
    // The tag of the innermost open element.
    std::string_view open_tag() const {
        return open_.empty() ? std::string_view() : document_.name_view(open_.back().element->tag);
    }

private:
    struct Open {
        Element* element;
        std::size_t textStart;   // of the element's text in text_
        std::size_t pieceStart;  // of the piece that is being read
    };

    static Builder& self(void* data) { return *static_cast<Builder*>(data); }

    // No exception may pass through the parser; a failure stops it instead.
    template <typename Body>
    void guarded(Body&& body) noexcept {
        if (!refusal_.empty()) return;
        try {
            body();
        } catch (...) {
            refuse("out of memory");
        }
    }
    void refuse(const std::string& reason) {
        refusal_ = reason;
        XML_StopParser(parser_, XML_FALSE);
    }

    static void XMLCALL start_element(void* data, const XML_Char* name, const XML_Char** atts) {
        self(data).guarded([&] { self(data).start(name, atts); });
    }
    static void XMLCALL end_element(void* data, const XML_Char* /*name*/) {
        self(data).guarded([&] { self(data).end(); });
    }
    static void XMLCALL character_data(void* data, const XML_Char* text, int length) {
        self(data).guarded([&] {
            self(data).characters({text, static_cast<std::size_t>(length)});
        });
    }
    static void XMLCALL start_cdata(void* data) {
        self(data).pieceIsKept_ = true;
        self(data).inCdata_ = true;
    }
    static void XMLCALL end_cdata(void* data) { self(data).inCdata_ = false; }
    static void XMLCALL xml_declaration(void* data, const XML_Char* /*version*/,
                                        const XML_Char* encoding, int /*standalone*/) {
        self(data).declaredEncoding_ = encoding != nullptr;
    }
    // With a default handler the parser reports a reference to a declared entity instead of
    // replacing it. It costs a call for whatever else has no handler, so only documents with a
    // DOCTYPE get one.
    static void XMLCALL start_doctype(void* data, const XML_Char* /*name*/,
                                      const XML_Char* /*sysid*/, const XML_Char* /*pubid*/,
                                      int /*hasInternalSubset*/) {
        self(data).hasDoctype_ = true;
        XML_SetDefaultHandler(self(data).parser_, other_markup);
    }
    static void XMLCALL other_markup(void* data, const XML_Char* text, int length) {
        if (length > 0 && text[0] == '&' && !self(data).open_.empty()) {
            self(data).guarded([&] {
                self(data).refuse_reference({text + 1, static_cast<std::size_t>(length - 1)});
            });
        }
    }
    static void XMLCALL skipped_entity(void* data, const XML_Char* name, int isParameterEntity) {
        if (isParameterEntity == 0) self(data).guarded([&] { self(data).refuse_reference(name); });
    }
    static int XMLCALL unknown_encoding(void* /*data*/, const XML_Char* name, XML_Encoding* info) {
        return ux::xml::fill_encoding(name, *info) ? XML_STATUS_OK : XML_STATUS_ERROR;
    }

    void refuse_reference(std::string_view name) {
        name = name.substr(0, name.find(';'));
        refuse("reference to the entity \"" + std::string(name) +
               "\": only the five predefined ones are read");
    }

    void start(const char* name, const char** atts) {
        if (open_.size() >= static_cast<std::size_t>(std::max(maxDepth_, 0))) {
            refuse("nested deeper than " + std::to_string(maxDepth_) + " levels");
            return;
        }
        if (hasDoctype_ && !references_are_predefined()) return;
        finish_piece();
        const NameId tag = known_name(name);
        if (tag == 0) return;
        Element* element = document_.new_element(tag, kNoId);
        if (open_.empty()) {
            document_.set_root(element);
        } else {
            document_.append(*open_.back().element, *element);
        }
        add_attributes(*element, atts);
        open_.push_back({element, text_.size(), text_.size()});
        pieceIsKept_ = false;
    }

    // Only attributes that stand in the tag; defaults that a DTD declares follow them.
    void add_attributes(Element& element, const char** atts) {
        const auto count = static_cast<std::size_t>(XML_GetSpecifiedAttributeCount(parser_));
        if (count == 0) return;
        document_.reserve_attributes(element, count / 2);
        for (std::size_t i = 0; i < count; i += 2) {
            const std::string_view value = atts[i + 1];
            int id = 0;
            if (atts[i][0] == '_' && std::strcmp(atts[i], kIdAttribute) == 0 &&
                UXParseInt(value, id)) {
                element.id = id;
                continue;
            }
            const NameId name = attribute_name(atts[i], i / 2);
            if (name == 0) return;
            document_.append_attribute(element, name, value);
        }
    }

    // Outside UTF-8 the parser takes a few letters for parts of names that are none; such a
    // document could not be read again once it is saved.
    NameId known_name(const char* name) {
        const NameId known = document_.valid_name(name);
        if (known == 0) refuse(XML_ErrorString(XML_ERROR_INVALID_TOKEN));
        return known;
    }

    // Elements of one kind follow each other: the name at a place is mostly the one that stood
    // there last.
    NameId attribute_name(const char* name, std::size_t place) {
        if (place >= lastNames_.size()) return known_name(name);
        NameId& last = lastNames_[place];
        if (last == 0 || !equals(name, document_.name(last))) last = known_name(name);
        return last;
    }
    static bool equals(const char* a, const char* b) {
        while (*a == *b && *a != '\0') {
            ++a;
            ++b;
        }
        return *a == *b;
    }

    void end() {
        const Open closed = open_.back();
        if (closed.element->first != 0) finish_piece();
        const std::string_view text = std::string_view(text_).substr(closed.textStart);
        if (!text.empty()) document_.set_value(*closed.element, text);
        text_.resize(closed.textStart);
        open_.pop_back();
        if (!open_.empty()) open_.back().pieceStart = text_.size();
        pieceIsKept_ = false;
    }

    // A piece of white space alone stands between elements for the reader's eye: it is dropped,
    // unless it was written as a reference or as CDATA.
    void finish_piece() {
        if (open_.empty()) return;
        Open& parent = open_.back();
        const std::string_view piece = std::string_view(text_).substr(parent.pieceStart);
        if (!pieceIsKept_ && is_blank(piece)) text_.resize(parent.pieceStart);
        parent.pieceStart = text_.size();
    }

    void characters(std::string_view text) {
        if (text.size() == 1 && !pieceIsKept_ && is_blank(text)) {
            pieceIsKept_ = stands_as_reference();
        }
        text_.append(text);
    }

    // Does the input have a reference where the parser is? In UTF-16 a NUL may stand before "&".
    bool stands_as_reference() const {
        int offset = 0;
        int size = 0;
        const char* context = XML_GetInputContext(parser_, &offset, &size);
        if (context == nullptr || offset >= size) return false;
        return context[offset] == '&' ||
               (context[offset] == '\0' && offset + 1 < size && context[offset + 1] == '&');
    }

    // In a document with a DOCTYPE the parser replaces declared entities in attribute values and
    // drops undeclared ones; the tag as it stands in the input tells that there were any.
    bool references_are_predefined() {
        int offset = 0;
        int size = 0;
        const char* context = XML_GetInputContext(parser_, &offset, &size);
        const int length = XML_GetCurrentByteCount(parser_);
        if (context == nullptr || length > size - offset) {
            refuse("a tag that cannot be looked at");
            return false;
        }
        std::string tag(context + offset, static_cast<std::size_t>(length));
        tag.erase(std::remove(tag.begin(), tag.end(), '\0'), tag.end());  // UTF-16
        static constexpr std::array<std::string_view, 5> kPredefined{"lt", "gt", "amp", "apos",
                                                                     "quot"};
        for (std::size_t at = tag.find('&'); at != std::string::npos; at = tag.find('&', at + 1)) {
            const std::string_view name =
                std::string_view(tag).substr(at + 1, tag.find(';', at) - at - 1);
            if (!name.empty() && name[0] == '#') continue;
            if (std::find(kPredefined.begin(), kPredefined.end(), name) != kPredefined.end()) {
                continue;
            }
            refuse_reference(name);
            return false;
        }
        return true;
    }

    Document& document_;
    XML_Parser parser_;
    int maxDepth_;
    std::vector<Open> open_;
    std::string text_;  // of the open elements, one behind the other
    std::array<NameId, 8> lastNames_{};
    bool pieceIsKept_ = false;
    bool inCdata_ = false;
    bool hasDoctype_ = false;
    bool declaredEncoding_ = false;
    std::string refusal_;
};

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserHandle = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

// Gives an input to the parser, block by block. Long runs of plain text, as of arrays of numbers,
// go straight to the builder: the parser looks at every byte more often than they need.
class Feeder {
public:
    Feeder(XML_Parser parser, Builder& builder, const ByteSource& source)
        : parser_(parser), builder_(builder), source_(source), block_(kBlockBytes) {}

    // Reads the next block. The number of its bytes, 0 at the end and -1 for a failure.
    long next_block() {
        const long got = source_.read(block_.data(), block_.size());
        rest_ = {block_.data(), static_cast<std::size_t>(std::max(got, 0L))};
        if (start_.size() < 2) start_ += rest_.substr(0, 2 - start_.size());
        return got;
    }
    XML_Status feed_block() {
        if (!has_ascii_bytes()) return feed(rest_.size());
        while (!rest_.empty()) {
            if (feed(long_run_start(rest_)) != XML_STATUS_OK) return XML_STATUS_ERROR;
            // Inside a comment or the like, of which the parser has not seen the end: one piece
            // more, because it begins such a token again with each.
            if (rest_.empty() || !at_content()) return feed(rest_.size());
            const std::size_t length = std::min(rest_.find('<'), rest_.size());
            if (is_plain_text(rest_.substr(0, length))) {
                pass_by(length);
            } else if (feed(length) != XML_STATUS_OK) {
                return XML_STATUS_ERROR;
            }
        }
        return XML_STATUS_OK;
    }
    XML_Status feed_end() { return XML_Parse(parser_, nullptr, 0, XML_TRUE); }

    // Is all that follows the place of an error, to the end of the input, NUL bytes and white
    // space?
    bool only_padding_follows() {
        const XML_Index from =
            std::max<XML_Index>(XML_GetCurrentByteIndex(parser_) - pieceStart_, 0);
        if (!is_padding(piece_.substr(std::min(static_cast<std::size_t>(from), piece_.size()))) ||
            !is_padding(rest_))
            return false;
        for (long got = next_block(); got != 0; got = next_block()) {
            if (got < 0 || !is_padding(rest_)) return false;
        }
        return true;
    }

    // Where the parser stands in the input, from 1.
    long long line() const {
        return static_cast<long long>(XML_GetCurrentLineNumber(parser_)) + passed_.lines;
    }
    long long column() const {
        const auto column = static_cast<long long>(XML_GetCurrentColumnNumber(parser_)) + 1;
        const bool sameLine = XML_GetCurrentLineNumber(parser_) == passed_.parserLine;
        return sameLine ? column + passed_.columns : column;
    }

private:
    // Does a byte below 0x80 stand for its ASCII character? In UTF-16 it may be half of another
    // one; such an input starts with a byte order mark, or with "<" and a NUL byte.
    bool has_ascii_bytes() const {
        return start_.size() == 2 && start_ != "\xFE\xFF" && start_ != "\xFF\xFE" &&
               start_.find('\0') == std::string::npos;
    }
    // Gives the first bytes of the rest to the parser.
    XML_Status feed(std::size_t size) {
        pieceStart_ += static_cast<XML_Index>(piece_.size());
        piece_ = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return XML_Parse(parser_, piece_.data(), static_cast<int>(size), XML_FALSE);
    }
    // Has the parser dealt with all that it was given, and does content follow?
    bool at_content() const {
        const XML_Index fed = pieceStart_ + static_cast<XML_Index>(piece_.size());
        return builder_.in_content() && XML_GetCurrentByteIndex(parser_) == fed;
    }
    void pass_by(std::size_t size) {
        const std::string_view text = rest_.substr(0, size);
        rest_.remove_prefix(size);
        builder_.add_plain_text(text);
        const auto lines = std::count(text.begin(), text.end(), '\n');
        const std::size_t behind = lines == 0 ? size : size - text.rfind('\n') - 1;
        const long long columnAfter = (lines == 0 ? column() : 1) + static_cast<long long>(behind);
        passed_.lines += lines;
        passed_.parserLine = XML_GetCurrentLineNumber(parser_);
        passed_.columns =
            columnAfter - static_cast<long long>(XML_GetCurrentColumnNumber(parser_)) - 1;
    }

    // What the parser's line and column numbers leave out.
    struct Passed {
        long long lines = 0;
        XML_Size parserLine = 0;  // the line, as the parser counts, of the last run
        long long columns = 0;    // to add on that line
    };

    XML_Parser parser_;
    Builder& builder_;
    const ByteSource& source_;
    std::vector<char> block_;
    std::string start_;         // the first two bytes of the input
    std::string_view rest_;     // of the block
    std::string_view piece_;    // last given to the parser
    XML_Index pieceStart_ = 0;  // as the parser counts
    Passed passed_;
};

enum class Outcome { kParsed, kRefused, kRetryInCodePage };

void report(UXFileError& error, const Feeder& feeder, const std::string& message) {
    error.message = message.c_str();
    error.line = feeder.line();
    error.column = feeder.column();
}

std::string describe(XML_Parser parser, const Builder& builder) {
    if (!builder.refusal().empty()) return builder.refusal();
    const XML_Error code = XML_GetErrorCode(parser);
    std::string message = XML_ErrorString(code);
    if (code == XML_ERROR_TAG_MISMATCH) {
        message += ": expected </" + std::string(builder.open_tag()) + ">";
    } else if (code == XML_ERROR_NO_ELEMENTS && !builder.open_tag().empty()) {
        message = "the input ends before </" + std::string(builder.open_tag()) + ">";
    }
    return message;
}

Outcome parse_as(Document& document, const ByteSource& source, const char* encoding,
                 UXFileError& error) {
    const ParserHandle parser(XML_ParserCreate(encoding));
    if (parser == nullptr) {
        error.message = "out of memory";
        return Outcome::kRefused;
    }
    Builder builder(document, parser.get());
    Feeder feeder(parser.get(), builder, source);
    for (;;) {
        const long got = feeder.next_block();
        if (got < 0) {
            report(error, feeder, "cannot be read");
            return Outcome::kRefused;
        }
        const XML_Status status = got == 0 ? feeder.feed_end() : feeder.feed_block();
        if (status == XML_STATUS_OK) {
            if (got == 0) return Outcome::kParsed;
            continue;
        }
        const bool invalid = XML_GetErrorCode(parser.get()) == XML_ERROR_INVALID_TOKEN;
        if (invalid && builder.root_closed() && feeder.only_padding_follows()) {
            return Outcome::kParsed;
        }
        if (invalid && encoding == nullptr && !builder.declared_encoding() &&
            ux::xml::code_page_encoding(default_code_page()) != nullptr) {
            return Outcome::kRetryInCodePage;
        }
        report(error, feeder, describe(parser.get(), builder));
        return Outcome::kRefused;
    }
}

}  // namespace

bool parse_document(Document& document, const ByteSource& source, UXFileError& error) {
    Outcome outcome = parse_as(document, source, nullptr, error);
    if (outcome == Outcome::kRetryInCodePage) {
        document.clear();
        source.rewind();
        outcome =
            parse_as(document, source, ux::xml::code_page_encoding(default_code_page()), error);
    }
    return outcome == Outcome::kParsed;
}

}  // namespace uxhost
