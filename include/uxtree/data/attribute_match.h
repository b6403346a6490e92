// Values of one tree written into attributes of the nodes of another that carry the same attribute.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
UXTREE_API int uxtree_copy_values_to_attributes_by_attribute_matching(
    UXXmlWrapperBase* source, UXXmlWrapperBase* target, const char* targetAttribute,
    const char* matchAttribute, const char* extraAttribute, int recursive, int all,
    int caseSensitive);
}
