// Columns of numbers that come one after another and are written row by row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <vector>

#include "support/platform.h"

namespace uxtool {

// Keeps a few megabytes in memory and the rest in a temporary file. Throws Failure with kRefused.
class Columns {
public:
    void add(const std::vector<double>& values);
    std::size_t longest() const { return longest_; }
    // How many rows are read at once, so that they take as much memory as is kept otherwise.
    std::size_t rows_at_once() const;
    // Reads rows of all columns: row i of column c becomes out[c * rows + i], where the column is
    // that long.
    void read(std::size_t firstRow, std::size_t rows, std::vector<double>& out);

private:
    struct Column {
        std::uint64_t start = 0;  // in values
        std::size_t size = 0;
    };

    void write_kept();

    std::vector<Column> columns_;
    std::uint64_t end_ = 0;
    std::size_t longest_ = 0;
    std::vector<double> kept_;  // what is not in the file
    Descriptor file_;
    std::ifstream reading_;
};

}  // namespace uxtool
