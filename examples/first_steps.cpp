// First steps: load a tree, read it, change it, save it.
#include <cstdio>
#include <filesystem>
#include <string>

#include "uxtree/uxtree_Utils.h"

namespace {

constexpr const char kOptions[] =
    "<Options Label='Fit options'>"
    "<Range Label='Range'><Start>1.5</Start><End>20</End></Range>"
    "<Weights Label='Weights'>Poisson</Weights>"
    "</Options>";

void print_labels(UXXmlWrapperBase& tree) {
    CWBOStringArray labels;  // one text per node below the root, "" for a node without a label
    VCTreeGetAttributes(&tree, &labels, "Label", false, nullptr);
    for (int i = 0; i < labels.GetSize(); ++i) {
        if (!labels[i].IsEmpty()) std::printf("label %s\n", static_cast<const char*>(labels[i]));
    }
}

// Reading looks a path up; it creates nothing.
double read_end(UXXmlWrapperBase& tree) {
    UXXmlWrapperBase end;
    double value = 0;
    if (wbxfu_tree_get_node(end, tree, "Range", "End", nullptr) != 0) end.NodeValue(value, 1);
    return value;
}

// Writing creates what is missing.
void write_step(UXXmlWrapperBase& tree, double step) {
    UXXmlWrapperBase node;
    if (wbxfu_tree_check_get_node(node, tree, "Range", "Step", nullptr) != 0) {
        node.NodeValue(step, 0);
    }
}

}  // namespace

int main() {
    UXXmlWrapperBase tree;
    if (tree.LoadFromMemory(kOptions, sizeof kOptions - 1) == 0) {
        std::printf("%s\n", static_cast<const char*>(UXGetLastLoadError()));
        return 1;
    }
    print_labels(tree);
    std::printf("end %g\n", read_end(tree));
    write_step(tree, 0.25);

    const std::string file =
        (std::filesystem::temp_directory_path() / "uxtree_first_steps.xml").string();
    if (tree.Save(file.c_str(), 0) == 0) {  // all or nothing
        std::printf("%s\n", static_cast<const char*>(UXGetLastSaveError()));
        return 1;
    }
    UXXmlWrapperBase again;
    again.load(file.c_str(), 0, false);
    std::filesystem::remove(file);
    CStringUTF8 text;
    again.GetString(text);
    std::printf("%s\n", static_cast<const char*>(text));
    return read_end(again) == 20 ? 0 : 1;
}
