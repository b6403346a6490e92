// Families of children named by a prefix and a number, or by column letters.
#include "uxtree/tree/enumerated.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "uxtree/tree/lookup.h"

#include "base/ascii.h"
#include "frame/guards.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "marks/ids.h"
#include "tree/text_set_detail.h"

using namespace ux;

namespace {

// The numbers up to a limit that are in use. Among n names the first free number is at most n + 1,
// so that larger ones need no place.
class UsedNumbers {
public:
    explicit UsedNumbers(int names) : counts_(static_cast<std::size_t>(names) + 2, 0) {}
    long long limit() const { return static_cast<long long>(counts_.size()) - 1; }
    void add(long long number) {
        if (number < 0 || number > limit()) return;
        unsigned char& count = counts_[static_cast<std::size_t>(number)];
        if (count < kSeveral) ++count;
    }
    bool used(int number) const { return counts_[static_cast<std::size_t>(number)] > 0; }
    bool used_once(int number) const { return counts_[static_cast<std::size_t>(number)] == 1; }
    int first_free() const {
        int number = 1;
        while (used(number)) ++number;
        return number;
    }

private:
    static constexpr unsigned char kSeveral = 2;
    std::vector<unsigned char> counts_;
};

// The value of decimal digits, limit + 1 for anything larger than limit.
long long number_in(std::string_view digits, long long limit) {
    long long number = 0;
    for (const char c : digits) number = std::min(limit + 1, number * 10 + (c - '0'));
    return number;
}

bool all_digits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), is_digit);
}

// ---- first free number ------------------------------------------------------------------------

// Collects which of prefix + suffix, prefix + "1" + suffix, ... are among the names.
class EnumeratedNames {
public:
    EnumeratedNames(int names, std::string_view prefix, std::string_view suffix)
        : used_(names), prefix_(prefix), suffix_(suffix) {}
    void add(std::string_view name) {
        if (name.size() < prefix_.size() + suffix_.size()) return;
        if (!name.starts_with(prefix_) || !name.ends_with(suffix_)) return;
        const std::string_view middle =
            name.substr(prefix_.size(), name.size() - prefix_.size() - suffix_.size());
        if (middle.empty()) {
            plainUsed_ = true;
        } else if (all_digits(middle) && middle.front() != '0') {
            used_.add(number_in(middle, used_.limit()));
        }
    }
    // prefix, or prefix followed by the first free number.
    CStringUTF8 free_name() const {
        CStringUTF8 name;
        name.Assign(prefix_.data(), prefix_.size());
        if (plainUsed_) name.AppendFormat("%d", used_.first_free());
        return name;
    }

private:
    UsedNumbers used_;
    std::string_view prefix_;
    std::string_view suffix_;
    bool plainUsed_ = false;
};

// ---- next name --------------------------------------------------------------------------------

std::string_view without_trailing_digits(std::string_view tag) {
    while (!tag.empty() && is_digit(tag.back())) tag.remove_suffix(1);
    return tag;
}

// One more than the length of the run 1, 2, 3, ... that the sorted numbers start with.
int after_run(const UsedNumbers& numbers) {
    // Intended: a 0 or a number that occurs twice breaks the run, so the result may be in use.
    if (numbers.used(0)) return 1;
    int number = 1;
    while (numbers.used_once(number)) ++number;
    return numbers.used(number) ? number + 1 : number;
}

int next_numbered_name(const UXXmlWrapperBase& tree, CStringUTF8* out) {
    UXXmlWrapperBase first;
    if (!tree.FirstChild(&first)) return kBadArgument;
    CStringUTF8 tag;
    first.GetTagName(tag);
    const std::string prefix(without_trailing_digits(view_of(tag)));
    if (prefix.size() == view_of(tag).size()) return kBadArgument;
    UsedNumbers numbers(tree.GetNodeCount());
    for (const UXXmlWrapperBase& child : children(tree)) {
        child.GetTagName(tag);
        const std::string_view name = view_of(tag);
        if (!name.starts_with(prefix) || !all_digits(name.substr(prefix.size()))) continue;
        numbers.add(number_in(name.substr(prefix.size()), numbers.limit()));
    }
    const int next = after_run(numbers);
    if (out != nullptr) out->Format("%s%d", prefix.c_str(), next);
    return next;
}

// A column name as its place in A, B, ..., Z, AA, AB, ...: 1 for A. Ignores case; 0 for a name that
// has other characters, limit + 1 for one behind limit.
long long column_number(std::string_view name, long long limit) {
    long long number = 0;
    for (const char c : name) {
        const char letter = to_lower(c);
        if (letter < 'a' || letter > 'z') return 0;
        number = std::min(limit + 1, number * 26 + (letter - 'a' + 1));
    }
    return number;
}

CStringUTF8 column_name(int number) {
    CStringUTF8 name;
    for (; number > 0; number = (number - 1) / 26) {
        name.Insert(0, static_cast<char>('A' + (number - 1) % 26));
    }
    return name;
}

int next_column_name(const UXXmlWrapperBase& tree, CStringUTF8& out) {
    UsedNumbers columns(tree.GetNodeCount());
    CStringUTF8 tag;
    for (const UXXmlWrapperBase& child : children(tree)) {
        child.GetTagName(tag);
        columns.add(column_number(view_of(tag), columns.limit()));
    }
    out = column_name(columns.first_free());
    return 0;
}

// ---- adding -----------------------------------------------------------------------------------

CStringUTF8 numbered_tag(const char* prefix, int number) {
    CStringUTF8 tag;
    tag.Format("%s%d", text_or(prefix, ""), number);
    return tag;
}

// The first child of each number from first on, so that finding or creating many children does not
// search the siblings again for each.
class NumberedChildren {
public:
    NumberedChildren(const UXXmlWrapperBase& parent, const char* prefix, long long first, int count)
        : parent_(parent), prefix_(prefix), first_(first), nodes_(static_cast<std::size_t>(count)) {
        const std::string_view start = prefix_;
        CStringUTF8 tag;
        for (const UXXmlWrapperBase& child : children(parent)) {
            child.GetTagName(tag);
            const std::string_view name = view_of(tag);
            if (!name.starts_with(start) || !is_number(name.substr(start.size()))) continue;
            remember(number_in(name.substr(start.size()), first + count), child);
        }
    }
    // The child with the number and the tag; invalid when the tag is no element name.
    UXXmlWrapperBase find_or_add(long long number, const CStringUTF8& tag, int id) {
        UXXmlWrapperBase& child = nodes_[static_cast<std::size_t>(number - first_)];
        // A number that wrapped below zero has a tag that was not read as a number.
        if (number > kLargest) parent_.FindChild(tag, &child, 1);
        if (!usable(child)) parent_.AddNode(&child, tag, id);
        return child;
    }

private:
    static constexpr long long kLargest = 0x7FFFFFFF;

    static bool is_number(std::string_view digits) {  // as it is written, without leading zeros
        return all_digits(digits) && (digits.front() != '0' || digits.size() == 1);
    }
    void remember(long long number, const UXXmlWrapperBase& child) {
        const auto place = static_cast<std::size_t>(number - first_);
        if (number < first_ || place >= nodes_.size()) return;
        if (!usable(nodes_[place])) nodes_[place] = child;
    }

    UXXmlWrapperBase parent_;
    std::string prefix_;
    long long first_;
    std::vector<UXXmlWrapperBase> nodes_;
};

CStringUTF8 label_for(int index, const CWBOStringArray* texts, const char* label,
                      const CStringUTF8& tag) {
    if (texts != nullptr && index < texts->GetSize() && !texts->GetAt(index).IsEmpty()) {
        return texts->GetAt(index);
    }
    return given(label) ? CStringUTF8(label) : tag;
}

}  // namespace

extern "C" {

int uxtree_get_next_enum_tag_name(UXXmlWrapperBase* tree, CStringUTF8* out, int numbered) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(tree)) return kBadArgument;
        if (numbered != 0) return next_numbered_name(*tree, out);
        return out == nullptr ? kBadArgument : next_column_name(*tree, *out);
    });
}

void uxtree_get_enum_node_name(UXXmlWrapperBase* tree, CStringUTF8* out, const char* prefix) {
    at_boundary([&] {
        if (out == nullptr || !usable(tree)) return;
        EnumeratedNames names(tree->GetNodeCount(), text_or(prefix, ""), "");
        CStringUTF8 tag;
        for (const UXXmlWrapperBase& child : children(*tree)) {
            child.GetTagName(tag);
            names.add(view_of(tag));
        }
        *out = names.free_name();
    });
}

void uxtree_get_enum_attribute_value(UXXmlWrapperBase* tree, CStringUTF8* out, const char* attrName,
                                     const char* prefix, const char* suffix) {
    at_boundary([&] {
        if (any_null(out, attrName) || !usable(tree)) return;
        EnumeratedNames names(tree->GetNodeCount(), text_or(prefix, ""), text_or(suffix, ""));
        for (const UXXmlWrapperBase& child : children(*tree)) {
            CStringUTF8 value;  // stays empty for a child without the attribute
            child.GetPropertyValue(attrName, value, 0);
            names.add(view_of(value));
        }
        // Intended: the suffix takes part in the search but not in the result.
        *out = names.free_name();
    });
}

void uxtree_check_add_enumerated_node(UXXmlWrapperBase* out, UXXmlWrapperBase* parent,
                                      const char* prefix, int number, int id, const char* attrName,
                                      const char* attrValue) {
    at_boundary([&] {
        if (out == nullptr || !usable(parent)) return;
        uxtree_tree_check_get_node(out, parent, numbered_tag(prefix, number), id, attrName,
                                   attrValue, 1);
    });
}

bool uxtree_check_add_all_enumerated_nodes(UXXmlWrapperBase* parent, const char* prefix,
                                           UXScriptObject* values, int existing, int maxChildren,
                                           unsigned short set, const char* label,
                                           UXScriptObject* texts) {
    return at_boundary(false, [&] {
        CArray<double, double>* list = double_vector(values);
        const CWBOStringArray* labels = string_array(texts);
        if (list == nullptr || !usable(parent) || refused(texts, labels)) return false;
        const long long first = (existing < 0 ? parent->GetNodeCount() : existing) + 1LL;
        NumberedChildren family(*parent, text_or(prefix, ""), first, list->GetSize());
        for (int i = 0; i < list->GetSize(); ++i) {
            if (maxChildren >= 0 && parent->GetNodeCount() >= maxChildren) break;
            const auto number = static_cast<std::uint32_t>(first + i);  // wraps like an int
            const CStringUTF8 tag = numbered_tag(prefix, static_cast<int>(number));
            const int id = one_set_id(static_cast<unsigned short>(number), set);
            UXXmlWrapperBase child = family.find_or_add(first + i, tag, id);
            child.SetLabel(label_for(i, labels, label, tag));
            child.NodeValue(list->ElementAt(i), 0);
        }
        return true;
    });
}

}  // extern "C"
