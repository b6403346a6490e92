// The lines of an element's content: which of them go with removed elements, and which comments
// belong to an element.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "xml/layout_items.h"
#include "xml/layout_scan.h"

namespace ux::xml {

// A line of content: items [first, last), and the line end at last unless it is the last line. The
// start tag stands on the first line, the end tag on the last one.
struct ContentLine {
    std::size_t first;
    std::size_t last;
    std::size_t end;  // behind the line end
    bool dropped = false;
};

std::vector<ContentLine> lines_of(const std::vector<ContentItem>& items);
// The number of the line on which an item stands.
std::size_t line_at(const std::vector<ContentLine>& lines, std::size_t item);
// Nothing that stays but comments and blanks, and at least one comment?
bool is_comment_line(const std::vector<ContentItem>& items, const ContentLine& line);
// Is the first thing on the line, dropped or not, a child?
bool begins_with_child(const std::vector<ContentItem>& items, const ContentLine& line);

// Appends a comment, an instruction or white space, which becomes an item for every line end and for
// what stands between them.
void append_gap_piece(std::string_view text, const Piece& piece, std::vector<ContentItem>& items);

// Drops what goes with the dropped children: their lines, comments and superfluous blank lines.
// Those that takeComments names have taken the comments directly above them to another place.
void drop_lines_of_dropped(std::vector<ContentItem>& items, const std::vector<bool>& takeComments);

// The items with the blocks of the children numbered by blocks at the places numbered by places.
// children holds the items of all children.
std::vector<ContentItem> arranged_by_lines(const std::vector<ContentItem>& items,
                                           const std::vector<std::uint32_t>& children,
                                           const std::vector<std::uint32_t>& places,
                                           const std::vector<std::uint32_t>& blocks);

// The comments that belong to an element which has its lines for itself; none otherwise.
struct ElementBlock {
    std::vector<std::vector<ContentItem>> above;  // lines without their indentation
    std::vector<ContentItem> front;               // on its line
    std::vector<ContentItem> behind;
};
ElementBlock block_of(const ScannedDocument& document, std::uint32_t element);

}  // namespace ux::xml
