// Marks what the kit exports; everything else stays inside it.
#pragma once

#include "uxtree/frame/annotate.h"

#if defined(__GNUC__)
#define UXKIT_API __attribute__((visibility("default")))
#else
#define UXKIT_API
#endif
