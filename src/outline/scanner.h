// The streaming scanner of XML files: element starts and ends, with the names of tags and
// attributes; everything else is read over. Forgiving and not validating: the first syntax error
// ends the scan silently.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/input_file.h"

namespace ux {

// Receives the events of a scan.
class SaxHandler {
public:
    virtual ~SaxHandler() = default;
    // An element starts; its attributes as written, with repetitions.
    virtual bool startElement(const std::string& name,
                              const std::vector<std::string>& attributeNames) = 0;
    // The innermost open element ends.
    virtual bool endElement(const std::string& name) = 0;
    // The names of the open elements, innermost last. The scanner compares an end tag with the
    // last one and drops the tag when they differ.
    virtual const std::vector<std::string>& nameStack() const = 0;
};

// The characters of a file, read and decoded a block at a time: memory does not grow with the
// file. Input ends at the end of the file or before the first byte that cannot be decoded; see
// decoding.h. A file that cannot be opened, and anything but a regular file, is empty.
class SaxFileReader {
public:
    static constexpr std::size_t kBlockSize = 65536;

    // fileName is UTF-8 and may be null. blockSize is how many bytes are asked for at a time; it
    // changes nothing but the cost, so that tests can put a block's end anywhere.
    explicit SaxFileReader(const char* fileName, std::size_t blockSize = kBlockSize);
    // Reads bytes that the caller keeps, as if they were a file.
    static SaxFileReader of_bytes(std::string_view bytes, std::size_t blockSize = kBlockSize);

    // The next character, or 0 at the end of input. next consumes it.
    std::uint32_t peek();
    std::uint32_t next();

    // The decoded piece at hand, as an input of the grammar; see markup.h.
    static constexpr bool kHighBytesAreNames = false;
    const char* position() const { return position_; }
    const char* limit() const { return limit_; }
    void move_to(const char* position) { position_ = position; }
    bool refill();

private:
    SaxFileReader(RegularFile file, std::string_view bytes, std::size_t blockSize);
    std::size_t read(char* out);

    RegularFile file_;
    std::string_view bytes_;  // what is left of the caller's bytes, when there is no file
    std::size_t blockSize_;
    std::unique_ptr<char[]> memory_;
    char* block_;           // where blocks are read to
    const char* position_;  // the decoded piece at hand
    const char* limit_;
    std::string_view cutOff_;  // the start of a character that the last block did not hold whole
    bool ended_ = false;
};

// Reports to a handler that is chosen at run time. The library itself runs the grammar over sinks
// that the compiler sees (markup.h); this is for callers with handlers of their own, and tests
// compare the two.
class SaxScanner {
public:
    explicit SaxScanner(SaxFileReader& reader) : reader_(reader) {}
    // Appends a name to out and consumes it; false, consuming nothing, when none comes next.
    bool readName(std::string& out);
    // Reads the whole input. True when it ended between two constructs.
    bool scan(SaxHandler& handler);

private:
    SaxFileReader& reader_;
};

}  // namespace ux
