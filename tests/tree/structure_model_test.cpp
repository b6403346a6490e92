// Edits of thousands of random trees, compared with plain recursive definitions of them.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/tree/structure.h"

#include "support/model_tree.h"
#include "support/test_tree.h"
#include "tree/numbering_model.h"

namespace {

using uxmodel::Node;
using uxmodel::Numbering;
using uxmodel::Random;
using uxmodel::same_text;
using uxmodel::to_xml;
using uxtest::TestTree;

using Names = std::vector<std::string>;

constexpr unsigned kTrees = 2000;
const uxmodel::Words kWords{{"a", "b", "Ba", "C"},
                            {{"n", 2, {"1", "2", "2", "3", "-1", "2.9", "x", "", " 2 "}},
                             {"keep", 3, {"", "1"}},
                             {"DataID", 2, {"1", "2", "2", "3", "x"}},
                             {"Show", 3, {"0", "1", ""}},
                             {"t", 2, {"", "some text", "Some", "TEXT", "me"}}},
                            {"", "", "A", "b", "B"},
                            {std::nullopt, std::nullopt, 0, 4, 7}};

// The body edits the model and has the library edit the root.
template <typename Body>
void for_every_tree(Body body) {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        Node model = uxmodel::random_tree(random, kWords, 18);
        TestTree tree(to_xml(model).c_str());
        const bool stays = body(random, model, tree);
        EXPECT_EQ(tree.text(), stays ? to_xml(model) : "(invalid)");
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
}

// Goes through the children; those for which the visit yields true are removed.
template <typename Visit>
void remove_children(Node& tree, const Visit& visit) {
    std::vector<Node> kept;
    for (Node& child : tree.children) {
        if (!visit(child)) kept.push_back(child);
    }
    tree.children = std::move(kept);
}

// --- deleting -----------------------------------------------------------------------------------

int remove_by_value(Node& tree, int value, bool recursive, const std::string& exempt,
                    bool keepBranches) {
    int count = 0;
    remove_children(tree, [&](Node& child) {
        const bool stays =
            (!exempt.empty() && child.has(exempt)) || (keepBranches && !child.leaf());
        if (!stays && child.number("n") == value) {
            ++count;
            return true;
        }
        if (recursive) count += remove_by_value(child, value, true, "", false);
        return false;
    });
    return count;
}

struct Missing {
    bool recursive;
    bool removesAttribute;
    bool keepsBranches;
    bool checksSelf;
};
int remove_by_missing(Node& tree, const Missing& rule) {
    if (rule.checksSelf && tree.has("keep")) {
        if (rule.removesAttribute) tree.remove("keep");
        return 0;
    }
    int count = 0;
    remove_children(tree, [&](Node& child) {
        if (!child.leaf()) {
            if (!rule.recursive) return false;
            count += remove_by_missing(child, rule);
            if (rule.keepsBranches || !child.leaf()) return false;
        }
        if (!child.has("keep")) {
            ++count;
            return true;
        }
        if (rule.removesAttribute) child.remove("keep");
        return false;
    });
    return count;
}

int remove_everywhere(Node& tree, int value) {
    int count = 0;
    remove_children(tree, [&](Node& child) {
        if (child.number("n") == value) {
            ++count;
            return true;
        }
        count += remove_everywhere(child, value);
        return false;
    });
    return count;
}

int remove_empty(Node& tree, bool recursive) {
    int kept = 0;
    remove_children(tree, [&](Node& child) {
        const int own = child.leaf() ? (child.text.empty() ? 0 : 1)
                                     : (recursive ? remove_empty(child, true) : 1);
        kept += own;
        return own == 0;
    });
    return kept;
}

int hide_empty(Node& tree, bool recursive, bool showNonEmpty) {
    int count = 0;
    for (Node& child : tree.children) {
        if (!child.leaf()) {
            if (recursive) count += hide_empty(child, true, showNonEmpty);
        } else if (child.text.empty()) {
            child.set("Show", "0");
            ++count;
        } else if (showNonEmpty) {
            child.remove("Show");
        }
    }
    return count;
}

}  // namespace

TEST(uxtree_delete_nodes_by_attribute, DeletesWhatThePlainDefinitionDeletes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const int value = random.pick({1, 2, 3, -1, 9});
        const bool recursive = random.one_in(2);
        const std::string exempt = random.pick<std::string>({"", "keep"});
        const bool keepBranches = random.one_in(2);
        const int count = remove_by_value(model, value, recursive, exempt, keepBranches);
        EXPECT_EQ(uxtree_delete_nodes_by_attribute(&root, "n", value, recursive ? 1 : 0,
                                                   exempt.c_str(), keepBranches ? 1 : 0),
                  count);
        return true;
    });
}

TEST(uxtree_delete_nodes_by_missing_attribute, DeletesWhatThePlainDefinitionDeletes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const Missing rule{random.one_in(2), random.one_in(2), random.one_in(3), random.one_in(2)};
        const int count = remove_by_missing(model, rule);
        EXPECT_EQ(uxtree_delete_nodes_by_missing_attribute(
                      &root, "keep", rule.recursive ? 1 : 0, rule.removesAttribute ? 1 : 0,
                      rule.keepsBranches ? 1 : 0, rule.checksSelf ? 1 : 0),
                  count);
        return true;
    });
}

TEST(uxtree_remove_nodes_by_attribute, RemovesWhatThePlainDefinitionRemoves) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const int value = random.pick({1, 2, 3, -1});
        const int count = remove_everywhere(model, value);
        EXPECT_EQ(uxtree_remove_nodes_by_attribute(&root, "n", value), count);
        return true;
    });
}

TEST(uxtree_remove_empty_child_nodes, KeepsWhatThePlainDefinitionKeeps) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const bool recursive = random.one_in(2);
        const int kept = remove_empty(model, recursive);
        EXPECT_EQ(uxtree_remove_empty_child_nodes(&root, recursive), kept);
        return true;
    });
}

TEST(uxtree_hide_empty_nodes, HidesWhatThePlainDefinitionHides) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const bool recursive = random.one_in(2);
        const bool showNonEmpty = random.one_in(2);
        const int count = hide_empty(model, recursive, showNonEmpty);
        EXPECT_EQ(uxtree_hide_empty_nodes(&root, recursive, showNonEmpty), count);
        return true;
    });
}

// --- moving, sorting, appending -----------------------------------------------------------------

namespace {

constexpr char kMoving[] = "moving";

Node* parent_of(Node& tree, const Node& node) {
    for (Node& child : tree.children) {
        if (&child == &node) return &tree;
        if (Node* found = parent_of(child, node)) return found;
    }
    return nullptr;
}

void remove_moved(Node& tree) {
    remove_children(tree, [](Node& child) {
        if (child.has(kMoving)) return true;
        remove_moved(child);
        return false;
    });
}

int move(Node& tree, Numbering rule, int from, int to) {
    const auto find = [&](int index) {
        int counter = 0;
        rule.index = index;
        return uxmodel::numbered_node(tree, rule, 0, counter);
    };
    Node* const source = find(from);
    Node* const target = find(to);
    if (source == nullptr || (target == nullptr && to >= 0)) return 0;
    const Node copy = *source;
    Node* const parent = target == nullptr ? &tree : parent_of(tree, *target);
    const auto end = parent->children.end();
    auto place = std::find_if(parent->children.begin(), end,
                              [&](const Node& child) { return &child == target; });
    if (place != end && from <= to) ++place;
    source->set(kMoving, "");
    parent->children.insert(place, copy);
    remove_moved(tree);
    return 1;
}

bool sort(Node& node, const std::string& name, bool ascending) {
    std::vector<Node>& all = node.children;
    if (all.size() < 2 || name.empty()) return false;
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t j = i + 1; j < all.size(); ++j) {
            const std::optional<int> a = all[i].number(name);
            const std::optional<int> b = all[j].number(name);
            if (a && b && (ascending ? *a > *b : *a < *b)) std::swap(all[i], all[j]);
        }
    }
    return true;
}

int append(Node& target, const Node& source, const std::string& prefix) {
    const auto matches = [&](const Node& child) {
        return same_text(child.tag.substr(0, prefix.size()), prefix, false);
    };
    std::optional<int> largest;
    for (const Node& child : target.children) {
        if (matches(child) && child.id) largest = std::max(largest.value_or(*child.id), *child.id);
    }
    int next = largest.value_or(-1) + 1;
    for (const Node& child : source.children) {
        if (!matches(child)) continue;
        target.children.push_back(child);
        if (next > 0) target.children.back().id = next++;
    }
    return next;
}

}  // namespace

TEST(uxtree_move_node, MovesAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        for (int i = 0; i < 3; ++i) {
            const unsigned flags = uxmodel::random_numbering_flags(random);
            const std::string name = random.pick<std::string>({"", "", "n", "keep"});
            const int from = random.below(10) - 1;
            const int to = random.below(12) - 2;
            const int moved = move(model, Numbering::of_flags(0, flags, name), from, to);
            EXPECT_EQ(uxtree_move_node(&root, from, to, flags, name.c_str()), moved);
        }
        return true;
    });
}

TEST(uxtree_sort_children_by_int_attribute, SortsAsThePlainExchangesDo) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        while (random.one_in(2)) {
            const Node more = uxmodel::random_tree(random, kWords, 6);
            for (const Node& child : more.children) model.children.push_back(child);
        }
        TestTree wide(to_xml(model).c_str());
        root.Replace(&wide, 0, 0, 0);
        const std::string name = random.pick<std::string>({"n", "n", "n", "DataID", ""});
        const bool ascending = random.one_in(2);
        const bool sorted = sort(model, name, ascending);
        EXPECT_EQ(uxtree_sort_children_by_int_attribute(&root, name.c_str(), ascending ? 1 : 0),
                  sorted);
        return true;
    });
}

TEST(uxtree_append_children, AppendsWhatThePlainDefinitionAppends) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const Node other = random.one_in(6) ? model : uxmodel::random_tree(random, kWords, 12);
        TestTree source(to_xml(other).c_str());
        const std::string prefix = random.pick<std::string>({"", "b", "B", "ba", "x"});
        const int next = append(model, other, prefix);
        EXPECT_EQ(uxtree_append_children(&root, &source, prefix.c_str()), next);
        EXPECT_EQ(source.text(), to_xml(other));
        return true;
    });
}

// --- filtering ----------------------------------------------------------------------------------

namespace {

// False when the tree itself goes.
template <typename Keep>
bool filter(Node& tree, int dataId, const Keep& keeps) {
    if (tree.number("DataID") == dataId) return keeps(tree);
    remove_children(tree, [&](Node& child) { return !filter(child, dataId, keeps); });
    return true;
}

void values_of(const Node& top, int id, Names& out) {
    for (const Node& child : top.children) {
        if (child.number("DataID") == id) out.push_back(child.text);
        values_of(child, id, out);
    }
}

bool is_in(const std::string& text, const Names& list) {
    return std::any_of(list.begin(), list.end(),
                       [&](const std::string& one) { return same_text(one, text, false); });
}
bool all_in(const Names& these, const Names& list) {
    return !list.empty() && std::all_of(these.begin(), these.end(),
                                        [&](const std::string& one) { return is_in(one, list); });
}
bool some_in(const Names& these, const Names& list) {
    return std::any_of(these.begin(), these.end(),
                       [&](const std::string& one) { return is_in(one, list); });
}

struct Criteria {
    int modeA;
    int idA;
    Names listA;
    int modeB;
    int idB;
    Names listB;
};
bool keeps(const Node& node, const Criteria& test) {
    Names valuesA;
    Names valuesB;
    values_of(node, test.idA, valuesA);
    values_of(node, test.idB, valuesB);
    if (test.modeB == 0 && !all_in(valuesA, test.listA)) return false;
    if (test.modeB == 1 && some_in(test.listB, valuesB)) return false;
    if (test.modeB == 2 && !test.listB.empty() && all_in(test.listB, valuesB)) return false;
    if (test.modeB < 0 || test.modeB > 2) return false;
    if (test.listA.empty()) return true;
    if (test.modeA == 0) return all_in(test.listA, valuesA);
    return test.modeA == 1 && some_in(test.listA, valuesA);
}

bool matches(const std::string& text, const std::string& pattern) {
    if (pattern.empty()) return text.empty();
    if (pattern[0] == '*') {
        return matches(text, pattern.substr(1)) ||
               (!text.empty() && matches(text.substr(1), pattern));
    }
    return !text.empty() && (pattern[0] == '?' || pattern[0] == text[0]) &&
           matches(text.substr(1), pattern.substr(1));
}

Names random_list(Random& random) {
    Names list;
    while (!random.one_in(2)) list.push_back(random.pick<std::string>({"", "a", "A", "b", "c"}));
    return list;
}

}  // namespace

TEST(uxtree_filter, KeepsWhatThePlainDefinitionKeeps) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const int dataId = random.below(4);
        const Criteria test{random.below(4) - 1, random.below(4), random_list(random),
                            random.below(5) - 1, random.below(4), random_list(random)};
        auto listA = uxtest::script_texts(test.listA);
        auto listB = uxtest::script_texts(test.listB);
        const bool stays =
            filter(model, dataId, [&](const Node& node) { return keeps(node, test); });
        EXPECT_EQ(uxtree_filter(&root, dataId, test.modeA, test.idA, &listA, test.modeB, test.idB,
                                &listB),
                  1);
        return stays;
    });
}

TEST(uxtree_filter_by_attrib_find, KeepsWhatThePlainDefinitionKeeps) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const int dataId = random.below(4);
        const std::string wanted = random.pick<std::string>({"", "me", "Some", "text", "x"});
        const bool caseSensitive = random.one_in(2);
        const bool atStart = random.one_in(2);
        const bool stays = filter(model, dataId, [&](const Node& node) {
            const std::string text = node.value_of("t");
            const std::size_t at = caseSensitive
                                       ? text.find(wanted)
                                       : uxmodel::lower(text).find(uxmodel::lower(wanted));
            return node.has("t") && (at == 0 || (at != std::string::npos && !atStart));
        });
        EXPECT_EQ(uxtree_filter_by_attrib_find(&root, dataId, "t", wanted.c_str(),
                                               caseSensitive ? 1 : 0, atStart ? 1 : 0),
                  1);
        return stays;
    });
}

TEST(uxtree_filter_by_attrib_match, KeepsWhatThePlainDefinitionKeeps) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const int dataId = random.below(4);
        std::string pattern;
        for (int i = random.below(5); i > 0; --i) {
            pattern += random.pick<std::string>({"*", "?", "m", "e", "Some", "te", "T", "*"});
        }
        const bool caseSensitive = random.one_in(2);
        const bool stays = filter(model, dataId, [&](const Node& node) {
            const std::string text = node.value_of("t");
            return node.has("t") &&
                   (caseSensitive ? matches(text, pattern)
                                  : matches(uxmodel::lower(text), uxmodel::lower(pattern)));
        });
        EXPECT_EQ(uxtree_filter_by_attrib_match(&root, dataId, "t", pattern.c_str(),
                                                caseSensitive ? 1 : 0),
                  1);
        return stays;
    });
}

// --- copying ------------------------------------------------------------------------------------

namespace {

bool has_any(const Node& node, const Names& names) {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& name) { return node.has(name); });
}

// The number of children copied; a leaf with a value makes the target hold one.
int copy_with_skipping(const Node& source, Node& target, const Names& skipped, bool& holdsValue) {
    for (const auto& [name, value] : source.attributes) target.set(name, value);
    if (source.leaf()) {
        holdsValue = !source.text.empty();
        if (holdsValue) target.text = source.text;
        return 0;
    }
    int count = 0;
    for (const Node& child : source.children) {
        if (has_any(child, skipped)) continue;
        Node copy{child.tag, child.id, child.attributes};
        bool childHoldsValue = false;
        if (copy_with_skipping(child, copy, skipped, childHoldsValue) == 0 && !childHoldsValue) {
            continue;
        }
        target.children.push_back(copy);
        ++count;
    }
    return count;
}

}  // namespace

TEST(VCTreeCopyWithSkipping, CopiesWhatThePlainDefinitionCopies) {
    for_every_tree([](Random& random, Node& model, UXXmlWrapperBase& root) {
        const Node other = uxmodel::random_tree(random, kWords, 14);
        TestTree source(to_xml(other).c_str());
        const Names skipped = random.pick<Names>({{}, {"keep"}, {"none", "n"}});
        CWBOStringArray list = uxtest::string_list(skipped);
        bool holdsValue = false;
        const int count =
            has_any(other, skipped) ? 0 : copy_with_skipping(other, model, skipped, holdsValue);
        EXPECT_EQ(VCTreeCopyWithSkipping(&root, &source, skipped.empty() ? nullptr : &list, 0),
                  count);
        EXPECT_EQ(source.text(), to_xml(other));
        return true;
    });
}

TEST(uxtree_polish_tree_keep_DataID, KeepsWhatThePlainDefinitionKeeps) {
    for_every_tree([](Random&, Node& model, UXXmlWrapperBase& root) {
        const auto strip = [](Node& node, const auto& self) -> void {
            std::erase_if(node.attributes, [](const auto& one) { return one.first != "DataID"; });
            for (Node& child : node.children) self(child, self);
        };
        strip(model, strip);
        uxtree_polish_tree_keep_DataID(&root);
        return true;
    });
}
