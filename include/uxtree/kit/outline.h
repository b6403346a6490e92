// Outlines of well-formed XML files, and of many of them as one.
#pragma once

#include <cstddef>

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

// Appends the outline of several files together, read as above: what merging the outline of each into
// that of those before would make, at the cost of reading them. Files of the same kind are the best
// case: a file adds little to what is known.
//
//   done   how many were read, so the number of the file that was refused; may be null.
//
// 1, or 0 when a file is refused or there is no memory, with target untouched.
UXKIT_API int UXOutlineFiles(UXXmlWrapperBase* target, const char* const* paths, std::size_t count,
                             std::size_t* done);

// Adds to the outlines below target what those below source have and they lack, so that target holds
// the outline of all the documents of both. Entries of the same label and place become one: its
// attributes in the order of the names' bytes, its children in the order of first appearance, those
// of target first. So merging is associative: outlines of parts of a long list of files may be made
// anywhere, and merged in groups, as long as the order of the files is kept. An element without
// outlines changes nothing. Whatever else stands below source is passed over.
//
// target and source may be in one tree, also the same. Time grows with source and with the entries
// of target beside which something of source stands.
//
// 1, or 0 when a handle is unusable, with target untouched, or when memory runs out: target may then
// have a part of what source adds, and merging again completes it.
UXKIT_API int UXMergeOutline(UXXmlWrapperBase* target, const UXXmlWrapperBase* source);
