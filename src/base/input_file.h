// Files as inputs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/platform.h"

namespace ux {

// A regular file opened for reading, or nothing: a missing or unreadable file, a directory, a pipe
// and a device all count as not opened, since reading one could wait forever. Opening never waits.
class RegularFile {
public:
    RegularFile() = default;
    explicit RegularFile(const char* name);  // UTF-8; may be null

    // Reads up to size bytes and yields their number; 0 at the end of the file and when nothing is
    // open, -1 on failure.
    long read(char* out, std::size_t size) const;
    // Back to the start.
    void rewind() const { seek(0); }
    // The next read begins so many bytes behind the start.
    void seek(std::uint64_t offset) const;

    bool is_open() const { return file_.is_open(); }
    // Why a file that was named is not open, in the system's words.
    const std::string& reason() const { return reason_; }
    const OpenFile& file() const { return file_; }
    std::size_t size() const { return size_; }  // when it was opened

private:
    OpenFile file_;
    std::size_t size_ = 0;
    std::string reason_;
};

// The bytes of a whole file in memory, with kReadAhead further readable bytes behind them. Empty
// when the file cannot be opened or mapped. The file must not be shortened meanwhile.
class MappedFile {
public:
    explicit MappedFile(const char* name);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    const char* begin() const { return bytes_; }
    const char* end() const { return bytes_ + size_; }

private:
    const char* bytes_;
    std::size_t size_ = 0;
};

}  // namespace ux
