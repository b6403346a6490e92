// Names that are asked of many nodes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

// The name of an attribute or a tag, with room for what a host makes of it: looking it up once for
// a document is then enough for all its nodes. A plain host compares the text and leaves the rest
// alone. The text must outlive the key, which belongs to one thread at a time.
class UXNameKey {
public:
    UXNameKey() = default;
    explicit UXNameKey(const char* name) : text_(name == nullptr ? "" : name) {}
    const char* c_str() const { return text_.data(); }
    std::string_view text() const { return text_; }

private:
    friend struct UXNodeAccess;

    std::string_view text_ = "";  // NOLINT(readability-redundant-string-init): c_str() needs it
    mutable std::uint64_t stamp_ = 0;  // when the number was found; 0 is never
    mutable std::uint64_t number_ = 0;
};

// Several names that are asked at once. A text may be null, for a name that nothing has.
class UXNameKeys {
public:
    static constexpr std::size_t kMost = 32;

    // Names beyond kMost are left out.
    UXNameKeys(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            if (size_ < kMost) texts_[size_++] = name == nullptr ? "" : name;
        }
    }
    std::size_t size() const { return size_; }
    const char* c_str(std::size_t i) const { return texts_[i]; }

private:
    friend struct UXNodeAccess;

    std::array<const char*, kMost> texts_;
    std::size_t size_ = 0;
    // What a host found for the document of the stamp: the numbers of the names that it knows and
    // their places above, chained by a part of the number.
    struct Known {
        std::uint32_t number;
        std::uint8_t place;
        std::uint8_t next;  // 1 above its index, 0 at the end
    };
    mutable std::uint64_t stamp_ = 0;
    mutable std::array<std::uint8_t, 64> chains_;
    mutable std::array<Known, kMost> known_;
};

// What one look at a node tells.
struct UXNodeLook {
    unsigned present = 0;  // bit i: the node has the attribute names[i]
    int childCount = 0;
    bool textAtHand = false;  // false when the host would have to make the text of the value
    std::string_view value;   // the node's own text, "" when there is none or it is not at hand
    std::array<std::string_view, UXNameKeys::kMost> attributes;  // those that are present
};
