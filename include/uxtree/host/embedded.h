// What the embedded host alone offers, beyond the contract of every host. libuxtree_Utils never
// includes it; a program that does depends on libuxtree_host as it comes with the library.
#pragma once

#include "uxtree/host/export.h"
#include "uxtree/host/string.h"

// Why and where an XML file could not be read.
struct UXFileError {
    CStringUTF8 message;  // "" when the last call of this thread succeeded
    long long line = 0;   // from 1; 0 when there is no position
    long long column = 0;
};

// The failure of this thread's last load in parts, for tools that print positions.
UXHOST_API const UXFileError& UXGetLastLoadFailure();
