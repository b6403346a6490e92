// What the tool asks of the system that it runs on. A system has one source of these,
// platform_SYSTEM.cpp, and no other source of the tool includes headers of a system. Where a call can
// fail, errno tells why.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace uxtool {

// "No such file or directory" and the like, for the current errno.
std::string system_error();

// --- open files

inline constexpr int kStandardInput = 0;
inline constexpr int kStandardOutput = 1;
inline constexpr int kStandardError = 2;

// Owns the number of an open file; -1 owns none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }
    int number() const { return number_; }
    bool is_open() const { return number_ >= 0; }
    // False when closing reports an error.
    bool close();

private:
    int number_;
};

Descriptor open_to_read(const std::string& file);
Descriptor open_to_write(const std::string& file);
// Standard input under a number of its own.
Descriptor standard_input();
// For the user alone; fails when something has that name, be it a link.
Descriptor create_file(const std::string& file);
// The same with a name that nobody has yet; start becomes the whole name.
Descriptor create_file_that_begins(std::string& start);
bool create_folder_that_begins(std::string& start);

enum class FileKind { kRegular, kFolder, kOther };
// What nobody can tell is another one.
FileKind kind_of(int descriptor);
// A name by which this process opens an open file again.
std::string path_of(const Descriptor& file);
bool is_terminal(int descriptor);

// Reads up to size bytes and yields their number; 0 at the end, -1 on failure.
long read_some(const Descriptor& file, char* out, std::size_t size);
// Writes everything, however often the system takes only a part. For signal handlers, too.
bool write_fully(int descriptor, std::string_view bytes);
// Gives a file the permissions of another one, waits until it is on the disk, and closes it.
bool finish_copy(Descriptor& copy, const std::string& original);

// For signal handlers, too.
void remove_file(const char* file);

// --- the process

unsigned long process_id();
// The file of the running program, "" when nobody can tell.
std::string own_program();
// The process goes on as another program with these arguments; comes back only when that fails.
void become(const std::string& program, const std::vector<std::string>& arguments);
// When the user or the system ends the process, cleanUp is called before it dies as it would have.
// It may do only what signal handlers may.
void clean_up_before_death(void (*cleanUp)());
// A write that cannot be done fails instead of ending the process: into a pipe that nobody reads, or
// beyond a limit.
void survive_failed_writes();
// Calls what only signal handlers may do after so many seconds, whatever is going on then.
void call_after(double seconds, void (*work)());
void call_nothing_after();
// The process gets no more memory than this, in bytes.
bool limit_memory(std::uint64_t bytes);

// --- the desktop

bool has_desktop();
// The program that opens a file as people chose.
inline constexpr const char* kOpener = "xdg-open";
// False when it cannot be run; it is not waited for.
bool open_on_desktop(const std::string& file);

}  // namespace uxtool
