// The outline of a document's element structure.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int SAXTreeLayout(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
                             const char* fileName, DWORD flags);
extern "C" {
UXTREE_API int uxtree_layout(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
                             const char* fileName, DWORD flags);
}
