// Inputs that are no regular files, and files that are replaced as a whole or not at all.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/file_output.h"
#include "base/input_file.h"
#include "support/test_tree.h"

namespace {

namespace fs = std::filesystem;

std::string all_of(const ux::RegularFile& file) {
    char block[4];
    std::string content;
    for (long got = file.read(block, sizeof block); got > 0; got = file.read(block, sizeof block)) {
        content.append(block, static_cast<std::size_t>(got));
    }
    return content;
}

std::size_t files_in(const std::string& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

}  // namespace

TEST(RegularFile, ReadsAFileAndReadsItAgain) {
    const uxtest::TemporaryFolder folder;
    const ux::RegularFile file(folder.write("f", "some bytes").c_str());
    ASSERT_TRUE(file.is_open());
    EXPECT_EQ(file.size(), 10U);
    EXPECT_EQ(all_of(file), "some bytes");
    file.rewind();
    EXPECT_EQ(all_of(file), "some bytes");
    EXPECT_EQ(file.reason(), "");
}

TEST(RegularFile, SaysWhyAPlaceIsNotOpened) {
    const uxtest::TemporaryFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(ux::RegularFile(folder.path("none").c_str()).reason(), "No such file or directory");
    EXPECT_EQ(ux::RegularFile(folder.path("").c_str()).reason(), "Is a directory");
    EXPECT_EQ(ux::RegularFile(pipe.c_str()).reason(), "not a regular file");
    EXPECT_EQ(ux::RegularFile("/dev/null").reason(), "not a regular file");
    EXPECT_FALSE(ux::RegularFile(nullptr).is_open());
}

TEST(RegularFile, TellsAFailureFromTheEnd) {
    // Address 0 of this process: there is a file, and no byte in it.
    const ux::RegularFile file("/proc/self/mem");
    char byte = 0;
    ASSERT_TRUE(file.is_open());
    EXPECT_EQ(file.read(&byte, 1), -1);
    EXPECT_EQ(ux::RegularFile().read(&byte, 1), 0);
}

TEST(FileOutput, ReplacesAFileOnCommitAndNotBefore) {
    const uxtest::TemporaryFolder folder;
    const std::string path = folder.write("f", "old");
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    ux::FileOutput output(path.c_str());
    output.write("ne");
    output.write("w");
    EXPECT_EQ(uxtest::read_file(path), "old");

    EXPECT_TRUE(output.commit());

    EXPECT_EQ(uxtest::read_file(path), "new");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(files_in(folder.path("")), 1U);
}

TEST(FileOutput, LeavesNothingWithoutACommit) {
    const uxtest::TemporaryFolder folder;
    const std::string path = folder.write("f", "old");
    { ux::FileOutput(path.c_str()).write("new"); }
    EXPECT_EQ(uxtest::read_file(path), "old");
    EXPECT_EQ(files_in(folder.path("")), 1U);
}

TEST(FileOutput, KeepsALinkAndReplacesWhatItLeadsTo) {
    const uxtest::TemporaryFolder folder;
    const std::string path = folder.write("f", "old");
    const std::string link = folder.path("link");
    fs::create_symlink("f", link);
    ux::FileOutput output(link.c_str());
    output.write("new");

    EXPECT_TRUE(output.commit());

    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(uxtest::read_file(path), "new");
}

TEST(FileOutput, SaysWhyAPlaceCannotBeWritten) {
    const uxtest::TemporaryFolder folder;
    ux::FileOutput inFolder(folder.path("").c_str());
    ux::FileOutput nowhere(folder.path("none/f").c_str());
    EXPECT_FALSE(inFolder.commit());
    EXPECT_NE(inFolder.reason().find("Is a directory"), std::string::npos);
    EXPECT_FALSE(nowhere.commit());
    EXPECT_NE(nowhere.reason().find("No such file or directory"), std::string::npos);
}
