// The nodes that values come from.
#include "uxtree/kit/values.h"

#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/data/values.h"
#include "uxtree/host/host.h"

#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using uxtest::numbers;
using uxtest::tag_text;
using uxtest::TestTree;
using uxtest::texts;

using TagsAndIds = std::vector<std::pair<std::string, int>>;

TagsAndIds value_nodes(const char* xml, const char* idAttribute = nullptr,
                       int inheritedRepeat = 0) {
    const TestTree tree(xml);
    TagsAndIds found;
    for (const UXValueNode& value : UXValueNodes(tree, idAttribute, inheritedRepeat)) {
        found.emplace_back(tag_text(value.node), value.id);
    }
    return found;
}

TEST(UXValueNodes, NamesLeavesAndBranchesWithValues) {
    EXPECT_THAT(value_nodes("<r DataID='9'><a DataID='1'>x</a><b DataID='2'><c/></b><b DataID='3' "
                            "Use='1'><c DataID='4'/></b><b DataID='5' Auto='1'><c/></b></r>"),
                ElementsAre(Pair("a", 1), Pair("b", 3), Pair("c", 4), Pair("b", 5)));
}

TEST(UXValueNodes, CombinesIdentifiers) {
    EXPECT_THAT(value_nodes("<r><a RepeatID='2'><b DataID='5'/></a></r>"),
                ElementsAre(Pair("b", 0x20005)));
    EXPECT_THAT(value_nodes("<r><b NodeID='5'/></r>", "NodeID", 1),
                ElementsAre(Pair("b", 0x10005)));
}

TEST(UXValueNodes, FollowsTheThemes) {
    EXPECT_THAT(
        value_nodes("<r><a DataID='1' Use='1' Data='x' ThemeApplicabilityEx='1'><b/></a>"
                    "<c DataID='2' Data='x' ThemeApplicability='1048576'><b DataID='3'/></c>"
                    "<d DataID='4' TreeGetByIdIgnore='1'/></r>"),
        ElementsAre(Pair("a", 1), Pair("a", -1), Pair("c", 2)));
}

TEST(UXValueNodes, KnowsNoneOfAnUnusableTree) {
    EXPECT_THAT(UXValueNodes(UXXmlWrapperBase()), IsEmpty());
}

// Random trees in which every text occurs once: what is collected is found at the node.
class RandomValues {
public:
    explicit RandomValues(unsigned seed) : random_(seed) {}

    std::string tree() {
        std::string xml = "<r>";
        int depth = 0;
        for (int i = below(40); i >= 0; --i) {
            const bool isLeaf = below(3) != 0;
            xml += "<n" + attributes(isLeaf) + (isLeaf ? ">t" + next() + "</n>" : ">");
            if (!isLeaf) ++depth;
            for (; depth > 0 && below(3) == 0; --depth) xml += "</n>";
        }
        for (; depth > 0; --depth) xml += "</n>";
        return xml + "</r>";
    }

private:
    int below(unsigned n) { return static_cast<int>(random_() % n); }
    std::string next() { return std::to_string(++last_) + "."; }
    std::string attribute(const char* name, const std::string& value) {
        std::string out = " ";
        out += name;
        return out + "='" + value + "'";
    }

    std::string attributes(bool isLeaf) {
        std::string out;
        if (below(5) != 0) out += attribute("DataID", std::to_string(below(9) - 2));
        if (below(4) == 0) out += attribute("RepeatID", std::to_string(below(5) - 1));
        if (below(6) == 0) out += attribute("RepeatNodeID", std::to_string(below(300)));
        if (below(12) == 0) out += attribute("TreeGetByIdIgnore", std::to_string(below(2)));
        if (below(3) == 0) out += attribute("Use", "u" + next());
        if (below(3) == 0) out += attribute("Data", "d" + next());
        if (below(8) == 0) out += attribute("Auto", "a" + next());
        if (below(8) == 0) out += attribute("DynaFx", "f" + next());
        if (!isLeaf && below(4) == 0) out += attribute("ThemeApplicability", "1048576");
        if (!isLeaf && below(4) == 0)
            out += attribute("ThemeApplicabilityEx", std::to_string(below(3)));
        return out;
    }

    std::mt19937 random_;
    int last_ = 0;
};

// What a value of the node can consist of.
std::string all_texts(const UXXmlWrapperBase& node) {
    CStringUTF8 text;
    if (node.GetNodeCount() < 1) node.GetNodeStringWithBlobInfo(text, 0);
    std::string out(text);
    for (const char* name : {"Use", "Data", "Auto", "DynaFx"}) {
        if (node.GetPropertyValue(name, text, 0) != 0) out += " " + std::string(text);
    }
    return out;
}

TEST(UXValueNodes, AgreesWithCollecting) {
    RandomValues random(22);
    int compared = 0;
    for (int round = 0; round < 800; ++round) {
        const std::string xml = random.tree();
        TestTree tree(xml.c_str());
        CArray<int, int> ids;
        CWBOStringArray values;
        vctree_get_values_with_ids(&tree, &ids, &values, 1, 0, round % 3, nullptr, 0, nullptr);
        const std::vector<UXValueNode> nodes = UXValueNodes(tree, nullptr, round % 3);
        std::vector<int> nodeIds;
        for (const UXValueNode& value : nodes) nodeIds.push_back(value.id);
        ASSERT_EQ(nodeIds, numbers(ids)) << xml;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const std::string value = texts(values)[i];
            const std::size_t last = value.find_last_of("}");
            const std::string text = last == std::string::npos ? value : value.substr(last + 1);
            if (text == "-1" || text.empty()) continue;  // settings alone
            ASSERT_NE(all_texts(nodes[i].node).find(text), std::string::npos) << value << "\n"
                                                                              << xml;
            ++compared;
        }
    }
    EXPECT_GT(compared, 3000);
}

}  // namespace
