// The platform on POSIX systems; what only Linux has stands apart at the top.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <locale.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/platform.h"

// Tests build the other form on Linux, too.
#if defined(__linux__) && !defined(UXTREE_PLAIN_POSIX)
#define UXTREE_ON_LINUX 1
#include <sys/xattr.h>
#else
#define UXTREE_ON_LINUX 0
#endif

namespace ux {
namespace {

#if UXTREE_ON_LINUX

// The names of a file's extended attributes, access control lists among them.
std::vector<std::string> attribute_names(const char* path) {
    std::vector<char> names(65536);
    const ssize_t size = listxattr(path, names.data(), names.size());
    std::vector<std::string> found;
    for (ssize_t at = 0; at < size; at += static_cast<ssize_t>(found.back().size()) + 1) {
        found.emplace_back(names.data() + at);
    }
    return found;
}

void copy_attributes(const char* from, int to, std::string& unkept) {
    constexpr const char* kAccess = "system.posix_acl_access";
    const std::vector<std::string> names = attribute_names(from);
    // The folder may have given the new file a list that the old one does not have.
    if (std::find(names.begin(), names.end(), kAccess) == names.end()) fremovexattr(to, kAccess);
    for (const std::string& name : names) {
        std::vector<char> value(65536);
        const ssize_t size = getxattr(from, name.c_str(), value.data(), value.size());
        const bool copied = size >= 0 && fsetxattr(to, name.c_str(), value.data(),
                                                   static_cast<std::size_t>(size), 0) == 0;
        // Labels of the system's own are given by the system.
        if (copied || name.rfind("security.", 0) == 0) continue;
        unkept += name == kAccess ? ", access control list" : ", attribute " + name;
    }
}

#else

void copy_attributes(const char*, int, std::string&) {}

#endif

FileFacts facts_from(const struct stat& status) {
    const mode_t mode = status.st_mode;
    const FileKind kind = S_ISREG(mode)   ? FileKind::kRegular
                          : S_ISDIR(mode) ? FileKind::kFolder
                          : S_ISCHR(mode) ? FileKind::kDevice
                                          : FileKind::kOther;
    return {kind, static_cast<std::uint64_t>(status.st_size)};
}

OpenFile opened(const char* path, int flags, mode_t mode = 0) {
    return OpenFile(::open(path, flags | O_CLOEXEC | O_NOCTTY, mode));
}

locale_t neutral_locale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t());
    return locale;
}

}  // namespace

// --- files -----------------------------------------------------------------------------------------

FileFacts facts_of(const char* path) {
    struct stat status {};
    return ::stat(path, &status) == 0 ? facts_from(status) : FileFacts();
}

FileFacts OpenFile::facts() const {
    struct stat status {};
    return ::fstat(number_, &status) == 0 ? facts_from(status) : FileFacts();
}

bool OpenFile::close() {
    return !is_open() || ::close(std::exchange(number_, -1)) == 0;
}

long OpenFile::read(char* out, std::size_t size) const {
    for (;;) {
        const ssize_t got = ::read(number_, out, size);
        if (got >= 0 || errno != EINTR) return static_cast<long>(got);
    }
}

bool OpenFile::seek(std::uint64_t offset) const {
    return ::lseek(number_, static_cast<off_t>(offset), SEEK_SET) >= 0;
}

bool OpenFile::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t written = ::write(number_, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0) {
            errno = EIO;
            return false;
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

void OpenFile::write_early() const {
#if UXTREE_ON_LINUX
    ::sync_file_range(number_, 0, 0, SYNC_FILE_RANGE_WRITE);
#endif
}

bool OpenFile::sync() const {
    return ::fsync(number_) == 0;
}

OpenFile open_to_read(const char* path) {
    return opened(path, O_RDONLY | O_NONBLOCK);
}

void expect_whole_read([[maybe_unused]] const OpenFile& file) {
#if defined(POSIX_FADV_SEQUENTIAL)
    ::posix_fadvise(file.number(), 0, 0, POSIX_FADV_SEQUENTIAL);
#endif
}

OpenFile open_device_to_write(const char* path) {
    return opened(path, O_WRONLY);
}

OpenFile create_file(const char* path, bool forOwnerAlone) {
    return opened(path, O_WRONLY | O_CREAT | O_EXCL, forOwnerAlone ? 0600 : 0666);
}

OpenFile create_nameless_file() {
    const char* const folder = trusted_environment("TMPDIR");
    std::string path = folder == nullptr || *folder == '\0' ? "/tmp" : folder;
    path += "/uxtree-XXXXXX";
    OpenFile file(::mkostemp(path.data(), O_CLOEXEC));
    if (file.is_open()) ::unlink(path.c_str());
    return file;
}

bool may_read(const char* path) {
    return ::faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) == 0;
}

bool may_write(const char* path) {
    return ::access(path, W_OK) == 0;
}

bool replace_file(const char* file, const char* by) {
    return std::rename(by, file) == 0;
}

void remove_file(const char* path) noexcept {
    ::unlink(path);
}

void sync_folder(const char* path) {
    const OpenFile folder = opened(path, O_RDONLY);
    if (folder.is_open()) folder.sync();
}

bool copy_properties(const char* from, const OpenFile& to, std::string& unkept) {
    struct stat status {};
    if (::stat(from, &status) != 0) return true;
    mode_t mode = status.st_mode & 07777U;
    struct stat own {};
    ::fstat(to.number(), &own);
    if (own.st_gid != status.st_gid &&
        ::fchown(to.number(), static_cast<uid_t>(-1), status.st_gid) != 0) {
        unkept += ", group";
        // Another group gets no more than everybody.
        mode &= ~static_cast<mode_t>(02070U) | (mode & 07U) << 3U;
    }
    if (own.st_uid != status.st_uid &&
        ::fchown(to.number(), status.st_uid, static_cast<gid_t>(-1)) != 0) {
        unkept += ", owner";
        mode &= ~static_cast<mode_t>(04000U);
    }
    copy_attributes(from, to.number(), unkept);
    return ::fchmod(to.number(), mode) == 0;
}

// The file is mapped over the start of a larger reservation, so that reading ahead of its end stays
// inside the reservation.
const char* map_file(const OpenFile& file, std::size_t size, std::size_t spare) {
    const std::size_t reserved = size + spare;
    if (size == 0 || reserved < size) return nullptr;
    void* const place = ::mmap(nullptr, reserved, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED) return nullptr;
    if (::mmap(place, size, PROT_READ, MAP_PRIVATE | MAP_FIXED, file.number(), 0) == MAP_FAILED) {
        ::munmap(place, reserved);
        return nullptr;
    }
    ::madvise(place, size, MADV_SEQUENTIAL);
    return static_cast<const char*>(place);
}

void unmap_file(const char* bytes, std::size_t size, std::size_t spare) {
    ::munmap(const_cast<char*>(bytes), size + spare);
}

// --- modules ---------------------------------------------------------------------------------------

void* open_module(const char* path) {
    return ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
}

void close_module(void* module) {
    ::dlclose(module);
}

void* find_in_module(void* module, const char* name) {
    return ::dlsym(module, name);
}

std::string folder_of_code(const void* function) {
    Dl_info info{};
    if (::dladdr(function, &info) == 0 || info.dli_fname == nullptr) return {};
    const std::string path = info.dli_fname;
    return path.substr(0, path.rfind('/') + 1);
}

// --- process and memory ----------------------------------------------------------------------------

unsigned long process_id() {
    return static_cast<unsigned long>(::getpid());
}

const char* trusted_environment(const char* name) {
#if UXTREE_ON_LINUX
    return ::secure_getenv(name);
#else
    const bool trusted = ::getuid() == ::geteuid() && ::getgid() == ::getegid();
    return trusted ? std::getenv(name) : nullptr;
#endif
}

void use_large_pages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) {
#if UXTREE_ON_LINUX
    ::madvise(memory, bytes, MADV_HUGEPAGE);
#endif
}

NeutralLocale::NeutralLocale() : previous_(::uselocale(neutral_locale())) {}

NeutralLocale::~NeutralLocale() {
    ::uselocale(static_cast<locale_t>(previous_));
}

}  // namespace ux
