#include "uxtree/host/string.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <locale.h>

#include "base/ascii.h"
#include "base/text_view.h"

namespace {
using ux::view_of;

// Positions and counts outside 0 to size become the nearer end.
std::size_t clip(int value, std::size_t size) {
    return value < 0 ? 0 : std::min(static_cast<std::size_t>(value), size);
}

// Formatted numbers have a decimal point whatever the locale of the process or the thread.
class NeutralLocale {
public:
    NeutralLocale() : previous_(uselocale(neutral())) {}
    ~NeutralLocale() { uselocale(previous_); }
    NeutralLocale(const NeutralLocale&) = delete;
    NeutralLocale& operator=(const NeutralLocale&) = delete;

private:
    static locale_t neutral() {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t());
        return locale;
    }
    locale_t previous_;
};

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
    const NeutralLocale locale;
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
    const std::string_view other = view_of(text);
    const std::size_t common = std::min(text_.size(), other.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto mine = static_cast<unsigned char>(ux::to_lower(text_[i]));
        const auto theirs = static_cast<unsigned char>(ux::to_lower(other[i]));
        if (mine != theirs) return mine < theirs ? -1 : 1;
    }
    if (text_.size() == other.size()) return 0;
    return text_.size() < other.size() ? -1 : 1;
}

int CStringUTF8::Insert(int index, const char* text) {
    text_.insert(clip(index, text_.size()), view_of(text));
    return GetLength();
}

int CStringUTF8::Insert(int index, char c) {
    text_.insert(clip(index, text_.size()), 1, c);
    return GetLength();
}

int CStringUTF8::Delete(int index, int count) {
    text_.erase(clip(index, text_.size()), clip(count, text_.size()));
    return GetLength();
}

int CStringUTF8::Replace(const char* oldText, const char* newText) {
    const std::string_view wanted = view_of(oldText);
    const std::string_view replacement = view_of(newText);
    if (wanted.empty()) return 0;

    int count = 0;
    std::size_t kept = 0;
    std::string result;  // apart from text_, into which both arguments may point
    for (std::size_t at = text_.find(wanted); at != std::string::npos;
         at = text_.find(wanted, kept)) {
        result.append(text_, kept, at - kept).append(replacement);
        kept = at + wanted.size();
        ++count;
    }
    if (count == 0) return 0;
    result.append(text_, kept);
    text_ = std::move(result);
    return count;
}

CStringUTF8& CStringUTF8::TrimLeft() {
    const auto kept = std::find_if_not(text_.begin(), text_.end(), ux::is_space);
    text_.erase(text_.begin(), kept);
    return *this;
}

CStringUTF8& CStringUTF8::TrimLeft(char c) {
    text_.erase(0, text_.find_first_not_of(c));
    return *this;
}

CStringUTF8& CStringUTF8::TrimRight() {
    const auto kept = std::find_if_not(text_.rbegin(), text_.rend(), ux::is_space);
    text_.erase(kept.base(), text_.end());
    return *this;
}

CStringUTF8& CStringUTF8::TrimRight(char c) {
    text_.erase(text_.find_last_not_of(c) + 1);  // npos + 1 is 0: nothing else is in the text
    return *this;
}

CStringUTF8& CStringUTF8::Trim() {
    return TrimRight().TrimLeft();
}

CStringUTF8& CStringUTF8::Trim(char c) {
    return TrimRight(c).TrimLeft(c);
}

void CStringUTF8::MakeUpper() {
    std::transform(text_.begin(), text_.end(), text_.begin(), ux::to_upper);
}

void CStringUTF8::MakeLower() {
    std::transform(text_.begin(), text_.end(), text_.begin(), ux::to_lower);
}

void CStringUTF8::Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CStringUTF8::FormatV(const char* format, va_list args) {
    text_ = printed(format, args);
}

void CStringUTF8::AppendFormat(const char* format, ...) {
    va_list args;
    va_start(args, format);
    text_ += printed(format, args);
    va_end(args);
}
