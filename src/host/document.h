// The in-memory element tree of the embedded host. Nothing outside src/host names these types.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "uxtree/host/node.h"

#include "base/large_memory.h"
#include "host/arena.h"
#include "host/layout.h"
#include "host/text_file.h"
#include "xml/read_name.h"

namespace uxhost {

// An interned tag or attribute name: its place in the document's table above a mark of its first
// two characters. Most other names have another mark, which tells them apart without their texts.
using NameId = std::uint32_t;  // 0 is none

inline constexpr int kNoId = -1;
inline constexpr const char* kIdAttribute = "_ux_id";  // carries the ID in files

// Doubles that are whole numbers within the range of a smaller type are kept as that.
enum class ValueKind : std::uint32_t { kText, kTextInFile, kDoubles, kWhole16, kWhole32 };

inline bool is_text(ValueKind kind) {
    return kind <= ValueKind::kTextInFile;
}

// One element. Links are element references; the text of a value is made on demand when it is
// kept as numbers or in a file.
struct Element {
    Ref self;
    Ref parent;
    Ref first;
    Ref last;
    Ref previous;
    Ref next;
    std::uint32_t childCount;
    std::uint32_t generation;  // grows when handles to the element become invalid
    NameId tag;
    int id;
    Ref attributes;  // block of attributeCapacity attributes
    std::uint32_t attributeCount;
    std::uint32_t attributeCapacity;
    Ref value;  // a place in the document's file for a text that is there
    std::uint32_t valueBytes;
    ValueKind valueKind;
};

struct Attribute {
    NameId name;
    std::uint32_t size;
    Ref value;
};

// The tag and attribute names of a document, each stored once.
class NameTable {
public:
    static constexpr unsigned kMarkBits = 6;
    // The mark that identifiers of a name carry.
    static NameId mark_of(const char* name) {
        const auto first = static_cast<unsigned char>(name[0]);
        const auto second = static_cast<unsigned char>(name[1]);
        return (first * 31U + second) & kMarkMask;
    }
    static NameId mark_in(NameId id) { return id & kMarkMask; }
    static std::size_t place_of(NameId id) { return id >> kMarkBits; }
    // False when no name has the mark: most documents have few of the names that are asked for.
    bool has_mark(NameId mark) const { return (marks_ >> mark & 1U) != 0; }

    std::string_view text(NameId id) const {
        const Entry& entry = names_[place_of(id)];
        return {entry.text, entry.size};
    }
    // The number of a name, 0 when the document has none such.
    NameId find(std::string_view name) const;
    // Adds the name when it is new. A text that is not known to be valid yields 0 when it is none.
    NameId intern(const ux::xml::ReadName& name, ByteArena& bytes, bool valid = true);
    // Where a look for the name begins. There is a name already.
    const void* slot_of(const ux::xml::ReadName& name) const {
        return &slots_[first_slot(name.hash)];
    }
    // Another number for every state of every table.
    std::uint64_t stamp() const { return stamp_; }
    // One more than the names, and than any place.
    std::size_t size() const { return names_.size(); }
    void copy_from(const NameTable& other, const ByteArena& bytes);

private:
    static std::uint64_t first_stamp();
    struct Entry {
        const char* text = nullptr;
        std::uint32_t size = 0;
        Ref ref = 0;
    };
    // With the hash beside it, a name is told from others where it stands: each look elsewhere in a
    // large table would wait for memory.
    struct Slot {
        std::uint32_t hash = 0;
        NameId id = 0;  // 0 is free
    };
    static constexpr NameId kMarkMask = (NameId{1} << kMarkBits) - 1;
    static constexpr std::size_t kMostNames = std::size_t{1} << (32 - kMarkBits);
    static constexpr std::size_t kFirstSlots = 64;

    // Names that differ in the last byte alone get every second slot of a few lines of memory.
    std::size_t first_slot(std::uint32_t hash) const {
        return ((hash >> hashShift_) + 2 * (hash & ux::xml::ReadName::kLastBits)) &
               (slots_.size() - 1);
    }
    std::size_t probe(const ux::xml::ReadName& name) const;
    void grow();

    template <typename Item>
    using Table = std::vector<Item, ux::LargeMemory<Item>>;

    Table<Entry> names_{Entry{}};
    Table<Slot> slots_;        // a power of two, in the order of the hashes but for collisions
    unsigned hashShift_ = 0;   // what it leaves of a hash is a slot's number
    std::uint64_t marks_ = 0;  // a bit for the mark of every name
    std::uint64_t stamp_ = first_stamp();
    static_assert(kMarkBits == 6, "a mark is a place in marks_");
};

// A document: elements, their texts and names. Lives as long as a handle refers to it.
class Document {
public:
    Document() = default;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    void retain() noexcept { ++references_; }
    void let_go() noexcept {
        if (--references_ == 0) destroy();
    }

    Element* root() const { return element(root_); }
    void set_root(Element* root) { root_ = root == nullptr ? 0 : root->self; }
    Element* element(Ref ref) const { return ref == 0 ? nullptr : elements_.at(ref); }

    // --- names, attributes, values -------------------------------------------------------------

    const char* name(NameId id) const { return names_.text(id).data(); }
    std::string_view name_view(NameId id) const { return names_.text(id); }
    NameId find_name(std::string_view name) const { return names_.find(name); }
    // Tells the names of all documents and all their states apart: what was looked up under the
    // same stamp is still so.
    std::uint64_t name_stamp() const { return names_.stamp(); }
    // The number of a valid name, added when new; 0 when the text is no name.
    NameId valid_name(const char* name);
    NameId intern(std::string_view name) { return intern(ux::xml::ReadName::of(name)); }
    NameId intern(const ux::xml::ReadName& name) { return names_.intern(name, bytes_); }
    const void* slot_of_name(const ux::xml::ReadName& name) const { return names_.slot_of(name); }

    Attribute* attributes(const Element& element) const {
        return reinterpret_cast<Attribute*>(bytes_.at(element.attributes));
    }
    const Attribute* attributes_or_null(const Element& element) const {
        return element.attributeCount == 0 ? nullptr : attributes(element);
    }
    std::string_view attribute_value(const Attribute& attribute) const {
        // An empty value has no storage; number 0 is a place all the same.
        return {bytes_.at(attribute.value), attribute.size};
    }
    const Attribute* find_attribute(const Element& element, const char* name) const {
        if (name == nullptr || *name == '\0' || !names_.has_mark(NameTable::mark_of(name))) {
            return nullptr;
        }
        return find_marked(element, name);
    }
    const Attribute* find_attribute(const Element& element, NameId name) const {
        if (element.attributeCount == 0) return nullptr;
        const Attribute* attribute = attributes(element);
        const Attribute* const end = attribute + element.attributeCount;
        while (attribute != end && attribute->name != name) ++attribute;
        return attribute != end ? attribute : nullptr;
    }
    void set_attribute(Element& element, NameId name, std::string_view value);
    // Sets all attributes of another element; all or none.
    void merge_attributes(Element& element, const Document& from, const Element& source);
    void remove_attribute(Element& element, const char* name);
    void remove_attribute(Element& element, NameId name);
    void clear_attributes(Element& element) noexcept;
    // Room for count attributes on an element that has none, for loading and copying.
    void reserve_attributes(Element& element, std::size_t count);
    void append_attribute(Element& element, NameId name, std::string_view value);

    bool has_value(const Element& element) const { return element.valueBytes != 0; }
    // The value's text, empty when there is none. scratch holds it when it has to be made.
    std::string_view value_text(const Element& element, CStringUTF8& scratch) const {
        if (element.valueKind != ValueKind::kText) return made_text(element, scratch);
        return text_at_hand(element);
    }
    // The value's text, empty when it has to be made.
    std::string_view text_at_hand(const Element& element) const {
        if (element.valueBytes == 0 || element.valueKind != ValueKind::kText) return {};
        return {bytes_.at(element.value), element.valueBytes};
    }
    void get_value(const Element& element, CStringUTF8& out) const {
        if (element.valueKind != ValueKind::kText) {
            CStringUTF8 made;
            made_text(element, made);
            out = std::move(made);
            return;
        }
        const std::string_view text = text_at_hand(element);
        out.Assign(text.data(), text.size());
    }
    // Of a value that is kept as numbers: how many there are, and all of them.
    static std::size_t number_count(const Element& element);
    void get_doubles(const Element& element, double* out) const;
    void set_value(Element& element, std::string_view text) {
        if (text.size() == element.valueBytes && owns_short_text(element)) {
            std::memmove(bytes_.at(element.value), text.data(), text.size());
            return;
        }
        set_value_bytes(element, text.data(), text.size(), ValueKind::kText);
    }
    void set_doubles(Element& element, const double* values, std::size_t count);
    void clear_value(Element& element) noexcept;

    // --- elements ------------------------------------------------------------------------------

    Element* new_element(NameId tag, int id);
    void append(Element& parent, Element& child) { insert(parent, child, nullptr); }
    void insert(Element& parent, Element& child, Element* before);
    void unlink(Element& child);
    // Frees an unlinked element with its branch; handles to them become invalid.
    void release(Element* element) noexcept;
    void release_children(Element& element) noexcept;
    // A copy of another element, perhaps of another document, linked nowhere yet.
    Element* copy(const Document& from, const Element& source, bool deep);
    // Gives the element the attributes, ID, value and children of an unlinked copy, which goes.
    void adopt(Element& element, Element& copy);
    // Gives each child, from the first on, the content of the child that order names: a permutation
    // of the children's numbers from 0. Handles into the branches of moved contents become invalid.
    void arrange_children(Element& parent, const int* order);
    // The next element in pre-order below top, null at the end.
    Element* next_below(const Element& top, const Element& element) const {
        if (element.first != 0) return elements_.at(element.first);
        for (const Element* at = &element; at != &top; at = elements_.at(at->parent)) {
            if (at->next != 0) return elements_.at(at->next);
        }
        return nullptr;
    }

    // The element itself or the next sibling behind it that has the tag. Siblings of one shape stand
    // at equal distances in one chunk: where the next one does, the processor goes on there at once
    // and need not wait until the link and the chunk that it names are read.
    Element* first_with_tag(Element* element, NameId tag) const {
        constexpr std::size_t kAhead = 8;
        Ref distance = element == nullptr ? 0 : element->self - element->previous;
        while (element != nullptr && element->tag != tag) {
            const Ref next = element->next;
            if (next - element->self == distance && elements_.place_of(next) >= distance) {
                element += distance;
                __builtin_prefetch(element + kAhead * distance);
                continue;
            }
            distance = next - element->self;
            element = this->element(next);
        }
        return element;
    }

    // What the storage of elements, texts and names takes.
    std::size_t memory_bytes() const {
        return elements_.bytes() + bytes_.bytes() + names_.size() * kNameBytes;
    }

    // --- loading, into a document that nothing was removed from -------------------------------------

    // A new last child. last is the parent's last child so far, if any; no parent makes a root.
    Element& append_loaded(Element* parent, Element* last, NameId tag) {
        bool fresh = false;
        const Ref ref = elements_.allocate(fresh);
        Element& element = *elements_.at(ref);
        element = Element{};
        element.self = ref;
        element.generation = 1;
        element.tag = tag;
        element.id = kNoId;
        if (parent == nullptr) {
            root_ = ref;
            return element;
        }
        element.parent = parent->self;
        (last == nullptr ? parent->first : last->next) = ref;
        element.previous = parent->last;
        parent->last = ref;
        ++parent->childCount;
        return element;
    }
    // Memory for a run of blocks, see the arena.
    char* take_run(std::size_t units, Ref& ref) {
        ref = bytes_.take_run(units);
        return bytes_.at(ref);
    }
    // Where the next run of at most so many units will stand, to fill it before it is taken.
    char* run_of_at_most(std::size_t units, Ref& ref) {
        ref = bytes_.next_run(units);
        return bytes_.at(ref);
    }

    // Puts the value of an element that has none into a temporary file; false when that is full.
    bool put_into_file(Element& element, std::string_view text);

    // Makes an empty document a deep copy of the element.
    void become_copy(const Document& from, const Element& source);

    // --- where elements come from, in a document that was loaded for editing -----------------------

    // Behind loading: the elements came, in this order, from the start tags of a source.
    void keep_source(std::shared_ptr<const LayoutSource> source);
    // Null for a document that was not loaded for editing.
    const DocumentLayout* layout() const { return layout_.get(); }

private:
    ~Document() = default;
    void destroy() noexcept;  // apart, so that letting go stays short
    friend struct DocumentHolder;

    static constexpr std::size_t kNameBytes = 48;  // in the table, with the slots

    void set_value_bytes(Element& element, const void* bytes, std::size_t size, ValueKind kind);
    // Names of another document as names of this one, for the length of one copy. The table of all
    // of them is made only once enough were asked for: a document may have very many names.
    struct NameMap {
        std::vector<NameId> ids;
        std::size_t asked = 0;
    };
    void copy_attributes(const Document& from, const Element& source, Element& target,
                         NameMap& nameMap);
    void copy_value(const Document& from, const Element& source, Element& target);
    NameId map_name(const Document& from, NameId name, NameMap& nameMap);
    void free_storage(Element& element) noexcept;
    bool shares_value(const Element& element) const;
    // Shorter values are cheaper to copy than to share.
    static constexpr std::uint32_t kSharedValueBytes = 1024;
    static bool owns_short_text(const Element& element) {
        return element.valueBytes - 1 < kSharedValueBytes - 1 &&
               element.valueKind == ValueKind::kText;
    }
    Ref stored(std::string_view text);
    std::string_view made_text(const Element& element, CStringUTF8& scratch) const;
    void append_doubles(const Element& element, CStringUTF8& text) const;
    template <typename Whole>
    void set_whole(Element& element, const double* values, std::size_t count, ValueKind kind);
    template <typename IsIt>
    void remove_last(Element& element, IsIt&& isIt);
    void release_attributes(const Element& element) noexcept;
    void release_value(const Element& element) noexcept;
    const Attribute* find_marked(const Element& element, const char* name) const;
    void move_content(const Element& source, Element& target);
    void prepare_origin(Element& element, Ref ref, std::uint32_t generation);
    bool shares_source(const Document& other) const {
        return layout_ != nullptr && other.layout_ != nullptr &&
               layout_->source == other.layout_->source;
    }

    SlotArena<Element> elements_;
    ByteArena bytes_;
    NameTable names_;
    // Long values that copies within the document share, and how many elements beyond the first
    // have each. A shared value is never written into.
    std::unordered_map<Ref, std::uint32_t> sharedValues_;
    std::unique_ptr<DocumentLayout> layout_;
    std::unique_ptr<TextFile> textFile_;  // null: no text is in a file
    Ref root_ = 0;
    std::uint32_t references_ = 0;
};

// The code page of undeclared input that is not UTF-8.
int default_code_page();

// Owns a document that no handle refers to yet.
struct DocumentHolder {
    DocumentHolder() : document(new Document) { document->retain(); }
    ~DocumentHolder() { document->let_go(); }
    DocumentHolder(const DocumentHolder&) = delete;
    DocumentHolder& operator=(const DocumentHolder&) = delete;
    Document* operator->() const { return document; }
    Document* document;
};

}  // namespace uxhost
