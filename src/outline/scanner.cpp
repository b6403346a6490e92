// Reading a file block by block as characters, and handing its markup to a handler.
#include "outline/scanner.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/byte_search.h"
#include "outline/decoding.h"
#include "outline/markup.h"
#include "outline/scanner_detail.h"

namespace ux {
namespace {

// Blocks are read to a place that suits fast copying. In front of it there is room for the start of
// a character that the block before did not hold whole.
constexpr std::size_t kAlignment = 64;

}  // namespace

SaxFileReader::SaxFileReader(const char* fileName, std::size_t blockSize)
    : SaxFileReader(RegularFile(fileName), {}, blockSize) {}

SaxFileReader SaxFileReader::of_bytes(std::string_view bytes, std::size_t blockSize) {
    return {RegularFile(), bytes, blockSize};
}

SaxFileReader::SaxFileReader(RegularFile file, std::string_view bytes, std::size_t blockSize)
    : file_(std::move(file)),
      bytes_(bytes),
      blockSize_(std::max<std::size_t>(blockSize, 1)),
      memory_(new char[2 * kAlignment + blockSize_ + kReadAhead]()) {
    void* place = memory_.get() + kAlignment;
    std::size_t space = kAlignment + blockSize_ + kReadAhead;
    block_ = static_cast<char*>(std::align(kAlignment, blockSize_ + kReadAhead, place, space));
    position_ = limit_ = block_;
    cutOff_ = block_;  // empty: the memory is zeroed
}

std::size_t SaxFileReader::read(char* out) {
    // What cannot be read ends the input.
    if (file_.is_open()) return static_cast<std::size_t>(std::max(file_.read(out, blockSize_), 0L));
    const std::size_t size = bytes_.copy(out, blockSize_);
    bytes_.remove_prefix(size);
    return size;
}

bool SaxFileReader::refill() {
    while (position_ == limit_ && !ended_) {
        char* const start = block_ - cutOff_.size();
        std::memmove(start, cutOff_.data(), cutOff_.size());
        const std::size_t size = read(block_);
        const Decoded decoded = decode_in_place(start, block_ + size);
        cutOff_ = {decoded.rest, static_cast<std::size_t>(block_ + size - decoded.rest)};
        ended_ = size == 0 || decoded.stopped;
        position_ = start;
        limit_ = decoded.end;
    }
    return position_ != limit_;
}

std::uint32_t SaxFileReader::peek() {
    return position_ != limit_ || refill() ? character_at(position_).value : 0;
}

std::uint32_t SaxFileReader::next() {
    if (position_ == limit_ && !refill()) return 0;
    const Character character = character_at(position_);
    position_ += character.length;
    return character.value;
}

bool SaxScanner::readName(std::string& out) {
    return MarkupCursor(reader_).append_name(out);
}

bool SaxScanner::scan(SaxHandler& handler) {
    HandlerSink sink(handler);
    return scan_markup(reader_, sink);
}

}  // namespace ux
