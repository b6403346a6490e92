// Which characters may stand in the names of an XML document.
#pragma once

#include <cstdint>
#include <string_view>

namespace ux {

// May a name start with the character: "_", ":" or a letter, which is any base character or
// ideograph of XML 1.0, fourth edition.
bool starts_name(std::uint32_t character);

// May the character stand in a name behind its first character: what may start one, digits, ".",
// "-", combining characters and extenders.
bool continues_name(std::uint32_t character);

// Is the whole text, in UTF-8, a name?
bool is_name(std::string_view text);

}  // namespace ux
