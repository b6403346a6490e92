// Attributes of nodes, and what stands in them: identifiers, visibility, labels.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/host/node.h"

#include "host/node_support.h"
#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::attribute_of;
using uxtest::string_list;
using uxtest::TestTree;
using uxtest::texts;

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

}  // namespace
