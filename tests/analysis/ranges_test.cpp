// Range trees: iterators, support, composite ranges and their values.
#include "uxtree/analysis/ranges.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::FakeHostServices;
using uxtest::tag_text;
using uxtest::TestTree;
using uxtest::to_text;
using uxtest::tree_text;

// The ranges of a tree, each as the tags of its sub-ranges joined by blanks.
std::vector<std::string> ranges_of(const char* xml) {
    TestTree tree(xml);
    VCRangeTreeIterator ranges(tree);
    UXXmlWrapperBase first;
    std::vector<std::string> out;
    while (ranges.Get(first)) {
        VCSubRangeTreeIterator subRanges(first);
        UXXmlWrapperBase subRange;
        std::string text;
        while (subRanges.Get(subRange)) text += (text.empty() ? "" : " ") + tag_text(subRange);
        out.push_back(text);
    }
    EXPECT_EQ(ranges.Get(first), 0);
    return out;
}

// --- VCRangeTreeIterator -------------------------------------------------------------------------

TEST(VCRangeTreeIterator, HierarchicalRangesAreTheChildren) {
    EXPECT_THAT(ranges_of("<r><Range1><X/><Y/></Range1><Range2><X/><Y/><Z/></Range2></r>"),
                ElementsAre("X Y", "X Y Z"));
}

TEST(VCRangeTreeIterator, SeparatorsDivideAFlatTree) {
    EXPECT_THAT(ranges_of("<r><X/><Y/><S/><X/><Y/></r>"), ElementsAre("X Y", "X Y"));
    EXPECT_THAT(ranges_of("<r><X/><Y/><S/><S/><Z/><S/></r>"), ElementsAre("X Y", "Z"));
}

TEST(VCRangeTreeIterator, LeadingSeparatorsAreSkipped) {
    EXPECT_THAT(ranges_of("<r><S/><S/><X/></r>"), ElementsAre("X"));
}

TEST(VCRangeTreeIterator, SeparatorsOnlyAreNoRange) {
    EXPECT_THAT(ranges_of("<r><S/><S/></r>"), IsEmpty());
    EXPECT_THAT(ranges_of("<r/>"), IsEmpty());
}

TEST(VCRangeTreeIterator, SeparatorTagsAreExact) {
    EXPECT_THAT(ranges_of("<r><X/><s/><SS/><Y/></r>"), ElementsAre("X s SS Y"));
}

TEST(VCRangeTreeIterator, OnlyTheFirstChildTellsTheShape) {
    TestTree hierarchical("<r><a><X/></a><b/></r>");
    EXPECT_EQ(VCRangeTreeIterator(hierarchical).IsHierarchical(), 1);

    TestTree flat("<r><a/><b><X/></b></r>");
    hierarchical = flat;
    EXPECT_EQ(VCRangeTreeIterator(hierarchical).IsHierarchical(), 0);
    EXPECT_THAT(ranges_of("<r><a/><b><X/></b></r>"), ElementsAre("a b"));
}

TEST(VCRangeTreeIterator, AChildlessRangeGivesZeroAndIsPassed) {
    TestTree tree("<r><a><X/></a><b/><c><Y/></c></r>");
    VCRangeTreeIterator ranges(tree);
    UXXmlWrapperBase first;
    EXPECT_EQ(ranges.Get(first), 1);
    EXPECT_EQ(ranges.Get(first), 0);
    EXPECT_FALSE(first.IsNodeValid());
    EXPECT_EQ(ranges.Get(first), 1);
    EXPECT_EQ(tag_text(first), "Y");
    EXPECT_EQ(ranges.Get(first), 0);
}

TEST(VCRangeTreeIterator, AtTheEndTheOutputStays) {
    TestTree tree("<r><X/><S/></r>");
    VCRangeTreeIterator ranges(tree);
    UXXmlWrapperBase first;
    ASSERT_EQ(ranges.Get(first), 1);
    EXPECT_EQ(ranges.Get(first), 0);
    EXPECT_EQ(tag_text(first), "X");
    EXPECT_EQ(ranges.Get(first), 0);
}

TEST(VCRangeTreeIterator, CopiesGoOnOnTheirOwn) {
    TestTree tree("<r><X/><S/><Y/><S/><Z/></r>");
    VCRangeTreeIterator ranges(tree);
    UXXmlWrapperBase first;
    ranges.Get(first);

    VCRangeTreeIterator copy(ranges);
    ranges.Get(first);
    ranges.Get(first);
    EXPECT_EQ(tag_text(first), "Z");
    copy.Get(first);
    EXPECT_EQ(tag_text(first), "Y");
    VCRangeTreeIterator moved(std::move(copy));
    moved.Get(first);
    EXPECT_EQ(tag_text(first), "Z");

    TestTree other("<r><a><P/></a></r>");
    const VCRangeTreeIterator start(other);
    moved = start;
    EXPECT_EQ(moved.IsHierarchical(), 1);
    moved.Get(first);
    EXPECT_EQ(tag_text(first), "P");
    moved = VCRangeTreeIterator(tree);
    EXPECT_EQ(moved.IsHierarchical(), 0);
    moved.Get(first);
    EXPECT_EQ(tag_text(first), "X");
}

TEST(VCRangeTreeIterator, AnInvalidTreeHasNoRange) {
    UXXmlWrapperBase invalid;
    VCRangeTreeIterator ranges(invalid);
    EXPECT_EQ(ranges.IsHierarchical(), 0);
    EXPECT_EQ(ranges.Get(invalid), 0);
}

// --- VCSubRangeTreeIterator ----------------------------------------------------------------------

TEST(VCSubRangeTreeIterator, BeginsWithTheGivenNodeAndStaysOnASeparator) {
    TestTree tree("<r><X/><Y/><S/><Z/></r>");
    UXXmlWrapperBase node = tree.at("X");
    VCSubRangeTreeIterator subRanges(node);
    EXPECT_EQ(subRanges.Get(node), 1);
    EXPECT_EQ(tag_text(node), "X");
    EXPECT_EQ(subRanges.Get(node), 1);
    EXPECT_EQ(tag_text(node), "Y");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(subRanges.Get(node), 0);
    EXPECT_EQ(tag_text(node), "Y");
}

TEST(VCSubRangeTreeIterator, StopsAtASeparatorInAHierarchicalTreeToo) {
    EXPECT_THAT(ranges_of("<r><a><X/><S/><Y/></a></r>"), ElementsAre("X"));
}

TEST(VCSubRangeTreeIterator, YieldsNothingFromASeparatorOrAnInvalidNode) {
    TestTree tree("<r><S/><X/></r>");
    UXXmlWrapperBase separator = tree.at("S");
    UXXmlWrapperBase out = tree;
    EXPECT_EQ(VCSubRangeTreeIterator(separator).Get(out), 0);
    UXXmlWrapperBase invalid;
    EXPECT_EQ(VCSubRangeTreeIterator(invalid).Get(out), 0);
    EXPECT_EQ(tag_text(out), "r");
}

TEST(VCSubRangeTreeIterator, CopiesGoOnOnTheirOwn) {
    TestTree tree("<r><X/><Y/><Z/></r>");
    UXXmlWrapperBase node = tree.at("X");
    VCSubRangeTreeIterator subRanges(node);
    subRanges.Get(node);
    VCSubRangeTreeIterator copy(subRanges);
    subRanges.Get(node);
    subRanges.Get(node);
    EXPECT_EQ(tag_text(node), "Z");
    VCSubRangeTreeIterator moved(std::move(copy));
    moved.Get(node);
    EXPECT_EQ(tag_text(node), "Y");
    subRanges = moved;
    subRanges.Get(node);
    EXPECT_EQ(tag_text(node), "Z");
    subRanges = VCSubRangeTreeIterator(node);
    EXPECT_EQ(subRanges.Get(node), 1);
    EXPECT_EQ(subRanges.Get(node), 0);
}

// --- vctree_add_subrange_to_composite_range ------------------------------------------------------

TEST(vctree_add_subrange_to_composite_range, CreatesANumberedRangeWithItsSlots) {
    TestTree tree("<r/>");
    UXXmlWrapperBase range;

    EXPECT_EQ(vctree_add_subrange_to_composite_range(range, tree, -1, 0, 0), 1);

    EXPECT_EQ(tree.text(),
              tree_text("<r>"
                        "<Range1 Label='Range 1' Branch='0' RepeatID='128' _ACTION_OBJECT_ID='0'>"
                        "<X Label='X' DataID='51' _ACTION_OBJECT_ID='0'/>"
                        "<Y Label='Y' DataID='52' _ACTION_OBJECT_ID='0'/>"
                        "<Z Label='Z' DataID='53' _ACTION_OBJECT_ID='0'/></Range1></r>"));
    EXPECT_TRUE(range == tree.at("Range1"));
}

TEST(vctree_add_subrange_to_composite_range, TypesTwoAndFourHaveAnErrorSlot) {
    for (int type : {2, 4}) {
        TestTree tree("<r/>");
        UXXmlWrapperBase range;
        vctree_add_subrange_to_composite_range(range, tree, -1, 0, type);
        EXPECT_EQ(to_text(tree.at("Range1/ED")),
                  tree_text("<ED Label='ED' DataID='53' _ACTION_OBJECT_ID='0'/>"));
        EXPECT_EQ(tree.at("Range1").GetNodeCount(), 3);
    }
}

TEST(vctree_add_subrange_to_composite_range, CountsOnFromTheRangesThatAreThere) {
    TestTree tree("<r><Range1/><Range2 RepeatID='144'/></r>");
    UXXmlWrapperBase range;
    EXPECT_EQ(vctree_add_subrange_to_composite_range(range, tree, -1, 0, 0), 1);
    EXPECT_EQ(tag_text(range), "Range3");
    int id = 0;
    range.GetPropertyValue("RepeatID", id, 0);
    EXPECT_EQ(id, 160);
}

struct RepeatCase {
    const char* previous;
    int expected;
};
class NextRepeatId : public testing::TestWithParam<RepeatCase> {};
TEST_P(NextRepeatId, FollowsTheSiblingBefore) {
    TestTree tree(GetParam().previous);
    UXXmlWrapperBase range;
    vctree_add_subrange_to_composite_range(range, tree, -1, 0, 0);
    int id = 0;
    range.GetPropertyValue("RepeatID", id, 0);
    EXPECT_EQ(id, GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(vctree_add_subrange_to_composite_range, NextRepeatId,
                         testing::Values(RepeatCase{"<r/>", 128}, RepeatCase{"<r><a/></r>", 128},
                                         RepeatCase{"<r><a RepeatID='0'/></r>", 16},
                                         RepeatCase{"<r><S RepeatID='7'/></r>", 23},
                                         RepeatCase{"<r><a RepeatID='-1'/></r>", 128},
                                         RepeatCase{"<r><a RepeatID='32767'/></r>", 32783},
                                         RepeatCase{"<r><a RepeatID='32768'/></r>", 128},
                                         RepeatCase{"<r><a RepeatID='x'/></r>", 128},
                                         RepeatCase{"<r><a RepeatID='200'/><b/></r>", 128}));

TEST(vctree_add_subrange_to_composite_range, TheNumberIsTheChildCountEvenWhenTheTagIsTaken) {
    TestTree tree("<r><Range2/></r>");
    UXXmlWrapperBase range;
    vctree_add_subrange_to_composite_range(range, tree, -1, 0, 0);
    EXPECT_EQ(tag_text(range), "Range2");
    EXPECT_EQ(tree.GetNodeCount(), 2);
}

TEST(vctree_add_subrange_to_composite_range, AddFlagsAreTheIdsOfNewNodes) {
    TestTree tree("<r/>");
    UXXmlWrapperBase range;
    vctree_add_subrange_to_composite_range(range, tree, 9, 0, 0);
    int rangeId = 0;
    int slotId = 0;
    range.GetID(rangeId);
    tree.at("Range1/Y").GetID(slotId);
    EXPECT_EQ(rangeId, 9);
    EXPECT_EQ(slotId, 9);
}

TEST(vctree_add_subrange_to_composite_range, AGivenRangeGetsAnotherSetOfSlots) {
    TestTree tree("<r><a Label='mine'><X>1</X></a></r>");
    UXXmlWrapperBase range = tree.at("a");
    UXXmlWrapperBase noTree;
    EXPECT_EQ(vctree_add_subrange_to_composite_range(range, noTree, -1, 0, 0), 1);
    EXPECT_EQ(tree.text(),
              tree_text("<r><a Label='mine' RepeatID='128' _ACTION_OBJECT_ID='0'><X>1</X>"
                        "<X Label='X' DataID='51' _ACTION_OBJECT_ID='0'/>"
                        "<Y Label='Y' DataID='52' _ACTION_OBJECT_ID='0'/>"
                        "<Z Label='Z' DataID='53' _ACTION_OBJECT_ID='0'/></a></r>"));
}

TEST(vctree_add_subrange_to_composite_range, TheHostSuppliesSlotsAndTheFinishingStep) {
    FakeHostServices services;
    int askedType = 0;
    int askedStored = 0;
    services->rangeSlots = [&](int type, int stored, UXRangeSlots& slots) {
        askedType = type;
        askedStored = stored;
        slots.tags = uxtest::string_list({"A", "B", "C"});
        slots.labels = uxtest::string_list({"first", ""});
        slots.dataIds.Add(7);
        slots.actionId = 33;
    };
    std::string finished;
    services->finishRange = [&](UXXmlWrapperBase& tree, int type) {
        finished = tag_text(tree) + std::to_string(type);
    };
    TestTree tree("<r/>");
    UXXmlWrapperBase range;

    vctree_add_subrange_to_composite_range(range, tree, -1, 5, 12);

    EXPECT_EQ(askedType, 12);
    EXPECT_EQ(askedStored, 5);
    EXPECT_EQ(finished, "r12");
    EXPECT_EQ(to_text(range),
              tree_text("<Range1 Label='Range 1' Branch='0' RepeatID='128' _ACTION_OBJECT_ID='33'>"
                        "<A Label='first' DataID='7' _ACTION_OBJECT_ID='33'/>"
                        "<B Label='B' DataID='51' _ACTION_OBJECT_ID='33'/>"
                        "<C Label='C' DataID='51' _ACTION_OBJECT_ID='33'/></Range1>"));
}

TEST(vctree_add_subrange_to_composite_range, TheFinishingStepMayGetAnInvalidTree) {
    FakeHostServices services;
    bool valid = true;
    services->finishRange = [&](UXXmlWrapperBase& tree, int) { valid = tree.IsNodeValid() != 0; };
    TestTree range("<r/>");
    UXXmlWrapperBase noTree;
    EXPECT_EQ(vctree_add_subrange_to_composite_range(range, noTree, -1, 0, 0), 1);
    EXPECT_FALSE(valid);
}

TEST(vctree_add_subrange_to_composite_range, NeitherRangeNorTreeGivesZero) {
    UXXmlWrapperBase range;
    UXXmlWrapperBase tree;
    EXPECT_EQ(vctree_add_subrange_to_composite_range(range, tree, -1, 0, 0), 0);
    EXPECT_FALSE(range.IsNodeValid());
}

TEST(vctree_add_subrange_to_composite_range, TheWordForARangeIsLoadedOncePerProcess) {
    TestTree tree("<r/>");
    UXXmlWrapperBase first;
    vctree_add_subrange_to_composite_range(first, tree, -1, 0, 0);

    FakeHostServices services;
    int asked = 0;
    services->messageText = [&](int, int, CStringUTF8& out) {
        ++asked;
        out = "Other";
        return true;
    };
    UXXmlWrapperBase second;
    vctree_add_subrange_to_composite_range(second, tree, -1, 0, 0);

    CStringUTF8 label;
    second.GetPropertyValue("Label", label, 0);
    EXPECT_STREQ(label, "Range 2");
    EXPECT_EQ(asked, 0);
}

// --- vctree_reenum_subranges_in_range_tree -------------------------------------------------------

std::string renumbered(const char* xml, int mode) {
    TestTree tree(xml);
    vctree_reenum_subranges_in_range_tree(tree, mode);
    return tree.text();
}

TEST(vctree_reenum_subranges_in_range_tree, ModeZeroNumbersInPlace) {
    EXPECT_EQ(renumbered("<r><Range7 Label='old' RepeatID='999'><X/></Range7><S/><b>t</b></r>", 0),
              "<r><Range7 Label=\"Range 1\" RepeatID=\"128\"><X></X></Range7>"
              "<S Label=\"Range 2\" RepeatID=\"144\"></S>"
              "<b Label=\"Range 3\" RepeatID=\"160\">t</b></r>");
}

TEST(vctree_reenum_subranges_in_range_tree, OtherModesMakeTheTagsContiguous) {
    EXPECT_EQ(renumbered("<r k='1'>text<Range5 _ux_id='3' DataID='8'><X>1</X></Range5>"
                         "<Range1 RepeatID='7'>t</Range1></r>",
                         1),
              "<r k=\"1\">text<Range1 DataID=\"8\" Label=\"Range 1\" RepeatID=\"128\" "
              "_ux_id=\"3\"><X>1</X></Range1>"
              "<Range2 RepeatID=\"144\" Label=\"Range 2\">t</Range2></r>");
}

TEST(vctree_reenum_subranges_in_range_tree, AnEmptyTreeStaysSo) {
    EXPECT_EQ(renumbered("<r/>", 0), "<r></r>");
    EXPECT_EQ(renumbered("<r/>", -1), "<r></r>");
}

TEST(vctree_reenum_subranges_in_range_tree, ManyRangesTakeLinearTime) {
    TestTree tree("<r/>");
    constexpr int kMany = 100000;
    for (int i = 0; i < kMany; ++i) tree.AddNode(nullptr, "a", -1);
    vctree_reenum_subranges_in_range_tree(tree, 1);
    UXXmlWrapperBase last;
    tree.GetChild(&last, kMany - 1);
    EXPECT_EQ(tag_text(last), "Range100000");
}

// --- vctree_get_composite_subrange_values --------------------------------------------------------

struct Values {
    int result;
    std::string x = "x0";
    std::string y = "y0";
    std::string z = "z0";
    bool operator==(const Values&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Values& v) {
    return out << v.result << ": " << v.x << ", " << v.y << ", " << v.z;
}

Values values_of(const char* xml, int type) {
    TestTree tree(xml);
    CStringUTF8 x = "x0";
    CStringUTF8 y = "y0";
    CStringUTF8 z = "z0";
    const int result = vctree_get_composite_subrange_values(tree, x, y, z, type);
    EXPECT_EQ(tree.text(), TestTree(xml).text());
    return {result, static_cast<const char*>(x), static_cast<const char*>(y),
            static_cast<const char*>(z)};
}

TEST(vctree_get_composite_subrange_values, ReadsTheThirdSlotOfTheType) {
    const char* xml = "<r><X>1</X><Y>2</Y><F>3</F><Z>4</Z><ED>5</ED></r>";
    EXPECT_EQ(values_of(xml, 0), (Values{1, "1", "2", "4"}));
    EXPECT_EQ(values_of(xml, 2), (Values{1, "1", "2", "5"}));
    EXPECT_EQ(values_of(xml, 4), (Values{1, "1", "2", "3"}));
}

TEST(vctree_get_composite_subrange_values, TypeFourReadsWhateverFollowsYOrNothing) {
    EXPECT_EQ(values_of("<r><Y>2</Y><X>1</X></r>", 4), (Values{1, "1", "2", "1"}));
    EXPECT_EQ(values_of("<r><X>1</X><Y>2</Y></r>", 4), (Values{1, "1", "2", "z0"}));
}

TEST(vctree_get_composite_subrange_values, AMissingSlotGivesZeroAndKeepsWhatWasRead) {
    EXPECT_EQ(values_of("<r><Y>2</Y><Z>3</Z></r>", 0), (Values{0}));
    EXPECT_EQ(values_of("<r><X>1</X><Z>3</Z></r>", 0), (Values{0, "1"}));
    EXPECT_EQ(values_of("<r><X>1</X><Y>2</Y></r>", 0), (Values{0, "1", "2"}));
    EXPECT_EQ(values_of("<r><X>1</X><Y>2</Y><Z>3</Z></r>", 2), (Values{0, "1", "2"}));
}

TEST(vctree_get_composite_subrange_values, AnEmptySlotReadsAsAnEmptyText) {
    EXPECT_EQ(values_of("<r><X/><Y/><Z/></r>", 0), (Values{1, "", "", ""}));
}

// --- vctree_set_composite_subrange_values --------------------------------------------------------

// Texts of the slots only: the attributes are the business of adding a range.
std::string slots_after_set(const char* xml, const char* x, const char* y, const char* z, int type,
                            int join, int reset, int expected = 1) {
    TestTree tree(xml);
    EXPECT_EQ(vctree_set_composite_subrange_values(tree, x, y, z, 0, type, join, reset), expected);
    std::string out;
    UXXmlWrapperBase child;
    for (tree.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
        CStringUTF8 text;
        child.NodeValue(text, 1, 1, nullptr);
        out += tag_text(child) + "=" + static_cast<const char*>(text) + ";";
    }
    return out;
}

TEST(vctree_set_composite_subrange_values, MakesTheSlotsAndFillsThem) {
    EXPECT_EQ(slots_after_set("<r/>", "a", "b", "c", 0, 0, 0), "X=a;Y=b;Z=c;");
    EXPECT_EQ(slots_after_set("<r/>", "a", "b", "c", 2, 0, 0), "X=a;Y=b;ED=c;");
    EXPECT_EQ(slots_after_set("<r/>", "a", "b", "c", 4, 0, 0), "X=a;Y=b;ED=c;");
}

TEST(vctree_set_composite_subrange_values, TypeFourMayJoinTheThirdTextToY) {
    EXPECT_EQ(slots_after_set("<r/>", "a", "b", "c", 4, 1, 0), "X=a;Y=b,c;ED=;");
    EXPECT_EQ(slots_after_set("<r/>", "a", "b", "c", 0, 1, 0), "X=a;Y=b;Z=c;");
}

TEST(vctree_set_composite_subrange_values, WithoutResetTheFirstOfTwoSetsIsWritten) {
    EXPECT_EQ(slots_after_set("<r><X>1</X><Y>2</Y><Z>3</Z></r>", "a", "b", "c", 0, 0, 0),
              "X=a;Y=b;Z=c;X=;Y=;Z=;");
}

TEST(vctree_set_composite_subrange_values, ResetClearsTheNodeButKeepsItsAttributes) {
    TestTree tree("<r><a Label='mine'>t<X>1</X></a></r>");
    UXXmlWrapperBase range = tree.at("a");
    EXPECT_EQ(vctree_set_composite_subrange_values(range, "p", "q", "", 0, 0, 0, 1), 1);
    EXPECT_EQ(to_text(range), tree_text("<a Label='mine' RepeatID='128' _ACTION_OBJECT_ID='0'>"
                                        "<X Label='X' DataID='51' _ACTION_OBJECT_ID='0'>p</X>"
                                        "<Y Label='Y' DataID='52' _ACTION_OBJECT_ID='0'>q</Y>"
                                        "<Z Label='Z' DataID='53' _ACTION_OBJECT_ID='0'/></a>"));
}

TEST(vctree_set_composite_subrange_values, NullTextsAreEmpty) {
    EXPECT_EQ(
        slots_after_set("<r><X>1</X><Y>2</Y><Z>3</Z></r>", nullptr, nullptr, nullptr, 0, 0, 0),
        "X=;Y=;Z=;X=;Y=;Z=;");
    EXPECT_EQ(slots_after_set("<r/>", nullptr, nullptr, nullptr, 4, 1, 0), "X=;Y=,;ED=;");
}

TEST(vctree_set_composite_subrange_values, AMissingSlotStopsWithZero) {
    FakeHostServices services;
    std::vector<std::string> tags;
    services->rangeSlots = [&](int, int, UXRangeSlots& slots) {
        slots.tags = uxtest::string_list(tags);
    };
    EXPECT_EQ(slots_after_set("<r/>", "a", "b", "c", 0, 0, 0, 0), "");
    tags = {"X", "Z"};
    EXPECT_EQ(slots_after_set("<r/>", "a", "b", "c", 0, 0, 0, 0), "X=a;Z=;");
    tags = {"X", "Y"};
    EXPECT_EQ(slots_after_set("<r/>", "a", "b", "c", 0, 0, 0, 0), "X=a;Y=b;");
    EXPECT_EQ(slots_after_set("<r/>", "a", "b", "c", 4, 0, 0, 1), "X=a;Y=b;");
}

TEST(vctree_set_composite_subrange_values, HandsTheStoredArgumentToTheHost) {
    FakeHostServices services;
    int stored = 0;
    services->rangeSlots = [&](int, int given, UXRangeSlots&) { stored = given; };
    TestTree tree("<r/>");
    vctree_set_composite_subrange_values(tree, "", "", "", 42, 0, 0, 0);
    EXPECT_EQ(stored, 42);
}

TEST(uxtree_set_composite_subrange_values, GivesTheNativeAnswer) {
    TestTree tree("<r/>");
    EXPECT_EQ(uxtree_set_composite_subrange_values(&tree, "a", "b", "c", 0, 0, 0, 0), 1);
    EXPECT_EQ(tree.GetNodeCount(), 3);
}

// --- entire worksheet ----------------------------------------------------------------------------

int entire_worksheet(const char* xml) {
    TestTree tree(xml);
    return vctree_composite_range_get_entire_worksheet_support(tree);
}

TEST(vctree_composite_range_get_entire_worksheet_support, TellsOnOffAndAbsentApart) {
    EXPECT_EQ(entire_worksheet("<a _EntireWorksheet='1'/>"), 1);
    EXPECT_EQ(entire_worksheet("<a _EntireWorksheet='0'/>"), -1);
    EXPECT_EQ(entire_worksheet("<a _EntireWorksheet='2'/>"), -1);
    EXPECT_EQ(entire_worksheet("<a _EntireWorksheet='x'/>"), -1);
    EXPECT_EQ(entire_worksheet("<a _EntireWorksheet=''/>"), -1);
    EXPECT_EQ(entire_worksheet("<a/>"), 0);
}

TEST(vctree_composite_range_set_entire_worksheet_support, StoresKeepsOrRemoves) {
    TestTree tree("<a/>");
    vctree_composite_range_set_entire_worksheet_support(tree, 1);
    EXPECT_EQ(tree.text(), tree_text("<a _EntireWorksheet='1'/>"));
    vctree_composite_range_set_entire_worksheet_support(tree, 2);
    vctree_composite_range_set_entire_worksheet_support(tree, -2);
    EXPECT_EQ(tree.text(), tree_text("<a _EntireWorksheet='1'/>"));
    vctree_composite_range_set_entire_worksheet_support(tree, -1);
    EXPECT_EQ(tree.text(), tree_text("<a _EntireWorksheet='0'/>"));
    vctree_composite_range_set_entire_worksheet_support(tree, 0);
    EXPECT_EQ(tree.text(), tree_text("<a/>"));
}

TEST(uxtree_composite_range_set_entire_worksheet_support, GivesTheNativeAnswer) {
    TestTree tree("<a/>");
    uxtree_composite_range_set_entire_worksheet_support(&tree, 1);
    EXPECT_EQ(tree.text(), tree_text("<a _EntireWorksheet='1'/>"));
}

TEST(uxtree_composite_range_get_entire_worksheet_support, GivesTheNativeAnswer) {
    TestTree tree("<a _EntireWorksheet='0'/>");
    EXPECT_EQ(uxtree_composite_range_get_entire_worksheet_support(&tree), -1);
}

// --- action object ids ---------------------------------------------------------------------------

TEST(vctree_get_set_node_action_id, ZeroWritesAndAnythingElseReads) {
    TestTree tree("<a/>");
    int id = 12;
    EXPECT_EQ(vctree_get_set_node_action_id(tree, id, 0), 1);
    EXPECT_EQ(tree.text(), tree_text("<a _ACTION_OBJECT_ID='12'/>"));
    for (int get : {1, -1, 7}) {
        id = 0;
        EXPECT_EQ(vctree_get_set_node_action_id(tree, id, get), 1);
        EXPECT_EQ(id, 12);
    }
}

TEST(vctree_get_set_node_action_id, AMissingIdLeavesTheVariableAlone) {
    TestTree tree("<a><b _ACTION_OBJECT_ID='x'/></a>");
    UXXmlWrapperBase unreadable = tree.at("b");
    int id = 5;
    EXPECT_EQ(vctree_get_set_node_action_id(tree, id, 1), 0);
    EXPECT_EQ(vctree_get_set_node_action_id(unreadable, id, 1), 0);
    EXPECT_EQ(id, 5);
}

TEST(VCTreeSetCompositeSubRangeNodeActionId, ReachesTheChildrenFromOne) {
    TestTree tree("<a><b><c/></b><d/></a>");
    EXPECT_EQ(VCTreeSetCompositeSubRangeNodeActionId(tree, 3, 1), 1);
    EXPECT_EQ(tree.text(), tree_text("<a _ACTION_OBJECT_ID='3'><b _ACTION_OBJECT_ID='1'><c/></b>"
                                     "<d _ACTION_OBJECT_ID='1'/></a>"));
}

TEST(VCTreeSetCompositeSubRangeNodeActionId, AChildIdBelowOneLeavesTheChildrenAlone) {
    for (int childId : {0, -1}) {
        TestTree tree("<a><b/></a>");
        EXPECT_EQ(VCTreeSetCompositeSubRangeNodeActionId(tree, -3, childId), 1);
        EXPECT_EQ(tree.text(), tree_text("<a _ACTION_OBJECT_ID='-3'><b/></a>"));
    }
}

}  // namespace
