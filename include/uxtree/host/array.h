// The host's growable arrays, the same for every host. An index outside an array throws
// std::invalid_argument.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "uxtree/host/export.h"
#include "uxtree/host/string.h"

// Makes a block of memory `bytes` long, perhaps at another place; its first `used` bytes stay. A null
// block is a new one. std::free lets it go. Throws std::bad_alloc with the block as it was.
UXHOST_API void* UXResizeMemory(void* block, std::size_t used, std::size_t bytes);

// A growable array of strings.
class UXHOST_API CWBOStringArray {
public:
    CWBOStringArray() noexcept = default;
    CWBOStringArray(const CWBOStringArray& other) : CWBOStringArray() { Append(other); }
    CWBOStringArray(CWBOStringArray&& other) noexcept { Swap(other); }
    ~CWBOStringArray() {
        Cut(0);
        std::free(items_);
    }
    CWBOStringArray& operator=(const CWBOStringArray& other) {
        if (this != &other) *this = CWBOStringArray(other);
        return *this;
    }
    CWBOStringArray& operator=(CWBOStringArray&& other) noexcept {
        CWBOStringArray taken(std::move(other));
        Swap(taken);
        return *this;
    }

    int GetSize() const { return static_cast<int>(size_); }
    int GetCount() const { return GetSize(); }
    int GetUpperBound() const { return GetSize() - 1; }  // the last index, -1 when empty
    bool IsEmpty() const { return size_ == 0; }
    void SetSize(int size) {  // new elements are ""
        Check(size >= 0);
        Cut(Index(size));
        Reserve(Index(size));
        while (size_ < Index(size)) new (&items_[size_++]) CStringUTF8();
    }
    const CStringUTF8& GetAt(int index) const { return items_[Checked(index)]; }
    void SetAt(int index, const CStringUTF8& value) { items_[Checked(index)] = value; }
    void SetAtGrow(int index, CStringUTF8 value) {  // a copy: value may live in this array
        Check(index >= 0 && index < std::numeric_limits<int>::max());
        if (index >= GetSize()) SetSize(index + 1);
        items_[Index(index)] = std::move(value);
    }
    CStringUTF8& ElementAt(int index) { return items_[Checked(index)]; }
    CStringUTF8& operator[](int index) { return items_[Checked(index)]; }
    const CStringUTF8& operator[](int index) const { return items_[Checked(index)]; }
    int Add(const CStringUTF8& value) {  // index of the new element
        // A copy when the array grows: value may live in it.
        return size_ == capacity_ ? Add(CStringUTF8(value)) : AddNew(value);
    }
    int Add(CStringUTF8&& value) {
        CStringUTF8 taken(std::move(value));
        return AddNew(std::move(taken));
    }
    // Adds a text that is no part of this array.
    void AddText(std::string_view text) { AddNew(text); }
    int Append(const CWBOStringArray& other) {  // index of the first new element
        const std::size_t first = size_;
        const std::size_t added = other.size_;
        Reserve(first + added);
        for (std::size_t i = 0; i < added; ++i) AddNew(other.items_[i]);
        return static_cast<int>(first);
    }
    void Copy(const CWBOStringArray& other) { *this = other; }
    void InsertAt(int index, const CStringUTF8& value, int count = 1) {
        Check(index >= 0 && count >= 0);
        CStringUTF8 copy(value);  // value may live in this array
        if (index > GetSize()) SetSize(index);
        const std::size_t old = size_;
        Reserve(old + Index(count));
        while (size_ < old + Index(count)) AddNew(copy);
        std::rotate(items_ + index, items_ + old, items_ + size_);
    }
    void RemoveAt(int index, int count = 1) {
        Check(index >= 0 && count >= 0 && count <= GetSize() - index);
        if (count == 0) return;
        std::move(items_ + index + count, items_ + size_, items_ + index);
        Cut(size_ - Index(count));
    }
    void RemoveAll() { Cut(0); }

private:
    static std::size_t Index(int index) { return static_cast<std::size_t>(index); }
    static void Check(bool inside) {
        if (!inside) throw std::invalid_argument("array index outside the array");
    }
    std::size_t Checked(int index) const {
        Check(index >= 0 && Index(index) < size_);
        return Index(index);
    }
    template <typename Value>
    int AddNew(Value&& value) {
        if (size_ == capacity_) Reserve(size_ + 1);
        new (&items_[size_]) CStringUTF8(std::forward<Value>(value));
        return static_cast<int>(size_++);
    }
    void Cut(std::size_t size) {
        while (size_ > size) items_[--size_].~CStringUTF8();
    }
    // Room for at least size elements, twice as many on growth. A string may be moved by copying
    // its bytes, so the host may move the block as it likes. A list that outgrows half a megabyte
    // gets four at once: memory that is not touched costs less than another move.
    void Reserve(std::size_t size) {
        constexpr std::size_t kMany = 16384;
        if (size <= capacity_) return;
        if (size > Index(std::numeric_limits<int>::max()))
            throw std::length_error("array too large");
        const std::size_t least = capacity_ < kMany ? 4 : 8 * kMany;
        const std::size_t capacity = std::max({least, size, 2 * capacity_});
        items_ = static_cast<CStringUTF8*>(
            UXResizeMemory(items_, size_ * sizeof(CStringUTF8), capacity * sizeof(CStringUTF8)));
        capacity_ = capacity;
    }
    void Swap(CWBOStringArray& other) noexcept {
        std::swap(items_, other.items_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

    CStringUTF8* items_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

// A growable array of plain values. Not a std::vector inside: bool elements need addresses.
template <class T, class A = T>
class CArray {
public:
    CArray() = default;
    CArray(const CArray& other) { Copy(other); }
    CArray(CArray&& other) noexcept { Swap(other); }
    ~CArray() = default;
    CArray& operator=(const CArray& other) {
        if (this != &other) Copy(other);
        return *this;
    }
    CArray& operator=(CArray&& other) noexcept {
        Swap(other);
        return *this;
    }

    int GetSize() const { return size_; }
    int GetCount() const { return size_; }
    int GetUpperBound() const { return size_ - 1; }
    bool IsEmpty() const { return size_ == 0; }
    // New elements are zero.
    void SetSize(int size) {
        if (size < 0) throw std::invalid_argument("array size below zero");
        Reserve(size);
        // Elements beyond the smaller size: new ones, or given-up ones that may hold something.
        const int changed = std::max(size, size_);
        for (int i = std::min(size, size_); i < changed; ++i) items_[Index(i)] = T();
        size_ = size;
    }
    const T& GetAt(int index) const { return items_[Checked(index)]; }
    void SetAt(int index, const A& value) { items_[Checked(index)] = value; }
    void SetAtGrow(int index, const A& value) {
        const T copy = value;
        if (index >= size_) SetSize(Sum(index, 1));
        items_[Checked(index)] = copy;
    }
    T& ElementAt(int index) { return items_[Checked(index)]; }
    T& operator[](int index) { return items_[Checked(index)]; }
    const T& operator[](int index) const { return items_[Checked(index)]; }
    T* GetData() { return items_.get(); }
    const T* GetData() const { return items_.get(); }
    // Index of the new element.
    int Add(const A& value) {
        if (size_ == capacity_) {
            T copy = value;  // value may live in this array
            Reserve(Sum(size_, 1));
            items_[Index(size_)] = std::move(copy);
        } else {
            items_[Index(size_)] = value;
        }
        return size_++;
    }
    // Index of the first new element.
    int Append(const CArray& other) {
        const int first = size_;
        const int added = other.size_;
        Reserve(Sum(first, added));
        for (int i = 0; i < added; ++i) items_[Index(first + i)] = other.items_[Index(i)];
        size_ = first + added;
        return first;
    }
    void Copy(const CArray& other) {
        if (this == &other) return;
        SetSize(other.size_);
        std::copy_n(other.items_.get(), Index(size_), items_.get());
    }
    void InsertAt(int index, const A& value, int count = 1) {
        if (index < 0 || count < 0) throw std::invalid_argument("array index outside the array");
        const T copy = value;
        const int oldSize = size_;
        SetSize(Sum(std::max(index, oldSize), count));
        for (int i = oldSize - 1; i >= index; --i) {
            items_[Index(i + count)] = std::move(items_[Index(i)]);
        }
        for (int i = 0; i < count; ++i) items_[Index(index + i)] = copy;
    }
    void RemoveAt(int index, int count = 1) {
        if (index < 0 || count < 0 || count > size_ - index) {
            throw std::invalid_argument("array index outside the array");
        }
        for (int i = index; i + count < size_; ++i) {
            items_[Index(i)] = std::move(items_[Index(i + count)]);
        }
        for (int i = size_ - count; i < size_; ++i) items_[Index(i)] = T();
        size_ -= count;
    }
    void RemoveAll() {
        items_.reset();
        size_ = 0;
        capacity_ = 0;
    }

private:
    static std::size_t Index(int index) { return static_cast<std::size_t>(index); }
    std::size_t Checked(int index) const {
        if (index < 0 || index >= size_) {
            throw std::invalid_argument("array index outside the array");
        }
        return Index(index);
    }
    static int Sum(int a, int b) {
        if (b > std::numeric_limits<int>::max() - a) throw std::length_error("array too large");
        return a + b;
    }
    // Room for at least size elements; half as much again on growth keeps repeated appending
    // linear.
    void Reserve(int size) {
        if (size <= capacity_) return;
        const int half = std::min(capacity_ / 2, std::numeric_limits<int>::max() - capacity_);
        const int capacity = std::max({4, size, capacity_ + half});
        std::unique_ptr<T[]> items(new T[Index(capacity)]);  // SetSize and Add assign
        std::move(items_.get(), items_.get() + size_, items.get());
        items_ = std::move(items);
        capacity_ = capacity;
    }
    void Swap(CArray& other) noexcept {
        std::swap(items_, other.items_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

    std::unique_ptr<T[]> items_;
    int size_ = 0;
    int capacity_ = 0;
};
