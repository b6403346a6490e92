// Attributes through the node handle, and what is kept in them.
#include <algorithm>
#include <string_view>

#include "uxtree/host/node.h"
#include "uxtree/host/utilities.h"

#include "base/text_view.h"
#include "host/document.h"
#include "host/node_detail.h"

using namespace uxhost;

namespace {

const Attribute* find_attribute(const UXXmlWrapperBase& node, const char* name) {
    const Element* element = live(node);
    return element == nullptr ? nullptr : document_of(node)->find_attribute(*element, name);
}

const Attribute* find_attribute(const UXXmlWrapperBase& node, const UXNameKey& name) {
    const Element* element = live(node);
    if (element == nullptr) return nullptr;
    const Document& document = *document_of(node);
    const NameId number = UXNodeAccess::number(name, document);
    return number == 0 ? nullptr : document.find_attribute(*element, number);
}

// Files carry an ID as an attribute of this name, so no attribute may be called so.
bool is_reserved(std::string_view name) {
    return name == uxhost::kIdAttribute;
}

int set_attribute(UXXmlWrapperBase& node, const char* name, std::string_view value) {
    Element* element = live(node);
    if (element == nullptr || is_reserved(ux::view_of(name))) return 0;
    return guarded([&] {
        const NameId id = document_of(node)->valid_name(name);
        if (id == 0) return 0;
        document_of(node)->set_attribute(*element, id, value);
        return 1;
    });
}

}  // namespace

[[gnu::noinline]] void UXNodeAccess::find_numbers(const UXNameKeys& names,
                                                  const Document& document) {
    static_assert(1U << uxhost::NameTable::kMarkBits <= 64, "chains_ has a place for each mark");
    std::uint8_t count = 0;
    names.chains_.fill(0);
    for (std::size_t place = 0; place < names.size_; ++place) {
        const NameId number = document.find_name(names.texts_[place]);
        if (number == 0) continue;
        std::uint8_t& chain = names.chains_[uxhost::NameTable::mark_in(number)];
        names.known_[count] = {number, static_cast<std::uint8_t>(place), chain};
        chain = ++count;
    }
    names.stamp_ = document.name_stamp();
}

// --- attributes --------------------------------------------------------------------------------

int UXXmlWrapperBase::GetPropertyValue(const char* name, CStringUTF8& out, int /*unused*/) const {
    const Attribute* attribute = find_attribute(*this, name);
    if (attribute == nullptr) return 0;
    return guarded([&] { return assign(out, document_of(*this)->attribute_value(*attribute)); });
}
int UXXmlWrapperBase::GetPropertyValue(const char* name, int& out, int /*unused*/) const {
    const Attribute* attribute = find_attribute(*this, name);
    return attribute != nullptr && UXParseInt(document_of(*this)->attribute_value(*attribute), out)
               ? 1
               : 0;
}
int UXXmlWrapperBase::GetPropertyValue(const char* name, double& out, int /*unused*/) const {
    const Attribute* attribute = find_attribute(*this, name);
    return attribute != nullptr &&
                   UXParseDouble(document_of(*this)->attribute_value(*attribute), out)
               ? 1
               : 0;
}

int UXXmlWrapperBase::SetPropertyValue(const char* name, int value) {
    return set_attribute(*this, name, uxhost::IntText(value).view());
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, double value) {
    return guarded([&] {
        CStringUTF8 text;
        UXFormatDouble(value, text);
        return set_attribute(*this, name, view(text));
    });
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, const CStringUTF8& value) {
    return set_attribute(*this, name, view(value));
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, const CWBOStringArray& value) {
    return guarded([&] { return set_attribute(*this, name, view(joined(value))); });
}

int UXXmlWrapperBase::HasProperty(const char* name, int /*unused*/) const {
    return find_attribute(*this, name) != nullptr ? 1 : 0;
}
int UXXmlWrapperBase::RemoveProperty(const char* name) {
    Element* element = live(*this);
    if (element == nullptr) return 0;
    document_of(*this)->remove_attribute(*element, name);
    return 1;
}
int UXXmlWrapperBase::RemoveAttr(const char* name, int /*unused*/) {
    return RemoveProperty(name);
}

int UXXmlWrapperBase::GetPropertyNames(CWBOStringArray& out) const {
    if (live(*this) == nullptr) return 0;
    out.RemoveAll();
    return GetPropertyNamesAndValues(out, nullptr, nullptr);
}

int UXXmlWrapperBase::GetPropertyNamesAndValues(CWBOStringArray& names, CWBOStringArray* values,
                                                const UXPropertyFilter* keep) const {
    const Element* element = live(*this);
    if (element == nullptr) return 0;
    return guarded([&] {
        for (std::uint32_t i = 0; i < element->attributeCount; ++i) {
            const Attribute attribute = document_of(*this)->attributes(*element)[i];
            const std::string_view name = document_of(*this)->name_view(attribute.name);
            if (keep != nullptr && *keep && !(*keep)(name.data())) continue;
            names.AddText(name);
            if (values != nullptr) {
                values->AddText(document_of(*this)->attribute_value(attribute));
            }
        }
        return 1;
    });
}

int UXXmlWrapperBase::CopyAllAttributes(UXXmlWrapperBase& source, int /*unused*/) {
    Element* element = live(*this);
    const Element* from = live(source);
    if (element == nullptr || from == nullptr) return 0;
    if (element == from) return 1;
    return guarded([&] {
        document_of(*this)->merge_attributes(*element, *document_of(source), *from);
        return 1;
    });
}

// --- names by key, texts as views --------------------------------------------------------------

int UXXmlWrapperBase::GetPropertyView(const UXNameKey& name, std::string_view& out) const {
    const Attribute* attribute = find_attribute(*this, name);
    if (attribute == nullptr) return 0;
    out = document_of(*this)->attribute_value(*attribute);
    return 1;
}

int UXXmlWrapperBase::Look(const UXNameKeys& names, UXNodeLook& out) const {
    const Element* element = live(*this);
    if (element == nullptr) {
        out.present = 0;
        out.childCount = 0;
        out.textAtHand = true;
        out.value = {};
        return 0;
    }
    const Document& document = *document_of(*this);
    out.childCount = static_cast<int>(element->childCount);
    out.textAtHand = element->valueKind == uxhost::ValueKind::kText;
    out.value = document.text_at_hand(*element);
    out.present = element->attributeCount == 0
                      ? 0
                      : UXNodeAccess::find_named(names, document, *element, out.attributes.data());
    return 1;
}

int UXXmlWrapperBase::GetPropertyValue(const UXNameKey& name, CStringUTF8& out) const {
    const Attribute* attribute = find_attribute(*this, name);
    if (attribute == nullptr) return 0;
    return guarded([&] { return assign(out, document_of(*this)->attribute_value(*attribute)); });
}
int UXXmlWrapperBase::GetPropertyValue(const UXNameKey& name, int& out) const {
    const Attribute* attribute = find_attribute(*this, name);
    if (attribute == nullptr) return 0;
    return UXParseInt(document_of(*this)->attribute_value(*attribute), out) ? 1 : 0;
}
int UXXmlWrapperBase::HasProperty(const UXNameKey& name) const {
    return find_attribute(*this, name) != nullptr ? 1 : 0;
}

int UXXmlWrapperBase::SetPropertyView(const UXNameKey& name, std::string_view value) {
    Element* element = live(*this);
    if (element == nullptr || is_reserved(name.text())) return 0;
    return guarded([&] {
        Document& document = *document_of(*this);
        NameId number = UXNodeAccess::number(name, document);
        if (number == 0) number = document.valid_name(name.c_str());
        if (number == 0) return 0;
        document.set_attribute(*element, number, value);
        return 1;
    });
}
int UXXmlWrapperBase::SetPropertyValue(const UXNameKey& name, int value) {
    return SetPropertyView(name, uxhost::IntText(value).view());
}
int UXXmlWrapperBase::RemoveProperty(const UXNameKey& name) {
    Element* element = live(*this);
    if (element == nullptr) return 0;
    const NameId number = UXNodeAccess::number(name, *document_of(*this));
    if (number != 0) document_of(*this)->remove_attribute(*element, number);
    return 1;
}

// --- identifiers, visibility, label ------------------------------------------------------------

int UXXmlWrapperBase::GetDataID(int& id) const {
    return GetPropertyValue("DataID", id, 0);
}
int UXXmlWrapperBase::SetDataID(int id) {
    return SetPropertyValue("DataID", id);
}

int UXXmlWrapperBase::GetID(int& id) const {
    const Element* element = live(*this);
    if (element == nullptr || element->id == uxhost::kNoId) return 0;
    id = element->id;
    return 1;
}
int UXXmlWrapperBase::SetID(int id, bool /*unused*/) {
    Element* element = live(*this);
    if (element == nullptr) return 0;
    element->id = id;
    return 1;
}

int UXXmlWrapperBase::GetShow(int& show) const {
    if (live(*this) == nullptr) return 0;
    const int found = GetPropertyValue("Show", show, 0);
    if (found == 0) show = 1;
    return found;
}
void UXXmlWrapperBase::SetShow(int show) {
    if (show == 0) {
        SetPropertyValue("Show", 0);
    } else {
        RemoveProperty("Show");
    }
}

int UXXmlWrapperBase::SetLabel(const char* label) {
    if (label == nullptr) return RemoveProperty("Label");
    return set_attribute(*this, "Label", label);
}
int UXXmlWrapperBase::SetLabel(const CStringUTF8& label) {
    return set_attribute(*this, "Label", view(label));
}
