// Which bytes of an element's content stay.
#include "xml/layout_content.h"

#include <algorithm>
#include <utility>

#include "xml/layout_lines.h"

namespace ux::xml {
namespace {

// Longest increasing run of places, which stay where they are. Yields the numbers that belong to it.
std::vector<bool> staying(const std::vector<std::uint32_t>& places) {
    std::vector<std::uint32_t> tails;  // number of the last one of the best run of each length
    std::vector<std::uint32_t> before(places.size(), kNone);
    for (std::uint32_t i = 0; i < places.size(); ++i) {
        if (places[i] == kNone) continue;
        auto at = tails.end();
        if (!tails.empty() && places[tails.back()] >= places[i]) {
            at = std::lower_bound(
                tails.begin(), tails.end(), places[i],
                [&](std::uint32_t number, std::uint32_t place) { return places[number] < place; });
        }
        if (at != tails.begin()) before[i] = *(at - 1);
        if (at == tails.end()) {
            tails.push_back(i);
        } else {
            *at = i;
        }
    }
    std::vector<bool> stays(places.size(), false);
    for (std::uint32_t i = tails.empty() ? kNone : tails.back(); i != kNone; i = before[i]) {
        stays[i] = true;
    }
    return stays;
}

// The first of each place.
std::vector<bool> first_of_each(const std::vector<std::uint32_t>& places, std::size_t count) {
    std::vector<bool> met(count, false);
    std::vector<bool> first(places.size(), false);
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i] == kNone || met[places[i]]) continue;
        met[places[i]] = true;
        first[i] = true;
    }
    return first;
}

class Planner {
public:
    Planner(const ScannedDocument& document, const ContentRequest& request,
            const EntityText& entityText, FileEncoding encoding, ContentStyle& style)
        : document_(document),
          request_(request),
          encoding_(encoding),
          style_(style),
          content_(document, entityText) {}

    ContentPlan run() {
        read_content(document_, request_.range, content_);
        items_ = std::move(content_.items);
        byLines_ = content_.hasChildren && !content_.mixed && !request_.preserve;
        match();
        if (arranged_) arrange();
        remove();
        insert();
        write_value();
        settle();
        return std::move(plan_);
    }

private:
    // --- which children stay -------------------------------------------------------------------

    void match() {
        std::vector<std::uint32_t> ordinals;
        for (std::uint32_t i = 0; i < items_.size(); ++i) {
            if (items_[i].kind != ItemKind::kChild) continue;
            childItems_.push_back(i);
            ordinals.push_back(items_[i].element);
        }
        places_.assign(request_.children.size(), kNone);
        for (std::size_t i = 0; i < places_.size(); ++i) {
            const WantedChild& wanted = request_.children[i];
            if (wanted.source == kNone) continue;
            const auto at = std::lower_bound(ordinals.begin(), ordinals.end(), wanted.source);
            if (at == ordinals.end() || *at != wanted.source) continue;
            places_[i] = static_cast<std::uint32_t>(at - ordinals.begin());
            arranged_ = arranged_ || wanted.arranged;
        }
        stays_ = arranged_ ? first_of_each(places_, ordinals.size()) : staying(places_);
        refuse_entity_elements();
        placeStays_.assign(ordinals.size(), false);
        for (std::size_t i = 0; i < places_.size(); ++i) {
            if (stays_[i]) placeStays_[places_[i]] = true;
        }
        if (arranged_) return;
        for (std::uint32_t i = 0; i < places_.size(); ++i) {
            if (stays_[i]) items_[childItems_[places_[i]]].child = i;
        }
    }

    void refuse_entity_elements() const {
        if (content_.hasEntityElements) {
            throw Unkept("children beside elements that come from an entity have changed");
        }
    }

    // --- an order of all children --------------------------------------------------------------

    // Every place takes the block of the child that stands there now; lines without elements stay.
    void arrange() {
        std::vector<std::uint32_t> places;
        std::vector<std::uint32_t> wanted;
        for (std::uint32_t i = 0; i < places_.size(); ++i) {
            if (!stays_[i]) continue;
            places.push_back(places_[i]);
            wanted.push_back(i);
        }
        const std::vector<std::uint32_t> blocks = places;
        std::sort(places.begin(), places.end());
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            items_[childItems_[blocks[i]]].child = wanted[i];
        }
        if (places == blocks) return;
        if (byLines_) {
            items_ = arranged_by_lines(items_, childItems_, places, blocks);
        } else {
            const std::vector<ContentItem> before = items_;
            for (std::size_t i = 0; i < places.size(); ++i) {
                items_[childItems_[places[i]]] = before[childItems_[blocks[i]]];
            }
        }
    }

    // --- removing ------------------------------------------------------------------------------

    void remove() {
        bool any = false;
        for (ContentItem& item : items_) {
            if (item.kind != ItemKind::kChild || item.child != kNone) continue;
            item.dropped = true;
            any = true;
        }
        if (!any || !byLines_) return;
        std::vector<bool> moved(childItems_.size(), false);
        for (std::size_t i = 0; i < places_.size(); ++i) {
            if (places_[i] != kNone && !stays_[i]) moved[places_[i]] = true;
        }
        std::size_t place = 0;
        std::vector<bool> takesComments(items_.size(), false);
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (items_[i].kind != ItemKind::kChild) continue;
            takesComments[i] = items_[i].dropped && (moved[place] || has_moved(items_[i].element));
            ++place;
        }
        drop_lines_of_dropped(items_, takesComments);
    }

    bool has_moved(std::uint32_t element) { return style_.has_moved(element); }

    // --- inserting -----------------------------------------------------------------------------

    // Where new children go: before items_[anchor].
    struct Spot {
        enum class Form { kNewLine, kLineBefore, kInline, kInlineBefore };
        Form form = Form::kInline;
        std::size_t anchor = 0;
        std::vector<ContentItem> lineEnd;  // one item or none, as the others
        std::vector<ContentItem> indent;
        std::vector<ContentItem> separator;
    };

    ContentItem new_item(ItemKind kind, std::string text) {
        ContentItem item{kind};
        item.text = static_cast<std::uint32_t>(plan_.texts.size());
        plan_.texts.push_back(std::move(text));
        return item;
    }

    void insert() {
        std::vector<std::size_t> itemOf(places_.size(), items_.size());
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (items_[i].kind == ItemKind::kChild && items_[i].child != kNone) {
                itemOf[items_[i].child] = i;
            }
        }
        std::vector<std::uint32_t> following(places_.size() + 1, kNone);
        for (std::size_t i = places_.size(); i-- > 0;) {
            following[i] = stays_[i] ? static_cast<std::uint32_t>(i) : following[i + 1];
        }
        if (byLines_) lines_ = lines_of(items_);
        std::size_t previous = items_.size();  // none
        bool open = false;
        Spot spot;
        for (std::uint32_t i = 0; i < places_.size(); ++i) {
            if (stays_[i]) {
                previous = itemOf[i];
                open = false;
                continue;
            }
            if (!open) {
                const std::uint32_t next = following[i];
                spot = spot_between(previous, next == kNone ? items_.size() : itemOf[next]);
                open = true;
            }
            insert_child(spot, i);
        }
        merge_insertions();
    }

    Spot spot_between(std::size_t previous, std::size_t next) {
        const bool hasPrevious = previous < items_.size();
        const bool hasNext = next < items_.size();
        Spot spot;
        if (!byLines_) {
            const bool firstOnes = !content_.hasChildren && content_.value.text().empty() &&
                                   request_.value.empty() && !request_.preserve;
            if (firstOnes) return first_child_spot();
            spot.anchor = hasNext ? next : items_.size();
            return spot;
        }
        if (hasPrevious) return spot_behind(previous);
        if (hasNext) return spot_before(next);
        return spot_of_removed();
    }

    Spot first_child_spot() {
        Spot spot;
        spot.anchor = items_.size();
        const std::string lineEnd = style_.line_end();
        if (lineEnd.empty()) return spot;
        spot.form = Spot::Form::kNewLine;
        spot.lineEnd = {new_item(ItemKind::kLineEnd, lineEnd)};
        spot.indent = {new_item(ItemKind::kSpace, style_.first_child_indent())};
        closing_ = {new_item(ItemKind::kLineEnd, lineEnd),
                    new_item(ItemKind::kSpace, style_.end_tag_indent())};
        return spot;
    }

    std::vector<ContentItem> copy_of(std::size_t item) const {
        ContentItem copy = items_[item];
        copy.dropped = false;
        return {copy};
    }
    bool is_space(std::size_t item) const {
        return item < items_.size() && items_[item].kind == ItemKind::kSpace;
    }
    bool is_live_child(const ContentItem& item) const {
        return item.kind == ItemKind::kChild && !item.dropped;
    }
    std::vector<ContentItem> indent_of_line(const ContentLine& line) const {
        if (line.first < line.last && is_space(line.first)) return copy_of(line.first);
        return {};
    }
    // A line that begins with a child, the first one or kNone.
    std::size_t line_with_children() const {
        for (std::size_t i = 1; i < lines_.size(); ++i) {
            if (begins_with_child(items_, lines_[i])) return i;
        }
        return kNone;
    }

    Spot spot_behind(std::size_t child) const {
        Spot spot;
        const std::size_t number = line_at(lines_, child);
        const ContentLine& line = lines_[number];
        const auto behind = items_.begin() + static_cast<std::ptrdiff_t>(child) + 1;
        const auto lineEnd = items_.begin() + static_cast<std::ptrdiff_t>(line.last);
        const bool followed =
            std::any_of(behind, lineEnd, [&](const auto& item) { return is_live_child(item); });
        std::size_t model = number;
        if (number == 0) model = line.end > line.last ? line_with_children() : kNone;
        if (followed || model == kNone) {
            spot.anchor = child + 1;
            const bool blankBefore = child > line.first && is_space(child - 1);
            if (blankBefore) spot.separator = copy_of(child - 1);
            if (!blankBefore && followed && is_space(child + 1)) {
                spot.separator = copy_of(child + 1);
            }
            return spot;
        }
        spot.form = Spot::Form::kNewLine;
        spot.anchor = line.last;
        if (line.end == line.last && spot.anchor > line.first && is_space(spot.anchor - 1)) {
            --spot.anchor;  // the end tag stands on this line
        }
        spot.lineEnd = copy_of(lines_[model - 1].last);
        spot.indent = indent_of_line(lines_[model]);
        return spot;
    }

    Spot spot_before(std::size_t child) const {
        Spot spot;
        const std::size_t number = line_at(lines_, child);
        const ContentLine& line = lines_[number];
        const auto first = items_.begin() + static_cast<std::ptrdiff_t>(line.first);
        const bool starts =
            number > 0 && std::none_of(first, items_.begin() + static_cast<std::ptrdiff_t>(child),
                                       [&](const auto& item) { return is_live_child(item); });
        if (!starts) {
            spot.form = Spot::Form::kInlineBefore;
            spot.anchor = child;
            if (child > line.first && is_space(child - 1)) spot.separator = copy_of(child - 1);
            return spot;
        }
        std::size_t top = number;
        while (top > 1 && is_comment_line(items_, lines_[top - 1])) --top;
        spot.form = Spot::Form::kLineBefore;
        spot.anchor = lines_[top].first;
        spot.indent = indent_of_line(line);
        spot.lineEnd = copy_of(lines_[number - 1].last);
        return spot;
    }

    // Where children stood that are all gone.
    Spot spot_of_removed() const {
        Spot spot;
        const bool hasLines = lines_[0].end > lines_[0].last && !items_[lines_[0].last].dropped;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (items_[i].kind != ItemKind::kChild) continue;
            const ContentLine& line = lines_[line_at(lines_, i)];
            if (hasLines && &line != lines_.data()) {
                spot.form = Spot::Form::kNewLine;
                spot.anchor = lines_[0].last;
                spot.lineEnd = copy_of(lines_[0].last);
                spot.indent = indent_of_line(line);
                return spot;
            }
            spot.anchor = i + 1;
            if (i > line.first && is_space(i - 1)) spot.separator = copy_of(i - 1);
            return spot;
        }
        return spot;
    }

    void insert_child(const Spot& spot, std::uint32_t child) {
        ContentItem item{ItemKind::kChild};
        item.child = child;
        item.element = request_.children[child].source;
        item.inPlace = false;
        const bool ownLine =
            spot.form == Spot::Form::kNewLine || spot.form == Spot::Form::kLineBefore;
        item.ownLine = ownLine;
        ElementBlock block;
        if (item.element != kNone) block = travelling_block(child);
        std::vector<std::vector<ContentItem>> rows = std::move(block.above);
        std::vector<ContentItem> row = std::move(block.front);
        row.push_back(item);
        row.insert(row.end(), block.behind.begin(), block.behind.end());
        rows.push_back(std::move(row));
        for (const auto& items : rows) insert_row(spot, items);
    }

    // Reordered below its parent, or moved here from another one.
    ElementBlock travelling_block(std::uint32_t child) {
        const std::uint32_t element = request_.children[child].source;
        const std::uint32_t place = places_[child];
        bool takes = false;
        if (place != kNone) {
            takes = !placeStays_[place] && taken_.insert_once(place);
        } else {
            takes = style_.takes_comments(element);
        }
        const std::uint32_t parent = document_.elements[element].parent;
        if (!takes || parent == kNone || !style_.has_lines(parent)) return {};
        return block_of(document_, element);
    }
    void insert_row(const Spot& spot, const std::vector<ContentItem>& row) {
        const auto put = [&](const std::vector<ContentItem>& items) {
            for (const ContentItem& item : items) insertions_.emplace_back(spot.anchor, item);
        };
        switch (spot.form) {
            case Spot::Form::kNewLine:
                put(spot.lineEnd);
                put(spot.indent);
                put(row);
                break;
            case Spot::Form::kLineBefore:
                put(spot.indent);
                put(row);
                put(spot.lineEnd);
                break;
            case Spot::Form::kInline:
                put(spot.separator);
                put(row);
                break;
            case Spot::Form::kInlineBefore:
                put(row);
                put(spot.separator);
                break;
        }
    }

    void merge_insertions() {
        if (insertions_.empty()) return;
        std::vector<ContentItem> merged;
        merged.reserve(items_.size() + insertions_.size() + closing_.size());
        auto next = insertions_.begin();
        for (std::size_t i = 0; i <= items_.size(); ++i) {
            for (; next != insertions_.end() && next->first <= i; ++next) {
                merged.push_back(next->second);
            }
            if (i < items_.size()) merged.push_back(items_[i]);
        }
        merged.insert(merged.end(), closing_.begin(), closing_.end());
        items_ = std::move(merged);
    }

    // --- text ----------------------------------------------------------------------------------

    void write_value() {
        if (content_.value.text() == request_.value) return;
        if (content_.value.runs() == 0) {
            add_first_text();
            return;
        }
        std::vector<std::optional<std::string>> runs =
            content_.value.rewritten(request_.value, encoding_);
        for (ContentItem& item : items_) {
            if (item.kind != ItemKind::kText || !runs[item.run]) continue;
            item.text = static_cast<std::uint32_t>(plan_.texts.size());
            plan_.texts.push_back(std::move(*runs[item.run]));
        }
    }

    // In the place of the first white space, or at the start.
    void add_first_text() {
        std::string text;
        append_text(text, request_.value, encoding_);
        const ContentItem item = new_item(ItemKind::kText, std::move(text));
        auto at = std::find_if(items_.begin(), items_.end(), [](const ContentItem& other) {
            return !other.dropped &&
                   (other.kind == ItemKind::kLineEnd || other.kind == ItemKind::kSpace);
        });
        if (at == items_.end()) at = items_.begin();
        items_.insert(at, item);
    }

    // --- what a reader would take for text, and what it would drop -------------------------------

    void settle() {
        const bool leaf = request_.children.empty();
        std::size_t first = 0;
        for (std::size_t i = 0; i <= items_.size(); ++i) {
            if (i < items_.size() && !is_live_child(items_[i])) continue;
            settle_piece(first, i, leaf);
            first = i + 1;
        }
        for (const ContentItem& item : items_) {
            if (!item.dropped) plan_.items.push_back(item);
        }
    }

    void settle_piece(std::size_t first, std::size_t last, bool leaf) {
        bool hasValue = false;
        bool blank = true;
        for (std::size_t i = first; i < last; ++i) {
            const ContentItem& item = items_[i];
            if (item.dropped || item.kind != ItemKind::kText) continue;
            const std::string_view bytes = plan_.bytes_of(item, document_.text);
            hasValue = hasValue || !bytes.empty();
            blank = blank && is_blank(bytes);
        }
        if (!hasValue && !leaf) return;
        std::string tail;  // the last bytes of character data directly before
        for (std::size_t i = first; i < last; ++i) {
            ContentItem& item = items_[i];
            if (item.dropped) continue;
            if (item.kind == ItemKind::kLineEnd || item.kind == ItemKind::kSpace) {
                item.dropped = true;
            } else if (item.kind != ItemKind::kText) {
                tail.clear();
            } else {
                settle_text(item, blank && !leaf, tail);
            }
        }
    }

    void settle_text(ContentItem& item, bool asReferences, std::string& tail) {
        std::string bytes(plan_.bytes_of(item, document_.text));
        if (asReferences) {
            std::string references;
            append_blank_text(references, with_line_feeds(bytes));
            set_text(item, references);
            return;
        }
        if (bytes.substr(0, 9) == "<![CDATA[") {
            tail.clear();
            return;
        }
        if (!tail.empty() && !bytes.empty()) {
            const std::string joined = joined_text(tail, bytes).substr(tail.size());
            if (joined != bytes) set_text(item, joined);
            bytes = joined;
        }
        tail += bytes;
        if (tail.size() > 2) tail.erase(0, tail.size() - 2);
    }

    static std::string with_line_feeds(std::string_view raw) {
        std::string out;
        for (std::size_t i = 0; i < raw.size(); ++i) {
            if (raw[i] != '\r') {
                out += raw[i];
            } else if (i + 1 == raw.size() || raw[i + 1] != '\n') {
                out += '\n';
            }
        }
        return out;
    }

    void set_text(ContentItem& item, std::string text) {
        item.text = static_cast<std::uint32_t>(plan_.texts.size());
        plan_.texts.push_back(std::move(text));
    }

    struct OnceSet {
        std::vector<bool> met;
        bool insert_once(std::size_t number) {
            if (number >= met.size()) met.resize(number + 1, false);
            if (met[number]) return false;
            met[number] = true;
            return true;
        }
    };

    const ScannedDocument& document_;
    const ContentRequest& request_;
    FileEncoding encoding_;
    ContentStyle& style_;
    ReadContent content_;
    std::vector<ContentItem> items_;
    bool byLines_ = false;
    std::vector<std::uint32_t> childItems_;  // items of the children in the source
    std::vector<std::uint32_t> places_;      // of each wanted child among them
    std::vector<bool> stays_;                // each wanted child
    std::vector<bool> placeStays_;           // has a child that stays
    bool arranged_ = false;
    OnceSet taken_;
    std::vector<ContentLine> lines_;
    std::vector<std::pair<std::size_t, ContentItem>> insertions_;
    std::vector<ContentItem> closing_;
    ContentPlan plan_;
};

}  // namespace

void read_content(const ScannedDocument& document, const ContentRange& range,
                  ReadContent& content) {
    content.hasChildren = document.elements[range.element].next > range.element + 1;
    if (range.emptyTag) return;
    std::vector<Piece> gap;
    const auto closeGap = [&] {
        bool kept = !content.hasChildren;
        for (const Piece& piece : gap) {
            kept = kept || piece.kind == PieceKind::kCdata ||
                   (piece.kind == PieceKind::kText && !is_blank(piece.of(document.text)));
        }
        for (const Piece& piece : gap) {
            if (!kept || (piece.kind != PieceKind::kText && piece.kind != PieceKind::kCdata)) {
                append_gap_piece(document.text, piece, content.items);
                continue;
            }
            ContentItem item{ItemKind::kText};
            item.begin = piece.begin;
            item.end = piece.end;
            item.run = static_cast<std::uint32_t>(content.value.runs());
            content.items.push_back(item);
            content.mixed = content.hasChildren;
            if (piece.kind == PieceKind::kText) {
                content.value.add_text(piece.begin, piece.end);
            } else {
                content.value.add_section(piece.cdata_begin(), piece.cdata_end());
            }
        }
        gap.clear();
    };
    const std::uint32_t first = range.first == kNone ? range.element + 1 : range.first;
    ContentScan scan(document, range.element, range.begin, first);
    for (Piece piece = scan.next(); piece.kind != PieceKind::kEnd; piece = scan.next()) {
        if (piece.kind == PieceKind::kElement && piece.element == range.behind) break;
        if (piece.kind != PieceKind::kElement) {
            gap.push_back(piece);
            continue;
        }
        closeGap();
        ContentItem item{ItemKind::kChild};
        item.begin = piece.begin;
        item.end = piece.end;
        item.element = piece.element;
        content.hasEntityElements =
            content.hasEntityElements || document.comes_from_entity(piece.element);
        content.items.push_back(item);
    }
    closeGap();
}

ContentPlan plan_content(const ScannedDocument& document, const ContentRequest& request,
                         const EntityText& entityText, FileEncoding encoding, ContentStyle& style) {
    return Planner(document, request, entityText, encoding, style).run();
}

}  // namespace ux::xml
