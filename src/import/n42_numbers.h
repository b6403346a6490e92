// Lists of numbers in the texts of spectrum files.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "uxtree/host/array.h"

namespace ux {

// A list of doubles that is filled again and again without giving its storage back.
class NumberList {
public:
    int size() const { return size_; }
    const double* data() const { return array_.GetData(); }
    void clear() {
        std::fill_n(data_, size_, 0.0);
        size_ = 0;
    }
    void push(double value) {
        if (size_ == capacity_) grow(size_ + 1);
        data_[size_++] = value;
    }
    void push_zeros(int count) {
        make_spare(count);
        take(count);
    }

    // The storage behind the values, and for how many it is. It is all 0; what is written there is
    // taken, or 0 again in the end.
    double* spare() { return data_ + size_; }
    int spare_size() const { return capacity_ - size_; }
    void take(int count) { size_ += count; }
    void make_spare(int count) {
        if (count > capacity_ - size_) grow(size_ + count);
    }
    // The values as the host's array, until the next change of the list.
    CArray<double, double>& array();

private:
    void grow(int size);

    CArray<double, double> array_;
    double* data_ = nullptr;
    int size_ = 0;
    int capacity_ = 0;
};

// How much more than it holds a file may write, in bytes or in numbers, so that a few bytes cannot
// ask for gigabytes. Recordings of any real size fit.
constexpr std::uint64_t output_allowance(std::uint64_t fileBytes) {
    return (1U << 24) + 16 * fileBytes;
}

// How many zeros the runs of one file may still add.
class RunAllowance {
public:
    static constexpr int kLongestList = 1 << 20;

    explicit RunAllowance(std::uint64_t fileBytes) : left_(output_allowance(fileBytes)) {}
    // The part of a run of count zeros that a list of listSize values may take.
    int take(int listSize, int count);
    // A run that is shorter gets what it asks for.
    std::uint64_t room(int listSize) const {
        return std::min(left_, static_cast<std::uint64_t>(std::max(kLongestList - listSize, 0)));
    }
    // Takes what runs have added that were within the room.
    void spend(std::uint64_t added) { left_ -= added; }

private:
    std::uint64_t left_;
};

// What a text of numbers could not give.
struct NumberLosses {
    std::uint64_t unreadable = 0;  // tokens that are no finite decimal numbers and count as 0
    std::uint64_t cut = 0;         // zeros that a bound left out of the run that ends the list
};

// Numbers are separated by runs of TAB, LF, CR, space, comma and semicolon. A token that is no finite
// decimal number counts as 0. The lists are emptied first.
NumberLosses read_numbers(std::string_view text, NumberList& out);

// The same for a compressed list: a 0 is followed by a count and stands for that many zeros. A
// count is rounded to the nearest integer; below 1 it stands for none, and a 0 at the end, which
// has no count, is dropped. A run that the allowance cuts ends the list.
NumberLosses read_counted_zeroes(std::string_view text, RunAllowance& allowance, NumberList& out);

// Does the text hold at least one number, or a compressed list at least one value?
bool has_numbers(std::string_view text);
bool has_counted_zeroes(std::string_view text);

// The decimal number at the start of text, behind white space.
std::optional<double> leading_number(const char* text);
// A polynomial at x by Horner's rule, coefficients by ascending powers. A value that has left the
// range of doubles stays there, so lists of coefficients without end cost no more than real ones.
double polynomial_at(const std::vector<double>& coefficients, double x);
// How many tokens the text has.
std::size_t count_numbers(std::string_view text);

}  // namespace ux
