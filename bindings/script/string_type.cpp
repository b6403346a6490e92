// script/string_type: the type string and the functions of numbers beside it, as scripts know them from
// the add-on of the language. Its own would write numbers by a stream for each, with six digits.
#include "string_type.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <mutex>
#include <system_error>
#include <vector>

#include "printing.h"

namespace uxscript {
namespace {

// --- constants of scripts

// Each text once, for all engines of the process.
class Constants : public as::asIStringFactory {
public:
    // Null without memory, which the compiler reports; it lets no exception pass.
    const void* GetStringConstant(const char* data, as::asUINT length) override try {
        const std::lock_guard lock(mutex_);
        const auto found = uses_.try_emplace(std::string(data, length), 0).first;
        ++found->second;
        return &found->first;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    int ReleaseStringConstant(const void* text) override {
        const std::lock_guard lock(mutex_);
        const auto found = uses_.find(*static_cast<const std::string*>(text));
        if (found == uses_.end()) return as::asERROR;
        if (--found->second == 0) uses_.erase(found);
        return as::asSUCCESS;
    }
    int GetRawStringData(const void* given, char* data, as::asUINT* length) const override {
        const auto& text = *static_cast<const std::string*>(given);
        if (length != nullptr) *length = static_cast<as::asUINT>(text.size());
        if (data != nullptr) text.copy(data, text.size());
        return as::asSUCCESS;
    }

private:
    std::mutex mutex_;
    std::map<std::string, int> uses_;
};

Constants& constants() {
    static auto* const all = new Constants();  // engines may live until the very end
    return *all;
}

// --- the type

std::string& text_of(as::asIScriptGeneric* call) {
    return self<std::string>(call);
}
const std::string& text_argument(as::asIScriptGeneric* call, as::asUINT index) {
    return argument<const std::string>(call, index);
}
std::size_t size_argument(as::asIScriptGeneric* call, as::asUINT index) {
    return call->GetArgDWord(index);
}
// A number below 0 stands for the end.
std::size_t count_argument(as::asIScriptGeneric* call, as::asUINT index) {
    const auto count = number_argument<int>(call, index);
    return count < 0 ? std::string::npos : static_cast<std::size_t>(count);
}
void require_within(std::size_t place, std::size_t end) {
    if (place >= end) throw ScriptError{"Out of range"};
}

void make_copy(as::asIScriptGeneric* call) {
    guarded([&] { new (call->GetObject()) std::string(text_argument(call, 0)); });
}
void assign(as::asIScriptGeneric* call) {
    guarded([&] { text_of(call) = text_argument(call, 0); });
    call->SetReturnAddress(call->GetObject());
}
void append(as::asIScriptGeneric* call) {
    guarded([&] { text_of(call) += text_argument(call, 0); });
    call->SetReturnAddress(call->GetObject());
}
void add(as::asIScriptGeneric* call) {
    guarded([&] { return_value<std::string>(call, text_of(call) + text_argument(call, 0)); });
}
void same(as::asIScriptGeneric* call) {
    return_value<bool>(call, text_of(call) == text_argument(call, 0));
}
void compare(as::asIScriptGeneric* call) {
    return_value<int>(call, text_of(call).compare(text_argument(call, 0)));
}
void byte_at(as::asIScriptGeneric* call) {
    guarded([&] {
        std::string& text = text_of(call);
        require_within(size_argument(call, 0), text.size());
        call->SetReturnAddress(&text[size_argument(call, 0)]);
    });
}
void length(as::asIScriptGeneric* call) {
    return_value<as::asUINT>(call, static_cast<as::asUINT>(text_of(call).size()));
}
void is_empty(as::asIScriptGeneric* call) {
    return_value<bool>(call, text_of(call).empty());
}
void resize(as::asIScriptGeneric* call) {
    guarded([&] { text_of(call).resize(size_argument(call, 0)); });
}
void insert(as::asIScriptGeneric* call) {
    guarded([&] {
        require_within(size_argument(call, 0), text_of(call).size() + 1);
        text_of(call).insert(size_argument(call, 0), text_argument(call, 1));
    });
}
void erase(as::asIScriptGeneric* call) {
    guarded([&] {
        require_within(size_argument(call, 0), text_of(call).size() + 1);
        text_of(call).erase(size_argument(call, 0), count_argument(call, 1));
    });
}
void part(as::asIScriptGeneric* call) {
    guarded([&] {
        const std::string& text = text_of(call);
        const std::size_t start = std::min(size_argument(call, 0), text.size());
        return_value<std::string>(call, text.substr(start, count_argument(call, 1)));
    });
}

using Find = std::size_t (std::string::*)(const std::string&, std::size_t) const noexcept;
template <Find kFind>
void find(as::asIScriptGeneric* call) {
    const std::size_t place =
        (text_of(call).*kFind)(text_argument(call, 0), count_argument(call, 1));
    return_value<int>(call, static_cast<int>(place));  // -1 when there is none
}

// --- what scripts do for each element of an array, as functions of C++

void make(std::string* place) {
    new (place) std::string();
}
void end(std::string* text) {
    text->~basic_string();
}
// Written in place: a processor is slow to copy what it has just written by bytes. A text has room for
// eleven of them in itself.
std::string* assign_integer(std::string* text, int number) {
    text->resize(11);
    char* const start = text->data();
    const char* const stop = std::to_chars(start, start + text->size(), number).ptr;
    text->resize(static_cast<std::size_t>(stop - start));
    return text;
}

// The same called through the engine.
template <auto kFunction>
void through_engine(as::asIScriptGeneric* call) {
    if constexpr (std::is_invocable_v<decltype(kFunction), std::string*>) {
        kFunction(&text_of(call));
    } else {
        call->SetReturnAddress(kFunction(&text_of(call), number_argument<int>(call, 0)));
    }
}
template <auto kFunction>
Way direct() {
    return {kFunction, through_engine<kFunction>};
}

// --- with numbers

template <class T>
void assign_number(as::asIScriptGeneric* call) {
    guarded([&] { text_of(call) = number_text(number_argument<T>(call, 0)); });
    call->SetReturnAddress(call->GetObject());
}
template <class T>
void append_number(as::asIScriptGeneric* call) {
    guarded([&] { text_of(call) += number_text(number_argument<T>(call, 0)); });
    call->SetReturnAddress(call->GetObject());
}
template <class T>
void add_number(as::asIScriptGeneric* call) {
    guarded([&] {
        return_value<std::string>(call, text_of(call) + number_text(number_argument<T>(call, 0)));
    });
}
template <class T>
void add_to_number(as::asIScriptGeneric* call) {
    guarded([&] {
        return_value<std::string>(call, number_text(number_argument<T>(call, 0)) + text_of(call));
    });
}
template <class T>
void register_number(Registrar& registrar, const std::string& type) {
    const auto method = [&](const char* start, const char* stop, Called called) {
        registrar.method("string", (start + ("(" + type + ")") + stop).c_str(), called);
    };
    method("string &opAssign", "", assign_number<T>);
    method("string &opAddAssign", "", append_number<T>);
    method("string opAdd", " const", add_number<T>);
    method("string opAdd_r", " const", add_to_number<T>);
}

bool has(const std::string& options, char letter) {
    return options.find(letter) != std::string::npos;
}

std::string sign_of(bool negative, const std::string& options) {
    if (negative) return "-";
    if (has(options, '+')) return "+";
    return has(options, ' ') ? " " : "";
}

// To the left with l, with zeroes behind the sign with 0, otherwise to the right.
std::string aligned(const std::string& sign, const std::string& digits, const std::string& options,
                    std::size_t width) {
    const std::size_t used = sign.size() + digits.size();
    const std::size_t missing = width > used ? width - used : 0;
    if (has(options, 'l')) return sign + digits + std::string(missing, ' ');
    if (has(options, '0')) return sign + std::string(missing, '0') + digits;
    return std::string(missing, ' ') + sign + digits;
}

std::string in_capitals(std::string text) {
    for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return text;
}

std::string hexadecimal(std::uint64_t number) {
    char digits[16];
    return {digits, std::to_chars(digits, digits + sizeof digits, number, 16).ptr};
}

template <class T>
void format_integer(as::asIScriptGeneric* call) {
    guarded([&] {
        const T value = number_argument<T>(call, 0);
        const std::string& options = text_argument(call, 1);
        const auto bits = static_cast<std::uint64_t>(value);
        const bool small = has(options, 'h'), large = has(options, 'H');
        std::string sign, digits;
        if (small || large) {
            digits = large ? in_capitals(hexadecimal(bits)) : hexadecimal(bits);
        } else {
            digits = number_text(value < 0 ? 0 - bits : bits);
            if (std::is_signed_v<T>) sign = sign_of(value < 0, options);
        }
        return_value<std::string>(call, aligned(sign, digits, options, size_argument(call, 2)));
    });
}

void format_real(as::asIScriptGeneric* call) {
    guarded([&] {
        constexpr std::size_t kMostDigits = 10000;
        const double value = number_argument<double>(call, 0);
        const std::string& options = text_argument(call, 1);
        const std::size_t precision = size_argument(call, 3);
        if (precision > kMostDigits) throw ScriptError{"formatFloat: more than 10000 digits"};
        const bool small = has(options, 'e'), large = has(options, 'E');
        std::string digits(precision + 400, '\0');
        const auto form = small || large ? std::chars_format::scientific : std::chars_format::fixed;
        const char* const stop = std::to_chars(digits.data(), digits.data() + digits.size(),
                                               std::abs(value), form, static_cast<int>(precision))
                                     .ptr;
        digits.resize(static_cast<std::size_t>(stop - digits.data()));
        if (large) digits = in_capitals(digits);
        const std::string sign = sign_of(std::signbit(value), options);
        return_value<std::string>(call, aligned(sign, digits, options, size_argument(call, 2)));
    });
}

// The number at the start of a text, with how many bytes it takes; 0 and 0 bytes when there is none
// or none that fits.
template <class T, class... How>
void parse(as::asIScriptGeneric* call, as::asUINT countPlace, const char* start, How... how) {
    const std::string& text = text_argument(call, 0);
    const char* const stop = text.data() + text.size();
    const bool plus = start != stop && *start == '+' && start + 1 != stop && start[1] != '-';
    T number{};
    const auto read = std::from_chars(start + (plus ? 1 : 0), stop, number, how...);
    const bool done = read.ec == std::errc();
    const auto bytes = static_cast<as::asUINT>(done ? read.ptr - text.data() : 0);
    std::memcpy(call->GetArgAddress(countPlace), &bytes, sizeof bytes);
    return_value<T>(call, done ? number : T{});
}
template <class T>
void parse_integer(as::asIScriptGeneric* call) {
    guarded([&] {
        const std::size_t base = size_argument(call, 1);
        if (base < 2 || base > 36) throw ScriptError{"the base of a number is 2 to 36"};
        parse<T>(call, 2, text_argument(call, 0).data(), static_cast<int>(base));
    });
}
void parse_real(as::asIScriptGeneric* call) {
    const std::string& text = text_argument(call, 0);
    const std::size_t start = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    parse<double>(call, 1, text.data() + start);
}

// --- parts

void split(as::asIScriptGeneric* call) {
    guarded([&] {
        const std::string& text = text_of(call);
        const std::string& separator = text_argument(call, 0);
        if (separator.empty()) throw ScriptError{"split: the separator is empty"};
        std::vector<std::string> parts;
        std::size_t start = 0, stop = 0;
        while ((stop = text.find(separator, start)) != std::string::npos) {
            parts.push_back(text.substr(start, stop - start));
            start = stop + separator.size();
        }
        parts.push_back(text.substr(start));
        ResultArray array(call, "array<string>", parts.size());
        for (std::size_t i = 0; i < parts.size(); ++i) array.text(i) = std::move(parts[i]);
        array.give();
    });
}
void join(as::asIScriptGeneric* call) {
    guarded([&] {
        const auto& parts = argument<const as::CScriptArray>(call, 0);
        std::string text;
        for (as::asUINT i = 0; i < parts.GetSize(); ++i) {
            if (i != 0) text += text_argument(call, 1);
            text += *static_cast<const std::string*>(parts.At(i));
        }
        return_value<std::string>(call, std::move(text));
    });
}

struct Method {
    const char* declaration;
    Called function;
};
const Method kMethods[] = {
    {"string &opAssign(const string &in)", assign},
    {"string &opAddAssign(const string &in)", append},
    {"string opAdd(const string &in) const", add},
    {"bool opEquals(const string &in) const", same},
    {"int opCmp(const string &in) const", compare},
    {"uint8 &opIndex(uint)", byte_at},
    {"const uint8 &opIndex(uint) const", byte_at},
    {"uint length() const", length},
    {"bool isEmpty() const", is_empty},
    {"void resize(uint)", resize},
    {"void insert(uint pos, const string &in other)", insert},
    {"void erase(uint pos, int count = -1)", erase},
    {"string substr(uint start = 0, int count = -1) const", part},
    {"int findFirst(const string &in, uint start = 0) const", find<&std::string::find>},
    {"int findFirstOf(const string &in, uint start = 0) const", find<&std::string::find_first_of>},
    {"int findFirstNotOf(const string &in, uint start = 0) const",
     find<&std::string::find_first_not_of>},
    {"int findLast(const string &in, int start = -1) const", find<&std::string::rfind>},
    {"int findLastOf(const string &in, int start = -1) const", find<&std::string::find_last_of>},
    {"int findLastNotOf(const string &in, int start = -1) const",
     find<&std::string::find_last_not_of>},
};
const Method kFunctions[] = {
    {"string formatInt(int64 value, const string &in options = \"\", uint width = 0)",
     format_integer<std::int64_t>},
    {"string formatUInt(uint64 value, const string &in options = \"\", uint width = 0)",
     format_integer<std::uint64_t>},
    {"string formatFloat(double value, const string &in options = \"\", uint width = 0, uint "
     "precision = 0)",
     format_real},
    {"int64 parseInt(const string &in, uint base = 10, uint &out bytes = 0)",
     parse_integer<std::int64_t>},
    {"uint64 parseUInt(const string &in, uint base = 10, uint &out bytes = 0)",
     parse_integer<std::uint64_t>},
    {"double parseFloat(const string &in, uint &out bytes = 0)", parse_real},
};

}  // namespace

void register_strings(Registrar& registrar) {
    registrar.type("string", sizeof(std::string), as::asOBJ_VALUE | as::asOBJ_APP_CLASS_CDAK);
    registrar.keep(registrar.engine()->RegisterStringFactory("string", &constants()));
    registrar.behaviour("string", as::asBEHAVE_CONSTRUCT, "void f()", direct<make>());
    registrar.behaviour("string", as::asBEHAVE_CONSTRUCT, "void f(const string &in)", make_copy);
    registrar.behaviour("string", as::asBEHAVE_DESTRUCT, "void f()", direct<end>());
    for (const Method& each : kMethods) registrar.method("string", each.declaration, each.function);
    registrar.method("string", "string &opAssign(int)", direct<assign_integer>());
    // They would fit int and int64 alike.
    registrar.method("string", "string &opAssign(int8)", assign_number<std::int8_t>);
    registrar.method("string", "string &opAssign(int16)", assign_number<std::int16_t>);
    register_number<double>(registrar, "double");
    register_number<float>(registrar, "float");
    register_number<std::int64_t>(registrar, "int64");
    register_number<std::uint64_t>(registrar, "uint64");
    register_number<bool>(registrar, "bool");
    for (const Method& each : kFunctions) registrar.function(each.declaration, each.function);
}

void register_splitting(Registrar& registrar) {
    registrar.method("string", "array<string>@ split(const string &in separator) const", split);
    registrar.function("string join(const array<string> &in parts, const string &in separator)",
                       join);
}

}  // namespace uxscript
