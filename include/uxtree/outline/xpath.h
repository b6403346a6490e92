// Path queries over a tree.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int TreeEvalXPath(CWBOStringArray* values, CArray<unsigned int>* offsets,
                             CWBOStringArray* names, UXXmlWrapperBase* tree, const char* reserved,
                             const char* path, bool table);
extern "C" {
UXTREE_API int uxtree_xpath(UXScriptObject* values, UXScriptObject* offsets, UXScriptObject* names,
                            UXXmlWrapperBase* tree, const char* reserved, const char* path,
                            bool table);
}
