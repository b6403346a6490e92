// Asking the reader what a document type declaration means.
#include "host/layout_dtd.h"

#include <algorithm>
#include <climits>

#include "host/loader.h"

namespace uxhost {
namespace {

std::string reference_to(std::string_view name) {
    std::string reference(1, '&');
    reference += name;
    reference += ';';
    return reference;
}

}  // namespace

std::unique_ptr<DocumentHolder> read_text(std::string_view text) {
    LoadOptions options;
    options.maxNesting = INT_MAX;
    std::size_t position = 0;
    const ux::xml::ByteSource source{
        [&](char* buffer, std::size_t size) {
            const std::size_t count = std::min(size, text.size() - position);
            std::copy_n(text.data() + position, count, buffer);
            position += count;
            return static_cast<long>(count);
        },
        [&](std::uint64_t offset) {
            position = std::min(static_cast<std::size_t>(offset), text.size());
        }};
    UXFileError unused;
    return load_document(source, text.size(), options, unused);
}

std::string without_extra_blanks(std::string_view value) {
    std::string out;
    for (const char c : value) {
        if (c != ' ' || (!out.empty() && out.back() != ' ')) out += c;
    }
    if (!out.empty() && out.back() == ' ') out.pop_back();
    return out;
}

// Whether a declaration outside may change what is declared here is told by the first line.
LayoutDtd::LayoutDtd(std::string_view prolog, std::string_view doctype) {
    const std::string_view first = prolog.substr(0, prolog.find("?>"));
    const std::size_t standalone = first.find("standalone");
    const bool alone = standalone != std::string_view::npos &&
                       first.find("yes", standalone) != std::string_view::npos;
    start_ = alone ? "<?xml version='1.0' standalone='yes'?>" : "<?xml version='1.0'?>";
    start_ += doctype;
}

std::unique_ptr<DocumentHolder> LayoutDtd::read_content(std::string_view content) const {
    return read_text(start_ + "<ux>" + std::string(content) + "</ux>");
}

const DocumentHolder* LayoutDtd::entity(std::string_view name) {
    const auto known = entities_.find(name);
    if (known != entities_.end()) return known->second.get();
    return entities_.emplace(name, read_content(reference_to(name))).first->second.get();
}

std::optional<std::string> LayoutDtd::entity_text(std::string_view name) {
    const DocumentHolder* const document = entity(name);
    if (document == nullptr || (*document)->root()->first != 0) return std::nullopt;
    CStringUTF8 made;
    return std::string((*document)->value_text(*(*document)->root(), made));
}

std::uint32_t LayoutDtd::entity_elements(std::string_view name) {
    const DocumentHolder* const document = entity(name);
    if (document == nullptr) return 0;
    const Element& root = *(*document)->root();
    std::uint32_t count = 0;
    for (const Element* at = (*document)->next_below(root, root); at != nullptr;
         at = (*document)->next_below(root, *at)) {
        ++count;
    }
    return count;
}

bool LayoutDtd::takes_blanks(std::string_view tag, std::string_view attribute) {
    const auto key = std::make_pair(std::string(tag), std::string(attribute));
    const auto known = takesBlanks_.find(key);
    if (known != takesBlanks_.end()) return known->second;
    const auto probe = read_text(start_ + "<" + key.first + " " + key.second + "=' a  b '/>");
    bool takes = false;
    if (probe != nullptr && (*probe)->root()->attributeCount == 1) {
        takes = (*probe)->attribute_value((*probe)->attributes(*(*probe)->root())[0]) == "a b";
    }
    takesBlanks_[key] = takes;
    return takes;
}

}  // namespace uxhost
