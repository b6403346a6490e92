#include "host/text_runs.h"

#include <string>

#include <gtest/gtest.h>

using namespace uxhost;

TEST(is_plain_text, LooksAtEveryByteOfEveryLength) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const bool printable = byte >= ' ' && byte < 0x80 && c != '&' && c != '<' && c != ']';
        for (std::size_t length = 1; length < 20; ++length) {
            for (std::size_t place = 0; place < length; ++place) {
                std::string text(length, '7');
                text[place] = c;
                ASSERT_EQ(is_plain_text(text), printable || c == '\n' || c == '\t')
                    << byte << " at " << place << " of " << length;
            }
        }
    }
    EXPECT_TRUE(is_plain_text(""));
}

TEST(long_run_start, IsBehindTheTagBeforeTheRun) {
    const std::string run(2000, '7');
    const std::string tags = "<a>" + run.substr(0, 500) + "</a>";

    EXPECT_EQ(long_run_start(run), 0U);
    EXPECT_EQ(long_run_start("<a>" + run + "</a>"), 3U);
    EXPECT_EQ(long_run_start(tags + "<b>" + run + "<c>"), 510U);
    EXPECT_EQ(long_run_start("<a x='>'>" + run), 7U);
    EXPECT_EQ(long_run_start("<!-- " + run), 2005U);
    EXPECT_EQ(long_run_start(tags), 507U);
    EXPECT_EQ(long_run_start(""), 0U);
}
