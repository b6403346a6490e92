// Bytes in memory as an input.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "xml/byte_source.h"

namespace uxhost {

// The position, where the next read begins, must outlive the source.
inline ux::xml::ByteSource memory_source(std::string_view bytes, std::size_t& position) {
    return {[bytes, &position](char* buffer, std::size_t size) {
                const std::size_t count = std::min(size, bytes.size() - position);
                std::copy_n(bytes.data() + position, count, buffer);
                position += count;
                return static_cast<long>(count);
            },
            [bytes, &position](std::uint64_t offset) {
                position = std::min(static_cast<std::size_t>(offset), bytes.size());
            }};
}

}  // namespace uxhost
