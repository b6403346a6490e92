// Loading and saving where the file system is in the way.
#include <filesystem>
#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "uxtree/host/embedded_files.h"

#include "support/test_tree.h"

namespace {

using testing::HasSubstr;
using uxtest::TestTree;

// Permissions count for root, too, while another user is the real one.
class AsOrdinaryUser {
public:
    AsOrdinaryUser() : root_(geteuid() == 0) {
        if (root_) become(65534);
    }
    ~AsOrdinaryUser() {
        if (root_) become(0);
    }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

private:
    static void become(uid_t real) { EXPECT_EQ(setreuid(real, 0), 0); }
    bool root_;
};

}  // namespace

TEST(Save, RespectsAFileThatMustNotBeWritten) {
    const uxtest::TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "old");
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    TestTree tree("<r>new</r>");
    const AsOrdinaryUser user;

    EXPECT_EQ(tree.Save(path.c_str(), 0), 0);

    EXPECT_THAT(std::string(UXGetLastSaveError()), HasSubstr("Permission denied"));
    EXPECT_EQ(uxtest::read_file(path), "old");
}

TEST(Save, WritesToADeviceInPlace) {
    TestTree tree("<r>text</r>");
    EXPECT_EQ(tree.Save("/dev/null", 0), 1);
    EXPECT_EQ(std::filesystem::status("/dev/null").type(), std::filesystem::file_type::character);
}

TEST(load, SaysThatAFileCannotBeRead) {
    // Address 0 of this process: there is a file, and no byte in it.
    const char* const path = "/proc/self/mem";
    TestTree tree("<r>kept</r>");

    EXPECT_EQ(tree.load(path, 0, false), 0);

    EXPECT_THAT(std::string(UXGetLastLoadError()), HasSubstr("cannot be read"));
    EXPECT_EQ(uxtest::to_text(tree), "<r>kept</r>");
}

TEST(UXRemoveUnfinishedFiles, LeavesTheOldFileAlone) {
    const uxtest::TemporaryFolder folder;
    const std::string path = folder.write("f.txt", "old");
    UXFileOutput output(path.c_str());
    ASSERT_TRUE(output.Write("new"));
    UXRemoveUnfinishedFiles();
    EXPECT_FALSE(output.Commit());
    EXPECT_EQ(uxtest::read_file(path), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("")), {}), 1);
}
