// Long texts of a document that stand in a file instead of in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "uxtree/host/string.h"

#include "base/platform.h"
#include "host/arena.h"

namespace uxhost {

// A temporary file without a name. Texts are added first and read afterwards, any number of times.
class TextFile {
public:
    // The place of the text; 0 when the file cannot take it.
    Ref add(std::string_view text);
    // Throws a std::bad_alloc when the file cannot be read: the storage is gone.
    void read(Ref place, std::size_t size, CStringUTF8& out);

private:
    static constexpr unsigned kUnitBits = 3;  // places are in units of 8 bytes, as in the arena
    static constexpr std::uint64_t kMostBytes = std::uint64_t{UINT32_MAX} << kUnitBits;

    void read_block(std::uint64_t start, std::size_t size);

    ux::OpenFile file_;
    bool isFull_ = false;
    std::uint64_t end_ = std::uint64_t{1} << kUnitBits;  // place 0 is none
    std::string block_;  // of the file: texts are read in their order as a rule
    std::uint64_t blockStart_ = 0;
};

}  // namespace uxhost
