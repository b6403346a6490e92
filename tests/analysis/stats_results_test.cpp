// Results of statistics: their nodes, descriptive records, histogram details.
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "uxtree/analysis/stats.h"

#include "analysis/stats_support.h"
#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::bits;
using uxtest::child;
using uxtest::kMissingBits;
using uxtest::tag_text;
using uxtest::TestTree;
using uxtest::tree_text;

// --- result nodes --------------------------------------------------------------------------------

std::string created_name(int x, int y) {
    TestTree tree("<r/>");
    UXXmlWrapperBase out;
    EXPECT_EQ(vctree_stats_create_result_node(tree, out, {x, y}), 1);
    const std::string tag = tag_text(out);
    EXPECT_EQ(tree.text(), "<r><" + tag + "></" + tag + "></r>");
    return tag;
}

TEST(vctree_stats_create_result_node, NamesCountFromOne) {
    EXPECT_EQ(created_name(0, 0), "Result_1_1");
    EXPECT_EQ(created_name(2, 11), "Result_3_12");
}

TEST(vctree_stats_create_result_node, ANegativeCoordinateMeansTheSingleResult) {
    EXPECT_EQ(created_name(-1, 5), "Result");
    EXPECT_EQ(created_name(5, -1), "Result");
    EXPECT_EQ(created_name(-1, -1), "Result");
}

TEST(vctree_stats_create_result_node, TheLargestPositionWraps) {
    EXPECT_EQ(created_name(std::numeric_limits<int>::max(), 0), "Result_-2147483648_1");
}

TEST(vctree_stats_create_result_node, FindsTheOneThatIsThere) {
    TestTree tree("<r><a/><Result_1_2 k='1'/></r>");
    UXXmlWrapperBase node = tree;
    const std::string before = tree.text();
    EXPECT_EQ(vctree_stats_create_result_node(node, node, {0, 1}), 1);
    EXPECT_TRUE(node == tree.at("Result_1_2"));
    EXPECT_EQ(tree.text(), before);
}

// All results of a tree as "tag x y".
std::vector<std::string> results_of(const char* xml) {
    TestTree tree(xml);
    UXXmlWrapperBase cur;
    tagPOINT pos{-7, -7};
    std::vector<std::string> out;
    while (vctree_stats_enum_result_node(tree, cur, &pos)) {
        out.push_back(tag_text(cur) + " " + std::to_string(pos.x) + " " + std::to_string(pos.y));
    }
    return out;
}

TEST(vctree_stats_enum_result_node, PassesOverOtherChildren) {
    EXPECT_THAT(results_of("<r><a/><Result_1_1/><b/><Result_2_3/><Resul/></r>"),
                ElementsAre("Result_1_1 0 0", "Result_2_3 1 2"));
    EXPECT_THAT(results_of("<r/>"), IsEmpty());
    EXPECT_THAT(results_of("<r><a><Result/></a></r>"), IsEmpty());
}

TEST(vctree_stats_enum_result_node, AcceptsEveryTagThatBeginsSoInAnyCase) {
    EXPECT_THAT(results_of("<r><result_2_3/><RESULTS/><Results/><Result/><ResultX_4_5/></r>"),
                ElementsAre("result_2_3 1 2", "RESULTS -1 -1", "Results -1 -1", "Result -1 -1",
                            "ResultX_4_5 3 4"));
}

TEST(vctree_stats_enum_result_node, ReadsNumbersAsFarAsTheyGo) {
    EXPECT_THAT(results_of("<r><Result_5/><Result_5_/><Result__6/><Result_2x_3y/><Result_a_b/>"
                           "<Result_1_2_3/></r>"),
                ElementsAre("Result_5 4 -1", "Result_5_ 4 -1", "Result__6 -1 5", "Result_2x_3y 1 2",
                            "Result_a_b -1 -1", "Result_1_2_3 0 1"));
}

TEST(vctree_stats_enum_result_node, HugeNumbersDoNotOverflow) {
    EXPECT_THAT(results_of("<r><Result_99999999999_-99999999999/></r>"),
                ElementsAre("Result_99999999999_-99999999999 2147483646 2147483647"));
}

TEST(vctree_stats_enum_result_node, AtTheEndTheHandleStaysOnTheLastChild) {
    TestTree tree("<r><Result/><b/><c/></r>");
    UXXmlWrapperBase cur;
    EXPECT_EQ(vctree_stats_enum_result_node(tree, cur, nullptr), 1);
    for (int i = 0; i < 3; ++i) {
        tagPOINT pos{7, 7};
        EXPECT_EQ(vctree_stats_enum_result_node(tree, cur, &pos), 0);
        EXPECT_TRUE(cur == tree.at("c"));
        EXPECT_EQ(pos.x, 7);
    }
}

TEST(uxtree_stats_enum_result_node, GivesRowAndColumnOnlyWhenFound) {
    TestTree tree("<r><Result_3_4/></r>");
    UXXmlWrapperBase cur;
    int row = 7;
    int col = 8;
    EXPECT_EQ(uxtree_stats_enum_result_node(&tree, &cur, &row, &col), 1);
    EXPECT_EQ(row, 2);
    EXPECT_EQ(col, 3);
    row = 7;
    EXPECT_EQ(uxtree_stats_enum_result_node(&tree, &cur, &row, &col), 0);
    EXPECT_EQ(row, 7);
    EXPECT_EQ(col, 3);
    UXXmlWrapperBase again;
    EXPECT_EQ(uxtree_stats_enum_result_node(&tree, &again, nullptr, nullptr), 1);
}

// --- descriptive results -------------------------------------------------------------------------

// A record in which every field has a value of its own: 1, 2 and then 3.5, 4.5, ...
tagDescStatResults numbered_results() {
    tagDescStatResults out{};
    out.N = 1;
    out.Missing = 2;
    double value = 2.5;
    for (double* field = &out.Mean; field <= &out.WeightSum; ++field) *field = (value += 1);
    return out;
}
constexpr const char* kResultNames[] = {"Mean",     "SD",    "SEM",      "LCL",      "UCL",
                                        "Variance", "Sum",   "Skewness", "Kurtosis", "UncorSumSq",
                                        "CorSumSq", "COV",   "MAD",      "SDx2",     "SDx3",
                                        "GeoMean",  "GeoSD", "Mode",     "WeightSum"};

std::string results_text() {
    std::string text = "<r><Results>" + child("N", "1") + child("Missing", "2");
    int value = 3;
    for (const char* name : kResultNames) text += child(name, std::to_string(value++) + ".5");
    return text + child("Min", "-1") + child("Max", "99") + "</Results></r>";
}

TEST(vctree_stats_get_set_stats_results, WritesEveryFieldInOrderAndReadsItBack) {
    TestTree tree("<r/>");
    tagDescStatResults results = numbered_results();
    double min = -1;
    double max = 99;
    vctree_stats_get_set_stats_results(tree, results, min, max, 0);
    EXPECT_EQ(tree.text(), results_text());

    tagDescStatResults back{};
    min = max = 0;
    vctree_stats_get_set_stats_results(tree, back, min, max, 1);
    EXPECT_EQ(std::memcmp(&back, &results, sizeof back), 0);
    EXPECT_EQ(min, -1);
    EXPECT_EQ(max, 99);
}

TEST(vctree_stats_get_set_stats_results, ReadingNothingGivesDefaultsAndCreatesResults) {
    for (const char* xml : {"<r/>", "<r><Results/></r>"}) {
        TestTree tree(xml);
        tagDescStatResults results = numbered_results();
        double min = 5;
        double max = 6;
        vctree_stats_get_set_stats_results(tree, results, min, max, 1);
        EXPECT_EQ(tree.text(), tree_text("<r><Results/></r>"));
        EXPECT_EQ(results.N, 0);
        EXPECT_EQ(results.Missing, 0);
        for (const double* field = &results.Mean; field <= &results.WeightSum; ++field) {
            EXPECT_EQ(bits(*field), kMissingBits);
        }
        EXPECT_EQ(min, 5);  // these two have no default
        EXPECT_EQ(max, 6);
    }
}

TEST(vctree_stats_get_set_stats_results, AFieldThatCannotBeReadKeepsWhatItHeld) {
    TestTree tree("<r><Results><N>x</N><SD/><Mean>4</Mean></Results></r>");
    tagDescStatResults results = numbered_results();
    double min = 0;
    double max = 0;
    vctree_stats_get_set_stats_results(tree, results, min, max, 1);
    EXPECT_EQ(results.N, 1);
    EXPECT_EQ(results.Mean, 4);
    EXPECT_EQ(results.SD, 4.5);
    EXPECT_EQ(bits(results.SEM), kMissingBits);
}

TEST(uxtree_stats_get_set_stats_results, GivesTheNativeAnswer) {
    TestTree tree("<r/>");
    tagDescStatResults results = numbered_results();
    double min = -1;
    double max = 99;
    uxtree_stats_get_set_stats_results(&tree, &results, &min, &max, 0);
    EXPECT_EQ(tree.text(), results_text());
}

// --- histogram details ---------------------------------------------------------------------------

tagHistogramStatsResult numbered_details() {
    tagHistogramStatsResult out{};
    out.N = 1;
    out.Missing = 2;
    double value = 2.5;
    for (double* field = &out.Min; field <= &out.Scale; ++field) *field = (value += 1);
    out.Bandwidth = 19;
    out.Width = 20.5;
    out.Gamalpha = 21.5;
    out.Gamtheta = 22.5;
    return out;
}
constexpr const char* kDetailNames[] = {"Min",  "Max",     "Sum",   "Mean",   "SD", "SEM",
                                        "LCL",  "UCL",     "Q1",    "Median", "Q3", "LnMean",
                                        "LnSD", "WblMean", "WblSD", "Scale"};

std::string details_text() {
    std::string text = "<r><Details>" + child("N", "1") + child("Missing", "2");
    int value = 3;
    for (const char* name : kDetailNames) text += child(name, std::to_string(value++) + ".5");
    return text + child("Bandwidth", "19") + child("Width", "20.5") + child("Gamalpha", "21.5") +
           child("Gamtheta", "22.5") + "</Details></r>";
}

bool same(const tagHistogramStatsResult& a, const tagHistogramStatsResult& b) {
    TestTree ta("<r/>");
    TestTree tb("<r/>");
    tagHistogramStatsResult ca = a;
    tagHistogramStatsResult cb = b;
    vctree_stats_result_get_set_details(ta, ca, 0);
    vctree_stats_result_get_set_details(tb, cb, 0);
    return ta.text() == tb.text();
}

TEST(vctree_stats_result_get_set_details, WritesEveryFieldInOrderAndReadsItBack) {
    TestTree tree("<r/>");
    tagHistogramStatsResult details = numbered_details();
    EXPECT_EQ(vctree_stats_result_get_set_details(tree, details, 0), 1);
    EXPECT_EQ(tree.text(), details_text());

    tagHistogramStatsResult back{};
    EXPECT_EQ(vctree_stats_result_get_set_details(tree, back, 1), 1);
    EXPECT_TRUE(same(back, details));
    EXPECT_EQ(back.Gamtheta, 22.5);
}

TEST(vctree_stats_result_get_set_details, WithoutDetailsTheRecordIsUntouched) {
    TestTree tree("<r/>");
    tagHistogramStatsResult details = numbered_details();
    EXPECT_EQ(vctree_stats_result_get_set_details(tree, details, 1), 0);
    EXPECT_TRUE(same(details, numbered_details()));
    EXPECT_EQ(tree.text(), tree_text("<r/>"));
}

TEST(vctree_stats_result_get_set_details, EmptyDetailsGiveDefaultsAndZero) {
    TestTree tree("<r><Details/></r>");
    tagHistogramStatsResult details = numbered_details();
    EXPECT_EQ(vctree_stats_result_get_set_details(tree, details, 1), 0);
    EXPECT_EQ(tree.text(), tree_text("<r><Details/></r>"));
    EXPECT_EQ(details.N, 0);
    EXPECT_EQ(details.Missing, 0);
    EXPECT_EQ(details.Bandwidth, 0);
    for (const double* field = &details.Min; field <= &details.Scale; ++field) {
        EXPECT_EQ(bits(*field), kMissingBits);
    }
    for (double field : {details.Width, details.Gamalpha, details.Gamtheta}) {
        EXPECT_EQ(bits(field), kMissingBits);
    }
}

TEST(vctree_stats_result_get_set_details, AFieldThatIsThereCountsEvenWhenUnreadable) {
    TestTree tree("<r><Details><Q1>?</Q1></Details></r>");
    tagHistogramStatsResult details = numbered_details();
    EXPECT_EQ(vctree_stats_result_get_set_details(tree, details, 1), 1);
    EXPECT_EQ(details.Q1, numbered_details().Q1);
    EXPECT_EQ(bits(details.Q3), kMissingBits);
}

TEST(uxtree_stats_result_get_set_details, GivesTheNativeAnswer) {
    TestTree tree("<r/>");
    tagHistogramStatsResult details = numbered_details();
    EXPECT_EQ(uxtree_stats_result_get_set_details(&tree, &details, 0), 1);
    EXPECT_EQ(tree.text(), details_text());
}

TEST(vctree_stats_result_get_set_details, TheRecordsHaveNaturalPacking) {
    EXPECT_EQ(sizeof(tagDescStatResults), 2 * sizeof(int) + 19 * sizeof(double));
    EXPECT_EQ(sizeof(tagHistogramStatsResult), 2 * sizeof(int) + 20 * sizeof(double));
    EXPECT_EQ(sizeof(tagPOINT), 2 * sizeof(int));
}

}  // namespace
