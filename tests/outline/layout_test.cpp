// Outlines by the forgiving scanner and of trees.
#include "uxtree/outline/layout.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "outline/layout_detail.h"
#include "outline/scan_support.h"
#include "support/small_stack.h"
#include "support/test_tree.h"

using namespace std::string_literals;
using namespace ux;
using namespace uxtest;

namespace {

constexpr DWORD kStreamed = 0;
constexpr DWORD kMapped = 1;
constexpr DWORD kVariants[] = {kStreamed, kMapped};

// What is appended for a file of this text.
std::string written_outline(const std::string& text, DWORD flags) {
    TemporaryFolder folder;
    const std::string path = folder.write("f.xml", text);
    TestTree target("<t/>");
    EXPECT_EQ(SAXTreeLayout(&target, nullptr, path.c_str(), flags), 0);
    return target.text();
}
void expect_outline(const std::string& text, const std::string& entries) {
    for (const DWORD flags : kVariants) {
        EXPECT_EQ(written_outline(text, flags), "<t>" + entries + "</t>") << text << flags;
    }
    for (const std::size_t size : kBlockSizes) {
        EXPECT_EQ(streamed_outline(text, size), handled_outline(text)) << text << size;
    }
}

std::string tree_outline(const char* source) {
    TestTree from(source);
    TestTree target("<t/>");
    EXPECT_EQ(SAXTreeLayout(&target, &from, nullptr, 0), 0);
    return target.text();
}

std::string filtered_outline(const std::string& text, std::vector<const char*> paths) {
    TemporaryFolder folder;
    OutlineBuilder outline;
    outline_mapped_file(folder.write("f.xml", text).c_str(), outline, paths.data(),
                        static_cast<int>(paths.size()));
    return outline_text(outline.root());
}

constexpr const char* kEmpty = "<Node Label=\"\"></Node>";

}  // namespace

// --- folding files -----------------------------------------------------------------------------

TEST(SAXTreeLayout, LeavesOutTheIdsThatAFileCarries) {
    const std::string tag = "<Node Label=\"a\"><Attr Label=\"@k\"></Attr>";
    const std::string attribute = "<Attr Label=\"@_ux_id\"></Attr>";
    const std::string many(100, '0');

    for (const DWORD flags : kVariants) {
        for (const std::string id : {"5", "' 5 '", "-7", "1e3"}) {
            const std::string value = id[0] == '\'' ? id : "\"" + id + "\"";
            EXPECT_EQ(written_outline("<a _ux_id=" + value + " k='1'/>", flags),
                      "<t>" + tag + "</Node></t>")
                << id << flags;
        }
        for (const std::string& text : {"five"s, ""s, "5 5"s, many + "5", "'"s}) {
            EXPECT_EQ(written_outline("<a k='1' _ux_id=\"" + text + "\"/>", flags),
                      "<t><Node Label=\"a\">" + attribute + "<Attr Label=\"@k\"></Attr></Node></t>")
                << text << flags;
        }
        EXPECT_EQ(written_outline("<a k='1'><b _ux_id='5", flags), "<t>" + tag + "</Node></t>");
    }
}

TEST(SAXTreeLayout, FoldsRepeatedSiblingsAndPutsAttributesBeforeChildren) {
    expect_outline("<r><a x=\"1\"/><b/><a y=\"2\"><c/></a></r>",
                   "<Node Label=\"r\">"
                   "<Node Label=\"a\"><Attr Label=\"@x\"></Attr><Attr Label=\"@y\"></Attr>"
                   "<Node Label=\"c\"></Node></Node>"
                   "<Node Label=\"b\"></Node></Node>");
}

TEST(SAXTreeLayout, SortsAttributesByTheirBytes) {
    expect_outline("<r z='' b='' \xC3\xA4='' B='' ba='' _=''/>",
                   "<Node Label=\"r\"><Attr Label=\"@B\"></Attr><Attr Label=\"@_\"></Attr>"
                   "<Attr Label=\"@b\"></Attr><Attr Label=\"@ba\"></Attr><Attr Label=\"@z\"></Attr>"
                   "<Attr Label=\"@\xC3\xA4\"></Attr></Node>");
}

TEST(SAXTreeLayout, FoldsWhatStoodUnderDifferentParentsOfOneEntry) {
    expect_outline(
        "<r><a><b x=''/></a><a><b y=''/><c/></a><b/></r>",
        "<Node Label=\"r\"><Node Label=\"a\"><Node Label=\"b\"><Attr Label=\"@x\"></Attr>"
        "<Attr Label=\"@y\"></Attr></Node><Node Label=\"c\"></Node></Node>"
        "<Node Label=\"b\"></Node></Node>");
}

TEST(SAXTreeLayout, MismatchedEndTagLeavesTheElementOpen) {
    expect_outline("<r><a></b><c/></r></a><d/></r>",
                   "<Node Label=\"r\"><Node Label=\"a\"><Node Label=\"c\"></Node></Node>"
                   "<Node Label=\"d\"></Node></Node>");
}

TEST(SAXTreeLayout, SecondTopLevelElementRenamesTheRootAndKeepsTheRest) {
    expect_outline("<r x=''><a/></r><s y=''><b/></s>",
                   "<Node Label=\"s\"><Attr Label=\"@x\"></Attr><Attr Label=\"@y\"></Attr>"
                   "<Node Label=\"a\"></Node><Node Label=\"b\"></Node></Node>");
}

TEST(SAXTreeLayout, SecondTopLevelElementMayTakeTheRootsNameAway) {
    expect_outline("<r><a/></r><>", "<Node Label=\"\"><Node Label=\"a\"></Node></Node>");
}

TEST(SAXTreeLayout, ElementWithTheRootsNameInsideIsAnEntryOfItsOwn) {
    expect_outline("<r><r/></r>", "<Node Label=\"r\"><Node Label=\"r\"></Node></Node>");
}

TEST(SAXTreeLayout, NamelessElementsAreEntries) {
    expect_outline("<r><><b/></r>",
                   "<Node Label=\"r\"><Node Label=\"\"><Node Label=\"b\"></Node></Node></Node>");
}

TEST(SAXTreeLayout, WritesWhatStoodBeforeASyntaxError) {
    expect_outline("<r><a/><b x=1/><c/></r>", "<Node Label=\"r\"><Node Label=\"a\"></Node></Node>");
}

TEST(SAXTreeLayout, UnfinishedTagLeavesNoTrace) {
    expect_outline("<r><a x=''/><a y='' z",
                   "<Node Label=\"r\"><Node Label=\"a\">"
                   "<Attr Label=\"@x\"></Attr></Node></Node>");
    expect_outline("<r><a/></r><s", "<Node Label=\"r\"><Node Label=\"a\"></Node></Node>");
}

TEST(SAXTreeLayout, UndecodableBytesEndOnlyTheStreamedScan) {
    const std::string kText = "<r><a/>\xF0\x9F\x93\x88<b/></r>";
    EXPECT_EQ(written_outline(kText, kStreamed),
              "<t><Node Label=\"r\"><Node Label=\"a\"></Node></Node></t>");
    EXPECT_EQ(written_outline(kText, kMapped),
              "<t><Node Label=\"r\"><Node Label=\"a\"></Node><Node Label=\"b\"></Node></Node></t>");
}

TEST(SAXTreeLayout, NulIsAnOrdinaryByteOfAMappedFile) {
    EXPECT_EQ(written_outline("<r>\0<b/></r>"s, kStreamed), "<t><Node Label=\"r\"></Node></t>");
    EXPECT_EQ(written_outline("<r>\0<b/></r>"s, kMapped),
              "<t><Node Label=\"r\"><Node Label=\"b\"></Node></Node></t>");
}

TEST(SAXTreeLayout, OnlyBitZeroOfTheFlagsCounts) {
    const std::string kText = "<r>\xF0\x9F\x93\x88<b/></r>";
    EXPECT_EQ(written_outline(kText, 0xFFFFFFFEu), written_outline(kText, kStreamed));
    EXPECT_EQ(written_outline(kText, 0xFFFFFFFFu), written_outline(kText, kMapped));
}

TEST(SAXTreeLayout, ForeseesNothingThatDoesNotCome) {
    // Elements and attributes that change places, go missing and come back.
    RandomText random(5);
    for (int round = 0; round < 300; ++round) {
        std::string text = "<r>";
        for (int i = 0; i < 30; ++i) {
            static const char* const kTags[] = {"a", "ab", "abcdefghijklmnop", "abcdefghijklmnopq"};
            const char* const tag = kTags[random.below(4)];
            text += std::string("<") + tag;
            for (std::uint32_t k = random.below(5); k > 0; --k) {
                text += std::string(1 + random.below(2), ' ') + kTags[random.below(4)];
                text += random.below(2) == 0 ? "='\"'" : "=\"'\"";
            }
            text += random.below(2) == 0 ? "/>" : ">";
            if (random.below(2) == 0) text += std::string("</") + tag + (i % 5 == 0 ? " >" : ">");
        }
        const std::string expected = handled_outline(text);
        for (const std::size_t size : kBlockSizes)
            ASSERT_EQ(streamed_outline(text, size), expected);
        ASSERT_EQ(mapped_outline(text), expected);
    }
}

// --- files that cannot be read -----------------------------------------------------------------

TEST(SAXTreeLayout, WritesOneEmptyEntryForAFileThatCannotBeRead) {
    TemporaryFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const DWORD flags : kVariants) {
        for (const std::string& path :
             {folder.path("missing"), folder.path("."), pipe, ""s, folder.write("empty.xml", "")}) {
            TestTree target("<t><kept/></t>");

            EXPECT_EQ(SAXTreeLayout(&target, nullptr, path.c_str(), flags), 0) << path;

            EXPECT_EQ(target.text(), "<t><kept></kept>"s + kEmpty + "</t>") << path;
        }
    }
}

TEST(SAXTreeLayout, MapsFilesThatFillTheirPages) {
    for (const std::size_t size : {4096u, 8192u, 65536u}) {
        std::string text = "<r><a/>";
        text.append(size - text.size() - 4, ' ');
        text += "<b/>";
        expect_outline(text,
                       "<Node Label=\"r\"><Node Label=\"a\"></Node><Node Label=\"b\"></Node>"
                       "</Node>");
        text.replace(text.size() - 4, 4, "<abc");
        expect_outline(text, "<Node Label=\"r\"><Node Label=\"a\"></Node></Node>");
    }
}

// --- arguments ---------------------------------------------------------------------------------

TEST(SAXTreeLayout, NothingToOutlineIsFoundBeforeAnInvalidTarget) {
    TestTree tree("<t/>");
    UXXmlWrapperBase invalid;
    EXPECT_EQ(SAXTreeLayout(&invalid, nullptr, nullptr, 0), 1);
    EXPECT_EQ(tree.text(), tree_text("<t/>"));
}

TEST(SAXTreeLayout, InvalidTargetGives2) {
    TestTree tree("<t/>");
    UXXmlWrapperBase invalid;
    EXPECT_EQ(SAXTreeLayout(&invalid, &tree, nullptr, 0), 2);
    EXPECT_EQ(SAXTreeLayout(&invalid, &invalid, nullptr, 0), 2);
    EXPECT_EQ(tree.text(), tree_text("<t/>"));
}

TEST(SAXTreeLayout, AppendsOneNodeAndKeepsWhatIsThere) {
    TestTree target("<t a='1'>text<x/></t>");
    TestTree source("<s/>");

    EXPECT_EQ(SAXTreeLayout(&target, &source, nullptr, 0), 0);
    EXPECT_EQ(SAXTreeLayout(&target, &source, nullptr, 0), 0);

    EXPECT_EQ(target.text(), tree_text("<t a='1'>text<x/><Node Label='s'/><Node Label='s'/></t>"));
}

TEST(uxtree_layout, PassesItsArgumentsOn) {
    TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "<r>\xF0\x9F\x93\x88<b/></r>");
    TestTree target("<t/>");

    EXPECT_EQ(uxtree_layout(&target, nullptr, path.c_str(), kMapped), 0);
    EXPECT_EQ(target.text(), tree_text("<t><Node Label='r'><Node Label='b'/></Node></t>"));
}

// --- trees -------------------------------------------------------------------------------------

TEST(SAXTreeLayout, FoldsATreeAsItFoldsItsText) {
    const char* const kText =
        "<r z='' b=''><a x='1'>t</a><b/><a y='2'><c><d/></c></a><c e=''/></r>";
    EXPECT_EQ(tree_outline(kText), written_outline(kText, kStreamed));
}

TEST(SAXTreeLayout, FoldsRandomTreesAsTheirTexts) {
    RandomText random(6);
    for (int round = 0; round < 200; ++round) {
        const std::string text = random.document(0);
        ASSERT_EQ(handled_outline(text), streamed_outline(text, 65536));
        UXXmlWrapperBase tree;
        if (tree.LoadFromMemory(text.data(), text.size()) == 0) continue;  // repeated attributes
        OutlineBuilder outline;
        outline_tree(tree, outline);
        ASSERT_EQ(outline_text(outline.root()), handled_outline(text)) << text;
    }
}

TEST(SAXTreeLayout, OutlinesABranchWithoutItsSurroundings) {
    TestTree tree("<r><a x=''><b/></a><c/></r>");
    UXXmlWrapperBase branch = tree.at("a");
    TestTree target("<t/>");

    EXPECT_EQ(SAXTreeLayout(&target, &branch, nullptr, 0), 0);

    EXPECT_EQ(target.text(),
              tree_text("<t><Node Label='a'><Attr Label='@x'/><Node Label='b'/></Node></t>"));
}

TEST(SAXTreeLayout, SourceWinsOverTheFileName) {
    TemporaryFolder folder;
    const std::string path = folder.write("f.xml", "<file/>");
    TestTree source("<s/>");
    for (const DWORD flags : kVariants) {
        TestTree target("<t/>");
        EXPECT_EQ(SAXTreeLayout(&target, &source, path.c_str(), flags), 0);
        EXPECT_EQ(target.text(), tree_text("<t><Node Label='s'/></t>"));
    }
}

TEST(SAXTreeLayout, SourceMayBeTheTarget) {
    TestTree tree("<r><a x=''/></r>");

    EXPECT_EQ(SAXTreeLayout(&tree, &tree, nullptr, 0), 0);

    EXPECT_EQ(tree.text(), tree_text("<r><a x=''/><Node Label='r'><Node Label='a'>"
                                     "<Attr Label='@x'/></Node></Node></r>"));
}

// --- size --------------------------------------------------------------------------------------

TEST(SAXTreeLayout, VeryManyOpenTagsNeedNoStack) {
    constexpr unsigned kTags = 200000;
    std::string text;
    for (unsigned i = 0; i < kTags; ++i) text += i % 2 == 0 ? "<a>" : "<b x=''>";
    TemporaryFolder folder;
    const std::string path = folder.write("f.xml", text);
    on_small_stack([&] {
        UXXmlWrapperBase target;
        target.CreateNew(0, "t");
        EXPECT_EQ(SAXTreeLayout(&target, nullptr, path.c_str(), kStreamed), 0);
        OutlineBuilder outline;
        outline_tree(target, outline);
        EXPECT_EQ(outline.root().children.size(), 1u);
        OutlineBuilder mapped;
        outline_mapped_file(path.c_str(), mapped);
        EXPECT_EQ(mapped.root().children.size(), 1u);
        LayoutHandler handler;
        SaxFileReader reader(path.c_str());
        SaxScanner(reader).scan(handler);
        EXPECT_EQ(handler.nameStack().size(), kTags);
    });
}

TEST(SAXTreeLayout, VeryManyDistinctChildrenKeepTheirOrder) {
    constexpr int kChildren = 100000;
    std::string text = "<r>";
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < kChildren; ++i) {
            text += "<n" + std::to_string(i) + (round == 0 ? "/>" : " x=''/>");
        }
    }
    OutlineBuilder outline;
    SaxFileReader reader = SaxFileReader::of_bytes(text);
    SaxScanner scanner(reader);
    LayoutHandler handler;
    scanner.scan(handler);
    TemporaryFolder folder;
    outline_mapped_file(folder.write("f.xml", text).c_str(), outline);
    for (const LayoutNode* root : {&handler.root(), &outline.root()}) {
        ASSERT_EQ(root->children.size(), static_cast<std::size_t>(kChildren));
        for (int i = 0; i < kChildren; ++i) {
            const LayoutNode& child = *root->children[static_cast<std::size_t>(i)];
            ASSERT_EQ(child.name, "n" + std::to_string(i));
            ASSERT_EQ(child.attributes.size(), 1u);
        }
    }
}

TEST(SAXTreeLayout, VeryManyDistinctAttributesAreKept) {
    std::string text = "<r>";
    for (int i = 0; i < 100000; ++i) {
        text += "<a n" + std::to_string(i) + "='' n" + std::to_string(i / 2) + "=''/>";
    }
    for (const std::size_t size : {std::size_t{64}, std::size_t{65536}}) {
        SaxFileReader reader = SaxFileReader::of_bytes(text, size);
        LayoutHandler handler;
        SaxScanner(reader).scan(handler);
        EXPECT_EQ(handler.root().children[0]->attributes.size(), 100000u);
    }
}

// --- the handler -------------------------------------------------------------------------------

TEST(LayoutHandler, EndThatDoesNotFitChangesNothing) {
    LayoutHandler handler;
    EXPECT_FALSE(handler.endElement("r"));
    EXPECT_TRUE(handler.startElement("r", {"b", "a", "b"}));
    EXPECT_FALSE(handler.endElement("R"));
    EXPECT_EQ(handler.nameStack(), std::vector<std::string>{"r"});
    EXPECT_TRUE(handler.startElement("c", {}));
    EXPECT_TRUE(handler.endElement("c"));
    EXPECT_TRUE(handler.endElement("r"));
    EXPECT_TRUE(handler.nameStack().empty());
    EXPECT_EQ(outline_text(handler.root()), "r(a,b)[c]");
}

// --- lists of paths ----------------------------------------------------------------------------

TEST(outline_mapped_file, KeepsTheWayToListedPathsAndWhatIsBelow) {
    const char* const kText = "<r q=''><a x=''><b><c/></b><d/></a><e/><a y=''><b><f/></b></a></r>";
    EXPECT_EQ(filtered_outline(kText, {}), "r(q)[a(x,y)[b[c f] d] e]");
    EXPECT_EQ(filtered_outline(kText, {"r"}), "r(q)[a(x,y)[b[c f] d] e]");
    EXPECT_EQ(filtered_outline(kText, {"r|a|b"}), "r(q)[a(x,y)[b[c f]]]");
    EXPECT_EQ(filtered_outline(kText, {"r|a|b|c"}), "r(q)[a(x,y)[b[c]]]");
    EXPECT_EQ(filtered_outline(kText, {"r|e", "r|a|d"}), "r(q)[a(x,y)[d] e]");
    EXPECT_EQ(filtered_outline(kText, {"r|a|b", "r|a"}), "r(q)[a(x,y)[b[c f] d]]");
    EXPECT_EQ(filtered_outline(kText, {"r|x"}), "r(q)");
    EXPECT_EQ(filtered_outline(kText, {"a"}), "");
    EXPECT_EQ(filtered_outline(kText, {"r|"}), "r(q)");
    EXPECT_EQ(filtered_outline(kText, {nullptr}), "");
}

TEST(outline_mapped_file, EndTagsInWhatIsLeftOutCloseOnlyThat) {
    EXPECT_EQ(filtered_outline("<r><x><a></y></x></a></x><a/></r>", {"r|a"}), "r[a]");
    EXPECT_EQ(filtered_outline("<r><x></r><a/></x><a/></r>", {"r|a"}), "r[a]");
    EXPECT_EQ(filtered_outline("<x/><x></x><r><a></b><b/></a></r>", {"r|a"}), "r[a[b]]");
}
