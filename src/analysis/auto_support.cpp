// Automatic updates of nodes: the entry points.
#include "uxtree/analysis/auto_support.h"

#include "frame/guards.h"
#include "frame/results.h"
#include "marks/auto_text.h"

using namespace ux;

int vctree_create_auto_support_string(CStringUTF8& out, int mode, const char* name, int count) {
    return at_boundary(kFail, [&] {
        out = make_auto_text(mode, name, count);
        return kOk;
    });
}

int vctree_parse_auto_support_string(const char* text, int& mode, CStringUTF8& name, int& count) {
    return at_boundary(kFail, [&] { return parse_auto_text(text, mode, name, count); });
}

int vctree_get_auto_support(UXXmlWrapperBase& node, CStringUTF8& name, int& count) {
    return at_boundary(kFail, [&] { return read_auto(node, name, count); });
}

int vctree_set_auto_support(UXXmlWrapperBase& node, int mode, const char* name, int count) {
    return at_boundary(kFail, [&] { return write_auto(node, mode, name, count); });
}

void vctree_check_reset_auto_support(UXXmlWrapperBase& node) {
    at_boundary([&] { switch_auto_off(node); });
}

extern "C" int uxtree_get_auto_support(UXXmlWrapperBase* node, CStringUTF8* name, int* count) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) return kFail;
        CStringUTF8 unusedName;
        int unusedCount = 0;
        return vctree_get_auto_support(*node, name != nullptr ? *name : unusedName,
                                       count != nullptr ? *count : unusedCount);
    });
}

extern "C" int uxtree_set_auto_support(UXXmlWrapperBase* node, int mode, const char* name,
                                       int count) {
    return node == nullptr ? kFail : vctree_set_auto_support(*node, mode, name, count);
}
