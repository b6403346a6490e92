// Finding nodes by identifier, tag and attributes.
#include <climits>
#include <string>

#include <gtest/gtest.h>

#include "uxtree/tree/lookup.h"

#include "support/test_tree.h"

using namespace uxtest;

namespace {

TEST(uxtree_get_node_by_id, TakesTheFirstNodeWithTheIdOrTheDataId) {
    TestTree tree("<r><a DataID='7'/><b _ux_id='7'/><c _ux_id='8' DataID='9'/></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_id(&tree, &out, 7, false), 1);
    EXPECT_EQ(tag_text(out), "a");
    EXPECT_EQ(uxtree_get_node_by_id(&tree, &out, 9, false), 1);
    EXPECT_EQ(tag_text(out), "c");
    EXPECT_EQ(uxtree_get_node_by_id(&tree, &out, 8, false), 1);
    EXPECT_EQ(tag_text(out), "c");
}

TEST(uxtree_get_node_by_id, EntersBranchesOnlyWhenRecursive) {
    TestTree tree("<r><a><b DataID='7'/></a><c DataID='7'/></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_id(&tree, &out, 7, true), 1);
    EXPECT_EQ(tag_text(out), "b");
    EXPECT_EQ(uxtree_get_node_by_id(&tree, &out, 7, false), 1);
    EXPECT_EQ(tag_text(out), "c");
}

TEST(uxtree_get_node_by_id, FailsWithTheOutputAsItWas) {
    TestTree tree("<r DataID='7'><a DataID='x'/></r>");
    UXXmlWrapperBase out = tree.at("a");

    EXPECT_EQ(uxtree_get_node_by_id(&tree, &out, 7, true), 0);

    EXPECT_EQ(tag_text(out), "a");
}

TEST(uxtree_get_node_by_tagname, TestsTheGivenNodeFirst) {
    TestTree tree("<a><b><a/></b></a>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_tagname(&tree, &out, "a", true, true, false), 1);
    EXPECT_TRUE(out == tree);
    EXPECT_EQ(uxtree_get_node_by_tagname(&tree, &out, "a", true, true, true), 1);
    EXPECT_TRUE(out == tree.at("b/a"));
}

TEST(uxtree_get_node_by_tagname, WithoutRecursionOnlyTheGivenNodeCounts) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_get_node_by_tagname(&tree, &out, "a", false, true, false), 0);
    EXPECT_EQ(uxtree_get_node_by_tagname(&tree, &out, "a", true, true, false), 1);
    EXPECT_EQ(tag_text(out), "a");
}

TEST(uxtree_get_node_by_tagname, ComparesCaseAsAsked) {
    TestTree tree("<r><Abc/><abc/></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_tagname(&tree, &out, "abc", true, true, false), 1);
    EXPECT_EQ(tag_text(out), "abc");
    EXPECT_EQ(uxtree_get_node_by_tagname(&tree, &out, "abc", true, false, false), 1);
    EXPECT_EQ(tag_text(out), "Abc");
}

TEST(uxtree_get_node_by_tagname, TheOutputIsOptional) {
    TestTree tree("<r><a/></r>");

    EXPECT_EQ(uxtree_get_node_by_tagname(&tree, nullptr, "a", true, true, false), 1);
    EXPECT_EQ(uxtree_get_node_by_tagname(&tree, nullptr, "x", true, true, false), 0);
}

TEST(uxtree_get_node_by_tagname, FindsNoEmptyTag) {
    TestTree tree("<r/>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_get_node_by_tagname(&tree, &out, "", true, true, false), 0);
    EXPECT_FALSE(out.IsNodeValid());
}

// The result and the tag of the node that was found: "1 b", or "0 (invalid)".
std::string found(const char* xml, const char* name, int value, bool recursive, int depth,
                  int repeatId) {
    TestTree tree(xml);
    UXXmlWrapperBase out;
    const int result = uxtree_find_node(&tree, &out, name, value, recursive, depth, repeatId);
    return std::to_string(result) + " " + tag_text(out);
}

TEST(uxtree_find_node, FindsTheFirstChildWithTheInteger) {
    EXPECT_EQ(found("<r><a k='x'/><b k='4'/><c k='4'/></r>", "k", 4, false, 0, -1), "1 b");
}

TEST(uxtree_find_node, TheWildcardAsksForPresenceAlone) {
    EXPECT_EQ(found("<r><a/><b k='no number'/><c k='4'/></r>", "k", -39999, false, 0, -1), "1 b");
}

TEST(uxtree_find_node, TheDepthLimitsTheSearchUnlessRecursive) {
    const char* const tree = "<r><a><b><c k='4'/></b></a></r>";

    EXPECT_EQ(found(tree, "k", 4, false, 0, -1), "0 (invalid)");
    EXPECT_EQ(found(tree, "k", 4, false, 1, -1), "0 (invalid)");
    EXPECT_EQ(found(tree, "k", 4, false, 2, -1), "1 c");
    EXPECT_EQ(found(tree, "k", 4, true, INT_MIN, -1), "1 c");
    EXPECT_EQ(found(tree, "k", 4, false, INT_MAX, -1), "1 c");
}

TEST(uxtree_find_node, SearchesABranchBeforeTheNextSibling) {
    EXPECT_EQ(found("<r><a><b k='4'/></a><c k='4'/></r>", "k", 4, true, 0, -1), "1 b");
}

TEST(uxtree_find_node, TheRepeatIdBindsTheFirstLevelOnly) {
    const char* const tree =
        "<r><a k='4'/><b k='4' RepeatID='1'><x k='4' RepeatID='9'/></b>"
        "<c k='4' RepeatID='2'/></r>";

    EXPECT_EQ(found(tree, "k", 4, false, 0, 2), "1 c");
    EXPECT_EQ(found(tree, "k", 4, true, 0, 2), "1 x");
    EXPECT_EQ(found(tree, "k", 4, false, 0, 0), "1 a");
}

TEST(uxtree_find_node, FailsWithTheOutputAsItWas) {
    TestTree tree("<r k='4'><a k='5'/></r>");
    UXXmlWrapperBase leaf = tree.at("a");
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_find_node(&tree, &out, "k", 4, true, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node(&leaf, &out, "k", 5, true, 0, -1), 0);
    EXPECT_EQ(uxtree_find_node(&tree, &out, "", 5, true, 0, -1), 0);

    EXPECT_TRUE(out == tree);
}

const char* const kFamily =
    "<r><g k='1' RepeatID='1'><p k='2'><c k='3'/></p></g>"
    "<g2 k='1' RepeatID='2'><p2 k='2' RepeatID='5'><n><c2 k='3'/></n></p2>"
    "<p3 k='2' RepeatID='6'><c3 k='3'/></p3></g2></r>";

TEST(uxtree_find_node_ex, FollowsTheChainOfIdentifiers) {
    TestTree tree(kFamily);
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "k", 3, 2, 6, 1, 2), 0);
    EXPECT_EQ(tag_text(out), "c3");
    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "k", 3, 2, -1, 1, -1), 0);
    EXPECT_EQ(tag_text(out), "c");
    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "k", 3, 0, -1, 0, -1), 0);
    EXPECT_EQ(tag_text(out), "c");
}

TEST(uxtree_find_node_ex, AParentFoundDeeperMatchesWithAnyRepeatId) {
    TestTree tree(kFamily);
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "k", 3, 2, 77, 0, -1), 0);

    EXPECT_EQ(tag_text(out), "c");
}

TEST(uxtree_find_node_ex, YieldsTheMissingIdentifierAndLeavesTheLastAncestor) {
    TestTree tree(kFamily);
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "k", 3, 2, -1, 99, -1), 99);
    EXPECT_FALSE(out.IsNodeValid());
    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "k", 3, 88, -1, 1, -1), 88);
    EXPECT_EQ(tag_text(out), "g");
    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "k", 3, 2, 5, 1, 2), 3);
    EXPECT_EQ(tag_text(out), "p2");  // c2 is a grandchild, no child
}

TEST(uxtree_find_node_ex, RefusesInconsistentIdentifiersBeforeSearching) {
    TestTree tree(kFamily);
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "k", 3, 0, -1, 1, -1), -2);
    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "k", 0, 2, -1, 1, -1), -2);

    EXPECT_TRUE(out == tree);
}

TEST(uxtree_find_node_ex, FindsNoEmptyName) {
    TestTree tree(kFamily);
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_find_node_ex(&tree, &out, "", 3, 0, -1, 0, -1), 3);

    EXPECT_TRUE(out == tree);
}

TEST(uxtree_find_node_by_dataID, FindsAndEmptiesTheOutputOnFailure) {
    TestTree tree("<r><p DataID='2' RepeatID='4'><c DataID='3'/></p></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_by_dataID(&out, &tree, 3, 2, 4, 0, -1), 1);
    EXPECT_EQ(tag_text(out), "c");
    EXPECT_EQ(uxtree_find_node_by_dataID(&out, &tree, 3, 2, 5, 0, -1), 0);
    EXPECT_FALSE(out.IsNodeValid());
}

TEST(uxtree_find_node_by_dataID, EmptiesTheOutputWhenALaterLinkIsMissing) {
    TestTree tree("<r><p DataID='2'/></r>");
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_find_node_by_dataID(&out, &tree, 3, 2, -1, 0, -1), 0);

    EXPECT_FALSE(out.IsNodeValid());
}

std::string found_with_child(const char* xml, const char* name, const char* value,
                             const char* childTag, const char* childValue) {
    TestTree tree(xml);
    UXXmlWrapperBase out;
    const int result =
        uxtree_find_node_with_attr_child(&tree, &out, name, value, childTag, childValue);
    return std::to_string(result) + " " + tag_text(out);
}

TEST(uxtree_find_node_with_attr_child, TheAttributeIsEnoughWhateverItsValue) {
    EXPECT_EQ(found_with_child("<r><a/><b k='other'/></r>", "k", "wanted", nullptr, nullptr),
              "1 b");
}

TEST(uxtree_find_node_with_attr_child, AMissingAttributePassesWhenTheWantedValueIsEmpty) {
    EXPECT_EQ(found_with_child("<r><a/><b k=''/></r>", "k", "", nullptr, nullptr), "1 a");
}

TEST(uxtree_find_node_with_attr_child, ComparesTheTextOfALeafChildIgnoringCase) {
    EXPECT_EQ(found_with_child("<r><a><n>x</n></a><b><n>YES<m/></n></b><c><n>no</n><n>YES</n></"
                               "c><d><n>yes</n></d></r>",
                               nullptr, "v", "n", "yes"),
              "1 c");  // b's n is a branch; in c the second n counts
}

TEST(uxtree_find_node_with_attr_child, AChildWithoutTextHasTheEmptyValue) {
    EXPECT_EQ(found_with_child("<r><a><n>x</n></a><b><n/></b></r>", "k", nullptr, "n", ""), "1 b");
}

TEST(uxtree_find_node_with_attr_child, SearchesTheDirectChildrenOnly) {
    TestTree tree("<r k='1'><a><b k='1'/></a></r>");
    UXXmlWrapperBase out = tree;

    EXPECT_EQ(uxtree_find_node_with_attr_child(&tree, &out, "k", "1", nullptr, nullptr), 0);
    EXPECT_EQ(uxtree_find_node_with_attr_child(&tree, &out, nullptr, nullptr, "", "v"), 0);

    EXPECT_TRUE(out == tree);
}

TEST(uxtree_check_node_int_attr, EveryIntegerMustBeThere) {
    TestTree tree("<r a='1' b='2' c='x'/>");
    auto both = script_texts({"a", "b"});
    auto withText = script_texts({"a", "c"});
    auto values = script_ints({1, 2});
    auto other = script_ints({1, 3});

    EXPECT_EQ(uxtree_check_node_int_attr(&tree, &both, &values), 1);
    EXPECT_EQ(uxtree_check_node_int_attr(&tree, &both, &other), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&tree, &withText, &values), 0);
}

TEST(uxtree_check_node_int_attr, NoNamesPassAndUnequalListsDoNot) {
    TestTree tree("<r a='1'/>");
    auto noNames = script_texts({});
    auto noValues = script_ints({});
    auto one = script_ints({1});

    EXPECT_EQ(uxtree_check_node_int_attr(&tree, &noNames, &noValues), 1);
    EXPECT_EQ(uxtree_check_node_int_attr(&tree, &noNames, &one), 0);
}

TEST(uxtree_check_node_int_attr, TellsMissingFromUnusableArguments) {
    TestTree tree("<r a='1'/>");
    UXXmlWrapperBase invalid;
    auto names = script_texts({"a"});
    auto values = script_ints({1});

    EXPECT_EQ(uxtree_check_node_int_attr(nullptr, &names, &values), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&invalid, &names, &values), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&tree, nullptr, &values), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&tree, &names, nullptr), 0);
    EXPECT_EQ(uxtree_check_node_int_attr(&tree, &values, &values), -1);
    EXPECT_EQ(uxtree_check_node_int_attr(&tree, &names, &names), -1);
}

TEST(uxtree_check_node_str_attr, ComparesCaseAsAsked) {
    TestTree tree("<r a='One' b=''/>");
    auto names = script_texts({"a", "b"});
    auto same = script_texts({"One", ""});
    auto folded = script_texts({"ONE", ""});

    EXPECT_EQ(uxtree_check_node_str_attr(&tree, &names, &same, 0), 1);
    EXPECT_EQ(uxtree_check_node_str_attr(&tree, &names, &folded, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&tree, &names, &folded, 1), 1);
}

TEST(uxtree_check_node_str_attr, AMissingAttributeIsNoEmptyText) {
    TestTree tree("<r/>");
    auto names = script_texts({"a"});
    auto empty = script_texts({""});
    auto none = script_texts({});

    EXPECT_EQ(uxtree_check_node_str_attr(&tree, &names, &empty, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&tree, &names, &none, 0), 0);
    EXPECT_EQ(uxtree_check_node_str_attr(&tree, &none, &none, 0), 1);
}

TEST(uxtree_find_node_with_int_attr, TakesTheOccurrenceAsked) {
    TestTree tree("<r><a k='1'/><b k='2'/><c k='1'/></r>");
    auto names = script_texts({"k"});
    auto values = script_ints({1});
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_int_attr(&tree, &out, &names, &values, false, 0), 1);
    EXPECT_EQ(tag_text(out), "a");
    EXPECT_EQ(uxtree_find_node_with_int_attr(&tree, &out, &names, &values, false, 1), 1);
    EXPECT_EQ(tag_text(out), "c");
    EXPECT_EQ(uxtree_find_node_with_int_attr(&tree, &out, &names, &values, false, 2), 0);
    EXPECT_EQ(uxtree_find_node_with_int_attr(&tree, &out, &names, &values, true, -1), 0);
    EXPECT_EQ(tag_text(out), "c");
}

TEST(uxtree_find_node_with_int_attr, MatchesInABranchDoNotCountOutsideIt) {
    TestTree tree("<r><a><x k='1'/><y k='1'/></a><b k='1'/><c k='1'><z k='1'/></c></r>");
    auto names = script_texts({"k"});
    auto values = script_ints({1});
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_int_attr(&tree, &out, &names, &values, true, 0), 1);
    EXPECT_EQ(tag_text(out), "x");
    EXPECT_EQ(uxtree_find_node_with_int_attr(&tree, &out, &names, &values, true, 1), 1);
    EXPECT_EQ(tag_text(out), "y");
    // x and y are forgotten behind a: b and c are the first two, z the third.
    EXPECT_EQ(uxtree_find_node_with_int_attr(&tree, &out, &names, &values, true, 2), 1);
    EXPECT_EQ(tag_text(out), "z");
    EXPECT_EQ(uxtree_find_node_with_int_attr(&tree, &out, &names, &values, true, 3), 0);
}

TEST(uxtree_find_node_with_int_attr, TheOutputMayBeMissing) {
    TestTree tree("<r><a k='1'/></r>");
    auto names = script_texts({"k"});
    auto values = script_ints({1});

    EXPECT_EQ(uxtree_find_node_with_int_attr(&tree, nullptr, &names, &values, true, 0), 1);
}

TEST(uxtree_find_node_with_str_attr, ComparesCaseAndTakesTheOccurrence) {
    TestTree tree("<r><a k='X'/><b k='x'/><c><d k='x'/></c></r>");
    auto names = script_texts({"k"});
    auto values = script_texts({"x"});
    UXXmlWrapperBase out;

    EXPECT_EQ(uxtree_find_node_with_str_attr(&tree, &out, &names, &values, true, 0), 1);
    EXPECT_EQ(tag_text(out), "b");
    EXPECT_EQ(uxtree_find_node_with_str_attr(&tree, &out, &names, &values, true, 1), 1);
    EXPECT_EQ(tag_text(out), "d");
    EXPECT_EQ(uxtree_find_node_with_str_attr(&tree, &out, &names, &values, false, 1), 0);
    EXPECT_EQ(tag_text(out), "d");
}

TEST(uxtree_find_node_with_str_attr, TheOutputMayBeMissing) {
    TestTree tree("<r><a k='1'/></r>");
    auto names = script_texts({"k"});
    auto values = script_texts({"1"});

    EXPECT_EQ(uxtree_find_node_with_str_attr(&tree, nullptr, &names, &values, true, 0), 1);
}

}  // namespace
