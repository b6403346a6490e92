// A string of a host's own under the published name, for the test that compiles the library against
// it. The promises of each member are those of our header of the same name.
#pragma once

#include <algorithm>
#include <compare>
#include <cstdarg>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "uxtree/host/export.h"

class UXHOST_API CStringUTF8 {
public:
    CStringUTF8() = default;
    CStringUTF8(const char* text) : text_(text == nullptr ? "" : text) {}
    explicit CStringUTF8(std::string_view text) : text_(text) {}
    CStringUTF8(char c, int count) : text_(Size(count), c) {}
    CStringUTF8& operator=(char c) { return *this = CStringUTF8(c, 1); }
    CStringUTF8& operator+=(const CStringUTF8& other) { return Joined(other.text_); }
    CStringUTF8& operator+=(const char* text) { return Joined(View(text)); }
    CStringUTF8& operator+=(char c) { return Joined({&c, 1}); }

    int GetLength() const { return static_cast<int>(text_.size()); }
    bool IsEmpty() const { return text_.empty(); }
    void Empty() { text_.clear(); }
    char GetAt(int index) const { return text_[Checked(index)]; }
    void SetAt(int index, char c) { text_[Checked(index)] = c; }
    char operator[](int index) const { return GetAt(index); }
    operator const char*() const { return text_.c_str(); }
    char* GetBuffer(int minLength = 0) {
        if (minLength > GetLength()) text_.resize(Size(minLength));
        return text_.data();
    }
    void ReleaseBuffer(int newLength = -1) {
        text_.resize(newLength < 0 ? View(text_.c_str()).size() : Clip(newLength));
    }

    int Compare(const char* text) const { return text_.compare(View(text)); }
    int CompareNoCase(const char* text) const;
    int Find(char c, int start = 0) const { return Position(text_.find(c, Clip(start))); }
    int Find(const char* text, int start = 0) const {
        return Position(text_.find(View(text), Clip(start)));
    }
    int ReverseFind(char c) const { return Position(text_.rfind(c)); }
    CStringUTF8 Mid(int start) const { return CStringUTF8(text_.substr(Clip(start))); }
    CStringUTF8 Mid(int start, int count) const {
        return CStringUTF8(text_.substr(Clip(start), Size(count)));
    }
    CStringUTF8 Left(int count) const { return CStringUTF8(text_.substr(0, Size(count))); }
    CStringUTF8 Right(int count) const {
        return CStringUTF8(text_.substr(text_.size() - Clip(count)));
    }

    int Insert(int index, const char* text) {
        text_.insert(Clip(index), std::string(View(text)));
        return GetLength();
    }
    int Insert(int index, char c) { return Insert(index, CStringUTF8(c, 1)); }
    int Delete(int index, int count = 1) {
        text_.erase(Clip(index), Size(count));
        return GetLength();
    }
    int Replace(const char* oldText, const char* newText);
    void Append(const char* text) { *this += text; }
    void AppendChar(char c) { *this += c; }
    CStringUTF8& TrimLeft() { return Cut(text_.find_first_not_of(kSpace), std::string::npos); }
    CStringUTF8& TrimLeft(char c) { return Cut(text_.find_first_not_of(c), std::string::npos); }
    CStringUTF8& TrimRight() { return Cut(0, text_.find_last_not_of(kSpace) + 1); }
    CStringUTF8& TrimRight(char c) { return Cut(0, text_.find_last_not_of(c) + 1); }
    CStringUTF8& Trim() { return TrimRight().TrimLeft(); }
    CStringUTF8& Trim(char c) { return TrimRight(c).TrimLeft(c); }
    void MakeUpper() { std::transform(text_.begin(), text_.end(), text_.begin(), Upper); }
    void MakeLower() { std::transform(text_.begin(), text_.end(), text_.begin(), Lower); }
    void Format(const char* format, ...) UXHOST_PRINTF(2, 3);
    void FormatV(const char* format, va_list args) UXHOST_PRINTF(2, 0);
    void AppendFormat(const char* format, ...) UXHOST_PRINTF(2, 3);
    void Assign(const char* bytes, std::size_t length) { text_.assign(bytes, length); }

    static char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
    static char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
    std::string_view View() const { return text_; }

    friend CStringUTF8 operator+(CStringUTF8 a, const CStringUTF8& b) { return a += b; }
    friend CStringUTF8 operator+(CStringUTF8 a, const char* b) { return a += b; }
    friend CStringUTF8 operator+(const char* a, const CStringUTF8& b) {
        return CStringUTF8(a) += b;
    }
    friend CStringUTF8 operator+(CStringUTF8 a, char b) { return a += b; }
    friend CStringUTF8 operator+(char a, const CStringUTF8& b) { return CStringUTF8(a, 1) += b; }
    friend bool operator==(const CStringUTF8& a, const CStringUTF8& b) = default;
    friend bool operator==(const CStringUTF8& a, const char* b) { return a.text_ == View(b); }
    friend auto operator<=>(const CStringUTF8& a, const CStringUTF8& b) = default;
    friend auto operator<=>(const CStringUTF8& a, const char* b) { return a.text_ <=> View(b); }

private:
    static constexpr const char* kSpace = " \t\n\v\f\r";
    static std::string_view View(const char* text) { return text == nullptr ? "" : text; }
    static std::size_t Size(int value) { return value < 0 ? 0 : static_cast<std::size_t>(value); }
    static int Position(std::size_t at) {
        return at == std::string::npos ? -1 : static_cast<int>(at);
    }
    std::size_t Clip(int value) const { return std::min(Size(value), text_.size()); }
    std::size_t Checked(int index) const {
        if (index < 0 || index >= GetLength()) throw std::invalid_argument("string index");
        return static_cast<std::size_t>(index);
    }
    // The addition may be a part of this text.
    CStringUTF8& Joined(std::string_view addition) {
        text_.append(addition);
        return *this;
    }
    CStringUTF8& Cut(std::size_t from, std::size_t count) {
        text_ = text_.substr(std::min(from, text_.size()), count);
        return *this;
    }

    std::string text_;
};
