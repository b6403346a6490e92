// The outline of a document's element structure.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Appends to target the outline of a document: which elements occur in which, and which attributes
// each of them carries, with every repetition folded into one entry. An entry is an element "Node"
// whose attribute "Label" is the tag. Below it stands first an element "Attr" for each attribute
// name, in the order of the names' bytes, with the "Label" "@" and the name, and then the entries
// of the children in the order of first appearance. What target already holds stays. The attribute
// "_ux_id" with a number, in which a file carries an element's ID, is none of them.
//
//   source    a tree to outline; fileName and flags are then ignored. May be null.
//   fileName  UTF-8 name of an XML file to outline, read by a forgiving scanner: it is always taken
//             as UTF-8, and the first syntax error ends it silently. May be null with a source.
//   flags     bit 0 clear: the file is read in blocks, so memory does not grow with it, and ends
//             before the first byte that the scanner cannot decode (four-byte UTF-8 is such);
//             bit 0 set: the file is mapped into memory and its bytes are not decoded. The file
//             must then not be shortened meanwhile. No other bit has a meaning.
//
// Returns 0 when an outline was written. So it is when a file cannot be opened or is no regular
// file, or when its scan stopped early: the outline of what was read, at least one "Node" with an
// empty label. Otherwise nothing was written: 1 when target, or source and fileName, are null; 2
// when target is invalid; 3 when source is invalid; 5 when there is not enough memory.
UXTREE_API int SAXTreeLayout(UX_EDITS UXXmlWrapperBase* target,
                             UX_OPT UX_IN UXXmlWrapperBase* source,
                             UX_OPT UX_FILE const char* fileName, DWORD flags UX_BITS(mapped = 1))
    UX_RETURNS(zero, nothing_given = 1, target_invalid = 2, source_invalid = 3, no_memory = 5)
        UX_BLOCKS;
extern "C" {
// The same for scripts.
UXTREE_API int uxtree_layout(UX_EDITS UXXmlWrapperBase* target,
                             UX_OPT UX_IN UXXmlWrapperBase* source,
                             UX_OPT UX_FILE const char* fileName, DWORD flags UX_BITS(mapped = 1))
    UX_RETURNS(zero, nothing_given = 1, target_invalid = 2, source_invalid = 3, no_memory = 5)
        UX_BLOCKS;
}
