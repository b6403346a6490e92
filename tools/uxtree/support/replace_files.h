// Several files replaced together: all of them, or none.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "uxtree/host/embedded_files.h"

namespace uxtool {

// The file behind symbolic links, so that replacing it keeps the link.
std::string resolved(const std::string& file);

// error is the system's number of what went wrong with a UXFileOutput.
[[noreturn]] void throw_not_replaced(const std::string& file, int error);

// What stands at a path, or that nothing does, while it may be wanted back.
class KeptFile {
public:
    // Throws Failure with kRefused.
    void keep(const std::string& path);
    // Before keep, nothing happens. False, after a warning, when it cannot be put back.
    bool put_back() const;
    void forget() const;
    const std::string& name() const { return name_; }

private:
    std::string path_;
    std::string name_;  // another one of the file; "" when nothing stood there
};

class ReplacedFiles {
public:
    // With a suffix, the old file of each stays under its name with the suffix appended.
    explicit ReplacedFiles(std::string backupSuffix) : backupSuffix_(std::move(backupSuffix)) {}

    // Writes the new content beside the file; nobody sees it before commit. Throws Failure with
    // kRefused, and with kUsage for a file that is there already.
    void add(const std::string& file, std::string_view content);
    // Puts all in their places. When that fails with one, or with a backup, all are put back, older
    // backups too; throws Failure with kRefused, and warns of what could not be put back.
    void commit();
    // False when something could not be put back.
    bool is_whole() const { return isWhole_; }

private:
    struct Pending {
        std::string file;  // as named
        std::string path;
        UXFileOutput output;
        KeptFile old;
        KeptFile oldBackup;
    };
    static void put_in_place(Pending& pending);

    bool isWhole_ = true;
    std::string backupSuffix_;
    std::vector<Pending> pending_;
    std::unordered_set<std::string> paths_;  // of all that were added
};

}  // namespace uxtool
