// The grammar of the forgiving XML scanner, over any input and any receiver of its events.
//
// An Input gives bytes in pieces:
//   static constexpr bool kHighBytesAreNames   are all bytes from 80 up name characters? Otherwise
//                                              they are UTF-8 and classified by character
//   const char* position() const; const char* limit() const;   the piece not yet consumed
//   void move_to(const char* position)         consumes up to there
//   bool refill()                              replaces a consumed piece; false at end of input
// Behind the limit kReadAhead more bytes are readable. A character never straddles two pieces.
//
// A Sink receives events. A start tag is announced piecemeal and counts only with its last call:
//   begin(name); attribute(name)...; then start(), or start_and_end() for "<a/>"
//   end(name)                                  an end tag; the sink decides whether it fits
// and may foresee what comes, which spares reading it byte by byte:
//   const KnownText* expected_tag()            `name` of a start tag, not empty; or null
//   const KnownText* expected_attribute()      `name="`, with the quote it expects; or null
//   const KnownText* expected_end()            `/name>` of an end tag; or null
//   begin_expected(), attribute_expected(), end_expected()   the events when it was right
// A sink with kLeavesIdsOut does not hear of the attribute in which a file carries the ID of an
// element: one of that name whose value is a number. It is none of the tree's attributes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "uxtree/host/utilities.h"

#include "base/byte_search.h"
#include "base/xml_names.h"
#include "outline/decoding.h"

namespace ux {

inline constexpr std::string_view kIdAttribute = "_ux_id";  // carries an ID in files

inline bool is_white(int character) {
    return character == ' ' || character == '\n' || character == '\t' || character == '\r';
}

// The roles of single bytes in names; bytes of longer characters have none.
enum ByteRole : unsigned char { kNoRole = 0, kStartsName = 1, kContinuesName = 2 };

template <bool kHighBytesAreNames>
constexpr std::array<unsigned char, 256> byte_roles() {
    std::array<unsigned char, 256> roles{};
    constexpr unsigned char kBoth = kStartsName | kContinuesName;
    for (std::size_t c = 'a'; c <= 'z'; ++c) roles[c] = kBoth;
    for (std::size_t c = 'A'; c <= 'Z'; ++c) roles[c] = kBoth;
    for (std::size_t c = '0'; c <= '9'; ++c) roles[c] = kContinuesName;
    roles['_'] = roles[':'] = kBoth;
    roles['-'] = roles['.'] = kContinuesName;
    for (std::size_t c = 0x80; c <= 0xFF && kHighBytesAreNames; ++c) roles[c] = kBoth;
    return roles;
}

// Bytes in memory as an input of one piece. They are not decoded: every byte from 80 up is a name
// character and a NUL is an ordinary byte.
class BytesInput {
public:
    static constexpr bool kHighBytesAreNames = true;
    BytesInput(const char* begin, const char* end) : position_(begin), limit_(end) {}
    const char* position() const { return position_; }
    const char* limit() const { return limit_; }
    void move_to(const char* position) { position_ = position; }
    static bool refill() { return false; }

private:
    const char* position_;
    const char* limit_;
};

// The base of sinks that foresee nothing.
struct PlainSink {
    static constexpr bool kLeavesIdsOut = false;
    static constexpr const KnownText* expected_tag() { return nullptr; }
    static constexpr const KnownText* expected_attribute() { return nullptr; }
    static constexpr const KnownText* expected_end() { return nullptr; }
    void begin_expected() {}
    void attribute_expected() {}
    void end_expected() {}
};

// Steps through an input, from piece to piece.
template <typename Input>
class MarkupCursor {
public:
    explicit MarkupCursor(Input& input)
        : input_(input), next_(input.position()), end_(input.limit()) {}
    MarkupCursor(const MarkupCursor&) = delete;
    MarkupCursor& operator=(const MarkupCursor&) = delete;
    ~MarkupCursor() { input_.move_to(next_); }

    static constexpr int kEnd = -1;
    // The next byte, or kEnd.
    int peek() {
        if (next_ == end_ && !refill()) return kEnd;
        return static_cast<unsigned char>(*next_);
    }
    // Consumes the byte just peeked at.
    void skip_one() { ++next_; }
    int take() {
        const int byte = peek();
        if (byte != kEnd) skip_one();
        return byte;
    }
    // Consumes the byte if it comes next.
    bool take_if(char wanted) {
        if (peek() != static_cast<unsigned char>(wanted)) return false;
        skip_one();
        return true;
    }
    void skip_white() {
        while (is_white(peek())) skip_one();
    }
    // Consumes everything before the wanted byte; false when the input ends first.
    bool skip_to(char wanted) {
        for (;;) {
            next_ = find_byte(next_, end_, wanted);
            if (next_ != end_) return true;
            if (!refill()) return false;
        }
    }
    bool skip_past(char wanted) {
        if (!skip_to(wanted)) return false;
        skip_one();
        return true;
    }
    // Consumes up to and including the first ">" that follows the given characters, one or two,
    // counted from here.
    bool skip_past_closing(std::string_view before) {
        std::array<char, 2> last{};  // what came just before this piece, most recent last
        for (const char* piece = next_;;) {
            next_ = find_byte(next_, end_, '>');
            if (next_ != end_) {
                if (ends_with(last, piece, before)) return skip_one(), true;
                skip_one();
                continue;
            }
            remember(last, piece);
            if (!refill()) return false;
            piece = next_;
        }
    }
    // Consumes a name if it comes next. The view holds until the next call.
    bool take_name(std::string_view& name) {
        const char* last = next_;
        if (next_ != end_ && (role(*next_) & kStartsName) != 0) {
            do ++last;
            while (last != end_ && (role(*last) & kContinuesName) != 0);
            if (last != end_ && is_ascii_or_whole(*last)) {
                name = {next_, static_cast<std::size_t>(last - next_)};
                next_ = last;
                return true;
            }
        }
        name_.clear();
        const bool found = append_name(name_);
        name = name_;
        return found;
    }
    // Appends a name to out and consumes it, if one comes next.
    bool append_name(std::string& out) {
        if (!append_character(out, kStartsName)) return false;
        while (append_character(out, kContinuesName)) {
        }
        return true;
    }
    // What is at hand without a further piece, and consuming a part of it.
    const char* next() const { return next_; }
    const char* end() const { return end_; }
    void move_to(const char* next) { next_ = next; }

    // Consumes a foreseen text if it comes next and is at hand.
    bool take_known(const KnownText& text) {
        if (!text.stands_at(next_, end_)) return false;
        next_ += text.size();
        return true;
    }
    // The same for a name, which must not be the start of a longer one.
    bool take_known_name(const KnownText& name) {
        if (!name.stands_at(next_, end_)) return false;
        const char behind = next_[name.size()];
        if ((role(behind) & kContinuesName) != 0 || !is_ascii_or_whole(behind)) return false;
        next_ += name.size();
        return true;
    }

private:
    static constexpr std::array<unsigned char, 256> kRoles =
        byte_roles<Input::kHighBytesAreNames>();
    static unsigned char role(char byte) { return kRoles[static_cast<unsigned char>(byte)]; }
    // Do the roles of single bytes tell all about this one?
    static bool is_ascii_or_whole(char byte) {
        return Input::kHighBytesAreNames || static_cast<unsigned char>(byte) < 0x80;
    }

    bool refill() {
        input_.move_to(next_);
        const bool more = input_.refill();
        next_ = input_.position();
        end_ = input_.limit();
        return more;
    }
    bool append_character(std::string& out, ByteRole wanted) {
        if (peek() == kEnd) return false;
        Character character{0, 1};
        if (is_ascii_or_whole(*next_)) {
            if ((role(*next_) & wanted) == 0) return false;
        } else {
            character = character_at(next_);
            const bool fits = wanted == kStartsName ? starts_name(character.value)
                                                    : continues_name(character.value);
            if (!fits) return false;
        }
        out.append(next_, static_cast<std::size_t>(character.length));
        next_ += character.length;
        return true;
    }

    bool ends_with(const std::array<char, 2>& last, const char* piece,
                   std::string_view before) const {
        for (std::size_t i = 1; i <= before.size(); ++i) {
            const std::size_t inPiece = static_cast<std::size_t>(next_ - piece);
            const char byte = i <= inPiece ? next_[-static_cast<std::ptrdiff_t>(i)]
                                           : last[last.size() - (i - inPiece)];
            if (byte != before[before.size() - i]) return false;
        }
        return true;
    }
    void remember(std::array<char, 2>& last, const char* piece) const {
        if (next_ - piece >= 2) {
            last = {next_[-2], next_[-1]};
        } else if (next_ - piece == 1) {
            last = {last[1], next_[-1]};
        }
    }

    Input& input_;
    const char* next_;
    const char* end_;
    std::string name_;
};

// Runs the grammar over an input. The first syntax error ends the scan without a word; the events
// before it stand.
template <typename Input, typename Sink>
class MarkupScan {
public:
    MarkupScan(Input& input, Sink& sink) : cursor_(input), sink_(sink) {}

    // True when the input ended between two constructs.
    bool run() {
        while (cursor_.skip_to('<')) {
            cursor_.skip_one();
            if (!construct()) return false;
        }
        return true;
    }

private:
    bool construct() {
        const KnownText* expected = sink_.expected_end();
        if (expected != nullptr && cursor_.take_known(*expected)) {
            sink_.end_expected();
            return true;
        }
        switch (cursor_.peek()) {
            case '/':
                cursor_.skip_one();
                return end_tag();
            case '?':
                cursor_.skip_one();
                return instruction();
            case '!':
                cursor_.skip_one();
                return declaration_or_section();
            case MarkupCursor<Input>::kEnd:
                return false;
            default:
                return start_tag();
        }
    }

    bool end_tag() {
        std::string_view name;
        if (!cursor_.take_name(name)) return false;
        // Intended: whatever else the tag holds is read over.
        if (cursor_.peek() == '>') {
            cursor_.skip_one();
            sink_.end(name);
            return true;
        }
        endName_ = name;
        if (!cursor_.skip_past('>')) return false;
        sink_.end(endName_);
        return true;
    }

    // Intended: the encoding in an XML declaration is not consulted; input is always UTF-8.
    bool instruction() {
        std::string_view target;
        if (!cursor_.take_name(target)) return false;
        cursor_.skip_white();
        return cursor_.skip_past_closing("?");
    }

    bool declaration_or_section() {
        if (cursor_.take_if('-')) return cursor_.take_if('-') && cursor_.skip_past_closing("--");
        if (!cursor_.take_if('[')) return declaration();
        for (const char wanted : {'C', 'D', 'A', 'T', 'A', '['}) {
            if (!cursor_.take_if(wanted)) return false;
        }
        return cursor_.skip_past_closing("]]");
    }

    // Intended: quotes and comments inside a declaration are not understood, only the depth of
    // angle brackets is counted.
    bool declaration() {
        for (std::uint64_t depth = 1; depth > 0;) {
            const int byte = cursor_.take();
            if (byte == MarkupCursor<Input>::kEnd) return false;
            if (byte == '<') ++depth;
            if (byte == '>') --depth;
        }
        return true;
    }

    bool start_tag() {
        begin_tag();
        for (;;) {
            skip_expected_attributes();
            cursor_.skip_white();
            switch (cursor_.peek()) {
                case '>':
                    cursor_.skip_one();
                    sink_.start();
                    return true;
                case '/':
                    cursor_.skip_one();
                    if (!cursor_.take_if('>')) return false;
                    sink_.start_and_end();
                    return true;
                default:
                    if (!attribute()) return false;
            }
        }
    }

    // Intended: a tag without a name is an element with an empty name.
    void begin_tag() {
        const KnownText* expected = sink_.expected_tag();
        if (expected != nullptr && cursor_.take_known_name(*expected)) {
            sink_.begin_expected();
            return;
        }
        std::string_view name;
        cursor_.take_name(name);
        sink_.begin(name);
    }

    // A shortcut: consumes attributes that come as foreseen and are at hand as a whole. It may stop
    // before any attribute.
    void skip_expected_attributes() {
        const char* next = cursor_.next();
        const char* const end = cursor_.end();
        while (const KnownText* expected = sink_.expected_attribute()) {
            const char* name = next;
            while (name != end && is_white(*name)) ++name;
            if (!expected->stands_at(name, end)) break;
            const char* const value = name + expected->size();
            const char* const quote = find_byte(value, end, expected->last());
            if (quote == end) break;
            sink_.attribute_expected();
            next = quote + 1;
        }
        cursor_.move_to(next);
    }

    bool attribute() {
        std::string_view name;
        if (!cursor_.take_name(name)) return false;
        const bool mayBeId = Sink::kLeavesIdsOut && name == kIdAttribute;
        if (!mayBeId) sink_.attribute(name);
        cursor_.skip_white();
        if (!cursor_.take_if('=')) return false;
        cursor_.skip_white();
        const int quote = cursor_.take();
        if (quote != '"' && quote != '\'') return false;
        return mayBeId ? id_attribute(quote) : cursor_.skip_past(static_cast<char>(quote));
    }
    // Behind the opening quote. No number is written with more bytes than are looked at.
    bool id_attribute(int quote) {
        constexpr std::size_t kLongestNumber = 64;
        std::string value;
        for (int byte = cursor_.take(); byte != quote; byte = cursor_.take()) {
            if (byte == MarkupCursor<Input>::kEnd) return false;
            if (value.size() <= kLongestNumber) value += static_cast<char>(byte);
        }
        int id = 0;
        const bool isId = value.size() <= kLongestNumber && UXParseInt(value, id);
        if (!isId) sink_.attribute(kIdAttribute);
        return true;
    }

    MarkupCursor<Input> cursor_;
    Sink& sink_;
    std::string endName_;
};

template <typename Input, typename Sink>
bool scan_markup(Input& input, Sink& sink) {
    return MarkupScan<Input, Sink>(input, sink).run();
}

}  // namespace ux
