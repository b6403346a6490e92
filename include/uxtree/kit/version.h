// The version of the kit, and whether the libraries and a program fit together.
#pragma once

#include "uxtree/kit/export.h"
#include "uxtree/version.h"

#ifdef __cplusplus
extern "C" {
#endif

// Yields the version as "major.minor.patch". The text lives as long as the library is loaded.
UXKIT_API const char* ux_version(void) UX_RETURNS(borrowed);
// Can a program that was compiled for a version (UX_VERSION) work with this one? They fit when they
// begin with the same number, and while that is 0, with the same two.
UXKIT_API int ux_version_fits(UX_IN const char* version) UX_RETURNS(yes, no = 0);
// Why the libraries do not fit each other, "" when they do. While they do not, every function of
// uxtree/kit/c.h fails, and ux_last_error says this.
UXKIT_API const char* ux_version_problem(void) UX_RETURNS(borrowed);

#ifdef __cplusplus
}
#endif
