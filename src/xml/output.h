// Output of XML text, collected in memory and passed on to a file.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "base/file_output.h"
#include "xml/escaping.h"

namespace ux::xml {

// With a file, what is collected goes there whenever it is long enough; without, it stays here.
class Output {
public:
    explicit Output(FileOutput* file) : file_(file) {}

    void put(char c) {
        if (size_ == capacity_) grow(1);
        bytes_[size_++] = c;
    }
    void put(std::string_view text) {
        if (text.size() > capacity_ - size_) grow(text.size());
        std::memcpy(bytes_.get() + size_, text.data(), text.size());
        size_ += text.size();
    }
    template <std::size_t N>
    void put(const char (&literal)[N]) {
        if (N > capacity_ - size_) grow(N);
        std::memcpy(bytes_.get() + size_, literal, N - 1);
        size_ += N - 1;
    }
    // A text that ends in the middle of a word which is readable as a whole. It can be copied word
    // by word, which for short texts is much faster than a call.
    void put_padded(std::string_view text) {
        if (text.size() > kLongText) {
            put(text);
            return;
        }
        if (kLongText + kWord > capacity_ - size_) grow(kLongText + kWord);
        char* to = bytes_.get() + size_;
        for (std::size_t i = 0; i < text.size(); i += kWord) {
            std::memcpy(to + i, text.data() + i, kWord);
        }
        size_ += text.size();
    }
    // A padded text in which the given classes ask for references; classes_in told what it has.
    void put_escaped(std::string_view text, unsigned found, TextClass place) {
        if ((found & place) == 0) {
            put_padded(text);
            return;
        }
        std::size_t plain = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if ((class_of(text[i]) & place) == 0) continue;
            put(text.substr(plain, i - plain));
            put(reference_for(text[i]));
            plain = i + 1;
        }
        put(text.substr(plain));
    }
    void flush_when_long() {
        if (file_ != nullptr && size_ >= kFlushBytes) flush();
    }
    void flush() {
        file_->write(text());
        size_ = 0;
    }
    // What stands here; without a file that is all.
    std::string_view text() const { return {bytes_.get(), size_}; }

private:
    static constexpr std::size_t kFlushBytes = 1 << 20;
    static constexpr std::size_t kLongText = 128;
    static constexpr std::size_t kWord = 8;

    void grow(std::size_t room) {
        const std::size_t capacity = std::max(capacity_ * 2, size_ + room + 2 * kLongText);
        std::unique_ptr<char[]> bytes(new char[capacity]);
        if (size_ != 0) std::memcpy(bytes.get(), bytes_.get(), size_);
        bytes_ = std::move(bytes);
        capacity_ = capacity;
    }

    FileOutput* file_;
    std::unique_ptr<char[]> bytes_;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
};

}  // namespace ux::xml
