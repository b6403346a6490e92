// Dialog options: inputs and outputs, hidden values, menus, option bits.
#include "uxtree/analysis/dialog.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

namespace {

using uxtest::TestTree;
using uxtest::to_text;
using uxtest::tree_text;

// --- input and output ----------------------------------------------------------------------------

// "I" and "O" for what the node is: first without strictness, then strictly.
std::string roles_of(const char* xml) {
    TestTree tree(xml);
    std::string out;
    for (bool strict : {false, true}) {
        if (XVarNode_IsInput(tree, strict)) out += "I";
        if (XVarNode_IsOutput(tree, strict)) out += "O";
        out += strict ? "" : "/";
    }
    EXPECT_EQ(tree.text(), TestTree(xml).text());
    return out;
}

TEST(XVarNode_IsInput, ZeroIsAnInput) {
    EXPECT_EQ(roles_of("<v><io>0</io></v>"), "I/I");
}
TEST(XVarNode_IsInput, WhatCannotBeReadIsAnInput) {
    EXPECT_EQ(roles_of("<v><io/></v>"), "I/I");
    EXPECT_EQ(roles_of("<v><io>out</io></v>"), "I/I");
}
TEST(XVarNode_IsInput, AnyOtherNumberIsBothUnlessStrict) {
    EXPECT_EQ(roles_of("<v><io>2</io></v>"), "IO/");
    EXPECT_EQ(roles_of("<v><io>-1</io></v>"), "IO/");
}
TEST(XVarNode_IsInput, ANodeWithoutIoIsNeither) {
    EXPECT_EQ(roles_of("<v/>"), "/");
    EXPECT_EQ(roles_of("<v><x><io>0</io></x></v>"), "/");
}
TEST(XVarNode_IsOutput, OneIsAnOutput) {
    EXPECT_EQ(roles_of("<v><io>1</io></v>"), "O/O");
}

TEST(XVarNode_IsUseLabelForValue, TestsOneBit) {
    const auto ask = [](const char* xml) {
        TestTree tree(xml);
        return XVarNode_IsUseLabelForValue(&tree);
    };
    EXPECT_TRUE(ask("<v DispFormat='16384'/>"));
    EXPECT_TRUE(ask("<v DispFormat='-1'/>"));
    EXPECT_TRUE(ask("<v DispFormat='4294967295'/>"));
    EXPECT_FALSE(ask("<v DispFormat='16383'/>"));
    EXPECT_FALSE(ask("<v DispFormat='32768'/>"));
    EXPECT_FALSE(ask("<v DispFormat='x'/>"));
    EXPECT_FALSE(ask("<v/>"));
}

// --- VCTreeCheckAddInputDataBranch ---------------------------------------------------------------

TEST(VCTreeCheckAddInputDataBranch, WithoutIndexTheItemsGoIntoTheTreeItself) {
    TestTree tree("<in/>");
    UXXmlWrapperBase range;
    const CWBOStringArray names = uxtest::string_list({"X", "Y"});
    const CWBOStringArray labels = uxtest::string_list({"Time", "Signal"});
    EXPECT_TRUE(VCTreeCheckAddInputDataBranch(&range, &tree, &names, &labels, 3, 0, 1, "Col(2)"));
    EXPECT_EQ(tree.text(), tree_text("<in><X Label='Time' _ux_id='35'/>"
                                     "<Y Label='Signal' _ux_id='35'>Col(2)</Y></in>"));
    EXPECT_TRUE(range == tree);
}

TEST(VCTreeCheckAddInputDataBranch, APositiveIndexTakesTheChildAtThatPlaceWhateverItsTag) {
    TestTree tree("<in><a/><b/></in>");
    UXXmlWrapperBase range;
    const CWBOStringArray names = uxtest::string_list({"X"});
    EXPECT_TRUE(VCTreeCheckAddInputDataBranch(&range, &tree, &names, nullptr, -1, 2, -1, nullptr));
    EXPECT_EQ(tree.text(), tree_text("<in><a/><b><X _ux_id='35'/></b></in>"));
    EXPECT_TRUE(range == tree.at("b"));
}

TEST(VCTreeCheckAddInputDataBranch, BeyondTheChildrenARangeOfThatNumberIsAdded) {
    TestTree tree("<in><a/></in>");
    UXXmlWrapperBase range;
    const CWBOStringArray names;
    EXPECT_TRUE(VCTreeCheckAddInputDataBranch(&range, &tree, &names, nullptr, 5, 3, -1, nullptr));
    EXPECT_EQ(tree.text(), tree_text("<in><a/><Range3 Label='Range 3' _ux_id='5'/></in>"));
    EXPECT_TRUE(range == tree.at("Range3"));
}

TEST(VCTreeCheckAddInputDataBranch, ANegativeIndexAlwaysAdds) {
    TestTree tree("<in><Range1/></in>");
    UXXmlWrapperBase range;
    const CWBOStringArray names;
    EXPECT_TRUE(VCTreeCheckAddInputDataBranch(&range, &tree, &names, nullptr, -1, -1, -1, nullptr));
    EXPECT_EQ(tree.text(), tree_text("<in><Range1/><Range1 Label='Range 1'/></in>"));
    EXPECT_TRUE(range == tree.at("Range1[1]"));
    EXPECT_TRUE(VCTreeCheckAddInputDataBranch(&range, &tree, &names, nullptr, -1,
                                              std::numeric_limits<int>::min(), -1, nullptr));
    EXPECT_EQ(to_text(range), tree_text("<Range-2147483648 Label='Range -2147483648'/>"));
}

TEST(VCTreeCheckAddInputDataBranch, AFoundItemGetsTheLabelButKeepsItsIdAndOtherItems) {
    TestTree tree("<in><Y Label='old' _ux_id='9'>kept</Y></in>");
    UXXmlWrapperBase range;
    const CWBOStringArray names = uxtest::string_list({"Y"});
    const CWBOStringArray labels = uxtest::string_list({"new"});
    VCTreeCheckAddInputDataBranch(&range, &tree, &names, &labels, -1, 0, 0, nullptr);
    EXPECT_EQ(tree.text(), tree_text("<in><Y Label='new' _ux_id='9'>kept</Y></in>"));
}

TEST(VCTreeCheckAddInputDataBranch, MissingOrEmptyLabelsWriteNone) {
    TestTree tree("<in/>");
    UXXmlWrapperBase range;
    const CWBOStringArray names = uxtest::string_list({"A", "B"});
    const CWBOStringArray labels = uxtest::string_list({""});
    VCTreeCheckAddInputDataBranch(&range, &tree, &names, &labels, -1, 0, 0, nullptr);
    EXPECT_EQ(tree.text(), tree_text("<in><A _ux_id='35'/><B _ux_id='35'/></in>"));
}

TEST(VCTreeCheckAddInputDataBranch, TheValueGoesToOneItemOrToAll) {
    const auto values = [](int index, const char* value) {
        TestTree tree("<in><A>a</A><B>b</B></in>");
        UXXmlWrapperBase range;
        const CWBOStringArray names = uxtest::string_list({"A", "B"});
        VCTreeCheckAddInputDataBranch(&range, &tree, &names, nullptr, -1, 0, index, value);
        return tree.text();
    };
    EXPECT_EQ(values(0, "v"), "<in><A>v</A><B>b</B></in>");
    EXPECT_EQ(values(1, "v"), "<in><A>a</A><B>v</B></in>");
    EXPECT_EQ(values(-1, "v"), "<in><A>v</A><B>v</B></in>");
    EXPECT_EQ(values(-7, "v"), "<in><A>v</A><B>v</B></in>");
    EXPECT_EQ(values(2, "v"), "<in><A>a</A><B>b</B></in>");
    EXPECT_EQ(values(-1, ""), "<in><A>a</A><B>b</B></in>");
    EXPECT_EQ(values(-1, nullptr), "<in><A>a</A><B>b</B></in>");
}

TEST(VCTreeCheckAddInputDataBranch, NamesThatCannotBeTagsAreLeftOut) {
    TestTree tree("<in/>");
    UXXmlWrapperBase range;
    const CWBOStringArray names = uxtest::string_list({"", "1x", "ok"});
    EXPECT_TRUE(VCTreeCheckAddInputDataBranch(&range, &tree, &names, nullptr, -1, 0, -1, "v"));
    EXPECT_EQ(tree.text(), tree_text("<in><ok _ux_id='35'>v</ok></in>"));
}

TEST(VCTreeCheckAddInputDataBranch, TheRangeMayBeTheTreesOwnHandle) {
    TestTree tree("<in><a/></in>");
    UXXmlWrapperBase node = tree;
    const CWBOStringArray names = uxtest::string_list({"X"});
    EXPECT_TRUE(VCTreeCheckAddInputDataBranch(&node, &node, &names, nullptr, -1, 1, -1, nullptr));
    EXPECT_TRUE(node == tree.at("a"));
}

TEST(uxtree_tree_check_add_input_data_branch, GivesTheNativeAnswer) {
    TestTree tree("<in/>");
    UXXmlWrapperBase range;
    auto names = uxtest::script_texts({"X"});
    auto labels = uxtest::script_texts({"Time"});
    auto wrong = uxtest::script_ints({1});
    const auto add = [&](UXXmlWrapperBase* out, UXXmlWrapperBase* in, UXScriptObject* n,
                         UXScriptObject* l) {
        return uxtree_tree_check_add_input_data_branch(out, in, n, l, -1, 0, 0, "v");
    };
    EXPECT_EQ(add(nullptr, &tree, &names, &labels), 0);
    EXPECT_EQ(add(&range, nullptr, &names, &labels), 0);
    EXPECT_EQ(add(&range, &tree, nullptr, &labels), 0);
    EXPECT_EQ(add(&range, &tree, &wrong, &labels), 0);
    EXPECT_EQ(add(&range, &tree, &names, &wrong), 0);
    EXPECT_EQ(tree.text(), tree_text("<in/>"));
    EXPECT_EQ(add(&range, &tree, &names, nullptr), 1);
    EXPECT_EQ(add(&range, &tree, &names, &labels), 1);
    EXPECT_EQ(tree.text(), tree_text("<in><X Label='Time' _ux_id='35'>v</X></in>"));
}

// --- vctree_GETN_reset_hidden_values -------------------------------------------------------------

struct Reset {
    int count;
    std::string tree;
    bool operator==(const Reset&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Reset& r) {
    return out << r.count << ": " << r.tree;
}

Reset reset(const char* xml, const std::vector<int>& ids, bool recursive) {
    TestTree tree(xml);
    CArray<int, int> array = uxtest::number_list<int>(ids);
    const int count = vctree_GETN_reset_hidden_values(&tree, &array, recursive);
    return {count, tree.text()};
}

TEST(vctree_GETN_reset_hidden_values, ResetsByKindAndCountsEveryNodeFound) {
    EXPECT_EQ(reset("<r><a DataID='3' _ux_id='10'>5</a><b DataID='7' _ux_id='13'>x</b>"
                    "<c DataID='8' _ux_id='11'>5</c><d DataID='9'>5</d>"
                    "<e DataID='10' _ux_id='268435456' Use='1'/><f DataID='11' _ux_id='268435456'/>"
                    "<g DataID='12' _ux_id='10'>5</g></r>",
                    {3, 7, 8, 9, 10, 11}, false),
              (Reset{6,
                     "<r><a DataID=\"3\" _ux_id=\"10\">0</a><b DataID=\"7\" _ux_id=\"13\">0</b>"
                     "<c DataID=\"8\" _ux_id=\"11\">5</c><d DataID=\"9\">5</d>"
                     "<e DataID=\"10\" Use=\"0\" _ux_id=\"268435456\"></e>"
                     "<f DataID=\"11\" _ux_id=\"268435456\"></f>"
                     "<g DataID=\"12\" _ux_id=\"10\">5</g></r>"}));
}

TEST(vctree_GETN_reset_hidden_values, TheSearchStopsAtTheFirstLargerIdentifier) {
    const char* xml = "<r><a DataID='3'/><b DataID='7'/></r>";
    EXPECT_EQ(reset(xml, {3, 7}, false).count, 2);
    EXPECT_EQ(reset(xml, {7, 3}, false).count, 1);
    EXPECT_EQ(reset(xml, {3, 9, 7}, false).count, 1);
    EXPECT_EQ(reset(xml, {1, 3, 2, 3, 7}, false).count, 2);
    EXPECT_EQ(reset(xml, {}, false).count, 0);
}

TEST(vctree_GETN_reset_hidden_values, TheIndexAgreesWithThePlainSearch) {
    const std::vector<int> ids{4, 4, 2, 6, 5, 6, 9, 1, 12, 11, 12};
    for (int id = 0; id <= 13; ++id) {
        bool found = false;
        for (int entry : ids) {
            if (entry > id) break;
            found = found || entry == id;
        }
        const std::string xml = "<r><a DataID='" + std::to_string(id) + "'/></r>";
        EXPECT_EQ(reset(xml.c_str(), ids, false).count, found && id > 0 ? 1 : 0) << id;
    }
}

TEST(vctree_GETN_reset_hidden_values, IdentifiersBelowOneAreNeverReset) {
    EXPECT_EQ(reset("<r><a DataID='0' _ux_id='10'>5</a><b DataID='-2' _ux_id='10'>5</b></r>",
                    {-2, 0}, false),
              (Reset{0,
                     "<r><a DataID=\"0\" _ux_id=\"10\">5</a><b DataID=\"-2\" _ux_id=\"10\">5</b>"
                     "</r>"}));
}

TEST(vctree_GETN_reset_hidden_values, DeeperNodesOnlyWhenRecursive) {
    const char* xml =
        "<r DataID='1'><a><b DataID='1'/><c><d DataID='1'/></c></a><e DataID='1'><f DataID='1'/>"
        "</e></r>";
    EXPECT_EQ(reset(xml, {1}, false).count, 1);
    EXPECT_EQ(reset(xml, {1}, true).count, 4);
}

TEST(vctree_GETN_reset_hidden_values, VisibilityDoesNotMatter) {
    EXPECT_EQ(reset("<r><a DataID='1' Show='1' _ux_id='10'>5</a></r>", {1}, false).tree,
              "<r><a DataID=\"1\" Show=\"1\" _ux_id=\"10\">0</a></r>");
}

TEST(vctree_GETN_reset_hidden_values, ALeafGivesZero) {
    EXPECT_EQ(reset("<r DataID='1'/>", {1}, true).count, 0);
}

TEST(uxtree_GETN_reset_hidden_values, GivesTheNativeAnswer) {
    TestTree tree("<r><a DataID='1' _ux_id='10'>5</a></r>");
    auto ids = uxtest::script_ints({1});
    EXPECT_EQ(uxtree_GETN_reset_hidden_values(&tree, &ids, true), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1' _ux_id='10'>0</a></r>"));
}

// --- VCTreePrepareForMenu ------------------------------------------------------------------------

TEST(VCTreePrepareForMenu, NewLeavesGetTheNextIdentifiers) {
    TestTree tree("<m><a/><b/><c/></m>");
    DWORD next = 100;
    EXPECT_EQ(VCTreePrepareForMenu(&tree, next), 3);
    EXPECT_EQ(next, 103U);
    EXPECT_EQ(tree.text(),
              tree_text("<m _ux_id='268435456'><a DataID='100' _ux_id='11'/>"
                        "<b DataID='101' _ux_id='11'/><c DataID='102' _ux_id='11'/></m>"));
}

TEST(VCTreePrepareForMenu, LeavesWithAnIdentifierStayAndZeroIsNone) {
    TestTree tree("<m><a DataID='5' _ux_id='7'/><s><b DataID='0'/><c DataID='-3'/></s></m>");
    DWORD next = 1;
    EXPECT_EQ(VCTreePrepareForMenu(&tree, next), 2);
    EXPECT_EQ(next, 3U);
    EXPECT_EQ(tree.text(),
              tree_text("<m _ux_id='268435456'><a DataID='5' _ux_id='7'/><s _ux_id='268435456'>"
                        "<b DataID='1' _ux_id='11'/><c DataID='2' _ux_id='11'/></s></m>"));
}

TEST(VCTreePrepareForMenu, TreatsTheGivenNodeItself) {
    TestTree tree("<m/>");
    DWORD next = 9;
    EXPECT_EQ(VCTreePrepareForMenu(&tree, next), 1);
    EXPECT_EQ(VCTreePrepareForMenu(&tree, next), 0);
    EXPECT_EQ(tree.text(), tree_text("<m DataID='9' _ux_id='11'/>"));
}

TEST(VCTreePrepareForMenu, AVeryDeepTreeCostsNoStack) {
    TestTree tree("<m/>");
    UXXmlWrapperBase node = tree;
    for (int i = 0; i < 300000; ++i) node.AddNode(&node, "a", -1);
    DWORD next = 1;
    EXPECT_EQ(VCTreePrepareForMenu(&tree, next), 1);
    CArray<int, int> ids = uxtest::number_list<int>({1});
    EXPECT_EQ(vctree_GETN_reset_hidden_values(&tree, &ids, true), 1);
    EXPECT_EQ(vctree_test_ICOPT_recursively(node, 1), 0);
}

// --- options -------------------------------------------------------------------------------------

TEST(vctree_test_ICOPT_recursively, TheNearestNodeWithOptionsDecides) {
    TestTree tree(
        "<r InteractiveOptions='6'><a><b/></a><c InteractiveOptions='0'><d/></c>"
        "<e InteractiveOptions='x'/></r>");
    const auto ask = [&](const char* path, DWORD mask) {
        UXXmlWrapperBase node = tree.at(path);
        return vctree_test_ICOPT_recursively(node, mask);
    };
    EXPECT_EQ(ask("a/b", 2), 1);
    EXPECT_EQ(ask("a/b", 3), 1);
    EXPECT_EQ(ask("a/b", 1), 0);
    EXPECT_EQ(ask("a/b", 0), 0);
    EXPECT_EQ(ask("", 4), 1);
    EXPECT_EQ(ask("c", 4), 0);
    EXPECT_EQ(ask("c/d", 4), 0);
    EXPECT_EQ(ask("e", 4), 1);  // what cannot be read is none of its own
}

TEST(vctree_test_ICOPT_recursively, WithoutOptionsAnywhereNothingIsSet) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase node = tree.at("a");
    EXPECT_EQ(vctree_test_ICOPT_recursively(node, 0xFFFFFFFF), 0);
    EXPECT_TRUE(node == tree.at("a"));
}

TEST(vctree_test_ICOPT_recursively, TheHighestBitCounts) {
    TestTree tree("<r InteractiveOptions='2147483648'/>");
    EXPECT_EQ(vctree_test_ICOPT_recursively(tree, 0x80000000), 1);
}

TEST(vctree_copy_branch_options, CopiesTheMaskedBits) {
    TestTree tree("<r><s Branch='7'/><d Branch='8'/><n/></r>");
    UXXmlWrapperBase source = tree.at("s");
    UXXmlWrapperBase destination = tree.at("d");
    UXXmlWrapperBase none = tree.at("n");
    EXPECT_EQ(vctree_copy_branch_options(none, source, 5), 1);
    EXPECT_EQ(vctree_copy_branch_options(destination, source, 2), 1);
    const std::string expected =
        "<r><s Branch=\"7\"></s><d Branch=\"2\"></d><n Branch=\"5\"></n></r>";
    EXPECT_EQ(tree.text(), expected);
    EXPECT_EQ(vctree_copy_branch_options(destination, tree, 1), 0);
    EXPECT_EQ(tree.text(), expected);
}

// --- plot and marker ids -------------------------------------------------------------------------

TEST(vctree_set_plot_uid_to_tree, WritesTheAttribute) {
    TestTree tree("<r/>");
    EXPECT_EQ(vctree_set_plot_uid_to_tree(tree, -5), 1);
    EXPECT_EQ(tree.text(), tree_text("<r PlotObjUID='-5'/>"));
}
TEST(vctree_get_plot_uid_from_tree, AMissingOneLeavesTheVariable) {
    TestTree tree("<r><a PlotObjUID='12'/></r>");
    UXXmlWrapperBase with = tree.at("a");
    int uid = 3;
    EXPECT_EQ(vctree_get_plot_uid_from_tree(tree, uid), 0);
    EXPECT_EQ(uid, 3);
    EXPECT_EQ(vctree_get_plot_uid_from_tree(with, uid), 1);
    EXPECT_EQ(uid, 12);
}
TEST(vctree_set_data_marker_id_to_tree, WritesTheAttribute) {
    TestTree tree("<r/>");
    EXPECT_EQ(vctree_set_data_marker_id_to_tree(tree, 5), 1);
    EXPECT_EQ(tree.text(), tree_text("<r DataMarkerID='5'/>"));
}
TEST(vctree_get_data_marker_id_from_tree, AMissingOneLeavesTheVariable) {
    TestTree tree("<r><a DataMarkerID='12'/></r>");
    UXXmlWrapperBase with = tree.at("a");
    int id = 3;
    EXPECT_EQ(vctree_get_data_marker_id_from_tree(tree, id), 0);
    EXPECT_EQ(id, 3);
    EXPECT_EQ(vctree_get_data_marker_id_from_tree(with, id), 1);
    EXPECT_EQ(id, 12);
}
TEST(vctree_copy_plot_uid_from_tree_to_tree, CopiesWhatIsThere) {
    TestTree tree("<r><a PlotObjUID='12'/><b PlotObjUID='4'/><c/></r>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase b = tree.at("b");
    UXXmlWrapperBase c = tree.at("c");
    EXPECT_EQ(vctree_copy_plot_uid_from_tree_to_tree(b, c), 0);
    EXPECT_EQ(to_text(b), tree_text("<b PlotObjUID='4'/>"));
    EXPECT_EQ(vctree_copy_plot_uid_from_tree_to_tree(b, a), 1);
    EXPECT_EQ(to_text(b), tree_text("<b PlotObjUID='12'/>"));
}

}  // namespace
