// How a document is formatted.
#include "host/layout_indent.h"

#include <algorithm>
#include <map>

namespace uxhost {

using namespace ux::xml;

const Indentation::Formatting& Indentation::formatting() {
    if (formatting_) return *formatting_;
    formatting_ = Formatting{};
    const std::size_t feed = scan_.document.text.find_first_of("\r\n");
    if (feed != std::string_view::npos) {
        formatting_->lineEnd = scan_.document.text[feed] == '\n'       ? "\n"
                               : scan_.range(feed, feed + 2) == "\r\n" ? "\r\n"
                                                                       : "\r";
    }
    std::map<std::string_view, std::size_t> steps;
    for (const ScannedElement& element : scan_.document.elements) {
        const std::optional<std::string_view> own = own_indent(element.begin);
        if (!own || element.parent == kNoElement) continue;
        formatting_->hasLines = true;
        const std::optional<std::string_view> above =
            own_indent(scan_.document.elements[element.parent].begin);
        if (!above || own->size() <= above->size()) continue;
        if (own->substr(0, above->size()) == *above) ++steps[own->substr(above->size())];
    }
    const auto most =
        std::max_element(steps.begin(), steps.end(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    if (most != steps.end()) formatting_->step = most->first;
    return *formatting_;
}

std::optional<std::string_view> Indentation::own_indent(std::size_t at) const {
    std::size_t begin = at;
    while (begin > 0 &&
           (scan_.document.text[begin - 1] == ' ' || scan_.document.text[begin - 1] == '\t'))
        --begin;
    if (begin > 0 && scan_.document.text[begin - 1] != '\n' &&
        scan_.document.text[begin - 1] != '\r') {
        return std::nullopt;
    }
    return scan_.range(begin, at);
}

std::string Indentation::line_indent(std::uint32_t source, std::uint32_t shift) const {
    constexpr std::size_t kFarthest = 4096;
    const std::size_t begin = scan_.document.elements[source].begin;
    std::size_t line = begin;
    while (line > 0 && scan_.document.text[line - 1] != '\n' &&
           scan_.document.text[line - 1] != '\r') {
        if (begin - line == kFarthest) return "";
        --line;
    }
    std::size_t end = line;
    while (end < begin && (scan_.document.text[end] == ' ' || scan_.document.text[end] == '\t'))
        ++end;
    return shifted(scan_.range(line, end), shift);
}

std::string Indentation::shifted(std::string_view indent, std::uint32_t shift) const {
    const Shift& by = shifts_[shift];
    if (shift == 0 || indent.substr(0, by.from.size()) != by.from) return std::string(indent);
    return by.to + std::string(indent.substr(by.from.size()));
}

std::uint32_t Indentation::add_shift(std::string_view from, std::string_view to) {
    if (from == to) return 0;
    shifts_.push_back({std::string(from), std::string(to)});
    return static_cast<std::uint32_t>(shifts_.size() - 1);
}

void Indentation::put_space(std::size_t begin, std::size_t end, std::uint32_t shift) {
    if (shift == 0) {
        out_.copy(begin, end);
        return;
    }
    std::size_t at = begin;
    while (at < end) {
        const std::size_t line = scan_.document.text.find_first_of("\r\n", at);
        if (line >= end) break;
        std::size_t next = line;
        while (next < end &&
               (scan_.document.text[next] == '\r' || scan_.document.text[next] == '\n'))
            ++next;
        out_.copy(at, next);
        const std::size_t indentEnd =
            std::min(scan_.document.text.find_first_not_of(" \t", next), end);
        put_indent(next, indentEnd, shift);
        at = indentEnd;
    }
    out_.copy(at, end);
}
void Indentation::put_indent(std::size_t begin, std::size_t end, std::uint32_t shift) {
    const Shift& by = shifts_[shift];
    if (shift == 0 || scan_.range(begin, end).substr(0, by.from.size()) != by.from) {
        out_.copy(begin, end);
        return;
    }
    out_.put(by.to);
    out_.copy(begin + by.from.size(), end);
}

}  // namespace uxhost
