// Saving: bytes, replacement at once, failures that lose nothing.
#include <filesystem>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "uxtree/host/node.h"

#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using uxtest::read_file;
using uxtest::TemporaryFolder;
using uxtest::TestTree;
using uxtest::to_text;

std::vector<std::string> files_in(const TemporaryFolder& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path(""))) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

TEST(Save, WritesTheElementAsRootWithoutAddedWhiteSpace) {
    const TemporaryFolder folder;
    TestTree tree("<r x='1'><a _ux_id='5'>t<b/></a></r>");

    EXPECT_EQ(tree.Save(folder.path("r.xml").c_str(), 0), 1);
    EXPECT_EQ(tree.at("a").Save(folder.path("a.xml").c_str(), 0), 1);

    EXPECT_EQ(read_file(folder.path("r.xml")),
              R"(<?xml version="1.0" encoding="UTF-8"?><r x="1"><a _ux_id="5">t<b/></a></r>)");
    EXPECT_EQ(read_file(folder.path("a.xml")),
              R"(<?xml version="1.0" encoding="UTF-8"?><a _ux_id="5">t<b/></a>)");
    EXPECT_THAT(files_in(folder), ElementsAre("a.xml", "r.xml"));
    EXPECT_STREQ(UXGetLastSaveError(), "");
}

TEST(Save, ReadsBackUnchangedAndByteStable) {
    const TemporaryFolder folder;
    TestTree tree("<r/>");
    const char* const texts[] = {" ",      "\n\t ", "\r",   "a\rb",
                                 "<&>\"'", "]]>",   " x ",  "\u00E9\u20AC\U0001F4C8",
                                 "\x7F",   "--",    "&amp;"};
    for (const char* text : texts) {
        UXXmlWrapperBase leaf;
        tree.AddTextNode(&leaf, "leaf", text, 3, 0, nullptr);
        leaf.SetPropertyValue("a", CStringUTF8(text));
        UXXmlWrapperBase branch;
        tree.AddTextNode(&branch, "branch", text, -1, 0, nullptr);
        branch.AddNode(nullptr, "c", -1);
    }

    ASSERT_EQ(tree.Save(folder.path("one.xml").c_str(), 0), 1);
    UXXmlWrapperBase read;
    ASSERT_EQ(read.load(folder.path("one.xml").c_str(), 0, false), 1);
    ASSERT_EQ(read.Save(folder.path("two.xml").c_str(), 0), 1);

    EXPECT_EQ(to_text(read), tree.text());
    EXPECT_EQ(read_file(folder.path("two.xml")), read_file(folder.path("one.xml")));
}

TEST(Save, RandomTreesReadBack) {
    const TemporaryFolder folder;
    std::mt19937 random(8);
    const std::string alphabet = "ab <>&\"'\t\n\r]";
    const auto text = [&] {
        std::string made;
        for (auto k = random() % 8; k > 0; --k) made += alphabet[random() % alphabet.size()];
        return made;
    };

    for (int round = 0; round < 100; ++round) {
        UXXmlWrapperBase root;
        root.CreateNew(0, "r");
        std::vector<UXXmlWrapperBase> nodes{root};
        for (int i = 0; i < 40; ++i) {
            UXXmlWrapperBase node;
            nodes[random() % nodes.size()].AddTextNode(&node, "n", text().c_str(), -1, 0, nullptr);
            if (random() % 2) node.SetPropertyValue("a", CStringUTF8(text().c_str()));
            nodes.push_back(node);
        }
        ASSERT_EQ(root.Save(folder.path("f.xml").c_str(), 0), 1);
        UXXmlWrapperBase read;
        ASSERT_EQ(read.load(folder.path("f.xml").c_str(), 0, false), 1);
        ASSERT_EQ(to_text(read), to_text(root));
    }
}

TEST(Save, RefusesWhatXmlCannotHoldAndNamesTheNode) {
    const TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "old");
    const auto reason = [&](const char* text, bool asAttribute) {
        TestTree tree("<r><a/><b/><a><c/></a></r>");
        UXXmlWrapperBase c = tree.at("a[1]/c");
        if (asAttribute) {
            c.SetPropertyValue("bad", CStringUTF8(text));
        } else {
            c.SetString(text);
        }
        EXPECT_EQ(tree.Save(path.c_str(), 0), 0);
        return std::string(UXGetLastSaveError());
    };

    for (const char* text : {"\x01", "a\x1F", "\xFF", "\xC3", "\xC0\x80", "\xE0\x80\x80",
                             "\xED\xA0\x80", "\xEF\xBF\xBE", "\xEF\xBF\xBF", "\xF0\x80\x80\x80",
                             "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "ok \x80"}) {
        EXPECT_THAT(reason(text, false), HasSubstr("/r/a[2]/c[1]: ")) << text;
    }
    EXPECT_THAT(reason("\x02", true), HasSubstr("/r/a[2]/c[1]/@bad: "));

    EXPECT_EQ(read_file(path), "old");
    EXPECT_THAT(files_in(folder), ElementsAre("f.xml"));
}

TEST(Save, TheReservedNameCannotBeSet) {
    TestTree tree("<r/>");
    CWBOStringArray texts;

    EXPECT_EQ(tree.SetPropertyValue("_ux_id", CStringUTF8("x")), 0);
    EXPECT_EQ(tree.SetPropertyValue("_ux_id", 4), 0);
    EXPECT_EQ(tree.SetPropertyValue("_ux_id", 4.5), 0);
    EXPECT_EQ(tree.SetPropertyValue("_ux_id", texts), 0);
    EXPECT_EQ(tree.SetPropertyView(UXNameKey("_ux_id"), "x"), 0);
    EXPECT_EQ(tree.SetPropertyValue("_ux_ids", 4), 1);

    EXPECT_EQ(to_text(tree), R"(<r _ux_ids="4"></r>)");
}

TEST(Save, AnIdHasNoPlaceBesideALoadedAttributeOfTheReservedName) {
    const TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "<r><a _ux_id='x'/></r>");
    UXXmlWrapperBase root;
    UXXmlWrapperBase a;
    UXXmlWrapperBase copy;
    ASSERT_EQ(root.load(path.c_str(), 0, false), 1);
    ASSERT_EQ(root.FindChild("a", &a, 1), 1);
    ASSERT_EQ(root.AddNodeCopy(&a, 1, &copy), 1);
    ASSERT_EQ(root.Save(path.c_str(), 0), 1);
    EXPECT_THAT(read_file(path), HasSubstr("<r><a _ux_id=\"x\"/><a _ux_id=\"x\"/></r>"));

    a.SetID(4, false);

    EXPECT_EQ(root.Save(path.c_str(), 0), 0);
    EXPECT_THAT(std::string(UXGetLastSaveError()), HasSubstr("/r/a[1]: the ID has no place"));
    EXPECT_THAT(read_file(path), HasSubstr("<a _ux_id=\"x\"/>"));
}

TEST(Save, FailedSaveLeavesTheOldFileWhole) {
    const TemporaryFolder folder;
    TestTree tree("<r>new</r>");

    EXPECT_EQ(tree.Save(folder.path("no/such/folder.xml").c_str(), 0), 0);
    EXPECT_THAT(std::string(UXGetLastSaveError()), HasSubstr("No such file"));
    EXPECT_EQ(tree.Save(folder.path("").c_str(), 0), 0);
    EXPECT_THAT(std::string(UXGetLastSaveError()), HasSubstr("Is a directory"));
    EXPECT_EQ(tree.Save("/dev/full", 0), 0);
    EXPECT_THAT(std::string(UXGetLastSaveError()), HasSubstr("No space left"));
    EXPECT_EQ(std::filesystem::status("/dev/full").type(), std::filesystem::file_type::character);
    EXPECT_EQ(tree.Save(nullptr, 0), 0);
    EXPECT_EQ(tree.Save("", 0), 0);
    EXPECT_EQ(UXXmlWrapperBase().Save(folder.path("f.xml").c_str(), 0), 0);
    EXPECT_THAT(std::string(UXGetLastSaveError()), HasSubstr("no node"));
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(tree.Save(pipe.c_str(), 0), 0);

    EXPECT_THAT(files_in(folder), ElementsAre("pipe"));
}

TEST(Save, FullDiskLosesNothing) {
    const TemporaryFolder folder;
    const std::string mount = folder.path("small");
    std::filesystem::create_directory(mount);
    if (::mount("none", mount.c_str(), "tmpfs", 0, "size=64k") != 0) {
        // Without the right to mount, a device that is always full shows the same path.
        EXPECT_EQ(TestTree("<r>x</r>").Save("/dev/full", 0), 0);
        return;
    }
    TestTree old("<old/>");
    ASSERT_EQ(old.Save((mount + "/f.xml").c_str(), 0), 1);
    TestTree tree("<r/>");
    tree.SetString(std::string(3000000, 'x').c_str());

    const int saved = tree.Save((mount + "/f.xml").c_str(), 0);
    const std::string reason(UXGetLastSaveError());
    const std::string kept = read_file(mount + "/f.xml");
    const auto files = std::distance(std::filesystem::directory_iterator(mount), {});
    umount(mount.c_str());

    EXPECT_EQ(saved, 0);
    EXPECT_THAT(reason, HasSubstr("No space left"));
    EXPECT_EQ(kept, R"(<?xml version="1.0" encoding="UTF-8"?><old/>)");
    EXPECT_EQ(files, 1);
}

TEST(Save, KeepsModeAndLinkOfTheTarget) {
    const TemporaryFolder folder;
    const std::string target = folder.write("real.xml", "old");
    chmod(target.c_str(), 0640);
    std::filesystem::create_symlink("real.xml", folder.path("link.xml"));
    TestTree tree("<r/>");

    EXPECT_EQ(tree.Save(folder.path("link.xml").c_str(), 0), 1);

    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.xml")));
    EXPECT_THAT(read_file(target), HasSubstr("<r/>"));
    struct stat status {};
    stat(target.c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777u, 0640u);
}

TEST(Save, WritesIntoTheCurrentFolderByPlainName) {
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path(""));

    const int saved = TestTree("<r/>").Save("plain.xml", 0);
    std::filesystem::current_path(before);

    EXPECT_EQ(saved, 1);
    EXPECT_THAT(files_in(folder), ElementsAre("plain.xml"));
}

TEST(Save, ManyMegabytesInOneText) {
    const TemporaryFolder folder;
    TestTree tree("<r/>");
    std::string text;
    for (int i = 0; i < 700000; ++i) text += "text & \u20AC ";
    tree.SetString(text.c_str());

    ASSERT_EQ(tree.Save(folder.path("f.xml").c_str(), 0), 1);
    UXXmlWrapperBase read;
    ASSERT_EQ(read.load(folder.path("f.xml").c_str(), 0, false), 1);

    CStringUTF8 back;
    read.NodeValue(back, 1, 1, nullptr);
    EXPECT_EQ(back, text.c_str());
}

}  // namespace
