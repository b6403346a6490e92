// Documents as people write them, and edits of them, made at random.
#include "support/layout_model.h"

#include <iterator>
#include <numeric>
#include <utility>
#include <vector>

namespace uxtest {

using ux::xml::FileEncoding;

namespace {

constexpr const char* kTags[] = {"a", "b", "c", "item", "x:y", "\u00FC"};
constexpr const char* kNames[] = {"k", "Use", "DataID", "Label", "xml:lang", "z"};
constexpr const char* kTexts[] = {"1",      "some text", "&amp;", "a &lt; b", "&#65;&#x42;",
                                  "]]&gt;", "\u20AC",    "]]",    "x\ty",     "&quot;'&apos;"};
constexpr const char* kValues[] = {"",       "1",    "two words", "<&>\"'", "]]>", " ",     "\n",
                                   "\u20AC", "a\rb", "]",         ">",      "x",   "\t tab"};

template <typename Value, std::size_t N>
Value one_of(const Value (&list)[N], LayoutModel& model) {
    return list[model.below(static_cast<int>(N))];
}

}  // namespace

template <typename List>
void LayoutModel::shuffle(List& list) {
    for (std::size_t i = list.size(); i > 1; --i) {
        std::swap(list[i - 1], list[static_cast<std::size_t>(below(static_cast<int>(i)))]);
    }
}

std::string LayoutModel::indent(int level) const {
    std::string out = lineEnd_;
    for (int i = 0; i < level; ++i) out += step_;
    return out;
}

std::string LayoutModel::text() {
    return one_of(kTexts, *this);
}
std::string LayoutModel::value() {
    return one_of(kValues, *this);
}

std::string LayoutModel::document(const FileForm& form) {
    static constexpr const char* kSteps[] = {"  ", "\t", "    ", ""};
    out_.clear();
    number_ = 0;
    lineEnd_ = chance(20) ? "\r\n" : chance(5) ? "\r" : "\n";
    step_ = one_of(kSteps, *this);
    lines_ = chance(80);
    budget_ = 5 + below(30);
    const bool isUtf8 = form.encoding == FileEncoding::kUtf8;
    if (isUtf8 && chance(20)) out_ += "\xEF\xBB\xBF";
    if (!isUtf8 || chance(60))
        out_ += std::string("<?xml version=\"1.0\" encoding='") + form.name + "' ?>" + lineEnd_;
    if (chance(20)) out_ += "<!DOCTYPE a [ <!-- > --> <!ELEMENT a ANY> ]>" + lineEnd_;
    if (chance(30)) out_ += "<!-- before --><?target data?>" + lineEnd_;
    put_element(0);
    if (chance(70)) out_ += lineEnd_;
    if (chance(20)) out_ += "<!-- behind -->" + lineEnd_;
    return out_;
}

namespace {

void replace_all(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

EncodedDocument encoded(std::string text, const FileForm& form) {
    const bool isAscii = form.encoding == FileEncoding::kAscii;
    if (isAscii) replace_all(text, "\u00FC", "u");
    if (isAscii || form.encoding == FileEncoding::kLatin1) replace_all(text, "\u20AC", "&#8364;");
    const bool isWide =
        form.encoding == FileEncoding::kUtf16Little || form.encoding == FileEncoding::kUtf16Big;
    if (isWide) text.insert(0, "\uFEFF");
    EncodedDocument document = {std::move(text), "", form.encoding};
    ux::xml::append_encoded(document.bytes, document.text, form.encoding);
    return document;
}

FileForm LayoutModel::form() {
    static constexpr FileForm kForms[] = {
        kUtf8Form,
        {"UTF-16", FileEncoding::kUtf16Little},
        {"UTF-16", FileEncoding::kUtf16Big},
        {"ISO-8859-1", FileEncoding::kLatin1},
        {"windows-1252", FileEncoding::kWindows1252},
        {"US-ASCII", FileEncoding::kAscii},
    };
    return one_of(kForms, *this);
}

EncodedDocument LayoutModel::encoded_document() {
    const FileForm chosen = form();
    return encoded(document(chosen), chosen);
}

void LayoutModel::put_attributes() {
    std::vector<const char*> names(std::begin(kNames), std::end(kNames));
    shuffle(names);
    names.resize(static_cast<std::size_t>(below(4)));
    for (const char* name : names) {
        const std::string quote = chance(30) ? "'" : "\"";
        out_ += chance(15) ? lineEnd_ + "   " : chance(10) ? "  " : " ";
        std::string written = chance(50) ? std::to_string(below(9)) : text();
        if (written.find('\'') != std::string::npos) written = "plain";
        out_ += name + std::string(chance(10) ? " = " : "=") + quote + written + quote;
    }
    if (chance(10)) out_ += " _ux_id=\"" + std::to_string(below(50)) + "\"";
    if (chance(10)) out_ += chance(50) ? " " : lineEnd_;
}

// What stands between elements, in a document of lines behind an element.
void LayoutModel::put_misc(int level) {
    if (chance(10)) out_ += " <!-- of " + std::to_string(number_) + " -->";
    if (chance(12)) out_ += lineEnd_;
    if (chance(12))
        out_ += indent(level) + "<!-- loose or above " + std::to_string(number_) + " -->";
    if (chance(5)) out_ += indent(level) + "<?keep " + std::to_string(number_) + "?>";
    if (chance(5)) out_ += lineEnd_ + " ";
}

void LayoutModel::put_content(int level) {
    const int kind = below(10);
    if (level > 4 || budget_ <= 0 || kind < 4) {
        if (kind < 2) return;
        for (int i = below(3); i >= 0; --i) {
            out_ += chance(20) ? "<![CDATA[a<b]]>" : chance(10) ? "<!-- in -->" : text();
        }
        if (chance(10)) out_ += " ";
        return;
    }
    const bool mixed = kind == 9;
    const bool lines = lines_ && !mixed && chance(90);
    const int count = 1 + below(4);
    for (int i = 0; i < count; ++i) {
        if (lines && !chance(8)) {
            put_misc(level);
            out_ += indent(level + 1);
        } else if (chance(30)) {
            out_ += " ";
        }
        if (mixed && chance(60)) out_ += text();
        put_element(level + 1);
        if (mixed && chance(40)) out_ += chance(50) ? text() : std::string(" ");
    }
    if (lines) {
        put_misc(level);
        if (chance(95)) out_ += indent(level);
    }
}

void LayoutModel::put_element(int level) {
    --budget_;
    ++number_;
    const std::string tag = one_of(kTags, *this);
    out_ += "<" + tag;
    put_attributes();
    const std::size_t start = out_.size();
    out_ += ">";
    put_content(level);
    if (out_.size() == start + 1 && chance(60)) {
        out_.insert(start, "/");
        return;
    }
    out_ += "</" + tag + (chance(5) ? " " : "") + ">";
}

// --- edits -------------------------------------------------------------------------------------

UXXmlWrapperBase LayoutModel::some_node(const UXXmlWrapperBase& root) {
    UXXmlWrapperBase node = root;
    for (int i = below(5); i > 0; --i) {
        UXXmlWrapperBase child;
        const int count = node.GetNodeCount();
        if (count == 0) break;
        node.GetChild(&child, below(count));
        node = child;
    }
    return node;
}

void LayoutModel::add(UXXmlWrapperBase& node) {
    UXXmlWrapperBase before;
    UXXmlWrapperBase made;
    const int id = chance(20) ? below(100) : -1;
    if (node.GetNodeCount() != 0 && chance(40)) {
        node.GetChild(&before, below(node.GetNodeCount()));
        node.InsertNodeBefore(before, one_of(kTags, *this), id, &made);
    } else {
        node.AddTextNode(&made, one_of(kTags, *this), value().c_str(), id, 0, nullptr);
    }
    if (chance(30)) made.SetPropertyValue("new", CStringUTF8(value().c_str()));
    if (chance(30)) made.AddNode(nullptr, "inner", -1);
}

void LayoutModel::move(UXXmlWrapperBase& root, UXXmlWrapperBase& node) {
    UXXmlWrapperBase target = some_node(root);
    UXXmlWrapperBase added;
    CStringUTF8 tag;
    node.GetTagName(tag);
    target.AddNode(&added, tag, -1);
    added.Replace(&node, 1, 0, 0);
    if (!(node == root)) node.RemoveNode();
}

void LayoutModel::arrange(UXXmlWrapperBase& node) {
    std::vector<int> order(static_cast<std::size_t>(node.GetNodeCount()));
    std::iota(order.begin(), order.end(), 0);
    shuffle(order);
    CArray<int, int> numbers;
    for (const int number : order) numbers.Add(number);
    node.ArrangeChildContents(numbers);
}

void LayoutModel::edit_gently(UXXmlWrapperBase& root) {
    static constexpr int kGentle[] = {0, 1, 2, 3, 4, 5, 8, 11};
    edit(root, one_of(kGentle, *this));
}

void LayoutModel::edit(UXXmlWrapperBase& root, int kind) {
    UXXmlWrapperBase node = some_node(root);
    const bool isRoot = node == root;
    switch (kind) {
        case 0:
        case 1:
            node.SetPropertyValue(one_of(kNames, *this), CStringUTF8(value().c_str()));
            break;
        case 2:
            node.RemoveProperty(one_of(kNames, *this));
            break;
        case 3:
        case 4:
            node.SetString(value().c_str());
            break;
        case 5:
            add(node);
            break;
        case 6:
        case 7:
            if (!isRoot) node.RemoveNode();
            break;
        case 8:
            arrange(node);
            break;
        case 9:
            move(root, node);
            break;
        case 10: {
            UXXmlWrapperBase other = some_node(root);
            if (root.GetNodeCount() < 40) other.AddNodeCopy(&node, 1, nullptr);
            break;
        }
        case 11:
            node.SetTagName(one_of(kTags, *this));
            break;
        default: {
            UXXmlWrapperBase other = some_node(root);
            if (chance(50)) node.ReplaceByNodeCopy(&other, 0, 0);
            if (chance(20)) node.SetID(below(30), false);
            break;
        }
    }
}

}  // namespace uxtest
