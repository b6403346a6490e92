// Comparing branches of trees.
#pragma once

#include "host/document.h"

namespace uxhost {

// Do two elements have the same tags, attributes in the same order, texts and, if asked for, IDs, and
// so all elements below them?
bool same_branch(const Document& a, const Element& topA, const Document& b, const Element& topB,
                 bool withIds);

}  // namespace uxhost
