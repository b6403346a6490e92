// Which bytes the content of an element keeps when its children or its text have changed: where lines,
// comments and white space go when elements are removed, added or put in another order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xml/layout_items.h"
#include "xml/layout_scan.h"
#include "xml/layout_text.h"

namespace ux::xml {

struct ContentPlan {
    std::vector<ContentItem> items;
    std::vector<std::string> texts;

    std::string_view bytes_of(const ContentItem& item, std::string_view source) const {
        return item.text == kNone ? source.substr(item.begin, item.end - item.begin)
                                  : std::string_view(texts[item.text]);
    }
};

// A child that the element is to have.
struct WantedChild {
    std::uint32_t source = kNone;  // its element in the source, if it came from there
    bool arranged = false;         // its place was given by an order of all children
};

// What a plan needs to know of the document beyond the element.
class ContentStyle {
public:
    virtual ~ContentStyle() = default;
    // What separates lines; "" when elements have none of their own.
    virtual std::string line_end() = 0;
    virtual std::string first_child_indent() = 0;
    virtual std::string end_tag_indent() = 0;
    // Does an element that its parent in the source has lost stand somewhere else?
    virtual bool has_moved(std::uint32_t element) = 0;
    // The same, asked for the new place: true once at most, for the one that comments go with.
    virtual bool takes_comments(std::uint32_t element) = 0;
    // Do comments and lines belong to the children of an element in the source?
    virtual bool has_lines(std::uint32_t parent) = 0;
};

// What stands between an element's tags, or the part of it from one child to another.
struct ContentRange {
    std::uint32_t element = 0;
    std::size_t begin = 0;         // behind the start tag, or behind a child
    bool emptyTag = false;         // "<a/>"
    std::uint32_t first = kNone;   // the child behind that one; kNone behind the start tag
    std::uint32_t behind = kNone;  // the child before which it ends; kNone before the end tag
};

struct ContentRequest {
    ContentRange range;
    bool preserve = false;  // white space stays as it is
    std::string_view value;
    std::vector<WantedChild> children;
};

// An element's content: what of it is value, and what stands between elements.
struct ReadContent {
    ReadContent(const ScannedDocument& document, const EntityText& entityText)
        : value(document.text, entityText) {}
    std::vector<ContentItem> items;
    WrittenValue value;
    bool hasChildren = false;
    bool mixed = false;              // text beside children
    bool hasEntityElements = false;  // a reference stands for elements
};
void read_content(const ScannedDocument& document, const ContentRange& range, ReadContent& content);

// The part of an element's content that changes of its children concern: all children before and
// behind it stand where they stood, and nothing in it depends on what is outside.
struct ContentPart {
    std::size_t before = 0;  // wanted children
    std::size_t behind = 0;
    ContentRange range;
};
// Nothing when most of the content is concerned, or when that is not plain to see.
std::optional<ContentPart> changed_part(const ScannedDocument& document,
                                        const ContentRequest& request);

// What is to be written between the tags. Throws Unkept.
ContentPlan plan_content(const ScannedDocument& document, const ContentRequest& request,
                         const EntityText& entityText, FileEncoding encoding, ContentStyle& style);

}  // namespace ux::xml
