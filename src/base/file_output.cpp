// Writing beside a file and taking its place, after everything reached the disk.
#include "base/file_output.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

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
        std::error_code noLink;
        const std::filesystem::path leads = std::filesystem::read_symlink(path, noLink);
        if (noLink) return true;
        path = (std::filesystem::path(path).parent_path() / leads).string();
    }
    errno = ELOOP;
    return false;
}
}  // namespace

void remove_unfinished_files() noexcept {
    for (const Unfinished& file : unfinished) {
        if (file.ready) remove_file(file.path);
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
    const FileKind kind = facts_of(target_.c_str()).kind;
    if (kind == FileKind::kDevice) {
        file_ = open_device_to_write(target_.c_str());
        if (!file_.is_open()) fail("cannot open", errno);
    } else if (kind == FileKind::kFolder || kind == FileKind::kOther) {
        fail("cannot write", kind == FileKind::kFolder ? EISDIR : EINVAL);
    } else if (kind == FileKind::kRegular && !may_write(target_.c_str())) {
        fail("cannot write", errno);
    } else {
        open_temporary(kind == FileKind::kRegular);
    }
}

// What replaces a file is nobody else's to read while it is being written. A new file has a name from
// the start too: a nameless one is linked to its name only where nothing stands, so a file that
// appears meanwhile would make the save fail, and not every file system has them. Under its name it
// is safe as well: O_EXCL follows no link, and a signal handler can remove it.
void FileOutput::open_temporary(bool replaces) {
    static std::atomic<unsigned> counter{0};
    do {
        temporary_ =
            target_ + ".tmp" + std::to_string(process_id()) + "-" + std::to_string(counter++);
        forget_unfinished(slot_);
        slot_ = remember_unfinished(temporary_);  // first: a signal may come at once
        file_ = create_file(temporary_.c_str(), replaces);
    } while (!file_.is_open() && errno == EEXIST);
    if (!file_.is_open()) {
        const int error = errno;
        forget_unfinished(std::exchange(slot_, -1));
        temporary_.clear();
        fail("cannot write beside", error);
        return;
    }
    replaces_ = replaces;
}

FileOutput::~FileOutput() {
    file_.close();
    if (!temporary_.empty()) remove_file(temporary_.c_str());
    forget_unfinished(slot_);
}

void FileOutput::fail(const char* action, int error) {
    if (reason_.empty()) {
        error_ = error;
        reason_ = std::string(action) + " " + target_ + ": " + std::strerror(error);
    }
}

bool FileOutput::check(bool done, const char* action) {
    if (!done) fail(action, errno);
    return done;
}

void FileOutput::write(std::string_view bytes) {
    if (failed() || !check(file_.write(bytes), "cannot write")) return;
    // Of a large file, what is complete can go to the disk while the rest is being made.
    if (bytes.size() >= kEarlyBytes && !temporary_.empty()) file_.write_early();
}

bool FileOutput::commit() {
    if (failed()) return false;
    const bool replaces = !temporary_.empty();
    // What is there at this time counts.
    if (replaces_ &&
        !check(copy_properties(target_.c_str(), file_, unkept_files()), "cannot set the mode of")) {
        return false;
    }
    if (replaces && !check(file_.sync(), "cannot write")) return false;
    if (!check(file_.close(), "cannot close")) return false;
    if (!replaces) return true;
    // Nothing behind the renaming takes memory: a failure would be told with the old file gone.
    const std::string folder = target_.substr(0, target_.rfind('/') + 1);
    if (!check(replace_file(target_.c_str(), temporary_.c_str()), "cannot replace")) return false;
    temporary_.clear();
    forget_unfinished(std::exchange(slot_, -1));
    // The new name reaches the disk with the folder.
    sync_folder(folder.empty() ? "." : folder.c_str());
    return true;
}

}  // namespace ux
