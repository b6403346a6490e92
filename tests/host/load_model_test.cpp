// Loading against what the parser alone makes of the same bytes: the same tree, or the same reason
// at the same place.
#include <algorithm>
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "base/utf8.h"
#include "host/loader.h"
#include "host/node_detail.h"
#include "support/generated_xml.h"
#include "support/test_tree.h"

namespace {

// told is the size that the file had when it was opened.
std::string loaded_with(const std::string& xml, std::size_t told,
                        const uxhost::LoadOptions& options) {
    std::size_t position = 0;
    const ux::xml::ByteSource source{[&](char* buffer, std::size_t size) {
                                         const std::size_t count =
                                             std::min(size, xml.size() - position);
                                         std::copy_n(xml.data() + position, count, buffer);
                                         position += count;
                                         return static_cast<long>(count);
                                     },
                                     [&](std::uint64_t offset) { position = offset; }};
    UXFileError error;
    const auto document = uxhost::load_document(source, told, options, error);
    if (document == nullptr) {
        return "!" + std::to_string(error.line) + ":" + std::to_string(error.column) + ": " +
               std::string(error.message);
    }
    UXXmlWrapperBase root;
    uxhost::bind(root, document->document, (*document)->root());
    return uxtest::to_text(root);
}

TEST(LoadModel, TheReaderChangesNothingOfWhatTheParserMakes) {
    uxtest::GeneratedXml generator(3);
    std::mt19937 random(4);
    uxhost::LoadOptions parser;
    parser.parserAlone = true;
    parser.maxNesting = 5;
    uxhost::LoadOptions both = parser;
    both.parserAlone = false;
    int accepted = 0;
    constexpr int kDocuments = 40000;
    for (int i = 0; i < kDocuments; ++i) {
        const std::string xml = i % 2 == 0 ? generator.document() : generator.document_with_types();
        const std::string expected = loaded_with(xml, xml.size(), parser);
        both.window = random() % 4 == 0 ? 65536 : 16 + random() % 80;
        const std::size_t told = random() % 4 == 0 ? random() % (2 * xml.size() + 2) : xml.size();
        ASSERT_EQ(loaded_with(xml, told, both), expected)
            << "window " << both.window << ", told " << told << ":\n"
            << xml;
        if (expected[0] == '<') ++accepted;
    }
    EXPECT_GT(accepted, kDocuments / 3);
    EXPECT_LT(accepted, kDocuments);
}

// More names than the reader keeps at hand: most stand once, others come again and again.
TEST(LoadModel, NorDoesItWhereNamesAreMany) {
    std::mt19937 random(7);
    const auto name = [&random] {
        if (random() % 3 == 0) return "n" + std::to_string(random() % 3000);
        std::string text(1 + random() % 24, 'x');
        for (char& c : text) c = static_cast<char>('a' + random() % 26);
        return random() % 20 == 0 ? text + "\u00E9" : text;
    };
    uxhost::LoadOptions parser;
    parser.parserAlone = true;
    uxhost::LoadOptions both;
    for (const unsigned mostAttributes : {1U, 4U, 16U}) {
        std::string xml = "<r>";
        for (int i = 0; i < 12000; ++i) {
            const std::string tag = name();
            xml += "<" + tag;
            std::set<std::string> attributes;
            for (auto left = random() % mostAttributes; left > 0; --left) attributes.insert(name());
            for (const std::string& attribute : attributes) xml += " " + attribute + "='x y=1'";
            xml += random() % 2 == 0 ? "/>" : "> a <!-- <b c= --></" + tag + ">";
        }
        xml += "</r>";
        const std::string expected = loaded_with(xml, xml.size(), parser);
        EXPECT_EQ(expected[0], '<');
        for (both.window = 64; both.window <= 65536; both.window *= 32) {
            EXPECT_TRUE(loaded_with(xml, xml.size(), both) == expected) << both.window;
        }
    }
}

// In UTF-16; bytes that are no UTF-8 become halves of pairs.
std::string widened(const std::string& xml, bool little) {
    std::string out;
    const auto put = [&](char32_t unit) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        out += {little ? low : high, little ? high : low};
    };
    for (std::size_t at = 0; at < xml.size();) {
        const ux::Utf8Char character = ux::decode_utf8(xml, at);
        at += std::max<std::size_t>(character.length, 1);
        if (character.length == 0) {
            put(at % 2 == 0 ? 0xD800 : 0xDC00);
        } else if (character.code < 0x10000) {
            put(character.code);
        } else {
            put(0xD800 + ((character.code - 0x10000) >> 10));
            put(0xDC00 + ((character.code - 0x10000) & 0x3FF));
        }
    }
    return out;
}
// Documents of single bytes are what other letters become of the bytes of UTF-8.
std::string in_some_encoding(const std::string& xml, std::mt19937& random) {
    static constexpr const char* kNames[] = {"ISO-8859-1", "latin1", "Windows-1252", "US-ascii",
                                             "utf-16",     "UTF-8",  "UTF-16LE",     "koi8-r"};
    std::string text = xml;
    if (random() % 4 != 0 && xml.find("<?xml") == std::string::npos) {
        const std::string name = kNames[random() % std::size(kNames)];
        text = "<?xml version='1.0' encoding='" + name + "'?>" + xml;
    }
    const bool little = random() % 2 == 0;
    switch (random() % 8) {
        case 0:
            return (little ? "\xFF\xFE" : "\xFE\xFF") + widened(text, little);
        case 1:
            return (little ? "\xFF\xFE" : "\xFE\xFF") + widened(xml, little);
        case 2:
            return widened(xml, little);
        case 3:
            return widened(text, little) + (random() % 4 == 0 ? " " : "");
        default:
            return text;
    }
}

TEST(LoadModel, NorDoesItInOtherEncodings) {
    uxtest::GeneratedXml generator(5);
    std::mt19937 random(6);
    uxhost::LoadOptions parser;
    parser.parserAlone = true;
    uxhost::LoadOptions both;
    int accepted = 0;
    constexpr int kDocuments = 20000;
    for (int i = 0; i < kDocuments; ++i) {
        UXXmlWrapperBase::SetDefaultCodePage(i % 3 == 0 ? 1252 : i % 3 == 1 ? 28591 : 65001);
        const std::string xml = in_some_encoding(
            i % 4 == 0 ? generator.document_with_types() : generator.document(), random);
        const std::string expected = loaded_with(xml, 0, parser);
        both.window = random() % 4 == 0 ? 65536 : 16 + random() % 80;
        ASSERT_EQ(loaded_with(xml, 0, both), expected) << "window " << both.window << ":\n" << xml;
        if (expected[0] == '<') ++accepted;
    }
    UXXmlWrapperBase::SetDefaultCodePage(65001);
    EXPECT_GT(accepted, kDocuments / 4);
    EXPECT_LT(accepted, kDocuments);
}

}  // namespace
