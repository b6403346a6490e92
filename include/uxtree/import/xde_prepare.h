// Turning the description of an imported file into a tree with recognisable arrays.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
UXTREE_API int uxtree_XDE_prepare_XML(UXXmlWrapperBase* tree, const char* path, DWORD flags);
}
