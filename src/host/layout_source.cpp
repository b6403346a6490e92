// Reading the source of a document again.
#include "host/layout_source.h"

#include <optional>
#include <utility>

#include "host/document.h"
#include "xml/layout_items.h"

namespace uxhost {

using namespace ux::xml;

namespace {

constexpr const char* kUnreadable = "the file's layout cannot be read again";

FileEncoding encoding_of_source(const LayoutSource& source) {
    const std::optional<FileEncoding> encoding = encoding_of(source.bytes, FileEncoding::kUtf8);
    if (!encoding) throw Unkept("the file's encoding has another name than is known here");
    const bool declared = has_encoding_mark(source.bytes);
    if (declared || source.codePage == FileEncoding::kUtf8) return *encoding;
    return is_utf8(source.bytes) ? FileEncoding::kUtf8 : source.codePage;
}

void read_doctype(SourceScan& scan) {
    const std::string_view doctype = scan.document.doctype();
    if (doctype.find("<!ENTITY") == std::string_view::npos &&
        doctype.find("<!ATTLIST") == std::string_view::npos) {
        return;
    }
    scan.dtd = std::make_unique<LayoutDtd>(scan.document.text.substr(0, scan.document.doctypeBegin),
                                           doctype);
    LayoutDtd* const dtd = scan.dtd.get();
    scan.entityText = [dtd](std::string_view name) { return dtd->entity_text(name); };
    scan.entityElements = [dtd](std::string_view name) { return dtd->entity_elements(name); };
}

}  // namespace

void read_source(const LayoutSource& source, SourceText& out) {
    const std::string_view bytes = source.bytes;
    out.encoding = encoding_of_source(source);
    out.text = bytes;
    if (out.encoding == FileEncoding::kUtf8) return;
    const bool wide =
        out.encoding == FileEncoding::kUtf16Little || out.encoding == FileEncoding::kUtf16Big;
    const std::size_t whole = wide ? bytes.size() / 2 * 2 : bytes.size();
    std::optional<std::string> converted = to_utf8(bytes.substr(0, whole), out.encoding);
    if (!converted) throw Unkept("the file's bytes are not of its encoding");
    out.converted = std::move(*converted);
    out.text = out.converted;
    out.tail = bytes.substr(whole);
}

std::uint32_t SourceScan::source_of(const DocumentLayout& layout, const Element& element) const {
    const std::uint32_t origin = layout.origins.get(element.self) & OriginTable<Element>::kMost;
    return origin == 0 || origin > document.elements.size() ? kNone : origin - 1;
}

void scan_source(const DocumentLayout& layout, std::string_view text, SourceScan& out) {
    if (scan_prolog(text, out.document)) read_doctype(out);
    out.document.elements.reserve(layout.origins.count());
    if (!scan_document(text, out.entityElements, out.document)) throw Unkept(kUnreadable);
}

}  // namespace uxhost
