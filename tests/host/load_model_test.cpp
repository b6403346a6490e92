// Loading against what the parser alone makes of the same bytes: the same tree, or the same reason
// at the same place.
#include <algorithm>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "host/loader.h"
#include "host/node_detail.h"
#include "support/generated_xml.h"
#include "support/test_tree.h"

namespace {

// told is the size that the file had when it was opened.
std::string loaded_with(const std::string& xml, std::size_t told,
                        const uxhost::LoadOptions& options) {
    std::size_t position = 0;
    const ux::xml::ByteSource source{[&](char* buffer, std::size_t size) {
                                         const std::size_t count =
                                             std::min(size, xml.size() - position);
                                         std::copy_n(xml.data() + position, count, buffer);
                                         position += count;
                                         return static_cast<long>(count);
                                     },
                                     [&](std::uint64_t offset) { position = offset; }};
    UXFileError error;
    const auto document = uxhost::load_document(source, told, options, error);
    if (document == nullptr) {
        return "!" + std::to_string(error.line) + ":" + std::to_string(error.column) + ": " +
               std::string(error.message);
    }
    UXXmlWrapperBase root;
    uxhost::bind(root, document->document, (*document)->root());
    return uxtest::to_text(root);
}

TEST(LoadModel, TheReaderChangesNothingOfWhatTheParserMakes) {
    uxtest::GeneratedXml generator(3);
    std::mt19937 random(4);
    uxhost::LoadOptions parser;
    parser.parserAlone = true;
    parser.maxNesting = 5;
    uxhost::LoadOptions both = parser;
    both.parserAlone = false;
    int accepted = 0;
    constexpr int kDocuments = 40000;
    for (int i = 0; i < kDocuments; ++i) {
        const std::string xml = i % 2 == 0 ? generator.document() : generator.document_with_types();
        const std::string expected = loaded_with(xml, xml.size(), parser);
        both.window = random() % 4 == 0 ? 65536 : 16 + random() % 80;
        const std::size_t told = random() % 4 == 0 ? random() % (2 * xml.size() + 2) : xml.size();
        ASSERT_EQ(loaded_with(xml, told, both), expected)
            << "window " << both.window << ", told " << told << ":\n"
            << xml;
        if (expected[0] == '<') ++accepted;
    }
    EXPECT_GT(accepted, kDocuments / 3);
    EXPECT_LT(accepted, kDocuments);
}

}  // namespace
