// What calls cost in C++; then python_bench.py measures the same from Python, and its peers.
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include "uxtree/uxtree_Utils.h"

#include "bench.h"

namespace {

constexpr int kCalls = 20000;

template <typename Call>
std::string nanoseconds(const char* name, Call&& call) {
    const double seconds = uxbench::best_of(50, [&] {
        for (int i = 0; i < kCalls; ++i) call();
    });
    return std::string(name) + "=" + std::to_string(seconds / kCalls * 1e9);
}

}  // namespace

int main() {
    UXXmlWrapperBase tree;
    tree.load(UXTREE_SOURCE "/examples/dialog.xml", 0, false);
    UXXmlWrapperBase node;
    tree.FindCreateNode("Find/Limit/Count", &node, -1, nullptr, 0, 0, nullptr);
    UXXmlWrapperBase found;
    CStringUTF8 path;
    UXScriptArray<CArray<int, int>> ids;
    UXScriptArray<CWBOStringArray> values;
    CStringUTF8 error;

    const std::string figures[] = {
        nanoseconds("uxtree_tree_get_theme_type", [&] { uxtree_tree_get_theme_type(&tree); }),
        nanoseconds("uxtree_find_node",
                    [&] { uxtree_find_node(&tree, &found, "DataID", 36, true, 0, 0); }),
        nanoseconds("uxtree_get_level", [&] { uxtree_get_level(&path, &node, nullptr, 0); }),
        nanoseconds("uxtree_get_node_label", [&] { uxtree_get_node_label(&node, 1); }),
        nanoseconds(
            "uxtree_get_values_with_ids",
            [&] { uxtree_get_values_with_ids(&tree, &ids, &values, 1, 0, 0, nullptr, 0, &error); }),
    };
    setenv("PYTHONPATH", UXTREE_PYTHON_PACKAGE, 1);
    execl(UXTREE_PYTHON, UXTREE_PYTHON, UXTREE_SOURCE "/bench/python_bench.py", UXTREE_SOURCE,
          figures[0].c_str(), figures[1].c_str(), figures[2].c_str(), figures[3].c_str(),
          figures[4].c_str(), nullptr);
    std::perror(UXTREE_PYTHON);
    return 1;
}
