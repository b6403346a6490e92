// Single edits of documents that keep their layout, and the bytes that they make.
#include <string>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"

#include "host/layout_support.h"

namespace {

using uxtest::edited_document;

// The bytes of the file, or "refused: " and why.
std::string saved(const UXXmlWrapperBase& node, const UXSaveOptions& options = {},
                  UXSaveReport* report = nullptr) {
    CStringUTF8 bytes;
    if (UXSaveToMemory(&node, &bytes, options, report) == 1) return std::string(bytes);
    return "refused: " + std::string(UXGetLastSaveError());
}

// What the document becomes when its root's attribute "a" becomes 2.
std::string with_changed_attribute(const std::string& bytes) {
    UXXmlWrapperBase root = edited_document(bytes);
    root.SetPropertyValue("a", 2);
    return saved(root);
}

TEST(UXSaveToMemory, KeepsTheDefaultCodePage) {
    UXXmlWrapperBase::SetDefaultCodePage(1252);
    EXPECT_EQ(with_changed_attribute("<r a='1'>\xE9\x80</r>"), "<r a='2'>\xE9\x80</r>");
    EXPECT_EQ(with_changed_attribute("<r a='1'>\xC3\xA9</r>"), "<r a='2'>\xC3\xA9</r>");
    EXPECT_EQ(with_changed_attribute("<r a='1'>e</r>"), "<r a='2'>e</r>");
    UXXmlWrapperBase::SetDefaultCodePage(65001);
}

TEST(UXSaveToMemory, CountsTheCommentsThatItLeavesOut) {
    UXSaveOptions options;
    options.form = UXSaveForm::kIndented;
    const auto left_out = [&](const std::string& bytes) {
        UXSaveReport report;
        EXPECT_EQ(saved(edited_document(bytes), options, &report),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>\n  <a>x</a>\n</r>\n");
        return report.commentsLeftOut;
    };
    EXPECT_EQ(left_out("<r><a>x</a></r>"), 0U);
    EXPECT_EQ(left_out("<?xml version='1.0'?><!-- 1 --><r><a>x<!-- 2 --></a><?p 3?></r><!--4-->"),
              4U);
    EXPECT_EQ(left_out("\xEF\xBB\xBF<?xml version='1.0'?><r><a><![CDATA[x]]></a><!-- 1 --></r>"),
              1U);
    EXPECT_EQ(left_out("<!DOCTYPE r SYSTEM \"<!-- -->\" [<!-- no -->]><r><a>x</a><!-- 1 --></r>"),
              1U);
}

TEST(UXSaveToMemory, NeverWritesWhatXmlCannotHold) {
    UXXmlWrapperBase root = edited_document("<r a='1'><!-- c --></r>");
    root.SetPropertyValue("a", CStringUTF8("\x01"));
    EXPECT_EQ(saved(root), "refused: /r/@a: the text has bytes that XML cannot hold");
    root.SetPropertyValue("a", 1);
    root.SetString("\x02");
    EXPECT_EQ(saved(root), "refused: /r: the text has bytes that XML cannot hold");
}

TEST(UXSaveToMemory, WritesNoIdBesideAnAttributeOfItsName) {
    UXSaveOptions options;
    options.ids = UXSaveIds::kWrite;
    const auto with_id = [&](const char* bytes) {
        UXXmlWrapperBase root = edited_document(bytes);
        root.SetID(7, false);
        return saved(root, options);
    };
    EXPECT_EQ(with_id("<r a='1'/>"), "<r a='1' _ux_id='7'/>");
    EXPECT_EQ(with_id("<r _ux_id='no number'/>"),
              "refused: /r: the ID has no place: the element has another attribute \"_ux_id\"");
}

// A carriage return and a line feed that came apart by what stood between them stay two line ends.
TEST(UXSaveToMemory, JoinsNoLineEnds) {
    const auto with_text = [](const char* bytes, const char* text) {
        UXXmlWrapperBase root = edited_document(bytes);
        root.SetString(text);
        return saved(root);
    };
    EXPECT_EQ(with_text("<r>a\rXX\nb</r>", "a\n\nb"), "<r>a\r&#10;b</r>");
    EXPECT_EQ(with_text("<r><![CDATA[a\rXX\nb]]></r>", "a\n\nb"),
              "<r><![CDATA[a\r]]>&#10;<![CDATA[b]]></r>");
    EXPECT_EQ(with_text("<r><![CDATA[a\r]]>b</r>", "a\nc"), "<r><![CDATA[a\r]]>c</r>");
}

TEST(UXSaveToMemory, BlankTextBesideANewChildIsWrittenAsReferences) {
    UXXmlWrapperBase root = edited_document("<r> \r\n\r</r>");
    root.AddNode(nullptr, "a", -1);
    EXPECT_EQ(saved(root), "<r>&#32;&#10;&#10;<a/></r>");
}

TEST(UXSaveToMemory, IndentsByTheStepThatIsMostFrequent) {
    UXXmlWrapperBase root =
        edited_document("<r>\n  <a>\n      <b/>\n  </a>\n  <c/>\n  <d>\n   <e/>\n  </d>\n</r>");
    UXXmlWrapperBase c;
    root.FindChild("c", &c, 1);
    c.AddNode(nullptr, "new", -1);
    EXPECT_EQ(saved(root),
              "<r>\n  <a>\n      <b/>\n  </a>\n  <c>\n    <new/>\n  </c>\n  <d>\n   <e/>\n  "
              "</d>\n</r>");
}

TEST(UXSaveToMemory, LeavesWhatEntitiesBringAlongToThem) {
    UXXmlWrapperBase root = edited_document("<!DOCTYPE r [<!ENTITY e '<a/>'>]><r>x&e;</r>");
    UXXmlWrapperBase a;
    root.FindChild("a", &a, 1);
    EXPECT_EQ(saved(a),
              "refused: /r/a[1]: the element comes from an entity and cannot be written elsewhere");
    root.SetString("y");
    EXPECT_EQ(saved(root),
              "refused: /r: the text beside elements that come from an entity has changed");
}

TEST(UXSaveToMemory, RefusesAnElementOfAnEntityThatHasChanged) {
    const std::string bytes = "<!DOCTYPE r [<!ENTITY e '<a k=\"1\"/>'>]><r><b>&e;</b><c/></r>";
    const std::string refused =
        "refused: /r/b[1]: what the entity reference &e; stands for has changed";
    UXXmlWrapperBase root = edited_document(bytes);
    UXXmlWrapperBase b;
    UXXmlWrapperBase a;
    root.FindChild("b", &b, 1);
    b.FindChild("a", &a, 1);
    a.SetPropertyValue("k", 2);
    EXPECT_EQ(saved(root), refused);
    a.SetPropertyValue("k", 1);
    EXPECT_EQ(saved(root), bytes);
    a.SetPropertyValue("l", 1);
    EXPECT_EQ(saved(root), refused);
}

TEST(UXSaveToMemory, KeepsPreservedSpaceAndRemovesOther) {
    UXXmlWrapperBase root = edited_document(
        "<r>\n  <a xml:space='preserve'>\n    <b/>\n    <d/>\n  </a>\n"
        "  <c>\n    <b/>\n    <d/>\n  </c>\n</r>");
    for (const char* const tag : {"a", "c"}) {
        UXXmlWrapperBase parent;
        UXXmlWrapperBase b;
        root.FindChild(tag, &parent, 1);
        parent.FindChild("b", &b, 1);
        b.RemoveNode();
    }
    EXPECT_EQ(saved(root),
              "<r>\n  <a xml:space='preserve'>\n    \n    <d/>\n  </a>\n"
              "  <c>\n    <d/>\n  </c>\n</r>");
}

TEST(UXSaveToMemory, TakesADocumentWithoutLayoutInEveryForm) {
    UXXmlWrapperBase root;
    const std::string bytes = "<r><a>x</a><b/></r>";
    ASSERT_EQ(root.LoadFromMemory(bytes.data(), bytes.size()), 1);
    const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    UXSaveOptions options;
    EXPECT_EQ(saved(root, options), declaration + "<r><a>x</a><b/></r>");
    options.form = UXSaveForm::kIndented;
    EXPECT_EQ(saved(root, options), declaration + "\n<r>\n  <a>x</a>\n  <b/>\n</r>\n");
    options.form = UXSaveForm::kPlain;
    root.SetString("\x02");
    EXPECT_EQ(saved(root, options), "refused: /r: the text has bytes that XML cannot hold");
}

}  // namespace
