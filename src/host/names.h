// The characters of XML names.
#pragma once

namespace uxhost {

// Letters, the underscore and the colon: what a name may begin with.
bool is_name_start(char32_t code);
// The same with digits, the hyphen, the full stop, combining characters and extenders.
bool is_name_char(char32_t code);

}  // namespace uxhost
