// Tokens, numbers, names and files: the fixed helpers of the host.
#include "uxtree/host/utilities.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <system_error>
#include <utility>

#include "base/ascii.h"
#include "base/decimal.h"
#include "base/platform.h"
#include "base/text_view.h"
#include "base/xml_names.h"

namespace {
using ux::is_digit;
using ux::trimmed;
using ux::view_of;

bool separates(char c, char separator) {
    if (separator != ' ') return c == separator;
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// One token from `at` on, without its quotes; `at` moves to the separator behind it or to the end.
void next_token(std::string_view text, std::size_t& at, char separator, char quote,
                std::string& token) {
    token.clear();
    bool quoted = false;
    while (at < text.size()) {
        const auto isQuote = [&](std::size_t place) {
            return quote != '\0' && place < text.size() && text[place] == quote;
        };
        const std::size_t first = at;
        while (at < text.size() && !isQuote(at) && (quoted || !separates(text[at], separator)))
            ++at;
        token.append(text, first, at - first);
        if (!isQuote(at)) return;
        const bool doubled = quoted && isQuote(at + 1);
        if (doubled) token += quote;
        if (!doubled) quoted = !quoted;
        at += doubled ? 2 : 1;
    }
}

// A decimal number taken apart: the digits before and after the point, and the exponent.
struct Decimal {
    bool negative = false;
    std::string_view whole;
    std::string_view fraction;
    std::int64_t exponent = 0;

    char digit(std::size_t i) const {
        return i < whole.size() ? whole[i] : fraction[i - whole.size()];
    }
    std::size_t digits() const { return whole.size() + fraction.size(); }
};

std::string_view take_digits(std::string_view& text) {
    std::size_t length = 0;
    while (length < text.size() && is_digit(text[length])) ++length;
    const std::string_view digits = text.substr(0, length);
    text.remove_prefix(length);
    return digits;
}

bool take_sign(std::string_view& text) {
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    return negative;
}

// Reads "e" with its digits; false when there are none. An absurd exponent is cut.
bool take_exponent(std::string_view& text, std::int64_t& exponent) {
    constexpr std::int64_t kLargest = std::int64_t{1} << 40;
    text.remove_prefix(1);
    const bool negative = take_sign(text);
    const std::string_view digits = take_digits(text);
    if (digits.empty()) return false;
    std::int64_t value = 0;
    for (const char c : digits) value = std::min(value * 10 + (c - '0'), kLargest);
    exponent = negative ? -value : value;
    return true;
}

bool take_apart(std::string_view text, Decimal& number) {
    text = trimmed(text);
    number.negative = take_sign(text);
    number.whole = take_digits(text);
    if (!text.empty() && text.front() == '.') {
        text.remove_prefix(1);
        number.fraction = take_digits(text);
    }
    if (number.digits() == 0) return false;
    if (!text.empty() && (text.front() == 'e' || text.front() == 'E')) {
        if (!take_exponent(text, number.exponent)) return false;
    }
    return text.empty();
}

// The digits before the point once the exponent is applied: truncation by text is exact for every
// length, where a double in between would round. False above 32 bits.
bool integer_part(const Decimal& number, std::uint64_t& value) {
    const std::int64_t wanted = static_cast<std::int64_t>(number.whole.size()) + number.exponent;
    value = 0;
    for (std::int64_t i = 0; i < wanted; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const bool written = at < number.digits();
        if (!written && value == 0) return true;
        value = value * 10 + static_cast<std::uint64_t>(written ? number.digit(at) - '0' : 0);
        if (value > std::numeric_limits<std::uint32_t>::max()) return false;
    }
    return true;
}

bool reads_back(const char* begin, const char* end, double value) {
    double back = 0;
    ux::read_decimal({begin, static_cast<std::size_t>(end - begin)}, back);
    return std::bit_cast<std::uint64_t>(back) == std::bit_cast<std::uint64_t>(value);
}

// The rule as it stands: 15 digits, else 16, else 17. Yields the end of the text.
char* print_by_trial(double value, char* begin, char* end) {
    char* written = begin;
    for (int precision = 15; precision <= 17; ++precision) {
        written = std::to_chars(begin, end, value, std::chars_format::general, precision).ptr;
        if (reads_back(begin, written, value)) break;
    }
    return written;
}

// Does the shortest text that reads back have the digits of the rule? It has the fewest digits,
// and of those the nearest to the value, so they are what rounding to that many digits gives. But
// below a power of two the numbers lie closer, so that the nearest digits may not read back, and
// a subnormal number has a shorter text than its 15 digits.
bool shortest_follows_rule(double value) {
    constexpr std::uint64_t kMantissa = (std::uint64_t{1} << 52U) - 1;
    return std::isnormal(value) && (std::bit_cast<std::uint64_t>(value) & kMantissa) != 0;
}

// Writes digits, the first of which stands for 10 to the power of exponent, without an exponent.
char* lay_out(std::string_view digits, int exponent, char* out) {
    if (exponent < 0) {
        out = std::copy_n("0.000", 1 - exponent, out);
        return std::copy(digits.begin(), digits.end(), out);
    }
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    const std::size_t written = std::min(whole, digits.size());
    out = std::copy_n(digits.begin(), written, out);
    out = std::fill_n(out, whole - written, '0');
    if (written == digits.size()) return out;
    *out++ = '.';
    return std::copy(digits.begin() + exponent + 1, digits.end(), out);
}

// The rule at the cost of one conversion: the shortest digits in the form that %g gives them.
char* print_shortest(double positive, char* begin, char* end) {
    char* const written = std::to_chars(begin, end, positive, std::chars_format::scientific).ptr;
    char* const mark = std::find(begin, written, 'e');
    int exponent = 0;
    std::from_chars(mark[1] == '+' ? mark + 2 : mark + 1, written, exponent);

    const std::ptrdiff_t count = std::max<std::ptrdiff_t>(mark - begin - 1, 1);  // less the point
    if (exponent < -4 || exponent >= std::max<std::ptrdiff_t>(count, 15)) return written;
    std::array<char, 20> digits = {*begin};
    std::copy(std::min(begin + 2, mark), mark, digits.begin() + 1);
    return lay_out({digits.data(), static_cast<std::size_t>(count)}, exponent, begin);
}

// Four to eight digits at once, in the bytes of a word: pairs of digits are added up to numbers
// below a hundred, those to numbers below ten thousand, and those to the number.
bool parse_word_of_digits(std::string_view text, int& value) {
    std::uint32_t first = 0;
    std::uint32_t last = 0;  // overlap unless there are eight
    std::memcpy(&first, text.data(), 4);
    std::memcpy(&last, text.data() + text.size() - 4, 4);
    if constexpr (std::endian::native == std::endian::big) {
        first = __builtin_bswap32(first);
        last = __builtin_bswap32(last);
    }
    const auto end = static_cast<unsigned>(8 * text.size());
    std::uint64_t digits = (first | std::uint64_t{last} << (end - 32)) ^ 0x3030303030303030U;
    digits <<= 64 - end;  // zeros in front, the last digit in the highest byte
    if (((digits | (digits + 0x7676767676767676U)) & 0x8080808080808080U) != 0) return false;
    digits = digits * 10 + (digits >> 8);
    digits = ((digits & 0x000000FF000000FFU) * 0x000F424000000064U +
              (digits >> 16 & 0x000000FF000000FFU) * 0x0000271000000001U) >>
             32;
    value = static_cast<int>(static_cast<std::uint32_t>(digits));
    return true;
}

char* print_double(double value, char* begin, char* end) {
    constexpr double kPlainDigits = 1e15;  // below it an integer has no exponent in 15 digits
    const bool whole = std::abs(value) < kPlainDigits && value == std::trunc(value);
    if (whole && !(value == 0 && std::signbit(value))) {
        return std::to_chars(begin, end, static_cast<std::int64_t>(value)).ptr;
    }
    if (!shortest_follows_rule(value)) return print_by_trial(value, begin, end);
    if (value < 0) *begin++ = '-';
    return print_shortest(std::abs(value), begin, end);
}
// The usual integer, without anything around its digits.
bool parse_plain_digits(std::string_view text, int& value) {
    constexpr std::size_t kSafeDigits = 9;
    if (text.size() >= 4 && text.size() <= 8) return parse_word_of_digits(text, value);
    if (text.empty() || text.size() > kSafeDigits) return false;
    int number = 0;
    for (const char c : text) {
        if (!is_digit(c)) return false;
        number = number * 10 + (c - '0');
    }
    value = number;
    return true;
}

// Apart because most integers are plain, and its frame is a large one.
[[gnu::noinline]] bool parse_any_integer(std::string_view text, int& value) {
    Decimal number;
    std::uint64_t magnitude = 0;
    if (!take_apart(text, number) || !integer_part(number, magnitude)) return false;
    if (number.negative) {
        if (magnitude > 0x80000000U) return false;
        magnitude = 0U - magnitude;
    }
    value = static_cast<int>(static_cast<std::uint32_t>(magnitude));
    return true;
}

}  // namespace

bool UXIsName(std::string_view text) {
    return ux::is_name(text);
}

int UXGetTokens(CWBOStringArray& tokens, const char* text, char separator, char quote) {
    const std::string_view rest = view_of(text);
    const bool keepEmpty = separator != ' ';
    CWBOStringArray found;  // text may be one of the old tokens
    std::string token;
    for (std::size_t at = 0; at < rest.size(); ++at) {
        next_token(rest, at, separator, quote, token);
        if (keepEmpty || !token.empty()) found.AddText(token);
        const bool endsWithSeparator = at + 1 == rest.size();
        if (keepEmpty && endsWithSeparator) found.AddText({});
    }
    tokens = std::move(found);
    return tokens.GetSize();
}

int UXSeparateByString(CWBOStringArray& pieces, const char* text, const char* separator) {
    const std::string_view all = view_of(text);
    const std::string_view between = view_of(separator);
    CWBOStringArray found;  // text may be one of the old pieces
    std::size_t start = 0;
    while (!between.empty()) {
        const std::size_t end = all.find(between, start);
        if (end == std::string_view::npos) break;
        found.AddText(all.substr(start, end - start));
        start = end + between.size();
    }
    if (!all.empty()) found.AddText(all.substr(start));
    pieces = std::move(found);
    return pieces.GetSize();
}

int UXJoinTokens(CStringUTF8& out, const CWBOStringArray& tokens, const char* separator) {
    CStringUTF8 joined;  // out may be one of the tokens
    for (int i = 0; i < tokens.GetSize(); ++i) {
        if (i > 0) joined += separator;
        joined += tokens[i];
    }
    out = std::move(joined);
    return tokens.GetSize();
}

bool UXParseDouble(std::string_view text, double& value) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return false;
    }
    double number = 0;
    const ux::DecimalRead read = ux::read_decimal(text, number);
    if (read.length == 0 || read.length != text.size()) return false;
    if (read.range == ux::DecimalRange::kTooLarge) return false;
    value = number;
    return true;
}

bool UXParseInt(std::string_view text, int& value) {
    return parse_plain_digits(text, value) || parse_any_integer(text, value);
}

int UXLeadingInt(const char* text) {
    std::string_view rest = view_of(text);
    while (!rest.empty() && ux::is_space(rest.front())) rest.remove_prefix(1);
    const bool negative = take_sign(rest);
    constexpr std::int64_t kLargest = std::int64_t{std::numeric_limits<int>::max()};
    const std::int64_t limit = negative ? kLargest + 1 : kLargest;
    std::int64_t value = 0;
    for (const char c : take_digits(rest)) value = std::min(value * 10 + (c - '0'), limit);
    return static_cast<int>(negative ? -value : value);
}

void UXFormatDouble(double value, CStringUTF8& out) {
    if (!std::isfinite(value)) value = UXMissingValue();
    std::array<char, 48> buffer;
    const char* const end = print_double(value, buffer.data(), buffer.data() + buffer.size());
    out.Assign(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
}

double UXMissingValue() {
    return std::bit_cast<double>(std::uint64_t{0x81AA74FE1C132C0E});
}

int UXAccess(const char* path, int /*mode*/) {
    const bool isFile = path != nullptr && ux::facts_of(path).kind == ux::FileKind::kRegular;
    return isFile && ux::may_read(path) ? 0 : -1;
}
