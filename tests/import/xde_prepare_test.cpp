// Trees made ready for the import dialog: arrays, previews, labels.
#include "uxtree/import/xde_prepare.h"

#include <string>

#include <gmock/gmock.h>

#include "support/test_tree.h"

namespace {

using uxtest::repeated;
using uxtest::TemporaryFolder;
using uxtest::TestTree;
using uxtest::to_text;
using uxtest::tree_text;

constexpr DWORD kPreview = 0x10000;

// Prepares the description under an empty node "t"; yields the whole tree.
std::string prepared(const std::string& description, DWORD flags = 0) {
    const TemporaryFolder folder;
    TestTree tree("<t/>");
    const int result =
        uxtree_XDE_prepare_XML(&tree, folder.write("description.xml", description).c_str(), flags);
    return result == 0 ? tree.text() : std::to_string(result);
}

TEST(uxtree_XDE_prepare_XML, RepeatedTagAmongOthersMovesIntoAWrapperThatIsAnArray) {
    EXPECT_EQ(prepared("<r><A>1</A><B/><A>2</A></r>"),
              "<t><r><As FileDataDimsVector=\"2\"><A Label=\"A_0\">1</A><A Label=\"A_1\">2</A></As>"
              "<B></B></r></t>");
}

TEST(uxtree_XDE_prepare_XML, WrapperStandsWhereTheFirstOfItsElementsStood) {
    EXPECT_EQ(prepared("<r><B/><A/><C/><A/></r>"),
              "<t><r><B></B><As FileDataDimsVector=\"2\"><A Label=\"A_0\"></A>"
              "<A Label=\"A_1\"></A></As><C></C></r></t>");
}

TEST(uxtree_XDE_prepare_XML, WrapperHasNoAttributesAndItsParentIsNoArray) {
    EXPECT_EQ(prepared("<r k='v'><A a='1'/><A a='2'/><B/></r>"),
              "<t><r k=\"v\"><As FileDataDimsVector=\"2\"><A a=\"1\" Label=\"A_0\"></A>"
              "<A a=\"2\" Label=\"A_1\"></A></As><B></B></r></t>");
}

TEST(uxtree_XDE_prepare_XML, EveryRepeatedTagGetsItsOwnWrapper) {
    EXPECT_EQ(
        prepared("<r><A/><B/><A/><B/></r>"),
        "<t><r><As FileDataDimsVector=\"2\"><A Label=\"A_0\"></A><A Label=\"A_1\"></A></As>"
        "<Bs FileDataDimsVector=\"2\"><B Label=\"B_0\"></B><B Label=\"B_1\"></B></Bs></r></t>");
}

TEST(uxtree_XDE_prepare_XML, WrapperIsNotGroupedWithElementsThatHaveItsName) {
    EXPECT_EQ(prepared("<r><A/><A/><As/><As/></r>"),
              "<t><r><As FileDataDimsVector=\"2\"><A Label=\"A_0\"></A><A Label=\"A_1\"></A></As>"
              "<Ass FileDataDimsVector=\"2\"><As Label=\"As_0\"></As><As Label=\"As_1\"></As></Ass>"
              "</r></t>");
}

TEST(uxtree_XDE_prepare_XML, ChildrenOfOneTagMakeTheirParentAnArray) {
    EXPECT_EQ(prepared("<r><p>1</p><p>2</p><p>3</p></r>"),
              "<t><r FileDataDimsVector=\"3\"><p Label=\"p_0\">1</p><p Label=\"p_1\">2</p>"
              "<p Label=\"p_2\">3</p></r></t>");
}

TEST(uxtree_XDE_prepare_XML, OneChildIsNoArrayAndGetsNoLabel) {
    EXPECT_EQ(prepared("<r><only>1</only></r>"), "<t><r><only>1</only></r></t>");
}

TEST(uxtree_XDE_prepare_XML, DifferentTagsStayAsTheyAre) {
    EXPECT_EQ(prepared("<r><a>1</a><b/><c>3</c></r>"), "<t><r><a>1</a><b></b><c>3</c></r></t>");
}

TEST(uxtree_XDE_prepare_XML, LabelOfAnArrayElementReplacesItsOwn) {
    EXPECT_EQ(prepared("<r><p Label='x'/><p/></r>"),
              "<t><r FileDataDimsVector=\"2\"><p Label=\"p_0\"></p><p Label=\"p_1\"></p></r></t>");
}

TEST(uxtree_XDE_prepare_XML, OnlyTheTextsOfLeavesAreCopied) {
    EXPECT_EQ(prepared("<r>mixed<a>text</a></r>"), "<t><r><a>text</a></r></t>");
}

TEST(uxtree_XDE_prepare_XML, EmptyTextIsNotCopied) {
    EXPECT_EQ(prepared("<r><a></a></r>"), "<t><r><a></a></r></t>");
}

TEST(uxtree_XDE_prepare_XML, RootWithoutChildrenIsCopiedWithItsText) {
    EXPECT_EQ(prepared("<r a='1'>text</r>"), "<t><r a=\"1\">text</r></t>");
}

TEST(uxtree_XDE_prepare_XML, CopyGoesBehindTheChildrenThatTheTreeHas) {
    const TemporaryFolder folder;
    TestTree tree("<t><old/></t>");

    EXPECT_EQ(uxtree_XDE_prepare_XML(&tree, folder.write("d.xml", "<r/>").c_str(), 0), 0);

    EXPECT_EQ(tree.text(), tree_text("<t><old/><r/></t>"));
}

// ---- agreement of the elements of one array
// ------------------------------------------------------

TEST(uxtree_XDE_prepare_XML, EarlierChildAtThePlaceOfAnArrayBecomesAnArrayOfSizeOne) {
    EXPECT_EQ(prepared("<r><e><a/><b/><c>x</c></e><e><a/><b/><c><i/><i/></c></e></r>"),
              "<t><r FileDataDimsVector=\"2\">"
              "<e Label=\"e_0\"><a></a><b></b><c FileDataDimsVector=\"1\">x</c></e>"
              "<e Label=\"e_1\"><a></a><b></b><c FileDataDimsVector=\"2\"><i Label=\"i_0\"></i>"
              "<i Label=\"i_1\"></i></c></e></r></t>");
}

TEST(uxtree_XDE_prepare_XML, LaterChildAtThePlaceOfAnArrayBecomesAnArrayOfSizeOne) {
    EXPECT_EQ(prepared("<r><e><c><i/><i/></c></e><e><c><i/></c></e></r>"),
              "<t><r FileDataDimsVector=\"2\">"
              "<e Label=\"e_0\"><c FileDataDimsVector=\"2\"><i Label=\"i_0\"></i>"
              "<i Label=\"i_1\"></i></c></e>"
              "<e Label=\"e_1\"><c FileDataDimsVector=\"1\"><i></i></c></e></r></t>");
}

TEST(uxtree_XDE_prepare_XML, AnotherTagAtAPlaceBlocksAgreementThere) {
    EXPECT_EQ(prepared("<r><e><x/></e><e><c><i/><i/></c></e><e><c/></e></r>"),
              "<t><r FileDataDimsVector=\"3\"><e Label=\"e_0\"><x></x></e>"
              "<e Label=\"e_1\"><c FileDataDimsVector=\"2\"><i Label=\"i_0\"></i>"
              "<i Label=\"i_1\"></i></c></e><e Label=\"e_2\"><c></c></e></r></t>");
}

TEST(uxtree_XDE_prepare_XML, AgreementSkipsEarlierElementsWithAnotherTagOrTooFewChildren) {
    EXPECT_EQ(prepared("<r><e><a/><c/></e><e><a/></e><e><a/><d/></e>"
                       "<e><a/><c><i/><i/></c></e></r>"),
              "<t><r FileDataDimsVector=\"4\">"
              "<e Label=\"e_0\"><a></a><c FileDataDimsVector=\"1\"></c></e>"
              "<e Label=\"e_1\"><a></a></e><e Label=\"e_2\"><a></a><d></d></e>"
              "<e Label=\"e_3\"><a></a><c FileDataDimsVector=\"2\"><i Label=\"i_0\"></i>"
              "<i Label=\"i_1\"></i></c></e></r></t>");
}

TEST(uxtree_XDE_prepare_XML, ElementsOfDifferentArraysNeedNotAgree) {
    EXPECT_EQ(prepared("<r><l><e><c/></e><e><c/></e></l><m><e><c><i/><i/></c></e><e/></m></r>"),
              "<t><r><l FileDataDimsVector=\"2\"><e Label=\"e_0\"><c></c></e>"
              "<e Label=\"e_1\"><c></c></e></l><m FileDataDimsVector=\"2\">"
              "<e Label=\"e_0\"><c FileDataDimsVector=\"2\"><i Label=\"i_0\"></i>"
              "<i Label=\"i_1\"></i></c></e><e Label=\"e_1\"></e></m></r></t>");
}

TEST(uxtree_XDE_prepare_XML, WrappedElementsAgreeToo) {
    EXPECT_EQ(prepared("<r><z/><e><c>1</c></e><e><c><i/><i/></c></e></r>"),
              "<t><r><z></z><es FileDataDimsVector=\"2\">"
              "<e Label=\"e_0\"><c FileDataDimsVector=\"1\">1</c></e>"
              "<e Label=\"e_1\"><c FileDataDimsVector=\"2\"><i Label=\"i_0\"></i>"
              "<i Label=\"i_1\"></i></c></e></es></r></t>");
}

TEST(uxtree_XDE_prepare_XML, ArraysInArraysAgreeWithinTheirOwnArray) {
    EXPECT_EQ(prepared("<r><e><c/><c/></e><e><c><i/><i/></c><c/></e></r>"),
              "<t><r FileDataDimsVector=\"2\">"
              "<e FileDataDimsVector=\"2\" Label=\"e_0\">"
              "<c Label=\"c_0\" FileDataDimsVector=\"1\"></c><c Label=\"c_1\"></c></e>"
              "<e FileDataDimsVector=\"2\" Label=\"e_1\">"
              "<c FileDataDimsVector=\"2\" Label=\"c_0\"><i Label=\"i_0\"></i>"
              "<i Label=\"i_1\"></i></c><c Label=\"c_1\"></c></e></r></t>");
}

// ---- preview -----------------------------------------------------------------------------------

TEST(uxtree_XDE_prepare_XML, PreviewCopiesFiveElementsOfAnArrayAndSavesItsFullSize) {
    std::string expected = "<t><r FileDataDimsVector=\"1000\">";
    for (int i = 0; i < 5; ++i) expected += "<p Label=\"p_" + std::to_string(i) + "\"></p>";

    EXPECT_EQ(prepared("<r>" + repeated("<p/>", 1000) + "</r>", kPreview), expected + "</r></t>");
}

TEST(uxtree_XDE_prepare_XML, PreviewCopiesTheFirst200ChildrenOfAnotherElement) {
    std::string description = "<r>";
    std::string expected = "<t><r>";
    for (int i = 0; i < 300; ++i) {
        const std::string tag = "p" + std::to_string(i);
        description += "<" + tag + "/>";
        if (i < 200) expected += "<" + tag + "></" + tag + ">";
    }

    EXPECT_EQ(prepared(description + "</r>", kPreview), expected + "</r></t>");
}

TEST(uxtree_XDE_prepare_XML, PreviewCountsGroupedChildrenAsOne) {
    const std::string text = prepared("<r>" + repeated("<p/>", 300) + "<q/></r>", kPreview);

    EXPECT_THAT(text, testing::HasSubstr("<ps FileDataDimsVector=\"300\">"));
    EXPECT_THAT(text, testing::HasSubstr("</ps><q></q></r>"));
}

TEST(uxtree_XDE_prepare_XML, OtherFlagsMeanNothing) {
    EXPECT_EQ(prepared("<r>" + repeated("<p/>", 6) + "</r>", 0xFFFEFFFF),
              prepared("<r>" + repeated("<p/>", 6) + "</r>", 0));
}

// ---- failures ----------------------------------------------------------------------------------

TEST(uxtree_XDE_prepare_XML, FileThatCannotBeReadIsTestedFirst) {
    const TemporaryFolder folder;
    TestTree tree("<t/>");
    UXXmlWrapperBase invalid;

    EXPECT_EQ(uxtree_XDE_prepare_XML(&tree, "", 0), -2019);
    EXPECT_EQ(uxtree_XDE_prepare_XML(&tree, folder.path("missing.xml").c_str(), 0), -2019);
    EXPECT_EQ(uxtree_XDE_prepare_XML(&tree, folder.path("").c_str(), 0), -2019);
    EXPECT_EQ(uxtree_XDE_prepare_XML(&invalid, folder.path("missing.xml").c_str(), 0), -2019);
    EXPECT_EQ(tree.text(), tree_text("<t/>"));
}

TEST(uxtree_XDE_prepare_XML, FileThatIsNoXmlIsTestedBeforeTheTree) {
    const TemporaryFolder folder;
    const std::string path = folder.write("broken.xml", "<r><a></r>");
    TestTree tree("<t/>");

    EXPECT_EQ(uxtree_XDE_prepare_XML(&tree, path.c_str(), 0), -2018);
    EXPECT_EQ(uxtree_XDE_prepare_XML(nullptr, path.c_str(), 0), -2018);
    EXPECT_EQ(tree.text(), tree_text("<t/>"));
}

// ---- size --------------------------------------------------------------------------------------

TEST(uxtree_XDE_prepare_XML, DeepDescriptionsCostNoMachineStack) {
    const int depth = 9000;
    const std::string text = prepared(repeated("<a><b/><b/><c/>", depth) + repeated("</a>", depth));

    EXPECT_THAT(text, testing::StartsWith("<t><a><bs FileDataDimsVector=\"2\">"
                                          "<b Label=\"b_0\"></b><b Label=\"b_1\"></b></bs>"
                                          "<c></c><a><bs"));
}

TEST(uxtree_XDE_prepare_XML, GroupingAndAgreementTakeLinearTime) {
    // Groups nested in groups, and a last element that makes every place of a long array agree.
    const int depth = 4000;
    prepared(repeated("<a><b/><a/>", depth) + repeated("</a>", depth));
    std::string element = "<e>";
    std::string last = "<e>";
    for (int i = 0; i < 1000; ++i) {
        const std::string tag = "p" + std::to_string(i);
        element += "<" + tag + "/>";
        last += "<" + tag + "><i/><i/></" + tag + ">";
    }
    const std::string text = prepared("<r>" + repeated(element + "</e>", 200) + last + "</e></r>");

    EXPECT_THAT(text, testing::StartsWith("<t><r FileDataDimsVector=\"201\"><e Label=\"e_0\">"
                                          "<p0 FileDataDimsVector=\"1\"></p0>"));
    EXPECT_THAT(text, testing::HasSubstr("<p999 FileDataDimsVector=\"1\"></p999></e>"
                                         "<e Label=\"e_200\">"));
}

}  // namespace
