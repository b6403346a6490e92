// Combining labels, and texts in the user's language.
#pragma once

#include "uxtree/host/array.h"
#include "uxtree/host/string.h"

namespace ux {

// What a label begins with that is an expression, worked out before it is shown.
inline constexpr char kExpressionMarker[] = "?$OP:";
inline constexpr int kExpressionMarkerLength = sizeof kExpressionMarker - 1;

enum : int {
    kLabelsCombined = 0,
    kNoLabels = -1,
    kLabelWithoutPrefix = -2,  // strict only; out holds what was built before that label
};
int _tree_combine_data_label(CStringUTF8* out, const CWBOStringArray* labels, bool addPrefix,
                             bool parenthesizeAlways, bool strict);

// The text in the user's language, or the text itself when localization is blocked or the host's
// message module is missing. A null text with a category switches the module's category instead.
// The result is shared by all callers: copy it before the next call.
const char* _tree_localize(const char* text, int category = 0);

}  // namespace ux
