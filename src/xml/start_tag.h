// A start tag as readers tell it to their sinks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "xml/known_names.h"

namespace ux::xml {

// Pairs of an element and an attribute that a DTD declares with another type than text.
using TypedAttributes = std::set<std::pair<std::string, std::string>>;

struct ReadAttribute {
    KnownName* name;
    std::uint32_t offset;  // of the value, from the start of the tag
    std::uint32_t size;
};

// Its values are valid until the sink returns.
struct StartTag {
    // More than this fits no offset.
    static constexpr std::size_t kMostBytes = std::size_t{1} << 31;
    // So many bytes can be read behind each value that is not long, whatever they are.
    static constexpr std::size_t kReadBehind = 8;
    static constexpr std::size_t kLongValue = std::size_t{1} << 16;

    const KnownName& name;
    const char* bytes;
    const ReadAttribute* attributes;
    std::size_t count;

    std::string_view value(std::size_t i) const {
        return {bytes + attributes[i].offset, attributes[i].size};
    }
};

}  // namespace ux::xml
