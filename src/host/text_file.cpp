// Keeping long texts in a temporary file.
#include "host/text_file.h"

#include <algorithm>
#include <new>

namespace uxhost {
namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 16;

class LostText : public std::bad_alloc {
public:
    const char* what() const noexcept override { return "a temporary file cannot be read"; }
};

}  // namespace

Ref TextFile::add(std::string_view text) {
    if (isFull_ || text.size() > UINT32_MAX || end_ + text.size() > kMostBytes) return 0;
    if (!file_.is_open()) file_ = ux::create_nameless_file();
    isFull_ = !file_.is_open() || !file_.seek(end_) || !file_.write(text);
    if (isFull_) return 0;
    const auto place = static_cast<Ref>(end_ >> kUnitBits);
    end_ = ((end_ + text.size() - 1) | ((1U << kUnitBits) - 1)) + 1;
    return place;
}

void TextFile::read(Ref place, std::size_t size, CStringUTF8& out) {
    const std::uint64_t start = std::uint64_t{place} << kUnitBits;
    if (start < blockStart_ || start + size > blockStart_ + block_.size()) read_block(start, size);
    out.Assign(block_.data() + (start - blockStart_), size);
}

// At least so many bytes.
void TextFile::read_block(std::uint64_t start, std::size_t size) {
    block_.resize(std::max(size, kBlockBytes));
    blockStart_ = start;
    std::size_t got = 0;
    long more = file_.seek(start) ? 1 : 0;
    while (more > 0 && got < block_.size()) {
        more = file_.read(block_.data() + got, block_.size() - got);
        if (more > 0) got += static_cast<std::size_t>(more);
    }
    block_.resize(got);
    if (got < size) throw LostText();
}

}  // namespace uxhost
