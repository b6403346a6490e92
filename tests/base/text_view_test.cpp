// Views of texts that may hold NUL bytes, and of missing ones.
#include "base/text_view.h"

#include <gtest/gtest.h>

#include "uxtree/host/string.h"

TEST(view_of, TakesWholeHostStrings) {
    CStringUTF8 text;
    text.Assign("a\0b", 3);
    EXPECT_EQ(ux::view_of(text), std::string_view("a\0b", 3));
    EXPECT_EQ(ux::view_of(CStringUTF8()), "");
}

TEST(view_of, TakesANullTextForAnEmptyOne) {
    EXPECT_EQ(ux::view_of("text"), "text");
    EXPECT_EQ(ux::view_of(static_cast<const char*>(nullptr)), "");
}
