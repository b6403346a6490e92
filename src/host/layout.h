// What a document keeps of its file when it is loaded for editing.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/arena.h"
#include "xml/file_encoding.h"

namespace uxhost {

struct Element;

// The bytes that a document was read from.
struct LayoutSource {
    std::string bytes;
    // Of input without a declared encoding that is not UTF-8.
    ux::xml::FileEncoding codePage = ux::xml::FileEncoding::kUtf8;
};

// For every element, by its reference, where it stood in the source: the number of its start tag,
// from 1; 0 for an element that was never there. Chunks are those of the element slots.
template <typename Slot>
class OriginTable {
public:
    static constexpr std::uint32_t kArranged = std::uint32_t{1} << 31;
    static constexpr std::uint32_t kMost = kArranged - 1;

    std::uint32_t get(Ref ref) const {
        return blocks_[Slots::chunk_of(ref)].origins[Slots::place_of(ref)];
    }
    void set(Ref ref, std::uint32_t origin) {
        blocks_[Slots::chunk_of(ref)].origins[Slots::place_of(ref)] = origin;
    }

    // How many elements the source has.
    std::size_t count() const { return numbered_; }

    // Makes room for an element; get and set never allocate.
    void prepare(Ref ref) {
        const std::size_t chunk = Slots::chunk_of(ref);
        if (chunk >= blocks_.size()) blocks_.resize(chunk + 1);
        Block& block = blocks_[chunk];
        if (block.origins != nullptr) return;
        const std::size_t size = Slots::slots_in_chunk(chunk);
        block.origins = std::make_unique<std::uint32_t[]>(size);
        block.size = size;
    }
    // Numbers the slots of a chunk behind those that were numbered before.
    void number_chunk(Ref first, std::size_t count) {
        if (count > kMost - numbered_) throw std::length_error("elements that can be kept");
        if (count == 0) return;
        prepare(first);
        std::uint32_t* const origins =
            blocks_[Slots::chunk_of(first)].origins.get() + Slots::place_of(first);
        for (std::size_t i = 0; i < count; ++i) origins[i] = ++numbered_;
    }
    OriginTable copy() const {
        OriginTable made;
        made.numbered_ = numbered_;
        made.blocks_.resize(blocks_.size());
        for (std::size_t i = 0; i < blocks_.size(); ++i) {
            const Block& block = blocks_[i];
            if (block.origins == nullptr) continue;
            made.blocks_[i].origins = std::make_unique<std::uint32_t[]>(block.size);
            made.blocks_[i].size = block.size;
            std::copy_n(block.origins.get(), block.size, made.blocks_[i].origins.get());
        }
        return made;
    }

private:
    using Slots = SlotArena<Slot>;
    struct Block {
        std::unique_ptr<std::uint32_t[]> origins;
        std::size_t size = 0;
    };
    std::vector<Block> blocks_;
    std::uint32_t numbered_ = 0;
};

struct DocumentLayout {
    std::shared_ptr<const LayoutSource> source;
    OriginTable<Element> origins;
    bool whole = true;  // the root is the document's, not a branch that was cloned out of it
};

}  // namespace uxhost
