// The minimal host's node handle: a weak pointer into a tree of shared ones. The promises of each
// member are those of the embedded host's header of the same name; the library is compiled against
// this one instead.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "uxtree/host/array.h"
#include "uxtree/host/export.h"
#include "uxtree/host/script_object.h"
#include "uxtree/host/string.h"
#include "uxtree/host/vector_desc.h"

struct UXNodeOptions;
using UXPropertyFilter = std::function<bool(const char* name)>;

namespace minimal {
struct Node;
struct Tree;
}  // namespace minimal

class UXHOST_API UXXmlWrapperBase : public UXScriptObject {
public:
    bool operator==(const UXXmlWrapperBase& other) const;
    int ReleaseNode();

    // --- validity and counting -----------------------------------------------------------------

    int IsNodeValid() const { return node_.expired() ? 0 : 1; }
    int IsValid() override { return IsNodeValid(); }
    void* GetInternalData(unsigned int /*typeCode*/) override { return nullptr; }
    int GetNodeCount() const;
    int HasChildren(int /*unused*/ = 0) const { return GetNodeCount() > 0 ? 1 : 0; }
    int IsEmpty() const;
    int IsRootNode(int unused = 0) const;

    // --- navigation ----------------------------------------------------------------------------

    int FirstChild(UXXmlWrapperBase* out) const { return GetChild(out, 0); }
    int NextSibling(UXXmlWrapperBase* out) const;
    int PrevSibling(UXXmlWrapperBase* out) const;
    int GetParent(UXXmlWrapperBase* out) const;
    int GetChild(UXXmlWrapperBase* out, int index, int* unused = nullptr) const;
    int GetArrayOfChildren(CArray<UXXmlWrapperBase, UXXmlWrapperBase>& array, const char* tag,
                           CArray<int, int>* indices, int unused) const;

    // --- tag and value -------------------------------------------------------------------------

    int GetTagName(CStringUTF8& out) const;
    int NodeValue(CStringUTF8& text, int get, int unused, UXNodeOptions* options);
    int NodeValue(int& value, int get);
    int NodeValue(double& value, int get);
    int NodeValue(bool& value, int get);
    template <class T>
    int NodeValue(CArray<T, T>& value, int get) {
        UXVectorDesc vector(value);
        return (get != 0 ? GetVector(vector) : SetVector(vector)) == 0 ? 1 : 0;
    }
    int NodeValue(CWBOStringArray& value, int get, int* unused);
    int SetString(const char* text);
    int ResetValue() { return SetString(nullptr); }
    int CheckSetValue(int setMode, const CStringUTF8& value, int branch);
    int GetVector(UXVectorDesc& vector);
    int SetVector(UXVectorDesc& vector);
    int GetNodeArrayType(int /*unused*/) const { return 0; }
    int SetSizeTrimFromEnd(int size);
    int LoadXDEArraySize(int* size) const;
    int SaveXDEArraySize(int size);
    int SaveXDE2DArraySize(int rows, int cols);

    // --- attributes ----------------------------------------------------------------------------

    int GetPropertyValue(const char* name, CStringUTF8& out, int unused) const;
    int GetPropertyValue(const char* name, int& out, int unused) const;
    int GetPropertyValue(const char* name, double& out, int unused) const;
    int SetPropertyValue(const char* name, int value);
    int SetPropertyValue(const char* name, double value);
    int SetPropertyValue(const char* name, const CStringUTF8& value);
    int SetPropertyValue(const char* name, const CWBOStringArray& value);
    int HasProperty(const char* name, int unused) const;
    int RemoveProperty(const char* name);
    int RemoveAttr(const char* name, int /*unused*/) { return RemoveProperty(name); }
    int GetPropertyNames(CWBOStringArray& out) const;
    int GetPropertyNamesAndValues(CWBOStringArray& names, CWBOStringArray* values,
                                  const UXPropertyFilter* keep) const;
    int CopyAllAttributes(UXXmlWrapperBase& source, int unused);

    // --- identifiers, visibility, label --------------------------------------------------------

    int GetDataID(int& id) const { return GetPropertyValue("DataID", id, 0); }
    int SetDataID(int id) { return SetPropertyValue("DataID", id); }
    int GetID(int& id) const;
    int SetID(int id, bool unused);
    int GetShow(int& show) const;
    void SetShow(int show);
    int SetLabel(const char* label);
    int SetLabel(const CStringUTF8& label) { return SetPropertyValue("Label", label); }

    // --- creation, copying, removal ------------------------------------------------------------

    int AddNode(UXXmlWrapperBase* out, const char* tag, int id);
    int AddTextNode(UXXmlWrapperBase* out, const char* tag, const char* text, int id, int unused,
                    UXNodeOptions* options);
    int AddChildNode(const char* tag, UXXmlWrapperBase* out, int id, const char* text);
    int InsertNodeBefore(const UXXmlWrapperBase& reference, const char* tag, int id,
                         UXXmlWrapperBase* out);
    int AddNodeCopy(UXXmlWrapperBase* source, int deep, UXXmlWrapperBase* out);
    int Clone(UXXmlWrapperBase* out, int unused) const;
    int Replace(UXXmlWrapperBase* source, int unused1, int unused2, int unused3);
    int ReplaceByNodeCopy(UXXmlWrapperBase* source, int unused1, int unused2);
    int ArrangeChildContents(const CArray<int, int>& order);
    int RemoveNode();
    int RemoveChild(UXXmlWrapperBase* child, int* index);
    int RemoveAllChildren();
    int ResetNode(int unused);
    int CreateNew(int unused, const char* tag);
    int SetTagName(const char* tag);

    // --- searching -----------------------------------------------------------------------------

    int FindChild(const char* tag, UXXmlWrapperBase* out, int unused) const;
    int FindNodeByAttribute(UXXmlWrapperBase* out, const char* name, const char* value, int noCase,
                            int deep) const;
    int FindNodeByAttribute(UXXmlWrapperBase* out, const char* name, int value, int deep) const;
    int FindCreateNode(const char* path, UXXmlWrapperBase* out, int id, const char* text,
                       int unused1, int unused2, UXNodeOptions* options);

    // --- loading, saving, settings -------------------------------------------------------------

    int load(const char* path, int unused, bool unusedFlag);
    int LoadFromMemory(const char* bytes, std::size_t length);
    int Save(const char* path, int unused) const;
    static int SetDefaultCodePage(int /*codePage*/) { return 1; }  // texts are UTF-8 here
    int GetString(CStringUTF8& out, int unused = 0) const;
    int GetNodeStringWithBlobInfo(CStringUTF8& out, DWORD unused) const;

private:
    using NodePtr = std::shared_ptr<minimal::Node>;

    int Bind(const std::shared_ptr<minimal::Tree>& tree, const NodePtr& node);
    int BindRoot(const NodePtr& root);
    int Give(UXXmlWrapperBase* out, const NodePtr& node) const;
    int AddChild(const NodePtr& before, const char* tag, const char* text, int id,
                 UXXmlWrapperBase* out);
    int TakeContent(const UXXmlWrapperBase* source, bool withTag);
    template <typename Matches>
    int GiveBelow(UXXmlWrapperBase* out, const char* name, int deep, Matches&& matches) const;

    std::shared_ptr<minimal::Tree> tree_;  // a handle keeps the whole tree
    std::weak_ptr<minimal::Node> node_;    // and expires when its node is removed
};
