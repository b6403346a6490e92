// Selection: which elements, attributes and texts of a tree a path in XPath's short form reaches.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "uxtree/host/node.h"
#include "uxtree/kit/export.h"

// Why an expression was not understood.
struct UXSelectFault {
    std::size_t position = 0;  // bytes before the place of the fault
    std::string message;       // one line, without the position
};

enum class UXSelectOutcome {
    kDone,       // also when nothing was found
    kMixedText,  // the answer depends on text whose place among child elements is not known
    kNoTree,     // the handle is invalid, or nothing was compiled
    kOutOfMemory,
};

enum class UXSelectedKind {
    kDocument,  // what holds the root element; "/" and the parent of the root select it
    kElement,
    kAttribute,
    kText,
};

// What a selection found: in document order, nothing twice. Attributes come behind their element in
// the order they have there. An element with children has several texts where their places are known.
// The items refer to the tree, and are to be used before it changes. A result belongs to one thread at
// a time.
class UXKIT_API UXSelected {
public:
    UXSelected();
    UXSelected(UXSelected&& other) noexcept;
    ~UXSelected();
    UXSelected& operator=(UXSelected&& other) noexcept;

    std::size_t size() const;
    // What follows wants a number below size().
    UXSelectedKind kind(std::size_t index) const;
    // The element itself; of an attribute or a text the element that has it; of the document its
    // root element.
    UXXmlWrapperBase node(std::size_t index) const;
    // The name of an attribute; "" otherwise.
    const char* attribute(std::size_t index) const;
    // The text as XPath has it: the value of an attribute, a text, and of an element all texts in
    // it joined. False, with out "", when it depends on text in mixed content. Throws std::bad_alloc.
    bool text(std::size_t index, CStringUTF8& out) const;
    // When the outcome is kMixedText: an element whose text stood in the way; invalid otherwise.
    UXXmlWrapperBase mixed() const;

    struct Items;

private:
    friend class UXSelection;
    std::unique_ptr<Items> items_;
};

// A path, compiled once and run on any number of trees, by several threads at once if they like.
//
// It is a part of XPath 1.0, and what is accepted means what XPath 1.0 says; docs/selection.md has
// the table of all there is:
//   /a/b   //b   *   .   ..   @a   @*   text()
//   [2]   [last()]   [@a]   [@a='v']   [b='v']   [b>3]   [not(...)]   and   or   contains(b, 'v')
// Anything else is refused with its place. Names are taken as the file has them: a prefix belongs
// to the name, and "b" is an element written <b>. Declarations of namespaces are no attributes.
//
// The tree is what it holds: comments and instructions are not there, so texts on both sides of one
// are one, as are CDATA sections and the text beside them; white space that stands alone beside
// child elements was dropped when the tree was loaded. A tree holds the text of an element apart
// from its children. For an element that has both, a document that was loaded for editing
// (uxtree/host/embedded.h) tells what text stands before which child. Of any other it cannot be told:
// where that decides the answer, there is none (kMixedText), and what does not depend on it is
// answered.
//
// Time grows with the size of the tree and of the expression, not with their product by each
// other's shape: no tree is walked again for each of its nodes, and depth costs no machine stack.
class UXKIT_API UXSelection {
public:
    UXSelection();
    UXSelection(const UXSelection& other);
    UXSelection(UXSelection&& other) noexcept;
    ~UXSelection();
    UXSelection& operator=(const UXSelection& other);
    UXSelection& operator=(UXSelection&& other) noexcept;

    // False when the expression is not understood, or null, or memory runs out: fault, which may be
    // null, says where and why ("out of memory"), and the selection keeps what it held.
    bool compile(const char* expression, UXSelectFault* fault = nullptr);
    // Selects from a node: a path without "/" in front starts there, one with "/" at the document
    // that the node is in. Replaces what result held; it is empty unless the outcome is kDone.
    UXSelectOutcome run(const UXXmlWrapperBase& context, UXSelected& result) const;

    struct Program;

private:
    std::shared_ptr<const Program> program_;
};
