// The outline of a document: its element structure with every repetition folded into one entry.
#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "outline/byte_search.h"
#include "outline/scanner.h"

namespace ux {

// One entry: which attributes and which children the elements of this name and place have.
struct LayoutNode {
    std::string name;
    std::set<std::string> attributeNames;                // in the order of their bytes
    std::vector<std::unique_ptr<LayoutNode>> children;  // in the order of first appearance

    LayoutNode() = default;
    explicit LayoutNode(std::string_view tag) : name(tag), knownName(name) {}
    // Frees the branch without recursion, so that its depth costs no machine stack.
    ~LayoutNode();
    LayoutNode(const LayoutNode&) = delete;
    LayoutNode& operator=(const LayoutNode&) = delete;

    LayoutNode* find_child(std::string_view tag) const;
    LayoutNode& add_child(std::string_view tag);
    void rename(std::string_view tag);

    // What the last element of this entry looked like. Documents repeat themselves, so this
    // foresees the next one.
    struct KnownAttribute {
        KnownName name;
        int follower = -1;  // index of the attribute that came next last time
    };
    KnownName knownName;
    LayoutNode* firstChild = nullptr;  // the child that came first last time
    LayoutNode* follower = nullptr;    // the sibling that came next last time
    int firstAttribute = -1;
    std::vector<KnownAttribute> knownAttributes;  // the first few

private:
    std::unique_ptr<std::unordered_map<std::string_view, LayoutNode*>> index_;  // of many children
};

// Folds the elements of a document into an outline, and foresees them: a sink of the grammar (see
// markup.h). Elements left open stay open; an end tag that does not fit closes nothing.
class OutlineBuilder {
public:
    const LayoutNode& root() const { return root_; }
    bool has_open_element() const { return !open_.empty(); }
    const std::string& open_name() const { return open_.back().node->name; }
    // The entry that an element of this name would fold into now, null when it would be new.
    const LayoutNode* entry_for(std::string_view name) const;

    const KnownName* expected_tag() const;
    const KnownName* expected_attribute() const;
    const KnownName* expected_end() const;
    void begin_expected();
    void attribute_expected();
    void end_expected() { open_.pop_back(); }

    void begin(std::string_view name);
    void attribute(std::string_view name);
    void start();
    void start_and_end();
    void end(std::string_view name);

private:
    struct OpenElement {
        LayoutNode* node;
        LayoutNode* lastChild;
    };
    LayoutNode* expected_node() const;
    LayoutNode*& foreseen_node();
    int& foreseen_attribute();
    void follow(int attribute);
    LayoutNode& commit();
    void add_new_attributes(LayoutNode& node);

    LayoutNode root_;
    std::vector<OpenElement> open_;

    // The start tag being read. It leaves no trace in the outline before it is complete.
    LayoutNode* node_ = nullptr;  // the entry that it folds into; null: a new one, or the root
    int lastAttribute_ = -1;      // index in node_'s known attributes
    std::string newName_;
    std::vector<std::string> newAttributes_;
    std::string scratch_;
};

// The same for a scanner that reports to a handler.
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
