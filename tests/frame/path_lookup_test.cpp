// Nodes by the tags on the way to them.
#include "uxtree/frame/path_lookup.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

using namespace uxtest;
using testing::ElementsAre;

namespace {

const char* const kTree = "<r><a><x/></a><a><b>1 2</b></a></r>";

TEST(wbxfu_tree_get_node, FollowsTheTagsUpToTheNull) {
    TestTree tree("<r><a><b><c/></b></a></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(wbxfu_tree_get_node(out, tree, "a", "b", "c", nullptr), 1);

    EXPECT_TRUE(out == tree.at("a/b/c"));
}

TEST(wbxfu_tree_get_node, TakesTheFirstChildOfEachTagAndDoesNotGoBack) {
    TestTree tree(kTree);
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(wbxfu_tree_get_node(out, tree, "a", "b", nullptr), 0);

    EXPECT_TRUE(out == tree);
    EXPECT_EQ(tree.text(), tree_text(kTree));
}

TEST(wbxfu_tree_get_node, AnEmptyTagIsNeverFound) {
    TestTree tree(kTree);
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(wbxfu_tree_get_node(out, tree, "", nullptr), 0);
    EXPECT_EQ(wbxfu_tree_get_node(out, tree, "a", "", "x", nullptr), 0);

    EXPECT_TRUE(out == tree);
}

TEST(wbxfu_tree_get_node, TheOutputMayBeTheStart) {
    TestTree tree(kTree);
    UXXmlWrapperBase node = tree;

    EXPECT_EQ(wbxfu_tree_get_node(node, node, "a", "x", nullptr), 1);

    EXPECT_TRUE(node == tree.at("a/x"));
}

TEST(wbxfu_tree_get_node, AnInvalidStartFindsNothing) {
    TestTree tree(kTree);
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(wbxfu_tree_get_node(out, invalid, "a", nullptr), 0);

    EXPECT_TRUE(out == tree);
}

int lookup(UXXmlWrapperBase& out, UXXmlWrapperBase& start, int create, const char* name, ...) {
    va_list rest;
    va_start(rest, name);
    const int result = wbxfu_tree_check_get_node_ex(out, start, create, name, rest);
    va_end(rest);
    return result;
}

TEST(wbxfu_tree_check_get_node_ex, AnEmptyPathYieldsTheStart) {
    TestTree tree(kTree);
    UXXmlWrapperBase out;

    EXPECT_EQ(lookup(out, tree, 0, nullptr), 1);
    EXPECT_TRUE(out == tree);
    UXXmlWrapperBase invalid;
    EXPECT_EQ(lookup(out, invalid, 1, nullptr), 0);
    EXPECT_FALSE(out.IsNodeValid());
}

TEST(wbxfu_tree_check_get_node_ex, CreatesOnlyWhenAsked) {
    TestTree tree("<r/>");
    UXXmlWrapperBase out;

    EXPECT_EQ(lookup(out, tree, 0, "a", nullptr), 0);
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
    EXPECT_EQ(lookup(out, tree, 1, "a", nullptr), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><a/></r>"));
}

TEST(wbxfu_tree_check_get_node, CreatesWhatIsMissingWithoutAnId) {
    TestTree tree(kTree);
    UXXmlWrapperBase out;

    EXPECT_EQ(wbxfu_tree_check_get_node(out, tree, "a", "n", "m", nullptr), 1);

    EXPECT_TRUE(out == tree.at("a/n/m"));
    EXPECT_EQ(tree.text(), tree_text("<r><a><x/><n><m/></n></a><a><b>1 2</b></a></r>"));
}

TEST(wbxfu_tree_check_get_node, WhatWasCreatedBeforeAFailureStays) {
    TestTree tree("<r/>");
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(wbxfu_tree_check_get_node(out, tree, "a", "", "b", nullptr), 0);

    EXPECT_TRUE(out == tree);
    EXPECT_EQ(tree.text(), tree_text("<r><a/></r>"));
}

TEST(wbxfu_tree_check_get_node, AnInvalidStartCreatesNothing) {
    UXXmlWrapperBase invalid;
    UXXmlWrapperBase out;

    EXPECT_EQ(wbxfu_tree_check_get_node(out, invalid, "a", nullptr), 0);

    EXPECT_FALSE(out.IsNodeValid());
}

TEST(wbxfu_tree_node_vector_value, ReadsWithoutCreating) {
    TestTree tree("<r><a>1 2.5</a></r>");
    CArray<double, double> values;
    UXVectorDesc vector(values);

    EXPECT_EQ(wbxfu_tree_node_vector_value(tree, vector, 1, "a", nullptr), 1);
    EXPECT_THAT(numbers(values), ElementsAre(1, 2.5));
    EXPECT_EQ(wbxfu_tree_node_vector_value(tree, vector, 1, "b", nullptr), 0);
    EXPECT_EQ(tree.text(), tree_text("<r><a>1 2.5</a></r>"));
}

TEST(wbxfu_tree_node_vector_value, WritesCreatingThePath) {
    TestTree tree("<r/>");
    CArray<int, int> values = number_list<int>({3, 4});
    UXVectorDesc vector(values);

    EXPECT_EQ(wbxfu_tree_node_vector_value(tree, vector, 0, "a", "b", nullptr), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><a><b>3 4</b></a></r>"));
}

TEST(wbxfu_tree_node_vector_value, TurnsARefusalOfTheHostIntoZero) {
    TestTree tree("<r><a>x</a></r>");
    UXXmlWrapperBase invalid;
    CArray<double, double> values = number_list<double>({7});
    UXVectorDesc vector(values);

    EXPECT_EQ(wbxfu_tree_node_vector_value(tree, vector, 1, "a", nullptr), 0);
    EXPECT_EQ(wbxfu_tree_node_vector_value(invalid, vector, 1, "a", nullptr), 0);
    EXPECT_EQ(wbxfu_tree_node_vector_value(invalid, vector, 0, "a", nullptr), 0);

    EXPECT_THAT(numbers(values), ElementsAre(7));
}

TEST(uxtree_set_default_code_page, YieldsWhatTheNodeTypeYields) {
    EXPECT_EQ(uxtree_set_default_code_page(1252), 1);
    EXPECT_EQ(uxtree_set_default_code_page(65001), 1);
}

}  // namespace
