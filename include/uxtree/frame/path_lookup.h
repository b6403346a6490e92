// Lookup and creation of nodes along a path of tags, and the default code page.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Follows a path of tags from start: name and the arguments after it, up to a null const char*
// (pass nullptr, not 0). Each step takes the first child with the tag, in this exact case. A null
// name is the empty path, which leads to start itself. out may be start. 1 with the node in out;
// otherwise 0, and out is untouched.
UXTREE_API int wbxfu_tree_get_node(UX_OUT UXXmlWrapperBase& out, const UXXmlWrapperBase& start,
                                   UX_NULL_COUNTS const char* name, ...) UXTREE_SENTINEL
    UX_RETURNS(done, not_found = 0) UX_NATIVE_ONLY("takes any number of arguments");
// The same, and appends the nodes that are missing, without ID. 0 when a tag is no element name;
// the nodes created before it stay.
UXTREE_API int wbxfu_tree_check_get_node(UX_OUT UXXmlWrapperBase& out,
                                         UX_EDITS UXXmlWrapperBase& start,
                                         UX_NULL_COUNTS const char* name, ...) UXTREE_SENTINEL
    UX_RETURNS(done, not_done = 0) UX_NATIVE_ONLY("takes any number of arguments");
// The worker of both: create 0 looks only, 1 creates. rest holds the tags after name.
UXTREE_API int wbxfu_tree_check_get_node_ex(UX_OUT UXXmlWrapperBase& out,
                                            UX_EDITS UXXmlWrapperBase& start, int create,
                                            UX_NULL_COUNTS const char* name, va_list rest)
    UX_RETURNS(done, not_found = 0) UX_NATIVE_ONLY("takes a list of arguments");
// Transfers an array at the end of a path: get nonzero reads the node's value, without creating it;
// 0 writes it, creating what is missing on the way. 1 when the array was transferred, else 0: the
// reverse of the host's vector calls, where 0 is success.
UXTREE_API int wbxfu_tree_node_vector_value(UX_EDITS UXXmlWrapperBase& tree,
                                            UX_GETSET UXVectorDesc& vector, int get,
                                            UX_NULL_COUNTS const char* name, ...) UXTREE_SENTINEL
    UX_RETURNS(done, not_done = 0) UX_NATIVE_ONLY("takes any number of arguments");
extern "C" {
// Sets the code page in which files are read that neither declare an encoding nor are UTF-8; 65001
// at start. It holds for the whole process. Returns what the host returns: 1.
UXTREE_API int uxtree_set_default_code_page(int codePage) UX_RETURNS(done, not_done = 0);
}
