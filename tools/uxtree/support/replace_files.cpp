// Several files replaced together: all of them, or none.
#include "support/replace_files.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "support/failure.h"
#include "support/file.h"
#include "support/input.h"
#include "support/output.h"

namespace uxtool {
namespace {

// The same file under another name, or where the file system cannot do that, a copy: nobody else can
// read it before it is complete.
bool link_or_copy(const std::string& file, const std::string& other) {
    std::error_code error;
    std::filesystem::create_hard_link(file, other, error);
    if (!error) return true;
    errno = error.value();
    if (errno == EEXIST || errno == ENOENT) return false;
    const std::string content = read_all(file);
    Descriptor copy = create_file(other);
    return copy.is_open() && write_fully(copy.number(), content) && finish_copy(copy, file);
}

// A link under the other name is replaced, not followed.
void replace_by_link(const std::string& file, const std::string& other) {
    const std::string made = fmt::format("{}.tmp{}", other, process_id());
    if (link_or_copy(file, made) && std::rename(made.c_str(), other.c_str()) == 0) {
        remove_file(made.c_str());  // still there when the other was this very file before
        return;
    }
    const std::string reason = system_error();
    remove_file(made.c_str());
    throw Failure(kRefused, other, reason);
}

}  // namespace

std::string resolved(const std::string& file) {
    std::error_code error;
    std::filesystem::path path = std::filesystem::weakly_canonical(file, error);
    return error ? file : path.string();
}

void ReplacedFiles::add(const std::string& file, std::string_view content) {
    const std::string path = resolved(file);
    Pending pending{file, path, UXFileOutput(path.c_str()), "", ""};
    if (!pending.output.Write(content)) {
        errno = pending.output.Error();
        throw Failure(kRefused, file, system_error());
    }
    pending_.push_back(std::move(pending));
}

void ReplacedFiles::put_in_place(Pending& pending) {
    if (pending_.size() > 1 || !backupSuffix_.empty()) {
        const std::string old = fmt::format("{}.old{}", pending.path, process_id());
        if (!link_or_copy(pending.path, old)) throw Failure(kRefused, old, system_error());
        pending.old = old;
    }
    if (!pending.output.Commit()) {
        errno = pending.output.Error();
        throw Failure(kRefused, pending.file, system_error());
    }
    tell_unkept(pending.file);
}

void ReplacedFiles::keep_backup(Pending& pending) const {
    const std::string backup = pending.file + backupSuffix_;
    replace_by_link(pending.old, backup);
    pending.backup = backup;
}

void ReplacedFiles::put_back(const Pending& pending) {
    if (!pending.backup.empty()) remove_file(pending.backup.c_str());
    if (pending.old.empty()) return;
    if (std::rename(pending.old.c_str(), pending.path.c_str()) == 0) {
        remove_file(pending.old.c_str());  // still there when the file was never replaced
        return;
    }
    isWhole_ = false;
    warn(pending.file + " is not as it was: " + system_error() + "; its old content is in " +
         pending.old);
}

// The old files are at hand until all is done.
void ReplacedFiles::commit() {
    try {
        for (Pending& pending : pending_) put_in_place(pending);
        if (!backupSuffix_.empty()) {
            for (Pending& pending : pending_) keep_backup(pending);
        }
    } catch (const Failure&) {
        for (const Pending& pending : pending_) put_back(pending);
        throw;
    }
    for (const Pending& pending : pending_) {
        if (!pending.old.empty()) remove_file(pending.old.c_str());
    }
    pending_.clear();
}

}  // namespace uxtool
