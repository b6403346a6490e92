// Outlines of well-formed XML files.
#pragma once

#include "uxtree/frame/annotate.h"
#include "uxtree/host/node.h"
#include "uxtree/kit/export.h"

// Appends the outline of an XML file to target, as SAXTreeLayout writes it. The file is checked as
// load checks it, and the outline is exactly that of the tree that load would make of it, of any
// depth; memory does not grow with the file, apart from its longest tag.
//
//   partial   of a file that is refused, the outline of what stands before the error is appended;
//             otherwise target stays untouched then.
//
// 1, or 0 when the file is refused or there is no memory; UXGetLastLoadError tells why.
UXKIT_API int UXOutlineFile(UXXmlWrapperBase* target, const char* path, bool partial);
