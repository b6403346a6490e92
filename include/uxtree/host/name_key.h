// A name that is asked of many nodes.
#pragma once

#include <cstdint>
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

    std::string_view text_ = "";
    mutable std::uint64_t stamp_ = 0;  // when the number was found; 0 is never
    mutable std::uint64_t number_ = 0;
};
