// Opening spectrum files, prefixes of their tags, and texts of their elements.
#include "import/n42_document.h"

#include <filesystem>
#include <system_error>

#include "base/ascii.h"
#include "base/text_view.h"
#include "frame/guards.h"
#include "frame/walk.h"
#include "import/n42_records.h"

namespace ux {
namespace {

constexpr int kReadPermission = 4;
constexpr std::string_view kBinding = "xmlns:";

std::uint64_t file_size(const CStringUTF8& path) {
    const auto* text = reinterpret_cast<const char8_t*>(static_cast<const char*>(path));
    std::error_code failed;
    const std::uintmax_t size = std::filesystem::file_size(std::filesystem::path(text), failed);
    return failed ? 0 : size;
}

// An address whose last segment that is not empty names one of the two forms.
bool is_n42_namespace(std::string_view address) {
    while (!address.empty() && address.back() == '/') address.remove_suffix(1);
    const std::string_view last = address.substr(address.rfind('/') + 1);
    return equal_no_case(last, "N42") || equal_no_case(last, "ANSIN4242");
}

}  // namespace

N42Document::N42Document(const char* path) : path_(path), fileBytes_(file_size(path_)) {}

int N42Document::Open() {
    if (UXAccess(path_, kReadPermission) != 0) return kN42CannotRead;
    UXXmlWrapperBase document;
    return document.load(path_, 0, false) ? OpenLoaded(document) : kN42CannotLoad;
}

int N42Document::OpenLoaded(const UXXmlWrapperBase& document) {
    document_ = document;
    CollectPrefixes();
    std::string_view tag;
    document_.GetTagView(tag);
    Q_n42_ID root{};
    const bool known = GetID(tag, root);
    return CheckRoot(known, root);
}

std::string N42Document::RootName() const {
    std::string_view tag;
    document_.GetTagView(tag);
    return std::string(tag);
}

std::size_t N42Document::SpectraAnywhere() const {
    std::size_t count = 0;
    visit_below(document_, [&](const UXXmlWrapperBase& node) {
        std::string_view name;
        node.GetTagView(name);
        count += name.substr(name.rfind(':') + 1) == "Spectrum" ? 1U : 0U;
    });
    return count;
}

// ---- names ------------------------------------------------------------------------------------

void N42Document::CollectPrefixes() {
    prefixes_ = {"n42"};
    CWBOStringArray names;
    CWBOStringArray values;
    document_.GetPropertyNamesAndValues(names, &values, nullptr);
    for (int i = 0; i < names.GetSize(); ++i) {
        const std::string_view name = view_of(names[i]);
        if (name.starts_with(kBinding) && is_n42_namespace(view_of(values[i]))) {
            prefixes_.emplace(name.substr(kBinding.size()));
        }
    }
}

// Names are remembered with what this makes of them, so it knows no places.
bool N42Document::NormalizeTag(CStringUTF8& tag) {
    const std::string_view name = view_of(tag);
    const std::size_t prefix = name.size() - WithoutPrefix(name).size();
    if (prefix != 0) tag = tag.Mid(static_cast<int>(prefix));
    return prefix != 0;
}

std::string_view N42Document::WithoutPrefix(std::string_view tag) const {
    const std::size_t colon = tag.find(':');
    if (colon == std::string_view::npos || !IsKnown(tag.substr(0, colon))) return tag;
    return tag.substr(colon + 1);
}

bool N42Document::IsKnown(std::string_view prefix) const {
    return prefixes_.count(std::string(prefix)) != 0;
}

// The tag of the element; without its prefix, when the nearest binding of that, at the element or
// around it, is below the root and names an N42 namespace.
std::string_view N42Document::TagOf(const UXXmlWrapperBase& element) const {
    std::string_view tag;
    element.GetTagView(tag);
    const std::size_t colon = tag.find(':');
    if (colon == std::string_view::npos || IsKnown(tag.substr(0, colon))) return tag;
    const std::string name = std::string(kBinding) += tag.substr(0, colon);
    const UXNameKey binding(name.c_str());
    std::string_view address;
    for (UXXmlWrapperBase at = element; usable(at) && !(at == document_); at.GetParent(&at)) {
        if (!at.GetPropertyView(binding, address)) continue;
        return is_n42_namespace(address) ? tag.substr(colon + 1) : tag;
    }
    return tag;
}

int N42Document::IdOf(const UXXmlWrapperBase& element) {
    Q_n42_ID id{};
    return GetID(TagOf(element), id) ? id : 0;
}

bool N42Document::HasLocalName(const UXXmlWrapperBase& element, std::string_view name) const {
    return WithoutPrefix(TagOf(element)) == name;
}

UXXmlWrapperBase N42Document::Child(const UXXmlWrapperBase& element, Q_n42_ID name) {
    for (UXXmlWrapperBase& child : children(element)) {
        if (IdOf(child) == name) return child;
    }
    return {};
}

std::size_t N42Document::CountChildren(const UXXmlWrapperBase& element, Q_n42_ID name) {
    std::size_t count = 0;
    for (const UXXmlWrapperBase& child : children(element)) count += IdOf(child) == name ? 1U : 0U;
    return count;
}

// ---- texts ------------------------------------------------------------------------------------

CStringUTF8 N42Document::TextOf(const UXXmlWrapperBase& element) const {
    CStringUTF8 text;
    element.GetNodeStringWithBlobInfo(text, 0);
    return text;
}

CStringUTF8 N42Document::ChildText(const UXXmlWrapperBase& element, Q_n42_ID name) {
    return TextOf(Child(element, name));
}

CStringUTF8 N42Document::Attribute(const UXXmlWrapperBase& element, Q_n42_ID name) {
    CStringUTF8 value;
    element.GetPropertyValue(GetName(name), value, 0);
    return value;
}

std::string_view N42Document::TextView(const UXXmlWrapperBase& element) {
    std::string_view text;
    element.NodeValueView(text, text_);
    return text;
}

}  // namespace ux
