// Nodes of the embedded host: handles, tags, attributes, values, structure.
#include "uxtree/host/node.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <numeric>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/host/utilities.h"

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

std::string tag_of(const UXXmlWrapperBase& node) {
    CStringUTF8 tag("(unchanged)");
    node.GetTagName(tag);
    return static_cast<const char*>(tag);
}
std::string value_of(UXXmlWrapperBase node) {
    CStringUTF8 text("(unchanged)");
    node.NodeValue(text, 1, 1, nullptr);
    return static_cast<const char*>(text);
}
std::string attribute_of(const UXXmlWrapperBase& node, const char* name) {
    CStringUTF8 text("(unchanged)");
    node.GetPropertyValue(name, text, 0);
    return static_cast<const char*>(text);
}

// --- handles -----------------------------------------------------------------------------------

TEST(UXXmlWrapperBase, DefaultHandleRefersToNothing) {
    UXXmlWrapperBase handle;

    EXPECT_EQ(handle.IsNodeValid(), 0);
    EXPECT_EQ(handle.IsValid(), 0);
    EXPECT_TRUE(handle == UXXmlWrapperBase());
    EXPECT_EQ(handle.GetInternalData(kUXTypeStringArray), nullptr);
}

TEST(UXXmlWrapperBase, CopiesReferToTheSameElement) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase a = tree.at("a");

    UXXmlWrapperBase copy(a);
    UXXmlWrapperBase assigned;
    assigned = a;
    copy.SetPropertyValue("x", 1);

    EXPECT_TRUE(copy == a);
    EXPECT_TRUE(assigned == a);
    EXPECT_FALSE(a == tree.root());
    EXPECT_EQ(tree.text(), R"(<r><a x="1"></a></r>)");
}

TEST(UXXmlWrapperBase, AssigningAHandleToItselfKeepsIt) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    const UXXmlWrapperBase& same = root;

    root = same;

    EXPECT_EQ(tag_of(root), "r");
}

TEST(UXXmlWrapperBase, HandleKeepsItsDocumentAlive) {
    UXXmlWrapperBase leaf;
    {
        TestTree tree("<r><a><b>text</b></a></r>");
        leaf = tree.at("a/b");
    }
    UXXmlWrapperBase top = leaf;
    while (top.GetParent(&leaf)) top = leaf;

    EXPECT_EQ(to_text(top), "<r><a><b>text</b></a></r>");
}

TEST(UXXmlWrapperBase, MovedFromHandleIsUsable) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase a = tree.at("a");

    UXXmlWrapperBase moved(std::move(a));
    a = tree.root();

    EXPECT_EQ(tag_of(moved), "a");
    EXPECT_EQ(tag_of(a), "r");
}

TEST(ReleaseNode, LetsGoWithoutTouchingTheElement) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase a = tree.at("a");

    EXPECT_EQ(a.ReleaseNode(), 1);
    EXPECT_EQ(a.ReleaseNode(), 1);

    EXPECT_EQ(a.IsNodeValid(), 0);
    EXPECT_EQ(tree.text(), "<r><a></a></r>");
}

TEST(UXXmlWrapperBase, EveryOperationOnAnInvalidHandleYieldsZeroAndChangesNothing) {
    UXXmlWrapperBase none;
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out = tree.at("a");
    CStringUTF8 text("kept");
    CWBOStringArray list = string_list({"kept"});
    CArray<int, int> ints = number_list<int>({7});
    CArray<UXXmlWrapperBase, UXXmlWrapperBase> handles;
    int number = 7;
    double real = 7;
    bool flag = true;

    EXPECT_EQ(none.GetNodeCount() + none.HasChildren(0) + none.IsEmpty() + none.IsRootNode(0), 0);
    EXPECT_EQ(none.GetTagName(text) + none.NodeValue(text, 1, 1, nullptr) +
                  none.NodeValue(text, 0, 1, nullptr) + none.GetString(text) +
                  none.GetNodeStringWithBlobInfo(text, 0),
              0);
    EXPECT_EQ(none.NodeValue(number, 1) + none.NodeValue(number, 0) + none.NodeValue(real, 1) +
                  none.NodeValue(real, 0) + none.NodeValue(flag, 1) + none.NodeValue(flag, 0),
              0);
    EXPECT_EQ(none.NodeValue(ints, 1) + none.NodeValue(ints, 0) + none.NodeValue(list, 1, nullptr) +
                  none.NodeValue(list, 0, nullptr),
              0);
    EXPECT_EQ(none.SetString("x") + none.ResetValue() + none.CheckSetValue(0, "x", 0) +
                  none.SetSizeTrimFromEnd(0) + none.LoadXDEArraySize(&number) +
                  none.SaveXDEArraySize(3) + none.SaveXDE2DArraySize(3, 3) +
                  none.GetNodeArrayType(0),
              0);
    EXPECT_EQ(none.GetPropertyValue("a", text, 0) + none.GetPropertyValue("a", number, 0) +
                  none.GetPropertyValue("a", real, 0) + none.SetPropertyValue("a", 1) +
                  none.SetPropertyValue("a", 1.0) + none.SetPropertyValue("a", text) +
                  none.SetPropertyValue("a", list) + none.HasProperty("a", 0) +
                  none.RemoveProperty("a") + none.RemoveAttr("a", 0),
              0);
    EXPECT_EQ(none.GetPropertyNames(list) + none.GetPropertyNamesAndValues(list, &list, nullptr) +
                  none.CopyAllAttributes(root, 1) + root.CopyAllAttributes(none, 1),
              0);
    EXPECT_EQ(none.GetDataID(number) + none.SetDataID(1) + none.GetID(number) +
                  none.SetID(1, false) + none.GetShow(number) + none.SetLabel("x") +
                  none.SetLabel(text),
              0);
    EXPECT_EQ(none.RemoveNode() + none.RemoveChild(&out, &number) + none.RemoveAllChildren() +
                  none.ResetNode(1) + none.Save("/nowhere/x.xml", 0) + none.SetTagName("x"),
              0);
    EXPECT_EQ(none.GetArrayOfChildren(handles, nullptr, &ints, 1), 0);
    EXPECT_EQ(none.ArrangeChildContents(CArray<int, int>()), 0);
    UXVectorDesc vector(ints);
    EXPECT_EQ(none.GetVector(vector) + none.SetVector(vector), 2);  // here 0 is success
    none.SetShow(0);

    EXPECT_EQ(text, "kept");
    EXPECT_THAT(texts(list), ElementsAre("kept"));
    EXPECT_THAT(numbers(ints), ElementsAre(7));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(real, 7);
    EXPECT_EQ(tree.text(), "<r><a></a></r>");
}

TEST(UXXmlWrapperBase, OperationsThatYieldANodeFailWithAnInvalidOutput) {
    UXXmlWrapperBase none;
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    const auto fails = [&](auto&& operation) {
        UXXmlWrapperBase out = tree.at("a");
        return operation(&out) == 0 && out.IsNodeValid() == 0;
    };

    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.FirstChild(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.NextSibling(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.PrevSibling(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.GetParent(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.GetChild(out, 0); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.AddNode(out, "x", -1); }));
    EXPECT_TRUE(fails(
        [&](UXXmlWrapperBase* out) { return none.AddTextNode(out, "x", "y", -1, 0, nullptr); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.AddChildNode("x", out, -1, ""); }));
    EXPECT_TRUE(
        fails([&](UXXmlWrapperBase* out) { return none.InsertNodeBefore(root, "x", -1, out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.AddNodeCopy(&root, 1, out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return root.AddNodeCopy(&none, 1, out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return root.AddNodeCopy(nullptr, 1, out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.Clone(out, 1); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.FindChild("a", out, 1); }));
    EXPECT_TRUE(fails(
        [&](UXXmlWrapperBase* out) { return none.FindNodeByAttribute(out, "a", "b", 0, 1); }));
    EXPECT_TRUE(
        fails([&](UXXmlWrapperBase* out) { return none.FindNodeByAttribute(out, "a", 1, 1); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) {
        return none.FindCreateNode("a", out, -1, nullptr, 0, 0, nullptr);
    }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return root.GetParent(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return root.NextSibling(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return root.PrevSibling(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return root.GetChild(out, 1); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return root.GetChild(out, -1); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return root.AddNode(out, "1x", -1); }));
    EXPECT_EQ(root.FirstChild(nullptr), 0);
    EXPECT_EQ(root.Clone(nullptr, 1), 0);
    EXPECT_EQ(tree.text(), "<r><a></a></r>");
}

// --- counting and navigation -------------------------------------------------------------------

TEST(GetNodeCount, CountsChildElementsOnly) {
    TestTree tree("<r x='1'>text<a><b/></a><c/></r>");

    EXPECT_EQ(tree.root().GetNodeCount(), 2);
    EXPECT_EQ(tree.root().HasChildren(0), 1);
    EXPECT_EQ(tree.at("c").GetNodeCount(), 0);
    EXPECT_EQ(tree.at("c").HasChildren(0), 0);
}

TEST(IsEmpty, LooksAtValueAndChildrenNotAtAttributes) {
    TestTree tree("<r><a x='1'/><b>t</b><c><d/></c><e>  </e></r>");

    EXPECT_EQ(tree.at("a").IsEmpty(), 1);
    EXPECT_EQ(tree.at("b").IsEmpty(), 0);
    EXPECT_EQ(tree.at("c").IsEmpty(), 0);
    EXPECT_EQ(tree.at("e").IsEmpty(), 0);
}

TEST(IsRootNode, HoldsForTheElementWithoutParent) {
    TestTree tree("<r><a/></r>");

    EXPECT_EQ(tree.root().IsRootNode(0), 1);
    EXPECT_EQ(tree.at("a").IsRootNode(0), 0);
}

TEST(NextSibling, StepsInPlaceThroughTheChildren) {
    TestTree tree("<r><a/><b/><c/></r>");
    UXXmlWrapperBase node = tree.root();
    std::string forward;
    std::string backward;

    node.FirstChild(&node);
    UXXmlWrapperBase last;
    for (; node.IsNodeValid(); node.NextSibling(&node)) {
        forward += tag_of(node);
        last = node;
    }
    for (; last.IsNodeValid(); last.PrevSibling(&last)) backward += tag_of(last);

    EXPECT_EQ(forward, "abc");
    EXPECT_EQ(backward, "cba");
}

TEST(GetParent, StepsInPlaceToTheRoot) {
    TestTree tree("<r><a><b/></a></r>");
    UXXmlWrapperBase node = tree.at("a/b");
    std::string tags;

    for (; node.IsNodeValid(); node.GetParent(&node)) tags += tag_of(node);

    EXPECT_EQ(tags, "bar");
}

TEST(GetChild, IndexesFromZero) {
    TestTree tree("<r><a/><b/><c/><d/><e/></r>");
    UXXmlWrapperBase root = tree.root();
    std::string tags;

    for (int i = 0; i < 5; ++i) {
        UXXmlWrapperBase child;
        EXPECT_EQ(root.GetChild(&child, i, nullptr), 1);
        tags += tag_of(child);
    }
    EXPECT_EQ(root.GetChild(&root, 4), 1);

    EXPECT_EQ(tags, "abcde");
    EXPECT_EQ(tag_of(root), "e");
}

TEST(GetArrayOfChildren, FillsHandlesAndPositions) {
    TestTree tree("<r><a/><b/><a/></r>");
    CArray<UXXmlWrapperBase, UXXmlWrapperBase> children;
    CArray<int, int> positions = number_list<int>({9});
    children.Add(tree.root());

    EXPECT_EQ(tree.root().GetArrayOfChildren(children, "a", &positions, 1), 1);

    EXPECT_THAT(numbers(positions), ElementsAre(0, 2));
    ASSERT_EQ(children.GetSize(), 2);
    EXPECT_TRUE(children[1] == tree.at("a[1]"));
    EXPECT_EQ(tree.root().GetArrayOfChildren(children, nullptr, nullptr, 1), 1);
    EXPECT_EQ(children.GetSize(), 3);
    EXPECT_EQ(tree.root().GetArrayOfChildren(children, "", nullptr, 1), 1);
    EXPECT_EQ(children.GetSize(), 3);
    EXPECT_EQ(tree.root().GetArrayOfChildren(children, "none", nullptr, 1), 1);
    EXPECT_EQ(children.GetSize(), 0);
}

TEST(GetArrayOfChildren, CalledHandleMayStandInTheArray) {
    CArray<UXXmlWrapperBase, UXXmlWrapperBase> children;
    children.SetSize(1);
    children[0].CreateNew(0, "r");
    children[0].AddNode(nullptr, "a", -1);

    EXPECT_EQ(children[0].GetArrayOfChildren(children, nullptr, nullptr, 1), 1);

    ASSERT_EQ(children.GetSize(), 1);
    EXPECT_EQ(tag_of(children[0]), "a");
}

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
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(value_of(root), "own");
    root.SetString("new");

    EXPECT_EQ(tree.text(), "<r>new<a>t</a></r>");
    root.ResetValue();
    EXPECT_EQ(tree.text(), "<r><a>t</a></r>");
}

TEST(NodeValue, GrowsAndShrinksInPlace) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    std::mt19937 random(1);

    for (int i = 0; i < 2000; ++i) {
        const std::string text(random() % 3000, 'x');
        root.SetString(text.c_str());
        ASSERT_EQ(value_of(root), text);
    }
    const std::string huge(5000000, 'y');
    root.SetString(huge.c_str());
    EXPECT_EQ(value_of(root), huge);
    root.SetString("z");
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
    UXXmlWrapperBase root = tree.root();
    CArray<double, double> values = number_list<double>({1, 0.1, 1e300, std::nan("")});
    CArray<int, int> ints;

    root.NodeValue(values, 0);

    EXPECT_EQ(tree.text(), "<r>1 0.1 1e+300 -1.23456789e-300</r>");
    EXPECT_EQ(root.NodeValue(ints, 1), 0);  // 1e300 is no int
    EXPECT_EQ(root.IsEmpty(), 0);
    UXXmlWrapperBase clone;
    root.Clone(&clone, 1);
    EXPECT_EQ(to_text(clone), tree.text());
    root.SetString("text again");
    EXPECT_EQ(tree.text(), "<r>text again</r>");
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

    EXPECT_EQ(tree.root().GetString(text), 1);

    EXPECT_STREQ(text, "<r><a x=\"&lt;&quot;&#9;\">1 &lt; 2&#13;</a><b></b></r>");
}

TEST(GetNodeStringWithBlobInfo, YieldsTheOwnTextNeverMarkup) {
    TestTree tree("<r>own<a>t</a></r>");
    CStringUTF8 text("old");

    EXPECT_EQ(tree.root().GetNodeStringWithBlobInfo(text, 0), 1);
    EXPECT_EQ(text, "own");
    UXXmlWrapperBase empty;
    empty.CreateNew(0, "e");
    EXPECT_EQ(empty.GetNodeStringWithBlobInfo(text, 0), 1);
    EXPECT_EQ(text, "");
}

TEST(GetNodeArrayType, IsZero) {
    EXPECT_EQ(TestTree("<r/>").root().GetNodeArrayType(1), 0);
}

// --- array sizes -------------------------------------------------------------------------------

TEST(SaveXDEArraySize, KeepsTheSizeInAnAttribute) {
    TestTree tree("<r DimLens='4' x='1'/>");
    UXXmlWrapperBase root = tree.root();
    int size = -5;

    EXPECT_EQ(root.LoadXDEArraySize(&size), 0);
    EXPECT_EQ(size, -5);
    EXPECT_EQ(root.SaveXDEArraySize(3), 1);
    EXPECT_EQ(tree.text(), R"(<r x="1" FileDataDimsVector="3"></r>)");
    EXPECT_EQ(root.LoadXDEArraySize(&size), 1);
    EXPECT_EQ(size, 3);
    EXPECT_EQ(root.LoadXDEArraySize(nullptr), 1);
    EXPECT_EQ(root.SaveXDE2DArraySize(7, 2), 1);
    EXPECT_EQ(tree.text(), R"(<r x="1" FileDataDimsVector="7|2"></r>)");
    EXPECT_EQ(root.LoadXDEArraySize(&size), 1);
    EXPECT_EQ(size, 7);
    EXPECT_EQ(root.SaveXDEArraySize(0), 1);
    EXPECT_EQ(tree.text(), R"(<r x="1"></r>)");
    root.SetPropertyValue("FileDataDimsVector", CStringUTF8("many"));
    EXPECT_EQ(root.LoadXDEArraySize(&size), 0);
    EXPECT_EQ(size, 7);
}

TEST(SetSizeTrimFromEnd, RemovesChildrenFromTheEnd) {
    TestTree tree("<r>t<a/><b><c/></b><d/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase c = tree.at("b/c");

    EXPECT_EQ(root.SetSizeTrimFromEnd(-1), 0);
    EXPECT_EQ(root.SetSizeTrimFromEnd(3), 1);
    EXPECT_EQ(root.SetSizeTrimFromEnd(9), 1);
    EXPECT_EQ(tree.text(), "<r>t<a></a><b><c></c></b><d></d></r>");
    EXPECT_EQ(root.SetSizeTrimFromEnd(1), 1);

    EXPECT_EQ(tree.text(), "<r>t<a></a></r>");
    EXPECT_EQ(c.IsNodeValid(), 0);
    EXPECT_EQ(root.SetSizeTrimFromEnd(0), 1);
    EXPECT_EQ(tree.text(), "<r>t</r>");
}

// --- attributes --------------------------------------------------------------------------------

TEST(SetPropertyValue, OverwritesInPlaceAndAppendsNewOnes) {
    TestTree tree("<r a='1' b='2'/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(root.SetPropertyValue("a", CStringUTF8("a rather longer text")), 1);
    EXPECT_EQ(root.SetPropertyValue("c", 2.5), 1);
    EXPECT_EQ(root.SetPropertyValue("d", string_list({"x|y", "z"})), 1);
    EXPECT_EQ(root.SetPropertyValue("dt:dt", -7), 1);
    EXPECT_EQ(tree.text(),
              R"(<r a="a rather longer text" b="2" c="2.5" d="x\|y|z" dt:dt="-7"></r>)");
    root.RemoveProperty("a");
    root.SetPropertyValue("a", 3);

    EXPECT_EQ(tree.text(), R"(<r b="2" c="2.5" d="x\|y|z" dt:dt="-7" a="3"></r>)");
}

TEST(SetPropertyValue, RefusesWhatIsNoName) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();

    for (const char* name : {"", "1a", "a b", "-a", "a<", "\xff"}) {
        EXPECT_EQ(root.SetPropertyValue(name, 1), 0) << name;
    }
    EXPECT_EQ(root.SetPropertyValue(nullptr, 1), 0);

    EXPECT_EQ(tree.text(), "<r></r>");
}

TEST(SetPropertyValue, TakesItsOwnValue) {
    TestTree tree("<r a='0123456789'/>");
    UXXmlWrapperBase root = tree.root();
    CStringUTF8 text;
    root.GetPropertyValue("a", text, 0);

    root.SetPropertyValue("a", text + text);

    EXPECT_EQ(attribute_of(root, "a"), "01234567890123456789");
}

TEST(GetPropertyValue, LeavesTheOutputAloneWhenMissingOrNotConverting) {
    TestTree tree("<r i='12' d='2.5' t='x' e=''/>");
    UXXmlWrapperBase root = tree.root();
    CStringUTF8 text("old");
    int number = 7;
    double real = 7;

    EXPECT_EQ(root.GetPropertyValue("none", text, 0), 0);
    EXPECT_EQ(root.GetPropertyValue(nullptr, text, 0), 0);
    EXPECT_EQ(root.GetPropertyValue("", text, 0), 0);
    EXPECT_EQ(text, "old");
    EXPECT_EQ(root.GetPropertyValue("t", number, 0), 0);
    EXPECT_EQ(root.GetPropertyValue("t", real, 0), 0);
    EXPECT_EQ(root.GetPropertyValue("e", number, 0), 0);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(real, 7);
    EXPECT_EQ(root.GetPropertyValue("e", text, 0), 1);
    EXPECT_EQ(text, "");
    EXPECT_EQ(root.GetPropertyValue("d", number, 0), 1);
    EXPECT_EQ(number, 2);
    EXPECT_EQ(root.GetPropertyValue("i", real, 0), 1);
    EXPECT_EQ(real, 12);
}

TEST(RemoveProperty, IsNoErrorForAMissingOne) {
    TestTree tree("<r a='1' b='2' c='3'/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(root.RemoveProperty("b"), 1);
    EXPECT_EQ(root.RemoveProperty("b"), 1);
    EXPECT_EQ(root.RemoveProperty(nullptr), 1);
    EXPECT_EQ(root.HasProperty("b", 0), 0);
    EXPECT_EQ(root.HasProperty("c", 0), 1);
    EXPECT_EQ(root.RemoveAttr("a", 0), 1);

    EXPECT_EQ(tree.text(), R"(<r c="3"></r>)");
}

TEST(GetPropertyNames, EmptiesItsArrayAndKeepsElementOrder) {
    TestTree tree("<r b='1' a='2'/>");
    CWBOStringArray names = string_list({"old"});

    EXPECT_EQ(tree.root().GetPropertyNames(names), 1);

    EXPECT_THAT(texts(names), ElementsAre("b", "a"));
}

TEST(GetPropertyNamesAndValues, AppendsWhatTheFilterKeeps) {
    TestTree tree("<r b='1' a='2' c='3'/>");
    CWBOStringArray names = string_list({"old"});
    CWBOStringArray values;
    const UXPropertyFilter notA = [](const char* name) { return *name != 'a'; };

    EXPECT_EQ(tree.root().GetPropertyNamesAndValues(names, &values, &notA), 1);
    EXPECT_THAT(texts(names), ElementsAre("old", "b", "c"));
    EXPECT_THAT(texts(values), ElementsAre("1", "3"));
    const UXPropertyFilter none;
    EXPECT_EQ(tree.root().GetPropertyNamesAndValues(names, nullptr, &none), 1);

    EXPECT_EQ(names.GetSize(), 6);
}

TEST(CopyAllAttributes, OverwritesSameNamesAndKeepsTheOthers) {
    TestTree target("<r a='1' b='2'/>");
    TestTree source("<s b='3' c='4' _ux_id='9'>text</s>");
    UXXmlWrapperBase root = target.root();
    UXXmlWrapperBase from = source.root();

    EXPECT_EQ(root.CopyAllAttributes(from, 1), 1);
    EXPECT_EQ(target.text(), R"(<r a="1" b="3" c="4"></r>)");
    EXPECT_EQ(root.CopyAllAttributes(root, 1), 1);

    EXPECT_EQ(target.text(), R"(<r a="1" b="3" c="4"></r>)");
}

// --- identifiers, visibility, label ------------------------------------------------------------

TEST(GetID, IsAFieldOutsideTheAttributes) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase a = tree.at("a");
    int id = 5;
    CWBOStringArray names;

    EXPECT_EQ(a.GetID(id), 0);
    EXPECT_EQ(id, 5);
    EXPECT_EQ(a.SetID(0, false), 1);
    EXPECT_EQ(a.GetID(id), 1);
    EXPECT_EQ(id, 0);
    a.SetID(-7, false);
    a.GetPropertyNames(names);
    EXPECT_THAT(texts(names), IsEmpty());
    EXPECT_EQ(tree.text(), R"(<r><a _ux_id="-7"></a></r>)");
    EXPECT_EQ(a.SetID(-1, false), 1);

    EXPECT_EQ(a.GetID(id), 0);
}

TEST(GetDataID, IsTheAttribute) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    int id = 5;

    EXPECT_EQ(root.GetDataID(id), 0);
    root.SetPropertyValue("DataID", CStringUTF8("12"));
    EXPECT_EQ(root.GetDataID(id), 1);
    EXPECT_EQ(id, 12);
    EXPECT_EQ(root.SetDataID(-3), 1);
    EXPECT_EQ(tree.text(), R"(<r DataID="-3"></r>)");
    root.SetPropertyValue("DataID", CStringUTF8("x"));

    EXPECT_EQ(root.GetDataID(id), 0);
    EXPECT_EQ(id, 12);
}

TEST(GetShow, NodeWithoutTheAttributeIsShown) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();
    int show = 0;

    EXPECT_EQ(root.GetShow(show), 0);
    EXPECT_EQ(show, 1);
    root.SetShow(0);
    EXPECT_EQ(tree.text(), R"(<r Show="0"></r>)");
    EXPECT_EQ(root.GetShow(show), 1);
    EXPECT_EQ(show, 0);
    root.SetPropertyValue("Show", CStringUTF8("maybe"));
    EXPECT_EQ(root.GetShow(show), 0);
    EXPECT_EQ(show, 1);
    root.SetShow(5);

    EXPECT_EQ(tree.text(), "<r></r>");
}

TEST(SetLabel, NullRemovesTheLabel) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(root.SetLabel("one"), 1);
    EXPECT_EQ(root.SetLabel(CStringUTF8("two")), 1);
    EXPECT_EQ(tree.text(), R"(<r Label="two"></r>)");
    EXPECT_EQ(root.SetLabel(""), 1);
    EXPECT_EQ(tree.text(), R"(<r Label=""></r>)");
    EXPECT_EQ(root.SetLabel(static_cast<const char*>(nullptr)), 1);

    EXPECT_EQ(tree.text(), "<r></r>");
}

// --- creation, copying, removal ----------------------------------------------------------------

TEST(AddNode, AppendsWithTheID) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(root.AddNode(&out, "b", -1), 1);
    EXPECT_EQ(tag_of(out), "b");
    EXPECT_EQ(root.AddNode(nullptr, "c", 0), 1);
    EXPECT_EQ(root.AddNode(nullptr, "d", 7), 1);
    EXPECT_EQ(root.AddTextNode(&out, "e", "text", 3, 0, nullptr), 1);
    EXPECT_EQ(root.AddTextNode(&out, "f", nullptr, -1, 0, nullptr), 1);
    EXPECT_EQ(root.AddChildNode("g", &out, -1, "t"), 1);
    EXPECT_EQ(root.AddNode(&root, "h", -1), 1);

    EXPECT_EQ(tag_of(root), "h");
    EXPECT_EQ(
        tree.text(),
        R"(<r><a></a><b></b><c></c><d _ux_id="7"></d><e _ux_id="3">text</e><f></f><g>t</g><h></h></r>)");
}

TEST(AddNode, RefusesWhatIsNoName) {
    TestTree tree("<r/>");
    UXXmlWrapperBase root = tree.root();

    for (const char* name : {"", "1a", "a b", "<a>", "a\xC3"}) {
        EXPECT_EQ(root.AddNode(nullptr, name, -1), 0) << name;
    }
    EXPECT_EQ(root.AddNode(nullptr, nullptr, -1), 0);

    EXPECT_EQ(tree.text(), "<r></r>");
}

TEST(InsertNodeBefore, PlacesBeforeADirectChildOnly) {
    TestTree tree("<r><a/><b><c/></b></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(root.InsertNodeBefore(tree.at("a"), "x", -1, &out), 1);
    EXPECT_EQ(tag_of(out), "x");
    EXPECT_EQ(root.InsertNodeBefore(tree.at("b"), "y", 4, nullptr), 1);
    EXPECT_EQ(tree.text(), R"(<r><x></x><a></a><y _ux_id="4"></y><b><c></c></b></r>)");
    EXPECT_EQ(root.InsertNodeBefore(tree.at("b/c"), "z", -1, &out), 0);
    EXPECT_EQ(out.IsNodeValid(), 0);
    EXPECT_EQ(root.InsertNodeBefore(root, "z", -1, nullptr), 0);
    EXPECT_EQ(root.InsertNodeBefore(UXXmlWrapperBase(), "z", -1, nullptr), 0);
    EXPECT_EQ(root.InsertNodeBefore(TestTree("<r><a/></r>").at("a"), "z", -1, nullptr), 0);

    EXPECT_EQ(tree.text(), R"(<r><x></x><a></a><y _ux_id="4"></y><b><c></c></b></r>)");
}

TEST(AddNodeCopy, CopiesTheElementOrTheWholeBranch) {
    TestTree target("<r/>");
    TestTree source("<s x='1' _ux_id='5'>t<a y='2'>u<b/></a><c/></s>");
    UXXmlWrapperBase root = target.root();
    UXXmlWrapperBase from = source.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(root.AddNodeCopy(&from, 0, &out), 1);
    EXPECT_EQ(to_text(out), R"(<s x="1" _ux_id="5"></s>)");
    EXPECT_EQ(root.AddNodeCopy(&from, 1, nullptr), 1);

    EXPECT_EQ(
        target.text(),
        R"(<r><s x="1" _ux_id="5"></s><s x="1" _ux_id="5">t<a y="2">u<b></b></a><c></c></s></r>)");
}

TEST(AddNodeCopy, CopyingAnAncestorIntoItsBranchTakesTheStateBefore) {
    TestTree tree("<r><a><b/></a></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase b = tree.at("a/b");

    EXPECT_EQ(b.AddNodeCopy(&root, 1, &b), 1);

    EXPECT_EQ(tree.text(), "<r><a><b><r><a><b></b></a></r></b></a></r>");
    EXPECT_EQ(tag_of(b), "r");
}

// Long values may be kept once for several elements, which must never show.
TEST(AddNodeCopy, CopiesWithLongValuesLiveTheirOwnLives) {
    const std::string text(3000, 'x');
    const std::string other(3000, 'y');
    TestTree tree(("<r><a>" + text + "</a></r>").c_str());
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase copy;
    UXXmlWrapperBase second;
    root.AddNodeCopy(&a, 1, &copy);
    root.AddNodeCopy(&copy, 1, &second);
    UXXmlWrapperBase clone;
    root.Clone(&clone, 1);

    copy.SetString(other.c_str());
    EXPECT_EQ(tree.text(), "<r><a>" + text + "</a><a>" + other + "</a><a>" + text + "</a></r>");
    a.RemoveNode();
    EXPECT_EQ(tree.text(), "<r><a>" + other + "</a><a>" + text + "</a></r>");
    second.SetString(other.c_str());
    second.ResetValue();
    EXPECT_EQ(tree.text(), "<r><a>" + other + "</a><a></a></r>");
    UXXmlWrapperBase first;
    clone.FirstChild(&first);
    first.RemoveNode();
    EXPECT_EQ(to_text(clone), "<r><a>" + text + "</a><a>" + text + "</a></r>");
    clone.RemoveAllChildren();
    EXPECT_EQ(to_text(clone), "<r></r>");
}

TEST(AddNodeCopy, CopiesOfLongVectorsLiveTheirOwnLives) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase a = tree.at("a");
    CArray<double, double> values;
    values.SetSize(500);
    a.NodeValue(values, 0);
    UXXmlWrapperBase copy;
    root.AddNodeCopy(&a, 1, &copy);

    values[0] = 7;
    copy.NodeValue(values, 0);

    CArray<double, double> read;
    ASSERT_EQ(a.NodeValue(read, 1), 1);
    EXPECT_EQ(read[0], 0);
    ASSERT_EQ(copy.NodeValue(read, 1), 1);
    EXPECT_EQ(read[0], 7);
}

TEST(Clone, MakesADocumentOfItsOwn) {
    TestTree tree("<r><a x='1' _ux_id='8'>t<b/></a></r>");
    UXXmlWrapperBase clone;

    EXPECT_EQ(tree.at("a").Clone(&clone, 1), 1);
    EXPECT_EQ(clone.IsRootNode(0), 1);
    EXPECT_EQ(to_text(clone), R"(<a x="1" _ux_id="8">t<b></b></a>)");
    clone.AddNode(nullptr, "new", -1);
    EXPECT_EQ(tree.root().Clone(&clone, 1), 1);
    clone.SetString("changed");
    clone.SetPropertyValue("longer", CStringUTF8("than before"));

    EXPECT_EQ(tree.text(), R"(<r><a x="1" _ux_id="8">t<b></b></a></r>)");
    EXPECT_EQ(to_text(clone),
              R"(<r longer="than before">changed<a x="1" _ux_id="8">t<b></b></a></r>)");
}

TEST(Clone, OfADocumentGoesOnGrowingByItself) {
    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    for (int i = 0; i < 3000; ++i) {
        UXXmlWrapperBase child;
        root.AddNode(&child, ("n" + std::to_string(i % 700)).c_str(), i);
        child.SetPropertyValue("v", i);
    }
    root.SetString(std::string(400000, 'x').c_str());
    const std::string before = to_text(root);

    UXXmlWrapperBase clone;
    root.Clone(&clone, 1);
    const std::string copied = to_text(clone);
    for (int i = 0; i < 3000; ++i) clone.AddNode(nullptr, ("m" + std::to_string(i)).c_str(), -1);
    root.RemoveAllChildren();
    root.SetString("short");

    EXPECT_EQ(copied, before);
    EXPECT_EQ(clone.GetNodeCount(), 6000);
    EXPECT_EQ(to_text(root), "<r>short</r>");
}

TEST(Replace, TakesTheContentAndKeepsTagAndPlace) {
    TestTree tree("<r><a x='1'>t<b/></a><c/></r>");
    TestTree source("<s y='2' _ux_id='6'>u<d/></s>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase b = tree.at("a/b");
    UXXmlWrapperBase from = source.root();

    EXPECT_EQ(a.Replace(&from, 1, 0, 0), 1);

    EXPECT_EQ(tree.text(), R"(<r><a y="2" _ux_id="6">u<d></d></a><c></c></r>)");
    EXPECT_EQ(a.IsNodeValid(), 1);
    EXPECT_EQ(b.IsNodeValid(), 0);
    EXPECT_EQ(source.text(), R"(<s y="2" _ux_id="6">u<d></d></s>)");
}

TEST(ReplaceByNodeCopy, TakesTheTagAsWell) {
    TestTree tree("<r><a/><c/></r>");
    TestTree source("<s y='2'>u</s>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase from = source.root();

    EXPECT_EQ(a.ReplaceByNodeCopy(&from, 1, 0), 1);

    EXPECT_EQ(tree.text(), R"(<r><s y="2">u</s><c></c></r>)");
    EXPECT_EQ(tag_of(a), "s");
}

TEST(Replace, SourceMayBeAncestorDescendantOrTheElement) {
    TestTree tree("<r><a x='1'><b y='2'>t</b></a></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase b = tree.at("a/b");

    EXPECT_EQ(a.Replace(&a, 1, 0, 0), 1);
    EXPECT_EQ(tree.text(), R"(<r><a x="1"><b y="2">t</b></a></r>)");
    EXPECT_EQ(b.IsNodeValid(), 0);  // a handle into the old branch
    b = tree.at("a/b");
    EXPECT_EQ(b.Replace(&root, 1, 0, 0), 1);
    EXPECT_EQ(tree.text(), R"(<r><a x="1"><b><a x="1"><b y="2">t</b></a></b></a></r>)");
    b = tree.at("a/b/a/b");
    EXPECT_EQ(root.Replace(&b, 1, 0, 0), 1);

    EXPECT_EQ(tree.text(), R"(<r y="2">t</r>)");
    EXPECT_EQ(a.IsNodeValid(), 0);
}

TEST(Replace, FailsForAnInvalidSource) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase none;

    EXPECT_EQ(a.Replace(&none, 1, 0, 0), 0);
    EXPECT_EQ(a.Replace(nullptr, 1, 0, 0), 0);
    EXPECT_EQ(a.ReplaceByNodeCopy(nullptr, 1, 0), 0);
    EXPECT_EQ(none.Replace(&a, 1, 0, 0), 0);

    EXPECT_EQ(tree.text(), "<r><a></a></r>");
}

TEST(ArrangeChildContents, GivesEachChildTheContentOfTheNamedOne) {
    TestTree tree(
        "<r _ux_id='1'>own<a x='1' y='2' _ux_id='5'>t<aa z='3'><aaa/></aa><ab/></a>"
        "<b/><c w='4'>text</c><d _ux_id='9'/></r>");

    EXPECT_EQ(tree.root().ArrangeChildContents(number_list<int>({2, 0, 3, 1})), 1);

    EXPECT_EQ(tree.text(), TestTree("<r _ux_id='1'>own<c w='4'>text</c>"
                                    "<a x='1' y='2' _ux_id='5'>t<aa z='3'><aaa/></aa><ab/></a>"
                                    "<d _ux_id='9'/><b/></r>")
                               .text());
}

TEST(ArrangeChildContents, RefusesWhatIsNoPermutation) {
    TestTree tree("<r><a><x/></a><b/><c>t</c></r>");
    UXXmlWrapperBase x = tree.at("a/x");
    const std::string before = tree.text();
    constexpr int kLowest = std::numeric_limits<int>::min();
    for (const std::vector<int>& order : {std::vector<int>{},
                                          {1, 0},
                                          {1, 0, 2, 3},
                                          {1, 0, 1},
                                          {2, 2, 2},
                                          {1, 3, 0},
                                          {1, -1, 0},
                                          {1, kLowest, 0},
                                          {1, 1 << 30, 0}}) {
        EXPECT_EQ(tree.root().ArrangeChildContents(number_list(order)), 0);
        EXPECT_EQ(tree.text(), before);
    }
    EXPECT_EQ(tree.at("b").ArrangeChildContents(number_list<int>({0})), 0);
    EXPECT_EQ(tree.text(), before);
    EXPECT_EQ(x.IsNodeValid(), 1);
}

TEST(ArrangeChildContents, NothingToArrangeIsDone) {
    TestTree tree("<r><a><x/></a><b/></r>");
    UXXmlWrapperBase x = tree.at("a/x");
    const std::string before = tree.text();

    EXPECT_EQ(tree.at("b").ArrangeChildContents(CArray<int, int>()), 1);
    EXPECT_EQ(tree.at("a").ArrangeChildContents(number_list<int>({0})), 1);
    EXPECT_EQ(tree.root().ArrangeChildContents(number_list<int>({0, 1})), 1);

    EXPECT_EQ(tree.text(), before);
    EXPECT_TRUE(x == tree.at("a/x"));
}

TEST(ArrangeChildContents, ChildrenKeepIdentityAndPlace) {
    TestTree tree("<r><a>1</a><b>2</b><c>3</c></r>");
    UXXmlWrapperBase first = tree.at("a");
    UXXmlWrapperBase second = tree.at("b");
    UXXmlWrapperBase third = tree.at("c");

    EXPECT_EQ(tree.root().ArrangeChildContents(number_list<int>({2, 0, 1})), 1);

    EXPECT_EQ(to_text(first), "<c>3</c>");
    EXPECT_TRUE(first == tree.at("c") && second == tree.at("a") && third == tree.at("b"));
    EXPECT_EQ(first.SetString("changed"), 1);
    EXPECT_EQ(second.RemoveNode(), 1);
    EXPECT_EQ(tree.text(), "<r><c>changed</c><b>2</b></r>");
}

TEST(ArrangeChildContents, HandlesIntoMovedBranchesBecomeInvalidForGood) {
    TestTree tree("<r><a><x><y/></x><z/></a><b><x><y/></x></b><c><x><y/></x></c></r>");
    std::vector<UXXmlWrapperBase> moved{tree.at("a/x"), tree.at("a/x/y"), tree.at("a/z"),
                                        tree.at("b/x"), tree.at("b/x/y")};
    UXXmlWrapperBase kept = tree.at("c/x/y");

    EXPECT_EQ(tree.root().ArrangeChildContents(number_list<int>({1, 0, 2})), 1);
    EXPECT_TRUE(kept == tree.at("c/x/y"));
    const std::string arranged = tree.text();
    EXPECT_EQ(arranged, TestTree("<r><b><x><y/></x></b><a><x><y/></x><z/></a>"
                                 "<c><x><y/></x></c></r>")
                            .text());
    for (UXXmlWrapperBase& handle : moved) {
        EXPECT_EQ(handle.IsNodeValid() + handle.SetString("t"), 0);
    }
    EXPECT_EQ(tree.root().ArrangeChildContents(number_list<int>({1, 0, 2})), 1);
    tree.root().RemoveAllChildren();
    for (int i = 0; i < 12; ++i) tree.root().AddNode(nullptr, "n", -1);
    for (UXXmlWrapperBase& handle : moved) EXPECT_EQ(handle.IsNodeValid(), 0);
}

TEST(ArrangeChildContents, LongValuesGoAlongWithTheirCopies) {
    TestTree tree("<r><a/><b/></r>");
    const std::string text(5000, 'x');
    tree.at("a").SetString(text.c_str());
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase a = tree.at("a");
    root.AddNodeCopy(&a, 1, nullptr);

    EXPECT_EQ(root.ArrangeChildContents(number_list<int>({1, 2, 0})), 1);
    EXPECT_EQ(tree.at("a[0]").RemoveNode(), 1);

    EXPECT_EQ(tree.text(), "<r><b></b><a>" + text + "</a></r>");
}

TEST(ArrangeChildContents, EqualsTheReplacementByCopiesOnRandomOrders) {
    std::mt19937 random(3);
    for (int round = 0; round < 60; ++round) {
        const auto count = static_cast<int>(random() % 60);
        std::string text = "<r>";
        std::vector<int> order;
        for (int i = 0; i < count; ++i) {
            const std::string number = std::to_string(i);
            text += "<n" + number + " k='" + number + "'>";
            for (auto more = random() % 3; more > 0; --more) text += "<m><o/>t</m>";
            text += "</n" + number + ">";
            order.push_back(i);
        }
        text += "</r>";
        if (random() % 3 != 0) std::shuffle(order.begin(), order.end(), random);
        TestTree tree(text.c_str());
        TestTree model(text.c_str());
        const TestTree source(text.c_str());
        for (int i = 0; i < count; ++i) {
            UXXmlWrapperBase from;
            UXXmlWrapperBase to;
            source.root().GetChild(&from, order[static_cast<std::size_t>(i)]);
            model.root().GetChild(&to, i);
            to.ReplaceByNodeCopy(&from, 1, 0);
        }

        ASSERT_EQ(tree.root().ArrangeChildContents(number_list(order)), 1);

        ASSERT_EQ(tree.text(), model.text());
    }
}

TEST(RemoveNode, MakesEveryHandleIntoTheBranchInvalid) {
    TestTree tree("<r><a><b><c/></b></a><d/></r>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase other = a;
    UXXmlWrapperBase c = tree.at("a/b/c");

    EXPECT_EQ(a.RemoveNode(), 1);
    EXPECT_EQ(a.IsNodeValid() + other.IsNodeValid() + c.IsNodeValid(), 0);
    UXXmlWrapperBase reused;
    for (int i = 0; i < 5; ++i) tree.root().AddNode(&reused, "n", -1);

    EXPECT_EQ(other.IsNodeValid() + c.IsNodeValid(), 0);
    EXPECT_EQ(c.SetString("x"), 0);
    EXPECT_EQ(tree.text(), "<r><d></d><n></n><n></n><n></n><n></n><n></n></r>");
}

TEST(RemoveNode, WorksOnARootToo) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase a = tree.at("a");

    EXPECT_EQ(root.RemoveNode(), 1);

    EXPECT_EQ(root.IsNodeValid() + a.IsNodeValid() + tree.root().IsNodeValid(), 0);
    EXPECT_EQ(root.RemoveNode(), 0);
}

TEST(RemoveChild, YieldsTheFormerPosition) {
    TestTree tree("<r><a/><b/><c/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase b = tree.at("b");
    int index = -7;

    EXPECT_EQ(root.RemoveChild(&b, &index), 1);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(b.IsNodeValid(), 0);
    EXPECT_EQ(root.RemoveChild(&b, &index), -1);
    EXPECT_EQ(root.RemoveChild(nullptr, nullptr), -1);
    EXPECT_EQ(root.RemoveChild(&root, nullptr), -1);
    UXXmlWrapperBase foreign = TestTree("<r><a/></r>").at("a");
    EXPECT_EQ(root.RemoveChild(&foreign, nullptr), -1);
    UXXmlWrapperBase a = tree.at("a");
    EXPECT_EQ(root.RemoveChild(&a, nullptr), 1);

    EXPECT_EQ(index, 1);
    EXPECT_EQ(tree.text(), "<r><c></c></r>");
}

TEST(RemoveAllChildren, KeepsTextAttributesAndID) {
    TestTree tree("<r x='1' _ux_id='4'>t<a><b/></a><c/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(root.RemoveAllChildren(), 1);
    EXPECT_EQ(tree.text(), R"(<r x="1" _ux_id="4">t</r>)");
    EXPECT_EQ(root.RemoveAllChildren(), 1);
}

TEST(ResetNode, RemovesChildrenAndText) {
    TestTree tree("<r x='1' _ux_id='4'>t<a/></r>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(root.ResetNode(1), 1);

    EXPECT_EQ(tree.text(), R"(<r x="1" _ux_id="4"></r>)");
}

TEST(CreateNew, BindsToTheRootOfANewDocument) {
    TestTree tree("<r/>");
    UXXmlWrapperBase handle = tree.root();

    EXPECT_EQ(handle.CreateNew(0, nullptr), 1);
    EXPECT_EQ(to_text(handle), "<root></root>");
    EXPECT_EQ(handle.CreateNew(0, "named"), 1);
    EXPECT_EQ(to_text(handle), "<named></named>");
    EXPECT_EQ(handle.CreateNew(0, "no name"), 0);
    EXPECT_EQ(handle.CreateNew(0, ""), 0);

    EXPECT_EQ(to_text(handle), "<named></named>");
    EXPECT_EQ(tree.text(), "<r></r>");
}

TEST(SetTagName, RenamesInPlace) {
    TestTree tree("<r><a x='1'>t<b/></a></r>");
    UXXmlWrapperBase a = tree.at("a");

    EXPECT_EQ(a.SetTagName("new"), 1);
    EXPECT_EQ(tree.text(), R"(<r><new x="1">t<b></b></new></r>)");
    EXPECT_EQ(a.SetTagName("no name"), 0);
    EXPECT_EQ(a.SetTagName(nullptr), 0);

    EXPECT_EQ(tag_of(a), "new");
}

// --- searching ---------------------------------------------------------------------------------

TEST(FindChild, YieldsTheFirstDirectChildWithTheTag) {
    TestTree tree("<r><x><a/></x><a n='1'/><a n='2'/></r>");
    UXXmlWrapperBase node = tree.root();

    EXPECT_EQ(node.FindChild("a", &node, 1), 1);
    EXPECT_EQ(attribute_of(node, "n"), "1");
    UXXmlWrapperBase root = tree.root();
    EXPECT_EQ(root.FindChild("A", &node, 1), 0);
    EXPECT_EQ(root.FindChild("", &node, 1), 0);
    EXPECT_EQ(root.FindChild(nullptr, &node, 1), 0);
    EXPECT_EQ(root.FindChild("n", &node, 1), 0);  // known to the document, but as an attribute

    EXPECT_EQ(node.IsNodeValid(), 0);
}

TEST(FindNodeByAttribute, SearchesBelowTheElementInPreOrder) {
    TestTree tree("<r k='v'><a><b k='V' n='1'/></a><c k='v' n='2'/></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase found;

    EXPECT_EQ(root.FindNodeByAttribute(&found, "k", "v", 1, 1), 1);
    EXPECT_EQ(attribute_of(found, "n"), "1");
    EXPECT_EQ(root.FindNodeByAttribute(&found, "k", "v", 0, 1), 1);
    EXPECT_EQ(attribute_of(found, "n"), "2");
    EXPECT_EQ(root.FindNodeByAttribute(&found, "k", "v", 1, 0), 1);
    EXPECT_EQ(attribute_of(found, "n"), "2");
    EXPECT_EQ(root.FindNodeByAttribute(&found, "n", 1, 1), 1);
    EXPECT_EQ(tag_of(found), "b");
    EXPECT_EQ(root.FindNodeByAttribute(&found, "n", 1, 0), 0);
    EXPECT_EQ(found.IsNodeValid(), 0);
    EXPECT_EQ(tree.at("c").FindNodeByAttribute(&found, "n", 2, 1), 0);
    EXPECT_EQ(root.FindNodeByAttribute(&found, nullptr, "v", 0, 1), 0);
    EXPECT_EQ(root.FindNodeByAttribute(&found, "k", 0, 1), 0);
}

TEST(FindCreateNode, CreatesWhatIsMissing) {
    TestTree tree("<r><a><b>old</b></a></r>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase out;

    EXPECT_EQ(root.FindCreateNode("a/b", &out, 5, "text", 0, 0, nullptr), 1);
    EXPECT_EQ(tag_of(out), "b");
    EXPECT_EQ(root.FindCreateNode("//a/c//d/", &out, 5, "text", 0, 0, nullptr), 1);
    EXPECT_EQ(tag_of(out), "d");
    EXPECT_EQ(tree.text(), R"(<r><a><b>old</b><c _ux_id="5"><d _ux_id="5">text</d></c></a></r>)");
    EXPECT_EQ(root.FindCreateNode("", &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(out.IsNodeValid(), 0);
    EXPECT_EQ(root.FindCreateNode("//", &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(root.FindCreateNode(nullptr, &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(root.FindCreateNode("a/1", &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(root.FindCreateNode("x/y/1", &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(tree.text(), R"(<r><a><b>old</b><c _ux_id="5"><d _ux_id="5">text</d></c></a></r>)");
    EXPECT_EQ(root.FindCreateNode("e", &root, -1, nullptr, 0, 0, nullptr), 1);

    EXPECT_EQ(tag_of(root), "e");
}

TEST(SetDefaultCodePage, AlwaysSucceeds) {
    EXPECT_EQ(UXXmlWrapperBase::SetDefaultCodePage(1252), 1);
    EXPECT_EQ(UXXmlWrapperBase::SetDefaultCodePage(65001), 1);
}

// --- the store over many edits -----------------------------------------------------------------

TEST(UXXmlWrapperBase, RandomEditsKeepLinksCountsAndHandlesConsistent) {
    std::mt19937 random(11);
    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    std::vector<UXXmlWrapperBase> held{root};
    const auto pick = [&]() -> UXXmlWrapperBase& { return held[random() % held.size()]; };
    const auto check_links = [&] {
        // Walks the tree both ways and compares what the links and counts say.
        UXXmlWrapperBase node = root;
        for (;;) {
            int count = 0;
            UXXmlWrapperBase previous;
            UXXmlWrapperBase child;
            for (node.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
                UXXmlWrapperBase back;
                child.PrevSibling(&back);
                ASSERT_TRUE(back == previous);
                child.GetParent(&back);
                ASSERT_TRUE(back == node);
                previous = child;
                ++count;
            }
            ASSERT_EQ(count, node.GetNodeCount());
            if (node.FirstChild(&child)) {
                node = child;
                continue;
            }
            while (!node.NextSibling(&child)) {
                if (!node.GetParent(&node) || node == root) return;
            }
            node = child;
        }
    };

    for (int i = 0; i < 3000; ++i) {
        UXXmlWrapperBase made;
        UXXmlWrapperBase& node = pick();
        switch (random() % 9) {
            case 8: {
                std::vector<int> order(static_cast<std::size_t>(node.GetNodeCount()));
                std::iota(order.begin(), order.end(), 0);
                std::shuffle(order.begin(), order.end(), random);
                ASSERT_EQ(node.ArrangeChildContents(number_list(order)), node.IsNodeValid());
                break;
            }
            case 0:
            case 1:
            case 2:
                node.AddNode(&made, "n", static_cast<int>(random() % 9));
                break;
            case 3:
                node.SetPropertyValue("a", static_cast<int>(random()));
                break;
            case 4:
                node.SetString(std::string(random() % 200, 'x').c_str());
                break;
            case 5:
                if (!node.IsRootNode(0) && random() % 3 == 0) node.RemoveNode();
                break;
            case 6:
                if (root.GetNodeCount() < 200) pick().Replace(&node, 1, 0, 0);
                break;
            default: {
                UXXmlWrapperBase parent;
                if (node.GetParent(&parent)) parent.InsertNodeBefore(node, "i", -1, &made);
            }
        }
        if (made.IsNodeValid()) held.push_back(made);
        if (held.size() > 400) held.erase(held.begin() + 1, held.begin() + 200);
        CStringUTF8 size;
        root.GetString(size);
        if (size.GetLength() > 200000) root.RemoveAllChildren();
        if (i % 50 == 0) check_links();
    }
    check_links();
}

}  // namespace
