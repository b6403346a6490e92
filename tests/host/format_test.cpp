// Laying out files anew.
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"

#include "support/test_tree.h"

namespace {

std::string formatted(const std::string& xml, const UXFormatOptions& options = {}) {
    CStringUTF8 out = "untouched";
    if (UXFormatXml(xml.data(), xml.size(), options, &out) == 0) {
        EXPECT_EQ(out, "untouched");
        return "refused: " + std::string(UXGetLastLoadFailure().message);
    }
    return {static_cast<const char*>(out), static_cast<std::size_t>(out.GetLength())};
}

std::string tree_of(const std::string& xml) {
    UXXmlWrapperBase root;
    EXPECT_EQ(root.LoadFromMemory(xml.data(), xml.size()), 1) << UXGetLastLoadError() << "\n"
                                                              << xml;
    CStringUTF8 text;
    root.GetString(text);
    return static_cast<const char*>(text);
}

constexpr UXFormatOptions kCompact{nullptr, true};

TEST(UXFormatXml, PutsChildrenInLinesOfTheirOwn) {
    EXPECT_EQ(formatted("<?xml version='1.0'?><r><a>1</a><b><c/><d k='v'/></b></r>"),
              "<?xml version='1.0'?>\n<r>\n  <a>1</a>\n  <b>\n    <c/>\n    <d k='v'/>\n  </b>\n"
              "</r>\n");
}

TEST(UXFormatXml, DropsBlankLinesAndOtherIndents) {
    EXPECT_EQ(formatted("\n<r>\n\n\n     <a/>\n<b/></r>\n\n\n"), "<r>\n  <a/>\n  <b/>\n</r>\n");
}

TEST(UXFormatXml, KeepsCommentsInstructionsAndTheProlog) {
    EXPECT_EQ(formatted("<!-- a --><?pi x?><!DOCTYPE r [ <!ENTITY e '<'> ]><r><!-- b\n  c --><a/>"
                        "<?q?></r><!-- end -->"),
              "<!-- a -->\n<?pi x?>\n<!DOCTYPE r [ <!ENTITY e '<'> ]>\n<r>\n  <!-- b\n  c -->\n"
              "  <a/>\n  <?q?>\n</r>\n<!-- end -->\n");
}

TEST(UXFormatXml, LeavesValuesAlone) {
    const std::string body =
        "<a>  two  lines\n </a>|<b> </b>|<c><!-- x --> </c>|<d>mixed <e><f/></e>text</d>|"
        "<g>&#32;<h/></g>|<i><![CDATA[]]><j/></i>|<k>&amp;</k>|<l></l>";
    std::string in = "<r>";
    std::string out = "<r>\n  ";
    for (const char c : body) {
        if (c != '|') in += c;
        out += c == '|' ? std::string("\n  ") : std::string(1, c);
    }
    EXPECT_EQ(formatted(in + "</r>"), out + "\n</r>\n");
}

TEST(UXFormatXml, LeavesPreservedSpaceAlone) {
    EXPECT_EQ(formatted("<r><a xml:space='preserve'> <b> <c/></b></a><d> <e/></d></r>"),
              "<r>\n  <a xml:space='preserve'> <b> <c/></b></a>\n  <d>\n    <e/>\n  </d>\n</r>\n");
}

TEST(UXFormatXml, WritesOneBlankBetweenAttributes) {
    EXPECT_EQ(formatted("<r\n  a = 'x  y'\n\tb=\"&#10;\" ><c  /></r >"),
              "<r a='x  y' b=\"&#10;\">\n  <c/>\n</r >\n");
}

TEST(UXFormatXml, IndentsAsWished) {
    EXPECT_EQ(formatted("<r><a><b/></a></r>", {"\t", false}),
              "<r>\n\t<a>\n\t\t<b/>\n\t</a>\n</r>\n");
    EXPECT_EQ(formatted("<r><a><b/></a></r>", {nullptr, false}), "<r>\n<a>\n<b/>\n</a>\n</r>\n");
}

TEST(UXFormatXml, WritesNoLinesWhenCompact) {
    EXPECT_EQ(
        formatted("<?xml version='1.0'?>\n<r>\n <!-- c -->\n <a>\n  <b> x </b>\n </a>\n</r>\n",
                  kCompact),
        "<?xml version='1.0'?><r><!-- c --><a><b> x </b></a></r>\n");
}

TEST(UXFormatXml, KeepsEncodingsMarksAndLineEnds) {
    EXPECT_EQ(formatted("\xEF\xBB\xBF<r><a/></r>"), "\xEF\xBB\xBF<r>\n  <a/>\n</r>\n");
    EXPECT_EQ(formatted("<?xml version='1.0' encoding='ISO-8859-1'?><r><a>\xE9</a></r>"),
              "<?xml version='1.0' encoding='ISO-8859-1'?>\n<r>\n  <a>\xE9</a>\n</r>\n");
    EXPECT_EQ(formatted("<r>\r\n<a/></r>"), "<r>\r\n  <a/>\r\n</r>\r\n");
    const auto wide = [](const std::string& text) {
        std::string out = "\xFF\xFE";
        for (const char c : text) {
            out += c;
            out += '\0';
        }
        return out;
    };
    EXPECT_EQ(formatted(wide("<r><a/></r>")), wide("<r>\n  <a/>\n</r>\n"));
}

TEST(UXFormatXml, RefusesWhatIsNoDocument) {
    EXPECT_EQ(formatted("<r><a></r>"), "refused: mismatched tag: expected </a>");
    EXPECT_EQ(UXGetLastLoadFailure().line, 1);
    EXPECT_EQ(UXGetLastLoadFailure().column, 9);
    EXPECT_EQ(formatted(""), "refused: no element found");
    EXPECT_EQ(UXFormatXml(nullptr, 0, {}, nullptr), 0);
}

TEST(UXFormatXml, DepthCostsNoStackAndNoSquare) {
    std::string deep;
    for (int i = 0; i < 20000; ++i) deep += "<a>";
    for (int i = 0; i < 20000; ++i) deep += "</a>";
    const std::string out = formatted(deep);
    EXPECT_EQ(out.substr(0, 16), "<a>\n  <a>\n    <a");
    EXPECT_LT(out.size(), 20000U * 420);
}

// Random documents: the tree stays, a second time changes nothing, and compact and back is the same.
TEST(UXFormatXml, KeepsTheTree) {
    std::mt19937 random(20);
    const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
    static const char* const kPieces[] = {" ",
                                          "\n  ",
                                          "text",
                                          "&lt;",
                                          "&#32;",
                                          "<![CDATA[ x ]]>",
                                          "<![CDATA[]]>",
                                          "<!-- c -->",
                                          "<?p i?>",
                                          "<e/>",
                                          "<e  k = 'v'  />",
                                          "<e></e>",
                                          "<e> </e>",
                                          "&e;"};
    for (int round = 0; round < 1500; ++round) {
        std::string xml = below(4) == 0 ? "<?xml version='1.0'?> " : "";
        xml += "<!DOCTYPE r [<!ENTITY e 'in <f/> it'>]>\n<r>";
        int depth = 0;
        for (int i = below(25); i >= 0; --i) {
            const int choice = below(18);
            if (choice < 14) {
                xml += kPieces[choice];
            } else if (choice < 16) {
                xml += choice == 14 ? "<g>" : "<g\n xml:space='preserve'>";
                ++depth;
            } else if (depth > 0) {
                xml += "</g >";
                --depth;
            }
        }
        for (; depth > 0; --depth) xml += "</g>";
        xml += "</r> <!-- end -->\n";
        const std::string once = formatted(xml);
        ASSERT_EQ(tree_of(once), tree_of(xml)) << xml;
        ASSERT_EQ(formatted(once), once) << xml;
        const std::string compact = formatted(xml, kCompact);
        ASSERT_EQ(tree_of(compact), tree_of(xml)) << xml;
        ASSERT_EQ(formatted(compact), once) << xml;
    }
}

}  // namespace
