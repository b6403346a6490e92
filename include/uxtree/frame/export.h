// Marks what the library exports; everything else stays inside it.
#pragma once

#include "uxtree/frame/annotate.h"

#if defined(__GNUC__)
#define UXTREE_API __attribute__((visibility("default")))
#define UXTREE_SENTINEL __attribute__((sentinel))
#else
#define UXTREE_API
#define UXTREE_SENTINEL
#endif
