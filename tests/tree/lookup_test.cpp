// Numbering, levels and rows, and help.
#include "uxtree/tree/lookup.h"

#include <string>

#include <gtest/gtest.h>

#include "support/test_tree.h"

using namespace uxtest;

namespace {

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
        tags += (tags.empty() ? "" : " ") + tag_text(node);
    }
}

const char* const kForest = "<r><a><b><c/></b><d/></a><e/><f><g/></f></r>";

TEST(uxtree_get_node, NumbersBelowTheStartNodeInDocumentOrder) {
    TestTree tree(kForest);
    const char* const expected[] = {"a", "b", "c", "d", "e", "f", "g"};

    for (int i = 0; i < 7; ++i) {
        UXXmlWrapperBase out;
        int counter = 0;
        ASSERT_EQ(uxtree_get_node(&tree, &out, i, &counter, -1, nullptr, true, false, 0), 1);
        EXPECT_EQ(tag_text(out), expected[i]);
        EXPECT_EQ(counter, i);
    }
}

TEST(uxtree_get_node, AnUnreachableIndexCountsAllNodes) {
    TestTree tree(kForest);
    UXXmlWrapperBase out = tree.at("e");
    int counter = 0;

    EXPECT_EQ(uxtree_get_node(&tree, &out, 1000, &counter, -1, "", true, false, 0), 0);

    EXPECT_EQ(counter, 7);
    EXPECT_EQ(tag_text(out), "e");  // as it was
}

TEST(uxtree_get_node, GoesOnFromTheCounterGiven) {
    TestTree tree(kForest);
    UXXmlWrapperBase out;
    int counter = 10;

    EXPECT_EQ(uxtree_get_node(&tree, &out, 12, &counter, -1, nullptr, true, false, 0), 1);

    EXPECT_EQ(tag_text(out), "c");
    EXPECT_EQ(counter, 12);
}

TEST(uxtree_get_node, FailsAboveTheMaximumLevelAndBelowIndexZero) {
    TestTree tree(kForest);
    UXXmlWrapperBase out;
    int counter = 0;

    EXPECT_EQ(uxtree_get_node(&tree, &out, 0, &counter, 2, nullptr, true, false, 3), 0);
    EXPECT_EQ(uxtree_get_node(&tree, &out, -1, &counter, -1, nullptr, true, false, 0), 0);

    EXPECT_EQ(counter, 0);
    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_get_node, TheStartLevelCountsTowardsTheMaximum) {
    TestTree tree(kForest);
    UXXmlWrapperBase out;
    int counter = 0;

    uxtree_get_node(&tree, &out, 1000, &counter, 5, nullptr, true, false, 4);

    EXPECT_EQ(counter, 6);  // levels 4 and 5: everything but c
}

TEST(uxtree_get_node, TheOutputMayBeTheTreeItself) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree;
    int counter = 0;

    EXPECT_EQ(uxtree_get_node(&node, &node, 2, &counter, -1, nullptr, true, false, 0), 1);

    EXPECT_EQ(tag_text(node), "c");
}

TEST(uxtree_get_node_ex, YieldsOneAndLeavesTheOutputBehindTheLastNode) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_ex(&tree, &out, 1, 0, nullptr), 1);

    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_get_node_ex, CountsMarkedNodesWithoutEnteringThem) {
    TestTree tree("<r><a m='1'><b/></a><c><d m=''/><e/></c></r>");

    EXPECT_EQ(numbered(tree, 0, "m"), "a c d e");
}

TEST(uxtree_get_node_ex, CountsOnlyMarkedNodesWithTheMarkBit) {
    TestTree tree("<r><a m='1'><b/><x m='1'/></a><c><d m=''/></c></r>");

    EXPECT_EQ(numbered(tree, kMarkedOnly, "m"), "a x");
    EXPECT_EQ(numbered(tree, kMarkedOnly, ""), "a b x c d");
}

TEST(uxtree_get_node_ex, LeavesLeavesOutWithTheBranchBit) {
    TestTree tree(kForest);

    EXPECT_EQ(numbered(tree, kBranchesOnly, nullptr), "a b f");
}

TEST(uxtree_get_node_ex, LimitsTheLevelOnlyWithTheLimitBit) {
    TestTree tree(kForest);

    EXPECT_EQ(numbered(tree, 0, nullptr), "a b c d e f g");
    EXPECT_EQ(numbered(tree, 1, nullptr), "a b c d e f g");
    EXPECT_EQ(numbered(tree, kLimit | 0, nullptr), "a e f");
    EXPECT_EQ(numbered(tree, kLimit | 1, nullptr), "a b d e f g");
    EXPECT_EQ(numbered(tree, kLimit | 0xFF, nullptr), "a b c d e f g");
}

TEST(uxtree_get_root_node, ClimbsToTheTop) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.at("a/b/c");

    EXPECT_EQ(uxtree_get_root_node(&node, &node), 1);

    EXPECT_TRUE(node == tree);
}

TEST(uxtree_get_root_node, ARootYieldsItself) {
    TestTree tree("<r/>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_root_node(&tree, &out), 1);

    EXPECT_TRUE(out == tree);
}

// The level of a node below the root and its path: "3 r.a.b.c".
std::string level_of(const char* xml, const char* place, int useEventRoot) {
    TestTree tree(xml);
    UXXmlWrapperBase node = tree.at(place);
    CStringUTF8 path;
    const int level = uxtree_get_level(&path, &node, nullptr, useEventRoot);
    return std::to_string(level) + " " + std::string(path);
}

TEST(uxtree_get_level, CountsTheStepsUpToTheRoot) {
    EXPECT_EQ(level_of(kForest, "a/b/c", 0), "3 r.a.b.c");
}

TEST(uxtree_get_level, ARootHasLevelZeroAndItsTagAsPath) {
    TestTree tree("<r/>");
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &tree, nullptr, 1), 0);

    EXPECT_EQ(std::string(path), "r");
}

TEST(uxtree_get_level, StopsAtTheTopAndNamesItInThePath) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.at("a/b/c");
    UXXmlWrapperBase top = tree.at("a");
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 0), 2);

    EXPECT_EQ(std::string(path), "a.b.c");
}

TEST(uxtree_get_level, ANodeIsItsOwnTopAtLevelZero) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.at("a/b");
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, &node, 0), 0);

    EXPECT_EQ(std::string(path), "b");
}

TEST(uxtree_get_level, FailsWhenTheTopIsNeverMet) {
    TestTree tree(kForest);
    UXXmlWrapperBase node = tree.at("a/b");
    UXXmlWrapperBase top = tree.at("e");
    CStringUTF8 path = "before";

    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 0), -1);

    EXPECT_EQ(std::string(path), "before");
    EXPECT_EQ(tag_text(top), "e");
}

TEST(uxtree_get_level, StopsAtAnEventRootAndReturnsIt) {
    TestTree tree("<r><a EventRootOption='2'><b EventRootOption='0'><c/></b></a></r>");
    UXXmlWrapperBase node = tree.at("a/b/c");
    UXXmlWrapperBase top;
    CStringUTF8 path;

    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 1), 2);

    EXPECT_EQ(std::string(path), "a.b.c");
    EXPECT_TRUE(top == tree.at("a"));
}

TEST(uxtree_get_level, MinusOneRefusesAndLeavesEverything) {
    TestTree tree("<r EventRootOption='1'><a EventRootOption='-1'><b/></a></r>");
    UXXmlWrapperBase node = tree.at("a/b");
    UXXmlWrapperBase top = tree;
    CStringUTF8 path = "before";

    EXPECT_EQ(uxtree_get_level(&path, &node, &top, 1), -1);

    EXPECT_EQ(std::string(path), "before");
    EXPECT_TRUE(top == tree);
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
    EXPECT_EQ(level_of("<r><a..><b./></a..></r>", "a../b.", 0), "2 r.a...b");
}

TEST(uxtree_get_row_number, TheTreeIsRowOne) {
    TestTree tree(kForest);

    EXPECT_EQ(uxtree_get_row_number(&tree, "r"), 1);
    EXPECT_EQ(uxtree_get_row_number(&tree, "R"), 1);
    EXPECT_EQ(uxtree_get_row_number(&tree, "other"), -1);
}

TEST(uxtree_get_row_number, CountsTheRowsPassedOver) {
    TestTree tree(kForest);

    EXPECT_EQ(uxtree_get_row_number(&tree, "r.a.b.c"), 4);
    EXPECT_EQ(uxtree_get_row_number(&tree, "r.A.D"), 5);
    EXPECT_EQ(uxtree_get_row_number(&tree, "r.f.g"), 8);
    EXPECT_EQ(uxtree_get_row_number(&tree, "r.x"), -1);
}

TEST(uxtree_get_row_number, DoesNotTryALaterSiblingOfTheSameTag) {
    TestTree tree("<r><a/><a><b/></a></r>");

    EXPECT_EQ(uxtree_get_row_number(&tree, "r.a.b"), -1);
}

TEST(uxtree_get_row_number, AQuotedTokenMayHoldDots) {
    TestTree tree("<r><x/><a.b><c/></a.b></r>");

    EXPECT_EQ(uxtree_get_row_number(&tree, "r.\"a.b\".c"), 4);
    EXPECT_EQ(uxtree_get_row_number(&tree, "r.a.b.c"), -1);
}

TEST(uxtree_get_row_number, CountsNoEmptyTag) {
    TestTree tree("<r/>");

    EXPECT_EQ(uxtree_get_row_number(&tree, ""), -1);
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
    UXXmlWrapperBase out;
    const int result = uxtree_get_help_node(&out, &tree, id, category);
    return std::to_string(result) + " " + tag_text(out);
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
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_get_help_node(&out, &tree, 305, 256), 0);
    EXPECT_TRUE(out == tree);
    EXPECT_EQ(uxtree_get_help_node(&out, &tree, 7, 256), 0);
    EXPECT_FALSE(out.IsNodeValid());
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
