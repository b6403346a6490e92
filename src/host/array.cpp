// Memory of the host's arrays.
#include "uxtree/host/array.h"

#include <cstring>
#include <new>

#include "base/platform.h"
#include "host/arena.h"

namespace {

using uxhost::kFullChunkBytes;

// Large blocks have huge pages: else the first touch of their memory costs more than filling them.
void* large_block(std::size_t bytes) {
    const std::size_t whole = (bytes + kFullChunkBytes - 1) / kFullChunkBytes * kFullChunkBytes;
    void* const memory = std::aligned_alloc(kFullChunkBytes, whole);
    if (memory != nullptr) ux::use_large_pages(memory, whole);
    return memory;
}

}  // namespace

void* UXResizeMemory(void* block, std::size_t used, std::size_t bytes) {
    // Tests of what happens without memory make this operator fail.
    if constexpr (uxhost::kTight) ::operator delete(::operator new(1));
    const bool large = bytes > kFullChunkBytes;
    void* const memory = large ? large_block(bytes) : std::realloc(block, bytes);
    if (memory == nullptr) throw std::bad_alloc();
    if (large && block != nullptr) {
        std::memcpy(memory, block, used);
        std::free(block);
    }
    return memory;
}
