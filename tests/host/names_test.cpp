// Names of elements, compared with those that an XML parser accepts.
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <string_view>

#include <expat.h>
#include <gtest/gtest.h>

#include "uxtree/host/utilities.h"

#include "base/utf8.h"

namespace {

std::string utf8_of(char32_t code) {
    char bytes[4];
    return {bytes, ux::encode_utf8(code, bytes)};
}

// Whether the XML parser reads the document and gives back the name as an element's tag and as an
// attribute's name.
class NameReader {
public:
    NameReader() : parser_(XML_ParserCreate("UTF-8")) {}

    bool reads(const std::string& name) {
        XML_ParserReset(parser_.get(), "UTF-8");
        XML_SetUserData(parser_.get(), this);
        XML_SetStartElementHandler(parser_.get(), &NameReader::start);
        tag_.clear();
        attribute_.clear();
        const std::string document = "<" + name + " " + name + "='v'></" + name + ">";
        const int length = static_cast<int>(document.size());
        const bool parsed = XML_Parse(parser_.get(), document.data(), length, 1) == XML_STATUS_OK;
        return parsed && tag_ == name && attribute_ == name;
    }

private:
    static void XMLCALL start(void* self, const XML_Char* tag, const XML_Char** attributes) {
        auto* const reader = static_cast<NameReader*>(self);
        reader->tag_ = tag;
        if (attributes[0] != nullptr) reader->attribute_ = attributes[0];
    }
    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Free> parser_;
    std::string tag_;
    std::string attribute_;
};

bool surrogate(char32_t code) {
    return code >= 0xD800 && code <= 0xDFFF;
}

TEST(UXIsName, EqualsTheXmlParserOverTheWholeBmp) {
    NameReader reader;
    for (char32_t code = 1; code < 0x10000; ++code) {
        if (surrogate(code)) continue;
        const std::string first = utf8_of(code);
        const std::string second = "a" + first;
        ASSERT_EQ(UXIsName(first), reader.reads(first)) << std::hex << static_cast<int>(code);
        ASSERT_EQ(UXIsName(second), reader.reads(second)) << std::hex << static_cast<int>(code);
    }
}

TEST(UXIsName, EqualsTheXmlParserAboveTheBmp) {
    NameReader reader;
    for (char32_t code = 0x10000; code < 0x110000; code += 0xFD) {
        const std::string first = utf8_of(code);
        const std::string second = "a" + first;
        ASSERT_EQ(UXIsName(first), reader.reads(first)) << std::hex << static_cast<int>(code);
        ASSERT_EQ(UXIsName(second), reader.reads(second)) << std::hex << static_cast<int>(code);
    }
}

TEST(UXIsName, EqualsTheXmlParserOnRandomNames) {
    const std::string pieces[] = {"a",        "Z",       "_",   ":",        "-",
                                  ".",        "5",       "xml", "\xC3\xA9", "\xE4\xB8\xAD",
                                  "\xCC\x81", "\xC2\xB7"};
    std::mt19937 random(3);
    NameReader reader;
    for (int i = 0; i < 20000; ++i) {
        std::string name;
        for (auto n = random() % 6 + 1; n > 0; --n) name += pieces[random() % std::size(pieces)];
        ASSERT_EQ(UXIsName(name), reader.reads(name)) << name;
    }
}

TEST(UXIsName, AColonIsAnOrdinaryCharacter) {
    for (const char* name : {"dt:dt", ":", ":a", "a:", "a:b:c", "xmlns", "xmlns:x", "xml"}) {
        EXPECT_TRUE(UXIsName(name)) << name;
    }
}

TEST(UXIsName, AcceptsDigitsAndPunctuationOnlyInside) {
    EXPECT_TRUE(UXIsName("a1"));
    EXPECT_TRUE(UXIsName("a-b.c_d"));
    EXPECT_FALSE(UXIsName("1a"));
    EXPECT_FALSE(UXIsName("-a"));
    EXPECT_FALSE(UXIsName(".a"));
    EXPECT_TRUE(UXIsName("_"));
}

TEST(UXIsName, RefusesWhatIsNoName) {
    for (const char* name : {"", " ", "a b", " a", "a ", "a/b", "a<b", "a>", "a&b", "a'b", "a\"b",
                             "a=b", "a\tb", "a\x7F", "\xC3\x97"}) {
        EXPECT_FALSE(UXIsName(name)) << name;
    }
    EXPECT_FALSE(UXIsName(std::string_view("a\0", 2)));
    EXPECT_FALSE(UXIsName(std::string_view()));
}

TEST(UXIsName, RefusesBytesThatAreNotUtf8) {
    const char* const broken[] = {"\xC3",          // cut off
                                  "a\xC3",         //
                                  "a\xE4\xB8",     //
                                  "\xA9",          // a continuation alone
                                  "a\xA9",         //
                                  "\xC1\xA1",      // overlong "a"
                                  "\xE0\x81\xA1",  // overlong "a"
                                  "\xE0\x83\xA9",  // overlong e with acute accent
                                  "\xED\xA0\x80",  // surrogate
                                  "\xED\xB0\x80",  // surrogate
                                  "\xC3"
                                  "a",  // no continuation
                                  "a\xE4"
                                  "b\xAD",             //
                                  "\xF4\x90\x80\x80",  // above U+10FFFF
                                  "\xF8\x88\x80\x80\x80",
                                  "\xFF",
                                  "\xFE"};
    NameReader reader;
    for (const char* name : broken) {
        EXPECT_FALSE(UXIsName(name));
        EXPECT_FALSE(reader.reads(name));
    }
}

}  // namespace
