// Finding nodes that are made when they are missing.
#include <gtest/gtest.h>

#include "uxtree/tree/lookup.h"

#include "support/test_tree.h"

using namespace uxtest;

namespace {

TEST(uxtree_tree_check_get_node, FindsTheFirstChildAndSetsTheAttributeOnIt) {
    TestTree tree("<r><a/><a/></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_tree_check_get_node(&out, &tree, "a", 5, "k", "v"), 1);

    EXPECT_TRUE(out == tree.at("a"));
    EXPECT_EQ(tree.text(), tree_text("<r><a k='v'/><a/></r>"));
}

TEST(uxtree_tree_check_get_node, AppendsAMissingChildWithTheId) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_tree_check_get_node(&out, &tree, "b", 5), 1);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, &tree, "c", 0, "k", ""), 1);

    EXPECT_EQ(tag_text(out), "c");
    EXPECT_EQ(tree.text(), tree_text("<r><a/><b _ux_id='5'/><c/></r>"));
}

TEST(uxtree_tree_check_get_node, ATotalFailureLeavesTheOutputInvalid) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_tree_check_get_node(&out, &tree, "no name", 0), 0);

    EXPECT_FALSE(out.IsNodeValid());
    EXPECT_EQ(tree.text(), tree_text("<r><a/></r>"));
}

TEST(uxtree_tree_check_get_node, FailsWithBadArgumentsWithoutTouchingTheOutput) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_tree_check_get_node(nullptr, &tree, "b", 0), 0);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, nullptr, "b", 0), 0);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, &invalid, "b", 0), 0);
    EXPECT_TRUE(out == tree);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, &tree, nullptr, 0), 0);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, &tree, "", 0), 0);

    EXPECT_EQ(tree.text(), tree_text("<r><a/></r>"));
}

TEST(uxtree_tree_check_get_node, TheOutputMayBeTheParent) {
    TestTree tree("<r/>");
    UXXmlWrapperBase node = tree;

    EXPECT_EQ(uxtree_tree_check_get_node(&node, &node, "a", 0), 1);
    EXPECT_EQ(uxtree_tree_check_get_node(&node, &node, "b", 0), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><a><b/></a></r>"));
}

TEST(uxtree_tree_check_get_node_by_attribute, FindsWithOrWithoutDepth) {
    TestTree tree("<r><a><b k='v'/></a></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &tree, "k", "v", 1, nullptr), 1);
    EXPECT_EQ(tag_text(out), "b");
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &tree, "k", "v", 0, "n"), 1);
    EXPECT_EQ(tag_text(out), "n");
    EXPECT_EQ(tree.text(), tree_text("<r><a><b k='v'/></a><n k='v'/></r>"));
}

TEST(uxtree_tree_check_get_node_by_attribute, TheValueIsTheTagWhenNoneIsGiven) {
    TestTree tree("<r/>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &tree, "k", "1 a:b", 1, nullptr), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><_1_a_b k='1 a:b'/></r>"));
}

TEST(uxtree_tree_check_get_node_by_attribute, TheTagZeroCreatesNothing) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &tree, "k", "v", 1, "0"), 0);
    EXPECT_FALSE(out.IsNodeValid());
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &tree, "k", "0", 1, nullptr), 0);
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &tree, "k", "v", 1, ""), 0);

    EXPECT_EQ(tree.text(), tree_text("<r><a/></r>"));
}

TEST(uxtree_check_get_node_by_dataid, FindsAmongTheDirectChildrenOnly) {
    TestTree tree("<r><a><b DataID='5'/></a><c DataID='5'/></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_check_get_node_by_dataid(&tree, &out, "n", 5, "k", "v"), 1);

    EXPECT_EQ(tag_text(out), "c");
    EXPECT_EQ(tree.text(), tree_text("<r><a><b DataID='5'/></a><c DataID='5'/></r>"));
}

TEST(uxtree_check_get_node_by_dataid, CreatesWhatIsMissing) {
    TestTree tree("<r/>");
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_check_get_node_by_dataid(&tree, &out, "n", 5, "k", "v"), 1);
    EXPECT_EQ(tag_text(out), "n");
    EXPECT_EQ(uxtree_check_get_node_by_dataid(&tree, &out, "m", 0, "k", ""), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><n k='v' DataID='5'/><m/></r>"));
}

TEST(uxtree_check_get_node_by_dataid, ATagThatCannotBeCreatedLeavesTheOutput) {
    TestTree tree("<r/>");
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_check_get_node_by_dataid(&tree, &out, "no name", 5, nullptr, nullptr), 1);

    EXPECT_TRUE(out == tree);
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

}  // namespace
