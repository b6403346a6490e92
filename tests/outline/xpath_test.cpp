// Path queries: lists and tables.
#include "uxtree/outline/xpath.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/small_stack.h"
#include "support/test_tree.h"

using namespace uxtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kTree = "<r><a><x>1</x><y>2</y></a><a><x>3</x></a></r>";

// The arrays of one evaluation, and its result.
struct Evaluated {
    int result = -1;
    CWBOStringArray values;
    CArray<unsigned int> offsets;
    CWBOStringArray names;

    Evaluated() = default;
    Evaluated(const char* xml, const char* path, bool table) { run(xml, path, table); }
    void run(const char* xml, const char* path, bool table) {
        TestTree tree(xml);
        result = TreeEvalXPath(&values, &offsets, &names, &tree, nullptr, path, table);
        EXPECT_EQ(tree.text(), TestTree(xml).text());
    }
};
std::vector<std::string> listed(const char* xml, const char* path) {
    Evaluated evaluated(xml, path, false);
    EXPECT_EQ(evaluated.result, 0);
    return texts(evaluated.values);
}

}  // namespace

// --- lists -------------------------------------------------------------------------------------

TEST(TreeEvalXPath, ListsTheTextsOfAllLeavesBelowTheMatches) {
    Evaluated evaluated(kTree, "/r|a", false);

    EXPECT_EQ(evaluated.result, 0);
    EXPECT_THAT(texts(evaluated.values), ElementsAre("1", "2", "3"));
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(0u, 3u));
    EXPECT_THAT(texts(evaluated.names), ElementsAre("a"));
}

TEST(TreeEvalXPath, ListsAnAttributeOfTheMatchesThatHaveIt) {
    Evaluated evaluated("<r><a id='1'><a id='deep'/></a><a/><b id='2'/><a id=''/></r>", "/r|a|@id",
                        false);

    EXPECT_EQ(evaluated.result, 0);
    EXPECT_THAT(texts(evaluated.values), ElementsAre("1", ""));
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(0u, 2u));
    EXPECT_THAT(texts(evaluated.names), ElementsAre("@id"));
}

TEST(TreeEvalXPath, RootStepAloneCollectsTheWholeTree) {
    EXPECT_THAT(listed(kTree, "/r"), ElementsAre("1", "2", "3"));
    EXPECT_THAT(listed("<r id='7'><a id='8'/></r>", "/r|@id"), ElementsAre("7"));
}

TEST(TreeEvalXPath, MatchedLeafGivesItsOwnText) {
    EXPECT_THAT(listed(kTree, "/r|a|x"), ElementsAre("1", "3"));
    EXPECT_THAT(listed("<r>t</r>", "/r"), ElementsAre("t"));
}

TEST(TreeEvalXPath, LeavesWithoutTextGiveNothing) {
    EXPECT_THAT(listed("<r><a/><a></a><a>1</a></r>", "/r|a"), ElementsAre("1"));
}

TEST(TreeEvalXPath, TextOfABranchIsNotCollected) {
    EXPECT_THAT(listed("<r>own<a>own too<b>1</b></a></r>", "/r"), ElementsAre("1"));
}

TEST(TreeEvalXPath, MatchesAreInDocumentOrder) {
    EXPECT_THAT(
        listed("<r><a><b>1</b></a><c><b>no</b></c><a/><a><b>2</b><d/><b>3</b></a></r>", "/r|a|b"),
        ElementsAre("1", "2", "3"));
}

TEST(TreeEvalXPath, ListModeAppendsToValuesAndNames) {
    Evaluated evaluated(kTree, "/r|a|x", false);
    evaluated.run(kTree, "/r|a|y", false);

    EXPECT_THAT(texts(evaluated.values), ElementsAre("1", "3", "2"));
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(2u, 3u));
    EXPECT_THAT(texts(evaluated.names), ElementsAre("x", "y"));
}

TEST(TreeEvalXPath, ListWithoutMatchesHasEqualOffsets) {
    Evaluated evaluated(kTree, "/r|a|x", false);
    evaluated.run(kTree, "/r|none|x", false);

    EXPECT_EQ(evaluated.result, 0);
    EXPECT_THAT(texts(evaluated.values), ElementsAre("1", "3"));
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(2u, 2u));
    EXPECT_THAT(texts(evaluated.names), ElementsAre("x", "x"));
}

TEST(TreeEvalXPath, EvaluatesBelowANodeInsideATree) {
    TestTree tree("<r><a><x>1</x></a><a><x>2</x></a></r>");
    UXXmlWrapperBase branch = tree.at("a[0]");
    CWBOStringArray values;
    CArray<unsigned int> offsets;
    CWBOStringArray names;

    EXPECT_EQ(TreeEvalXPath(&values, &offsets, &names, &branch, "read by nobody", "/a|x", false),
              0);

    EXPECT_THAT(texts(values), ElementsAre("1"));
}

// --- tables ------------------------------------------------------------------------------------

TEST(TreeEvalXPath, TableHasAColumnForEachPlace) {
    Evaluated evaluated(kTree, "/r|a", true);

    EXPECT_EQ(evaluated.result, 0);
    EXPECT_THAT(texts(evaluated.names), ElementsAre("x", "y"));
    EXPECT_THAT(texts(evaluated.values), ElementsAre("1", "3", "2", ""));
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(0u, 2u, 4u));
}

TEST(TreeEvalXPath, TableTakesItsLabelsFromTheFirstLongestNode) {
    Evaluated evaluated("<r><a><p>1</p></a><a><x>2</x><y>3</y></a><a><u>4</u><v>5</v></a></r>",
                        "/r|a", true);

    EXPECT_THAT(texts(evaluated.names), ElementsAre("x", "y"));
    EXPECT_THAT(texts(evaluated.values), ElementsAre("1", "2", "4", "", "3", "5"));
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(0u, 3u, 6u));
}

TEST(TreeEvalXPath, TableCellsAreFilledByPlaceAndNotByLabel) {
    Evaluated evaluated("<r><a><x>1</x><y>2</y></a><a><y>3</y></a></r>", "/r|a", true);

    EXPECT_THAT(texts(evaluated.values), ElementsAre("1", "3", "2", ""));
}

TEST(TreeEvalXPath, TableOfAnAttributeHasOneColumn) {
    Evaluated evaluated("<r><a/><a id='1'/><a id='2'/></r>", "/r|a|@id", true);

    EXPECT_THAT(texts(evaluated.names), ElementsAre("@id"));
    EXPECT_THAT(texts(evaluated.values), ElementsAre("", "1", "2"));
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(0u, 3u));
}

TEST(TreeEvalXPath, TableReplacesWhatTheArraysHeld) {
    Evaluated evaluated("<r>old</r>", "/r", false);
    evaluated.run(kTree, "/r|a", true);

    EXPECT_THAT(texts(evaluated.names), ElementsAre("x", "y"));
    EXPECT_THAT(texts(evaluated.values), ElementsAre("1", "3", "2", ""));
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(0u, 2u, 4u));
}

TEST(TreeEvalXPath, TableWithoutMatchesIsEmpty) {
    Evaluated evaluated(kTree, "/r|a", false);
    evaluated.run(kTree, "/r|none", true);

    EXPECT_EQ(evaluated.result, 0);
    EXPECT_THAT(texts(evaluated.names), IsEmpty());
    EXPECT_THAT(texts(evaluated.values), IsEmpty());
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(0u));
}

TEST(TreeEvalXPath, TableOfNodesWithoutValuesIsEmpty) {
    Evaluated evaluated("<r><a/><a/></r>", "/r|a", true);

    EXPECT_THAT(texts(evaluated.names), IsEmpty());
    EXPECT_THAT(texts(evaluated.values), IsEmpty());
    EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(0u));
}

TEST(TreeEvalXPath, TableTooLargeForItsArraysGives1AndChangesNothing) {
    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    UXXmlWrapperBase wide;
    root.AddNode(&wide, "a", -1);
    for (int i = 0; i < 50000; ++i) wide.AddTextNode(nullptr, "v", "1", -1, 0, nullptr);
    for (int i = 0; i < 50000; ++i) root.AddTextNode(nullptr, "a", "2", -1, 0, nullptr);
    CWBOStringArray values = string_list({"kept"});
    CArray<unsigned int> offsets = number_list<unsigned int>({9});
    CWBOStringArray names = string_list({"kept too"});

    EXPECT_EQ(TreeEvalXPath(&values, &offsets, &names, &root, nullptr, "/r|a", true), 1);

    EXPECT_THAT(texts(values), ElementsAre("kept"));
    EXPECT_THAT(numbers(offsets), ElementsAre(9u));
    EXPECT_THAT(texts(names), ElementsAre("kept too"));
}

// --- splitting ---------------------------------------------------------------------------------

TEST(TreeEvalXPath, DoubledSeparatorBeginsAStepWithIt) {
    EXPECT_THAT(listed(kTree, "/r||a"), IsEmpty());
    Evaluated evaluated(kTree, "/r||a", false);
    EXPECT_THAT(texts(evaluated.names), ElementsAre("|a"));
    Evaluated table(kTree, "/r|||a|b", false);
    EXPECT_THAT(texts(table.names), ElementsAre("b"));
}

TEST(TreeEvalXPath, SeparatorAtTheVeryEndAddsNothing) {
    Evaluated evaluated(kTree, "/r|a|", false);

    EXPECT_THAT(texts(evaluated.values), ElementsAre("1", "2", "3"));
    EXPECT_THAT(texts(evaluated.names), ElementsAre("a"));
    EXPECT_THAT(listed(kTree, "/r|"), ElementsAre("1", "2", "3"));
}

TEST(TreeEvalXPath, StepsBehindAnAttributeStepAreNotAppliedYetTheLastDecides) {
    const char* const kXml = "<r><a id='1' n='2'><b n='3'>4</b></a></r>";
    EXPECT_THAT(listed(kXml, "/r|a|@id|b"), ElementsAre("4"));
    EXPECT_THAT(listed(kXml, "/r|a|@id|@n"), ElementsAre("2"));
    EXPECT_THAT(listed(kXml, "/r|a|@id|b|@n"), ElementsAre("2"));
    Evaluated evaluated(kXml, "/r|a|@id|b", false);
    EXPECT_THAT(texts(evaluated.names), ElementsAre("b"));
}

TEST(TreeEvalXPath, AttributeStepWithoutANameFindsNothing) {
    EXPECT_THAT(listed("<r a='1'>t</r>", "/r|@"), IsEmpty());
}

TEST(TreeEvalXPath, StepsAreComparedExactly) {
    EXPECT_THAT(listed(kTree, "/r|A"), IsEmpty());
    EXPECT_THAT(listed(kTree, "/r|a "), IsEmpty());
    EXPECT_THAT(listed(kTree, "/r|*"), IsEmpty());
    EXPECT_THAT(listed(kTree, "/r|a/x"), IsEmpty());
    EXPECT_THAT(listed("<r><\xC3\xB6>1</\xC3\xB6></r>", "/r|\xC3\xB6"), ElementsAre("1"));
}

// --- failures ----------------------------------------------------------------------------------

TEST(TreeEvalXPath, FailuresLeaveTheArraysAlone) {
    const struct {
        const char* path;
        int result;
    } cases[] = {{"r|a", 4}, {"", 4},   {"|r", 4},  {"/s|a", 5}, {"/", 5},
                 {"/|a", 5}, {"/R", 5}, {"//r", 5}, {"/@x", 5},  {"/|r", 5}};
    for (const auto& [path, result] : cases) {
        Evaluated evaluated;
        evaluated.values = string_list({"v"});
        evaluated.offsets.Add(8);
        evaluated.names = string_list({"n"});
        for (const bool table : {false, true}) {
            evaluated.run(kTree, path, table);

            EXPECT_EQ(evaluated.result, result) << path;
            EXPECT_THAT(texts(evaluated.values), ElementsAre("v"));
            EXPECT_THAT(numbers(evaluated.offsets), ElementsAre(8u));
            EXPECT_THAT(texts(evaluated.names), ElementsAre("n"));
        }
    }
}

TEST(TreeEvalXPath, AWrongPathIsFoundBeforeAnInvalidTree) {
    UXXmlWrapperBase invalid;
    CWBOStringArray values;
    CArray<unsigned int> offsets;
    CWBOStringArray names;
    EXPECT_EQ(TreeEvalXPath(&values, &offsets, &names, &invalid, nullptr, "r", false), 4);
    EXPECT_TRUE(values.IsEmpty() && offsets.IsEmpty() && names.IsEmpty());
}

// --- depth -------------------------------------------------------------------------------------

TEST(TreeEvalXPath, DeepTreesAndLongPathsNeedNoStack) {
    constexpr int kDepth = 300000;
    UXXmlWrapperBase root;
    root.CreateNew(0, "d");
    UXXmlWrapperBase node = root;
    std::string path = "/d";
    for (int i = 0; i < kDepth; ++i) {
        node.AddNode(&node, "d", -1);
        path += "|d";
    }
    node.SetString("bottom");
    on_small_stack([&] {
        for (const char* way : {"/d", path.c_str()}) {
            CWBOStringArray values;
            CArray<unsigned int> offsets;
            CWBOStringArray names;
            EXPECT_EQ(TreeEvalXPath(&values, &offsets, &names, &root, nullptr, way, true), 0);
            EXPECT_THAT(texts(values), ElementsAre("bottom"));
        }
    });
}

// --- the script form ---------------------------------------------------------------------------

TEST(uxtree_xpath, FillsScriptArrays) {
    TestTree tree(kTree);
    auto values = script_texts({"before"});
    auto offsets = script_ints({7, 8, 9});
    auto names = script_texts({});

    EXPECT_EQ(uxtree_xpath(&values, &offsets, &names, &tree, nullptr, "/r|a", false), 0);

    EXPECT_THAT(texts(values.array()), ElementsAre("before", "1", "2", "3"));
    EXPECT_THAT(numbers(offsets.array()), ElementsAre(1, 4));
    EXPECT_THAT(texts(names.array()), ElementsAre("a"));

    EXPECT_EQ(uxtree_xpath(&values, &offsets, &names, &tree, nullptr, "/r|a", true), 0);

    EXPECT_THAT(texts(values.array()), ElementsAre("1", "3", "2", ""));
    EXPECT_THAT(numbers(offsets.array()), ElementsAre(0, 2, 4));
    EXPECT_THAT(texts(names.array()), ElementsAre("x", "y"));
}

TEST(uxtree_xpath, PassesFailuresOnWithoutChanges) {
    TestTree tree(kTree);
    auto values = script_texts({"v"});
    auto offsets = script_ints({1});
    auto names = script_texts({"n"});
    EXPECT_EQ(uxtree_xpath(&values, &offsets, &names, &tree, nullptr, "r", false), 4);
    EXPECT_EQ(uxtree_xpath(&values, &offsets, &names, &tree, nullptr, "/s", true), 5);
    EXPECT_THAT(texts(values.array()), ElementsAre("v"));
    EXPECT_THAT(numbers(offsets.array()), ElementsAre(1));
    EXPECT_THAT(texts(names.array()), ElementsAre("n"));
}
