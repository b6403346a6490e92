// Loading: what is read, what is refused, and where the fault is.
#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"
#include "uxtree/host/services.h"

#include "support/test_tree.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using uxtest::FakeHostServices;
using uxtest::TemporaryFolder;
using uxtest::to_text;

// The tree as text, or the reason with its place.
std::string parsed(const std::string& xml) {
    UXXmlWrapperBase tree;
    if (tree.LoadFromMemory(xml.data(), xml.size())) {
        EXPECT_STREQ(UXGetLastLoadError(), "");
        return to_text(tree);
    }
    EXPECT_EQ(tree.IsNodeValid(), 0);
    return "!" + std::string(UXGetLastLoadError());
}
// For tests of the encoding: the same through a file.
std::string loaded(const std::string& bytes) {
    const TemporaryFolder folder;
    UXXmlWrapperBase tree;
    return tree.load(folder.write("f.xml", bytes).c_str(), 0, false) ? to_text(tree) : "(refused)";
}
std::string utf16(const std::u16string& text, bool bigEndian) {
    std::string bytes;
    for (const char16_t unit : u"\uFEFF" + text) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

TEST(load, BindsTheHandleToTheRoot) {
    const TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "<?xml version='1.0'?><r x='1'><a>t</a></r>");
    UXXmlWrapperBase tree;

    EXPECT_EQ(tree.load(path.c_str(), 0, false), 1);

    EXPECT_EQ(to_text(tree), R"(<r x="1"><a>t</a></r>)");
    EXPECT_EQ(tree.IsRootNode(0), 1);
    EXPECT_STREQ(UXGetLastLoadError(), "");
    EXPECT_STREQ(UXGetLastLoadFailure().message, "");
}

TEST(load, LeavesTheHandleAloneWhenItFails) {
    const TemporaryFolder folder;
    const std::string path = folder.write("broken.xml", "<r>\n  <a></b>\n</r>");
    uxtest::TestTree before("<old/>");

    EXPECT_EQ(before.load(path.c_str(), 0, false), 0);

    EXPECT_EQ(to_text(before), "<old></old>");
    EXPECT_EQ(std::string(UXGetLastLoadError()), path + ":2:8: mismatched tag: expected </a>");
    EXPECT_EQ(UXGetLastLoadFailure().line, 2);
    EXPECT_EQ(UXGetLastLoadFailure().column, 8);
}

TEST(load, RefusesWhatIsNoReadableFile) {
    const TemporaryFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const auto reason = [](const char* path) {
        UXXmlWrapperBase tree;
        EXPECT_EQ(tree.load(path, 0, false), 0);
        return std::string(UXGetLastLoadError());
    };

    EXPECT_THAT(reason(folder.path("missing.xml").c_str()), HasSubstr("No such file"));
    EXPECT_THAT(reason(folder.path("").c_str()), HasSubstr("Is a directory"));
    EXPECT_THAT(reason(pipe.c_str()), HasSubstr("not a regular file"));  // and does not wait
    EXPECT_THAT(reason("/dev/zero"), HasSubstr("not a regular file"));
    EXPECT_THAT(reason(nullptr), HasSubstr("no file name"));
    EXPECT_THAT(reason(""), HasSubstr("no file name"));
}

TEST(load, KeepsALeafsTextExactly) {
    EXPECT_EQ(parsed("<r><a>  </a><b>\n t \t</b><c> </c></r>"),
              "<r><a>  </a><b>\n t \t</b><c> </c></r>");
    EXPECT_EQ(parsed("<r>  </r>"), "<r>  </r>");
    EXPECT_EQ(parsed("<r> a<!-- c --> b<?pi x?> c</r>"), "<r> a b c</r>");
}

TEST(load, DropsWhiteSpaceBetweenElements) {
    EXPECT_EQ(parsed("<r>\n  <a/>\n  <b/>\n</r>"), "<r><a></a><b></b></r>");
    EXPECT_EQ(parsed("<r> one <a/> <b/> two</r>"), "<r> one  two<a></a><b></b></r>");
    EXPECT_EQ(parsed("<r> <!-- c --> <a/></r>"), "<r><a></a></r>");
}

TEST(load, KeepsWhiteSpaceWrittenAsReferenceOrCdata) {
    EXPECT_EQ(parsed("<r>&#32;<a/></r>"), "<r>&#32;<a></a></r>");
    EXPECT_EQ(parsed("<r><a/>&#10;</r>"), "<r>&#10;<a></a></r>");
    EXPECT_EQ(parsed("<r><![CDATA[ ]]><a/>\n</r>"), "<r>&#32;<a></a></r>");
    EXPECT_EQ(parsed("<r>\n<a/></r>"), "<r><a></a></r>");
    EXPECT_EQ(parsed(utf16(u"<r>&#x9;<a/>\n</r>", true)), "<r>&#9;<a></a></r>");
    EXPECT_EQ(parsed(utf16(u"<r>&#x9;<a/>\r\n</r>", false)), "<r>&#9;<a></a></r>");
}

TEST(load, ReadsReferencesAndCdata) {
    EXPECT_EQ(parsed("<r a='&lt;&gt;&amp;&apos;&quot;&#65;&#x20AC;'>&lt;&#x1F4C8;"
                     "<![CDATA[<&]]>x]]&gt;</r>"),
              "<r a=\"&lt;&gt;&amp;'&quot;A\u20AC\">&lt;\U0001F4C8&lt;&amp;x]]&gt;</r>");
}

TEST(load, NormalisesLineEnds) {
    EXPECT_EQ(parsed("<r a='1\r\n2'>x\r\ny\rz&#13;</r>"), "<r a=\"1 2\">x\ny\nz&#13;</r>");
}

TEST(load, TakesPrefixesAsPlainNames) {
    EXPECT_EQ(parsed("<n:r xmlns='u' xmlns:n='v' dt:dt='1'><undeclared:a/></n:r>"),
              R"(<n:r xmlns="u" xmlns:n="v" dt:dt="1"><undeclared:a></undeclared:a></n:r>)");
}

TEST(load, TakesTheReservedAttributeAsID) {
    EXPECT_EQ(parsed("<r _ux_id='7' x='1'><a _ux_id='x'/></r>"),
              R"(<r x="1" _ux_id="7"><a _ux_id="x"></a></r>)");
    UXXmlWrapperBase tree;
    tree.LoadFromMemory("<r _ux_id='7'/>", 15);
    int id = 0;
    EXPECT_EQ(tree.GetID(id), 1);
    EXPECT_EQ(id, 7);
    EXPECT_EQ(tree.HasProperty("_ux_id", 0), 0);
}

struct Refused {
    const char* what;
    const char* xml;
    const char* reason;
};
class LoadRefuses : public testing::TestWithParam<Refused> {};

TEST_P(LoadRefuses, WithReasonAndPlace) {
    const std::string result = parsed(GetParam().xml);

    EXPECT_THAT(result, StartsWith("!(memory):")) << GetParam().xml;
    EXPECT_THAT(result, HasSubstr(GetParam().reason)) << GetParam().xml;
}

INSTANTIATE_TEST_SUITE_P(
    Documents, LoadRefuses,
    testing::Values(
        Refused{"Empty", "", "no element found"}, Refused{"Blank", " \n", "no element found"},
        Refused{"TextOnly", "text", "syntax error"},
        Refused{"Mismatch", "<r><a></r></a>", "mismatched tag: expected </a>"},
        Refused{"Unclosed", "<r><a>", "the input ends before </a>"},
        Refused{"UnclosedTag", "<r", "unclosed token"},
        Refused{"DuplicateAttribute", "<r a='1' a='2'/>", "duplicate attribute"},
        Refused{"SecondRoot", "<r/><s/>", "junk after document element"},
        Refused{"TextBehind", "<r/>text", "junk after document element"},
        Refused{"NoQuotes", "<r a=1/>", "not well-formed"},
        Refused{"LessInValue", "<r a='<'/>", "not well-formed"},
        Refused{"BareAmpersand", "<r>a & b</r>", "not well-formed"},
        Refused{"UnknownEntity", "<r>&nbsp;</r>", "undefined entity"},
        Refused{"UnknownEntityInValue", "<r a='&nbsp;'/>", "undefined entity"},
        Refused{"UndeclaredEntity", "<!DOCTYPE r [<!ENTITY e 'x'>]><r>&f;</r>", "undefined entity"},
        Refused{"EntityOfItself", "<!DOCTYPE r [<!ENTITY e '&e;'>]><r>&e;</r>", "recursive"},
        Refused{"EntityWithoutItsEnd", "<!DOCTYPE r [<!ENTITY e '<a>'>]><r>&e;</a></r>",
                "asynchronous entity"},
        Refused{"ExternalEntityInValue",
                "<!DOCTYPE r [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><r a='&e;'/>",
                "external entity in attribute"},
        Refused{"ExternalEntityInEntity",
                "<!DOCTYPE r [<!ENTITY x SYSTEM 'x'><!ENTITY e 'a&x;'>]><r>&e;</r>",
                "reference to the entity"},
        Refused{"UnparsedEntity",
                "<!DOCTYPE r [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'x' NDATA n>]><r>&e;</r>",
                "binary entity"},
        Refused{"SkippedEntityInDeclaredOne",
                "<!DOCTYPE r SYSTEM 'no.dtd' [<!ENTITY e 'a&x;'>]><r a='&e;'/>", "entity \"x\""},
        Refused{"SkippedEntityInTagOfDeclaredOne",
                "<!DOCTYPE r SYSTEM 'no.dtd' [<!ENTITY e \"<b c='&x;'/>\">]><r>&e;</r>",
                "entity \"x\""},
        Refused{"ExternalEntity",
                "<!DOCTYPE r [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><r>&e;</r>", "entity \"e\""},
        Refused{"SkippedEntity", "<!DOCTYPE r SYSTEM 'no.dtd'><r>&e;</r>", "entity \"e\""},
        Refused{"SkippedEntityInValue", "<!DOCTYPE r SYSTEM 'no.dtd'><r a='1&e;'/>",
                "entity \"e\""},
        Refused{"EntityBehindParameterEntity", "<!DOCTYPE r [<!ENTITY % p 'x'> %p; ]><r a='&e;'/>",
                "entity \"e\""},
        Refused{"EntityDeclaredBehindParameterEntity",
                "<!DOCTYPE r [<!ENTITY % p 'x'> %p; <!ENTITY e 'y'>]><r>&e;</r>", "entity \"e\""},
        Refused{"ForbiddenReference", "<r>&#1;</r>", "reference to invalid character"},
        Refused{"NulReference", "<r>&#0;</r>", "reference to invalid character"},
        Refused{"ControlCharacter", "<r>\x01</r>", "not well-formed"},
        Refused{"InvalidUtf8", "<r>\xFF</r>", "not well-formed"},
        Refused{"Surrogate", "<r>\xED\xA0\x80</r>", "not well-formed"},
        Refused{"UnknownEncoding", "<?xml version='1.0' encoding='klingon'?><r/>",
                "unknown encoding"},
        Refused{"CommentDashes", "<r><!-- a -- b --></r>", "not well-formed"},
        Refused{"CdataEnd", "<r>]]></r>", "not well-formed"},
        Refused{"BadName", "<1/>", "not well-formed"},
        Refused{"DeclarationLate", "<r/><?xml version='1.0'?>", "junk after document element"}),
    [](const auto& row) { return row.param.what; });

TEST(load, SkipsTheDoctypeAndAddsNoDefaults) {
    EXPECT_EQ(parsed("<!DOCTYPE r [<!ATTLIST r a CDATA 'default' b CDATA #FIXED 'fixed'>"
                     "<!ENTITY unused 'x'>]><r c='1&amp;2'>&lt;t&#33;</r>"),
              R"(<r c="1&amp;2">&lt;t!</r>)");
    EXPECT_EQ(parsed("<!DOCTYPE r SYSTEM 'no.dtd'><r>t</r>"), "<r>t</r>");
    EXPECT_EQ(parsed(utf16(u"<!DOCTYPE r SYSTEM 'no.dtd'><r a='&lt;\u20AC'/>", true)),
              "<r a=\"&lt;\u20AC\"></r>");
}

TEST(load, ExpandsEntitiesThatTheDocumentDeclares) {
    const std::string dtd =
        "<!DOCTYPE r [<!ENTITY e 'x'><!ENTITY two 'a&e;b&#38;lt;'><!ENTITY tag '<b "
        "c=\"&e;\">t</b>'>"
        "<!ENTITY e 'the first one counts'><!ENTITY blank ' '><!ENTITY blanks ' \n '>"
        "<!ENTITY none ''>]>";

    EXPECT_EQ(parsed(dtd + "<r a='1&e;2&two;'>&e;&two;</r>"), "<r a=\"1x2axb&lt;\">xaxb&lt;</r>");
    EXPECT_EQ(parsed(dtd + "<r>&tag;&tag;</r>"), "<r><b c=\"x\">t</b><b c=\"x\">t</b></r>");
    EXPECT_EQ(parsed(dtd + "<r a='&none;'>&none;</r>"), "<r a=\"\"></r>");
    EXPECT_EQ(parsed(dtd + "<r><a/>&blank;<a/>&blanks;</r>"),
              "<r>&#32;&#32;&#10;&#32;<a></a><a></a></r>");
    EXPECT_EQ(
        parsed(utf16(u"<!DOCTYPE r [<!ENTITY \u00E9 'x'>]><r a='&\u00E9;'>&\u00E9;</r>", false)),
        "<r a=\"x\">x</r>");
    EXPECT_EQ(
        parsed(utf16(u"<!DOCTYPE r SYSTEM 'd' [<!ENTITY \u4E2D 'x'>]><r a='&\u4E2D;'/>", true)),
        "<r a=\"x\"></r>");
    EXPECT_EQ(parsed("<?xml version='1.0' encoding='ISO-8859-1'?><!DOCTYPE r SYSTEM 'd' [<!ENTITY "
                     "\xE9 'x'>]><r a='&\xE9;'/>"),
              "<r a=\"x\"></r>");
}

TEST(load, TypesOfAttributesCountAsTheParserReadsThem) {
    const std::string dtd =
        "<!DOCTYPE r [<!ATTLIST r id ID #IMPLIED kind (a|b) 'a' text CDATA #IMPLIED>"
        "<!ATTLIST other text NMTOKENS #IMPLIED>]>\n<!-- c -->";

    EXPECT_EQ(parsed(dtd + "<r id=' x  y ' kind='&#32;b' text='  t '><other text=' 1  2 '/></r>"),
              "<r id=\"x y\" kind=\"b\" text=\"  t \"><other text=\"1 2\"></other></r>");
    EXPECT_EQ(parsed(dtd + "<r id='x\n\ny' kind='b' text=' &lt;'/>"),
              "<r id=\"x y\" kind=\"b\" text=\" &lt;\"></r>");
}

TEST(load, CommentsOfDocumentsWithADoctypeAreNoReferences) {
    const std::u16string comment =
        u"<!--" + std::u16string(1020, u'x') + u"&" + std::u16string(3000, u'&') + u"-->";

    EXPECT_EQ(parsed(utf16(u"<!DOCTYPE r><r>" + comment + u"t</r>", false)), "<r>t</r>");
    EXPECT_EQ(parsed("<?xml version='1.0' encoding='ISO-8859-1'?><!DOCTYPE r><r>" +
                     std::string(comment.begin(), comment.end()) + "t</r>"),
              "<r>t</r>");
}

TEST(load, FindsReferencesInUtf16WithoutAByteOrderMark) {
    const std::u16string xml = u"<!DOCTYPE r [<!ENTITY e 'x'>]><r a='&amp;&e;'>&e;</r>";
    for (const bool bigEndian : {false, true}) {
        EXPECT_EQ(parsed(utf16(xml, bigEndian).substr(2)), "<r a=\"&amp;x\">x</r>");
    }
}

TEST(load, EntitiesThatExpandToMuchMoreThanTheDocumentAreRefused) {
    const auto repeated = [](std::size_t length, int times) {
        std::string xml = "<!DOCTYPE r [<!ENTITY e '" + std::string(length, 'x') + "'>]><r>";
        for (int i = 0; i < times; ++i) xml += "&e;";
        return xml + "</r>";
    };
    EXPECT_EQ(parsed(repeated(100000, 80)).size(), 8000000U + 7);
    EXPECT_THAT(parsed(repeated(100000, 95)), HasSubstr("expand to much more"));
    EXPECT_THAT(parsed(repeated(100000, 5000)), StartsWith("!"));
    std::string tags = "<!DOCTYPE r [<!ENTITY e '";
    for (int i = 0; i < 10000; ++i) tags += "<a/>";
    tags += "'>]><r>";
    for (int i = 0; i < 10000; ++i) tags += "&e;";
    EXPECT_THAT(parsed(tags + "</r>"), StartsWith("!"));
}

TEST(load, EntityBombsStaySmall) {
    std::string bomb = "<!DOCTYPE l [<!ENTITY a0 'lol'>";
    for (int i = 1; i < 12; ++i) {
        bomb += "<!ENTITY a" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k) bomb += "&a" + std::to_string(i - 1) + ";";
        bomb += "'>";
    }

    EXPECT_THAT(parsed(bomb + "]><l>&a11;</l>"), StartsWith("!"));
    EXPECT_THAT(parsed(bomb + "]><l x='&a11;'/>"), StartsWith("!"));
    EXPECT_THAT(parsed("<!DOCTYPE l [<!ENTITY % a 'x'><!ENTITY % b '%a;%a;'>%b;]><l/>"),
                StartsWith("!"));
}

TEST(load, ReadsTheEncodingsThatFilesHave) {
    EXPECT_EQ(loaded("\xEF\xBB\xBF<r>\xC3\xA9</r>"), "<r>\u00E9</r>");
    EXPECT_EQ(loaded(utf16(u"<r>\u00E9\u20AC</r>", true)), "<r>\u00E9\u20AC</r>");
    EXPECT_EQ(loaded(utf16(u"<?xml version='1.0' encoding='UTF-16'?><r>\U0001F4C8</r>", false)),
              "<r>\U0001F4C8</r>");
    EXPECT_EQ(loaded("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE9</r>"), "<r>\u00E9</r>");
    EXPECT_EQ(loaded("<?xml version='1.0' encoding='latin1'?><r>\xE9</r>"), "<r>\u00E9</r>");
    EXPECT_EQ(loaded("<?xml version='1.0' encoding='Windows-1252'?><r a='\x80'>\x93x\x94</r>"),
              "<r a=\"\u20AC\">\u201Cx\u201D</r>");
    EXPECT_EQ(loaded("<?xml version='1.0' encoding='windows-1252'?><r>\x81</r>"), "(refused)");
    EXPECT_EQ(loaded("<?xml version='1.0' encoding='US-ASCII'?><r>t</r>"), "<r>t</r>");
    EXPECT_EQ(loaded("<?xml version='1.0' encoding='ascii'?><r>\xE9</r>"), "(refused)");
}

TEST(load, AByteOrderMarkOutweighsTheDeclaration) {
    for (const char* encoding : {"ISO-8859-1", "windows-1252", "UTF-16", "klingon", "utf8"}) {
        const std::string declaration =
            "<?xml version='1.0' encoding='" + std::string(encoding) + "'?>";
        EXPECT_EQ(loaded("\xEF\xBB\xBF" + declaration + "<r>\xC3\xA9</r>"), "<r>\u00E9</r>");
        const std::u16string wide(declaration.begin(), declaration.end());
        EXPECT_EQ(loaded(utf16(wide + u"<r>\u00E9</r>", true)), "<r>\u00E9</r>") << encoding;
        EXPECT_EQ(loaded(utf16(wide + u"<r>\u00E9</r>", false)), "<r>\u00E9</r>") << encoding;
    }
    EXPECT_EQ(loaded("\xEF\xBB\xBF<?xml version='1.0' encoding='latin1'?><r>\xE9</r>"),
              "(refused)");
}

TEST(load, ShortNameOfUtf8) {
    for (const char* name : {"utf8", "UTF8", "Utf8"}) {
        const std::string declaration =
            "<?xml version='1.0' encoding='" + std::string(name) + "'?>";
        EXPECT_EQ(loaded(declaration + "<r>\xC3\xA9</r>"), "<r>\u00E9</r>");
        EXPECT_EQ(loaded(declaration + "<!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>"), "<r>x</r>");
        EXPECT_EQ(loaded(declaration + "<r>\xE9</r>"), "(refused)");
    }
}

TEST(load, LimitsWhatItReads) {
    FakeHostServices services;
    const std::string xml = "<r><a/><b>" + std::string(100000, 'x') + "</b></r>";

    services->maxLoadElements = 3;
    EXPECT_THAT(parsed(xml), StartsWith("<r>"));
    services->maxLoadElements = 2;
    EXPECT_THAT(parsed(xml), StartsWith("!(memory):1:8: more than 2 elements"));
    services->maxLoadElements = 0;
    services->maxLoadBytes = xml.size();
    EXPECT_THAT(parsed(xml), StartsWith("<r>"));
    services->maxLoadBytes = xml.size() - 1;
    EXPECT_EQ(parsed(xml), "!(memory): larger than " + std::to_string(xml.size() - 1) + " bytes");
    services->maxLoadBytes = 0;
    services->maxLoadMemory = 50000;
    EXPECT_EQ(parsed(xml), "!(memory): takes more than 50000 bytes of memory");
    services->maxLoadMemory = 1 << 20;
    EXPECT_THAT(parsed(xml), StartsWith("<r>"));
}

TEST(load, TellsItsProgressAndCanBeCancelled) {
    FakeHostServices services;
    std::vector<std::uint64_t> steps;
    std::uint64_t stopAt = 10000000;
    const std::string xml = "<r a='" + std::string(3000000, 'x') + "'/>";
    services->loadProgress = [&](std::uint64_t done, std::uint64_t total) {
        EXPECT_EQ(total, xml.size());
        steps.push_back(done);
        return done < stopAt;
    };

    EXPECT_THAT(parsed(xml), StartsWith("<r"));
    EXPECT_EQ(steps.front(), 0U);
    EXPECT_EQ(steps.back(), xml.size());
    for (std::size_t i = 1; i < steps.size(); ++i) EXPECT_LE(steps[i], steps[i - 1] + (1 << 20));
    stopAt = 1000000;
    EXPECT_EQ(parsed(xml), "!(memory): cancelled");
}

TEST(load, ReadsUndeclaredInputInTheDefaultCodePage) {
    EXPECT_EQ(loaded("<r>\xE9\x80</r>"), "(refused)");
    UXXmlWrapperBase::SetDefaultCodePage(1252);
    EXPECT_EQ(loaded("<a/><r>\xE9\x80</r>"), "(refused)");
    EXPECT_EQ(loaded("<r>\xE9\x80</r>"), "<r>\u00E9\u20AC</r>");
    EXPECT_EQ(loaded("<r>\u00E9</r>"), "<r>\u00E9</r>");
    EXPECT_EQ(loaded("<?xml version='1.0' encoding='UTF-8'?><r>\xE9</r>"), "(refused)");
    const std::string doctype = "<!DOCTYPE r [<!ENTITY e 'x'>]>";
    EXPECT_EQ(loaded(doctype + "<r a='&e;'>\xE9&e;</r>"), "<r a=\"x\">\u00E9x</r>");
    EXPECT_EQ(loaded(doctype + "<r>\xE9&f;</r>"), "(refused)");
    UXXmlWrapperBase::SetDefaultCodePage(28591);
    EXPECT_EQ(loaded("<r>" + std::string(100000, 'x') + "\xE9</r>"),
              "<r>" + std::string(100000, 'x') + "\u00E9</r>");
    UXXmlWrapperBase::SetDefaultCodePage(65001);
}

TEST(load, IgnoresNulBytesBehindTheDocument) {
    using namespace std::string_literals;

    EXPECT_EQ(parsed("<r/>\0\0\0"s), "<r></r>");
    EXPECT_EQ(parsed("<r/>\n" + std::string(200000, '\0')), "<r></r>");
    EXPECT_THAT(parsed("<r/>\0x"s), StartsWith("!"));
    EXPECT_THAT(parsed("<r/>" + std::string(100000, '\0') + "x"), StartsWith("!"));
    EXPECT_THAT(parsed("<r>\0</r>"s), StartsWith("!"));
    EXPECT_THAT(parsed("\0"s), StartsWith("!"));
}

TEST(load, LimitsTheNesting) {
    const auto nested = [](int depth) {
        std::string xml;
        for (int i = 0; i < depth; ++i) xml += "<a>";
        for (int i = 0; i < depth; ++i) xml += "</a>";
        return xml;
    };

    EXPECT_THAT(parsed(nested(10000)), StartsWith("<a>"));
    EXPECT_THAT(parsed(nested(10001)), HasSubstr("nested deeper than 10000 levels"));
    FakeHostServices services;
    services->maxNesting = 3;
    EXPECT_THAT(parsed(nested(3)), StartsWith("<a>"));
    EXPECT_THAT(parsed(nested(4)), HasSubstr("nested deeper than 3 levels"));
    services->maxNesting = -1;
    EXPECT_THAT(parsed(nested(1)), HasSubstr("nested deeper"));
}

TEST(load, TruncationAtEveryByteIsRefused) {
    const std::string whole =
        "<?xml version='1.0'?><!DOCTYPE r [<!ATTLIST a z CDATA 'd'>]>"
        "<r x='1&amp;'><a>t&lt;<![CDATA[u]]></a><!-- c --><b y=\"\u20AC\"/></r>";

    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_THAT(parsed(whole.substr(0, i)), StartsWith("!")) << i;
    }
    EXPECT_THAT(parsed(whole), StartsWith("<r"));
}

TEST(load, RandomBytesNeverCrash) {
    std::mt19937 random(5);
    const std::string alphabet = "<>/=\"'&;![]-? \nabr\xC3\xA9\0\xFF";

    for (int i = 0; i < 20000; ++i) {
        std::string xml = random() % 2 ? "<r>" : "";
        for (auto k = random() % 60; k > 0; --k) xml += alphabet[random() % alphabet.size()];
        UXXmlWrapperBase tree;
        const int result = tree.LoadFromMemory(xml.data(), xml.size());
        ASSERT_EQ(result, tree.IsNodeValid());
        ASSERT_EQ(result == 0, !UXGetLastLoadFailure().message.IsEmpty());
    }
}

// Long runs of plain text pass the parser by. In UTF-16 none does, so both ways must tell the same.
std::string long_text(std::mt19937& random) {
    static constexpr std::array<const char*, 16> kMarks{
        "&amp;", "&#10;", "]",  "]]", ">",         "\n",         "\r\n",         "\t",
        "~",     "\x7F",  "\"", "",   "<![CDATA[", "<!-- a > b", "<?p a > b ?>", "<b c='>'/>"};
    std::string text;
    for (auto pieces = random() % 4; pieces > 0; --pieces) {
        const std::size_t length = random() % 8 == 0 ? 65536 + random() % 600 : random() % 1400;
        const bool lines = random() % 2 == 0;
        for (std::size_t i = 0; i < length; ++i)
            text += lines && i % 70 == 0 ? '\n' : "0123 "[i % 5];
        const std::string mark = kMarks[random() % kMarks.size()];
        text += mark;
        if (mark[0] == '<' && mark[1] == '!') {
            text += std::string(random() % 1500, ' ') + '>' + std::string(random() % 1500, 'x');
            text += mark[2] == '[' ? "]]>" : "-->";
        }
    }
    return text;
}

TEST(load, LongTextsAreReadAsShortOnes) {
    std::mt19937 random(6);
    int accepted = 0;
    constexpr int kRounds = 400;
    for (int round = 0; round < kRounds; ++round) {
        std::string xml = "<?xml version='1.0'?>\n<r>";
        for (auto i = random() % 5; i > 0; --i) {
            xml += long_text(random) + "<a x='" + std::string(random() % 900, '>') + "'>";
            xml += long_text(random) + "</a>";
        }
        xml += "</r>";
        const std::size_t firstLine = 22;  // its columns count the byte order mark
        if (random() % 4 == 0)
            xml[firstLine + random() % (xml.size() - firstLine)] = "<&]\x01>"[random() % 5];
        const std::string told = parsed(xml);
        const std::string inUtf16 = parsed(utf16({xml.begin(), xml.end()}, true));
        ASSERT_TRUE(told == inUtf16) << told.substr(0, 200) << "\n" << inUtf16.substr(0, 200);
        if (told[0] == '<') ++accepted;
    }
    EXPECT_GT(accepted, kRounds / 2);
    EXPECT_LT(accepted, kRounds);
}

// Every character's bytes are those of two ASCII characters.
TEST(load, LongTextsOfUtf16AreNotTakenForAscii) {
    const std::string character = "\u4E2D";
    std::u16string inUtf16 = u"<r>";
    std::string inUtf8 = "<r>";
    for (int i = 0; i < 100000; ++i) {
        inUtf16 += u'\u4E2D';
        inUtf8 += character;
    }
    inUtf16 += u"</r>";
    inUtf8 += "</r>";

    for (const bool bigEndian : {false, true}) {
        EXPECT_TRUE(parsed(utf16(inUtf16, bigEndian)) == inUtf8) << bigEndian;
        EXPECT_TRUE(parsed(utf16(inUtf16, bigEndian).substr(2)) == inUtf8) << "without mark";
    }
}

TEST(load, NamesHaveTheSameCharactersInEveryEncoding) {
    for (const char16_t letter : {u'\u00AA', u'\u00B5', u'\u00BA'}) {
        const std::string latin1(1, static_cast<char>(letter));
        const std::string declared = "<?xml version='1.0' encoding='ISO-8859-1'?>";
        EXPECT_THAT(parsed(utf16(std::u16string(u"<a") + letter + u"/>", true)),
                    HasSubstr("not well-formed"));
        EXPECT_THAT(parsed(utf16(std::u16string(u"<r ") + letter + u"=''/>", false)),
                    HasSubstr("not well-formed"));
        EXPECT_THAT(parsed(declared + "<" + latin1 + "/>"), HasSubstr("not well-formed"));
        EXPECT_EQ(parsed(declared + "<r>" + latin1 + "</r>").size(), 9U);
    }
    EXPECT_EQ(parsed(utf16(u"<\u00E9 \u00E8=''/>", true)), "<\u00E9 \u00E8=\"\"></\u00E9>");
}

TEST(load, LongTextsStandInTheCodePageToo) {
    const std::string run(700, '7');

    EXPECT_EQ(
        loaded("<?xml version='1.0' encoding='windows-1252'?><r>" + run + "\x80" + run + "</r>"),
        "<r>" + run + "\u20AC" + run + "</r>");
    EXPECT_EQ(loaded("<?xml version='1.0' encoding='us-ascii'?><r>" + run + "</r>"),
              "<r>" + run + "</r>");
}

TEST(load, PlacesBehindLongTextsAreRight) {
    const std::string run(600, '7');

    EXPECT_THAT(parsed("<r>" + run + "<a/>" + run + "<1/></r>"),
                StartsWith("!(memory):1:1209: not well-formed"));
    EXPECT_THAT(parsed("<r>\n" + run + "\n 8<a/>" + run + "\n\n9<1/></r>"),
                StartsWith("!(memory):5:3: not well-formed"));
    EXPECT_THAT(parsed("<r>" + run), StartsWith("!(memory):1:604: "));
}

TEST(load, PlacesBehindTheRootAreRight) {
    const std::string document = "<!-- \xC3\xA4 -->\r\n<r><a/>\xC3\xA4</r>";

    EXPECT_EQ(parsed(document + "x"), "!(memory):2:13: junk after document element");
    EXPECT_EQ(parsed(document + "<r/>"), "!(memory):2:13: junk after document element");
    EXPECT_EQ(parsed(document + "</r>"), "!(memory):2:14: not well-formed (invalid token)");
    EXPECT_EQ(parsed(document + "\r\n <!-- \xC3\xA4\n-->\n <?p"), "!(memory):5:2: unclosed token");
    EXPECT_EQ(parsed(document + "<!-- \xFF -->"),
              "!(memory):2:18: not well-formed (invalid token)");
}

TEST(load, ManyAttributesAndNames) {
    std::string xml = "<r";
    for (int i = 0; i < 2000; ++i) {
        xml += " a" + std::to_string(i) + "=\"" + std::to_string(i) + "\"";
    }
    xml += ">";
    for (int i = 0; i < 2000; ++i) {
        xml += "<t" + std::to_string(i) + "></t" + std::to_string(i) + ">";
    }
    xml += "</r>";

    EXPECT_EQ(parsed(xml), xml);
}

// The reader finds names again by their first bytes, which whoever writes a document chooses.
TEST(load, ManyNamesOfOneBeginning) {
    std::string xml = "<r>";
    for (int i = 0; i < 4000; ++i) {
        const std::string name = "sixteen_in_common" + std::to_string(i % 2000);
        xml += "<" + name + " a" + name + "=\"" + std::to_string(i) + "\"></" + name + ">";
    }
    xml += "</r>";

    EXPECT_EQ(parsed(xml), xml);
}

// The store keeps such names side by side, in a table that grows while they come.
TEST(load, NamesThatDifferInTheirLastByteAlone) {
    const std::string last = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_:.-0123456789";
    const std::string high = "\xC3\x84\xC3\x85\xC3\x86\xC3\xA4\xC3\xA5\xC3\xB6\xC3\xBF";
    const auto add = [](std::string& xml, const std::string& name) {
        xml += "<" + name + " " + name + "=\"" + name + "\"></" + name + ">";
    };
    std::string xml = "<r>";
    for (int i = 0; i < 400; ++i) {
        const std::string rest = i % 200 == 0 ? "n" : "n" + std::to_string(i % 200);
        for (const char c : last) add(xml, rest + c);
        for (std::size_t at = 0; at < high.size(); at += 2) add(xml, rest + high.substr(at, 2));
        add(xml, rest);
    }
    xml += "</r>";

    EXPECT_EQ(parsed(xml), xml);
}

TEST(LoadFromMemory, NullIsAnEmptyInput) {
    UXXmlWrapperBase tree;

    EXPECT_EQ(tree.LoadFromMemory(nullptr, 5), 0);
    EXPECT_THAT(std::string(UXGetLastLoadError()), HasSubstr("no element found"));
}

}  // namespace
