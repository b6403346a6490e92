// Writing beside a file and taking its place, after everything reached the disk.
#include "base/file_output.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace ux {
namespace {
constexpr std::size_t kEarlyBytes = std::size_t{1} << 20;

// Names of unfinished files where a signal handler can read them: memory that is never freed.
struct Unfinished {
    std::atomic<bool> taken{false};
    std::atomic<bool> ready{false};
    char path[4096];
};
std::array<Unfinished, 16> unfinished;

// -1 when there is no room: the file is then left behind by a signal.
int remember_unfinished(const std::string& path) {
    if (path.size() >= sizeof(Unfinished::path)) return -1;
    for (std::size_t i = 0; i < unfinished.size(); ++i) {
        if (unfinished[i].taken.exchange(true)) continue;
        std::memcpy(unfinished[i].path, path.c_str(), path.size() + 1);
        unfinished[i].ready = true;
        return static_cast<int>(i);
    }
    return -1;
}
void forget_unfinished(int slot) {
    if (slot < 0) return;
    unfinished[static_cast<std::size_t>(slot)].ready = false;
    unfinished[static_cast<std::size_t>(slot)].taken = false;
}

// What the last file that this thread replaced did not keep, each with ", " before it.
std::string& unkept_files() {
    thread_local std::string names;
    return names;
}

// A link stays a link: what it leads to is written, also when nothing is there yet. False, with
// errno set, for links that go round in circles.
bool follow_links(std::string& path) {
    for (int links = 0; links < 40; ++links) {
        std::array<char, 4096> place;
        const ssize_t length = readlink(path.c_str(), place.data(), place.size());
        if (length < 0) return true;  // no link
        if (static_cast<std::size_t>(length) == place.size()) {
            errno = ENAMETOOLONG;
            return false;
        }
        const std::string leads(place.data(), static_cast<std::size_t>(length));
        const std::string folder = path.substr(0, path.rfind('/') + 1);
        path = leads[0] == '/' ? leads : folder + leads;
    }
    errno = ELOOP;
    return false;
}

// The names of a file's extended attributes, access control lists among them.
std::vector<std::string> attribute_names(const std::string& path) {
    std::vector<char> names(65536);
    const ssize_t size = listxattr(path.c_str(), names.data(), names.size());
    std::vector<std::string> found;
    for (ssize_t at = 0; at < size; at += static_cast<ssize_t>(found.back().size()) + 1) {
        found.emplace_back(names.data() + at);
    }
    return found;
}

void copy_attributes(const std::string& from, int to) {
    constexpr const char* kAccess = "system.posix_acl_access";
    const std::vector<std::string> names = attribute_names(from);
    // The folder may have given the new file a list that the old one does not have.
    if (std::find(names.begin(), names.end(), kAccess) == names.end()) fremovexattr(to, kAccess);
    for (const std::string& name : names) {
        std::vector<char> value(65536);
        const ssize_t size = getxattr(from.c_str(), name.c_str(), value.data(), value.size());
        const bool copied = size >= 0 && fsetxattr(to, name.c_str(), value.data(),
                                                   static_cast<std::size_t>(size), 0) == 0;
        // Labels of the system's own are given by the system.
        if (copied || name.rfind("security.", 0) == 0) continue;
        unkept_files() += name == kAccess ? ", access control list" : ", attribute " + name;
    }
}
}  // namespace

void remove_unfinished_files() noexcept {
    for (const Unfinished& file : unfinished) {
        if (file.ready) unlink(file.path);
    }
}

std::string unkept_properties() {
    const std::string& names = unkept_files();
    return names.empty() ? names : names.substr(2);
}

FileOutput::FileOutput(const char* path) : target_(path == nullptr ? "" : path) {
    if (target_.empty()) {
        error_ = ENOENT;
        reason_ = "no file name";
        return;
    }
    unkept_files().clear();
    if (!follow_links(target_)) {
        fail("cannot write", errno);
        return;
    }
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
        open_temporary(exists);
    }
}

// What replaces a file is nobody else's to read while it is being written. A new file has a name from
// the start too: a nameless one is linked to its name only where nothing stands, so a file that
// appears meanwhile would make the save fail, and not every file system has them. Under its name it
// is safe as well: O_EXCL follows no link, and a signal handler can remove it.
void FileOutput::open_temporary(bool replaces) {
    static std::atomic<unsigned> counter{0};
    const mode_t mode = replaces ? 0600 : 0666;
    do {
        temporary_ = target_ + ".tmp" + std::to_string(getpid()) + "-" + std::to_string(counter++);
        descriptor_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    } while (descriptor_ < 0 && errno == EEXIST);
    if (descriptor_ < 0) {
        const int error = errno;
        temporary_.clear();
        fail("cannot write beside", error);
        return;
    }
    replaces_ = replaces;
    slot_ = remember_unfinished(temporary_);
}

// Gives the new file what the old one has at this time: owner, group, access control list, other
// attributes and, at last, the mode. What the system does not allow is told by unkept_properties.
void FileOutput::take_properties() {
    struct stat status {};
    if (stat(target_.c_str(), &status) != 0) return;  // it went away meanwhile
    mode_t mode = status.st_mode & 07777U;
    struct stat own {};
    fstat(descriptor_, &own);
    if (own.st_gid != status.st_gid &&
        fchown(descriptor_, static_cast<uid_t>(-1), status.st_gid) != 0) {
        unkept_files() += ", group";
        // Another group gets no more than everybody.
        mode &= ~static_cast<mode_t>(02070U) | (mode & 07U) << 3U;
    }
    if (own.st_uid != status.st_uid &&
        fchown(descriptor_, status.st_uid, static_cast<gid_t>(-1)) != 0) {
        unkept_files() += ", owner";
        mode &= ~static_cast<mode_t>(04000U);
    }
    copy_attributes(target_, descriptor_);
    check(fchmod(descriptor_, mode), "cannot set the mode of");
}

FileOutput::~FileOutput() {
    if (descriptor_ >= 0) close(descriptor_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
    forget_unfinished(slot_);
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
    if (replaces_) take_properties();
    if (failed()) return false;
    if (replaces && !check(fsync(descriptor_), "cannot write")) return false;
    if (!check(close(std::exchange(descriptor_, -1)), "cannot close")) return false;
    if (!replaces) return true;
    // Nothing behind the renaming takes memory: a failure would be told with the old file gone.
    const std::string folder = target_.substr(0, target_.rfind('/') + 1);
    if (!check(std::rename(temporary_.c_str(), target_.c_str()), "cannot replace")) return false;
    temporary_.clear();
    forget_unfinished(std::exchange(slot_, -1));
    // The new name reaches the disk with the folder; a folder that cannot be opened is no failure.
    const int handle = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (handle >= 0) {
        fsync(handle);
        close(handle);
    }
    return true;
}

}  // namespace ux
