// The strict reader of XML: it accepts well-formed documents without a DOCTYPE and gives up on
// everything else. It never tells what is wrong; whoever gave it the input has another parser read it
// then, which decides about errors and knows what this one does not: entities, document types, rare
// encodings.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/large_memory.h"
#include "base/utf8.h"
#include "base/xml_names.h"
#include "xml/file_encoding.h"
#include "xml/known_names.h"
#include "xml/names_ahead.h"
#include "xml/references.h"
#include "xml/scan.h"
#include "xml/start_tag.h"
#include "xml/window.h"

namespace ux::xml {

enum class ReadResult {
    kDone,
    kGaveUp,
    kDoctype,  // gave up at the "<!DOCTYPE" before the root, with no event so far
};

// A place inside the root or right behind it: all in front of it was told, and nothing behind it.
struct ReadPlace {
    std::uint64_t offset = 0;         // in bytes
    std::vector<std::string> open{};  // the elements that are open there, none behind the root
};

// Reads a document and tells a sink about it. A sink has these operations; what they throw passes
// through the reader:
//   SinkName resolve(const ReadName& name)    keeps a valid name
//   const void* slot_of(const ReadName& name)   where resolve will look for it; may be missing
//   bool start(const StartTag& tag)           false: give up
//   void end()                                of the innermost open element
//   void text(const char* begin, const char* end)   a part of the text at hand; line ends are LF.
//                                             Valid until flush, or up to 64 KB of it behind.
//   void keep()        the text at hand was written as CDATA, or has a blank written as a reference
//   void flush()       what text told of becomes invalid
template <class Sink>
class StrictReader {
public:
    // A sink with more names is told which ones are likely to come.
    static constexpr std::uint32_t kManyNames = 1 << 12;

    // The window is in UTF-8. The declaration may say that the input is in the encoding from which it
    // was decoded.
    StrictReader(Window& window, Sink& sink, FileEncoding encoding = FileEncoding::kUtf8)
        : window_(window), sink_(sink), encoding_(encoding) {}

    // Reads a whole document from its start.
    ReadResult run() {
        char* at = prolog();
        if (at == nullptr) return foundDoctype_ ? ReadResult::kDoctype : ReadResult::kGaveUp;
        return run_root(at);
    }
    // After run gave up: where another parser can go on, if there is such a place.
    std::optional<ReadPlace> place() const {
        if (!told_.has_value()) return std::nullopt;
        ReadPlace place{*told_};
        for (const KnownName* name : open_) place.open.emplace_back(name->view());
        return place;
    }
    // Reads on from behind the DOCTYPE, where the window's input begins. The caller had that read.
    ReadResult run_behind_doctype(TypedAttributes typed) {
        typed_ = std::move(typed);
        for (const auto& [element, attribute] : typed_) typedElements_.insert(element);
        char* at = window_.begin();
        at = window_.more(at) ? find_root(at) : nullptr;
        return at != nullptr ? run_root(at) : ReadResult::kGaveUp;
    }

private:
    // Longer than whatever has to be seen whole to be understood, names and numbers apart; those
    // are followed up to the end of the window.
    static constexpr std::ptrdiff_t kLookAhead = 16;

    // --- the window ----------------------------------------------------------------------------

    bool refill(char*& keep) {
        sink_.flush();
        const bool more = window_.more(keep);
        ahead_.forget(window_.begin());
        return more;
    }
    char* fail(char* at) {
        stop_ = at;
        return nullptr;
    }
    // All in front of that place was told, and nothing behind it.
    char* give_up_at(const char* at) {
        if (!open_.empty()) told_ = window_.offset_of(at);
        sink_.flush();  // others go on, without the window
        return nullptr;
    }
    // A token was not understood at stop_. Is that because the window ends there, and does the
    // input go on?
    bool token_goes_on(char*& token) {
        return window_.end() - stop_ <= kLookAhead && refill(token);
    }
    // Gets kLookAhead bytes into the window if the input has as many.
    void look_ahead(char*& at) {
        if (window_.end() - at < kLookAhead) refill(at);
    }

    // --- before and behind the root ------------------------------------------------------------

    ReadResult run_root(char* at) {
        at = start_tag(at);
        if (at != nullptr && !open_.empty()) at = content(at);
        if (at == nullptr) return ReadResult::kGaveUp;
        told_ = window_.offset_of(at);
        return epilog(at) ? ReadResult::kDone : ReadResult::kGaveUp;
    }

    // Yields the root's start tag.
    char* prolog() {
        char* at = window_.begin();
        if (!refill(at)) return nullptr;
        if (starts_with(at, "\xEF\xBB\xBF")) at += 3;
        if (starts_with(at, "<?xml") && is_blank(at[5])) at = declaration(at);
        return find_root(at);
    }
    char* find_root(char* at) {
        while (at != nullptr) {
            at = skip_blanks(at);
            look_ahead(at);
            if (*at != '<') return nullptr;
            if (at[1] == '?') {
                at = instruction(at);
            } else if (at[1] != '!') {
                return at;
            } else if (starts_with(at, "<!--")) {
                at = comment(at);
            } else {
                foundDoctype_ = starts_with(at, "<!DOCTYPE");
                return nullptr;
            }
        }
        return nullptr;
    }

    // Nothing but comments, instructions and white space; NUL bytes at the end of the input count
    // as such.
    bool epilog(char* at) {
        while (at != nullptr) {
            at = skip_blanks(at);
            if (at == window_.end()) return !window_.failed();
            if (*at == '\0') return skip_padding(at);
            look_ahead(at);
            if (*at != '<') return false;
            if (at[1] == '?') {
                at = instruction(at);
            } else if (starts_with(at, "<!--")) {
                at = comment(at);
            } else {
                return false;
            }
        }
        return false;
    }
    bool skip_padding(char* at) {
        do {
            while (at != window_.end() && (*at == '\0' || is_blank(*at))) ++at;
        } while (at == window_.end() && refill(at));
        return at == window_.end() && !window_.failed();
    }
    char* skip_blanks(char* at) {
        do {
            while (is_blank(*at)) ++at;
        } while (at == window_.end() && refill(at));
        return at;
    }
    static bool starts_with(const char* at, std::string_view text) {
        return std::memcmp(at, text.data(), text.size()) == 0;
    }

    // The XML declaration in one of the forms that nearly all documents have.
    char* declaration(char* at) {
        constexpr std::size_t kLongest = 1024;
        for (std::size_t size = 0; size < kLongest;) {
            size = static_cast<std::size_t>(window_.end() - at);
            if (std::string_view(at, size).find("?>") != std::string_view::npos) break;
            if (!refill(at)) return nullptr;
        }
        const char* p = at + 5;
        using Value = std::string_view;
        if (!pseudo_attribute(p, "version", [](Value v) { return v == "1.0"; })) return nullptr;
        pseudo_attribute(p, "encoding", [this](Value v) { return is_declared_as(encoding_, v); });
        pseudo_attribute(p, "standalone", [](Value v) { return v == "yes" || v == "no"; });
        while (is_blank(*p)) ++p;
        return p[0] == '?' && p[1] == '>' ? at + (p + 2 - at) : nullptr;
    }
    template <class Accepts>
    static bool pseudo_attribute(const char*& at, std::string_view name, Accepts&& accepts) {
        const char* p = at;
        while (is_blank(*p)) ++p;
        if (p == at || std::strncmp(p, name.data(), name.size()) != 0) return false;
        p += name.size();
        while (is_blank(*p)) ++p;
        if (*p++ != '=') return false;
        while (is_blank(*p)) ++p;
        const char quote = *p++;
        if (quote != '"' && quote != '\'') return false;
        const char* const end = std::strchr(p, quote);
        if (end == nullptr || !accepts(std::string_view(p, static_cast<std::size_t>(end - p)))) {
            return false;
        }
        at = end + 1;
        return true;
    }

    // --- what is read over ---------------------------------------------------------------------

    // At "<?" of an instruction. Yields what follows it.
    char* instruction(char* at) {
        for (;;) {
            char* const end = name_end(at + 2);
            if (end != nullptr && window_.end() - end >= 2) return instruction_behind(at + 2, end);
            if (end != nullptr) fail(end);
            if (!token_goes_on(at)) return nullptr;
        }
    }
    char* instruction_behind(const char* target, char* at) {
        const bool reserved = at - target == 3 && (target[0] | 0x20) == 'x' &&
                              (target[1] | 0x20) == 'm' && (target[2] | 0x20) == 'l';
        if (reserved) return nullptr;
        if (at[0] == '?') return at[1] == '>' ? at + 2 : nullptr;
        if (!is_blank(*at)) return nullptr;
        at = skip_to<'?', '>'>(at);
        return at == nullptr ? nullptr : at + 2;
    }

    // At "<!--". Yields what follows the comment.
    char* comment(char* at) {
        at = skip_to<'-', '-'>(at + 4);
        return at != nullptr && at[2] == '>' ? at + 3 : nullptr;
    }
    // Yields where the two characters stand next, with what follows them in the window. Nothing of
    // what is skipped has to stay there.
    template <char kFirst, char kSecond>
    char* skip_to(char* at) {
        char* begin = at;
        for (;;) {
            at = find_pair<kFirst, kSecond, false>(at);
            if (window_.end() - at < 4) {
                if (at == window_.end() && at != begin && at[-1] == kFirst) --at;
                const auto rest = window_.end() - at;
                refill(at);
                begin = at;
                if (window_.end() - at == rest && rest < 2) return nullptr;
            }
            if (at[0] == kFirst && at[1] == kSecond) return at;
            if (static_cast<signed char>(*at) < 0) {
                char* const behind = skip_high(at);
                if (behind == at) return nullptr;
                at = behind;
            } else if (is_control(*at)) {
                return nullptr;
            } else {
                ++at;
            }
        }
    }
    static bool is_control(char c) { return static_cast<unsigned char>(c) < 0x20 && !is_blank(c); }

    // --- names ---------------------------------------------------------------------------------

    // The end of the name that starts there; it may be the end of the window.
    __attribute__((noinline)) char* name_end(char* at) {
        if (static_cast<signed char>(*at) >= 0 && !is_kind(*at, kNameStart)) return fail(at);
        char* p = at;
        for (;;) {
            p = skip_name_parts(p);
            if (static_cast<signed char>(*p) >= 0) return p;
            const auto left = static_cast<std::size_t>(window_.end() - p);
            const Utf8Char c = decode_utf8(std::string_view(p, left), 0);
            if (c.length == 0) return fail(p);
            if (!(p == at ? starts_name(c.code) : continues_name(c.code))) return fail(p);
            p += c.length;
        }
    }

    // The name at `at`, which moves behind it. Null when there is none that is complete. Where isNew,
    // the last one of its kind was new among many: this one likely is, too, and is not looked for
    // among those that were met lately. Then isNew is set for this one.
    KnownName* name_at(char*& at, bool& isNew) {
        if (isNew) return new_name(at, isNew);
        const unsigned length = name_length(at);
        KnownName* const known = names_.cached(at, length);
        if (known == nullptr) return new_name(at, isNew);
        if (length < 16) {
            if (static_cast<signed char>(at[length]) < 0) return new_name(at, isNew);
            at += length;
            return known;
        }
        if (!known->tail_stands_at(at, window_.end())) return new_name(at, isNew);
        const char behind = at[known->length];
        if (!is_kind(behind, kNameStop) || static_cast<signed char>(behind) < 0) {
            return new_name(at, isNew);
        }
        at += known->length;
        return known;
    }
    __attribute__((noinline)) KnownName* new_name(char*& at, bool& isNew) {
        if (const ReadName* const name = name_ahead(at); name != nullptr) {
            at += name->text.size();
            return &known_of(*name, isNew);
        }
        char* const end = name_end(at);
        if (end == nullptr) return nullptr;
        if (end == window_.end()) {
            fail(end);
            return nullptr;
        }
        const auto size = static_cast<std::size_t>(end - at);
        return &known_of(ReadName::at(std::exchange(at, end), size), isNew);
    }
    KnownName& known_of(const ReadName& name, bool& isNew) {
        const SinkName resolved = sink_.resolve(name);
        if (resolved.place >= kManyNames) hasManyNames_ = true;
        KnownName& known = names_.add(resolved, name, isNew);
        if (isNew && !typedElements_.empty()) {
            known.isTyped = typedElements_.count(std::string(name.text)) != 0;
        }
        isNew = isNew && hasManyNames_;  // it may stand there only once
        if (!isNew) names_.put_into_cache(known, name.key);
        return known;
    }
    // The name at `at` if it was looked at ahead, or is now.
    const ReadName* name_ahead(char* at) {
        if constexpr (requires { sink_.slot_of(ReadName()); }) {
            if (hasManyNames_) return ahead_.find(at, window_.end(), sink_);
        }
        return nullptr;
    }

    // --- tags ----------------------------------------------------------------------------------

    // At "<" of a start tag. Tells the sink and yields what follows the tag.
    char* start_tag(char* at) {
        char* behind = scan_tag(at);
        while (behind == nullptr) {
            // What was understood of the tag stays so when more of it is there, unless the window
            // ends behind it: a name may go on.
            const bool isSure = tag_ != nullptr && reached_ != window_.end();
            const std::ptrdiff_t understood = isSure ? reached_ - at : 0;
            if (!token_goes_on(at)) return give_up_at(at);
            behind = understood == 0 ? scan_tag(at) : scan_attributes(at, at + understood);
        }
        return tell_tag(at, behind);
    }

    // These have no effect outside the reader but that names get known.
    char* scan_tag(char* tag) {
        char* at = tag + 1;
        tag_ = tag_name_at(at);
        if (tag_ == nullptr) return nullptr;
        escaped_.clear();
        ++stamp_;
        nextAttribute_ = attributes_.data();
        foreseen_ = foreseen_attributes();
        return scan_attributes(tag, at);
    }
    // Behind the name or a value.
    char* scan_attributes(char* tag, char* at) {
        for (;;) {
            if (*at == '>') {
                tagIsEmpty_ = false;
                return at + 1;
            }
            reached_ = at;
            if (is_blank(*at)) {
                KnownName* const name = *foreseen_;
                if (name != nullptr && name->opens_value_at(at + 1, window_.end())) {
                    ++foreseen_;
                    at = value<'"'>(tag, at + name->length + 3, name);
                    if (at == nullptr) return nullptr;
                    continue;
                }
                at = attribute(tag, at);
                if (at == nullptr) return nullptr;
                if (*at != '/') continue;
                reached_ = at;
            }
            if (at[0] == '/' && at[1] == '>') {
                tagIsEmpty_ = true;
                return at + 2;
            }
            return fail(at);
        }
    }
    // The name of a start tag. Often it is the one that followed the last time.
    KnownName* tag_name_at(char*& at) {
        KnownName* const before = tag_;
        KnownName* const next = before == nullptr ? nullptr : before->nextTag;
        if (next != nullptr && next->stands_at(at, window_.end())) {
            const char behind = at[next->length];
            if (is_kind(behind, kNameStop) && static_cast<signed char>(behind) >= 0) {
                at += next->length;
                return next;
            }
        }
        KnownName* const name = name_at(at, tagIsNew_);
        if (name == nullptr) return nullptr;
        if (before != nullptr) before->nextTag = name;
        return name;
    }

    // At a blank in a tag. Keeps the attribute and yields what follows it, or the end of the tag.
    __attribute__((noinline)) char* attribute(const char* tag, char* at) {
        do ++at;
        while (is_blank(*at));
        if (*at == '>' || *at == '/') return at;
        KnownName* const name = name_at(at, attributeIsNew_);
        if (name == nullptr) return nullptr;
        while (is_blank(*at)) ++at;
        if (*at != '=') return fail(at);
        do ++at;
        while (is_blank(*at));
        if (*at != '"' && *at != '\'') return fail(at);
        foresee_attribute(name);
        return *at == '"' ? value<'"'>(tag, at + 1, name) : value<'\''>(tag, at + 1, name);
    }
    // Tags of names that are new each time have such a list in common.
    KnownName* const* foreseen_attributes() const {
        return tag_->attributes == nullptr ? ofNewTags_.data() : tag_->attributes->data();
    }
    void foresee_attribute(KnownName* name) {
        KnownName::Foreseen*& attributes = tag_->attributes;
        if (attributes == nullptr && !tagIsNew_) attributes = names_.new_foreseen();
        KnownName::Foreseen& foreseen = attributes == nullptr ? ofNewTags_ : *attributes;
        const std::size_t place = attribute_count();
        if (place >= KnownName::kForeseen) return;
        foreseen[place] = name;
        foreseen_ = foreseen.data() + place + 1;
    }
    std::size_t attribute_count() const {
        return static_cast<std::size_t>(nextAttribute_ - attributes_.data());
    }

    // Behind the opening quote. Keeps the attribute and yields what follows the closing one.
    template <char kQuote>
    char* value(const char* tag, char* at, KnownName* name) {
        if (name->stamp == stamp_) return fail(window_.begin());  // twice
        char* const begin = at;
        at = find_value_stop<kQuote, true>(at);
        if (*at != kQuote) {
            at = odd_value<kQuote>(at);
            if (at == nullptr) return nullptr;
        }
        name->stamp = stamp_;
        if (nextAttribute_ == &attributes_.back()) make_room_for_attributes();
        *nextAttribute_++ = {name, static_cast<std::uint32_t>(begin - tag),
                             static_cast<std::uint32_t>(at - begin)};
        return at + 1;
    }
    __attribute__((noinline)) void make_room_for_attributes() {
        const std::size_t count = attribute_count();
        attributes_.resize(2 * attributes_.size());
        nextAttribute_ = attributes_.data() + count;
    }
    // In a value that is not plain. Yields its closing quote.
    template <char kQuote>
    __attribute__((noinline)) char* odd_value(char* at) {
        bool escaped = false;
        while (*at != kQuote) {
            const auto byte = static_cast<unsigned char>(*at);
            if (byte >= 0x80) {
                char* const behind = skip_high(at);
                if (static_cast<signed char>(*behind) < 0) return fail(behind);
                at = behind;
            } else if (byte == '&') {
                const Reference reference = read_reference(at);
                if (!reference.isWhole) return fail(at + reference.length);
                at += reference.length;
                escaped = true;
                at = skip_few(at, kValueStop);
                if (*at == '&') continue;
            } else if (byte == '\n' || byte == '\t' || byte == '\r') {
                escaped = true;
            } else if (byte == '"' || byte == '\'') {
                ++at;
            } else {
                return fail(at);
            }
            at = escaped ? find_value_stop<kQuote, false>(at) : find_value_stop<kQuote, true>(at);
        }
        if (escaped) escaped_.push_back(static_cast<std::uint32_t>(attribute_count()));
        return at;
    }

    char* tell_tag(char* tag, char* behind) {
        for (const std::uint32_t i : escaped_) {
            ReadAttribute& attribute = attributes_[i];
            attribute.size = unescape_value(tag + attribute.offset, attribute.size);
        }
        const StartTag told{*tag_, tag, attributes_.data(), attribute_count()};
        if (tag_->isTyped && !values_are_plain(told)) return nullptr;
        if (!sink_.start(told)) return nullptr;
        if (tagIsEmpty_) {
            sink_.end();
        } else {
            open_.push_back(tag_);
        }
        return behind;
    }
    // The parser takes blanks at the ends of a typed value away, and all but one in a row.
    bool values_are_plain(const StartTag& tag) const {
        for (std::size_t i = 0; i < tag.count; ++i) {
            const std::string_view value = tag.value(i);
            if (value.empty()) continue;
            const bool odd = value.front() == ' ' || value.back() == ' ' ||
                             value.find("  ") != std::string_view::npos;
            if (!odd) continue;
            const std::string_view name = tag.attributes[i].name->view();
            if (typed_.count({std::string(tag.name.view()), std::string(name)}) != 0) return false;
        }
        return true;
    }

    // At "</" of an end tag. Tells the sink and yields what follows the tag.
    char* end_tag(char* at) {
        const KnownName& name = *open_.back();
        for (;;) {
            if (name.stands_at(at + 2, window_.end())) {
                char* p = at + 2 + name.length;
                while (is_blank(*p)) ++p;
                if (*p == '>') {
                    sink_.end();
                    open_.pop_back();
                    return p + 1;
                }
                fail(p);
            } else {
                const std::ptrdiff_t there = window_.end() - at - 2;
                const bool whole = there > static_cast<std::ptrdiff_t>(name.length);
                fail(whole ? window_.begin() : window_.end());
                if (whole) return give_up_at(at);
            }
            if (!token_goes_on(at)) return give_up_at(at);
        }
    }

    // --- content -------------------------------------------------------------------------------

    // Behind the root's start tag. Yields what follows its end tag. All that ordinary documents need
    // is compiled into it: the calls would cost a tenth of the time.
    __attribute__((flatten)) char* content(char* at) {
        while (at != nullptr) {
            if (*at != '<') {
                at = text(at);
                if (at == nullptr) return nullptr;
            }
            const char kind = at[1];
            if (kind == '/') {
                at = end_tag(at);
                if (open_.empty()) return at;
            } else if (kind == '!') {
                at = comment_or_section(at);
            } else if (kind == '?') {
                at = instruction(at);
            } else if (kind == '\0') {
                if (at + 1 != window_.end() || !refill(at)) return nullptr;
            } else {
                at = start_tag(at);
            }
        }
        return nullptr;
    }

    // Yields the "<" that ends the text. Nothing of what was told has to stay in the window.
    // NOLINTNEXTLINE(readability-function-cognitive-complexity): a case for each byte that ends a run
    char* text(char* at) {
        char* piece = at;
        for (;;) {
            at = find_text_stop(at);
            const auto byte = static_cast<unsigned char>(*at);
            if (byte == '<') {
                if (at != piece) sink_.text(piece, at);
                return at;
            }
            if (byte >= 0x80) {
                char* const behind = skip_high(at);
                at = behind;
                if (static_cast<signed char>(*behind) >= 0) continue;
                if (!text_goes_on(piece, at)) return give_up_at(piece);
            } else if (byte == '&') {
                if (at != piece) sink_.text(piece, at);
                at = text_reference(at);
                if (at == nullptr) return nullptr;
                piece = at;
            } else if (byte == ']') {
                do {
                    char* const behind = skip_brackets(at);
                    if (behind == window_.end()) {
                        at = std::max(at, behind - 2);
                        if (!text_goes_on(piece, at)) return give_up_at(piece);
                        break;
                    }
                    if (*behind == '>' && behind - at >= 2) return give_up_at(piece);
                    at = skip_few(behind, kTextStop);
                } while (*at == ']');
            } else if (byte == '\r') {
                if (at + 1 == window_.end() && !text_goes_on(piece, at)) {
                    return give_up_at(piece);
                }
                at = line_end(piece, at);
            } else if (at != window_.end() || !text_goes_on(piece, at)) {
                return give_up_at(piece);
            }
        }
    }
    // What is at `at` is not complete, perhaps because the window ends. Tells what stands before
    // it and reads on.
    bool text_goes_on(char*& piece, char*& at) {
        if (window_.end() - at > kLookAhead) return false;
        if (at != piece) sink_.text(piece, at);
        const bool more = refill(at);
        piece = at;
        return more;
    }
    static char* skip_brackets(char* at) {
        while (*at == ']') ++at;
        return at;
    }
    // At a CR that is not the last byte of the window. One before a LF is left out, another one is
    // a LF. Yields what is to be looked at next.
    char* line_end(char*& piece, char* at) {
        if (at[1] != '\n') {
            do {
                *at = '\n';
                at = skip_few(at + 1, kTextStop);
            } while (at[0] == '\r' && at[1] != '\n' && at + 1 != window_.end());
            return at;
        }
        if (at[2] != '\r') {
            if (at != piece) sink_.text(piece, at);
            piece = at + 1;
            return piece;
        }
        char* behind = at;
        do behind += 2;
        while (behind[0] == '\r' && behind[1] == '\n');
        char* const end = at + (behind - at) / 2;
        std::fill(at, end, '\n');
        sink_.text(piece, end);
        piece = behind;
        return behind;
    }
    char* text_reference(char* at) {
        Reference reference = read_reference(at);
        while (!reference.isWhole) {
            fail(at + reference.length);
            if (!token_goes_on(at)) return give_up_at(at);
            reference = read_reference(at);
        }
        // The character is written where its reference stands, which is longer.
        char* const behind = encode_utf8(reference.code, at);
        if (reference.code <= ' ') sink_.keep();
        sink_.text(at, behind);
        return at + reference.length;
    }

    // At "<!" in content.
    char* comment_or_section(char* at) {
        look_ahead(at);
        if (starts_with(at, "<!--")) return comment(at);
        if (!starts_with(at, "<![CDATA[")) return nullptr;
        sink_.keep();
        return section(at + 9);
    }
    // NOLINTNEXTLINE(readability-function-cognitive-complexity): a case for each byte that ends a run
    char* section(char* at) {
        char* piece = at;
        for (;;) {
            at = find_pair<']', ']', true>(at);
            const auto byte = static_cast<unsigned char>(*at);
            if (byte == ']') {
                char* const behind = skip_brackets(at);
                if (behind == window_.end()) {
                    at = behind - 2;
                    if (!text_goes_on(piece, at)) return nullptr;
                    continue;
                }
                if (*behind == '>') {
                    if (behind - 2 != piece) sink_.text(piece, behind - 2);
                    return behind + 1;
                }
                at = behind;
            } else if (byte >= 0x80) {
                char* const behind = skip_high(at);
                at = behind;
                if (static_cast<signed char>(*behind) >= 0) continue;
                if (!text_goes_on(piece, at)) return nullptr;
            } else if (byte == '\r') {
                if (at + 1 == window_.end() && !text_goes_on(piece, at)) return nullptr;
                at = line_end(piece, at);
            } else {
                if (at != window_.end()) return nullptr;
                if (at != piece && at[-1] == ']') --at;
                if (!text_goes_on(piece, at)) return nullptr;
            }
        }
    }

    Window& window_;
    Sink& sink_;
    FileEncoding encoding_;
    KnownNames names_;
    TypedAttributes typed_;
    std::set<std::string> typedElements_;
    std::vector<KnownName*, LargeMemory<KnownName*>> open_;
    char* stop_ = nullptr;  // where a token was not understood
    std::optional<std::uint64_t> told_;
    bool foundDoctype_ = false;
    NamesAhead ahead_;
    bool hasManyNames_ = false;
    bool tagIsNew_ = false;        // the last one was, in a document of many names
    bool attributeIsNew_ = false;  // likewise

    // The start tag at hand.
    KnownName* tag_ = nullptr;
    char* reached_ = nullptr;  // what is understood ends there, at a place between attributes
    bool tagIsEmpty_ = false;
    std::uint32_t stamp_ = 0;
    using Attributes = std::vector<ReadAttribute, LargeMemory<ReadAttribute>>;
    Attributes attributes_ = Attributes(KnownName::kForeseen);  // room for more than are used
    ReadAttribute* nextAttribute_ = nullptr;                    // behind those of the tag
    KnownName* const* foreseen_ = nullptr;  // the attribute that is expected next
    KnownName::Foreseen ofNewTags_{};
    std::vector<std::uint32_t> escaped_;  // which have references or white space other than blanks
};

}  // namespace ux::xml
