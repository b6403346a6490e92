// The names that a reader met, found again by their first bytes.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <string_view>
#include <vector>

#include "base/large_memory.h"
#include "xml/read_name.h"
#include "xml/scan.h"

namespace ux::xml {

// What a sink says about a name that it keeps.
struct SinkName {
    std::uint32_t place = 0;     // counts the sink's names, from any number on
    std::uint32_t id = 0;        // as the sink wants to be told of it
    const char* text = nullptr;  // stays where it is
};

// A name, and what followed it the last time: documents repeat themselves.
struct KnownName {
    static constexpr std::size_t kForeseen = 8;
    static constexpr std::size_t kHead = NameKey::kBytes;
    using Foreseen = std::array<KnownName*, kForeseen + 1>;  // the last is always null

    // The name's first bytes and, where they fit, the "=" and the quote that open a value.
    alignas(16) std::array<char, kHead> head{};
    const char* text = nullptr;
    std::uint32_t length = 0;
    std::uint32_t id = 0;           // the sink's
    std::uint32_t stamp = 0;        // the last tag that had it as an attribute
    std::uint16_t nameBits = 0;     // for each byte of the head that is the name's
    std::uint16_t openingBits = 0;  // for those that open a value too
    bool isTyped = false;  // a DTD gives attributes of these elements another type than text
    KnownName* nextTag = nullptr;  // the element that started next
    // The attributes of the last tag of this name.
    Foreseen* attributes = nullptr;

    // The key is that of the text.
    void set_text(const char* bytes, std::size_t size, const NameKey& key) {
        const std::size_t part = std::min(size, kHead);
        const NameKey& opening = name_keys::kOpenings[part];
        const std::array<std::uint64_t, 2> words{key.low | opening.low, key.high | opening.high};
        std::memcpy(head.data(), words.data(), kHead);
        nameBits = bits_of(part);
        openingBits = bits_of(std::min(part + 2, kHead));
        text = bytes;
        length = static_cast<std::uint32_t>(size);
    }
    std::string_view view() const { return {text, length}; }
    // Do the name's bytes stand there, before end? The byte behind them is not looked at.
    bool stands_at(const char* bytes, const char* end) const {
        return head_stands_at(bytes, nameBits) && (length <= kHead || tail_stands_at(bytes, end));
    }
    // Is it a name of such length, or both are longer than a head, that begins there?
    bool begins_at(const char* bytes, std::size_t headLength) const {
        return nameBits == bits_of(headLength) && head_stands_at(bytes, nameBits);
    }
    // Do the name, "=" and a double quote stand there?
    bool opens_value_at(const char* bytes, const char* end) const {
        if (!head_stands_at(bytes, openingBits)) return false;
        return length <= kHead - 2 ||
               (stands_at(bytes, end) && bytes[length] == '=' && bytes[length + 1] == '"');
    }
    bool tail_stands_at(const char* bytes, const char* end) const {
        return static_cast<std::size_t>(end - bytes) >= length &&
               std::memcmp(bytes + kHead, text + kHead, length - kHead) == 0;
    }

private:
    static std::uint16_t bits_of(std::size_t bytes) {
        return static_cast<std::uint16_t>((1U << bytes) - 1);
    }
    bool head_stands_at(const char* bytes, std::uint16_t bits) const {
        return (equal_bytes(bytes, head.data()) & bits) == bits;
    }
};

// Names by their place with the sink, which never move.
class NamesByPlace {
public:
    // One that nothing is known of at first. As a rule it is the one behind the last.
    KnownName& at(std::size_t place) {
        const std::size_t next = place - start_;
        if (block_ != nullptr && next == block_->size() && next < block_->capacity()) {
            return block_->emplace_back();
        }
        return anywhere(place);
    }

private:
    // Each but the first has as many names as all before it.
    using Block = std::vector<KnownName, LargeMemory<KnownName>>;
    static constexpr std::size_t kFirstBlock = 64;

    __attribute__((noinline)) KnownName& anywhere(std::size_t place) {
        const auto number = static_cast<std::size_t>(std::bit_width(place / kFirstBlock));
        const std::size_t start = number == 0 ? 0 : kFirstBlock << (number - 1);
        if (number >= blocks_.size()) {
            blocks_.resize(number + 1);
            block_ = &blocks_.back();
            start_ = start;
        }
        Block& block = blocks_[number];
        if (block.empty()) block.reserve(std::max(start, kFirstBlock));
        while (block.size() <= place - start) block.emplace_back();
        return block[place - start];
    }

    std::vector<Block> blocks_;
    Block* block_ = nullptr;  // the last
    std::size_t start_ = 0;   // the place of its first name
};

// All names of a document: a small cache by their keys before the table of the sink.
class KnownNames {
public:
    // A name that was met lately and begins with such bytes, which are all of it if they are fewer
    // than a head. 16 bytes are read.
    KnownName* cached(const char* bytes, std::size_t headLength) const {
        const std::uint64_t mixed = mixed_of(NameKey::of(bytes, headLength));
        const Slot& slot = cache_[mixed >> (64 - kSlotBits)];
        if (slot.mixed != mixed || slot.name == nullptr) return nullptr;
        return slot.name->begins_at(bytes, headLength) ? slot.name : nullptr;
    }
    // A name that a sink resolved; isNew tells whether it was not known.
    KnownName& add(const SinkName& name, const ReadName& read, bool& isNew) {
        KnownName& known = names_.at(name.place);
        isNew = known.text == nullptr;
        if (isNew) {
            known.set_text(name.text, read.text.size(), read.key);
            known.id = name.id;
        }
        return known;
    }
    void put_into_cache(KnownName& name, const NameKey& key) {
        const std::uint64_t mixed = mixed_of(key);
        cache_[mixed >> (64 - kSlotBits)] = {mixed, &name};
    }
    // Room for what is foreseen behind a tag.
    KnownName::Foreseen* new_foreseen() { return &foreseen_.emplace_back(); }

private:
    static constexpr unsigned kSlotBits = 11;

    // Most other names are told apart by what their keys are mixed to, without a look at them.
    struct Slot {
        std::uint64_t mixed = 0;
        KnownName* name = nullptr;
    };
    static std::uint64_t mixed_of(const NameKey& key) {
        return (key.low ^ std::rotr(key.high, 29)) * 0x9E3779B97F4A7C15U;
    }
    std::array<Slot, std::size_t{1} << kSlotBits> cache_{};
    NamesByPlace names_;
    std::deque<KnownName::Foreseen> foreseen_;
};

}  // namespace ux::xml
