// What the system tells about the process.
#include "base/platform.h"

#include <cstdlib>

#include <gtest/gtest.h>
#include <unistd.h>

TEST(trusted_environment, TellsWhatTheEnvironmentHas) {
    setenv("UXTREE_TEST_VARIABLE", "value", 1);
    EXPECT_STREQ(ux::trusted_environment("UXTREE_TEST_VARIABLE"), "value");
    unsetenv("UXTREE_TEST_VARIABLE");
    EXPECT_EQ(ux::trusted_environment("UXTREE_TEST_VARIABLE"), nullptr);
}

#ifdef UXTREE_PLAIN_POSIX
// Linux says how a program was started instead, which a running one cannot change.
TEST(trusted_environment, TellsNothingWithRaisedRights) {
    const gid_t group = getegid();
    const bool isRaised = setegid(group + 1) == 0;  // only root can do so
    const char* const path = ux::trusted_environment("PATH");
    ASSERT_EQ(setegid(group), 0);
    EXPECT_EQ(path == nullptr, isRaised);
    EXPECT_STREQ(ux::trusted_environment("PATH"), std::getenv("PATH"));
}
#endif
