// An input in another encoding, read as UTF-8.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "xml/byte_source.h"
#include "xml/file_encoding.h"

namespace ux::xml {

// What is no character of the encoding becomes a byte that no UTF-8 has, so that whoever reads it
// refuses it at its place.
class DecodedSource {
public:
    // The input must outlive it.
    DecodedSource(const ByteSource& input, FileEncoding encoding)
        : input_(input), encoding_(encoding) {}

    // Its places count the bytes of UTF-8.
    ByteSource source();

private:
    static constexpr std::size_t kBlockBytes = std::size_t{1} << 14;

    long read(char* buffer, std::size_t size);
    // Yields what reading the input yielded.
    long decode_block();
    void seek(std::uint64_t offset);

    const ByteSource& input_;
    FileEncoding encoding_;
    std::array<char, kBlockBytes> block_{};  // starts with what was no whole character yet
    std::size_t kept_ = 0;
    std::string decoded_;
    std::size_t given_ = 0;  // of what is decoded
};

}  // namespace ux::xml
