// Lookups along a path of tags given as arguments, and the default code page.
#include "uxtree/frame/path_lookup.h"

#include <cstdarg>

#include "frame/child_by_tag.h"
#include "frame/guards.h"
#include "frame/results.h"

using namespace ux;

namespace {

// Finds the child of node with the tag, or creates it, and steps to it. The node stays where it is
// when that fails.
bool step_to_child(UXXmlWrapperBase& node, const char* tag, bool create) {
    UXXmlWrapperBase child;
    if (create ? !usable(node) || !find_or_add_child(child, node, tag)
               : !node.FindChild(tag, &child, 1)) {
        return false;
    }
    node = child;
    return true;
}

int follow_path(UXXmlWrapperBase& out, const UXXmlWrapperBase& start, bool create, const char* name,
                va_list rest) {
    UXXmlWrapperBase node = start;  // out may be the start's own handle
    for (const char* tag = name; tag != nullptr; tag = va_arg(rest, const char*)) {
        if (!step_to_child(node, tag, create)) return kFail;
    }
    out = node;
    return usable(out) ? kOk : kFail;
}

}  // namespace

int wbxfu_tree_check_get_node_ex(UXXmlWrapperBase& out, UXXmlWrapperBase& start, int create,
                                 const char* name, va_list rest) {
    return at_boundary(kFail, [&] { return follow_path(out, start, create != 0, name, rest); });
}

int wbxfu_tree_get_node(UXXmlWrapperBase& out, const UXXmlWrapperBase& start, const char* name,
                        ...) {
    UXXmlWrapperBase place = start;
    va_list rest;
    va_start(rest, name);
    const int result = wbxfu_tree_check_get_node_ex(out, place, 0, name, rest);
    va_end(rest);
    return result;
}

int wbxfu_tree_check_get_node(UXXmlWrapperBase& out, UXXmlWrapperBase& start, const char* name,
                              ...) {
    va_list rest;
    va_start(rest, name);
    const int result = wbxfu_tree_check_get_node_ex(out, start, 1, name, rest);
    va_end(rest);
    return result;
}

int wbxfu_tree_node_vector_value(UXXmlWrapperBase& tree, UXVectorDesc& vector, int get,
                                 const char* name, ...) {
    UXXmlWrapperBase node;
    va_list rest;
    va_start(rest, name);
    const int found = wbxfu_tree_check_get_node_ex(node, tree, get != 0 ? 0 : 1, name, rest);
    va_end(rest);
    if (!found) return kFail;
    return at_boundary(kFail, [&] {
        const int refusal = get != 0 ? node.GetVector(vector) : node.SetVector(vector);
        return refusal == 0 ? kOk : kFail;  // the host's vector calls report success as 0
    });
}

extern "C" int uxtree_set_default_code_page(int codePage) {
    return at_boundary(kFail, [&] { return UXXmlWrapperBase::SetDefaultCodePage(codePage); });
}
