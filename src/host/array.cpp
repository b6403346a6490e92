#include "uxtree/host/array.h"

#include <iterator>

namespace {
[[noreturn]] void throw_outside() {
    throw std::invalid_argument("array index outside the array");
}

std::size_t checked(int index, std::size_t size) {
    if (index < 0 || static_cast<std::size_t>(index) >= size) throw_outside();
    return static_cast<std::size_t>(index);
}
}  // namespace

int CWBOStringArray::GetSize() const {
    return static_cast<int>(items_.size());
}

int CWBOStringArray::GetCount() const {
    return GetSize();
}

int CWBOStringArray::GetUpperBound() const {
    return GetSize() - 1;
}

bool CWBOStringArray::IsEmpty() const {
    return items_.empty();
}

void CWBOStringArray::SetSize(int size) {
    if (size < 0) throw std::invalid_argument("array size below zero");
    items_.resize(static_cast<std::size_t>(size));
}

const CStringUTF8& CWBOStringArray::GetAt(int index) const {
    return items_[checked(index, items_.size())];
}

void CWBOStringArray::SetAt(int index, const CStringUTF8& value) {
    items_[checked(index, items_.size())] = value;
}

void CWBOStringArray::SetAtGrow(int index, const CStringUTF8& value) {
    if (index < 0) throw_outside();
    const auto at = static_cast<std::size_t>(index);
    CStringUTF8 copy(value);  // value may live in this array
    if (at >= items_.size()) items_.resize(at + 1);
    items_[at] = std::move(copy);
}

CStringUTF8& CWBOStringArray::ElementAt(int index) {
    return items_[checked(index, items_.size())];
}

CStringUTF8& CWBOStringArray::operator[](int index) {
    return items_[checked(index, items_.size())];
}

const CStringUTF8& CWBOStringArray::operator[](int index) const {
    return items_[checked(index, items_.size())];
}

int CWBOStringArray::Add(const CStringUTF8& value) {
    items_.push_back(value);
    return GetUpperBound();
}

int CWBOStringArray::Add(CStringUTF8&& value) {
    items_.push_back(std::move(value));
    return GetUpperBound();
}

int CWBOStringArray::Append(const CWBOStringArray& other) {
    const int first = GetSize();
    if (this == &other) {
        const CWBOStringArray copy(other);
        items_.insert(items_.end(), copy.items_.begin(), copy.items_.end());
    } else {
        items_.insert(items_.end(), other.items_.begin(), other.items_.end());
    }
    return first;
}

void CWBOStringArray::Copy(const CWBOStringArray& other) {
    items_ = other.items_;
}

void CWBOStringArray::InsertAt(int index, const CStringUTF8& value, int count) {
    if (index < 0 || count < 0) throw_outside();
    const auto at = static_cast<std::size_t>(index);
    // Copied first: value may live in this array.
    std::vector<CStringUTF8> added(static_cast<std::size_t>(count), value);
    if (at > items_.size()) items_.resize(at);
    items_.insert(items_.begin() + index, std::make_move_iterator(added.begin()),
                  std::make_move_iterator(added.end()));
}

void CWBOStringArray::RemoveAt(int index, int count) {
    if (index < 0 || count < 0 || count > GetSize() - index) throw_outside();
    items_.erase(items_.begin() + index, items_.begin() + index + count);
}

void CWBOStringArray::RemoveAll() {
    items_.clear();
}
