// The platform on POSIX systems.
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "support/platform.h"

extern char** environ;  // NOLINT(readability-redundant-declaration): not everywhere

namespace uxtool {

std::string system_error() {
    return errno == EBADF ? "it is closed" : std::generic_category().message(errno);
}

// --- open files ------------------------------------------------------------------------------------

bool Descriptor::close() {
    return !is_open() || ::close(std::exchange(number_, -1)) == 0;
}

Descriptor open_to_read(const std::string& file) {
    return Descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
}

Descriptor open_to_write(const std::string& file) {
    return Descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
}

Descriptor standard_input() {
    return Descriptor(::dup(STDIN_FILENO));
}

Descriptor create_file(const std::string& file) {
    return Descriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
}

Descriptor create_file_that_begins(std::string& start) {
    start += "XXXXXX";
    return Descriptor(::mkstemp(start.data()));
}

bool create_folder_that_begins(std::string& start) {
    start += "XXXXXX";
    return ::mkdtemp(start.data()) != nullptr;
}

FileKind kind_of(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return FileKind::kOther;
    if (S_ISREG(status.st_mode)) return FileKind::kRegular;
    return S_ISDIR(status.st_mode) ? FileKind::kFolder : FileKind::kOther;
}

std::string path_of(const Descriptor& file) {
#if defined(__linux__)
    const std::string folder = "/proc/self/fd/";
#else
    const std::string folder = "/dev/fd/";
#endif
    return folder + std::to_string(file.number());
}

bool is_terminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

long read_some(const Descriptor& file, char* out, std::size_t size) {
    for (;;) {
        const ssize_t got = ::read(file.number(), out, size);
        if (got >= 0 || errno != EINTR) return static_cast<long>(got);
    }
}

bool write_fully(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool finish_copy(Descriptor& copy, const std::string& original) {
    struct stat status {};
    return ::stat(original.c_str(), &status) == 0 &&
           ::fchmod(copy.number(), status.st_mode & 0777U) == 0 && ::fsync(copy.number()) == 0 &&
           copy.close();
}

void remove_file(const char* file) {
    ::unlink(file);
}

// --- the process -----------------------------------------------------------------------------------

namespace {

void (*lastWork)() = nullptr;
void (*lateWork)() = nullptr;

void die_of_signal(int signal) {
    lastWork();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void at_alarm(int) {
    lateWork();
}

}  // namespace

unsigned long process_id() {
    return static_cast<unsigned long>(::getpid());
}

std::string own_program() {
#if defined(__linux__)
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).string();
#else
    return "";
#endif
}

void become(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    ::execv(program.c_str(), pointers.data());
}

void clean_up_before_death(void (*cleanUp)()) {
    lastWork = cleanUp;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        // What was to be ignored, as under nohup, still is.
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
        action.sa_handler = die_of_signal;
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
        ::sigaction(signal, &action, nullptr);
    }
}

void survive_failed_writes() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void call_after(double seconds, void (*work)()) {
    lateWork = work;
    struct sigaction action {};
    action.sa_handler = at_alarm;
    ::sigaction(SIGALRM, &action, nullptr);
    itimerval timer{};
    timer.it_value.tv_sec = static_cast<time_t>(seconds);
    timer.it_value.tv_usec = static_cast<suseconds_t>((seconds - std::floor(seconds)) * 1e6);
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

void call_nothing_after() {
    const itimerval none{};
    ::setitimer(ITIMER_REAL, &none, nullptr);
}

bool limit_memory(std::uint64_t bytes) {
    rlimit limit{};
    if (::getrlimit(RLIMIT_AS, &limit) != 0) return false;
    limit.rlim_cur = std::min(static_cast<rlim_t>(bytes), limit.rlim_max);
    return ::setrlimit(RLIMIT_AS, &limit) == 0;
}

// --- the desktop -----------------------------------------------------------------------------------

bool has_desktop() {
    return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
}

bool open_on_desktop(const std::string& file) {
    std::string program = kOpener;
    std::string argument = file;
    char* arguments[] = {program.data(), argument.data(), nullptr};
    pid_t child = 0;
    return ::posix_spawnp(&child, kOpener, nullptr, nullptr, arguments, environ) == 0;
}

}  // namespace uxtool
