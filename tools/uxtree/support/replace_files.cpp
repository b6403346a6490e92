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

void throw_not_replaced(const std::string& file, int error) {
    errno = error;
    throw Failure(kRefused, file, system_error(),
                  error == EACCES ? "the file and its folder must be writable, since it is "
                                    "replaced as a whole"
                                  : "");
}

void ReplacedFiles::add(const std::string& file, std::string_view content) {
    const std::string path = resolved(file);
    if (!paths_.insert(path).second) throw Failure(kUsage, file, "it is named twice");
    Pending pending{file, path, UXFileOutput(path.c_str()), {}, {}};
    if (!pending.output.Write(content)) throw_not_replaced(file, pending.output.Error());
    pending_.push_back(std::move(pending));
}

void KeptFile::keep(const std::string& path) {
    std::error_code unknown;
    const std::filesystem::file_status status = std::filesystem::symlink_status(path, unknown);
    if (std::filesystem::is_directory(status)) {
        errno = EISDIR;
        throw Failure(kRefused, path, system_error());
    }
    if (std::filesystem::exists(status)) {
        const std::string name = fmt::format("{}.old{}", path, process_id());
        if (!link_or_copy(path, name)) throw Failure(kRefused, name, system_error());
        name_ = name;
    }
    path_ = path;
}

void KeptFile::forget() const {
    if (!name_.empty()) remove_file(name_.c_str());
}

bool KeptFile::put_back() const {
    if (name_.empty()) {
        if (!path_.empty()) remove_file(path_.c_str());
        return true;
    }
    if (std::rename(name_.c_str(), path_.c_str()) != 0) {
        warn(path_ + " is not as it was: " + system_error() + "; its old content is in " + name_);
        return false;
    }
    forget();  // still there when it is the same file
    return true;
}

void ReplacedFiles::put_in_place(Pending& pending) {
    if (!pending.output.Commit()) throw_not_replaced(pending.file, pending.output.Error());
    tell_unkept(pending.file);
}

// What was there before is at hand until all is done.
void ReplacedFiles::commit() {
    const bool wantsBackups = !backupSuffix_.empty();
    try {
        for (Pending& pending : pending_) {
            if (pending_.size() > 1 || wantsBackups) pending.old.keep(pending.path);
            if (wantsBackups) pending.oldBackup.keep(pending.file + backupSuffix_);
        }
        for (Pending& pending : pending_) put_in_place(pending);
        if (wantsBackups) {
            for (const Pending& pending : pending_) {
                replace_by_link(pending.old.name(), pending.file + backupSuffix_);
            }
        }
    } catch (const Failure&) {
        for (const Pending& pending : pending_) {
            isWhole_ = pending.old.put_back() && isWhole_;
            isWhole_ = pending.oldBackup.put_back() && isWhole_;
        }
        throw;
    }
    for (const Pending& pending : pending_) {
        pending.old.forget();
        pending.oldBackup.forget();
    }
    pending_.clear();
    paths_.clear();
}

}  // namespace uxtool
