// Laying out a source anew, in its encoding.
#include "host/format_source.h"

#include "host/layout_source.h"

namespace uxhost {

using namespace ux::xml;

void format_source(const LayoutSource& source, const FormatStyle& style, std::string& out) {
    SourceText text;
    read_source(source, text);
    if (!text.tail.empty()) throw Unkept("the file ends in the middle of a character");
    if (text.encoding == FileEncoding::kUtf8) {
        if (!format_document(text.text, style, out)) throw Unkept("the file cannot be read again");
        return;
    }
    std::string formatted;
    if (!format_document(text.text, style, formatted)) {
        throw Unkept("the file cannot be read again");
    }
    append_encoded(out, formatted, text.encoding);
}

}  // namespace uxhost
