// Making a document of what a reader tells.
#include "host/tree_sink.h"

#include <algorithm>
#include <cstring>

#include "uxtree/host/utilities.h"

namespace uxhost {
namespace {

std::size_t units_of(std::size_t bytes) {
    return (bytes + 7) >> 3;
}

// Copies whole units; what stands behind the source can be read.
void copy_units(char* target, const char* source, std::size_t units) {
    for (std::size_t i = 0; i < units; ++i) std::memcpy(target + 8 * i, source + 8 * i, 8);
}

}  // namespace

TreeSink::TreeSink(int maxNesting, std::uint64_t mostElements)
    : mostOpen_(static_cast<std::size_t>(std::max(maxNesting, 0))),
      mostElements_(mostElements == 0 ? UINT64_MAX : mostElements) {
    restart();
}

void TreeSink::restart() {
    holder_ = std::make_unique<DocumentHolder>();
    document_ = holder_->document;
    idName_ = 0;
    elements_ = 0;
    open_.clear();
    text_.clear();
    pending_ = {};
    pieceIsKept_ = false;
    refusal_.clear();
}

ux::xml::SinkName TreeSink::resolve(std::string_view name) {
    const NameId id = document_->intern(name);
    if (name == kIdAttribute) idName_ = id;
    return {static_cast<std::uint32_t>(NameTable::place_of(id)), id, document_->name(id)};
}

bool TreeSink::refuse_more() {
    refusal_ = open_.size() >= mostOpen_
                   ? "nested deeper than " + std::to_string(mostOpen_) + " levels"
                   : "more than " + std::to_string(mostElements_) + " elements";
    return false;
}

void TreeSink::finish_kept_piece(Open& parent) {
    flush();
    const std::string_view piece = std::string_view(text_).substr(parent.pieceStart);
    if (!pieceIsKept_ && is_blank(piece)) text_.resize(parent.pieceStart);
    parent.pieceStart = text_.size();
}

// In one run of memory, unless some are long or one is the reserved attribute.
void TreeSink::add_attributes(Element& element, const ux::xml::StartTag& tag) {
    std::size_t units = units_of(tag.count * sizeof(Attribute));
    bool isPlain = tag.count * sizeof(Attribute) <= ByteArena::kShortBytes;
    for (std::size_t i = 0; isPlain && i < tag.count; ++i) {
        const ux::xml::ReadAttribute& attribute = tag.attributes[i];
        isPlain = attribute.size <= ByteArena::kShortBytes && attribute.name->id != idName_;
        units += units_of(attribute.size);
    }
    if (!isPlain || units > ByteArena::kRunUnits) return add_one_by_one(element, tag);

    Ref ref = 0;
    char* at = document_->take_run(units, ref);
    auto* const added = reinterpret_cast<Attribute*>(at);
    element.attributes = ref;
    element.attributeCount = element.attributeCapacity = static_cast<std::uint32_t>(tag.count);
    std::size_t taken = units_of(tag.count * sizeof(Attribute));
    for (std::size_t i = 0; i < tag.count; ++i) {
        const ux::xml::ReadAttribute& attribute = tag.attributes[i];
        const std::size_t size = units_of(attribute.size);
        const Ref value = size == 0 ? 0 : ref + static_cast<Ref>(taken);
        added[i] = Attribute{attribute.name->id, attribute.size, value};
        copy_units(at + 8 * taken, tag.bytes + attribute.offset, size);
        taken += size;
    }
}

void TreeSink::add_one_by_one(Element& element, const ux::xml::StartTag& tag) {
    document_->reserve_attributes(element, tag.count);
    for (std::size_t i = 0; i < tag.count; ++i) {
        const NameId name = tag.attributes[i].name->id;
        int id = 0;
        if (name == idName_ && UXParseInt(tag.value(i), id)) {
            element.id = id;
        } else {
            document_->append_attribute(element, name, tag.value(i));
        }
    }
}

void TreeSink::set_text(Element& element, std::string_view text) {
    if (text.empty()) return;
    if (text.size() > ByteArena::kShortBytes) {
        document_->set_value(element, text);
        return;
    }
    const std::size_t units = units_of(text.size());
    char* const target = document_->take_run(units, element.value);
    std::memcpy(target, text.data(), text.size());
    element.valueBytes = static_cast<std::uint32_t>(text.size());
}

}  // namespace uxhost
