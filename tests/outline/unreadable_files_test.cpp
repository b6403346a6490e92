// Files that open and then cannot be read, or not be mapped.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "uxtree/outline/layout.h"

#include "support/test_tree.h"

namespace {

std::string outline_of(const char* path, DWORD flags) {
    uxtest::TestTree target("<t/>");
    UXXmlWrapperBase root = target.root();
    EXPECT_EQ(SAXTreeLayout(&root, nullptr, path, flags), 0);
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
    // A regular file with a size, which the kernel makes up while it is read.
    const char* const path = "/sys/kernel/mm/transparent_hugepage/enabled";
    if (!std::filesystem::exists(path)) GTEST_SKIP() << "no " << path;
    EXPECT_EQ(outline_of(path, 1), kNothing);
}
