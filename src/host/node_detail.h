// What the parts of the node handle share.
#pragma once

#include <new>
#include <string_view>

#include "uxtree/host/node.h"

#include "host/document.h"

// How the embedded host reaches what a handle holds.
struct UXNodeAccess {
    static UXNodeStorage& storage(UXXmlWrapperBase& node) { return node.storage_; }
    static const UXNodeStorage& storage(const UXXmlWrapperBase& node) { return node.storage_; }
    // The number of a key's name in a document, 0 when the document has no such name. It is looked
    // up again only when the document is another one or has got a new name.
    static uxhost::NameId number(const UXNameKey& name, const uxhost::Document& document) {
        if (name.stamp_ != document.name_stamp()) {
            name.number_ = document.find_name(name.text_);
            name.stamp_ = document.name_stamp();
        }
        return static_cast<uxhost::NameId>(name.number_);
    }
    // The same for several names. keep(attribute, place) is called for each attribute among them.
    template <typename Keep>
    static void visit_named(const UXNameKeys& names, const uxhost::Document& document,
                            const uxhost::Element& element, Keep&& keep) {
        if (names.stamp_ != document.name_stamp()) find_numbers(names, document);
        const uxhost::Attribute* attribute = document.attributes(element);
        const uxhost::Attribute* const end = attribute + element.attributeCount;
        for (; attribute != end; ++attribute) {
            if ((names.marks_ >> uxhost::NameTable::mark_in(attribute->name) & 1U) == 0) continue;
            for (std::size_t i = 0; i < names.knownSize_; ++i) {
                if (names.numbers_[i] == attribute->name) keep(*attribute, names.places_[i]);
            }
        }
    }
    static void find_numbers(const UXNameKeys& names, const uxhost::Document& document) {
        names.knownSize_ = 0;
        names.marks_ = 0;
        for (std::size_t place = 0; place < names.size_; ++place) {
            const uxhost::NameId number = document.find_name(names.texts_[place]);
            if (number == 0) continue;
            names.marks_ |= std::uint64_t{1} << uxhost::NameTable::mark_in(number);
            names.numbers_[names.knownSize_] = number;
            names.places_[names.knownSize_++] = static_cast<std::uint8_t>(place);
        }
        names.stamp_ = document.name_stamp();
    }
};

namespace uxhost {

// The document of a handle, null when it refers to nothing.
inline Document* document_of(const UXXmlWrapperBase& node) {
    return static_cast<Document*>(UXNodeAccess::storage(node).document);
}
// The element of a handle, null when it is invalid. Every operation begins with it.
inline Element* live(const UXXmlWrapperBase& node) {
    const UXNodeStorage& storage = UXNodeAccess::storage(node);
    Element* const element = static_cast<Element*>(storage.node);
    return element != nullptr && element->generation == storage.generation ? element : nullptr;
}
// Makes the handle refer to the element; a null element releases it. Yields the handle's validity.
int bind(UXXmlWrapperBase& node, Document* document, Element* element) noexcept;

// Operations report failures as 0. A shortage of memory alone passes, with the tree as it was: it
// is no answer about the tree, and who is far enough up to know what to do about it has a guard.
template <typename Body>
int guarded(Body&& body) {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        return 0;
    }
}

inline int assign(CStringUTF8& out, std::string_view text) {
    out.Assign(text.data(), text.size());
    return 1;
}

inline std::string_view view(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}

// Text of an array of texts: joined by "|", with backslash doubled and "|" behind a backslash.
CStringUTF8 joined(const CWBOStringArray& texts);

}  // namespace uxhost
