// A file that is replaced as a whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace ux {

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
    void open_temporary(unsigned mode);
    void fail(const char* action, int error);
    bool check(int result, const char* action);

    std::string target_;
    std::string temporary_;  // empty for a device
    std::string reason_;
    int error_ = 0;
    int descriptor_ = -1;
};

}  // namespace ux
