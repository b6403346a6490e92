// The character classes against another implementation of the same edition.
#include "base/xml_names.h"

#include <string>

#include <expat.h>
#include <gtest/gtest.h>

#include "base/utf8.h"

namespace {

std::string utf8(std::uint32_t c) {
    char bytes[4];
    return {bytes, ux::encode_utf8(c, bytes)};
}

class Parser {
public:
    Parser() : parser_(XML_ParserCreate("UTF-8")) {}
    ~Parser() { XML_ParserFree(parser_); }
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;
    bool accepts(const std::string& text) {
        XML_ParserReset(parser_, "UTF-8");
        return XML_Parse(parser_, text.data(), static_cast<int>(text.size()), 1) == XML_STATUS_OK;
    }

private:
    XML_Parser parser_;
};

bool ends_a_name(std::uint32_t c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '/' || c == '>';
}

}  // namespace

TEST(starts_name, AgreesWithExpatOnTheWholePlane) {
    Parser parser;
    for (std::uint32_t c = 0; c <= 0xFFFF; ++c) {
        ASSERT_EQ(ux::starts_name(c), parser.accepts("<" + utf8(c) + "/>")) << std::hex << c;
    }
}

TEST(continues_name, AgreesWithExpatOnTheWholePlane) {
    Parser parser;
    for (std::uint32_t c = 0; c <= 0xFFFF; ++c) {
        const bool expected = !ends_a_name(c) && parser.accepts("<a" + utf8(c) + "/>");
        ASSERT_EQ(ux::continues_name(c), expected) << std::hex << c;
    }
}

TEST(starts_name, NothingAboveTheFirstPlaneIsANameCharacter) {
    for (const std::uint32_t c :
         {0x10000u, 0x10041u, 0x20000u, 0x10FFFFu, 0x1FFFFFu, 0xFFFFFFFFu}) {
        EXPECT_FALSE(ux::starts_name(c)) << std::hex << c;
        EXPECT_FALSE(ux::continues_name(c)) << std::hex << c;
    }
}
