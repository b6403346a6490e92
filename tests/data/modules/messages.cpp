// A message module for tests. What it lacks is decided when it is built.
#include "uxtree/host/string.h"

extern "C" {
#ifndef WITHOUT_LOCALIZE
__attribute__((visibility("default"))) int LocalizeString(CStringUTF8* result, const char* text,
                                                          int category) {
    result->Format("[%s|%d]", text, category);
    return 1;
}
#endif
#ifndef WITHOUT_CATEGORY
__attribute__((visibility("default"))) int SetCurrentCategory(int category, CStringUTF8* result) {
    result->Format("category %d", category);
    return 1;
}
#endif
}
