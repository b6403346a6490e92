// Reading an input block by block, and decoding each.
#include "xml/decoded_source.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace ux::xml {

ByteSource DecodedSource::source() {
    return {[this](char* buffer, std::size_t size) { return read(buffer, size); },
            [this](std::uint64_t offset) { seek(offset); }};
}

long DecodedSource::read(char* buffer, std::size_t size) {
    while (given_ == decoded_.size()) {
        const long got = decode_block();
        if (got < 0 || (got == 0 && decoded_.empty())) return got;
    }
    const std::size_t count = std::min(size, decoded_.size() - given_);
    std::memcpy(buffer, decoded_.data() + given_, count);
    given_ += count;
    return static_cast<long>(count);
}

long DecodedSource::decode_block() {
    decoded_.clear();
    given_ = 0;
    const long got = input_.read(block_.data() + kept_, block_.size() - kept_);
    if (got < 0) return got;
    const std::string_view bytes(block_.data(), kept_ + static_cast<std::size_t>(got));
    std::size_t taken = append_decoded(decoded_, bytes, encoding_);
    if (got == 0 && taken < bytes.size()) {  // the input ends within a character
        decoded_ += kNoCharacter;
        taken = bytes.size();
    }
    kept_ = bytes.size() - taken;
    std::copy(bytes.end() - static_cast<std::ptrdiff_t>(kept_), bytes.end(), block_.begin());
    return got;
}

void DecodedSource::seek(std::uint64_t offset) {
    input_.seek(0);
    decoded_.clear();
    given_ = kept_ = 0;
    std::array<char, 4096> skipped{};
    while (offset > 0) {
        const long got = read(skipped.data(), std::min<std::uint64_t>(offset, skipped.size()));
        if (got <= 0) return;
        offset -= static_cast<std::uint64_t>(got);
    }
}

}  // namespace ux::xml
