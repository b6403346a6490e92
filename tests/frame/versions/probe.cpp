// What the doors of C++ and C say when the libraries do not fit each other.
#include <iostream>

#include "uxtree/kit/c.h"
#include "uxtree/kit/version.h"
#include "uxtree/uxtree_Utils.h"

int main() {
    UXXmlWrapperBase tree;
    tree.CreateNew(0, "a");
    tree.SetPropertyValue("b", "1");
    std::cout << "product: " << UXVersionProblem() << "\n";
    std::cout << "removed: " << uxtree_remove_attribute(&tree, "b", 1) << "\n";
    UXXmlWrapperBase* const node = ux_node_new("a");
    std::cout << "kit: " << (node == nullptr ? ux_last_error() : "works") << "\n";
    ux_node_free(node);
}
