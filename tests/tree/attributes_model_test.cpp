// Attributes of thousands of random trees, compared with plain recursive definitions.
#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/tree/attributes.h"

#include "support/model_tree.h"
#include "support/test_tree.h"

namespace {

using uxmodel::Node;
using uxmodel::Random;
using uxmodel::to_xml;
using uxtest::TestTree;

using Names = std::vector<std::string>;

constexpr unsigned kTrees = 1000;
const uxmodel::Words kWords{{"a", "b", "c"},
                            {{"n", 2, {"0", "1", "6", "-1", "2.9", "4294967295", "x", "", " 2 "}},
                             {"StorePrefixn", 4, {"7", "x"}},
                             {"t", 2, {"", "v", "V", "w"}},
                             {"Auto", 5, {"", "0|Fit|3", "2|m", "x"}},
                             {"DynaFx", 5, {"f"}},
                             {"DataID", 2, {"1", "2", "3", "03"}}},
                            {"", "", "text"}};

template <typename Body>
void for_every_tree(Body body) {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        Node model = uxmodel::random_tree(random, kWords, 16);
        TestTree tree(to_xml(model).c_str());
        body(random, model, tree);
        EXPECT_EQ(tree.text(), to_xml(model));
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
}

// The nodes below the tree, in document order.
void list_below(Node& tree, bool directOnly, std::vector<Node*>& out) {
    for (Node& child : tree.children) {
        out.push_back(&child);
        if (!directOnly) list_below(child, false, out);
    }
}
std::vector<Node*> below(Node& tree, bool directOnly = false) {
    std::vector<Node*> out;
    list_below(tree, directOnly, out);
    return out;
}
std::vector<Node*> whole(Node& tree) {
    std::vector<Node*> out{&tree};
    list_below(tree, false, out);
    return out;
}

std::string text_of(unsigned bits) {
    return std::to_string(static_cast<int>(bits));
}
unsigned bits_of(const Node& node, const std::string& name) {
    return static_cast<unsigned>(node.number(name).value_or(0));
}
unsigned random_bits(Random& random) {
    return random.pick({0U, 1U, 2U, 3U, 6U, 0x80000000U, 0xFFFFFFFFU});
}

}  // namespace

// --- bits ---------------------------------------------------------------------------------------

TEST(uxtree_modify_attribute, SetsAfterClearingAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const unsigned set = random_bits(random);
        const unsigned clear = random_bits(random);
        model.set("n", text_of((bits_of(model, "n") & ~clear) | set));
        EXPECT_TRUE(uxtree_modify_attribute(&root, "n", set, clear));
    });
}

TEST(vctree_modify_DWORD_attribute, ClearsAfterSettingAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const unsigned set = random_bits(random);
        const unsigned clear = random_bits(random);
        if (model.has("n") || set != 0) {
            model.set("n", text_of((bits_of(model, "n") | set) & ~clear));
        }
        vctree_modify_DWORD_attribute(&root, "n", clear, set);
    });
}

namespace {

int full_leaves(const Node& node, bool deep) {
    int count = 0;
    for (const Node& child : node.children) {
        if (child.leaf()) {
            count += child.text.empty() ? 0 : 1;
        } else if (deep) {
            count += full_leaves(child, true);
        }
    }
    return count;
}

}  // namespace

TEST(uxtree_set_attribute_bit_if_not_empty, SetsAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const unsigned bits = random_bits(random);
        const bool deep = random.one_in(2);
        const bool sets = full_leaves(model, deep) > 0 && model.number("n").has_value();
        if (sets) model.set("n", text_of(bits_of(model, "n") | bits));
        EXPECT_EQ(uxtree_set_attribute_bit_if_not_empty(&root, "n", bits, deep), sets ? 1 : 0);
    });
}

// --- removing, storing, restoring ---------------------------------------------------------------

namespace {

int rename_numbers(Node& tree, const std::string& from, const std::string& to) {
    int count = 0;
    for (Node* node : whole(tree)) {
        if (!node->has(from)) continue;
        node->set(to, text_of(bits_of(*node, from)));
        node->remove(from);
        ++count;
    }
    return count;
}

}  // namespace

TEST(uxtree_remove_attribute, RemovesAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const bool includeSelf = random.one_in(2);
        int count = 0;
        for (Node* node : includeSelf ? whole(model) : below(model)) {
            count += node->has("t") ? 1 : 0;
            node->remove("t");
        }
        EXPECT_EQ(uxtree_remove_attribute(&root, "t", includeSelf ? 1 : 0), count);
    });
}

TEST(uxtree_store_attribute, StoresAsThePlainDefinitionDoes) {
    for_every_tree([](Random&, Node& model, UXXmlWrapperBase& root) {
        const int count = rename_numbers(model, "n", "StorePrefixn");
        EXPECT_EQ(uxtree_store_attribute(&root, "n"), count);
    });
}

TEST(uxtree_restore_attribute, RestoresAsThePlainDefinitionDoes) {
    for_every_tree([](Random&, Node& model, UXXmlWrapperBase& root) {
        const int count = rename_numbers(model, "StorePrefixn", "n");
        EXPECT_EQ(uxtree_restore_attribute(&root, "n"), count);
    });
}

// --- copying ------------------------------------------------------------------------------------

namespace {

int copy_one(const Node& from, Node& to) {
    if (!from.has("t")) return 0;
    to.set("t", from.value_of("t"));
    return 1;
}
int copy_pairs(const Node& from, Node& to, bool childrenOnly) {
    int count = childrenOnly ? 0 : copy_one(from, to);
    for (std::size_t i = 0; i < from.children.size() && i < to.children.size(); ++i) {
        count += copy_pairs(from.children[i], to.children[i], false);
    }
    return count;
}

}  // namespace

TEST(uxtree_copy_atts, CopiesAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const Node other = uxmodel::random_tree(random, kWords, 16);
        TestTree source(to_xml(other).c_str());
        const bool childrenOnly = random.one_in(2);
        const int count = copy_pairs(other, model, childrenOnly);
        EXPECT_EQ(uxtree_copy_atts(&source, &root, "t", childrenOnly ? 1 : 0), count);
        EXPECT_EQ(uxtree_node_copy_attribute(&source, &root, "t"), copy_one(other, model));
        EXPECT_EQ(source.text(), to_xml(other));
    });
}

// --- setting everywhere -------------------------------------------------------------------------

namespace {

// "2|name|5" -> "1|name|5"; what is missing is "Auto" and 1.
void switch_automatic_on(Node& node) {
    const std::string text = node.value_of("Auto");
    const std::size_t first = text.find('|');
    const std::size_t second = first == std::string::npos ? first : text.find('|', first + 1);
    std::string name = "Auto";
    std::string count = "1";
    if (first != std::string::npos) name = text.substr(first + 1, second - first - 1);
    if (second != std::string::npos) count = text.substr(second + 1);
    node.remove("DynaFx");
    node.set("Auto", "1|" + name + "|" + count);
}

}  // namespace

TEST(uxtree_set_attribute_to_all_nodes, SetsAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const std::string name = random.pick<std::string>({"t", "new", "Auto"});
        const bool childrenOnly = random.one_in(2);
        const bool branchesOnly = random.one_in(2);
        for (Node* node : childrenOnly ? below(model, true) : whole(model)) {
            if (branchesOnly && node->leaf()) continue;
            if (name == "Auto") {
                switch_automatic_on(*node);
            } else {
                node->set(name, "set");
            }
        }
        uxtree_set_attribute_to_all_nodes(&root, name.c_str(), "set", childrenOnly, branchesOnly);
    });
}

TEST(uxtree_set_attribute_with_skip, SetsAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const std::string skipAttribute = random.pick<std::string>({"", "t", "n"});
        const Names skipValues = random.pick<Names>({{}, {"v"}, {"W", ""}, {"1", "X"}});
        const bool branchesToo = random.one_in(2);
        const bool remove = random.one_in(2);
        const bool withList = !random.one_in(5);
        const std::string name = random.pick<std::string>({"n", "new"});
        const auto skipped = [&](const Node& node) {
            return withList && node.has(skipAttribute) &&
                   std::any_of(skipValues.begin(), skipValues.end(), [&](const std::string& one) {
                       return uxmodel::same_text(one, node.value_of(skipAttribute), false);
                   });
        };
        for (Node* node : whole(model)) {
            if (skipped(*node) || (!node->leaf() && !branchesToo)) continue;
            if (remove) {
                node->remove(name);
            } else {
                node->set(name, "set");
            }
        }
        auto list = uxtest::script_texts(skipValues);
        uxtree_set_attribute_with_skip(&root, name.c_str(), "set", skipAttribute.c_str(),
                                       withList ? &list : nullptr, branchesToo, remove);
    });
}

// --- counting and collecting --------------------------------------------------------------------

TEST(uxtree_count_items_by_attribute, CountsAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const char* const name = random.pick<const char*>({nullptr, "t", "t", "none"});
        const char* const value = random.pick<const char*>({nullptr, "", "v"});
        const bool countMissing = random.one_in(2);
        const bool recursive = random.one_in(2);
        int count = 0;
        bool all = true;
        for (const Node* node : below(model, !recursive)) {
            const std::string* own = name == nullptr ? nullptr : node->find(name);
            const bool counts = name == nullptr ||
                                (own == nullptr ? countMissing : value == nullptr || *own == value);
            count += counts ? 1 : 0;
        }
        for (const Node* node : below(model)) all = all && node->has("t");
        EXPECT_EQ(uxtree_count_items_by_attribute(&root, name, value, countMissing ? 1 : 0,
                                                  recursive ? 1 : 0),
                  count);
        EXPECT_EQ(uxtree_all_nodes_has_attrib(&root, "t"), all ? 1 : 0);
    });
}

TEST(VCTreeAttributeValues, ReadsAndWritesAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const int value = random.pick({-5, -1, 0, 8});
        const bool reads = random.one_in(2);
        const bool removes = random.one_in(2);
        const bool includeSelf = random.one_in(2);
        std::vector<int> expected{99};
        for (Node* node : includeSelf ? whole(model) : below(model)) {
            if (reads) {
                expected.push_back(node->number("n").value_or(-1));
            } else if (removes && value < 0) {
                node->remove("n");
            } else {
                node->set("n", std::to_string(value));
            }
        }
        CArray<int, int> values = uxtest::number_list<int>({99});
        EXPECT_EQ(VCTreeAttributeValues(&root, "n", value, reads ? &values : nullptr,
                                        removes ? 1 : 0, includeSelf ? 1 : 0),
                  0);
        EXPECT_EQ(uxtest::numbers(values), expected);
    });
}

TEST(VCTreeGetAttributes, CollectsAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const bool directOnly = random.one_in(2);
        const bool skips = random.one_in(2);
        Names attributes{"before"};
        for (Node& child : model.children) {
            if (skips && child.has("n")) continue;
            attributes.push_back(child.value_of("t"));
            if (directOnly) continue;
            for (const Node* node : below(child)) attributes.push_back(node->value_of("t"));
        }
        Names tags;
        for (const Node* node : below(model, directOnly)) tags.push_back(node->tag);
        std::function<bool(UXXmlWrapperBase&)> skip;
        if (skips) skip = [](UXXmlWrapperBase& node) { return node.HasProperty("n", 0) != 0; };
        CWBOStringArray found = uxtest::string_list({"before"});
        CWBOStringArray names;

        EXPECT_EQ(VCTreeGetAttributes(&root, &found, "t", directOnly, skip), 0);
        EXPECT_EQ(uxtest::texts(found), attributes);
        vctree_get_node_names(&root, &names, directOnly);
        EXPECT_EQ(uxtest::texts(names), tags);
    });
}

namespace {

// The search of a branch replaces what was found before it.
bool set_matches(Node& tree, const std::string& key, const std::string& id,
                 const std::string& attribute) {
    bool matched = false;
    for (Node& child : tree.children) {
        if (child.has(key) && child.value_of(key) == id) {
            child.set(attribute, "set");
            matched = true;
        }
        if (!child.leaf()) matched = set_matches(child, key, id, attribute);
    }
    return matched;
}

}  // namespace

TEST(VCTreeSetAttributes, SetsAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const std::string key = random.pick<std::string>({"", "DataID", "n"});
        const std::string attribute = random.pick<std::string>({"", "t", "new"});
        std::vector<int> ids;
        while (!random.one_in(3)) ids.push_back(random.below(5) - 1);
        bool matched = false;
        for (const int id : ids) {
            matched = set_matches(model, key.empty() ? "DataID" : key, std::to_string(id),
                                  attribute.empty() ? "Show" : attribute);
        }
        const CArray<int, int> list = uxtest::number_list(ids);
        EXPECT_EQ(VCTreeSetAttributes(&root, &list, "set", attribute.c_str(), key.c_str(),
                                      random.one_in(2)),
                  matched);
    });
}
