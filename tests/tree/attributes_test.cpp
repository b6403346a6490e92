// Attributes over trees: bits, copies, counts, store and restore.
#include "uxtree/tree/attributes.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/test_tree.h"

using namespace uxtest;

namespace {

std::string modified(const char* xml, unsigned int setBits, unsigned int clearBits) {
    TestTree tree(xml);
    EXPECT_TRUE(uxtree_modify_attribute(&tree, "k", setBits, clearBits));
    return tree.text();
}

TEST(uxtree_modify_attribute, ClearsAndSetsBits) {
    EXPECT_EQ(modified("<r k='7'/>", 8, 3), tree_text("<r k='12'/>"));
}

TEST(uxtree_modify_attribute, SettingWinsOverClearing) {
    EXPECT_EQ(modified("<r k='0'/>", 4, 4), tree_text("<r k='4'/>"));
}

TEST(uxtree_modify_attribute, CreatesTheAttributeEvenWithZero) {
    EXPECT_EQ(modified("<r/>", 0, 1), tree_text("<r k='0'/>"));
}

TEST(uxtree_modify_attribute, ATextThatIsNoNumberReadsAsZero) {
    EXPECT_EQ(modified("<r k='x'/>", 2, 0), tree_text("<r k='2'/>"));
}

TEST(uxtree_modify_attribute, TheHighestBitIsASign) {
    EXPECT_EQ(modified("<r k='1'/>", 0x80000000U, 0), tree_text("<r k='-2147483647'/>"));
}

TEST(uxtree_modify_attribute, RefusesWhatIsNoName) {
    TestTree tree("<r k='1'/>");

    EXPECT_FALSE(uxtree_modify_attribute(&tree, "", 2, 0));
    EXPECT_FALSE(uxtree_modify_attribute(&tree, "no name", 2, 0));

    EXPECT_EQ(tree.text(), tree_text("<r k='1'/>"));
}

std::string modified_dword(const char* xml, unsigned int clearBits, unsigned int setBits) {
    TestTree tree(xml);
    vctree_modify_DWORD_attribute(&tree, "k", clearBits, setBits);
    return tree.text();
}

TEST(vctree_modify_DWORD_attribute, ClearingWinsOverSetting) {
    EXPECT_EQ(modified_dword("<r k='3'/>", 4 | 1, 4 | 8), tree_text("<r k='10'/>"));
}

TEST(vctree_modify_DWORD_attribute, CreatesNothingWhenThereIsNothingToSet) {
    EXPECT_EQ(modified_dword("<r/>", 1, 0), tree_text("<r/>"));
}

TEST(vctree_modify_DWORD_attribute, CreatesTheAttributeWhenThereIsABitToSet) {
    EXPECT_EQ(modified_dword("<r/>", 2, 2), tree_text("<r k='0'/>"));
}

TEST(vctree_modify_DWORD_attribute, ATextThatIsNoNumberIsThereAndReadsAsZero) {
    EXPECT_EQ(modified_dword("<r k='x'/>", 1, 0), tree_text("<r k='0'/>"));
}

TEST(uxtree_remove_attribute, CountsEveryRemovalBelow) {
    TestTree tree("<r k='1'><a k='' j='1'><b k='2'/></a><c/></r>");

    EXPECT_EQ(uxtree_remove_attribute(&tree, "k", 0), 2);

    EXPECT_EQ(tree.text(), tree_text("<r k='1'><a j='1'><b/></a><c/></r>"));
}

TEST(uxtree_remove_attribute, IncludesTheGivenNodeWhenAsked) {
    TestTree tree("<r k='1'><a k='1'/></r>");

    EXPECT_EQ(uxtree_remove_attribute(&tree, "k", 1), 2);
    EXPECT_EQ(uxtree_remove_attribute(&tree, "k", 1), 0);
    EXPECT_EQ(uxtree_remove_attribute(&tree, "", 1), 0);

    EXPECT_EQ(tree.text(), tree_text("<r><a/></r>"));
}

TEST(uxtree_store_attribute, RenamesTheAttributeEverywhere) {
    TestTree tree("<r k='1'><a k='2'><b k='3'/></a><c j='4'/></r>");

    EXPECT_EQ(uxtree_store_attribute(&tree, "k"), 3);

    EXPECT_EQ(
        tree.text(),
        tree_text(
            "<r StorePrefixk='1'><a StorePrefixk='2'><b StorePrefixk='3'/></a><c j='4'/></r>"));
}

TEST(uxtree_store_attribute, StoresNoEmptyName) {
    TestTree tree("<r k='1'/>");

    EXPECT_EQ(uxtree_store_attribute(&tree, ""), 0);

    EXPECT_EQ(tree.text(), tree_text("<r k='1'/>"));
}

TEST(uxtree_restore_attribute, UndoesAStore) {
    TestTree tree("<r k='1'><a k='-2' j='5'/></r>");
    uxtree_store_attribute(&tree, "k");

    EXPECT_EQ(uxtree_restore_attribute(&tree, "k"), 2);

    EXPECT_EQ(tree.text(), tree_text("<r k='1'><a j='5' k='-2'/></r>"));
}

TEST(uxtree_restore_attribute, ATextThatIsNoIntegerComesBackAsZero) {
    TestTree tree("<r><a k='text'/><b k=''/><c k='2.9'/></r>");

    EXPECT_EQ(uxtree_store_attribute(&tree, "k"), 3);
    EXPECT_EQ(uxtree_restore_attribute(&tree, "k"), 3);

    EXPECT_EQ(tree.text(), tree_text("<r><a k='0'/><b k='0'/><c k='2'/></r>"));
}

TEST(uxtree_restore_attribute, ASavedCopyReplacesTheAttributeInItsPlace) {
    TestTree tree("<r k='9' j='1' StorePrefixk='4'/>");

    EXPECT_EQ(uxtree_restore_attribute(&tree, "k"), 1);

    EXPECT_EQ(tree.text(), tree_text("<r k='4' j='1'/>"));
}

TEST(uxtree_restore_attribute, ANameThatCannotBeSetLosesNothing) {
    TestTree tree("<r StorePrefix='4' StorePrefix1='5'/>");

    EXPECT_EQ(uxtree_restore_attribute(&tree, ""), 0);
    EXPECT_EQ(uxtree_restore_attribute(&tree, "1"), 0);

    EXPECT_EQ(tree.text(), tree_text("<r StorePrefix='4' StorePrefix1='5'/>"));
}

TEST(uxtree_node_copy_attribute, CopiesTheText) {
    TestTree tree("<r><a k=' x '/><b/></r>");
    UXXmlWrapperBase source = tree.at("a");
    UXXmlWrapperBase target = tree.at("b");

    EXPECT_EQ(uxtree_node_copy_attribute(&source, &target, "k"), 1);
    EXPECT_EQ(uxtree_node_copy_attribute(&source, &target, "j"), 0);

    EXPECT_EQ(tree.text(), tree_text("<r><a k=' x '/><b k=' x '/></r>"));
}

// The target after the attribute k was copied, as often as expected, from the source.
std::string with_copies(const char* source, const char* target, int childrenOnly, int expected) {
    TestTree from(source);
    TestTree to(target);
    EXPECT_EQ(uxtree_copy_atts(&from, &to, "k", childrenOnly), expected);
    return to.text();
}

TEST(uxtree_copy_atts, PairsNodesByPosition) {
    EXPECT_EQ(with_copies("<s k='0'><a k='1'><b k='2'/><c/></a><d k='3'/></s>",
                          "<t><x><y/><z k='old'/></x><w/></t>", 0, 4),
              tree_text("<t k='0'><x k='1'><y k='2'/><z k='old'/></x><w k='3'/></t>"));
}

TEST(uxtree_copy_atts, ChildrenOnlySparesTheTopPairAlone) {
    EXPECT_EQ(with_copies("<s k='0'><a k='1'><b k='2'/></a></s>", "<t><x><y/></x></t>", 1, 2),
              tree_text("<t><x k='1'><y k='2'/></x></t>"));
}

TEST(uxtree_copy_atts, SurplusChildrenOnEitherSideAreIgnored) {
    EXPECT_EQ(with_copies("<s><a><b k='1'/><c k='2'/></a><d k='3'/></s>",
                          "<t><x><y/></x><z><v/></z><w/></t>", 0, 2),
              tree_text("<t><x><y k='1'/></x><z k='3'><v/></z><w/></t>"));
}

TEST(uxtree_copy_atts, StaysBelowTheGivenNodes) {
    TestTree source("<o><s k='0'/><after k='9'/></o>");
    TestTree target("<o><t/><after/></o>");
    UXXmlWrapperBase from = source.at("s");
    UXXmlWrapperBase to = target.at("t");

    EXPECT_EQ(uxtree_copy_atts(&from, &to, "k", 0), 1);

    EXPECT_EQ(target.text(), tree_text("<o><t k='0'/><after/></o>"));
}

TEST(uxtree_copy_atts, TheTreesMayOverlap) {
    TestTree tree("<r k='1'><a k='2'><b/></a></r>");
    UXXmlWrapperBase inner = tree.at("a");

    EXPECT_EQ(uxtree_copy_atts(&tree, &inner, "k", 0), 2);
    EXPECT_EQ(uxtree_copy_atts(&tree, &tree, "k", 0), 3);

    EXPECT_EQ(tree.text(), tree_text("<r k='1'><a k='1'><b k='1'/></a></r>"));
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
              tree_text("<r><a k='7'><x>text</x></a><b k='1'><x/></b><c><x>text</x></c></r>"));
}

TEST(uxtree_set_attribute_bit_if_not_empty, LooksDeeperOnlyWhenAsked) {
    TestTree tree("<r k='0'>own<a>own<b>text</b></a></r>");

    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&tree, "k", 1, false), 0);
    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&tree, "k", 1, true), 1);

    EXPECT_EQ(tree.text(), tree_text("<r k='1'>own<a>own<b>text</b></a></r>"));
}

TEST(uxtree_set_attribute_bit_if_not_empty, TheAttributeMustBeAnInteger) {
    TestTree tree("<r k='x'><a>text</a></r>");

    EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&tree, "k", 1, true), 0);

    EXPECT_EQ(tree.text(), tree_text("<r k='x'><a>text</a></r>"));
}

std::string after_setting(const char* xml, const char* name, const char* value, bool childrenOnly,
                          bool branchesOnly) {
    TestTree tree(xml);
    uxtree_set_attribute_to_all_nodes(&tree, name, value, childrenOnly, branchesOnly);
    return tree.text();
}

TEST(uxtree_set_attribute_to_all_nodes, SetsTheNodeAndEverythingBelow) {
    EXPECT_EQ(after_setting("<r><a><b/></a><c k='1'/></r>", "k", "v", false, false),
              tree_text("<r k='v'><a k='v'><b k='v'/></a><c k='v'/></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, LeavesLeavesOutWhenAsked) {
    EXPECT_EQ(after_setting("<r><a><b/></a><c/></r>", "k", "v", false, true),
              tree_text("<r k='v'><a k='v'><b/></a><c/></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, ChildrenOnlyMeansTheDirectChildren) {
    TestTree tree("<r><a><b/></a><c/></r>");

    uxtree_set_attribute_to_all_nodes(&tree, "k", "v", true, false);
    uxtree_set_attribute_to_all_nodes(&tree, "j", "w", true, true);

    EXPECT_EQ(tree.text(), tree_text("<r><a k='v' j='w'><b/></a><c k='v'/></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, AutoSwitchesTheSupportOnWhateverTheValue) {
    EXPECT_EQ(after_setting("<r DynaFx='1'><a Auto='0|Fit|3'/></r>", "Auto", "0", false, false),
              tree_text("<r Auto='1|Auto|1'><a Auto='1|Fit|3'/></r>"));
}

TEST(uxtree_set_attribute_to_all_nodes, ANullValueWritesAnEmptyText) {
    EXPECT_EQ(after_setting("<r k='1'/>", "k", nullptr, false, false), tree_text("<r k=''/>"));
}

TEST(uxtree_set_attribute_to_all_nodes, SetsNoEmptyName) {
    TestTree tree("<r/>");

    uxtree_set_attribute_to_all_nodes(&tree, "", "v", false, false);

    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

// The attribute k set to v, or removed, except where the attribute t is one of the skipped texts.
std::string after_skipping(const char* xml, const std::vector<std::string>& skipped,
                           bool branchesToo, bool remove) {
    TestTree tree(xml);
    auto skip = script_texts(skipped);
    uxtree_set_attribute_with_skip(&tree, "k", "v", "t", &skip, branchesToo, remove);
    return tree.text();
}

TEST(uxtree_set_attribute_with_skip, WritesLeavesThatAreNotSkipped) {
    EXPECT_EQ(after_skipping("<r><a t='No'/><b t='yes'/><c/><d><e t='NO'/><f/></d></r>",
                             {"no", "never"}, false, false),
              tree_text("<r><a t='No'/><b t='yes' k='v'/><c k='v'/>"
                        "<d><e t='NO'/><f k='v'/></d></r>"));
}

TEST(uxtree_set_attribute_with_skip, ASkippedBranchDoesNotProtectItsNodes) {
    EXPECT_EQ(after_skipping("<r t='no'><a t='no'><b/></a><c><d/></c></r>", {"no"}, true, false),
              tree_text("<r t='no'><a t='no'><b k='v'/></a><c k='v'><d k='v'/></c></r>"));
}

TEST(uxtree_set_attribute_with_skip, RemovesInsteadWhenAsked) {
    EXPECT_EQ(after_skipping("<r k='1'><a k='1' t='no'/><b k='1'/></r>", {"no"}, false, true),
              tree_text("<r k='1'><a k='1' t='no'/><b/></r>"));
}

TEST(uxtree_set_attribute_with_skip, TheStartNodeTakesPart) {
    TestTree tree("<r/>");

    uxtree_set_attribute_with_skip(&tree, "k", nullptr, "t", nullptr, false, false);

    EXPECT_EQ(tree.text(), tree_text("<r k=''/>"));
}

TEST(uxtree_set_attribute_with_skip, AMissingListOrAttributeNameSkipsNothing) {
    TestTree tree("<r><a t='no'/></r>");
    auto skip = script_texts({"no"});

    uxtree_set_attribute_with_skip(&tree, "k", "v", "t", nullptr, false, false);
    uxtree_set_attribute_with_skip(&tree, "j", "v", "", &skip, false, false);

    EXPECT_EQ(tree.text(), tree_text("<r><a t='no' k='v' j='v'/></r>"));
}

TEST(VCTreeSetAttributes, EveryNodeWithOneOfTheIdentifiersReceivesTheAttribute) {
    TestTree tree("<r><a DataID='1'><b DataID='2'/></a><c DataID='2'/><d DataID='3'/></r>");
    CArray<int, int> ids = number_list<int>({1, 2});

    EXPECT_TRUE(VCTreeSetAttributes(&tree, &ids, "v", "k", nullptr, true));

    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1' k='v'><b DataID='2' k='v'/></a>"
                                     "<c DataID='2' k='v'/><d DataID='3'/></r>"));
}

TEST(VCTreeSetAttributes, TheKeyAndTheAttributeHaveDefaults) {
    TestTree tree("<r><a id='1' DataID='5'/><b DataID='1'/></r>");
    CArray<int, int> ids = number_list<int>({1});

    EXPECT_TRUE(VCTreeSetAttributes(&tree, &ids, "v", "k", "id", true));
    EXPECT_TRUE(VCTreeSetAttributes(&tree, &ids, "0", nullptr, "", true));

    EXPECT_EQ(tree.text(),
              tree_text("<r><a id='1' DataID='5' k='v'/><b DataID='1' Show='0'/></r>"));
}

TEST(VCTreeSetAttributes, TheResultIsThatOfTheLastSearch) {
    TestTree tree("<r><a DataID='1'/></r>");
    CArray<int, int> ids = number_list<int>({1, 7});

    EXPECT_FALSE(VCTreeSetAttributes(&tree, &ids, "v", "k", nullptr, true));

    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1' k='v'/></r>"));
}

TEST(VCTreeSetAttributes, FailsWithoutIdentifiers) {
    TestTree tree("<r><a DataID='1'/></r>");
    CArray<int, int> none;

    EXPECT_FALSE(VCTreeSetAttributes(&tree, &none, "v", "k", nullptr, true));

    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1'/></r>"));
}

TEST(uxtree_set_attributes, ForwardsTheIntegerVector) {
    TestTree tree("<r><a DataID='1'/></r>");
    auto ids = script_ints({1});

    EXPECT_EQ(uxtree_set_attributes(&tree, &ids, "v", "k", nullptr, true), 1);

    EXPECT_EQ(tree.text(), tree_text("<r><a DataID='1' k='v'/></r>"));
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
