// Documents that people have, from Debian packages: their outlines must be those that a parser of
// XML gives, wherever the scanner claims as much.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <expat.h>
#include <gtest/gtest.h>

#include "outline/layout_detail.h"
#include "outline/scan_support.h"
#include "support/test_tree.h"

namespace fs = std::filesystem;
using namespace ux;
using namespace uxtest;

namespace {

constexpr const char* kMimeTypes = "/usr/share/mime/packages/freedesktop.org.xml";
constexpr const char* kIsoCodes = "/usr/share/xml/iso-codes";
constexpr const char* kCldr = "/usr/share/unicode/cldr/common";

// An outline of a parser's events, folded without any of the scanner's code.
class ParsedOutline {
public:
    // withDefaults also counts the attributes that only a DTD declares.
    ParsedOutline(const std::string& text, bool withDefaults) : withDefaults_(withDefaults) {
        const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
            XML_ParserCreate(nullptr), XML_ParserFree);
        parser_ = parser.get();
        XML_SetUserData(parser_, this);
        XML_SetElementHandler(
            parser_,
            [](void* self, const char* name, const char** attributes) {
                static_cast<ParsedOutline*>(self)->start(name, attributes);
            },
            [](void* self, const char*) { static_cast<ParsedOutline*>(self)->open_.pop_back(); });
        wellFormed_ =
            XML_Parse(parser_, text.data(), static_cast<int>(text.size()), 1) == XML_STATUS_OK;
    }
    bool well_formed() const { return wellFormed_; }
    std::string text() const { return outline_text(root_); }

private:
    void start(const char* name, const char** attributes) {
        LayoutNode* node = &root_;
        if (open_.empty()) {
            root_.name = name;
        } else {
            auto& children = open_.back()->children;
            const auto found = std::find_if(children.begin(), children.end(),
                                            [&](const auto& child) { return child->name == name; });
            if (found == children.end()) {
                children.push_back(std::make_unique<LayoutNode>());
                node = children.back().get();
                node->name = name;
            } else {
                node = found->get();
            }
        }
        const int specified = XML_GetSpecifiedAttributeCount(parser_);
        for (int i = 0; attributes[i] != nullptr && (withDefaults_ || i < specified); i += 2) {
            node->attributes.try_emplace(attributes[i]);
        }
        open_.push_back(node);
    }

    XML_Parser parser_ = nullptr;
    bool withDefaults_;
    bool wellFormed_ = false;
    LayoutNode root_;
    std::vector<LayoutNode*> open_;
};

std::string parsed(const std::string& text) {
    const ParsedOutline outline(text, false);
    EXPECT_TRUE(outline.well_formed());
    return outline.text();
}

std::string streamed_file(const std::string& path) {
    OutlineBuilder outline;
    outline_streamed_file(path.c_str(), outline);
    return outline_text(outline.root());
}
std::string mapped_file(const std::string& path) {
    OutlineBuilder outline;
    outline_mapped_file(path.c_str(), outline);
    return outline_text(outline.root());
}

// Where the first character of four bytes stands, the text's size when there is none.
std::size_t first_four_byte_character(const std::string& text) {
    const auto found = std::find_if(text.begin(), text.end(), [](char byte) {
        return static_cast<unsigned char>(byte) >= 0xF0;
    });
    return static_cast<std::size_t>(found - text.begin());
}

struct Documents {
    int whole = 0;
    int cutShort = 0;  // where the streamed scan ends before the document does
    int refused = 0;   // by the parser
};

void check_document(const std::string& path, Documents& seen) {
    const std::string text = read_file(path);
    const ParsedOutline outline(text, false);
    if (!outline.well_formed()) {
        ++seen.refused;
        return;
    }
    const std::string expected = outline.text();
    EXPECT_EQ(mapped_file(path), expected) << path;
    const std::size_t end = first_four_byte_character(text);
    if (end == text.size()) {
        EXPECT_EQ(streamed_file(path), expected) << path;
        ++seen.whole;
        return;
    }
    EXPECT_EQ(streamed_file(path), mapped_outline(std::string_view(text).substr(0, end))) << path;
    ++seen.cutShort;
}

Documents check_documents(const char* folder) {
    Documents seen;
    if (!fs::exists(folder)) {
        ADD_FAILURE() << folder << " is missing: scripts/test installs its package";
        return seen;
    }
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file() || entry.path().extension() != ".xml") continue;
        check_document(entry.path(), seen);
    }
    return seen;
}

}  // namespace

TEST(SAXTreeLayout, OutlinesTheMimeTypesWithoutTheirDtdsDefaults) {
    const std::string text = read_file(kMimeTypes);
    ASSERT_FALSE(text.empty()) << "package shared-mime-info is missing: scripts/test installs it";

    Documents seen;
    check_document(kMimeTypes, seen);
    EXPECT_EQ(seen.whole, 1);

    const std::string withDefaults = ParsedOutline(text, true).text();
    EXPECT_NE(withDefaults, parsed(text));
    EXPECT_NE(withDefaults.find("treemagic(priority)"), std::string::npos);
    EXPECT_EQ(streamed_file(kMimeTypes).find("treemagic(priority)"), std::string::npos);
    EXPECT_EQ(mapped_file(kMimeTypes).find("treemagic(priority)"), std::string::npos);
}

TEST(SAXTreeLayout, OutlinesTheIsoCodes) {
    const Documents seen = check_documents(kIsoCodes);
    EXPECT_GT(seen.whole, 5);
    EXPECT_EQ(seen.cutShort, 0);
    EXPECT_EQ(seen.refused, 3);
}

// A bare "&" in a value, which the parser refuses and the scanner reads over.
TEST(SAXTreeLayout, OutlinesTheRegionCodesThatAreNotWellFormed) {
    const std::string path = std::string(kIsoCodes) + "/iso_3166-2.xml";
    ASSERT_FALSE(ParsedOutline(read_file(path), false).well_formed());

    const std::string expected =
        "iso_3166_2_entries[iso_3166_country(code)[iso_3166_subset(type)"
        "[iso_3166_2_entry(code,name,parent)]]]";
    EXPECT_EQ(streamed_file(path), expected);
    EXPECT_EQ(mapped_file(path), expected);
}

TEST(SAXTreeLayout, OutlinesTheLocaleDataUpToFourByteCharactersWhenStreamed) {
    Documents seen;
    for (const char* part : {"annotations", "bcp47", "casing", "segments", "supplemental"}) {
        const Documents found = check_documents((std::string(kCldr) + "/" + part).c_str());
        seen.whole += found.whole;
        seen.cutShort += found.cutShort;
        seen.refused += found.refused;
    }
    EXPECT_EQ(seen.refused, 0);
    EXPECT_GT(seen.whole, 30);
    EXPECT_GT(seen.cutShort, 100);
}

TEST(SAXTreeLayout, EnglishAnnotationsHoldPicturesThatEndTheStreamedScan) {
    const std::string path = std::string(kCldr) + "/annotations/en.xml";
    const std::string text = read_file(path);
    ASSERT_LT(first_four_byte_character(text), text.size());

    EXPECT_EQ(mapped_file(path), parsed(text));
    EXPECT_EQ(streamed_file(path),
              "ldml[identity[version(number) language(type)] "
              "annotations[annotation(cp,type)]]");
}
