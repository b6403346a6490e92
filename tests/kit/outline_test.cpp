#include "uxtree/kit/outline.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/host/node.h"
#include "uxtree/outline/layout.h"

#include "support/generated_xml.h"
#include "support/test_tree.h"

namespace {

using uxtest::TemporaryFolder;
using uxtest::TestTree;
using uxtest::to_text;

TEST(UXOutlineFile, AppendsTheOutline) {
    const TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "<r><a x='1'/><b/><a y=''><c/></a></r>");
    TestTree tree("<t/>");
    UXXmlWrapperBase target = tree.root();

    EXPECT_EQ(UXOutlineFile(&target, path.c_str(), false), 1);

    EXPECT_EQ(
        to_text(target),
        R"(<t><Node Label="r"><Node Label="a"><Attr Label="@x"></Attr><Attr Label="@y"></Attr>)"
        R"(<Node Label="c"></Node></Node><Node Label="b"></Node></Node></t>)");
}

TEST(UXOutlineFile, OfABrokenFileWritesNothingButOnRequest) {
    const TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "<r>\n<a/><b></r>");
    TestTree tree("<t/>");
    UXXmlWrapperBase target = tree.root();

    EXPECT_EQ(UXOutlineFile(&target, path.c_str(), false), 0);
    EXPECT_EQ(to_text(target), "<t></t>");
    EXPECT_EQ(std::string(UXGetLastLoadError()), path + ":2:10: mismatched tag: expected </b>");
    EXPECT_EQ(UXOutlineFile(&target, path.c_str(), true), 0);
    EXPECT_EQ(to_text(target),
              R"(<t><Node Label="r"><Node Label="a"></Node><Node Label="b"></Node></Node></t>)");
}

TEST(UXOutlineFile, RefusesBadArguments) {
    TestTree tree("<t/>");
    UXXmlWrapperBase target = tree.root();
    UXXmlWrapperBase none;

    EXPECT_EQ(UXOutlineFile(nullptr, "f.xml", false), 0);
    EXPECT_EQ(UXOutlineFile(&none, "f.xml", false), 0);
    EXPECT_EQ(UXOutlineFile(&target, nullptr, false), 0);
    EXPECT_EQ(UXOutlineFile(&target, "", true), 0);
    EXPECT_EQ(UXOutlineFile(&target, "/nowhere/f.xml", true), 0);
    EXPECT_EQ(to_text(target), "<t></t>");
}

// What load accepts has the outline of its tree, and what it refuses is refused for the same reason.
TEST(UXOutlineFile, IsTheOutlineOfTheLoadedTree) {
    const TemporaryFolder folder;
    uxtest::GeneratedXml generator(11);
    int accepted = 0;
    constexpr int kDocuments = 300;
    for (int i = 0; i < kDocuments; ++i) {
        const std::string xml = i % 2 == 0 ? generator.document() : generator.document_with_types();
        const std::string path = folder.write("f.xml", xml);
        UXXmlWrapperBase tree;
        TestTree first("<t/>");
        TestTree second("<t/>");
        UXXmlWrapperBase expected = first.root();
        UXXmlWrapperBase found = second.root();
        const int loaded = tree.load(path.c_str(), 0, false);
        const std::string reason(UXGetLastLoadError());
        if (loaded == 1) SAXTreeLayout(&expected, &tree, nullptr, 0);

        ASSERT_EQ(UXOutlineFile(&found, path.c_str(), false), loaded) << xml;
        ASSERT_EQ(std::string(UXGetLastLoadError()), reason) << xml;
        ASSERT_EQ(to_text(found), to_text(expected)) << xml;
        accepted += loaded;
    }
    EXPECT_GT(accepted, kDocuments / 3);
    EXPECT_LT(accepted, kDocuments);
}

}  // namespace
