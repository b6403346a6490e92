// A plan for the part of the content that a change concerns is the plan for all of it.
#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "xml/layout_content.h"

namespace {

using namespace ux::xml;

class PlainStyle final : public ContentStyle {
public:
    std::string line_end() override { return "\n"; }
    std::string first_child_indent() override { return "  "; }
    std::string end_tag_indent() override { return ""; }
    bool has_moved(std::uint32_t /*element*/) override { return false; }
    bool takes_comments(std::uint32_t /*element*/) override { return false; }
    bool has_lines(std::uint32_t /*parent*/) override { return true; }
};

class PartModel {
public:
    explicit PartModel(std::uint32_t seed) : random_(seed) {}

    int below(int limit) { return static_cast<int>(random_() % static_cast<std::uint32_t>(limit)); }

    std::string document() {
        static constexpr const char* kGaps[] = {
            "\n  ",
            "\n  ",
            "\n  ",
            "\n\n  ",
            " ",
            "",
            "\n  <!-- above -->\n  ",
            " <!-- behind -->\n  ",
            "\n\n  <!-- loose -->\n\n  ",
            "<?keep it?>\n  ",
            "\n \n\n  ",
        };
        const int odd = below(3);  // how many of the gaps are unusual
        const auto gap = [&]() -> std::string {
            return below(4) < odd ? kGaps[below(static_cast<int>(std::size(kGaps)))] : "\n  ";
        };
        std::string text = "<r>";
        for (int i = 40 + below(20); i > 0; --i) text += gap() + "<c/>";
        return text + gap() + "</r>";
    }
    std::vector<WantedChild> children(std::uint32_t count) {
        std::vector<WantedChild> wanted;
        for (std::uint32_t i = 1; i <= count; ++i) wanted.push_back({i, false});
        const int place = below(static_cast<int>(count));
        for (int i = below(4); i >= 0; --i) edit(wanted, place);
        return wanted;
    }

private:
    // Near a place, so that much is left as it is.
    void edit(std::vector<WantedChild>& wanted, int place) {
        const int at = std::clamp(place + below(9) - 4, 0, static_cast<int>(wanted.size()) - 1);
        const auto where = wanted.begin() + at;
        switch (below(5)) {
            case 0:
            case 1:
                wanted.erase(where);
                break;
            case 2:
                wanted.insert(where, WantedChild{});
                break;
            case 3:
                std::swap(*where, wanted[static_cast<std::size_t>(std::max(0, at - below(3)))]);
                break;
            default:
                wanted.push_back(WantedChild{});
                break;
        }
    }

    std::mt19937 random_;
};

std::string written(const ScannedDocument& document, const ContentRequest& request) {
    PlainStyle style;
    const ContentPlan plan = plan_content(document, request, {}, FileEncoding::kUtf8, style);
    std::string out;
    for (const ContentItem& item : plan.items) {
        if (item.kind != ItemKind::kChild) {
            out += plan.bytes_of(item, document.text);
        } else {
            const std::uint32_t source = request.children[item.child].source;
            out += source == kNone ? "[new]" : "[" + std::to_string(source) + "]";
        }
    }
    return out;
}

// Children first to last of the source with what stands behind each.
std::string as_it_stands(const ScannedDocument& document, std::uint32_t first, std::uint32_t last,
                         std::size_t end) {
    std::string out;
    for (std::uint32_t i = first; i < last; ++i) {
        out += "[" + std::to_string(i) + "]";
        const std::size_t next =
            i + 1 < document.elements.size() ? document.elements[i + 1].begin : end;
        if (i + 1 < last || end != 0) {
            const std::size_t begin = document.elements[i].end;
            out += document.text.substr(begin, next - begin);
        }
    }
    return out;
}

TEST(changed_part, GivesThePlanOfTheWholeContent) {
    int parts = 0;
    for (std::uint32_t seed = 0; seed < 6000; ++seed) {
        PartModel model(seed);
        const std::string text = model.document();
        ScannedDocument document;
        ASSERT_TRUE(scan_document(text, {}, document));
        const auto count = static_cast<std::uint32_t>(document.elements.size() - 1);
        ContentRequest request;
        request.range = {0, 3, false};
        request.children = model.children(count);

        const auto part = changed_part(document, request);

        if (!part) continue;
        ++parts;
        ContentRequest inner = request;
        inner.range = part->range;
        inner.children.assign(request.children.begin() + static_cast<std::ptrdiff_t>(part->before),
                              request.children.end() - static_cast<std::ptrdiff_t>(part->behind));
        const auto before = static_cast<std::uint32_t>(part->before);
        const auto behind = static_cast<std::uint32_t>(part->behind);
        std::string pieced;
        if (before != 0) pieced = text.substr(3, document.elements[1].begin - 3);
        pieced += as_it_stands(document, 1, 1 + before, 0);
        pieced += written(document, inner);
        pieced +=
            as_it_stands(document, count + 1 - behind, count + 1, document.elements[0].end - 4);
        ASSERT_EQ(pieced, written(document, request)) << "seed " << seed << "\n" << text;
    }
    EXPECT_GT(parts, 3000);
}

TEST(changed_part, IsNotFoundWhereTheTextOrTheOrderMatters) {
    std::string text = "<r>";
    for (int i = 0; i < 50; ++i) text += "\n  <c/>";
    ScannedDocument document;
    const auto found = [&](const std::string& bytes, const ContentRequest& request) {
        EXPECT_TRUE(scan_document(bytes, {}, document));
        return changed_part(document, request).has_value();
    };
    ContentRequest request;
    request.range = {0, 3, false};
    for (std::uint32_t i = 1; i <= 49; ++i) request.children.push_back({i, false});

    EXPECT_TRUE(found(text + "\n</r>", request));
    EXPECT_FALSE(found("<r>text" + text.substr(3) + "\n</r>", request));
    EXPECT_FALSE(found("<r>\n  <![CDATA[ ]]>" + text.substr(3) + "\n</r>", request));
    ContentRequest preserving = request;
    preserving.preserve = true;
    EXPECT_FALSE(found(text + "\n</r>", preserving));
    ContentRequest valued = request;
    valued.value = "x";
    EXPECT_FALSE(found(text + "\n</r>", valued));
    ContentRequest arranged = request;
    arranged.children[48].arranged = true;
    EXPECT_FALSE(found(text + "\n</r>", arranged));
    ContentRequest copied = request;
    copied.children.push_back({3, false});
    EXPECT_FALSE(found(text + "\n</r>", copied));
}

}  // namespace
