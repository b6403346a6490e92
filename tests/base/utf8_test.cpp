// Every character in UTF-8 and back, and bytes that are no UTF-8.
#include "base/utf8.h"

#include <string>

#include <gtest/gtest.h>

namespace {

std::string encoded(char32_t code) {
    char bytes[4];
    return {bytes, ux::encode_utf8(code, bytes)};
}

bool is_surrogate(char32_t code) {
    return code >= 0xD800 && code <= 0xDFFF;
}

}  // namespace

TEST(encode_utf8, WritesTheShortestForm) {
    EXPECT_EQ(encoded('a'), "a");
    EXPECT_EQ(encoded(0x7F), "\x7F");
    EXPECT_EQ(encoded(0x80), "\xC2\x80");
    EXPECT_EQ(encoded(0xE9), "\xC3\xA9");
    EXPECT_EQ(encoded(0x7FF), "\xDF\xBF");
    EXPECT_EQ(encoded(0x800), "\xE0\xA0\x80");
    EXPECT_EQ(encoded(0x4E2D), "\xE4\xB8\xAD");
    EXPECT_EQ(encoded(0xFFFF), "\xEF\xBF\xBF");
    EXPECT_EQ(encoded(0x10000), "\xF0\x90\x80\x80");
    EXPECT_EQ(encoded(0x10FFFF), "\xF4\x8F\xBF\xBF");
}

TEST(decode_utf8, ReadsEveryCharacterAndNothingElse) {
    for (char32_t code = 0; code < 0x110000; ++code) {
        const std::string text = encoded(code);
        const ux::Utf8Char c = ux::decode_utf8(text, 0);
        if (is_surrogate(code)) {
            ASSERT_EQ(c.length, 0U);
        } else {
            ASSERT_EQ(c.code, code);
            ASSERT_EQ(c.length, text.size());
        }
    }
}

TEST(decode_utf8, RefusesOverlongAndCutOffForms) {
    for (const char* text : {"\xC1\x81", "\xE0\x81\x81", "\xF0\x80\x81\x81", "\xC3", "\xE4\xB8",
                             "\xA9", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80",
                             "\xC3"
                             "a"}) {
        EXPECT_EQ(ux::decode_utf8(text, 0).length, 0U) << text;
        EXPECT_EQ(ux::utf8_step(text, 0), 1U) << text;
    }
}
