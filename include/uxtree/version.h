// The version, when a program is compiled and when it runs.
#pragma once

#include "uxtree/frame/export.h"

// The version of these headers, "major.minor.patch".
#define UX_VERSION "0.2.0"

#ifdef __cplusplus
extern "C" {
#endif

// The version of the library that the program runs with. The text lives as long as the library is
// loaded.
UXTREE_API const char* UXVersion(void);
// Why the library refuses to work: the host behind it was compiled with another contract. "" when it
// works. While there is a problem every entry point yields its failure value and changes nothing.
UXTREE_API const char* UXVersionProblem(void);

#ifdef __cplusplus
}
#endif
