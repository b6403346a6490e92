// Reading N42 radiation spectrum files into trees.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

int VCTree_n42_(UXXmlWrapperBase* tree, const char* path, CWBOStringArray* detectors,
                UXXmlWrapperBase* infoTree, DWORD flags);
int VCTree_n42_parse_LiveTimeDuration(int mode);
extern "C" {
int uxtree_n42(UXXmlWrapperBase* tree, const char* path, UXScriptObject* detectors,
               UXXmlWrapperBase* infoTree, DWORD flags);
}
