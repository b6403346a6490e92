// Reading with expat, told to the same sinks as the strict reader tells.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <expat.h>

#include "base/xml_names.h"
#include "xml/encodings.h"
#include "xml/expat_support.h"
#include "xml/file_encoding.h"
#include "xml/known_names.h"
#include "xml/read_error.h"
#include "xml/start_tag.h"

namespace ux::xml {

enum class ExpatResult { kDone, kRefused, kStopped, kInvalidUndeclared };

// Entities that the document declares itself are expanded, within bounds; references to any other
// are refused. A sink tells with refusal() why it returned false.
template <class Sink>
class ExpatReader {
public:
    // settled is what the input is read in, whatever it declares; null leaves that to it. encoding is
    // what comes of either, if the parser reads the input at all.
    // With a part of an input, its tags stand in front of what the source yields; the sink was told of
    // them before.
    ExpatReader(const ByteSource& source, Sink& sink, const char* settled, FileEncoding encoding,
                const InputPart& part = {})
        : sink_(sink),
          parser_(XML_ParserCreate(settled)),
          feeder_(parser_.get(), source),
          toldTags_(part.tagCount),
          lines_(part.lines),
          columns_(part.columns),
          isBehindRoot_(part.isBehindRoot),
          encoding_(encoding),
          encodingIsGiven_(settled != nullptr),
          foundRoot_(part.isBehindRoot) {
        if (parser_ == nullptr) throw std::bad_alloc();
        XML_Parser parser = parser_.get();
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, start_element, end_element);
        XML_SetCharacterDataHandler(parser, character_data);
        XML_SetStartCdataSectionHandler(parser, start_cdata);
        XML_SetXmlDeclHandler(parser, xml_declaration);
        XML_SetStartDoctypeDeclHandler(parser, start_doctype);
        XML_SetEntityDeclHandler(parser, entity_declared);
        XML_SetSkippedEntityHandler(parser, skipped_entity);
        XML_SetExternalEntityRefHandler(parser, external_entity);
        XML_SetUnknownEncodingHandler(parser, unknown_encoding, nullptr);
    }

    // kInvalidUndeclared: bytes that are not UTF-8 in an input that does not declare its encoding.
    ExpatResult run(ReadError& error) {
        for (;;) {
            switch (feeder_.step()) {
                case Feeder::Step::kFed:
                    continue;
                case Feeder::Step::kEnd:
                    return ExpatResult::kDone;
                case Feeder::Step::kUnreadable:
                    report(error, "cannot be read");
                    return ExpatResult::kStopped;
                case Feeder::Step::kNoMemory:
                    throw std::bad_alloc();
                case Feeder::Step::kRefused:
                    return refused(error);
            }
        }
    }

private:
    // Text that entities expand to may be as long as this and some times the input.
    static constexpr std::uint64_t kExpandedBytes = std::uint64_t{8} << 20;
    static constexpr std::uint64_t kExpandedTimes = 4;

    static ExpatReader& self(void* data) { return *static_cast<ExpatReader*>(data); }

    // No exception may pass through the parser; a failure stops it instead.
    template <typename Body>
    void guarded(Body&& body) noexcept {
        if (stopped_) return;
        try {
            body();
        } catch (...) {
            outOfMemory_ = true;
            stop();
        }
    }
    void stop() {
        stopped_ = true;
        XML_StopParser(parser_.get(), XML_FALSE);
    }
    // The parser stands behind what it told of once it is stopped; the place is taken before.
    void refuse(std::string reason) {
        report(refusal_, std::move(reason));
        stop();
    }

    ExpatResult refused(ReadError& error) {
        if (outOfMemory_) throw std::bad_alloc();
        const bool invalid = XML_GetErrorCode(parser_.get()) == XML_ERROR_INVALID_TOKEN;
        report(error, describe());
        if (invalid && foundRoot_ && open_.empty() && feeder_.only_padding_follows()) {
            return ExpatResult::kDone;
        }
        if (!refusal_.message.empty()) error = refusal_;
        const bool undeclared = !encodingIsGiven_ && !declaresEncoding_;
        return invalid && undeclared ? ExpatResult::kInvalidUndeclared : ExpatResult::kRefused;
    }
    void report(ReadError& error, std::string message) const {
        const auto line = static_cast<long long>(XML_GetCurrentLineNumber(parser_.get()));
        const auto column = static_cast<long long>(XML_GetCurrentColumnNumber(parser_.get())) + 1;
        error = {std::move(message), line + lines_, line == 1 ? column + columns_ : column};
    }
    std::string describe() const {
        const XML_Error code = XML_GetErrorCode(parser_.get());
        std::string message = XML_ErrorString(code);
        if (code == XML_ERROR_TAG_MISMATCH && !open_.empty()) {
            message += ": expected </" + std::string(open_.back()->view()) + ">";
        } else if (code == XML_ERROR_NO_ELEMENTS && !open_.empty()) {
            message = "the input ends before </" + std::string(open_.back()->view()) + ">";
        }
        return message;
    }

    // --- handlers ------------------------------------------------------------------------------

    static void XMLCALL start_element(void* data, const XML_Char* name, const XML_Char** atts) {
        if (self(data).isBehindRoot_) return;
        self(data).guarded([&] { self(data).start(name, atts); });
    }
    static void XMLCALL end_element(void* data, const XML_Char* /*name*/) {
        if (self(data).isBehindRoot_) return;
        self(data).guarded([&] {
            self(data).sink_.end();
            self(data).open_.pop_back();
        });
    }
    static void XMLCALL character_data(void* data, const XML_Char* text, int length) {
        self(data).guarded([&] { self(data).characters(text, text + length); });
    }
    static void XMLCALL start_cdata(void* data) {
        self(data).guarded([&] { self(data).sink_.keep(); });
    }
    static void XMLCALL xml_declaration(void* data, const XML_Char* /*version*/,
                                        const XML_Char* encoding, int /*standalone*/) {
        if (encoding != nullptr) self(data).declaresEncoding_ = true;
    }
    static void XMLCALL start_doctype(void* data, const XML_Char* /*name*/,
                                      const XML_Char* /*sysid*/, const XML_Char* /*pubid*/,
                                      int /*hasInternalSubset*/) {
        self(data).hasDoctype_ = true;
    }
    static void XMLCALL entity_declared(void* data, const XML_Char* name, int isParameterEntity,
                                        const XML_Char* value, int length, const XML_Char* /*base*/,
                                        const XML_Char* /*systemId*/, const XML_Char* /*publicId*/,
                                        const XML_Char* /*notation*/) {
        if (isParameterEntity != 0 || value == nullptr) return;
        self(data).guarded([&] {
            self(data).entities_.declare(name, {value, static_cast<std::size_t>(length)});
        });
    }
    static void XMLCALL skipped_entity(void* data, const XML_Char* name, int isParameterEntity) {
        if (isParameterEntity == 0) self(data).guarded([&] { self(data).refuse_entity(name); });
    }
    static int XMLCALL external_entity(XML_Parser parser, const XML_Char* /*context*/,
                                       const XML_Char* /*base*/, const XML_Char* /*systemId*/,
                                       const XML_Char* /*publicId*/) {
        ExpatReader& reader = self(XML_GetUserData(parser));
        reader.guarded([&] {
            const std::string text = reader.markup();  // "&name;"
            const auto end = std::find(text.begin(), text.end(), ';');
            reader.refuse_entity(std::string(text.begin() + (text.begin() == end ? 0 : 1), end));
        });
        return XML_STATUS_ERROR;
    }
    static int XMLCALL unknown_encoding(void* /*data*/, const XML_Char* name, XML_Encoding* info) {
        return fill_encoding(name, *info) ? XML_STATUS_OK : XML_STATUS_ERROR;
    }

    void refuse_entity(std::string_view name) {
        refuse("reference to the entity \"" + std::string(name) +
               "\": only the predefined ones and those that the document itself declares are read");
    }

    // --- events --------------------------------------------------------------------------------

    void start(const char* name, const char** atts) {
        if (hasDoctype_ && !references_are_known()) return;
        KnownName* const tag = known_name(name);
        if (tag == nullptr || !take_attributes(atts)) return;
        const StartTag told{*tag, valueBytes_, attributes_.data(), attributes_.size()};
        const std::size_t bytes = attributes_.empty() ? 0 : behind_last(attributes_);
        if (hasDoctype_ && !count_expanded(tag->length + 5 + bytes)) return;
        foundRoot_ = true;
        if (toldTags_ > 0) {
            --toldTags_;
        } else if (!sink_.start(told)) {
            refuse(sink_.refusal());
            return;
        }
        open_.push_back(tag);
    }

    // Only attributes that stand in the tag; defaults that a DTD declares follow them.
    bool take_attributes(const char** atts) {
        attributes_.clear();
        const auto count = static_cast<std::size_t>(XML_GetSpecifiedAttributeCount(parser_.get()));
        for (std::size_t i = 0; i < count; i += 2) {
            KnownName* const name = known_name(atts[i]);
            if (name == nullptr) return false;
            attributes_.push_back({name, 0, 0});
        }
        // Apart: the parser has just written the values, and looking at them at once would wait.
        std::size_t offset = 0;
        for (std::size_t i = 0; i < count; i += 2) {
            const std::size_t size = std::strlen(atts[i + 1]);
            if (offset + size > StartTag::kMostBytes) throw std::bad_alloc();
            attributes_[i / 2].offset = static_cast<std::uint32_t>(offset);
            attributes_[i / 2].size = static_cast<std::uint32_t>(size);
            offset += size;
        }
        const bool isOneLong = count == 2 && offset > StartTag::kLongValue;
        valueBytes_ = isOneLong ? atts[1] : joined_values(atts, offset);
        return true;
    }
    const char* joined_values(const char** atts, std::size_t bytes) {
        values_.resize(std::max(values_.size(), bytes + StartTag::kReadBehind));
        for (std::size_t i = 0; i < attributes_.size(); ++i) {
            std::memcpy(values_.data() + attributes_[i].offset, atts[2 * i + 1],
                        attributes_[i].size);
        }
        return values_.data();
    }
    static std::size_t behind_last(const std::vector<ReadAttribute>& attributes) {
        return std::size_t{attributes.back().offset} + attributes.back().size;
    }

    // Outside UTF-8 the parser takes a few letters for parts of names that are none; such a
    // document could not be read again once it is saved.
    KnownName* known_name(const char* name) {
        const std::size_t length = std::strlen(name);
        std::array<char, 16> head{};
        std::memcpy(head.data(), name, std::min(length, head.size()));
        KnownName* const cached = names_.cached(head.data(), std::min(length, head.size()));
        if (cached != nullptr && cached->view() == std::string_view(name, length)) return cached;
        if (!is_name({name, length})) {
            refuse(XML_ErrorString(XML_ERROR_INVALID_TOKEN));
            return nullptr;
        }
        bool isNew = false;
        const ReadName read = ReadName::of({name, length});
        KnownName& known = names_.add(sink_.resolve(read), read, isNew);
        names_.put_into_cache(known, read.key);
        return &known;
    }

    void characters(const char* begin, const char* end) {
        const auto length = static_cast<std::size_t>(end - begin);
        if (hasDoctype_ && !count_expanded(length)) return;
        // Text of an entity can have several blanks.
        if ((length == 1 || hasDoctype_) && std::all_of(begin, end, is_blank) &&
            stands_as_reference()) {
            sink_.keep();
        }
        sink_.text(begin, end);
        sink_.flush();
    }

    bool count_expanded(std::size_t bytes) {
        expanded_ += bytes;
        if (expanded_ <= kExpandedBytes + kExpandedTimes * feeder_.fed()) return true;
        refuse("entities expand to much more than the document");
        return false;
    }

    // Does the input have a reference where the parser is? In UTF-16 a NUL may stand before "&".
    bool stands_as_reference() const {
        const std::string_view there = context();
        return !there.empty() &&
               (there[0] == '&' || (there[0] == '\0' && there.size() > 1 && there[1] == '&'));
    }
    // The input from where the parser is.
    std::string_view context() const {
        int offset = 0;
        int size = 0;
        const char* const bytes = XML_GetInputContext(parser_.get(), &offset, &size);
        if (bytes == nullptr || offset >= size) return {};
        return {bytes + offset, static_cast<std::size_t>(size - offset)};
    }
    // What the parser tells of, as it stands in the input: for the text of an entity, the reference
    // to the outermost one.
    std::string markup() const {
        if (encoding_ == FileEncoding::kUtf8) return std::string(raw_markup());
        std::string text;
        append_decoded(text, raw_markup(), encoding_);
        return text;
    }
    std::string_view raw_markup() const {
        const int count = XML_GetCurrentByteCount(parser_.get());
        return context().substr(0, static_cast<std::size_t>(std::max(count, 0)));
    }
    // In attribute values the parser drops references to entities that an external DTD might
    // declare, and says nothing.
    bool references_are_known() {
        if (raw_markup().find('&') == std::string_view::npos) return true;
        const auto unknown = entities_.first_unknown(markup());
        if (unknown.has_value()) refuse_entity(*unknown);
        return !unknown.has_value();
    }

    Sink& sink_;
    ParserHandle parser_;
    Feeder feeder_;
    KnownNames names_;
    DeclaredEntities entities_;
    std::vector<KnownName*> open_;
    std::vector<ReadAttribute> attributes_;
    std::vector<char> values_;          // of a tag, one behind the other
    const char* valueBytes_ = nullptr;  // those of the tag at hand
    std::uint64_t expanded_ = 0;
    std::size_t toldTags_;  // those to come of which the sink knows
    long long lines_;
    long long columns_;
    bool isBehindRoot_;  // the only element stands for the root, of which the sink knows
    FileEncoding encoding_;
    bool encodingIsGiven_;
    bool declaresEncoding_ = false;
    bool hasDoctype_ = false;
    bool foundRoot_;
    bool stopped_ = false;
    bool outOfMemory_ = false;
    ReadError refusal_;
};

}  // namespace ux::xml
