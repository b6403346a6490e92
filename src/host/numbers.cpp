// Whole number arrays moved between the value of an element and an array of a caller.
#include "host/numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <type_traits>

#include "uxtree/host/utilities.h"

#include "base/ascii.h"

namespace uxhost {
namespace {
using ux::is_space;
using ux::trimmed;

// The next run of characters that are not white space; empty at the end. Advances text.
std::string_view next_token(std::string_view& text) {
    std::size_t begin = 0;
    while (begin < text.size() && is_space(text[begin])) ++begin;
    std::size_t end = begin;
    while (end < text.size() && !is_space(text[end])) ++end;
    const std::string_view token = text.substr(begin, end - begin);
    text.remove_prefix(end);
    return token;
}

template <typename T>
bool parse_integer(std::string_view token, T& value) {
    const char* begin = token.data() + (!token.empty() && token[0] == '+' ? 1 : 0);
    const auto [stop, error] = std::from_chars(begin, token.data() + token.size(), value);
    if (error == std::errc() && stop == token.data() + token.size()) return true;
    // A real text is truncated toward zero; the bounds are exact as doubles or rounded outward.
    double number = 0;
    if (!UXParseDouble(token, number)) return false;
    number = std::trunc(number);
    const double low = static_cast<double>(std::numeric_limits<T>::min());
    const double high = std::ldexp(1.0, std::numeric_limits<T>::digits);
    if (number < low || number >= high) return false;
    value = static_cast<T>(number);
    return true;
}

template <typename T>
bool parse_number(std::string_view token, T& value) {
    if constexpr (std::is_same_v<T, bool>) {
        return parse_bool(token, value);
    } else if constexpr (std::is_same_v<T, int>) {
        return UXParseInt(token, value);
    } else if constexpr (std::is_integral_v<T>) {
        return parse_integer(token, value);
    } else {
        double number = 0;
        if (!UXParseDouble(token, number)) return false;
        if (std::fabs(number) > static_cast<double>(std::numeric_limits<T>::max())) return false;
        value = static_cast<T>(number);
        return true;
    }
}

template <typename T>
bool read_into(const Document& document, const Element& element, CArray<T, T>& out) {
    CArray<T, T> numbers;
    if constexpr (std::is_same_v<T, double>) {
        if (!is_text(element.valueKind)) {
            numbers.SetSize(static_cast<int>(document.number_count(element)));
            document.get_doubles(element, numbers.GetData());
            out = std::move(numbers);
            return true;
        }
    }
    CStringUTF8 scratch;
    std::string_view text = document.value_text(element, scratch);
    for (std::string_view token = next_token(text); !token.empty(); token = next_token(text)) {
        T number{};
        if (!parse_number(token, number)) return false;
        numbers.Add(number);
    }
    out = std::move(numbers);
    return true;
}

template <typename T>
void append_number(std::string& text, T number) {
    if constexpr (std::is_floating_point_v<T>) {
        CStringUTF8 formatted;
        UXFormatDouble(static_cast<double>(number), formatted);
        text += formatted;
    } else if constexpr (std::is_same_v<T, bool>) {
        text += number ? '1' : '0';
    } else {
        // Character types are numbers too.
        using Wide = std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>;
        text += std::to_string(static_cast<Wide>(number));
    }
}

template <typename T>
void write_from(Document& document, Element& element, const CArray<T, T>& numbers) {
    if constexpr (std::is_same_v<T, double>) {
        document.set_doubles(element, numbers.GetData(),
                             static_cast<std::size_t>(numbers.GetSize()));
    } else {
        std::string text;
        for (int i = 0; i < numbers.GetSize(); ++i) {
            if (i != 0) text += ' ';
            append_number(text, numbers[i]);
        }
        document.set_value(element, text);
    }
}

// Calls action with the descriptor's array as what it is; false for a descriptor of nothing.
template <typename Action>
bool with_array(const UXVectorDesc& vector, Action&& action) {
    const auto as = [&](auto* typed) {
        return action(*static_cast<CArray<std::remove_pointer_t<decltype(typed)>,
                                          std::remove_pointer_t<decltype(typed)>>*>(vector.array));
    };
    switch (vector.element) {
        case UXVectorDesc::Element::kBool:
            return as(static_cast<bool*>(nullptr));
        case UXVectorDesc::Element::kChar:
            return as(static_cast<char*>(nullptr));
        case UXVectorDesc::Element::kUChar:
            return as(static_cast<unsigned char*>(nullptr));
        case UXVectorDesc::Element::kShort:
            return as(static_cast<short*>(nullptr));
        case UXVectorDesc::Element::kUShort:
            return as(static_cast<unsigned short*>(nullptr));
        case UXVectorDesc::Element::kInt:
            return as(static_cast<int*>(nullptr));
        case UXVectorDesc::Element::kUInt:
            return as(static_cast<unsigned int*>(nullptr));
        case UXVectorDesc::Element::kInt64:
            return as(static_cast<std::int64_t*>(nullptr));
        case UXVectorDesc::Element::kUInt64:
            return as(static_cast<std::uint64_t*>(nullptr));
        case UXVectorDesc::Element::kFloat:
            return as(static_cast<float*>(nullptr));
        case UXVectorDesc::Element::kDouble:
            return as(static_cast<double*>(nullptr));
        case UXVectorDesc::Element::kNone:
        case UXVectorDesc::Element::kText:
            break;
    }
    return false;
}

}  // namespace

bool parse_bool(std::string_view text, bool& value) {
    text = trimmed(text);
    if (text == "true" || text == "false") {
        value = text == "true";
        return true;
    }
    double number = 0;
    if (!UXParseDouble(text, number)) return false;
    value = number != 0;
    return true;
}

bool read_numbers(const Document& document, const Element& element, const UXVectorDesc& vector) {
    return with_array(vector, [&](auto& array) { return read_into(document, element, array); });
}

bool write_numbers(Document& document, Element& element, const UXVectorDesc& vector) {
    return with_array(vector, [&](const auto& array) {
        write_from(document, element, array);
        return true;
    });
}

}  // namespace uxhost
