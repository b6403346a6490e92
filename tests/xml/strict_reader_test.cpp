// The strict reader against expat: what it accepts, expat accepts and tells the same; and what
// expat accepts of plain UTF-8 without a DOCTYPE, it accepts.
#include "xml/strict_reader.h"

#include <array>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/generated_xml.h"
#include "xml/events.h"

namespace {

using uxtest::read_strictly;
using uxtest::read_with_expat;
using uxtest::Reading;

constexpr std::array<std::size_t, 6> kWindows{16, 17, 24, 33, 100, 65536};

// Both tell the same, with every window. Yields whether they accepted.
bool agree(const std::string& xml) {
    const Reading expected = read_with_expat(xml);
    for (const std::size_t window : kWindows) {
        const Reading found = read_strictly(xml, window);
        EXPECT_EQ(found.accepted, expected.accepted) << "window " << window << ": " << xml;
        EXPECT_EQ(found.events, expected.events) << "window " << window << ": " << xml;
    }
    return expected.accepted;
}
void accepted(const std::string& xml) {
    EXPECT_TRUE(agree(xml)) << xml;
}
void refused(const std::string& xml) {
    EXPECT_FALSE(agree(xml)) << xml;
}

TEST(StrictReader, ReadsElementsAttributesAndText) {
    accepted("<r/>");
    accepted("<r a='1' b=\"2\"\tc = '3'\n/>");
    accepted("<r><a>one</a> two <b x='y'/>three</r>");
    accepted("<long_name_of_an_element another_long_name_of_one='v'>t</long_name_of_an_element>");
    accepted(
        "<r><a1234567890123456/><a1234567890123457/><a123456789012345/><a1234567890123456/></r>");
    accepted("<r  ><a\n></a \t></r >\n");
    accepted("<r \xC3\xA9t\xC3\xA9='1' \xC3\xA9='2'><\xE4\xB8\xAD/><n\xC3\xA9/><n/></r>");
    accepted("<r><n/><n\xC3\xA9/><n x='' x\xC3\xA9=''/></r>");
    accepted("<a:b xmlns:a='u' a:c='d'/>");
}

TEST(StrictReader, ReadsWhatStandsAroundTheRoot) {
    accepted("\xEF\xBB\xBF<r/>");
    accepted("<?xml version='1.0'?><r/>");
    accepted("<?xml version=\"1.0\" encoding='utf-8' standalone = 'yes' ?>\n<r/>");
    accepted("\n<!-- a - b > --><?p?><?q x ? > ?>\r\n<r/><!---->\n<?p ?>\n");
    refused("");
    refused("<r/><s/>");
    refused("<r/>x");
    refused("x<r/>");
    refused(" <?xml version='1.0'?><r/>");
    refused("<?xml version='1.0'><r/>");
    refused("<?XML version='1.0'?><r/>");
    refused("<r><?xMl x?></r>");
    accepted("<r><?xmlx x?><?xm?></r>");
    refused("<?p x><r/>");
    refused("<?p?x?><r/>");
    refused("<!-- a -- b --><r/>");
    refused("<!-- a ---><r/>");
    refused("<!--><r/>");
    accepted("<!--->--><r/>");
}

TEST(StrictReader, ReadsReferences) {
    accepted(
        "<r a='&lt;&gt;&amp;&quot;&apos;&#65;&#x42;&#x10FFFF;'>&lt;&gt;&amp;&quot;&apos;&#65;</r>");
    accepted("<r a='&#13;&#10;&#9; \r\n\r\t\n'>&#13;&#32;&#x0000000000000000000000020;</r>");
    accepted("<r>&amp;lt;</r>");
    refused("<r>&nbsp;</r>");
    refused("<r>&lt</r>");
    refused("<r>&#;</r>");
    refused("<r>&#x;</r>");
    refused("<r>&#X41;</r>");
    refused("<r>&#0;</r>");
    refused("<r>&#xD800;</r>");
    refused("<r>&#xFFFE;</r>");
    refused("<r>&#xFFFF;</r>");
    refused("<r>&#x110000;</r>");
    refused("<r>&#99999999999999999999;</r>");
    refused("<r a='&b;'/>");
    refused("<r>&</r>");
    refused("<r>& </r>");
}

TEST(StrictReader, TellsWhiteSpaceThatIsKept) {
    accepted("<r> <a/>\n<b/> </r>");
    accepted("<r>&#32;<a/>\n&#10;<b/><![CDATA[ ]]></r>");
    accepted("<r> <![CDATA[]]><a/> <!-- c --> <b/>&lt;</r>");
    accepted("<r>\r\n  <a/>\r<b/>\r\r\n</r>");
}

TEST(StrictReader, ReadsSections) {
    accepted("<r><![CDATA[<&>]]]]><![CDATA[>]]]></r>");
    accepted("<r><![CDATA[a\r\nb\rc]]x]>]]></r>");
    refused("<r><![CDATA[x]]</r>");
    refused("<r><![cdata[x]]></r>");
    refused("<r>]]></r>");
    refused("<r>]]]]></r>");
    accepted("<r>]]&gt;]] >]<!-- -->]></r>");
    refused("<r><![CDATA[]]>]]></r>");
    refused("<![CDATA[]]><r/>");
}

TEST(StrictReader, RefusesWhatIsNotWellFormed) {
    refused("<r>");
    refused("<r");
    refused("<r></s>");
    refused("<r></rr>");
    refused("<rr></r>");
    refused("<r><a></r></a>");
    refused("<r a='1' a='2'/>");
    refused("<r a='1' b='2' a='3'/>");
    refused("<r a='1'b='2'/>");
    refused("<r a=1/>");
    refused("<r a/>");
    refused("<r a='<'/>");
    refused("<r a='1/>");
    refused("<1/>");
    refused("< r/>");
    refused("<r><></></r>");
    refused("<r / >");
    refused("</r>");
    refused("<r></r/>");
    refused("<r>\x01</r>");
    refused("<r a='\x1F'/>");
    refused(std::string("<r>\0</r>", 8));
    refused("<!DOCTYPE r ><!DOCTYPE r><r/>");
    accepted("<r>\x7F</r>");
}

TEST(StrictReader, ChecksUtf8) {
    accepted(
        "<r a='\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\x88'>\xC2\x80\xEF\xBF\xBD\xF4\x8F\xBF\xBF</r>");
    accepted("<!-- \xC3\xA9 --><?p \xE2\x82\xAC?><r><![CDATA[\xC3\xA9\xC3\xA9 \xC3\xA9]]></r>");
    for (const char* bad :
         {"\xC1\xBF", "\xC0\x80", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xEF\xBF\xBE", "\xEF\xBF\xBF",
          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\x80", "\xC3", "\xE2\x82",
          "\xF0\x9F\x93", "\xC3\xC3\xA9", "\xFF", "\xC3\xA9\xC3\xA9\xC3\xA9\xC1\xA9"}) {
        const std::string bytes = bad;
        refused("<r>" + bytes + "</r>");
        refused("<r a='" + bytes + "'/>");
        refused("<r><![CDATA[" + bytes + "]]></r>");
        refused("<!--" + bytes + "--><r/>");
        refused("<?p " + bytes + "?><r/>");
        refused("<r" + bytes + "/>");
        refused("<r>\xC3\xA9" + bytes + " tail behind</r>");
    }
    for (unsigned code = 0x80; code < 0x110000; code += code < 0x3000 ? 1 : 0x3F) {
        if (code >= 0xD800 && code < 0xE000) continue;
        std::array<char, 4> bytes{};
        const std::string character(bytes.data(), ux::encode_utf8(code, bytes.data()));
        const std::string xml = "<n" + character + " " + character + "='1'/>";
        ASSERT_EQ(read_strictly(xml, 64).accepted, read_with_expat(xml).accepted) << code;
    }
}

TEST(StrictReader, IgnoresPaddingBehindTheDocument) {
    using namespace std::string_literals;
    EXPECT_TRUE(read_strictly("<r/>\n\0\0 \0"s, 16).accepted);
    EXPECT_TRUE(read_strictly("<r/>" + std::string(100000, '\0'), 64).accepted);
    EXPECT_FALSE(read_strictly("<r/>\0x"s, 16).accepted);
    EXPECT_FALSE(read_strictly("<r/>" + std::string(100000, '\0') + "<s/>", 64).accepted);
}

TEST(StrictReader, GivesUpOnWhatOthersMustRead) {
    for (const char* xml :
         {"<!DOCTYPE r><r/>", "<?xml version='1.1'?><r/>",
          "<?xml version='1.0' encoding='ISO-8859-1'?><r/>", "\xFF\xFE<\0r\0/\0>\0"}) {
        EXPECT_FALSE(read_strictly(xml, 64).accepted) << xml;
    }
}

TEST(StrictReader, ReadsInputThatIsDecoded) {
    using ux::xml::FileEncoding;
    const auto agree_in = [](FileEncoding encoding, const std::string& xml) {
        const Reading expected = read_with_expat(xml);
        EXPECT_TRUE(expected.accepted) << xml;
        for (const std::size_t window : kWindows) {
            EXPECT_EQ(read_strictly(xml, window, encoding).events, expected.events) << xml;
        }
    };
    const auto declared = [](const char* name) {
        return "<?xml version='1.0' encoding=\"" + std::string(name) + "\"?>\n";
    };
    const std::string content = "<r \xE9='\xE8&amp;\xFC'>\r\n\xA4\xDF<![CDATA[\xB5]]><a/></r>";
    agree_in(FileEncoding::kLatin1, declared("iso-8859-1") + content + "<!--\x80\x9F-->");
    agree_in(FileEncoding::kAscii, declared("US-ASCII") + "<r a='\x7F'>text</r>");
    for (const bool little : {true, false}) {
        const FileEncoding encoding = little ? FileEncoding::kUtf16Little : FileEncoding::kUtf16Big;
        for (const char* name : {"", "utf-16"}) {
            const std::string start = *name == '\0' ? "" : declared(name);
            std::string wide;
            ux::xml::append_encoded(
                wide, "\uFEFF" + start + "<r \u00E9='\u20AC'>\U0001F4C8 \u4E2D</r>\n", encoding);
            agree_in(encoding, wide);
            agree_in(encoding, wide.substr(2));
        }
    }
    EXPECT_TRUE(
        read_strictly(declared("cp1252") + "<r>\x80\x9C</r>", 64, FileEncoding::kWindows1252)
            .accepted);
    EXPECT_FALSE(
        read_strictly(declared("cp1252") + "<r>\x81</r>", 64, FileEncoding::kWindows1252).accepted);
    EXPECT_FALSE(read_strictly(declared("latin1") + "<r/>", 64, FileEncoding::kAscii).accepted);
    EXPECT_FALSE(read_strictly("<r>\xE9</r>", 64, FileEncoding::kAscii).accepted);
    const std::string odd("<\0r\0/\0>\0 ", 9);
    EXPECT_TRUE(read_strictly(odd.substr(0, 8), 64, FileEncoding::kUtf16Little).accepted);
    EXPECT_FALSE(read_strictly(odd, 64, FileEncoding::kUtf16Little).accepted);
}

// What only the other parser decides about, so that giving up is right.
bool may_give_up(const std::string& xml) {
    return xml.find("<!DOCTYPE") != std::string::npos || xml.find("<?xml") != std::string::npos;
}

// The reader takes such runs in one step, and a window may end anywhere in them.
TEST(StrictReader, ReadsRunsOfWhatEndsPlainText) {
    for (const std::string piece : {"]", "\r\n", "\r", "\r\r\n", "\n", "\t \r\n", "&lt;", "&#9;\n",
                                    "&amp;\r", "\"", "\"\xC3\xA9"}) {
        std::string run;
        for (int i = 0; i < 40; ++i, run += piece) {
            accepted("<r>" + run + "a" + run + "<b/>" + run + "</r>");
            accepted("<r><![CDATA[" + run + "a" + run + "]]></r>");
            accepted("<r a='" + run + "b" + run + "c' d=''/>");
        }
    }
    std::string brackets = "]]";
    for (int i = 0; i < 40; ++i, brackets += "]") {
        refused("<r>" + brackets + "></r>");
        refused("<r>" + brackets);
        refused("<r><![CDATA[" + brackets);
        refused("<r><![CDATA[" + brackets + ">]]></r>");
        accepted("<r><![CDATA[" + brackets + "></r>");
    }
}

// NUL bytes at the end are no error for us.
std::string without_padding(const std::string& xml) {
    if (xml.find('\0') == std::string::npos) return xml;
    return xml.substr(0, xml.find_last_not_of(std::string(" \t\r\n\0", 5)) + 1);
}

TEST(StrictReader, AgreesWithExpatOnGeneratedDocuments) {
    uxtest::GeneratedXml generator(1);
    std::mt19937 random(2);
    int accepted = 0;
    constexpr int kDocuments = 60000;
    for (int i = 0; i < kDocuments; ++i) {
        const std::string xml = generator.document();
        const Reading expected = read_with_expat(without_padding(xml));
        const std::size_t window = random() % 4 == 0 ? 65536 : 16 + random() % 80;
        const Reading found = read_strictly(xml, window);
        if (found.accepted || !may_give_up(xml)) {
            ASSERT_EQ(found.accepted, expected.accepted) << "window " << window << ":\n" << xml;
            ASSERT_EQ(found.events, expected.events) << "window " << window << ":\n" << xml;
        }
        if (found.accepted) ++accepted;
    }
    EXPECT_GT(accepted, kDocuments / 3);
    EXPECT_LT(accepted, kDocuments);
}

// Those of attributes only once one was asked for.
TEST(StrictReader, ExpectsNamesThatStandAhead) {
    const std::string rest = "<!-- c d -->e f= <g h=''>i</g></r><?j k=''?>";

    EXPECT_EQ(read_strictly("<r><a b=''/>" + rest, 4096).expected, " a g");
    EXPECT_EQ(read_strictly("<r a='1' name_of_17_bytes_=''><b/>" + rest, 4096).expected,
              " a name_of_17_bytes_ b f g h k");
}

// Nearly all of them are new, and what looks like one stands in values, comments and text.
TEST(StrictReader, ReadsManyNamesAheadOfThem) {
    std::mt19937 random(3);
    const auto name = [&random] {
        static constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLM_:";
        std::string text;
        for (auto left = 1 + random() % 24; left > 0; --left) {
            text += kLetters[random() % kLetters.size()];
            if (random() % 40 == 0) text += "\xC3\xA9";
        }
        return text;
    };
    std::string xml = "<r>";
    for (int i = 0; i < 300; ++i) {
        const std::string tag = name();
        xml += "<" + tag + " " + name() + "='" + name() + "= \n\t" + name() + "=' ";
        xml += name() + " =\"&lt;" + name();
        xml += random() % 2 == 0 ? "\"/>" : "\"><!-- <" + name() + " x=--> y= </" + tag + " >";
    }
    xml += "</r>";
    accepted(xml);
    for (std::size_t window = 18; window < 300; window += 2) {
        EXPECT_EQ(read_strictly(xml, window).events, read_with_expat(xml).events) << window;
    }
}

TEST(StrictReader, EveryEndOfTheWindowGivesTheSame) {
    const std::string xml =
        "<?xml version='1.0' encoding='UTF-8'?><!-- c --><r x='1&amp;2' "
        "name_of_17_bytes_='&#x20AC;'>"
        "t&lt;<![CDATA[u]]>]]&gt;\r\n\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\x88<a><b "
        "y=\"\xE2\x82\xAC\"/></a>"
        "<?p i?></r>\n";
    const Reading expected = read_with_expat(xml);
    ASSERT_TRUE(expected.accepted);
    for (std::size_t window = 16; window < xml.size() + 2; ++window) {
        EXPECT_EQ(read_strictly(xml, window).events, expected.events) << window;
    }
    for (std::size_t size = 0; size + 1 < xml.size(); ++size) {
        for (const std::size_t window : {std::size_t{16}, std::size_t{21}, std::size_t{4096}}) {
            EXPECT_FALSE(read_strictly(xml.substr(0, size), window).accepted) << size;
        }
    }
}

}  // namespace
