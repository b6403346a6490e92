// The outline of a document: its element structure with every repetition folded into one entry.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/byte_search.h"
#include "base/seeded_hash.h"
#include "outline/scanner.h"

namespace ux {

// A text that the grammar asks for, made when it does.
class ExpectedText {
public:
    const KnownText* text(std::string_view before, std::string_view name, std::string_view behind) {
        if (made_ == nullptr) make(before, name, behind);
        return &made_->known;
    }
    void forget() { made_.reset(); }

private:
    struct Made {
        std::string text;
        KnownText known;
    };
    void make(std::string_view before, std::string_view name, std::string_view behind);

    std::unique_ptr<Made> made_;
};

// One entry: which attributes and which children the elements of this name and place have.
struct LayoutNode {
    // Where a name was told from, and in which document.
    struct Told {
        const char* address = nullptr;
        std::size_t document = 0;
        bool operator==(const Told&) const = default;
    };
    struct Attribute {
        std::string_view name;  // the key
        ExpectedText opening;
        Told told;
        Attribute* follower = nullptr;  // the one that came next last time
    };

    std::string name;
    std::map<std::string, Attribute, std::less<>> attributes;  // in the order of their bytes
    std::vector<std::unique_ptr<LayoutNode>> children;         // in the order of first appearance

    LayoutNode() = default;
    explicit LayoutNode(std::string_view tag) : name(tag) {}
    // Frees the branch without recursion, so that its depth costs no machine stack, and without memory.
    ~LayoutNode();
    LayoutNode(const LayoutNode&) = delete;
    LayoutNode& operator=(const LayoutNode&) = delete;

    LayoutNode* find_child(std::string_view tag) const;
    LayoutNode& add_child(std::string_view tag);
    void rename(std::string_view tag);

    // What the last element of this entry looked like. Documents repeat themselves, so this
    // foresees the next one.
    ExpectedText expectedTag;
    ExpectedText expectedEnd;
    Told told;
    LayoutNode* firstChild = nullptr;  // the child that came first last time
    LayoutNode* follower = nullptr;    // the sibling that came next last time
    Attribute* firstAttribute = nullptr;
    std::vector<Attribute*> fewAttributes;  // the first

private:
    std::unique_ptr<std::unordered_map<std::string_view, LayoutNode*, SeededHash>>
        index_;  // of many children
};

// Folds the elements of a document into an outline, and foresees them: a sink of the grammar (see
// markup.h). Elements left open stay open; an end tag that does not fit closes nothing.
class OutlineBuilder {
public:
    static constexpr bool kLeavesIdsOut = true;

    const LayoutNode& root() const { return root_; }
    // Is this the name of the innermost open element?
    bool is_open(std::string_view name) const {
        return !open_.empty() && open_.back().node->name == name;
    }
    // Does the tag being read fold into an entry that exists?
    bool has_entry() const { return !open_.empty() && node_ != nullptr; }

    const KnownText* expected_tag() const {
        LayoutNode* const node = open_.empty() ? nullptr : foreseen_node();
        return node != nullptr && !node->name.empty() ? node->expectedTag.text({}, node->name, {})
                                                      : nullptr;
    }
    const KnownText* expected_attribute() const {
        LayoutNode::Attribute* const attribute = node_ == nullptr ? nullptr : foreseen_attribute();
        return attribute != nullptr ? attribute->opening.text({}, attribute->name, "=\"") : nullptr;
    }
    const KnownText* expected_end() const {
        if (open_.empty() || open_.back().node->name.empty()) return nullptr;
        LayoutNode& node = *open_.back().node;
        return node.expectedEnd.text("/", node.name, ">");
    }
    void begin_expected() {
        node_ = foreseen_node();
        lastAttribute_ = nullptr;
    }
    void attribute_expected() { lastAttribute_ = foreseen_attribute(); }
    void end_expected() { open_.pop_back(); }
    // The same in one step, for documents in which each name has one address of its own: the name
    // that was told from there is expected and begins, or nothing happens.
    bool begin_at(const char* name) {
        LayoutNode* const node = open_.empty() ? nullptr : foreseen_node();
        if (node == nullptr || node->told != told_from(name)) return false;
        begin_expected();
        return true;
    }
    bool attribute_at(const char* name) {
        LayoutNode::Attribute* const known = node_ == nullptr ? nullptr : foreseen_attribute();
        if (known == nullptr || known->told != told_from(name)) return false;
        attribute_expected();
        return true;
    }
    // Whatever is open below the outermost element ends, and another document begins there.
    void next_document() {
        ++document_;
        open_.resize(1);
        open_.back().lastChild = nullptr;
    }
    void begin(std::string_view name);
    void attribute(std::string_view name);
    void start() {
        LayoutNode& node = commit();
        open_.push_back({&node, nullptr});
    }
    void start_and_end() { commit(); }
    void end(std::string_view name);

private:
    struct OpenElement {
        LayoutNode* node;
        LayoutNode* lastChild;
    };
    // The places that remember what follows the last child of the open element, and the last
    // attribute of the tag being read.
    LayoutNode*& foreseen_node() const {
        const OpenElement& parent = open_.back();
        return parent.lastChild != nullptr ? parent.lastChild->follower : parent.node->firstChild;
    }
    LayoutNode::Attribute*& foreseen_attribute() const {
        return lastAttribute_ != nullptr ? lastAttribute_->follower : node_->firstAttribute;
    }
    LayoutNode& commit() {
        if (node_ == nullptr || open_.empty()) commit_new();
        if (!open_.empty()) {
            foreseen_node() = node_;
            open_.back().lastChild = node_;
        }
        if (!newAttributes_.empty()) add_new_attributes();
        return *node_;
    }
    LayoutNode::Told told_from(const char* name) const { return {name, document_}; }
    void commit_new();
    void follow(LayoutNode::Attribute* attribute);
    void add_new_attributes();

    LayoutNode root_;
    std::vector<OpenElement> open_;
    std::size_t document_ = 1;

    // The start tag being read. It leaves no trace in the outline before it is complete.
    LayoutNode* node_ = nullptr;  // the entry that it folds into; null: a new one, or the root
    LayoutNode::Attribute* lastAttribute_ = nullptr;
    std::string newName_;
    std::vector<std::string> newAttributes_;
};

// The same for a scanner that reports to a handler (see SaxScanner).
class LayoutHandler : public SaxHandler {
public:
    bool startElement(const std::string& name,
                      const std::vector<std::string>& attributeNames) override;
    bool endElement(const std::string& name) override;
    const std::vector<std::string>& nameStack() const override { return names_; }
    const LayoutNode& root() const { return builder_.root(); }

private:
    OutlineBuilder builder_;
    std::vector<std::string> names_;
};

}  // namespace ux
