// The handle of one tree node.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

#include "uxtree/host/array.h"
#include "uxtree/host/export.h"
#include "uxtree/host/name_key.h"
#include "uxtree/host/script_object.h"
#include "uxtree/host/string.h"
#include "uxtree/host/vector_desc.h"

struct UXNodeOptions;                                            // opaque; callers pass null
using UXPropertyFilter = std::function<bool(const char* name)>;  // true keeps the attribute

// What a handle holds. The size is the contract, the meaning is the host's: the embedded one keeps
// a document, an element and the element's generation. Handles are moved by copying the words, and
// one whose document is null has nothing to let go.
struct UXNodeStorage {
    void* document = nullptr;
    void* node = nullptr;
    std::uint64_t generation = 0;
};
struct UXNodeAccess;  // each host defines it in its own sources, to reach the storage of a handle

// A value object that refers to one element of a tree, or to nothing. Copies refer to the same
// element; letting a handle go never deletes the element. A handle keeps its whole document alive.
// Removing an element makes every other handle to it, or into its branch, invalid.
//
// Results are 1 for success or true and 0 for failure or false, unless stated otherwise. On an
// invalid handle every operation yields 0 and changes nothing. An operation that yields a node
// writes it into its output handle, which becomes invalid on failure; the output may be the called
// handle itself. Arguments named unused are accepted and have no meaning.
//
// When memory runs out, an operation throws std::bad_alloc, having changed nothing; it throws nothing
// else. Loading and saving yield 0 instead and say why.
//
// A document and its handles belong to one thread at a time.
class UXHOST_API UXXmlWrapperBase : public UXScriptObject {
public:
    UXXmlWrapperBase() noexcept = default;
    UXXmlWrapperBase(const UXXmlWrapperBase& other) noexcept;
    UXXmlWrapperBase(UXXmlWrapperBase&& other) noexcept { std::swap(storage_, other.storage_); }
    ~UXXmlWrapperBase() override {
        if (storage_.document != nullptr) UXXmlWrapperBase::ReleaseNode();
    }
    UXXmlWrapperBase& operator=(const UXXmlWrapperBase& other) noexcept;
    UXXmlWrapperBase& operator=(UXXmlWrapperBase&& other) noexcept {
        std::swap(storage_, other.storage_);
        return *this;
    }
    // The same element; any two invalid handles are equal.
    bool operator==(const UXXmlWrapperBase& other) const;
    // The handle refers to nothing afterwards. Always 1.
    int ReleaseNode() noexcept;

    // --- validity and counting -----------------------------------------------------------------

    int IsNodeValid() const;
    int IsValid() override;
    void* GetInternalData(unsigned int typeCode) override;
    int GetNodeCount() const;  // number of child elements
    int HasChildren(int unused = 0) const;
    int IsEmpty() const;  // no text value and no children; attributes do not count
    int IsRootNode(int unused = 0) const;

    // --- navigation ----------------------------------------------------------------------------

    int FirstChild(UXXmlWrapperBase* out) const;
    int NextSibling(UXXmlWrapperBase* out) const;
    int PrevSibling(UXXmlWrapperBase* out) const;
    int GetParent(UXXmlWrapperBase* out) const;
    int GetChild(UXXmlWrapperBase* out, int index, int* unused = nullptr) const;
    // Empties array and fills it with the children of the exact tag (null or empty: all), and
    // indices, when given, with their zero-based positions.
    int GetArrayOfChildren(CArray<UXXmlWrapperBase, UXXmlWrapperBase>& array, const char* tag,
                           CArray<int, int>* indices, int unused) const;

    // --- tag and value -------------------------------------------------------------------------

    int GetTagName(CStringUTF8& out) const;
    // Transfers the value: get nonzero reads it, 0 writes it. An empty text is no value. Reading
    // yields 0 without a value; the text is then "", while a number or an array keeps what it
    // held, as it does when the value does not convert. An element's children are not touched.
    int NodeValue(CStringUTF8& text, int get, int unused, UXNodeOptions* options);
    int NodeValue(int& value, int get);
    int NodeValue(double& value, int get);
    int NodeValue(bool& value, int get);
    // Numbers joined by one blank; read by splitting at white space. An empty array clears.
    template <class T>
    int NodeValue(CArray<T, T>& value, int get) {
        UXVectorDesc vector(value);
        return (get != 0 ? GetVector(vector) : SetVector(vector)) == 0 ? 1 : 0;
    }
    // Texts joined by "|", with backslash doubled and "|" written as backslash and "|".
    int NodeValue(CWBOStringArray& value, int get, int* unused);
    int SetString(const char* text);  // null or empty clears the value
    int ResetValue();
    // Writes a value as the setting engine does: into the text of a leaf (branch 0), or into the
    // attribute "Use" of a branch, for which "-1" changes nothing. Always 1 on a valid handle.
    int CheckSetValue(int setMode, const CStringUTF8& value, int branch);
    // The array transfers through a descriptor. Here 0 is success and 1 failure.
    int GetVector(UXVectorDesc& vector);
    int SetVector(UXVectorDesc& vector);
    int GetNodeArrayType(int unused) const;
    // Removes children from the end until at most size are left; 0 for a size below 0.
    int SetSizeTrimFromEnd(int size);
    // The size of an array node, kept in the attribute "FileDataDimsVector" as "n" or "r|c". A
    // size below 1 removes it. Loading yields n or r and leaves size alone when there is none.
    int LoadXDEArraySize(int* size) const;
    int SaveXDEArraySize(int size);
    int SaveXDE2DArraySize(int rows, int cols);

    // --- attributes ----------------------------------------------------------------------------

    // 1 when the attribute is there and, for numbers, converts; out is untouched otherwise.
    int GetPropertyValue(const char* name, CStringUTF8& out, int unused) const;
    int GetPropertyValue(const char* name, int& out, int unused) const;
    int GetPropertyValue(const char* name, double& out, int unused) const;
    // Creates the attribute as the last one, or overwrites it in its place. 0 for an invalid name.
    // 0 also for the name "_ux_id", by which files carry the ID.
    int SetPropertyValue(const char* name, int value);
    int SetPropertyValue(const char* name, double value);
    int SetPropertyValue(const char* name, const CStringUTF8& value);
    int SetPropertyValue(const char* name, const CWBOStringArray& value);
    int HasProperty(const char* name, int unused) const;
    // 1 on a valid handle, also when there is no such attribute.
    int RemoveProperty(const char* name);
    int RemoveAttr(const char* name, int unused);
    int GetPropertyNames(CWBOStringArray& out) const;  // empties out first
    // Appends the names and, when given, the values of the attributes that keep accepts (null:
    // all).
    int GetPropertyNamesAndValues(CWBOStringArray& names, CWBOStringArray* values,
                                  const UXPropertyFilter* keep) const;
    // Overwrites attributes of the same names and keeps the others; the ID is not copied.
    int CopyAllAttributes(UXXmlWrapperBase& source, int unused);

    // --- names by key, texts as views ----------------------------------------------------------

    // What the operations above do, for loops over many nodes. A view is not followed by a NUL, and
    // holds until the next change of the node's document or of scratch, whichever it stands in. The
    // plainest implementation asks by the key's text.
    int GetPropertyView(const UXNameKey& name, std::string_view& out) const;
    // One look at the node for several names. An invalid handle has none of them, nor anything else.
    int Look(const UXNameKeys& names, UXNodeLook& out) const;
    int GetPropertyValue(const UXNameKey& name, CStringUTF8& out) const;
    int GetPropertyValue(const UXNameKey& name, int& out) const;
    int HasProperty(const UXNameKey& name) const;
    int SetPropertyView(const UXNameKey& name, std::string_view value);
    int SetPropertyValue(const UXNameKey& name, int value);
    int RemoveProperty(const UXNameKey& name);
    // The value as NodeValue reads it, "" and 0 without one. scratch keeps the text when the host
    // has to make it.
    int NodeValueView(std::string_view& out, CStringUTF8& scratch) const;
    // Writes a value as SetString does; the text may be a view of the node's own.
    int SetValueView(std::string_view text);
    int GetTagView(std::string_view& out) const;
    int FindChild(const UXNameKey& tag, UXXmlWrapperBase* out) const;
    // The next sibling of the tag.
    int NextSibling(const UXNameKey& tag, UXXmlWrapperBase* out) const;
    // The next element in pre-order that is below top, behind this one, which is top or below it;
    // with a tag (null: any), the next one of the tag.
    int NextBelow(const UXXmlWrapperBase& top, const UXNameKey* tag, UXXmlWrapperBase* out) const;

    // --- identifiers, visibility, label --------------------------------------------------------

    int GetDataID(int& id) const;  // the attribute "DataID"
    int SetDataID(int id);
    int GetID(int& id) const;        // a field of the element, not an attribute; 0 when it has none
    int SetID(int id, bool unused);  // -1 clears
    // show is 1 and the result 0 without a readable attribute "Show": such a node is shown.
    int GetShow(int& show) const;
    void SetShow(int show);
    int SetLabel(const char* label);  // null removes the label
    int SetLabel(const CStringUTF8& label);

    // --- creation, copying, removal ------------------------------------------------------------

    // New elements go last, or before the reference; id is their ID, -1 and 0 meaning none. out
    // may be null. 0 when the tag is no element name.
    int AddNode(UXXmlWrapperBase* out, const char* tag, int id);
    int AddTextNode(UXXmlWrapperBase* out, const char* tag, const char* text, int id, int unused,
                    UXNodeOptions* options);
    int AddChildNode(const char* tag, UXXmlWrapperBase* out, int id, const char* text);
    int InsertNodeBefore(const UXXmlWrapperBase& reference, const char* tag, int id,
                         UXXmlWrapperBase* out);
    // Appends a copy of source. deep 0 copies tag, attributes and ID; nonzero everything.
    int AddNodeCopy(UXXmlWrapperBase* source, int deep, UXXmlWrapperBase* out);
    // A deep copy as the root of a document of its own.
    int Clone(UXXmlWrapperBase* out, int unused) const;
    // Takes the source's attributes, ID, text and children, and the tag as well in the second
    // form; keeps identity and place. The source may be an ancestor, a descendant or the element.
    int Replace(UXXmlWrapperBase* source, int unused1, int unused2, int unused3);
    int ReplaceByNodeCopy(UXXmlWrapperBase* source, int unused1, int unused2);
    // Child i, from 0, gets the content (tag, attributes, ID, text, children) that child order[i]
    // has before; order holds each number from 0 to below GetNodeCount once. The children keep
    // identity and place. A handle into a branch whose content moved becomes invalid, while a child
    // that keeps its content keeps its branch. 0 for any other order.
    int ArrangeChildContents(const CArray<int, int>& order);
    // Removes the element with its branch; the handle becomes invalid.
    int RemoveNode();
    // Removes a direct child and yields its former position in index (may be null). -1 when child
    // is invalid or no direct child.
    int RemoveChild(UXXmlWrapperBase* child, int* index);
    int RemoveAllChildren();
    int ResetNode(int unused);  // removes children and text
    // Binds the handle to the root of a new document; the tag is "root" when null.
    int CreateNew(int unused, const char* tag);
    // Gives the element another tag; everything else stays. 0 when the tag is no element name.
    int SetTagName(const char* tag);

    // --- searching -----------------------------------------------------------------------------

    int FindChild(const char* tag, UXXmlWrapperBase* out, int unused) const;
    // The first element below this one, in pre-order, whose attribute has the value. deep 0 looks
    // at the direct children only.
    int FindNodeByAttribute(UXXmlWrapperBase* out, const char* name, const char* value, int noCase,
                            int deep) const;
    int FindNodeByAttribute(UXXmlWrapperBase* out, const char* name, int value, int deep) const;
    // Follows a path of tags separated by "/", creating with id what is missing; text becomes the
    // value of a last node that was created.
    int FindCreateNode(const char* path, UXXmlWrapperBase* out, int id, const char* text,
                       int unused1, int unused2, UXNodeOptions* options);

    // --- loading, saving, settings -------------------------------------------------------------

    // Parses an XML file strictly and binds the handle to its root; on failure the handle stays as
    // it was, and UXGetLastLoadError tells why. Comments, instructions, the document type and white
    // space between elements are no part of a tree. To change a file that people wrote, the embedded
    // host has UXLoadForEditing and UXSaveAs, which keep them (uxtree/host/embedded.h).
    int load(const char* path, int unused, bool unusedFlag);
    // The same for XML text in memory.
    int LoadFromMemory(const char* bytes, std::size_t length);
    // Writes the element as the root of an XML file: the tree alone, in UTF-8, without white space
    // between elements, so that equal trees give equal bytes however they were loaded. Atomically: a
    // failed save leaves the old file whole, and UXGetLastSaveError tells why it failed.
    int Save(const char* path, int unused) const;
    static int SetDefaultCodePage(int codePage);
    // The serialised element: escaped, with a closing tag, without indentation or declaration.
    int GetString(CStringUTF8& out, int unused = 0) const;
    // The element's own text value; "" when there is none.
    int GetNodeStringWithBlobInfo(CStringUTF8& out, DWORD unused) const;

private:
    friend struct UXNodeAccess;

    UXNodeStorage storage_;
};

// What the last load of this thread refused, as "path:line:column: message"; "" when it succeeded.
UXHOST_API CStringUTF8 UXGetLastLoadError();
// What the last Save of this thread refused, with the node's path; "" when it succeeded.
UXHOST_API CStringUTF8 UXGetLastSaveError();
