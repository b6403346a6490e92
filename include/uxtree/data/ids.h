// The identifiers under which values travel between trees.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int VCTreeGetRepeatId(UXXmlWrapperBase& node, int& out);
UXTREE_API int VCTreeSetRepeatId(UXXmlWrapperBase& node, int id);
UXTREE_API int VCTreeGetRepeatNodeId(UXXmlWrapperBase& node, int& out);
UXTREE_API int VCTreeSetRepeatNodeId(UXXmlWrapperBase& node, int id);
extern "C" {
UXTREE_API int uxtree_make_one_set_ID(unsigned short index, unsigned short set);
UXTREE_API int uxtree_is_ID_in_one_set(int id, unsigned short set);
UXTREE_API int uxtree_is_in_ids_range(UXXmlWrapperBase* node, int low, int high, int extra);
UXTREE_API int uxtree_combine_treenode_id_with_repeat_id(UXXmlWrapperBase* node, int* dataId,
                                                         int* repeatOut, int inheritedRepeat);
}
