// The part of an input that a reader has in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/byte_search.h"
#include "base/large_memory.h"
#include "xml/byte_source.h"

namespace ux::xml {

// Bytes that slide along an input. They may be changed in place. Behind their end stands a NUL
// byte and as much readable memory as byte search looks ahead.
class Window {
public:
    static constexpr std::size_t kCapacity = std::size_t{1} << 16;
    static constexpr std::size_t kLeastCapacity = 16;
    // A longer token is no work for this reader.
    static constexpr std::size_t kMostBytes = std::size_t{1} << 30;

    // capacity is how many bytes are held at first; it changes nothing but the cost, so that tests
    // can put the end of the window anywhere.
    explicit Window(const ByteSource& source, std::size_t capacity = kCapacity);

    char* begin() { return memory_.data(); }
    char* end() const { return end_; }
    // Drops what stands before `keep` and reads on. Pointers into the window are invalid then, but
    // keep follows its byte. False, with nothing changed but the place of the bytes, when no more
    // bytes come: at the end of the input, when it cannot be read, or when the token is too long.
    // What is kept is less than half of the window afterwards, or the window doubles: reading a
    // token again from its start after each call costs no more than twice its length.
    bool more(char*& keep);
    bool failed() const { return failed_; }
    // The place in the input of a byte of the window.
    std::uint64_t offset_of(const char* at) const {
        return offset_ + static_cast<std::uint64_t>(at - memory_.data());
    }

private:
    using Memory = std::vector<char, LargeMemory<char>>;

    void make_room(char*& keep);

    const ByteSource& source_;
    std::size_t capacity_;
    Memory memory_;
    char* end_;
    std::uint64_t offset_ = 0;  // of the first byte, in the input
    bool failed_ = false;
};

}  // namespace ux::xml
