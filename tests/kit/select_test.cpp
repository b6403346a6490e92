// Selections: what each expression means, and how faults are told.
#include "uxtree/kit/select.h"

#include <cstring>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"

#include "support/small_stack.h"
#include "support/test_tree.h"

using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::TestTree;

namespace {

// Each result as one text: <tag id>, @name=value, "text", (document).
std::vector<std::string> found(const UXXmlWrapperBase& context, const char* expression) {
    UXSelection selection;
    UXSelectFault fault;
    if (!selection.compile(expression, &fault)) {
        return {"fault at " + std::to_string(fault.position) + ": " + fault.message};
    }
    UXSelected result;
    const UXSelectOutcome outcome = selection.run(context, result);
    if (outcome == UXSelectOutcome::kMixedText) {
        return {"mixed: " + uxtest::tag_text(result.mixed())};
    }
    if (outcome != UXSelectOutcome::kDone) return {"no answer"};
    std::vector<std::string> all;
    for (std::size_t i = 0; i < result.size(); ++i) {
        CStringUTF8 text;
        const bool known = result.text(i, text);
        switch (result.kind(i)) {
            case UXSelectedKind::kAttribute:
                all.push_back("@" + std::string(result.attribute(i)) + "=" +
                              static_cast<const char*>(text));
                break;
            case UXSelectedKind::kText:
                all.push_back("\"" + std::string(static_cast<const char*>(text)) + "\"");
                break;
            case UXSelectedKind::kDocument:
                all.push_back("(document)" + std::string(static_cast<const char*>(text)));
                break;
            default: {
                CStringUTF8 id;
                const bool hasId = result.node(i).GetPropertyValue("i", id, 0) != 0;
                all.push_back(uxtest::tag_text(result.node(i)) +
                              (hasId ? static_cast<const char*>(id) : "") + "=" +
                              (known ? static_cast<const char*>(text) : "?"));
            }
        }
    }
    return all;
}

std::vector<std::string> found(const char* xml, const char* expression) {
    return found(TestTree(xml), expression);
}

constexpr const char* kBooks =
    "<shop><book i='1' lang='fr'><title>Un</title><price>10</price></book>"
    "<book i='2' lang='en'><title>Two</title><price>7.5</price></book>"
    "<box i='3'><book i='4' lang='fr'><title>Trois</title><price>12</price></book></box></shop>";

TEST(UXSelection, FollowsChildren) {
    EXPECT_THAT(found(kBooks, "/shop/book/title"), ElementsAre("title=Un", "title=Two"));
    EXPECT_THAT(found(kBooks, "book/price"), ElementsAre("price=10", "price=7.5"));
    EXPECT_THAT(found(kBooks, "/book"), IsEmpty());
    EXPECT_THAT(found(kBooks, "*/@lang"), ElementsAre("@lang=fr", "@lang=en"));
    EXPECT_THAT(found(kBooks, "/"), ElementsAre("(document)Un10Two7.5Trois12"));
    EXPECT_THAT(found(kBooks, "/shop/.."), ElementsAre("(document)Un10Two7.5Trois12"));
    EXPECT_THAT(found(kBooks, "/.."), IsEmpty());
}

TEST(UXSelection, FindsBelowInDocumentOrder) {
    EXPECT_THAT(found(kBooks, "//book/@i"), ElementsAre("@i=1", "@i=2", "@i=4"));
    EXPECT_THAT(found(kBooks, "//@lang"), ElementsAre("@lang=fr", "@lang=en", "@lang=fr"));
    EXPECT_THAT(found(kBooks, "//price/text()"), ElementsAre("\"10\"", "\"7.5\"", "\"12\""));
    EXPECT_THAT(found("<r><a><a><b>1</b></a><b>2</b></a></r>", "//a/b"), ElementsAre("b=1", "b=2"));
    EXPECT_THAT(found("<r><a i='1'><a i='2'/></a></r>", "//*//*"), ElementsAre("a1=", "a2="));
    EXPECT_THAT(found("<r><a><b/><c/></a><a><b/></a></r>", "//b/.."), ElementsAre("a=", "a="));
}

TEST(UXSelection, KeepsTheOrderBelowNodesWithinEachOther) {
    constexpr const char* kNested =
        "<r><a><b i='1'/><a><b i='2'/></a><b i='3'/></a><c><a><b i='4'/></a></c><a/><b i='5'/></r>";
    EXPECT_THAT(found(kNested, "//a/b/@i"), ElementsAre("@i=1", "@i=2", "@i=3", "@i=4"));
    EXPECT_THAT(found(kNested, "//c/a/b/@i"), ElementsAre("@i=4"));
    EXPECT_THAT(found(kNested, "//a//b/@i"), ElementsAre("@i=1", "@i=2", "@i=3", "@i=4"));
    EXPECT_THAT(found(kNested, "//a[a]/b/@i"), ElementsAre("@i=1", "@i=3"));
    EXPECT_THAT(found(kNested, "//c//@i"), ElementsAre("@i=4"));
    EXPECT_THAT(found(kNested, "//a/b[last()]/@i"), ElementsAre("@i=2", "@i=3", "@i=4"));
    EXPECT_THAT(found("<a><b i='1'/><a><b i='2'/></a></a>", "//a/b/@i"),
                ElementsAre("@i=1", "@i=2"));
}

TEST(UXSelection, KnowsNamesBeyondAscii) {
    const TestTree tree(
        "<\xD1\x94 i='x'><\xC3\xA9t\xC3\xA9 \xC3\xA9='v'>2</\xC3\xA9t\xC3\xA9></\xD1\x94>");
    EXPECT_THAT(found(tree, "/\xD1\x94[\xC3\xA9t\xC3\xA9 < '3']"), ElementsAre("\xD1\x94x=2"));
    EXPECT_THAT(found(tree, "//\xC3\xA9t\xC3\xA9/@\xC3\xA9"), ElementsAre("@\xC3\xA9=v"));
}

TEST(UXSelection, CountsPlacesForEachParent) {
    EXPECT_THAT(found(kBooks, "//book[1]/@i"), ElementsAre("@i=1", "@i=4"));
    EXPECT_THAT(found(kBooks, "/shop/book[last()]/@i"), ElementsAre("@i=2"));
    EXPECT_THAT(found(kBooks, "/shop/*[2]/@i"), ElementsAre("@i=2"));
    EXPECT_THAT(found(kBooks, "/shop/*[@lang='fr'][1]/@i"), ElementsAre("@i=1"));
    EXPECT_THAT(found(kBooks, "/shop/*[position()>1]/@i"), ElementsAre("@i=2", "@i=3"));
    EXPECT_THAT(found(kBooks, "/shop/*[last()-1]/@i"), ElementsAre("@i=2"));
    EXPECT_THAT(found(kBooks, "//book/@*[2]"), ElementsAre("@lang=fr", "@lang=en", "@lang=fr"));
}

TEST(UXSelection, AppliesConditions) {
    EXPECT_THAT(found(kBooks, "//book[@lang='fr']/@i"), ElementsAre("@i=1", "@i=4"));
    EXPECT_THAT(found(kBooks, "//book[title='Two']/@i"), ElementsAre("@i=2"));
    EXPECT_THAT(found(kBooks, "//book[price>8]/@i"), ElementsAre("@i=1", "@i=4"));
    EXPECT_THAT(found(kBooks, "//book[not(@lang='fr')]/@i"), ElementsAre("@i=2"));
    EXPECT_THAT(found(kBooks, "//book[@lang='fr' and price<11]/@i"), ElementsAre("@i=1"));
    EXPECT_THAT(found(kBooks, "//book[@i='2' or contains(title, 'o')]/@i"),
                ElementsAre("@i=2", "@i=4"));
    EXPECT_THAT(found(kBooks, "//book[starts-with(title, 'T')]/@i"), ElementsAre("@i=2", "@i=4"));
    EXPECT_THAT(found(kBooks, "//book[../@i]/@i"), ElementsAre("@i=4"));
    EXPECT_THAT(found(kBooks, "/*[.//price=12]/@i"), IsEmpty());
    EXPECT_THAT(found(kBooks, "/shop/*[.//price=12]/@i"), ElementsAre("@i=3"));
    EXPECT_THAT(found(kBooks, "//title[../../book]"),
                ElementsAre("title=Un", "title=Two", "title=Trois"));
    EXPECT_THAT(found(kBooks, "/shop/*[count(*)=2]/@i"), ElementsAre("@i=1", "@i=2"));
    EXPECT_THAT(found(kBooks, "//*[.='Two7.5']/@i"), ElementsAre("@i=2"));
    EXPECT_THAT(found(kBooks, "//@lang[.='en']"), ElementsAre("@lang=en"));
    EXPECT_THAT(found(kBooks, "//book[./title='Two']/@i"), ElementsAre("@i=2"));
    EXPECT_THAT(found(kBooks, "//book[title/.='Two']/@i"), ElementsAre("@i=2"));
    EXPECT_THAT(found(kBooks, "/shop/book['a'='a']['a'!='b']/@i"), ElementsAre("@i=1", "@i=2"));
    EXPECT_THAT(found(kBooks, "//book[@i][@i][@i][@i][@i][@i][@lang='fr']/@i"),
                ElementsAre("@i=1", "@i=4"));
}

TEST(UXSelection, SaysWhereAnExpressionIsNotUnderstood) {
    const auto fault = [](const char* expression) { return found("<r/>", expression).at(0); };
    EXPECT_EQ(fault(""), "fault at 0: a path is expected");
    EXPECT_EQ(fault("/a["), "fault at 3: the path ends too early");
    EXPECT_EQ(fault("/a[b='x]"), "fault at 5: the text is not closed");
    EXPECT_EQ(fault("/a[@b"), "fault at 2: ']' is missing");
    EXPECT_EQ(fault("/a|/b"), "fault at 2: several paths in one are not known");
    EXPECT_EQ(fault("//child::a"), "fault at 2: axes are not known: write / // @ . and ..");
    EXPECT_EQ(fault("/a[b=c]"),
              "fault at 4: a path can be compared with a text or a number, not with a path");
    EXPECT_EQ(fault("/a[id('x')]"), "fault at 3: the function id() is not known");
    EXPECT_EQ(fault("//."), "fault at 2: behind // a name, *, @ or text() is expected");
    EXPECT_EQ(fault("/a/@b/c"), "fault at 5: nothing follows an attribute or text()");
    EXPECT_EQ(fault("/a]"), "fault at 2: nothing was opened that ']' could close");
    EXPECT_EQ(fault("/a[$x]"), "fault at 3: variables are not known");
    EXPECT_EQ(fault("/p:*"),
              "fault at 1: all names of a prefix are not known: write the whole name");
    EXPECT_EQ(fault("/a/@xmlns:p"), "fault at 4: declarations of namespaces are no attributes");
    EXPECT_EQ(fault("/a/"), "fault at 3: the path ends too early");
    EXPECT_EQ(fault("/a[b='\xC3\xA4\xC3']"), "fault at 8: the path is not UTF-8");
    EXPECT_EQ(fault("/a[b='\x01']"), "fault at 6: XML cannot hold this character");
    EXPECT_EQ(fault("/a[1=2=3]"), "fault at 6: a comparison of a comparison needs brackets");
    EXPECT_EQ(fault("/a[(b)/c]"), "fault at 6: nothing follows a path in brackets");
    EXPECT_EQ(fault("/a[contains(1, 'x')]"), "fault at 12: a path or a text is expected here");
    EXPECT_EQ(fault(("/a[" + std::string(41, '(')).c_str()),
              "fault at 42: brackets are nested deeper than 40");
    std::string steps;
    for (int i = 0; i < 401; ++i) steps += "/a";
    EXPECT_EQ(fault(steps.c_str()), "fault at 800: a path has at most 400 steps");
    EXPECT_EQ(fault("/|a"), "fault at 1: several paths in one are not known");
    EXPECT_EQ(fault("(/a)"), "fault at 0: a path cannot stand in brackets");
    EXPECT_EQ(fault("/a[!b]"), "fault at 3: a path, a text or a number is expected here");
    EXPECT_EQ(fault("!b"), "fault at 0: a name, *, @, text(), . or .. is expected here");
    EXPECT_EQ(fault("/a b"), "fault at 3: the path should end here");
    EXPECT_EQ(fault("/a[b c]"), "fault at 5: ']' is expected here");
    EXPECT_EQ(fault("/a/id('x')"), "fault at 3: a path cannot have a function here");
    EXPECT_EQ(fault("/p:"), "fault at 1: this is no name with a prefix");
    EXPECT_EQ(fault("/a[b/..]"),
              "fault at 5: in a condition, .. stands at the beginning of a path only");
}

TEST(UXSelection, SaysWhereTextInMixedContentDecides) {
    constexpr const char* kMixed = "<r><p i='1'>a<b>x</b>c</p><p i='2'><b>x</b></p></r>";
    EXPECT_THAT(found(kMixed, "//p[.='axc']"), ElementsAre("mixed: p"));
    EXPECT_THAT(found(kMixed, "//p[.='x']/@i"), ElementsAre("@i=2"));  // the other is longer
    EXPECT_THAT(found(kMixed, "//p[b='x']/@i"), ElementsAre("@i=1", "@i=2"));
    EXPECT_THAT(found(kMixed, "//p/text()"), ElementsAre("mixed: p"));
    EXPECT_THAT(found(kMixed, "//p[text()]/@i"), ElementsAre("@i=1"));
    EXPECT_THAT(found(kMixed, "//p[text()='a']/@i"), ElementsAre("mixed: p"));
    EXPECT_THAT(found(kMixed, "//p[text()='z']/@i"), IsEmpty());
    EXPECT_THAT(found(kMixed, "//p[contains(., 'x')]/@i"), ElementsAre("mixed: p"));
    EXPECT_THAT(found(kMixed, "//p[contains(., 'x') and @i='2']/@i"), ElementsAre("@i=2"));
    EXPECT_THAT(found(kMixed, "//p"), ElementsAre("p1=?", "p2=x"));
    EXPECT_THAT(found(kMixed, "//p[count(text())=2]/@i"), ElementsAre("mixed: p"));
    EXPECT_THAT(found(kMixed, "//p[@i][@i][@i][@i][@i][@i][.='axc']/@i"), ElementsAre("mixed: p"));
}

TEST(UXSelection, KnowsWhereTextStandsInDocumentsWithLayout) {
    constexpr const char* kMixed =
        "<r><p i='1'>a<b>x</b>c<!-- - -->d<b/></p><p i='2'><b>x</b></p> e &amp;</r>";
    UXXmlWrapperBase root;
    ASSERT_EQ(UXLoadForEditingFromMemory(&root, kMixed, std::strlen(kMixed)), 1);
    EXPECT_THAT(found(root, "//p[.='axcd']/@i"), ElementsAre("@i=1"));
    EXPECT_THAT(found(root, "//p[contains(., 'xc')]/@i"), ElementsAre("@i=1"));
    EXPECT_THAT(found(root, "//p[contains(., 'ac')]/@i"), IsEmpty());
    EXPECT_THAT(found(root, "//p[starts-with(., 'ax')]"), ElementsAre("p1=axcd"));
    EXPECT_THAT(found(root, "//text()"),
                ElementsAre("\"a\"", "\"x\"", "\"cd\"", "\"x\"", "\" e &\""));
    EXPECT_THAT(found(root, "//p/text()[2]"), ElementsAre("\"cd\""));
    EXPECT_THAT(found(root, "//p[text()='cd']/@i"), ElementsAre("@i=1"));
    EXPECT_THAT(found(root, "//p[count(text())=2]/@i"), ElementsAre("@i=1"));
    EXPECT_THAT(found(root, "/"), ElementsAre("(document)axcdx e &"));
    EXPECT_THAT(found(root, "p"), ElementsAre("p1=axcd", "p2=x"));

    UXXmlWrapperBase p;
    root.FindChild("p", &p, 0);
    p.SetString("azcd");  // stands where saving would write it
    EXPECT_THAT(found(root, "p/text()"), ElementsAre("\"az\"", "\"cd\""));
}

TEST(UXSelection, NeedsNoStackForDeepTrees) {
    uxtest::on_small_stack([] {
        constexpr int kDepth = 300000;
        UXXmlWrapperBase root;
        root.CreateNew(0, "a");
        UXXmlWrapperBase node = root;
        for (int i = 0; i < kDepth; ++i) node.AddNode(&node, "a", -1);
        node.SetString("5");
        for (const char* expression :
             {"//a[.='5']", "//*//*", "//a/..", "//a[.//a]", "//a[contains(.,'5')]", "//a[.>4]",
              "//a[1]/a", "//*[starts-with(*,'5')]", "//a[not(../../b)]"}) {
            UXSelection selection;
            ASSERT_TRUE(selection.compile(expression)) << expression;
            UXSelected result;
            EXPECT_EQ(selection.run(root, result), UXSelectOutcome::kDone);
            EXPECT_GE(result.size(), 299999U) << expression;
        }
    });
}

// Walking the siblings again for each of them would take hours.
TEST(UXSelection, AsksSiblingsAndBranchesOnce) {
    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    for (int i = 0; i < 200000; ++i) root.AddNode(nullptr, "b", -1);
    root.AddTextNode(nullptr, "c", "v", -1, 0, nullptr);
    const auto count = [&](const char* expression) {
        UXSelection selection;
        UXSelected result;
        EXPECT_TRUE(selection.compile(expression)) << expression;
        EXPECT_EQ(selection.run(root, result), UXSelectOutcome::kDone) << expression;
        return result.size();
    };
    EXPECT_EQ(count("/r/b[../c='v']"), 200000U);
    EXPECT_EQ(count("/r/b[contains(../c, 'w')]"), 0U);
    EXPECT_EQ(count("//b[count(../b) = 200000]"), 200000U);
    EXPECT_EQ(count("//b[//c = 'v']"), 200000U);
    EXPECT_EQ(count("//b[../../.. or .//c]"), 0U);
    EXPECT_EQ(count("//b/.."), 1U);
    EXPECT_EQ(count("b/../b[last()]"), 1U);
}

TEST(UXSelection, StartsAtTheNodeItIsGiven) {
    TestTree tree("<r><a i='1'><b i='2'/></a><a i='3'><b i='4'/></a></r>");
    const UXXmlWrapperBase second = tree.at("a[1]");
    EXPECT_THAT(found(second, "b"), ElementsAre("b4="));
    EXPECT_THAT(found(second, ".//b"), ElementsAre("b4="));
    EXPECT_THAT(found(second, "//b"), ElementsAre("b2=", "b4="));
    EXPECT_THAT(found(second, "../a[1]//b/.."), ElementsAre("a1="));
    EXPECT_THAT(found(second, ".//b[../../a]"), ElementsAre("b4="));
    EXPECT_THAT(found(second, "."), ElementsAre("a3="));
}

TEST(UXSelection, CanBeCopiedAndMovedWithItsResult) {
    const TestTree tree("<r><a/><b/></r>");
    UXSelected result;
    const auto tag_of = [&](const UXSelection& selection) {
        EXPECT_EQ(selection.run(tree, result), UXSelectOutcome::kDone);
        return result.size() == 1 ? uxtest::tag_text(result.node(0)) : "";
    };
    UXSelection first;
    ASSERT_TRUE(first.compile("a"));
    UXSelection copy(first);
    ASSERT_TRUE(first.compile("b"));
    EXPECT_EQ(tag_of(copy), "a");
    UXSelection moved(std::move(copy));
    EXPECT_EQ(tag_of(moved), "a");
    copy = first;
    EXPECT_EQ(tag_of(copy), "b");
    moved = std::move(first);
    EXPECT_EQ(tag_of(moved), "b");
    const UXSelected kept(std::move(result));
    EXPECT_EQ(uxtest::tag_text(kept.node(0)), "b");
}

TEST(UXSelection, YieldsNothingWithoutTreeOrExpression) {
    UXSelection selection;
    UXSelected result;
    EXPECT_EQ(selection.run(TestTree("<r/>"), result), UXSelectOutcome::kNoTree);
    ASSERT_TRUE(selection.compile("/r"));
    EXPECT_FALSE(selection.compile("/r["));
    EXPECT_FALSE(selection.compile(nullptr));
    EXPECT_EQ(selection.run(UXXmlWrapperBase(), result), UXSelectOutcome::kNoTree);
    EXPECT_EQ(result.size(), 0U);
    EXPECT_EQ(selection.run(TestTree("<r/>"), result), UXSelectOutcome::kDone);
    EXPECT_EQ(result.size(), 1U);  // of what was compiled last with success
}

}  // namespace
