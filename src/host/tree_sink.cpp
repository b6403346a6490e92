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
    if (units == 0) return;
    std::memcpy(target, source, 8);
#pragma GCC unroll 1
    for (std::size_t i = 1; i < units; ++i) std::memcpy(target + 8 * i, source + 8 * i, 8);
}

}  // namespace

TreeSink::TreeSink(const LoadOptions& options)
    : mostOpen_(static_cast<std::size_t>(std::max(options.maxNesting, 0))),
      mostElements_(options.maxElements == 0 ? UINT64_MAX : options.maxElements),
      mostInMemory_(options.mostInMemory) {
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

ux::xml::SinkName TreeSink::resolve(const ux::xml::ReadName& name) {
    const NameId id = document_->intern(name);
    if (name.text == kIdAttribute) idName_ = id;
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
    if (!pieceIsKept_ && std::all_of(piece.begin(), piece.end(), ux::xml::is_blank))
        text_.resize(parent.pieceStart);
    parent.pieceStart = text_.size();
}

// In one run of memory, unless some are long or one is the reserved attribute.
void TreeSink::add_attributes(Element& element, const ux::xml::StartTag& tag) {
    const std::size_t block = units_of(tag.count * sizeof(Attribute));
    // Each value takes less than a unit more than it has bytes for, and the last ends in the tag.
    const ux::xml::ReadAttribute& last = tag.attributes[tag.count - 1];
    const std::size_t most = block + tag.count + (last.offset + last.size) / 8;
    if (tag.count * sizeof(Attribute) > ByteArena::kShortBytes || most > ByteArena::kRunUnits) {
        return add_one_by_one(element, tag);
    }
    Ref ref = 0;
    char* const run = document_->run_of_at_most(most, ref);
    auto* added = reinterpret_cast<Attribute*>(run);
    std::size_t taken = block;
    for (const ux::xml::ReadAttribute* at = tag.attributes; at <= &last; ++at) {
        const NameId name = at->name->id;
        if (at->size > ByteArena::kShortBytes || name == idName_) {
            return add_one_by_one(element, tag);
        }
        const std::size_t units = units_of(at->size);
        *added++ = Attribute{name, at->size, units == 0 ? 0 : ref + static_cast<Ref>(taken)};
        copy_units(run + 8 * taken, tag.bytes + at->offset, units);
        taken += units;
    }
    document_->take_run(taken, ref);
    element.attributes = ref;
    element.attributeCount = element.attributeCapacity = static_cast<std::uint32_t>(tag.count);
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
        const bool fits = mostInMemory_ == 0 || document_->memory_bytes() < mostInMemory_;
        if (fits || !document_->put_into_file(element, text)) document_->set_value(element, text);
        return;
    }
    const std::size_t units = units_of(text.size());
    char* const target = document_->take_run(units, element.value);
    std::memcpy(target, text.data(), text.size());
    element.valueBytes = static_cast<std::uint32_t>(text.size());
}

}  // namespace uxhost
