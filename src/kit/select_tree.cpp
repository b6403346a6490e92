// Selection: what is asked of the host, and the index of a tree.
#include "kit/select_tree.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

namespace uxkit {

Keys keys_of(const Names& names) {
    Keys keys;
    keys.reserve(names.size());
    for (const std::string& name : names) keys.emplace_back(name.c_str());
    return keys;
}

std::vector<Leaf> attributes_of(const UXXmlWrapperBase& node) {
    CWBOStringArray names;
    CWBOStringArray values;
    node.GetPropertyNamesAndValues(names, &values, nullptr);
    std::vector<Leaf> found;
    for (int i = 0; i < names.GetSize(); ++i) {
        std::string name(ux::view_of(names[i]));
        if (name == "xmlns" || name.compare(0, 6, "xmlns:") == 0) continue;
        found.push_back({std::move(name), std::string(ux::view_of(values[i]))});
    }
    return found;
}

UXXmlWrapperBase root_of(const UXXmlWrapperBase& node) {
    UXXmlWrapperBase root = node;
    for (UXXmlWrapperBase above; root.GetParent(&above) != 0;) root = above;
    return root;
}

IndexTree::IndexTree(const Names& names, const UXXmlWrapperBase& context, bool whole)
    : names_(names), keys_(keys_of(names)) {
    for (std::size_t i = 0; i < names_.size(); ++i) {
        numbers_.emplace(names_[i], static_cast<int>(i));
    }
    const UXXmlWrapperBase top = whole ? root_of(context) : context;
    entries_.emplace_back();
    handles_.push_back(top);
    handles_.push_back(top);
    describe(0);
    for (Node last = 1;;) {
        if (whole && handles_[last] == context) context_ = last;
        UXXmlWrapperBase& next = handles_.emplace_back();
        if (uxkit::is_branch(handles_[last]) && handles_[last].FirstChild(&next) != 0) {
            describe(last);
        } else {
            // The branch of a node ends where the next one that is not in it begins.
            while (last != 1 && handles_[last].NextSibling(&next) == 0) {
                entries_[last].end = end();
                last = entries_[last].parent;
            }
            entries_[last].end = end();
            if (last == 1) break;
            describe(entries_[last].parent);
        }
        last = end() - 1;
    }
    handles_.pop_back();
    entries_[0].end = end();
}

// The node whose handle came last.
void IndexTree::describe(Node parent) {
    if (entries_.size() >= std::numeric_limits<Node>::max()) throw std::length_error("nodes");
    entries_.push_back({parent, 0, name_of(handles_[entries_.size()])});
}

int IndexTree::name_of(const UXXmlWrapperBase& node) {
    const std::string_view tag = tag_of(node);
    constexpr std::size_t kFew = 4;
    if (names_.size() <= kFew) {
        const auto found = std::find(names_.begin(), names_.end(), tag);
        return found == names_.end() ? kOtherName : static_cast<int>(found - names_.begin());
    }
    const auto found = numbers_.find(tag);
    return found == numbers_.end() ? kOtherName : found->second;
}

bool IndexTree::split_text(Node node, std::string_view text, std::vector<Leaf>& pieces) {
    if (!order_ && !keeps_layout()) return false;
    if (!order_) order_.emplace(handles_[node]);
    std::vector<UXTextRun> runs;
    if (!order_->Runs(handles_[node], runs)) return false;
    Node next = node + 1;
    int passed = 0;
    std::size_t offset = 0;
    for (const UXTextRun& run : runs) {
        for (; passed < run.childrenBefore; ++passed) next = end_of(next);
        pieces.push_back({"", std::string(text.substr(offset, run.length)), offset, next});
        offset += run.length;
    }
    return true;
}

// One walk in the order of the document, with the branches open that a node is in and the texts that
// are still to come in them.
void IndexTree::read_texts() {
    texts_.clear();  // from an attempt that lacked memory
    mixed_.clear();
    spans_.resize(entries_.size());
    struct Open {
        Node node;
        std::vector<Leaf> pieces;
        std::size_t written = 0;
    };
    std::vector<Open> open;
    const auto writeBefore = [&](Node next) {
        Open& inner = open.back();
        for (; inner.written < inner.pieces.size(); ++inner.written) {
            if (inner.pieces[inner.written].next != next) return;
            texts_ += inner.pieces[inner.written].text;
        }
    };
    const auto closeBefore = [&](Node next) {
        for (; !open.empty(); open.pop_back()) {
            writeBefore(next);
            if (end_of(open.back().node) != next) return;
            spans_[open.back().node].end = texts_.size();
        }
    };
    CStringUTF8 scratch;
    for (Node node = 0; node < end(); ++node) {
        closeBefore(node);
        spans_[node].start = texts_.size();
        const std::string_view text = own_text(node, scratch);
        if (!is_branch(node)) {
            texts_ += text;
            spans_[node].end = texts_.size();
            continue;
        }
        open.push_back({node, {}});
        if (text.empty() || split_text(node, text, open.back().pieces)) continue;
        texts_ += text;
        mixed_.push_back(node);
    }
    closeBefore(end());
    textsAreRead_ = true;
}

Text IndexTree::string_value(Node node, CStringUTF8& scratch) {
    if (!is_branch(node)) return {own_text(node, scratch)};
    if (!textsAreRead_) read_texts();
    const Node behind = end_of(node);
    const auto inside = std::lower_bound(mixed_.begin(), mixed_.end(), node);
    const bool isMixed = inside != mixed_.end() && *inside < behind;
    const Span& span = spans_[node];
    return {std::string_view(texts_).substr(span.start, span.end - span.start), !isMixed};
}

bool IndexTree::branch_contains(Node node, const std::string& text, std::size_t site) {
    if (!textsAreRead_) read_texts();
    if (text.empty()) return true;
    const auto known = places_.find(site);
    const std::vector<std::size_t>& places =
        known != places_.end() ? known->second
                               : places_.emplace(site, places_in(texts_, text)).first->second;
    const auto first = std::lower_bound(places.begin(), places.end(), spans_[node].start);
    return first != places.end() && *first + text.size() <= spans_[node].end;
}

// Knuth, Morris and Pratt: however the text repeats itself, each byte is looked at twice at most.
std::vector<std::size_t> places_in(std::string_view text, std::string_view wanted) {
    std::vector<std::size_t> back(wanted.size() + 1, 0);  // the longest end that is a beginning
    for (std::size_t i = 1, length = 0; i < wanted.size(); ++i) {
        while (length > 0 && wanted[i] != wanted[length]) length = back[length];
        if (wanted[i] == wanted[length]) ++length;
        back[i + 1] = length;
    }
    std::vector<std::size_t> places;
    for (std::size_t i = 0, length = 0; i < text.size(); ++i) {
        while (length > 0 && (length == wanted.size() || text[i] != wanted[length])) {
            length = back[length];
        }
        if (text[i] == wanted[length]) ++length;
        if (length == wanted.size()) places.push_back(i + 1 - length);
    }
    return places;
}

}  // namespace uxkit
