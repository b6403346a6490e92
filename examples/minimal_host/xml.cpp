// Files of the minimal host. What it does not do, and the embedded host does: documents with a
// DOCTYPE are refused altogether, texts without a declared encoding are UTF-8, blank text between
// elements is dropped even when it was written as a reference, and saving is not atomic.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>

#include <expat.h>

#include "uxtree/host/node.h"
#include "uxtree/host/services.h"
#include "uxtree/host/utilities.h"

#include "node_data.h"

namespace minimal {
namespace {

constexpr const char* kIdAttribute = "_ux_id";

void put_escaped(std::string& out, std::string_view text, bool attribute) {
    for (const char c : text) {
        if (c == '&') {
            out += "&amp;";
        } else if (c == '<') {
            out += "&lt;";
        } else if (c == '>') {
            out += "&gt;";
        } else if (c == '"' && attribute) {
            out += "&quot;";
        } else if (c == '\r' || (attribute && (c == '\t' || c == '\n'))) {
            out += "&#" + std::to_string(static_cast<int>(c)) + ";";
        } else {
            out += c;
        }
    }
}

void open_tag(std::string& out, const Node& node, bool forFile) {
    const bool withId = forFile && node.id != kNoId;
    out += "<" + node.tag;
    for (const auto& [name, value] : node.attributes) {
        if (withId && name == kIdAttribute) continue;
        out += " " + name + "=\"";
        put_escaped(out, value, true);
        out += '"';
    }
    if (withId) out += " _ux_id=\"" + std::to_string(node.id) + "\"";
    out += '>';
    put_escaped(out, node.text, false);
}

struct Builder {
    XML_Parser parser;
    NodePtr root;
    Node* open = nullptr;
    int depth = 0;
    std::string piece;  // text since the last tag

    // White space alone stands between elements for the reader's eye, except in a leaf.
    void finish_piece(bool leaf) {
        const bool blank = piece.find_first_not_of(" \t\r\n") == std::string::npos;
        if (open != nullptr && (leaf || !blank)) open->text += piece;
        piece.clear();
    }
    void start(const char* tag, const char** attributes) {
        finish_piece(false);
        if (++depth > UXGetHostServices().maxNesting) XML_StopParser(parser, XML_FALSE);
        const auto node = std::make_shared<Node>();
        node->tag = tag;
        for (; *attributes != nullptr; attributes += 2) {
            const bool isId = std::string_view(attributes[0]) == kIdAttribute;
            if (isId && UXParseInt(attributes[1], node->id)) continue;
            node->attributes.emplace_back(attributes[0], attributes[1]);
        }
        if (open == nullptr) {
            root = node;
        } else {
            insert(*open, open->children.end(), node);
        }
        open = node.get();
    }
    void end() {
        finish_piece(open->children.empty());
        open = open->parent;
        --depth;
    }
};

// Callbacks of the parser, which no exception may pass: shortage of memory ends the program here.
void XMLCALL on_start(void* builder, const char* tag, const char** attributes) noexcept {
    static_cast<Builder*>(builder)->start(tag, attributes);
}
void XMLCALL on_end(void* builder, const char* /*tag*/) noexcept {
    static_cast<Builder*>(builder)->end();
}
void XMLCALL on_text(void* builder, const char* text, int length) noexcept {
    static_cast<Builder*>(builder)->piece.append(text, static_cast<std::size_t>(length));
}
void XMLCALL on_doctype(void* builder, const char* /*name*/, const char* /*system*/,
                        const char* /*public*/, int /*internal*/) noexcept {
    XML_StopParser(static_cast<Builder*>(builder)->parser, XML_FALSE);
}

bool holds_control_characters(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n' && c != '\r';
    });
}

}  // namespace

std::string to_xml(const Node& top, bool forFile) {
    std::string out;
    for (const Node* node = &top;;) {
        open_tag(out, *node, forFile);
        if (!node->children.empty()) {
            node = node->children.front().get();
            continue;
        }
        const Node* next = nullptr;
        for (; next == nullptr; node = node->parent) {
            out += "</" + node->tag + ">";
            if (node == &top) return out;
            next = sibling_after(*node);
        }
        node = next;
    }
}

NodePtr from_xml(const char* bytes, std::size_t length) {
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), &XML_ParserFree);
    Builder builder{parser.get(), nullptr, nullptr, 0, {}};
    XML_SetUserData(parser.get(), &builder);
    XML_SetElementHandler(parser.get(), on_start, on_end);
    XML_SetCharacterDataHandler(parser.get(), on_text);
    XML_SetStartDoctypeDeclHandler(parser.get(), on_doctype);
    const XML_Status status = XML_Parse(parser.get(), bytes, static_cast<int>(length), 1);
    return status == XML_STATUS_OK ? builder.root : nullptr;
}

}  // namespace minimal

int UXXmlWrapperBase::LoadFromMemory(const char* bytes, std::size_t length) {
    return minimal::bind_root(*this, bytes == nullptr ? nullptr : minimal::from_xml(bytes, length));
}

int UXXmlWrapperBase::load(const char* path, int /*unused*/, bool /*unusedFlag*/) {
    if (UXAccess(path, 0) != 0) return 0;
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    return LoadFromMemory(bytes.data(), bytes.size());
}

int UXXmlWrapperBase::Save(const char* path, int /*unused*/) const {
    const minimal::NodePtr node = minimal::node_of(*this);
    if (node == nullptr || path == nullptr) return 0;
    const std::string xml = minimal::to_xml(*node, true);
    if (minimal::holds_control_characters(xml)) return 0;
    std::ofstream file(path, std::ios::binary);
    file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" << xml;
    file.close();
    return file.good() ? 1 : 0;
}

int UXXmlWrapperBase::GetString(CStringUTF8& out, int /*unused*/) const {
    const minimal::NodePtr node = minimal::node_of(*this);
    if (node == nullptr) return 0;
    out = CStringUTF8(minimal::to_xml(*node, false));
    return 1;
}

int UXXmlWrapperBase::SetDefaultCodePage(int /*codePage*/) {
    return 1;  // texts are UTF-8 here
}

// Reasons are not kept here.
CStringUTF8 UXGetLastLoadError() {
    return {};
}
CStringUTF8 UXGetLastSaveError() {
    return {};
}
