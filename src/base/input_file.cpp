// Opening regular files without waiting, reading and mapping them.
#include "base/input_file.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/byte_search.h"

namespace ux {
namespace {

constexpr char kNothing[kReadAhead] = {};
constexpr int kNotRegular = -1;  // no number of a system error

}  // namespace

// Without waiting: opening a pipe for reading would otherwise last until somebody writes to it.
RegularFile::RegularFile(const char* name) {
    if (name == nullptr) return;
    const int descriptor = ::open(name, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    struct stat facts {};
    int error = 0;
    if (descriptor < 0 || ::fstat(descriptor, &facts) != 0) {
        error = errno;
    } else if (!S_ISREG(facts.st_mode)) {
        error = S_ISDIR(facts.st_mode) ? EISDIR : kNotRegular;
    }
    if (error != 0) {
        if (descriptor >= 0) ::close(descriptor);
        reason_ = error == kNotRegular ? "not a regular file" : std::strerror(error);
        return;
    }
    ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    descriptor_ = descriptor;
    size_ = static_cast<std::size_t>(facts.st_size);
}

RegularFile::~RegularFile() {
    if (is_open()) ::close(descriptor_);
}

RegularFile::RegularFile(RegularFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      size_(other.size_),
      reason_(std::move(other.reason_)) {}

long RegularFile::read(char* out, std::size_t size) const {
    if (!is_open()) return 0;
    for (;;) {
        const ssize_t got = ::read(descriptor_, out, size);
        if (got >= 0 || errno != EINTR) return static_cast<long>(got);
    }
}

void RegularFile::seek(std::uint64_t offset) const {
    ::lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET);
}

// The file is mapped over the start of a larger reservation, so that reading ahead of its end stays
// inside the reservation.
MappedFile::MappedFile(const char* name) : bytes_(kNothing) {
    const RegularFile file(name);
    if (!file.is_open() || file.size() == 0) return;
    const std::size_t reserved = file.size() + kReadAhead;
    if (reserved < file.size()) return;
    void* const place = ::mmap(nullptr, reserved, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED) return;
    if (::mmap(place, file.size(), PROT_READ, MAP_PRIVATE | MAP_FIXED, file.descriptor(), 0) ==
        MAP_FAILED) {
        ::munmap(place, reserved);
        return;
    }
    ::madvise(place, file.size(), MADV_SEQUENTIAL);
    bytes_ = static_cast<const char*>(place);
    size_ = file.size();
    reserved_ = reserved;
}

MappedFile::~MappedFile() {
    if (reserved_ != 0) ::munmap(const_cast<char*>(bytes_), reserved_);
}

}  // namespace ux
