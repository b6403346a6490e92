// The pieces of a well-formed XML document in UTF-8: where its elements, tags and texts stand. What
// was read from a file and accepted by the reader is scanned again when it is saved with its layout;
// so nothing is checked here that the reader checks, but a document that does not hang together is
// told from one that does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "xml/scan.h"

namespace ux::xml {

inline bool is_blank(std::string_view text) {
    for (const char c : text) {
        if (!is_blank(c)) return false;
    }
    return true;
}

// Nothing but white space, comments and instructions?
bool is_without_text(std::string_view gap);

// An element in the text. Elements are numbered by their start tags, from 0.
struct ScannedElement {
    std::size_t begin;     // of the start tag
    std::size_t end;       // behind the end tag
    std::uint32_t next;    // number of the first element behind the branch, or the entity
    std::uint32_t parent;  // kNoElement for the root
};
inline constexpr std::uint32_t kNoElement = UINT32_MAX;

// How many elements the replacement of an entity holds, by the entity's name.
using EntityElements = std::function<std::uint32_t(std::string_view name)>;

// Where everything stands in a document.
struct ScannedDocument {
    std::string_view text;
    std::vector<ScannedElement>
        elements;  // those of an entity begin and end where its reference does
    std::size_t doctypeBegin = 0;
    std::size_t doctypeEnd = 0;  // the same without a document type declaration

    std::string_view doctype() const {
        return text.substr(doctypeBegin, doctypeEnd - doctypeBegin);
    }
    bool comes_from_entity(std::uint32_t element) const {
        return text[elements[element].begin] == '&';
    }
};

// Finds the document type declaration, without looking at what follows it. False when the text is no
// XML document.
bool scan_prolog(std::string_view text, ScannedDocument& document);
// Finds the elements as well, in the room that their list has. entityElements may be empty when the
// document declares no entities.
bool scan_document(std::string_view text, const EntityElements& entityElements,
                   ScannedDocument& document);

// How many comments and processing instructions a document has, before, in and behind its root; the
// declarations do not count.
std::size_t count_comments(const ScannedDocument& document);

// An attribute in a start tag, as positions in the text.
struct ScannedAttribute {
    std::size_t spaceBegin;  // of the white space before it
    std::size_t nameBegin;
    std::size_t nameEnd;
    std::size_t valueBegin;  // behind the quote
    std::size_t valueEnd;    // of the closing quote
};

struct ScannedTag {
    std::size_t nameEnd = 0;
    std::vector<ScannedAttribute> attributes;
    std::size_t attributesEnd = 0;  // behind the last attribute, or the name
    std::size_t end = 0;            // behind ">"
    bool empty = false;             // "<a/>"
};

// Behind the document type declaration that begins at a position; npos when its end is not there.
std::size_t doctype_end(std::string_view text, std::size_t at);

// Reads the start tag at a position; false when none stands there.
bool scan_tag(std::string_view text, std::size_t at, ScannedTag& tag);

enum class PieceKind : std::uint8_t { kText, kCdata, kComment, kInstruction, kElement, kEnd };

struct Piece {
    PieceKind kind;
    std::size_t begin;
    std::size_t end;
    std::uint32_t element = kNoElement;  // of an element

    std::string_view of(std::string_view text) const { return text.substr(begin, end - begin); }
    // What stands between the marks of a CDATA section.
    std::size_t cdata_begin() const { return begin + 9; }
    std::size_t cdata_end() const { return end - 3; }
};

// Steps over the content of an element, which the elements below it count as one piece each. A text
// piece holds no markup but references, and of those none to an entity with elements: such a
// reference is a piece of kind kElement, with the number of its first element.
class ContentScan {
public:
    // From behind the start tag or a child on; next is the number of the child behind that place.
    ContentScan(const ScannedDocument& document, std::uint32_t element, std::size_t at,
                std::uint32_t next)
        : document_(document), at_(at), next_(next), behind_(document.elements[element].next) {}
    // kEnd at the end tag, where the piece begins and ends.
    Piece next();

private:
    Piece take(PieceKind kind, std::size_t end);

    const ScannedDocument& document_;
    std::size_t at_;
    std::uint32_t next_;
    std::uint32_t behind_;
};

}  // namespace ux::xml
