// Random trees from a seed.
#include "support/random_tree.h"

namespace uxtest {

RandomTree::RandomTree(unsigned seed, const Vocabulary& vocabulary)
    : engine_(seed), vocabulary_(vocabulary) {
    root_.CreateNew(0, pick(vocabulary_.tags).c_str());
    decorate(root_);
    grow(number(0, 40));
}

int RandomTree::number(int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(engine_);
}

void RandomTree::grow(int nodes) {
    std::vector<UXXmlWrapperBase> all{root_};
    for (int i = 0; i < nodes; ++i) {
        UXXmlWrapperBase parent = pick(all);
        UXXmlWrapperBase node;
        parent.AddNode(&node, pick(vocabulary_.tags).c_str(), pick(vocabulary_.ids));
        decorate(node);
        all.push_back(node);
    }
}

void RandomTree::decorate(UXXmlWrapperBase& node) {
    for (int i = number(0, 3); i > 0; --i) {
        node.SetPropertyValue(pick(vocabulary_.attributes).c_str(), CStringUTF8(value().c_str()));
    }
    if (number(0, 2) == 0) node.SetString(value().c_str());
}

UXXmlWrapperBase RandomTree::any_node() {
    if (number(0, 9) == 0) return {};
    UXXmlWrapperBase node = root_;
    while (node.GetNodeCount() > 0 && number(0, 3) != 0) {
        node.GetChild(&node, number(0, node.GetNodeCount() - 1));
    }
    return node;
}

}  // namespace uxtest
