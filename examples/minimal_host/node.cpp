// The node handle of the minimal host: a weak pointer into a tree of shared ones.
#include "uxtree/host/node.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <numeric>
#include <string_view>
#include <type_traits>

#include "uxtree/host/utilities.h"

#include "node_data.h"

using minimal::Node;
using minimal::NodePtr;
using minimal::view;

namespace minimal {

// A deep branch is let go child after child, so that its depth costs no machine stack.
Node::~Node() {
    while (!children.empty()) {
        const NodePtr child = std::move(children.front());
        children.pop_front();
        if (child.use_count() == 1) children.splice(children.end(), child->children);
    }
}

Node& insert(Node& parent, Children::iterator before, const NodePtr& node) {
    node->parent = &parent;
    node->place = parent.children.insert(before, node);
    return *node;
}

NodePtr copy_of(const Node& source, bool deep) {
    const auto top = std::make_shared<Node>();
    static_cast<Content&>(*top) = source;
    if (!deep) {
        top->text.clear();
        return top;
    }
    std::vector<std::pair<const Node*, Node*>> open{{&source, top.get()}};
    while (!open.empty()) {
        const auto [from, to] = open.back();
        open.pop_back();
        for (const NodePtr& child : from->children) {
            Node& made = insert(*to, to->children.end(), std::make_shared<Node>());
            static_cast<Content&>(made) = *child;
            open.emplace_back(child.get(), &made);
        }
    }
    return top;
}

void take_content(Node& node, Node& copy) {
    static_cast<Content&>(node) = std::move(copy);
    node.children.clear();
    node.children.swap(copy.children);
    for (const NodePtr& child : node.children) child->parent = &node;
}

Node* sibling_after(const Node& node) {
    if (node.parent == nullptr) return nullptr;
    const auto next = std::next(node.place);
    return next == node.parent->children.end() ? nullptr : next->get();
}

Node* next_below(const Node& top, const Node& node) {
    if (!node.children.empty()) return node.children.front().get();
    for (const Node* at = &node; at != &top; at = at->parent) {
        if (Node* const next = sibling_after(*at)) return next;
    }
    return nullptr;
}

namespace {

constexpr const char* kSizeAttribute = "FileDataDimsVector";

bool is_name(const char* text) {
    return text != nullptr && UXIsName(text);
}

bool is_permutation(const CArray<int, int>& order, std::size_t count) {
    std::vector<int> numbers(order.GetData(), order.GetData() + order.GetSize());
    std::vector<int> rising(count);
    std::sort(numbers.begin(), numbers.end());
    std::iota(rising.begin(), rising.end(), 0);
    return numbers == rising;
}

std::string* find_attribute(Node* node, const char* name) {
    if (node == nullptr) return nullptr;
    for (auto& attribute : node->attributes) {
        if (attribute.first == view(name)) return &attribute.second;
    }
    return nullptr;
}

int set_attribute(Node* node, const char* name, std::string_view value) {
    if (node == nullptr || !is_name(name)) return 0;
    if (std::string* const present = find_attribute(node, name)) {
        *present = value;
    } else {
        node->attributes.emplace_back(name, value);
    }
    return 1;
}

// Texts joined by "|", with backslash doubled and "|" behind a backslash.
std::string joined(const CWBOStringArray& texts) {
    std::string out;
    for (int i = 0; i < texts.GetSize(); ++i) {
        if (i != 0) out += '|';
        for (const char c : view(texts[i])) {
            if (c == '\\' || c == '|') out += '\\';
            out += c;
        }
    }
    return out;
}

void split(std::string_view text, CWBOStringArray& out) {
    out.RemoveAll();
    out.Add("");
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '|') {
            out.Add("");
            continue;
        }
        if (text[i] == '\\' && i + 1 < text.size()) ++i;
        out[out.GetUpperBound()] += text[i];
    }
}

bool parse(const char* text, bool& value) {
    const CStringUTF8 word = CStringUTF8(text).Trim();
    double number = 0;
    if (word == "true" || word == "false") {
        value = word == "true";
        return true;
    }
    if (!UXParseDouble(view(word), number)) return false;
    value = number != 0;
    return true;
}

template <typename T>
bool parse(const char* text, T& value) {
    double number = 0;
    if constexpr (std::is_same_v<T, int>) return UXParseInt(text, value);
    if constexpr (std::is_integral_v<T>) {
        const char* const end = text + view(text).size();
        if (std::from_chars(text, end, value).ptr == end) return true;
    }
    constexpr auto kLow = static_cast<double>(std::numeric_limits<T>::lowest());
    constexpr auto kHigh = static_cast<double>(std::numeric_limits<T>::max());
    if (!UXParseDouble(text, number) || std::trunc(number) < kLow || number > kHigh) return false;
    value = static_cast<T>(number);
    return true;
}

template <typename T>
CStringUTF8 printed(T value) {
    if constexpr (std::is_floating_point_v<T>) {
        CStringUTF8 text;
        UXFormatDouble(static_cast<double>(value), text);
        return text;
    } else {
        return CStringUTF8(std::to_string(value));
    }
}

template <typename T>
bool read_array(const std::string& text, CArray<T, T>& array) {
    CWBOStringArray words;
    UXGetTokens(words, text.c_str(), ' ', 0);
    CArray<T, T> read;
    for (int i = 0; i < words.GetSize(); ++i) {
        T value{};
        if (!parse(words[i], value)) return false;
        read.Add(value);
    }
    array = std::move(read);
    return true;
}
bool read_array(const std::string& text, CWBOStringArray& array) {
    split(text, array);
    return true;
}

template <typename T>
std::string array_text(const CArray<T, T>& array) {
    std::string text;
    for (int i = 0; i < array.GetSize(); ++i)
        text += (i == 0 ? "" : " ") + std::string(printed(array[i]));
    return text;
}
std::string array_text(const CWBOStringArray& array) {
    return joined(array);
}

// Calls action with the descriptor's array as what it is.
template <typename Action>
bool with_array(const UXVectorDesc& vector, Action&& action) {
    using Element = UXVectorDesc::Element;
    const auto as = [&](auto type) {
        using T = decltype(type);
        return action(*static_cast<CArray<T, T>*>(vector.array));
    };
    if (vector.array == nullptr) return false;
    if (vector.element == Element::kText) {
        return action(*static_cast<CWBOStringArray*>(vector.array));
    }
    if (vector.element == Element::kBool) return as(bool{});
    if (vector.element == Element::kChar) return as(char{});
    if (vector.element == Element::kUChar) return as(static_cast<unsigned char>(0));
    if (vector.element == Element::kShort) return as(short{});
    if (vector.element == Element::kUShort) return as(static_cast<unsigned short>(0));
    if (vector.element == Element::kInt) return as(int{});
    if (vector.element == Element::kUInt) return as(0U);
    if (vector.element == Element::kInt64) return as(std::int64_t{});
    if (vector.element == Element::kUInt64) return as(std::uint64_t{});
    if (vector.element == Element::kFloat) return as(float{});
    if (vector.element == Element::kDouble) return as(double{});
    return false;
}

template <typename T>
int transfer(Node* node, T& value, int get) {
    if (node == nullptr) return 0;
    if (get != 0) return parse(node->text.c_str(), value) ? 1 : 0;
    node->text = view(printed(value));
    return 1;
}

}  // namespace
}  // namespace minimal

// --- handles -----------------------------------------------------------------------------------

struct UXNodeAccess {
    static minimal::Link* link(const UXXmlWrapperBase& handle) {
        return static_cast<minimal::Link*>(handle.storage_.document);
    }
    static void set_link(UXXmlWrapperBase& handle, minimal::Link* link) {
        minimal::Link* const old = UXNodeAccess::link(handle);
        if (link != nullptr) ++link->handles;
        handle.storage_.document = link;
        if (old != nullptr && --old->handles == 0) delete old;
    }
};

minimal::NodePtr minimal::node_of(const UXXmlWrapperBase& handle) {
    const Link* const link = UXNodeAccess::link(handle);
    return link == nullptr ? nullptr : link->node.lock();
}

namespace {

using minimal::node_of;

int bind_to(UXXmlWrapperBase& handle, const std::shared_ptr<minimal::Tree>& tree,
            const NodePtr& node) {
    UXNodeAccess::set_link(handle, node == nullptr ? nullptr : new minimal::Link{tree, node, 0});
    return node == nullptr ? 0 : 1;
}

// Ends an operation on from with an output handle, which may be from or null.
int give(const UXXmlWrapperBase& from, UXXmlWrapperBase* out, const NodePtr& node) {
    const minimal::Link* const link = UXNodeAccess::link(from);
    return out == nullptr ? 0 : bind_to(*out, link == nullptr ? nullptr : link->tree, node);
}

// A null before appends.
int add_child(const UXXmlWrapperBase& handle, const NodePtr& before, const char* tag,
              const char* text, int id, UXXmlWrapperBase* out) {
    const NodePtr parent = node_of(handle);
    const bool placed = parent != nullptr && (before == nullptr || before->parent == parent.get());
    if (!placed || !minimal::is_name(tag)) return give(handle, out, nullptr);
    const auto node = std::make_shared<Node>();
    node->tag = tag;
    node->text = std::string(view(text));
    node->id = id == 0 ? minimal::kNoId : id;
    minimal::insert(*parent, before == nullptr ? parent->children.end() : before->place, node);
    give(handle, out, node);
    return 1;
}
int take_content(UXXmlWrapperBase& handle, const UXXmlWrapperBase* source, bool withTag) {
    const NodePtr node = node_of(handle);
    const NodePtr from = source == nullptr ? nullptr : node_of(*source);
    if (node == nullptr || from == nullptr) return 0;
    const NodePtr copy = minimal::copy_of(*from, true);  // before anything changes
    if (!withTag) copy->tag = node->tag;
    minimal::take_content(*node, *copy);
    return 1;
}

template <typename Matches>
int give_below(const UXXmlWrapperBase& handle, UXXmlWrapperBase* out, const char* name, int deep,
               Matches&& matches) {
    const NodePtr top = node_of(handle);
    Node* node = top == nullptr || top->children.empty() ? nullptr : top->children.front().get();
    for (; node != nullptr;
         node = deep != 0 ? minimal::next_below(*top, *node) : minimal::sibling_after(*node)) {
        const std::string* const value = minimal::find_attribute(node, name);
        if (value != nullptr && matches(*value)) return give(handle, out, node->shared_from_this());
    }
    return give(handle, out, nullptr);
}

}  // namespace

int minimal::bind_root(UXXmlWrapperBase& handle, const NodePtr& root) {
    if (root == nullptr) return 0;
    const auto tree = std::make_shared<Tree>();
    tree->root = root;
    return bind_to(handle, tree, root);
}

UXXmlWrapperBase::UXXmlWrapperBase(const UXXmlWrapperBase& other) noexcept : UXScriptObject(other) {
    UXNodeAccess::set_link(*this, UXNodeAccess::link(other));
}
UXXmlWrapperBase& UXXmlWrapperBase::operator=(const UXXmlWrapperBase& other) noexcept {
    UXNodeAccess::set_link(*this, UXNodeAccess::link(other));
    return *this;
}
int UXXmlWrapperBase::ReleaseNode() noexcept {
    UXNodeAccess::set_link(*this, nullptr);
    return 1;
}
int UXXmlWrapperBase::IsNodeValid() const {
    return node_of(*this) == nullptr ? 0 : 1;
}
int UXXmlWrapperBase::IsValid() {
    return IsNodeValid();
}
void* UXXmlWrapperBase::GetInternalData(unsigned int /*typeCode*/) {
    return nullptr;
}
bool UXXmlWrapperBase::operator==(const UXXmlWrapperBase& other) const {
    return node_of(*this) == node_of(other);
}

// --- counting and navigation -------------------------------------------------------------------

int UXXmlWrapperBase::GetNodeCount() const {
    const NodePtr node = node_of(*this);
    return node == nullptr ? 0 : static_cast<int>(node->children.size());
}
int UXXmlWrapperBase::HasChildren(int /*unused*/) const {
    return GetNodeCount() > 0 ? 1 : 0;
}
int UXXmlWrapperBase::IsEmpty() const {
    const NodePtr node = node_of(*this);
    return node != nullptr && node->children.empty() && node->text.empty() ? 1 : 0;
}
int UXXmlWrapperBase::IsRootNode(int /*unused*/) const {
    const NodePtr node = node_of(*this);
    return node != nullptr && node->parent == nullptr ? 1 : 0;
}
int UXXmlWrapperBase::FirstChild(UXXmlWrapperBase* out) const {
    return GetChild(out, 0);
}
int UXXmlWrapperBase::NextSibling(UXXmlWrapperBase* out) const {
    const NodePtr node = node_of(*this);
    Node* const next = node == nullptr ? nullptr : minimal::sibling_after(*node);
    return give(*this, out, next == nullptr ? nullptr : next->shared_from_this());
}
int UXXmlWrapperBase::PrevSibling(UXXmlWrapperBase* out) const {
    const NodePtr node = node_of(*this);
    const bool none =
        node == nullptr || node->parent == nullptr || node->place == node->parent->children.begin();
    return give(*this, out, none ? nullptr : *std::prev(node->place));
}
int UXXmlWrapperBase::GetParent(UXXmlWrapperBase* out) const {
    const NodePtr node = node_of(*this);
    const bool none = node == nullptr || node->parent == nullptr;
    return give(*this, out, none ? nullptr : node->parent->shared_from_this());
}
int UXXmlWrapperBase::GetChild(UXXmlWrapperBase* out, int index, int* /*unused*/) const {
    const NodePtr node = node_of(*this);
    const bool none = index < 0 || index >= GetNodeCount();
    return give(*this, out, none ? nullptr : *std::next(node->children.begin(), index));
}
int UXXmlWrapperBase::GetArrayOfChildren(CArray<UXXmlWrapperBase, UXXmlWrapperBase>& array,
                                         const char* tag, CArray<int, int>* indices,
                                         int /*unused*/) const {
    const UXXmlWrapperBase self(*this);  // this handle may stand in the array
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    array.RemoveAll();
    if (indices != nullptr) indices->RemoveAll();
    int position = -1;
    for (const NodePtr& child : node->children) {
        ++position;
        if (!view(tag).empty() && child->tag != tag) continue;
        give(self, &array[array.Add({})], child);
        if (indices != nullptr) indices->Add(position);
    }
    return 1;
}

// --- tag and value -----------------------------------------------------------------------------

int UXXmlWrapperBase::GetTagName(CStringUTF8& out) const {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    out = node->tag.c_str();
    return 1;
}
int UXXmlWrapperBase::SetTagName(const char* tag) {
    const NodePtr node = node_of(*this);
    if (node == nullptr || !minimal::is_name(tag)) return 0;
    node->tag = tag;
    return 1;
}
int UXXmlWrapperBase::NodeValue(CStringUTF8& text, int get, int /*unused*/,
                                UXNodeOptions* /*options*/) {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    if (get == 0) {
        node->text = view(text);
        return 1;
    }
    text = CStringUTF8(node->text);
    return text.IsEmpty() ? 0 : 1;
}
int UXXmlWrapperBase::NodeValue(int& value, int get) {
    return minimal::transfer(node_of(*this).get(), value, get);
}
int UXXmlWrapperBase::NodeValue(double& value, int get) {
    return minimal::transfer(node_of(*this).get(), value, get);
}
int UXXmlWrapperBase::NodeValue(bool& value, int get) {
    return minimal::transfer(node_of(*this).get(), value, get);
}
int UXXmlWrapperBase::NodeValue(CWBOStringArray& value, int get, int* /*unused*/) {
    UXVectorDesc vector(value);
    return (get != 0 ? GetVector(vector) : SetVector(vector)) == 0 ? 1 : 0;
}
int UXXmlWrapperBase::SetString(const char* text) {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    node->text = std::string(view(text));
    return 1;
}
int UXXmlWrapperBase::ResetValue() {
    return SetString(nullptr);
}
int UXXmlWrapperBase::CheckSetValue(int /*setMode*/, const CStringUTF8& value, int branch) {
    if (branch == 0) return SetString(value);
    const NodePtr node = node_of(*this);
    if (node == nullptr || value == "-1") return node == nullptr ? 0 : 1;
    return minimal::set_attribute(node.get(), "Use", view(value));
}
int UXXmlWrapperBase::GetVector(UXVectorDesc& vector) {
    const NodePtr node = node_of(*this);
    const bool read =
        node != nullptr && !node->text.empty() && minimal::with_array(vector, [&](auto& array) {
            return minimal::read_array(node->text, array);
        });
    return read ? 0 : 1;
}
int UXXmlWrapperBase::SetVector(UXVectorDesc& vector) {
    const NodePtr node = node_of(*this);
    const bool written = node != nullptr && minimal::with_array(vector, [&](const auto& array) {
                             node->text = minimal::array_text(array);
                             return true;
                         });
    return written ? 0 : 1;
}
int UXXmlWrapperBase::GetNodeArrayType(int /*unused*/) const {
    return 0;
}
int UXXmlWrapperBase::SetSizeTrimFromEnd(int size) {
    const NodePtr node = node_of(*this);
    if (node == nullptr || size < 0) return 0;
    while (GetNodeCount() > size) node->children.pop_back();
    return 1;
}
int UXXmlWrapperBase::LoadXDEArraySize(int* size) const {
    CStringUTF8 text;
    int rows = 0;
    GetPropertyValue(minimal::kSizeAttribute, text, 0);
    if (!UXParseInt(view(text).substr(0, view(text).find('|')), rows)) return 0;
    if (size != nullptr) *size = rows;
    return 1;
}
int UXXmlWrapperBase::SaveXDEArraySize(int size) {
    RemoveProperty("DimLens");
    if (size < 1) return RemoveProperty(minimal::kSizeAttribute);
    return SetPropertyValue(minimal::kSizeAttribute, size);
}
int UXXmlWrapperBase::SaveXDE2DArraySize(int rows, int cols) {
    if (rows < 1 || cols < 1) return SaveXDEArraySize(0);
    RemoveProperty("DimLens");
    return SetPropertyValue(minimal::kSizeAttribute,
                            minimal::printed(rows) + "|" + minimal::printed(cols));
}

// --- attributes --------------------------------------------------------------------------------

int UXXmlWrapperBase::GetPropertyValue(const char* name, CStringUTF8& out, int /*unused*/) const {
    const NodePtr node = node_of(*this);
    const std::string* const value = minimal::find_attribute(node.get(), name);
    if (value == nullptr) return 0;
    out = CStringUTF8(*value);
    return 1;
}
int UXXmlWrapperBase::GetPropertyValue(const char* name, int& out, int /*unused*/) const {
    CStringUTF8 text;
    return GetPropertyValue(name, text, 0) && UXParseInt(view(text), out) ? 1 : 0;
}
int UXXmlWrapperBase::GetPropertyValue(const char* name, double& out, int /*unused*/) const {
    CStringUTF8 text;
    return GetPropertyValue(name, text, 0) && UXParseDouble(view(text), out) ? 1 : 0;
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, int value) {
    return SetPropertyValue(name, minimal::printed(value));
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, double value) {
    return SetPropertyValue(name, minimal::printed(value));
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, const CStringUTF8& value) {
    return minimal::set_attribute(node_of(*this).get(), name, view(value));
}
int UXXmlWrapperBase::SetPropertyValue(const char* name, const CWBOStringArray& value) {
    return minimal::set_attribute(node_of(*this).get(), name, minimal::joined(value));
}
int UXXmlWrapperBase::HasProperty(const char* name, int /*unused*/) const {
    return minimal::find_attribute(node_of(*this).get(), name) != nullptr ? 1 : 0;
}
int UXXmlWrapperBase::RemoveProperty(const char* name) {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    std::erase_if(node->attributes, [&](const auto& a) { return a.first == view(name); });
    return 1;
}
int UXXmlWrapperBase::RemoveAttr(const char* name, int /*unused*/) {
    return RemoveProperty(name);
}
int UXXmlWrapperBase::GetPropertyNames(CWBOStringArray& out) const {
    if (IsNodeValid() != 0) out.RemoveAll();
    return GetPropertyNamesAndValues(out, nullptr, nullptr);
}
int UXXmlWrapperBase::GetPropertyNamesAndValues(CWBOStringArray& names, CWBOStringArray* values,
                                                const UXPropertyFilter* keep) const {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    for (const auto& [name, value] : node->attributes) {
        if (keep != nullptr && *keep && !(*keep)(name.c_str())) continue;
        names.Add(CStringUTF8(name));
        if (values != nullptr) values->Add(CStringUTF8(value));
    }
    return 1;
}
int UXXmlWrapperBase::CopyAllAttributes(UXXmlWrapperBase& source, int /*unused*/) {
    const NodePtr node = node_of(*this);
    const NodePtr from = node_of(source);
    if (node == nullptr || from == nullptr) return 0;
    for (const auto& [name, value] : from->attributes) {
        minimal::set_attribute(node.get(), name.c_str(), value);
    }
    return 1;
}

// --- names by key, texts as views: the plainest way, by text -----------------------------------

int UXXmlWrapperBase::GetPropertyView(const UXNameKey& name, std::string_view& out) const {
    const std::string* const value = minimal::find_attribute(node_of(*this).get(), name.c_str());
    if (value == nullptr) return 0;
    out = *value;
    return 1;
}
int UXXmlWrapperBase::Look(const UXNameKeys& names, UXNodeLook& out) const {
    const NodePtr node = node_of(*this);
    out.present = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (GetPropertyView(UXNameKey(names.c_str(i)), out.attributes[i]) != 0) {
            out.present |= 1U << i;
        }
    }
    out.childCount = GetNodeCount();
    out.textAtHand = true;
    out.value = node == nullptr ? std::string_view() : node->text;
    return node == nullptr ? 0 : 1;
}
int UXXmlWrapperBase::GetPropertyValue(const UXNameKey& name, CStringUTF8& out) const {
    return GetPropertyValue(name.c_str(), out, 0);
}
int UXXmlWrapperBase::GetPropertyValue(const UXNameKey& name, int& out) const {
    return GetPropertyValue(name.c_str(), out, 0);
}
int UXXmlWrapperBase::HasProperty(const UXNameKey& name) const {
    return HasProperty(name.c_str(), 0);
}
int UXXmlWrapperBase::SetPropertyView(const UXNameKey& name, std::string_view value) {
    return SetPropertyValue(name.c_str(), CStringUTF8(value));  // a copy: it may be a view of this
}
int UXXmlWrapperBase::SetPropertyValue(const UXNameKey& name, int value) {
    return SetPropertyValue(name.c_str(), value);
}
int UXXmlWrapperBase::RemoveProperty(const UXNameKey& name) {
    return RemoveProperty(name.c_str());
}
int UXXmlWrapperBase::NodeValueView(std::string_view& out, CStringUTF8& /*scratch*/) const {
    const NodePtr node = node_of(*this);
    out = node == nullptr ? std::string_view() : node->text;
    return out.empty() ? 0 : 1;
}
int UXXmlWrapperBase::SetValueView(std::string_view text) {
    return SetString(CStringUTF8(text));
}
int UXXmlWrapperBase::GetTagView(std::string_view& out) const {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    out = node->tag;
    return 1;
}
int UXXmlWrapperBase::FindChild(const UXNameKey& tag, UXXmlWrapperBase* out) const {
    return FindChild(tag.c_str(), out, 0);
}

int UXXmlWrapperBase::NextSibling(const UXNameKey& tag, UXXmlWrapperBase* out) const {
    if (out == nullptr) return 0;
    *out = *this;
    std::string_view name;
    while (out->NextSibling(out) != 0) {
        if (out->GetTagView(name) != 0 && name == tag.text()) return 1;
    }
    return 0;
}
int UXXmlWrapperBase::NextBelow(const UXXmlWrapperBase& top, const UXNameKey* tag,
                                UXXmlWrapperBase* out) const {
    if (out == nullptr) return 0;
    UXXmlWrapperBase node = *this;
    const UXXmlWrapperBase above = top;
    std::string_view name;
    do {
        UXXmlWrapperBase next;
        if (node.FirstChild(&next) == 0) {
            while (!(node == above) && node.NextSibling(&next) == 0) node.GetParent(&node);
        }
        node = next;
    } while (tag != nullptr && node.GetTagView(name) != 0 && name != tag->text());
    *out = node;
    return node.IsNodeValid();
}

// --- identifiers, visibility, label ------------------------------------------------------------

int UXXmlWrapperBase::GetDataID(int& id) const {
    return GetPropertyValue("DataID", id, 0);
}
int UXXmlWrapperBase::SetDataID(int id) {
    return SetPropertyValue("DataID", id);
}

int UXXmlWrapperBase::GetID(int& id) const {
    const NodePtr node = node_of(*this);
    if (node == nullptr || node->id == minimal::kNoId) return 0;
    id = node->id;
    return 1;
}
int UXXmlWrapperBase::SetID(int id, bool /*unused*/) {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    node->id = id;
    return 1;
}
int UXXmlWrapperBase::GetShow(int& show) const {
    const int found = GetPropertyValue("Show", show, 0);
    if (found == 0 && IsNodeValid() != 0) show = 1;
    return found;
}
void UXXmlWrapperBase::SetShow(int show) {
    show == 0 ? SetPropertyValue("Show", 0) : RemoveProperty("Show");
}
int UXXmlWrapperBase::SetLabel(const CStringUTF8& label) {
    return SetPropertyValue("Label", label);
}
int UXXmlWrapperBase::SetLabel(const char* label) {
    return label == nullptr ? RemoveProperty("Label") : SetLabel(CStringUTF8(label));
}

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
    const NodePtr before = node_of(reference);
    return before == nullptr ? give(*this, out, nullptr)
                             : add_child(*this, before, tag, nullptr, id, out);
}
int UXXmlWrapperBase::AddNodeCopy(UXXmlWrapperBase* source, int deep, UXXmlWrapperBase* out) {
    const NodePtr parent = node_of(*this);
    const NodePtr from = source == nullptr ? nullptr : node_of(*source);
    if (parent == nullptr || from == nullptr) return give(*this, out, nullptr);
    const NodePtr copy = minimal::copy_of(*from, deep != 0);
    minimal::insert(*parent, parent->children.end(), copy);
    give(*this, out, copy);
    return 1;
}
int UXXmlWrapperBase::Clone(UXXmlWrapperBase* out, int /*unused*/) const {
    const NodePtr node = node_of(*this);
    if (out == nullptr || node == nullptr) return give(*this, out, nullptr);
    return minimal::bind_root(*out, minimal::copy_of(*node, true));
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
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    const std::vector<NodePtr> children(node->children.begin(), node->children.end());
    if (!minimal::is_permutation(order, children.size())) return 0;
    const auto source = [&](std::size_t i) { return static_cast<std::size_t>(order.GetData()[i]); };
    std::vector<NodePtr> copies(children.size());  // all made before anything changes
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (source(i) != i) copies[i] = minimal::copy_of(*children[source(i)], true);
    }
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (copies[i] != nullptr) minimal::take_content(*children[i], *copies[i]);
    }
    return 1;
}
int UXXmlWrapperBase::RemoveNode() {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    if (node->parent == nullptr) {
        UXNodeAccess::link(*this)->tree->root.reset();
    } else {
        node->parent->children.erase(node->place);
    }
    return ReleaseNode();
}
int UXXmlWrapperBase::RemoveChild(UXXmlWrapperBase* child, int* index) {
    const NodePtr parent = node_of(*this);
    if (parent == nullptr) return 0;
    const NodePtr node = child == nullptr ? nullptr : node_of(*child);
    if (node == nullptr || node->parent != parent.get()) return -1;
    if (index != nullptr) {
        *index = static_cast<int>(std::distance(parent->children.begin(), node->place));
    }
    return child->RemoveNode();
}
int UXXmlWrapperBase::RemoveAllChildren() {
    return SetSizeTrimFromEnd(0);
}
int UXXmlWrapperBase::ResetNode(int /*unused*/) {
    return RemoveAllChildren() != 0 ? ResetValue() : 0;
}
int UXXmlWrapperBase::CreateNew(int /*unused*/, const char* tag) {
    const auto root = std::make_shared<Node>();
    root->tag = tag == nullptr ? "root" : tag;
    return minimal::is_name(root->tag.c_str()) ? minimal::bind_root(*this, root) : 0;
}

// --- searching ---------------------------------------------------------------------------------

int UXXmlWrapperBase::FindChild(const char* tag, UXXmlWrapperBase* out, int /*unused*/) const {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return give(*this, out, nullptr);
    for (const NodePtr& child : node->children) {
        if (child->tag == view(tag)) return give(*this, out, child);
    }
    return give(*this, out, nullptr);
}
int UXXmlWrapperBase::FindNodeByAttribute(UXXmlWrapperBase* out, const char* name,
                                          const char* value, int noCase, int deep) const {
    const CStringUTF8 wanted(value);
    return give_below(*this, out, name, deep, [&](const std::string& text) {
        return noCase != 0 ? wanted.CompareNoCase(text.c_str()) == 0 : wanted == text.c_str();
    });
}
int UXXmlWrapperBase::FindNodeByAttribute(UXXmlWrapperBase* out, const char* name, int value,
                                          int deep) const {
    return give_below(*this, out, name, deep, [&](const std::string& text) {
        int number = 0;
        return UXParseInt(text, number) && number == value;
    });
}
int UXXmlWrapperBase::FindCreateNode(const char* path, UXXmlWrapperBase* out, int id,
                                     const char* text, int /*unused1*/, int /*unused2*/,
                                     UXNodeOptions* /*options*/) {
    if (out == nullptr) return 0;
    UXXmlWrapperBase node(*this);
    CWBOStringArray tags;
    UXGetTokens(tags, path, '/', 0);
    int steps = 0;
    bool created = false;
    for (int i = 0; i < tags.GetSize() && node.IsNodeValid() != 0; ++i) {
        if (tags[i].IsEmpty()) continue;
        ++steps;
        UXXmlWrapperBase child;
        created = node.FindChild(tags[i], &child, 1) == 0;
        if (created) node.AddNode(&child, tags[i], id);
        node = child;
    }
    if (steps == 0) node.ReleaseNode();
    if (created && text != nullptr) node.SetString(text);
    *out = node;
    return out->IsNodeValid();
}
int UXXmlWrapperBase::GetNodeStringWithBlobInfo(CStringUTF8& out, DWORD /*unused*/) const {
    const NodePtr node = node_of(*this);
    if (node == nullptr) return 0;
    out = CStringUTF8(node->text);
    return 1;
}
