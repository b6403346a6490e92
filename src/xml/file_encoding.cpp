// Encodings of files, both ways.
#include "xml/file_encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "base/ascii.h"
#include "base/utf8.h"
#include "xml/scan.h"

namespace ux::xml {
namespace {

// Characters of the bytes 0x80 to 0x9F in windows-1252; 0 is none.
constexpr std::array<char16_t, 32> kWindows1252{
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// The byte of a character, -1 for none.
int byte_of(char32_t code, FileEncoding encoding) {
    if (code < 0x80) return static_cast<int>(code);
    if (encoding == FileEncoding::kAscii) return -1;
    if (code <= 0xFF && (encoding == FileEncoding::kLatin1 || code >= 0xA0)) {
        return static_cast<int>(code);
    }
    if (encoding == FileEncoding::kLatin1) return -1;
    const auto found = std::find(kWindows1252.begin(), kWindows1252.end(), code);
    return found == kWindows1252.end() ? -1 : static_cast<int>(found - kWindows1252.begin()) + 0x80;
}

bool is_wide(FileEncoding encoding) {
    return encoding == FileEncoding::kUtf16Little || encoding == FileEncoding::kUtf16Big;
}

// A character in UTF-8, with a byte behind it that is none of it.
struct Utf8Form {
    std::array<char, 4> bytes;
    std::uint32_t size;
};
using Utf8Forms = std::array<Utf8Form, 256>;

Utf8Forms made_forms(FileEncoding encoding) {
    Utf8Forms forms{};
    for (unsigned byte = 0; byte < forms.size(); ++byte) {
        Utf8Form& form = forms[byte];
        const auto code = character_of(static_cast<unsigned char>(byte), encoding);
        form.bytes[0] = kNoCharacter;
        char* const end = code.has_value() ? encode_utf8(*code, form.bytes.data()) : nullptr;
        form.size = end == nullptr ? 1 : static_cast<std::uint32_t>(end - form.bytes.data());
    }
    return forms;
}
// Of an encoding that has a byte for each character.
const Utf8Forms& forms_of(FileEncoding encoding) {
    static const Utf8Forms latin1 = made_forms(FileEncoding::kLatin1);
    static const Utf8Forms windows1252 = made_forms(FileEncoding::kWindows1252);
    static const Utf8Forms ascii = made_forms(FileEncoding::kAscii);
    if (encoding == FileEncoding::kLatin1) return latin1;
    return encoding == FileEncoding::kWindows1252 ? windows1252 : ascii;
}

// The decoders move `at` behind what they take. Three bytes of UTF-8 are room for each byte, and one
// more at the end.

char* decode_bytes(const char*& at, const char* end, const Utf8Forms& forms, char* out) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    constexpr std::ptrdiff_t kBlock = 8;
    while (at != end) {
        std::uint64_t word = kHighBits;
        if (end - at >= kBlock) std::memcpy(&word, at, kBlock);
        if ((word & kHighBits) == 0) {
            std::memcpy(out, at, kBlock);
            at += kBlock;
            out += kBlock;
            continue;
        }
        for (const char* const behind = at + std::min(kBlock, end - at); at != behind; ++at) {
            const Utf8Form& form = forms[static_cast<unsigned char>(*at)];
            std::memcpy(out, form.bytes.data(), form.bytes.size());
            out += form.size;
        }
    }
    return out;
}

char* decode_utf16(const char*& at, const char* end, bool little, char* out) {
    const auto unit = [&](std::ptrdiff_t i) {
        const auto a = static_cast<unsigned char>(at[i]);
        const auto b = static_cast<unsigned char>(at[i + 1]);
        return static_cast<char32_t>(little ? a | b << 8 : a << 8 | b);
    };
    for (; end - at >= 2; at += 2) {
        const char32_t code = unit(0);
        if (code < 0xD800 || code > 0xDFFF) {
            out = encode_utf8(code, out);
            continue;
        }
        if (code < 0xDC00 && end - at < 4) return out;
        const char32_t low = code < 0xDC00 ? unit(2) : 0;
        if (low < 0xDC00 || low > 0xDFFF) {
            *out++ = kNoCharacter;
            continue;
        }
        out = encode_utf8(0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00), out);
        at += 2;
    }
    return out;
}

void append_utf16(std::string& out, char32_t code, bool little) {
    const auto put = [&](char32_t unit) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        out += little ? low : high;
        out += little ? high : low;
    };
    if (code < 0x10000) {
        put(code);
        return;
    }
    put(0xD800 + ((code - 0x10000) >> 10));
    put(0xDC00 + ((code - 0x10000) & 0x3FF));
}

}  // namespace

std::string_view declared_encoding(std::string_view bytes) {
    const bool declares = bytes.substr(0, 5) == "<?xml" && bytes.size() > 5 && is_blank(bytes[5]);
    if (!declares) return {};  // an instruction may have a name like it
    const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
    std::size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) return {};
    at = declaration.find_first_of("\"'", at);
    if (at == std::string_view::npos) return {};
    const std::size_t end = declaration.find(declaration[at], at + 1);
    return end == std::string_view::npos ? std::string_view()
                                         : declaration.substr(at + 1, end - at - 1);
}

std::optional<char32_t> character_of(unsigned char byte, FileEncoding encoding) {
    if (byte < 0x80) return byte;
    if (encoding == FileEncoding::kAscii) return std::nullopt;
    if (encoding == FileEncoding::kLatin1 || byte >= 0xA0) return byte;
    const char32_t code = kWindows1252[byte - 0x80U];
    return code == 0 ? std::nullopt : std::optional(code);
}

std::optional<FileEncoding> encoding_by_name(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, FileEncoding>, 17> kNames{{
        {"UTF-8", FileEncoding::kUtf8},
        {"utf8", FileEncoding::kUtf8},
        {"UTF-16LE", FileEncoding::kUtf16Little},
        {"UTF-16BE", FileEncoding::kUtf16Big},
        {"ISO-8859-1", FileEncoding::kLatin1},
        {"latin1", FileEncoding::kLatin1},
        {"latin-1", FileEncoding::kLatin1},
        {"iso8859-1", FileEncoding::kLatin1},
        {"iso_8859-1", FileEncoding::kLatin1},
        {"windows-1252", FileEncoding::kWindows1252},
        {"cp1252", FileEncoding::kWindows1252},
        {"cp-1252", FileEncoding::kWindows1252},
        {"US-ASCII", FileEncoding::kAscii},
        {"ascii", FileEncoding::kAscii},
        {"ANSI_X3.4-1968", FileEncoding::kAscii},
        {"iso646-us", FileEncoding::kAscii},
        {"UTF-16", FileEncoding::kUtf16Big},
    }};
    const auto found = std::find_if(kNames.begin(), kNames.end(), [&](const auto& row) {
        return equal_no_case(row.first, name);
    });
    if (found == kNames.end()) return std::nullopt;
    return found->second;
}

bool is_declared_as(FileEncoding encoding, std::string_view name) {
    return is_wide(encoding) ? equal_no_case(name, "UTF-16") : encoding_by_name(name) == encoding;
}

std::optional<FileEncoding> encoding_of(std::string_view bytes, FileEncoding undeclared) {
    const std::string_view start = bytes.substr(0, 2);
    if (start == "\xFE\xFF" || start == std::string_view("\0<", 2)) return FileEncoding::kUtf16Big;
    if (start == "\xFF\xFE" || start == std::string_view("<\0", 2)) {
        return FileEncoding::kUtf16Little;
    }
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") return FileEncoding::kUtf8;
    const std::string_view name = declared_encoding(bytes);
    return name.empty() ? undeclared : encoding_by_name(name);
}

bool has_encoding_mark(std::string_view bytes) {
    return encoding_of(bytes, FileEncoding::kUtf8) == encoding_of(bytes, FileEncoding::kAscii);
}

bool is_utf8(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        if (static_cast<unsigned char>(bytes[at]) < 0x80) {
            ++at;
            continue;
        }
        const Utf8Char character = decode_utf8(bytes, at);
        if (character.length == 0) return false;
        at += character.length;
    }
    return true;
}

std::size_t append_decoded(std::string& out, std::string_view bytes, FileEncoding encoding) {
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    const std::size_t size = out.size();
    out.resize(size + 3 * bytes.size() + 1);
    char* const begin = out.data() + size;
    const char* const behind =
        is_wide(encoding) ? decode_utf16(at, end, encoding == FileEncoding::kUtf16Little, begin)
                          : decode_bytes(at, end, forms_of(encoding), begin);
    out.resize(static_cast<std::size_t>(behind - out.data()));
    return bytes.size() - static_cast<std::size_t>(end - at);
}

std::optional<std::string> to_utf8(std::string_view bytes, FileEncoding encoding) {
    if (encoding == FileEncoding::kUtf8) return std::string(bytes);
    constexpr std::size_t kBlockBytes = std::size_t{1} << 14;
    std::string out;
    out.reserve((is_wide(encoding) ? bytes.size() / 2 : bytes.size()) + 3 * kBlockBytes);
    while (!bytes.empty()) {
        const std::size_t before = out.size();
        const std::size_t taken = append_decoded(out, bytes.substr(0, kBlockBytes), encoding);
        if (taken == 0 || out.find(kNoCharacter, before) != std::string::npos) return std::nullopt;
        bytes.remove_prefix(taken);
    }
    return out;
}

bool holds_character(FileEncoding encoding, char32_t code) {
    switch (encoding) {
        case FileEncoding::kUtf8:
        case FileEncoding::kUtf16Little:
        case FileEncoding::kUtf16Big:
            return true;
        default:
            return byte_of(code, encoding) >= 0;
    }
}

void append_encoded(std::string& out, std::string_view utf8, FileEncoding encoding) {
    if (encoding == FileEncoding::kUtf8) {
        out += utf8;
        return;
    }
    for (std::size_t at = 0; at < utf8.size();) {
        const Utf8Char character = decode_utf8(utf8, at);
        at += std::max<std::size_t>(character.length, 1);
        if (is_wide(encoding)) {
            append_utf16(out, character.code, encoding == FileEncoding::kUtf16Little);
        } else {
            out += static_cast<char>(byte_of(character.code, encoding));
        }
    }
}

}  // namespace ux::xml
