// Where the bytes of an input come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace ux::xml {

// Begins at the start of its input.
struct ByteSource {
    // Yields how many bytes were put into the buffer, at most size; 0 at the end and a negative
    // number for a failure.
    std::function<long(char* buffer, std::size_t size)> read;
    // Goes to a place in the input, in bytes from its start; the next read begins there.
    std::function<void(std::uint64_t offset)> seek;
};

}  // namespace ux::xml
