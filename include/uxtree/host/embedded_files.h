// Files that are replaced as a whole or not at all, by the rule by which the embedded host saves
// trees: for programs that write other files beside them. No part of the contract of a host.
#pragma once

#include <memory>
#include <string_view>

#include "uxtree/host/export.h"
#include "uxtree/host/string.h"

// Writes beside the target and takes its place on Commit, after everything reached the disk. Until
// then, and when anything fails, an old file stays as it is; without Commit nothing remains. A link
// stays a link, and the file that it leads to is replaced; a file keeps its permissions, and one
// that must not be written is refused. A character device is written directly.
class UXHOST_API UXFileOutput {
public:
    explicit UXFileOutput(const char* path);
    ~UXFileOutput();
    UXFileOutput(UXFileOutput&& other) noexcept;
    UXFileOutput(const UXFileOutput&) = delete;
    UXFileOutput& operator=(const UXFileOutput&) = delete;

    // False after a failure, of this call or of an earlier one.
    bool Write(std::string_view bytes);
    // Puts the file in its place; false when it is not there.
    bool Commit();
    // The system's number (errno) of what failed first, 0 while nothing has.
    int Error() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

// Removes the files of this process, saved trees among them, that were begun and not committed. For
// the signal handler of a program that dies then: async-signal-safe.
UXHOST_API void UXRemoveUnfinishedFiles();
// What the last file that this thread replaced, saved trees included, did not keep of the old one,
// because the system did not allow it: such as "owner, group"; "" when it kept all.
UXHOST_API CStringUTF8 UXGetUnkeptProperties();
