// Growing and copying a document's storage.
#include "host/arena.h"

#include <array>
#include <atomic>
#include <bit>
#include <cstring>
#include <new>
#include <utility>

#include "base/large_memory.h"

namespace uxhost {
namespace {

// A few chunks of one size that no document uses, for the next that needs one: the first touch of
// new memory costs more than most of what is then done with it, and small documents do little else
// than ask for memory and give it back. Any thread may ask.
class SpareChunks {
public:
    char* take() noexcept {
        for (std::atomic<char*>& slot : slots_) {
            if (char* const data = slot.exchange(nullptr); data != nullptr) return data;
        }
        return nullptr;
    }
    // False when there are enough already.
    bool keep(char* data) noexcept {
        for (std::atomic<char*>& slot : slots_) {
            char* none = nullptr;
            if (slot.compare_exchange_strong(none, data)) return true;
        }
        return false;
    }

private:
    std::array<std::atomic<char*>, 8> slots_{};
};

// Those of a size; null for sizes of which none are kept. AddressSanitizer is to see memory that is
// used after it was given back: under it none are kept.
SpareChunks* spares_of([[maybe_unused]] std::size_t bytes) {
#ifndef __SANITIZE_ADDRESS__
    static constinit SpareChunks first;
    static constinit SpareChunks second;
    static constinit SpareChunks full;
    switch (bytes) {
        case kFirstChunkBytes:
            return &first;
        case kFirstChunkBytes * 8:
            return &second;
        case kFullChunkBytes:
            return &full;
        default:
            break;
    }
#endif
    return nullptr;
}

}  // namespace

Chunk::Chunk(std::size_t bytes) : size_(bytes) {
    SpareChunks* const spares = spares_of(bytes);
    if (spares != nullptr) data_ = spares->take();
    if (data_ != nullptr) return;
    data_ = ux::LargeMemory<char>().allocate(bytes);
}
Chunk::Chunk(Chunk&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
Chunk& Chunk::operator=(Chunk&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
}
Chunk::~Chunk() {
    SpareChunks* const spares = data_ == nullptr ? nullptr : spares_of(size_);
    if (spares != nullptr && spares->keep(data_)) return;
    ux::LargeMemory<char>().deallocate(data_, size_);
}

std::size_t ByteArena::rounded_large(std::size_t units) {
    const auto step = static_cast<unsigned>(std::bit_width((units - 1) >> 4));
    return ((units - 1) >> step << step) + (std::size_t{1} << step);
}

// units as rounded, at most kSharedUnits
std::size_t ByteArena::size_class(std::size_t units) {
    if (units <= kExactUnits) return units;
    const auto width = static_cast<unsigned>(std::bit_width(units - 1));
    const std::size_t eighth = ((units - 1) >> (width - 4)) & 7;
    return kExactUnits + 1 + std::size_t{width - 7} * 8 + eighth;
}

Ref ByteArena::pop(std::size_t units) {
    const Ref ref = free_[units];
    std::memcpy(&free_[units], at(ref), sizeof(Ref));
    return ref;
}

Ref ByteArena::allocate_short(std::size_t units) {
    if constexpr (kTight) short_.nextChunkBytes = units << 3;
    open_chunk(short_);
    return short_.take(units);
}

Ref ByteArena::allocate_long(std::size_t units) {
    if (units > kSharedUnits) return add_chunk(units << 3);
    if (const Ref ref = free_[size_class(units)]; ref != 0) {
        unlink(ref);
        ++longUse_[ref >> kUnitBits].blocks;
        return ref;
    }
    if (units > long_.unitsLeft) {
        if (units << 3 > long_.nextChunkBytes / 2) {
            // A chunk of its own, but only for the first few of such blocks.
            const Ref ref = add_chunk(units << 3);
            long_.grow();
            return ref;
        }
        const Ref filled = long_.chunk;
        open_chunk(long_);
        if (filled != 0 && longUse_[filled].blocks == 0) drop_blocks(filled);
    }
    LongUse& use = longUse_[long_.chunk];
    ++use.blocks;
    use.units += static_cast<std::uint32_t>(units);
    return long_.take(units);
}

void ByteArena::open_run(std::size_t units) {
    if constexpr (kTight) short_.nextChunkBytes = units << 3;
    while (units > short_.unitsLeft) open_chunk(short_);
}

void ByteArena::open_chunk(Fill& fill) {
    fill.next = add_chunk(fill.nextChunkBytes);
    fill.chunk = fill.next >> kUnitBits;
    fill.unitsLeft = fill.nextChunkBytes >> 3;
    fill.grow();
}

Ref ByteArena::add_chunk(std::size_t bytes) {
    Chunk chunk(bytes);
    if (!freeChunks_.empty()) {
        const Ref number = freeChunks_.back();
        freeChunks_.pop_back();
        bases_[number] = chunk.data();
        chunkBytes_ += bytes;
        chunks_[number] = std::move(chunk);
        return number << kUnitBits;
    }
    if (chunks_.size() >= std::size_t{1} << (32 - kUnitBits)) throw std::bad_alloc();
    if (chunks_.size() == chunks_.capacity()) {
        const std::size_t room = std::max<std::size_t>(8, 2 * chunks_.size());
        bases_.reserve(room);
        longUse_.reserve(room);
        freeChunks_.reserve(room);  // so that giving a chunk back cannot fail
        chunks_.reserve(room);
    }
    if (chunks_.empty()) {
        chunks_.emplace_back();
        longUse_.emplace_back();
        bases_.push_back(nullptr);
    }
    bases_.push_back(chunk.data());
    chunkBytes_ += bytes;
    longUse_.emplace_back();
    chunks_.push_back(std::move(chunk));
    return static_cast<Ref>(chunks_.size() - 1) << kUnitBits;
}

void ByteArena::release_long(Ref ref, std::size_t units) {
    const Ref chunk = ref >> kUnitBits;
    if (chunks_[chunk].size() == units << 3) {
        drop_chunk(chunk);
        return;
    }
    Ref& first = free_[size_class(units)];
    *free_block(ref) = {first, 0, static_cast<std::uint32_t>(units)};
    if (first != 0) free_block(first)->previous = ref;
    first = ref;
    if (--longUse_[chunk].blocks == 0 && chunk != long_.chunk) drop_blocks(chunk);
}

// Takes a free long block out of its list.
void ByteArena::unlink(Ref ref) {
    const FreeBlock block = *free_block(ref);
    (block.previous == 0 ? free_[size_class(block.units)] : free_block(block.previous)->next) =
        block.next;
    if (block.next != 0) free_block(block.next)->previous = block.previous;
}

// Gives back a chunk of long blocks that are all free.
void ByteArena::drop_blocks(Ref chunk) {
    const Ref start = chunk << kUnitBits;
    for (std::uint32_t unit = 0; unit < longUse_[chunk].units;) {
        const std::uint32_t units = free_block(start + unit)->units;
        unlink(start + unit);
        unit += units;
    }
    drop_chunk(chunk);
}

void ByteArena::drop_chunk(Ref chunk) {
    chunkBytes_ -= chunks_[chunk].size();
    chunks_[chunk] = Chunk();
    bases_[chunk] = nullptr;
    longUse_[chunk] = {};
    freeChunks_.push_back(chunk);
}

void ByteArena::copy_from(const ByteArena& other) {
    std::vector<Chunk> chunks;
    std::vector<char*> bases;
    chunks.reserve(other.chunks_.capacity());
    bases.reserve(other.chunks_.capacity());
    longUse_.reserve(other.chunks_.capacity());
    freeChunks_.reserve(other.chunks_.capacity());
    for (std::size_t i = 0; i < other.chunks_.size(); ++i) {
        const std::size_t size = other.chunks_[i].size();
        chunks.push_back(size == 0 ? Chunk() : Chunk(size));
        bases.push_back(chunks.back().data());
        if (size == 0) continue;
        std::size_t used = size;
        for (const Fill& fill : {other.short_, other.long_}) {
            if (i == fill.chunk) used = size - (fill.unitsLeft << 3);
        }
        std::memcpy(bases.back(), other.bases_[i], used);
    }
    freeChunks_.assign(other.freeChunks_.begin(), other.freeChunks_.end());
    longUse_.assign(other.longUse_.begin(), other.longUse_.end());
    chunks_ = std::move(chunks);
    bases_ = std::move(bases);
    free_ = other.free_;
    short_ = other.short_;
    long_ = other.long_;
    chunkBytes_ = other.chunkBytes_;
}

}  // namespace uxhost
