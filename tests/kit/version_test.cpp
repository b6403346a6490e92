// The version at run time.
#include "uxtree/kit/version.h"

#include <gtest/gtest.h>

TEST(ux_version, IsTheVersionOfTheProject) {
    EXPECT_STREQ(ux_version(), UXTREE_VERSION);
}
