// Views of texts, and names made of a word and a number.
#pragma once

#include "uxtree/host/string.h"

#include "base/text_view.h"

namespace ux {

// "Range3": tags of numbered nodes.
inline CStringUTF8 numbered(const char* prefix, int number) {
    CStringUTF8 text;
    text.Format("%s%d", prefix, number);
    return text;
}

}  // namespace ux
