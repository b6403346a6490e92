// Data and repeat identifiers: reading, combining, messages.
#include "uxtree/data/ids.h"

#include <climits>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/id_index.h"
#include "data/ids_detail.h"
#include "support/test_tree.h"

namespace {

using uxtest::number_list;
using uxtest::TestTree;
using uxtest::tree_text;

constexpr int kUntouched = -777;

// The outcome of one combining step: code, identifier, repeat output.
using Combined = std::tuple<int, int, int>;

Combined combine(const char* xml, int dataId, int inheritedRepeat) {
    TestTree tree(xml);
    int repeat = kUntouched;
    const int code =
        uxtree_combine_treenode_id_with_repeat_id(&tree, &dataId, &repeat, inheritedRepeat);
    EXPECT_EQ(tree.text(), uxtest::tree_text(xml));
    return {code, dataId, repeat};
}

std::string repeat_error(const char* xml, int dataId, int inheritedRepeat) {
    TestTree tree(xml);
    ux::TransportId id{dataId, inheritedRepeat};
    CStringUTF8 text("earlier text");
    ux::NodeMarks marks;
    marks.read(tree);
    ux::IdProblem problem;
    EXPECT_FALSE(ux::combine_with_repeat(tree, marks, inheritedRepeat, id, &problem));
    ux::format_id_problem(problem, text);
    return static_cast<const char*>(text);
}

std::string repeat_node_error(const char* xml, int dataId) {
    TestTree tree(xml);
    ux::TransportId id{dataId, 0};
    CStringUTF8 text("earlier text");
    ux::NodeMarks marks;
    marks.read(tree);
    ux::IdProblem problem;
    EXPECT_FALSE(ux::combine_with_repeat_node(tree, marks, 0, id, &problem));
    ux::format_id_problem(problem, text);
    return static_cast<const char*>(text);
}

struct Marker {
    const char* text;
    int result;
    int value;
};

// --- reading and writing the markers -----------------------------------------------------------

TEST(VCTreeGetRepeatId, AcceptsZeroTo32767AndShowsWhatItRead) {
    for (const Marker& marker : {Marker{"0", 1, 0}, Marker{"1", 1, 1}, Marker{"32766", 1, 32766},
                                 Marker{"32767", 1, 32767}, Marker{"32768", 0, 32768},
                                 Marker{"-1", 0, -1}, Marker{"-5", 0, -5}, Marker{"x", 0, -1},
                                 Marker{"", 0, -1}, Marker{"2147483647", 0, INT_MAX}}) {
        TestTree tree((std::string("<n RepeatID='") + marker.text + "'/>").c_str());
        int out = kUntouched;

        EXPECT_EQ(VCTreeGetRepeatId(tree, out), marker.result) << marker.text;
        EXPECT_EQ(out, marker.value) << marker.text;
    }
}

TEST(VCTreeGetRepeatId, GivesMinusOneWithoutTheAttributeAndForAnInvalidNode) {
    TestTree tree("<n DataID='3'/>");
    UXXmlWrapperBase invalid;
    int out = kUntouched;

    EXPECT_EQ(VCTreeGetRepeatId(tree, out), 0);
    EXPECT_EQ(out, -1);
    out = kUntouched;
    EXPECT_EQ(VCTreeGetRepeatId(invalid, out), 0);
    EXPECT_EQ(out, -1);
}

TEST(VCTreeGetRepeatNodeId, AcceptsOneTo32767AndShowsWhatItRead) {
    for (const Marker& marker : {Marker{"0", 0, 0}, Marker{"1", 1, 1}, Marker{"32767", 1, 32767},
                                 Marker{"32768", 0, 32768}, Marker{"-1", 0, -1}}) {
        TestTree tree((std::string("<n RepeatNodeID='") + marker.text + "'/>").c_str());
        int out = kUntouched;

        EXPECT_EQ(VCTreeGetRepeatNodeId(tree, out), marker.result) << marker.text;
        EXPECT_EQ(out, marker.value) << marker.text;
    }
}

TEST(VCTreeGetRepeatNodeId, GivesMinusOneForAnInvalidNode) {
    UXXmlWrapperBase invalid;
    int out = kUntouched;

    EXPECT_EQ(VCTreeGetRepeatNodeId(invalid, out), 0);
    EXPECT_EQ(out, -1);
}

TEST(VCTreeSetRepeatId, WritesFromOneOnAndRemovesBelow) {
    TestTree tree("<n a='1'/>");

    EXPECT_EQ(VCTreeSetRepeatId(tree, 4), 1);
    EXPECT_EQ(tree.text(), tree_text("<n a='1' RepeatID='4'/>"));
    EXPECT_EQ(VCTreeSetRepeatId(tree, 0), 1);
    EXPECT_EQ(tree.text(), tree_text("<n a='1'/>"));
    EXPECT_EQ(VCTreeSetRepeatId(tree, 40000), 1);
    EXPECT_EQ(VCTreeSetRepeatId(tree, -3), 1);
    EXPECT_EQ(VCTreeSetRepeatId(tree, 0), 1);
    EXPECT_EQ(tree.text(), tree_text("<n a='1'/>"));
}

TEST(VCTreeSetRepeatNodeId, WritesFromOneOnAndRemovesBelow) {
    TestTree tree("<n/>");

    EXPECT_EQ(VCTreeSetRepeatNodeId(tree, 1), 1);
    EXPECT_EQ(tree.text(), tree_text("<n RepeatNodeID='1'/>"));
    EXPECT_EQ(VCTreeSetRepeatNodeId(tree, 0), 1);
    EXPECT_EQ(tree.text(), tree_text("<n/>"));
}

// --- one-set identifiers and ranges ------------------------------------------------------------

TEST(uxtree_make_one_set_ID, PutsTheSetAboveTheIndexWithItsBitForcedOn) {
    EXPECT_EQ(uxtree_make_one_set_ID(5, 1), 536936453);
    EXPECT_EQ(uxtree_make_one_set_ID(5, 0x2001), 536936453);
    EXPECT_EQ(uxtree_make_one_set_ID(0, 0), 0x20000000);
    EXPECT_EQ(uxtree_make_one_set_ID(0xFFFF, 0xFFFF), -1);
    EXPECT_EQ(uxtree_make_one_set_ID(1, 0x8000), static_cast<int>(0xA0000001U));
}

TEST(uxtree_is_ID_in_one_set, ComparesTheSetWithItsBitForcedOn) {
    EXPECT_EQ(uxtree_is_ID_in_one_set(536936453, 1), 1);
    EXPECT_EQ(uxtree_is_ID_in_one_set(536936453, 0x2001), 1);
    EXPECT_EQ(uxtree_is_ID_in_one_set(536936453, 2), 0);
    EXPECT_EQ(uxtree_is_ID_in_one_set(-1, 0xFFFF), 1);
    EXPECT_EQ(uxtree_is_ID_in_one_set(5, 0), 0);
}

int in_range(int id, int low, int high, int extra) {
    TestTree tree("<n/>");
    tree.SetID(id, false);
    return uxtree_is_in_ids_range(&tree, low, high, extra);
}

TEST(uxtree_is_in_ids_range, AddsTheExtraToTheUpperEndOnly) {
    EXPECT_EQ(in_range(9, 10, 20, 5), 0);
    EXPECT_EQ(in_range(10, 10, 20, 5), 1);
    EXPECT_EQ(in_range(25, 10, 20, 5), 1);
    EXPECT_EQ(in_range(26, 10, 20, 5), 0);
    EXPECT_EQ(in_range(15, 10, 20, -5), 1);
    EXPECT_EQ(in_range(16, 10, 20, -5), 0);
}

TEST(uxtree_is_in_ids_range, WrapsTheUpperEnd) {
    EXPECT_EQ(in_range(20, 10, INT_MAX, 1), 0);
}

TEST(uxtree_is_in_ids_range, TestsTheIntrinsicIdNotTheDataId) {
    TestTree tree("<n DataID='15'/>");

    EXPECT_EQ(uxtree_is_in_ids_range(&tree, 10, 20, 0), 0);
    EXPECT_EQ(uxtree_is_in_ids_range(&tree, 0, 20, 0), 1);  // no ID reads as 0
}

TEST(uxtree_is_in_ids_range, RefusesWrongBounds) {
    EXPECT_EQ(in_range(15, 20, 10, 100), 0);
    EXPECT_EQ(in_range(15, -1, 20, 0), 0);
    EXPECT_EQ(in_range(15, -5, -1, 100), 0);
}

// --- combining ---------------------------------------------------------------------------------

TEST(uxtree_combine_treenode_id_with_repeat_id, StampsTheInheritedRepeatId) {
    EXPECT_EQ(combine("<n/>", 7, 4), (Combined{3, 0x40007, kUntouched}));
    EXPECT_EQ(combine("<n/>", 0, 1), (Combined{3, 0x10000, kUntouched}));
    EXPECT_EQ(combine("<n/>", 65535, 32767), (Combined{3, 0x7FFFFFFF, kUntouched}));
    EXPECT_EQ(combine("<n/>", 1, 0x18000), (Combined{3, INT_MIN + 1, kUntouched}));
}

TEST(uxtree_combine_treenode_id_with_repeat_id, StampsAndMergesUnderARepeatIdOfZero) {
    EXPECT_EQ(combine("<n RepeatID='0'/>", 7, 4), (Combined{3, 262151, 4}));
    EXPECT_EQ(combine("<n RepeatID='0'/>", -1, 4), (Combined{0, -1, 4}));
    EXPECT_EQ(combine("<n RepeatID='0'/>", 65536, 4), (Combined{-1, 65536, 4}));
}

TEST(uxtree_combine_treenode_id_with_repeat_id, MergesAnOwnRepeatIdWithoutStamping) {
    EXPECT_EQ(combine("<n RepeatID='2'/>", 7, 4), (Combined{2, 7, 6}));
    EXPECT_EQ(combine("<n RepeatID='2'/>", 70000, 4), (Combined{2, 70000, 6}));
}

TEST(uxtree_combine_treenode_id_with_repeat_id, StartsAtAnOwnRepeatIdWithoutInheritance) {
    EXPECT_EQ(combine("<n RepeatID='2'/>", 7, 0), (Combined{1, 7, 2}));
    EXPECT_EQ(combine("<n RepeatID='0'/>", 7, 0), (Combined{1, 7, 0}));
    EXPECT_EQ(combine("<n RepeatID='2'/>", 7, -3), (Combined{1, 7, 2}));
}

TEST(uxtree_combine_treenode_id_with_repeat_id, LeavesAllAloneWithoutInheritanceOrIdentifier) {
    EXPECT_EQ(combine("<n/>", 7, 0), (Combined{0, 7, kUntouched}));
    EXPECT_EQ(combine("<n/>", 65536, -1), (Combined{0, 65536, kUntouched}));
    EXPECT_EQ(combine("<n/>", -1, 4), (Combined{0, -1, kUntouched}));
}

TEST(uxtree_combine_treenode_id_with_repeat_id, RefusesSharedBits) {
    EXPECT_EQ(combine("<n RepeatID='2'/>", 7, 2), (Combined{-2, 7, kUntouched}));
    EXPECT_EQ(combine("<n RepeatID='6'/>", 7, 10), (Combined{-2, 7, kUntouched}));
}

TEST(uxtree_combine_treenode_id_with_repeat_id, Refuses32767BeforeLookingAtInheritance) {
    EXPECT_EQ(combine("<n RepeatID='32767'/>", 7, 0), (Combined{-3, 7, kUntouched}));
    EXPECT_EQ(combine("<n RepeatID='32767'/>", 7, 4), (Combined{-3, 7, kUntouched}));
}

TEST(uxtree_combine_treenode_id_with_repeat_id, TakesALargerRepeatIdAsAbsent) {
    EXPECT_EQ(combine("<n RepeatID='32768'/>", 7, 4), (Combined{3, 0x40007, kUntouched}));
    EXPECT_EQ(combine("<n RepeatID='-2'/>", 7, 4), (Combined{3, 0x40007, kUntouched}));
}

TEST(uxtree_combine_treenode_id_with_repeat_id, RefusesALargeIdentifierOnlyWhereItWouldBeStamped) {
    EXPECT_EQ(combine("<n/>", 65536, 1), (Combined{-1, 65536, kUntouched}));
    EXPECT_EQ(combine("<n/>", INT_MAX, 1), (Combined{-1, INT_MAX, kUntouched}));
    EXPECT_EQ(combine("<n/>", 65536, 0), (Combined{0, 65536, kUntouched}));
}

using Applied = std::pair<int, int>;
Applied apply(const char* xml, int dataId) {
    TestTree tree(xml);
    const int code = ux::_tree_apply_repeat_node_id(tree, dataId);
    return {code, dataId};
}

TEST(_tree_apply_repeat_node_id, PlacesTheLowByteOnTop) {
    EXPECT_EQ(apply("<n RepeatNodeID='3'/>", 262151), (Applied{3, 50593799}));
    EXPECT_EQ(apply("<n RepeatNodeID='259'/>", 262151), (Applied{3, 50593799}));
    EXPECT_EQ(apply("<n RepeatNodeID='256'/>", 5), (Applied{3, 5}));
    EXPECT_EQ(apply("<n RepeatNodeID='128'/>", 5), (Applied{3, INT_MIN + 5}));
    EXPECT_EQ(apply("<n RepeatNodeID='255'/>", 5), (Applied{3, static_cast<int>(0xFF000005U)}));
}

TEST(_tree_apply_repeat_node_id, DoesNothingWithoutIdentifierOrMarker) {
    EXPECT_EQ(apply("<n RepeatNodeID='3'/>", -1), (Applied{0, -1}));
    EXPECT_EQ(apply("<n RepeatNodeID='0'/>", 5), (Applied{0, 5}));
    EXPECT_EQ(apply("<n RepeatNodeID='32768'/>", 5), (Applied{0, 5}));
    EXPECT_EQ(apply("<n/>", 5), (Applied{0, 5}));
}

TEST(_tree_apply_repeat_node_id, RefusesTakenBitsAnd32767) {
    EXPECT_EQ(apply("<n RepeatNodeID='3'/>", 0x01000007), (Applied{-2, 0x01000007}));
    EXPECT_EQ(apply("<n RepeatNodeID='32767'/>", 5), (Applied{-3, 5}));
}

// --- messages ----------------------------------------------------------------------------------

TEST(_tree_format_repeat_id_error, PrintsTheInheritedRepeatIdForAnInvalidOne) {
    EXPECT_EQ(repeat_error("<Rng Label='First' Name='no' RepeatID='32767'/>", 7, 4),
              "Repeat ID invalid for Node with Name = Rng, Label = First, Repeat ID = 4");
}

TEST(_tree_format_repeat_id_error, PrintsTheInheritedRepeatIdForAConflict) {
    EXPECT_EQ(repeat_error("<Rng RepeatID='2'/>", 7, 2),
              "Repeat ID conflict for Node with Name = Rng, Label = , Repeat ID = 2");
}

TEST(_tree_format_repeat_id_error, PrintsTheDataIdWhereItIsTooLarge) {
    EXPECT_EQ(repeat_error("<Rng Label='L'/>", 65536, 1),
              "DataID conflict with RepeatID for Node with Name = Rng, Label = L, "
              "Repeat ID = 65536");
}

TEST(_tree_format_repeat_id_error, HoldsNamesOfAnyLengthAndPercentSigns) {
    const std::string label = std::string(5000, 'x') + "%s%n";

    EXPECT_EQ(repeat_error(("<Rng Label='" + label + "' RepeatID='2'/>").c_str(), 7, 2),
              "Repeat ID conflict for Node with Name = Rng, Label = " + label + ", Repeat ID = 2");
}

TEST(_tree_format_repeat_id_error, WritesNothingForGoodCodes) {
    TestTree tree("<Rng/>");
    CStringUTF8 text("kept");

    ux::_tree_format_repeat_id_error(tree, 3, 1, 2, &text);
    ux::_tree_format_repeat_node_id_error(tree, 0, 1, &text);
    ux::_tree_format_repeat_id_error(tree, -2, 1, 2, nullptr);

    EXPECT_EQ(text, "kept");
}

TEST(_tree_format_repeat_node_id_error, PrintsMinusOneForTheMarker) {
    EXPECT_EQ(repeat_node_error("<Rng Label='L' RepeatNodeID='32767'/>", 7),
              "Repeat Node ID invalid for Node with Name = Rng, Label = L, Repeat Node ID = -1");
}

TEST(_tree_format_repeat_node_id_error, PrintsTheIdentifierOfAConflict) {
    EXPECT_EQ(repeat_node_error("<Rng Label='L' RepeatNodeID='3'/>", 0x01000007),
              "Repeat Node ID conflict for Node with Name = Rng, Label = L, Repeat Node ID = -1, "
              "ID = 16777223");
}

TEST(format_missing_data_id, PrintsTheNameAttribute) {
    TestTree tree("<Rng Name='N' Label='L'/>");
    CStringUTF8 text;

    ux::format_missing_data_id(tree, text);

    EXPECT_EQ(text, "Missing DataID for Node with Name = N, Label = L");
}

TEST(format_duplicate_id, PrintsTheSameBitsInDecimalAndHexadecimal) {
    CStringUTF8 text;

    ux::format_duplicate_id(-2, 4, text);

    EXPECT_EQ(text,
              "\n******  _tree_set_values_by_ids found dup id = -2, FFFFFFFE. RepeatID = 4\n");
}

// --- duplicates and the index ------------------------------------------------------------------

// -1 when all differ: the plain search that the index must agree with.
int first_repeated_by_search(const std::vector<int>& ids) {
    for (std::size_t i = 0; i < ids.size(); ++i) {
        for (std::size_t j = i + 1; j < ids.size(); ++j) {
            if (ids[i] == ids[j]) return static_cast<int>(i);
        }
    }
    return -1;
}

int first_by_search(const std::vector<int>& ids, int id) {
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (ids[i] == id) return static_cast<int>(i);
    }
    return -1;
}

std::vector<std::vector<int>> identifier_arrays() {
    std::vector<std::vector<int>> arrays{
        {}, {1}, {1, 1}, {1, 2, 1}, {1, 2, 2, 1}, {3, 2, 1}, {INT_MIN, INT_MAX, -1, 0}};
    for (const int size : {16, 17, 40, 1000}) {
        std::vector<int> ascending;
        std::vector<int> descending;
        std::vector<int> strided;
        std::vector<int> stamped;
        for (int i = 0; i < size; ++i) {
            ascending.push_back(i * 3);
            descending.push_back(-i);
            strided.push_back(static_cast<int>(static_cast<unsigned>(i) * 65536U * 16U + 7U));
            stamped.push_back((i % 30) << 16 | (i / 30));
        }
        arrays.insert(arrays.end(), {ascending, descending, strided, stamped});
        // Just close enough together for a bit for each possible identifier, and just not.
        for (const int farthest : {31 * size, 31 * size + 1}) {
            arrays.push_back(descending);
            arrays.back().front() = farthest;
            arrays.push_back(arrays.back());
            arrays.back().push_back(farthest);
        }
        std::vector<int> doubled = descending;
        doubled.push_back(-(size / 2));
        doubled.push_back(-1);
        arrays.push_back(doubled);
        arrays.push_back(std::vector<int>(static_cast<std::size_t>(size), 5));
    }
    return arrays;
}

TEST(_tree_find_dup_id, ReportsTheFirstEntryThatOccursAgain) {
    for (const std::vector<int>& ids : identifier_arrays()) {
        const int first = first_repeated_by_search(ids);
        int duplicate = kUntouched;

        EXPECT_EQ(ux::_tree_find_dup_id(number_list(ids), &duplicate), first < 0 ? 1 : 0);
        EXPECT_EQ(duplicate, first < 0 ? kUntouched : ids[static_cast<std::size_t>(first)]);
        EXPECT_EQ(ux::_tree_find_dup_id(number_list(ids), nullptr), first < 0 ? 1 : 0);
    }
}

TEST(IdIndex, FindsTheFirstEntryWhateverTheOrderOfTheQuestions) {
    for (const std::vector<int>& ids : identifier_arrays()) {
        const CArray<int, int> array = number_list(ids);
        ux::IdIndex forward(array);
        ux::IdIndex backward(array);
        ux::IdIndex skipping(array);

        EXPECT_EQ(forward.find(123456789), -1);
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const int id = ids[i];
            ASSERT_EQ(forward.find(id), first_by_search(ids, id));
            ASSERT_EQ(forward.find(id ^ 1), first_by_search(ids, id ^ 1));
            const int mirrored = ids[ids.size() - 1 - i];
            ASSERT_EQ(backward.find(mirrored), first_by_search(ids, mirrored));
            const int later = ids[i * 3 % ids.size()];
            ASSERT_EQ(skipping.find(later), first_by_search(ids, later));
        }
    }
}

}  // namespace
