// Storage of one document, addressed by 32-bit references.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

namespace uxhost {

using Ref = std::uint32_t;  // 0 is none

// A store that asks for memory at every step, for tests of what happens when there is none.
#ifdef UXTREE_TIGHT_STORE
inline constexpr bool kTight = true;
#else
inline constexpr bool kTight = false;
#endif

inline constexpr std::size_t kFirstChunkBytes = std::size_t{1} << 11;
inline constexpr std::size_t kFullChunkBytes = std::size_t{1} << 21;

// One run of memory.
class Chunk {
public:
    Chunk() = default;
    explicit Chunk(std::size_t bytes);
    Chunk(Chunk&& other) noexcept;
    Chunk& operator=(Chunk&& other) noexcept;
    ~Chunk();

    char* data() const { return data_; }
    std::size_t size() const { return size_; }

private:
    char* data_ = nullptr;
    std::size_t size_ = 0;
};

// Blocks of bytes in units of 8. A reference is a chunk's number and a unit in it; chunk 0 stays
// empty. A released block is handed out again to a request of the same size class. Long blocks
// have chunks apart from short ones, and such a chunk is given back when none of its blocks is in
// use: a document that drops its large values gets smaller.
class ByteArena {
public:
    char* at(Ref ref) const { return bases_[ref >> kUnitBits] + ((ref & kUnitMask) << 3); }

    Ref allocate(std::size_t bytes) {
        const std::size_t units = rounded_units(bytes);
        if (units > kExactUnits) return allocate_long(units);
        if (free_[units] != 0) return pop(units);
        return units <= short_.unitsLeft ? short_.take(units) : allocate_short(units);
    }
    static constexpr std::size_t kRunUnits = 1 << 11;
    static constexpr std::size_t kShortBytes = 512;
    // New memory for several blocks of at most kShortBytes that follow each other, in units of 8
    // bytes, at most kRunUnits in all. Each block is released by itself.
    Ref take_run(std::size_t units) {
        if (units > short_.unitsLeft) open_run(units);
        return short_.take(units);
    }
    // Where the next run will stand if it has at most so many units.
    Ref next_run(std::size_t units) {
        if (units > short_.unitsLeft) open_run(units);
        return short_.next;
    }
    // bytes as requested
    void release(Ref ref, std::size_t bytes) {
        const std::size_t units = rounded_units(bytes);
        if (units > kExactUnits) return release_long(ref, units);
        std::memcpy(at(ref), &free_[units], sizeof(Ref));
        free_[units] = ref;
    }
    // Usable bytes of a block that was requested with `bytes`.
    static std::size_t capacity(std::size_t bytes) { return rounded_units(bytes) << 3; }

    // In all chunks.
    std::size_t bytes() const { return chunkBytes_; }

    // Becomes a copy of other, in which every reference of other means the same block. This arena
    // must be new.
    void copy_from(const ByteArena& other);

private:
    static constexpr unsigned kUnitBits = 18;  // 2 MiB of 8-byte units
    static constexpr Ref kUnitMask = (Ref{1} << kUnitBits) - 1;
    static constexpr std::size_t kExactUnits = kShortBytes / 8;  // above: eight classes a doubling
    static constexpr std::size_t kSharedUnits = 1 << 15;  // larger blocks have a chunk of their own
    static constexpr std::size_t kClasses = kExactUnits + 1 + std::size_t{8} * 9;
    static constexpr std::size_t kFirstLongChunkBytes = std::size_t{1} << 14;

    // The part of a chunk that is not handed out yet.
    struct Fill {
        Ref chunk = 0;
        Ref next = 0;
        std::size_t unitsLeft = 0;
        std::size_t nextChunkBytes = 0;

        Ref take(std::size_t units) {
            const Ref ref = next;
            next += static_cast<Ref>(units);
            unitsLeft -= units;
            return ref;
        }
        void grow() { nextChunkBytes = std::min(nextChunkBytes * 8, kFullChunkBytes); }
    };
    // What a free long block holds.
    struct FreeBlock {
        Ref next;
        Ref previous;
        std::uint32_t units;
    };
    // Of a chunk of long blocks.
    struct LongUse {
        std::uint32_t blocks = 0;  // in use
        std::uint32_t units = 0;   // handed out at least once
    };

    static std::size_t rounded_units(std::size_t bytes) {
        const std::size_t units = (bytes + 7) >> 3;
        return units <= kExactUnits ? units + (units == 0) : rounded_large(units);
    }
    static std::size_t rounded_large(std::size_t units);
    static std::size_t size_class(std::size_t units);
    FreeBlock* free_block(Ref ref) const { return reinterpret_cast<FreeBlock*>(at(ref)); }
    Ref pop(std::size_t units);
    Ref allocate_short(std::size_t units);
    Ref allocate_long(std::size_t units);
    void release_long(Ref ref, std::size_t units);
    void unlink(Ref ref);
    void drop_blocks(Ref chunk);
    void drop_chunk(Ref chunk);
    void open_run(std::size_t units);
    void open_chunk(Fill& fill);
    Ref add_chunk(std::size_t bytes);

    std::vector<char*> bases_;
    std::vector<Chunk> chunks_;
    std::vector<LongUse> longUse_;  // by chunk
    std::vector<Ref> freeChunks_;   // numbers of chunks that were given back
    std::array<Ref, kClasses> free_{};
    Fill short_{0, 0, 0, kFirstChunkBytes};
    Fill long_{0, 0, 0, kFirstLongChunkBytes};
    std::size_t chunkBytes_ = 0;
};

// Slots of one type, addressed by their number from 1. A released slot keeps its content, so that
// a stale pointer still finds the generation that tells it is stale; it becomes a slot of the same
// type again. Slot must have a member `next`, which links the free ones.
template <typename Slot>
class SlotArena {
public:
    [[gnu::returns_nonnull]] Slot* at(Ref ref) const {
        return bases_[ref >> kSlotBits] + (ref & kSlotMask);
    }

    // Yields the number of a slot; fresh tells whether its content is undefined.
    Ref allocate(bool& fresh) {
        fresh = free_ == 0;
        if (!fresh) {
            const Ref ref = free_;
            free_ = at(ref)->next;
            --freeCount_;
            return ref;
        }
        if (slotsLeft_ == 0) add_chunk();
        --slotsLeft_;
        return next_++;
    }
    void release(Ref ref) noexcept {
        at(ref)->next = free_;
        free_ = ref;
        ++freeCount_;
    }
    std::size_t free_count() const { return freeCount_; }
    // In all chunks.
    std::size_t bytes() const { return chunkBytes_; }
    // Where a slot stands, for tables beside the slots that are cut as they are.
    static std::size_t chunk_of(Ref ref) { return ref >> kSlotBits; }
    static std::size_t place_of(Ref ref) { return ref & kSlotMask; }
    // Calls take(first, count) with the slots of one chunk after the other that were handed out.
    template <typename Take>
    void for_each_chunk(Take&& take) const {
        for (std::size_t i = 0; i < bases_.size(); ++i) {
            const Ref first = static_cast<Ref>(i << kSlotBits) + (i == 0 ? 1 : 0);
            const bool filling = slotsLeft_ > 0 && i == next_ >> kSlotBits;
            const Ref end =
                filling ? next_
                        : static_cast<Ref>(i << kSlotBits) + static_cast<Ref>(slots_in_chunk(i));
            take(first, static_cast<std::size_t>(end - first));
        }
    }
    static std::size_t slots_in_chunk(std::size_t chunk) {
        std::size_t bytes = kFirstChunkBytes;
        for (; chunk > 0 && bytes < kFullChunkBytes; --chunk) {
            bytes = std::min(bytes * 8, kFullChunkBytes);
        }
        return bytes / sizeof(Slot);
    }

    // Becomes a copy of other. This arena must be new.
    void copy_from(const SlotArena& other) {
        std::vector<Chunk> chunks(other.chunks_.size());
        std::vector<Slot*> bases(other.bases_.size());
        for (std::size_t i = 0; i < chunks.size(); ++i) {
            const bool filling = other.slotsLeft_ > 0 && i == other.next_ >> kSlotBits;
            chunks[i] = Chunk(other.chunks_[i].size());
            bases[i] = reinterpret_cast<Slot*>(chunks[i].data());
            const std::size_t used =
                filling ? other.next_ & kSlotMask : other.chunks_[i].size() / sizeof(Slot);
            std::copy_n(other.bases_[i], used, bases[i]);
        }
        chunks_ = std::move(chunks);
        bases_ = std::move(bases);
        free_ = other.free_;
        freeCount_ = other.freeCount_;
        next_ = other.next_;
        slotsLeft_ = other.slotsLeft_;
        nextChunkBytes_ = other.nextChunkBytes_;
        chunkBytes_ = other.chunkBytes_;
    }

private:
    static constexpr unsigned kSlotBits = 15;
    static constexpr Ref kSlotMask = (Ref{1} << kSlotBits) - 1;
    static_assert(sizeof(Slot) << kSlotBits == kFullChunkBytes);

    void add_chunk() {
        if (chunks_.size() >= (std::size_t{1} << (32 - kSlotBits))) throw std::bad_alloc();
        Chunk chunk(nextChunkBytes_);
        chunks_.reserve(chunks_.size() + 1);
        bases_.reserve(chunks_.size() + 1);
        bases_.push_back(reinterpret_cast<Slot*>(chunk.data()));
        chunkBytes_ += chunk.size();
        chunks_.push_back(std::move(chunk));
        next_ = static_cast<Ref>(chunks_.size() - 1) << kSlotBits;
        slotsLeft_ = nextChunkBytes_ / sizeof(Slot);
        nextChunkBytes_ = kTight ? sizeof(Slot) : std::min(nextChunkBytes_ * 8, kFullChunkBytes);
        if (next_ == 0) {  // number 0 means none
            ++next_;
            --slotsLeft_;
        }
    }

    std::vector<Slot*> bases_;
    std::vector<Chunk> chunks_;
    Ref free_ = 0;
    std::size_t freeCount_ = 0;
    Ref next_ = 0;
    std::size_t slotsLeft_ = 0;
    std::size_t nextChunkBytes_ = kTight ? 2 * sizeof(Slot) : kFirstChunkBytes;
    std::size_t chunkBytes_ = 0;
};

}  // namespace uxhost
