// What must hold of every document that is edited and saved with its layout, tried at random.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"

#include "host/layout_support.h"
#include "support/layout_model.h"
#include "support/test_tree.h"
#include "xml/layout_scan.h"

namespace {

using uxtest::edited_document;
using uxtest::EncodedDocument;
using uxtest::FileForm;
using uxtest::LayoutModel;
using uxtest::to_text;

constexpr std::uint32_t kDocuments = 2000;

std::string kept_bytes(const UXXmlWrapperBase& root, UXSaveIds ids = UXSaveIds::kWrite) {
    CStringUTF8 out;
    UXSaveOptions options;
    options.ids = ids;
    EXPECT_EQ(UXSaveToMemory(&root, &out, options, nullptr), 1) << UXGetLastSaveError();
    return {static_cast<const char*>(out), static_cast<std::size_t>(out.GetLength())};
}

TEST(UXSaveToMemory, GivesAnUnchangedDocumentItsBytes) {
    for (std::uint32_t seed = 0; seed < kDocuments; ++seed) {
        const std::string bytes = LayoutModel(seed).encoded_document().bytes;
        ASSERT_EQ(kept_bytes(edited_document(bytes)), bytes) << "seed " << seed;
    }
}

// What fuzzing found interesting: each document is saved as it was read, and an edit of its root as
// the edited tree.
TEST(UXSaveToMemory, KeepsTheDocumentsOfTheFuzzers) {
    const std::filesystem::path corpus = uxtest::source_path("fuzz/corpus");
    int documents = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(corpus)) {
        if (!entry.is_regular_file()) continue;
        const std::string bytes = uxtest::read_file(entry.path().string());
        UXXmlWrapperBase root;
        if (UXLoadForEditingFromMemory(&root, bytes.data(), bytes.size()) == 0) continue;
        SCOPED_TRACE(entry.path().string());
        ++documents;
        ASSERT_EQ(kept_bytes(root), bytes);
        ASSERT_EQ(root.SetPropertyValue("edited", "yes"), 1);
        const std::string edited = kept_bytes(root);
        EXPECT_NE(edited, bytes);
        EXPECT_EQ(to_text(edited_document(edited)), to_text(root));
    }
    EXPECT_GT(documents, 10);
}

TEST(UXSaveToMemory, AnIdThatIsNoneStays) {
    const std::string bytes = "<r _ux_id='-1' a='1'><b _ux_id='007'/></r>";
    UXXmlWrapperBase root = edited_document(bytes);
    EXPECT_EQ(kept_bytes(root, UXSaveIds::kAsDocument), bytes);
    root.SetID(4, true);
    EXPECT_EQ(kept_bytes(root), "<r _ux_id='4' a='1'><b _ux_id='007'/></r>");
}

// A name that the encoding lacks is what may be refused.
bool has_unwritable_name(const std::string& document, const UXXmlWrapperBase& root) {
    return document.find("US-ASCII") != std::string::npos &&
           to_text(root).find("\u00FC") != std::string::npos;
}

TEST(UXSaveToMemory, WhatIsSavedReadsAsTheEditedTree) {
    int refused = 0;
    for (std::uint32_t seed = 0; seed < kDocuments; ++seed) {
        LayoutModel model(seed);
        const std::string before = model.encoded_document().bytes;
        UXXmlWrapperBase root = edited_document(before);
        for (int i = model.below(6); i >= 0; --i) model.edit(root);
        if (has_unwritable_name(before, root)) {
            CStringUTF8 out;
            ASSERT_EQ(UXSaveToMemory(&root, &out, {}, nullptr), 0) << "seed " << seed;
            ++refused;
            continue;
        }

        const std::string after = kept_bytes(root);

        const UXXmlWrapperBase again = edited_document(after);
        ASSERT_EQ(to_text(again), to_text(root)) << "seed " << seed << "\n"
                                                 << before << "\n--- became\n"
                                                 << after;
        ASSERT_EQ(kept_bytes(again), after) << "seed " << seed;
        ASSERT_EQ(kept_bytes(root), after) << "seed " << seed;
    }
    EXPECT_LT(refused, static_cast<int>(kDocuments / 10));
}

TEST(UXSaveToMemory, SavesTheCloneOfADocumentAsTheDocument) {
    for (std::uint32_t seed = 0; seed < kDocuments / 10; ++seed) {
        LayoutModel model(seed);
        UXXmlWrapperBase root = edited_document(model.document());
        for (int i = model.below(4); i > 0; --i) model.edit(root);
        UXXmlWrapperBase clone;
        root.Clone(&clone, 0);

        ASSERT_EQ(kept_bytes(clone), kept_bytes(root)) << "seed " << seed;
    }
}

// Not asked for, nothing of it is there: the plain form is the same from either load.
TEST(UXSaveToMemory, WritesTheTreeAloneAsIfItHadBeenLoadedPlainly) {
    UXSaveOptions plain;
    plain.form = UXSaveForm::kPlain;
    for (std::uint32_t seed = 0; seed < kDocuments / 3; ++seed) {
        const std::string bytes = LayoutModel(seed).encoded_document().bytes;
        UXXmlWrapperBase loaded;
        ASSERT_EQ(loaded.LoadFromMemory(bytes.data(), bytes.size()), 1);
        ASSERT_EQ(UXKeepsLayout(&loaded), 0);
        CStringUTF8 expected;
        CStringUTF8 found;
        const UXXmlWrapperBase edited = edited_document(bytes);

        ASSERT_EQ(UXSaveToMemory(&loaded, &expected, {}, nullptr), 1);
        ASSERT_EQ(UXSaveToMemory(&edited, &found, plain, nullptr), 1);
        ASSERT_EQ(std::string(found), std::string(expected)) << "seed " << seed;
    }
}

// --- where the bytes differ ----------------------------------------------------------------------

// Every other document is in UTF-8.
FileForm form_of(std::uint32_t seed, LayoutModel& model) {
    return seed % 2 == 0 ? uxtest::kUtf8Form : model.form();
}

std::string kept_text(const UXXmlWrapperBase& root, const EncodedDocument& before) {
    const std::optional<std::string> text = ux::xml::to_utf8(kept_bytes(root), before.encoding);
    EXPECT_TRUE(text.has_value());
    return text.value_or("");
}

std::string story_of(std::uint32_t seed, const EncodedDocument& before, const std::string& after) {
    std::string story = "seed ";
    story.append(std::to_string(seed)).append("\n").append(before.text);
    return story.append("\n--- became\n").append(after);
}

// A document and one of its elements. Nodes have the numbers of their start tags.
struct Chosen {
    explicit Chosen(std::uint32_t seed) : model(seed) {
        const FileForm form = form_of(seed, model);
        before = uxtest::encoded(model.document(form), form);
        ux::xml::ScannedDocument scanned;
        EXPECT_TRUE(scan_document(before.text, {}, scanned));
        const int number = model.below(static_cast<int>(scanned.elements.size()));
        place = scanned.elements[static_cast<std::size_t>(number)];
        node = root = edited_document(before.bytes);
        for (int i = 0; i < number; ++i) node.NextBelow(root, nullptr, &node);
    }

    LayoutModel model;
    EncodedDocument before;
    ux::xml::ScannedElement place;
    UXXmlWrapperBase root;
    UXXmlWrapperBase node;
};

struct Interval {
    std::size_t begin;
    std::size_t end;
};

// Do the bytes differ within one interval of the old ones alone?
bool differ_within(const std::string& before, const std::string& after, Interval inside) {
    const std::size_t behind = before.size() - inside.end;
    return after.size() >= inside.begin + behind &&
           after.compare(0, inside.begin, before, 0, inside.begin) == 0 &&
           after.compare(after.size() - behind, behind, before, inside.end, behind) == 0;
}

// Changes an attribute or the text of the element. Yields where it is written; nothing when there is
// none.
std::optional<Interval> change_somewhere(Chosen& chosen) {
    ux::xml::ScannedTag tag;
    EXPECT_TRUE(scan_tag(chosen.before.text, chosen.place.begin, tag));
    if (!tag.attributes.empty() && chosen.model.chance(50)) {
        const int number = chosen.model.below(static_cast<int>(tag.attributes.size()));
        const ux::xml::ScannedAttribute& attribute =
            tag.attributes[static_cast<std::size_t>(number)];
        const std::string name =
            chosen.before.text.substr(attribute.nameBegin, attribute.nameEnd - attribute.nameBegin);
        if (name == "_ux_id") return {};
        chosen.node.SetPropertyValue(name.c_str(), CStringUTF8(chosen.model.value().c_str()));
        return Interval{attribute.valueBegin, attribute.valueEnd};
    }
    if (chosen.node.GetNodeCount() != 0 || tag.empty) return {};
    chosen.node.SetString(chosen.model.value().c_str());
    return Interval{tag.end, chosen.before.text.rfind('<', chosen.place.end - 1)};
}

TEST(UXSaveToMemory, AChangedAttributeOrTextDiffersWithinItself) {
    int tried = 0;
    for (std::uint32_t seed = 0; seed < 2 * kDocuments; ++seed) {
        Chosen chosen(seed);
        const std::optional<Interval> inside = change_somewhere(chosen);
        if (!inside) continue;
        ++tried;

        const std::string after = kept_text(chosen.root, chosen.before);

        ASSERT_TRUE(differ_within(chosen.before.text, after, *inside))
            << story_of(seed, chosen.before, after);
    }
    EXPECT_GT(tried, static_cast<int>(2 * kDocuments / 3));
}

bool is_line_start(const std::string& text, std::size_t at) {
    return at > 0 && (text[at - 1] == '\n' || (text[at - 1] == '\r' && text[at] != '\n'));
}
// Nothing but white space and comments?
bool is_aside(std::string text) {
    for (std::size_t at; (at = text.find("<!--")) != std::string::npos;) {
        const std::size_t end = text.find("-->", at);
        if (end == std::string::npos) return false;
        text.erase(at, end + 3 - at);
    }
    return ux::xml::is_blank(std::string_view(text));
}

// Is it the old text without whole lines, which hold the element, and comments and blanks besides?
bool is_without_lines(const std::string& before, const std::string& after, Interval element) {
    if (after.size() >= before.size()) return false;
    const std::size_t length = before.size() - after.size();
    for (std::size_t begin = element.begin; begin > 0; --begin) {
        const std::size_t end = begin + length;
        if (end < element.end || end > before.size()) continue;
        if (!is_line_start(before, begin) || !is_line_start(before, end)) continue;
        if (before.substr(0, begin) + before.substr(end) != after) continue;
        return is_aside(before.substr(begin, element.begin - begin)) &&
               is_aside(before.substr(element.end, end - element.end));
    }
    return false;
}

// Does the element stand on lines of its own, with nothing but comments besides?
bool stands_alone(const std::string& text, Interval element) {
    std::size_t line = element.begin;
    while (text[line - 1] == ' ' || text[line - 1] == '\t') --line;
    const std::size_t end = std::min(text.find_first_of("\r\n", element.end), text.size());
    return is_line_start(text, line) && end < text.size() &&
           is_aside(text.substr(element.end, end - element.end));
}

TEST(UXSaveToMemory, ARemovedElementTakesWholeLines) {
    int tried = 0;
    for (std::uint32_t seed = 0; seed < 2 * kDocuments; ++seed) {
        Chosen chosen(seed);
        UXXmlWrapperBase parent;
        if (chosen.node.GetParent(&parent) == 0 || parent.GetNodeCount() < 2) continue;
        CStringUTF8 text;
        if (parent.NodeValue(text, 1, 0, nullptr) != 0) continue;  // mixed content
        const Interval element = {chosen.place.begin, chosen.place.end};
        if (!stands_alone(chosen.before.text, element)) continue;
        ++tried;

        chosen.node.RemoveNode();

        const std::string after = kept_text(chosen.root, chosen.before);
        ASSERT_TRUE(is_without_lines(chosen.before.text, after, element))
            << story_of(seed, chosen.before, after);
    }
    EXPECT_GT(tried, static_cast<int>(kDocuments / 4));
}

// Comments and instructions, in whatever order.
std::vector<std::string> asides_of(const std::string& text) {
    std::vector<std::string> found;
    for (std::size_t at = 0; (at = text.find('<', at)) != std::string::npos;) {
        const bool isComment = text.compare(at, 4, "<!--") == 0;
        const bool isSection = text.compare(at, 9, "<![CDATA[") == 0;
        const bool isInstruction = text.compare(at, 2, "<?") == 0;
        const char* const mark = isComment ? "-->" : isSection ? "]]>" : isInstruction ? "?>" : "<";
        const std::size_t end = text.find(mark, at + 1);
        if (isComment || isInstruction) found.push_back(text.substr(at, end - at));
        at = end;
    }
    std::sort(found.begin(), found.end());
    return found;
}

TEST(UXSaveToMemory, KeepsEveryCommentWhenNothingIsRemoved) {
    std::size_t comments = 0;
    for (std::uint32_t seed = 0; seed < 2 * kDocuments; ++seed) {
        LayoutModel model(seed);
        const FileForm form = form_of(seed, model);
        const EncodedDocument before = uxtest::encoded(model.document(form), form);
        UXXmlWrapperBase root = edited_document(before.bytes);
        for (int i = model.below(6); i >= 0; --i) model.edit_gently(root);
        if (has_unwritable_name(before.text, root)) continue;

        const std::string after = kept_text(root, before);

        const std::vector<std::string> found = asides_of(before.text);
        comments += found.size();
        ASSERT_EQ(asides_of(after), found) << story_of(seed, before, after);
    }
    EXPECT_GT(comments, 2 * kDocuments);
}

// --- an edit and its inverse, with a save and a load between them ----------------------------------

class Inverse {
public:
    explicit Inverse(std::uint32_t seed) : model_(seed), form_(form_of(seed, model_)) {}

    // Elements on lines of their own, without anything of their own but that.
    std::string document() {
        const bool isShort = model_.chance(50);
        const std::string lineEnd = isShort ? "\n" : "\r\n";
        std::string text;
        if (form_.encoding != uxtest::kUtf8Form.encoding) {
            text.append("<?xml version='1.0' encoding='").append(form_.name).append("'?>");
        }
        text += isShort ? "<r>" : "<!-- \u00FCber \u20AC -->\r\n<r a='\u00FC'>";
        const int count = 2 + model_.below(40);
        for (int i = 0; i < count; ++i) {
            const std::string number = std::to_string(i);
            text += lineEnd + "  <c n=\"" + number + "\" m=\"x\">" + number + "</c>";
            if (model_.chance(20)) {
                text += lineEnd + "  <b>" + lineEnd + "    <d k=\"1\"/>" + lineEnd +
                        "    <d>t</d>" + lineEnd + "  </b>";
            }
        }
        return uxtest::encoded(text + lineEnd + "</r>" + lineEnd, form_).bytes;
    }
    void choose(const UXXmlWrapperBase& root) {
        kind_ = model_.below(6);
        at_ = model_.below(root.GetNodeCount());
    }
    void edit(UXXmlWrapperBase& root) {
        UXXmlWrapperBase node;
        root.GetChild(&node, at_);
        node.GetTagName(tag_);
        leaf_ = node.GetNodeCount() == 0;
        switch (kind_) {
            case 0:
                old_ = leaf_ ? "x" : "";
                node.SetPropertyValue("m", CStringUTF8("a < \"\u20AC\""));
                break;
            case 1:
                node.NodeValue(old_, 1, 0, nullptr);
                if (leaf_) node.SetString("x & \u00FC");
                break;
            case 2:
                node.SetTagName("other");
                break;
            case 3:
                root.InsertNodeBefore(node, "added", -1, nullptr);
                break;
            case 4:
                node.SetPropertyValue("added", CStringUTF8("1"));
                break;
            default:
                if (!leaf_) break;
                node.NodeValue(old_, 1, 0, nullptr);
                node.GetPropertyValue("n", number_, 0);
                node.RemoveNode();
                break;
        }
    }
    void undo(UXXmlWrapperBase& root) {
        UXXmlWrapperBase node;
        root.GetChild(&node, at_);
        switch (kind_) {
            case 0:
                if (leaf_) {
                    node.SetPropertyValue("m", old_);
                } else {
                    node.RemoveProperty("m");
                }
                break;
            case 1:
                if (leaf_) node.SetString(old_);
                break;
            case 2:
                node.SetTagName(tag_);
                break;
            case 3:
                node.RemoveNode();
                break;
            case 4:
                node.RemoveProperty("added");
                break;
            default:
                if (leaf_) add_again(root, node);
                break;
        }
    }

private:
    void add_again(UXXmlWrapperBase& root, const UXXmlWrapperBase& before) {
        UXXmlWrapperBase made;
        if (before.IsNodeValid() != 0) {
            root.InsertNodeBefore(before, tag_, -1, &made);
        } else {
            root.AddNode(&made, tag_, -1);
        }
        made.SetPropertyValue("n", number_);
        made.SetPropertyValue("m", CStringUTF8("x"));
        made.SetString(old_);
    }

    LayoutModel model_;
    FileForm form_;
    int kind_ = 0;
    int at_ = 0;
    bool leaf_ = false;
    CStringUTF8 tag_;
    CStringUTF8 old_;
    CStringUTF8 number_;
};

TEST(UXSaveToMemory, AnEditAndItsInverseGiveTheOldBytes) {
    for (std::uint32_t seed = 0; seed < kDocuments; ++seed) {
        Inverse inverse(seed);
        const std::string before = inverse.document();
        UXXmlWrapperBase root = edited_document(before);
        inverse.choose(root);
        inverse.edit(root);
        const std::string between = kept_bytes(root);
        UXXmlWrapperBase again = edited_document(between);

        inverse.undo(again);

        ASSERT_EQ(kept_bytes(again), before) << "seed " << seed << "\n" << between;
        inverse.undo(root);  // and without the save
        ASSERT_EQ(kept_bytes(root), before) << "seed " << seed;
    }
}

}  // namespace
