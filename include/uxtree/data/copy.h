// Carrying values and attributes from one tree to another.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

struct _SETVALUESBYIDS {
    void (*callback)(_SETVALUESBYIDS* record);
    int id;
    int inProgress;
    CStringUTF8* value;
};

UXTREE_API int vctree_copy_values_between_homologous_trees(UXXmlWrapperBase& destination,
                                                           UXXmlWrapperBase& source,
                                                           int copyAttributes,
                                                           CWBOStringArray* keptAttributes,
                                                           int dynamicChecks);
UXTREE_API int vctree_copy_values_by_id(UXXmlWrapperBase* source, UXXmlWrapperBase* destination,
                                        int setMode, const char* sourceIdAttribute,
                                        const char* destinationIdAttribute, int themeFlag,
                                        _SETVALUESBYIDS* callback, int validateOff, int skipEmpty,
                                        int useFlag, int themeOff);
extern "C" {
UXTREE_API int uxtree_copy_values_by_id(UXXmlWrapperBase* source, UXXmlWrapperBase* destination,
                                        int setMode, const char* sourceIdAttribute,
                                        const char* destinationIdAttribute, int themeFlag,
                                        int validateOff, int skipEmpty, int useFlag, int themeOff);
UXTREE_API int uxtree_whole_copy_values_by_id(UXXmlWrapperBase* source,
                                              UXXmlWrapperBase* destination);
UXTREE_API int uxtree_copy_atts_by_id(UXXmlWrapperBase* source, UXXmlWrapperBase* destination,
                                      const char* attribute, const char* sourceIdAttribute,
                                      const char* destinationIdAttribute,
                                      const char* secondAttribute, int rename);
UXTREE_API int uxtree_copy_ids_by_tagname(UXXmlWrapperBase* source, UXXmlWrapperBase* destination,
                                          bool leavesOnly);
}
