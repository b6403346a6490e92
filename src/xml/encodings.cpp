// Single-byte encodings by name and by code page, as tables for the parser.
#include "xml/encodings.h"

#include <algorithm>
#include <array>

#include "base/ascii.h"

namespace ux::xml {
namespace {

// Characters of the bytes 0x80 to 0x9F in windows-1252; -1 is none.
constexpr std::array<int, 32> kWindows1252{
    0x20AC, -1,     0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, -1,     0x017D, -1,     -1,     0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, -1,     0x017E, 0x0178};

bool is_one_of(const char* name, std::initializer_list<const char*> names) {
    return std::any_of(names.begin(), names.end(),
                       [&](const char* known) { return equal_no_case(name, known); });
}

}  // namespace

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
    const bool windows = is_one_of(name, {"windows-1252", "cp1252", "cp-1252"});
    const bool latin = is_one_of(name, {"latin1", "latin-1", "iso8859-1", "iso_8859-1"});
    const bool ascii = is_one_of(name, {"ascii", "ANSI_X3.4-1968", "iso646-us"});
    if (!windows && !latin && !ascii) return false;
    for (int c = 0; c < 256; ++c) info.map[c] = c < 0x80 || !ascii ? c : -1;
    if (windows) std::copy(kWindows1252.begin(), kWindows1252.end(), info.map + 0x80);
    info.data = nullptr;
    info.convert = nullptr;
    info.release = nullptr;
    return true;
}

}  // namespace ux::xml
