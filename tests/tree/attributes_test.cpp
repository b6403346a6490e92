#include "uxtree/tree/attributes.h"

#include <climits>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

using namespace uxtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string xml(const char* text) {
    return TestTree(text).text();
}

std::function<bool(UXXmlWrapperBase&)> has_label(const char* wanted) {
    return [wanted](UXXmlWrapperBase& node) {
        CStringUTF8 label;
        return node.GetPropertyValue("Label", label, 0) && label == wanted;
    };
}

TEST(uxtree_modify_attribute, ClearsAndSetsBits) {
    TestTree tree("<r k='7'/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_TRUE(uxtree_modify_attribute(&root, "k", 8, 3));

    EXPECT_EQ(tree.text(), xml("<r k='12'/>"));
}

TEST(uxtree_modify_attribute, SettingWinsOverClearing) {
    TestTree tree("<r k='0'/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_TRUE(uxtree_modify_attribute(&root, "k", 4, 4));

    EXPECT_EQ(tree.text(), xml("<r k='4'/>"));
}

TEST(uxtree_modify_attribute, CreatesTheAttributeEvenWithZero) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_TRUE(uxtree_modify_attribute(&root, "k", 0, 1));

    EXPECT_EQ(tree.text(), xml("<r k='0'/>"));
}

TEST(uxtree_modify_attribute, ATextThatIsNoNumberReadsAsZero) {
    TestTree tree("<r k='x'/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_TRUE(uxtree_modify_attribute(&root, "k", 2, 0));

    EXPECT_EQ(tree.text(), xml("<r k='2'/>"));
}

TEST(uxtree_modify_attribute, TheHighestBitIsASign) {
    TestTree tree("<r k='1'/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_TRUE(uxtree_modify_attribute(&root, "k", 0x80000000U, 0));

    EXPECT_EQ(tree.text(), xml("<r k='-2147483647'/>"));
}

TEST(uxtree_modify_attribute, FailsWithBadArguments) {
    TestTree tree("<r k='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_FALSE(uxtree_modify_attribute(nullptr, "k", 2, 0));
    EXPECT_FALSE(uxtree_modify_attribute(&invalid, "k", 2, 0));
    EXPECT_FALSE(uxtree_modify_attribute(&root, nullptr, 2, 0));
    EXPECT_FALSE(uxtree_modify_attribute(&root, "", 2, 0));
    EXPECT_FALSE(uxtree_modify_attribute(&root, "no name", 2, 0));

    EXPECT_EQ(tree.text(), xml("<r k='1'/>"));
}

TEST(vctree_modify_DWORD_attribute, ClearingWinsOverSetting) {
    TestTree tree("<r k='3'/>");
    UXXmlWrapperBase root = tree.root();

    vctree_modify_DWORD_attribute(&root, "k", 4 | 1, 4 | 8);

    EXPECT_EQ(tree.text(), xml("<r k='10'/>"));
}

TEST(vctree_modify_DWORD_attribute, CreatesNothingWhenThereIsNothingToSet) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();

    vctree_modify_DWORD_attribute(&root, "k", 1, 0);

    EXPECT_EQ(tree.text(), xml("<r/>"));
}

TEST(vctree_modify_DWORD_attribute, CreatesTheAttributeWhenThereIsABitToSet) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();

    vctree_modify_DWORD_attribute(&root, "k", 2, 2);

    EXPECT_EQ(tree.text(), xml("<r k='0'/>"));
}

TEST(vctree_modify_DWORD_attribute, ATextThatIsNoNumberIsThereAndReadsAsZero) {
    TestTree tree("<r k='x'/>");
    UXXmlWrapperBase root = tree.root();

    vctree_modify_DWORD_attribute(&root, "k", 1, 0);

    EXPECT_EQ(tree.text(), xml("<r k='0'/>"));
}

TEST(vctree_modify_DWORD_attribute, DoesNothingWithBadArguments) {
    TestTree tree("<r k='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    vctree_modify_DWORD_attribute(nullptr, "k", 1, 2);
    vctree_modify_DWORD_attribute(&invalid, "k", 1, 2);
    vctree_modify_DWORD_attribute(&root, nullptr, 1, 2);

    EXPECT_EQ(tree.text(), xml("<r k='1'/>"));
}

TEST(uxtree_remove_attribute, CountsEveryRemovalBelow) {
    TestTree tree("<r k='1'><a k='' j='1'><b k='2'/></a><c/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_remove_attribute(&root, "k", 0), 2);

    EXPECT_EQ(tree.text(), xml("<r k='1'><a j='1'><b/></a><c/></r>"));
}

TEST(uxtree_remove_attribute, IncludesTheGivenNodeWhenAsked) {
    TestTree tree("<r k='1'><a k='1'/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_remove_attribute(&root, "k", 1), 2);
    EXPECT_EQ(uxtree_remove_attribute(&root, "k", 1), 0);
    EXPECT_EQ(uxtree_remove_attribute(&root, "", 1), 0);

    EXPECT_EQ(tree.text(), xml("<r><a/></r>"));
}

TEST(uxtree_remove_attribute, FailsWithBadArguments) {
    TestTree tree("<r k='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_remove_attribute(nullptr, "k", 1), -1);
    EXPECT_EQ(uxtree_remove_attribute(&invalid, "k", 1), -1);
    EXPECT_EQ(uxtree_remove_attribute(&root, nullptr, 1), -1);

    EXPECT_EQ(tree.text(), xml("<r k='1'/>"));
}

TEST(uxtree_store_attribute, RenamesTheAttributeEverywhere) {
    TestTree tree("<r k='1'><a k='2'><b k='3'/></a><c j='4'/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_store_attribute(&root, "k"), 3);

    EXPECT_EQ(
        tree.text(),
        xml("<r StorePrefixk='1'><a StorePrefixk='2'><b StorePrefixk='3'/></a><c j='4'/></r>"));
}

TEST(uxtree_store_attribute, FailsWithBadArguments) {
    TestTree tree("<r k='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_store_attribute(nullptr, "k"), -1);
    EXPECT_EQ(uxtree_store_attribute(&invalid, "k"), -1);
    EXPECT_EQ(uxtree_store_attribute(&root, nullptr), -1);
    EXPECT_EQ(uxtree_store_attribute(&root, ""), 0);

    EXPECT_EQ(tree.text(), xml("<r k='1'/>"));
}

TEST(uxtree_restore_attribute, UndoesAStore) {
    TestTree tree("<r k='1'><a k='-2' j='5'/></r>");
    UXXmlWrapperBase root = tree.root();
    uxtree_store_attribute(&root, "k");

    EXPECT_EQ(uxtree_restore_attribute(&root, "k"), 2);

    EXPECT_EQ(tree.text(), xml("<r k='1'><a j='5' k='-2'/></r>"));
}

TEST(uxtree_restore_attribute, ATextThatIsNoIntegerComesBackAsZero) {
    TestTree tree("<r><a k='text'/><b k=''/><c k='2.9'/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_store_attribute(&root, "k"), 3);
    EXPECT_EQ(uxtree_restore_attribute(&root, "k"), 3);

    EXPECT_EQ(tree.text(), xml("<r><a k='0'/><b k='0'/><c k='2'/></r>"));
}

TEST(uxtree_restore_attribute, ASavedCopyReplacesTheAttributeInItsPlace) {
    TestTree tree("<r k='9' j='1' StorePrefixk='4'/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_restore_attribute(&root, "k"), 1);

    EXPECT_EQ(tree.text(), xml("<r k='4' j='1'/>"));
}

TEST(uxtree_restore_attribute, ANameThatCannotBeSetLosesNothing) {
    TestTree tree("<r StorePrefix='4' StorePrefix1='5'/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_restore_attribute(&root, ""), 0);
    EXPECT_EQ(uxtree_restore_attribute(&root, "1"), 0);

    EXPECT_EQ(tree.text(), xml("<r StorePrefix='4' StorePrefix1='5'/>"));
}

TEST(uxtree_restore_attribute, FailsWithBadArguments) {
    TestTree tree("<r StorePrefixk='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_restore_attribute(nullptr, "k"), -1);
    EXPECT_EQ(uxtree_restore_attribute(&invalid, "k"), -1);
    EXPECT_EQ(uxtree_restore_attribute(&root, nullptr), -1);

    EXPECT_EQ(tree.text(), xml("<r StorePrefixk='1'/>"));
}

TEST(uxtree_node_copy_attribute, CopiesTheText) {
    TestTree tree("<r><a k=' x '/><b/></r>");
    UXXmlWrapperBase source = tree.at("a");
    UXXmlWrapperBase target = tree.at("b");

    EXPECT_EQ(uxtree_node_copy_attribute(&source, &target, "k"), 1);
    EXPECT_EQ(uxtree_node_copy_attribute(&source, &target, "j"), 0);

    EXPECT_EQ(tree.text(), xml("<r><a k=' x '/><b k=' x '/></r>"));
}

TEST(uxtree_node_copy_attribute, FailsWithBadArguments) {
    TestTree tree("<r k='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_node_copy_attribute(nullptr, &root, "k"), 0);
    EXPECT_EQ(uxtree_node_copy_attribute(&root, nullptr, "k"), 0);
    EXPECT_EQ(uxtree_node_copy_attribute(&invalid, &root, "k"), 0);
    EXPECT_EQ(uxtree_node_copy_attribute(&root, &invalid, "k"), 0);
    EXPECT_EQ(uxtree_node_copy_attribute(&root, &root, nullptr), 0);
}

TEST(uxtree_copy_atts, PairsNodesByPosition) {
    TestTree source("<s k='0'><a k='1'><b k='2'/><c/></a><d k='3'/></s>");
    TestTree target("<t><x><y/><z k='old'/></x><w/></t>");
    UXXmlWrapperBase from = source.root();
    UXXmlWrapperBase to = target.root();

    EXPECT_EQ(uxtree_copy_atts(&from, &to, "k", 0), 4);

    EXPECT_EQ(target.text(), xml("<t k='0'><x k='1'><y k='2'/><z k='old'/></x><w k='3'/></t>"));
}

TEST(uxtree_copy_atts, ChildrenOnlySparesTheTopPairAlone) {
    TestTree source("<s k='0'><a k='1'><b k='2'/></a></s>");
    TestTree target("<t><x><y/></x></t>");
    UXXmlWrapperBase from = source.root();
    UXXmlWrapperBase to = target.root();

    EXPECT_EQ(uxtree_copy_atts(&from, &to, "k", 1), 2);

    EXPECT_EQ(target.text(), xml("<t><x k='1'><y k='2'/></x></t>"));
}

TEST(uxtree_copy_atts, SurplusChildrenOnEitherSideAreIgnored) {
    TestTree source("<s><a><b k='1'/><c k='2'/></a><d k='3'/></s>");
    TestTree target("<t><x><y/></x><z><v/></z><w/></t>");
    UXXmlWrapperBase from = source.root();
    UXXmlWrapperBase to = target.root();

    EXPECT_EQ(uxtree_copy_atts(&from, &to, "k", 0), 2);

    EXPECT_EQ(target.text(), xml("<t><x><y k='1'/></x><z k='3'><v/></z><w/></t>"));
}

TEST(uxtree_copy_atts, StaysBelowTheGivenNodes) {
    TestTree source("<o><s k='0'/><after k='9'/></o>");
    TestTree target("<o><t/><after/></o>");
    UXXmlWrapperBase from = source.at("s");
    UXXmlWrapperBase to = target.at("t");

    EXPECT_EQ(uxtree_copy_atts(&from, &to, "k", 0), 1);

    EXPECT_EQ(target.text(), xml("<o><t k='0'/><after/></o>"));
}

TEST(uxtree_copy_atts, TheTreesMayOverlap) {
    TestTree tree("<r k='1'><a k='2'><b/></a></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase inner = tree.at("a");

    EXPECT_EQ(uxtree_copy_atts(&root, &inner, "k", 0), 2);
    EXPECT_EQ(uxtree_copy_atts(&root, &root, "k", 0), 3);

    EXPECT_EQ(tree.text(), xml("<r k='1'><a k='1'><b k='1'/></a></r>"));
}

TEST(uxtree_copy_atts, FailsWithBadArguments) {
    TestTree tree("<r k='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_copy_atts(nullptr, &root, "k", 0), -1);
    EXPECT_EQ(uxtree_copy_atts(&root, nullptr, "k", 0), -1);
    EXPECT_EQ(uxtree_copy_atts(&invalid, &root, "k", 0), -1);
    EXPECT_EQ(uxtree_copy_atts(&root, &invalid, "k", 0), -1);
    EXPECT_EQ(uxtree_copy_atts(&root, &root, nullptr, 0), -1);
}

TEST(uxtree_set_attribute_bit_if_not_empty, NeedsAFilledLeafAndTheAttribute) {
    TestTree tree("<r><a k='1'><x>text</x></a><b k='1'><x/></b><c><x>text</x></c></r>");
    UXXmlWrapperBase filled = tree.at("a");
    UXXmlWrapperBase empty = tree.at("b");
    UXXmlWrapperBase bare = tree.at("c");

    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&filled, "k", 6, false), 1);
    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&empty, "k", 6, false), 0);
    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&bare, "k", 6, false), 0);

    EXPECT_EQ(tree.text(),
              xml("<r><a k='7'><x>text</x></a><b k='1'><x/></b><c><x>text</x></c></r>"));
}

TEST(uxtree_set_attribute_bit_if_not_empty, LooksDeeperOnlyWhenAsked) {
    TestTree tree("<r k='0'>own<a>own<b>text</b></a></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&root, "k", 1, false), 0);
    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&root, "k", 1, true), 1);

    EXPECT_EQ(tree.text(), xml("<r k='1'>own<a>own<b>text</b></a></r>"));
}

TEST(uxtree_set_attribute_bit_if_not_empty, TheAttributeMustBeAnInteger) {
    TestTree tree("<r k='x'><a>text</a></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&root, "k", 1, true), 0);
    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&root, nullptr, 1, true), 0);
    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(nullptr, "k", 1, true), 0);
    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&invalid, "k", 1, true), 0);

    EXPECT_EQ(tree.text(), xml("<r k='x'><a>text</a></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, SetsTheNodeAndEverythingBelow) {
    TestTree tree("<r><a><b/></a><c k='1'/></r>");
    UXXmlWrapperBase root = tree.root();

    uxtree_set_attribute_to_all_nodes(&root, "k", "v", false, false);

    EXPECT_EQ(tree.text(), xml("<r k='v'><a k='v'><b k='v'/></a><c k='v'/></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, LeavesLeavesOutWhenAsked) {
    TestTree tree("<r><a><b/></a><c/></r>");
    UXXmlWrapperBase root = tree.root();

    uxtree_set_attribute_to_all_nodes(&root, "k", "v", false, true);

    EXPECT_EQ(tree.text(), xml("<r k='v'><a k='v'><b/></a><c/></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, ChildrenOnlyMeansTheDirectChildren) {
    TestTree tree("<r><a><b/></a><c/></r>");
    UXXmlWrapperBase root = tree.root();

    uxtree_set_attribute_to_all_nodes(&root, "k", "v", true, false);
    uxtree_set_attribute_to_all_nodes(&root, "j", "w", true, true);

    EXPECT_EQ(tree.text(), xml("<r><a k='v' j='w'><b/></a><c k='v'/></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, AutoSwitchesTheSupportOnWhateverTheValue) {
    TestTree tree("<r DynaFx='1'><a Auto='0|Fit|3'/></r>");
    UXXmlWrapperBase root = tree.root();

    uxtree_set_attribute_to_all_nodes(&root, "Auto", "0", false, false);

    EXPECT_EQ(tree.text(), xml("<r Auto='1|Auto|1'><a Auto='1|Fit|3'/></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, ANullValueWritesAnEmptyText) {
    TestTree tree("<r k='1'/>");
    UXXmlWrapperBase root = tree.root();

    uxtree_set_attribute_to_all_nodes(&root, "k", nullptr, false, false);

    EXPECT_EQ(tree.text(), xml("<r k=''/>"));
}

TEST(uxtree_set_attribute_to_all_nodes, DoesNothingWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    uxtree_set_attribute_to_all_nodes(nullptr, "k", "v", false, false);
    uxtree_set_attribute_to_all_nodes(&invalid, "k", "v", false, false);
    uxtree_set_attribute_to_all_nodes(&root, nullptr, "v", false, false);
    uxtree_set_attribute_to_all_nodes(&root, "", "v", false, false);

    EXPECT_EQ(tree.text(), xml("<r/>"));
}

TEST(uxtree_set_attribute_with_skip, WritesLeavesThatAreNotSkipped) {
    TestTree tree("<r><a t='No'/><b t='yes'/><c/><d><e t='NO'/><f/></d></r>");
    UXXmlWrapperBase root = tree.root();
    auto skip = script_texts({"no", "never"});

    uxtree_set_attribute_with_skip(&root, "k", "v", "t", &skip, false, false);

    EXPECT_EQ(tree.text(), xml("<r><a t='No'/><b t='yes' k='v'/><c k='v'/>"
                               "<d><e t='NO'/><f k='v'/></d></r>"));
}

TEST(uxtree_set_attribute_with_skip, ASkippedBranchDoesNotProtectItsNodes) {
    TestTree tree("<r t='no'><a t='no'><b/></a><c><d/></c></r>");
    UXXmlWrapperBase root = tree.root();
    auto skip = script_texts({"no"});

    uxtree_set_attribute_with_skip(&root, "k", "v", "t", &skip, true, false);

    EXPECT_EQ(tree.text(), xml("<r t='no'><a t='no'><b k='v'/></a><c k='v'><d k='v'/></c></r>"));
}

TEST(uxtree_set_attribute_with_skip, RemovesInsteadWhenAsked) {
    TestTree tree("<r k='1'><a k='1' t='no'/><b k='1'/></r>");
    UXXmlWrapperBase root = tree.root();
    auto skip = script_texts({"no"});

    uxtree_set_attribute_with_skip(&root, "k", "v", "t", &skip, false, true);

    EXPECT_EQ(tree.text(), xml("<r k='1'><a k='1' t='no'/><b/></r>"));
}

TEST(uxtree_set_attribute_with_skip, TheStartNodeTakesPart) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();

    uxtree_set_attribute_with_skip(&root, "k", nullptr, "t", nullptr, false, false);

    EXPECT_EQ(tree.text(), xml("<r k=''/>"));
}

TEST(uxtree_set_attribute_with_skip, AMissingListOrAttributeNameSkipsNothing) {
    TestTree tree("<r><a t='no'/></r>");
    UXXmlWrapperBase root = tree.root();
    auto skip = script_texts({"no"});

    uxtree_set_attribute_with_skip(&root, "k", "v", "t", nullptr, false, false);
    uxtree_set_attribute_with_skip(&root, "j", "v", "", &skip, false, false);

    EXPECT_EQ(tree.text(), xml("<r><a t='no' k='v' j='v'/></r>"));
}

TEST(uxtree_set_attribute_with_skip, DoesNothingWithBadArguments) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    auto ints = script_ints({1});

    uxtree_set_attribute_with_skip(nullptr, "k", "v", "t", nullptr, true, false);
    uxtree_set_attribute_with_skip(&invalid, "k", "v", "t", nullptr, true, false);
    uxtree_set_attribute_with_skip(&root, nullptr, "v", "t", nullptr, true, false);
    uxtree_set_attribute_with_skip(&root, "k", "v", "t", &ints, true, false);

    EXPECT_EQ(tree.text(), xml("<r/>"));
}

TEST(uxtree_count_items_by_attribute, CountsAsTheArgumentsSay) {
    TestTree tree("<r k='v'><a k='v'><b k='v'/></a><c k='V'/><d/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_count_items_by_attribute(&root, nullptr, "v", 0, 0), 3);
    EXPECT_EQ(uxtree_count_items_by_attribute(&root, nullptr, "v", 0, 1), 4);
    EXPECT_EQ(uxtree_count_items_by_attribute(&root, "k", nullptr, 0, 0), 2);
    EXPECT_EQ(uxtree_count_items_by_attribute(&root, "k", "v", 0, 0), 1);
    EXPECT_EQ(uxtree_count_items_by_attribute(&root, "k", "v", 0, 1), 2);
    EXPECT_EQ(uxtree_count_items_by_attribute(&root, "k", "", 0, 1), 0);
}

TEST(uxtree_count_items_by_attribute, MissingCountsOnlyNodesWithoutTheAttribute) {
    TestTree tree("<r><a k='other'/><b/><c k='v'/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(uxtree_count_items_by_attribute(&root, "k", "v", 1, 0), 2);
    EXPECT_EQ(uxtree_count_items_by_attribute(&root, "", "v", 1, 0), 3);
    EXPECT_EQ(uxtree_count_items_by_attribute(&root, "", "v", 0, 0), 0);
}

TEST(uxtree_count_items_by_attribute, TellsBadArgumentsFromALeaf) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_count_items_by_attribute(&root, nullptr, nullptr, 1, 1), 0);
    EXPECT_EQ(uxtree_count_items_by_attribute(nullptr, "k", "v", 1, 1), -1);
    EXPECT_EQ(uxtree_count_items_by_attribute(&invalid, "k", "v", 1, 1), -1);
}

TEST(uxtree_all_nodes_has_attrib, TestsTheDescendantsNotTheNode) {
    TestTree tree("<r><a k=''><b k='1'/></a><c k='2'><d/></c></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase complete = tree.at("a");
    UXXmlWrapperBase leaf = tree.at("c/d");

    EXPECT_EQ(uxtree_all_nodes_has_attrib(&complete, "k"), 1);
    EXPECT_EQ(uxtree_all_nodes_has_attrib(&leaf, "k"), 1);
    EXPECT_EQ(uxtree_all_nodes_has_attrib(&root, "k"), 0);
}

TEST(uxtree_all_nodes_has_attrib, FailsWithBadArguments) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_all_nodes_has_attrib(nullptr, "k"), 0);
    EXPECT_EQ(uxtree_all_nodes_has_attrib(&invalid, "k"), 0);
    EXPECT_EQ(uxtree_all_nodes_has_attrib(&root, nullptr), 0);
    EXPECT_EQ(uxtree_all_nodes_has_attrib(&root, ""), 0);
}

TEST(VCTreeAttributeValues, AppendsIntegersWithMinusOneForMissing) {
    TestTree tree("<r k='9'><a k='1'><b/></a><c k='x'/><d k='-4'/></r>");
    UXXmlWrapperBase root = tree.root();
    CArray<int, int> values = number_list<int>({100});

    EXPECT_EQ(VCTreeAttributeValues(&root, "k", 5, &values, 1, 0), 0);
    EXPECT_THAT(numbers(values), ElementsAre(100, 1, -1, -1, -4));
    values.RemoveAll();
    EXPECT_EQ(VCTreeAttributeValues(&root, "k", 5, &values, 1, 1), 0);
    EXPECT_THAT(numbers(values), ElementsAre(9, 1, -1, -1, -4));

    EXPECT_EQ(tree.text(), xml("<r k='9'><a k='1'><b/></a><c k='x'/><d k='-4'/></r>"));
}

TEST(VCTreeAttributeValues, WritesTheValueWithoutAnArray) {
    TestTree tree("<r k='9'><a><b k='1'/></a></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(VCTreeAttributeValues(&root, "k", -2, nullptr, 0, 0), 0);

    EXPECT_EQ(tree.text(), xml("<r k='9'><a k='-2'><b k='-2'/></a></r>"));
}

TEST(VCTreeAttributeValues, ANegativeValueRemovesWhenAsked) {
    TestTree tree("<r k='9'><a k='1'/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(VCTreeAttributeValues(&root, "k", 0, nullptr, 1, 0), 0);
    EXPECT_EQ(tree.text(), xml("<r k='9'><a k='0'/></r>"));
    EXPECT_EQ(VCTreeAttributeValues(&root, "k", -1, nullptr, 1, 1), 0);
    EXPECT_EQ(tree.text(), xml("<r><a/></r>"));
}

TEST(VCTreeAttributeValues, YieldsZeroWithBadArgumentsToo) {
    TestTree tree("<r k='1'/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    CArray<int, int> values;

    EXPECT_EQ(VCTreeAttributeValues(nullptr, "k", 1, &values, 0, 1), 0);
    EXPECT_EQ(VCTreeAttributeValues(&invalid, "k", 1, &values, 0, 1), 0);
    EXPECT_EQ(VCTreeAttributeValues(&root, nullptr, 1, &values, 0, 1), 0);

    EXPECT_THAT(numbers(values), IsEmpty());
    EXPECT_EQ(tree.text(), xml("<r k='1'/>"));
}

TEST(uxtree_attribute_values, CollectsOrWritesBelowTheNode) {
    TestTree tree("<r k='9'><a k='1'/><b/></r>");
    UXXmlWrapperBase root = tree.root();
    auto values = script_ints({});

    EXPECT_EQ(uxtree_attribute_values(&root, "k", 5, &values, 0), 0);
    EXPECT_THAT(numbers(values.array()), ElementsAre(1, -1));
    EXPECT_EQ(uxtree_attribute_values(&root, "k", 5, nullptr, 0), 0);

    EXPECT_EQ(tree.text(), xml("<r k='9'><a k='5'/><b k='5'/></r>"));
}

TEST(uxtree_attribute_values, AnUnusableArrayDoesNotFallIntoWriting) {
    TestTree tree("<r><a k='1'/></r>");
    UXXmlWrapperBase root = tree.root();
    auto texts = script_texts({});

    EXPECT_EQ(uxtree_attribute_values(&root, "k", 5, &texts, 0), -1);

    EXPECT_EQ(tree.text(), xml("<r><a k='1'/></r>"));
}

TEST(VCTreeGetAttributes, SkipIsAskedAboutTheFirstLevelOnly) {
    TestTree tree("<r><a Label='A'><x Label='skip'/></a><b Label='skip'><y/></b><c/></r>");
    UXXmlWrapperBase root = tree.root();
    CWBOStringArray labels;

    EXPECT_EQ(VCTreeGetAttributes(&root, &labels, "Label", false, has_label("skip")), 0);

    EXPECT_THAT(texts(labels), ElementsAre("A", "skip", ""));  // x stays, b and y are gone
}

TEST(VCTreeGetAttributes, AppendsAndTakesTheChildrenAloneWhenAsked) {
    TestTree tree("<r><a Label='A'><x Label='X'/></a><c Label='C'/></r>");
    UXXmlWrapperBase root = tree.root();
    CWBOStringArray labels = string_list({"before"});

    EXPECT_EQ(VCTreeGetAttributes(&root, &labels, "Label", true, nullptr), 0);

    EXPECT_THAT(texts(labels), ElementsAre("before", "A", "C"));
}

TEST(VCTreeGetAttributes, AThrowingSkipTestEndsWithZero) {
    TestTree tree("<r><a Label='A'/></r>");
    UXXmlWrapperBase root = tree.root();
    CWBOStringArray labels;

    EXPECT_EQ(VCTreeGetAttributes(&root, &labels, "Label", true,
                                  [](UXXmlWrapperBase&) -> bool { throw std::runtime_error("x"); }),
              0);

    EXPECT_THAT(texts(labels), IsEmpty());
}

TEST(VCTreeGetAttributes, YieldsZeroWithBadArgumentsToo) {
    TestTree tree("<r><a Label='A'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    CWBOStringArray labels;

    EXPECT_EQ(VCTreeGetAttributes(nullptr, &labels, "Label", true, nullptr), 0);
    EXPECT_EQ(VCTreeGetAttributes(&invalid, &labels, "Label", true, nullptr), 0);
    EXPECT_EQ(VCTreeGetAttributes(&root, nullptr, "Label", true, nullptr), 0);
    EXPECT_EQ(VCTreeGetAttributes(&root, &labels, nullptr, true, nullptr), 0);

    EXPECT_THAT(texts(labels), IsEmpty());
}

TEST(vctree_get_attributes, HasOneEntryPerNode) {
    TestTree tree("<r k='0'><a k='1'><b/></a><c k='3'/></r>");
    UXXmlWrapperBase root = tree.root();
    CWBOStringArray values;

    EXPECT_EQ(vctree_get_attributes(&root, &values, "k", false), 0);
    EXPECT_THAT(texts(values), ElementsAre("1", "", "3"));
    EXPECT_EQ(vctree_get_attributes(&root, &values, "k", true), 0);
    EXPECT_THAT(texts(values), ElementsAre("1", "", "3", "1", "3"));
    EXPECT_EQ(vctree_get_attributes(nullptr, &values, "k", true), 0);
    EXPECT_EQ(values.GetSize(), 5);
}

TEST(uxtree_get_attributes, NeedsAStringArray) {
    TestTree tree("<r><a k='1'><b k='2'/></a></r>");
    UXXmlWrapperBase root = tree.root();
    auto values = script_texts({});
    auto ints = script_ints({});

    EXPECT_EQ(uxtree_get_attributes(&root, &values, "k", 0), 0);
    EXPECT_THAT(texts(values.array()), ElementsAre("1", "2"));
    EXPECT_EQ(uxtree_get_attributes(&root, &ints, "k", 0), -1);
    EXPECT_EQ(uxtree_get_attributes(&root, nullptr, "k", 0), -1);
    EXPECT_EQ(uxtree_get_attributes(nullptr, &values, "k", 0), 0);
}

TEST(vctree_get_node_names, AppendsTheTagsInDocumentOrder) {
    TestTree tree("<r><a><b/><b/></a><c/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    CWBOStringArray names;

    vctree_get_node_names(&root, &names, false);
    EXPECT_THAT(texts(names), ElementsAre("a", "b", "b", "c"));
    vctree_get_node_names(&root, &names, true);
    EXPECT_THAT(texts(names), ElementsAre("a", "b", "b", "c", "a", "c"));
    vctree_get_node_names(nullptr, &names, true);
    vctree_get_node_names(&invalid, &names, true);
    vctree_get_node_names(&root, nullptr, true);
    EXPECT_EQ(names.GetSize(), 6);
}

TEST(uxtree_get_node_names, NeedsAStringArray) {
    TestTree tree("<r><a><b/></a></r>");
    UXXmlWrapperBase root = tree.root();
    auto names = script_texts({"before"});
    auto ints = script_ints({});

    EXPECT_EQ(uxtree_get_node_names(&root, &names, 0), 0);
    EXPECT_THAT(texts(names.array()), ElementsAre("before", "a", "b"));
    EXPECT_EQ(uxtree_get_node_names(&root, &ints, 0), -1);
    EXPECT_EQ(uxtree_get_node_names(&root, nullptr, 0), -1);
    EXPECT_EQ(uxtree_get_node_names(nullptr, &names, 0), 0);
}

TEST(VCTreeSetAttributes, EveryNodeWithOneOfTheIdentifiersReceivesTheAttribute) {
    TestTree tree("<r><a DataID='1'><b DataID='2'/></a><c DataID='2'/><d DataID='3'/></r>");
    UXXmlWrapperBase root = tree.root();
    CArray<int, int> ids = number_list<int>({1, 2});

    EXPECT_TRUE(VCTreeSetAttributes(&root, &ids, "v", "k", nullptr, true));

    EXPECT_EQ(tree.text(), xml("<r><a DataID='1' k='v'><b DataID='2' k='v'/></a>"
                               "<c DataID='2' k='v'/><d DataID='3'/></r>"));
}

TEST(VCTreeSetAttributes, TheKeyAndTheAttributeHaveDefaults) {
    TestTree tree("<r><a id='1' DataID='5'/><b DataID='1'/></r>");
    UXXmlWrapperBase root = tree.root();
    CArray<int, int> ids = number_list<int>({1});

    EXPECT_TRUE(VCTreeSetAttributes(&root, &ids, "v", "k", "id", true));
    EXPECT_TRUE(VCTreeSetAttributes(&root, &ids, "0", nullptr, "", true));

    EXPECT_EQ(tree.text(), xml("<r><a id='1' DataID='5' k='v'/><b DataID='1' Show='0'/></r>"));
}

TEST(VCTreeSetAttributes, TheResultIsThatOfTheLastSearch) {
    TestTree tree("<r><a DataID='1'/></r>");
    UXXmlWrapperBase root = tree.root();
    CArray<int, int> ids = number_list<int>({1, 7});

    EXPECT_FALSE(VCTreeSetAttributes(&root, &ids, "v", "k", nullptr, true));

    EXPECT_EQ(tree.text(), xml("<r><a DataID='1' k='v'/></r>"));
}

TEST(VCTreeSetAttributes, FailsWithBadArguments) {
    TestTree tree("<r><a DataID='1'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;
    CArray<int, int> ids = number_list<int>({1});
    CArray<int, int> none;

    EXPECT_FALSE(VCTreeSetAttributes(nullptr, &ids, "v", "k", nullptr, true));
    EXPECT_FALSE(VCTreeSetAttributes(&invalid, &ids, "v", "k", nullptr, true));
    EXPECT_FALSE(VCTreeSetAttributes(&root, nullptr, "v", "k", nullptr, true));
    EXPECT_FALSE(VCTreeSetAttributes(&root, &none, "v", "k", nullptr, true));

    EXPECT_EQ(tree.text(), xml("<r><a DataID='1'/></r>"));
}

TEST(uxtree_set_attributes, ForwardsTheIntegerVector) {
    TestTree tree("<r><a DataID='1'/></r>");
    UXXmlWrapperBase root = tree.root();
    auto ids = script_ints({1});
    auto texts = script_texts({"1"});

    EXPECT_EQ(uxtree_set_attributes(&root, &ids, "v", "k", nullptr, true), 1);
    EXPECT_EQ(uxtree_set_attributes(&root, &texts, "w", "k", nullptr, true), 0);
    EXPECT_EQ(uxtree_set_attributes(&root, nullptr, "w", "k", nullptr, true), 0);

    EXPECT_EQ(tree.text(), xml("<r><a DataID='1' k='v'/></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, WorksOnAVeryDeepTree) {
    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    UXXmlWrapperBase node = root;
    constexpr int kDepth = 200000;
    for (int i = 0; i < kDepth; ++i) node.AddNode(&node, "n", -1);

    uxtree_set_attribute_to_all_nodes(&root, "k", "1", false, false);

    EXPECT_EQ(uxtree_all_nodes_has_attrib(&root, "k"), 1);
    EXPECT_EQ(uxtree_copy_atts(&root, &root, "k", 0), kDepth + 1);
    EXPECT_EQ(uxtree_store_attribute(&root, "k"), kDepth + 1);
    EXPECT_EQ(uxtree_remove_attribute(&root, "StorePrefixk", 0), kDepth);
}

}  // namespace
