// A document as the page of uxtree view wants it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "uxtree/host/embedded.h"

#include "support/output.h"

namespace uxtool {

// Flat lists with an entry for each node in document order. A text between elements is a node of its
// own; white space that stands alone between them is none.
class ViewData : public UXXmlEvents {
public:
    struct Attribute {
        std::string_view name;
        std::string_view value;
        bool operator==(const Attribute&) const = default;
    };

    void Restart() override { *this = ViewData(); }
    void Start(std::string_view name, const UXXmlAttribute* attributes, std::size_t count) override;
    void Text(std::string_view text) override { text_ += text; }
    void End() override;

    std::size_t size() const { return nodes_.size(); }
    // How many nodes are below; the children of i begin behind it.
    std::size_t size_below(std::size_t i) const { return nodes_[i].size; }
    // "" for a text.
    std::string_view tag(std::size_t i) const;
    std::string_view text(std::size_t i) const { return nodes_[i].text; }
    std::vector<Attribute> attributes(std::size_t i) const;

    void write(Output& out, const std::string& name) const;

private:
    static constexpr std::uint32_t kNoTag = UINT32_MAX;
    struct Node {
        std::uint32_t tag;       // a number of names_, or kNoTag
        std::size_t attributes;  // where they begin
        std::size_t size = 0;
        std::string text;
    };
    struct StoredAttribute {
        std::uint32_t name;
        std::size_t end;  // of its value among all of them
    };
    struct Open {
        std::size_t node;
        bool hasNodes;
    };

    std::uint32_t number_of(std::string_view name);
    void add_node(std::uint32_t tag);
    void take_text_between();
    std::size_t attributes_end(std::size_t i) const;
    std::string_view value(std::size_t attribute) const;
    void write_attributes(Output& out) const;

    std::unordered_map<std::string, std::uint32_t> numbers_;
    std::vector<std::string> names_;
    std::vector<Node> nodes_;
    std::vector<StoredAttribute> attributes_;
    std::string values_;
    std::vector<Open> open_;
    std::string text_;  // of the innermost element, since its last node
};

}  // namespace uxtool
