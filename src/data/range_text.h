// The form in which the text of a range is stored and shown.
#pragma once

#include "uxtree/host/string.h"

namespace ux {

// Converts the numeric separators of a range text as the host's utility module does; without the
// module, or its function, the text stays as it is.
void convert_numeric_separator(CStringUTF8& text);

}  // namespace ux
