// Values of one tree written into attributes of the nodes of another that carry the same attribute.
#pragma once

#include "uxtree/host/node.h"

namespace ux {

struct MatchOptions {
    UXNameKey target;
    UXNameKey match;
    UXNameKey extra;  // "" for none
    bool recursive;
    bool all;
    bool caseSensitive;
};

// See uxtree_copy_values_to_attributes_by_attribute_matching, whose arguments these are once they
// are complete. kOk or kFail.
int copy_matching_values(const UXXmlWrapperBase& source, const UXXmlWrapperBase& target,
                         const MatchOptions& options);

}  // namespace ux
