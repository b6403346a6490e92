// What arguments of the C door have in common.
#pragma once

#include <algorithm>
#include <limits>

#include "uxtree/host/node.h"

#include "kit/c_last_error.h"

namespace ux::kit {

// Is there a node? States why not.
inline bool usable(const UXXmlWrapperBase* node) {
    if (node == nullptr) return refused(false, "the node is null");
    if (node->IsNodeValid() == 0) return refused(false, "the handle refers to no node");
    return true;
}
// Is there a place for a result? States when not.
template <typename Object>
bool given(const Object* out) {
    return out != nullptr || refused(false, "there is no place for the result");
}

// A count or place as an int; one that is larger becomes the largest.
template <typename Number>
int narrow(Number number) {
    return static_cast<int>(
        std::min<unsigned long long>(static_cast<unsigned long long>(number),
                                     static_cast<unsigned>(std::numeric_limits<int>::max())));
}

}  // namespace ux::kit
