// Views of texts in either form in which callers hand them over.
#pragma once

#include <cstddef>
#include <string_view>

namespace ux {

// "" for null.
inline std::string_view view_of(const char* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

// Of a text that counts its bytes, as the host's strings do. NUL bytes belong to it.
template <typename Text>
auto view_of(const Text& text)
    -> decltype(std::string_view(static_cast<const char*>(text),
                                 static_cast<std::size_t>(text.GetLength()))) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}

}  // namespace ux
