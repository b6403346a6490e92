// Documents as people write them, made at random, and random edits of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include "uxtree/host/host.h"

namespace uxtest {

class LayoutModel {
public:
    explicit LayoutModel(std::uint32_t seed) : random_(seed) {}

    // Well-formed XML with comments, instructions, sections, references, odd white space, mixed
    // content; indented or not.
    std::string document();
    // Changes the tree below root, somewhere, in one of the ways that nodes offer.
    void edit(UXXmlWrapperBase& root);

    int below(int limit) { return static_cast<int>(random_() % static_cast<std::uint32_t>(limit)); }
    bool chance(int percent) { return below(100) < percent; }

private:
    void put_element(int level);
    void put_content(int level);
    void put_attributes();
    void put_misc(int level);
    std::string text();
    std::string value();
    std::string indent(int level) const;
    UXXmlWrapperBase some_node(const UXXmlWrapperBase& root);
    void add(UXXmlWrapperBase& node);
    void move(UXXmlWrapperBase& root, UXXmlWrapperBase& node);
    void arrange(UXXmlWrapperBase& node);

    std::mt19937 random_;
    std::string out_;
    std::string lineEnd_ = "\n";
    std::string step_ = "  ";
    bool lines_ = true;
    int budget_ = 0;
    int number_ = 0;
};

}  // namespace uxtest
