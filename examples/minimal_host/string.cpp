// The long members of the string and the memory of arrays, which a host implements.
#include "uxtree/host/string.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>

#include <locale.h>

#include "uxtree/host/array.h"

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

void* UXResizeMemory(void* block, std::size_t /*used*/, std::size_t bytes) {
    if (void* const memory = std::realloc(block, bytes)) return memory;
    throw std::bad_alloc();
}

int CStringUTF8::CompareNoCase(const char* text) const {
    CStringUTF8 mine(*this);
    CStringUTF8 other(text);
    mine.MakeLower();
    other.MakeLower();
    return mine.Compare(other);
}
// What follows makes the new text in a std::string, apart from this one, into which an argument may
// point.
int CStringUTF8::Insert(int index, const char* text) {
    std::string made(View());
    made.insert(Clip(index), view(text));
    Assign(made.data(), made.size());
    return GetLength();
}
int CStringUTF8::Insert(int index, char c) {
    std::string made(View());
    made.insert(Clip(index), 1, c);
    Assign(made.data(), made.size());
    return GetLength();
}
int CStringUTF8::Delete(int index, int count) {
    std::string made(View());
    made.erase(Clip(index), Size(count));
    Assign(made.data(), made.size());
    return GetLength();
}
int CStringUTF8::Replace(const char* oldText, const char* newText) {
    const std::string_view wanted = view(oldText);
    const std::string_view replacement = view(newText);
    std::string made(View());
    int count = 0;
    if (wanted.empty()) return 0;
    for (std::size_t at = made.find(wanted); at != std::string::npos; ++count) {
        made.replace(at, wanted.size(), replacement);
        at = made.find(wanted, at + replacement.size());
    }
    Assign(made.data(), made.size());
    return count;
}
CStringUTF8& CStringUTF8::TrimLeft() {
    const int kept = Position(View().find_first_not_of(kSpace));
    return *this = Mid(kept < 0 ? GetLength() : kept);
}
CStringUTF8& CStringUTF8::TrimLeft(char c) {
    while (!IsEmpty() && GetAt(0) == c) Delete(0);
    return *this;
}
CStringUTF8& CStringUTF8::TrimRight() {
    return *this = Left(Position(View().find_last_not_of(kSpace)) + 1);
}
CStringUTF8& CStringUTF8::TrimRight(char c) {
    return *this = Left(Position(View().find_last_not_of(c)) + 1);
}
CStringUTF8& CStringUTF8::Trim() {
    return TrimRight().TrimLeft();
}
CStringUTF8& CStringUTF8::Trim(char c) {
    return TrimRight(c).TrimLeft(c);
}
void CStringUTF8::MakeUpper() {
    std::transform(Data(), Data() + GetLength(), Data(), upper);
}
void CStringUTF8::MakeLower() {
    std::transform(Data(), Data() + GetLength(), Data(), lower);
}
void CStringUTF8::FormatV(const char* format, va_list args) {
    static const locale_t neutral = newlocale(LC_ALL_MASK, "C", locale_t());
    const locale_t previous = uselocale(neutral);  // a decimal point in every locale
    char* made = nullptr;
    const int length = format == nullptr ? -1 : vasprintf(&made, format, args);
    uselocale(previous);
    Assign(length < 0 ? "" : made, Size(length));
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
