// The host's string: UTF-8 text addressed by bytes.
#pragma once

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "uxtree/host/export.h"

// A growable UTF-8 string. Lengths, positions and counts are bytes; positions and counts outside
// the text are clipped. A null text is "" everywhere. "No case" folds ASCII letters only. White
// space is the ASCII one.
//
// Every entry point hands texts over in it, so its short members stand here, the same for every
// host. The members without a body are what a host implements.
class UXHOST_API CStringUTF8 {
public:
    CStringUTF8() = default;
    CStringUTF8(const char* text) : text_(ViewOf(text)) {}  // null gives ""
    CStringUTF8(char c, int count) : text_(Size(count), c) {}
    explicit CStringUTF8(std::string_view text) : text_(text) {}
    CStringUTF8(const CStringUTF8& other) = default;
    CStringUTF8(CStringUTF8&& other) noexcept = default;
    ~CStringUTF8() = default;
    CStringUTF8& operator=(const CStringUTF8& other) = default;
    CStringUTF8& operator=(CStringUTF8&& other) noexcept = default;
    CStringUTF8& operator=(const char* text) {
        text_.assign(ViewOf(text));
        return *this;
    }
    CStringUTF8& operator=(char c) {
        text_.assign(1, c);
        return *this;
    }
    CStringUTF8& operator+=(const CStringUTF8& other) {
        text_ += other.text_;
        return *this;
    }
    CStringUTF8& operator+=(const char* text) {
        text_.append(ViewOf(text));
        return *this;
    }
    CStringUTF8& operator+=(char c) {
        text_ += c;
        return *this;
    }

    int GetLength() const { return static_cast<int>(text_.size()); }
    bool IsEmpty() const { return text_.empty(); }
    void Empty() { text_.clear(); }
    // These throw std::invalid_argument for an index outside the text.
    char GetAt(int index) const { return text_[Checked(index)]; }
    void SetAt(int index, char c) { text_[Checked(index)] = c; }
    char operator[](int index) const { return text_[Checked(index)]; }
    operator const char*() const { return text_.c_str(); }
    // A writable buffer of at least minLength characters, to be followed by ReleaseBuffer, which
    // cuts the text to newLength, or to its first NUL when newLength is negative.
    char* GetBuffer(int minLength = 0) {
        if (Size(minLength) > text_.size()) text_.resize(Size(minLength));
        return text_.data();
    }
    void ReleaseBuffer(int newLength = -1) {
        text_.resize(newLength < 0 ? std::strlen(text_.c_str()) : Clip(newLength));
    }

    int Compare(const char* text) const {  // bytewise, unsigned; zero when equal
        return text_.compare(ViewOf(text));
    }
    int CompareNoCase(const char* text) const;
    int Find(char c, int start = 0) const {  // negative when absent
        return Position(text_.find(c, Clip(start)));
    }
    int Find(const char* text, int start = 0) const {  // "" is found at start
        return Position(text_.find(ViewOf(text), Clip(start)));
    }
    int ReverseFind(char c) const { return Position(text_.rfind(c)); }
    CStringUTF8 Mid(int start) const {
        return CStringUTF8(std::string_view(text_).substr(Clip(start)));
    }
    CStringUTF8 Mid(int start, int count) const {
        return CStringUTF8(std::string_view(text_).substr(Clip(start), Size(count)));
    }
    CStringUTF8 Left(int count) const { return Mid(0, count); }
    CStringUTF8 Right(int count) const {
        return CStringUTF8(std::string_view(text_).substr(text_.size() - Clip(count)));
    }

    int Insert(int index, const char* text);  // yields the new length
    int Insert(int index, char c);
    int Delete(int index, int count = 1);  // yields the new length
    // Replaces from left to right without looking at replaced text again; yields the number of
    // replacements, 0 for an empty oldText.
    int Replace(const char* oldText, const char* newText);
    void Append(const char* text) { *this += text; }
    void AppendChar(char c) { *this += c; }
    CStringUTF8& TrimLeft();
    CStringUTF8& TrimLeft(char c);
    CStringUTF8& TrimRight();
    CStringUTF8& TrimRight(char c);
    CStringUTF8& Trim();
    CStringUTF8& Trim(char c);
    void MakeUpper();
    void MakeLower();
    // printf-style, with a decimal point in every locale; the string itself may be one of the
    // arguments. A null format is "".
    void Format(const char* format, ...) UXHOST_PRINTF(2, 3);
    void FormatV(const char* format, va_list args) UXHOST_PRINTF(2, 0);
    void AppendFormat(const char* format, ...) UXHOST_PRINTF(2, 3);

    // Assigns bytes that need not end in NUL, and may be a part of this text.
    void Assign(const char* bytes, std::size_t length) {
        text_.assign(std::string_view(bytes, bytes == nullptr ? 0 : length));
    }

    friend CStringUTF8 operator+(CStringUTF8 a, const CStringUTF8& b) { return Sum(a, b.text_); }
    friend CStringUTF8 operator+(CStringUTF8 a, const char* b) { return Sum(a, ViewOf(b)); }
    friend CStringUTF8 operator+(const char* a, const CStringUTF8& b) {
        CStringUTF8 sum(a);
        return Sum(sum, b.text_);
    }
    friend CStringUTF8 operator+(CStringUTF8 a, char b) { return Sum(a, {&b, 1}); }
    friend CStringUTF8 operator+(char a, const CStringUTF8& b) {
        CStringUTF8 sum(a, 1);
        return Sum(sum, b.text_);
    }
    friend bool operator==(const CStringUTF8& a, const CStringUTF8& b) {
        return a.text_ == b.text_;
    }
    friend bool operator==(const CStringUTF8& a, const char* b) { return a.text_ == ViewOf(b); }
    friend bool operator==(const char* a, const CStringUTF8& b) { return ViewOf(a) == b.text_; }
    friend bool operator!=(const CStringUTF8& a, const CStringUTF8& b) { return !(a == b); }
    friend bool operator!=(const CStringUTF8& a, const char* b) { return !(a == b); }
    friend bool operator!=(const char* a, const CStringUTF8& b) { return !(a == b); }
    friend bool operator<(const CStringUTF8& a, const CStringUTF8& b) { return a.text_ < b.text_; }
    friend bool operator<(const CStringUTF8& a, const char* b) { return a.text_ < ViewOf(b); }
    friend bool operator<(const char* a, const CStringUTF8& b) { return ViewOf(a) < b.text_; }

private:
    static std::string_view ViewOf(const char* text) {
        return text == nullptr ? std::string_view() : std::string_view(text);
    }
    static std::size_t Size(int value) { return value < 0 ? 0 : static_cast<std::size_t>(value); }
    static int Position(std::size_t found) {
        return found == std::string::npos ? -1 : static_cast<int>(found);
    }
    static CStringUTF8 Sum(CStringUTF8& a, std::string_view b) {
        a.text_.append(b);
        return std::move(a);
    }
    std::size_t Clip(int value) const { return std::min(Size(value), text_.size()); }
    std::size_t Checked(int index) const {
        if (index < 0 || Size(index) >= text_.size()) {
            throw std::invalid_argument("string index outside the text");
        }
        return Size(index);
    }

    std::string text_;
};
