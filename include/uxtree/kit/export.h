// Marks what the kit exports; everything else stays inside it.
#pragma once

#if defined(__GNUC__)
#define UXKIT_API __attribute__((visibility("default")))
#else
#define UXKIT_API
#endif
