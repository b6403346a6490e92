// Nodes of the embedded host: handles, walks, searches, links over many edits.
#include "uxtree/host/node.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/node_detail.h"
#include "host/node_support.h"
#include "support/test_tree.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::attribute_of;
using uxtest::number_list;
using uxtest::numbers;
using uxtest::string_list;
using uxtest::tag_of;
using uxtest::TestTree;
using uxtest::texts;
using uxtest::to_text;

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
    EXPECT_FALSE(a == tree);
    EXPECT_EQ(tree.text(), R"(<r><a x="1"></a></r>)");
}

TEST(UXXmlWrapperBase, AssigningAHandleToItselfKeepsIt) {
    UXXmlWrapperBase node = TestTree("<r/>");
    const UXXmlWrapperBase& same = node;

    node = same;

    EXPECT_EQ(tag_of(node), "r");
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
    a = tree;

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
    UXXmlWrapperBase out = tree.at("a");
    CStringUTF8 text("kept");
    CWBOStringArray list = string_list({"kept"});
    CArray<int, int> ints = number_list<int>({7});
    CArray<UXXmlWrapperBase, UXXmlWrapperBase> handles;
    int number = 7;
    double real = 7;
    bool flag = true;
    const auto expect_zero = [](const std::vector<int>& results) { EXPECT_THAT(results, Each(0)); };

    expect_zero({none.GetNodeCount(), none.HasChildren(0), none.IsEmpty(), none.IsRootNode(0)});
    expect_zero({none.GetTagName(text), none.NodeValue(text, 1, 1, nullptr),
                 none.NodeValue(text, 0, 1, nullptr), none.GetString(text),
                 none.GetNodeStringWithBlobInfo(text, 0)});
    expect_zero({none.NodeValue(number, 1), none.NodeValue(number, 0), none.NodeValue(real, 1),
                 none.NodeValue(real, 0), none.NodeValue(flag, 1), none.NodeValue(flag, 0)});
    expect_zero({none.NodeValue(ints, 1), none.NodeValue(ints, 0), none.NodeValue(list, 1, nullptr),
                 none.NodeValue(list, 0, nullptr)});
    expect_zero({none.SetString("x"), none.ResetValue(), none.CheckSetValue(0, "x", 0),
                 none.SetSizeTrimFromEnd(0), none.LoadXDEArraySize(&number),
                 none.SaveXDEArraySize(3), none.SaveXDE2DArraySize(3, 3),
                 none.GetNodeArrayType(0)});
    expect_zero({none.GetPropertyValue("a", text, 0), none.GetPropertyValue("a", number, 0),
                 none.GetPropertyValue("a", real, 0), none.SetPropertyValue("a", 1),
                 none.SetPropertyValue("a", 1.0), none.SetPropertyValue("a", text),
                 none.SetPropertyValue("a", list), none.HasProperty("a", 0),
                 none.RemoveProperty("a"), none.RemoveAttr("a", 0)});
    expect_zero({none.GetPropertyNames(list), none.GetPropertyNamesAndValues(list, &list, nullptr),
                 none.CopyAllAttributes(tree, 1), tree.CopyAllAttributes(none, 1)});
    expect_zero({none.GetDataID(number), none.SetDataID(1), none.GetID(number),
                 none.SetID(1, false), none.GetShow(number), none.SetLabel("x"),
                 none.SetLabel(text)});
    expect_zero({none.RemoveNode(), none.RemoveChild(&out, &number), none.RemoveAllChildren(),
                 none.ResetNode(1), none.Save("/nowhere/x.xml", 0), none.SetTagName("x")});
    EXPECT_EQ(none.GetArrayOfChildren(handles, nullptr, &ints, 1), 0);
    EXPECT_EQ(none.ArrangeChildContents(CArray<int, int>()), 0);
    UXVectorDesc vector(ints);
    EXPECT_EQ(none.GetVector(vector), 1);  // here 0 is success
    EXPECT_EQ(none.SetVector(vector), 1);
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
        fails([&](UXXmlWrapperBase* out) { return none.InsertNodeBefore(tree, "x", -1, out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.AddNodeCopy(&tree, 1, out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return tree.AddNodeCopy(&none, 1, out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return tree.AddNodeCopy(nullptr, 1, out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.Clone(out, 1); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return none.FindChild("a", out, 1); }));
    EXPECT_TRUE(fails(
        [&](UXXmlWrapperBase* out) { return none.FindNodeByAttribute(out, "a", "b", 0, 1); }));
    EXPECT_TRUE(
        fails([&](UXXmlWrapperBase* out) { return none.FindNodeByAttribute(out, "a", 1, 1); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) {
        return none.FindCreateNode("a", out, -1, nullptr, 0, 0, nullptr);
    }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return tree.GetParent(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return tree.NextSibling(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return tree.PrevSibling(out); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return tree.GetChild(out, 1); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return tree.GetChild(out, -1); }));
    EXPECT_TRUE(fails([&](UXXmlWrapperBase* out) { return tree.AddNode(out, "1x", -1); }));
    EXPECT_EQ(tree.FirstChild(nullptr), 0);
    EXPECT_EQ(tree.Clone(nullptr, 1), 0);
    EXPECT_EQ(tree.text(), "<r><a></a></r>");
}

// --- counting and navigation -------------------------------------------------------------------

TEST(GetNodeCount, CountsChildElementsOnly) {
    TestTree tree("<r x='1'>text<a><b/></a><c/></r>");

    EXPECT_EQ(tree.GetNodeCount(), 2);
    EXPECT_EQ(tree.HasChildren(0), 1);
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

    EXPECT_EQ(tree.IsRootNode(0), 1);
    EXPECT_EQ(tree.at("a").IsRootNode(0), 0);
}

TEST(NextSibling, StepsInPlaceThroughTheChildren) {
    TestTree tree("<r><a/><b/><c/></r>");
    UXXmlWrapperBase node = tree;
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
    std::string tags;

    for (int i = 0; i < 5; ++i) {
        UXXmlWrapperBase child;
        EXPECT_EQ(tree.GetChild(&child, i, nullptr), 1);
        tags += tag_of(child);
    }
    EXPECT_EQ(tree.GetChild(&tree, 4), 1);

    EXPECT_EQ(tags, "abcde");
    EXPECT_EQ(tag_of(tree), "e");
}

TEST(GetArrayOfChildren, FillsHandlesAndPositions) {
    TestTree tree("<r><a/><b/><a/></r>");
    CArray<UXXmlWrapperBase, UXXmlWrapperBase> children;
    CArray<int, int> positions = number_list<int>({9});
    children.Add(tree);

    EXPECT_EQ(tree.GetArrayOfChildren(children, "a", &positions, 1), 1);

    EXPECT_THAT(numbers(positions), ElementsAre(0, 2));
    ASSERT_EQ(children.GetSize(), 2);
    EXPECT_TRUE(children[1] == tree.at("a[1]"));
    EXPECT_EQ(tree.GetArrayOfChildren(children, nullptr, nullptr, 1), 1);
    EXPECT_EQ(children.GetSize(), 3);
    EXPECT_EQ(tree.GetArrayOfChildren(children, "", nullptr, 1), 1);
    EXPECT_EQ(children.GetSize(), 3);
    EXPECT_EQ(tree.GetArrayOfChildren(children, "none", nullptr, 1), 1);
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

// --- searching ---------------------------------------------------------------------------------

TEST(FindChild, YieldsTheFirstDirectChildWithTheTag) {
    TestTree tree("<r><x><a/></x><a n='1'/><a n='2'/></r>");
    UXXmlWrapperBase node = tree;

    EXPECT_EQ(node.FindChild("a", &node, 1), 1);
    EXPECT_EQ(attribute_of(node, "n"), "1");
    EXPECT_EQ(tree.FindChild("A", &node, 1), 0);
    EXPECT_EQ(tree.FindChild("", &node, 1), 0);
    EXPECT_EQ(tree.FindChild(nullptr, &node, 1), 0);
    EXPECT_EQ(tree.FindChild("n", &node, 1), 0);  // known to the document, but as an attribute

    EXPECT_EQ(node.IsNodeValid(), 0);
}

TEST(FindNodeByAttribute, SearchesBelowTheElementInPreOrder) {
    TestTree tree("<r k='v'><a><b k='V' n='1'/></a><c k='v' n='2'/></r>");
    UXXmlWrapperBase found;

    EXPECT_EQ(tree.FindNodeByAttribute(&found, "k", "v", 1, 1), 1);
    EXPECT_EQ(attribute_of(found, "n"), "1");
    EXPECT_EQ(tree.FindNodeByAttribute(&found, "k", "v", 0, 1), 1);
    EXPECT_EQ(attribute_of(found, "n"), "2");
    EXPECT_EQ(tree.FindNodeByAttribute(&found, "k", "v", 1, 0), 1);
    EXPECT_EQ(attribute_of(found, "n"), "2");
    EXPECT_EQ(tree.FindNodeByAttribute(&found, "n", 1, 1), 1);
    EXPECT_EQ(tag_of(found), "b");
    EXPECT_EQ(tree.FindNodeByAttribute(&found, "n", 1, 0), 0);
    EXPECT_EQ(found.IsNodeValid(), 0);
    EXPECT_EQ(tree.at("c").FindNodeByAttribute(&found, "n", 2, 1), 0);
    EXPECT_EQ(tree.FindNodeByAttribute(&found, nullptr, "v", 0, 1), 0);
    EXPECT_EQ(tree.FindNodeByAttribute(&found, "k", 0, 1), 0);
}

TEST(FindCreateNode, CreatesWhatIsMissing) {
    TestTree tree("<r><a><b>old</b></a></r>");
    UXXmlWrapperBase out;

    EXPECT_EQ(tree.FindCreateNode("a/b", &out, 5, "text", 0, 0, nullptr), 1);
    EXPECT_EQ(tag_of(out), "b");
    EXPECT_EQ(tree.FindCreateNode("//a/c//d/", &out, 5, "text", 0, 0, nullptr), 1);
    EXPECT_EQ(tag_of(out), "d");
    EXPECT_EQ(tree.text(), R"(<r><a><b>old</b><c _ux_id="5"><d _ux_id="5">text</d></c></a></r>)");
    EXPECT_EQ(tree.FindCreateNode("", &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(out.IsNodeValid(), 0);
    EXPECT_EQ(tree.FindCreateNode("//", &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(tree.FindCreateNode(nullptr, &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(tree.FindCreateNode("a/1", &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(tree.FindCreateNode("x/y/1", &out, -1, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(tree.text(), R"(<r><a><b>old</b><c _ux_id="5"><d _ux_id="5">text</d></c></a></r>)");
    EXPECT_EQ(tree.FindCreateNode("e", &tree, -1, nullptr, 0, 0, nullptr), 1);

    EXPECT_EQ(tag_of(tree), "e");
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

// What goes wrong inside is a failure of the operation; only a shortage of memory is the caller's.
TEST(guarded, MakesExceptionsFailures) {
    EXPECT_EQ(uxhost::guarded([] { return 7; }), 7);
    EXPECT_EQ(uxhost::guarded([]() -> int { throw std::length_error("too long"); }), 0);
    EXPECT_THROW(uxhost::guarded([]() -> int { throw std::bad_alloc(); }), std::bad_alloc);
}

}  // namespace
