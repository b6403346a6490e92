// Single-byte encodings by name and by code page, as tables for the parser.
#include "xml/encodings.h"

#include "xml/file_encoding.h"

namespace ux::xml {

const char* code_page_encoding(int codePage) {
    switch (codePage) {
        case 1252:
            return "windows-1252";
        case 28591:
            return "ISO-8859-1";
        default:
            return nullptr;
    }
}

bool fill_encoding(const char* name, XML_Encoding& info) {
    const auto encoding = encoding_by_name(name);
    const bool isOfBytes = encoding == FileEncoding::kLatin1 ||
                           encoding == FileEncoding::kWindows1252 ||
                           encoding == FileEncoding::kAscii;
    if (!isOfBytes) return false;
    for (int c = 0; c < 256; ++c) {
        const auto code = character_of(static_cast<unsigned char>(c), *encoding);
        info.map[c] = code.has_value() ? static_cast<int>(*code) : -1;
    }
    info.data = nullptr;
    info.convert = nullptr;
    info.release = nullptr;
    return true;
}

}  // namespace ux::xml
