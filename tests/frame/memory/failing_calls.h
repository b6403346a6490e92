// Calls of the sweep with one after another of their allocations failing.
#pragma once

#include "frame/calls/calls.h"

namespace uxtest {

// A tree that can be walked, written, read and edited.
void expect_sound(UXXmlWrapperBase root);

// Makes the call until none of its allocations fails any more. A call that lacked memory either fails
// or has done everything; it leaves sound trees, and what the whole call keeps is nowhere lost. The
// last one, which lacks nothing, gives what it gave before the first. thrown: the result by which a
// door tells of an exception.
void fail_each_allocation(const Call& call, const char* thrown = "");

}  // namespace uxtest
