#include "uxtree/host/node.h"

#include <algorithm>
#include <atomic>
#include <string_view>
#include <utility>
#include <vector>

#include "uxtree/host/utilities.h"

#include "host/ascii.h"
#include "host/document.h"
#include "host/numbers.h"

using uxhost::Attribute;
using uxhost::Document;
using uxhost::DocumentHolder;
using uxhost::Element;
using uxhost::NameId;
using uxhost::Ref;

namespace {

std::atomic<int> defaultCodePage{65001};

// Operations report failures as 0; shortage of memory is one of them.
template <typename Body>
int guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return 0;
    }
}

int assign(CStringUTF8& out, std::string_view text) {
    out.Assign(text.data(), text.size());
    return 1;
}

std::string_view view(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}

// The ID of a new element: -1 and 0 mean none.
int new_id(int id) {
    return id == 0 ? uxhost::kNoId : id;
}

bool same_text(std::string_view a, std::string_view b, bool noCase) {
    if (!noCase) return a == b;
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return uxhost::to_lower(x) == uxhost::to_lower(y); });
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

// Text of an array of texts: joined by "|", with backslash doubled and "|" behind a backslash.
CStringUTF8 joined(const CWBOStringArray& texts) {
    CStringUTF8 out;
    for (int i = 0; i < texts.GetSize(); ++i) {
        if (i != 0) out += '|';
        for (const char c : view(texts[i])) {
            if (c == '\\' || c == '|') out += '\\';
            out += c;
        }
    }
    return out;
}

void split_joined(std::string_view text, CWBOStringArray& out) {
    CStringUTF8 piece;
    out.RemoveAll();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '|') {
            out.Add(piece);
            piece.Empty();
            continue;
        }
        if (text[i] == '\\' && i + 1 < text.size()) ++i;
        piece += text[i];
    }
    out.Add(piece);
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

constexpr const char* kSizeAttribute = "FileDataDimsVector";

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

Element* UXXmlWrapperBase::Live() const {
    return element_ != nullptr && element_->generation == generation_ ? element_ : nullptr;
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
        const bool all = uxhost::view_of(tag).empty();
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

// --- tag and value -----------------------------------------------------------------------------

int UXXmlWrapperBase::GetTagName(CStringUTF8& out) const {
    const Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] { return assign(out, document_->name_view(element->tag)); });
}

int UXXmlWrapperBase::SetTagName(const char* tag) {
    Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        const NameId name = document_->valid_name(tag);
        if (name == 0) return 0;
        element->tag = name;
        return 1;
    });
}

int UXXmlWrapperBase::NodeValue(CStringUTF8& text, int get, int /*unused*/,
                                UXNodeOptions* /*options*/) {
    Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        if (get == 0) {
            document_->set_value(*element, view(text));
            return 1;
        }
        CStringUTF8 scratch;
        assign(text, document_->value_text(*element, scratch));
        return document_->has_value(*element) ? 1 : 0;
    });
}

int UXXmlWrapperBase::NodeValue(int& value, int get) {
    Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        CStringUTF8 scratch;
        if (get != 0) {
            return UXParseInt(document_->value_text(*element, scratch), value) ? 1 : 0;
        }
        scratch.Format("%d", value);
        document_->set_value(*element, view(scratch));
        return 1;
    });
}

int UXXmlWrapperBase::NodeValue(double& value, int get) {
    Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        CStringUTF8 scratch;
        if (get != 0) {
            return UXParseDouble(document_->value_text(*element, scratch), value) ? 1 : 0;
        }
        UXFormatDouble(value, scratch);
        document_->set_value(*element, view(scratch));
        return 1;
    });
}

int UXXmlWrapperBase::NodeValue(bool& value, int get) {
    Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        if (get == 0) {
            document_->set_value(*element, value ? "1" : "0");
            return 1;
        }
        CStringUTF8 scratch;
        return uxhost::parse_bool(document_->value_text(*element, scratch), value) ? 1 : 0;
    });
}

int UXXmlWrapperBase::NodeValue(CWBOStringArray& value, int get, int* /*unused*/) {
    UXVectorDesc vector(value);
    return get != 0 ? ReadVector(vector) : WriteVector(vector);
}

int UXXmlWrapperBase::ReadVector(UXVectorDesc& vector) const {
    const Element* element = Live();
    if (element == nullptr || vector.array == nullptr || !document_->has_value(*element)) return 0;
    return guarded([&] {
        if (vector.element == UXVectorDesc::Element::kText) {
            CStringUTF8 scratch;
            split_joined(document_->value_text(*element, scratch),
                         *static_cast<CWBOStringArray*>(vector.array));
            return 1;
        }
        return uxhost::read_numbers(*document_, *element, vector) ? 1 : 0;
    });
}

int UXXmlWrapperBase::WriteVector(const UXVectorDesc& vector) {
    Element* element = Live();
    if (element == nullptr || vector.array == nullptr) return 0;
    return guarded([&] {
        if (vector.element == UXVectorDesc::Element::kText) {
            document_->set_value(*element,
                                 view(joined(*static_cast<const CWBOStringArray*>(vector.array))));
            return 1;
        }
        return uxhost::write_numbers(*document_, *element, vector) ? 1 : 0;
    });
}

int UXXmlWrapperBase::GetVector(UXVectorDesc& vector) {
    return ReadVector(vector) != 0 ? 0 : 1;
}
int UXXmlWrapperBase::SetVector(UXVectorDesc& vector) {
    return WriteVector(vector) != 0 ? 0 : 1;
}

int UXXmlWrapperBase::SetString(const char* text) {
    Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        document_->set_value(*element, uxhost::view_of(text));
        return 1;
    });
}

int UXXmlWrapperBase::ResetValue() {
    return SetString(nullptr);
}

int UXXmlWrapperBase::CheckSetValue(int /*setMode*/, const CStringUTF8& value, int branch) {
    Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        if (branch == 0) {
            document_->set_value(*element, view(value));
        } else if (value != "-1") {
            // Intended: a branch collected without "Use" gives "-1", which must change nothing
            // when it comes back.
            document_->set_attribute(*element, document_->intern("Use"), view(value));
        }
        return 1;
    });
}

int UXXmlWrapperBase::GetNodeArrayType(int /*unused*/) const {
    return 0;
}

int UXXmlWrapperBase::SetSizeTrimFromEnd(int size) {
    Element* element = Live();
    if (element == nullptr || size < 0) return 0;
    while (element->childCount > static_cast<std::uint32_t>(size)) {
        Element* child = document_->element(element->last);
        document_->unlink(*child);
        document_->release(child);
    }
    return 1;
}

int UXXmlWrapperBase::LoadXDEArraySize(int* size) const {
    const Element* element = Live();
    if (element == nullptr) return 0;
    const Attribute* attribute = document_->find_attribute(*element, kSizeAttribute);
    if (attribute == nullptr) return 0;
    std::string_view text = document_->attribute_value(*attribute);
    text = text.substr(0, text.find('|'));
    int stored = 0;
    if (!UXParseInt(text, stored)) return 0;
    if (size != nullptr) *size = stored;
    return 1;
}

int UXXmlWrapperBase::SaveXDEArraySize(int size) {
    RemoveAttr("DimLens", 0);
    return size < 1 ? RemoveAttr(kSizeAttribute, 0) : SetPropertyValue(kSizeAttribute, size);
}

int UXXmlWrapperBase::SaveXDE2DArraySize(int rows, int cols) {
    RemoveAttr("DimLens", 0);
    if (rows < 1 || cols < 1) return RemoveAttr(kSizeAttribute, 0);
    return guarded([&] {
        CStringUTF8 text;
        text.Format("%d|%d", rows, cols);
        return SetPropertyValue(kSizeAttribute, text);
    });
}

// --- attributes --------------------------------------------------------------------------------

const Attribute* UXXmlWrapperBase::FindAttribute(const char* name) const {
    const Element* element = Live();
    return element == nullptr ? nullptr : document_->find_attribute(*element, name);
}

int UXXmlWrapperBase::SetAttribute(const char* name, const CStringUTF8& value) {
    Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        const NameId id = document_->valid_name(name);
        if (id == 0) return 0;
        document_->set_attribute(*element, id, view(value));
        return 1;
    });
}

int UXXmlWrapperBase::GetPropertyValue(const char* name, CStringUTF8& out, int /*unused*/) const {
    const Attribute* attribute = FindAttribute(name);
    if (attribute == nullptr) return 0;
    return guarded([&] { return assign(out, document_->attribute_value(*attribute)); });
}
int UXXmlWrapperBase::GetPropertyValue(const char* name, int& out, int /*unused*/) const {
    const Attribute* attribute = FindAttribute(name);
    return attribute != nullptr && UXParseInt(document_->attribute_value(*attribute), out) ? 1 : 0;
}
int UXXmlWrapperBase::GetPropertyValue(const char* name, double& out, int /*unused*/) const {
    const Attribute* attribute = FindAttribute(name);
    return attribute != nullptr && UXParseDouble(document_->attribute_value(*attribute), out) ? 1
                                                                                              : 0;
}

int UXXmlWrapperBase::SetPropertyValue(const char* name, int value) {
    return guarded([&] {
        CStringUTF8 text;
        text.Format("%d", value);
        return SetAttribute(name, text);
    });
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, double value) {
    return guarded([&] {
        CStringUTF8 text;
        UXFormatDouble(value, text);
        return SetAttribute(name, text);
    });
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, const CStringUTF8& value) {
    return SetAttribute(name, value);
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, const CWBOStringArray& value) {
    return guarded([&] { return SetAttribute(name, joined(value)); });
}

int UXXmlWrapperBase::HasProperty(const char* name, int /*unused*/) const {
    return FindAttribute(name) != nullptr ? 1 : 0;
}
int UXXmlWrapperBase::RemoveProperty(const char* name) {
    Element* element = Live();
    if (element == nullptr) return 0;
    document_->remove_attribute(*element, name);
    return 1;
}
int UXXmlWrapperBase::RemoveAttr(const char* name, int /*unused*/) {
    return RemoveProperty(name);
}

int UXXmlWrapperBase::GetPropertyNames(CWBOStringArray& out) const {
    if (Live() == nullptr) return 0;
    out.RemoveAll();
    return GetPropertyNamesAndValues(out, nullptr, nullptr);
}

int UXXmlWrapperBase::GetPropertyNamesAndValues(CWBOStringArray& names, CWBOStringArray* values,
                                                const UXPropertyFilter* keep) const {
    const Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        CStringUTF8 value;
        for (std::uint32_t i = 0; i < element->attributeCount; ++i) {
            const Attribute attribute = document_->attributes(*element)[i];
            const char* name = document_->name(attribute.name);
            if (keep != nullptr && *keep && !(*keep)(name)) continue;
            names.Add(CStringUTF8(name));
            if (values == nullptr) continue;
            assign(value, document_->attribute_value(attribute));
            values->Add(value);
        }
        return 1;
    });
}

int UXXmlWrapperBase::CopyAllAttributes(UXXmlWrapperBase& source, int /*unused*/) {
    Element* element = Live();
    const Element* from = source.Live();
    if (element == nullptr || from == nullptr) return 0;
    if (element == from) return 1;
    return guarded([&] {
        const Document& other = *source.document_;
        for (std::uint32_t i = 0; i < from->attributeCount; ++i) {
            const Attribute attribute = other.attributes(*from)[i];
            document_->set_attribute(*element, document_->intern(other.name_view(attribute.name)),
                                     other.attribute_value(attribute));
        }
        return 1;
    });
}

// --- identifiers, visibility, label ------------------------------------------------------------

int UXXmlWrapperBase::GetDataID(int& id) const {
    return GetPropertyValue("DataID", id, 0);
}
int UXXmlWrapperBase::SetDataID(int id) {
    return SetPropertyValue("DataID", id);
}

int UXXmlWrapperBase::GetID(int& id) const {
    const Element* element = Live();
    if (element == nullptr || element->id == uxhost::kNoId) return 0;
    id = element->id;
    return 1;
}
int UXXmlWrapperBase::SetID(int id, bool /*unused*/) {
    Element* element = Live();
    if (element == nullptr) return 0;
    element->id = id;
    return 1;
}

int UXXmlWrapperBase::GetShow(int& show) const {
    if (Live() == nullptr) return 0;
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
    return guarded([&] { return SetAttribute("Label", CStringUTF8(label)); });
}
int UXXmlWrapperBase::SetLabel(const CStringUTF8& label) {
    return SetAttribute("Label", label);
}

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
            document_->set_value(*child, uxhost::view_of(text));
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
    const NameId wanted = parent == nullptr ? 0 : document_->find_name(uxhost::view_of(tag));
    if (wanted == 0) return out->ReleaseNode() - 1;
    Element* child = document_->element(parent->first);
    while (child != nullptr && child->tag != wanted) child = document_->element(child->next);
    return out->Bind(document_, child);
}

int UXXmlWrapperBase::FindNodeByAttribute(UXXmlWrapperBase* out, const char* name,
                                          const char* value, int noCase, int deep) const {
    if (out == nullptr) return 0;
    const Element* top = Live();
    const NameId wanted = top == nullptr ? 0 : document_->find_name(uxhost::view_of(name));
    if (wanted == 0) return out->ReleaseNode() - 1;
    const std::string_view text = uxhost::view_of(value);
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
    const NameId wanted = top == nullptr ? 0 : document_->find_name(uxhost::view_of(name));
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

// --- settings and text -------------------------------------------------------------------------

int UXXmlWrapperBase::SetDefaultCodePage(int codePage) {
    defaultCodePage = codePage;
    return 1;
}
int uxhost::default_code_page() {
    return defaultCodePage;
}

int UXXmlWrapperBase::GetNodeStringWithBlobInfo(CStringUTF8& out, DWORD /*unused*/) const {
    const Element* element = Live();
    if (element == nullptr) return 0;
    return guarded([&] {
        CStringUTF8 scratch;
        return assign(out, document_->value_text(*element, scratch));
    });
}
