// What belongs to a file besides its content, while it is replaced and afterwards.
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "base/file_output.h"
#include "support/test_tree.h"

namespace {

struct stat status_of(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

unsigned mode_of(const std::string& path) {
    return status_of(path).st_mode & 07777U;
}

// The file that is being written beside the target.
std::string unfinished(const std::string& target) {
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(target).parent_path())) {
        if (entry.path().string().rfind(target + ".tmp", 0) == 0) return entry.path().string();
    }
    return "";
}

class FileOutputProperties : public testing::Test {
protected:
    uxtest::TemporaryFolder folder_;
};

TEST_F(FileOutputProperties, NobodyElseReadsWhatReplacesAFile) {
    for (const unsigned mode : {0600U, 0644U, 0666U}) {
        const std::string target = folder_.write("secret", "old");
        ASSERT_EQ(chmod(target.c_str(), mode), 0);
        ux::FileOutput output(target.c_str());
        output.write("new");
        EXPECT_EQ(mode_of(unfinished(target)), 0600U);
        ASSERT_TRUE(output.commit());
        EXPECT_EQ(mode_of(target), mode);
        EXPECT_EQ(uxtest::read_file(target), "new");
    }
}

TEST_F(FileOutputProperties, OwnerAndAttributesStay) {
    const std::string target = folder_.write("file", "old");
    const bool hasAttributes = setxattr(target.c_str(), "user.origin", "here", 4, 0) == 0;
    if (geteuid() == 0) {
        ASSERT_EQ(chown(target.c_str(), 65534, 65533), 0);
    }
    ASSERT_EQ(chmod(target.c_str(), 06750), 0);
    ux::FileOutput output(target.c_str());
    output.write("new");
    ASSERT_TRUE(output.commit());
    EXPECT_EQ(ux::unkept_properties(), "");
    EXPECT_EQ(mode_of(target), 06750U);
    if (geteuid() == 0) {
        EXPECT_EQ(status_of(target).st_uid, 65534U);
        EXPECT_EQ(status_of(target).st_gid, 65533U);
    }
    if (hasAttributes) {
        char value[16] = {};
        EXPECT_EQ(getxattr(target.c_str(), "user.origin", value, sizeof(value)), 4);
        EXPECT_STREQ(value, "here");
    }
}

// What another user's file has cannot be given to the new one, which then allows nobody more. Root
// becomes another user for it, in a folder that no path to it can close; whoever else runs the test
// replaces files of his own, and keeps all.
TEST_F(FileOutputProperties, WhatCannotBeKeptIsSaid) {
    const bool isRoot = geteuid() == 0;
    const std::string target = folder_.write("file", "old");
    const std::string secret = folder_.write("secret", "old");
    ASSERT_EQ(chmod(target.c_str(), 06775), 0);
    ASSERT_EQ(chmod(secret.c_str(), 0600), 0);
    const bool hasAttributes = setxattr(secret.c_str(), "user.origin", "here", 4, 0) == 0;
    ASSERT_EQ(chmod(folder_.path(".").c_str(), 0777), 0);
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path("."));

    const auto replaced = [](const char* name) {
        ux::FileOutput output(name);
        output.write("new");
        EXPECT_TRUE(output.commit());
        return ux::unkept_properties();
    };
    if (isRoot) {
        ASSERT_EQ(setegid(65534), 0);
        ASSERT_EQ(seteuid(65534), 0);
    }
    const std::string unkept = replaced("file");
    const std::string unkeptOfSecret = replaced("secret");
    if (isRoot) {
        ASSERT_EQ(seteuid(0), 0);
        ASSERT_EQ(setegid(0), 0);
    }
    std::filesystem::current_path(before);

    EXPECT_EQ(unkept, isRoot ? "group, owner" : "");
    EXPECT_EQ(mode_of(target), isRoot ? 0755U : 06775U);
    EXPECT_EQ(unkeptOfSecret, !isRoot         ? ""
                              : hasAttributes ? "group, owner, attribute user.origin"
                                              : "group, owner");
    EXPECT_EQ(uxtest::read_file(target), "new");
    EXPECT_EQ(uxtest::read_file(secret), "new");
}

TEST_F(FileOutputProperties, AccessControlListsStay) {
    const std::string target = folder_.write("file", "old");
    // Version 2; the owner rw, user 65534 r, the group nothing, the mask r, others nothing.
    const unsigned char list[] = {2,  0, 0, 0,                          //
                                  1,  0, 6, 0, 0xff, 0xff, 0xff, 0xff,  //
                                  2,  0, 4, 0, 0xfe, 0xff, 0x00, 0x00,  //
                                  4,  0, 0, 0, 0xff, 0xff, 0xff, 0xff,  //
                                  16, 0, 4, 0, 0xff, 0xff, 0xff, 0xff,  //
                                  32, 0, 0, 0, 0xff, 0xff, 0xff, 0xff};
    const char* const name = "system.posix_acl_access";
    if (setxattr(target.c_str(), name, list, sizeof(list), 0) != 0) {
        GTEST_SKIP() << "no access control lists on this file system";
    }
    ux::FileOutput output(target.c_str());
    output.write("new");
    ASSERT_TRUE(output.commit());
    unsigned char now[128] = {};
    ASSERT_EQ(getxattr(target.c_str(), name, now, sizeof(now)), static_cast<ssize_t>(sizeof(list)));
    EXPECT_EQ(std::string(now, now + sizeof(list)), std::string(list, list + sizeof(list)));
    EXPECT_EQ(mode_of(target), 0640U);
}

TEST_F(FileOutputProperties, ADanglingLinkLeadsToTheNewFile) {
    const std::string link = folder_.path("link");
    std::filesystem::create_directory(folder_.path("below"));
    ASSERT_EQ(symlink("below/file", link.c_str()), 0);
    ux::FileOutput output(link.c_str());
    output.write("new");
    ASSERT_TRUE(output.commit());
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(uxtest::read_file(folder_.path("below/file")), "new");
}

TEST_F(FileOutputProperties, LinksInACircleAreRefused) {
    const std::string link = folder_.path("a");
    ASSERT_EQ(symlink("b", link.c_str()), 0);
    ASSERT_EQ(symlink("a", folder_.path("b").c_str()), 0);
    ux::FileOutput output(link.c_str());
    EXPECT_TRUE(output.failed());
    EXPECT_FALSE(output.commit());
}

// So many are remembered for a signal; more are written all the same.
TEST_F(FileOutputProperties, OnlySixteenUnfinishedFilesAreRemembered) {
    const auto target = [&](std::size_t i) { return folder_.path(std::to_string(i)); };
    std::vector<std::unique_ptr<ux::FileOutput>> outputs;
    for (std::size_t i = 0; i < 17; ++i) {
        outputs.push_back(std::make_unique<ux::FileOutput>(target(i).c_str()));
        outputs.back()->write("new");
    }
    ux::remove_unfinished_files();
    for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(unfinished(target(i)), "");
    EXPECT_TRUE(outputs[16]->commit());
    EXPECT_EQ(uxtest::read_file(target(16)), "new");
}

TEST_F(FileOutputProperties, UnfinishedFilesCanBeRemovedAtOnce) {
    const std::string target = folder_.write("file", "old");
    ux::FileOutput output(target.c_str());
    std::optional<ux::FileOutput> fresh(std::in_place, folder_.path("fresh").c_str());
    ASSERT_NE(unfinished(target), "");
    ux::remove_unfinished_files();
    EXPECT_EQ(unfinished(target), "");
    EXPECT_EQ(unfinished(folder_.path("fresh")), "");
    EXPECT_FALSE(output.commit());
    EXPECT_EQ(uxtest::read_file(target), "old");
}

}  // namespace
