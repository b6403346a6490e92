// Branches as key and value text, and dotted node paths.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API bool VCTreeGetPathStr(CStringUTF8& out, UXXmlWrapperBase* node);
UXTREE_API void vctree_convert_escape_character(CWBOStringArray& tokens, char separator,
                                                bool keepEscapes);
extern "C" {
UXTREE_API int uxtree_branch_to_key_value_pairs_str(UXXmlWrapperBase* branch, CStringUTF8* out,
                                                    char keySeparator, char pairSeparator);
UXTREE_API int uxtree_key_value_pairs_str_to_branch(UXXmlWrapperBase* branch, const char* text,
                                                    char keySeparator, char pairSeparator);
UXTREE_API int uxtree_add_path_str(UXXmlWrapperBase* branch, const char* attribute, int recursive,
                                   int includeSelf);
}
