// Moving the window over an input, and making room in it.
#include "xml/window.h"

#include <algorithm>
#include <cstring>

namespace ux::xml {

Window::Window(const ByteSource& source, std::size_t capacity)
    : source_(source),
      capacity_(std::max(capacity, kLeastCapacity)),
      memory_(capacity_ + kReadAhead),
      end_(memory_.data()) {
    std::memset(end_, 0, kReadAhead);
}

bool Window::more(char*& keep) {
    make_room(keep);
    const char* const before = end_;
    while (static_cast<std::size_t>(end_ - begin()) < capacity_) {
        const std::size_t room = capacity_ - static_cast<std::size_t>(end_ - begin());
        const long got = source_.read(end_, room);
        failed_ = failed_ || got < 0;
        if (got <= 0) break;
        end_ += got;
    }
    std::memset(end_, 0, kReadAhead);
    return end_ != before && !failed_;
}

void Window::make_room(char*& keep) {
    const auto kept = static_cast<std::size_t>(end_ - keep);
    offset_ = offset_of(keep);
    if (kept > capacity_ / 2 && capacity_ < kMostBytes) {
        Memory larger(capacity_ * 2 + kReadAhead);
        std::memcpy(larger.data(), keep, kept);
        memory_ = std::move(larger);
        capacity_ *= 2;
    } else if (kept > 0) {
        std::memmove(begin(), keep, kept);
    }
    keep = begin();
    end_ = begin() + kept;
}

}  // namespace ux::xml
