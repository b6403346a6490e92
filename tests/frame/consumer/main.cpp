// Uses both libraries as an installed package offers them.
#include <cstdio>

#include <uxtree/uxtree_Utils.h>

int main() {
    UXXmlWrapperBase root;
    UXXmlWrapperBase found;
    if (!root.CreateNew(0, "settings") || !root.AddTextNode(nullptr, "a", "7", 5, 0, nullptr)) {
        return 1;
    }
    if (uxtree_get_node_by_id(&root, &found, 5, false) != 1) return 2;

    CStringUTF8 text;
    found.GetString(text);
    std::printf("%s\n", static_cast<const char*>(text));
    return 0;
}
