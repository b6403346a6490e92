// Trees of random shape over a given vocabulary, for tests that hold for every tree.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "uxtree/host/host.h"

namespace uxtest {

struct Vocabulary {
    std::vector<std::string> tags;
    std::vector<std::string> attributes;
    std::vector<std::string> values;  // of attributes and texts
    std::vector<int> ids;
};

// The same seed gives the same tree and the same choices.
class RandomTree {
public:
    RandomTree(unsigned seed, const Vocabulary& vocabulary);
    UXXmlWrapperBase root() const { return root_; }
    // Any node of the tree as it is now, and now and then an invalid handle.
    UXXmlWrapperBase any_node();
    int number(int low, int high);
    const std::string& value() { return pick(vocabulary_.values); }

private:
    template <typename T>
    const T& pick(const std::vector<T>& from) {
        return from[static_cast<std::size_t>(number(0, static_cast<int>(from.size()) - 1))];
    }
    void grow(int nodes);
    void decorate(UXXmlWrapperBase& node);

    std::mt19937 engine_;
    const Vocabulary& vocabulary_;
    UXXmlWrapperBase root_;
};

}  // namespace uxtest
