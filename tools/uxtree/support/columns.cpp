// Columns of numbers in memory, and beyond some size in a temporary file.
#include "support/columns.h"

#include <algorithm>

#include "support/failure.h"
#include "support/file.h"

namespace uxtool {
namespace {

constexpr std::size_t kMostKept = std::size_t{1} << 21;  // values: 16 MB

}  // namespace

void Columns::add(const std::vector<double>& values) {
    columns_.push_back({end_, values.size()});
    end_ += values.size();
    longest_ = std::max(longest_, values.size());
    if (kept_.size() + values.size() > kMostKept) write_kept();
    kept_.insert(kept_.end(), values.begin(), values.end());
}

// The file has no name any more, so that it is gone with the process.
void Columns::write_kept() {
    if (!file_.is_open()) {
        auto made = create_temporary();
        remove_file(made.first.c_str());
        file_ = std::move(made.second);
        reading_.rdbuf()->pubsetbuf(nullptr, 0);  // what is read is far apart
        reading_.open(path_of(file_), std::ios::binary);
    }
    const std::string_view bytes(reinterpret_cast<const char*>(kept_.data()),
                                 kept_.size() * sizeof(double));
    if (!write_fully(file_.number(), bytes)) {
        throw Failure(kRefused, "a temporary file", system_error(),
                      "set TMPDIR to a folder with room");
    }
    kept_.clear();
}

std::size_t Columns::rows_at_once() const {
    return std::max<std::size_t>(kMostKept / std::max<std::size_t>(columns_.size(), 1), 1);
}

void Columns::read(std::size_t firstRow, std::size_t rows, std::vector<double>& out) {
    if (file_.is_open() && !kept_.empty()) write_kept();
    out.resize(columns_.size() * rows);
    double* at = out.data();
    for (const Column& column : columns_) {
        const std::uint64_t start = column.start + firstRow;
        const std::size_t count = std::min(rows, column.size - std::min(column.size, firstRow));
        if (!file_.is_open()) {
            std::copy_n(kept_.begin() + static_cast<std::ptrdiff_t>(start), count, at);
        } else if (count > 0) {
            reading_.seekg(static_cast<std::streamoff>(start * sizeof(double)));
            reading_.read(reinterpret_cast<char*>(at),
                          static_cast<std::streamsize>(count * sizeof(double)));
        }
        at += rows;
    }
    if (file_.is_open() && !reading_) {
        throw Failure(kRefused, "a temporary file", "cannot be read again");
    }
}

}  // namespace uxtool
