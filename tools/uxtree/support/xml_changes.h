// What differs between two documents, whatever they hold.
#pragma once

#include <string>
#include <vector>

#include "uxtree/host/host.h"

#include "support/table.h"

namespace uxtool {

// One row for each difference, in the order of the new document: change (added, removed, changed,
// moved), node (a path that finds it; of what was removed, in the old document), what (element,
// text, an attribute as "@id", order), old, new.
//
// Elements correspond when they have the same tag, stand below corresponding ones and have the same
// value of the first of the key attributes that they carry; without one, by their position among the
// siblings of their tag that have none either. Time grows with the documents.
Table changes_of(const UXXmlWrapperBase& before, const UXXmlWrapperBase& after,
                 const std::vector<std::string>& keys);

}  // namespace uxtool
