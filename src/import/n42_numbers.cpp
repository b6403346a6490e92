// Reading lists of numbers, plain ones and ones with counted zeroes.
#include "import/n42_numbers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "uxtree/host/utilities.h"

#include "base/byte_search.h"
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
unsigned digit_of(char c) {
    return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0';
}

// --- many numbers at one look ----------------------------------------------------------------------

constexpr std::size_t kLook = 64;
constexpr std::size_t kMostDigits = 8;
// The whole numbers of a look, which has a byte of another kind behind each.
using Numbers = std::array<std::uint32_t, kLook / 2>;

#if UXTREE_SSE2_SEARCH
// What stands in the bytes of a look: which are digits, and which are separators, one bit each. For
// every digit the number of up to four digits that ends with it.
struct Look {
    std::uint64_t digits = 0;
    std::uint64_t separators = 0;
    alignas(16) std::array<std::uint16_t, kLook> endingAt;
};

// The bytes moved on by some places, with the last ones of the vector before in front.
template <int places>
__m128i moved(__m128i bytes, __m128i before) {
    return _mm_or_si128(_mm_slli_si128(bytes, places), _mm_srli_si128(before, 16 - places));
}

std::uint64_t bits(__m128i lanes) {
    return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(lanes)));
}

void look_at(const char* bytes, Look& look) {
    const __m128i none = _mm_setzero_si128();
    const __m128i hundred = _mm_set1_epi16(100);
    __m128i oldKind = none;
    __m128i oldDigit = none;
    __m128i oldPair = none;
    for (unsigned i = 0; i < kLook; i += 16) {
        const __m128i text = load_16(bytes + i);
        const auto is = [text](char c) { return _mm_cmpeq_epi8(text, _mm_set1_epi8(c)); };
        look.separators |=
            bits(_mm_or_si128(_mm_or_si128(_mm_or_si128(is(' '), is('\n')), is('\r')),
                              _mm_or_si128(_mm_or_si128(is('\t'), is(',')), is(';'))))
            << i;
        const __m128i value = _mm_sub_epi8(text, _mm_set1_epi8('0'));
        const __m128i kind = _mm_cmpeq_epi8(_mm_min_epu8(value, _mm_set1_epi8(9)), value);
        look.digits |= bits(kind) << i;
        // Each digit with the one before; then each such pair with the pair before.
        const __m128i digit = _mm_and_si128(value, kind);
        const __m128i tens = moved<1>(digit, oldDigit);
        const __m128i twice = _mm_add_epi8(tens, tens);
        const __m128i eightfold =
            _mm_add_epi8(_mm_add_epi8(twice, twice), _mm_add_epi8(twice, twice));
        const __m128i pair =
            _mm_and_si128(_mm_add_epi8(digit, _mm_add_epi8(eightfold, twice)), kind);
        const __m128i hundreds = _mm_and_si128(moved<2>(pair, oldPair), moved<1>(kind, oldKind));
        const auto store = [&](unsigned at, __m128i low, __m128i high) {
            const __m128i number = _mm_add_epi16(low, _mm_mullo_epi16(high, hundred));
            _mm_store_si128(reinterpret_cast<__m128i*>(look.endingAt.data() + at), number);
        };
        store(i, _mm_unpacklo_epi8(pair, none), _mm_unpacklo_epi8(hundreds, none));
        store(i + 8, _mm_unpackhi_epi8(pair, none), _mm_unpackhi_epi8(hundreds, none));
        oldKind = kind;
        oldDigit = digit;
        oldPair = pair;
    }
}

// One to eight digits, of eight readable bytes.
std::uint32_t whole_number(const char* digits, std::size_t length) {
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t eight = 0;
    std::memcpy(&eight, digits, sizeof eight);
    // As if the number began with zeros; then neighbours are joined, pairs of them, and so on.
    eight = (eight << (8 * (kMostDigits - length))) & 0x0F0F0F0F0F0F0F0FU;
    eight = (eight * 10 + (eight >> 8)) & 0x00FF00FF00FF00FFU;
    eight = (eight * 100 + (eight >> 16)) & 0x0000FFFF0000FFFFU;
    return static_cast<std::uint32_t>(eight * 10000 + (eight >> 32));
}
#endif

// --- one after the other --------------------------------------------------------------------------

// Steps over the tokens of a text.
class Tokens {
public:
    explicit Tokens(std::string_view text) : at_(text.data()), end_(at_ + text.size()) {}

    // Goes to the next token; false at the end of the text.
    bool next() {
        while (at_ != end_ && is_separator(*at_)) ++at_;
        return at_ != end_;
    }
    // Reads the token. Most that read_ahead leaves are plain decimal fractions: with the whole numbers
    // they are exact as one division at most.
    double read() {
        const char* const start = at_;
        std::uint64_t number = read_digits(0);
        if (ends_here() && at_ - start <= kExactDigits) return static_cast<double>(number);
        if (at_ != end_ && *at_ == '.' && at_ != start) {
            const char* const point = at_++;
            number = read_digits(number);
            if (ends_here() && at_ - start <= kExactDigits) {
                return static_cast<double>(number) /
                       kPowersOfTen[static_cast<std::size_t>(at_ - point - 1)];
            }
        }
        return read_any(start);
    }

    // Goes over whole numbers of up to eight digits, as far as they are seen at one look. Yields how
    // many; 0 where something else stands or the text is nearly over.
    std::size_t read_ahead(Numbers& out) {
#if UXTREE_SSE2_SEARCH
        if (at_ < lookedAt_ || static_cast<std::size_t>(end_ - at_) < kLook + kMostDigits) return 0;
        Look look;
        look_at(at_, look);
        const std::uint64_t digits = look.digits;
        std::uint64_t starts = digits & ~(digits << 1);
        std::uint64_t ends = ~digits & (digits << 1);
        const std::uint64_t others = ~(digits | look.separators);
        if (others != 0) ends &= (others & (~others + 1)) - 1;  // those in front of the first
        const bool areShort =
            (digits & (digits << 1) & (digits << 2) & (digits << 3) & (digits << 4)) == 0;
        std::size_t count = 0;
        const char* behind = at_;
        for (; ends != 0; ends &= ends - 1, starts &= starts - 1) {
            const auto end = static_cast<std::size_t>(std::countr_zero(ends));
            if (areShort) {
                out[count++] = look.endingAt[end - 1];
            } else {
                const auto start = static_cast<std::size_t>(std::countr_zero(starts));
                if (end - start > kMostDigits) break;
                out[count++] = whole_number(at_ + start, end - start);
            }
            behind = at_ + end;
        }
        if (count == 0) lookedAt_ = at_ + kLook;  // something else comes often
        at_ = behind;
        return count;
#else
        static_cast<void>(out);
        return 0;
#endif
    }

    // Goes over the token without reading it.
    void skip() {
        while (!ends_here()) ++at_;
    }
    // How many tokens were no numbers.
    std::uint64_t unreadable() const {
        return unreadable_;
    }

private:
    bool ends_here() const {
        return at_ == end_ || is_separator(*at_);
    }
    std::uint64_t read_digits(std::uint64_t number) {
        for (; at_ != end_ && digit_of(*at_) < 10; ++at_) number = number * 10 + digit_of(*at_);
        return number;
    }
    double read_any(const char* start) {
        skip();
        double value = 0;
        const std::string_view token(start, static_cast<std::size_t>(at_ - start));
        if (UXParseDouble(token, value) && std::isfinite(value)) return value;
        ++unreadable_;
        return 0;
    }

    const char* at_;
    const char* end_;
    const char* lookedAt_ = nullptr;  // no look ahead before this
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

namespace {

// Fills a list with the numbers of a compressed one.
class Expansion {
public:
    // Starts with an empty list.
    Expansion(RunAllowance& allowance, NumberList& out) : allowance_(allowance), out_(out) {
        std::fill_n(out_.spare(), out_.spare_size(), 0.0);
    }

    // False when the allowance has cut a run, which ends the list.
    bool add(double value) {
        if (!inRun_) {
            inRun_ = value == 0;
            if (!inRun_) out_.push(value);
            return true;
        }
        inRun_ = false;
        const int count = run_length(value);
        const int taken = allowance_.take(out_.size(), count);
        out_.push_zeros(taken);
        cut_ = static_cast<std::uint64_t>(count - taken);
        return cut_ == 0;
    }

    // The same for the first of several numbers, as many as there is room for; yields how many. What
    // they are like cannot be foreseen, so no branch depends on it: every number is written, and what
    // is no value is not taken. The storage behind the values is all 0.
    std::size_t add_first_of(const std::uint32_t* numbers, std::size_t count) {
        double* const data = out_.spare();
        const std::uint64_t room =
            std::min(allowance_.room(out_.size()), static_cast<std::uint64_t>(out_.spare_size()));
        std::uint64_t size = 0;
        std::uint64_t added = 0;
        std::size_t i = 0;
        std::uint64_t inRun = inRun_ ? 1 : 0;
        for (; i < count; ++i) {
            const std::uint64_t number = numbers[i];
            const std::uint64_t isZero = number == 0 ? 1 : 0;
            const std::uint64_t ofRun = ~inRun + 1;  // all bits or none
            const std::uint64_t step = (number & ofRun) | ((1 - isZero) & ~ofRun);
            if (size + step >= room) break;
            data[size] = static_cast<double>(static_cast<std::int64_t>(number & ~ofRun));
            added += (std::max<std::uint64_t>(number, 2) - 2) & ofRun;
            inRun = isZero & ~inRun;
            size += step;
        }
        inRun_ = inRun != 0;
        out_.take(static_cast<int>(size));
        allowance_.spend(added);
        return i;
    }

    std::uint64_t cut() const { return cut_; }

private:
    RunAllowance& allowance_;
    NumberList& out_;
    bool inRun_ = false;  // the number that comes is the count of a run
    std::uint64_t cut_ = 0;
};

}  // namespace

NumberLosses read_numbers(std::string_view text, NumberList& out) {
    out.clear();
    Tokens tokens(text);
    Numbers numbers;
    for (;;) {
        const std::size_t count = tokens.read_ahead(numbers);
        out.make_spare(static_cast<int>(count));
        std::copy_n(numbers.begin(), count, out.spare());
        out.take(static_cast<int>(count));
        if (count != 0) continue;
        if (!tokens.next()) return {tokens.unreadable(), 0};
        out.push(tokens.read());
    }
}

NumberLosses read_counted_zeroes(std::string_view text, RunAllowance& allowance, NumberList& out) {
    out.clear();
    Expansion expansion(allowance, out);
    Tokens tokens(text);
    Numbers numbers;
    for (bool goesOn = true; goesOn;) {
        const std::size_t count = tokens.read_ahead(numbers);
        for (std::size_t i = 0; i < count && goesOn;) {
            i += expansion.add_first_of(numbers.data() + i, count - i);
            if (i < count) goesOn = expansion.add(numbers[i++]);
        }
        if (count == 0) goesOn = tokens.next() && expansion.add(tokens.read());
    }
    return {tokens.unreadable(), expansion.cut()};
}

bool has_numbers(std::string_view text) {
    return Tokens(text).next();
}

bool has_counted_zeroes(std::string_view text) {
    for (Tokens tokens(text); tokens.next();) {
        if (tokens.read() != 0) return true;
        if (tokens.next() && run_length(tokens.read()) > 0) return true;
    }
    return false;
}

std::size_t count_numbers(std::string_view text) {
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
