// Memory for the script language, which asks for every text of an array by itself.
#pragma once

#include <cstddef>
#include <cstdlib>

namespace uxtool {

// What stands before each piece of memory.
struct alignas(std::max_align_t) PieceHead {
    bool small;
    PieceHead* next;  // of the small ones that are free
};
inline PieceHead* freePieces = nullptr;

#if defined(__SANITIZE_ADDRESS__)
inline constexpr std::size_t kLargestSmall = 0;  // each piece is watched
#else
inline constexpr std::size_t kLargestSmall = 2 * sizeof(PieceHead);
#endif

inline void cut_block_into_pieces() {
    constexpr std::size_t kHeads = 1 + kLargestSmall / sizeof(PieceHead), kPieces = 1000;
    auto* const block = static_cast<PieceHead*>(std::malloc(kPieces * kHeads * sizeof(PieceHead)));
    if (block == nullptr) return;
    for (std::size_t i = kPieces; i-- > 0;) {
        block[i * kHeads] = {true, freePieces};
        freePieces = &block[i * kHeads];
    }
}

// Null when there is none. Small pieces are used again and again, by one thread; the system gets them
// back when the process ends.
inline void* take_memory(std::size_t bytes) {
    PieceHead* head = nullptr;
    if (bytes > kLargestSmall) {
        head = static_cast<PieceHead*>(std::malloc(sizeof(PieceHead) + bytes));
        if (head != nullptr) head->small = false;
    } else {
        if (freePieces == nullptr) cut_block_into_pieces();
        head = freePieces;
        if (head != nullptr) freePieces = head->next;
    }
    return head == nullptr ? nullptr : head + 1;
}

inline void give_memory(void* memory) {
    if (memory == nullptr) return;
    PieceHead* const head = static_cast<PieceHead*>(memory) - 1;
    if (!head->small) return std::free(head);
    head->next = freePieces;
    freePieces = head;
}

}  // namespace uxtool
