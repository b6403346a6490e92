// Turning the description of an imported file into a tree with recognisable arrays.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
// Reads the XML description at path and appends a copy of its root element to tree, in which
// repeated structures are arrays:
//   - an element all of whose children bear one tag, more than one of them, is an array: its size
//     is saved (LoadXDEArraySize) and its children get the labels "<tag>_0", "<tag>_1", ...;
//   - among children of several tags, those of a repeated tag move into a new element "<tag>s"
//     at the place of their first one, and that element is an array;
//   - where a child of an array's element is an array, the children of the same tag at the same
//     place in the other elements are marked as arrays of size 1.
// Attributes are copied, and the texts of elements without children.
//
//   flags  0x10000 selects the preview, in which an array is copied with its first 5 elements and
//          any other element with its first 200 children. Sizes state the full number even so.
//
// Returns 0, or
//   -2019  path is null, or the file cannot be read
//   -2018  the file is no well-formed XML
//   -2017  tree is null or invalid
//   -2016  an element could not be added; what was copied until then stays in the tree
UXTREE_API int uxtree_XDE_prepare_XML(UX_EDITS UXXmlWrapperBase* tree, UX_FILE const char* path,
                                      DWORD flags UX_BITS(preview = 0x10000))
    UX_RETURNS(zero, not_added = -2016, unusable = -2017, not_well_formed = -2018, not_read = -2019)
        UX_BLOCKS;
}
