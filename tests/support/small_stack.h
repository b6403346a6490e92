// A thread on which recursion along a deep tree would not survive.
#pragma once

#include <functional>

namespace uxtest {

// Runs body to its end on a thread with a stack of 256 KiB.
void on_small_stack(const std::function<void()>& body);

}  // namespace uxtest
