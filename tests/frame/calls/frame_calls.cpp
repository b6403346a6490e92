// Bad arguments of the path lookups, and of what has no argument that can be bad.
#include "frame/calls/calls.h"

namespace uxtest {
namespace {

int get_node(UXXmlWrapperBase& out, const UXXmlWrapperBase& start, const char* name) {
    return wbxfu_tree_get_node(out, start, name, static_cast<const char*>(nullptr));
}
int check_get_node(UXXmlWrapperBase& out, UXXmlWrapperBase& start, const char* name) {
    return wbxfu_tree_check_get_node(out, start, name, static_cast<const char*>(nullptr));
}
int check_get_node_ex_rest(UXXmlWrapperBase* out, UXXmlWrapperBase* start, int create,
                           const char* name, ...) {
    va_list rest;
    va_start(rest, name);
    const int result = wbxfu_tree_check_get_node_ex(*out, *start, create, name, rest);
    va_end(rest);
    return result;
}
int check_get_node_ex(UXXmlWrapperBase& out, UXXmlWrapperBase& start, int create,
                      const char* name) {
    return check_get_node_ex_rest(&out, &start, create, name, static_cast<const char*>(nullptr));
}
int vector_value(UXXmlWrapperBase& tree, CArray<double, double>& array, int get, const char* name) {
    UXVectorDesc vector(array);
    return wbxfu_tree_node_vector_value(tree, vector, get, name, static_cast<const char*>(nullptr));
}

}  // namespace

void add_frame_rows(Sweep& sweep) {
    // Without a name the path is empty and leads to the start itself.
    constexpr Row lookup{.good = 1, .bad = 0};
    sweep.add(UX_WRAPPED(wbxfu_tree_get_node, get_node), lookup, out(), node(),
              text("a").optional());
    sweep.add(UX_WRAPPED(wbxfu_tree_check_get_node, check_get_node), lookup, out(), node(),
              text("new").optional());
    sweep.add(UX_WRAPPED(wbxfu_tree_check_get_node_ex, check_get_node_ex), lookup, out(), node(), 0,
              text("a").optional());
    sweep.add(UX_WRAPPED(wbxfu_tree_check_get_node_ex, check_get_node_ex), lookup, out(), node(), 1,
              text("new").optional());
    sweep.add(UX_WRAPPED(wbxfu_tree_node_vector_value, vector_value), lookup, node(),
              doubles({1.5}).getset(), 0, text("new").optional());
    sweep.add(UX_WRAPPED(wbxfu_tree_node_vector_value, vector_value), lookup, node(),
              doubles().getset(), 1, text("a").optional(0));  // the start has no value to read

    sweep.add(UX_ENTRY(uxtree_set_default_code_page), Row{.good = 1, .bad = 0}, 65001);
}

}  // namespace uxtest
