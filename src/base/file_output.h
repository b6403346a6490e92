// A file that is replaced as a whole or not at all.
#pragma once

#include <string>
#include <string_view>

#include "base/platform.h"

namespace ux {

// A file keeps its owner, group, mode, access control list and other attributes; until all of it is
// there nobody else can read the new one. A link stays one, and what it leads to is replaced.
// Writes beside the target and renames over it on commit, after everything reached the disk. A
// device, which cannot be replaced, is written directly. Without commit nothing remains.
class FileOutput {
public:
    explicit FileOutput(const char* path);
    ~FileOutput();
    FileOutput(const FileOutput&) = delete;
    FileOutput& operator=(const FileOutput&) = delete;

    // Does nothing after a failure.
    void write(std::string_view bytes);
    bool commit();
    bool failed() const { return !reason_.empty(); }
    // The system's number of what failed first, 0 while nothing has.
    int error() const { return error_; }
    const std::string& reason() const { return reason_; }

private:
    void open_temporary(bool replaces);
    void fail(const char* action, int error);
    bool check(bool done, const char* action);

    OpenFile file_;
    std::string target_;
    std::string temporary_;  // empty for a device
    std::string reason_;
    int error_ = 0;
    int slot_ = -1;          // among the unfinished files
    bool replaces_ = false;  // a file that was there
};

// Removes the files of this process that were begun and not committed. For a signal handler that
// lets the process die then: it is async-signal-safe, and what goes on writing is not told.
void remove_unfinished_files() noexcept;

// What the last file that this thread replaced did not keep of the old one, because the system did
// not allow it: "owner, group", "" when it kept all.
std::string unkept_properties();

}  // namespace ux
