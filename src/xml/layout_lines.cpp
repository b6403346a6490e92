// Lines, and the comments and blank lines that go with elements.
#include "xml/layout_lines.h"

#include <algorithm>

namespace ux::xml {
namespace {

bool is_white(const ContentItem& item) {
    return item.kind == ItemKind::kSpace || item.kind == ItemKind::kLineEnd;
}

// What stands on a line.
struct LineUse {
    std::size_t children = 0;  // that stay
    std::size_t removed = 0;
    bool comment = false;
    bool instruction = false;

    bool blank() const { return children == 0 && removed == 0 && !comment && !instruction; }
    bool comment_only() const { return children == 0 && removed == 0 && comment && !instruction; }
};

LineUse use_of(const std::vector<ContentItem>& items, const ContentLine& line) {
    LineUse use;
    for (std::size_t i = line.first; i < line.last; ++i) {
        const ContentItem& item = items[i];
        if (item.kind == ItemKind::kChild) ++(item.dropped ? use.removed : use.children);
        if (item.dropped) continue;
        use.comment = use.comment || item.kind == ItemKind::kComment;
        use.instruction = use.instruction || item.kind == ItemKind::kInstruction;
    }
    return use;
}

class LineRemoval {
public:
    LineRemoval(std::vector<ContentItem>& items, const std::vector<bool>& takeComments)
        : items_(items), takeComments_(takeComments), lines_(lines_of(items)) {
        uses_.reserve(lines_.size());
        for (const ContentLine& line : lines_) uses_.push_back(use_of(items_, line));
    }

    void run() {
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            if (uses_[i].removed != 0) remove_from(i);
        }
        drop_headings();
        drop_blank_lines();
        for (const ContentLine& line : lines_) {
            if (!line.dropped) continue;
            for (std::size_t i = line.first; i < line.end; ++i) items_[i].dropped = true;
        }
    }

private:
    bool is_last(std::size_t line) const { return line + 1 == lines_.size(); }
    // Lines with a tag of the parent do not go as a whole.
    bool is_inner(std::size_t line) const { return line > 0 && !is_last(line); }

    void remove_from(std::size_t number) {
        ContentLine& line = lines_[number];
        const LineUse& use = uses_[number];
        const bool alone = use.children == 0 && !use.instruction && is_inner(number);
        if (alone && (use.removed == 1 || !any_takes_comments(line) || !use.comment)) {
            line.dropped = true;
            if (use.removed == 1 && any_takes_comments(line)) drop_comments_above(number);
            return;
        }
        remove_within(line, number > 0);
        const bool endsParent =
            is_last(number) && number > 0 && use.children == 0 && !use.instruction && !use.comment;
        if (!endsParent) return;
        for (std::size_t i = line.first; i < line.last; ++i) items_[i].dropped = true;
        items_[lines_[number - 1].last].dropped = true;  // the line end before the end tag
    }

    bool any_takes_comments(const ContentLine& line) const {
        for (std::size_t i = line.first; i < line.last; ++i) {
            if (takeComments_[i]) return true;
        }
        return false;
    }

    void drop_comments_above(std::size_t number) {
        while (number > 1 && uses_[number - 1].comment_only() && !lines_[number - 1].dropped) {
            lines_[--number].dropped = true;
        }
    }

    // The element goes with the blanks before it; the first one of a line leaves its place to the
    // next.
    void remove_within(const ContentLine& line, bool ownsIndent) {
        bool first = ownsIndent;
        for (std::size_t i = line.first; i < line.last; ++i) {
            if (items_[i].kind != ItemKind::kChild || !items_[i].dropped) {
                first = first && (is_white(items_[i]) || items_[i].dropped);
                continue;
            }
            const std::size_t blanks = first ? i + 1 : i - 1;
            const bool there = first ? blanks < line.last : i > line.first;
            if (there && items_[blanks].kind == ItemKind::kSpace) items_[blanks].dropped = true;
        }
    }

    // Comments directly above elements go when none of these elements is left.
    void drop_headings() {
        std::vector<std::size_t> heading;
        bool left = false;
        bool removed = false;
        const auto close = [&] {
            if (removed && !left) {
                for (const std::size_t number : heading) lines_[number].dropped = true;
            }
            heading.clear();
            left = removed = false;
        };
        for (std::size_t i = 1; i < lines_.size(); ++i) {
            const LineUse& use = uses_[i];
            if (use.comment_only() && !is_last(i)) {
                if (left || removed) close();
                if (!lines_[i].dropped) heading.push_back(i);
            } else if (use.children + use.removed == 0) {
                close();
            } else {
                left = left || use.children != 0 || !lines_[i].dropped;
                removed = removed || lines_[i].dropped;
            }
        }
        close();
    }

    // Of blank lines on both sides of what went, those above stay; none stays beside a tag of the
    // parent.
    void drop_blank_lines() {
        for (std::size_t i = 1; i < lines_.size(); ++i) {
            if (!lines_[i].dropped) continue;
            std::size_t above = i;
            while (above > 1 && !lines_[above - 1].dropped && uses_[above - 1].blank()) --above;
            std::size_t behind = drop_below(i, above);
            const bool beforeEnd = is_last(behind) && uses_[behind].blank();
            if (above == 1 || beforeEnd) drop(above, i);
            i = behind;
        }
    }
    // Yields the first line behind the dropped ones that stays.
    std::size_t drop_below(std::size_t from, std::size_t above) {
        std::size_t behind = from;
        for (;;) {
            while (lines_[behind].dropped) ++behind;
            std::size_t end = behind;
            while (!is_last(end) && !lines_[end].dropped && uses_[end].blank()) ++end;
            const bool beforeEnd = is_last(end) && uses_[end].blank();
            if (end == behind || (above == from && above != 1 && !beforeEnd)) return behind;
            drop(behind, end);
            behind = end;
        }
    }
    void drop(std::size_t first, std::size_t last) {
        for (; first < last; ++first) lines_[first].dropped = true;
    }

    std::vector<ContentItem>& items_;
    const std::vector<bool>& takeComments_;
    std::vector<ContentLine> lines_;
    std::vector<LineUse> uses_;
};

// The lines of a child's block: comment lines directly above and its own, which holds nothing else
// but comments. first == last when it has no line for itself.
struct BlockLines {
    std::size_t first = 0;
    std::size_t own = 0;
    std::size_t last = 0;
};

BlockLines block_lines(const std::vector<ContentItem>& items, const std::vector<ContentLine>& lines,
                       std::size_t child) {
    const std::size_t own = line_at(lines, child);
    const LineUse use = use_of(items, lines[own]);
    const bool alone =
        own > 0 && own + 1 < lines.size() && use.children + use.removed == 1 && !use.instruction;
    if (!alone) return {own, own, own};
    std::size_t first = own;
    while (first > 1 && is_comment_line(items, lines[first - 1])) --first;
    return {first, own, own + 1};
}

void append_items(std::vector<ContentItem>& out, const std::vector<ContentItem>& items,
                  std::size_t first, std::size_t last) {
    out.insert(out.end(), items.begin() + static_cast<std::ptrdiff_t>(first),
               items.begin() + static_cast<std::ptrdiff_t>(last));
}

}  // namespace

std::vector<ContentLine> lines_of(const std::vector<ContentItem>& items) {
    std::vector<ContentLine> lines;
    std::size_t first = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (items[i].kind != ItemKind::kLineEnd) continue;
        lines.push_back({first, i, i + 1});
        first = i + 1;
    }
    lines.push_back({first, items.size(), items.size()});
    return lines;
}

std::size_t line_at(const std::vector<ContentLine>& lines, std::size_t item) {
    const auto behind =
        std::upper_bound(lines.begin(), lines.end(), item,
                         [](std::size_t at, const ContentLine& line) { return at < line.first; });
    return static_cast<std::size_t>(behind - lines.begin()) - 1;
}

bool is_comment_line(const std::vector<ContentItem>& items, const ContentLine& line) {
    return use_of(items, line).comment_only();
}

bool begins_with_child(const std::vector<ContentItem>& items, const ContentLine& line) {
    const std::size_t at =
        line.first < line.last && is_white(items[line.first]) ? line.first + 1 : line.first;
    return at < line.last && items[at].kind == ItemKind::kChild;
}

void append_gap_piece(std::string_view text, const Piece& piece, std::vector<ContentItem>& items) {
    const auto add = [&](ItemKind kind, std::size_t begin, std::size_t end) {
        ContentItem item{kind};
        item.begin = begin;
        item.end = end;
        items.push_back(item);
    };
    if (piece.kind == PieceKind::kComment) return add(ItemKind::kComment, piece.begin, piece.end);
    if (piece.kind != PieceKind::kText) return add(ItemKind::kInstruction, piece.begin, piece.end);
    for (std::size_t at = piece.begin; at < piece.end;) {
        const std::size_t lineEnd = std::min(text.find_first_of("\r\n", at), piece.end);
        if (lineEnd > at) add(ItemKind::kSpace, at, lineEnd);
        if (lineEnd == piece.end) return;
        const bool pair =
            text[lineEnd] == '\r' && lineEnd + 1 < piece.end && text[lineEnd + 1] == '\n';
        at = lineEnd + (pair ? 2 : 1);
        add(ItemKind::kLineEnd, lineEnd, at);
    }
}

void drop_lines_of_dropped(std::vector<ContentItem>& items, const std::vector<bool>& takeComments) {
    LineRemoval(items, takeComments).run();
}

std::vector<ContentItem> arranged_by_lines(const std::vector<ContentItem>& items,
                                           const std::vector<std::uint32_t>& children,
                                           const std::vector<std::uint32_t>& places,
                                           const std::vector<std::uint32_t>& blocks) {
    const std::vector<ContentLine> lines = lines_of(items);
    std::vector<ContentItem> out;
    out.reserve(items.size());
    std::size_t copied = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::size_t child = children[places[i]];
        const std::size_t other = children[blocks[i]];
        const BlockLines place = block_lines(items, lines, child);
        const BlockLines block = block_lines(items, lines, other);
        const bool hasLine = place.first < place.last;
        append_items(out, items, copied, hasLine ? lines[place.first].first : child);
        copied = hasLine ? lines[place.own].last : child + 1;
        if (block.first == block.last) {
            const bool indented = hasLine && items[lines[place.own].first].kind == ItemKind::kSpace;
            if (indented) out.push_back(items[lines[place.own].first]);
            out.push_back(items[other]);
        } else if (hasLine) {
            append_items(out, items, lines[block.first].first, lines[block.own].last);
        } else {
            for (std::size_t at = lines[block.first].first; at < lines[block.own].last; ++at) {
                if (!is_white(items[at])) out.push_back(items[at]);
            }
        }
    }
    append_items(out, items, copied, items.size());
    return out;
}

ElementBlock block_of(const ScannedDocument& document, std::uint32_t element) {
    const std::uint32_t parent = document.elements[element].parent;
    std::size_t begin = 0;
    std::uint32_t previous = element - 1;
    if (previous == parent) {
        ScannedTag tag;
        if (!scan_tag(document.text, document.elements[parent].begin, tag)) return {};
        begin = tag.end;
    } else {
        while (document.elements[previous].parent != parent) {
            previous = document.elements[previous].parent;
        }
        begin = document.elements[previous].end;
    }
    // The gaps on both sides, with the element between them.
    std::vector<ContentItem> items;
    std::size_t child = 0;
    ContentScan scan(document, parent, begin, element);
    bool passed = false;
    for (Piece piece = scan.next(); piece.kind != PieceKind::kEnd; piece = scan.next()) {
        if (piece.kind == PieceKind::kElement) {
            if (passed) break;
            passed = true;
            child = items.size();
            items.push_back(ContentItem{ItemKind::kChild});
        } else {
            append_gap_piece(document.text, piece, items);
        }
    }
    const std::vector<ContentLine> lines = lines_of(items);
    const BlockLines found = block_lines(items, lines, child);
    ElementBlock block;
    if (found.first == found.last) return block;
    const auto withoutIndent = [&](const ContentLine& line) {
        const bool indented = line.first < line.last && items[line.first].kind == ItemKind::kSpace;
        return line.first + (indented ? 1 : 0);
    };
    for (std::size_t i = found.first; i < found.own; ++i) {
        block.above.emplace_back();
        append_items(block.above.back(), items, withoutIndent(lines[i]), lines[i].last);
    }
    append_items(block.front, items, withoutIndent(lines[found.own]), child);
    append_items(block.behind, items, child + 1, lines[found.own].last);
    return block;
}

}  // namespace ux::xml
