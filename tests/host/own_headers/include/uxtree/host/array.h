// Growable arrays of a host's own under the published names, of plain values and of strings alike.
// The promises of each member are those of our header of the same name.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <utility>

#include "uxtree/host/export.h"
#include "uxtree/host/string.h"

template <class T, class A = T>
class CArray {
public:
    CArray() = default;
    CArray(const CArray& other) { Copy(other); }
    CArray(CArray&& other) noexcept { Swap(other); }
    ~CArray() = default;
    CArray& operator=(const CArray& other) {
        Copy(other);
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
    void SetSize(int size) {
        Check(size >= 0);
        if (size > capacity_) Grow(std::max({4, size, capacity_ / 2 * 3}));
        for (int i = std::min(size, size_); i < std::max(size, size_); ++i) At(i) = T();
        size_ = size;
    }
    const T& GetAt(int index) const { return At(Checked(index)); }
    void SetAt(int index, const A& value) { At(Checked(index)) = value; }
    void SetAtGrow(int index, A value) {
        if (index >= size_) SetSize(index + 1);
        At(Checked(index)) = std::move(value);
    }
    T& ElementAt(int index) { return At(Checked(index)); }
    T& operator[](int index) { return At(Checked(index)); }
    const T& operator[](int index) const { return At(Checked(index)); }
    T* GetData() { return items_.get(); }
    const T* GetData() const { return items_.get(); }
    int Add(A value) {
        SetSize(size_ + 1);
        At(size_ - 1) = std::move(value);
        return size_ - 1;
    }
    int Append(const CArray& other) {
        const int first = size_;
        const int added = other.size_;  // other may be this array
        SetSize(first + added);
        for (int i = 0; i < added; ++i) At(first + i) = other.At(i);
        return first;
    }
    void Copy(const CArray& other) {
        SetSize(other.size_);
        for (int i = 0; i < size_ && this != &other; ++i) At(i) = other.At(i);
    }
    void InsertAt(int index, A value, int count = 1) {
        Check(index >= 0 && count >= 0);
        const int oldSize = size_;
        SetSize(std::max(index, oldSize) + count);
        for (int i = oldSize - 1; i >= index; --i) At(i + count) = std::move(At(i));
        for (int i = 0; i < count; ++i) At(index + i) = value;
    }
    void RemoveAt(int index, int count = 1) {
        Check(index >= 0 && count >= 0 && count <= size_ - index);
        for (int i = index; i + count < size_; ++i) At(i) = std::move(At(i + count));
        SetSize(size_ - count);
    }
    void RemoveAll() { CArray().Swap(*this); }

private:
    static void Check(bool condition) {
        if (!condition) throw std::invalid_argument("array index outside the array");
    }
    int Checked(int index) const {
        Check(index >= 0 && index < size_);
        return index;
    }
    T& At(int index) const { return items_[static_cast<std::size_t>(index)]; }
    void Grow(int capacity) {
        std::unique_ptr<T[]> items(new T[static_cast<std::size_t>(capacity)]());
        std::move(items_.get(), items_.get() + size_, items.get());
        items_ = std::move(items);
        capacity_ = capacity;
    }
    void Swap(CArray& other) noexcept {
        std::swap(items_, other.items_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

    std::unique_ptr<T[]> items_;  // not a std::vector: elements of bool need addresses
    int size_ = 0;
    int capacity_ = 0;
};

class UXHOST_API CWBOStringArray : public CArray<CStringUTF8> {
public:
    void AddText(std::string_view text) { Add(CStringUTF8(text)); }
};
