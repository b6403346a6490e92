// Trees of data ranges and their sub-ranges.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

class UXTREE_API VCRangeTreeIterator {
public:
    explicit VCRangeTreeIterator(UXXmlWrapperBase& rangeTree);
    VCRangeTreeIterator(const VCRangeTreeIterator& other);
    VCRangeTreeIterator(VCRangeTreeIterator&& other) noexcept;
    ~VCRangeTreeIterator();
    VCRangeTreeIterator& operator=(const VCRangeTreeIterator& other);
    VCRangeTreeIterator& operator=(VCRangeTreeIterator&& other) noexcept;
    int IsHierarchical() const;
    int Get(UXXmlWrapperBase& firstSubRange);

private:
    UXXmlWrapperBase position_;
    int hierarchical_;
};

class UXTREE_API VCSubRangeTreeIterator {
public:
    explicit VCSubRangeTreeIterator(UXXmlWrapperBase& firstSubRange);
    VCSubRangeTreeIterator(const VCSubRangeTreeIterator& other);
    VCSubRangeTreeIterator(VCSubRangeTreeIterator&& other) noexcept;
    ~VCSubRangeTreeIterator();
    VCSubRangeTreeIterator& operator=(const VCSubRangeTreeIterator& other);
    VCSubRangeTreeIterator& operator=(VCSubRangeTreeIterator&& other) noexcept;
    int Get(UXXmlWrapperBase& subRange);

private:
    UXXmlWrapperBase position_;
};

UXTREE_API int vctree_add_subrange_to_composite_range(UXXmlWrapperBase& range,
                                                      UXXmlWrapperBase& rangeTree, int addFlags,
                                                      int stored, int rangeType);
UXTREE_API void vctree_reenum_subranges_in_range_tree(UXXmlWrapperBase& rangeTree, int mode);
UXTREE_API int vctree_composite_range_get_entire_worksheet_support(UXXmlWrapperBase& node);
UXTREE_API void vctree_composite_range_set_entire_worksheet_support(UXXmlWrapperBase& node,
                                                                    int value);
UXTREE_API int vctree_get_set_node_action_id(UXXmlWrapperBase& node, int& id, int get);
UXTREE_API int VCTreeSetCompositeSubRangeNodeActionId(UXXmlWrapperBase& node, int id, int childId);
UXTREE_API int vctree_get_composite_subrange_values(UXXmlWrapperBase& range, CStringUTF8& x,
                                                    CStringUTF8& y, CStringUTF8& z, int rangeType);
UXTREE_API int vctree_set_composite_subrange_values(UXXmlWrapperBase& range, const char* x,
                                                    const char* y, const char* z, int stored,
                                                    int rangeType, int join, int reset);
extern "C" {
UXTREE_API int uxtree_composite_range_get_entire_worksheet_support(UXXmlWrapperBase* node);
UXTREE_API void uxtree_composite_range_set_entire_worksheet_support(UXXmlWrapperBase* node,
                                                                    int value);
UXTREE_API int uxtree_set_composite_subrange_values(UXXmlWrapperBase* range, const char* x,
                                                    const char* y, const char* z, int stored,
                                                    int rangeType, int join, int reset);
}
