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

    EXPECT_EQ(tree.SetPropertyValue("a", CStringUTF8("a rather longer text")), 1);
    EXPECT_EQ(tree.SetPropertyValue("c", 2.5), 1);
    EXPECT_EQ(tree.SetPropertyValue("d", string_list({"x|y", "z"})), 1);
    EXPECT_EQ(tree.SetPropertyValue("dt:dt", -7), 1);
    EXPECT_EQ(tree.text(),
              R"(<r a="a rather longer text" b="2" c="2.5" d="x\|y|z" dt:dt="-7"></r>)");
    tree.RemoveProperty("a");
    tree.SetPropertyValue("a", 3);

    EXPECT_EQ(tree.text(), R"(<r b="2" c="2.5" d="x\|y|z" dt:dt="-7" a="3"></r>)");
}

TEST(SetPropertyValue, RefusesWhatIsNoName) {
    TestTree tree("<r/>");

    for (const char* name : {"", "1a", "a b", "-a", "a<", "\xff"}) {
        EXPECT_EQ(tree.SetPropertyValue(name, 1), 0) << name;
    }
    EXPECT_EQ(tree.SetPropertyValue(nullptr, 1), 0);

    EXPECT_EQ(tree.text(), "<r></r>");
}

TEST(SetPropertyValue, TakesItsOwnValue) {
    TestTree tree("<r a='0123456789'/>");
    CStringUTF8 text;
    tree.GetPropertyValue("a", text, 0);

    tree.SetPropertyValue("a", text + text);

    EXPECT_EQ(attribute_of(tree, "a"), "01234567890123456789");
}

TEST(GetPropertyValue, LeavesTheOutputAloneWhenMissingOrNotConverting) {
    TestTree tree("<r i='12' d='2.5' t='x' e=''/>");
    CStringUTF8 text("old");
    int number = 7;
    double real = 7;

    EXPECT_EQ(tree.GetPropertyValue("none", text, 0), 0);
    EXPECT_EQ(tree.GetPropertyValue(nullptr, text, 0), 0);
    EXPECT_EQ(tree.GetPropertyValue("", text, 0), 0);
    EXPECT_EQ(text, "old");
    EXPECT_EQ(tree.GetPropertyValue("t", number, 0), 0);
    EXPECT_EQ(tree.GetPropertyValue("t", real, 0), 0);
    EXPECT_EQ(tree.GetPropertyValue("e", number, 0), 0);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(real, 7);
    EXPECT_EQ(tree.GetPropertyValue("e", text, 0), 1);
    EXPECT_EQ(text, "");
    EXPECT_EQ(tree.GetPropertyValue("d", number, 0), 1);
    EXPECT_EQ(number, 2);
    EXPECT_EQ(tree.GetPropertyValue("i", real, 0), 1);
    EXPECT_EQ(real, 12);
}

TEST(RemoveProperty, IsNoErrorForAMissingOne) {
    TestTree tree("<r a='1' b='2' c='3'/>");

    EXPECT_EQ(tree.RemoveProperty("b"), 1);
    EXPECT_EQ(tree.RemoveProperty("b"), 1);
    EXPECT_EQ(tree.RemoveProperty(nullptr), 1);
    EXPECT_EQ(tree.HasProperty("b", 0), 0);
    EXPECT_EQ(tree.HasProperty("c", 0), 1);
    EXPECT_EQ(tree.RemoveAttr("a", 0), 1);

    EXPECT_EQ(tree.text(), R"(<r c="3"></r>)");
}

TEST(GetPropertyNames, EmptiesItsArrayAndKeepsElementOrder) {
    TestTree tree("<r b='1' a='2'/>");
    CWBOStringArray names = string_list({"old"});

    EXPECT_EQ(tree.GetPropertyNames(names), 1);

    EXPECT_THAT(texts(names), ElementsAre("b", "a"));
}

TEST(GetPropertyNamesAndValues, AppendsWhatTheFilterKeeps) {
    TestTree tree("<r b='1' a='2' c='3'/>");
    CWBOStringArray names = string_list({"old"});
    CWBOStringArray values;
    const UXPropertyFilter notA = [](const char* name) { return *name != 'a'; };

    EXPECT_EQ(tree.GetPropertyNamesAndValues(names, &values, &notA), 1);
    EXPECT_THAT(texts(names), ElementsAre("old", "b", "c"));
    EXPECT_THAT(texts(values), ElementsAre("1", "3"));
    const UXPropertyFilter none;
    EXPECT_EQ(tree.GetPropertyNamesAndValues(names, nullptr, &none), 1);

    EXPECT_EQ(names.GetSize(), 6);
}

TEST(CopyAllAttributes, OverwritesSameNamesAndKeepsTheOthers) {
    TestTree target("<r a='1' b='2'/>");
    TestTree source("<s b='3' c='4' _ux_id='9'>text</s>");

    EXPECT_EQ(target.CopyAllAttributes(source, 1), 1);
    EXPECT_EQ(target.text(), R"(<r a="1" b="3" c="4"></r>)");
    EXPECT_EQ(target.CopyAllAttributes(target, 1), 1);

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
    int id = 5;

    EXPECT_EQ(tree.GetDataID(id), 0);
    tree.SetPropertyValue("DataID", CStringUTF8("12"));
    EXPECT_EQ(tree.GetDataID(id), 1);
    EXPECT_EQ(id, 12);
    EXPECT_EQ(tree.SetDataID(-3), 1);
    EXPECT_EQ(tree.text(), R"(<r DataID="-3"></r>)");
    tree.SetPropertyValue("DataID", CStringUTF8("x"));

    EXPECT_EQ(tree.GetDataID(id), 0);
    EXPECT_EQ(id, 12);
}

TEST(GetShow, NodeWithoutTheAttributeIsShown) {
    TestTree tree("<r/>");
    int show = 0;

    EXPECT_EQ(tree.GetShow(show), 0);
    EXPECT_EQ(show, 1);
    tree.SetShow(0);
    EXPECT_EQ(tree.text(), R"(<r Show="0"></r>)");
    EXPECT_EQ(tree.GetShow(show), 1);
    EXPECT_EQ(show, 0);
    tree.SetPropertyValue("Show", CStringUTF8("maybe"));
    EXPECT_EQ(tree.GetShow(show), 0);
    EXPECT_EQ(show, 1);
    tree.SetShow(5);

    EXPECT_EQ(tree.text(), "<r></r>");
}

TEST(SetLabel, NullRemovesTheLabel) {
    TestTree tree("<r/>");

    EXPECT_EQ(tree.SetLabel("one"), 1);
    EXPECT_EQ(tree.SetLabel(CStringUTF8("two")), 1);
    EXPECT_EQ(tree.text(), R"(<r Label="two"></r>)");
    EXPECT_EQ(tree.SetLabel(""), 1);
    EXPECT_EQ(tree.text(), R"(<r Label=""></r>)");
    EXPECT_EQ(tree.SetLabel(static_cast<const char*>(nullptr)), 1);

    EXPECT_EQ(tree.text(), "<r></r>");
}

}  // namespace
