// Names by key and texts as views.
#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/host/node.h"

#include "support/test_tree.h"

namespace {

using namespace uxtest;

using std::string_view;

UXXmlWrapperBase tree_of(const char* xml) {
    return TestTree(xml);
}

TEST(UXNameKey, FindsTheNameInEachDocumentAsked) {
    const UXNameKey key("b");
    UXXmlWrapperBase first = tree_of("<r a='1' b='2'/>");
    UXXmlWrapperBase second = tree_of("<r b='3'/>");
    UXXmlWrapperBase third = tree_of("<r a='4'/>");
    string_view text;
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(first.GetPropertyView(key, text), 1);
        EXPECT_EQ(text, "2");
        ASSERT_EQ(second.GetPropertyView(key, text), 1);
        EXPECT_EQ(text, "3");
        EXPECT_EQ(third.GetPropertyView(key, text), 0);
        EXPECT_EQ(text, "3");  // untouched
    }
}

TEST(UXNameKey, SeesANameThatTheDocumentGetsLater) {
    const UXNameKey key("new");
    UXXmlWrapperBase tree = tree_of("<r/>");
    EXPECT_EQ(tree.HasProperty(key), 0);
    tree.SetPropertyValue("new", 7);
    EXPECT_EQ(tree.HasProperty(key), 1);
    int number = 0;
    EXPECT_EQ(tree.GetPropertyValue(key, number), 1);
    EXPECT_EQ(number, 7);
}

TEST(UXNameKey, IsNotDeceivedByADocumentInThePlaceOfAnother) {
    const UXNameKey key("b");
    string_view text;
    for (int i = 0; i < 50; ++i) {
        UXXmlWrapperBase tree = tree_of(i % 2 == 0 ? "<r a='1' b='2'/>" : "<r b='3' a='4'/>");
        ASSERT_EQ(tree.GetPropertyView(key, text), 1);
        EXPECT_EQ(text, i % 2 == 0 ? "2" : "3");
        UXXmlWrapperBase copy;
        tree.Clone(&copy, 1);
        copy.RemoveProperty(key);
        EXPECT_EQ(copy.HasProperty(key), 0);
    }
}

TEST(UXNameKey, WithoutAName) {
    UXXmlWrapperBase tree = tree_of("<r a='1'><b/></r>");
    for (const UXNameKey& key : {UXNameKey(), UXNameKey(nullptr), UXNameKey("")}) {
        string_view text;
        UXXmlWrapperBase child;
        EXPECT_EQ(tree.GetPropertyView(key, text), 0);
        EXPECT_EQ(tree.SetPropertyView(key, "x"), 0);
        EXPECT_EQ(tree.RemoveProperty(key), 1);
        EXPECT_EQ(tree.FindChild(key, &child), 0);
    }
    EXPECT_EQ(to_text(tree), "<r a=\"1\"><b></b></r>");
}

TEST(UXNameKey, OnAnInvalidHandle) {
    const std::array keys{UXNameKey("a"), UXNameKey("b")};
    UXXmlWrapperBase node;
    UXXmlWrapperBase out = tree_of("<r/>");
    std::array<string_view, 2> texts{"x", "y"};
    CStringUTF8 scratch("kept");
    int number = 5;
    EXPECT_EQ(node.GetPropertyView(keys[0], texts[0]), 0);
    EXPECT_EQ(texts[0], "x");
    UXNodeLook look;
    tree_of("<r a='1'>text<b/></r>").Look({"a"}, look);
    EXPECT_EQ(node.Look({"a"}, look), 0);
    EXPECT_EQ(look.present, 0U);
    EXPECT_EQ(look.childCount, 0);
    EXPECT_EQ(look.value, "");
    EXPECT_EQ(node.GetPropertyValue(keys[0], scratch), 0);
    EXPECT_EQ(node.GetPropertyValue(keys[0], number), 0);
    EXPECT_EQ(node.SetPropertyView(keys[0], "x"), 0);
    EXPECT_EQ(node.RemoveProperty(keys[0]), 0);
    EXPECT_EQ(node.NodeValueView(texts[0], scratch), 0);
    EXPECT_EQ(texts[0], "");
    EXPECT_EQ(node.SetValueView("x"), 0);
    EXPECT_EQ(node.GetTagView(texts[0]), 0);
    EXPECT_EQ(node.FindChild(keys[0], &out), 0);
    EXPECT_EQ(out.IsNodeValid(), 0);
    EXPECT_STREQ(scratch, "kept");
    EXPECT_EQ(number, 5);
}

TEST(Look, SortsTheAttributesByName) {
    const UXNameKeys keys = {"c", "none", "a", nullptr, "e", "a"};
    UXXmlWrapperBase tree = tree_of("<r a='1' b='2' c='3' e=''/>");
    UXNodeLook look;
    EXPECT_EQ(tree.Look(keys, look), 1);
    EXPECT_EQ(look.present, 0b110101U);
    EXPECT_EQ(look.attributes[0], "3");
    EXPECT_EQ(look.attributes[2], "1");
    EXPECT_EQ(look.attributes[4], "");
    EXPECT_EQ(look.attributes[5], "1");
    tree.SetPropertyValue("none", 5);  // a name that the document did not have
    tree.RemoveProperty("a");
    tree.Look(keys, look);
    EXPECT_EQ(look.present, 0b010011U);
    EXPECT_EQ(look.attributes[1], "5");
    UXXmlWrapperBase other = tree_of("<r a='4'/>");
    other.Look(keys, look);
    EXPECT_EQ(look.present, 0b100100U);
    EXPECT_EQ(look.attributes[2], "4");
}

TEST(Look, TellsNamesApartThatBeginAlike) {
    std::string xml = "<r";
    std::vector<std::string> names;
    for (int i = 0; i < 32; ++i) {
        names.push_back("name" + std::to_string(i));
        if (i % 3 == 0) xml += " " + names.back() + "='" + std::to_string(i) + "'";
    }
    const UXXmlWrapperBase tree = tree_of((xml + "/>").c_str());
    const UXNameKeys keys = {names[0].c_str(), names[1].c_str(), names[2].c_str(),
                             names[3].c_str(), names[9].c_str(), names[30].c_str()};
    UXNodeLook look;
    tree.Look(keys, look);
    EXPECT_EQ(look.present, 0b111001U);
    EXPECT_EQ(look.attributes[0], "0");
    EXPECT_EQ(look.attributes[3], "3");
    EXPECT_EQ(look.attributes[4], "9");
    EXPECT_EQ(look.attributes[5], "30");
}

TEST(Look, TakesThirtyTwoNames) {
    const std::initializer_list<const char*> names = {
        "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a",
        "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a", "a"};
    const UXNameKeys keys(names);
    const UXXmlWrapperBase tree = tree_of("<r a='1'/>");
    UXNodeLook look;
    EXPECT_EQ(keys.size(), UXNameKeys::kMost);
    tree.Look(keys, look);
    EXPECT_EQ(look.present, ~0U);
    EXPECT_EQ(look.attributes[31], "1");
}

TEST(Look, TellsTheValueAndTheNumberOfChildren) {
    UXXmlWrapperBase tree = tree_of("<r>some <b/><b/></r>");
    UXNodeLook look;
    tree.Look({}, look);
    EXPECT_EQ(look.childCount, 2);
    EXPECT_TRUE(look.textAtHand);
    EXPECT_EQ(look.value, "some ");
    CArray<double, double> numbers;
    numbers.Add(0.5);
    tree.NodeValue(numbers, 0);
    tree.Look({}, look);
    EXPECT_FALSE(look.textAtHand);
    EXPECT_EQ(look.value, "");
    tree.SetString("");
    tree.Look({}, look);
    EXPECT_TRUE(look.textAtHand);
    EXPECT_EQ(look.value, "");
}

TEST(SetPropertyView, WritesAsSetPropertyValueDoes) {
    UXXmlWrapperBase tree = tree_of("<r a='first' b='second'/>");
    string_view text;
    tree.GetPropertyView(UXNameKey("b"), text);
    EXPECT_EQ(tree.SetPropertyView(UXNameKey("a"), text), 1);  // in its place
    EXPECT_EQ(tree.SetPropertyView(UXNameKey("c"), string_view("part of it").substr(0, 4)), 1);
    tree.GetPropertyView(UXNameKey("c"), text);
    EXPECT_EQ(tree.SetPropertyView(UXNameKey("c"), text.substr(1)), 1);  // a part of itself
    EXPECT_EQ(tree.SetPropertyView(UXNameKey("b"), ""), 1);
    EXPECT_EQ(tree.SetPropertyView(UXNameKey("no name"), "x"), 0);
    EXPECT_EQ(to_text(tree), "<r a=\"second\" b=\"\" c=\"art\"></r>");
    EXPECT_EQ(tree.RemoveProperty(UXNameKey("a")), 1);
    EXPECT_EQ(tree.RemoveProperty(UXNameKey("missing")), 1);
    EXPECT_EQ(to_text(tree), "<r b=\"\" c=\"art\"></r>");
}

TEST(NodeValueView, IsTheTextAsItStands) {
    UXXmlWrapperBase tree = tree_of("<r>some <b/></r>");
    string_view text("x");
    CStringUTF8 scratch("kept");
    EXPECT_EQ(tree.NodeValueView(text, scratch), 1);
    EXPECT_EQ(text, "some ");
    EXPECT_STREQ(scratch, "kept");
    UXXmlWrapperBase child;
    tree.FindChild(UXNameKey("b"), &child);
    EXPECT_EQ(child.NodeValueView(text, scratch), 0);
    EXPECT_EQ(text, "");
    EXPECT_EQ(child.GetTagView(text), 1);
    EXPECT_EQ(text, "b");
}

TEST(NodeValueView, MakesTheTextOfNumbers) {
    UXXmlWrapperBase tree = tree_of("<r/>");
    CArray<double, double> numbers;
    for (const double number : {0.5, 1.0, 2.25}) numbers.Add(number);
    tree.NodeValue(numbers, 0);
    string_view text;
    CStringUTF8 scratch;
    EXPECT_EQ(tree.NodeValueView(text, scratch), 1);
    EXPECT_EQ(text, "0.5 1 2.25");
}

TEST(SetValueView, WritesAsSetStringDoes) {
    UXXmlWrapperBase tree = tree_of("<r>a long enough text</r>");
    string_view text;
    CStringUTF8 scratch;
    tree.NodeValueView(text, scratch);
    EXPECT_EQ(tree.SetValueView(text.substr(2, 4)), 1);  // a part of itself
    EXPECT_EQ(to_text(tree), "<r>long</r>");
    EXPECT_EQ(tree.SetValueView(""), 1);
    EXPECT_EQ(tree.IsEmpty(), 1);
}

TEST(FindChildByKey, IsTheFirstChildOfTheTag) {
    UXXmlWrapperBase tree = tree_of("<r><a/><b n='1'/><b n='2'/></r>");
    UXXmlWrapperBase child;
    ASSERT_EQ(tree.FindChild(UXNameKey("b"), &child), 1);
    EXPECT_EQ(to_text(child), "<b n=\"1\"></b>");
    EXPECT_EQ(tree.FindChild(UXNameKey("c"), &child), 0);
    EXPECT_EQ(child.IsNodeValid(), 0);
    EXPECT_EQ(tree.FindChild(UXNameKey("b"), nullptr), 0);
}

TEST(UXNameKey, LeadsFromOneElementOfATagToTheNext) {
    const UXXmlWrapperBase root = tree_of("<b><a/><b><b/><c/></b><a><c/></a><b/></b>");
    const UXNameKey tag("b");
    const UXNameKey other("none");
    const auto below = [](const UXXmlWrapperBase& top, const UXNameKey* wanted) {
        std::string found;
        for (UXXmlWrapperBase node = top; node.NextBelow(top, wanted, &node) != 0;) {
            found += tag_text(node) + std::to_string(node.GetNodeCount()) + " ";
        }
        return found;
    };
    EXPECT_EQ(below(root, &tag), "b2 b0 b0 ");
    EXPECT_EQ(below(root, nullptr), "a0 b2 b0 c0 a1 c0 b0 ");
    EXPECT_EQ(below(root, &other), "");
    UXXmlWrapperBase inner;
    ASSERT_EQ(root.FindChild(tag, &inner), 1);
    EXPECT_EQ(below(inner, nullptr), "b0 c0 ");
    UXXmlWrapperBase next;
    ASSERT_EQ(inner.NextSibling(tag, &next), 1);
    EXPECT_EQ(next.GetNodeCount(), 0);
    EXPECT_EQ(next.NextSibling(tag, &next), 0);
    EXPECT_EQ(next.IsNodeValid(), 0);
    EXPECT_EQ(next.NextSibling(tag, &inner), 0);
    EXPECT_EQ(inner.NextBelow(root, nullptr, &next), 0);
    EXPECT_EQ(root.NextSibling(tag, nullptr), 0);
    EXPECT_EQ(root.NextBelow(root, &tag, nullptr), 0);
}

}  // namespace
