// The version of the kit, which is the version of the libraries below it.
#pragma once

#include "uxtree/kit/export.h"

#ifdef __cplusplus
extern "C" {
#endif

// Yields the version as "major.minor.patch". The text lives as long as the library is loaded.
UXKIT_API const char* ux_version(void) UX_RETURNS(borrowed);

#ifdef __cplusplus
}
#endif
