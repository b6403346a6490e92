// The node handle: what it refers to, and moving it about.
#include "uxtree/host/node.h"

#include <atomic>
#include <utility>

#include "base/text_view.h"
#include "host/document.h"
#include "host/node_detail.h"

using namespace uxhost;

namespace {

std::atomic<int> defaultCodePage{65001};

// out may be node itself, so the link is read before out is bound.
int step_to(const UXXmlWrapperBase& node, Ref Element::*link, UXXmlWrapperBase* out) {
    if (out == nullptr) return 0;
    const Element* const element = live(node);
    Document* const document = document_of(node);
    return bind(*out, document, element == nullptr ? nullptr : document->element(element->*link));
}

}  // namespace

// --- handles -----------------------------------------------------------------------------------

UXXmlWrapperBase::UXXmlWrapperBase(const UXXmlWrapperBase& other) noexcept
    : UXScriptObject(other), storage_(other.storage_) {
    if (Document* document = document_of(*this)) document->retain();
}
UXXmlWrapperBase& UXXmlWrapperBase::operator=(const UXXmlWrapperBase& other) noexcept {
    if (this == &other) return *this;
    if (Document* document = document_of(other)) document->retain();
    if (Document* document = document_of(*this)) document->let_go();
    storage_ = other.storage_;
    return *this;
}

int uxhost::bind_elsewhere(UXXmlWrapperBase& node, Document* document, Element* element) noexcept {
    if (element == nullptr) return node.ReleaseNode() - 1;
    document->retain();
    if (Document* old = document_of(node)) old->let_go();
    UXNodeAccess::storage(node) = {document, element, element->generation};
    return 1;
}

int UXXmlWrapperBase::ReleaseNode() noexcept {
    Document* const document = document_of(*this);
    storage_ = {};
    if (document != nullptr) document->let_go();
    return 1;
}

bool UXXmlWrapperBase::operator==(const UXXmlWrapperBase& other) const {
    return live(*this) == live(other);
}

int UXXmlWrapperBase::IsNodeValid() const {
    return live(*this) != nullptr ? 1 : 0;
}
int UXXmlWrapperBase::IsValid() {
    return IsNodeValid();
}
void* UXXmlWrapperBase::GetInternalData(unsigned int /*typeCode*/) {
    return nullptr;
}

// --- counting and navigation -------------------------------------------------------------------

int UXXmlWrapperBase::GetNodeCount() const {
    const Element* element = live(*this);
    return element == nullptr ? 0 : static_cast<int>(element->childCount);
}
int UXXmlWrapperBase::HasChildren(int /*unused*/) const {
    return GetNodeCount() > 0 ? 1 : 0;
}
int UXXmlWrapperBase::IsEmpty() const {
    const Element* element = live(*this);
    return element != nullptr && element->first == 0 && !document_of(*this)->has_value(*element)
               ? 1
               : 0;
}
int UXXmlWrapperBase::IsRootNode(int /*unused*/) const {
    const Element* element = live(*this);
    return element != nullptr && element->parent == 0 ? 1 : 0;
}

int UXXmlWrapperBase::FirstChild(UXXmlWrapperBase* out) const {
    return step_to(*this, &Element::first, out);
}
int UXXmlWrapperBase::NextSibling(UXXmlWrapperBase* out) const {
    return step_to(*this, &Element::next, out);
}
int UXXmlWrapperBase::PrevSibling(UXXmlWrapperBase* out) const {
    return step_to(*this, &Element::previous, out);
}
int UXXmlWrapperBase::GetParent(UXXmlWrapperBase* out) const {
    return step_to(*this, &Element::parent, out);
}

int UXXmlWrapperBase::GetChild(UXXmlWrapperBase* out, int index, int* /*unused*/) const {
    if (out == nullptr) return 0;
    const Element* parent = live(*this);
    if (parent == nullptr || index < 0 || static_cast<std::uint32_t>(index) >= parent->childCount) {
        return out->ReleaseNode() - 1;
    }
    const auto steps = static_cast<std::uint32_t>(index);
    const std::uint32_t fromEnd = parent->childCount - 1 - steps;
    Element* child = document_of(*this)->element(steps <= fromEnd ? parent->first : parent->last);
    for (std::uint32_t i = 0; i < std::min(steps, fromEnd); ++i) {
        // There are childCount of them. NOLINTNEXTLINE(clang-analyzer-core.NullDereference)
        child = document_of(*this)->element(steps <= fromEnd ? child->next : child->previous);
    }
    return bind(*out, document_of(*this), child);
}

int UXXmlWrapperBase::GetArrayOfChildren(CArray<UXXmlWrapperBase, UXXmlWrapperBase>& array,
                                         const char* tag, CArray<int, int>* indices,
                                         int /*unused*/) const {
    const Element* parent = live(*this);
    if (parent == nullptr) return 0;
    return guarded([&] {
        const UXXmlWrapperBase keepsAlive(*this);  // this handle may stand in the array
        const bool all = ux::view_of(tag).empty();
        const NameId wanted = all ? 0 : document_of(*this)->find_name(tag);
        array.RemoveAll();
        if (indices != nullptr) indices->RemoveAll();
        Document* const document = document_of(keepsAlive);
        int position = 0;
        for (Ref ref = parent->first; ref != 0; ++position) {
            Element* child = document->element(ref);
            ref = child->next;
            if (!all && child->tag != wanted) continue;
            UXXmlWrapperBase handle;
            bind(handle, document, child);
            array.Add(handle);
            if (indices != nullptr) indices->Add(position);
        }
        return 1;
    });
}

// --- settings ----------------------------------------------------------------------------------

int UXXmlWrapperBase::SetDefaultCodePage(int codePage) {
    defaultCodePage = codePage;
    return 1;
}
int uxhost::default_code_page() {
    return defaultCodePage;
}
