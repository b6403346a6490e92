// The child of a node by its tag, made when there is none.
#pragma once

#include "uxtree/host/node.h"

#include "frame/guards.h"

namespace ux {

// Points out at the first child of parent with the tag; findFlag is FindChild's. When there is
// none, a child with the tag and, unless it is 0, the intrinsic ID is appended. out may be parent's
// own handle. False when no child could be made; out is then no node.
inline bool find_or_add_child(UXXmlWrapperBase& out, const UXXmlWrapperBase& parent,
                              const char* tag, int id = 0, int findFlag = 1) {
    UXXmlWrapperBase place = parent;
    if (!place.FindChild(tag, &out, findFlag)) place.AddNode(&out, tag, id == 0 ? -1 : id);
    return usable(out);
}

}  // namespace ux
