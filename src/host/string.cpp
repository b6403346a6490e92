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

int to_position(std::size_t found) {
    return found == std::string::npos ? -1 : static_cast<int>(found);
}

// Positions and counts outside 0 to size become the nearer end.
std::size_t clip(int value, std::size_t size) {
    return value < 0 ? 0 : std::min(static_cast<std::size_t>(value), size);
}

std::size_t checked(int index, std::size_t size) {
    if (index < 0 || static_cast<std::size_t>(index) >= size) {
        throw std::invalid_argument("string index outside the text");
    }
    return static_cast<std::size_t>(index);
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

CStringUTF8::CStringUTF8() = default;
CStringUTF8::CStringUTF8(const char* text) : text_(view_of(text)) {}
CStringUTF8::CStringUTF8(char c, int count)
    : text_(count < 0 ? 0 : static_cast<std::size_t>(count), c) {}
CStringUTF8::CStringUTF8(const CStringUTF8& other) = default;
CStringUTF8::CStringUTF8(CStringUTF8&& other) noexcept = default;
CStringUTF8::~CStringUTF8() = default;
CStringUTF8& CStringUTF8::operator=(const CStringUTF8& other) = default;
CStringUTF8& CStringUTF8::operator=(CStringUTF8&& other) noexcept = default;

CStringUTF8& CStringUTF8::operator=(const char* text) {
    text_.assign(view_of(text));
    return *this;
}

CStringUTF8& CStringUTF8::operator=(char c) {
    text_.assign(1, c);
    return *this;
}

CStringUTF8& CStringUTF8::operator+=(const CStringUTF8& other) {
    text_ += other.text_;
    return *this;
}

CStringUTF8& CStringUTF8::operator+=(const char* text) {
    text_.append(view_of(text));
    return *this;
}

CStringUTF8& CStringUTF8::operator+=(char c) {
    text_ += c;
    return *this;
}

int CStringUTF8::GetLength() const {
    return static_cast<int>(text_.size());
}

bool CStringUTF8::IsEmpty() const {
    return text_.empty();
}

void CStringUTF8::Empty() {
    text_.clear();
}

char CStringUTF8::GetAt(int index) const {
    return text_[checked(index, text_.size())];
}

void CStringUTF8::SetAt(int index, char c) {
    text_[checked(index, text_.size())] = c;
}

char CStringUTF8::operator[](int index) const {
    return GetAt(index);
}

CStringUTF8::operator const char*() const {
    return text_.c_str();
}

char* CStringUTF8::GetBuffer(int minLength) {
    const std::size_t wanted = minLength < 0 ? 0 : static_cast<std::size_t>(minLength);
    if (wanted > text_.size()) text_.resize(wanted);
    return text_.data();
}

void CStringUTF8::ReleaseBuffer(int newLength) {
    text_.resize(newLength < 0 ? std::strlen(text_.c_str()) : clip(newLength, text_.size()));
}

int CStringUTF8::Compare(const char* text) const {
    return text_.compare(view_of(text));
}

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

int CStringUTF8::Find(char c, int start) const {
    return to_position(text_.find(c, clip(start, text_.size())));
}

int CStringUTF8::Find(const char* text, int start) const {
    return to_position(text_.find(view_of(text), clip(start, text_.size())));
}

int CStringUTF8::ReverseFind(char c) const {
    return to_position(text_.rfind(c));
}

CStringUTF8 CStringUTF8::Mid(int start) const {
    CStringUTF8 result;
    result.text_.assign(text_, clip(start, text_.size()));
    return result;
}

CStringUTF8 CStringUTF8::Mid(int start, int count) const {
    CStringUTF8 result;
    result.text_.assign(text_, clip(start, text_.size()), clip(count, text_.size()));
    return result;
}

CStringUTF8 CStringUTF8::Left(int count) const {
    return Mid(0, count);
}

CStringUTF8 CStringUTF8::Right(int count) const {
    return Mid(static_cast<int>(text_.size() - clip(count, text_.size())));
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

void CStringUTF8::Append(const char* text) {
    *this += text;
}

void CStringUTF8::AppendChar(char c) {
    *this += c;
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

void CStringUTF8::Assign(const char* bytes, std::size_t length) {
    if (bytes == nullptr) length = 0;
    text_.assign(std::string_view(bytes, length));
}

CStringUTF8 operator+(const CStringUTF8& a, const CStringUTF8& b) {
    CStringUTF8 sum(a);
    sum += b;
    return sum;
}

CStringUTF8 operator+(const CStringUTF8& a, const char* b) {
    CStringUTF8 sum(a);
    sum += b;
    return sum;
}

CStringUTF8 operator+(const char* a, const CStringUTF8& b) {
    CStringUTF8 sum(a);
    sum += b;
    return sum;
}

CStringUTF8 operator+(const CStringUTF8& a, char b) {
    CStringUTF8 sum(a);
    sum += b;
    return sum;
}

CStringUTF8 operator+(char a, const CStringUTF8& b) {
    CStringUTF8 sum(a, 1);
    sum += b;
    return sum;
}

bool operator==(const CStringUTF8& a, const CStringUTF8& b) {
    return view_of(a) == view_of(b);
}

bool operator==(const CStringUTF8& a, const char* b) {
    return view_of(a) == view_of(b);
}

bool operator==(const char* a, const CStringUTF8& b) {
    return view_of(a) == view_of(b);
}

bool operator!=(const CStringUTF8& a, const CStringUTF8& b) {
    return !(a == b);
}

bool operator!=(const CStringUTF8& a, const char* b) {
    return !(a == b);
}

bool operator!=(const char* a, const CStringUTF8& b) {
    return !(a == b);
}

bool operator<(const CStringUTF8& a, const CStringUTF8& b) {
    return view_of(a) < view_of(b);
}

bool operator<(const CStringUTF8& a, const char* b) {
    return view_of(a) < view_of(b);
}

bool operator<(const char* a, const CStringUTF8& b) {
    return view_of(a) < view_of(b);
}
