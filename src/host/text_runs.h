// Long runs of text without markup in the bytes of an XML input.
#pragma once

#include <cstddef>
#include <string_view>

namespace uxhost {

// Where a run of at least half a kilobyte without "<" starts: behind the first ">" of the tag
// before it, or at the start of the input. The size of the input when there is none. A run of less
// than a kilobyte may be missed.
std::size_t long_run_start(std::string_view input);

// Is the text nothing but ASCII that an XML parser reports as it stands? References, the end mark
// of CDATA sections, control characters and carriage returns are not.
bool is_plain_text(std::string_view text);

// Is it nothing but NUL bytes and white space?
bool is_padding(std::string_view text);

}  // namespace uxhost
