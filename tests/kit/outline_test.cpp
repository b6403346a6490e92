// Outlines of files.
#include "uxtree/kit/outline.h"

#include <string>
#include <vector>

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
using uxtest::tree_text;

TEST(UXOutlineFile, AppendsTheOutline) {
    const TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "<r><a x='1'/><b/><a y=''><c/></a></r>");
    TestTree target("<t/>");

    EXPECT_EQ(UXOutlineFile(&target, path.c_str(), false), 1);

    EXPECT_EQ(to_text(target),
              tree_text("<t><Node Label='r'><Node Label='a'><Attr Label='@x'/><Attr Label='@y'/>"
                        "<Node Label='c'/></Node><Node Label='b'/></Node></t>"));
}

// Records that look like the one before are foreseen; one that does not folds all the same.
TEST(UXOutlineFile, FoldsRecordsThatRepeat) {
    const TemporaryFolder folder;
    std::string records;
    for (int i = 0; i < 4; ++i) records += "<a x='1' y='2'><b/></a>";
    const std::string path = folder.write("f.xml", "<r>" + records + "<a y='1' z='2'/></r>");
    TestTree target("<t/>");

    EXPECT_EQ(UXOutlineFile(&target, path.c_str(), false), 1);

    EXPECT_EQ(to_text(target),
              tree_text("<t><Node Label='r'><Node Label='a'><Attr Label='@x'/><Attr Label='@y'/>"
                        "<Attr Label='@z'/><Node Label='b'/></Node></Node></t>"));
}

TEST(UXOutlineFile, OfABrokenFileWritesNothingButOnRequest) {
    const TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "<r>\n<a/><b></r>");
    TestTree target("<t/>");

    EXPECT_EQ(UXOutlineFile(&target, path.c_str(), false), 0);
    EXPECT_EQ(std::string(UXGetLastLoadError()), path + ":2:10: mismatched tag: expected </b>");
    EXPECT_EQ(to_text(target), tree_text("<t/>"));
    EXPECT_EQ(UXOutlineFile(&target, path.c_str(), true), 0);
    EXPECT_EQ(to_text(target),
              tree_text("<t><Node Label='r'><Node Label='a'/><Node Label='b'/></Node></t>"));
}

TEST(UXOutlineFile, RefusesBadArguments) {
    TestTree target("<t/>");
    UXXmlWrapperBase none;

    EXPECT_EQ(UXOutlineFile(nullptr, "f.xml", false), 0);
    EXPECT_EQ(UXOutlineFile(&none, "f.xml", false), 0);
    EXPECT_EQ(UXOutlineFile(&target, nullptr, false), 0);
    EXPECT_EQ(UXOutlineFile(&target, "", true), 0);
    EXPECT_EQ(UXOutlineFile(&target, "/nowhere/f.xml", true), 0);
    EXPECT_EQ(to_text(target), tree_text("<t/>"));
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
        UXXmlWrapperBase expected = first;
        UXXmlWrapperBase found = second;
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

// --- several files -----------------------------------------------------------------------------

int outline_files(UXXmlWrapperBase& target, const std::vector<std::string>& files,
                  std::size_t* done = nullptr) {
    std::vector<const char*> paths;
    for (const std::string& file : files) paths.push_back(file.c_str());
    return UXOutlineFiles(&target, paths.data(), paths.size(), done);
}

TEST(UXOutlineFiles, AppendsTheOutlinesTogether) {
    const TemporaryFolder folder;
    TestTree target("<t><x/></t>");
    std::size_t done = 7;

    EXPECT_EQ(
        outline_files(target,
                      {folder.write("1.xml", "<r b='1'><x/></r>"), folder.write("2.xml", "<s/>"),
                       folder.write("3.xml", "<r a='1'><y/><x z='1'/></r>")},
                      &done),
        1);

    EXPECT_EQ(done, 3u);
    EXPECT_EQ(to_text(target),
              R"(<t><x></x><Node Label="r"><Attr Label="@a"></Attr><Attr Label="@b"></Attr>)"
              R"(<Node Label="x"><Attr Label="@z"></Attr></Node><Node Label="y"></Node></Node>)"
              R"(<Node Label="s"></Node></t>)");
    EXPECT_EQ(UXOutlineFiles(&target, nullptr, 0, nullptr), 1);
}

TEST(UXOutlineFiles, TellsTheFileThatIsRefused) {
    const TemporaryFolder folder;
    const std::string good = folder.write("good.xml", "<r><a/></r>");
    const std::string broken = folder.write("broken.xml", "<r>\n<b/><c></r>");
    TestTree target("<t/>");
    UXXmlWrapperBase none;
    std::size_t done = 0;

    EXPECT_EQ(outline_files(target, {good, broken, good}, &done), 0);
    EXPECT_EQ(done, 1u);
    EXPECT_EQ(std::string(UXGetLastLoadError()), broken + ":2:10: mismatched tag: expected </c>");
    EXPECT_EQ(outline_files(target, {good, ""}, &done), 0);
    EXPECT_EQ(outline_files(none, {good}, &done), 0);
    EXPECT_EQ(done, 0u);
    EXPECT_EQ(UXOutlineFiles(nullptr, nullptr, 0, nullptr), 0);
    EXPECT_EQ(UXOutlineFiles(&target, nullptr, 1, nullptr), 0);
    EXPECT_EQ(to_text(target), "<t></t>");
}

TEST(UXOutlineFiles, MakesWhatMergingTheirOutlinesMakes) {
    const TemporaryFolder folder;
    uxtest::GeneratedXml generator(23);
    for (int round = 0; round < 12; ++round) {
        std::vector<std::string> files;
        TestTree expected("<t/>");
        TestTree found("<t/>");
        while (files.size() < 8) {
            const std::string name = std::to_string(files.size()) + ".xml";
            const bool typed = files.size() % 2 == 0;
            const std::string file = folder.write(
                name.c_str(), typed ? generator.document_with_types() : generator.document());
            TestTree one("<t/>");
            if (UXOutlineFile(&one, file.c_str(), false) == 0) continue;
            EXPECT_EQ(UXMergeOutline(&expected, &one), 1);
            files.push_back(file);
        }

        ASSERT_EQ(outline_files(found, files), 1);

        ASSERT_EQ(to_text(found), to_text(expected)) << round;
    }
}

// --- merging -----------------------------------------------------------------------------------

// The outlines of documents below an element "t".
UXXmlWrapperBase outlines_of(const std::vector<std::string>& documents) {
    UXXmlWrapperBase target;
    target.CreateNew(0, "t");
    for (const std::string& xml : documents) {
        TestTree tree(xml.c_str());
        UXXmlWrapperBase one;
        one.CreateNew(0, "t");
        EXPECT_EQ(SAXTreeLayout(&one, &tree, nullptr, 0), 0);
        EXPECT_EQ(UXMergeOutline(&target, &one), 1);
    }
    return target;
}

TEST(UXMergeOutline, AddsWhatIsMissingAtItsPlace) {
    UXXmlWrapperBase target = outlines_of({"<r b='1'><x/><y d='1' f='1'><p/></y></r>"});
    const UXXmlWrapperBase source =
        outlines_of({"<r a='1' c='1'><z/><y f='1' e='1'><q><k g='1'/></q><p h='1'/></y></r>"});

    EXPECT_EQ(UXMergeOutline(&target, &source), 1);

    EXPECT_EQ(to_text(target),
              tree_text("<t><Node Label='r'><Attr Label='@a'/><Attr Label='@b'/>"
                        "<Attr Label='@c'/><Node Label='x'/><Node Label='y'><Attr Label='@d'/>"
                        "<Attr Label='@e'/><Attr Label='@f'/><Node Label='p'>"
                        "<Attr Label='@h'/></Node><Node Label='q'><Node Label='k'>"
                        "<Attr Label='@g'/></Node></Node></Node><Node Label='z'/></Node></t>"));
}

TEST(UXMergeOutline, KeepsDocumentsOfOtherRootsApart) {
    EXPECT_EQ(to_text(outlines_of({"<r/>", "<s/>", "<r><a/></r>"})),
              tree_text("<t><Node Label='r'><Node Label='a'/></Node><Node Label='s'/></t>"));
}

TEST(UXMergeOutline, PassesOverWhatIsNoOutline) {
    UXXmlWrapperBase target = TestTree("<t><other Label='r'/></t>");
    const UXXmlWrapperBase source = TestTree(
        "<s><Attr Label='@a'/><other><Node Label='no'/></other><Node Label='r'>"
        "<Attr Label='a'/><Attr/><other/><Attr Label='@b'/></Node><Node Label='r'/></s>");

    EXPECT_EQ(UXMergeOutline(&target, &source), 1);

    EXPECT_EQ(to_text(target),
              tree_text("<t><other Label='r'/><Node Label='r'><Attr Label='@b'/></Node></t>"));
}

TEST(UXMergeOutline, TakesTargetAndSourceOfOneTree) {
    UXXmlWrapperBase target = outlines_of({"<r a='1'><x><x><y/></x></x></r>"});
    const std::string before = to_text(target);
    EXPECT_EQ(UXMergeOutline(&target, &target), 1);
    EXPECT_EQ(to_text(target), before);

    UXXmlWrapperBase inner;
    target.FirstChild(&inner);
    EXPECT_EQ(UXMergeOutline(&inner, &target), 1);
    EXPECT_EQ(to_text(target),
              tree_text("<t><Node Label='r'><Attr Label='@a'/><Node Label='x'><Node Label='x'>"
                        "<Node Label='y'/></Node></Node><Node Label='r'><Attr Label='@a'/>"
                        "<Node Label='x'><Node Label='x'>"
                        "<Node Label='y'/></Node></Node></Node></Node></t>"));
}

TEST(UXMergeOutline, RefusesUnusableHandles) {
    UXXmlWrapperBase target = outlines_of({"<r/>"});
    const std::string before = to_text(target);
    UXXmlWrapperBase none;

    EXPECT_EQ(UXMergeOutline(nullptr, &target), 0);
    EXPECT_EQ(UXMergeOutline(&target, nullptr), 0);
    EXPECT_EQ(UXMergeOutline(&none, &target), 0);
    EXPECT_EQ(UXMergeOutline(&target, &none), 0);
    EXPECT_EQ(to_text(target), before);
}

// Depth costs no machine stack, and width no time but its own.
TEST(UXMergeOutline, TakesDeepAndWideOutlines) {
    UXXmlWrapperBase target;
    UXXmlWrapperBase source;
    for (UXXmlWrapperBase* top : {&target, &source}) {
        top->CreateNew(0, "t");
        UXXmlWrapperBase node = *top;
        for (int i = 0; i < 50000; ++i) {
            node.AddNode(&node, "Node", -1);
            node.SetPropertyValue("Label", CStringUTF8("d"));
        }
        for (int i = 0; i < 20000; ++i) {
            UXXmlWrapperBase leaf;
            node.AddNode(&leaf, "Node", -1);
            leaf.SetPropertyValue("Label", top == &target ? i : i + 10000);
        }
    }

    EXPECT_EQ(UXMergeOutline(&target, &source), 1);

    UXXmlWrapperBase node = target;
    int depth = 0;
    for (; node.GetNodeCount() == 1; ++depth) node.FirstChild(&node);
    EXPECT_EQ(depth, 50000);
    EXPECT_EQ(node.GetNodeCount(), 30000);
}

// The documents in one file have the outline that their outlines make, in whatever groups.
TEST(UXMergeOutline, IsTheOutlineOfAllDocumentsTogether) {
    uxtest::GeneratedXml generator(7);
    const auto document = [&] {
        for (;;) {
            const std::string xml = generator.document();
            UXXmlWrapperBase tree;
            if (tree.LoadFromMemory(xml.data(), xml.size()) == 1) return to_text(tree);
        }
    };
    for (int i = 0; i < 100; ++i) {
        const std::string a = document();
        const std::string b = document();
        const std::string c = document();
        const auto wrapped = [](const std::string& inner) { return "<w>" + inner + "</w>"; };
        const std::vector<std::string> parts{wrapped(a), wrapped(b), wrapped(c)};

        const UXXmlWrapperBase leftFirst = outlines_of(parts);
        UXXmlWrapperBase rightFirst = outlines_of({parts[0]});
        const UXXmlWrapperBase right = outlines_of({parts[1], parts[2]});
        EXPECT_EQ(UXMergeOutline(&rightFirst, &right), 1);

        const std::string whole = to_text(outlines_of({wrapped(a + b + c)}));
        ASSERT_EQ(to_text(leftFirst), whole) << a << "\n" << b << "\n" << c;
        ASSERT_EQ(to_text(rightFirst), whole) << a << "\n" << b << "\n" << c;
    }
}

}  // namespace
