// Documents whose long texts stand in a temporary file are like any others.
#include "host/text_file.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "host/loader.h"
#include "host/memory_source.h"
#include "host/node_detail.h"
#include "support/test_tree.h"

namespace {

// Another folder of temporary files.
class TemporaryFilesIn {
public:
    explicit TemporaryFilesIn(const std::string& folder) {
        const char* const before = std::getenv("TMPDIR");
        if (before != nullptr) before_ = before;
        setenv("TMPDIR", folder.c_str(), 1);
    }
    ~TemporaryFilesIn() {
        before_.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", before_.c_str(), 1);
    }
    TemporaryFilesIn(const TemporaryFilesIn&) = delete;
    TemporaryFilesIn& operator=(const TemporaryFilesIn&) = delete;

private:
    std::string before_;
};

std::string numbers_up_to(int last) {
    std::string text;
    for (int i = 0; i <= last; ++i) {
        text += std::to_string(i);
        text += ' ';
    }
    return text;
}

// A document with every long text in a file, or with none.
UXXmlWrapperBase loaded(const std::string& xml, bool inFile) {
    uxhost::LoadOptions options;
    options.mostInMemory = inFile ? 1 : 0;
    std::size_t position = 0;
    UXFileError error;
    const auto document =
        uxhost::load_document(uxhost::memory_source(xml, position), xml.size(), options, error);
    UXXmlWrapperBase root;
    if (document == nullptr) {
        ADD_FAILURE() << error.message;
    } else {
        uxhost::bind(root, document->document, (*document)->root());
    }
    return root;
}

UXXmlWrapperBase child(const UXXmlWrapperBase& parent, int index) {
    UXXmlWrapperBase out;
    EXPECT_EQ(parent.GetChild(&out, index), 1);
    return out;
}

std::size_t memory_of(const UXXmlWrapperBase& node) {
    return uxhost::document_of(node)->memory_bytes();
}

const std::string kLong = numbers_up_to(3000);
const std::string kMixed = "<r>" + kLong + "<a>" + kLong + "</a>&lt;&amp;" + kLong +
                           "<b x='1'>short</b><c><![CDATA[<" + kLong + ">]]></c><d>" +
                           numbers_up_to(200) + "</d></r>";

}  // namespace

TEST(TextFile, ReadsTextsInAnyOrder) {
    uxhost::TextFile file;
    std::vector<std::string> texts;
    std::vector<uxhost::Ref> places;
    for (const int last : {0, 1, 20, 3000, 5, 90000, 7}) {
        texts.push_back(numbers_up_to(last));
        places.push_back(file.add(texts.back()));
    }
    for (const unsigned i : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 2U, 5U, 0U, 6U, 3U}) {
        CStringUTF8 text = "before";
        file.read(places[i], texts[i].size(), text);
        EXPECT_EQ(std::string(text), texts[i]);
    }
}

TEST(TextFile, TakesNothingWithoutAFolder) {
    const TemporaryFilesIn nowhere("/no such folder");
    uxhost::TextFile file;
    EXPECT_EQ(file.add("text"), 0U);
    EXPECT_EQ(file.add("another"), 0U);
}

TEST(TextFile, SaysWhenTheFileHasLessThanItTook) {
    uxhost::TextFile file;
    const uxhost::Ref place = file.add("text");
    CStringUTF8 text;
    try {
        file.read(place, 100, text);
        ADD_FAILURE() << text;
    } catch (const std::bad_alloc& lost) {
        EXPECT_STREQ(lost.what(), "a temporary file cannot be read");
    }
}

TEST(UXLoadLean, KeepsLongTextsOutOfMemory) {
    std::string xml = "<r>";
    for (int i = 0; i < 300; ++i) xml += "<s n='" + std::to_string(i) + "'>" + kLong + "</s>\n";
    for (int i = 0; i < 60; ++i) {
        xml += "<s>" + std::to_string(i) + " " + numbers_up_to(30000) + "</s>\n";
    }
    xml += "</r>";
    const uxtest::TemporaryFolder folder;
    const std::string path = folder.write("f.xml", xml);
    UXXmlWrapperBase plain;
    ASSERT_EQ(plain.load(path.c_str(), 0, false), 1);
    UXXmlWrapperBase lean;
    ASSERT_EQ(UXLoadLean(&lean, path.c_str()), 1);

    EXPECT_GT(memory_of(plain), xml.size());
    EXPECT_LT(memory_of(lean), std::size_t{12} << 20);
    EXPECT_TRUE(uxtest::to_text(lean) == uxtest::to_text(plain));
}

TEST(UXLoadLean, KeepsTextsInMemoryWhenThereIsNoOtherPlace) {
    const TemporaryFilesIn nowhere("/no such folder");
    EXPECT_EQ(uxtest::to_text(loaded(kMixed, true)), uxtest::to_text(loaded(kMixed, false)));
}

TEST(UXLoadLean, FailsLikeLoad) {
    const uxtest::TemporaryFolder folder;
    UXXmlWrapperBase tree = uxtest::TestTree("<kept/>");
    EXPECT_EQ(UXLoadLean(&tree, folder.path("none").c_str()), 0);
    EXPECT_EQ(UXLoadLean(&tree, folder.write("f", "<r>").c_str()), 0);
    EXPECT_GT(UXGetLastLoadFailure().line, 0);
    EXPECT_EQ(UXLoadLean(&tree, nullptr), 0);
    EXPECT_EQ(UXLoadLean(nullptr, folder.write("g", "<r/>").c_str()), 0);
    EXPECT_EQ(uxtest::to_text(tree), uxtest::tree_text("<kept/>"));
}

// By both readers and in other encodings.
TEST(UXLoadLean, MakesTheSameTreeOfEveryDocument) {
    std::string wide = "\xFF\xFE";
    for (const char c : kMixed) wide += {c, '\0'};
    const std::string entity = "<!DOCTYPE r [<!ENTITY e '<e>" + kLong + "</e>" + kLong + "'>]>";
    for (const std::string& xml :
         {kMixed, wide, "<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE4" + kLong + "</r>",
          entity + "<r>&e;" + kLong + "&e;</r>", "<r>\r\n" + std::string(2000, ' ') + "\r\n</r>"}) {
        const UXXmlWrapperBase lean = loaded(xml, true);
        EXPECT_EQ(uxtest::to_text(lean), uxtest::to_text(loaded(xml, false)));
    }
}

TEST(UXLoadLean, LetsNodesBeChangedAndCopied) {
    std::vector<std::string> results;
    for (const bool inFile : {true, false}) {
        UXXmlWrapperBase root = loaded(kMixed, inFile);
        UXXmlWrapperBase a = child(root, 0);
        UXXmlWrapperBase copy;
        ASSERT_EQ(root.AddNodeCopy(&a, 1, &copy), 1);
        ASSERT_EQ(copy.SetString((kLong + "changed").c_str()), 1);
        ASSERT_EQ(root.AddNodeCopy(&a, 1, &copy), 1);
        ASSERT_EQ(a.SetString(std::string(kLong.size(), '<').c_str()), 1);
        UXXmlWrapperBase c = child(root, 2);
        ASSERT_EQ(child(root, 1).Replace(&c, 0, 0, 0), 1);
        ASSERT_EQ(root.ArrangeChildContents(uxtest::number_list<int>({5, 4, 3, 2, 1, 0})), 1);
        UXXmlWrapperBase other = uxtest::TestTree("<other/>");
        ASSERT_EQ(other.AddNodeCopy(&root, 1, nullptr), 1);
        UXXmlWrapperBase clone;
        ASSERT_EQ(root.Clone(&clone, 0), 1);
        CArray<int, int> numbers;
        ASSERT_EQ(child(root, 0).NodeValue(numbers, 1), 1);
        ASSERT_EQ(numbers.GetSize(), 3001);
        ASSERT_EQ(child(root, 1).ResetValue(), 1);
        ASSERT_EQ(child(root, 2).RemoveNode(), 1);
        results.push_back(uxtest::to_text(root) + uxtest::to_text(other) + uxtest::to_text(clone));
    }
    EXPECT_TRUE(results[0] == results[1]);
}
