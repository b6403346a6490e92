// The host's string: UTF-8 text addressed by bytes.
#pragma once

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
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
    CStringUTF8() noexcept {}
    CStringUTF8(const char* text) : CStringUTF8(ViewOf(text)) {}  // null gives ""
    CStringUTF8(char c, int count) { Fill(Size(count), c); }
    explicit CStringUTF8(std::string_view text) { AssignApart(text); }
    CStringUTF8(const CStringUTF8& other) {
        if (other.capacity_ == 0) {
            CopyStorage(other);
        } else {
            AssignApart(other.View());
        }
    }
    CStringUTF8(CStringUTF8&& other) noexcept { Take(other); }
    ~CStringUTF8() {
        if (capacity_ != 0) delete[] text_.heap;
    }
    CStringUTF8& operator=(const CStringUTF8& other) {
        Assign(other.Data(), other.size_);
        return *this;
    }
    CStringUTF8& operator=(CStringUTF8&& other) noexcept {
        if (this == &other) return *this;
        if (capacity_ != 0) delete[] text_.heap;
        Take(other);
        return *this;
    }
    CStringUTF8& operator=(const char* text) {
        const std::string_view view = ViewOf(text);
        Assign(view.data(), view.size());
        return *this;
    }
    CStringUTF8& operator=(char c) {
        Assign(&c, 1);
        return *this;
    }
    CStringUTF8& operator+=(const CStringUTF8& other) { return Add(other.View()); }
    CStringUTF8& operator+=(const char* text) { return Add(ViewOf(text)); }
    CStringUTF8& operator+=(char c) { return Add({&c, 1}); }

    int GetLength() const { return static_cast<int>(size_); }
    bool IsEmpty() const { return size_ == 0; }
    void Empty() { SetEnd(0); }
    // These throw std::invalid_argument for an index outside the text.
    char GetAt(int index) const { return Data()[Checked(index)]; }
    void SetAt(int index, char c) { Data()[Checked(index)] = c; }
    char operator[](int index) const { return Data()[Checked(index)]; }
    operator const char*() const { return Data(); }
    // A writable buffer of at least minLength characters, to be followed by ReleaseBuffer, which
    // cuts the text to newLength, or to its first NUL when newLength is negative.
    char* GetBuffer(int minLength = 0) {
        if (Size(minLength) > size_) Fill(Size(minLength) - size_, '\0');
        return Data();
    }
    void ReleaseBuffer(int newLength = -1) {
        SetEnd(newLength < 0 ? std::strlen(Data()) : Clip(newLength));
    }

    int Compare(const char* text) const {  // bytewise, unsigned; zero when equal
        return View().compare(ViewOf(text));
    }
    int CompareNoCase(const char* text) const;
    int Find(char c, int start = 0) const {  // negative when absent
        return Position(View().find(c, Clip(start)));
    }
    int Find(const char* text, int start = 0) const {  // "" is found at start
        return Position(View().find(ViewOf(text), Clip(start)));
    }
    int ReverseFind(char c) const { return Position(View().rfind(c)); }
    CStringUTF8 Mid(int start) const { return CStringUTF8(View().substr(Clip(start))); }
    CStringUTF8 Mid(int start, int count) const {
        return CStringUTF8(View().substr(Clip(start), Size(count)));
    }
    CStringUTF8 Left(int count) const { return Mid(0, count); }
    CStringUTF8 Right(int count) const { return CStringUTF8(View().substr(size_ - Clip(count))); }

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
        if (bytes == nullptr) length = 0;
        if (length > (capacity_ == 0 ? kLocal : capacity_)) {
            *this = CStringUTF8(std::string_view(bytes, length));
            return;
        }
        if (length != 0) std::memmove(Data(), bytes, length);
        SetEnd(length);
    }

    friend CStringUTF8 operator+(CStringUTF8 a, const CStringUTF8& b) { return Sum(a, b.View()); }
    friend CStringUTF8 operator+(CStringUTF8 a, const char* b) { return Sum(a, ViewOf(b)); }
    friend CStringUTF8 operator+(const char* a, const CStringUTF8& b) {
        CStringUTF8 sum(a);
        return Sum(sum, b.View());
    }
    friend CStringUTF8 operator+(CStringUTF8 a, char b) { return Sum(a, {&b, 1}); }
    friend CStringUTF8 operator+(char a, const CStringUTF8& b) {
        CStringUTF8 sum(a, 1);
        return Sum(sum, b.View());
    }
    friend bool operator==(const CStringUTF8& a, const CStringUTF8& b) {
        return a.View() == b.View();
    }
    friend bool operator==(const CStringUTF8& a, const char* b) { return a.View() == ViewOf(b); }
    friend bool operator==(const char* a, const CStringUTF8& b) { return ViewOf(a) == b.View(); }
    friend bool operator!=(const CStringUTF8& a, const CStringUTF8& b) { return !(a == b); }
    friend bool operator!=(const CStringUTF8& a, const char* b) { return !(a == b); }
    friend bool operator!=(const char* a, const CStringUTF8& b) { return !(a == b); }
    friend bool operator<(const CStringUTF8& a, const CStringUTF8& b) {
        return a.View() < b.View();
    }
    friend bool operator<(const CStringUTF8& a, const char* b) { return a.View() < ViewOf(b); }
    friend bool operator<(const char* a, const CStringUTF8& b) { return ViewOf(a) < b.View(); }

private:
    static std::string_view ViewOf(const char* text) {
        return text == nullptr ? std::string_view() : std::string_view(text);
    }
    static std::size_t Size(int value) { return value < 0 ? 0 : static_cast<std::size_t>(value); }
    static int Position(std::size_t found) {
        return found == std::string_view::npos ? -1 : static_cast<int>(found);
    }
    static CStringUTF8 Sum(CStringUTF8& a, std::string_view b) { return std::move(a.Add(b)); }
    std::size_t Clip(int value) const { return std::min<std::size_t>(Size(value), size_); }
    std::size_t Checked(int index) const {
        if (index < 0 || Size(index) >= size_) {
            throw std::invalid_argument("string index outside the text");
        }
        return Size(index);
    }

    char* Data() { return capacity_ == 0 ? text_.local : text_.heap; }
    const char* Data() const { return capacity_ == 0 ? text_.local : text_.heap; }
    std::string_view View() const { return {Data(), size_}; }
    // The text is short of its capacity.
    void SetEnd(std::size_t size) {
        size_ = static_cast<std::uint32_t>(size);
        Data()[size] = '\0';
    }
    void CopyStorage(const CStringUTF8& other) {
        size_ = other.size_;
        capacity_ = other.capacity_;
        std::memcpy(text_.local, other.text_.local, sizeof text_.local);  // of either kind
    }
    void Take(CStringUTF8& other) noexcept {
        CopyStorage(other);
        other.capacity_ = 0;
        other.SetEnd(0);
    }
    // Makes room for size bytes; the text stays.
    void Reserve(std::size_t size) {
        if (size <= (capacity_ == 0 ? kLocal : capacity_)) return;
        if (size > kMost) throw std::length_error("text too long");
        const std::size_t capacity =
            std::min(std::max(size, 2 * std::size_t{size_}), std::size_t{kMost});
        char* const heap = new char[capacity + 1];
        std::memcpy(heap, Data(), size_ + 1U);
        if (capacity_ != 0) delete[] text_.heap;
        text_.heap = heap;
        capacity_ = static_cast<std::uint32_t>(capacity);
    }
    // The text is new, and the view no part of it.
    void AssignApart(std::string_view text) {
        if (text.size() > kLocal) {
            Reserve(text.size());
            std::memcpy(text_.heap, text.data(), text.size());
            return SetEnd(text.size());
        }
        CopyShort(text_.local, text.data(), text.size());
        text_.local[text.size()] = '\0';
        size_ = static_cast<std::uint32_t>(text.size());
    }
    // Up to kLocal bytes, in overlapping words.
    static void CopyShort(char* to, const char* from, std::size_t size) {
        if (size >= 8) {
            std::memcpy(to, from, 8);
            if (size > 16) std::memcpy(to + 8, from + 8, 8);
            std::memcpy(to + size - 8, from + size - 8, 8);
        } else if (size >= 4) {
            std::memcpy(to, from, 4);
            std::memcpy(to + size - 4, from + size - 4, 4);
        } else {
            for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
        }
    }
    CStringUTF8& Add(std::string_view text) {
        const std::size_t sum = size_ + text.size();
        if (sum > (capacity_ == 0 ? kLocal : capacity_)) {
            CStringUTF8 larger;  // apart: the view may be a part of this text
            larger.Reserve(std::max(sum, std::min(2 * std::size_t{size_}, std::size_t{kMost})));
            std::memcpy(larger.Data(), Data(), size_);
            std::memcpy(larger.Data() + size_, text.data(), text.size());
            larger.SetEnd(sum);
            return *this = std::move(larger);
        }
        if (!text.empty()) std::memmove(Data() + size_, text.data(), text.size());
        SetEnd(sum);
        return *this;
    }
    void Fill(std::size_t count, char c) {
        Reserve(size_ + count);
        std::memset(Data() + size_, c, count);
        SetEnd(size_ + count);
    }

    static constexpr std::size_t kLocal = 23;
    static constexpr std::size_t kMost = 0x7FFFFFFF;

    // A text of up to kLocal bytes stands in the object; nothing in it points at itself, so that
    // moving one is copying it.
    std::uint32_t size_ = 0;
    std::uint32_t capacity_ = 0;  // of text_.heap; 0 for a text in text_.local
    union {
        char local[kLocal + 1] = {};
        char* heap;
    } text_;
};
