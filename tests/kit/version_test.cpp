// The version at run time, and what fits it.
#include "uxtree/kit/version.h"

#include <gtest/gtest.h>

TEST(ux_version, IsTheVersionOfTheProject) {
    EXPECT_STREQ(ux_version(), UXTREE_VERSION);
    EXPECT_STREQ(UXVersion(), UXTREE_VERSION);
    EXPECT_STREQ(UX_VERSION, UXTREE_VERSION);
}

TEST(ux_version_problem, IsNoneForLibrariesOfOneBuild) {
    EXPECT_STREQ(UXVersionProblem(), "");
    EXPECT_STREQ(ux_version_problem(), "");
}

TEST(ux_version_fits, AsksForTheSameInterface) {
    for (const char* version : {UX_VERSION, "0.2.0", "0.2.99", "0.2"}) {
        EXPECT_EQ(ux_version_fits(version), 1) << version;
    }
    for (const char* version : {"0.1.0", "0.3.0", "0", "2.0.0", "0.20.0", "", "x"}) {
        EXPECT_EQ(ux_version_fits(version), 0) << version;
    }
    EXPECT_EQ(ux_version_fits(nullptr), 0);
}
