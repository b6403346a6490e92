// Files that open and then cannot be read, or not be mapped.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "uxtree/outline/layout.h"

#include "support/test_tree.h"

namespace {

std::string outline_of(const char* path, DWORD flags) {
    uxtest::TestTree target("<t/>");
    EXPECT_EQ(SAXTreeLayout(&target, nullptr, path, flags), 0);
    return target.text();
}

constexpr char kNothing[] = "<t><Node Label=\"\"></Node></t>";

}  // namespace

TEST(SAXTreeLayout, AFileWhoseReadingFailsIsEmpty) {
    // Address 0 of this process: there is a file, and no byte in it.
    const char* const path = "/proc/self/mem";
    EXPECT_EQ(outline_of(path, 0), kNothing);
    EXPECT_EQ(outline_of(path, 1), kNothing);
}

TEST(SAXTreeLayout, AFileThatCannotBeMappedIsEmpty) {
    // Regular files with a size, which the kernel makes up while they are read. Not every kernel
    // has each of them.
    int tried = 0;
    for (const char* const path :
         {"/sys/kernel/mm/transparent_hugepage/enabled", "/sys/devices/system/cpu/online",
          "/sys/class/net/lo/mtu", "/sys/kernel/mm/ksm/run"}) {
        if (!std::filesystem::is_regular_file(path)) continue;
        ++tried;
        EXPECT_EQ(outline_of(path, 1), kNothing) << path;
    }
    EXPECT_GT(tried, 0) << "no such file in /sys";
}
