// Finding the pieces of a document.
#include "xml/layout_scan.h"

#include <algorithm>
#include <cstring>

namespace ux::xml {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

bool stands_at(std::string_view text, std::size_t at, std::string_view wanted) {
    return text.compare(at, wanted.size(), wanted) == 0;
}

// As find, for places that are near most of the time.
std::size_t find_near(std::string_view text, char wanted, std::size_t at) {
    constexpr std::size_t kNear = 16;
    const std::size_t end = std::min(at + kNear, text.size());
    for (; at < end; ++at) {
        if (text[at] == wanted) return at;
    }
    return text.find(wanted, at);
}

// Behind the next mark; kNowhere without one.
std::size_t behind(std::string_view text, std::size_t at, std::string_view mark) {
    const std::size_t found = text.find(mark, at);
    return found == kNowhere ? kNowhere : found + mark.size();
}

// Behind the ">" that ends a tag; quoted values may hold one.
std::size_t tag_end(std::string_view text, std::size_t at) {
    const char* p = text.data() + at;
    const char* const end = text.data() + text.size();
    while (p < end) {
        const char c = *p++;
        if (c == '>') return static_cast<std::size_t>(p - text.data());
        if (c != '"' && c != '\'') continue;
        while (p < end && *p != c) ++p;  // most values are short
        if (p == end) return kNowhere;
        ++p;
    }
    return kNowhere;
}

std::size_t comment_or_instruction_end(std::string_view text, std::size_t at) {
    if (stands_at(text, at, "<!--")) return behind(text, at + 4, "-->");
    if (stands_at(text, at, "<?")) return behind(text, at + 2, "?>");
    return kNowhere;
}

// Where something else begins than white space; the end of the text when nothing does.
std::size_t behind_blanks(std::string_view text, std::size_t at) {
    while (at < text.size() && is_blank(text[at])) ++at;
    return at;
}

// Where the root begins; kNowhere when no element comes. The room for elements stays.
std::size_t scan_to_root(std::string_view text, ScannedDocument& document) {
    document.text = text;
    document.elements.clear();
    document.doctypeBegin = document.doctypeEnd = 0;
    std::size_t at = stands_at(text, 0, "\xEF\xBB\xBF") ? 3 : 0;
    while (at < text.size()) {
        if (is_blank(text[at])) {
            ++at;
        } else if (stands_at(text, at, "<!DOCTYPE")) {
            document.doctypeBegin = at;
            at = doctype_end(text, at);
            document.doctypeEnd = at;
        } else if (stands_at(text, at, "<?") || stands_at(text, at, "<!--")) {
            at = comment_or_instruction_end(text, at);
        } else {
            return text[at] == '<' ? at : kNowhere;
        }
    }
    return kNowhere;
}

bool is_predefined(std::string_view name) {
    return name == "lt" || name == "gt" || name == "amp" || name == "quot" || name == "apos" ||
           name.substr(0, 1) == "#";
}

// Collects the elements. The open ones are linked by their parents.
class ElementScan {
public:
    ElementScan(std::string_view text, const EntityElements& entityElements,
                ScannedDocument& document)
        : text_(text), entityElements_(entityElements), document_(document) {}

    bool run(std::size_t at) {
        do {
            at = step(at);
        } while (open_ != kNoElement && at != kNowhere);
        return at != kNowhere;
    }

private:
    // At a markup's "<"; yields the next one, or the end of the root.
    std::size_t step(std::size_t at) {
        const char kind = at + 1 < text_.size() ? text_[at + 1] : '\0';
        if (kind == '/') {
            at = find_near(text_, '>', at);
            if (at == kNowhere) return kNowhere;
            close(++at);
        } else if (kind == '!' && stands_at(text_, at, "<![CDATA[")) {
            at = behind(text_, at + 9, "]]>");
        } else if (kind == '!' || kind == '?') {
            at = comment_or_instruction_end(text_, at);
        } else {
            const std::size_t begin = at;
            at = tag_end(text_, at + 1);
            if (at == kNowhere || !add(begin, at)) return kNowhere;
            open_ = static_cast<std::uint32_t>(document_.elements.size() - 1);
            if (text_[at - 2] == '/') close(at);
        }
        return open_ == kNoElement || at == kNowhere ? at : next_markup(at);
    }

    std::size_t next_markup(std::size_t at) {
        const std::size_t end = find_near(text_, '<', at);
        if (entityElements_ && end != kNowhere) {
            for (at = text_.find('&', at); at < end; at = text_.find('&', at + 1)) {
                if (!add_entity(at, end)) return kNowhere;
            }
        }
        return end;
    }

    bool add_entity(std::size_t at, std::size_t limit) {
        const std::size_t semicolon = text_.find(';', at);
        if (semicolon >= limit) return false;
        const std::string_view name = text_.substr(at + 1, semicolon - at - 1);
        if (is_predefined(name)) return true;
        const std::uint32_t count = entityElements_(name);
        for (std::uint32_t i = 0; i < count; ++i) {
            if (!add(at, semicolon + 1)) return false;
            document_.elements.back().next =
                static_cast<std::uint32_t>(document_.elements.size()) + count - i - 1;
        }
        return true;
    }

    bool add(std::size_t begin, std::size_t end) {
        if (document_.elements.size() >= kNoElement - 1) return false;
        document_.elements.push_back({begin, end, 0, open_});
        return true;
    }

    void close(std::size_t end) {
        if (open_ == kNoElement) return;
        ScannedElement& element = document_.elements[open_];
        element.end = end;
        element.next = static_cast<std::uint32_t>(document_.elements.size());
        open_ = element.parent;
    }

    std::string_view text_;
    const EntityElements& entityElements_;
    ScannedDocument& document_;
    std::uint32_t open_ = kNoElement;
};

}  // namespace

bool is_without_text(std::string_view gap) {
    std::size_t at = behind_blanks(gap, 0);
    while (at < gap.size() && gap[at] == '<') {
        const std::size_t end = comment_or_instruction_end(gap, at);
        if (end == kNowhere) return false;  // a section
        at = behind_blanks(gap, end);
    }
    return at == gap.size();
}

std::size_t doctype_end(std::string_view text, std::size_t at) {
    bool inSubset = false;
    for (at += 2; at < text.size();) {
        const char c = text[at];
        if (c == '"' || c == '\'') {
            at = behind(text, at + 1, text.substr(at, 1));
        } else if (c == '<' && inSubset) {
            const std::size_t end = comment_or_instruction_end(text, at);
            // Values of a declaration are quoted as in a tag.
            at = end != kNowhere ? end : tag_end(text, at);
        } else {
            if (c == '>' && !inSubset) return at + 1;
            if (c == '[') inSubset = true;
            if (c == ']') inSubset = false;
            ++at;
        }
    }
    return kNowhere;
}

bool scan_prolog(std::string_view text, ScannedDocument& document) {
    return scan_to_root(text, document) != kNowhere;
}

bool scan_document(std::string_view text, const EntityElements& entityElements,
                   ScannedDocument& document) {
    const std::size_t root = scan_to_root(text, document);
    if (root == kNowhere) return false;
    return ElementScan(text, entityElements, document).run(root);
}

std::size_t count_comments(const ScannedDocument& document) {
    const std::string_view text = document.text;
    std::size_t count = 0;
    const bool marked = stands_at(text, 0, "\xEF\xBB\xBF");
    std::size_t at = text.find('<');
    if (stands_at(text, marked ? 3 : 0, "<?xml") && text.size() > at + 5 &&
        is_blank(text[at + 5])) {
        at = behind(text, at, "?>");
    }
    while (at != kNowhere && (at = text.find('<', at)) != kNowhere) {
        if (at == document.doctypeBegin && document.doctypeEnd != 0) {
            at = document.doctypeEnd;
        } else if (stands_at(text, at, "<![CDATA[")) {
            at = behind(text, at + 9, "]]>");
        } else if (stands_at(text, at, "<!--") || stands_at(text, at, "<?")) {
            at = comment_or_instruction_end(text, at);
            ++count;
        } else {
            at = tag_end(text, at + 1);
        }
    }
    return count;
}

bool scan_tag(std::string_view text, std::size_t at, ScannedTag& tag) {
    const auto skip = [&](auto&& wanted) {
        while (at < text.size() && wanted(text[at])) ++at;
        return at < text.size();
    };
    const auto inName = [](char c) { return !is_blank(c) && c != '>' && c != '/' && c != '='; };
    const auto beforeValue = [](char c) { return is_blank(c) || c == '='; };
    const auto blank = [](char c) { return is_blank(c); };

    tag.attributes.clear();
    ++at;
    if (!skip(inName)) return false;
    tag.nameEnd = tag.attributesEnd = at;
    for (;;) {
        ScannedAttribute attribute{};
        attribute.spaceBegin = at;
        if (!skip(blank)) return false;
        if (text[at] == '>' || text[at] == '/') break;
        attribute.nameBegin = at;
        if (!skip(inName)) return false;
        attribute.nameEnd = at;
        if (!skip(beforeValue) || (text[at] != '"' && text[at] != '\'')) return false;
        attribute.valueBegin = at + 1;
        attribute.valueEnd = find_near(text, text[at], at + 1);
        if (attribute.valueEnd == kNowhere) return false;
        at = attribute.valueEnd + 1;
        tag.attributes.push_back(attribute);
        tag.attributesEnd = at;
    }
    tag.empty = text[at] == '/';
    tag.end = at + (tag.empty ? 2 : 1);
    return tag.end <= text.size();
}

Piece ContentScan::take(PieceKind kind, std::size_t end) {
    const Piece piece{kind, at_, end};
    at_ = end;
    return piece;
}

Piece ContentScan::next() {
    const std::string_view text = document_.text;
    const bool more = next_ < behind_;
    const std::size_t nextElement = more ? document_.elements[next_].begin : text.size();
    if (at_ >= nextElement && more) {  // the elements of an entity stand at one place
        const Piece piece{PieceKind::kElement, nextElement, document_.elements[next_].end, next_};
        at_ = piece.end;
        next_ = document_.elements[next_].next;
        return piece;
    }
    if (text[at_] != '<') {
        return take(PieceKind::kText, std::min(text.find('<', at_), nextElement));
    }
    switch (text[at_ + 1]) {
        case '/':
            return {PieceKind::kEnd, at_, at_};
        case '?':
            return take(PieceKind::kInstruction, behind(text, at_ + 2, "?>"));
        case '!':
            if (text[at_ + 2] == '-')
                return take(PieceKind::kComment, behind(text, at_ + 4, "-->"));
            return take(PieceKind::kCdata, behind(text, at_ + 9, "]]>"));
        default:
            return {PieceKind::kEnd, at_, at_};
    }
}

}  // namespace ux::xml
