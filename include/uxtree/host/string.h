// The host's string: UTF-8 text addressed by bytes.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>

#include "uxtree/host/export.h"

// A growable UTF-8 string. Lengths, positions and counts are bytes; positions and counts outside
// the text are clipped. A null text is "" everywhere. "No case" folds ASCII letters only. White
// space is the ASCII one.
class UXHOST_API CStringUTF8 {
public:
    CStringUTF8();
    CStringUTF8(const char* text);  // null gives ""
    CStringUTF8(char c, int count);
    CStringUTF8(const CStringUTF8& other);
    CStringUTF8(CStringUTF8&& other) noexcept;
    ~CStringUTF8();
    CStringUTF8& operator=(const CStringUTF8& other);
    CStringUTF8& operator=(CStringUTF8&& other) noexcept;
    CStringUTF8& operator=(const char* text);
    CStringUTF8& operator=(char c);
    CStringUTF8& operator+=(const CStringUTF8& other);
    CStringUTF8& operator+=(const char* text);
    CStringUTF8& operator+=(char c);

    int GetLength() const;
    bool IsEmpty() const;
    void Empty();
    // These throw std::invalid_argument for an index outside the text.
    char GetAt(int index) const;
    void SetAt(int index, char c);
    char operator[](int index) const;
    operator const char*() const;
    // A writable buffer of at least minLength characters, to be followed by ReleaseBuffer, which
    // cuts the text to newLength, or to its first NUL when newLength is negative.
    char* GetBuffer(int minLength = 0);
    void ReleaseBuffer(int newLength = -1);

    int Compare(const char* text) const;  // bytewise, unsigned; zero when equal
    int CompareNoCase(const char* text) const;
    int Find(char c, int start = 0) const;            // negative when absent
    int Find(const char* text, int start = 0) const;  // "" is found at start
    int ReverseFind(char c) const;
    CStringUTF8 Mid(int start) const;
    CStringUTF8 Mid(int start, int count) const;
    CStringUTF8 Left(int count) const;
    CStringUTF8 Right(int count) const;

    int Insert(int index, const char* text);  // yields the new length
    int Insert(int index, char c);
    int Delete(int index, int count = 1);  // yields the new length
    // Replaces from left to right without looking at replaced text again; yields the number of
    // replacements, 0 for an empty oldText.
    int Replace(const char* oldText, const char* newText);
    void Append(const char* text);
    void AppendChar(char c);
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

    // Assigns bytes that need not end in NUL. For the host's own use and for readers of files.
    void Assign(const char* bytes, std::size_t length);

private:
    std::string text_;
};

UXHOST_API CStringUTF8 operator+(const CStringUTF8& a, const CStringUTF8& b);
UXHOST_API CStringUTF8 operator+(const CStringUTF8& a, const char* b);
UXHOST_API CStringUTF8 operator+(const char* a, const CStringUTF8& b);
UXHOST_API CStringUTF8 operator+(const CStringUTF8& a, char b);
UXHOST_API CStringUTF8 operator+(char a, const CStringUTF8& b);
UXHOST_API bool operator==(const CStringUTF8& a, const CStringUTF8& b);
UXHOST_API bool operator==(const CStringUTF8& a, const char* b);
UXHOST_API bool operator==(const char* a, const CStringUTF8& b);
UXHOST_API bool operator!=(const CStringUTF8& a, const CStringUTF8& b);
UXHOST_API bool operator!=(const CStringUTF8& a, const char* b);
UXHOST_API bool operator!=(const char* a, const CStringUTF8& b);
UXHOST_API bool operator<(const CStringUTF8& a, const CStringUTF8& b);
UXHOST_API bool operator<(const CStringUTF8& a, const char* b);
UXHOST_API bool operator<(const char* a, const CStringUTF8& b);
