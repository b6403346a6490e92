// Laying out files anew.
#include "xml/format.h"

#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"

#include "host/memory_source.h"
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

// With so small a window that its end falls into every kind of token.
std::string formatted_in_pieces(const std::string& xml, std::size_t window) {
    std::size_t position = 0;
    std::string out;
    const bool done = ux::xml::format_document(
        uxhost::memory_source(xml, position), {}, [&](std::string_view bytes) { out += bytes; },
        window);
    return done ? out : "no document: " + out;
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
        ASSERT_EQ(formatted_in_pieces(xml, 16 + static_cast<std::size_t>(below(60))), once) << xml;
    }
}

// --- files -----------------------------------------------------------------------------------------

class Pieces : public UXByteSink {
public:
    explicit Pieces(std::size_t most = SIZE_MAX) : most_(most) {}
    bool Write(std::string_view bytes) override {
        text += bytes;
        return text.size() <= most_;
    }
    std::string text;

private:
    std::size_t most_;
};

TEST(UXFormatXmlFile, WritesWhatUXFormatXmlYields) {
    const uxtest::TemporaryFolder folder;
    std::string big = "<r>";
    for (int i = 0; i < 20000; ++i) big += "<a k = 'v'><b>text &amp; more</b><!-- c --></a>";
    big += "</r>";
    const std::string latin =
        "<?xml version='1.0' encoding='ISO-8859-1'?><r><a>\xE9</a><b>x</b></r>";
    for (const std::string& xml : {big, latin, std::string("\xEF\xBB\xBF<r><a/></r>")}) {
        Pieces out;
        const std::string path = folder.write("f.xml", xml);
        ASSERT_EQ(UXFormatXmlFile(path.c_str(), {}, &out), 1) << UXGetLastLoadError();
        EXPECT_EQ(out.text, formatted(xml));
    }
}

TEST(UXFormatXmlFile, WritesNothingOfARefusedFile) {
    const uxtest::TemporaryFolder folder;
    Pieces out;
    EXPECT_EQ(UXFormatXmlFile(folder.write("f.xml", "<r><a/><b></r>").c_str(), {}, &out), 0);
    EXPECT_EQ(UXGetLastLoadFailure().message, "mismatched tag: expected </b>");
    EXPECT_EQ(UXGetLastLoadFailure().column, 13);
    EXPECT_EQ(UXFormatXmlFile("no such file", {}, &out), 0);
    EXPECT_EQ(UXFormatXmlFile(nullptr, {}, &out), 0);
    EXPECT_EQ(UXFormatXmlFile(folder.write("g.xml", "<r/>").c_str(), {}, nullptr), 0);
    EXPECT_EQ(out.text, "");
}

TEST(UXFormatXmlFile, EndsWithTheSink) {
    const uxtest::TemporaryFolder folder;
    Pieces out(0);
    EXPECT_EQ(UXFormatXmlFile(folder.write("f.xml", "<r/>").c_str(), {}, &out), 0);
    EXPECT_EQ(UXGetLastLoadFailure().message, "the output cannot be written");
}

}  // namespace
