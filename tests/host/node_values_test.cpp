// Texts, numbers, vectors and sizes of nodes.
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/host/node.h"
#include "uxtree/host/utilities.h"

#include "host/node_detail.h"
#include "host/node_support.h"
#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::number_list;
using uxtest::numbers;
using uxtest::string_list;
using uxtest::TestTree;
using uxtest::texts;
using uxtest::to_text;
using uxtest::value_of;

// --- values ------------------------------------------------------------------------------------

TEST(NodeValue, TransfersTextInBothDirections) {
    TestTree tree("<r><a>old</a></r>");
    UXXmlWrapperBase a = tree.at("a");
    CStringUTF8 text("x<&>\"y");

    EXPECT_EQ(value_of(a), "old");
    EXPECT_EQ(a.NodeValue(text, 0, 1, nullptr), 1);

    EXPECT_EQ(tree.text(), "<r><a>x&lt;&amp;&gt;\"y</a></r>");
    EXPECT_EQ(value_of(a), "x<&>\"y");
}

TEST(NodeValue, EmptyTextIsNoValue) {
    TestTree tree("<r><a>old</a></r>");
    UXXmlWrapperBase a = tree.at("a");
    CStringUTF8 text("kept?");

    a.SetString("");

    EXPECT_EQ(a.IsEmpty(), 1);
    EXPECT_EQ(a.NodeValue(text, 1, 1, nullptr), 0);
    EXPECT_EQ(text, "");
}

TEST(NodeValue, TextAndChildrenCoexist) {
    TestTree tree("<r>own<a>t</a></r>");

    EXPECT_EQ(value_of(tree), "own");
    tree.SetString("new");

    EXPECT_EQ(tree.text(), "<r>new<a>t</a></r>");
    tree.ResetValue();
    EXPECT_EQ(tree.text(), "<r><a>t</a></r>");
}

TEST(NodeValue, GrowsAndShrinksInPlace) {
    TestTree tree("<r/>");
    std::mt19937 random(1);

    for (int i = 0; i < 2000; ++i) {
        const std::string text(random() % 3000, 'x');
        tree.SetString(text.c_str());
        ASSERT_EQ(value_of(tree), text);
    }
    const std::string huge(5000000, 'y');
    tree.SetString(huge.c_str());
    EXPECT_EQ(value_of(tree), huge);
    tree.SetString("z");
    EXPECT_EQ(tree.text(), "<r>z</r>");
}

struct IntText {
    const char* text;
    int result;
    int value;
};
class NodeValueInt : public testing::TestWithParam<IntText> {};

TEST_P(NodeValueInt, ReadsByTheNumberRules) {
    UXXmlWrapperBase node;
    node.CreateNew(0, nullptr);
    node.SetString(GetParam().text);
    int value = 77;

    EXPECT_EQ(node.NodeValue(value, 1), GetParam().result);
    EXPECT_EQ(value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Texts, NodeValueInt,
                         testing::Values(IntText{"12", 1, 12}, IntText{" -3\n", 1, -3},
                                         IntText{"+4", 1, 4}, IntText{"2.9", 1, 2},
                                         IntText{"-2.9", 1, -2}, IntText{"1e3", 1, 1000},
                                         IntText{"2147483647", 1, 2147483647},
                                         IntText{"2147483648", 1, std::numeric_limits<int>::min()},
                                         IntText{"4294967295", 1, -1}, IntText{"4294967296", 0, 77},
                                         IntText{"-2147483648", 1, std::numeric_limits<int>::min()},
                                         IntText{"-2147483649", 0, 77}, IntText{"", 0, 77},
                                         IntText{"x", 0, 77}, IntText{"12x", 0, 77},
                                         IntText{"1 2", 0, 77}, IntText{"0x10", 0, 77},
                                         IntText{"inf", 0, 77}, IntText{"nan", 0, 77}));

TEST(NodeValue, WritesNumbersAsDecimalText) {
    TestTree tree("<r><i/><d/><b/><m/></r>");
    int number = -12;
    double real = 0.1;
    bool flag = true;
    double endless = std::numeric_limits<double>::infinity();

    EXPECT_EQ(tree.at("i").NodeValue(number, 0), 1);
    EXPECT_EQ(tree.at("d").NodeValue(real, 0), 1);
    EXPECT_EQ(tree.at("b").NodeValue(flag, 0), 1);
    EXPECT_EQ(tree.at("m").NodeValue(endless, 0), 1);

    EXPECT_EQ(tree.text(), "<r><i>-12</i><d>0.1</d><b>1</b><m>-1.23456789e-300</m></r>");
    double read = 0;
    EXPECT_EQ(tree.at("m").NodeValue(read, 1), 1);
    const double missing = UXMissingValue();
    EXPECT_EQ(std::memcmp(&read, &missing, sizeof read), 0);
}

TEST(NodeValue, ReadsBooleans) {
    UXXmlWrapperBase node;
    node.CreateNew(0, nullptr);
    const auto read = [&](const char* text) {
        node.SetString(text);
        bool value = false;
        const int result = node.NodeValue(value, 1);
        return result == 0 ? -1 : static_cast<int>(value);
    };

    EXPECT_EQ(read("1"), 1);
    EXPECT_EQ(read("-0.5"), 1);
    EXPECT_EQ(read(" true "), 1);
    EXPECT_EQ(read("0"), 0);
    EXPECT_EQ(read("0.0"), 0);
    EXPECT_EQ(read("false"), 0);
    EXPECT_EQ(read("TRUE"), -1);
    EXPECT_EQ(read("yes"), -1);
    EXPECT_EQ(read(""), -1);
}

TEST(NodeValue, DoublesSurviveBitForBit) {
    UXXmlWrapperBase node;
    node.CreateNew(0, nullptr);
    std::mt19937_64 random(3);

    for (int i = 0; i < 20000; ++i) {
        const std::uint64_t bits = random();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value)) continue;
        double read = 0;
        node.NodeValue(value, 0);
        ASSERT_EQ(node.NodeValue(read, 1), 1);
        ASSERT_EQ(std::memcmp(&read, &value, sizeof value), 0);
    }
}

template <typename T>
class NodeValueVector : public testing::Test {};
using ElementTypes = testing::Types<bool, char, unsigned char, short, unsigned short, int,
                                    unsigned int, std::int64_t, std::uint64_t, float, double>;
TYPED_TEST_SUITE(NodeValueVector, ElementTypes);

TYPED_TEST(NodeValueVector, ReadsBackTheExtremes) {
    UXXmlWrapperBase node;
    node.CreateNew(0, nullptr);
    CArray<TypeParam, TypeParam> values;
    values.Add(std::numeric_limits<TypeParam>::lowest());
    values.Add(TypeParam(0));
    values.Add(TypeParam(1));
    values.Add(std::numeric_limits<TypeParam>::max());
    CArray<TypeParam, TypeParam> read;

    EXPECT_EQ(node.NodeValue(values, 0), 1);
    EXPECT_EQ(node.NodeValue(read, 1), 1);

    EXPECT_EQ(numbers(read), numbers(values));
}

TYPED_TEST(NodeValueVector, LeavesTheArrayAloneWhenAnElementDoesNotConvert) {
    UXXmlWrapperBase node;
    node.CreateNew(0, nullptr);
    CArray<TypeParam, TypeParam> read;
    read.Add(TypeParam(1));

    EXPECT_EQ(node.NodeValue(read, 1), 0);  // no value
    node.SetString("1 x");
    EXPECT_EQ(node.NodeValue(read, 1), 0);
    node.SetString("1e999");
    EXPECT_EQ(node.NodeValue(read, 1), 0);

    ASSERT_EQ(read.GetSize(), 1);
    EXPECT_EQ(read[0], TypeParam(1));
}

TYPED_TEST(NodeValueVector, EmptyArrayClearsTheValue) {
    UXXmlWrapperBase node;
    node.CreateNew(0, nullptr);
    node.SetString("1");
    CArray<TypeParam, TypeParam> values;

    EXPECT_EQ(node.NodeValue(values, 0), 1);

    EXPECT_EQ(node.IsEmpty(), 1);
}

TYPED_TEST(NodeValueVector, DescriptorsTransferWithZeroAsSuccess) {
    UXXmlWrapperBase node;
    node.CreateNew(0, nullptr);
    CArray<TypeParam, TypeParam> values;
    values.Add(TypeParam(1));
    UXVectorDesc vector(values);

    EXPECT_EQ(node.GetVector(vector), 1);
    EXPECT_EQ(node.SetVector(vector), 0);
    values[0] = TypeParam(0);
    EXPECT_EQ(node.GetVector(vector), 0);

    EXPECT_EQ(values[0], TypeParam(1));
    EXPECT_EQ(value_of(node), "1");
}

TEST(NodeValue, VectorElementsOutsideTheirTypeDoNotConvert) {
    UXXmlWrapperBase node;
    node.CreateNew(0, nullptr);
    CArray<unsigned char, unsigned char> bytes;
    CArray<unsigned int, unsigned int> words;

    node.SetString("255 256");
    EXPECT_EQ(node.NodeValue(bytes, 1), 0);
    node.SetString("255.9 0.5");
    EXPECT_EQ(node.NodeValue(bytes, 1), 1);
    EXPECT_THAT(numbers(bytes), ElementsAre(255, 0));
    node.SetString("-1");
    EXPECT_EQ(node.NodeValue(words, 1), 0);
    node.SetString("4294967295");
    EXPECT_EQ(node.NodeValue(words, 1), 1);
}

TEST(NodeValue, VectorOfDoublesIsKeptAsNumbersAndReadsAsText) {
    TestTree tree("<r/>");
    CArray<double, double> values = number_list<double>({1, 0.1, 1e300, std::nan("")});
    CArray<int, int> ints;

    tree.NodeValue(values, 0);

    EXPECT_EQ(tree.text(), "<r>1 0.1 1e+300 -1.23456789e-300</r>");
    EXPECT_EQ(tree.NodeValue(ints, 1), 0);  // 1e300 is no int
    EXPECT_EQ(tree.IsEmpty(), 0);
    UXXmlWrapperBase clone;
    tree.Clone(&clone, 1);
    EXPECT_EQ(to_text(clone), tree.text());
    tree.SetString("text again");
    EXPECT_EQ(tree.text(), "<r>text again</r>");
}

// Whole numbers are kept in less room; nothing else tells.
TEST(NodeValue, LongVectorsAreTheSameDoublesAgain) {
    constexpr int kCount = 700;
    const double biggest = std::numeric_limits<std::int32_t>::max();
    for (const double special : {0.0, 1.0, 65535.0, 65536.0, -1.0, biggest, biggest + 1,
                                 -biggest - 1, -biggest - 2, 0.5, -0.0, 1e300, 4294967296.0}) {
        for (const int place : {0, 255, 256, kCount - 1}) {
            std::vector<double> written(kCount);
            for (int i = 0; i < kCount; ++i) written[static_cast<std::size_t>(i)] = i % 300;
            written[static_cast<std::size_t>(place)] = special;
            std::string text;
            CStringUTF8 number;
            for (const double value : written) {
                UXFormatDouble(value, number);
                text += text.empty() ? "" : " ";
                text += number;
            }
            TestTree tree("<r/>");
            CArray<double, double> values = number_list<double>(written);
            CArray<double, double> read;

            ASSERT_EQ(tree.NodeValue(values, 0), 1);
            ASSERT_EQ(tree.NodeValue(read, 1), 1);

            ASSERT_EQ(std::memcmp(read.GetData(), written.data(), kCount * sizeof(double)), 0);
            ASSERT_EQ(value_of(tree), text);
            ASSERT_EQ(tree.text(), "<r>" + text + "</r>");
            UXXmlWrapperBase clone;
            ASSERT_EQ(tree.Clone(&clone, 1), 1);
            ASSERT_EQ(to_text(clone), tree.text());
        }
    }
}

TEST(NodeValue, CountsTakeAQuarterOfTheMemoryOfDoubles) {
    TestTree tree("<r/>");
    CArray<double, double> counts = number_list<double>(std::vector<double>(1 << 17, 65535));
    ASSERT_EQ(tree.NodeValue(counts, 0), 1);
    EXPECT_LT(uxhost::document_of(tree)->memory_bytes(), std::size_t{300} << 10);
}

TEST(NodeValue, TextsAreJoinedWithEscapes) {
    UXXmlWrapperBase node;
    node.CreateNew(0, nullptr);
    CWBOStringArray list = string_list({"a|b", "", "c\\d", "e\\|"});
    CWBOStringArray read = string_list({"old"});

    EXPECT_EQ(node.NodeValue(list, 0, nullptr), 1);
    EXPECT_EQ(value_of(node), "a\\|b||c\\\\d|e\\\\\\|");
    EXPECT_EQ(node.NodeValue(read, 1, nullptr), 1);

    EXPECT_EQ(texts(read), texts(list));
    list.RemoveAll();
    node.NodeValue(list, 0, nullptr);
    EXPECT_EQ(node.NodeValue(read, 1, nullptr), 0);
    EXPECT_EQ(read.GetSize(), 4);
}

TEST(CheckSetValue, WritesTheTextOfALeafAndTheUseOfABranch) {
    TestTree tree("<r><a>old</a><b>own<c/></b></r>");

    EXPECT_EQ(tree.at("a").CheckSetValue(5, "new", 0), 1);
    EXPECT_EQ(tree.at("b").CheckSetValue(0, "1", 1), 1);

    EXPECT_EQ(tree.text(), R"(<r><a>new</a><b Use="1">own<c></c></b></r>)");
    EXPECT_EQ(tree.at("b").CheckSetValue(0, "-1", 1), 1);
    EXPECT_EQ(tree.text(), R"(<r><a>new</a><b Use="1">own<c></c></b></r>)");
    EXPECT_EQ(tree.at("a").CheckSetValue(0, "-1", 0), 1);
    EXPECT_EQ(value_of(tree.at("a")), "-1");
}

TEST(GetString, EscapesAndAlwaysCloses) {
    TestTree tree("<r><a x='&lt;&quot;&#9;'>1 &lt; 2&#13;</a><b/></r>");
    CStringUTF8 text;

    EXPECT_EQ(tree.GetString(text), 1);

    EXPECT_STREQ(text, "<r><a x=\"&lt;&quot;&#9;\">1 &lt; 2&#13;</a><b></b></r>");
}

TEST(GetNodeStringWithBlobInfo, YieldsTheOwnTextNeverMarkup) {
    TestTree tree("<r>own<a>t</a></r>");
    CStringUTF8 text("old");

    EXPECT_EQ(tree.GetNodeStringWithBlobInfo(text, 0), 1);
    EXPECT_EQ(text, "own");
    UXXmlWrapperBase empty;
    empty.CreateNew(0, "e");
    EXPECT_EQ(empty.GetNodeStringWithBlobInfo(text, 0), 1);
    EXPECT_EQ(text, "");
}

TEST(GetNodeArrayType, IsZero) {
    EXPECT_EQ(TestTree("<r/>").GetNodeArrayType(1), 0);
}

// --- array sizes -------------------------------------------------------------------------------

TEST(SaveXDEArraySize, KeepsTheSizeInAnAttribute) {
    TestTree tree("<r DimLens='4' x='1'/>");
    int size = -5;

    EXPECT_EQ(tree.LoadXDEArraySize(&size), 0);
    EXPECT_EQ(size, -5);
    EXPECT_EQ(tree.SaveXDEArraySize(3), 1);
    EXPECT_EQ(tree.text(), R"(<r x="1" FileDataDimsVector="3"></r>)");
    EXPECT_EQ(tree.LoadXDEArraySize(&size), 1);
    EXPECT_EQ(size, 3);
    EXPECT_EQ(tree.LoadXDEArraySize(nullptr), 1);
    EXPECT_EQ(tree.SaveXDE2DArraySize(7, 2), 1);
    EXPECT_EQ(tree.text(), R"(<r x="1" FileDataDimsVector="7|2"></r>)");
    EXPECT_EQ(tree.LoadXDEArraySize(&size), 1);
    EXPECT_EQ(size, 7);
    EXPECT_EQ(tree.SaveXDEArraySize(0), 1);
    EXPECT_EQ(tree.text(), R"(<r x="1"></r>)");
    tree.SetPropertyValue("FileDataDimsVector", CStringUTF8("many"));
    EXPECT_EQ(tree.LoadXDEArraySize(&size), 0);
    EXPECT_EQ(size, 7);
}

TEST(SetSizeTrimFromEnd, RemovesChildrenFromTheEnd) {
    TestTree tree("<r>t<a/><b><c/></b><d/></r>");
    UXXmlWrapperBase c = tree.at("b/c");

    EXPECT_EQ(tree.SetSizeTrimFromEnd(-1), 0);
    EXPECT_EQ(tree.SetSizeTrimFromEnd(3), 1);
    EXPECT_EQ(tree.SetSizeTrimFromEnd(9), 1);
    EXPECT_EQ(tree.text(), "<r>t<a></a><b><c></c></b><d></d></r>");
    EXPECT_EQ(tree.SetSizeTrimFromEnd(1), 1);

    EXPECT_EQ(tree.text(), "<r>t<a></a></r>");
    EXPECT_EQ(c.IsNodeValid(), 0);
    EXPECT_EQ(tree.SetSizeTrimFromEnd(0), 1);
    EXPECT_EQ(tree.text(), "<r>t</r>");
}

}  // namespace
