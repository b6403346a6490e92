// What a text must be before it may enter a tree, a string or an array.
#pragma once

namespace ux::kit {

// Is it UTF-8? States why not; null is refused.
bool accept_text(const char* text);
// Can XML hold it too? States why not; null is accepted.
bool accept_value(const char* text);

}  // namespace ux::kit
