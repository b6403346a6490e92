// Reference strings of reports.
#include "uxtree/report/report.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::texts;

std::string data(int index, int dotted = 0, char typeChar = 0, char suffix = 0, int typeFlags = 0,
                 char separator = 0, int tailNumber = 0) {
    CStringUTF8 out = "before";
    EXPECT_EQ(report_get_escaped_data_string(&out, index, dotted, typeChar, suffix, typeFlags,
                                             separator, tailNumber),
              1);
    return static_cast<const char*>(out);
}

std::string label(int index, int row, char suffix = 0, int tailNumber = 0, int dotted = 0,
                  char separator = 'E', const char* name = nullptr, char typeChar = 0) {
    CStringUTF8 out = "before";
    EXPECT_EQ(report_get_escaped_label_data_string(&out, index, row, suffix, tailNumber, dotted,
                                                   separator, name, typeChar),
              1);
    return static_cast<const char*>(out);
}

// --- report_get_escaped_data_string --------------------------------------------------------------

TEST(report_get_escaped_data_string, PlainAndDotted) {
    EXPECT_EQ(data(3), "?$OP:A=3");
    EXPECT_EQ(data(3, 1), "?$OP:A=.3");
    EXPECT_EQ(data(-3), "?$OP:A=-3");
}

TEST(report_get_escaped_data_string, ASeparatorTakesTheDotsPlace) {
    EXPECT_EQ(data(3, 0, 0, 0, 0, 'x'), "?$OP:A=x3");
    EXPECT_EQ(data(3, 1, 0, 0, 0, 'x'), "?$OP:A=x3");
    EXPECT_EQ(data(3, 0, 0, 0, 0, '%'), "?$OP:A=%3");
}

TEST(report_get_escaped_data_string, TheTypeCharacterStandsFirst) {
    EXPECT_EQ(data(3, 0, 'P'), "?$OP:P=3");
}

TEST(report_get_escaped_data_string, TypeFlagsAppendToTheType) {
    EXPECT_EQ(data(3, 0, 0, 0, 1), "?$OP:A G=3");
    EXPECT_EQ(data(3, 0, 'B', 0, 0x50001), "?$OP:B G=3");
    EXPECT_EQ(data(3, 0, 0, 0, 2), "?$OP:A (0)=3");
    EXPECT_EQ(data(3, 0, 0, 0, 0x70002), "?$OP:A (7)=3");
    EXPECT_EQ(data(3, 0, 0, 0, 0x7FFF0002), "?$OP:A (32767)=3");
    EXPECT_EQ(data(3, 0, 0, 0, 3), "?$OP:A=3");
    EXPECT_EQ(data(3, 0, 0, 0, 0x10000), "?$OP:A=3");
}

TEST(report_get_escaped_data_string, FlagsBelowOneAppendNothing) {
    EXPECT_EQ(data(3, 0, 0, 0, 0), "?$OP:A=3");
    EXPECT_EQ(data(3, 0, 0, 0, -1), "?$OP:A=3");
    EXPECT_EQ(data(3, 0, 0, 0, std::numeric_limits<int>::min() + 2), "?$OP:A=3");
}

TEST(report_get_escaped_data_string, TheTailNumberNeedsASuffix) {
    EXPECT_EQ(data(3, 0, 0, 'W', 0, 0, 2), "?$OP:A=3W2");
    EXPECT_EQ(data(3, 0, 0, 'W', 0, 0, 0), "?$OP:A=3W");
    EXPECT_EQ(data(3, 0, 0, 'W', 0, 0, -2), "?$OP:A=3W");
    EXPECT_EQ(data(3, 0, 0, 0, 0, 0, 2), "?$OP:A=3");
}

// --- report_get_escaped_label_data_string --------------------------------------------------------

TEST(report_get_escaped_label_data_string, ANumberedRow) {
    EXPECT_EQ(label(4, 2), "?$OP:E2=4");
    EXPECT_EQ(label(4, -5), "?$OP:E-5=4");
    EXPECT_EQ(label(4, -1), "?$OP:E-1=4");
}

TEST(report_get_escaped_label_data_string, ANamedRow) {
    EXPECT_EQ(label(4, -9, 0, 0, 0, 'E', "Units"), "?$OP:E\"Units\"=4");
    EXPECT_EQ(label(4, 2, 0, 0, 0, 'E', "Units"), "?$OP:E2=4");
    EXPECT_EQ(label(4, -9, 0, 0, 0, 'E', ""), "?$OP:E-9=4");
    EXPECT_EQ(label(4, -9), "?$OP:E-9=4");
    EXPECT_EQ(label(4, -9, 0, 0, 0, 'E', "100%s"), "?$OP:E\"100%s\"=4");
}

TEST(report_get_escaped_label_data_string, ThePrefixIsTheTypeOrElseADot) {
    EXPECT_EQ(label(4, 2, 0, 0, 1), "?$OP:E2=.4");
    EXPECT_EQ(label(4, 2, 0, 0, 0, 'E', nullptr, 'B'), "?$OP:E2=B4");
    EXPECT_EQ(label(4, 2, 0, 0, 1, 'E', nullptr, 'B'), "?$OP:E2=B4");
}

TEST(report_get_escaped_label_data_string, SeparatorAndTail) {
    EXPECT_EQ(label(4, 2, 'X', 3, 0, 'L'), "?$OP:L2=4X3");
    EXPECT_EQ(label(4, 2, 0, 3, 0, 'L'), "?$OP:L2=4");
    EXPECT_EQ(label(4, 2, 0, 0, 0, 0), "?$OP:2=4");
}

TEST(report_get_escaped_label_data_string, TheNameMayBeTheOutputItself) {
    CStringUTF8 text = "Units";
    report_get_escaped_label_data_string(&text, 4, -9, 0, 0, 0, 'E', text, 0);
    EXPECT_STREQ(text, "?$OP:E\"Units\"=4");
}

// --- report_get_set_data_string ------------------------------------------------------------------

TEST(report_get_set_data_string, WithoutRowsOneDataStringIsAppended) {
    auto out = uxtest::script_texts({"kept"});
    EXPECT_EQ(report_get_set_data_string(&out, 2, 99, nullptr, nullptr, 0), 1);
    EXPECT_EQ(report_get_set_data_string(&out, 2, 0, nullptr, nullptr, 1), 1);
    EXPECT_THAT(texts(out.array()), ElementsAre("kept", "?$OP:F=3X", "?$OP:F=3Y"));
}

TEST(report_get_set_data_string, OneStringForEveryRow) {
    auto out = uxtest::script_texts({});
    auto rows = uxtest::script_ints({-1, 2, -5, -9});
    EXPECT_EQ(report_get_set_data_string(&out, 0, 0, &rows, "Units", 2), 1);
    EXPECT_THAT(texts(out.array()),
                ElementsAre("?$OP:F=1Z", "?$OP:E2=1Z", "?$OP:F=1Z", "?$OP:E\"Units\"=1Z"));
}

TEST(report_get_set_data_string, NoRowsAppendNothing) {
    auto out = uxtest::script_texts({});
    auto rows = uxtest::script_ints({});
    auto wrong = uxtest::script_doubles({1});
    EXPECT_EQ(report_get_set_data_string(&out, 0, 0, &rows, nullptr, 0), 1);
    EXPECT_EQ(report_get_set_data_string(&out, 0, 0, &wrong, nullptr, 0), 1);
    EXPECT_THAT(texts(out.array()), IsEmpty());
}

TEST(report_get_set_data_string, AlwaysYieldsOne) {
    auto wrong = uxtest::script_ints({});
    EXPECT_EQ(report_get_set_data_string(nullptr, 0, 0, nullptr, nullptr, 0), 1);
    EXPECT_EQ(report_get_set_data_string(&wrong, 0, 0, nullptr, nullptr, 0), 1);
}

TEST(report_get_set_data_string, TheLastIndexWraps) {
    auto out = uxtest::script_texts({});
    report_get_set_data_string(&out, std::numeric_limits<int>::max(), 0, nullptr, nullptr, 0);
    EXPECT_THAT(texts(out.array()), ElementsAre("?$OP:F=-2147483648X"));
}

// --- report_get_escaped_data_string_ex -----------------------------------------------------------

TEST(report_get_escaped_data_string_ex, DefaultsAndTheIndexAsItStands) {
    auto out = uxtest::script_texts({"kept"});
    auto rows = uxtest::script_ints({-1, 2, -5});
    EXPECT_EQ(report_get_escaped_data_string_ex(&out, 4, nullptr, 0), 1);
    EXPECT_EQ(report_get_escaped_data_string_ex(&out, 4, &rows, 'S'), 1);
    EXPECT_THAT(texts(out.array()),
                ElementsAre("kept", "?$OP:A=4", "?$OP:A=4S", "?$OP:E2=4S", "?$OP:A=4S"));
}

TEST(report_get_escaped_data_string_ex, PassesBothSetsOfArgumentsThrough) {
    auto out = uxtest::script_texts({});
    auto rows = uxtest::script_ints({-1, 2, -9});
    EXPECT_EQ(report_get_escaped_data_string_ex(&out, 4, &rows, 'S', 1, 'P', 1, 'd', 5, 6, 1, 'L',
                                                "Units", 0),
              1);
    EXPECT_THAT(texts(out.array()),
                ElementsAre("?$OP:P G=d4S5", "?$OP:L2=.4S6", "?$OP:L\"Units\"=.4S6"));
    out.array().RemoveAll();
    report_get_escaped_data_string_ex(&out, 4, &rows, 0, 1, 0, 0, 0, 5, 6, 0, 'E', nullptr, 'B');
    EXPECT_THAT(texts(out.array()), ElementsAre("?$OP:A=.4", "?$OP:E2=B4", "?$OP:E-9=B4"));
}

TEST(report_get_escaped_data_string_ex, NoRowsAppendNothing) {
    auto out = uxtest::script_texts({});
    auto rows = uxtest::script_ints({});
    EXPECT_EQ(report_get_escaped_data_string_ex(&out, 4, &rows, 0), 1);
    EXPECT_THAT(texts(out.array()), IsEmpty());
}

// --- report_set_escaped_data_string_type ---------------------------------------------------------

struct Retyped {
    int result;
    std::string text;
    bool operator==(const Retyped&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Retyped& r) {
    return out << r.result << ": " << r.text;
}
Retyped retype(const char* text, char type) {
    CStringUTF8 value = text;
    const int result = report_set_escaped_data_string_type(&value, type);
    return {result, static_cast<const char*>(value)};
}

TEST(report_set_escaped_data_string_type, ReplacesTheWholeTypeText) {
    EXPECT_EQ(retype("?$OP:A G=3", 'B'), (Retyped{1, "?$OP:B=3"}));
    EXPECT_EQ(retype("?$OP:A=3", 'P'), (Retyped{1, "?$OP:P=3"}));
    EXPECT_EQ(retype("?$OP:E2=4=5", 'P'), (Retyped{1, "?$OP:P=4=5"}));
}

TEST(report_set_escaped_data_string_type, NeedsALetterBehindTheMarker) {
    for (const char* text : {"?$OP:1=3", "?$OP:=3", "?$OP: A=3", "?$OP:\xC3\xA4=3"}) {
        EXPECT_EQ(retype(text, 'B'), (Retyped{0, text}));
    }
}

TEST(report_set_escaped_data_string_type, NeedsTheMarkerALongerTextAndAnEqualSign) {
    for (const char* text : {"", "A=3", "?$OPA:A=3", "?$OP:", "?$OP:A", "?$OP:A3"}) {
        EXPECT_EQ(retype(text, 'B'), (Retyped{0, text}));
    }
    EXPECT_EQ(report_set_escaped_data_string_type(nullptr, 'B'), 0);
}

TEST(report_set_escaped_data_string_type, WorksAtTheSamePlaceWhereverTheMarkerStands) {
    EXPECT_EQ(retype("abcdef?$OP:A=3", 'B'), (Retyped{1, "abcdeB=3"}));
    EXPECT_EQ(retype("=?$OP:A=3", 'B'), (Retyped{0, "=?$OP:A=3"}));
}

TEST(report_set_escaped_data_string_type, TypeZeroOnlyDeletes) {
    EXPECT_EQ(retype("?$OP:A G=3", 0), (Retyped{1, "?$OP:=3"}));
}

}  // namespace
