// Tags and values through the node handle.
#include <string_view>

#include "uxtree/host/node.h"
#include "uxtree/host/utilities.h"

#include "base/text_view.h"
#include "host/document.h"
#include "host/node_detail.h"
#include "host/numbers.h"

using namespace uxhost;

namespace {

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

int read_vector(const UXXmlWrapperBase& node, const UXVectorDesc& vector) {
    const Element* element = live(node);
    if (element == nullptr || vector.array == nullptr || !document_of(node)->has_value(*element))
        return 0;
    return guarded([&] {
        if (vector.element == UXVectorDesc::Element::kText) {
            CStringUTF8 scratch;
            split_joined(document_of(node)->value_text(*element, scratch),
                         *static_cast<CWBOStringArray*>(vector.array));
            return 1;
        }
        return uxhost::read_numbers(*document_of(node), *element, vector) ? 1 : 0;
    });
}

int write_vector(UXXmlWrapperBase& node, const UXVectorDesc& vector) {
    Element* element = live(node);
    if (element == nullptr || vector.array == nullptr) return 0;
    return guarded([&] {
        if (vector.element == UXVectorDesc::Element::kText) {
            document_of(node)->set_value(
                *element, view(joined(*static_cast<const CWBOStringArray*>(vector.array))));
            return 1;
        }
        return uxhost::write_numbers(*document_of(node), *element, vector) ? 1 : 0;
    });
}

template <typename Value>
int read_value(const UXXmlWrapperBase& node, Value& value, bool parse(std::string_view, Value&)) {
    std::string_view text;
    CStringUTF8 scratch;
    return node.NodeValueView(text, scratch) != 0 && parse(text, value) ? 1 : 0;
}

constexpr const char* kSizeAttribute = "FileDataDimsVector";

}  // namespace

CStringUTF8 uxhost::joined(const CWBOStringArray& texts) {
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

int UXXmlWrapperBase::GetTagName(CStringUTF8& out) const {
    const Element* element = live(*this);
    if (element == nullptr) return 0;
    return guarded([&] { return assign(out, document_of(*this)->name_view(element->tag)); });
}

int UXXmlWrapperBase::GetTagView(std::string_view& out) const {
    const Element* element = live(*this);
    if (element == nullptr) return 0;
    out = document_of(*this)->name_view(element->tag);
    return 1;
}

int UXXmlWrapperBase::SetTagName(const char* tag) {
    Element* element = live(*this);
    if (element == nullptr) return 0;
    return guarded([&] {
        const NameId name = document_of(*this)->valid_name(tag);
        if (name == 0) return 0;
        element->tag = name;
        return 1;
    });
}

int UXXmlWrapperBase::NodeValue(CStringUTF8& text, int get, int /*unused*/,
                                UXNodeOptions* /*options*/) {
    if (get == 0) return SetValueView(view(text));
    return GetNodeStringWithBlobInfo(text, 0) && document_of(*this)->has_value(*live(*this)) ? 1
                                                                                             : 0;
}

int UXXmlWrapperBase::NodeValue(int& value, int get) {
    if (get == 0) return SetValueView(IntText(value).view());
    return read_value(*this, value, UXParseInt);
}

int UXXmlWrapperBase::NodeValue(double& value, int get) {
    if (get != 0) return read_value(*this, value, UXParseDouble);
    CStringUTF8 text;
    UXFormatDouble(value, text);
    return SetValueView(view(text));
}

int UXXmlWrapperBase::NodeValue(bool& value, int get) {
    if (get == 0) return SetString(value ? "1" : "0");
    return read_value(*this, value, parse_bool);
}

int UXXmlWrapperBase::NodeValue(CWBOStringArray& value, int get, int* /*unused*/) {
    UXVectorDesc vector(value);
    return get != 0 ? read_vector(*this, vector) : write_vector(*this, vector);
}

int UXXmlWrapperBase::GetVector(UXVectorDesc& vector) {
    return read_vector(*this, vector) != 0 ? 0 : 1;
}
int UXXmlWrapperBase::SetVector(UXVectorDesc& vector) {
    return write_vector(*this, vector) != 0 ? 0 : 1;
}

int UXXmlWrapperBase::SetString(const char* text) {
    return SetValueView(ux::view_of(text));
}

int UXXmlWrapperBase::NodeValueView(std::string_view& out, CStringUTF8& scratch) const {
    const Element* element = live(*this);
    out = {};
    if (element == nullptr) return 0;
    return guarded([&] {
        out = document_of(*this)->value_text(*element, scratch);
        return out.empty() ? 0 : 1;
    });
}
int UXXmlWrapperBase::SetValueView(std::string_view text) {
    Element* element = live(*this);
    if (element == nullptr) return 0;
    return guarded([&] {
        document_of(*this)->set_value(*element, text);
        return 1;
    });
}

int UXXmlWrapperBase::ResetValue() {
    return SetString(nullptr);
}

int UXXmlWrapperBase::CheckSetValue(int /*setMode*/, const CStringUTF8& value, int branch) {
    Element* element = live(*this);
    if (element == nullptr) return 0;
    return guarded([&] {
        if (branch == 0) {
            document_of(*this)->set_value(*element, view(value));
        } else if (value != "-1") {
            // Intended: a branch collected without "Use" gives "-1", which must change nothing
            // when it comes back.
            document_of(*this)->set_attribute(*element, document_of(*this)->intern("Use"),
                                              view(value));
        }
        return 1;
    });
}

int UXXmlWrapperBase::GetNodeArrayType(int /*unused*/) const {
    return 0;
}

int UXXmlWrapperBase::SetSizeTrimFromEnd(int size) {
    Element* element = live(*this);
    if (element == nullptr || size < 0) return 0;
    while (element->childCount > static_cast<std::uint32_t>(size)) {
        Element* child = document_of(*this)->element(element->last);
        document_of(*this)->unlink(*child);
        document_of(*this)->release(child);
    }
    return 1;
}

int UXXmlWrapperBase::LoadXDEArraySize(int* size) const {
    const Element* element = live(*this);
    if (element == nullptr) return 0;
    const Attribute* attribute = document_of(*this)->find_attribute(*element, kSizeAttribute);
    if (attribute == nullptr) return 0;
    std::string_view text = document_of(*this)->attribute_value(*attribute);
    text = text.substr(0, text.find('|'));
    int stored = 0;
    if (!UXParseInt(text, stored)) return 0;
    if (size != nullptr) *size = stored;
    return 1;
}

int UXXmlWrapperBase::SaveXDEArraySize(int size) {
    const int done =
        size < 1 ? RemoveAttr(kSizeAttribute, 0) : SetPropertyValue(kSizeAttribute, size);
    RemoveAttr("DimLens", 0);
    return done;
}

int UXXmlWrapperBase::SaveXDE2DArraySize(int rows, int cols) {
    const int done = rows < 1 || cols < 1 ? RemoveAttr(kSizeAttribute, 0) : guarded([&] {
        CStringUTF8 text;
        text.Format("%d|%d", rows, cols);
        return SetPropertyValue(kSizeAttribute, text);
    });
    RemoveAttr("DimLens", 0);
    return done;
}

int UXXmlWrapperBase::GetNodeStringWithBlobInfo(CStringUTF8& out, DWORD /*unused*/) const {
    const Element* element = live(*this);
    if (element == nullptr) return 0;
    return guarded([&] {
        document_of(*this)->get_value(*element, out);
        return 1;
    });
}
