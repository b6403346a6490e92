// The node handle: what it refers to, and moving it about.
#include "uxtree/host/node.h"

#include <atomic>
#include <utility>

#include "base/text_view.h"
#include "host/document.h"
#include "host/node_detail.h"

using uxhost::Document;
using uxhost::Element;
using uxhost::guarded;
using uxhost::NameId;
using uxhost::Ref;

namespace {

std::atomic<int> defaultCodePage{65001};

}  // namespace

// --- handles -----------------------------------------------------------------------------------

UXXmlWrapperBase::UXXmlWrapperBase(const UXXmlWrapperBase& other) noexcept
    : UXScriptObject(other),
      document_(other.document_),
      element_(other.element_),
      generation_(other.generation_) {
    if (document_ != nullptr) document_->retain();
}
UXXmlWrapperBase::UXXmlWrapperBase(UXXmlWrapperBase&& other) noexcept
    : document_(std::exchange(other.document_, nullptr)),
      element_(std::exchange(other.element_, nullptr)),
      generation_(other.generation_) {}
UXXmlWrapperBase::~UXXmlWrapperBase() {
    if (document_ != nullptr) document_->let_go();
}
UXXmlWrapperBase& UXXmlWrapperBase::operator=(const UXXmlWrapperBase& other) noexcept {
    if (this == &other) return *this;
    if (other.document_ != nullptr) other.document_->retain();
    if (document_ != nullptr) document_->let_go();
    document_ = other.document_;
    element_ = other.element_;
    generation_ = other.generation_;
    return *this;
}
UXXmlWrapperBase& UXXmlWrapperBase::operator=(UXXmlWrapperBase&& other) noexcept {
    std::swap(document_, other.document_);
    std::swap(element_, other.element_);
    std::swap(generation_, other.generation_);
    return *this;
}

int UXXmlWrapperBase::Bind(Document* document, Element* element) noexcept {
    if (element == nullptr) {
        ReleaseNode();
        return 0;
    }
    if (document != document_) {
        document->retain();
        if (document_ != nullptr) document_->let_go();
        document_ = document;
    }
    element_ = element;
    generation_ = element->generation;
    return 1;
}

int UXXmlWrapperBase::ReleaseNode() {
    element_ = nullptr;
    if (document_ != nullptr) std::exchange(document_, nullptr)->let_go();
    return 1;
}

bool UXXmlWrapperBase::operator==(const UXXmlWrapperBase& other) const {
    return Live() == other.Live();
}

int UXXmlWrapperBase::IsNodeValid() const {
    return Live() != nullptr ? 1 : 0;
}
int UXXmlWrapperBase::IsValid() {
    return IsNodeValid();
}
void* UXXmlWrapperBase::GetInternalData(unsigned int /*typeCode*/) {
    return nullptr;
}

// --- counting and navigation -------------------------------------------------------------------

int UXXmlWrapperBase::GetNodeCount() const {
    const Element* element = Live();
    return element == nullptr ? 0 : static_cast<int>(element->childCount);
}
int UXXmlWrapperBase::HasChildren(int /*unused*/) const {
    return GetNodeCount() > 0 ? 1 : 0;
}
int UXXmlWrapperBase::IsEmpty() const {
    const Element* element = Live();
    return element != nullptr && element->first == 0 && !document_->has_value(*element) ? 1 : 0;
}
int UXXmlWrapperBase::IsRootNode(int /*unused*/) const {
    const Element* element = Live();
    return element != nullptr && element->parent == 0 ? 1 : 0;
}

// out may be this handle, so the link is read before it is bound.
int UXXmlWrapperBase::StepTo(std::uint32_t Element::*link, UXXmlWrapperBase* out) const {
    if (out == nullptr) return 0;
    const Element* element = Live();
    if (element == nullptr) return out->ReleaseNode() - 1;
    return out->Bind(document_, document_->element(element->*link));
}

int UXXmlWrapperBase::FirstChild(UXXmlWrapperBase* out) const {
    return StepTo(&Element::first, out);
}
int UXXmlWrapperBase::NextSibling(UXXmlWrapperBase* out) const {
    return StepTo(&Element::next, out);
}
int UXXmlWrapperBase::PrevSibling(UXXmlWrapperBase* out) const {
    return StepTo(&Element::previous, out);
}
int UXXmlWrapperBase::GetParent(UXXmlWrapperBase* out) const {
    return StepTo(&Element::parent, out);
}

int UXXmlWrapperBase::GetChild(UXXmlWrapperBase* out, int index, int* /*unused*/) const {
    if (out == nullptr) return 0;
    const Element* parent = Live();
    if (parent == nullptr || index < 0 || static_cast<std::uint32_t>(index) >= parent->childCount) {
        return out->ReleaseNode() - 1;
    }
    const auto steps = static_cast<std::uint32_t>(index);
    const std::uint32_t fromEnd = parent->childCount - 1 - steps;
    Element* child = document_->element(steps <= fromEnd ? parent->first : parent->last);
    for (std::uint32_t i = 0; i < std::min(steps, fromEnd); ++i) {
        child = document_->element(steps <= fromEnd ? child->next : child->previous);
    }
    return out->Bind(document_, child);
}

int UXXmlWrapperBase::GetArrayOfChildren(CArray<UXXmlWrapperBase, UXXmlWrapperBase>& array,
                                         const char* tag, CArray<int, int>* indices,
                                         int /*unused*/) const {
    const Element* parent = Live();
    if (parent == nullptr) return 0;
    return guarded([&] {
        const UXXmlWrapperBase keepsAlive(*this);  // this handle may stand in the array
        const bool all = ux::view_of(tag).empty();
        const NameId wanted = all ? 0 : document_->find_name(tag);
        array.RemoveAll();
        if (indices != nullptr) indices->RemoveAll();
        Document* const document = keepsAlive.document_;
        int position = 0;
        for (Ref ref = parent->first; ref != 0; ++position) {
            Element* child = document->element(ref);
            ref = child->next;
            if (!all && child->tag != wanted) continue;
            UXXmlWrapperBase handle;
            handle.Bind(document, child);
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
