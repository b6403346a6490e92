// Writing start tags.
#include "host/layout_tags.h"

#include <algorithm>
#include <vector>

#include "uxtree/host/utilities.h"

#include "base/utf8.h"
#include "xml/escaping.h"
#include "xml/layout_text.h"

namespace uxhost {

using namespace ux::xml;

void require_characters(std::string_view text) {
    if (!holds_only_characters(text)) {
        throw Unkept("the text has bytes that XML cannot hold");
    }
}

void TagWriter::put_name(std::string_view name) {
    for (std::size_t at = 0; at < name.size();) {
        const ux::Utf8Char character = ux::decode_utf8(name, at);
        if (!holds_character(out_.source.encoding, character.code)) {
            throw Unkept("the file's encoding lacks a character of the name \"" +
                         std::string(name) + "\"");
        }
        at += std::max<std::size_t>(character.length, 1);
    }
    out_.text.put(name);
}

bool TagWriter::writes_new_id() {
    switch (ids_) {
        case IdPolicy::kWrite:
            break;
        case IdPolicy::kLeaveOut:
            ++out_.idsLeftOut;
            return false;
        case IdPolicy::kAsDocument:
            if (!has_ids_in_source()) {
                ++out_.idsLeftOut;
                return false;
            }
    }
    ++out_.idsWritten;
    return true;
}

bool TagWriter::has_ids_in_source() {
    if (!hasIds_) hasIds_ = scan_.document.text.find(kIdAttribute) != std::string_view::npos;
    return *hasIds_;
}

void TagWriter::put_attribute(std::string_view space, std::string_view name, std::string_view value,
                              char quote) {
    attribute_ = "/@" + std::string(name);
    require_characters(value);
    out_.text.put(space);
    put_name(name);
    std::string written = {'=', quote};
    append_attribute_value(written, value, quote, out_.source.encoding);
    written += quote;
    out_.text.put(written);
    attribute_.clear();
}

bool TagWriter::is_same_value(const ScannedAttribute& attribute, std::string_view value) const {
    const std::string_view raw = scan_.range(attribute.valueBegin, attribute.valueEnd);
    if (is_literal_value(raw)) return raw == value;
    WrittenValue written(scan_.document.text, scan_.entityText);
    written.add_attribute(attribute.valueBegin, attribute.valueEnd);
    return written.text() == value;
}

bool TagWriter::is_same_typed_value(const ScannedAttribute& attribute, std::string_view tagName,
                                    std::string_view value) const {
    if (is_same_value(attribute, value)) return true;
    if (scan_.dtd == nullptr) return false;
    const std::string_view name = scan_.range(attribute.nameBegin, attribute.nameEnd);
    if (!scan_.dtd->takes_blanks(tagName, name)) return false;
    WrittenValue written(scan_.document.text, scan_.entityText);
    written.add_attribute(attribute.valueBegin, attribute.valueEnd);
    return without_extra_blanks(written.text()) == value;
}

void TagWriter::put_changed_value(const ScannedAttribute& attribute, std::string_view value,
                                  std::string_view name) {
    attribute_ = "/@" + std::string(name);
    require_characters(value);
    WrittenValue written(scan_.document.text, scan_.entityText);
    written.add_attribute(attribute.valueBegin, attribute.valueEnd);
    const std::vector<std::optional<std::string>> runs =
        written.rewritten(value, out_.source.encoding);
    if (runs[0]) {
        out_.text.put(*runs[0]);
    } else {
        out_.text.copy(attribute.valueBegin, attribute.valueEnd);
    }
    attribute_.clear();
}

int TagWriter::source_id(const ScannedTag& tag, const ScannedAttribute*& attribute) const {
    attribute = nullptr;
    for (const ScannedAttribute& other : tag.attributes) {
        if (scan_.document.text[other.nameBegin] != '_' ||
            scan_.range(other.nameBegin, other.nameEnd) != kIdAttribute) {
            continue;
        }
        WrittenValue value(scan_.document.text, scan_.entityText);
        value.add_attribute(other.valueBegin, other.valueEnd);
        int id = kNoId;
        if (!UXParseInt(value.text(), id)) return kNoId;
        attribute = &other;
        return id;
    }
    return kNoId;
}

void TagWriter::put_start(const SourcePlace& place, const ScannedTag& tag) {
    const Element& element = *place.element;
    const ScannedAttribute* idAttribute = nullptr;
    const int idBefore = source_id(tag, idAttribute);
    if (place.shift == 0 && element.id == idBefore && is_same_start(place, tag, idAttribute)) {
        out_.text.copy(scan_.document.elements[place.source].begin, tag.attributesEnd);
        return;
    }
    put_tag_name(place, tag);
    // One that says that there is no ID stays as long as there is none.
    const bool keepsId = idAttribute != nullptr && (element.id != kNoId || idBefore == kNoId);
    bool newId = element.id != idBefore && element.id != kNoId;
    if (newId) newId = writes_new_id();

    const Attribute* next = document_.attributes_or_null(element);
    const Attribute* const end = next + element.attributeCount;
    const ScannedAttribute* lastKept = nullptr;
    for (const ScannedAttribute& attribute : tag.attributes) {
        const bool isId = &attribute == idAttribute;
        if (isId ? !keepsId : !is_next(attribute, next, end)) continue;
        const ScannedAttribute& space = lastKept == nullptr ? tag.attributes[0] : attribute;
        indentation_.put_space(space.spaceBegin, space.nameBegin, place.shift);
        lastKept = &attribute;
        out_.text.copy(attribute.nameBegin, attribute.valueBegin);
        if (isId) {
            put_kept_id(attribute, element.id, newId);
        } else {
            put_kept_value(place, tag, attribute, *next++);
        }
        out_.text.copy(attribute.valueEnd, attribute.valueEnd + 1);
    }
    put_new_attributes(place, tag, lastKept, next, end);
    if (newId && !keepsId) put_new_id(place, tag, lastKept);
}

bool TagWriter::is_same_start(const SourcePlace& place, const ScannedTag& tag,
                              const ScannedAttribute* idAttribute) const {
    if (place.renamed) return false;
    const std::string_view name = document_.name_view(place.element->tag);
    const Attribute* next = document_.attributes_or_null(*place.element);
    const Attribute* const end = next + place.element->attributeCount;
    for (const ScannedAttribute& attribute : tag.attributes) {
        if (&attribute == idAttribute) continue;
        if (!is_next(attribute, next, end) ||
            !is_same_typed_value(attribute, name, document_.attribute_value(*next))) {
            return false;
        }
        ++next;
    }
    return next == end;
}

void TagWriter::put_tag_name(const SourcePlace& place, const ScannedTag& tag) {
    if (place.renamed) {
        out_.text.put("<");
        put_name(document_.name_view(place.element->tag));
    } else {
        out_.text.copy(scan_.document.elements[place.source].begin, tag.nameEnd);
    }
}

void TagWriter::put_kept_value(const SourcePlace& place, const ScannedTag& tag,
                               const ScannedAttribute& attribute, const Attribute& wanted) {
    const std::size_t begin = scan_.document.elements[place.source].begin;
    const std::string_view value = document_.attribute_value(wanted);
    if (is_same_typed_value(attribute, scan_.range(begin + 1, tag.nameEnd), value)) {
        out_.text.copy(attribute.valueBegin, attribute.valueEnd);
    } else {
        put_changed_value(attribute, value, document_.name_view(wanted.name));
    }
}

bool TagWriter::is_next(const ScannedAttribute& attribute, const Attribute* next,
                        const Attribute* end) const {
    return next != end &&
           document_.name_view(next->name) == scan_.range(attribute.nameBegin, attribute.nameEnd);
}

void TagWriter::put_kept_id(const ScannedAttribute& attribute, int id, bool changed) {
    if (changed) {
        out_.text.put(std::to_string(id));
    } else {
        out_.text.copy(attribute.valueBegin, attribute.valueEnd);
    }
}

std::pair<std::string, char> TagWriter::attribute_form(const SourcePlace& place,
                                                       const ScannedTag& tag,
                                                       const ScannedAttribute* lastKept) const {
    const ScannedAttribute* model = lastKept;
    if (model == nullptr && !tag.attributes.empty()) model = &tag.attributes.back();
    if (model == nullptr) return {" ", '"'};
    const std::string_view space = scan_.range(model->spaceBegin, model->nameBegin);
    const char quote = scan_.document.text[model->valueEnd];
    const std::size_t line = space.find_last_of("\r\n");
    if (line == std::string_view::npos) return {" ", quote};
    return {std::string(space.substr(0, line + 1)) +
                indentation_.shifted(space.substr(line + 1), place.shift),
            quote};
}

void TagWriter::put_new_attributes(const SourcePlace& place, const ScannedTag& tag,
                                   const ScannedAttribute* lastKept, const Attribute* next,
                                   const Attribute* end) {
    if (next == end) return;
    const auto [space, quote] = attribute_form(place, tag, lastKept);
    for (; next != end; ++next) {
        put_attribute(space, document_.name_view(next->name), document_.attribute_value(*next),
                      quote);
    }
}

void TagWriter::put_new_id(const SourcePlace& place, const ScannedTag& tag,
                           const ScannedAttribute* lastKept) {
    refuse_other_id(*place.element);
    const auto [space, quote] = attribute_form(place, tag, lastKept);
    put_attribute(space, kIdAttribute, std::to_string(place.element->id), quote);
}

void TagWriter::refuse_other_id(const Element& element) const {
    if (document_.find_attribute(element, kIdAttribute) != nullptr) {
        throw Unkept("the ID has no place: the element has another attribute \"_ux_id\"");
    }
}

void TagWriter::put_new_start(const Element& element) {
    out_.text.put("<");
    put_name(document_.name_view(element.tag));
    for (std::uint32_t i = 0; i < element.attributeCount; ++i) {
        const Attribute& attribute = document_.attributes(element)[i];
        put_attribute(" ", document_.name_view(attribute.name),
                      document_.attribute_value(attribute), '"');
    }
    if (element.id == kNoId || !writes_new_id()) return;
    refuse_other_id(element);
    put_attribute(" ", kIdAttribute, std::to_string(element.id), '"');
}

}  // namespace uxhost
