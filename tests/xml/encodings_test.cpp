// Encodings by their names and by the numbers of code pages.
#include "xml/encodings.h"

#include <gtest/gtest.h>

TEST(fill_encoding, KnowsSingleByteEncodingsByAnyCaseOfTheirNames) {
    XML_Encoding info{};
    ASSERT_TRUE(ux::xml::fill_encoding("Windows-1252", info));
    EXPECT_EQ(info.map[0x61], 'a');
    EXPECT_EQ(info.map[0x80], 0x20AC);
    EXPECT_EQ(info.map[0x81], -1);
    EXPECT_EQ(info.map[0xE9], 0xE9);
    ASSERT_TRUE(ux::xml::fill_encoding("LATIN1", info));
    EXPECT_EQ(info.map[0x80], 0x80);
    ASSERT_TRUE(ux::xml::fill_encoding("ascii", info));
    EXPECT_EQ(info.map[0x7F], 0x7F);
    EXPECT_EQ(info.map[0x80], -1);
    EXPECT_FALSE(ux::xml::fill_encoding("EBCDIC-US", info));
    EXPECT_FALSE(ux::xml::fill_encoding("", info));
}

TEST(code_page_encoding, NamesTheCodePagesOfUndeclaredInputs) {
    EXPECT_STREQ(ux::xml::code_page_encoding(1252), "windows-1252");
    EXPECT_STREQ(ux::xml::code_page_encoding(28591), "ISO-8859-1");
    EXPECT_EQ(ux::xml::code_page_encoding(65001), nullptr);
}
