// A thread on which recursion along a deep tree would not survive.
#pragma once

#include <cstddef>
#include <functional>

namespace uxtest {

// Runs body to its end on a thread with a stack of so many bytes.
void on_small_stack(const std::function<void()>& body, std::size_t size = 256 * 1024);

}  // namespace uxtest
