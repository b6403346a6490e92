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

using namespace uxhost;

namespace {

// The ID of a new element: -1 and 0 mean none.
int new_id(int id) {
    return id == 0 ? uxhost::kNoId : id;
}

// Finds the first node below top, in pre-order, that has the attribute with a value for which
// matches yields true. Not deep: among the children alone.
template <typename Matches>
int find_by_attribute(const UXXmlWrapperBase& node, UXXmlWrapperBase* out, const char* name,
                      bool deep, Matches&& matches) {
    if (out == nullptr) return 0;
    const Element* const top = live(node);
    Document* const document = document_of(node);
    const NameId wanted = top == nullptr ? 0 : document->find_name(ux::view_of(name));
    if (wanted == 0) return out->ReleaseNode() - 1;
    Element* at = document->element(top->first);
    for (; at != nullptr;
         at = deep ? document->next_below(*top, *at) : document->element(at->next)) {
        const Attribute* const attribute = document->find_attribute(*at, wanted);
        if (attribute != nullptr && matches(document->attribute_value(*attribute))) break;
    }
    return bind(*out, document, at);
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

// Nodes that one operation creates below each other; they go again unless it comes to its end.
class NewBranch {
public:
    NewBranch() = default;
    ~NewBranch() { top_.RemoveNode(); }
    NewBranch(const NewBranch&) = delete;
    NewBranch& operator=(const NewBranch&) = delete;
    void starts_at(const UXXmlWrapperBase& node) {
        if (!exists()) top_ = node;
    }
    bool exists() const { return top_.IsNodeValid() != 0; }
    void keep() { top_.ReleaseNode(); }

private:
    UXXmlWrapperBase top_;
};

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

// Adds a child before another one, or as the last one when before is null.
int add_child(const UXXmlWrapperBase& node, const UXXmlWrapperBase* before, const char* tag,
              const char* text, int id, UXXmlWrapperBase* out) {
    Element* parent = live(node);
    Element* next = before == nullptr ? nullptr : live(*before);
    const bool placed = before == nullptr ||
                        (parent != nullptr && next != nullptr &&
                         document_of(*before) == document_of(node) && next->parent == parent->self);
    const int added = parent == nullptr || !placed ? 0 : guarded([&] {
        const NameId name = document_of(node)->valid_name(tag);
        if (name == 0) return 0;
        Element* child = document_of(node)->new_element(name, new_id(id));
        try {
            document_of(node)->set_value(*child, ux::view_of(text));
        } catch (...) {
            document_of(node)->release(child);
            throw;
        }
        document_of(node)->insert(*parent, *child, next);
        if (out != nullptr) bind(*out, document_of(node), child);
        return 1;
    });
    if (added == 0 && out != nullptr) out->ReleaseNode();
    return added;
}

int take_content(UXXmlWrapperBase& node, const UXXmlWrapperBase* source, bool withTag) {
    Element* element = live(node);
    const Element* from = source == nullptr ? nullptr : live(*source);
    if (element == nullptr || from == nullptr) return 0;
    return guarded([&] {
        Element* copy = document_of(node)->copy(*document_of(*source), *from, true);
        if (withTag) element->tag = copy->tag;
        document_of(node)->adopt(*element, *copy);
        return 1;
    });
}

}  // namespace

// --- creation, copying, removal ----------------------------------------------------------------

int UXXmlWrapperBase::AddNode(UXXmlWrapperBase* out, const char* tag, int id) {
    return add_child(*this, nullptr, tag, nullptr, id, out);
}
int UXXmlWrapperBase::AddTextNode(UXXmlWrapperBase* out, const char* tag, const char* text, int id,
                                  int /*unused*/, UXNodeOptions* /*options*/) {
    return add_child(*this, nullptr, tag, text, id, out);
}
int UXXmlWrapperBase::AddChildNode(const char* tag, UXXmlWrapperBase* out, int id,
                                   const char* text) {
    return add_child(*this, nullptr, tag, text, id, out);
}
int UXXmlWrapperBase::InsertNodeBefore(const UXXmlWrapperBase& reference, const char* tag, int id,
                                       UXXmlWrapperBase* out) {
    return add_child(*this, &reference, tag, nullptr, id, out);
}

int UXXmlWrapperBase::AddNodeCopy(UXXmlWrapperBase* source, int deep, UXXmlWrapperBase* out) {
    Element* parent = live(*this);
    const Element* from = source == nullptr ? nullptr : live(*source);
    const int added = parent == nullptr || from == nullptr ? 0 : guarded([&] {
        Element* copy = document_of(*this)->copy(*document_of(*source), *from, deep != 0);
        document_of(*this)->append(*parent, *copy);
        if (out != nullptr) bind(*out, document_of(*this), copy);
        return 1;
    });
    if (added == 0 && out != nullptr) out->ReleaseNode();
    return added;
}

int UXXmlWrapperBase::Clone(UXXmlWrapperBase* out, int /*unused*/) const {
    if (out == nullptr) return 0;
    const Element* element = live(*this);
    const int made = element == nullptr ? 0 : guarded([&] {
        const DocumentHolder copy;
        copy->become_copy(*document_of(*this), *element);
        return bind(*out, copy.document, copy->root());
    });
    if (made == 0) out->ReleaseNode();
    return made;
}

int UXXmlWrapperBase::Replace(UXXmlWrapperBase* source, int /*unused1*/, int /*unused2*/,
                              int /*unused3*/) {
    return take_content(*this, source, false);
}
int UXXmlWrapperBase::ReplaceByNodeCopy(UXXmlWrapperBase* source, int /*unused1*/,
                                        int /*unused2*/) {
    return take_content(*this, source, true);
}

int UXXmlWrapperBase::ArrangeChildContents(const CArray<int, int>& order) {
    Element* parent = live(*this);
    if (parent == nullptr) return 0;
    return guarded([&] {
        if (!is_permutation(order, parent->childCount)) return 0;
        document_of(*this)->arrange_children(*parent, order.GetData());
        return 1;
    });
}

int UXXmlWrapperBase::RemoveNode() {
    Element* element = live(*this);
    if (element == nullptr) return 0;
    document_of(*this)->unlink(*element);
    document_of(*this)->release(element);
    return ReleaseNode();
}

int UXXmlWrapperBase::RemoveChild(UXXmlWrapperBase* child, int* index) {
    const Element* parent = live(*this);
    if (parent == nullptr) return 0;
    const Element* element = child == nullptr ? nullptr : live(*child);
    if (element == nullptr || document_of(*child) != document_of(*this) ||
        element->parent != parent->self) {
        return -1;
    }
    if (index != nullptr) {
        int position = 0;
        for (Ref ref = element->previous; ref != 0;
             ref = document_of(*this)->element(ref)->previous) {
            ++position;
        }
        *index = position;
    }
    return child->RemoveNode();
}

int UXXmlWrapperBase::RemoveAllChildren() {
    Element* element = live(*this);
    if (element == nullptr) return 0;
    document_of(*this)->release_children(*element);
    return 1;
}

int UXXmlWrapperBase::ResetNode(int /*unused*/) {
    Element* element = live(*this);
    if (element == nullptr) return 0;
    document_of(*this)->release_children(*element);
    document_of(*this)->clear_value(*element);
    return 1;
}

int UXXmlWrapperBase::CreateNew(int /*unused*/, const char* tag) {
    return guarded([&] {
        DocumentHolder made;
        const NameId name = made->valid_name(tag == nullptr ? "root" : tag);
        if (name == 0) return 0;
        made->set_root(made->new_element(name, uxhost::kNoId));
        return bind(*this, made.document, made->root());
    });
}

// --- searching ---------------------------------------------------------------------------------

int UXXmlWrapperBase::FindChild(const char* tag, UXXmlWrapperBase* out, int /*unused*/) const {
    return FindChild(UXNameKey(tag), out);
}
int UXXmlWrapperBase::FindChild(const UXNameKey& tag, UXXmlWrapperBase* out) const {
    if (out == nullptr) return 0;
    const Element* parent = live(*this);
    if (parent == nullptr) return out->ReleaseNode() - 1;
    Document* const document = document_of(*this);
    const NameId wanted = UXNodeAccess::number(tag, *document);
    if (wanted == 0) return out->ReleaseNode() - 1;
    return bind(*out, document, document->first_with_tag(document->element(parent->first), wanted));
}

int UXXmlWrapperBase::NextSibling(const UXNameKey& tag, UXXmlWrapperBase* out) const {
    if (out == nullptr) return 0;
    const Element* element = live(*this);
    if (element == nullptr) return out->ReleaseNode() - 1;
    Document* const document = document_of(*this);
    const NameId wanted = UXNodeAccess::number(tag, *document);
    if (wanted == 0) return out->ReleaseNode() - 1;
    return bind(*out, document, document->first_with_tag(document->element(element->next), wanted));
}

int UXXmlWrapperBase::NextBelow(const UXXmlWrapperBase& top, const UXNameKey* tag,
                                UXXmlWrapperBase* out) const {
    if (out == nullptr) return 0;
    const Element* const above = live(top);
    const Element* const element = live(*this);
    if (element == nullptr || above == nullptr) return out->ReleaseNode() - 1;
    Document* const document = document_of(*this);
    if (tag == nullptr) return bind(*out, document, document->next_below(*above, *element));
    const NameId wanted = UXNodeAccess::number(*tag, *document);
    Element* next = wanted == 0 ? nullptr : document->next_below(*above, *element);
    while (next != nullptr && next->tag != wanted) next = document->next_below(*above, *next);
    return bind(*out, document, next);
}

int UXXmlWrapperBase::FindNodeByAttribute(UXXmlWrapperBase* out, const char* name,
                                          const char* value, int noCase, int deep) const {
    const std::string_view wanted = ux::view_of(value);
    return find_by_attribute(*this, out, name, deep != 0, [&](std::string_view text) {
        return noCase != 0 ? ux::equal_no_case(text, wanted) : text == wanted;
    });
}

int UXXmlWrapperBase::FindNodeByAttribute(UXXmlWrapperBase* out, const char* name, int value,
                                          int deep) const {
    return find_by_attribute(*this, out, name, deep != 0, [&](std::string_view text) {
        int found = 0;
        return UXParseInt(text, found) && found == value;
    });
}

int UXXmlWrapperBase::FindCreateNode(const char* path, UXXmlWrapperBase* out, int id,
                                     const char* text, int /*unused1*/, int /*unused2*/,
                                     UXNodeOptions* /*options*/) {
    if (out == nullptr) return 0;
    const int found = live(*this) == nullptr ? 0 : guarded([&] {
        UXXmlWrapperBase node(*this);
        NewBranch made;
        for (const CStringUTF8& tag : path_steps(path)) {
            UXXmlWrapperBase child;
            if (node.FindChild(tag, &child, 1) == 0) {
                if (!node.AddNode(&child, tag, id)) return 0;
                made.starts_at(child);
            }
            node = std::move(child);
        }
        if (node == *this) return 0;
        if (made.exists() && text != nullptr) node.SetString(text);
        made.keep();
        *out = std::move(node);
        return 1;
    });
    if (found == 0) out->ReleaseNode();
    return found;
}
