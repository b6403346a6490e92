// Identifiers of nodes as their attributes hold them, and how identifiers of a set are made.
#pragma once

#include "uxtree/host/node.h"

namespace ux {

inline constexpr int kLargestRepeat = 32767;  // what the readers accept

// The attributes "RepeatID" and "RepeatNodeID" of a node. See VCTreeGetRepeatId and its neighbours
// for what is read and yielded; an identifier below 1 is removed.
int read_repeat_id(const UXXmlWrapperBase& node, int& out);
int write_repeat_id(UXXmlWrapperBase& node, int id);
int read_repeat_node_id(const UXXmlWrapperBase& node, int& out);
int write_repeat_node_id(UXXmlWrapperBase& node, int id);

// Marks the high word of an identifier that is made of a set and an index; see
// uxtree_make_one_set_ID.
inline constexpr unsigned kOneSetBit = 0x2000;
inline unsigned one_set_high_word(unsigned short set) {
    return (set | kOneSetBit) & 0xFFFFU;
}
inline int one_set_id(unsigned short index, unsigned short set) {
    return static_cast<int>(one_set_high_word(set) << 16 | index);
}

}  // namespace ux
