// Numbers, rows and levels of random trees, compared with plain recursive definitions of them.
#include <algorithm>
#include <cctype>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/tree/lookup.h"

#include "support/random_tree.h"
#include "support/test_tree.h"

namespace {

using uxtest::RandomTree;
using uxtest::Vocabulary;

constexpr unsigned kTrees = 150;
constexpr char kMark[] = "x";
const Vocabulary kWords{{"a", "b", "B", "c"}, {"x", "y"}, {"", "1", "text"}, {0, 5}};

// A tree as plain values.
struct Node {
    std::string tag;
    bool marked = false;
    std::vector<Node> children = {};
    UXXmlWrapperBase handle = {};
};

Node model_of(const UXXmlWrapperBase& handle) {
    CStringUTF8 tag;
    handle.GetTagName(tag);
    Node node{static_cast<const char*>(tag), handle.HasProperty(kMark, 0) != 0};
    node.handle = handle;
    for (int i = 0; i < handle.GetNodeCount(); ++i) {
        UXXmlWrapperBase child;
        handle.GetChild(&child, i);
        node.children.push_back(model_of(child));
    }
    return node;
}

// --- numbers ------------------------------------------------------------------------------------

struct Numbering {
    int maxLevel;  // below 0: none
    bool onlyMarked;
    bool stopsAtMarked;
    bool branchesOnly;
};

void number(const Node& top, const Numbering& rule, int level, std::vector<UXXmlWrapperBase>& out) {
    if (rule.maxLevel >= 0 && level > rule.maxLevel) return;
    for (const Node& child : top.children) {
        if (rule.onlyMarked && !child.marked) continue;
        if (rule.branchesOnly && child.children.empty()) continue;
        out.push_back(child.handle);
        if (!rule.stopsAtMarked || !child.marked) number(child, rule, level + 1, out);
    }
}

// Asks for every number, and for one beyond the last.
void expect_numbers(const Node& tree, unsigned flags, const char* attribute) {
    const bool counts = (flags & 0x10000U) != 0;
    const bool limited = (flags & 0x40000U) != 0;
    const Numbering rule{limited ? static_cast<int>(flags & 0xFFU) : -1,
                         counts && attribute != nullptr, !counts && attribute != nullptr,
                         (flags & 0x20000U) != 0};
    std::vector<UXXmlWrapperBase> numbered;
    number(tree, rule, 0, numbered);
    numbered.emplace_back();

    UXXmlWrapperBase root = tree.handle;
    for (std::size_t i = 0; i < numbered.size(); ++i) {
        UXXmlWrapperBase found;
        const int result = uxtree_get_node_ex(&root, &found, static_cast<int>(i), flags, attribute);
        EXPECT_EQ(result, 1);
        EXPECT_TRUE(found == numbered[i]) << "number " << i << ", flags " << flags;
    }
}

// --- rows and levels ----------------------------------------------------------------------------

int size_of(const Node& node) {
    int size = 1;
    for (const Node& child : node.children) size += size_of(child);
    return size;
}

bool same_tag(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    });
}

// The row of the node that the tags lead to below top, which is in the row before the first.
std::optional<int> row_below(const Node& top, const std::vector<std::string>& tags,
                             std::size_t at) {
    if (at == tags.size()) return 0;
    int rows = 1;
    for (const Node& child : top.children) {
        if (!same_tag(child.tag, tags[at])) {
            rows += size_of(child);
            continue;
        }
        const std::optional<int> rest = row_below(child, tags, at + 1);
        return rest ? std::optional<int>(rows + *rest) : std::nullopt;
    }
    return std::nullopt;
}

std::string joined(const std::vector<std::string>& tags) {
    std::string text = tags.front();
    for (std::size_t i = 1; i < tags.size(); ++i) text += "." + tags[i];
    return text;
}

// Checks the row and the level of node, whose ancestors and itself are the line.
void expect_places(const Node& tree, std::vector<const Node*>& line) {
    std::vector<std::string> tags;
    for (const Node* node : line) tags.push_back(node->tag);
    UXXmlWrapperBase root = tree.handle;
    UXXmlWrapperBase node = line.back()->handle;

    const std::optional<int> row = row_below(tree, tags, 1);
    EXPECT_EQ(uxtree_get_row_number(&root, joined(tags).c_str()), row ? *row + 1 : -1);

    for (std::size_t i = 0; i < line.size(); ++i) {
        UXXmlWrapperBase top = line[i]->handle;
        CStringUTF8 path;
        const int level = uxtree_get_level(&path, &node, &top, 0);
        EXPECT_EQ(level, static_cast<int>(line.size() - 1 - i));
        EXPECT_EQ(static_cast<const char*>(path),
                  joined({tags.begin() + static_cast<std::ptrdiff_t>(i), tags.end()}));
    }

    for (const Node& child : line.back()->children) {
        line.push_back(&child);
        expect_places(tree, line);
        line.pop_back();
    }
}

}  // namespace

TEST(uxtree_get_node_ex, NumbersAsThePlainDefinitionDoes) {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        const RandomTree random(seed, kWords);
        const Node tree = model_of(random.root());
        for (const unsigned mode : {0U, 0x10000U, 0x20000U, 0x30000U}) {
            for (const unsigned levels : {0U, 0x40000U, 0x40001U, 0x40002U}) {
                expect_numbers(tree, mode | levels, nullptr);
                expect_numbers(tree, mode | levels, kMark);
            }
        }
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ": " << uxtest::to_text(random.root());
    }
}

TEST(uxtree_get_level, AgreesWithRowsAndPathsOfThePlainDefinition) {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        const RandomTree random(seed, kWords);
        const Node tree = model_of(random.root());
        std::vector<const Node*> line{&tree};
        expect_places(tree, line);
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ": " << uxtest::to_text(random.root());
    }
}
