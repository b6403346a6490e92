// Laying out a document anew.
#include "xml/format.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "xml/layout_scan.h"

namespace ux::xml {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::size_t kDeepestIndent = 100;  // levels; deeper ones are indented like it

enum class TokenKind : std::uint8_t { kText, kSection, kAside, kStart, kEmpty, kEnd, kDoctype };

// An aside is a comment or an instruction.
struct Token {
    TokenKind kind = TokenKind::kText;
    std::size_t begin = 0;
    std::size_t end = 0;
};

// Cuts a document into its tokens.
class Tokens {
public:
    Tokens(std::string_view text, const ScannedDocument& document)
        : text_(text), document_(document), at_(text.starts_with("\xEF\xBB\xBF") ? 3 : 0) {}

    // False at the end, and where the document does not hang together.
    bool next(Token& token) {
        if (at_ >= text_.size()) return false;
        token.begin = at_;
        if (text_[at_] != '<') return take(token, TokenKind::kText, text_.find('<', at_));
        const std::string_view rest = text_.substr(at_);
        if (rest.starts_with("<!--")) return take_to(token, TokenKind::kAside, 4, "-->");
        if (rest.starts_with("<![CDATA[")) return take_to(token, TokenKind::kSection, 9, "]]>");
        if (rest.starts_with("<?")) return take_to(token, TokenKind::kAside, 2, "?>");
        if (rest.starts_with("</")) return take_to(token, TokenKind::kEnd, 2, ">");
        if (rest.starts_with("<!")) {
            const bool isDoctype = at_ == document_.doctypeBegin && document_.doctypeEnd > at_;
            if (isDoctype) return take(token, TokenKind::kDoctype, document_.doctypeEnd);
            return fail();
        }
        if (!scan_tag(text_, at_, tag_)) return fail();
        return take(token, tag_.empty ? TokenKind::kEmpty : TokenKind::kStart, tag_.end);
    }
    // Of the last start tag.
    const ScannedTag& tag() const { return tag_; }
    bool failed() const { return failed_; }

private:
    bool fail() {
        failed_ = true;
        return false;
    }
    bool take(Token& token, TokenKind kind, std::size_t end) {
        token.kind = kind;
        token.end = at_ = std::min(end, text_.size());
        return true;
    }
    bool take_to(Token& token, TokenKind kind, std::size_t skipped, std::string_view mark) {
        const std::size_t found = text_.find(mark, at_ + skipped);
        return found == kNowhere ? fail() : take(token, kind, found + mark.size());
    }

    std::string_view text_;
    const ScannedDocument& document_;
    std::size_t at_;
    ScannedTag tag_;
    bool failed_ = false;
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

// What every element holds, in the order of the start tags; empty when the text is no document.
std::vector<std::uint8_t> contents_of(std::string_view text, const ScannedDocument& document) {
    Tokens tokens(text, document);
    std::vector<std::uint8_t> contents;
    std::vector<std::size_t> open;
    for (Token token; tokens.next(token);) {
        const std::string_view bytes = text.substr(token.begin, token.end - token.begin);
        switch (token.kind) {
            case TokenKind::kText:
                if (!open.empty() && !is_blank(bytes)) contents[open.back()] |= kTexts;
                break;
            case TokenKind::kSection:
                if (!open.empty()) contents[open.back()] |= kTexts;
                break;
            case TokenKind::kStart:
            case TokenKind::kEmpty:
                if (!open.empty()) contents[open.back()] |= kElements;
                if (token.kind == TokenKind::kStart) open.push_back(contents.size());
                contents.push_back(preserves_space(text, tokens.tag()) ? kPreserved : 0);
                break;
            case TokenKind::kEnd:
                if (open.empty()) return {};
                open.pop_back();
                break;
            default:
                break;
        }
    }
    if (tokens.failed() || !open.empty()) contents.clear();
    return contents;
}

class Formatter {
public:
    Formatter(std::string_view text, const FormatStyle& style, std::string& out)
        : text_(text), style_(style), out_(out) {
        const std::size_t line = text.find('\n');
        if (line != kNowhere && line > 0 && text[line - 1] == '\r') lineBreak_ = "\r\n";
    }

    void run(const ScannedDocument& document, const std::vector<std::uint8_t>& contents) {
        if (text_.starts_with("\xEF\xBB\xBF")) out_ += text_.substr(0, 3);
        start_ = out_.size();
        Tokens tokens(text_, document);
        std::size_t element = 0;
        for (Token token; tokens.next(token);) {
            const std::string_view bytes = text_.substr(token.begin, token.end - token.begin);
            switch (token.kind) {
                case TokenKind::kText:
                case TokenKind::kSection:
                    if (asItIs_ > 0) out_ += bytes;
                    break;
                case TokenKind::kStart:
                case TokenKind::kEmpty:
                    start(tokens.tag(), bytes, token, contents[element++] == kElements);
                    break;
                case TokenKind::kEnd:
                    end(bytes);
                    break;
                default:
                    break_line();
                    out_ += bytes;
            }
        }
        out_ += lineBreak_;
    }

private:
    void start(const ScannedTag& tag, std::string_view bytes, const Token& token, bool isLaidOut) {
        break_line();
        if (asItIs_ > 0) {
            out_ += bytes;
        } else {
            write_tag(tag, token.begin);
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
        out_ += bytes;
    }

    void break_line() {
        if (asItIs_ > 0 || style_.compact || out_.size() == start_) return;
        out_ += lineBreak_;
        for (std::size_t i = std::min(level_, kDeepestIndent); i > 0; --i) out_ += style_.indent;
    }

    // One blank in front of each attribute.
    void write_tag(const ScannedTag& tag, std::size_t begin) {
        out_ += text_.substr(begin, tag.nameEnd - begin);
        for (const ScannedAttribute& attribute : tag.attributes) {
            out_ += ' ';
            out_ += text_.substr(attribute.nameBegin, attribute.nameEnd - attribute.nameBegin);
            out_ += '=';
            out_ += text_.substr(attribute.valueBegin - 1,
                                 attribute.valueEnd + 2 - attribute.valueBegin);
        }
        out_ += tag.empty ? "/>" : ">";
    }

    std::string_view text_;
    const FormatStyle& style_;
    std::string& out_;
    std::string_view lineBreak_ = "\n";
    std::size_t start_ = 0;
    std::size_t level_ = 0;
    std::size_t asItIs_ = 0;  // open elements whose content is copied
};

}  // namespace

bool format_document(std::string_view text, const FormatStyle& style, std::string& out) {
    ScannedDocument document;
    document.text = text;
    if (!scan_prolog(text, document)) return false;
    const std::vector<std::uint8_t> contents = contents_of(text, document);
    if (contents.empty()) return false;
    out.reserve(out.size() + text.size() + text.size() / 4);
    Formatter(text, style, out).run(document, contents);
    return true;
}

}  // namespace ux::xml
