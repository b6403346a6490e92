// What the libraries ask of the system that they run on. A system has one source of these,
// platform_SYSTEM.cpp, and no other source of a library includes headers of a system. Where a call
// can fail, errno tells why.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ux {

// --- files

enum class FileKind { kNone, kRegular, kFolder, kDevice, kOther };  // a device: of characters
struct FileFacts {
    FileKind kind = FileKind::kNone;  // none: nothing is found there
    std::uint64_t size = 0;
};

// Of what stands behind links.
FileFacts facts_of(const char* path);

// An open file, or none.
class OpenFile {
public:
    OpenFile() = default;
    explicit OpenFile(int number) : number_(number) {}
    OpenFile(OpenFile&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    OpenFile& operator=(OpenFile&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~OpenFile() { close(); }

    bool is_open() const { return number_ >= 0; }
    int number() const { return number_; }  // the system's
    bool close();                           // true as well when nothing is open

    FileFacts facts() const;
    // Reads up to size bytes and yields their number; 0 at the end, -1 on failure.
    long read(char* out, std::size_t size) const;
    bool seek(std::uint64_t offset) const;
    // All of the bytes.
    bool write(std::string_view bytes) const;
    // Lets what was written go to the disk while more is being made.
    void write_early() const;
    // Waits until what was written is on the disk.
    bool sync() const;

private:
    int number_ = -1;
};

// Opens whatever has that name, and never waits: a pipe is not waited for.
OpenFile open_to_read(const char* path);
// Tells the system that an open file is going to be read from the start to the end.
void expect_whole_read(const OpenFile& file);
OpenFile open_device_to_write(const char* path);
// EEXIST when something has that name, be it a link. For its owner alone, or as is usual for him.
OpenFile create_file(const char* path, bool forOwnerAlone);

// To write and read: a file in the folder of temporary files that nobody else finds, and that is gone
// when it is closed.
OpenFile create_nameless_file();

bool may_read(const char* path);   // with the rights that the process has
bool may_write(const char* path);  // with the rights of who runs it
// Puts a file under the name of another, which goes away in the same moment.
bool replace_file(const char* file, const char* by);
// For signal handlers, too.
void remove_file(const char* path) noexcept;
// Waits until the names in a folder are on the disk, where the system lets one do that.
void sync_folder(const char* path);

// Gives a new file the owner, group, access control list, other attributes and at last the mode of
// another one; false when the mode cannot be set. Whatever else the system does not allow is appended
// to unkept, each with ", " before it. A file that went away has nothing to give.
bool copy_properties(const char* from, const OpenFile& to, std::string& unkept);

// Maps the first size bytes of a file, with spare readable bytes behind them; null when that fails.
const char* map_file(const OpenFile& file, std::size_t size, std::size_t spare);
void unmap_file(const char* bytes, std::size_t size, std::size_t spare);

// --- modules: code that is loaded at run time

void* open_module(const char* path);  // null when there is none
void close_module(void* module);
void* find_in_module(void* module, const char* name);
// The folder of the library or program that holds this function, with the closing slash; "" when
// unknown.
std::string folder_of_code(const void* function);

// --- process and memory

unsigned long process_id();
// An environment variable; null when it is not set, and in a program that has more rights than its
// caller, who must not choose what it does.
const char* trusted_environment(const char* name);
// Large memory is to have large pages, where the system has such.
void use_large_pages(void* memory, std::size_t bytes);

// While it lives, numbers are formatted by this thread with a point, whatever the locale.
class NeutralLocale {
public:
    NeutralLocale();
    ~NeutralLocale();
    NeutralLocale(const NeutralLocale&) = delete;
    NeutralLocale& operator=(const NeutralLocale&) = delete;

private:
    void* previous_;
};

}  // namespace ux
