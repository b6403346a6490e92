// Counting and collecting attributes over branches.
#include <functional>
#include <stdexcept>

#include <gmock/gmock.h>

#include "uxtree/tree/attributes.h"

#include "support/test_tree.h"

using namespace uxtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::function<bool(UXXmlWrapperBase&)> has_label(const char* wanted) {
    return [wanted](UXXmlWrapperBase& node) {
        CStringUTF8 label;
        return node.GetPropertyValue("Label", label, 0) && label == wanted;
    };
}

TEST(uxtree_count_items_by_attribute, CountsAsTheArgumentsSay) {
    TestTree tree("<r k='v'><a k='v'><b k='v'/></a><c k='V'/><d/></r>");

    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, nullptr, "v", 0, 0), 3);
    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, nullptr, "v", 0, 1), 4);
    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, "k", nullptr, 0, 0), 2);
    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, "k", "v", 0, 0), 1);
    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, "k", "v", 0, 1), 2);
    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, "k", "", 0, 1), 0);
}

TEST(uxtree_count_items_by_attribute, MissingCountsOnlyNodesWithoutTheAttribute) {
    TestTree tree("<r><a k='other'/><b/><c k='v'/></r>");

    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, "k", "v", 1, 0), 2);
    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, "", "v", 1, 0), 3);
    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, "", "v", 0, 0), 0);
}

TEST(uxtree_count_items_by_attribute, ALeafHasNone) {
    TestTree tree("<r/>");

    EXPECT_EQ(uxtree_count_items_by_attribute(&tree, nullptr, nullptr, 1, 1), 0);
}

TEST(uxtree_all_nodes_has_attrib, TestsTheDescendantsNotTheNode) {
    TestTree tree("<r><a k=''><b k='1'/></a><c k='2'><d/></c></r>");
    UXXmlWrapperBase complete = tree.at("a");
    UXXmlWrapperBase leaf = tree.at("c/d");

    EXPECT_EQ(uxtree_all_nodes_has_attrib(&complete, "k"), 1);
    EXPECT_EQ(uxtree_all_nodes_has_attrib(&leaf, "k"), 1);
    EXPECT_EQ(uxtree_all_nodes_has_attrib(&tree, "k"), 0);
}

TEST(uxtree_all_nodes_has_attrib, NoNodeHasAnEmptyName) {
    TestTree tree("<r><a/></r>");

    EXPECT_EQ(uxtree_all_nodes_has_attrib(&tree, ""), 0);
}

TEST(VCTreeAttributeValues, AppendsIntegersWithMinusOneForMissing) {
    TestTree tree("<r k='9'><a k='1'><b/></a><c k='x'/><d k='-4'/></r>");
    CArray<int, int> values = number_list<int>({100});

    EXPECT_EQ(VCTreeAttributeValues(&tree, "k", 5, &values, 1, 0), 0);
    EXPECT_THAT(numbers(values), ElementsAre(100, 1, -1, -1, -4));
    values.RemoveAll();
    EXPECT_EQ(VCTreeAttributeValues(&tree, "k", 5, &values, 1, 1), 0);
    EXPECT_THAT(numbers(values), ElementsAre(9, 1, -1, -1, -4));

    EXPECT_EQ(tree.text(), tree_text("<r k='9'><a k='1'><b/></a><c k='x'/><d k='-4'/></r>"));
}

TEST(VCTreeAttributeValues, WritesTheValueWithoutAnArray) {
    TestTree tree("<r k='9'><a><b k='1'/></a></r>");

    EXPECT_EQ(VCTreeAttributeValues(&tree, "k", -2, nullptr, 0, 0), 0);

    EXPECT_EQ(tree.text(), tree_text("<r k='9'><a k='-2'><b k='-2'/></a></r>"));
}

TEST(VCTreeAttributeValues, ANegativeValueRemovesWhenAsked) {
    TestTree tree("<r k='9'><a k='1'/></r>");

    EXPECT_EQ(VCTreeAttributeValues(&tree, "k", 0, nullptr, 1, 0), 0);
    EXPECT_EQ(tree.text(), tree_text("<r k='9'><a k='0'/></r>"));
    EXPECT_EQ(VCTreeAttributeValues(&tree, "k", -1, nullptr, 1, 1), 0);
    EXPECT_EQ(tree.text(), tree_text("<r><a/></r>"));
}

TEST(uxtree_attribute_values, CollectsOrWritesBelowTheNode) {
    TestTree tree("<r k='9'><a k='1'/><b/></r>");
    auto values = script_ints({});

    EXPECT_EQ(uxtree_attribute_values(&tree, "k", 5, &values, 0), 0);
    EXPECT_THAT(numbers(values.array()), ElementsAre(1, -1));
    EXPECT_EQ(uxtree_attribute_values(&tree, "k", 5, nullptr, 0), 0);

    EXPECT_EQ(tree.text(), tree_text("<r k='9'><a k='5'/><b k='5'/></r>"));
}

TEST(VCTreeGetAttributes, SkipIsAskedAboutTheFirstLevelOnly) {
    TestTree tree("<r><a Label='A'><x Label='skip'/></a><b Label='skip'><y/></b><c/></r>");
    CWBOStringArray labels;

    EXPECT_EQ(VCTreeGetAttributes(&tree, &labels, "Label", false, has_label("skip")), 0);

    EXPECT_THAT(texts(labels), ElementsAre("A", "skip", ""));  // x stays, b and y are gone
}

TEST(VCTreeGetAttributes, AppendsAndTakesTheChildrenAloneWhenAsked) {
    TestTree tree("<r><a Label='A'><x Label='X'/></a><c Label='C'/></r>");
    CWBOStringArray labels = string_list({"before"});

    EXPECT_EQ(VCTreeGetAttributes(&tree, &labels, "Label", true, nullptr), 0);

    EXPECT_THAT(texts(labels), ElementsAre("before", "A", "C"));
}

TEST(VCTreeGetAttributes, AThrowingSkipTestEndsWithZero) {
    TestTree tree("<r><a Label='A'/></r>");
    CWBOStringArray labels;

    EXPECT_EQ(VCTreeGetAttributes(&tree, &labels, "Label", true,
                                  [](UXXmlWrapperBase&) -> bool { throw std::runtime_error("x"); }),
              0);

    EXPECT_THAT(texts(labels), IsEmpty());
}

TEST(VCTreeGetAttributes, YieldsZeroWithBadArgumentsToo) {
    TestTree tree("<r><a Label='A'/></r>");
    UXXmlWrapperBase invalid;
    CWBOStringArray labels;

    EXPECT_EQ(VCTreeGetAttributes(nullptr, &labels, "Label", true, nullptr), 0);
    EXPECT_EQ(VCTreeGetAttributes(&invalid, &labels, "Label", true, nullptr), 0);
    EXPECT_EQ(VCTreeGetAttributes(&tree, nullptr, "Label", true, nullptr), 0);
    EXPECT_EQ(VCTreeGetAttributes(&tree, &labels, nullptr, true, nullptr), 0);

    EXPECT_THAT(texts(labels), IsEmpty());
}

TEST(vctree_get_attributes, HasOneEntryPerNode) {
    TestTree tree("<r k='0'><a k='1'><b/></a><c k='3'/></r>");
    CWBOStringArray values;

    EXPECT_EQ(vctree_get_attributes(&tree, &values, "k", false), 0);
    EXPECT_THAT(texts(values), ElementsAre("1", "", "3"));
    EXPECT_EQ(vctree_get_attributes(&tree, &values, "k", true), 0);
    EXPECT_THAT(texts(values), ElementsAre("1", "", "3", "1", "3"));
}

TEST(uxtree_get_attributes, FillsAStringArray) {
    TestTree tree("<r><a k='1'><b k='2'/></a></r>");
    auto values = script_texts({});

    EXPECT_EQ(uxtree_get_attributes(&tree, &values, "k", 0), 0);
    EXPECT_THAT(texts(values.array()), ElementsAre("1", "2"));
}

TEST(vctree_get_node_names, AppendsTheTagsInDocumentOrder) {
    TestTree tree("<r><a><b/><b/></a><c/></r>");
    CWBOStringArray names;

    vctree_get_node_names(&tree, &names, false);
    EXPECT_THAT(texts(names), ElementsAre("a", "b", "b", "c"));
    vctree_get_node_names(&tree, &names, true);
    EXPECT_THAT(texts(names), ElementsAre("a", "b", "b", "c", "a", "c"));
}

TEST(uxtree_get_node_names, FillsAStringArray) {
    TestTree tree("<r><a><b/></a></r>");
    auto names = script_texts({"before"});

    EXPECT_EQ(uxtree_get_node_names(&tree, &names, 0), 0);
    EXPECT_THAT(texts(names.array()), ElementsAre("before", "a", "b"));
}

}  // namespace
