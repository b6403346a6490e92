// Filtering nodes by the values below them and by their attributes.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/tree/structure.h"

#include "support/test_tree.h"

using namespace uxtest;

namespace {

// Filters nodes with DataID 9 by the values of DataID 1 and 2 below them.
struct Filter {
    int modeA = 1;
    std::vector<std::string> listA;
    int modeB = 1;
    std::vector<std::string> listB;
};

bool keeps(const Filter& filter, const std::string& content) {
    const std::string tree = "<r><n DataID='9'>" + content + "</n></r>";
    TestTree parsed(tree.c_str());
    auto listA = script_texts(filter.listA);
    auto listB = script_texts(filter.listB);
    EXPECT_EQ(uxtree_filter(&parsed, 9, filter.modeA, 1, &listA, filter.modeB, 2, &listB), 1);
    const bool kept = parsed.GetNodeCount() == 1;
    EXPECT_EQ(parsed.text(), kept ? tree_text(tree.c_str()) : "<r></r>");
    return kept;
}

TEST(uxtree_filter, SomeEntryOfTheFirstListMustBeAmongTheValues) {
    const Filter filter{1, {"a", "z"}, 1, {}};

    EXPECT_TRUE(keeps(filter, "<v DataID='1'>A</v>"));
    EXPECT_TRUE(keeps(filter, "<v DataID='1'>b</v><w><v DataID='1'>a</v></w>"));
    EXPECT_FALSE(keeps(filter, "<v DataID='1'>b</v>"));
    EXPECT_FALSE(keeps(filter, "<v DataID='2'>a</v>"));
    EXPECT_FALSE(keeps(filter, ""));
}

TEST(uxtree_filter, AllEntriesOfTheFirstListMustBeAmongTheValues) {
    const Filter filter{0, {"a", "B", "b"}, 1, {}};

    EXPECT_TRUE(keeps(filter, "<v DataID='1'>b</v><v DataID='1'>c</v><v DataID='1'>A</v>"));
    EXPECT_FALSE(keeps(filter, "<v DataID='1'>a</v><v DataID='1'>a</v>"));
    EXPECT_FALSE(keeps(filter, ""));
}

TEST(uxtree_filter, AnEmptyFirstListKeepsEverythingThatIsNotExcluded) {
    const Filter filter{0, {}, 1, {"x"}};

    EXPECT_TRUE(keeps(filter, ""));
    EXPECT_TRUE(keeps(filter, "<v DataID='2'>y</v>"));
    EXPECT_TRUE(keeps(filter, "<v DataID='1'>x</v>"));
    EXPECT_FALSE(keeps(filter, "<v DataID='2'>y</v><v DataID='2'>X</v>"));
    EXPECT_TRUE(keeps({77, {}, 1, {"x"}}, ""));
}

TEST(uxtree_filter, AllEntriesOfTheSecondListMayExclude) {
    const Filter filter{1, {}, 2, {"x", "y"}};

    EXPECT_TRUE(keeps(filter, "<v DataID='2'>x</v>"));
    EXPECT_FALSE(keeps(filter, "<v DataID='2'>x</v><v DataID='2'>z</v><v DataID='2'>y</v>"));
    EXPECT_TRUE(keeps({1, {}, 2, {}}, "<v DataID='2'>x</v>"));
}

TEST(uxtree_filter, ModeZeroOfTheSecondLooksAtTheFirstCriterion) {
    const Filter filter{1, {"a", "b"}, 0, {"ignored"}};

    EXPECT_TRUE(keeps(filter, "<v DataID='1'>a</v><v DataID='2'>q</v>"));
    EXPECT_FALSE(keeps(filter, "<v DataID='1'>a</v><v DataID='1'>c</v>"));
    EXPECT_FALSE(keeps(filter, ""));  // no value is excluded, but none is included either
    EXPECT_FALSE(keeps({1, {}, 0, {}}, ""));
    EXPECT_FALSE(keeps({1, {}, 0, {"a"}}, "<v DataID='1'>a</v>"));
}

TEST(uxtree_filter, UnknownModesFail) {
    EXPECT_FALSE(keeps({1, {}, 3, {}}, ""));
    EXPECT_FALSE(keeps({2, {"a"}, 1, {}}, "<v DataID='1'>a</v>"));
    EXPECT_FALSE(keeps({-1, {"a"}, 1, {}}, "<v DataID='1'>a</v>"));
}

TEST(uxtree_filter, ADescendantWithoutValueContributesTheEmptyText) {
    EXPECT_TRUE(keeps({1, {""}, 1, {}}, "<v DataID='1'/>"));
    EXPECT_FALSE(keeps({1, {}, 1, {""}}, "<v DataID='2'><w/></v>"));
}

TEST(uxtree_filter, TheNodesOwnValueDoesNotCount) {
    TestTree tree("<r><n DataID='9'>a</n></r>");
    auto list = script_texts({"a"});
    auto none = script_texts({});

    EXPECT_EQ(uxtree_filter(&tree, 9, 1, 9, &list, 1, 2, &none), 1);

    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

TEST(uxtree_filter, TestsTheTopmostNodesEverywhere) {
    TestTree tree(
        "<r><n DataID='9'><n DataID='9'/><v DataID='1'>a</v></n><g><n DataID='9'/><m/>"
        "<n DataID='9'><v DataID='1'>a</v></n></g><n DataID='9'/></r>");
    auto list = script_texts({"a"});
    auto none = script_texts({});

    EXPECT_EQ(uxtree_filter(&tree, 9, 1, 1, &list, 1, 2, &none), 1);

    EXPECT_EQ(tree.text(),
              tree_text("<r><n DataID='9'><n DataID='9'/><v DataID='1'>a</v></n><g><m/>"
                        "<n DataID='9'><v DataID='1'>a</v></n></g></r>"));
}

TEST(uxtree_filter, TheTreeMayRemoveItself) {
    TestTree tree("<r><n DataID='9'><n DataID='9'/></n></r>");
    UXXmlWrapperBase node = tree.at("n");
    UXXmlWrapperBase inner = tree.at("n/n");
    auto list = script_texts({"a"});
    auto none = script_texts({});

    EXPECT_EQ(uxtree_filter(&node, 9, 1, 1, &list, 1, 2, &none), 1);

    EXPECT_FALSE(node.IsNodeValid());
    EXPECT_FALSE(inner.IsNodeValid());
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

TEST(uxtree_filter, ARootMayRemoveItself) {
    TestTree tree("<r DataID='9'/>");
    auto list = script_texts({"a"});
    auto none = script_texts({});

    EXPECT_EQ(uxtree_filter(&tree, 9, 1, 1, &list, 1, 2, &none), 1);

    EXPECT_FALSE(tree.IsNodeValid());
    EXPECT_EQ(tree.text(), "(invalid)");
}

TEST(uxtree_filter, ANodeWithoutDataIdNeverMatches) {
    TestTree tree("<r><a/><b DataID='x'/></r>");
    auto none = script_texts({});

    EXPECT_EQ(uxtree_filter(&tree, -1, 0, 1, &none, 3, 2, &none), 1);
    EXPECT_EQ(uxtree_filter(&tree, 0, 0, 1, &none, 3, 2, &none), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><a/><b DataID='x'/></r>"));
}

// The values of k that a find filter keeps.
std::string found(const char* text, int caseSensitive, int atStart) {
    TestTree tree(
        "<r><n DataID='9' k='Fit curve'/><n DataID='9' k='A fit'/><n DataID='9' k='none'/>"
        "<n DataID='9'/></r>");
    EXPECT_EQ(uxtree_filter_by_attrib_find(&tree, 9, "k", text, caseSensitive, atStart), 1);
    std::string kept;
    UXXmlWrapperBase child;
    for (tree.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
        CStringUTF8 value;
        child.GetPropertyValue("k", value, 0);
        kept += std::string(kept.empty() ? "" : ", ") + static_cast<const char*>(value);
    }
    return kept;
}

TEST(uxtree_filter_by_attrib_find, LooksAnywhereOrAtTheStart) {
    EXPECT_EQ(found("fit", 0, 0), "Fit curve, A fit");
    EXPECT_EQ(found("fit", 0, 1), "Fit curve");
    EXPECT_EQ(found("fit", 1, 0), "A fit");
    EXPECT_EQ(found("fit", 1, 1), "");
    EXPECT_EQ(found("Fit", 1, 1), "Fit curve");
}

TEST(uxtree_filter_by_attrib_find, AnEmptyTextIsInEveryAttribute) {
    EXPECT_EQ(found("", 1, 1), "Fit curve, A fit, none");  // the node without it went
}

TEST(uxtree_filter_by_attrib_find, DoesNotEnterTestedNodes) {
    TestTree tree(
        "<r><n DataID='9' k='x'><n DataID='9' k='y'/></n><g><n DataID='9' k='y'/></g></r>");

    EXPECT_EQ(uxtree_filter_by_attrib_find(&tree, 9, "k", "x", 1, 0), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><n DataID='9' k='x'><n DataID='9' k='y'/></n><g/></r>"));
}

TEST(uxtree_filter_by_attrib_find, TheTreeMayRemoveItself) {
    TestTree tree("<r><n DataID='9' k='y'/></r>");
    UXXmlWrapperBase node = tree.at("n");

    EXPECT_EQ(uxtree_filter_by_attrib_find(&node, 9, "k", "x", 1, 0), 1);

    EXPECT_FALSE(node.IsNodeValid());
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

TEST(uxtree_filter_by_attrib_find, ALeafThatIsNotTestedYieldsOne) {
    TestTree tree("<r/>");

    EXPECT_EQ(uxtree_filter_by_attrib_find(&tree, 9, "k", "x", 1, 0), 1);
}

TEST(uxtree_filter_by_attrib_match, KeepsWhatMatchesThePattern) {
    TestTree tree(
        "<r><n DataID='9' k='Fit1'/><g><n DataID='9' k='fit22'/></g><n DataID='9'/>"
        "<n DataID='8'/></r>");

    EXPECT_EQ(uxtree_filter_by_attrib_match(&tree, 9, "k", "fit*", 0), 1);
    EXPECT_EQ(
        tree.text(),
        tree_text(
            "<r><n DataID='9' k='Fit1'/><g><n DataID='9' k='fit22'/></g><n DataID='8'/></r>"));
    EXPECT_EQ(uxtree_filter_by_attrib_match(&tree, 9, "k", "fit??", 1), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><g><n DataID='9' k='fit22'/></g><n DataID='8'/></r>"));
}

TEST(uxtree_filter_by_attrib_match, HandsTheFlagToTheHost) {
    FakeHostServices services;
    std::string asked;
    services->wildcardMatch = [&](const CStringUTF8& text, const CStringUTF8& pattern, int flag) {
        asked = std::string(text) + "/" + std::string(pattern) + "/" + std::to_string(flag);
        return false;
    };
    TestTree tree("<r><n DataID='9' k='v'/></r>");

    EXPECT_EQ(uxtree_filter_by_attrib_match(&tree, 9, "k", "p", 42), 1);

    EXPECT_EQ(asked, "v/p/42");
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

}  // namespace
