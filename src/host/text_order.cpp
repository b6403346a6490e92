// Where text stands among children.
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "host/document.h"
#include "host/layout_source.h"
#include "host/node_detail.h"
#include "xml/layout_content.h"

using namespace uxhost;

namespace {

using namespace ux::xml;

// White space is no matter of values, so any will do.
class NoStyle final : public ContentStyle {
public:
    std::string line_end() override { return ""; }
    std::string first_child_indent() override { return ""; }
    std::string end_tag_indent() override { return ""; }
    bool has_moved(std::uint32_t /*element*/) override { return false; }
    bool takes_comments(std::uint32_t /*element*/) override { return false; }
    bool has_lines(std::uint32_t /*parent*/) override { return false; }
};

// Joins what no child stands between.
class RunList {
public:
    explicit RunList(std::vector<UXTextRun>& runs) : runs_(runs) {}
    void child() { ++children_; }
    void text(std::size_t length) {
        if (length == 0) return;
        if (runs_.empty() || runs_.back().childrenBefore != children_) {
            runs_.push_back({children_, 0});
        }
        runs_.back().length += length;
    }

private:
    std::vector<UXTextRun>& runs_;
    int children_ = 0;
};

// The length of what written character data and sections stand for.
std::size_t value_length(std::string_view written, const EntityText& entityText) {
    constexpr std::string_view kStart = "<![CDATA[";
    constexpr std::string_view kEnd = "]]>";
    WrittenValue value(written, entityText);
    for (std::size_t at = 0; at < written.size();) {
        const std::size_t section = std::min(written.find(kStart, at), written.size());
        if (section > at) value.add_text(at, section);
        if (section == written.size()) break;
        const std::size_t end = std::min(written.find(kEnd, section), written.size());
        value.add_section(section + kStart.size(), end);
        at = std::min(end + kEnd.size(), written.size());
    }
    return value.text().size();
}

}  // namespace

struct [[gnu::visibility("hidden")]] UXTextOrder::Source {
    explicit Source(const UXXmlWrapperBase& node) : handle(node), document(*document_of(node)) {}

    UXXmlWrapperBase handle;  // keeps the document
    const Document& document;
    uxhost::SourceText text;
    uxhost::SourceScan scan;

    bool has_children_of_source(const Element& element, std::uint32_t source) const;
    void read_runs(const ReadContent& content, RunList& runs) const;
    void plan_runs(const Element& element, std::uint32_t source, const ScannedTag& tag,
                   std::string_view value, RunList& runs) const;
    bool runs_of(const Element& element, std::string_view value, RunList& runs) const;
};

bool UXTextOrder::Source::has_children_of_source(const Element& element,
                                                 std::uint32_t source) const {
    const std::uint32_t behind = scan.document.elements[source].next;
    std::uint32_t expected = source + 1;
    for (const Element* child = document.element(element.first); child != nullptr;
         child = document.element(child->next)) {
        if (expected >= behind || scan.source_of(*document.layout(), *child) != expected) {
            return false;
        }
        expected = scan.document.elements[expected].next;
    }
    return expected == behind;
}

void UXTextOrder::Source::read_runs(const ReadContent& content, RunList& runs) const {
    for (const ContentItem& item : content.items) {
        if (item.kind == ItemKind::kChild) runs.child();
        if (item.kind == ItemKind::kText) runs.text(content.value.run_text(item.run).size());
    }
}

// As the element would be saved.
void UXTextOrder::Source::plan_runs(const Element& element, std::uint32_t source,
                                    const ScannedTag& tag, std::string_view value,
                                    RunList& runs) const {
    ContentRequest request;
    request.range = {source, tag.end, tag.empty};
    request.value = value;
    for (const Element* child = document.element(element.first); child != nullptr;
         child = document.element(child->next)) {
        const auto origins = document.layout()->origins.get(child->self);
        request.children.push_back({scan.source_of(*document.layout(), *child),
                                    (origins & uxhost::OriginTable<Element>::kArranged) != 0});
    }
    NoStyle style;
    const ContentPlan plan =
        plan_content(scan.document, request, scan.entityText, text.encoding, style);
    for (const ContentItem& item : plan.items) {
        if (item.kind == ItemKind::kChild) runs.child();
        if (item.kind != ItemKind::kText) continue;
        runs.text(value_length(plan.bytes_of(item, scan.document.text), scan.entityText));
    }
}

bool UXTextOrder::Source::runs_of(const Element& element, std::string_view value,
                                  RunList& runs) const {
    const std::uint32_t source = scan.source_of(*document.layout(), element);
    if (source == kNone || element.first == 0) {
        runs.text(value.size());
        return true;
    }
    ScannedTag tag;
    if (scan.document.comes_from_entity(source) ||
        !scan_tag(scan.document.text, scan.document.elements[source].begin, tag)) {
        return false;
    }
    ReadContent content(scan.document, scan.entityText);
    read_content(scan.document, {source, tag.end, tag.empty}, content);
    if (content.value.text() == value && has_children_of_source(element, source)) {
        read_runs(content, runs);
    } else {
        plan_runs(element, source, tag, value, runs);
    }
    return true;
}

UXTextOrder::UXTextOrder(const UXXmlWrapperBase& node) {
    if (UXKeepsLayout(&node) == 0) return;
    auto source = std::make_unique<Source>(node);
    try {
        const DocumentLayout& layout = *source->document.layout();
        read_source(*layout.source, source->text);
        scan_source(layout, source->text.text, source->scan);
    } catch (const Unkept&) {
        return;
    }
    source_ = std::move(source);
}
UXTextOrder::UXTextOrder(UXTextOrder&& other) noexcept = default;
UXTextOrder& UXTextOrder::operator=(UXTextOrder&& other) noexcept = default;
UXTextOrder::~UXTextOrder() = default;

bool UXTextOrder::IsKnown() const {
    return source_ != nullptr;
}

bool UXTextOrder::Runs(const UXXmlWrapperBase& node, std::vector<UXTextRun>& runs) const {
    runs.clear();
    if (source_ == nullptr) return false;
    const Element* element = live(node);
    if (element == nullptr || document_of(node) != document_of(source_->handle)) return false;
    CStringUTF8 scratch;
    const std::string_view value = source_->document.value_text(*element, scratch);
    if (value.empty()) return true;
    try {
        RunList list(runs);
        if (source_->runs_of(*element, value, list)) return true;
    } catch (const Unkept&) {  // would be refused
    }
    runs.clear();
    return false;
}

bool UXTextOrder::Written(const UXXmlWrapperBase& node, CStringUTF8& out) const {
    if (source_ == nullptr) return false;
    const Element* element = live(node);
    if (element == nullptr || document_of(node) != document_of(source_->handle)) return false;
    const uxhost::SourceScan& scan = source_->scan;
    const std::uint32_t place = scan.source_of(*source_->document.layout(), *element);
    if (place == kNone || scan.document.comes_from_entity(place)) return false;
    const ScannedElement& found = scan.document.elements[place];
    return uxhost::assign(out, scan.range(found.begin, found.end)) != 0;
}
