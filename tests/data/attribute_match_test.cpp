// Values of one tree into attributes of another, matched by attributes.
#include "uxtree/data/attribute_match.h"

#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

namespace {

using uxtest::TestTree;

struct How {
    int recursive = 1;
    int all = 0;
    int caseSensitive = 1;
    const char* target = nullptr;
    const char* match = nullptr;
    const char* extra = nullptr;
};
using Outcome = std::pair<int, std::string>;

Outcome matched(const char* source, const char* target, const How& how = {}) {
    TestTree from(source);
    TestTree to(target);
    const int result = uxtree_copy_values_to_attributes_by_attribute_matching(
        &from, &to, how.target, how.match, how.extra, how.recursive, how.all, how.caseSensitive);
    return {result, to.text()};
}
Outcome outcome(int result, const char* xml) {
    return {result, TestTree(xml).text()};
}

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, SetsShowByDataIdByDefault) {
    EXPECT_EQ(matched("<r><a DataID='1'>0</a><b><a DataID='2'>1</a></b></r>",
                      "<r><x DataID='2'/><y><z DataID='1'/></y></r>"),
              outcome(1, "<r><x DataID='2' Show='1'/><y><z DataID='1' Show='0'/></y></r>"));
}

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, StopsAtTheFirstMatchUnlessAll) {
    How all;
    all.all = 1;
    const char* const source = "<r><a DataID='1'>0</a></r>";
    const char* const target = "<r><x DataID='1'/><y><x DataID='1'/></y><x DataID='1'/></r>";

    EXPECT_EQ(matched(source, target),
              outcome(1, "<r><x DataID='1' Show='0'/><y><x DataID='1'/></y><x DataID='1'/></r>"));
    EXPECT_EQ(matched(source, target, all),
              outcome(1,
                      "<r><x DataID='1' Show='0'/><y><x DataID='1' Show='0'/></y>"
                      "<x DataID='1' Show='0'/></r>"));
}

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, ForgetsAMatchBeforeTheLastBranch) {
    How all;
    all.all = 1;

    EXPECT_EQ(matched("<r><a DataID='1'>0</a></r>", "<r><x DataID='1'/><y><z/></y></r>", all),
              outcome(0, "<r><x DataID='1' Show='0'/><y><z/></y></r>"));
    EXPECT_EQ(matched("<r><a DataID='1'>0</a></r>", "<r><y DataID='1'><z/></y></r>", all),
              outcome(0, "<r><y DataID='1' Show='0'><z/></y></r>"));
}

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, YieldsTheResultOfTheLastSearch) {
    const char* const target = "<r><x DataID='1'/></r>";
    const char* const shown = "<r><x DataID='1' Show='0'/></r>";

    EXPECT_EQ(matched("<r><a DataID='1'>0</a><a DataID='2'/></r>", target), outcome(0, shown));
    EXPECT_EQ(matched("<r><a DataID='2'/><a DataID='1'>0</a></r>", target), outcome(1, shown));
    EXPECT_EQ(matched("<r><a DataID='1'>0</a><a>no identifier</a></r>", target), outcome(1, shown));
    EXPECT_EQ(matched("<r><a DataID='1'>0</a><b><a/></b></r>", target), outcome(0, shown));
}

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, StaysOnTheFirstLevelsOnRequest) {
    How flat;
    flat.recursive = 0;

    EXPECT_EQ(
        matched("<r><a DataID='1'>0</a><b DataID='3'><a DataID='2'>1</a></b></r>",
                "<r><y DataID='3'><z DataID='1'/></y><z DataID='1'/><z DataID='2'/></r>", flat),
        outcome(1,
                "<r><y DataID='3'><z DataID='1'/></y><z DataID='1' Show='0'/>"
                "<z DataID='2'/></r>"));
}

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, IgnoresCaseOnRequest) {
    How exact;
    exact.match = "Name";
    How folded = exact;
    folded.caseSensitive = 0;
    const char* const source = "<r><a Name='ABC'>0</a></r>";

    EXPECT_EQ(matched(source, "<r><x Name='abc'/></r>", exact),
              outcome(0, "<r><x Name='abc'/></r>"));
    EXPECT_EQ(matched(source, "<r><x Name='abc'/></r>", folded),
              outcome(1, "<r><x Name='abc' Show='0'/></r>"));
}

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, WritesTheExtraAttributeToo) {
    How how;
    how.target = "T";
    how.extra = "E";

    EXPECT_EQ(matched("<r><a DataID='1' E='e'>v</a><a DataID='2'/></r>",
                      "<r><x DataID='1'/><x DataID='2' E='old'/></r>", how),
              outcome(1, "<r><x DataID='1' T='v' E='e'/><x DataID='2' E='' T=''/></r>"));
}

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, SeesMatchAttributesThatItWrites) {
    How how;
    how.target = "DataID";
    how.all = 1;

    EXPECT_EQ(matched("<r><a DataID='1'>2</a><a DataID='2'>3</a></r>",
                      "<r><x DataID='1'/><y DataID='2'/></r>", how),
              outcome(1, "<r><x DataID='3'/><y DataID='3'/></r>"));
}

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, WorksOnASharedTree) {
    TestTree tree("<r><a DataID='1'>0</a></r>");

    EXPECT_EQ(
        uxtree_copy_values_to_attributes_by_attribute_matching(&tree, &tree, "", "", "", 1, 0, 1),
        1);
    EXPECT_EQ(tree.text(), TestTree("<r><a DataID='1' Show='0'>0</a></r>").text());
}

}  // namespace
