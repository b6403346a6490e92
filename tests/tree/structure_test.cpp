// Moving, deleting, filtering, sorting and copying nodes.
#include "uxtree/tree/structure.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

using namespace uxtest;

namespace {

std::string moved(const char* tree, int from, int to, unsigned int flags = 0,
                  const char* attrName = nullptr) {
    TestTree parsed(tree);
    const int result = uxtree_move_node(&parsed, from, to, flags, attrName);
    return std::to_string(result) + " " + parsed.text();
}

const char* const kThree = "<r><a/><b/><c/></r>";

TEST(uxtree_move_node, FromAtOrBelowToStandsAfterTheTarget) {
    EXPECT_EQ(moved(kThree, 0, 1), "1 " + tree_text("<r><b/><a/><c/></r>"));
    EXPECT_EQ(moved(kThree, 0, 2), "1 " + tree_text("<r><b/><c/><a/></r>"));
    EXPECT_EQ(moved(kThree, 1, 1), "1 " + tree_text(kThree));
}

TEST(uxtree_move_node, FromAboveToStandsBeforeTheTarget) {
    EXPECT_EQ(moved(kThree, 2, 0), "1 " + tree_text("<r><c/><a/><b/></r>"));
    EXPECT_EQ(moved(kThree, 2, 1), "1 " + tree_text("<r><a/><c/><b/></r>"));
}

TEST(uxtree_move_node, ANegativeTargetMeansTheEndOfTheTree) {
    EXPECT_EQ(moved("<r><a><x/></a><b/></r>", 1, -1), "1 " + tree_text("<r><a/><b/><x/></r>"));
}

TEST(uxtree_move_node, AnUnreachableTargetOrSourceChangesNothing) {
    EXPECT_EQ(moved(kThree, 0, 3), "0 " + tree_text(kThree));
    EXPECT_EQ(moved(kThree, 3, 0), "0 " + tree_text(kThree));
    EXPECT_EQ(moved(kThree, -1, 0), "0 " + tree_text(kThree));
}

TEST(uxtree_move_node, TheWholeContentGoesAlong) {
    EXPECT_EQ(moved("<r><a k='1' _ux_id='7'>text<x><y/></x></a><b><c/></b></r>", 0, 4),
              "1 " + tree_text("<r><b><c/><a k='1' _ux_id='7'>text<x><y/></x></a></b></r>"));
}

TEST(uxtree_move_node, FlagsAndAttributeChooseTheNumbering) {
    const char* const tree = "<r><a m='1'/><b/><c m='1'/><d m='1'/></r>";

    EXPECT_EQ(moved(tree, 2, 1, 0x10000, "m"),
              "1 " + tree_text("<r><a m='1'/><b/><d m='1'/><c m='1'/></r>"));
}

TEST(uxtree_move_node, IntoItsOwnBranchLosesTheNode) {
    EXPECT_EQ(moved("<r><a><x/></a><b/></r>", 0, 1), "1 " + tree_text("<r><b/></r>"));
}

TEST(uxtree_move_node, HandlesToTheSourceBecomeInvalid) {
    TestTree tree("<r><a><x/></a><b/></r>");
    UXXmlWrapperBase source = tree.at("a");
    UXXmlWrapperBase inner = tree.at("a/x");
    UXXmlWrapperBase other = tree.at("b");

    EXPECT_EQ(uxtree_move_node(&tree, 0, 2, 0, nullptr), 1);

    EXPECT_FALSE(source.IsNodeValid());
    EXPECT_FALSE(inner.IsNodeValid());
    EXPECT_TRUE(other == tree.at("b"));
}

TEST(uxtree_append_children, NumbersTheCopiesBehindTheLargestId) {
    TestTree target("<t><Set1 _ux_id='4'/><set2 _ux_id='7'/><Other _ux_id='99'/><Set3/></t>");
    TestTree source("<s><Set1 _ux_id='1'><x _ux_id='2'/></Set1><y/><SETa/></s>");

    EXPECT_EQ(uxtree_append_children(&target, &source, "Set"), 10);

    EXPECT_EQ(target.text(),
              tree_text("<t><Set1 _ux_id='4'/><set2 _ux_id='7'/><Other _ux_id='99'/><Set3/>"
                        "<Set1 _ux_id='8'><x _ux_id='2'/></Set1><SETa _ux_id='9'/></t>"));
    EXPECT_EQ(source.text(),
              tree_text("<s><Set1 _ux_id='1'><x _ux_id='2'/></Set1><y/><SETa/></s>"));
}

TEST(uxtree_append_children, WithoutMatchingChildrenTheCopiesKeepTheirIds) {
    TestTree target("<t><Other _ux_id='99'/><Set/></t>");
    TestTree source("<s><Set1 _ux_id='5'/><Set2/></s>");

    EXPECT_EQ(uxtree_append_children(&target, &source, "Set"), 0);

    EXPECT_EQ(target.text(),
              tree_text("<t><Other _ux_id='99'/><Set/><Set1 _ux_id='5'/><Set2/></t>"));
}

TEST(uxtree_append_children, AnIdOfZeroStartsAtOne) {
    TestTree target("<t><a/></t>");
    TestTree source("<s><b/><c/></s>");
    target.at("a").SetID(0, false);

    EXPECT_EQ(uxtree_append_children(&target, &source, nullptr), 3);

    EXPECT_EQ(target.text(), tree_text("<t><a _ux_id='0'/><b _ux_id='1'/><c _ux_id='2'/></t>"));
}

TEST(uxtree_append_children, IdsBelowMinusOneHaveALargestOneToo) {
    TestTree target("<t><a _ux_id='-5'/><a _ux_id='-9'/><a/></t>");
    TestTree source("<s><b _ux_id='3'/><c/></s>");

    EXPECT_EQ(uxtree_append_children(&target, &source, nullptr), -4);

    EXPECT_EQ(target.text(),
              tree_text("<t><a _ux_id='-5'/><a _ux_id='-9'/><a/><b _ux_id='3'/><c/></t>"));
}

TEST(uxtree_append_children, TheSourceMayBeTheTarget) {
    TestTree tree("<r><a _ux_id='1'/><b/></r>");

    EXPECT_EQ(uxtree_append_children(&tree, &tree, ""), 4);

    EXPECT_EQ(tree.text(), tree_text("<r><a _ux_id='1'/><b/><a _ux_id='2'/><b _ux_id='3'/></r>"));
}

TEST(uxtree_append_children, TheTargetMayStandInsideTheSource) {
    TestTree tree("<r><a><x/></a><b/></r>");
    UXXmlWrapperBase inner = tree.at("a");

    EXPECT_EQ(uxtree_append_children(&inner, &tree, ""), 0);
    EXPECT_EQ(tree.text(), tree_text("<r><a><x/><a><x/></a><b/></a><b/></r>"));
    EXPECT_EQ(uxtree_append_children(&tree, &inner, "x"), 0);
    EXPECT_EQ(tree.text(), tree_text("<r><a><x/><a><x/></a><b/></a><b/><x/></r>"));
}

TEST(uxtree_polish_tree_keep_DataID, KeepsOnlyTheExactName) {
    TestTree tree(
        "<r Label='x' DataID='1'><a dataid='2' _ux_id='5'><b Z='1' DataID='3' A='2'/></a>"
        "text</r>");

    uxtree_polish_tree_keep_DataID(&tree);

    EXPECT_EQ(tree.text(), tree_text("<r DataID='1'><a _ux_id='5'><b DataID='3'/></a>text</r>"));
}

std::string adapted(const std::string& name) {
    CStringUTF8 text = name.c_str();
    const int result = uxtree_adapt_for_tagname(&text);
    return std::to_string(result) + " " + static_cast<const char*>(text);
}

TEST(uxtree_adapt_for_tagname, MakesAValidName) {
    EXPECT_EQ(adapted("Range 1"), "1 Range_1");
    EXPECT_EQ(adapted("1st:b"), "1 _1st_b");
    EXPECT_EQ(adapted("Valid-1.x"), "0 Valid-1.x");
    EXPECT_EQ(adapted("\xC3\xA4"), "0 \xC3\xA4");
}

TEST(uxtree_adapt_for_tagname, AnEmptyNameStays) {
    EXPECT_EQ(adapted(""), "0 ");
}

TEST(uxtree_adapt_for_tagname, CutsLongNamesOnACharacterBoundary) {
    const std::string longest(1023, 'a');

    EXPECT_EQ(adapted(longest), "0 " + longest);
    EXPECT_EQ(adapted(longest + "b"), "1 " + longest);
    const std::string before(1022, 'a');
    EXPECT_EQ(adapted(before + "\xC3\xA4" + "c"), "1 " + before);
    EXPECT_EQ(adapted(before.substr(1) + "\xC3\xA4" + "c"), "1 " + before.substr(1) + "\xC3\xA4");
}

std::string copied(const char* source, const char* target,
                   const std::vector<std::string>& skip = {}) {
    TestTree from(source);
    TestTree to(target);
    CWBOStringArray names = string_list(skip);
    const int result = VCTreeCopyWithSkipping(&to, &from, &names, 0);
    EXPECT_EQ(from.text(), tree_text(source));
    return std::to_string(result) + " " + to.text();
}

TEST(VCTreeCopyWithSkipping, CopiesBranchesWithValues) {
    EXPECT_EQ(copied("<s k='1'><a j='2' _ux_id='3'><b>x</b></a><c>y</c></s>", "<t/>"),
              "2 " + tree_text("<t k='1'><a j='2' _ux_id='3'><b>x</b></a><c>y</c></t>"));
}

TEST(VCTreeCopyWithSkipping, DropsWhatHasNoValue) {
    EXPECT_EQ(copied("<s><a k='1'/><b>own<c/><d><e/></d></b><f><g/><h>x</h></f></s>", "<t/>"),
              "1 " + tree_text("<t><f><h>x</h></f></t>"));
}

TEST(VCTreeCopyWithSkipping, ABranchLosesItsOwnText) {
    EXPECT_EQ(copied("<s>own<a>also<b>x</b></a></s>", "<t/>"),
              "1 " + tree_text("<t><a><b>x</b></a></t>"));
}

TEST(VCTreeCopyWithSkipping, LeavesMarkedBranchesOut) {
    EXPECT_EQ(copied("<s><a no=''><b>x</b></a><c><d never='1'>y</d><e>z</e></c></s>", "<t/>",
                     {"no", "never"}),
              "1 " + tree_text("<t><c><e>z</e></c></t>"));
}

TEST(VCTreeCopyWithSkipping, AMarkedSourceCopiesNothing) {
    EXPECT_EQ(copied("<s k='1' no=''><a>x</a></s>", "<t/>", {"no"}), "0 " + tree_text("<t/>"));
}

TEST(VCTreeCopyWithSkipping, ALeafGivesItsValueAndCountsNoChildren) {
    EXPECT_EQ(copied("<s k='1'>x</s>", "<t>old<a/></t>"), "0 " + tree_text("<t k='1'>x<a/></t>"));
    EXPECT_EQ(copied("<s k='1'/>", "<t>old</t>"), "0 " + tree_text("<t k='1'>old</t>"));
}

TEST(VCTreeCopyWithSkipping, TheTargetsOwnChildrenStay) {
    EXPECT_EQ(copied("<s><a>x</a></s>", "<t j='1'><a>old</a></t>"),
              "1 " + tree_text("<t j='1'><a>old</a><a>x</a></t>"));
}

TEST(VCTreeCopyWithSkipping, TheSkipListIsOptional) {
    TestTree source("<s><a>x</a></s>");
    TestTree target("<t/>");

    EXPECT_EQ(VCTreeCopyWithSkipping(&target, &source, nullptr, 0xFFFFFFFF), 1);

    EXPECT_EQ(target.text(), tree_text("<t><a>x</a></t>"));
}

TEST(VCTreeCopyWithSkipping, TheTreesMayOverlap) {
    TestTree tree("<r k='1'><a>x</a><b><c>y</c></b></r>");
    UXXmlWrapperBase inner = tree.at("b");

    EXPECT_EQ(VCTreeCopyWithSkipping(&tree, &tree, nullptr, 0), 2);
    EXPECT_EQ(tree.text(),
              tree_text("<r k='1'><a>x</a><b><c>y</c></b><a>x</a><b><c>y</c></b></r>"));
    EXPECT_EQ(VCTreeCopyWithSkipping(&inner, &tree, nullptr, 0), 4);
    EXPECT_EQ(tree.text(),
              tree_text("<r k='1'><a>x</a><b k='1'><c>y</c><a>x</a><b><c>y</c></b><a>x</a>"
                        "<b><c>y</c></b></b><a>x</a><b><c>y</c></b></r>"));
}

TEST(VCTreeCopyWithSkipping, TheSourceMayStandInsideTheTarget) {
    TestTree tree("<r><a k='1'><b>x</b></a></r>");
    UXXmlWrapperBase inner = tree.at("a");

    EXPECT_EQ(VCTreeCopyWithSkipping(&tree, &inner, nullptr, 0), 1);

    EXPECT_EQ(tree.text(), tree_text("<r k='1'><a k='1'><b>x</b></a><b>x</b></r>"));
}

TEST(uxtree_copy_with_skipping, ForwardsTheStringArray) {
    TestTree source("<s><a no=''>x</a><b>y</b></s>");
    TestTree target("<t/>");
    auto skip = script_texts({"no"});

    EXPECT_EQ(uxtree_copy_with_skipping(&target, &source, &skip, 0), 1);
    EXPECT_EQ(target.text(), tree_text("<t><b>y</b></t>"));
    EXPECT_EQ(uxtree_copy_with_skipping(&target, &source, nullptr, 0), 2);
    EXPECT_EQ(target.text(), tree_text("<t><b>y</b><a no=''>x</a><b>y</b></t>"));
}

TEST(VCTreeSetTagName, RenamesInPlace) {
    TestTree tree("<r><a k='1' _ux_id='2'>text<b/></a><c/></r>");
    UXXmlWrapperBase node = tree.at("a");

    EXPECT_EQ(VCTreeSetTagName(&node, "new"), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><new k='1' _ux_id='2'>text<b/></new><c/></r>"));
    EXPECT_TRUE(node == tree.at("new"));
}

TEST(VCTreeSetTagName, RefusesWhatIsNoName) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase node = tree.at("a");

    EXPECT_EQ(VCTreeSetTagName(&node, ""), 0);
    EXPECT_EQ(VCTreeSetTagName(&node, "no name"), 0);
    EXPECT_EQ(VCTreeSetTagName(&node, "a/"), 0);

    EXPECT_EQ(tree.text(), tree_text("<r><a/></r>"));
}

}  // namespace
