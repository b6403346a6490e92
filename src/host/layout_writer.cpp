// Writing a document with the bytes of its source.
#include "host/layout_writer.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "host/element_path.h"
#include "host/layout_dtd.h"
#include "host/same_branch.h"
#include "xml/escaping.h"
#include "xml/layout_content.h"
#include "xml/layout_lines.h"

namespace uxhost {

using namespace ux::xml;

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

// An element that is being written.
struct Frame {
    enum class Form : std::uint8_t { kSame, kPlanned, kNew };
    const Element* element = nullptr;
    const Element* child = nullptr;  // the next one that no plan is about
    std::uint32_t source = kNone;    // its number in the source
    std::uint32_t shift = 0;
    Form form = Form::kNew;
    bool preserve = false;
    bool lines = false;  // new: children have lines of their own
    bool renamed = false;
    bool openedEmpty = false;  // planned: the source has no end tag
    std::size_t at = 0;        // same and planned: written up to here
    std::size_t endTag = 0;
    std::string indent;  // new: of its own line
    // Planned: children before the plan stay where they are, as do those behind it.
    std::size_t childrenBefore = 0;
    std::unique_ptr<ContentPlan> plan;     // null when it was followed
    std::size_t item = 0;                  // of the plan, the next one
    std::vector<const Element*> children;  // of the plan
    std::size_t planEnd = 0;               // in the source
    std::size_t childrenBehind = 0;
    const Element* childBehind = nullptr;  // the first of them
};

class LayoutWriter final : public ContentStyle {
public:
    LayoutWriter(const Document& document, IdPolicy ids, KeptDocument& out)
        : document_(document),
          layout_(document.layout()),
          out_(out),
          indentation_(scan_, out.text),
          tags_(document, scan_, indentation_, ids, out) {}

    void run(const Element& top) {
        top_ = &top;
        whole_ = layout_->whole && &top == document_.root();
        telling_place([&] {
            read_source();
            write(top);
        });
    }

    // Reads back what is to be written, unless it is long and of the most ordinary kind.
    void check_result(const Element& top) const {
        constexpr std::size_t kOrdinaryBytes = std::size_t{4} << 20;
        const bool ordinary = out_.source.encoding == FileEncoding::kUtf8 && scan_.dtd == nullptr;
        if (ordinary && out_.text.size() > kOrdinaryBytes) return;
        std::string bytes;
        out_.for_each_piece([&](std::string_view piece) { bytes += piece; });
        const auto read = read_text(bytes);
        if (read != nullptr &&
            same_branch(document_, top, *read->document, *(*read)->root(), out_.idsLeftOut == 0)) {
            return;
        }
        throw Unkept("with its layout the document would not be read as it is");
    }

    // Without the bytes of any source.
    void run_anew(const Element& top, std::string_view step) {
        top_ = &top;
        anew_ = true;
        if (layout_ == nullptr) tags_.set_has_ids();
        indentation_.set_formatting({true, "\n", std::string(step)});
        telling_place([&] {
            if (layout_ != nullptr) {
                read_source();
                out_.commentsLeftOut = count_comments(scan_.document);
                out_.source.text = {};
                out_.source.tail = {};
                out_.source.encoding = FileEncoding::kUtf8;
            }
            out_.text.put(kDeclaration);
            out_.text.put("\n");
            push_new(top, "", false, true);
            while (!frames_.empty()) this->step();
            out_.text.put("\n");
        });
    }

    template <typename Body>
    void telling_place(Body&& body) {
        try {
            body();
        } catch (const Unkept& unkept) {
            const Element& place = current_ == nullptr ? *top_ : *current_;
            throw Unkept(path_of(document_, place) + tags_.attribute() + ": " + unkept.what());
        }
    }

    // --- what plans ask for ----------------------------------------------------------------------

    std::string line_end() override {
        return indentation_.formatting().hasLines ? indentation_.formatting().lineEnd : "";
    }
    std::string first_child_indent() override {
        return line_indent(*planned_) + indentation_.formatting().step;
    }
    std::string end_tag_indent() override { return line_indent(*planned_); }
    bool has_moved(std::uint32_t element) override {
        find_homes();
        return anywhere_[element] && !atHome_[element];
    }
    bool takes_comments(std::uint32_t element) override {
        if (!has_moved(element) || taken_[element]) return false;
        taken_[element] = true;
        return true;
    }
    bool has_lines(std::uint32_t parent) override {
        const auto known = hasLines_.find(parent);
        if (known != hasLines_.end()) return known->second;
        ScannedTag tag;
        bool lines = scan_tag(text(), scan_.document.elements[parent].begin, tag);
        if (lines) {
            ReadContent content(scan_.document, scan_.entityText);
            read_content(scan_.document, {parent, tag.end, tag.empty}, content);
            lines = !content.mixed && !source_preserves(parent);
        }
        hasLines_[parent] = lines;
        return lines;
    }

private:
    std::string_view text() const { return out_.source.text; }
    std::string_view range(std::size_t begin, std::size_t end) const {
        return text().substr(begin, end - begin);
    }

    // --- the source ----------------------------------------------------------------------------

    void read_source() {
        uxhost::read_source(*layout_->source, out_.source);
        scan_source(*layout_, text(), scan_);
        preserves_ = document_.find_name("xml:space") != 0;
    }

    bool source_preserves(std::uint32_t element) const {
        if (text().find("xml:space") == std::string_view::npos) return false;
        ScannedTag tag;
        for (; element != kNoElement; element = scan_.document.elements[element].parent) {
            if (!scan_tag(text(), scan_.document.elements[element].begin, tag)) return false;
            for (const ScannedAttribute& attribute : tag.attributes) {
                if (range(attribute.nameBegin, attribute.nameEnd) != "xml:space") continue;
                return range(attribute.valueBegin, attribute.valueEnd) == "preserve";
            }
        }
        return false;
    }

    std::uint32_t source_of(const Element& element) const {
        return anew_ ? kNone : scan_.source_of(*layout_, element);
    }
    bool is_arranged(const Element& element) const {
        return (layout_->origins.get(element.self) & OriginTable<Element>::kArranged) != 0;
    }

    // Which elements of the source stand anywhere in the tree, and which below the parent they had.
    void find_homes() {
        if (!atHome_.empty()) return;
        atHome_.assign(scan_.document.elements.size(), false);
        anywhere_.assign(scan_.document.elements.size(), false);
        taken_.assign(scan_.document.elements.size(), false);
        for (const Element* at = top_; at != nullptr; at = document_.next_below(*top_, *at)) {
            const std::uint32_t source = source_of(*at);
            if (source == kNone) continue;
            anywhere_[source] = true;
            const Element* parent = document_.element(at->parent);
            const std::uint32_t before = scan_.document.elements[source].parent;
            const bool home = at == top_ || parent == nullptr ? before == kNoElement || !whole_
                                                              : source_of(*parent) == before;
            if (home) atHome_[source] = true;
        }
    }

    // The indentation of the line on which an element's start tag is written.
    std::string line_indent(const Frame& frame) const {
        return frame.source == kNone ? frame.indent
                                     : indentation_.line_indent(frame.source, frame.shift);
    }

    // --- elements ------------------------------------------------------------------------------

    void write(const Element& top) {
        const ScannedElement& root = scan_.document.elements[0];
        if (whole_) {
            out_.text.copy(0, root.begin);
        } else {
            out_.source.encoding = FileEncoding::kUtf8;
            out_.text.put(kDeclaration);
        }
        push_top(top);
        while (!frames_.empty()) step();
        if (whole_) {
            out_.text.copy(root.end, text().size());
        } else {
            out_.source.tail = {};
        }
    }

    void push_top(const Element& top) {
        const std::uint32_t source = source_of(top);
        if (source == kNone) {
            push_new(top, "", false, !line_end().empty());
            return;
        }
        std::uint32_t shift = 0;
        if (source != 0) {
            const std::optional<std::string_view> indent =
                indentation_.own_indent(scan_.document.elements[source].begin);
            if (indent) shift = indentation_.add_shift(*indent, "");
        }
        push_from_source(top, source, shift, source_preserves(source));
    }

    void push_from_source(const Element& element, std::uint32_t source, std::uint32_t shift,
                          bool preserve) {
        current_ = &element;
        if (scan_.document.comes_from_entity(source)) {
            throw Unkept("the element comes from an entity and cannot be written elsewhere");
        }
        const ScannedElement& scanned = scan_.document.elements[source];
        if (!scan_tag(text(), scanned.begin, tag_)) {
            throw Unkept("the file's layout cannot be read again");
        }
        const bool renamed =
            document_.name_view(element.tag) != range(scanned.begin + 1, tag_.nameEnd);
        const SourcePlace place = {&element, source, shift, renamed};
        const bool same = has_same_content(place);
        tags_.put_start(place, tag_);
        if (same && element.first == 0 && !renamed) {
            indentation_.put_space(tag_.attributesEnd, tag_.end, shift);
            out_.text.copy(tag_.end, scanned.end);
        } else {
            push_frame(place, preserves(element, preserve), same);
        }
    }

    // Of an element whose start tag was read and written but for its end.
    void push_frame(const SourcePlace& place, bool preserve, bool same) {
        const ScannedElement& scanned = scan_.document.elements[place.source];
        Frame frame;
        frame.element = place.element;
        frame.source = place.source;
        frame.shift = place.shift;
        frame.preserve = preserve;
        frame.at = tag_.end;
        frame.endTag = tag_.empty ? scanned.end : scan_.end_tag_of(scanned);
        frame.openedEmpty = tag_.empty;
        frame.renamed = place.renamed;
        if (same) {
            push_same(std::move(frame));
        } else {
            push_planned(std::move(frame));
        }
    }

    bool preserves(const Element& element, bool inherited) const {
        if (!preserves_) return inherited;
        const Attribute* space = document_.find_attribute(element, "xml:space");
        if (space == nullptr) return inherited;
        return document_.attribute_value(*space) == "preserve";
    }

    void push_same(Frame&& frame) {
        indentation_.put_space(tag_.attributesEnd, tag_.end, frame.shift);
        frame.form = Frame::Form::kSame;
        frame.child = document_.element(frame.element->first);
        frames_.push_back(std::move(frame));
    }

    // Has the element the children it had, in their order, and the text? A branch whose indentation
    // changes is never the same.
    bool has_same_content(const SourcePlace& place) {
        const Element& element = *place.element;
        const ScannedElement& scanned = scan_.document.elements[place.source];
        std::uint32_t expected = place.source + 1;
        bool fromEntity = false;
        const Element* child = document_.element(element.first);
        while (child != nullptr) {
            if (expected >= scanned.next || source_of(*child) != expected) return false;
            if (scan_.document.comes_from_entity(expected)) {
                child = behind_entity(*child, expected);
                fromEntity = true;
            } else {
                child = document_.element(child->next);
            }
            expected = scan_.document.elements[expected].next;
        }
        if (expected != scanned.next) return false;
        if (place.shift != 0 && element.first != 0) return false;
        const std::string_view value = document_.value_text(element, scratch_);
        if (element.first == 0) return has_same_text(place, value);
        if (fromEntity) return has_same_text_with_entities(place, value);
        return has_same_branch_text(place, value);
    }

    // The children of a node that an entity's reference stands for must be what it stands for.
    // Yields the first child behind them.
    const Element* behind_entity(const Element& first, std::uint32_t source) const {
        const ScannedElement& reference = scan_.document.elements[source];
        const std::string_view name = range(reference.begin + 1, reference.end - 1);
        const Document& entity = *scan_.dtd->entity(name)->document;
        const Element* expected = entity.element(entity.root()->first);
        const Element* child = &first;
        while (expected != nullptr) {
            if (child == nullptr || !same_branch(entity, *expected, document_, *child, true)) {
                throw Unkept("what the entity reference &" + std::string(name) +
                             "; stands for has changed");
            }
            expected = entity.element(expected->next);
            child = document_.element(child->next);
        }
        return child;
    }

    bool has_same_text(const SourcePlace& place, std::string_view value) {
        if (tag_.empty) return value.empty();
        const std::size_t begin = tag_.end;
        const std::size_t end = scan_.end_tag_of(scan_.document.elements[place.source]);
        const std::string_view raw = range(begin, end);
        if (is_literal_text(raw)) return raw == value;
        return read_value(place) == value;
    }
    // Text of entities with elements is part of the value as well.
    bool has_same_text_with_entities(const SourcePlace& place, std::string_view value) const {
        const std::size_t end = scan_.end_tag_of(scan_.document.elements[place.source]);
        const auto content = scan_.dtd->read_content(range(tag_.end, end));
        if (content == nullptr) throw Unkept("the file's layout cannot be read again");
        CStringUTF8 made;
        if ((*content)->value_text(*(*content)->root(), made) == value) return true;
        throw Unkept("the text beside elements that come from an entity has changed");
    }
    std::string read_value(const SourcePlace& place) {
        ReadContent content(scan_.document, scan_.entityText);
        read_content(scan_.document, {place.source, tag_.end, tag_.empty}, content);
        return content.value.text();
    }

    bool has_same_branch_text(const SourcePlace& place, std::string_view value) {
        const ScannedElement& scanned = scan_.document.elements[place.source];
        if (value.empty()) {
            std::size_t at = tag_.end;
            std::uint32_t child = place.source + 1;
            bool textless = true;
            while (textless && child < scanned.next) {
                textless = is_without_text(range(at, scan_.document.elements[child].begin));
                at = scan_.document.elements[child].end;
                child = scan_.document.elements[child].next;
            }
            if (textless && is_without_text(range(at, scan_.end_tag_of(scanned)))) return true;
        }
        return read_value(place) == value;
    }

    void push_planned(Frame&& frame) {
        const Element& element = *frame.element;
        ContentRequest request;
        request.range = {frame.source, tag_.end, tag_.empty};
        request.preserve = frame.preserve;
        CStringUTF8 made;
        request.value = document_.value_text(element, made);
        require_characters(request.value);
        for (const Element* child = document_.element(element.first); child != nullptr;
             child = document_.element(child->next)) {
            frame.children.push_back(child);
            request.children.push_back({source_of(*child), is_arranged(*child)});
        }
        const bool staysEmpty = tag_.empty && request.children.empty() && request.value.empty();
        if (tag_.empty && !staysEmpty) {
            out_.text.put(">");
        } else {
            indentation_.put_space(tag_.attributesEnd, tag_.end, frame.shift);
        }
        frame.form = Frame::Form::kPlanned;
        frame.planEnd = frame.endTag;
        if (scan_.dtd == nullptr && frame.shift == 0) leave_out_unchanged(frame, request);
        planned_ = &frame;
        frame.plan = std::make_unique<ContentPlan>(
            plan_content(scan_.document, request, scan_.entityText, out_.source.encoding, *this));
        frames_.push_back(std::move(frame));
    }

    // Children that stand where they stood need no plan, apart from those next to a change.
    void leave_out_unchanged(Frame& frame, ContentRequest& request) const {
        const std::optional<ContentPart> part = changed_part(scan_.document, request);
        if (!part) return;
        const auto before = static_cast<std::ptrdiff_t>(part->before);
        const auto behind = static_cast<std::ptrdiff_t>(part->behind);
        frame.childrenBefore = part->before;
        frame.childrenBehind = part->behind;
        frame.child = frame.children.front();
        if (behind != 0) {
            frame.childBehind = *(frame.children.end() - behind);
            frame.planEnd = scan_.document.elements[part->range.behind].begin;
        }
        request.range = part->range;
        const auto cut = [&](auto& list) { list = {list.begin() + before, list.end() - behind}; };
        cut(frame.children);
        cut(request.children);
    }

    void push_new(const Element& element, std::string indent, bool preserve, bool lines) {
        current_ = &element;
        tags_.put_new_start(element);
        CStringUTF8 made;
        const std::string_view value = document_.value_text(element, made);
        require_characters(value);
        if (value.empty() && element.first == 0) {
            out_.text.put("/>");
            return;
        }
        out_.text.put(">");
        std::string text;
        if (element.first != 0 && is_blank(value)) {
            append_blank_text(text, value);
        } else {
            append_text(text, value, out_.source.encoding);
        }
        out_.text.put(text);
        Frame frame;
        frame.element = &element;
        frame.child = document_.element(element.first);
        frame.preserve = preserves(element, preserve);
        frame.lines = lines && value.empty() && !frame.preserve;
        frame.indent = std::move(indent);
        frames_.push_back(std::move(frame));
    }

    // --- going on ------------------------------------------------------------------------------

    void step() {
        switch (frames_.back().form) {
            case Frame::Form::kSame:
                return step_same();
            case Frame::Form::kPlanned:
                return step_planned();
            case Frame::Form::kNew:
                return step_new();
        }
    }

    void step_same() {
        Frame& frame = frames_.back();
        if (frame.child != nullptr) return push_in_place(frame);
        const std::size_t end = scan_.document.elements[frame.source].end;
        if (!frame.renamed || frame.openedEmpty) {
            out_.text.copy(frame.at, end);
        } else {
            out_.text.copy(frame.at, frame.endTag);
            put_end_tag(frame);
        }
        frames_.pop_back();
    }

    // The next child, with what stands before it.
    void push_in_place(Frame& frame) {
        const Element& child = *frame.child;
        const std::uint32_t source = source_of(child);
        frame.child = document_.element(child.next);
        if (scan_.document.comes_from_entity(source)) return;  // its reference is copied
        const ScannedElement& place = scan_.document.elements[source];
        out_.text.copy(frame.at, place.begin);
        frame.at = place.end;
        push_from_source(child, source, frame.shift, frame.preserve);
    }

    void put_end_tag(const Frame& frame) {
        current_ = frame.element;
        const std::size_t end = scan_.document.elements[frame.source].end;
        if (frame.openedEmpty) {
            out_.text.put("</");
            tags_.put_name(document_.name_view(frame.element->tag));
            out_.text.put(">");
        } else if (!frame.renamed) {
            out_.text.copy(frame.endTag, end);
        } else {
            std::size_t nameEnd = frame.endTag + 2;
            while (!is_blank(text()[nameEnd]) && text()[nameEnd] != '>') ++nameEnd;
            out_.text.put("</");
            tags_.put_name(document_.name_view(frame.element->tag));
            out_.text.copy(nameEnd, end);
        }
    }

    void step_planned() {
        Frame& frame = frames_.back();
        if (frame.childrenBefore != 0) {
            --frame.childrenBefore;
            return push_in_place(frame);
        }
        if (frame.plan != nullptr) {
            if (follow_plan(frame)) return;
            frame.plan.reset();
            frame.at = frame.planEnd;
            frame.child = frame.childBehind;
        }
        if (frame.childrenBehind != 0) {
            --frame.childrenBehind;
            return push_in_place(frame);
        }
        out_.text.copy(frame.at, frame.endTag);
        const bool closes =
            !frame.openedEmpty || frame.element->first != 0 || document_.has_value(*frame.element);
        if (closes) put_end_tag(frame);
        frames_.pop_back();
    }

    // Up to the next child; false when none is left.
    bool follow_plan(Frame& frame) {
        const std::vector<ContentItem>& items = frame.plan->items;
        while (frame.item < items.size()) {
            const ContentItem& item = items[frame.item++];
            if (item.kind == ItemKind::kChild) {
                push_child(frame, item);
                return true;
            }
            put_item(frame, item);
        }
        return false;
    }

    bool behind_line_end(const Frame& frame) const {
        return frame.item >= 2 && frame.plan->items[frame.item - 2].kind == ItemKind::kLineEnd;
    }

    void put_item(const Frame& frame, const ContentItem& item) {
        if (item.text != kNone) {
            out_.text.put(frame.plan->texts[item.text]);
        } else if (item.kind == ItemKind::kSpace && behind_line_end(frame)) {
            indentation_.put_indent(item.begin, item.end, frame.shift);
        } else {
            out_.text.copy(item.begin, item.end);
        }
    }

    // The white space that was written before a child that begins its line.
    std::string indent_before(const Frame& frame) const {
        if (frame.item < 2) return "";
        const ContentItem& item = frame.plan->items[frame.item - 2];
        if (item.kind != ItemKind::kSpace) return "";
        const std::string bytes(frame.plan->bytes_of(item, text()));
        return item.text != kNone ? bytes : indentation_.shifted(bytes, frame.shift);
    }

    void push_child(const Frame& frame, const ContentItem& item) {
        const Element& child = *frame.children[item.child];
        const std::uint32_t source = item.element;
        if (source == kNone) {
            const bool lines = item.ownLine && !line_end().empty();
            push_new(child, item.ownLine ? indent_before(frame) : std::string(), frame.preserve,
                     lines);
        } else if (item.inPlace) {
            push_from_source(child, source, frame.shift, frame.preserve);
        } else {
            push_elsewhere(child, source, item.ownLine, indent_before(frame), frame.preserve);
        }
    }

    void push_elsewhere(const Element& child, std::uint32_t source, bool ownLine,
                        std::string_view indent, bool preserve) {
        std::uint32_t shift = 0;
        const std::optional<std::string_view> before =
            indentation_.own_indent(scan_.document.elements[source].begin);
        if (ownLine && before) shift = indentation_.add_shift(*before, indent);
        push_from_source(child, source, shift, preserve);
    }

    void step_new() {
        Frame& frame = frames_.back();
        const bool lines = frame.lines;
        if (frame.child == nullptr) {
            if (lines && frame.element->first != 0) {
                out_.text.put(line_end());
                out_.text.put(frame.indent);
            }
            out_.text.put("</");
            tags_.put_name(document_.name_view(frame.element->tag));
            out_.text.put(">");
            frames_.pop_back();
            return;
        }
        const Element& child = *frame.child;
        frame.child = document_.element(child.next);
        std::string indent;
        if (lines) {
            indent = frame.indent + indentation_.formatting().step;
            out_.text.put(line_end());
            out_.text.put(indent);
        }
        const std::uint32_t source = source_of(child);
        if (source == kNone) {
            push_new(child, std::move(indent), frame.preserve, lines);
        } else {
            push_elsewhere(child, source, lines, indent, frame.preserve);
        }
    }

    const Document& document_;
    const DocumentLayout* layout_;
    KeptDocument& out_;
    SourceScan scan_;
    Indentation indentation_;
    TagWriter tags_;
    const Element* top_ = nullptr;
    bool whole_ = false;
    bool anew_ = false;
    bool preserves_ = false;
    std::vector<bool> anywhere_;
    std::vector<bool> atHome_;
    std::vector<bool> taken_;
    std::unordered_map<std::uint32_t, bool> hasLines_;
    std::vector<Frame> frames_;
    ScannedTag tag_;
    CStringUTF8 scratch_;
    const Frame* planned_ = nullptr;
    const Element* current_ = nullptr;
};

}  // namespace

void KeptDocument::for_each_piece(const std::function<void(std::string_view)>& take) const {
    if (source.encoding == FileEncoding::kUtf8) {
        text.for_each(source.text, take);
    } else {
        text.for_each(source.text, [&](std::string_view piece) {
            std::string encoded;
            append_encoded(encoded, piece, source.encoding);
            take(encoded);
        });
    }
    if (!source.tail.empty()) take(source.tail);
}

void write_kept(const Document& document, const Element& top, IdPolicy ids, KeptDocument& out) {
    LayoutWriter writer(document, ids, out);
    writer.run(top);
    if (!out.is_unchanged()) writer.check_result(top);
}

void write_indented(const Document& document, const Element& top, std::size_t step, IdPolicy ids,
                    KeptDocument& out) {
    LayoutWriter(document, ids, out).run_anew(top, std::string(step, ' '));
}

}  // namespace uxhost
