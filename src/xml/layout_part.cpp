// Which part of an element's content a change of its children concerns.
#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "xml/layout_content.h"

namespace ux::xml {
namespace {

// Below that a plan for all children costs nothing.
constexpr std::size_t kFewChildren = 32;

// The children of an element in the source, and the gaps between them: gap i stands before child i,
// the last one before the end tag.
class Siblings {
public:
    Siblings(const ScannedDocument& document, const ContentRange& range)
        : document_(document), range_(range) {
        const std::uint32_t end = document.elements[range.element].next;
        for (std::uint32_t child = range.element + 1; child < end; child = at(child).next) {
            numbers_.push_back(child);
        }
    }
    std::size_t size() const { return numbers_.size(); }
    std::uint32_t number(std::size_t child) const { return numbers_[child]; }
    std::size_t gap_begin(std::size_t gap) const {
        return gap == 0 ? range_.begin : at(numbers_[gap - 1]).end;
    }
    std::string_view gap(std::size_t gap) const {
        const std::size_t begin = gap_begin(gap);
        const std::size_t end = gap < size()
                                    ? at(numbers_[gap]).begin
                                    : document_.text.rfind('<', at(range_.element).end - 1);
        return document_.text.substr(begin, end - begin);
    }
    // Are there two lines, with nothing but white space between the elements?
    bool breaks_line(std::size_t number) const {
        const std::string_view space = gap(number);
        return is_blank(space) && space.find_first_of("\r\n") != std::string_view::npos;
    }
    bool are_without_text(std::size_t first, std::size_t last) const {
        for (; first < last; ++first) {
            if (!is_without_text(gap(first))) return false;
        }
        return true;
    }

private:
    const ScannedElement& at(std::uint32_t element) const { return document_.elements[element]; }

    const ScannedDocument& document_;
    const ContentRange& range_;
    std::vector<std::uint32_t> numbers_;
};

// Children first to last, without the last one.
struct Span {
    std::size_t first;
    std::size_t last;
};

// From a child that stays and begins a line to one that stays and ends one. What is removed, added or
// moved between them changes nothing beyond them.
Span widened(const Siblings& siblings, Span changed) {
    if (changed.first > 0) --changed.first;
    while (changed.first > 0 && !siblings.breaks_line(changed.first)) --changed.first;
    if (changed.last < siblings.size()) ++changed.last;
    while (changed.last < siblings.size() && !siblings.breaks_line(changed.last)) ++changed.last;
    return changed;
}

}  // namespace

std::optional<ContentPart> changed_part(const ScannedDocument& document,
                                        const ContentRequest& request) {
    const std::vector<WantedChild>& wanted = request.children;
    if (request.preserve || !request.value.empty()) return {};
    const Siblings siblings(document, request.range);
    const std::size_t least = std::min(siblings.size(), wanted.size());
    if (least < kFewChildren) return {};
    Span changed{0, siblings.size()};
    while (changed.first < least &&
           wanted[changed.first].source == siblings.number(changed.first)) {
        ++changed.first;
    }
    std::size_t behind = 0;
    while (behind < least - changed.first && wanted[wanted.size() - 1 - behind].source ==
                                                 siblings.number(siblings.size() - 1 - behind)) {
        ++behind;
    }
    changed.last -= behind;
    const Span part = widened(siblings, changed);
    ContentPart found;
    found.before = part.first;
    found.behind = siblings.size() - part.last;
    if (found.before + found.behind < least / 2) return {};
    const std::uint32_t first = siblings.number(part.first);
    const std::uint32_t last = siblings.number(part.last - 1);
    for (std::size_t i = found.before; i < wanted.size() - found.behind; ++i) {
        const std::uint32_t source = wanted[i].source;
        if (wanted[i].arranged) return {};
        const bool copied = source != kNone && (source < first || source > last) &&
                            document.elements[source].parent == request.range.element;
        if (copied) return {};
    }
    if (!siblings.are_without_text(0, part.first) ||
        !siblings.are_without_text(part.last + 1, siblings.size() + 1)) {
        return {};
    }
    found.range = request.range;
    if (found.before != 0) {
        found.range.begin = siblings.gap_begin(part.first);
        found.range.first = first;
    }
    if (found.behind != 0) found.range.behind = siblings.number(part.last);
    return found;
}

}  // namespace ux::xml
