// Reading lists of numbers, plain ones and ones with counted zeroes.
#include "import/n42_numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "uxtree/host/utilities.h"

#include "base/decimal.h"

namespace ux {
namespace {

constexpr int kExactDigits = 15;  // an integer of so many digits is exact as a double
constexpr double kMostZeros = 1 << 30;
constexpr std::array<double, 16> kPowersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

bool is_blank(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}
// Some instruments write commas or semicolons between the numbers.
bool is_separator(char c) {
    return is_blank(c) || c == ',' || c == ';';
}
bool ends_token(char c) {
    return is_separator(c) || c == '\0';
}
unsigned digit_of(char c) {
    return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0';
}

// Steps over the tokens of a text.
class Tokens {
public:
    explicit Tokens(const char* text) : at_(text) {}

    // Goes to the next token; false at the end of the text.
    bool next() {
        while (is_separator(*at_)) ++at_;
        return *at_ != '\0';
    }
    // Reads the token. Almost all are short whole numbers, and most others plain decimal
    // fractions; both are exact as one division at most.
    double read() {
        const char* const start = at_;
        std::uint64_t number = 0;
        for (; digit_of(*at_) < 10; ++at_) number = number * 10 + digit_of(*at_);
        if (ends_token(*at_) && at_ - start <= kExactDigits) return static_cast<double>(number);
        if (*at_ == '.' && at_ != start) {
            const char* const point = at_++;
            for (; digit_of(*at_) < 10; ++at_) number = number * 10 + digit_of(*at_);
            if (ends_token(*at_) && at_ - start <= kExactDigits) {
                return static_cast<double>(number) /
                       kPowersOfTen[static_cast<std::size_t>(at_ - point - 1)];
            }
        }
        return read_any(start);
    }

    // Goes over the token without reading it.
    void skip() {
        while (!ends_token(*at_)) ++at_;
    }
    // How many tokens were no numbers.
    std::uint64_t unreadable() const { return unreadable_; }

private:
    double read_any(const char* start) {
        skip();
        double value = 0;
        const std::string_view token(start, static_cast<std::size_t>(at_ - start));
        if (UXParseDouble(token, value) && std::isfinite(value)) return value;
        ++unreadable_;
        return 0;
    }

    const char* at_;
    std::uint64_t unreadable_ = 0;
};

int run_length(double count) {
    if (!(count >= 0.5)) return 0;
    return static_cast<int>(std::min(count, kMostZeros) + 0.5);  // rounded
}

// False when text starts with no number.
bool take_leading_number(const char* text, double& value) {
    while (is_blank(*text)) ++text;
    if (*text == '+' && text[1] != '-') ++text;
    const char* const digits = *text == '-' ? text + 1 : text;
    if (digit_of(*digits) > 9 && !(*digits == '.' && digit_of(digits[1]) < 10)) return false;
    const DecimalRead read = read_decimal(text, value);
    return read.length > 0 && read.range == DecimalRange::kInside;
}

}  // namespace

void NumberList::push_zeros(int count) {
    if (count > capacity_ - size_) grow(size_ + count);
    std::fill_n(data_ + size_, count, 0.0);
    size_ += count;
}

void NumberList::grow(int size) {
    array_.SetSize(size_);
    array_.SetSize(std::max(size, 2 * capacity_ + 64));
    data_ = array_.GetData();
    capacity_ = array_.GetSize();
}

CArray<double, double>& NumberList::array() {
    array_.SetSize(size_);
    capacity_ = size_;
    return array_;
}

int RunAllowance::take(int listSize, int count) {
    const int room = std::max(kLongestList - listSize, 0);
    int taken = std::min(count, room);
    // A run replaces two values, so its first two zeros are free.
    if (taken > 2 && static_cast<std::uint64_t>(taken - 2) > left_) {
        taken = static_cast<int>(left_) + 2;
    }
    left_ -= static_cast<std::uint64_t>(std::max(taken - 2, 0));
    return taken;
}

NumberLosses read_numbers(const char* text, NumberList& out) {
    out.clear();
    Tokens tokens(text);
    while (tokens.next()) out.push(tokens.read());
    return {tokens.unreadable(), 0};
}

NumberLosses read_counted_zeroes(const char* text, RunAllowance& allowance, NumberList& out) {
    out.clear();
    Tokens tokens(text);
    while (tokens.next()) {
        const double value = tokens.read();
        if (value != 0) {
            out.push(value);
            continue;
        }
        if (!tokens.next()) break;
        const int count = run_length(tokens.read());
        const int taken = allowance.take(out.size(), count);
        out.push_zeros(taken);
        if (taken < count) {
            return {tokens.unreadable(), static_cast<std::uint64_t>(count - taken)};
        }
    }
    return {tokens.unreadable(), 0};
}

bool has_numbers(const char* text) {
    return Tokens(text).next();
}

bool has_counted_zeroes(const char* text) {
    for (Tokens tokens(text); tokens.next();) {
        if (tokens.read() != 0) return true;
        if (tokens.next() && run_length(tokens.read()) > 0) return true;
    }
    return false;
}

std::size_t count_numbers(const char* text) {
    std::size_t count = 0;
    for (Tokens tokens(text); tokens.next(); ++count) tokens.skip();
    return count;
}

double polynomial_at(const std::vector<double>& coefficients, double x) {
    double value = 0;
    for (auto at = coefficients.rbegin(); at != coefficients.rend(); ++at) {
        value = value * x + *at;
        if (!std::isfinite(value)) return value;
    }
    return value;
}

bool starts_with_number(const char* text) {
    double value = 0;
    return take_leading_number(text, value);
}

double leading_number(const char* text) {
    double value = 0;
    return take_leading_number(text, value) ? value : 0;
}

}  // namespace ux
