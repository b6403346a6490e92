// Writing beside a file and taking its place, after everything reached the disk.
#include "base/file_output.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ux {
namespace {
constexpr std::size_t kEarlyBytes = std::size_t{1} << 20;
}

FileOutput::FileOutput(const char* path) : target_(path == nullptr ? "" : path) {
    if (target_.empty()) {
        error_ = ENOENT;
        reason_ = "no file name";
        return;
    }
    // A link stays a link: what it leads to is replaced.
    const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path, nullptr), std::free);
    if (resolved != nullptr) target_ = resolved.get();
    struct stat status {};
    const bool exists = stat(target_.c_str(), &status) == 0;
    if (exists && S_ISCHR(status.st_mode)) {
        descriptor_ = open(target_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
        if (descriptor_ < 0) fail("cannot open", errno);
    } else if (exists && !S_ISREG(status.st_mode)) {
        fail("cannot write", S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    } else if (exists && access(target_.c_str(), W_OK) != 0) {
        fail("cannot write", errno);
    } else {
        open_temporary(exists ? status.st_mode & 07777u : 0);
    }
}

// mode 0: whatever a new file gets.
void FileOutput::open_temporary(unsigned mode) {
    static std::atomic<unsigned> counter{0};
    do {
        temporary_ = target_ + ".tmp" + std::to_string(getpid()) + "-" + std::to_string(counter++);
        descriptor_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (descriptor_ < 0 && errno == EEXIST);
    if (descriptor_ < 0) {
        const int error = errno;
        temporary_.clear();
        fail("cannot write beside", error);
    } else if (mode != 0) {
        check(fchmod(descriptor_, mode), "cannot set the mode of");
    }
}

FileOutput::~FileOutput() {
    if (descriptor_ >= 0) close(descriptor_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void FileOutput::fail(const char* action, int error) {
    if (reason_.empty()) {
        error_ = error;
        reason_ = std::string(action) + " " + target_ + ": " + std::strerror(error);
    }
}

bool FileOutput::check(int result, const char* action) {
    if (result != 0) fail(action, errno);
    return result == 0;
}

void FileOutput::write(std::string_view bytes) {
    const bool more = bytes.size() >= kEarlyBytes;
    while (!failed() && !bytes.empty()) {
        const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            fail("cannot write", written == 0 ? EIO : errno);
        }
    }
    // Of a large file, what is complete can go to the disk while the rest is being made.
    if (more && !temporary_.empty()) sync_file_range(descriptor_, 0, 0, SYNC_FILE_RANGE_WRITE);
}

bool FileOutput::commit() {
    if (failed()) return false;
    const bool replaces = !temporary_.empty();
    if (replaces && !check(fsync(descriptor_), "cannot write")) return false;
    if (!check(close(std::exchange(descriptor_, -1)), "cannot close")) return false;
    if (!replaces) return true;
    if (!check(std::rename(temporary_.c_str(), target_.c_str()), "cannot replace")) return false;
    temporary_.clear();
    // The new name reaches the disk with the folder; a folder that cannot be opened is no failure.
    const std::string folder = target_.substr(0, target_.rfind('/') + 1);
    const int handle = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (handle >= 0) {
        fsync(handle);
        close(handle);
    }
    return true;
}

}  // namespace ux
