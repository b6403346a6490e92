// Decoding files, whole and in parts.
#include "xml/file_encoding.h"

#include <algorithm>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/utf8.h"
#include "xml/decoded_source.h"

namespace {

using ux::xml::FileEncoding;

const std::string kText = "ASCII as long as a word, \u00E9\u00FC\u00DF, \u20AC?";

// Reads it through a source that yields so many bytes at a time.
std::string decoded(const std::string& bytes, FileEncoding encoding, std::size_t step,
                    std::size_t from = 0) {
    std::size_t position = 0;
    const ux::xml::ByteSource input{
        [&](char* buffer, std::size_t size) {
            const std::size_t count = std::min({size, step, bytes.size() - position});
            std::copy_n(bytes.data() + position, count, buffer);
            position += count;
            return static_cast<long>(count);
        },
        [&](std::uint64_t offset) { position = offset; }};
    ux::xml::DecodedSource source(input, encoding);
    const ux::xml::ByteSource output = source.source();
    output.seek(from);
    std::string text;
    char block[5];
    for (long got = 1; got > 0;) {
        got = output.read(block, sizeof(block));
        text.append(block, static_cast<std::size_t>(std::max(got, 0L)));
    }
    return text;
}

TEST(append_decoded, ReadsWhatAppendEncodedWrites) {
    for (const FileEncoding encoding :
         {FileEncoding::kUtf16Little, FileEncoding::kUtf16Big, FileEncoding::kWindows1252}) {
        const bool wide = encoding != FileEncoding::kWindows1252;
        const std::string text = wide ? kText + "\U0001F4C8 \u4E2D" : kText;
        std::string bytes;
        ux::xml::append_encoded(bytes, text, encoding);
        EXPECT_EQ(ux::xml::to_utf8(bytes, encoding), text);
        for (const std::size_t step : {1U, 2U, 3U, 7U, 100U}) {
            EXPECT_EQ(decoded(bytes, encoding, step), text) << step;
            EXPECT_EQ(decoded(bytes, encoding, step, 9), text.substr(9)) << step;
        }
    }
}

// Of all bytes in any order, as character_of tells them one by one.
TEST(append_decoded, DecodesEveryByteWhereverItStands) {
    std::mt19937 random(1);
    for (const FileEncoding encoding :
         {FileEncoding::kLatin1, FileEncoding::kWindows1252, FileEncoding::kAscii}) {
        for (std::size_t size = 0; size < 400; ++size) {
            const unsigned kinds = size % 3 == 0 ? 0x80 : 0x100;  // ASCII alone, too
            std::string bytes;
            std::string expected;
            while (bytes.size() < size) {
                bytes += static_cast<char>(random() % kinds);
                const auto code =
                    ux::xml::character_of(static_cast<unsigned char>(bytes.back()), encoding);
                char utf8[4];
                if (code.has_value()) expected.append(utf8, ux::encode_utf8(*code, utf8));
                if (!code.has_value()) expected += ux::xml::kNoCharacter;
            }
            std::string found = "x";
            EXPECT_EQ(ux::xml::append_decoded(found, bytes, encoding), size);
            EXPECT_EQ(found, "x" + expected);
        }
    }
}

TEST(append_decoded, MarksWhatIsNoCharacter) {
    const auto marked = [](const std::string& bytes, FileEncoding encoding) {
        EXPECT_FALSE(ux::xml::to_utf8(bytes, encoding).has_value());
        return decoded(bytes, encoding, 1);
    };
    EXPECT_EQ(marked("a\x81z", FileEncoding::kWindows1252), "a\xFFz");
    EXPECT_EQ(marked("a\xE9z", FileEncoding::kAscii), "a\xFFz");
    EXPECT_EQ(marked({"a\0z", 3}, FileEncoding::kUtf16Little), "a\xFF");
    EXPECT_EQ(marked({"a\0\0\xDCz\0", 6}, FileEncoding::kUtf16Little), "a\xFFz");
    EXPECT_EQ(marked({"a\0\0\xD8z\0", 6}, FileEncoding::kUtf16Little), "a\xFFz");
    EXPECT_EQ(marked({"\0a\xD8\0", 4}, FileEncoding::kUtf16Big), "a\xFF");
}

TEST(to_utf8, DecodesLongTexts) {
    std::string bytes;
    std::string text;
    for (int i = 0; i < 9000; ++i) text += i % 100 == 0 ? "\U0001F4C8" : "x";
    ux::xml::append_encoded(bytes, "-" + text, FileEncoding::kUtf16Big);
    EXPECT_TRUE(ux::xml::to_utf8(bytes, FileEncoding::kUtf16Big) == "-" + text);
}

}  // namespace
