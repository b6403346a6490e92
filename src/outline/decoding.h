// Decoding of the scanner's input.
#pragma once

#include <cstdint>

namespace ux {

struct Decoded {
    const char* end;  // behind the decoded characters, which start where the bytes started
    char* rest;       // the bytes from here on are not decoded: one sequence cut off, or bad bytes
    bool stopped;     // rest is where the input ends, whatever follows
};

// Decodes [bytes, end) in place. A byte below 80 is a character; lead bytes C0 to DF, E0 to EF and
// F8 to FF start sequences of two, three and four bytes (5, 4 and 3 bits of payload in the lead
// byte, 6 in every other). The input stops at a stray continuation byte, a lead byte F0 to F7, a
// bad continuation byte or a character 0. What is decoded stands as the shortest UTF-8 form of its
// characters, so that later stages find every character by its bytes; nearly always these are the
// bytes that were there.
//
// Reads, and ignores, up to kReadAhead bytes behind end.
Decoded decode_in_place(char* bytes, char* end);

struct Character {
    std::uint32_t value;
    int length;  // in bytes
};
// The decoded character that stands at some place.
Character character_at(const char* bytes);

}  // namespace ux
