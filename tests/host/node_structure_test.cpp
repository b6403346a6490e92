// Making, copying, replacing, arranging and removing nodes.
#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/host/node.h"

#include "host/node_support.h"
#include "support/test_tree.h"

namespace {

using uxtest::number_list;
using uxtest::tag_of;
using uxtest::TestTree;
using uxtest::to_text;

TEST(AddNode, AppendsWithTheID) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(tree.AddNode(&out, "b", -1), 1);
    EXPECT_EQ(tag_of(out), "b");
    EXPECT_EQ(tree.AddNode(nullptr, "c", 0), 1);
    EXPECT_EQ(tree.AddNode(nullptr, "d", 7), 1);
    EXPECT_EQ(tree.AddTextNode(&out, "e", "text", 3, 0, nullptr), 1);
    EXPECT_EQ(tree.AddTextNode(&out, "f", nullptr, -1, 0, nullptr), 1);
    EXPECT_EQ(tree.AddChildNode("g", &out, -1, "t"), 1);
    EXPECT_EQ(tree.AddNode(&tree, "h", -1), 1);

    EXPECT_EQ(tag_of(tree), "h");
    EXPECT_EQ(
        tree.text(),
        R"(<r><a></a><b></b><c></c><d _ux_id="7"></d><e _ux_id="3">text</e><f></f><g>t</g><h></h></r>)");
}

TEST(AddNode, RefusesWhatIsNoName) {
    TestTree tree("<r/>");

    for (const char* name : {"", "1a", "a b", "<a>", "a\xC3"}) {
        EXPECT_EQ(tree.AddNode(nullptr, name, -1), 0) << name;
    }
    EXPECT_EQ(tree.AddNode(nullptr, nullptr, -1), 0);

    EXPECT_EQ(tree.text(), "<r></r>");
}

TEST(InsertNodeBefore, PlacesBeforeADirectChildOnly) {
    TestTree tree("<r><a/><b><c/></b></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(tree.InsertNodeBefore(tree.at("a"), "x", -1, &out), 1);
    EXPECT_EQ(tag_of(out), "x");
    EXPECT_EQ(tree.InsertNodeBefore(tree.at("b"), "y", 4, nullptr), 1);
    EXPECT_EQ(tree.text(), R"(<r><x></x><a></a><y _ux_id="4"></y><b><c></c></b></r>)");
    EXPECT_EQ(tree.InsertNodeBefore(tree.at("b/c"), "z", -1, &out), 0);
    EXPECT_EQ(out.IsNodeValid(), 0);
    EXPECT_EQ(tree.InsertNodeBefore(tree, "z", -1, nullptr), 0);
    EXPECT_EQ(tree.InsertNodeBefore(UXXmlWrapperBase(), "z", -1, nullptr), 0);
    EXPECT_EQ(tree.InsertNodeBefore(TestTree("<r><a/></r>").at("a"), "z", -1, nullptr), 0);

    EXPECT_EQ(tree.text(), R"(<r><x></x><a></a><y _ux_id="4"></y><b><c></c></b></r>)");
}

TEST(AddNodeCopy, CopiesTheElementOrTheWholeBranch) {
    TestTree target("<r/>");
    TestTree source("<s x='1' _ux_id='5'>t<a y='2'>u<b/></a><c/></s>");
    UXXmlWrapperBase out;

    EXPECT_EQ(target.AddNodeCopy(&source, 0, &out), 1);
    EXPECT_EQ(to_text(out), R"(<s x="1" _ux_id="5"></s>)");
    EXPECT_EQ(target.AddNodeCopy(&source, 1, nullptr), 1);

    EXPECT_EQ(
        target.text(),
        R"(<r><s x="1" _ux_id="5"></s><s x="1" _ux_id="5">t<a y="2">u<b></b></a><c></c></s></r>)");
}

TEST(AddNodeCopy, CopyingAnAncestorIntoItsBranchTakesTheStateBefore) {
    TestTree tree("<r><a><b/></a></r>");
    UXXmlWrapperBase b = tree.at("a/b");

    EXPECT_EQ(b.AddNodeCopy(&tree, 1, &b), 1);

    EXPECT_EQ(tree.text(), "<r><a><b><r><a><b></b></a></r></b></a></r>");
    EXPECT_EQ(tag_of(b), "r");
}

// Long values may be kept once for several elements, which must never show.
TEST(AddNodeCopy, CopiesWithLongValuesLiveTheirOwnLives) {
    const std::string text(3000, 'x');
    const std::string other(3000, 'y');
    TestTree tree(("<r><a>" + text + "</a></r>").c_str());
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase copy;
    UXXmlWrapperBase second;
    tree.AddNodeCopy(&a, 1, &copy);
    tree.AddNodeCopy(&copy, 1, &second);
    UXXmlWrapperBase clone;
    tree.Clone(&clone, 1);

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
    UXXmlWrapperBase a = tree.at("a");
    CArray<double, double> values;
    values.SetSize(500);
    a.NodeValue(values, 0);
    UXXmlWrapperBase copy;
    tree.AddNodeCopy(&a, 1, &copy);

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
    EXPECT_EQ(tree.Clone(&clone, 1), 1);
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

    EXPECT_EQ(a.Replace(&source, 1, 0, 0), 1);

    EXPECT_EQ(tree.text(), R"(<r><a y="2" _ux_id="6">u<d></d></a><c></c></r>)");
    EXPECT_EQ(a.IsNodeValid(), 1);
    EXPECT_EQ(b.IsNodeValid(), 0);
    EXPECT_EQ(source.text(), R"(<s y="2" _ux_id="6">u<d></d></s>)");
}

TEST(ReplaceByNodeCopy, TakesTheTagAsWell) {
    TestTree tree("<r><a/><c/></r>");
    TestTree source("<s y='2'>u</s>");
    UXXmlWrapperBase a = tree.at("a");

    EXPECT_EQ(a.ReplaceByNodeCopy(&source, 1, 0), 1);

    EXPECT_EQ(tree.text(), R"(<r><s y="2">u</s><c></c></r>)");
    EXPECT_EQ(tag_of(a), "s");
}

TEST(Replace, SourceMayBeAncestorDescendantOrTheElement) {
    TestTree tree("<r><a x='1'><b y='2'>t</b></a></r>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase b = tree.at("a/b");

    EXPECT_EQ(a.Replace(&a, 1, 0, 0), 1);
    EXPECT_EQ(tree.text(), R"(<r><a x="1"><b y="2">t</b></a></r>)");
    EXPECT_EQ(b.IsNodeValid(), 0);  // a handle into the old branch
    b = tree.at("a/b");
    EXPECT_EQ(b.Replace(&tree, 1, 0, 0), 1);
    EXPECT_EQ(tree.text(), R"(<r><a x="1"><b><a x="1"><b y="2">t</b></a></b></a></r>)");
    b = tree.at("a/b/a/b");
    EXPECT_EQ(tree.Replace(&b, 1, 0, 0), 1);

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

    EXPECT_EQ(tree.ArrangeChildContents(number_list<int>({2, 0, 3, 1})), 1);

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
        EXPECT_EQ(tree.ArrangeChildContents(number_list(order)), 0);
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
    EXPECT_EQ(tree.ArrangeChildContents(number_list<int>({0, 1})), 1);

    EXPECT_EQ(tree.text(), before);
    EXPECT_TRUE(x == tree.at("a/x"));
}

TEST(ArrangeChildContents, ChildrenKeepIdentityAndPlace) {
    TestTree tree("<r><a>1</a><b>2</b><c>3</c></r>");
    UXXmlWrapperBase first = tree.at("a");
    UXXmlWrapperBase second = tree.at("b");
    UXXmlWrapperBase third = tree.at("c");

    EXPECT_EQ(tree.ArrangeChildContents(number_list<int>({2, 0, 1})), 1);

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

    EXPECT_EQ(tree.ArrangeChildContents(number_list<int>({1, 0, 2})), 1);
    EXPECT_TRUE(kept == tree.at("c/x/y"));
    const std::string arranged = tree.text();
    EXPECT_EQ(arranged, TestTree("<r><b><x><y/></x></b><a><x><y/></x><z/></a>"
                                 "<c><x><y/></x></c></r>")
                            .text());
    for (UXXmlWrapperBase& handle : moved) {
        EXPECT_EQ(handle.IsNodeValid(), 0);
        EXPECT_EQ(handle.SetString("t"), 0);
    }
    EXPECT_EQ(tree.ArrangeChildContents(number_list<int>({1, 0, 2})), 1);
    tree.RemoveAllChildren();
    for (int i = 0; i < 12; ++i) tree.AddNode(nullptr, "n", -1);
    for (UXXmlWrapperBase& handle : moved) EXPECT_EQ(handle.IsNodeValid(), 0);
}

TEST(ArrangeChildContents, LongValuesGoAlongWithTheirCopies) {
    TestTree tree("<r><a/><b/></r>");
    const std::string text(5000, 'x');
    tree.at("a").SetString(text.c_str());
    UXXmlWrapperBase a = tree.at("a");
    tree.AddNodeCopy(&a, 1, nullptr);

    EXPECT_EQ(tree.ArrangeChildContents(number_list<int>({1, 2, 0})), 1);
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
        TestTree source(text.c_str());
        for (int i = 0; i < count; ++i) {
            UXXmlWrapperBase from;
            UXXmlWrapperBase to;
            source.GetChild(&from, order[static_cast<std::size_t>(i)]);
            model.GetChild(&to, i);
            to.ReplaceByNodeCopy(&from, 1, 0);
        }

        ASSERT_EQ(tree.ArrangeChildContents(number_list(order)), 1);

        ASSERT_EQ(tree.text(), model.text());
    }
}

TEST(RemoveNode, MakesEveryHandleIntoTheBranchInvalid) {
    TestTree tree("<r><a><b><c/></b></a><d/></r>");
    UXXmlWrapperBase a = tree.at("a");
    UXXmlWrapperBase other = a;
    UXXmlWrapperBase c = tree.at("a/b/c");

    EXPECT_EQ(a.RemoveNode(), 1);
    for (const UXXmlWrapperBase& gone : {a, other, c}) EXPECT_EQ(gone.IsNodeValid(), 0);
    UXXmlWrapperBase reused;
    for (int i = 0; i < 5; ++i) tree.AddNode(&reused, "n", -1);

    for (const UXXmlWrapperBase& gone : {other, c}) EXPECT_EQ(gone.IsNodeValid(), 0);
    EXPECT_EQ(c.SetString("x"), 0);
    EXPECT_EQ(tree.text(), "<r><d></d><n></n><n></n><n></n><n></n><n></n></r>");
}

TEST(RemoveNode, WorksOnARootToo) {
    TestTree tree("<r><a/></r>");
    UXXmlWrapperBase a = tree.at("a");

    EXPECT_EQ(tree.RemoveNode(), 1);

    EXPECT_EQ(tree.IsNodeValid(), 0);
    EXPECT_EQ(a.IsNodeValid(), 0);
    EXPECT_EQ(tree.text(), "(invalid)");
    EXPECT_EQ(tree.RemoveNode(), 0);
}

TEST(RemoveChild, YieldsTheFormerPosition) {
    TestTree tree("<r><a/><b/><c/></r>");
    UXXmlWrapperBase b = tree.at("b");
    int index = -7;

    EXPECT_EQ(tree.RemoveChild(&b, &index), 1);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(b.IsNodeValid(), 0);
    EXPECT_EQ(tree.RemoveChild(&b, &index), -1);
    EXPECT_EQ(tree.RemoveChild(nullptr, nullptr), -1);
    EXPECT_EQ(tree.RemoveChild(&tree, nullptr), -1);
    UXXmlWrapperBase foreign = TestTree("<r><a/></r>").at("a");
    EXPECT_EQ(tree.RemoveChild(&foreign, nullptr), -1);
    UXXmlWrapperBase a = tree.at("a");
    EXPECT_EQ(tree.RemoveChild(&a, nullptr), 1);

    EXPECT_EQ(index, 1);
    EXPECT_EQ(tree.text(), "<r><c></c></r>");
}

TEST(RemoveAllChildren, KeepsTextAttributesAndID) {
    TestTree tree("<r x='1' _ux_id='4'>t<a><b/></a><c/></r>");

    EXPECT_EQ(tree.RemoveAllChildren(), 1);
    EXPECT_EQ(tree.text(), R"(<r x="1" _ux_id="4">t</r>)");
    EXPECT_EQ(tree.RemoveAllChildren(), 1);
}

TEST(ResetNode, RemovesChildrenAndText) {
    TestTree tree("<r x='1' _ux_id='4'>t<a/></r>");

    EXPECT_EQ(tree.ResetNode(1), 1);

    EXPECT_EQ(tree.text(), R"(<r x="1" _ux_id="4"></r>)");
}

TEST(CreateNew, BindsToTheRootOfANewDocument) {
    TestTree tree("<r/>");
    UXXmlWrapperBase handle = tree;

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

}  // namespace
