// A utility module for tests: the numeric separator becomes a colon.
#include "uxtree/host/string.h"

extern "C" {
#ifdef WITHOUT_CONVERSION
__attribute__((visibility("default"))) int unrelated() {
    return 0;
}
#else
__attribute__((visibility("default"))) int wbutil_range_string_convert_numeric_separator(
    CStringUTF8* text) {
    text->Replace(";", ":");
    return 1;
}
#endif
}
