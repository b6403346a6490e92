// A growing list whose entries never move: for handles, which cost a call each to move.
#pragma once

#include <bit>
#include <cstddef>
#include <utility>
#include <vector>

namespace uxkit {

template <typename T>
class Blocks {
public:
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    T& operator[](std::size_t index) {
        const Place place = place_of(index);
        return blocks_[place.block][place.offset];
    }
    const T& operator[](std::size_t index) const {
        const Place place = place_of(index);
        return blocks_[place.block][place.offset];
    }
    T& front() { return (*this)[0]; }
    T& push_back(T value) {
        const Place place = place_of(size_);
        if (place.block == blocks_.size()) blocks_.emplace_back().reserve(kFirst << place.block);
        T& added = blocks_[place.block].emplace_back(std::move(value));
        ++size_;
        return added;
    }
    T& emplace_back() {
        const Place place = place_of(size_);
        if (place.block == blocks_.size()) blocks_.emplace_back().reserve(kFirst << place.block);
        T& added = blocks_[place.block].emplace_back();
        ++size_;
        return added;
    }
    void pop_back() {
        const Place place = place_of(--size_);
        blocks_[place.block].pop_back();
        if (place.offset == 0) blocks_.pop_back();
    }
    void clear() {
        blocks_.clear();
        size_ = 0;
    }

private:
    // Each block has twice the room of the one before.
    static constexpr std::size_t kFirst = 16;
    struct Place {
        std::size_t block;
        std::size_t offset;
    };
    static Place place_of(std::size_t index) {
        const std::size_t shifted = index + kFirst;
        return {static_cast<std::size_t>(std::bit_width(shifted) - std::bit_width(kFirst)),
                shifted - std::bit_floor(shifted)};
    }

    std::vector<std::vector<T>> blocks_;
    std::size_t size_ = 0;
};

}  // namespace uxkit
