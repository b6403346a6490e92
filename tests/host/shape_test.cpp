// Very wide and very deep trees, on a thread with a stack of 256 KiB: nothing may recurse with the
// tree's depth, and nothing may search among siblings.

#include <string>

#include <gtest/gtest.h>

#include "uxtree/host/node.h"
#include "uxtree/host/services.h"

#include "support/small_stack.h"
#include "support/test_tree.h"

namespace {

using uxtest::FakeHostServices;
using uxtest::on_small_stack;
using uxtest::TemporaryFolder;

constexpr int kMany = 1000000;

void exercise(UXXmlWrapperBase& root) {
    const TemporaryFolder folder;
    const std::string path = folder.path("f.xml");
    UXXmlWrapperBase clone;
    UXXmlWrapperBase found;
    UXXmlWrapperBase target;
    target.CreateNew(0, "target");

    ASSERT_EQ(root.FindNodeByAttribute(&found, "last", 1, 1), 1);
    ASSERT_EQ(root.Clone(&clone, 1), 1);
    ASSERT_EQ(target.AddNodeCopy(&root, 1, nullptr), 1);
    ASSERT_EQ(target.Replace(&clone, 1, 0, 0), 1);
    ASSERT_EQ(root.Save(path.c_str(), 0), 1);
    UXXmlWrapperBase read;
    ASSERT_EQ(read.load(path.c_str(), 0, false), 1);
    CStringUTF8 before;
    CStringUTF8 after;
    root.GetString(before);
    read.GetString(after);
    ASSERT_TRUE(before == after);
    target.GetString(after);
    ASSERT_EQ(before.GetLength() - 1, after.GetLength() - static_cast<int>(2 * 6 - 1));
    ASSERT_EQ(read.RemoveAllChildren(), 1);
    ASSERT_EQ(target.RemoveNode(), 1);
}

TEST(UXXmlWrapperBase, MillionLevelsCostNoStack) {
    FakeHostServices services;
    services->maxNesting = kMany + 1;
    on_small_stack([] {
        UXXmlWrapperBase root;
        root.CreateNew(0, "r");
        UXXmlWrapperBase node = root;
        for (int i = 0; i < kMany; ++i) node.AddNode(&node, "d", -1);
        node.SetPropertyValue("last", 1);

        exercise(root);

        node.SetString("\x01");
        EXPECT_EQ(root.Save("/dev/null", 0), 0);
        EXPECT_LT(UXGetLastSaveError().GetLength(), 1000);
        int levels = 0;
        while (node.GetParent(&node)) ++levels;
        EXPECT_EQ(levels, kMany);
        root.AddNode(nullptr, "s", -1);
        EXPECT_EQ(root.ArrangeChildContents(uxtest::number_list<int>({1, 0})), 1);
    });
}

TEST(UXXmlWrapperBase, MillionSiblingsCostTimeInProportion) {
    on_small_stack([] {
        UXXmlWrapperBase root;
        root.CreateNew(0, "r");
        UXXmlWrapperBase node;
        for (int i = 0; i < kMany; ++i) root.AddNode(&node, "s", -1);
        node.SetPropertyValue("last", 1);

        exercise(root);

        int count = 0;
        root.FirstChild(&node);
        for (; node.IsNodeValid(); node.NextSibling(&node)) ++count;
        EXPECT_EQ(count, kMany);
        EXPECT_EQ(root.GetChild(&node, kMany - 1), 1);
        EXPECT_EQ(root.SetSizeTrimFromEnd(1), 1);
    });
}

}  // namespace
