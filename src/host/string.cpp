// The host's string: comparing, searching, cutting and formatting.
#include "uxtree/host/string.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "base/ascii.h"
#include "base/platform.h"
#include "base/text_view.h"

namespace {
using ux::view_of;

UXHOST_PRINTF(3, 0)
std::size_t print_into(char* buffer, std::size_t size, const char* format, va_list args) {
    const int length = std::vsnprintf(buffer, size, format, args);
    if (length < 0) throw std::invalid_argument("text cannot be formatted");
    return static_cast<std::size_t>(length);
}

// The formatted text as a string of its own, so that arguments may point into the target.
UXHOST_PRINTF(1, 0)
std::string printed(const char* format, va_list args) {
    if (format == nullptr) return {};
    const ux::NeutralLocale locale;
    va_list again;
    va_copy(again, args);
    struct End {
        va_list& list;
        ~End() { va_end(list); }
    } const end{again};

    char small[256];
    const std::size_t length = print_into(small, sizeof small, format, args);
    if (length < sizeof small) return {small, length};
    std::string large(length, '\0');
    print_into(large.data(), length + 1, format, again);
    return large;
}
}  // namespace

int CStringUTF8::CompareNoCase(const char* text) const {
    const std::string_view mine = View();
    const std::string_view other = view_of(text);
    const std::size_t common = std::min(mine.size(), other.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (mine[i] == other[i]) continue;
        const auto a = static_cast<unsigned char>(ux::to_lower(mine[i]));
        const auto b = static_cast<unsigned char>(ux::to_lower(other[i]));
        if (a != b) return a < b ? -1 : 1;
    }
    if (mine.size() == other.size()) return 0;
    return mine.size() < other.size() ? -1 : 1;
}

int CStringUTF8::Insert(int index, const char* text) {
    CStringUTF8 result(View().substr(0, Clip(index)));  // apart: text may be a part of this one
    result.Add(view_of(text)).Add(View().substr(Clip(index)));
    *this = std::move(result);
    return GetLength();
}

int CStringUTF8::Insert(int index, char c) {
    CStringUTF8 result(View().substr(0, Clip(index)));
    result.Add({&c, 1}).Add(View().substr(Clip(index)));
    *this = std::move(result);
    return GetLength();
}

int CStringUTF8::Delete(int index, int count) {
    const std::size_t at = Clip(index);
    const std::size_t removed = std::min(Size(count), size_ - at);
    std::memmove(Data() + at, Data() + at + removed, size_ - at - removed);
    SetEnd(size_ - removed);
    return GetLength();
}

int CStringUTF8::Replace(const char* oldText, const char* newText) {
    const std::string_view text = View();
    const std::string_view wanted = view_of(oldText);
    const std::string_view replacement = view_of(newText);
    if (wanted.empty()) return 0;

    int count = 0;
    std::size_t kept = 0;
    CStringUTF8 result;  // apart from this text, into which both arguments may point
    for (std::size_t at = text.find(wanted); at != std::string_view::npos;
         at = text.find(wanted, kept)) {
        result.Add(text.substr(kept, at - kept)).Add(replacement);
        kept = at + wanted.size();
        ++count;
    }
    if (count == 0) return 0;
    result.Add(text.substr(kept));
    *this = std::move(result);
    return count;
}

CStringUTF8& CStringUTF8::TrimLeft() {
    const std::string_view text = View();
    const auto kept = std::find_if_not(text.begin(), text.end(), ux::is_space);
    Delete(0, static_cast<int>(kept - text.begin()));
    return *this;
}

CStringUTF8& CStringUTF8::TrimLeft(char c) {
    Delete(0, static_cast<int>(std::min(View().find_first_not_of(c), View().size())));
    return *this;
}

CStringUTF8& CStringUTF8::TrimRight() {
    const std::string_view text = View();
    const auto kept = std::find_if_not(text.rbegin(), text.rend(), ux::is_space);
    SetEnd(static_cast<std::size_t>(text.rend() - kept));
    return *this;
}

CStringUTF8& CStringUTF8::TrimRight(char c) {
    SetEnd(View().find_last_not_of(c) + 1);  // npos + 1 is 0: nothing else is in the text
    return *this;
}

CStringUTF8& CStringUTF8::Trim() {
    return TrimRight().TrimLeft();
}

CStringUTF8& CStringUTF8::Trim(char c) {
    return TrimRight(c).TrimLeft(c);
}

void CStringUTF8::MakeUpper() {
    std::transform(Data(), Data() + size_, Data(), ux::to_upper);
}

void CStringUTF8::MakeLower() {
    std::transform(Data(), Data() + size_, Data(), ux::to_lower);
}

void CStringUTF8::Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CStringUTF8::FormatV(const char* format, va_list args) {
    const std::string text = printed(format, args);
    Assign(text.data(), text.size());
}

void CStringUTF8::AppendFormat(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const std::string text = printed(format, args);
    va_end(args);
    Add(text);
}
