// What a host and the libraries above it have to agree on.
#pragma once

#include "uxtree/host/export.h"

// The number of the contract that these headers state. It grows with every change by which a host and
// a library that were compiled apart no longer fit.
#define UXTREE_HOST_CONTRACT 2

// The contract that the host was compiled with: a host defines this as { return UXTREE_HOST_CONTRACT; }.
// The library refuses to work with a host of another one (uxtree/version.h).
UXHOST_API int UXGetHostContract();
