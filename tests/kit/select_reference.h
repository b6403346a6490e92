// Selections compared with libxml2's XPath, over random documents and expressions.
#pragma once

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include "uxtree/kit/select.h"

namespace uxtest {

// A number from 0 to below its argument: from a generator, or from the bytes of a fuzzer.
using Choose = std::function<unsigned(unsigned)>;

// --- documents and expressions -------------------------------------------------------------------

// Documents with everything that stands between tags. White space as a reference is left out beside
// elements, since afterwards nobody can tell it from other white space.
class DocumentMaker {
public:
    DocumentMaker(Choose choose, bool mixed) : choose_(std::move(choose)), mixed_(mixed) {}

    std::string make() {
        std::string text = "<?xml version='1.0'?><!-- before -->\n<a xmlns:p='urn:p'";
        add_attributes(text);
        text += ">";
        add_content(text, 0);
        return text + "</a>\n<?after it?>";
    }

private:
    const char* pick(std::initializer_list<const char*> list) {
        return list.begin()[choose_(static_cast<unsigned>(list.size()))];
    }
    void add_attributes(std::string& text) {
        for (const char* name : {"x", "p:z", "y", "n"}) {
            if (choose_(3) == 0) {
                text += std::string(" ") + name + "='" +
                        pick({"", "v", "1", "2", "10", "1.5", "-1", " 2 ", "w", "v w"}) + "'";
            }
        }
    }
    void add_element(std::string& text, int depth) {
        const std::string tag = pick({"a", "b", "b", "c", "p:d"});
        text += "<" + tag;
        add_attributes(text);
        if (choose_(6) == 0) {
            text += "/>";
            return;
        }
        text += ">";
        add_content(text, depth + 1);
        text += "</" + tag + ">";
    }
    void add_content(std::string& text, int depth) {
        if (depth > 5 || (depth > 0 && choose_(2) == 0)) {
            for (unsigned pieces = choose_(4); pieces > 0; --pieces) text += leaf_piece();
            return;
        }
        const bool mixed = mixed_ && choose_(4) == 0;
        for (unsigned children = choose_(5); children > 0; --children) {
            text += mixed ? mixed_piece() : branch_piece();
            add_element(text, depth);
            text += mixed ? mixed_piece() : branch_piece();
        }
    }
    const char* leaf_piece() {
        return pick({"v", "v", "1", "2", "10", "w", " ", "\n", "<![CDATA[v]]>", "<![CDATA[ ]]>",
                     "<!-- c -->", "<?i?>", "&#32;", "&lt;", "1.5", "-1"});
    }
    const char* branch_piece() {
        return pick({"", "", " ", "\n  ", "<!-- c -->", " <?i?> ", "\n<!-- c -->\n"});
    }
    const char* mixed_piece() {
        return pick({"", " ", "v", "w ", "1", "<![CDATA[ ]]>", "<![CDATA[v]]>", "<!-- c -->x"});
    }

    Choose choose_;
    bool mixed_;
};

// Expressions of the language, and now and then ones that it refuses.
class ExpressionMaker {
public:
    // Without texts nothing is asked that depends on the text of an element.
    ExpressionMaker(Choose choose, bool texts) : choose_(std::move(choose)), texts_(texts) {}

    std::string make() {
        std::string path = pick({"/", "//", "", "", "/a/", "//"});
        for (unsigned steps = choose_(4) + 1; steps > 0; --steps) {
            const bool last = steps == 1;
            path += choose_(6) == 0 && !path.ends_with("//") ? pick({".", ".."}) : step(0, last);
            if (!last) path += choose_(4) == 0 ? "//" : "/";
        }
        return path;
    }

private:
    const char* pick(std::initializer_list<const char*> list) {
        return list.begin()[choose_(static_cast<unsigned>(list.size()))];
    }
    std::string step(int depth, bool last) {
        const unsigned kind = last ? choose_(10) : 0;
        std::string text;
        if (kind == 8) {
            text = pick({"@x", "@*", "@p:z", "@n", "@ y"});
        } else if (kind == 9 && texts_) {
            text = "text()";
        } else {
            text = pick({"a", "b", "b", "c", "*", "*", "p:d", " b "});
        }
        const bool onLeaf = kind >= 8 && text != "a" && text != "b";
        for (unsigned count = choose_(6); count > 3; --count) {
            text += "[" + condition(depth + 1, onLeaf && text.find_first_of("@t") == 0) + "]";
        }
        return text;
    }
    std::string condition(int depth, bool onLeaf) {
        switch (depth > 3 ? choose_(6) : choose_(11)) {
            case 0:
                return number();
            case 1:
                return pick({"last()", "position()", "last() - 1", "position() mod 2", "2 - 1"});
            case 2:
                return std::string("position()") + op() + pick({"1", "2", "last()", "-1+3"});
            case 3:
                return onLeaf ? ". = 'v'" : path(depth);
            case 4:
            case 5:
                return compared(depth, onLeaf);
            case 6:
                return "not(" + condition(depth + 1, onLeaf) + ")";
            case 7:
                return condition(depth + 1, onLeaf) + " and " + condition(depth + 1, onLeaf);
            case 8:
                return condition(depth + 1, onLeaf) + " or " + condition(depth + 1, onLeaf);
            case 9:
                return std::string(pick({"contains(", "starts-with( "})) + operand(depth, onLeaf) +
                       "," + literal() + ")";
            default:
                return "(" + condition(depth + 1, onLeaf) + ")" +
                       (choose_(3) == 0 ? "=true()" : "");
        }
    }
    std::string compared(int depth, bool onLeaf) {
        std::string left = operand(depth, onLeaf);
        std::string right = choose_(2) == 0 ? literal() : number();
        if (choose_(8) == 0) right = pick({"last()", "position()", "false()", "-(1)", "count(*)"});
        if (onLeaf && right == "count(*)") right = "1";
        if (choose_(6) == 0) left = std::string(pick({"number(", "boolean(", "-("})) + left + ")";
        if (choose_(8) == 0) left += pick({" + 1", "*2", " div 2", " mod 2", " - 1"});
        return choose_(5) == 0 ? right + op() + left : left + op() + right;
    }
    std::string operand(int depth, bool onLeaf) {
        if (onLeaf) return ".";
        if (!texts_) return pick({"@x", "@n", "b/@y", "../@x", ".//@n", "*/@*"});
        return choose_(4) == 0 ? pick({".", "text()", "b/text()", "@n"}) : path(depth);
    }
    std::string path(int depth) {
        std::string text = pick({"", "", "", "../", "../../", "./", ".//", "//", "/", "/a/"});
        const unsigned steps = choose_(2) + 1;
        for (unsigned i = 0; i < steps; ++i) {
            const bool last = i + 1 == steps;
            text += depth < 3 ? step(depth + 1, last) : pick({"b", "*", "c"});
            if (!last) text += choose_(5) == 0 ? "//" : "/";
        }
        return text;
    }
    std::string op() { return pick({"=", "=", " = ", "!=", "<", " <= ", ">", ">="}); }
    std::string literal() {
        return pick({"'v'", "'v'", "\"w\"", "''", "'1'", "'10'", "' '", "'vv'", "'1v'", "'v1'"});
    }
    std::string number() { return pick({"1", "2", "3", "0", "10", "1.5", ".5", "2."}); }

    Choose choose_;
    bool texts_;
};

// --- libxml2 -------------------------------------------------------------------------------------

// A document as libxml2 has it, without what a tree does not hold: comments and instructions, and
// white space alone beside elements. Texts that become neighbours are one.
class ReferenceDocument {
public:
    explicit ReferenceDocument(const std::string& xml) {
        document_ = xmlReadMemory(xml.data(), static_cast<int>(xml.size()), "", nullptr,
                                  XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET);
        if (document_ == nullptr) return;
        for (xmlNode* node = document_->children; node != nullptr;) {
            xmlNode* next = node->next;
            if (node->type != XML_ELEMENT_NODE) remove(node);
            node = next;
        }
        clean(xmlDocGetRootElement(document_));
    }
    ~ReferenceDocument() { xmlFreeDoc(document_); }
    ReferenceDocument(const ReferenceDocument&) = delete;
    ReferenceDocument& operator=(const ReferenceDocument&) = delete;

    bool valid() const { return document_ != nullptr; }

    // False when the expression is none to libxml2, or does not yield nodes.
    bool select(const std::string& expression, std::vector<std::string>& out) {
        xmlXPathContext* context = xmlXPathNewContext(document_);
        context->node = xmlDocGetRootElement(document_);
        xmlXPathRegisterNs(context, xml_text("p"), xml_text("urn:p"));
        xmlSetStructuredErrorFunc(context, [](void*, xmlErrorPtr) {});
        xmlXPathObject* found = xmlXPathEval(xml_text(expression.c_str()), context);
        xmlSetStructuredErrorFunc(nullptr, nullptr);
        const bool isSet = found != nullptr && found->type == XPATH_NODESET;
        if (isSet && found->nodesetval != nullptr) {
            xmlXPathNodeSetSort(found->nodesetval);
            for (int i = 0; i < found->nodesetval->nodeNr; ++i) {
                out.push_back(describe(found->nodesetval->nodeTab[i]));
            }
        }
        xmlXPathFreeObject(found);
        xmlXPathFreeContext(context);
        return isSet;
    }

private:
    static const xmlChar* xml_text(const char* text) {
        return reinterpret_cast<const xmlChar*>(text);
    }
    static void remove(xmlNode* node) {
        xmlUnlinkNode(node);
        xmlFreeNode(node);
    }
    static bool is_text(const xmlNode* node) {
        return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
    }
    static void clean(xmlNode* element) {
        bool hasElements = false;
        for (xmlNode* node = element->children; node != nullptr;) {
            xmlNode* next = node->next;
            if (node->type == XML_ELEMENT_NODE) {
                hasElements = true;
                clean(node);
            } else if (!is_text(node)) {
                remove(node);
            }
            node = next;
        }
        for (xmlNode* node = element->children; node != nullptr;) {
            node = is_text(node) ? join(node, hasElements) : node->next;
        }
    }
    // Makes one text of a run of them and yields what follows.
    static xmlNode* join(xmlNode* first, bool besideElements) {
        std::string text;
        bool isKept = !besideElements;
        xmlNode* node = first;
        while (node != nullptr && is_text(node)) {
            xmlNode* next = node->next;
            isKept = isKept || node->type == XML_CDATA_SECTION_NODE;
            text += reinterpret_cast<const char*>(node->content);
            if (node != first) remove(node);
            node = next;
        }
        isKept = isKept || text.find_first_not_of(" \t\r\n") != std::string::npos;
        if (isKept && !text.empty()) {
            xmlNode* joined = xmlNewText(xml_text(text.c_str()));
            xmlReplaceNode(first, joined);
            xmlFreeNode(first);
        } else {
            remove(first);
        }
        return node;
    }

    static std::string describe(xmlNode* node) {
        xmlChar* content = xmlNodeGetContent(node);
        const std::string text = content == nullptr ? "" : reinterpret_cast<char*>(content);
        xmlFree(content);
        if (node->type == XML_DOCUMENT_NODE) return "document=" + text;
        std::string name;
        if (node->type == XML_ATTRIBUTE_NODE) {
            const xmlNs* space = node->ns;
            name = std::string("@") +
                   (space == nullptr ? "" : reinterpret_cast<const char*>(space->prefix)) +
                   (space == nullptr ? "" : ":") + reinterpret_cast<const char*>(node->name);
        } else if (node->type == XML_TEXT_NODE) {
            name = "text()";
        }
        if (!name.empty()) node = node->parent;
        return place(node) + name + "=" + text;
    }
    static std::string place(const xmlNode* node) {
        std::string path;
        for (; node->type == XML_ELEMENT_NODE; node = node->parent) {
            int number = 0;
            for (const xmlNode* before = node->prev; before != nullptr; before = before->prev) {
                if (before->type == XML_ELEMENT_NODE) ++number;
            }
            path.insert(0, "/" + std::to_string(number));
        }
        return path;
    }

    xmlDoc* document_ = nullptr;
};

// --- ours ----------------------------------------------------------------------------------------

inline std::string selected_place(UXXmlWrapperBase node) {
    std::string path;
    do {
        int number = 0;
        for (UXXmlWrapperBase before = node; before.PrevSibling(&before) != 0;) ++number;
        path.insert(0, "/" + std::to_string(number));
    } while (node.GetParent(&node) != 0);
    return path;
}

inline std::vector<std::string> selected_places(const UXSelected& result) {
    std::vector<std::string> all;
    for (std::size_t i = 0; i < result.size(); ++i) {
        const UXSelectedKind kind = result.kind(i);
        CStringUTF8 text;
        const bool known = result.text(i, text);
        std::string place =
            kind == UXSelectedKind::kDocument ? "document" : selected_place(result.node(i));
        if (kind == UXSelectedKind::kAttribute) place += std::string("@") + result.attribute(i);
        if (kind == UXSelectedKind::kText) place += "text()";
        all.push_back(place + "=" + (known ? static_cast<const char*>(text) : "?"));
    }
    return all;
}

// A text that is not known may be any.
inline bool agree(const std::vector<std::string>& ours, const std::vector<std::string>& theirs) {
    if (ours.size() != theirs.size()) return false;
    for (std::size_t i = 0; i < ours.size(); ++i) {
        if (ours[i] == theirs[i]) continue;
        const std::size_t end = ours[i].size() - 1;
        if (ours[i].substr(end) != "?" || ours[i].substr(0, end) != theirs[i].substr(0, end)) {
            return false;
        }
    }
    return true;
}

}  // namespace uxtest
