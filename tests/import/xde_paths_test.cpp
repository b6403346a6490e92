// Paths within import descriptions.
#include "uxtree/import/xde_paths.h"

#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::script_ints;
using uxtest::script_texts;
using uxtest::string_list;
using uxtest::TestTree;
using uxtest::texts;
using uxtest::to_text;
using uxtest::tree_text;

const char* const kEveryAttribute =
    "<n Label='l' a='1' FileSourcePath='f' DataID='7' FileDataDimsVector='3' DataTreeNodeType='t'"
    " DataTreeObjFinder='o' DataTreeOtherString='s' FileImportLayerType='i' FileDataType='d'"
    " BlobArrElementaryType='b' xmlns:dt='x' dt:dt='y' TypeID='z' ColDesignation='3' Comment='c'"
    " Unit='u' label='small'/>";

// ---- attributes
// ----------------------------------------------------------------------------------

std::string listed(DWORD filter) {
    TestTree tree(kEveryAttribute);
    CWBOStringArray names;
    CWBOStringArray values;
    EXPECT_EQ(vctree_XDE_XML_get_attributes(&names, &values, &tree, filter), 1);
    std::string out;
    for (int i = 0; i < names.GetSize(); ++i) {
        out += static_cast<const char*>(names[i] + "=" + values[i] + " ");
    }
    return out;
}

TEST(vctree_XDE_XML_get_attributes, FilterZeroStillHidesFourNames) {
    EXPECT_EQ(listed(0),
              "a=1 DataTreeNodeType=t DataTreeObjFinder=o DataTreeOtherString=s "
              "FileImportLayerType=i FileDataType=d BlobArrElementaryType=b xmlns:dt=x dt:dt=y "
              "TypeID=z ColDesignation=3 Comment=c Unit=u label=small ");
}

struct FilterCase {
    DWORD filter;
    const char* hidden;
};
class FilterBits : public testing::TestWithParam<FilterCase> {};
INSTANTIATE_TEST_SUITE_P(
    vctree_XDE_XML_get_attributes, FilterBits,
    testing::Values(FilterCase{0x20000,
                               "DataTreeNodeType=t DataTreeObjFinder=o "
                               "DataTreeOtherString=s FileImportLayerType=i "},
                    FilterCase{0x10000, "FileDataType=d "},
                    FilterCase{0x40000, "BlobArrElementaryType=b xmlns:dt=x dt:dt=y "},
                    FilterCase{0x80000, "TypeID=z "},
                    FilterCase{0x100000, "ColDesignation=3 Comment=c Unit=u "}));
TEST_P(FilterBits, HidesItsOwnNamesAndNoOthers) {
    const std::string hidden = GetParam().hidden;
    std::string expected = listed(0);
    ASSERT_NE(expected.find(hidden), std::string::npos);
    expected.erase(expected.find(hidden), hidden.size());

    EXPECT_EQ(listed(GetParam().filter), expected);
}

TEST(vctree_XDE_XML_get_attributes, AllBitsLeaveOnlyWhatIsNoBookkeeping) {
    EXPECT_EQ(listed(0xFFFFFFFF), "a=1 label=small ");
}

TEST(vctree_XDE_XML_get_attributes, AppendsAndTakesNullValues) {
    TestTree tree("<n a='1' b='2'/>");
    CWBOStringArray names = string_list({"before"});

    EXPECT_EQ(vctree_XDE_XML_get_attributes(&names, nullptr, &tree, 0), 1);

    EXPECT_THAT(texts(names), ElementsAre("before", "a", "b"));
}

TEST(uxtree_XDE_get_attributes, Forwards) {
    TestTree tree("<n a='1'/>");
    auto names = script_texts({});
    auto values = script_texts({});

    EXPECT_EQ(uxtree_XDE_get_attributes(&names, &values, &tree, 0), 1);
    EXPECT_EQ(uxtree_XDE_get_attributes(&names, nullptr, &tree, 0), 1);
    EXPECT_THAT(texts(names.array()), ElementsAre("a", "a"));
    EXPECT_THAT(texts(values.array()), ElementsAre("1"));
}

// ---- text forms of a path
// ------------------------------------------------------------------------

std::string joined(const std::vector<std::string>& names, bool escape) {
    const CWBOStringArray path = string_list(names);
    CStringUTF8 text("before");
    EXPECT_EQ(vctree_XDE_treenode_path_array_to_string(&text, &path, escape),
              static_cast<int>(names.size()));
    return static_cast<const char*>(text);
}

TEST(vctree_XDE_treenode_path_array_to_string, EscapesSeparatorsAndBackslashes) {
    EXPECT_EQ(joined({"a|b", "c"}, true), "a\\|b|c");
    EXPECT_EQ(joined({"a\\b", "\\|"}, true), "a\\\\b|\\\\\\|");
    EXPECT_EQ(joined({"a|b", "c\\"}, false), "a|b|c\\");
}

TEST(vctree_XDE_treenode_path_array_to_string, EmptyPathEmptiesTheText) {
    EXPECT_EQ(joined({}, true), "");
}

TEST(vctree_XDE_treenode_path_array_to_string, EmptyNamesKeepTheirSeparators) {
    EXPECT_EQ(joined({"", "a", ""}, true), "|a|");
}

TEST(uxtree_XDE_treenode_path_array_to_string, Forwards) {
    auto path = script_texts({"a", "b"});
    CStringUTF8 text;

    EXPECT_EQ(uxtree_XDE_treenode_path_array_to_string(&text, &path, true), 2);
    EXPECT_EQ(text, "a|b");
}

std::vector<std::string> split(const char* text, bool escape) {
    CWBOStringArray path = string_list({"before"});
    EXPECT_EQ(vctree_XDE_treenode_path_string_to_array(&path, text, escape), 1);
    return texts(path);
}

TEST(vctree_XDE_treenode_path_string_to_array, UndoesEscapes) {
    EXPECT_THAT(split("a\\|b|c", true), ElementsAre("a|b", "c"));
    EXPECT_THAT(split("a\\\\|b", true), ElementsAre("a\\", "b"));
    EXPECT_THAT(split("a\\|b|c", false), ElementsAre("a\\", "b", "c"));
}

TEST(vctree_XDE_treenode_path_string_to_array, SingleNameIsNotUnescaped) {
    EXPECT_THAT(split("a\\\\b", true), ElementsAre("a\\\\b"));
}

TEST(vctree_XDE_treenode_path_string_to_array, LastNameKeepsItsDoubledBackslashes) {
    EXPECT_THAT(split("a\\\\b|c\\\\d", true), ElementsAre("a\\b", "c\\\\d"));
}

TEST(vctree_XDE_treenode_path_string_to_array, QuotesMeanNothingAndEmptyNamesAreKept) {
    EXPECT_THAT(split("\"a|b\"||", true), ElementsAre("\"a", "b\"", "", ""));
}

TEST(vctree_XDE_treenode_path_string_to_array, EmptyTextYieldsZeroAndAnEmptyPath) {
    CWBOStringArray path = string_list({"before"});
    EXPECT_EQ(vctree_XDE_treenode_path_string_to_array(&path, "", true), 0);
    EXPECT_THAT(texts(path), IsEmpty());

    path = string_list({"before"});
    EXPECT_EQ(vctree_XDE_treenode_path_string_to_array(&path, nullptr, true), 0);
    EXPECT_THAT(texts(path), IsEmpty());

    EXPECT_EQ(vctree_XDE_treenode_path_string_to_array(nullptr, "a", true), 0);
}

TEST(vctree_XDE_treenode_path_string_to_array, TextMayBeAnItemOfThePath) {
    CWBOStringArray path = string_list({"a|b"});

    EXPECT_EQ(vctree_XDE_treenode_path_string_to_array(&path, path[0], true), 1);

    EXPECT_THAT(texts(path), ElementsAre("a", "b"));
}

TEST(vctree_XDE_treenode_path_string_to_array, RoundTripOfAllNamesButTheLast) {
    const std::vector<std::string> names{"a|b", "\\", "||", "c\\|", "last"};
    EXPECT_EQ(split(joined(names, true).c_str(), true), names);
}

TEST(uxtree_XDE_treenode_path_string_to_array, Forwards) {
    auto path = script_texts({});
    auto numbers = script_ints({});

    EXPECT_EQ(uxtree_XDE_treenode_path_string_to_array(&path, "a|b", true), 1);
    EXPECT_THAT(texts(path.array()), ElementsAre("a", "b"));
    EXPECT_EQ(uxtree_XDE_treenode_path_string_to_array(&numbers, "a|b", true), 0);
    EXPECT_EQ(uxtree_XDE_treenode_path_string_to_array(nullptr, "a|b", true), 0);
}

TEST(VCTreeXDETreenodeOnePathAsArrayToString, JoinsByASlashWithoutEscapes) {
    const CWBOStringArray path = string_list({"a/b", "c|d", ""});
    const CWBOStringArray empty;
    CStringUTF8 text;

    EXPECT_EQ(VCTreeXDETreenodeOnePathAsArrayToString(text, &path), 3);
    EXPECT_EQ(text, "a/b/c|d/");
    EXPECT_EQ(VCTreeXDETreenodeOnePathAsArrayToString(text, &empty), 0);
    EXPECT_EQ(text, "");
}

TEST(uxtree_XDE_treenode_one_path_as_array_to_string, Forwards) {
    auto path = script_texts({"a", "b"});
    CStringUTF8 text;

    EXPECT_EQ(uxtree_XDE_treenode_one_path_as_array_to_string(&text, &path), 2);
    EXPECT_EQ(text, "a/b");
}

TEST(vctree_get_XDE_treenode_string_for_path_in_tree, IsTheLabelElseTheTag) {
    TestTree tree("<r><a Label='A'/><b Label=''/><c/></r>");
    const auto name = [&](const char* path) {
        UXXmlWrapperBase node = tree.at(path);
        CStringUTF8 out;
        EXPECT_EQ(vctree_get_XDE_treenode_string_for_path_in_tree(&out, &node), 1);
        return std::string(static_cast<const char*>(out));
    };

    EXPECT_EQ(name("a"), "A");
    EXPECT_EQ(name("b"), "b");
    EXPECT_EQ(name("c"), "c");
}

TEST(uxtree_get_XDE_treenode_string_for_path_in_tree, Forwards) {
    TestTree tree("<r/>");
    CStringUTF8 name;

    EXPECT_EQ(uxtree_get_XDE_treenode_string_for_path_in_tree(&name, &tree), 1);
    EXPECT_EQ(name, "r");
}

// ---- finding a node by its path
// ------------------------------------------------------------------

const char* const kTree =
    "<r Label='Root'><a Label='x' n='1'/><x n='2'><y n='3'/></x><Counts n='4'/>"
    "<d Label='Level [m]' n='5'/><e Label='z[1]' n='6'/><z n='7'/></r>";

struct Search {
    std::vector<std::string> path;
    int start = 0;
    int byTagOnly = 0;
    int allowSlice = 0;
};

// The attribute n of the node found ("" for the root), or the result and the validity of found.
std::string search(const Search& what) {
    TestTree tree(kTree);
    UXXmlWrapperBase found = tree.at("x/y");
    CWBOStringArray path = string_list(what.path);
    const int result = vctree_find_XDE_treenode_from_path_in_tree(
        &found, &tree, &path, what.start, what.byTagOnly, nullptr, what.allowSlice);
    EXPECT_EQ(result, found.IsNodeValid() ? 1 : 0);
    EXPECT_EQ(texts(path), what.path);
    if (result != 1) return "none";
    CStringUTF8 mark;
    found.GetPropertyValue("n", mark, 0);
    return static_cast<const char*>(mark);
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, LabelsComeBeforeTags) {
    EXPECT_EQ(search({{"Root"}}), "");
    EXPECT_EQ(search({{"Root", "x"}}), "1");
    EXPECT_EQ(search({{"Root", "x", "y"}}), "none");
    EXPECT_EQ(search({{"Root", "a"}}), "1");
    EXPECT_EQ(search({{"Root", "X"}}), "none");
    EXPECT_EQ(search({{"Root", ""}}), "none");
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, ByTagOnlyPassesLabelsOver) {
    EXPECT_EQ(search({{"Root", "x"}, 0, 1}), "2");
    EXPECT_EQ(search({{"Root", "x", "y"}, 0, 1}), "3");
    EXPECT_EQ(search({{"Root", "Level [m]"}, 0, 1}), "none");
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, TheTreeItselfIsNamedByItsLabelEvenByTagOnly) {
    EXPECT_EQ(search({{"r", "x"}, 0, 1}), "none");
    EXPECT_EQ(search({{"r"}}), "none");
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, TheTreesOwnItemMayHaveASelection) {
    EXPECT_EQ(search({{"Root[0:3]"}}), "");
    EXPECT_EQ(search({{"Root[0:3][1]", "Counts"}}), "4");
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, SelectionsAreTakenOffOnlyWhereAllowed) {
    EXPECT_EQ(search({{"Root", "Counts[0:9,3]"}}), "none");
    EXPECT_EQ(search({{"Root", "Counts[0:9,3]"}, 0, 0, 1}), "4");
    EXPECT_EQ(search({{"Root", "Counts[*][ 1 - 2; 3 ]"}, 0, 1, 1}), "4");
    EXPECT_EQ(search({{"Root", "Level [m]"}, 0, 0, 1}), "5");
    EXPECT_EQ(search({{"Root", "Level [m][2]"}, 0, 0, 1}), "5");
    EXPECT_EQ(search({{"Root", "z[1]"}, 0, 0, 1}), "6");
    EXPECT_EQ(search({{"Root", "z[2]"}, 0, 0, 1}), "7");
    EXPECT_EQ(search({{"Root", "[2]"}, 0, 0, 1}), "none");
    EXPECT_EQ(search({{"Root", "Counts[a]"}, 0, 0, 1}), "none");
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, EarlierNamesThanStartAreNotLookedAt) {
    EXPECT_EQ(search({{"anything", "Root", "Counts"}, 1}), "4");
    EXPECT_EQ(search({{"anything", "Root"}, 1}), "");
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, StartOutsideThePathFindsNothing) {
    EXPECT_EQ(search({{"Root"}, -1}), "none");
    EXPECT_EQ(search({{"Root"}, 1}), "none");
    EXPECT_EQ(search({{}, 0}), "none");
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, RestTakesThePathFromTheWildcardOn) {
    TestTree tree(kTree);
    UXXmlWrapperBase found;
    CWBOStringArray path = string_list({"Root", "x", "*", "y", "*"});
    CWBOStringArray rest = string_list({"before"});

    EXPECT_EQ(vctree_find_XDE_treenode_from_path_in_tree(&found, &tree, &path, 0, 1, &rest, 0), 1);

    EXPECT_TRUE(found == tree.at("x"));
    EXPECT_THAT(texts(path), ElementsAre("Root", "x"));
    EXPECT_THAT(texts(rest), ElementsAre("*", "y", "*"));
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, WithoutRestAWildcardIsAnOrdinaryName) {
    EXPECT_EQ(search({{"Root", "*"}}), "none");
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, RestIsEmptiedWithoutAWildcard) {
    TestTree tree(kTree);
    UXXmlWrapperBase found;
    CWBOStringArray path = string_list({"Root"});
    CWBOStringArray rest = string_list({"before"});

    EXPECT_EQ(vctree_find_XDE_treenode_from_path_in_tree(&found, &tree, &path, 0, 0, &rest, 0), 1);

    EXPECT_THAT(texts(rest), IsEmpty());
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, StartIsTestedAgainAfterTheCut) {
    TestTree tree(kTree);
    UXXmlWrapperBase found = tree;
    CWBOStringArray path = string_list({"*", "Root"});
    CWBOStringArray rest;

    EXPECT_EQ(vctree_find_XDE_treenode_from_path_in_tree(&found, &tree, &path, 1, 0, &rest, 0), 0);

    EXPECT_FALSE(found.IsNodeValid());
    EXPECT_THAT(texts(path), IsEmpty());
    EXPECT_THAT(texts(rest), ElementsAre("*", "Root"));
}

TEST(vctree_find_XDE_treenode_from_path_in_tree, FoundMayBeTheTreeItself) {
    TestTree tree(kTree);
    UXXmlWrapperBase node = tree;
    CWBOStringArray path = string_list({"Root", "Counts"});

    EXPECT_EQ(vctree_find_XDE_treenode_from_path_in_tree(&node, &node, &path, 0, 0, nullptr, 0), 1);

    EXPECT_TRUE(node == tree.at("Counts"));
}

TEST(uxtree_find_XDE_treenode_from_path_in_tree, Forwards) {
    TestTree tree(kTree);
    UXXmlWrapperBase found;
    auto path = script_texts({"Root", "Counts", "*"});
    auto rest = script_texts({});
    auto numbers = script_ints({});
    const auto find = uxtree_find_XDE_treenode_from_path_in_tree;

    EXPECT_EQ(find(&found, &tree, &path, 0, 0, &numbers, 0), 0);
    EXPECT_EQ(find(&found, &tree, &numbers, 0, 0, &rest, 0), 0);
    EXPECT_EQ(find(&found, &tree, nullptr, 0, 0, &rest, 0), 0);
    EXPECT_EQ(find(&found, &tree, &path, 0, 0, &rest, 0), 1);
    EXPECT_TRUE(found == tree.at("Counts"));
    EXPECT_THAT(texts(rest.array()), ElementsAre("*"));
    EXPECT_EQ(find(&found, &tree, &path, 0, 0, nullptr, 0), 1);
}

// ---- values
// --------------------------------------------------------------------------------------

TEST(VCTreeXDEConvertTreeValToString, LeafGivesItsTextAndBranchThoseOfItsLeaves) {
    TestTree tree("<r>own<a>1</a><b>not<c>2</c><d/></b><e>3</e></r>");
    UXXmlWrapperBase leaf = tree.at("a");
    UXXmlWrapperBase empty = tree.at("b/d");
    CStringUTF8 out("before");

    EXPECT_EQ(VCTreeXDEConvertTreeValToString(out, &leaf), 1);
    EXPECT_EQ(out, "1");
    EXPECT_EQ(VCTreeXDEConvertTreeValToString(out, &tree), 1);
    EXPECT_EQ(out, "1, 2, , 3");
    EXPECT_EQ(VCTreeXDEConvertTreeValToString(out, &empty), 1);
    EXPECT_EQ(out, "");
}

TEST(VCTreeXDEConvertTreeValToString, UnusableNodeEmptiesTheText) {
    UXXmlWrapperBase invalid;
    CStringUTF8 out("before");

    EXPECT_EQ(VCTreeXDEConvertTreeValToString(out, nullptr), 0);
    EXPECT_EQ(out, "");
    out = "before";
    EXPECT_EQ(VCTreeXDEConvertTreeValToString(out, &invalid), 0);
    EXPECT_EQ(out, "");
}

TEST(uxtree_XDE_convert_tree_val_to_string, TakesTheNode) {
    TestTree tree("<r><a>1</a><b>2</b></r>");
    UXXmlWrapperBase node = tree.at("b");
    CStringUTF8 out;

    EXPECT_EQ(uxtree_XDE_convert_tree_val_to_string(&out, &node), 1);
    EXPECT_EQ(out, "2");
    EXPECT_EQ(uxtree_XDE_convert_tree_val_to_string(nullptr, &node), 0);
    EXPECT_EQ(uxtree_XDE_convert_tree_val_to_string(&out, nullptr), 0);
}

TEST(uxtree_XDE_convert_whole_tree_val_to_string, TakesTheTopmostAncestor) {
    TestTree tree("<r><a>1</a><b><c>2</c></b></r>");
    UXXmlWrapperBase node = tree.at("b/c");
    UXXmlWrapperBase invalid;
    CStringUTF8 out;

    EXPECT_EQ(uxtree_XDE_convert_whole_tree_val_to_string(&out, &node), 1);
    EXPECT_EQ(out, "1, 2");
    EXPECT_EQ(uxtree_XDE_convert_whole_tree_val_to_string(&out, &invalid), 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(uxtree_XDE_convert_whole_tree_val_to_string(&out, nullptr), 0);
    EXPECT_EQ(uxtree_XDE_convert_whole_tree_val_to_string(nullptr, &node), 0);
}

// ---- the data navigator's source tree
// ------------------------------------------------------------

TEST(VCTreeXDEDatNavPrepareStandardSourceTree, LabelsNodesAndListsThePathsOfLeaves) {
    TestTree tree("<r><a Label='x|y'><b/></a><c Label=''/></r>");
    CWBOStringArray paths = string_list({"before"});

    EXPECT_EQ(VCTreeXDEDatNavPrepareStandardSourceTree(tree, &paths, 0), 2);

    EXPECT_EQ(tree.text(),
              tree_text("<r Label='r'><a Label='x|y'><b Label='b'/></a><c Label='c'/></r>"));
    EXPECT_THAT(texts(paths), ElementsAre("before", "r|x\\|y|b", "r|c"));
}

TEST(VCTreeXDEDatNavPrepareStandardSourceTree, BeginsAtTheGivenNodeAndStaysBelowIt) {
    TestTree tree("<r><a><b/></a><c/></r>");
    UXXmlWrapperBase node = tree.at("a");
    CWBOStringArray paths;

    EXPECT_EQ(VCTreeXDEDatNavPrepareStandardSourceTree(node, &paths, 0xFFFFFFFF), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><a Label='a'><b Label='b'/></a><c/></r>"));
    EXPECT_THAT(texts(paths), ElementsAre("a|b"));
    EXPECT_TRUE(node == tree.at("a"));
}

TEST(VCTreeXDEDatNavPrepareStandardSourceTree, LeafAloneIsItsOwnPath) {
    TestTree tree("<r/>");
    CWBOStringArray paths;

    EXPECT_EQ(VCTreeXDEDatNavPrepareStandardSourceTree(tree, &paths, 0), 1);
    EXPECT_THAT(texts(paths), ElementsAre("r"));
    EXPECT_EQ(VCTreeXDEDatNavPrepareStandardSourceTree(tree, nullptr, 0), 1);
}

TEST(VCTreeXDEDatNavPrepareStandardSourceTree, PathsLeadBackToTheirNodes) {
    TestTree tree("<r><a Label='x|y'><b/></a><c Label='p\\'><d/></c></r>");
    CWBOStringArray paths;
    VCTreeXDEDatNavPrepareStandardSourceTree(tree, &paths, 0);

    CWBOStringArray path;
    UXXmlWrapperBase found;
    vctree_XDE_treenode_path_string_to_array(&path, paths[1], true);

    EXPECT_EQ(vctree_find_XDE_treenode_from_path_in_tree(&found, &tree, &path, 0, 0, nullptr, 0),
              1);
    EXPECT_TRUE(found == tree.at("c/d"));
}

TEST(uxtree_XDE_DatNav_prepare_standard_source_tree, Forwards) {
    TestTree tree("<r/>");
    auto paths = script_texts({});

    EXPECT_EQ(uxtree_XDE_DatNav_prepare_standard_source_tree(&tree, nullptr, 0), 1);
    EXPECT_EQ(uxtree_XDE_DatNav_prepare_standard_source_tree(&tree, &paths, 0), 1);
    EXPECT_THAT(texts(paths.array()), ElementsAre("r"));
}

// ---- array information
// ---------------------------------------------------------------------------

TEST(uxtree_save_XDE_array_info, SavesOneOrTwoSizesOrRemovesThem) {
    TestTree tree("<n DimLens='9'/>");

    EXPECT_EQ(uxtree_save_XDE_array_info(&tree, 4, 0), 1);
    EXPECT_EQ(tree.text(), tree_text("<n FileDataDimsVector='4'/>"));
    EXPECT_EQ(uxtree_save_XDE_array_info(&tree, 4, 3), 1);
    EXPECT_EQ(tree.text(), tree_text("<n FileDataDimsVector='4|3'/>"));
    EXPECT_EQ(uxtree_save_XDE_array_info(&tree, 0, 3), 1);
    EXPECT_EQ(tree.text(), tree_text("<n/>"));
    EXPECT_EQ(uxtree_save_XDE_array_info(&tree, 4, -1), 1);
    EXPECT_EQ(uxtree_save_XDE_array_info(&tree, -1, -1), 1);
    EXPECT_EQ(tree.text(), tree_text("<n/>"));
}

TEST(uxtree_set_XDE_file_info_data_id, SetsOrRemovesTheDataId) {
    TestTree tree("<n/>");

    EXPECT_EQ(uxtree_set_XDE_file_info_data_id(&tree, 0), 1);
    EXPECT_EQ(tree.text(), tree_text("<n DataID='0'/>"));
    EXPECT_EQ(uxtree_set_XDE_file_info_data_id(&tree, -1), 1);
    EXPECT_EQ(tree.text(), tree_text("<n/>"));
}

}  // namespace
