// The element tree: names, attributes, values, structure and copies.
#include "host/document.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>

#include "uxtree/host/utilities.h"

#include "base/text_view.h"

using ux::xml::ReadName;

namespace uxhost {
namespace {

// Where attributes stand in a list: a few are looked through, many have an index.
class PlaceOfName {
public:
    explicit PlaceOfName(const std::vector<Attribute>& all) : all_(all), known_(all.size()) {
        if (known_ <= kFew) return;
        for (std::size_t i = 0; i < known_; ++i) index_.emplace(all[i].name, i);
    }
    // The end of the list for a name that it did not have at first.
    std::size_t find(NameId name) const {
        if (known_ > kFew) {
            const auto found = index_.find(name);
            return found == index_.end() ? all_.size() : found->second;
        }
        for (std::size_t i = 0; i < known_; ++i) {
            if (all_[i].name == name) return i;
        }
        return all_.size();
    }

private:
    static constexpr std::size_t kFew = 16;
    const std::vector<Attribute>& all_;
    std::size_t known_;
    std::unordered_map<NameId, std::size_t> index_;
};

// Copies of values, which go again unless they are kept.
class NewValues {
public:
    NewValues(ByteArena& bytes, std::size_t count) : bytes_(bytes) { made_.reserve(count); }
    ~NewValues() {
        for (const auto& [ref, size] : made_) bytes_.release(ref, size);
    }
    NewValues(const NewValues&) = delete;
    NewValues& operator=(const NewValues&) = delete;
    Ref add(std::string_view value) {
        if (value.empty()) return 0;
        const Ref ref = bytes_.allocate(value.size());
        std::memcpy(bytes_.at(ref), value.data(), value.size());
        made_.emplace_back(ref, value.size());
        return ref;
    }
    void keep() { made_.clear(); }

private:
    ByteArena& bytes_;
    std::vector<std::pair<Ref, std::size_t>> made_;
};

}  // namespace

// --- names -------------------------------------------------------------------------------------

// The low half counts the names, of which there are fewer than 2^26.
std::uint64_t NameTable::first_stamp() {
    static std::atomic<std::uint64_t> made{0};
    return ++made << 32;
}

// The slot that holds the name, or the free one where it belongs.
std::size_t NameTable::probe(const ReadName& name) const {
    std::size_t slot = first_slot(name.hash);
    while (slots_[slot].id != 0 &&
           (slots_[slot].hash != name.hash || text(slots_[slot].id) != name.text)) {
        slot = (slot + 1) & (slots_.size() - 1);
    }
    return slot;
}

NameId NameTable::find(std::string_view name) const {
    if (slots_.empty() || name.empty()) return 0;
    return slots_[probe(ReadName::of(name))].id;
}

NameId NameTable::intern(const ReadName& name, ByteArena& bytes, bool valid) {
    if (slots_.empty()) {
        names_.reserve(kFirstSlots / 2);
        grow();
    }
    std::size_t slot = probe(name);
    if (slots_[slot].id != 0) return slots_[slot].id;
    if (!valid && !UXIsName(name.text)) return 0;
    const std::size_t place = names_.size();
    if (2 * place >= slots_.size()) {
        grow();
        slot = probe(name);
    }
    if (place >= kMostNames || name.text.size() >= std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("names of a document");
    }
    Entry entry;
    entry.size = static_cast<std::uint32_t>(name.text.size());
    entry.ref = bytes.allocate(name.text.size() + 1);
    char* const text = bytes.at(entry.ref);
    entry.text = text;
    if (name.text.size() < sizeof(name.key)) {  // blocks are whole words
        std::memcpy(text, &name.key, name.text.size() < 8 ? 8 : sizeof(name.key));
    } else {
        std::memcpy(text, name.text.data(), name.text.size());
        text[name.text.size()] = '\0';
    }
    names_.push_back(entry);
    ++stamp_;
    const NameId id = static_cast<NameId>(place << kMarkBits) | mark_of(text);
    slots_[slot] = {name.hash, id};
    marks_ |= std::uint64_t{1} << mark_in(id);
    return id;
}

// Both tables are gone through from one end to the other. Which slots are taken cannot be foreseen:
// they are sorted out first, without a branch.
void NameTable::grow() {
    Table<Slot> known =
        std::exchange(slots_, Table<Slot>(std::max(kFirstSlots, 2 * slots_.size())));
    hashShift_ =
        static_cast<unsigned>(std::countl_zero(static_cast<std::uint32_t>(slots_.size() - 1)));
    std::array<Slot, kFirstSlots> taken;
    for (std::size_t at = 0; at < known.size(); at += taken.size()) {
        std::size_t count = 0;
        for (std::size_t i = 0; i < taken.size(); ++i) {
            taken[count] = known[at + i];
            count += static_cast<std::size_t>(taken[count].id != 0);
        }
        for (std::size_t i = 0; i < count; ++i) {
            std::size_t slot = first_slot(taken[i].hash);
            while (slots_[slot].id != 0) slot = (slot + 1) & (slots_.size() - 1);
            slots_[slot] = taken[i];
        }
    }
}

void NameTable::copy_from(const NameTable& other, const ByteArena& bytes) {
    names_ = other.names_;
    slots_ = other.slots_;
    hashShift_ = other.hashShift_;
    marks_ = other.marks_;
    ++stamp_;
    for (Entry& entry : names_) {
        if (entry.ref != 0) entry.text = bytes.at(entry.ref);
    }
}

void Document::destroy() noexcept {
    delete this;
}

NameId Document::valid_name(const char* name) {
    const std::string_view text = ux::view_of(name);
    return text.empty() ? 0 : names_.intern(ReadName::of(text), bytes_, false);
}

// --- attributes --------------------------------------------------------------------------------

const Attribute* Document::find_marked(const Element& element, const char* name) const {
    if (element.attributeCount == 0) return nullptr;
    const NameId mark = NameTable::mark_of(name);
    const Attribute* attribute = attributes(element);
    for (std::uint32_t i = 0; i < element.attributeCount; ++i, ++attribute) {
        if (NameTable::mark_in(attribute->name) != mark) continue;
        if (std::strcmp(this->name(attribute->name), name) == 0) return attribute;
    }
    return nullptr;
}

void Document::reserve_attributes(Element& element, std::size_t count) {
    if (count <= element.attributeCapacity) return;
    const Ref block = bytes_.allocate(count * sizeof(Attribute));
    if (element.attributeCapacity != 0) {
        std::memcpy(bytes_.at(block), bytes_.at(element.attributes),
                    element.attributeCount * sizeof(Attribute));
        bytes_.release(element.attributes, element.attributeCapacity * sizeof(Attribute));
    }
    element.attributes = block;
    element.attributeCapacity = static_cast<std::uint32_t>(count);
}

// A copy of the text, 0 for an empty one.
Ref Document::stored(std::string_view text) {
    if (text.empty()) return 0;
    const Ref ref = bytes_.allocate(text.size());
    std::memcpy(bytes_.at(ref), text.data(), text.size());
    return ref;
}

void Document::append_attribute(Element& element, NameId name, std::string_view value) {
    if (value.size() > UINT32_MAX) throw std::length_error("attribute value");
    if (element.attributeCount == element.attributeCapacity) {
        reserve_attributes(element, element.attributeCapacity * 2 + 2);
    }
    const Ref ref = stored(value);
    attributes(element)[element.attributeCount++] =
        Attribute{name, static_cast<std::uint32_t>(value.size()), ref};
}

void Document::set_attribute(Element& element, NameId name, std::string_view value) {
    Attribute* attribute = const_cast<Attribute*>(find_attribute(element, name));
    if (attribute == nullptr) return append_attribute(element, name, value);
    if (value.size() > UINT32_MAX) throw std::length_error("attribute value");
    const bool fits = attribute->size != 0 && !value.empty() &&
                      ByteArena::capacity(attribute->size) == ByteArena::capacity(value.size());
    if (fits) {
        std::memmove(bytes_.at(attribute->value), value.data(), value.size());
    } else {
        const Ref ref = stored(value);
        if (attribute->size != 0) bytes_.release(attribute->value, attribute->size);
        attribute->value = ref;
    }
    attribute->size = static_cast<std::uint32_t>(value.size());
}

void Document::merge_attributes(Element& element, const Document& from, const Element& source) {
    if (source.attributeCount == 0) return;
    const std::size_t own = element.attributeCount;
    std::vector<Attribute> merged;
    merged.reserve(own + source.attributeCount);
    if (own != 0) merged.assign(attributes(element), attributes(element) + own);
    PlaceOfName places(merged);
    NewValues made(bytes_, source.attributeCount);
    for (std::uint32_t i = 0; i < source.attributeCount; ++i) {
        const Attribute attribute = from.attributes(source)[i];
        const NameId name = &from == this ? attribute.name : intern(from.name_view(attribute.name));
        const std::size_t place = places.find(name);
        if (place == merged.size()) merged.emplace_back();
        merged[place] = {name, attribute.size, made.add(from.attribute_value(attribute))};
    }
    reserve_attributes(element, merged.size());
    made.keep();
    Attribute* const all = attributes(element);
    for (std::size_t i = 0; i < own; ++i) {
        if (all[i].size != 0 && all[i].value != merged[i].value) {
            bytes_.release(all[i].value, all[i].size);
        }
    }
    std::copy(merged.begin(), merged.end(), all);
    element.attributeCount = static_cast<std::uint32_t>(merged.size());
}

void Document::remove_attribute(Element& element, const char* name) {
    if (name == nullptr || *name == '\0') return;
    const NameId mark = NameTable::mark_of(name);
    remove_last(element, [&](NameId own) {
        return NameTable::mark_in(own) == mark && std::strcmp(this->name(own), name) == 0;
    });
}

void Document::remove_attribute(Element& element, NameId name) {
    remove_last(element, [&](NameId own) { return own == name; });
}

// From the end, since who removes many begins there.
template <typename IsIt>
void Document::remove_last(Element& element, IsIt&& isIt) {
    if (element.attributeCount == 0) return;
    Attribute* const all = attributes(element);
    for (std::uint32_t i = element.attributeCount; i-- > 0;) {
        if (!isIt(all[i].name)) continue;
        if (all[i].size != 0) bytes_.release(all[i].value, all[i].size);
        std::copy(all + i + 1, all + element.attributeCount, all + i);
        --element.attributeCount;
        return;
    }
}

void Document::release_attributes(const Element& element) noexcept {
    if (element.attributeCapacity == 0) return;
    const Attribute* attribute = attributes(element);
    for (std::uint32_t left = element.attributeCount; left > 0; --left, ++attribute) {
        if (attribute->size != 0) bytes_.release(attribute->value, attribute->size);
    }
    bytes_.release(element.attributes, element.attributeCapacity * sizeof(Attribute));
}

void Document::clear_attributes(Element& element) noexcept {
    release_attributes(element);
    element.attributes = 0;
    element.attributeCount = 0;
    element.attributeCapacity = 0;
}

// --- values ------------------------------------------------------------------------------------

std::string_view Document::made_text(const Element& element, CStringUTF8& scratch) const {
    if (element.valueKind == ValueKind::kTextInFile) {
        textFile_->read(element.value, element.valueBytes, scratch);
    } else {
        scratch.Empty();
        append_doubles(element, scratch);
    }
    return {scratch, static_cast<std::size_t>(scratch.GetLength())};
}

void Document::append_doubles(const Element& element, CStringUTF8& text) const {
    std::vector<double> values(number_count(element));
    get_doubles(element, values.data());
    CStringUTF8 number;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i != 0) text += ' ';
        UXFormatDouble(values[i], number);
        text += number;
    }
}

bool Document::put_into_file(Element& element, std::string_view text) {
    if (textFile_ == nullptr) textFile_ = std::make_unique<TextFile>();
    const Ref place = textFile_->add(text);
    if (place == 0) return false;
    element.value = place;
    element.valueBytes = static_cast<std::uint32_t>(text.size());
    element.valueKind = ValueKind::kTextInFile;
    return true;
}

void Document::set_value_bytes(Element& element, const void* bytes, std::size_t size,
                               ValueKind kind) {
    if (size > UINT32_MAX) throw std::length_error("value");
    if (size == 0) {
        clear_value(element);
        return;
    }
    const bool fits = element.valueBytes != 0 && !shares_value(element) &&
                      element.valueKind != ValueKind::kTextInFile &&
                      (element.valueBytes == size ||
                       ByteArena::capacity(element.valueBytes) == ByteArena::capacity(size));
    if (fits) {
        std::memmove(bytes_.at(element.value), bytes, size);
    } else {
        const Ref ref = bytes_.allocate(size);
        std::memcpy(bytes_.at(ref), bytes, size);
        clear_value(element);
        element.value = ref;
    }
    element.valueBytes = static_cast<std::uint32_t>(size);
    element.valueKind = kind;
}

namespace {

constexpr std::uint64_t kNoBits = UINT64_MAX;

// A double whose lowest bit has the value 1. A whole number from 0 up to 2 to the power of 51 that is
// added to it stands in its low bits; no other one yields the same number less it and few bits.
constexpr double kUnits = 6755399441055744.0;
constexpr auto kUnitBits = std::bit_cast<std::uint64_t>(kUnits);

std::uint64_t bits_in_units(double value) {
    return std::bit_cast<std::uint64_t>(value + kUnits) - kUnitBits;
}

// The bits that whole numbers use; kNoBits when one is not whole.
std::uint64_t whole_bits(const double* values, std::size_t count) {
    constexpr std::size_t kBlock = 256;  // values without a branch, so that several go at a time
    std::uint64_t bits = 0;
    for (std::size_t start = 0; start < count; start += kBlock) {
        const std::size_t end = std::min(start + kBlock, count);
        std::uint64_t wrong = 0;
        for (std::size_t i = start; i < end; ++i) {
            const std::uint64_t inUnits = bits_in_units(values[i]);
            const double again = std::bit_cast<double>(inUnits + kUnitBits) - kUnits;
            bits |= inUnits;
            wrong |= std::bit_cast<std::uint64_t>(values[i]) ^ std::bit_cast<std::uint64_t>(again);
        }
        if (wrong != 0) return kNoBits;
    }
    return bits;
}

}  // namespace

std::size_t Document::number_count(const Element& element) {
    switch (element.valueKind) {
        case ValueKind::kWhole16:
            return element.valueBytes / sizeof(std::uint16_t);
        case ValueKind::kWhole32:
            return element.valueBytes / sizeof(std::uint32_t);
        default:
            return element.valueBytes / sizeof(double);
    }
}

void Document::get_doubles(const Element& element, double* out) const {
    const char* const bytes = bytes_.at(element.value);
    const auto copy = [&](const auto* values) { std::copy_n(values, number_count(element), out); };
    switch (element.valueKind) {
        case ValueKind::kWhole16:
            return copy(reinterpret_cast<const std::uint16_t*>(bytes));
        case ValueKind::kWhole32:
            return copy(reinterpret_cast<const std::uint32_t*>(bytes));
        default:
            return copy(reinterpret_cast<const double*>(bytes));
    }
}

template <typename Whole>
void Document::set_whole(Element& element, const double* values, std::size_t count,
                         ValueKind kind) {
    std::vector<Whole, ux::LargeMemory<Whole>> whole(count);
    for (std::size_t i = 0; i < count; ++i) whole[i] = static_cast<Whole>(bits_in_units(values[i]));
    set_value_bytes(element, whole.data(), count * sizeof(Whole), kind);
}

void Document::set_doubles(Element& element, const double* values, std::size_t count) {
    constexpr std::size_t kMany = 64;  // such as the counts of a spectrum
    const std::uint64_t bits = count < kMany ? kNoBits : whole_bits(values, count);
    if (bits <= UINT16_MAX) {
        return set_whole<std::uint16_t>(element, values, count, ValueKind::kWhole16);
    }
    if (bits <= UINT32_MAX) {
        return set_whole<std::uint32_t>(element, values, count, ValueKind::kWhole32);
    }
    const bool finite =
        std::all_of(values, values + count, [](double x) { return std::isfinite(x); });
    set_value_bytes(element, values, count * sizeof(double), ValueKind::kDoubles);
    if (finite) return;
    // A value that is not finite has no decimal text; it is kept as the missing value.
    double* const kept = reinterpret_cast<double*>(bytes_.at(element.value));
    std::replace_if(
        kept, kept + count, [](double x) { return !std::isfinite(x); }, UXMissingValue());
}

bool Document::shares_value(const Element& element) const {
    return element.valueBytes >= kSharedValueBytes && !sharedValues_.empty() &&
           element.valueKind != ValueKind::kTextInFile && sharedValues_.count(element.value) != 0;
}

void Document::release_value(const Element& element) noexcept {
    if (element.valueBytes == 0) return;
    if (shares_value(element)) {
        const auto owners = sharedValues_.find(element.value);
        if (--owners->second == 0) sharedValues_.erase(owners);
    } else if (element.valueKind != ValueKind::kTextInFile) {
        bytes_.release(element.value, element.valueBytes);
    }
}

void Document::clear_value(Element& element) noexcept {
    release_value(element);
    element.value = 0;
    element.valueBytes = 0;
    element.valueKind = ValueKind::kText;
}

// --- elements ----------------------------------------------------------------------------------

Element* Document::new_element(NameId tag, int id) {
    bool fresh = false;
    const Ref ref = elements_.allocate(fresh);
    Element* element = elements_.at(ref);
    const std::uint32_t generation = fresh ? 1 : element->generation;
    if (layout_ != nullptr) prepare_origin(*element, ref, generation);
    *element = Element{};
    element->self = ref;
    element->generation = generation;
    element->tag = tag;
    element->id = id;
    return element;
}

void Document::keep_source(std::shared_ptr<const LayoutSource> source) {
    auto layout = std::make_unique<DocumentLayout>();
    layout->source = std::move(source);
    elements_.for_each_chunk(
        [&](Ref first, std::size_t count) { layout->origins.number_chunk(first, count); });
    layout_ = std::move(layout);
}

// A slot of a document that keeps origins has one of its own; without room for it there is no slot.
void Document::prepare_origin(Element& element, Ref ref, std::uint32_t generation) {
    try {
        layout_->origins.prepare(ref);
    } catch (...) {
        element.generation = generation;
        elements_.release(ref);
        throw;
    }
    layout_->origins.set(ref, 0);
}

void Document::insert(Element& parent, Element& child, Element* before) {
    child.parent = parent.self;
    child.next = before == nullptr ? 0 : before->self;
    child.previous = before == nullptr ? parent.last : before->previous;
    (child.previous == 0 ? parent.first : elements_.at(child.previous)->next) = child.self;
    (before == nullptr ? parent.last : before->previous) = child.self;
    ++parent.childCount;
}

void Document::unlink(Element& child) {
    if (child.self == root_) root_ = 0;
    if (child.parent == 0) return;
    Element& parent = *elements_.at(child.parent);
    (child.previous == 0 ? parent.first : elements_.at(child.previous)->next) = child.next;
    (child.next == 0 ? parent.last : elements_.at(child.next)->previous) = child.previous;
    --parent.childCount;
    child.parent = child.previous = child.next = 0;
}

void Document::free_storage(Element& element) noexcept {
    release_attributes(element);
    release_value(element);
    ++element.generation;
    elements_.release(element.self);
}

void Document::release(Element* top) noexcept {
    if (top->first != 0) release_children(*top);
    free_storage(*top);
}

void Document::release_children(Element& top) noexcept {
    Element* element = this->element(top.first);
    while (element != nullptr) {
        while (element->first != 0) element = elements_.at(element->first);
        // A leaf now: free it and go on with its sibling, or with its parent as a leaf.
        const Ref next = element->next;
        const Ref parent = element->parent;
        free_storage(*element);
        if (next != 0) {
            element = elements_.at(next);
            continue;
        }
        element = elements_.at(parent);
        element->first = 0;
        if (element == &top) break;
    }
    top.first = top.last = 0;
    top.childCount = 0;
}

NameId Document::map_name(const Document& from, NameId name, NameMap& nameMap) {
    if (&from == this) return name;
    const auto lookUp = [&] { return intern(from.name_view(name)); };
    if (nameMap.ids.empty()) {
        if (++nameMap.asked < from.names_.size() / 16) return lookUp();
        nameMap.ids.resize(from.names_.size());
    }
    NameId& mapped = nameMap.ids[NameTable::place_of(name)];
    if (mapped == 0) mapped = lookUp();
    return mapped;
}

// The target has no attributes yet.
void Document::copy_attributes(const Document& from, const Element& source, Element& target,
                               NameMap& nameMap) {
    reserve_attributes(target, source.attributeCount);
    for (std::uint32_t i = 0; i < source.attributeCount; ++i) {
        const Attribute attribute = from.attributes(source)[i];
        append_attribute(target, map_name(from, attribute.name, nameMap),
                         from.attribute_value(attribute));
    }
}

void Document::copy_value(const Document& from, const Element& source, Element& target) {
    if (source.valueBytes == 0) return;
    const bool inFile = source.valueKind == ValueKind::kTextInFile;
    if (inFile && &from != this) {
        CStringUTF8 text;
        return set_value(target, from.made_text(source, text));
    }
    if (inFile || (&from == this && source.valueBytes >= kSharedValueBytes)) {
        if (!inFile) ++sharedValues_[source.value];
        clear_value(target);
        target.value = source.value;
        target.valueBytes = source.valueBytes;
        target.valueKind = source.valueKind;
        return;
    }
    set_value_bytes(target, from.bytes_.at(source.value), source.valueBytes, source.valueKind);
}

Element* Document::copy(const Document& from, const Element& source, bool deep) {
    NameMap nameMap;
    const bool sameSource = shares_source(from);
    Element* const top = new_element(map_name(from, source.tag, nameMap), source.id);
    if (sameSource) {
        layout_->origins.set(top->self,
                             from.layout_->origins.get(source.self) & OriginTable<Element>::kMost);
    }
    try {
        copy_attributes(from, source, *top, nameMap);
        if (!deep) return top;
        copy_value(from, source, *top);
        const Element* at = &source;
        Element* made = top;
        for (;;) {
            const Element* next = from.element(at->first);
            Element* parent = made;
            while (next == nullptr && at != &source) {
                next = from.element(at->next);
                parent = element(made->parent);
                if (next == nullptr) {
                    at = from.element(at->parent);
                    made = parent;
                }
            }
            if (next == nullptr) return top;
            at = next;
            made = new_element(map_name(from, at->tag, nameMap), at->id);
            append(*parent, *made);
            if (sameSource) layout_->origins.set(made->self, from.layout_->origins.get(at->self));
            copy_attributes(from, *at, *made, nameMap);
            copy_value(from, *at, *made);
        }
    } catch (...) {
        release(top);
        throw;
    }
}

void Document::adopt(Element& element, Element& copy) {
    release_children(element);
    clear_attributes(element);
    clear_value(element);
    element.id = copy.id;
    if (layout_ != nullptr) layout_->origins.set(element.self, layout_->origins.get(copy.self));
    element.attributes = std::exchange(copy.attributes, 0);
    element.attributeCount = std::exchange(copy.attributeCount, 0);
    element.attributeCapacity = std::exchange(copy.attributeCapacity, 0);
    element.value = std::exchange(copy.value, 0);
    element.valueBytes = std::exchange(copy.valueBytes, 0);
    element.valueKind = copy.valueKind;
    element.first = std::exchange(copy.first, 0);
    element.last = std::exchange(copy.last, 0);
    element.childCount = std::exchange(copy.childCount, 0);
    for (Ref child = element.first; child != 0; child = elements_.at(child)->next) {
        elements_.at(child)->parent = element.self;
    }
    free_storage(copy);
}

void Document::arrange_children(Element& parent, const int* order) {
    constexpr std::size_t kAhead = 16;  // random places: they are fetched before their turn
    const std::size_t count = parent.childCount;
    const Chunk memory(count * sizeof(Element));
    auto* const before = reinterpret_cast<Element*>(memory.data());
    Element* copied = before;
    for (const Element* child = element(parent.first); child != nullptr;
         child = element(child->next)) {
        *copied++ = *child;
    }
    std::vector<std::uint32_t> origins;
    if (layout_ != nullptr) {
        origins.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            origins.push_back(layout_->origins.get(before[i].self));
        }
    }
    std::size_t place = 0;
    for (Element* child = element(parent.first); child != nullptr; child = element(child->next)) {
        if (place + kAhead < count) __builtin_prefetch(&before[order[place + kAhead]]);
        const auto number = static_cast<std::size_t>(order[place++]);
        const Element& source = before[number];
        if (source.self == child->self) continue;
        move_content(source, *child);
        if (layout_ != nullptr && origins[number] != 0) {
            layout_->origins.set(child->self, origins[number] | OriginTable<Element>::kArranged);
        }
        if (layout_ != nullptr && origins[number] == 0) layout_->origins.set(child->self, 0);
    }
}

// The source is a copy of a sibling that gets another content itself.
void Document::move_content(const Element& source, Element& target) {
    const Element old = target;
    target = source;
    target.self = old.self;
    target.previous = old.previous;
    target.next = old.next;
    target.generation = old.generation;
    if (target.first == 0) return;
    for (Element* child = element(target.first); child != nullptr; child = element(child->next)) {
        child->parent = target.self;
    }
    for (Element* at = next_below(target, target); at != nullptr; at = next_below(target, *at)) {
        ++at->generation;
    }
}

void Document::become_copy(const Document& from, const Element& source) {
    if (from.layout_ != nullptr) {
        layout_ = std::make_unique<DocumentLayout>();
        layout_->source = from.layout_->source;
        layout_->whole = from.layout_->whole && source.self == from.root_;
    }
    // A whole document without many holes is copied as memory: references mean the same there.
    const bool whole = source.self == from.root_ && from.elements_.free_count() < 1024 &&
                       from.textFile_ == nullptr;
    if (!whole) {
        set_root(copy(from, source, true));
        return;
    }
    elements_.copy_from(from.elements_);
    bytes_.copy_from(from.bytes_);
    names_.copy_from(from.names_, bytes_);
    sharedValues_ = from.sharedValues_;
    root_ = from.root_;
    if (from.layout_ != nullptr) layout_->origins = from.layout_->origins.copy();
}

}  // namespace uxhost
