// The forgiving scanner: decoding, events, broken input.
#include "outline/scanner.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "outline/decoding.h"
#include "outline/markup.h"
#include "outline/reference_scanner.h"
#include "outline/scan_support.h"
#include "support/test_tree.h"

using namespace std::string_literals;
using namespace ux;
using namespace uxtest;

namespace {

// The events of a text, wherever blocks end, and mapped.
void expect_events(const std::string& text, const std::string& events) {
    for (const std::size_t size : kBlockSizes) {
        EXPECT_EQ(streamed_events(text, size), events) << text << "\nblocks of " << size;
    }
    EXPECT_EQ(mapped_events(text), events) << text << "\nmapped";
}

// The same for texts that mean something else when they are not decoded.
void expect_events(const std::string& text, const std::string& streamed,
                   const std::string& mapped) {
    for (const std::size_t size : kBlockSizes) {
        EXPECT_EQ(streamed_events(text, size), streamed) << text << "\nblocks of " << size;
    }
    EXPECT_EQ(mapped_events(text), mapped) << text << "\nmapped";
}

// The real scanner, in every way it is used, against the reference.
void expect_agreement(const std::string& text) {
    const std::string events = reference_streamed_events(text);
    const std::string outline = handled_outline(text);
    for (const std::size_t size : kBlockSizes) {
        ASSERT_EQ(streamed_events(text, size), events) << text << "\nblocks of " << size;
        ASSERT_EQ(streamed_outline(text, size), outline) << text << "\nblocks of " << size;
    }
    ASSERT_EQ(mapped_events(text), reference_mapped_events(text)) << text << "\nmapped";
}

std::string characters_of(const std::string& text, std::size_t blockSize) {
    SaxFileReader reader = SaxFileReader::of_bytes(text, blockSize);
    std::string out;
    for (std::uint32_t c = reader.next(); c != 0; c = reader.next()) {
        out += (out.empty() ? "" : " ") + std::to_string(c);
    }
    return out;
}
void expect_characters(const std::string& text, const std::string& characters) {
    for (const std::size_t size : kBlockSizes) {
        EXPECT_EQ(characters_of(text, size), characters) << "blocks of " << size;
    }
}

std::string events_of_file(const std::string& path) {
    SaxFileReader reader(path.c_str());
    EventRecorder recorder;
    SaxScanner(reader).scan(recorder);
    return recorder.events();
}

}  // namespace

// --- decoding ----------------------------------------------------------------------------------

TEST(SaxFileReader, DecodesOneTwoAndThreeByteSequences) {
    expect_characters("a\xC3\xB6\xE6\xB8\xA9", "97 246 28201");
}

TEST(SaxFileReader, PeekLeavesTheCharacterInPlace) {
    for (const std::size_t size : kBlockSizes) {
        SaxFileReader reader = SaxFileReader::of_bytes("\xC3\xB6z", size);
        EXPECT_EQ(reader.peek(), 246u);
        EXPECT_EQ(reader.peek(), 246u);
        EXPECT_EQ(reader.next(), 246u);
        EXPECT_EQ(reader.next(), 122u);
        EXPECT_EQ(reader.peek(), 0u);
        EXPECT_EQ(reader.next(), 0u);
        EXPECT_EQ(reader.next(), 0u);
    }
}

TEST(SaxFileReader, OrdinaryFourByteLeadsEndTheInput) {
    expect_characters("a\xF0\x9F\x93\x88z", "97");
    expect_characters("a\xF7\xBF\xBF\xBFz", "97");
}

TEST(SaxFileReader, LeadsFromF8StartFourByteSequences) {
    expect_characters("\xF8\x80\x81\x81\xFC\x81\x82\x83\xFF\xBF\xBF\xBF", "65 1052803 2097151");
}

TEST(SaxFileReader, OverlongFormsAndSurrogatesAreDecodedAsComputed) {
    expect_characters("\xC1\x81\xE0\x81\x81\xED\xA0\x80\xEF\xBF\xBF", "65 65 55296 65535");
}

TEST(SaxFileReader, BadContinuationEndsTheInput) {
    expect_characters("a\xC3z", "97");
    expect_characters("a\xE6\xB8z", "97");
    expect_characters("a\xE6zz", "97");
    expect_characters("a\xF8\x80\x80z", "97");
    expect_characters("a\xC3\xC3\xB6", "97");
}

TEST(SaxFileReader, StrayContinuationEndsTheInput) {
    expect_characters("a\x80z", "97");
}

TEST(SaxFileReader, SequenceCutOffByTheEndIsNotDecoded) {
    expect_characters("a\xC3", "97");
    expect_characters("a\xE6\xB8", "97");
    expect_characters("a\xF8\x80\x80", "97");
}

TEST(SaxFileReader, DecodedNulEndsTheInputInEveryForm) {
    expect_characters("a\0z"s, "97");
    expect_characters("a\xC0\x80z", "97");
    expect_characters("a\xE0\x80\x80z", "97");
    expect_characters("a\xF8\x80\x80\x80z", "97");
}

TEST(SaxFileReader, DecodesLongTextsAsTheRulesSay) {
    const std::string kinds[] = {"plain ascii text ",
                                 "gr\xC3\xBC\xC3\x9F"
                                 "e ",
                                 "\xE6\xB8\xA9\xE5\xBA\xA6",
                                 "\xC2\x80\xDF\xBF",
                                 "\xE1\xBA\xAD\xEF\xBF\xBD",
                                 "\xE0\xB8\x81\xE0\xA4\x85",
                                 "\xED\xA0\x80"};
    const std::string faults[] = {"\x80",         "\xC0\xBC",           "\xC1",
                                  "\xC3",         "\xE0\x80\xAF",       "\xE6\xB8",
                                  "\xF0\x90",     std::string(1, '\0'), "\xFA\x80\x80\x80",
                                  "\xE0\x9F\xBF", "\xF8\x80\x80\xBC"};
    RandomText random(7);
    for (int round = 0; round < 400; ++round) {
        std::string text;
        const std::uint32_t size = 1 + random.below(6000);
        const std::uint32_t variety = 1 + random.below(std::size(kinds));
        while (text.size() < size) text += kinds[random.below(variety)];
        for (std::uint32_t i = random.below(3); i > 0; --i) {
            text.insert(random.below(static_cast<std::uint32_t>(text.size())),
                        faults[random.below(std::size(faults))]);
        }
        const std::string expected = reference_decoded(text);
        for (const std::size_t blockSize : kBlockSizes) {
            SaxFileReader reader = SaxFileReader::of_bytes(text, blockSize);
            std::string decoded;
            while (reader.refill()) {
                decoded.append(reader.position(), reader.limit());
                reader.move_to(reader.limit());
            }
            ASSERT_EQ(decoded, expected) << "round " << round << ", blocks of " << blockSize;
        }
    }
}

// --- names -------------------------------------------------------------------------------------

TEST(SaxScanner, ReadNameAppendsAndStopsBeforeWhatIsNoNameCharacter) {
    for (const std::size_t size : kBlockSizes) {
        for (const char* stop : {">", "=", "/", " ", "\n", "\"", "<", "\xC3\x97", ""}) {
            const std::string text = "n\xC3\xA4m-e.1:_" + std::string(stop);
            SaxFileReader reader = SaxFileReader::of_bytes(text, size);
            std::string name = "before ";

            EXPECT_TRUE(SaxScanner(reader).readName(name));

            EXPECT_EQ(name, "before n\xC3\xA4m-e.1:_");
            EXPECT_EQ(reader.peek(), *stop == '\xC3' ? 0xD7u : static_cast<std::uint32_t>(*stop));
        }
    }
}

TEST(SaxScanner, FailedReadNameConsumesNothing) {
    for (const std::size_t size : kBlockSizes) {
        for (const char* text :
             {" a", ">a", "=a", "/a", "1a", "-a", ".a", "\xC2\xB7", "\xCC\x80"}) {
            SaxFileReader reader = SaxFileReader::of_bytes(text, size);
            std::string name = "kept";
            const std::uint32_t first = reader.peek();

            EXPECT_FALSE(SaxScanner(reader).readName(name));

            EXPECT_EQ(name, "kept");
            EXPECT_EQ(reader.next(), first);
        }
    }
}

TEST(SaxScanner, ReadNameGivesTheShortestForm) {
    SaxFileReader reader = SaxFileReader::of_bytes("\xC1\xA1\xE0\x83\xB6\xF8\x86\xB8\xA9>");
    std::string name;

    EXPECT_TRUE(SaxScanner(reader).readName(name));

    EXPECT_EQ(name, "a\xC3\xB6\xE6\xB8\xA9");
    EXPECT_EQ(reader.peek(), static_cast<std::uint32_t>('>'));
}

TEST(SaxScanner, NamesTakeLettersDigitsCombiningCharactersAndExtenders) {
    expect_events("<\xC3\x9C\xCC\x81\xC2\xB7\xD9\xA0\xE3\x80\x85 \xE9\x87\x8F=''/>",
                  "+\xC3\x9C\xCC\x81\xC2\xB7\xD9\xA0\xE3\x80\x85(\xE9\x87\x8F) "
                  "-\xC3\x9C\xCC\x81\xC2\xB7\xD9\xA0\xE3\x80\x85");
}

// --- elements ----------------------------------------------------------------------------------

TEST(SaxScanner, ReportsStartsAndEndsInOrder) {
    expect_events("<a><b/></a>", "+a +b -b -a");
}

TEST(SaxScanner, ReportsAttributeNamesInOrderAndDropsValues) {
    expect_events("<a x='1' y=\"2\">", "+a(x,y)");
}

TEST(SaxScanner, ValuesMayHoldMarkupAndTheOtherQuote) {
    expect_events("<a x='<b>\"</b>' y=\"'/>\"><c/>", "+a(x,y) +c -c");
}

TEST(SaxScanner, WhiteSpaceMayStandAroundTheEqualsSignAndBeforeTheTagEnds) {
    expect_events("<a\n\tx \r\n= '1'\ty=\n\"2\"  ><b  /></a\n>", "+a(x,y) +b -b -a");
}

TEST(SaxScanner, NoWhiteSpaceIsNeededBetweenAttributes) {
    expect_events("<a x='1'y='2'z=\"3\"/>", "+a(x,y,z) -a");
}

TEST(SaxScanner, RepeatedAttributesAreReportedTwice) {
    expect_events("<a x='1' x='2'/>", "+a(x,x) -a");
}

TEST(SaxScanner, ValueWithoutQuotesEndsTheScan) {
    expect_events("<r><a x=1></r>", "+r");
}

TEST(SaxScanner, AttributeWithoutEqualsSignEndsTheScan) {
    expect_events("<r><a x></r>", "+r");
    expect_events("<r><a x 'y'></r>", "+r");
}

TEST(SaxScanner, UnclosedValueEndsTheScan) {
    expect_events("<r><a x='1></a></r>", "+r");
}

TEST(SaxScanner, SlashMustBeFollowedByTheClosingBracketAtOnce) {
    expect_events("<r><a/ ></r>", "+r");
    expect_events("<r><a /x></r>", "+r");
    expect_events("<r><a/", "+r");
}

TEST(SaxScanner, CharacterThatFitsNowhereInATagEndsTheScan) {
    for (const char* tag : {"<a '>", "<a x='1'\">", "<a 1='2'>", "<a = '1'>", "<a <b>", "<a ?>"}) {
        expect_events(std::string("<r>") + tag + "</a></r>", "+r");
    }
}

TEST(SaxScanner, UnfinishedTagIsNotReported) {
    for (const char* tag : {"<a", "<a ", "<a x", "<a x=", "<a x='", "<a x='1", "<a x='1'"}) {
        expect_events(std::string("<r>") + tag, "+r");
    }
}

TEST(SaxScanner, TagWithoutANameReportsAnEmptyName) {
    expect_events("<><b/>", "+ +b -b");
    expect_events("</>", "");
    expect_events("</ ><a/>", "");
    expect_events("</ x><a/>", "");
}

TEST(SaxScanner, NamelessTagTakesAttributesOnlyAfterWhiteSpace) {
    expect_events("< a='1'/>", "+(a) -");
    expect_events("< a>", "");
}

TEST(SaxScanner, JunkInAnEndTagIsIgnored) {
    expect_events("<a><b></b x='1' / \"></a<c ></a>", "+a +b -b -a");
}

TEST(SaxScanner, MismatchedEndTagClosesNothing) {
    expect_events("<a></b></a>", "+a -a");
    expect_events("<a></ab></A></a>", "+a -a");
    expect_events("</a><a></a></a>", "+a -a");
}

TEST(SaxScanner, ElementsLeftOpenGiveNoEndEvents) {
    expect_events("<a><b><c></c>", "+a +b +c -c");
}

TEST(SaxScanner, LongNamesThatStartAlikeAreDifferent) {
    const std::string name(40, 'n');
    expect_events("<" + name + "1></" + name + "></" + name + "12></" + name + "1>",
                  "+" + name + "1 -" + name + "1");
}

// --- everything else is read over --------------------------------------------------------------

TEST(SaxScanner, DeclaredEncodingIsIgnored) {
    expect_events("<?xml version='1.0' encoding='ISO-8859-1'?><\xC3\xB6/>", "+\xC3\xB6 -\xC3\xB6");
}

TEST(SaxScanner, ByteOrderMarkIsText) {
    expect_events("\xEF\xBB\xBF<a/>", "+a -a");
}

TEST(SaxScanner, InstructionsAreReadOverUpToTheirEnd) {
    expect_events("<?pi <a> ? > ?\?><b/><?x?><c/>", "+b -b +c -c");
    expect_events("<?pi<a>", "");
}

TEST(SaxScanner, InstructionWithoutATargetEndsTheScan) {
    expect_events("<a/><? pi?><b/>", "+a -a");
    expect_events("<a/><?\?><b/>", "+a -a");
}

TEST(SaxScanner, CommentsEndAtTheFirstClosing) {
    expect_events("<!-- <a> -- > - -> --><b/>", "+b -b");
    expect_events("<!---->< b='1'/>", "+(b) -");
    expect_events("<!-- ---><b/>", "+b -b");
}

TEST(SaxScanner, OpenersOwnCharactersDoNotCloseIt) {
    expect_events("<!--><a/>--><b/>", "+b -b");
    expect_events("<!---><a/>--><b/>", "+b -b");
    expect_events("<![CDATA[]><a/>]]><b/>", "+b -b");
    expect_events("<?x><a/>?><b/>", "+b -b");
}

TEST(SaxScanner, WrongCommentOpenerEndsTheScan) {
    expect_events("<a/><!- x --><b/>", "+a -a");
}

TEST(SaxScanner, CdataSectionsAreReadOver) {
    expect_events("<a><![CDATA[<b></a> ]] > ]>]]]></a>", "+a -a");
}

TEST(SaxScanner, WrongCdataOpenerEndsTheScan) {
    expect_events("<a/><![CDAT[x]]><b/>", "+a -a");
    expect_events("<a/><![cdata[x]]><b/>", "+a -a");
    expect_events("<a/><![CDATA", "+a -a");
}

TEST(SaxScanner, DeclarationsEndWhereTheirBracketsBalance) {
    expect_events("<!DOCTYPE r [ <!ELEMENT r ANY> ]><r/>", "+r -r");
    expect_events("<!><r/>", "+r -r");
    expect_events("<!DOCTYPE r [ <!ELEMENT r ANY> ]<r/>", "");
}

TEST(SaxScanner, QuotesAndCommentsInADeclarationAreNotUnderstood) {
    expect_events("<!DOCTYPE r SYSTEM '>' ><r/>", "+r -r");
    expect_events("<!DOCTYPE r [ <!-- > --> ]><r/>", "+r -r");
    expect_events("<!DOCTYPE r [ <!-- < --> ]><r/>", "");
}

TEST(SaxScanner, TextIsReadOver) {
    expect_events("x > ]]> \" ' & <a>y &lt; z</a> t", "+a -a");
}

TEST(SaxScanner, NothingIsReportedOfAnEmptyInput) {
    expect_events("", "");
    expect_events("no markup at all", "");
    expect_events("<", "");
}

// --- characters and bytes ----------------------------------------------------------------------

TEST(SaxScanner, FourByteCharacterEndsTheStreamedInputAlone) {
    const std::string kChart = "\xF0\x9F\x93\x88";
    expect_events("<a>" + kChart + "<b/></a>", "+a", "+a +b -b -a");
    expect_events("<a x='" + kChart + "'><b/></a>", "", "+a(x) +b -b -a");
    expect_events("<a><!--" + kChart + "--><b/></a>", "+a", "+a +b -b -a");
    expect_events("<a" + kChart + "/>", "", "+a" + kChart + " -a" + kChart);
}

TEST(SaxScanner, NulEndsTheStreamedInputAlone) {
    expect_events("<a>\0<b/></a>"s, "+a", "+a +b -b -a");
    expect_events("<a x='\0'><b/></a>"s, "", "+a(x) +b -b -a");
    expect_events("<r><a\0/></r>"s, "+r", "+r");
}

TEST(SaxScanner, CharactersThatAreNoLettersEndStreamedNames) {
    expect_events("<r><a\xC3\x97/></r>", "+r", "+r +a\xC3\x97 -a\xC3\x97 -r");
}

TEST(SaxScanner, OverlongMarkupIsMarkup) {
    expect_events(
        "\xC0\xBC"
        "a\xE0\x80\xBE\xF8\x80\x80\xBC/a\xC0\xBE<b>",
        "+a -a +b", "+b");
}

TEST(SaxScanner, ResultTellsWhetherTheInputEndedBetweenConstructs) {
    const auto result = [](const char* text) {
        SaxFileReader reader = SaxFileReader::of_bytes(text);
        EventRecorder recorder;
        return SaxScanner(reader).scan(recorder);
    };
    EXPECT_TRUE(result(""));
    EXPECT_TRUE(result("<a><b/> text"));
    EXPECT_FALSE(result("<a><b"));
    EXPECT_FALSE(result("<a x=1>"));
}

// --- agreement with the rules ------------------------------------------------------------------

TEST(SaxScanner, AgreesWithTheRulesAtEveryTruncation) {
    const std::string text =
        "\xEF\xBB\xBF<?xml version='1.0'?><!DOCTYPE r [<!ENTITY e '>'><!ATTLIST r a CDATA '1'>]>\n"
        "<r a='1' b=\"2\"><!-- c -- --><\xC3\x9C"
        "ml\xC3\xA4ut \xE6\xB8\xA9='\xC2\xB1'/>"
        "<![CDATA[ ]] ]]><r a='1' b=\"2\"><s/></r>\xE6\xB8\xA9<?pi d?></x></ r></r >\n"
        "<r \xC1\xA1='\xF8\x80\x80\xBC'\xC0\xBE</r>\xF0\x9F\x93\x88<z/>";
    for (std::size_t size = 0; size <= text.size(); ++size) {
        expect_agreement(text.substr(0, size));
    }
}

TEST(SaxScanner, AgreesWithTheRulesOnRandomFragments) {
    RandomText random(1);
    for (int round = 0; round < 6000; ++round) {
        expect_agreement(random.fragments(random.below(60)));
        if (HasFatalFailure()) return;
    }
}

TEST(SaxScanner, AgreesWithTheRulesOnRandomDocuments) {
    RandomText random(2);
    for (int round = 0; round < 1500; ++round) {
        expect_agreement(random.document(round % 4));
        if (HasFatalFailure()) return;
    }
}

TEST(SaxScanner, AgreesWithTheRulesOnRandomBytes) {
    RandomText random(3);
    for (int round = 0; round < 2000; ++round) {
        std::string text = "<a>";
        for (std::uint32_t i = random.below(80); i > 0; --i) {
            text += static_cast<char>(random.below(256));
        }
        expect_agreement(text);
        if (HasFatalFailure()) return;
    }
}

TEST(SaxScanner, AgreesWithTheRulesOnDocumentsOfManyBlocks) {
    RandomText random(4);
    std::string text;
    while (text.size() < 300000) text += random.document(0);
    EXPECT_EQ(streamed_events(text, 65536), reference_streamed_events(text));
    EXPECT_EQ(streamed_outline(text, 65536), handled_outline(text));
    EXPECT_EQ(mapped_outline(text), handled_outline(text));
}

// --- files -------------------------------------------------------------------------------------

TEST(SaxFileReader, ReadsAFileOfManyBlocks) {
    TemporaryFolder folder;
    std::string text;
    std::string events;
    for (int i = 0; i < 40000; ++i) {
        text += "<e>\xC3\xB6</e>";
        events += i == 0 ? "+e -e" : " +e -e";
    }
    EXPECT_EQ(events_of_file(folder.write("f.xml", text)), events);
}

TEST(SaxFileReader, NullMissingAndEmptyFilesAreEmpty) {
    TemporaryFolder folder;
    SaxFileReader none(nullptr);
    EXPECT_EQ(none.peek(), 0u);
    EXPECT_EQ(events_of_file(folder.path("missing.xml")), "");
    EXPECT_EQ(events_of_file(""), "");
    EXPECT_EQ(events_of_file(folder.write("empty.xml", "")), "");
}

TEST(SaxFileReader, DirectoryPipeAndDeviceAreEmptyAndNothingWaits) {
    TemporaryFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);

    EXPECT_EQ(events_of_file(pipe), "");
    EXPECT_EQ(events_of_file(folder.path(".")), "");
    EXPECT_EQ(events_of_file("/dev/zero"), "");
}

TEST(SaxFileReader, UnreadableFileIsEmpty) {
    TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "<a/>");
    ASSERT_EQ(chmod(path.c_str(), 0), 0);

    const bool isRoot = geteuid() == 0;  // who may read everything
    ASSERT_EQ(isRoot ? seteuid(65534) : 0, 0);
    const std::string events = events_of_file(path);
    ASSERT_EQ(isRoot ? seteuid(0) : 0, 0);

    EXPECT_EQ(events, "");
}

TEST(SaxFileReader, SizeOfAFileIsNotTrusted) {
    SaxFileReader reader("/proc/self/status");  // says that it is empty
    EXPECT_NE(reader.peek(), 0u);
}
