// Where text stands among children.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"

#include "host/layout_support.h"
#include "support/layout_model.h"
#include "support/test_tree.h"

namespace {

using uxtest::edited_document;
using uxtest::LayoutModel;

std::string value_of(UXXmlWrapperBase& node) {
    CStringUTF8 text;
    node.NodeValue(text, 1, 0, nullptr);
    return static_cast<const char*>(text);
}

bool is_blank(const std::string& text) {
    return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

// The node's runs as "text|text", a bar for every child.
std::string runs_of(const UXTextOrder& order, UXXmlWrapperBase& node) {
    std::vector<UXTextRun> runs;
    if (!order.Runs(node, runs)) return "unknown";
    std::string out;
    std::string value = value_of(node);
    int children = 0;
    std::size_t at = 0;
    for (const UXTextRun& run : runs) {
        for (; children < run.childrenBefore; ++children) out += '|';
        out += value.substr(at, run.length);
        at += run.length;
    }
    EXPECT_EQ(at, value.size());
    for (; children < node.GetNodeCount(); ++children) out += '|';
    return out;
}

std::string runs_of(const std::string& bytes) {
    UXXmlWrapperBase root = edited_document(bytes);
    return runs_of(UXTextOrder(root), root);
}

std::string written(const UXTextOrder& order, const UXXmlWrapperBase& node) {
    CStringUTF8 text("untouched");
    const bool known = order.Written(node, text);
    return std::string(known ? "" : "unknown: ") + static_cast<const char*>(text);
}

TEST(UXTextOrder, TellsHowAnElementIsWritten) {
    const UXXmlWrapperBase root =
        edited_document("<!-- a --><r>\r\n <p k='1' >x<!-- b --><b/>&lt;y</p ></r>");
    UXXmlWrapperBase p;
    root.FindChild("p", &p, 1);
    const UXTextOrder order(root);
    EXPECT_EQ(written(order, p), "<p k='1' >x<!-- b --><b/>&lt;y</p >");
    EXPECT_EQ(written(order, root), "<r>\r\n <p k='1' >x<!-- b --><b/>&lt;y</p ></r>");
    EXPECT_EQ(written(UXTextOrder(p), edited_document("<r/>")), "unknown: untouched");
}

TEST(UXTextOrder, TellsHowAnElementOfAnotherEncodingIsWritten) {
    const UXXmlWrapperBase root =
        edited_document("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE9</r>");
    EXPECT_EQ(written(UXTextOrder(root), root), "<r>\xC3\xA9</r>");
}

TEST(UXTextOrder, ElementsThatTheFileDoesNotHaveAreNotWrittenThere) {
    UXXmlWrapperBase root = edited_document("<!DOCTYPE r [<!ENTITY e '<a/>'>]><r>&e;<b/></r>");
    UXXmlWrapperBase a;
    root.FindChild("a", &a, 1);
    UXXmlWrapperBase added;
    root.AddNode(&added, "added", 0);
    const UXTextOrder order(root);
    EXPECT_EQ(written(order, a), "unknown: untouched");
    EXPECT_EQ(written(order, added), "unknown: untouched");
    EXPECT_EQ(written(order, root), "<r>&e;<b/></r>");
}

TEST(UXTextOrder, TellsTheTextBetweenChildren) {
    EXPECT_EQ(runs_of("<p>Hello <b>big</b> world</p>"), "Hello | world");
    EXPECT_EQ(runs_of("<p><b/>x<b/><b/>y</p>"), "|x||y");
    EXPECT_EQ(runs_of("<p>only</p>"), "only");
    EXPECT_EQ(runs_of("<p><b/></p>"), "|");
    EXPECT_EQ(runs_of("<p/>"), "");
}
TEST(UXTextOrder, JoinsWhatStandsBesideCommentsAndSections) {
    EXPECT_EQ(runs_of("<p>a<!-- c -->b<?i?><![CDATA[<c>]]>&amp;<b/>d</p>"), "ab<c>&|d");
}
TEST(UXTextOrder, LeavesOutWhiteSpaceThatTheTreeDoesNotHold) {
    EXPECT_EQ(runs_of("<p>\n  <b/>\n  <b/>x</p>"), "||x");
    EXPECT_EQ(runs_of("<p><b/>&#32;<b/><![CDATA[ ]]></p>"), "| | ");
}
TEST(UXTextOrder, ReadsOtherEncodings) {
    EXPECT_EQ(runs_of("<?xml version='1.0' encoding='ISO-8859-1'?><p>\xE4<b/>\xF6\xFC</p>"),
              "\u00E4|\u00F6\u00FC");
}
TEST(UXTextOrder, ReadsTextsOfEntities) {
    EXPECT_EQ(runs_of("<!DOCTYPE p [<!ENTITY e 'long'>]><p>&e;<b/>x&e;</p>"), "long|xlong");
}
TEST(UXTextOrder, DoesNotKnowAboutElementsOfEntities) {
    EXPECT_EQ(runs_of("<!DOCTYPE p [<!ENTITY e '<b/>y<b/>'>]><p>x&e;z</p>"), "unknown");
}
TEST(UXTextOrder, DoesNotKnowAboutTextInElementsOfEntities) {
    UXXmlWrapperBase root = edited_document("<!DOCTYPE p [<!ENTITY e '<a>y<b/>z</a>'>]><p>&e;</p>");
    UXXmlWrapperBase a;
    root.FindChild("a", &a, 1);
    EXPECT_EQ(runs_of(UXTextOrder(root), a), "unknown");
}
TEST(UXTextOrder, GoesOnElsewhere) {
    UXXmlWrapperBase root = edited_document("<p>a<b/>c</p>");
    UXXmlWrapperBase other = edited_document("<p>d<b/></p>");
    UXTextOrder order(root);
    UXTextOrder moved(std::move(order));
    EXPECT_EQ(runs_of(moved, root), "a|c");
    moved = UXTextOrder(other);
    EXPECT_EQ(runs_of(moved, other), "d|");
    EXPECT_EQ(runs_of(moved, root), "unknown");
}
TEST(UXTextOrder, KnowsNothingOfADocumentLoadedPlainly) {
    const std::string bytes = "<p>a<b/></p>";
    UXXmlWrapperBase root;
    root.LoadFromMemory(bytes.data(), bytes.size());
    const UXTextOrder order(root);
    EXPECT_FALSE(order.IsKnown());
    EXPECT_EQ(runs_of(order, root), "unknown");
    EXPECT_FALSE(UXTextOrder(UXXmlWrapperBase()).IsKnown());
}
TEST(UXTextOrder, ServesItsOwnDocumentOnly) {
    UXXmlWrapperBase root = edited_document("<p>a<b/></p>");
    UXXmlWrapperBase other = edited_document("<p>a<b/></p>");
    const UXTextOrder order(root);
    EXPECT_TRUE(order.IsKnown());
    EXPECT_EQ(runs_of(order, other), "unknown");
    std::vector<UXTextRun> runs;
    EXPECT_FALSE(order.Runs(UXXmlWrapperBase(), runs));
}

// The texts of all elements as a listener hears them; runs that are blank are left out where there
// are children, since the tree may or may not hold them.
class Heard final : public UXXmlEvents {
public:
    void Restart() override {
        open_.clear();
        texts.clear();
    }
    void Start(std::string_view /*name*/, const UXXmlAttribute* /*attributes*/,
               std::size_t /*count*/) override {
        if (!open_.empty()) runs_of_open().emplace_back();
        open_.push_back(texts.size());
        texts.push_back({""});
    }
    void Text(std::string_view text) override { runs_of_open().back() += text; }
    void End() override { open_.pop_back(); }

    std::vector<std::vector<std::string>> texts;  // by element, in order

private:
    std::vector<std::string>& runs_of_open() { return texts[open_.back()]; }
    std::vector<std::size_t> open_;
};

std::string joined(const std::vector<std::string>& runs) {
    std::string out;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        if (i != 0) out += '|';
        if (runs.size() == 1 || !is_blank(runs[i])) out += runs[i];
    }
    return out;
}

std::vector<std::string> split(const std::string& text) {
    std::vector<std::string> runs{""};
    for (const char c : text) {
        if (c == '|') {
            runs.emplace_back();
        } else {
            runs.back() += c;
        }
    }
    return runs;
}

std::vector<std::string> texts_in(const UXTextOrder& order, const UXXmlWrapperBase& root) {
    std::vector<std::string> texts;
    UXXmlWrapperBase node = root;
    do {
        texts.push_back(joined(split(runs_of(order, node))));
    } while (node.NextBelow(root, nullptr, &node) != 0);
    return texts;
}

TEST(UXTextOrder, TellsTheOrderInWhichTheEditedDocumentIsSaved) {
    for (std::uint32_t seed = 0; seed < 1500; ++seed) {
        LayoutModel model(seed);
        UXXmlWrapperBase root = edited_document(model.document());
        for (int i = model.below(5); i > 0; --i) model.edit(root);

        const std::vector<std::string> texts = texts_in(UXTextOrder(root), root);

        CStringUTF8 saved;
        ASSERT_EQ(UXSaveToMemory(&root, &saved, {}, nullptr), 1) << UXGetLastSaveError();
        Heard heard;
        ASSERT_EQ(UXReadXmlFromMemory(saved, static_cast<std::size_t>(saved.GetLength()), &heard),
                  1);
        ASSERT_EQ(texts.size(), heard.texts.size());
        for (std::size_t i = 0; i < texts.size(); ++i) {
            ASSERT_EQ(texts[i], joined(heard.texts[i])) << "seed " << seed << "\n" << saved;
        }
    }
}

}  // namespace
