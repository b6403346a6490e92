// What the content of an element is made of, when it is written anew.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ux::xml {

enum class ItemKind : std::uint8_t {
    kLineEnd,  // between elements
    kSpace,    // the same, without a line break
    kText,     // character data or a section: part of the element's value
    kComment,
    kInstruction,
    kChild,
};

inline constexpr std::uint32_t kNone = UINT32_MAX;

// A piece of content: bytes of the source, or new text.
struct ContentItem {
    ItemKind kind;
    bool dropped = false;
    bool ownLine = false;  // a child that comes to a place of its own line, behind its indentation
    bool inPlace = true;   // a child below the parent it had; its bytes keep their indentation
    std::uint32_t element = kNone;  // a child's in the source
    std::uint32_t child = kNone;    // its number among the wanted children
    std::uint32_t run = kNone;      // of the value, in text
    std::uint32_t text = kNone;     // of ContentPlan::texts, instead of bytes of the source
    std::size_t begin = 0;
    std::size_t end = 0;
};

}  // namespace ux::xml
