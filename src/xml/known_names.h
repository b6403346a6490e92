// The names that a reader met, found again by their first bytes.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <string_view>

#include "xml/scan.h"

namespace ux::xml {

// What a sink says about a name that it keeps.
struct SinkName {
    std::uint32_t place = 0;     // counts the sink's names, from any number on
    std::uint32_t id = 0;        // as the sink wants to be told of it
    const char* text = nullptr;  // stays where it is
};

// The first 16 bytes of a name, zeros behind a shorter one.
struct NameKey {
    std::uint64_t low = 0;
    std::uint64_t high = 0;

    // Of length bytes, at most 16. 16 bytes are read.
    static NameKey of(const char* bytes, unsigned length) {
        NameKey key;
        std::memcpy(&key.low, bytes, 8);
        std::memcpy(&key.high, bytes + 8, 8);
        const NameKey& mask = mask_of(length);
        return {key.low & mask.low, key.high & mask.high};
    }
    // The bytes that a key of such length holds.
    static const NameKey& mask_of(unsigned length);

    friend bool operator==(const NameKey& a, const NameKey& b) {
        return ((a.low ^ b.low) | (a.high ^ b.high)) == 0;
    }
};

namespace name_masks {
constexpr std::array<NameKey, 17> make() {
    std::array<NameKey, 17> masks{};
    for (std::size_t length = 0; length <= 16; ++length) {
        std::array<unsigned char, 16> bytes{};
        for (std::size_t i = 0; i < length; ++i) bytes[i] = 0xFF;
        masks[length] = std::bit_cast<NameKey>(bytes);
    }
    return masks;
}
inline constexpr std::array<NameKey, 17> kMasks = make();
}  // namespace name_masks

inline const NameKey& NameKey::mask_of(unsigned length) {
    return name_masks::kMasks[length];
}

// A name, and what followed it the last time: documents repeat themselves.
struct KnownName {
    static constexpr std::size_t kForeseen = 8;

    NameKey key;
    NameKey mask;
    const char* text = nullptr;
    std::uint32_t length = 0;
    std::uint32_t id = 0;     // the sink's
    std::uint32_t stamp = 0;  // the last tag that had it as an attribute
    bool isTyped = false;     // a DTD gives attributes of these elements another type than text
    KnownName* nextTag = nullptr;
    // The attributes of the last tag of this name.
    std::array<KnownName*, kForeseen>* attributes = nullptr;

    std::string_view view() const { return {text, length}; }
    // Do the name's bytes stand there, before end? The byte behind them is not looked at.
    bool stands_at(const char* bytes, const char* end) const {
        NameKey found;
        std::memcpy(&found.low, bytes, 8);
        std::memcpy(&found.high, bytes + 8, 8);
        found.low &= mask.low;
        found.high &= mask.high;
        if (!(found == key)) return false;
        return length <= 16 || tail_stands_at(bytes, end);
    }
    bool tail_stands_at(const char* bytes, const char* end) const {
        return static_cast<std::size_t>(end - bytes) >= length &&
               std::memcmp(bytes + 16, text + 16, length - 16) == 0;
    }
};

// All names of a document: a small cache by their keys before the table of the sink.
class KnownNames {
public:
    // A name with such a key that was met lately. A full key may be that of several names.
    KnownName* cached(const NameKey& key) const {
        KnownName* const name = cache_[slot_of(key)];
        return name != nullptr && name->key == key ? name : nullptr;
    }
    // The name that a sink resolved; isNew tells whether it was not known.
    KnownName& add(const SinkName& name, std::size_t length, bool& isNew) {
        while (names_.size() <= name.place) names_.emplace_back();
        KnownName& known = names_[name.place];
        isNew = known.text == nullptr;
        if (isNew) {
            const auto head = static_cast<unsigned>(length < 16 ? length : 16);
            std::array<char, 16> bytes{};
            std::memcpy(bytes.data(), name.text, head);
            known.key = NameKey::of(bytes.data(), head);
            known.mask = NameKey::mask_of(head);
            known.text = name.text;
            known.length = static_cast<std::uint32_t>(length);
            known.id = name.id;
        }
        cache_[slot_of(known.key)] = &known;
        return known;
    }
    // Room for what is foreseen behind a tag.
    std::array<KnownName*, KnownName::kForeseen>* new_foreseen() {
        return &foreseen_.emplace_back();
    }

private:
    static constexpr unsigned kSlotBits = 9;

    static std::size_t slot_of(const NameKey& key) {
        const std::uint64_t mixed = key.low * 0x9E3779B97F4A7C15U ^ key.high * 0xC2B2AE3D27D4EB4FU;
        return mixed * 0x9E3779B97F4A7C15U >> (64 - kSlotBits);
    }

    std::array<KnownName*, std::size_t{1} << kSlotBits> cache_{};
    std::deque<KnownName> names_;  // by their place with the sink
    std::deque<std::array<KnownName*, KnownName::kForeseen>> foreseen_;
};

}  // namespace ux::xml
