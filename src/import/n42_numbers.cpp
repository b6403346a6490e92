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

#include "base/ascii.h"
#include "base/byte_search.h"
#include "base/decimal.h"

namespace ux {
namespace {

constexpr int kExactDigits = 15;  // an integer of so many digits is exact as a double
constexpr double kMostZeros = 1 << 30;
constexpr std::array<double, 16> kPowersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// Some instruments write commas or semicolons between the numbers.
bool is_separator(char c) {
    return is_blank(c) || c == ',' || c == ';';
}
unsigned digit_of(char c) {
    return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0';
}

// --- many numbers at one look ----------------------------------------------------------------------

constexpr std::size_t kLook = 64;
constexpr int kMostNumbers = kLook / 2;  // of a look: a byte of another kind stands behind each

#if UXTREE_SSE2_SEARCH
constexpr std::size_t kMostDigits = 8;

// What stands in the bytes of a look: which are digits, which of these are 0, and which are separators,
// one bit each. For every digit the number of up to four digits that ends with it.
struct Look {
    std::uint64_t digits = 0;
    std::uint64_t zeros = 0;
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
    look.digits = look.zeros = look.separators = 0;
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
        look.zeros |= bits(_mm_cmpeq_epi8(value, none)) << i;
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

#if UXTREE_SSE2_SEARCH
    // Looks at what comes. False where that is no whole number of up to eight digits, or the text is
    // nearly over.
    bool look_ahead() {
        if (at_ < lookedAt_ || static_cast<std::size_t>(end_ - at_) < kLook + kMostDigits) {
            return false;
        }
        look_at(at_, look_);
        const std::uint64_t others = ~(look_.digits | look_.separators);
        ends_ = ~look_.digits & (look_.digits << 1);
        if (others != 0) ends_ &= (others & (~others + 1)) - 1;  // those in front of the first
        const std::size_t length =
            static_cast<std::size_t>(std::countr_zero(ends_) - std::countr_zero(look_.digits));
        if (ends_ != 0 && length <= kMostDigits) return true;
        lookedAt_ = at_ + kLook;  // something else comes often
        return false;
    }
    // Is any number of the look 0, or does one begin with it?
    bool sees_zero() const {
        return (look_.zeros & ~(look_.digits << 1)) != 0;
    }
    // Goes over the numbers of the look as long as take, which gets each, yields true. False when it
    // has not gone over any.
    template <typename Take>
    bool take_seen(Take&& take) {
        const std::uint64_t digits = look_.digits;
        const bool areShort =
            (digits & (digits << 1) & (digits << 2) & (digits << 3) & (digits << 4)) == 0;
        std::uint64_t left = ends_;
        if (areShort) {
            for (; left != 0; left &= left - 1) {
                if (!take(look_.endingAt[static_cast<std::size_t>(std::countr_zero(left)) - 1]))
                    break;
            }
        } else {
            std::uint64_t starts = digits & ~(digits << 1);
            for (; left != 0; left &= left - 1, starts &= starts - 1) {
                const auto start = static_cast<std::size_t>(std::countr_zero(starts));
                const auto end = static_cast<std::size_t>(std::countr_zero(left));
                if (end - start > kMostDigits || !take(whole_number(at_ + start, end - start)))
                    break;
            }
        }
        const std::uint64_t taken = ends_ ^ left;
        if (taken == 0) return false;
        at_ += std::bit_width(taken) - 1;
        return true;
    }
#else
    bool look_ahead() {
        return false;
    }
    bool sees_zero() const {
        return false;
    }
    template <typename Take>
    bool take_seen(Take&& /*take*/) {
        return false;
    }
#endif

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
#if UXTREE_SSE2_SEARCH
    const char* lookedAt_ = nullptr;  // no look ahead before this
    Look look_;
    std::uint64_t ends_ = 0;  // of the numbers that are seen and not taken
#endif
    std::uint64_t unreadable_ = 0;
};

int run_length(double count) {
    if (!(count >= 0.5)) return 0;
    // A half goes up. NOLINTNEXTLINE(bugprone-incorrect-roundings)
    return static_cast<int>(std::min(count, kMostZeros) + 0.5);
}

}  // namespace

void NumberList::grow(int size) {
    array_.SetSize(size + size / 8 + 64);  // new values are 0
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

void append_seen(Tokens& tokens, NumberList& out) {
    out.make_spare(kMostNumbers);
    double* at = out.spare();
    tokens.take_seen([&](std::uint32_t number) {
        *at++ = number;
        return true;
    });
    out.take(static_cast<int>(at - out.spare()));
}

// Fills a list with the numbers of a compressed one.
class Expansion {
public:
    // Starts with an empty list.
    Expansion(RunAllowance& allowance, NumberList& out) : allowance_(allowance), out_(out) {}

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

    // The same for the numbers that tokens sees, as far as there is room; false when there was none.
    bool add_seen(Tokens& tokens) {
        if (inRun_ || tokens.sees_zero()) return add_within_room(tokens);
        append_seen(tokens, out_);
        return true;
    }

    std::uint64_t cut() const { return cut_; }

private:
    // What the numbers are like cannot be foreseen, so no branch depends on it: every number is
    // written, 0 for one that is no value, and taken or not.
    bool add_within_room(Tokens& tokens) {
        double* const data = out_.spare();
        const std::uint64_t room =
            std::min(allowance_.room(out_.size()), static_cast<std::uint64_t>(out_.spare_size()));
        std::uint64_t size = 0;
        std::uint64_t added = 0;
        std::uint64_t ofRun = inRun_ ? ~std::uint64_t{0} : 0;  // all bits or none
        const bool any = tokens.take_seen([&](std::uint64_t number) {
            const std::uint64_t isValue = number == 0 ? 0 : 1;
            const std::uint64_t step = (number & ofRun) | (isValue & ~ofRun);
            if (size + step >= room) return false;
            data[size] = static_cast<double>(static_cast<std::int64_t>(number & ~ofRun));
            added += (std::max<std::uint64_t>(number, 2) - 2) & ofRun;
            ofRun = (isValue - 1) & ~ofRun;
            size += step;
            return true;
        });
        inRun_ = ofRun != 0;
        out_.take(static_cast<int>(size));
        allowance_.spend(added);
        return any;
    }

    RunAllowance& allowance_;
    NumberList& out_;
    bool inRun_ = false;  // the number that comes is the count of a run
    std::uint64_t cut_ = 0;
};

}  // namespace

NumberLosses read_numbers(std::string_view text, NumberList& out) {
    out.clear();
    for (Tokens tokens(text);;) {
        if (tokens.look_ahead()) {
            append_seen(tokens, out);
        } else if (tokens.next()) {
            out.push(tokens.read());
        } else {
            return {tokens.unreadable(), 0};
        }
    }
}

NumberLosses read_counted_zeroes(std::string_view text, RunAllowance& allowance, NumberList& out) {
    out.clear();
    Expansion expansion(allowance, out);
    Tokens tokens(text);
    for (bool goesOn = true; goesOn;) {
        if (tokens.look_ahead() && expansion.add_seen(tokens)) continue;
        goesOn = tokens.next() && expansion.add(tokens.read());
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

std::optional<double> leading_number(const char* text) {
    while (is_blank(*text)) ++text;
    if (*text == '+' && text[1] != '-') ++text;
    const char* const digits = *text == '-' ? text + 1 : text;
    if (digit_of(*digits) > 9 && !(*digits == '.' && digit_of(digits[1]) < 10)) return std::nullopt;
    double value = 0;
    const DecimalRead read = read_decimal(text, value);
    if (read.length == 0 || read.range != DecimalRange::kInside) return std::nullopt;
    return value;
}

}  // namespace ux
