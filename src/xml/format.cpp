// Laying out a document anew.
#include "xml/format.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "xml/layout_scan.h"

namespace ux::xml {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::size_t kDeepestIndent = 100;  // levels; deeper ones are indented like it
constexpr std::size_t kWrittenAtOnce = std::size_t{1} << 16;
constexpr std::string_view kMark = "\xEF\xBB\xBF";

enum class TokenKind : std::uint8_t { kText, kSection, kAside, kStart, kEmpty, kEnd, kDoctype };

// An aside is a comment or an instruction. A text may come in several tokens.
struct Token {
    TokenKind kind = TokenKind::kText;
    std::string_view bytes;  // until the next token
};

// Cuts a document into its tokens.
class Tokens {
public:
    Tokens(const ByteSource& source, std::size_t window)
        : window_(source, window), at_(window_.begin()) {
        source.seek(0);
        while (rest().size() < kMark.size() && window_.more(at_)) {
        }
        isMarked_ = rest().starts_with(kMark);
        if (isMarked_) at_ += kMark.size();
    }

    // False at the end, and where the document does not hang together.
    bool next(Token& token) {
        while (!cut(token)) {
            if (!window_.more(at_)) return false;
        }
        at_ += token.bytes.size();
        return true;
    }
    // Of the last start tag, with places in its bytes.
    const ScannedTag& tag() const { return tag_; }
    bool is_marked() const { return isMarked_; }
    bool failed() const { return window_.failed() || !rest().empty(); }

private:
    std::string_view rest() const { return {at_, static_cast<std::size_t>(window_.end() - at_)}; }

    // False for a token that is not there as a whole.
    bool cut(Token& token) {
        const std::string_view bytes = rest();
        if (bytes.empty()) return false;
        if (bytes[0] != '<') return take(token, TokenKind::kText, bytes.find('<'));
        if (bytes.starts_with("<!--")) return take_to(token, TokenKind::kAside, 4, "-->");
        if (bytes.starts_with("<![CDATA[")) return take_to(token, TokenKind::kSection, 9, "]]>");
        if (bytes.starts_with("<?")) return take_to(token, TokenKind::kAside, 2, "?>");
        if (bytes.starts_with("</")) return take_to(token, TokenKind::kEnd, 2, ">");
        if (bytes.starts_with("<!")) {
            const std::size_t end = doctype_end(bytes, 0);
            return end != kNowhere && take(token, TokenKind::kDoctype, end);
        }
        return scan_tag(bytes, 0, tag_) &&
               take(token, tag_.empty ? TokenKind::kEmpty : TokenKind::kStart, tag_.end);
    }
    bool take(Token& token, TokenKind kind, std::size_t end) {
        token = {kind, rest().substr(0, end)};
        return true;
    }
    bool take_to(Token& token, TokenKind kind, std::size_t skipped, std::string_view mark) {
        const std::size_t found = rest().find(mark, skipped);
        return found != kNowhere && take(token, kind, found + mark.size());
    }

    Window window_;
    char* at_;
    ScannedTag tag_;
    bool isMarked_ = false;
};

// What an element holds, as bits.
enum Holds : std::uint8_t { kElements = 1, kTexts = 2, kPreserved = 4 };

bool preserves_space(std::string_view text, const ScannedTag& tag) {
    return std::any_of(tag.attributes.begin(), tag.attributes.end(), [&](const auto& attribute) {
        const auto part = [&](std::size_t begin, std::size_t end) {
            return text.substr(begin, end - begin);
        };
        return part(attribute.nameBegin, attribute.nameEnd) == "xml:space" &&
               part(attribute.valueBegin, attribute.valueEnd) == "preserve";
    });
}

// What has to be known of a document before it is written.
struct Contents {
    std::vector<std::uint8_t> elements;  // what each holds, in the order of the start tags
    std::string_view lineBreak = "\n";   // the first one
};

// Looks for the first line break in the pieces of a document.
class LineBreakSearch {
public:
    void look_at(std::string_view bytes, Contents& contents) {
        if (isFound_) return;
        const std::size_t place = bytes.find('\n');
        isFound_ = place != kNowhere;
        const char before = place == 0 ? last_ : bytes[std::min(place, bytes.size()) - 1];
        if (isFound_ && before == '\r') contents.lineBreak = "\r\n";
        last_ = bytes.back();
    }

private:
    bool isFound_ = false;
    char last_ = '\0';
};

// False when the source is no document.
bool read_contents(const ByteSource& source, std::size_t window, Contents& contents) {
    Tokens tokens(source, window);
    LineBreakSearch lineBreak;
    std::vector<std::uint8_t>& elements = contents.elements;
    std::vector<std::size_t> open;
    for (Token token; tokens.next(token);) {
        lineBreak.look_at(token.bytes, contents);
        switch (token.kind) {
            case TokenKind::kText:
                if (!open.empty() && !is_blank(token.bytes)) elements[open.back()] |= kTexts;
                break;
            case TokenKind::kSection:
                if (!open.empty()) elements[open.back()] |= kTexts;
                break;
            case TokenKind::kStart:
            case TokenKind::kEmpty:
                if (!open.empty()) elements[open.back()] |= kElements;
                if (token.kind == TokenKind::kStart) open.push_back(elements.size());
                elements.push_back(preserves_space(token.bytes, tokens.tag()) ? kPreserved : 0);
                break;
            case TokenKind::kEnd:
                if (open.empty()) return false;
                open.pop_back();
                break;
            default:
                break;
        }
    }
    return !tokens.failed() && open.empty() && !elements.empty();
}

class Formatter {
public:
    Formatter(const Contents& contents, const FormatStyle& style, const WriteBytes& write)
        : contents_(contents), style_(style), write_(write) {}

    // False when the source is not what it was when its contents were read.
    bool run(const ByteSource& source, std::size_t window) {
        Tokens tokens(source, window);
        if (tokens.is_marked()) write_(kMark);
        std::size_t element = 0;
        for (Token token; tokens.next(token);) {
            switch (token.kind) {
                case TokenKind::kText:
                case TokenKind::kSection:
                    if (asItIs_ > 0) put(token.bytes);
                    break;
                case TokenKind::kStart:
                case TokenKind::kEmpty:
                    if (element == contents_.elements.size()) return false;
                    start(tokens.tag(), token, contents_.elements[element++] == kElements);
                    break;
                case TokenKind::kEnd:
                    if (level_ + asItIs_ == 0) return false;
                    end(token.bytes);
                    break;
                default:
                    break_line();
                    put(token.bytes);
            }
        }
        put(contents_.lineBreak);
        write_(out_);
        return !tokens.failed() && element == contents_.elements.size();
    }

private:
    void start(const ScannedTag& tag, const Token& token, bool isLaidOut) {
        break_line();
        if (asItIs_ > 0) {
            put(token.bytes);
        } else {
            put_tag(tag, token.bytes);
        }
        if (token.kind == TokenKind::kEmpty) return;
        if (asItIs_ > 0 || !isLaidOut) {
            ++asItIs_;
        } else {
            ++level_;
        }
    }

    void end(std::string_view bytes) {
        if (asItIs_ > 0) {
            --asItIs_;
        } else {
            --level_;
            break_line();
        }
        put(bytes);
    }

    void break_line() {
        if (asItIs_ > 0 || style_.compact || isEmpty_) return;
        put(contents_.lineBreak);
        for (std::size_t i = std::min(level_, kDeepestIndent); i > 0; --i) put(style_.indent);
    }

    // One blank in front of each attribute.
    void put_tag(const ScannedTag& tag, std::string_view bytes) {
        put(bytes.substr(0, tag.nameEnd));
        for (const ScannedAttribute& attribute : tag.attributes) {
            put(" ");
            put(bytes.substr(attribute.nameBegin, attribute.nameEnd - attribute.nameBegin));
            put("=");
            put(bytes.substr(attribute.valueBegin - 1,
                             attribute.valueEnd + 2 - attribute.valueBegin));
        }
        put(tag.empty ? "/>" : ">");
    }

    void put(std::string_view bytes) {
        isEmpty_ = false;
        if (out_.size() + bytes.size() > kWrittenAtOnce) {
            write_(out_);
            out_.clear();
        }
        if (bytes.size() > kWrittenAtOnce) return write_(bytes);
        out_ += bytes;
    }

    const Contents& contents_;
    const FormatStyle& style_;
    const WriteBytes& write_;
    std::string out_;
    bool isEmpty_ = true;
    std::size_t level_ = 0;
    std::size_t asItIs_ = 0;  // open elements whose content is copied
};

}  // namespace

bool format_document(const ByteSource& source, const FormatStyle& style, const WriteBytes& write,
                     std::size_t window) {
    Contents contents;
    return read_contents(source, window, contents) &&
           Formatter(contents, style, write).run(source, window);
}

}  // namespace ux::xml
