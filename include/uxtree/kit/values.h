// Which nodes the values of a tree belong to.
#pragma once

#include <vector>

#include "uxtree/host/node.h"
#include "uxtree/kit/export.h"

// Where a value comes from.
struct UXValueNode {
    UXXmlWrapperBase node;
    int id = 0;  // the identifier of the value, combined with the RepeatIDs above the node
};

// The nodes below tree whose values vctree_get_values_with_ids collects (uxtree/data/values.h), entry
// by entry in the order of its arrays: when it is called for whole branches, all values, and without a
// theme flag. A branch with two values stands twice. The tree stays as it is.
//
//   idAttribute      null or "": "DataID".
//   inheritedRepeat  RepeatID under which tree itself stands; 0 for none.
//
// Empty for an unusable tree. Throws std::bad_alloc.
UXKIT_API std::vector<UXValueNode> UXValueNodes(const UXXmlWrapperBase& tree,
                                                const char* idAttribute = nullptr,
                                                int inheritedRepeat = 0);
