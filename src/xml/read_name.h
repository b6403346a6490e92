// A name as it stands in a document, with what tables of names look at.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/seeded_hash.h"

namespace ux::xml {

// The first 16 bytes of a name as two words, zeros behind a shorter one.
struct NameKey {
    static constexpr std::size_t kBytes = 16;

    std::uint64_t low = 0;
    std::uint64_t high = 0;

    // Without the bytes from that place on, at most 16.
    NameKey first(std::size_t length) const;
    // Of length bytes, at most 16. 16 bytes are read.
    static NameKey of(const char* bytes, std::size_t length) {
        NameKey key;
        std::memcpy(&key, bytes, kBytes);
        return key.first(length);
    }
};

namespace name_keys {
template <typename Byte>
constexpr std::array<NameKey, NameKey::kBytes + 1> make(Byte&& byte) {
    std::array<NameKey, NameKey::kBytes + 1> keys{};
    for (std::size_t length = 0; length <= NameKey::kBytes; ++length) {
        std::array<unsigned char, NameKey::kBytes> bytes{};
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<unsigned char>(byte(length, i));
        }
        keys[length] = std::bit_cast<NameKey>(bytes);
    }
    return keys;
}
// By the length of a name: the bytes of its key, and what opens a value behind it.
inline constexpr auto kMasks =
    make([](std::size_t length, std::size_t i) { return i < length ? 0xFF : 0; });
inline constexpr auto kOpenings = make([](std::size_t length, std::size_t i) {
    return i == length ? '=' : i == length + 1 ? '"' : '\0';
});
}  // namespace name_keys

inline NameKey NameKey::first(std::size_t length) const {
    const NameKey& mask = name_keys::kMasks[length];
    return {low & mask.low, high & mask.high};
}

struct ReadName {
    std::string_view text;
    NameKey key;
    // With secrets of the process, but for the last bits, which are those of the name's last byte:
    // numbered names differ in them alone, and tables put such names close together.
    std::uint32_t hash = 0;
    static constexpr std::uint32_t kLastBits = 0x1F;

    // Of a name that is not empty. 16 bytes are read, whatever its size.
    static ReadName at(const char* bytes, std::size_t size) {
        return of({bytes, size}, NameKey::of(bytes, std::min(size, NameKey::kBytes)));
    }
    // Of one behind which nothing may be read.
    static ReadName of(std::string_view text) {
        NameKey key;
        std::memcpy(&key, text.data(), std::min(text.size(), NameKey::kBytes));
        return of(text, key);
    }

private:
    static ReadName of(std::string_view text, const NameKey& key) {
        const std::size_t size = text.size() - 1;
        const NameKey first = key.first(std::min(size, NameKey::kBytes));
        const std::uint64_t hash = size <= NameKey::kBytes ? seeded_hash(first.low, first.high)
                                                           : seeded_hash(text.substr(0, size));
        const auto last = static_cast<unsigned char>(text[size]);
        return {text, key, (static_cast<std::uint32_t>(hash) & ~kLastBits) | (last & kLastBits)};
    }
};

}  // namespace ux::xml
