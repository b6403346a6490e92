// What a document that was loaded for editing was read from, read again: its text, where everything
// stands in it, and what its document type declaration makes of references.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/layout.h"
#include "host/layout_dtd.h"
#include "xml/layout_scan.h"
#include "xml/layout_text.h"

namespace uxhost {

// The bytes of a file in UTF-8.
struct SourceText {
    std::string converted;  // of a file in another encoding
    std::string_view text;
    std::string_view tail;  // bytes of the file behind it, as they stand
    ux::xml::FileEncoding encoding = ux::xml::FileEncoding::kUtf8;

    SourceText() = default;
    SourceText(const SourceText&) = delete;
    SourceText& operator=(const SourceText&) = delete;
};
// The source must outlive the text. Throws ux::xml::Unkept.
void read_source(const LayoutSource& source, SourceText& out);

struct SourceScan {
    ux::xml::ScannedDocument document;
    std::unique_ptr<LayoutDtd> dtd;  // null when it declares nothing of interest
    ux::xml::EntityElements entityElements;
    ux::xml::EntityText entityText;

    std::string_view range(std::size_t begin, std::size_t end) const {
        return document.text.substr(begin, end - begin);
    }
    // The element's number in the source; kNone for one that was never there.
    std::uint32_t source_of(const DocumentLayout& layout, const Element& element) const;
    // Where the end tag of an element begins that has one.
    std::size_t end_tag_of(const ux::xml::ScannedElement& element) const {
        return document.text.rfind('<', element.end - 1);
    }
};
// The text is that of the layout's source and must outlive the scan. Throws ux::xml::Unkept.
void scan_source(const DocumentLayout& layout, std::string_view text, SourceScan& out);

}  // namespace uxhost
