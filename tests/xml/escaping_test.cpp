// Which texts a document can hold, and what stands for the bytes that it cannot hold as they are.
#include "xml/escaping.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "base/utf8.h"
#include "xml/output.h"

namespace {

using ux::xml::TextClass;

std::string written(std::string_view text, TextClass place) {
    std::string padded(text);
    padded.reserve(text.size() + 8);  // readable to the end of the last word
    ux::xml::Output out(nullptr);
    out.put_escaped({padded.data(), text.size()}, ux::xml::classes_in(text), place);
    return std::string(out.text());
}

}  // namespace

TEST(put_escaped, WritesReferencesWhereThePlaceAsksForThem) {
    EXPECT_EQ(written("a<b>&\"\t\n\r c", ux::xml::kInText), "a&lt;b&gt;&amp;\"\t\n&#13; c");
    EXPECT_EQ(written("a<b>&\"\t\n\r c", ux::xml::kInAttribute),
              "a&lt;b&gt;&amp;&quot;&#9;&#10;&#13; c");
    EXPECT_EQ(written("plain", ux::xml::kInText), "plain");
    EXPECT_EQ(written("", ux::xml::kInText), "");
}

TEST(put_escaped, KeepsLongTextsWhole) {
    const std::string part(1000, 'x');
    EXPECT_EQ(written(part + "<" + part, ux::xml::kInText), part + "&lt;" + part);
    EXPECT_EQ(written(part, ux::xml::kInAttribute), part);
}

TEST(holds_only_characters, TakesWhatXmlTakes) {
    for (std::uint32_t code = 0; code < 0x110000; ++code) {
        char bytes[4];
        const std::string text(bytes, ux::encode_utf8(code, bytes));
        const bool allowed = code == 0x9 || code == 0xA || code == 0xD ||
                             (code >= 0x20 && code < 0xD800) ||
                             (code > 0xDFFF && code != 0xFFFE && code != 0xFFFF);
        ASSERT_EQ(ux::xml::holds_only_characters("a" + text), allowed) << static_cast<int>(code);
    }
    EXPECT_FALSE(ux::xml::holds_only_characters("cut off \xC3"));
    EXPECT_TRUE(ux::xml::holds_only_characters(""));
}
