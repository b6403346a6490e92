// Removing and hiding nodes.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/tree/structure.h"

#include "support/test_tree.h"

using namespace uxtest;

namespace {

struct DeleteCase {
    int recursive = 0;
    const char* exempt = nullptr;
    int keepBranches = 0;
};

std::string deleted(const char* tree, const DeleteCase& how = {}) {
    TestTree parsed(tree);
    const int count = uxtree_delete_nodes_by_attribute(&parsed, "k", 1, how.recursive, how.exempt,
                                                       how.keepBranches);
    return std::to_string(count) + " " + parsed.text();
}

TEST(uxtree_delete_nodes_by_attribute, RemovesChildrenWithTheValue) {
    EXPECT_EQ(deleted("<r k='1'><a k='1'/><b k='2'/><c k='1'><d/></c><e k='x'/><f/></r>"),
              "2 " + tree_text("<r k='1'><b k='2'/><e k='x'/><f/></r>"));
}

TEST(uxtree_delete_nodes_by_attribute, GoesDeeperOnlyWhenRecursive) {
    const char* const tree = "<r><a><b k='1'/><c><d k='1'/></c></a><e k='1'><f k='1'/></e></r>";

    EXPECT_EQ(deleted(tree), "1 " + tree_text("<r><a><b k='1'/><c><d k='1'/></c></a></r>"));
    EXPECT_EQ(deleted(tree, {1}), "3 " + tree_text("<r><a><c/></a></r>"));
}

TEST(uxtree_delete_nodes_by_attribute, ExemptNodesAreStillEntered) {
    EXPECT_EQ(deleted("<r><a k='1' keep=''><b k='1' keep=''/></a></r>", {1, "keep"}),
              "1 " + tree_text("<r><a k='1' keep=''/></r>"));
}

TEST(uxtree_delete_nodes_by_attribute, BranchesAreKeptOnTheFirstLevelAndStillEntered) {
    EXPECT_EQ(deleted("<r><a k='1'><b k='1'><c/></b></a><d k='1'/></r>", {1, nullptr, 1}),
              "2 " + tree_text("<r><a k='1'/></r>"));
    EXPECT_EQ(deleted("<r><a k='1'><b k='1'/></a></r>", {0, nullptr, 1}),
              "0 " + tree_text("<r><a k='1'><b k='1'/></a></r>"));
}

TEST(uxtree_delete_nodes_by_attribute, NeighboursAndTheLastNodeGo) {
    EXPECT_EQ(deleted("<r><a k='1'/><b k='1'/><c k='1'/></r>"), "3 " + tree_text("<r/>"));
    EXPECT_EQ(deleted("<r><a><b k='1'/></a><c k='1'/></r>", {1}), "2 " + tree_text("<r><a/></r>"));
}

TEST(uxtree_delete_nodes_by_attribute, StaysBelowTheGivenNode) {
    TestTree tree("<o><r><a k='1'/></r><after k='1'/></o>");
    UXXmlWrapperBase node = tree.at("r");

    EXPECT_EQ(uxtree_delete_nodes_by_attribute(&node, "k", 1, 1, nullptr, 0), 1);

    EXPECT_EQ(tree.text(), tree_text("<o><r/><after k='1'/></o>"));
}

TEST(uxtree_delete_nodes_by_attribute, HandlesIntoRemovedBranchesBecomeInvalid) {
    TestTree tree("<r><a k='1'><b><c/></b></a><d/></r>");
    std::vector<UXXmlWrapperBase> gone{tree.at("a"), tree.at("a/b"), tree.at("a/b/c")};
    UXXmlWrapperBase kept = tree.at("d");

    EXPECT_EQ(uxtree_delete_nodes_by_attribute(&tree, "k", 1, 0, nullptr, 0), 1);

    for (UXXmlWrapperBase& node : gone) {
        EXPECT_FALSE(node.IsNodeValid());
        EXPECT_EQ(node.GetNodeCount(), 0);
        EXPECT_EQ(node.SetLabel("x"), 0);
    }
    EXPECT_TRUE(kept == tree.at("d"));
}

TEST(uxtree_delete_nodes_by_attribute, DeletesNothingWithoutAName) {
    TestTree tree("<r><a k='1'/></r>");

    EXPECT_EQ(uxtree_delete_nodes_by_attribute(&tree, "", 1, 1, nullptr, 0), 0);

    EXPECT_EQ(tree.text(), tree_text("<r><a k='1'/></r>"));
}

struct KeepCase {
    int recursive = 1;
    int removeAttr = 0;
    int keepBranches = 0;
    int checkSelf = 0;
};

std::string kept(const char* tree, const KeepCase& how = {}) {
    TestTree parsed(tree);
    const int count = uxtree_delete_nodes_by_missing_attribute(
        &parsed, "k", how.recursive, how.removeAttr, how.keepBranches, how.checkSelf);
    return std::to_string(count) + " " + parsed.text();
}

TEST(uxtree_delete_nodes_by_missing_attribute, WithoutRecursionOnlyLeavesGo) {
    EXPECT_EQ(kept("<r><a/><b k=''/><c><d/></c></r>", {0}),
              "1 " + tree_text("<r><b k=''/><c><d/></c></r>"));
}

TEST(uxtree_delete_nodes_by_missing_attribute, ABranchIsJudgedAfterItsChildrenWent) {
    EXPECT_EQ(kept("<r><a><b/></a><c><d k=''/></c><e k=''><f/></e></r>"),
              "3 " + tree_text("<r><c><d k=''/></c><e k=''/></r>"));
}

TEST(uxtree_delete_nodes_by_missing_attribute, KeptBranchesMayBeEmpty) {
    EXPECT_EQ(kept("<r><a><b/></a><c k=''><d/></c><e/></r>", {1, 1, 1}),
              "3 " + tree_text("<r><a/><c k=''/></r>"));
}

TEST(uxtree_delete_nodes_by_missing_attribute, TakesTheAttributeFromKeptLeavesNotBranches) {
    EXPECT_EQ(kept("<r k=''><a k=''/><b k=''><c k=''/></b><d k=''><e/></d></r>", {1, 1}),
              "1 " + tree_text("<r k=''><a/><b k=''><c/></b><d/></r>"));
    EXPECT_EQ(kept("<r><a k=''/><b k=''><c k=''/></b></r>", {0, 1}),
              "0 " + tree_text("<r><a/><b k=''><c k=''/></b></r>"));
}

TEST(uxtree_delete_nodes_by_missing_attribute, ANodeWithTheAttributeProtectsItsBranch) {
    EXPECT_EQ(kept("<r><a k=''><b/><c><d/></c></a><e><f/></e></r>", {1, 0, 0, 1}),
              "2 " + tree_text("<r><a k=''><b/><c><d/></c></a></r>"));
    EXPECT_EQ(kept("<r><a k=''><b/></a><e k=''/></r>", {1, 1, 0, 1}),
              "0 " + tree_text("<r><a><b/></a><e/></r>"));
}

TEST(uxtree_delete_nodes_by_missing_attribute, TheTreeItselfMayProtectEverything) {
    EXPECT_EQ(kept("<r k=''><a/></r>", {1, 1, 0, 1}), "0 " + tree_text("<r><a/></r>"));
    EXPECT_EQ(kept("<r k=''><a/></r>", {1, 0, 0, 1}), "0 " + tree_text("<r k=''><a/></r>"));
    EXPECT_EQ(kept("<r k=''><a/></r>", {1, 1, 0, 0}), "1 " + tree_text("<r k=''/>"));
}

TEST(uxtree_remove_nodes_by_attribute, RemovesEverywhereAndCountsTheRemovals) {
    TestTree tree("<r k='1'><a k='1'><b k='1'/></a><c><d k='1'/><e k='2'/></c><f k=' 1 '/></r>");

    EXPECT_EQ(uxtree_remove_nodes_by_attribute(&tree, "k", 1), 3);  // b went with a
    EXPECT_EQ(uxtree_remove_nodes_by_attribute(&tree, "k", 1), 0);

    EXPECT_EQ(tree.text(), tree_text("<r k='1'><c><e k='2'/></c></r>"));
}

TEST(uxtree_remove_nodes_by_attribute, TheLookupWildcardIsAnOrdinaryValue) {
    TestTree tree("<r><a k='1'/><b k='-39999'/></r>");

    EXPECT_EQ(uxtree_remove_nodes_by_attribute(&tree, "k", -39999), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><a k='1'/></r>"));
}

TEST(uxtree_remove_nodes_by_attribute, RemovesNothingWithoutAName) {
    TestTree tree("<r><a k='1'/></r>");

    EXPECT_EQ(uxtree_remove_nodes_by_attribute(&tree, "", 1), 0);

    EXPECT_EQ(tree.text(), tree_text("<r><a k='1'/></r>"));
}

std::string pruned(const char* tree, bool recursive) {
    TestTree parsed(tree);
    const int count = uxtree_remove_empty_child_nodes(&parsed, recursive);
    return std::to_string(count) + " " + parsed.text();
}

TEST(uxtree_remove_empty_child_nodes, RemovesEmptyLeavesAndYieldsWhatWasKept) {
    EXPECT_EQ(pruned("<r><a/><b>x</b><c k='1'/><d><e/></d></r>", false),
              "2 " + tree_text("<r><b>x</b><d><e/></d></r>"));
}

TEST(uxtree_remove_empty_child_nodes, RemovesBranchesInWhichNothingWasKept) {
    EXPECT_EQ(pruned("<r><a>own<b/><c><d/></c></a><e><f>x</f><g/><h>y</h></e></r>", true),
              "2 " + tree_text("<r><e><f>x</f><h>y</h></e></r>"));
    EXPECT_EQ(pruned("<r><a><b><c/></b></a></r>", true), "0 " + tree_text("<r/>"));
    EXPECT_EQ(pruned("<r/>", true), "0 " + tree_text("<r/>"));
}

TEST(uxtree_remove_empty_child_nodes, WorksOnAVeryDeepTree) {
    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    UXXmlWrapperBase node = root;
    for (int i = 0; i < 200000; ++i) node.AddNode(&node, "n", -1);

    EXPECT_EQ(uxtree_remove_empty_child_nodes(&root, true), 0);

    EXPECT_FALSE(node.IsNodeValid());
    EXPECT_EQ(to_text(root), tree_text("<r/>"));
}

std::string hidden(const char* tree, bool recursive, bool showNonEmpty) {
    TestTree parsed(tree);
    const int count = uxtree_hide_empty_nodes(&parsed, recursive, showNonEmpty);
    return std::to_string(count) + " " + parsed.text();
}

TEST(uxtree_hide_empty_nodes, HidesEmptyLeavesAndCountsThem) {
    const char* const tree = "<r><a/><b Show='0'>x</b><c Show='1'><d/><e>y</e></c></r>";

    EXPECT_EQ(
        hidden(tree, false, false),
        "1 " + tree_text("<r><a Show='0'/><b Show='0'>x</b><c Show='1'><d/><e>y</e></c></r>"));
    EXPECT_EQ(
        hidden(tree, true, false),
        "2 " + tree_text(
                   "<r><a Show='0'/><b Show='0'>x</b><c Show='1'><d Show='0'/><e>y</e></c></r>"));
}

TEST(uxtree_hide_empty_nodes, ShowsFilledLeavesWhenAsked) {
    EXPECT_EQ(hidden("<r><a Show='0'/><b Show='0'>x</b><c Show='0'><d Show='0'>y</d></c></r>", true,
                     true),
              "1 " + tree_text("<r><a Show='0'/><b>x</b><c Show='0'><d>y</d></c></r>"));
}

}  // namespace
