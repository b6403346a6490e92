#include "uxtree/tree/lookup.h"

#include <climits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

using namespace uxtest;

namespace {

std::string tag(const UXXmlWrapperBase& node) {
    CStringUTF8 name;
    return node.GetTagName(name) ? static_cast<const char*>(name) : "(invalid)";
}

std::string str(const CStringUTF8& text) {
    return static_cast<const char*>(text);
}

constexpr unsigned int kMarkedOnly = 0x10000;
constexpr unsigned int kBranchesOnly = 0x20000;
constexpr unsigned int kLimit = 0x40000;

// The tags that the numbering gives, in order.
std::string numbered(UXXmlWrapperBase tree, unsigned int flags, const char* attrName) {
    std::string tags;
    for (int i = 0;; ++i) {
        UXXmlWrapperBase node;
        uxtree_get_node_ex(&tree, &node, i, flags, attrName);
        if (!node.IsNodeValid()) return tags;
        tags += (tags.empty() ? "" : " ") + tag(node);
    }
}

const char* const kForest = "<r><a><b><c/></b><d/></a><e/><f><g/></f></r>";

TEST(uxtree_get_node, NumbersBelowTheStartNodeInDocumentOrder) {
    TestTree tree(kForest);
    UXXmlWrapperBase root = tree.root();
    const char* const expected[] = {"a", "b", "c", "d", "e", "f", "g"};

    for (int i = 0; i < 7; ++i) {
        UXXmlWrapperBase out;
        int counter = 0;
        ASSERT_EQ(uxtree_get_node(&root, &out, i, &counter, -1, nullptr, true, false, 0), 1);
        EXPECT_EQ(tag(out), expected[i]);
        EXPECT_EQ(counter, i);
    }
}

TEST(uxtree_get_node, AnUnreachableIndexCountsAllNodes) {
    TestTree tree(kForest);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = tree.at("e");
    int counter = 0;

    EXPECT_EQ(uxtree_get_node(&root, &out, 1000, &counter, -1, "", true, false, 0), 0);

    EXPECT_EQ(counter, 7);
    EXPECT_EQ(tag(out), "e");  // as it was
}

TEST(uxtree_get_node, GoesOnFromTheCounterGiven) {
    TestTree tree(kForest);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;
    int counter = 10;

    EXPECT_EQ(uxtree_get_node(&root, &out, 12, &counter, -1, nullptr, true, false, 0), 1);

    EXPECT_EQ(tag(out), "c");
    EXPECT_EQ(counter, 12);
}

TEST(uxtree_get_node, FailsAboveTheMaximumLevelAndBelowIndexZero) {
    TestTree tree(kForest);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;
    int counter = 0;

    EXPECT_EQ(uxtree_get_node(&root, &out, 0, &counter, 2, nullptr, true, false, 3), 0);
    EXPECT_EQ(uxtree_get_node(&root, &out, -1, &counter, -1, nullptr, true, false, 0), 0);

    EXPECT_EQ(counter, 0);
    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_get_node, TheStartLevelCountsTowardsTheMaximum) {
    TestTree tree(kForest);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;
    int counter = 0;

    uxtree_get_node(&root, &out, 1000, &counter, 5, nullptr, true, false, 4);

    EXPECT_EQ(counter, 6);  // levels 4 and 5: everything but c
}

TEST(uxtree_get_node, FailsWithBadArguments) {
    TestTree tree(kForest);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out;
    int counter = 0;

    EXPECT_EQ(uxtree_get_node(nullptr, &out, 0, &counter, -1, nullptr, true, false, 0), 0);
    EXPECT_EQ(uxtree_get_node(&invalid, &out, 0, &counter, -1, nullptr, true, false, 0), 0);
    EXPECT_EQ(uxtree_get_node(&root, nullptr, 0, &counter, -1, nullptr, true, false, 0), 0);
    EXPECT_EQ(uxtree_get_node(&root, &out, 0, nullptr, -1, nullptr, true, false, 0), 0);
}

TEST(uxtree_get_node, TheOutputMayBeTheTreeItself) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.root();
    int counter = 0;

    EXPECT_EQ(uxtree_get_node(&node, &node, 2, &counter, -1, nullptr, true, false, 0), 1);

    EXPECT_EQ(tag(node), "c");
}

TEST(uxtree_get_node_ex, YieldsOneAndLeavesTheOutputBehindTheLastNode) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_ex(&root, &out, 1, 0, nullptr), 1);

    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_get_node_ex, YieldsZeroOnlyWithoutAnOutput) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out = tree.at("a");

    EXPECT_EQ(uxtree_get_node_ex(&root, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(uxtree_get_node_ex(nullptr, &out, 0, 0, nullptr), 1);
    EXPECT_EQ(uxtree_get_node_ex(&invalid, &out, 0, 0, nullptr), 1);

    EXPECT_EQ(tag(out), "a");
}

TEST(uxtree_get_node_ex, CountsMarkedNodesWithoutEnteringThem) {
    TestTree tree("<r><a m='1'><b/></a><c><d m=''/><e/></c></r>");

    EXPECT_EQ(numbered(tree.root(), 0, "m"), "a c d e");
}

TEST(uxtree_get_node_ex, CountsOnlyMarkedNodesWithTheMarkBit) {
    TestTree tree("<r><a m='1'><b/><x m='1'/></a><c><d m=''/></c></r>");

    EXPECT_EQ(numbered(tree.root(), kMarkedOnly, "m"), "a x");
    EXPECT_EQ(numbered(tree.root(), kMarkedOnly, ""), "a b x c d");
}

TEST(uxtree_get_node_ex, LeavesLeavesOutWithTheBranchBit) {
    TestTree tree(kForest);

    EXPECT_EQ(numbered(tree.root(), kBranchesOnly, nullptr), "a b f");
}

TEST(uxtree_get_node_ex, LimitsTheLevelOnlyWithTheLimitBit) {
    TestTree tree(kForest);

    EXPECT_EQ(numbered(tree.root(), 0, nullptr), "a b c d e f g");
    EXPECT_EQ(numbered(tree.root(), 1, nullptr), "a b c d e f g");
    EXPECT_EQ(numbered(tree.root(), kLimit | 0, nullptr), "a e f");
    EXPECT_EQ(numbered(tree.root(), kLimit | 1, nullptr), "a b d e f g");
    EXPECT_EQ(numbered(tree.root(), kLimit | 0xFF, nullptr), "a b c d e f g");
}

TEST(uxtree_get_root_node, ClimbsToTheTop) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.at("a/b/c");

    EXPECT_EQ(uxtree_get_root_node(&node, &node), 1);

    EXPECT_TRUE(node == tree.root());
}

TEST(uxtree_get_root_node, ARootYieldsItself) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_root_node(&root, &out), 1);

    EXPECT_TRUE(out == root);
}

TEST(uxtree_get_root_node, FailsWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_get_root_node(nullptr, &out), 0);
    EXPECT_EQ(uxtree_get_root_node(&root, nullptr), 0);
    EXPECT_EQ(uxtree_get_root_node(&invalid, &out), 0);

    EXPECT_TRUE(out == root);
}

TEST(uxtree_get_level, CountsTheStepsUpToTheRoot) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.at("a/b/c");
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, nullptr, 0), 3);

    EXPECT_EQ(str(path), "r.a.b.c");
}

TEST(uxtree_get_level, ARootHasLevelZeroAndItsTagAsPath) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &root, nullptr, 1), 0);

    EXPECT_EQ(str(path), "r");
}

TEST(uxtree_get_level, StopsAtTheTopAndNamesItInThePath) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.at("a/b/c");
    UXXmlWrapperBase top = tree.at("a");
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 0), 2);

    EXPECT_EQ(str(path), "a.b.c");
}

TEST(uxtree_get_level, ANodeIsItsOwnTopAtLevelZero) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.at("a/b");
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, &node, 0), 0);

    EXPECT_EQ(str(path), "b");
}

TEST(uxtree_get_level, FailsWhenTheTopIsNeverMet) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.at("a/b");
    UXXmlWrapperBase top = tree.at("e");
    CStringUTF8 path = "before";

    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 0), -1);

    EXPECT_EQ(str(path), "before");
    EXPECT_EQ(tag(top), "e");
}

TEST(uxtree_get_level, StopsAtAnEventRootAndReturnsIt) {
    TestTree tree("<r><a EventRootOption='2'><b EventRootOption='0'><c/></b></a></r>");
    UXXmlWrapperBase node = tree.at("a/b/c");
    UXXmlWrapperBase top;
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 1), 2);

    EXPECT_EQ(str(path), "a.b.c");
    EXPECT_TRUE(top == tree.at("a"));
}

TEST(uxtree_get_level, MinusOneRefusesAndLeavesEverything) {
    TestTree tree("<r EventRootOption='1'><a EventRootOption='-1'><b/></a></r>");
    UXXmlWrapperBase node = tree.at("a/b");
    UXXmlWrapperBase top = tree.root();
    CStringUTF8 path = "before";

    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 1), -1);

    EXPECT_EQ(str(path), "before");
    EXPECT_TRUE(top == tree.root());
}

TEST(uxtree_get_level, BelowMinusOneIsNeitherAStopNorCompared) {
    TestTree tree("<r><a EventRootOption='-2'><b/></a></r>");
    UXXmlWrapperBase node = tree.at("a/b");
    UXXmlWrapperBase top = tree.at("a");
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 1), -1);
    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 0), 1);
}

TEST(uxtree_get_level, WithoutATopTheEventRootIsNotAsked) {
    TestTree tree("<r><a EventRootOption='-1'><b/></a></r>");
    UXXmlWrapperBase node = tree.at("a/b");
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, nullptr, 1), 2);
}

TEST(uxtree_get_level, TrimsEveryTrailingDotOfThePath) {
    TestTree tree("<r><a..><b./></a..></r>");
    UXXmlWrapperBase node = tree.at("a../b.");
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, nullptr, 0), 2);

    EXPECT_EQ(str(path), "r.a...b");
}

TEST(uxtree_get_level, FailsWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    CStringUTF8 path = "before";

    EXPECT_EQ(uxtree_get_level(nullptr, &root, nullptr, 0), -1);
    EXPECT_EQ(uxtree_get_level(&path, nullptr, nullptr, 0), -1);
    EXPECT_EQ(uxtree_get_level(&path, &invalid, nullptr, 0), -1);
    EXPECT_EQ(uxtree_get_level(&path, &root, &invalid, 0), -1);

    EXPECT_EQ(str(path), "before");
}

TEST(uxtree_get_row_number, TheTreeIsRowOne) {
    TestTree tree(kForest);
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_get_row_number(&root, "r"), 1);
    EXPECT_EQ(uxtree_get_row_number(&root, "R"), 1);
    EXPECT_EQ(uxtree_get_row_number(&root, "other"), -1);
}

TEST(uxtree_get_row_number, CountsTheRowsPassedOver) {
    TestTree tree(kForest);
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_get_row_number(&root, "r.a.b.c"), 4);
    EXPECT_EQ(uxtree_get_row_number(&root, "r.A.D"), 5);
    EXPECT_EQ(uxtree_get_row_number(&root, "r.f.g"), 8);
    EXPECT_EQ(uxtree_get_row_number(&root, "r.x"), -1);
}

TEST(uxtree_get_row_number, DoesNotTryALaterSiblingOfTheSameTag) {
    TestTree tree("<r><a/><a><b/></a></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_get_row_number(&root, "r.a.b"), -1);
}

TEST(uxtree_get_row_number, AQuotedTokenMayHoldDots) {
    TestTree tree("<r><x/><a.b><c/></a.b></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_get_row_number(&root, "r.\"a.b\".c"), 4);
    EXPECT_EQ(uxtree_get_row_number(&root, "r.a.b.c"), -1);
}

TEST(uxtree_get_row_number, FailsWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_get_row_number(nullptr, "r"), -1);
    EXPECT_EQ(uxtree_get_row_number(&invalid, "r"), -1);
    EXPECT_EQ(uxtree_get_row_number(&root, nullptr), -1);
    EXPECT_EQ(uxtree_get_row_number(&root, ""), -1);
}

TEST(uxtree_get_node_by_id, TakesTheFirstNodeWithTheIdOrTheDataId) {
    TestTree tree("<r><a DataID='7'/><b _ux_id='7'/><c _ux_id='8' DataID='9'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_id(&root, &out, 7, false), 1);
    EXPECT_EQ(tag(out), "a");
    EXPECT_EQ(uxtree_get_node_by_id(&root, &out, 9, false), 1);
    EXPECT_EQ(tag(out), "c");
    EXPECT_EQ(uxtree_get_node_by_id(&root, &out, 8, false), 1);
    EXPECT_EQ(tag(out), "c");
}

TEST(uxtree_get_node_by_id, EntersBranchesOnlyWhenRecursive) {
    TestTree tree("<r><a><b DataID='7'/></a><c DataID='7'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_id(&root, &out, 7, true), 1);
    EXPECT_EQ(tag(out), "b");
    EXPECT_EQ(uxtree_get_node_by_id(&root, &out, 7, false), 1);
    EXPECT_EQ(tag(out), "c");
}

TEST(uxtree_get_node_by_id, FailsWithTheOutputAsItWas) {
    TestTree tree("<r DataID='7'><a DataID='x'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out = tree.at("a");

    EXPECT_EQ(uxtree_get_node_by_id(&root, &out, 7, true), 0);
    EXPECT_EQ(uxtree_get_node_by_id(nullptr, &out, 7, true), 0);
    EXPECT_EQ(uxtree_get_node_by_id(&invalid, &out, 7, true), 0);
    EXPECT_EQ(uxtree_get_node_by_id(&root, nullptr, 7, true), 0);

    EXPECT_EQ(tag(out), "a");
}

TEST(uxtree_get_node_by_tagname, TestsTheGivenNodeFirst) {
    TestTree tree("<a><b><a/></b></a>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_tagname(&root, &out, "a", true, true, false), 1);
    EXPECT_TRUE(out == root);
    EXPECT_EQ(uxtree_get_node_by_tagname(&root, &out, "a", true, true, true), 1);
    EXPECT_TRUE(out == tree.at("b/a"));
}

TEST(uxtree_get_node_by_tagname, WithoutRecursionOnlyTheGivenNodeCounts) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_get_node_by_tagname(&root, &out, "a", false, true, false), 0);
    EXPECT_EQ(uxtree_get_node_by_tagname(&root, &out, "a", true, true, false), 1);
    EXPECT_EQ(tag(out), "a");
}

TEST(uxtree_get_node_by_tagname, ComparesCaseAsAsked) {
    TestTree tree("<r><Abc/><abc/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_tagname(&root, &out, "abc", true, true, false), 1);
    EXPECT_EQ(tag(out), "abc");
    EXPECT_EQ(uxtree_get_node_by_tagname(&root, &out, "abc", true, false, false), 1);
    EXPECT_EQ(tag(out), "Abc");
}

TEST(uxtree_get_node_by_tagname, TheOutputIsOptional) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_get_node_by_tagname(&root, nullptr, "a", true, true, false), 1);
    EXPECT_EQ(uxtree_get_node_by_tagname(&root, nullptr, "x", true, true, false), 0);
}

TEST(uxtree_get_node_by_tagname, FailsWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_tagname(nullptr, &out, "r", true, true, false), 0);
    EXPECT_EQ(uxtree_get_node_by_tagname(&invalid, &out, "r", true, true, false), 0);
    EXPECT_EQ(uxtree_get_node_by_tagname(&root, &out, nullptr, true, true, false), 0);
    EXPECT_EQ(uxtree_get_node_by_tagname(&root, &out, "", true, true, false), 0);
    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_find_node, FindsTheFirstChildWithTheInteger) {
    TestTree tree("<r><a k='x'/><b k='4'/><c k='4'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, false, 0, -1), 1);

    EXPECT_EQ(tag(out), "b");
}

TEST(uxtree_find_node, TheWildcardAsksForPresenceAlone) {
    TestTree tree("<r><a/><b k='no number'/><c k='4'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node(&root, &out, "k", -39999, false, 0, -1), 1);

    EXPECT_EQ(tag(out), "b");
}

TEST(uxtree_find_node, TheDepthLimitsTheSearchUnlessRecursive) {
    TestTree tree("<r><a><b><c k='4'/></b></a></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, false, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, false, 1, -1), 0);
    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, false, 2, -1), 1);
    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, true, INT_MIN, -1), 1);
    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, false, INT_MAX, -1), 1);
}

TEST(uxtree_find_node, SearchesABranchBeforeTheNextSibling) {
    TestTree tree("<r><a><b k='4'/></a><c k='4'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, true, 0, -1), 1);

    EXPECT_EQ(tag(out), "b");
}

TEST(uxtree_find_node, TheRepeatIdBindsTheFirstLevelOnly) {
    TestTree tree(
        "<r><a k='4'/><b k='4' RepeatID='1'><x k='4' RepeatID='9'/></b><c k='4' "
        "RepeatID='2'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, false, 0, 2), 1);
    EXPECT_EQ(tag(out), "c");
    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, true, 0, 2), 1);
    EXPECT_EQ(tag(out), "x");
    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, false, 0, 0), 1);
    EXPECT_EQ(tag(out), "a");
}

TEST(uxtree_find_node, FailsWithTheOutputAsItWas) {
    TestTree tree("<r k='4'><a k='5'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase leaf = tree.at("a");
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_find_node(&root, &out, "k", 4, true, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node(&leaf, &out, "k", 5, true, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node(nullptr, &out, "k", 5, true, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node(&invalid, &out, "k", 5, true, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node(&root, nullptr, "k", 5, true, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node(&root, &out, nullptr, 5, true, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node(&root, &out, "", 5, true, 0, -1), 0);

    EXPECT_TRUE(out == root);
}

const char* const kFamily =
    "<r><g k='1' RepeatID='1'><p k='2'><c k='3'/></p></g>"
    "<g2 k='1' RepeatID='2'><p2 k='2' RepeatID='5'><n><c2 k='3'/></n></p2>"
    "<p3 k='2' RepeatID='6'><c3 k='3'/></p3></g2></r>";

TEST(uxtree_find_node_ex, FollowsTheChainOfIdentifiers) {
    TestTree tree(kFamily);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "k", 3, 2, 6, 1, 2), 0);
    EXPECT_EQ(tag(out), "c3");
    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "k", 3, 2, -1, 1, -1), 0);
    EXPECT_EQ(tag(out), "c");
    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "k", 3, 0, -1, 0, -1), 0);
    EXPECT_EQ(tag(out), "c");
}

TEST(uxtree_find_node_ex, AParentFoundDeeperMatchesWithAnyRepeatId) {
    TestTree tree(kFamily);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "k", 3, 2, 77, 0, -1), 0);

    EXPECT_EQ(tag(out), "c");
}

TEST(uxtree_find_node_ex, YieldsTheMissingIdentifierAndLeavesTheLastAncestor) {
    TestTree tree(kFamily);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "k", 3, 2, -1, 99, -1), 99);
    EXPECT_FALSE(out.IsNodeValid());
    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "k", 3, 88, -1, 1, -1), 88);
    EXPECT_EQ(tag(out), "g");
    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "k", 3, 2, 5, 1, 2), 3);
    EXPECT_EQ(tag(out), "p2");  // c2 is a grandchild, no child
}

TEST(uxtree_find_node_ex, RefusesInconsistentIdentifiersBeforeSearching) {
    TestTree tree(kFamily);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "k", 3, 0, -1, 1, -1), -2);
    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "k", 0, 2, -1, 1, -1), -2);

    EXPECT_TRUE(out == root);
}

TEST(uxtree_find_node_ex, FailsWithBadArguments) {
    TestTree tree(kFamily);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_find_node_ex(nullptr, &out, "k", 3, 0, -1, 0, -1), -1);
    EXPECT_EQ(uxtree_find_node_ex(&invalid, &out, "k", 3, 0, -1, 0, -1), -1);
    EXPECT_EQ(uxtree_find_node_ex(&root, nullptr, "k", 3, 0, -1, 0, -1), -1);
    EXPECT_EQ(uxtree_find_node_ex(&root, &out, nullptr, 3, 0, -1, 0, -1), -1);
    EXPECT_EQ(uxtree_find_node_ex(&root, &out, "", 3, 0, -1, 0, -1), 3);

    EXPECT_TRUE(out == root);
}

TEST(uxtree_find_node_by_dataID, FindsAndEmptiesTheOutputOnFailure) {
    TestTree tree("<r><p DataID='2' RepeatID='4'><c DataID='3'/></p></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_by_dataID(&out, &root, 3, 2, 4, 0, -1), 1);
    EXPECT_EQ(tag(out), "c");
    EXPECT_EQ(uxtree_find_node_by_dataID(&out, &root, 3, 2, 5, 0, -1), 0);
    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_find_node_by_dataID, EmptiesTheOutputWhenALaterLinkIsMissing) {
    TestTree tree("<r><p DataID='2'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_find_node_by_dataID(&out, &root, 3, 2, -1, 0, -1), 0);

    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_find_node_by_dataID, FailsWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_find_node_by_dataID(nullptr, &root, 3, 0, -1, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node_by_dataID(&out, nullptr, 3, 0, -1, 0, -1), 0);

    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_find_node_with_attr_child, TheAttributeIsEnoughWhateverItsValue) {
    TestTree tree("<r><a/><b k='other'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_attr_child(&root, &out, "k", "wanted", nullptr, nullptr), 1);

    EXPECT_EQ(tag(out), "b");
}

TEST(uxtree_find_node_with_attr_child, AMissingAttributePassesWhenTheWantedValueIsEmpty) {
    TestTree tree("<r><a/><b k=''/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_attr_child(&root, &out, "k", "", nullptr, nullptr), 1);

    EXPECT_EQ(tag(out), "a");
}

TEST(uxtree_find_node_with_attr_child, ComparesTheTextOfALeafChildIgnoringCase) {
    TestTree tree(
        "<r><a><n>x</n></a><b><n>YES<m/></n></b><c><n>no</n><n>YES</n></c><d><n>yes</n></d></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_attr_child(&root, &out, nullptr, "v", "n", "yes"), 1);

    EXPECT_EQ(tag(out), "c");  // b's n is a branch; in c the second n counts
}

TEST(uxtree_find_node_with_attr_child, AChildWithoutTextHasTheEmptyValue) {
    TestTree tree("<r><a><n>x</n></a><b><n/></b></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_attr_child(&root, &out, "k", nullptr, "n", ""), 1);

    EXPECT_EQ(tag(out), "b");
}

TEST(uxtree_find_node_with_attr_child, SearchesTheDirectChildrenOnly) {
    TestTree tree("<r k='1'><a><b k='1'/></a></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_find_node_with_attr_child(&root, &out, "k", "1", nullptr, nullptr), 0);
    EXPECT_EQ(uxtree_find_node_with_attr_child(&root, &out, nullptr, nullptr, "", "v"), 0);

    EXPECT_TRUE(out == root);
}

TEST(uxtree_find_node_with_attr_child, FailsWithBadArguments) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_attr_child(nullptr, &out, nullptr, "", nullptr, ""), 0);
    EXPECT_EQ(uxtree_find_node_with_attr_child(&invalid, &out, nullptr, "", nullptr, ""), 0);
    EXPECT_EQ(uxtree_find_node_with_attr_child(&root, nullptr, nullptr, "", nullptr, ""), 0);
}

TEST(uxtree_check_node_int_attr, EveryIntegerMustBeThere) {
    TestTree tree("<r a='1' b='2' c='x'/>");
    UXXmlWrapperBase root = tree.root();
    auto both = script_texts({"a", "b"});
    auto withText = script_texts({"a", "c"});
    auto values = script_ints({1, 2});
    auto other = script_ints({1, 3});

    EXPECT_EQ(uxtree_check_node_int_attr(&root, &both, &values), 1);
    EXPECT_EQ(uxtree_check_node_int_attr(&root, &both, &other), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&root, &withText, &values), 0);
}

TEST(uxtree_check_node_int_attr, NoNamesPassAndUnequalListsDoNot) {
    TestTree tree("<r a='1'/>");
    UXXmlWrapperBase root = tree.root();
    auto noNames = script_texts({});
    auto noValues = script_ints({});
    auto one = script_ints({1});

    EXPECT_EQ(uxtree_check_node_int_attr(&root, &noNames, &noValues), 1);
    EXPECT_EQ(uxtree_check_node_int_attr(&root, &noNames, &one), 0);
}

TEST(uxtree_check_node_int_attr, TellsMissingFromUnusableArguments) {
    TestTree tree("<r a='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    auto names = script_texts({"a"});
    auto values = script_ints({1});

    EXPECT_EQ(uxtree_check_node_int_attr(nullptr, &names, &values), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&invalid, &names, &values), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&root, nullptr, &values), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&root, &names, nullptr), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&root, &values, &values), -1);
    EXPECT_EQ(uxtree_check_node_int_attr(&root, &names, &names), -1);
}

TEST(uxtree_check_node_str_attr, ComparesCaseAsAsked) {
    TestTree tree("<r a='One' b=''/>");
    UXXmlWrapperBase root = tree.root();
    auto names = script_texts({"a", "b"});
    auto same = script_texts({"One", ""});
    auto folded = script_texts({"ONE", ""});

    EXPECT_EQ(uxtree_check_node_str_attr(&root, &names, &same, 0), 1);
    EXPECT_EQ(uxtree_check_node_str_attr(&root, &names, &folded, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&root, &names, &folded, 1), 1);
}

TEST(uxtree_check_node_str_attr, AMissingAttributeIsNoEmptyText) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    auto names = script_texts({"a"});
    auto empty = script_texts({""});
    auto none = script_texts({});

    EXPECT_EQ(uxtree_check_node_str_attr(&root, &names, &empty, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&root, &names, &none, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&root, &none, &none, 0), 1);
}

TEST(uxtree_check_node_str_attr, TellsMissingFromUnusableArguments) {
    TestTree tree("<r a='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    auto names = script_texts({"a"});
    auto ints = script_ints({1});

    EXPECT_EQ(uxtree_check_node_str_attr(nullptr, &names, &names, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&invalid, &names, &names, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&root, nullptr, &names, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&root, &names, nullptr, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&root, &ints, &names, 0), -1);
    EXPECT_EQ(uxtree_check_node_str_attr(&root, &names, &ints, 0), -1);
}

TEST(uxtree_find_node_with_int_attr, TakesTheOccurrenceAsked) {
    TestTree tree("<r><a k='1'/><b k='2'/><c k='1'/></r>");
    UXXmlWrapperBase root = tree.root();
    auto names = script_texts({"k"});
    auto values = script_ints({1});
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, &values, false, 0), 1);
    EXPECT_EQ(tag(out), "a");
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, &values, false, 1), 1);
    EXPECT_EQ(tag(out), "c");
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, &values, false, 2), 0);
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, &values, true, -1), 0);
    EXPECT_EQ(tag(out), "c");
}

TEST(uxtree_find_node_with_int_attr, MatchesInABranchDoNotCountOutsideIt) {
    TestTree tree("<r><a><x k='1'/><y k='1'/></a><b k='1'/><c k='1'><z k='1'/></c></r>");
    UXXmlWrapperBase root = tree.root();
    auto names = script_texts({"k"});
    auto values = script_ints({1});
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, &values, true, 0), 1);
    EXPECT_EQ(tag(out), "x");
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, &values, true, 1), 1);
    EXPECT_EQ(tag(out), "y");
    // x and y are forgotten behind a: b and c are the first two, z the third.
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, &values, true, 2), 1);
    EXPECT_EQ(tag(out), "z");
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, &values, true, 3), 0);
}

TEST(uxtree_find_node_with_int_attr, FailsWithBadArguments) {
    TestTree tree("<r><a k='1'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    auto names = script_texts({"k"});
    auto values = script_ints({1});
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_int_attr(nullptr, &out, &names, &values, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_int_attr(&invalid, &out, &names, &values, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, nullptr, &values, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, nullptr, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &values, &values, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, &out, &names, &names, true, 0), 0);
    EXPECT_FALSE(out.IsNodeValid());
    EXPECT_EQ(uxtree_find_node_with_int_attr(&root, nullptr, &names, &values, true, 0), 1);
}

TEST(uxtree_find_node_with_str_attr, ComparesCaseAndTakesTheOccurrence) {
    TestTree tree("<r><a k='X'/><b k='x'/><c><d k='x'/></c></r>");
    UXXmlWrapperBase root = tree.root();
    auto names = script_texts({"k"});
    auto values = script_texts({"x"});
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_str_attr(&root, &out, &names, &values, true, 0), 1);
    EXPECT_EQ(tag(out), "b");
    EXPECT_EQ(uxtree_find_node_with_str_attr(&root, &out, &names, &values, true, 1), 1);
    EXPECT_EQ(tag(out), "d");
    EXPECT_EQ(uxtree_find_node_with_str_attr(&root, &out, &names, &values, false, 1), 0);
    EXPECT_EQ(tag(out), "d");
}

TEST(uxtree_find_node_with_str_attr, FailsWithBadArguments) {
    TestTree tree("<r><a k='1'/></r>");
    UXXmlWrapperBase root = tree.root();
    auto names = script_texts({"k"});
    auto values = script_texts({"1"});
    auto ints = script_ints({1});
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_str_attr(nullptr, &out, &names, &values, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_str_attr(&root, &out, nullptr, &values, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_str_attr(&root, &out, &names, nullptr, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_str_attr(&root, &out, &ints, &values, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_str_attr(&root, &out, &names, &ints, true, 0), 0);
    EXPECT_EQ(uxtree_find_node_with_str_attr(&root, nullptr, &names, &values, true, 0), 1);
}

TEST(uxtree_tree_check_get_node, FindsTheFirstChildAndSetsTheAttributeOnIt) {
    TestTree tree("<r><a/><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_tree_check_get_node(&out, &root, "a", 5, "k", "v"), 1);

    EXPECT_TRUE(out == tree.at("a"));
    EXPECT_EQ(tree.text(), to_text(TestTree("<r><a k='v'/><a/></r>").root()));
}

TEST(uxtree_tree_check_get_node, AppendsAMissingChildWithTheId) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_tree_check_get_node(&out, &root, "b", 5), 1);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, &root, "c", 0, "k", ""), 1);

    EXPECT_EQ(tag(out), "c");
    EXPECT_EQ(tree.text(), to_text(TestTree("<r><a/><b _ux_id='5'/><c/></r>").root()));
}

TEST(uxtree_tree_check_get_node, ATotalFailureLeavesTheOutputInvalid) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_tree_check_get_node(&out, &root, "no name", 0), 0);

    EXPECT_FALSE(out.IsNodeValid());
    EXPECT_EQ(tree.text(), "<r><a></a></r>");
}

TEST(uxtree_tree_check_get_node, FailsWithBadArgumentsWithoutTouchingTheOutput) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_tree_check_get_node(nullptr, &root, "b", 0), 0);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, nullptr, "b", 0), 0);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, &invalid, "b", 0), 0);
    EXPECT_TRUE(out == root);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, &root, nullptr, 0), 0);
    EXPECT_EQ(uxtree_tree_check_get_node(&out, &root, "", 0), 0);

    EXPECT_EQ(tree.text(), "<r><a></a></r>");
}

TEST(uxtree_tree_check_get_node, TheOutputMayBeTheParent) {
    TestTree tree("<r/>");
    UXXmlWrapperBase node = tree.root();

    EXPECT_EQ(uxtree_tree_check_get_node(&node, &node, "a", 0), 1);
    EXPECT_EQ(uxtree_tree_check_get_node(&node, &node, "b", 0), 1);

    EXPECT_EQ(tree.text(), "<r><a><b></b></a></r>");
}

TEST(uxtree_tree_check_get_node_by_attribute, FindsWithOrWithoutDepth) {
    TestTree tree("<r><a><b k='v'/></a></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &root, "k", "v", 1, nullptr), 1);
    EXPECT_EQ(tag(out), "b");
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &root, "k", "v", 0, "n"), 1);
    EXPECT_EQ(tag(out), "n");
    EXPECT_EQ(tree.text(), "<r><a><b k=\"v\"></b></a><n k=\"v\"></n></r>");
}

TEST(uxtree_tree_check_get_node_by_attribute, TheValueIsTheTagWhenNoneIsGiven) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &root, "k", "1 a:b", 1, nullptr), 1);

    EXPECT_EQ(tree.text(), "<r><_1_a_b k=\"1 a:b\"></_1_a_b></r>");
}

TEST(uxtree_tree_check_get_node_by_attribute, TheTagZeroCreatesNothing) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &root, "k", "v", 1, "0"), 0);
    EXPECT_FALSE(out.IsNodeValid());
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &root, "k", "0", 1, nullptr), 0);
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &root, "k", "v", 1, ""), 0);

    EXPECT_EQ(tree.text(), "<r><a></a></r>");
}

TEST(uxtree_tree_check_get_node_by_attribute, FailsWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(nullptr, &root, "k", "v", 1, "n"), 0);
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, nullptr, "k", "v", 1, "n"), 0);
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &invalid, "k", "v", 1, "n"), 0);
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &root, nullptr, "v", 1, "n"), 0);
    EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &root, "k", nullptr, 1, "n"), 0);

    EXPECT_EQ(tree.text(), "<r></r>");
}

TEST(uxtree_check_get_node_by_dataid, FindsAmongTheDirectChildrenOnly) {
    TestTree tree("<r><a><b DataID='5'/></a><c DataID='5'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_check_get_node_by_dataid(&root, &out, "n", 5, "k", "v"), 1);

    EXPECT_EQ(tag(out), "c");
    EXPECT_EQ(tree.text(),
              to_text(TestTree("<r><a><b DataID='5'/></a><c DataID='5'/></r>").root()));
}

TEST(uxtree_check_get_node_by_dataid, CreatesWhatIsMissing) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_check_get_node_by_dataid(&root, &out, "n", 5, "k", "v"), 1);
    EXPECT_EQ(tag(out), "n");
    EXPECT_EQ(uxtree_check_get_node_by_dataid(&root, &out, "m", 0, "k", ""), 1);

    EXPECT_EQ(tree.text(), "<r><n k=\"v\" DataID=\"5\"></n><m></m></r>");
}

TEST(uxtree_check_get_node_by_dataid, ATagThatCannotBeCreatedLeavesTheOutput) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_check_get_node_by_dataid(&root, &out, "no name", 5, nullptr, nullptr), 1);

    EXPECT_TRUE(out == root);
    EXPECT_EQ(tree.text(), "<r></r>");
}

TEST(uxtree_check_get_node_by_dataid, FailsWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_check_get_node_by_dataid(nullptr, &out, "n", 5, nullptr, nullptr), 0);
    EXPECT_EQ(uxtree_check_get_node_by_dataid(&invalid, &out, "n", 5, nullptr, nullptr), 0);
    EXPECT_EQ(uxtree_check_get_node_by_dataid(&root, nullptr, "n", 5, nullptr, nullptr), 0);

    EXPECT_EQ(tree.text(), "<r></r>");
}

const char* const kHelp =
    "<help><deep><x DataID='430'/></deep>"
    "<a DataID='310'/><b DataID='430'/><c DataID='442'/><d DataID='446'/><e DataID='305'/>"
    "<f DataID='391'/>"
    "<t1 DataID='420' RepeatID='256'><h1 DataID='7'/></t1>"
    "<t2 DataID='420' RepeatID='300'><h2 DataID='7'/><h440 DataID='440'/><h448 DataID='448'/></t2>"
    "</help>";

std::string help(int id, int category) {
    TestTree tree(kHelp);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;
    const int result = uxtree_get_help_node(&out, &root, id, category);
    return std::to_string(result) + " " + tag(out);
}

TEST(uxtree_get_help_node, SomeIdentifiersStandForDirectChildren) {
    EXPECT_EQ(help(440, 256), "1 a");
    EXPECT_EQ(help(448, 256), "1 f");
    for (const int category : {256, 300, 1024}) {
        EXPECT_EQ(help(430, category), "1 b");
        EXPECT_EQ(help(442, category), "1 c");
        EXPECT_EQ(help(446, category), "1 d");
        EXPECT_EQ(help(305, category), "1 e");
    }
}

TEST(uxtree_get_help_node, OthersStandUnderTheirCategory) {
    EXPECT_EQ(help(7, 256), "1 h1");
    EXPECT_EQ(help(7, 300), "1 h2");
    EXPECT_EQ(help(440, 300), "1 h440");
    EXPECT_EQ(help(448, 300), "1 h448");
    EXPECT_EQ(help(7, 301), "0 (invalid)");
    EXPECT_EQ(help(9, 256), "0 (invalid)");
}

TEST(uxtree_get_help_node, ACategoryOutsideTheRangeIsReplaced) {
    FakeHostServices services;
    int asked = 0;
    services->helpCategory = [&](UXXmlWrapperBase&, UXXmlWrapperBase&, int id, int category) {
        asked = id * 10000 + category;
        return 300;
    };

    EXPECT_EQ(help(7, 255), "1 h2");
    EXPECT_EQ(asked, 70255);
    EXPECT_EQ(help(7, 1025), "1 h2");
    EXPECT_EQ(asked, 71025);
    EXPECT_EQ(help(7, 256), "1 h1");
    EXPECT_EQ(asked, 71025);
}

TEST(uxtree_get_help_node, OnlyTheLastRuleEmptiesTheOutput) {
    TestTree tree("<help/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = root;

    EXPECT_EQ(uxtree_get_help_node(&out, &root, 305, 256), 0);
    EXPECT_TRUE(out == root);
    EXPECT_EQ(uxtree_get_help_node(&out, &root, 7, 256), 0);
    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_get_help_node, FailsWithBadArguments) {
    TestTree tree(kHelp);
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_help_node(nullptr, &root, 305, 256), 0);
    EXPECT_EQ(uxtree_get_help_node(&out, nullptr, 305, 256), 0);
    EXPECT_EQ(uxtree_get_help_node(&out, &invalid, 305, 256), 0);
}

TEST(uxtree_get_level, WorksOnAVeryDeepTree) {
    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    UXXmlWrapperBase node = root;
    constexpr int kDepth = 200000;
    for (int i = 0; i < kDepth; ++i) node.AddNode(&node, "n", -1);
    node.SetPropertyValue("k", 1);

    CStringUTF8 path;
    EXPECT_EQ(uxtree_get_level(&path, &node, nullptr, 0), kDepth);
    EXPECT_EQ(path.GetLength(), 1 + 2 * kDepth);
    UXXmlWrapperBase found;
    EXPECT_EQ(uxtree_find_node(&root, &found, "k", 1, true, 0, -1), 1);
    EXPECT_TRUE(found == node);
}

}  // namespace
