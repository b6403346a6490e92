// What the embedded host alone offers, beyond the contract of every host. libuxtree_Utils never
// includes it; a program that does depends on libuxtree_host as it comes with the library.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "uxtree/host/export.h"
#include "uxtree/host/string.h"

class UXXmlWrapperBase;

// Why and where an XML file could not be read.
struct UXFileError {
    CStringUTF8 message;  // "" when the last call of this thread succeeded
    long long line = 0;   // from 1; 0 when there is no position
    long long column = 0;
};

// The failure of this thread's last load in parts, for tools that print positions.
UXHOST_API const UXFileError& UXGetLastLoadFailure();

// --- documents of long texts ---------------------------------------------------------------------

// Like load, for large documents whose texts are needed one at a time: what the document takes beyond
// 8 MB is not kept in memory where it is texts of more than 512 bytes, but in a temporary file without
// a name, in the folder that TMPDIR names or in /tmp. Every operation works as ever; reading such a text
// reads it from the file, and fails for want of memory when that cannot be done. A text that has no
// place there is kept in memory. Attributes, short texts and everything that is changed or copied into
// another document stand in memory, too.
UXHOST_API int UXLoadLean(UXXmlWrapperBase* out, const char* path);

// --- reading without a tree ----------------------------------------------------------------------

// An attribute as a listener is told of it.
struct UXXmlAttribute {
    std::string_view name;
    std::string_view value;
};

// Hears what an XML document consists of, in its order. The texts are UTF-8 and valid during the
// call; names stay valid to the end of the reading or the next Restart, and the same name has the
// same address as long. The document is checked while it is read: only when the reading succeeds is all of it well.
class UXXmlEvents {
public:
    virtual ~UXXmlEvents() = default;
    // What was told so far does not count: the document is told again from its start. This happens
    // at most twice, where the fast reader has to leave a document to the general one.
    virtual void Restart() = 0;
    // An element starts; no attribute comes twice, and none that a DTD would add.
    virtual void Start(std::string_view name, const UXXmlAttribute* attributes,
                       std::size_t count) = 0;
    // A part of the text of the innermost open element; a text may come in many.
    virtual void Text(std::string_view /*text*/) {}
    // The innermost open element ends.
    virtual void End() = 0;
};

// Reads a regular file as load does, with the same checks, and tells the listener about it instead
// of making a tree; memory does not grow with the file, apart from its longest tag. Nesting has no
// limit; of the limits in the host's services those of bytes and progress hold. 1, or 0 with the
// reason where that of load is; the listener then heard what stands before the place of the error.
// What the listener throws ends the reading like a shortage of memory.
UXHOST_API int UXReadXml(const char* path, UXXmlEvents* events);
// The same for bytes in memory.
UXHOST_API int UXReadXmlFromMemory(const char* bytes, std::size_t length, UXXmlEvents* events);

// --- files that people wrote --------------------------------------------------------------------
//
// A document that is loaded for editing keeps the bytes it was read from, and saving it with its
// layout writes these bytes again, except where the tree has changed: comments, processing
// instructions, the document type declaration, white space, line ends, quotes, references, CDATA
// sections, encoding and byte order mark stay. It costs the size of the file and four bytes for each
// element; load() and Save() of the contract know nothing of it and cost and write what they always
// did. Every load and save of the node operations works on such a document too.

// Like load and LoadFromMemory; the reason of a failure is where theirs is.
UXHOST_API int UXLoadForEditing(UXXmlWrapperBase* out, const char* path);
UXHOST_API int UXLoadForEditingFromMemory(UXXmlWrapperBase* out, const char* bytes,
                                          std::size_t length);
// Was the node's document loaded for editing, or cloned from one that was?
UXHOST_API int UXKeepsLayout(const UXXmlWrapperBase* node);
// The bytes that the node's document was read from; 0 when it does not keep them.
UXHOST_API int UXGetSourceBytes(const UXXmlWrapperBase* node, CStringUTF8* out);

enum class UXSaveForm {
    kKeepLayout,  // as Save for a document that keeps none
    kPlain,       // as Save
    kIndented,    // in lines of their own, indented; comments and the like are left out
};
// Which IDs are written that the elements did not have in the file they come from, or not so. Form
// kPlain writes all IDs.
enum class UXSaveIds {
    kAsDocument,  // all when the file had any, otherwise none
    kWrite,
    kLeaveOut,
};
struct UXSaveOptions {
    UXSaveForm form = UXSaveForm::kKeepLayout;
    UXSaveIds ids = UXSaveIds::kAsDocument;
    int indent = 2;  // blanks a level, of kIndented
};
struct UXSaveReport {
    std::size_t idsWritten = 0;  // of those that UXSaveIds is about
    std::size_t idsLeftOut = 0;
    std::size_t commentsLeftOut = 0;  // and processing instructions, by kIndented
};

// Writes the element as the root of an XML file, atomically as Save does. The root of a document
// that keeps its layout is written with what stands before and behind it, in the file's encoding;
// any other element with a declaration of its own, in UTF-8. 0 when something cannot be written as
// it would have to be: UXGetLastSaveError then names the node. report may be null.
UXHOST_API int UXSaveAs(const UXXmlWrapperBase* node, const char* path,
                        const UXSaveOptions& options, UXSaveReport* report);
// The same into memory: the bytes of the file. out is untouched on failure.
UXHOST_API int UXSaveToMemory(const UXXmlWrapperBase* node, CStringUTF8* out,
                              const UXSaveOptions& options, UXSaveReport* report);

// --- other white space ---------------------------------------------------------------------------

struct UXFormatOptions {
    const char* indent = "  ";  // blanks or TABs of one level; null as ""
    bool compact = false;       // no lines at all
};

// Takes bytes piece by piece.
class UXByteSink {
public:
    virtual ~UXByteSink() = default;
    // False ends the writing.
    virtual bool Write(std::string_view bytes) = 0;
};

// Lays out an XML file anew, without making a tree: in each element that has child elements and no
// text, every child, comment and instruction gets a line of its own. Whatever could be a value stays
// byte for byte: elements without children, mixed content, what xml:space="preserve" is said of; so
// do comments, sections, references, quotes, the document type declaration, the encoding and the
// kind of line ends. Start tags have one blank in front of each attribute. Loading the result yields
// the same tree. Levels beyond the hundredth are indented like it.
//
// The bytes are checked as load checks them: 0 with the reason where that of load is, and out
// untouched, when they are refused.
UXHOST_API int UXFormatXml(const char* bytes, std::size_t length, const UXFormatOptions& options,
                           CStringUTF8* out);
// The same for a regular file, piece by piece: nothing is written before the whole file is checked.
// Memory grows with the number of elements, by a byte each, and with the longest tag, comment or
// section; a file that is not in UTF-8 is held as a whole. 0 as well when the sink ends it, or when the
// file changes meanwhile: what was written is then of no use.
UXHOST_API int UXFormatXmlFile(const char* path, const UXFormatOptions& options, UXByteSink* out);

// --- text among children --------------------------------------------------------------------------

// A part of an element's text that no child interrupts.
struct UXTextRun {
    int childrenBefore = 0;  // how many of the element's children stand before it
    std::size_t length = 0;  // in bytes, above 0
};

// Where the text of elements stands among their children, which a tree does not hold, but the bytes
// of a document that was loaded for editing do. Reads the bytes of the document once, when it is
// made, and serves all of its elements until the document changes. One thread at a time.
class UXHOST_API UXTextOrder {
public:
    // For the document that the node is in. Throws std::bad_alloc.
    explicit UXTextOrder(const UXXmlWrapperBase& node);
    UXTextOrder(UXTextOrder&& other) noexcept;
    UXTextOrder& operator=(UXTextOrder&& other) noexcept;
    ~UXTextOrder();

    // Does it know of anything? Not when the document was not loaded for editing.
    bool IsKnown() const;
    // The runs of an element's text in their order: runs[i] begins behind childrenBefore children,
    // and all runs joined are the element's text value. White space that the tree does not hold is
    // in no run. Texts that were changed, and those of elements that were added, stand where saving
    // with the layout would write them. False when that is not known: without the bytes, for a node
    // of another document, and for text beside children where any of it all comes from an entity
    // with elements; runs is empty then. Time grows with the element's own content. Throws std::bad_alloc.
    bool Runs(const UXXmlWrapperBase& node, std::vector<UXTextRun>& runs) const;
    // An element as the file has it, from its start tag to its end tag, in UTF-8: with comments,
    // quotes and references as they stand, and without changes that were made since. False when there
    // is no such place, out untouched: without the bytes, for a node of another document, an element
    // that was added, and one that an entity brought along.
    bool Written(const UXXmlWrapperBase& node, CStringUTF8& out) const;

private:
    struct Source;
    std::unique_ptr<Source> source_;
};
