// What a document type declaration makes of references and attributes: answered by the reader itself,
// which is asked to read a small document with the same declaration.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/document.h"
#include "xml/layout_text.h"

namespace uxhost {

// The document of a text; null when it is none. Nothing limits its depth.
std::unique_ptr<DocumentHolder> read_text(std::string_view text);
// A value of a type that keeps no blanks at its ends, and one between its parts.
std::string without_extra_blanks(std::string_view value);

class LayoutDtd {
public:
    // The text before the declaration, and the declaration, in UTF-8.
    LayoutDtd(std::string_view prolog, std::string_view doctype);

    // The root of the document has what the entity stands for as its content; null when unknown.
    const DocumentHolder* entity(std::string_view name);
    std::optional<std::string> entity_text(std::string_view name);
    std::uint32_t entity_elements(std::string_view name);
    bool takes_blanks(std::string_view tag, std::string_view attribute);
    // A root with this content.
    std::unique_ptr<DocumentHolder> read_content(std::string_view content) const;

private:
    std::string start_;
    std::map<std::string, std::unique_ptr<DocumentHolder>, std::less<>> entities_;
    std::map<std::pair<std::string, std::string>, bool> takesBlanks_;
};

}  // namespace uxhost
