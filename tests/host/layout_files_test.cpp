// Documents that were loaded for editing, and what became of their files and roots meanwhile.
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"

#include "support/test_tree.h"

namespace {

using testing::HasSubstr;
using uxtest::read_file;
using uxtest::TemporaryFolder;

const std::string kWritten = "<!-- c -->\n<r a='1'>\n  <!-- x -->\n  <x/>\n  <y/>\n</r>\n";

UXXmlWrapperBase opened_for_editing(const std::string& path) {
    UXXmlWrapperBase root;
    EXPECT_EQ(UXLoadForEditing(&root, path.c_str()), 1) << UXGetLastLoadError();
    return root;
}

int save_kept(const UXXmlWrapperBase& node, const std::string& path) {
    return UXSaveAs(&node, path.c_str(), {}, nullptr);
}

TEST(UXSaveAs, HasTheBytesOfAFileThatChangedOrVanished) {
    const TemporaryFolder folder;
    const std::string path = folder.write("t.xml", kWritten);
    UXXmlWrapperBase root = opened_for_editing(path);
    folder.write("t.xml", "<other/>");

    EXPECT_EQ(save_kept(root, path), 1);
    EXPECT_EQ(read_file(path), kWritten);

    std::filesystem::remove(path);
    root.SetPropertyValue("a", 2);
    EXPECT_EQ(save_kept(root, path), 1);
    EXPECT_EQ(read_file(path), "<!-- c -->\n<r a='2'>\n  <!-- x -->\n  <x/>\n  <y/>\n</r>\n");
}

TEST(UXSaveAs, WritesTheSameToAnyPlace) {
    const TemporaryFolder folder;
    UXXmlWrapperBase root = opened_for_editing(folder.write("t.xml", kWritten));
    root.SetPropertyValue("a", 2);
    const std::string first = folder.path("first.xml");
    const std::string second = folder.path("second.xml");

    EXPECT_EQ(save_kept(root, first), 1);
    root.SetPropertyValue("a", 1);
    EXPECT_EQ(save_kept(root, second), 1);

    EXPECT_THAT(read_file(first), HasSubstr("<r a='2'>"));
    EXPECT_EQ(read_file(second), kWritten);
}

TEST(UXSaveAs, RefusesARootThatWasRemoved) {
    const TemporaryFolder folder;
    const std::string path = folder.write("t.xml", kWritten);
    UXXmlWrapperBase root = opened_for_editing(path);
    const UXXmlWrapperBase kept = root;
    root.RemoveNode();

    EXPECT_EQ(save_kept(kept, path), 0);
    EXPECT_STREQ(UXGetLastSaveError(), "there is no node to save");
    EXPECT_EQ(read_file(path), kWritten);
    EXPECT_EQ(UXKeepsLayout(&kept), 0);
}

TEST(UXSaveAs, WritesARootThatWasReplacedBetweenWhatStandsAroundIt) {
    const TemporaryFolder folder;
    const std::string path = folder.write("t.xml", kWritten);
    const UXXmlWrapperBase root = opened_for_editing(path);
    UXXmlWrapperBase other;
    const std::string bytes = "<r b='2'><!-- gone --><z>1</z></r>";
    other.LoadFromMemory(bytes.data(), bytes.size());
    UXXmlWrapperBase target = root;
    ASSERT_EQ(target.Replace(&other, 1, 0, 0), 1);

    EXPECT_EQ(save_kept(root, path), 1) << UXGetLastSaveError();

    UXXmlWrapperBase again = opened_for_editing(path);
    EXPECT_EQ(uxtest::to_text(again), uxtest::to_text(root));
    EXPECT_EQ(read_file(path).substr(0, 11), "<!-- c -->\n");
    EXPECT_EQ(read_file(path).back(), '\n');
}

TEST(UXSaveAs, GivesABranchADeclarationOfItsOwn) {
    const TemporaryFolder folder;
    const std::string path = folder.path("x.xml");
    const UXXmlWrapperBase root = opened_for_editing(folder.write("t.xml", kWritten));
    UXXmlWrapperBase branch;
    root.FirstChild(&branch);

    EXPECT_EQ(save_kept(branch, path), 1);
    EXPECT_EQ(read_file(path), "<?xml version=\"1.0\" encoding=\"UTF-8\"?><x/>");
}

TEST(UXSaveAs, LeavesAFileAloneThatCannotBeReplaced) {
    const TemporaryFolder folder;
    const UXXmlWrapperBase root = opened_for_editing(folder.write("t.xml", kWritten));

    EXPECT_EQ(save_kept(root, folder.path("none/t.xml")), 0);
    EXPECT_THAT(std::string(UXGetLastSaveError()), HasSubstr("No such file"));
    EXPECT_EQ(UXSaveAs(&root, nullptr, {}, nullptr), 0);
    EXPECT_EQ(UXSaveAs(nullptr, folder.path("x").c_str(), {}, nullptr), 0);
}

TEST(UXGetSourceBytes, OutliveTheFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("t.xml", kWritten);
    UXXmlWrapperBase root = opened_for_editing(path);
    std::filesystem::remove(path);
    root.SetPropertyValue("a", 2);
    CStringUTF8 bytes;

    EXPECT_EQ(UXGetSourceBytes(&root, &bytes), 1);
    EXPECT_EQ(std::string(bytes), kWritten);
}

TEST(UXLoadForEditing, RefusesWhatLoadRefuses) {
    const TemporaryFolder folder;
    for (const char* bytes :
         {"", "<r>", "<r></s>", "<r/><r/>", "<r a='1' a='2'/>", "<r>&none;</r>", "<r>\xFF</r>x"}) {
        const std::string path = folder.write("t.xml", bytes);
        UXXmlWrapperBase plain;
        UXXmlWrapperBase edited;
        ASSERT_EQ(plain.load(path.c_str(), 0, false), 0) << bytes;
        const std::string reason(UXGetLastLoadError());

        EXPECT_EQ(UXLoadForEditing(&edited, path.c_str()), 0) << bytes;
        EXPECT_EQ(std::string(UXGetLastLoadError()), reason) << bytes;
        EXPECT_EQ(edited.IsNodeValid(), 0);
    }
}

}  // namespace
