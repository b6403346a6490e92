// Nodes named by the tags that lead to them.
#include "support/node_path.h"

#include <algorithm>
#include <sstream>

#include "support/input.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {

CLI::Option* add_at(CLI::App& app, std::string& path) {
    return app.add_option("--at", path, "Work on this node: tags below the root, joined by \"/\"")
        ->type_name("PATH");
}

UXXmlWrapperBase open_node(const std::string& file, const std::string& path) {
    return node_at(open_tree(file), path, file);
}

UXXmlWrapperBase node_at(const UXXmlWrapperBase& root, const std::string& path,
                         const std::string& file) {
    UXXmlWrapperBase node = root;
    std::istringstream steps(path);
    std::string step;
    while (std::getline(steps, step, '/')) {
        UXXmlWrapperBase child;
        if (node.FindChild(step.c_str(), &child, 1) == 0) {
            throw Failure(kNothingFound, input_name(file), "no node at \"" + path + "\"",
                          "uxtree show lists the nodes of a tree");
        }
        node = child;
    }
    return node;
}

std::string path_below(const UXXmlWrapperBase& top, const UXXmlWrapperBase& node) {
    std::vector<std::string> tags;
    UXXmlWrapperBase step = node;
    while (step.IsNodeValid() != 0 && !(step == top)) {
        tags.push_back(tag_of(step));
        step.GetParent(&step);
    }
    if (tags.empty()) return ".";
    std::reverse(tags.begin(), tags.end());
    return join(tags, "/");
}

}  // namespace uxtool
