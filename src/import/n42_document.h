// The loaded document of a spectrum file: its names without prefixes, and its texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

#include "uxtree/host/host.h"

#include "import/n42_names.h"

namespace ux {

// It lives as long as the reader, and records refer to its elements.
class N42Document : public CQXMLFileAccess<Q_n42_ID, 0> {
public:
    explicit N42Document(const char* path);

    // Takes off the prefix "n42", and any that the root element binds to an N42 namespace. Those
    // that are bound at an element, or around it, are taken off when the element is read. Other
    // prefixes stay, so that an instrument's own extensions never pass for standard elements.
    bool NormalizeTag(CStringUTF8& tag) override;

    // Loads the file and looks at its root. 0, or -9099 when the file cannot be read, -9098 when
    // it is no XML, 10 when the 2011 reader meets the 2006 form, -9097 for any other root.
    int Open();
    // The same with a document that is loaded already.
    int OpenLoaded(const UXXmlWrapperBase& document);
    const UXXmlWrapperBase& Root() const { return document_; }
    std::string RootName() const;
    // How many elements of the whole document are called "Spectrum", whatever their prefix.
    std::size_t SpectraAnywhere() const;

protected:
    virtual int CheckRoot(bool known, Q_n42_ID root) const = 0;
    std::uint64_t FileBytes() const { return fileBytes_; }

    // The identifier of an element's tag; 0 when it is none of the format's names.
    int IdOf(const UXXmlWrapperBase& element);
    // Is the tag, without a prefix of the format, the name? For names that the table lacks.
    bool HasLocalName(const UXXmlWrapperBase& element, std::string_view name) const;
    // The first child with the name; invalid when there is none, or no element.
    UXXmlWrapperBase Child(const UXXmlWrapperBase& element, Q_n42_ID name);
    std::size_t CountChildren(const UXXmlWrapperBase& element, Q_n42_ID name);

    // "" for an invalid element, or without an element or attribute of the name.
    CStringUTF8 TextOf(const UXXmlWrapperBase& element) const;
    CStringUTF8 ChildText(const UXXmlWrapperBase& element, Q_n42_ID name);
    CStringUTF8 Attribute(const UXXmlWrapperBase& element, Q_n42_ID name);
    // The same as TextOf until the next call, without a copy where the host has the text as it is.
    std::string_view TextView(const UXXmlWrapperBase& element);

private:
    void CollectPrefixes();
    bool IsKnown(std::string_view prefix) const;
    std::string_view WithoutPrefix(std::string_view tag) const;
    std::string_view TagOf(const UXXmlWrapperBase& element) const;

    CStringUTF8 path_;
    std::uint64_t fileBytes_;
    UXXmlWrapperBase document_;
    std::unordered_set<std::string> prefixes_;
    CStringUTF8 text_;  // reused by TextView
};

}  // namespace ux
