// What the parts of the node handle share.
#pragma once

#include <array>
#include <charconv>
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
    // The same for several names: the values of those that the element has go into out. Bit i of
    // the result says that names[i] is among them.
    static unsigned find_named(const UXNameKeys& names, const uxhost::Document& document,
                               const uxhost::Element& element, std::string_view* out) {
        if (names.stamp_ != document.name_stamp()) find_numbers(names, document);
        const uxhost::Attribute* attribute = document.attributes(element);
        const uxhost::Attribute* const end = attribute + element.attributeCount;
        const UXNameKeys::Known* const known = names.known_.data();
        unsigned present = 0;
        for (; attribute != end; ++attribute) {
            const uxhost::NameId number = attribute->name;
            for (unsigned link = names.chains_[uxhost::NameTable::mark_in(number)]; link != 0;) {
                const UXNameKeys::Known& name = known[link - 1];
                link = name.next;
                if (name.number != number) continue;
                out[name.place] = document.attribute_value(*attribute);
                present |= 1U << name.place;
            }
        }
        return present;
    }
    static void find_numbers(const UXNameKeys& names, const uxhost::Document& document);
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
[[gnu::noinline]] int bind_elsewhere(UXXmlWrapperBase& node, Document* document,
                                     Element* element) noexcept;
inline int bind(UXXmlWrapperBase& node, Document* document, Element* element) noexcept {
    UXNodeStorage& storage = UXNodeAccess::storage(node);
    if (element == nullptr || storage.document != document) {
        return bind_elsewhere(node, document, element);
    }
    storage.node = element;
    storage.generation = element->generation;
    return 1;
}

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

// A number in decimal digits.
class IntText {
public:
    explicit IntText(int value)
        : end_(std::to_chars(text_.data(), text_.data() + text_.size(), value).ptr) {}
    IntText(const IntText&) = delete;
    IntText& operator=(const IntText&) = delete;
    std::string_view view() const { return {text_.data(), end_}; }

private:
    std::array<char, 12> text_;
    const char* end_;
};

// Text of an array of texts: joined by "|", with backslash doubled and "|" behind a backslash.
CStringUTF8 joined(const CWBOStringArray& texts);

}  // namespace uxhost
