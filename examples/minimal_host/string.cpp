// The long members of the string, which a host implements.
#include "uxtree/host/string.h"

#include <algorithm>
#include <cstdlib>

#include <locale.h>

namespace {

constexpr const char* kSpace = " \t\n\v\f\r";

std::string_view view(const char* text) {
    return text == nullptr ? "" : text;
}
char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}
char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

}  // namespace

int CStringUTF8::CompareNoCase(const char* text) const {
    CStringUTF8 mine(*this);
    CStringUTF8 other(text);
    mine.MakeLower();
    other.MakeLower();
    return mine.Compare(other);
}
int CStringUTF8::Insert(int index, const char* text) {
    text_.insert(Clip(index), std::string(view(text)));  // a copy: it may be a part of this text
    return GetLength();
}
int CStringUTF8::Insert(int index, char c) {
    return Insert(index, CStringUTF8(c, 1));
}
int CStringUTF8::Delete(int index, int count) {
    text_.erase(Clip(index), Size(count));
    return GetLength();
}
int CStringUTF8::Replace(const char* oldText, const char* newText) {
    const std::string wanted(view(oldText));
    const std::string replacement(view(newText));
    int count = 0;
    if (wanted.empty()) return 0;
    for (std::size_t at = text_.find(wanted); at != std::string::npos; ++count) {
        text_.replace(at, wanted.size(), replacement);
        at = text_.find(wanted, at + replacement.size());
    }
    return count;
}
CStringUTF8& CStringUTF8::TrimLeft() {
    text_.erase(0, text_.find_first_not_of(kSpace));
    return *this;
}
CStringUTF8& CStringUTF8::TrimLeft(char c) {
    text_.erase(0, text_.find_first_not_of(c));
    return *this;
}
CStringUTF8& CStringUTF8::TrimRight() {
    text_.erase(text_.find_last_not_of(kSpace) + 1);
    return *this;
}
CStringUTF8& CStringUTF8::TrimRight(char c) {
    text_.erase(text_.find_last_not_of(c) + 1);
    return *this;
}
CStringUTF8& CStringUTF8::Trim() {
    return TrimRight().TrimLeft();
}
CStringUTF8& CStringUTF8::Trim(char c) {
    return TrimRight(c).TrimLeft(c);
}
void CStringUTF8::MakeUpper() {
    std::transform(text_.begin(), text_.end(), text_.begin(), upper);
}
void CStringUTF8::MakeLower() {
    std::transform(text_.begin(), text_.end(), text_.begin(), lower);
}
void CStringUTF8::FormatV(const char* format, va_list args) {
    static const locale_t neutral = newlocale(LC_ALL_MASK, "C", locale_t());
    const locale_t previous = uselocale(neutral);  // a decimal point in every locale
    char* made = nullptr;
    const int length = format == nullptr ? -1 : vasprintf(&made, format, args);
    uselocale(previous);
    text_.assign(length < 0 ? "" : made, Size(length));
    std::free(length < 0 ? nullptr : made);
}
void CStringUTF8::Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}
void CStringUTF8::AppendFormat(const char* format, ...) {
    CStringUTF8 addition;
    va_list args;
    va_start(args, format);
    addition.FormatV(format, args);
    va_end(args);
    *this += addition;
}
