// A watch on one leaf while values are being set.
#pragma once

#include "uxtree/host/host.h"

// The caller fills callback and id, and keeps the record alive during the call it is given to.
struct _SETVALUESBYIDS {
    // Called just before the watched leaf is written. May change *value: the changed text is
    // written.
    void (*callback)(_SETVALUESBYIDS* record);
    int id;              // identifier of the leaf, after combination (see ids.h)
    int inProgress;      // 1 while the leaf is being written; a copy resets it at its start
    CStringUTF8* value;  // the text about to be written; null outside the callback
};
