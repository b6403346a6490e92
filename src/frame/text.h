// Views of the host's texts, and names made of a word and a number.
#pragma once

#include <cstddef>
#include <string_view>

#include "uxtree/host/string.h"

namespace ux {

inline std::string_view view_of(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}

// "Range3": tags of numbered nodes.
inline CStringUTF8 numbered(const char* prefix, int number) {
    CStringUTF8 text;
    text.Format("%s%d", prefix, number);
    return text;
}

}  // namespace ux
