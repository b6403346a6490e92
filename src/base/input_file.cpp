// Opening regular files without waiting, reading and mapping them.
#include "base/input_file.h"

#include <cerrno>
#include <cstring>

#include "base/byte_search.h"

namespace ux {
namespace {

constexpr char kNothing[kReadAhead] = {};
// Smaller files are read in one go, which no advice about what comes next makes faster.
constexpr std::size_t kReadAtOnce = std::size_t{1} << 16;

}  // namespace

RegularFile::RegularFile(const char* name) {
    if (name == nullptr) return;
    OpenFile file = open_to_read(name);
    const FileFacts facts = file.is_open() ? file.facts() : FileFacts();
    if (facts.kind == FileKind::kNone) {
        reason_ = std::strerror(errno);
    } else if (facts.kind == FileKind::kFolder) {
        reason_ = std::strerror(EISDIR);
    } else if (facts.kind != FileKind::kRegular) {
        reason_ = "not a regular file";
    } else {
        size_ = static_cast<std::size_t>(facts.size);
        if (size_ > kReadAtOnce) expect_whole_read(file);
        file_ = std::move(file);
    }
}

long RegularFile::read(char* out, std::size_t size) const {
    return is_open() ? file_.read(out, size) : 0;
}

void RegularFile::seek(std::uint64_t offset) const {
    file_.seek(offset);
}

MappedFile::MappedFile(const char* name) : bytes_(kNothing) {
    const RegularFile file(name);
    if (!file.is_open()) return;
    const char* const mapped = map_file(file.file(), file.size(), kReadAhead);
    if (mapped == nullptr) return;
    bytes_ = mapped;
    size_ = file.size();
}

MappedFile::~MappedFile() {
    if (bytes_ != kNothing) unmap_file(bytes_, size_, kReadAhead);
}

}  // namespace ux
