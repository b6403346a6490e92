// Marks what the host library exports, and the fixed-width names that callers use.
#pragma once

#include <cstdint>

using DWORD = std::uint32_t;   // flag words
using __int64 = std::int64_t;  // the published name of 64-bit indices

#if defined(__GNUC__)
#define UXHOST_API __attribute__((visibility("default")))
#define UXHOST_PRINTF(fmt, args) __attribute__((format(printf, fmt, args)))
#else
#define UXHOST_API
#define UXHOST_PRINTF(fmt, args)
#endif
