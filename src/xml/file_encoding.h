// The encodings of XML files, for reading them and for writing a file back in its own.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ux::xml {

enum class FileEncoding { kUtf8, kUtf16Little, kUtf16Big, kLatin1, kWindows1252, kAscii };

// What a byte order mark, the first bytes or the declaration of a well-formed XML file say;
// undeclared when they say nothing. Nothing for an encoding of another name.
std::optional<FileEncoding> encoding_of(std::string_view bytes, FileEncoding undeclared);

// Does a byte order mark, do the first bytes or the declaration say an encoding?
bool has_encoding_mark(std::string_view bytes);

// Is it well-formed UTF-8?
bool is_utf8(std::string_view bytes);

// The name that an XML declaration at the start gives, "" when there is none.
std::string_view declared_encoding(std::string_view bytes);

// Does a declaration of this name leave a file in the encoding?
bool is_declared_as(FileEncoding encoding, std::string_view name);

// The encoding of that name, in any case.
std::optional<FileEncoding> encoding_by_name(std::string_view name);

// The character of a byte; nothing for one without. The encoding must be of single bytes.
std::optional<char32_t> character_of(unsigned char byte, FileEncoding encoding);

// What stands for bytes that are no character of an encoding; nowhere in UTF-8.
inline constexpr char kNoCharacter = '\xFF';
// Appends bytes of an encoding other than UTF-8 as UTF-8, and yields how many were taken: a character
// may not be complete at their end.
std::size_t append_decoded(std::string& out, std::string_view bytes, FileEncoding encoding);

// The bytes as UTF-8, a byte order mark included; nothing when they are none of the encoding.
std::optional<std::string> to_utf8(std::string_view bytes, FileEncoding encoding);

// Can the encoding write the character?
bool holds_character(FileEncoding encoding, char32_t code);

// Appends well-formed UTF-8 in the encoding, which must hold all of its characters.
void append_encoded(std::string& out, std::string_view utf8, FileEncoding encoding);

}  // namespace ux::xml
