// Allocations that fail when a test says so; what links this has them in all its libraries.
#include "frame/memory/failing_new.h"

#include <cstddef>
#include <cstdlib>
#include <new>

long untilFailure = -1;
bool failed = false;

namespace {

void* allocate(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) {
    if (untilFailure >= 0 && untilFailure-- == 0) {
        failed = true;
        throw std::bad_alloc();
    }
    const std::size_t whole = (size / alignment + 1) * alignment;
    if (void* memory = std::aligned_alloc(alignment, whole)) return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept try {
    return allocate(size);
} catch (const std::bad_alloc&) {
    return nullptr;
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
