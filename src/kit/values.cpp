// Which nodes the values of a tree belong to.
#include "uxtree/kit/values.h"

#include "data/id_rules.h"
#include "marks/names.h"

std::vector<UXValueNode> UXValueNodes(const UXXmlWrapperBase& tree, const char* idAttribute,
                                      int inheritedRepeat) {
    std::vector<UXValueNode> nodes;
    if (tree.IsNodeValid() == 0) return nodes;
    const bool named = idAttribute != nullptr && *idAttribute != '\0';
    for (const ux::CollectedNode& collected :
         ux::collected_nodes(tree, named ? idAttribute : ux::kDataId, inheritedRepeat)) {
        nodes.push_back({collected.node, collected.id});
    }
    return nodes;
}
