// Creating, copying, removing and searching nodes through the node handle.
#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "uxtree/host/node.h"
#include "uxtree/host/utilities.h"

#include "base/ascii.h"
#include "base/text_view.h"
#include "host/document.h"
#include "host/node_detail.h"

using uxhost::Attribute;
using uxhost::Document;
using uxhost::DocumentHolder;
using uxhost::Element;
using uxhost::guarded;
using uxhost::NameId;
using uxhost::Ref;
using uxhost::view;

namespace {

// The ID of a new element: -1 and 0 mean none.
int new_id(int id) {
    return id == 0 ? uxhost::kNoId : id;
}

bool same_text(std::string_view a, std::string_view b, bool noCase) {
    if (!noCase) return a == b;
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return ux::to_lower(x) == ux::to_lower(y); });
}

// The first element below top, in pre-order, for which matches yields true. Not deep: among the
// children alone.
template <typename Matches>
Element* find_below(const Document& document, const Element& top, bool deep, Matches&& matches) {
    Element* element = document.element(top.first);
    while (element != nullptr && !matches(*element)) {
        element = deep ? document.next_below(top, *element) : document.element(element->next);
    }
    return element;
}

// The steps of a path "a/b/c", without empty ones; none at all when one of them is no name, so that
// nothing is created for a path that cannot be.
std::vector<CStringUTF8> path_steps(const char* path) {
    CWBOStringArray tags;
    UXGetTokens(tags, path, '/', 0);
    std::vector<CStringUTF8> steps;
    for (int i = 0; i < tags.GetSize(); ++i) {
        if (tags[i].IsEmpty()) continue;
        if (!UXIsName(view(tags[i]))) return {};
        steps.push_back(tags[i]);
    }
    return steps;
}

// Each number from 0 to below count stands in order once.
bool is_permutation(const CArray<int, int>& order, std::uint32_t count) {
    if (static_cast<std::uint32_t>(order.GetSize()) != count) return false;
    std::vector<bool> met(count);
    const int* const numbers = order.GetData();
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto number = static_cast<std::uint32_t>(numbers[i]);  // large when below 0
        if (number >= count || met[number]) return false;
        met[number] = true;
    }
    return true;
}

}  // namespace

// --- creation, copying, removal ----------------------------------------------------------------

int UXXmlWrapperBase::AddChild(const UXXmlWrapperBase* before, const char* tag, const char* text,
                               int id, UXXmlWrapperBase* out) {
    Element* parent = Live();
    Element* next = before == nullptr ? nullptr : before->Live();
    const bool placed =
        before == nullptr || (parent != nullptr && next != nullptr &&
                              before->document_ == document_ && next->parent == parent->self);
    const int added = parent == nullptr || !placed ? 0 : guarded([&] {
        const NameId name = document_->valid_name(tag);
        if (name == 0) return 0;
        Element* child = document_->new_element(name, new_id(id));
        try {
            document_->set_value(*child, ux::view_of(text));
        } catch (...) {
            document_->release(child);
            throw;
        }
        document_->insert(*parent, *child, next);
        if (out != nullptr) out->Bind(document_, child);
        return 1;
    });
    if (added == 0 && out != nullptr) out->ReleaseNode();
    return added;
}

int UXXmlWrapperBase::AddNode(UXXmlWrapperBase* out, const char* tag, int id) {
    return AddChild(nullptr, tag, nullptr, id, out);
}
int UXXmlWrapperBase::AddTextNode(UXXmlWrapperBase* out, const char* tag, const char* text, int id,
                                  int /*unused*/, UXNodeOptions* /*options*/) {
    return AddChild(nullptr, tag, text, id, out);
}
int UXXmlWrapperBase::AddChildNode(const char* tag, UXXmlWrapperBase* out, int id,
                                   const char* text) {
    return AddChild(nullptr, tag, text, id, out);
}
int UXXmlWrapperBase::InsertNodeBefore(const UXXmlWrapperBase& reference, const char* tag, int id,
                                       UXXmlWrapperBase* out) {
    return AddChild(&reference, tag, nullptr, id, out);
}

int UXXmlWrapperBase::AddNodeCopy(UXXmlWrapperBase* source, int deep, UXXmlWrapperBase* out) {
    Element* parent = Live();
    const Element* from = source == nullptr ? nullptr : source->Live();
    const int added = parent == nullptr || from == nullptr ? 0 : guarded([&] {
        Element* copy = document_->copy(*source->document_, *from, deep != 0);
        document_->append(*parent, *copy);
        if (out != nullptr) out->Bind(document_, copy);
        return 1;
    });
    if (added == 0 && out != nullptr) out->ReleaseNode();
    return added;
}

int UXXmlWrapperBase::Clone(UXXmlWrapperBase* out, int /*unused*/) const {
    if (out == nullptr) return 0;
    const Element* element = Live();
    const int made = element == nullptr
                         ? 0
                         : guarded([&] { return Document::clone(*document_, *element, out); });
    if (made == 0) out->ReleaseNode();
    return made;
}

int UXXmlWrapperBase::TakeContent(const UXXmlWrapperBase* source, bool withTag) {
    Element* element = Live();
    const Element* from = source == nullptr ? nullptr : source->Live();
    if (element == nullptr || from == nullptr) return 0;
    return guarded([&] {
        Element* copy = document_->copy(*source->document_, *from, true);
        if (withTag) element->tag = copy->tag;
        document_->adopt(*element, *copy);
        return 1;
    });
}

int UXXmlWrapperBase::Replace(UXXmlWrapperBase* source, int /*unused1*/, int /*unused2*/,
                              int /*unused3*/) {
    return TakeContent(source, false);
}
int UXXmlWrapperBase::ReplaceByNodeCopy(UXXmlWrapperBase* source, int /*unused1*/,
                                        int /*unused2*/) {
    return TakeContent(source, true);
}

int UXXmlWrapperBase::ArrangeChildContents(const CArray<int, int>& order) {
    Element* parent = Live();
    if (parent == nullptr) return 0;
    return guarded([&] {
        if (!is_permutation(order, parent->childCount)) return 0;
        document_->arrange_children(*parent, order.GetData());
        return 1;
    });
}

int UXXmlWrapperBase::RemoveNode() {
    Element* element = Live();
    if (element == nullptr) return 0;
    document_->unlink(*element);
    document_->release(element);
    return ReleaseNode();
}

int UXXmlWrapperBase::RemoveChild(UXXmlWrapperBase* child, int* index) {
    const Element* parent = Live();
    if (parent == nullptr) return 0;
    const Element* element = child == nullptr ? nullptr : child->Live();
    if (element == nullptr || child->document_ != document_ || element->parent != parent->self) {
        return -1;
    }
    if (index != nullptr) {
        int position = 0;
        for (Ref ref = element->previous; ref != 0; ref = document_->element(ref)->previous) {
            ++position;
        }
        *index = position;
    }
    return child->RemoveNode();
}

int UXXmlWrapperBase::RemoveAllChildren() {
    Element* element = Live();
    if (element == nullptr) return 0;
    document_->release_children(*element);
    return 1;
}

int UXXmlWrapperBase::ResetNode(int /*unused*/) {
    Element* element = Live();
    if (element == nullptr) return 0;
    document_->release_children(*element);
    document_->clear_value(*element);
    return 1;
}

int UXXmlWrapperBase::CreateNew(int /*unused*/, const char* tag) {
    return guarded([&] {
        DocumentHolder made;
        const NameId name = made->valid_name(tag == nullptr ? "root" : tag);
        if (name == 0) return 0;
        made->set_root(made->new_element(name, uxhost::kNoId));
        return Bind(made.document, made->root());
    });
}

// --- searching ---------------------------------------------------------------------------------

int UXXmlWrapperBase::FindChild(const char* tag, UXXmlWrapperBase* out, int /*unused*/) const {
    if (out == nullptr) return 0;
    const Element* parent = Live();
    const NameId wanted = parent == nullptr ? 0 : document_->find_name(ux::view_of(tag));
    if (wanted == 0) return out->ReleaseNode() - 1;
    Element* child = document_->element(parent->first);
    while (child != nullptr && child->tag != wanted) child = document_->element(child->next);
    return out->Bind(document_, child);
}

int UXXmlWrapperBase::FindNodeByAttribute(UXXmlWrapperBase* out, const char* name,
                                          const char* value, int noCase, int deep) const {
    if (out == nullptr) return 0;
    const Element* top = Live();
    const NameId wanted = top == nullptr ? 0 : document_->find_name(ux::view_of(name));
    if (wanted == 0) return out->ReleaseNode() - 1;
    const std::string_view text = ux::view_of(value);
    return out->Bind(document_, find_below(*document_, *top, deep != 0, [&](const Element& at) {
                         const Attribute* attribute = document_->find_attribute(at, wanted);
                         return attribute != nullptr &&
                                same_text(document_->attribute_value(*attribute), text,
                                          noCase != 0);
                     }));
}

int UXXmlWrapperBase::FindNodeByAttribute(UXXmlWrapperBase* out, const char* name, int value,
                                          int deep) const {
    if (out == nullptr) return 0;
    const Element* top = Live();
    const NameId wanted = top == nullptr ? 0 : document_->find_name(ux::view_of(name));
    if (wanted == 0) return out->ReleaseNode() - 1;
    return out->Bind(document_, find_below(*document_, *top, deep != 0, [&](const Element& at) {
                         const Attribute* attribute = document_->find_attribute(at, wanted);
                         int found = 0;
                         return attribute != nullptr &&
                                UXParseInt(document_->attribute_value(*attribute), found) &&
                                found == value;
                     }));
}

int UXXmlWrapperBase::FindCreateNode(const char* path, UXXmlWrapperBase* out, int id,
                                     const char* text, int /*unused1*/, int /*unused2*/,
                                     UXNodeOptions* /*options*/) {
    if (out == nullptr) return 0;
    const int found = Live() == nullptr ? 0 : guarded([&] {
        UXXmlWrapperBase node(*this);
        bool created = false;
        for (const CStringUTF8& tag : path_steps(path)) {
            UXXmlWrapperBase child;
            created = node.FindChild(tag, &child, 1) == 0;
            if (created && !node.AddNode(&child, tag, id)) return 0;
            node = std::move(child);
        }
        if (node == *this) return 0;
        if (created && text != nullptr) node.SetString(text);
        *out = std::move(node);
        return 1;
    });
    if (found == 0) out->ReleaseNode();
    return found;
}
