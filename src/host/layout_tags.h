// The start tags of a document that is written with the bytes of its source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/document.h"
#include "host/kept_document.h"
#include "host/layout_indent.h"

namespace uxhost {

enum class IdPolicy {
    kAsDocument,  // IDs are written when the source had any
    kWrite,       // and otherwise as well, where an element's ID is not the one it was read with
    kLeaveOut,    // such an ID is not written
};

// An element that comes from the source.
struct SourcePlace {
    const Element* element;
    std::uint32_t source;  // its number there
    std::uint32_t shift;   // of its indentation
    bool renamed;          // its tag has another name there
};

// Throws ux::xml::Unkept for a text that XML cannot hold.
void require_characters(std::string_view text);

class TagWriter {
public:
    TagWriter(const Document& document, const SourceScan& scan, Indentation& indentation,
              IdPolicy ids, KeptDocument& out)
        : document_(document), scan_(scan), indentation_(indentation), ids_(ids), out_(out) {}

    // Of a tree without a source: it is taken for one that had IDs.
    void set_has_ids() { hasIds_ = true; }
    // "/@name" of the attribute that is being written, for messages.
    const std::string& attribute() const { return attribute_; }

    // Writes the start tag up to behind its last attribute. Attributes that stand in the order of the
    // tree stay; the first one that does not, and all behind it, are written anew.
    void put_start(const SourcePlace& place, const ux::xml::ScannedTag& tag);
    // Writes the start tag of an element without a place in the source, up to behind its last
    // attribute.
    void put_new_start(const Element& element);
    // Throws for a name that the encoding lacks.
    void put_name(std::string_view name);

private:
    using ScannedAttribute = ux::xml::ScannedAttribute;
    using ScannedTag = ux::xml::ScannedTag;

    // Is the ID that the element has, and did not have in the source, to be written?
    bool writes_new_id();
    bool has_ids_in_source();
    void put_attribute(std::string_view space, std::string_view name, std::string_view value,
                       char quote);
    // Does the written value stand for the other one as it is?
    bool is_same_value(const ScannedAttribute& attribute, std::string_view value) const;
    // The same where the DTD may have given the attribute a type, which takes blanks away.
    bool is_same_typed_value(const ScannedAttribute& attribute, std::string_view tagName,
                             std::string_view value) const;
    void put_changed_value(const ScannedAttribute& attribute, std::string_view value,
                           std::string_view name);
    // The ID that a tag gives its element; kNoId for none.
    int source_id(const ScannedTag& tag, const ScannedAttribute*& attribute) const;
    // Does the tag name the element and its attributes as they are, apart from the ID?
    bool is_same_start(const SourcePlace& place, const ScannedTag& tag,
                       const ScannedAttribute* idAttribute) const;
    void put_tag_name(const SourcePlace& place, const ScannedTag& tag);
    void put_kept_value(const SourcePlace& place, const ScannedTag& tag,
                        const ScannedAttribute& attribute, const Attribute& wanted);
    // Does the attribute of the source come next in the tree? Otherwise it is left out.
    bool is_next(const ScannedAttribute& attribute, const Attribute* next,
                 const Attribute* end) const;
    void put_kept_id(const ScannedAttribute& attribute, int id, bool changed);
    // The white space and the quote that a new attribute gets.
    std::pair<std::string, char> attribute_form(const SourcePlace& place, const ScannedTag& tag,
                                                const ScannedAttribute* lastKept) const;
    void put_new_attributes(const SourcePlace& place, const ScannedTag& tag,
                            const ScannedAttribute* lastKept, const Attribute* next,
                            const Attribute* end);
    void put_new_id(const SourcePlace& place, const ScannedTag& tag,
                    const ScannedAttribute* lastKept);
    // The reserved attribute may stand in a document without being a number.
    void refuse_other_id(const Element& element) const;

    const Document& document_;
    const SourceScan& scan_;
    Indentation& indentation_;
    IdPolicy ids_;
    KeptDocument& out_;
    std::optional<bool> hasIds_;
    std::string attribute_;
};

}  // namespace uxhost
