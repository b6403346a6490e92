#include "host/arena.h"

#include <bit>
#include <cstring>
#include <new>
#include <utility>

#include <sys/mman.h>

namespace uxhost {
namespace {

std::align_val_t alignment_of(std::size_t bytes) {
    return std::align_val_t{bytes >= kFullChunkBytes ? kFullChunkBytes : 64};
}

}  // namespace

Chunk::Chunk(std::size_t bytes)
    : data_(static_cast<char*>(::operator new(bytes, alignment_of(bytes)))), size_(bytes) {
    if (bytes >= kFullChunkBytes) madvise(data_, bytes, MADV_HUGEPAGE);
}
Chunk::Chunk(Chunk&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
Chunk& Chunk::operator=(Chunk&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
}
Chunk::~Chunk() {
    if (data_ != nullptr) ::operator delete(data_, alignment_of(size_));
}

std::size_t ByteArena::rounded_large(std::size_t units) {
    const auto step = static_cast<unsigned>(std::bit_width(units - 1)) - 4;
    return ((units - 1) >> step << step) + (std::size_t{1} << step);
}

// units as rounded, at most kSharedUnits
std::size_t ByteArena::size_class(std::size_t units) {
    if (units <= kExactUnits) return units;
    const auto width = static_cast<unsigned>(std::bit_width(units - 1));
    const std::size_t eighth = ((units - 1) >> (width - 4)) & 7;
    return kExactUnits + 1 + std::size_t{width - 7} * 8 + eighth;
}

Ref ByteArena::pop(std::size_t sizeClass) {
    const Ref ref = free_[sizeClass];
    std::memcpy(&free_[sizeClass], at(ref), sizeof(Ref));
    return ref;
}

Ref ByteArena::allocate_slow(std::size_t units) {
    if (units > kSharedUnits) return add_chunk(units << 3);
    const std::size_t sizeClass = size_class(units);
    if (free_[sizeClass] != 0) return pop(sizeClass);
    if (units > unitsLeft_) {
        // A block larger than half of the document's next chunk gets one of its own.
        if (units << 3 > nextChunkBytes_ / 2) return add_chunk(units << 3);
        next_ = add_chunk(nextChunkBytes_);
        unitsLeft_ = nextChunkBytes_ >> 3;
        nextChunkBytes_ = std::min(nextChunkBytes_ * 8, kFullChunkBytes);
    }
    return take(units);
}

Ref ByteArena::add_chunk(std::size_t bytes) {
    Chunk chunk(bytes);
    if (!freeChunks_.empty()) {
        const Ref number = freeChunks_.back();
        freeChunks_.pop_back();
        bases_[number] = chunk.data();
        chunks_[number] = std::move(chunk);
        return number << kUnitBits;
    }
    if (chunks_.size() >= std::size_t{1} << (32 - kUnitBits)) throw std::bad_alloc();
    if (chunks_.size() == chunks_.capacity()) {
        const std::size_t room = std::max<std::size_t>(8, 2 * chunks_.size());
        bases_.reserve(room);
        freeChunks_.reserve(room);  // so that giving a chunk back cannot fail
        chunks_.reserve(room);
    }
    if (chunks_.empty()) {
        chunks_.emplace_back();
        bases_.push_back(nullptr);
    }
    bases_.push_back(chunk.data());
    chunks_.push_back(std::move(chunk));
    return static_cast<Ref>(chunks_.size() - 1) << kUnitBits;
}

void ByteArena::release(Ref ref, std::size_t bytes) {
    const std::size_t units = rounded_units(bytes);
    const Ref number = ref >> kUnitBits;
    if (chunks_[number].size() == units << 3) {
        chunks_[number] = Chunk();
        bases_[number] = nullptr;
        freeChunks_.push_back(number);
        return;
    }
    const std::size_t sizeClass = size_class(units);
    std::memcpy(at(ref), &free_[sizeClass], sizeof(Ref));
    free_[sizeClass] = ref;
}

void ByteArena::copy_from(const ByteArena& other) {
    std::vector<Chunk> chunks;
    std::vector<char*> bases;
    chunks.reserve(other.chunks_.capacity());
    bases.reserve(other.chunks_.capacity());
    freeChunks_.reserve(other.chunks_.capacity());
    for (std::size_t i = 0; i < other.chunks_.size(); ++i) {
        const std::size_t size = other.chunks_[i].size();
        chunks.push_back(size == 0 ? Chunk() : Chunk(size));
        bases.push_back(chunks.back().data());
        if (size == 0) continue;
        const bool filling = other.unitsLeft_ > 0 && i == other.next_ >> kUnitBits;
        const std::size_t used = filling ? std::size_t{other.next_ & kUnitMask} << 3 : size;
        std::memcpy(bases.back(), other.bases_[i], used);
    }
    freeChunks_.assign(other.freeChunks_.begin(), other.freeChunks_.end());
    chunks_ = std::move(chunks);
    bases_ = std::move(bases);
    free_ = other.free_;
    next_ = other.next_;
    unitsLeft_ = other.unitsLeft_;
    nextChunkBytes_ = other.nextChunkBytes_;
}

}  // namespace uxhost
