// Values written into the attributes of nodes that match, with the defaults of the entry point.
#include "uxtree/data/attribute_match.h"

#include "frame/guards.h"
#include "frame/results.h"
#include "marks/attribute_match.h"
#include "marks/names.h"

using namespace ux;

extern "C" int uxtree_copy_values_to_attributes_by_attribute_matching(
    UXXmlWrapperBase* source, UXXmlWrapperBase* target, const char* targetAttribute,
    const char* matchAttribute, const char* extraAttribute, int recursive, int all,
    int caseSensitive) {
    return at_boundary(kFail, [&] {
        if (!usable(source) || !usable(target)) return kFail;
        return copy_matching_values(
            *source, *target,
            {UXNameKey(text_or(targetAttribute, kShow)),
             UXNameKey(text_or(matchAttribute, kDataId)), UXNameKey(extraAttribute), recursive != 0,
             all != 0, caseSensitive != 0});
    });
}
