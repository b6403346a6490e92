// Lookups in thousands of random trees, compared with plain recursive definitions of them.
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/tree/lookup.h"

#include "support/model_tree.h"
#include "support/test_tree.h"
#include "tree/numbering_model.h"

namespace {

using uxmodel::lower;
using uxmodel::Node;
using uxmodel::numbered_node;
using uxmodel::Numbering;
using uxmodel::Random;
using uxmodel::same_text;
using uxmodel::to_xml;
using uxtest::TestTree;
using uxtest::to_text;

using Names = std::vector<std::string>;

constexpr unsigned kTrees = 1000;
constexpr int kAny = -39999;
const uxmodel::Words kWords{{"a", "b", "B", "c", "a.b"},
                            {{"DataID", 2, {"0", "1", "2", "3", "-1", "x", "", "1.9", " 2 "}},
                             {"RepeatID", 3, {"0", "1", "2", "300", "32767", "40000", "-5", "x"}},
                             {"x", 3, {"", "1", "A", "a"}},
                             {"y", 3, {"1", "2", "x"}},
                             {"EventRootOption", 6, {"0", "1", "-1", "-2", "x"}}},
                            {"", "A", "a", "1"},
                            {std::nullopt, std::nullopt, 0, 1, 2, 5}};

// --- telling nodes apart ------------------------------------------------------------------------

void give_keys(Node& node, int& next) {
    node.set("key", std::to_string(next++));
    for (Node& child : node.children) give_keys(child, next);
}

std::string key_of(const UXXmlWrapperBase& handle) {
    CStringUTF8 key("no node");
    handle.GetPropertyValue("key", key, 0);
    return static_cast<const char*>(key);
}

std::string outcome(int result, const std::string& key) {
    return std::to_string(result) + " at " + key;
}

// A random tree, as plain values and in the library, and a node of another tree for outputs.
struct Trees {
    explicit Trees(Random& random, const uxmodel::Words& words = kWords)
        : model(make(random, words)), real(to_xml(model).c_str()), root(real) {}

    static Node make(Random& random, const uxmodel::Words& words) {
        Node node = uxmodel::random_tree(random, words, 16);
        int next = 0;
        give_keys(node, next);
        return node;
    }

    // What a lookup gives that assigns its output only when it finds a node.
    template <typename Call>
    std::string found_by(Call call) {
        UXXmlWrapperBase out = other;
        const int result = call(&root, &out);
        return outcome(result, key_of(out));
    }

    Node model;
    TestTree real;
    UXXmlWrapperBase root;
    TestTree other{"<other key='kept'/>"};
};

std::string expected(const Node* node) {
    return node == nullptr ? "0 at kept" : outcome(1, node->value_of("key"));
}

template <typename Body>
void for_every_tree(Body body) {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        Trees trees(random);
        for (int i = 0; i < 8; ++i) body(random, trees);
        EXPECT_EQ(trees.real.text(), to_xml(trees.model));
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
}

std::vector<const Node*> all_nodes(const Node& top) {
    std::vector<const Node*> out{&top};
    for (const Node& child : top.children) {
        const std::vector<const Node*> below = all_nodes(child);
        out.insert(out.end(), below.begin(), below.end());
    }
    return out;
}

// The handle of a node of the model.
UXXmlWrapperBase handle_of(const UXXmlWrapperBase& top, const std::string& key) {
    if (key_of(top) == key) return top;
    for (int i = 0; i < top.GetNodeCount(); ++i) {
        UXXmlWrapperBase child;
        top.GetChild(&child, i);
        const UXXmlWrapperBase found = handle_of(child, key);
        if (found.IsNodeValid()) return found;
    }
    return {};
}

bool extend_line(const Node& wanted, std::vector<const Node*>& line) {
    if (line.back() == &wanted) return true;
    for (const Node& child : line.back()->children) {
        line.push_back(&child);
        if (extend_line(wanted, line)) return true;
        line.pop_back();
    }
    return false;
}
// The nodes from the root down to a node.
std::vector<const Node*> line_to(const Node& root, const Node& node) {
    std::vector<const Node*> line{&root};
    extend_line(node, line);
    return line;
}

}  // namespace

// --- numbers ------------------------------------------------------------------------------------

TEST(uxtree_get_node, NumbersAndCountsAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const Numbering rule{random.below(18) - 1, random.below(4) - 1,
                             random.pick<std::string>({"", "x", "y", "none"}), random.one_in(2),
                             random.one_in(3)};
        const int level = random.pick({0, 0, 1, 2});
        const int start = random.pick({0, 0, 0, 2, -1});
        int counted = start;
        int counter = start;
        const Node* node = numbered_node(std::as_const(trees.model), rule, level, counted);

        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_get_node(tree, out, rule.index, &counter, rule.maxLevel,
                                   rule.attribute.c_str(), rule.skipsMarked, rule.branchesOnly,
                                   level);
        }),
                  expected(node));
        EXPECT_EQ(counter, counted);
    });
}

TEST(uxtree_get_node_ex, NumbersAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const unsigned flags = uxmodel::random_numbering_flags(random);
        const Numbering rule = Numbering::of_flags(
            random.below(18) - 1, flags, random.pick<std::string>({"", "x", "y", "none"}));
        int counter = 0;
        const Node* node = numbered_node(std::as_const(trees.model), rule, 0, counter);

        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_get_node_ex(tree, out, rule.index, flags, rule.attribute.c_str());
        }),
                  outcome(1, node == nullptr ? "kept" : node->value_of("key")))
            << flags;
    });
}

// --- rows and levels ----------------------------------------------------------------------------

namespace {

struct Level {
    int level;
    std::string path;
    std::string top;  // the key of the top as the walk leaves it
};

// The node is the last of a line from the root; without a top, withTop is false.
Level level_of(const std::vector<const Node*>& line, bool withTop, const std::string& top,
               bool eventRoot) {
    Level out{-1, "", top};
    std::string path;
    for (auto node = line.rbegin(); node != line.rend(); ++node) {
        path = path.empty() ? (*node)->tag : (*node)->tag + "." + path;
        ++out.level;
        const int option =
            withTop && eventRoot ? (*node)->number("EventRootOption").value_or(0) : 0;
        if (option == -1) return {-1, "kept", top};
        if (option > 0) return {out.level, path, (*node)->value_of("key")};
        if (option == 0 && withTop && (*node)->value_of("key") == top) {
            return {out.level, path, top};
        }
    }
    return withTop ? Level{-1, "kept", top} : Level{out.level, path, top};
}

int size_of(const Node& node) {
    int size = 1;
    for (const Node& child : node.children) size += size_of(child);
    return size;
}

// The row of the node that the tags lead to below top, which is in the row before the first.
std::optional<int> row_below(const Node& top, const Names& tags, std::size_t at) {
    if (at == tags.size()) return 0;
    int rows = 1;
    for (const Node& child : top.children) {
        if (!same_text(child.tag, tags[at], false)) {
            rows += size_of(child);
            continue;
        }
        const std::optional<int> rest = row_below(child, tags, at + 1);
        return rest ? std::optional<int>(rows + *rest) : std::nullopt;
    }
    return std::nullopt;
}

int row_of(const Node& tree, const Names& tags) {
    if (!same_text(tree.tag, tags[0], false)) return -1;
    const std::optional<int> row = row_below(tree, tags, 1);
    return row ? *row + 1 : -1;
}

std::string quoted_path(Random& random, const Names& tags) {
    std::string path;
    for (const std::string& tag : tags) {
        const bool quotes = tag.find('.') != std::string::npos || random.one_in(4);
        path += (path.empty() ? "" : ".") + (quotes ? "\"" + tag + "\"" : tag);
    }
    return path;
}

}  // namespace

TEST(uxtree_get_level, CountsAndWritesThePathAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const std::vector<const Node*> nodes = all_nodes(trees.model);
        const Node& node = *random.pick(nodes);
        const bool withTop = !random.one_in(4);
        const bool eventRoot = random.one_in(2);
        const std::string key = random.one_in(6) ? "no node" : random.pick(nodes)->value_of("key");
        const Level level = level_of(line_to(trees.model, node), withTop, key, eventRoot);
        UXXmlWrapperBase from = handle_of(trees.root, node.value_of("key"));
        UXXmlWrapperBase top = handle_of(trees.root, key);
        CStringUTF8 path("kept");

        EXPECT_EQ(uxtree_get_level(&path, &from, withTop ? &top : nullptr, eventRoot ? 1 : 0),
                  level.level);
        EXPECT_EQ(static_cast<const char*>(path), level.path);
        EXPECT_EQ(key_of(top), level.top);
    });
}

TEST(uxtree_get_row_number, CountsRowsAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        Names tags;
        for (const Node* node : line_to(trees.model, *random.pick(all_nodes(trees.model)))) {
            tags.push_back(node->tag);
        }
        if (random.one_in(4)) tags[0] = random.pick(kWords.tags);
        if (random.one_in(3)) tags.push_back(random.pick(kWords.tags));

        EXPECT_EQ(uxtree_get_row_number(&trees.root, quoted_path(random, tags).c_str()),
                  row_of(trees.model, tags))
            << quoted_path(random, tags);
    });
}

TEST(uxtree_get_root_node, FindsTheTopOfEveryNode) {
    for_every_tree([](Random& random, Trees& trees) {
        const Node& node = *random.pick(all_nodes(trees.model));
        UXXmlWrapperBase from = handle_of(trees.root, node.value_of("key"));

        EXPECT_EQ(
            trees.found_by([&](auto*, auto* out) { return uxtree_get_root_node(&from, out); }),
            "1 at 0");
    });
}

// --- by identifier and tag ----------------------------------------------------------------------

namespace {

const Node* by_id(const Node& top, int id, bool recursive) {
    for (const Node& child : top.children) {
        if (child.id == id || child.number("DataID") == id) return &child;
        if (!recursive) continue;
        if (const Node* found = by_id(child, id, true)) return found;
    }
    return nullptr;
}

const Node* by_tag(const Node& node, const std::string& tag, bool recursive, bool caseSensitive,
                   bool leavesOnly) {
    if ((!leavesOnly || node.leaf()) && same_text(node.tag, tag, caseSensitive)) return &node;
    if (!recursive) return nullptr;
    for (const Node& child : node.children) {
        if (const Node* found = by_tag(child, tag, true, caseSensitive, leavesOnly)) return found;
    }
    return nullptr;
}

}  // namespace

TEST(uxtree_get_node_by_id, FindsWhatThePlainDefinitionFinds) {
    for_every_tree([](Random& random, Trees& trees) {
        const int id = random.below(8) - 1;
        const bool recursive = !random.one_in(4);
        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_get_node_by_id(tree, out, id, recursive);
        }),
                  expected(by_id(trees.model, id, recursive)));
    });
}

TEST(uxtree_get_node_by_tagname, FindsWhatThePlainDefinitionFinds) {
    for_every_tree([](Random& random, Trees& trees) {
        const std::string tag = random.pick<std::string>({"a", "A", "b", "B", "c", "d", ""});
        const bool recursive = !random.one_in(4);
        const bool caseSensitive = random.one_in(2);
        const bool leavesOnly = random.one_in(2);
        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_get_node_by_tagname(tree, out, tag.c_str(), recursive, caseSensitive,
                                              leavesOnly);
        }),
                  expected(by_tag(trees.model, tag, recursive, caseSensitive, leavesOnly)));
    });
}

// --- by attribute -------------------------------------------------------------------------------

namespace {

const Node* by_number(const Node& top, const std::string& name, int value, bool recursive,
                      int depth, int repeat) {
    for (const Node& child : top.children) {
        const int own = child.number("RepeatID").value_or(-1);
        const bool repeats = repeat < 1 || own == repeat;
        if ((value == kAny ? child.has(name) : child.number(name) == value) && repeats) {
            return &child;
        }
        if (!recursive && depth < 1) continue;
        const Node* found = by_number(child, name, value, recursive, depth - 1, -1);
        if (found != nullptr) return found;
    }
    return nullptr;
}

struct Chain {
    int id;
    int parent;
    int parentRepeat;
    int grandParent;
    int grandParentRepeat;
};
// The last link that was found, null for none, and the result.
std::pair<int, const Node*> follow(const Node& tree, const std::string& name, const Chain& chain) {
    if (chain.id == 0 || (chain.grandParent != 0 && chain.parent == 0)) return {-2, nullptr};
    const Node* at = nullptr;
    const std::array<std::pair<int, int>, 3> links{{{chain.grandParent, chain.grandParentRepeat},
                                                    {chain.parent, chain.parentRepeat},
                                                    {chain.id, -1}}};
    for (const auto& [id, repeat] : links) {
        if (id == 0) continue;
        const Node* found =
            by_number(at == nullptr ? tree : *at, name, id, at == nullptr, 0, repeat);
        if (found == nullptr) return {id, at};
        at = found;
    }
    return {0, at};
}

Chain random_chain(Random& random) {
    const auto link = [&] { return random.pick({0, 1, 1, 2, 2, 3, -1, kAny}); };
    const auto repeat = [&] { return random.pick({-1, 0, 1, 2, 300, 40000}); };
    return {random.pick({0, 1, 1, 2, 2, 3, kAny}), link(), repeat(), link(), repeat()};
}

const Node* by_attribute_and_child(const Node& tree, const char* name, const char* value,
                                   const char* childTag, const char* childValue) {
    for (const Node& child : tree.children) {
        const bool passes = name == nullptr || value == nullptr || child.has(name) || *value == 0;
        if (!passes) continue;
        if (childTag == nullptr || childValue == nullptr) return &child;
        for (const Node& below : child.children) {
            if (below.tag == childTag && below.leaf() && same_text(below.text, childValue, false)) {
                return &child;
            }
        }
    }
    return nullptr;
}

}  // namespace

TEST(uxtree_find_node, FindsWhatThePlainDefinitionFinds) {
    for_every_tree([](Random& random, Trees& trees) {
        const std::string name = random.pick<std::string>({"DataID", "y", "x"});
        const int value = random.pick({0, 1, 2, 3, -1, kAny});
        const bool recursive = random.one_in(2);
        const int depth = random.below(4) - 1;
        const int repeat = random.pick({-1, 0, 1, 2, 300, 32767, 40000});
        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_find_node(tree, out, name.c_str(), value, recursive, depth, repeat);
        }),
                  expected(by_number(trees.model, name, value, recursive, depth, repeat)));
    });
}

TEST(uxtree_find_node_ex, FollowsTheChainAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const std::string name = random.pick<std::string>({"DataID", "y"});
        const Chain chain = random_chain(random);
        const auto [result, last] = follow(trees.model, name, chain);
        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_find_node_ex(tree, out, name.c_str(), chain.id, chain.parent,
                                       chain.parentRepeat, chain.grandParent,
                                       chain.grandParentRepeat);
        }),
                  outcome(result, last == nullptr ? "kept" : last->value_of("key")));
    });
}

TEST(uxtree_find_node_by_dataID, FollowsTheChainAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const Chain chain = random_chain(random);
        const auto [result, last] = follow(trees.model, "DataID", chain);
        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_find_node_by_dataID(out, tree, chain.id, chain.parent, chain.parentRepeat,
                                              chain.grandParent, chain.grandParentRepeat);
        }),
                  result == 0 ? expected(last) : "0 at no node");
    });
}

TEST(uxtree_find_node_with_attr_child, FindsWhatThePlainDefinitionFinds) {
    for_every_tree([](Random& random, Trees& trees) {
        const char* const name = random.pick<const char*>({nullptr, "", "x", "y"});
        const char* const value = random.pick<const char*>({nullptr, "", "A", "1"});
        const char* const childTag = random.pick<const char*>({nullptr, "", "a", "b", "B"});
        const char* const childValue = random.pick<const char*>({nullptr, "", "a", "1"});
        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_find_node_with_attr_child(tree, out, name, value, childTag, childValue);
        }),
                  expected(by_attribute_and_child(trees.model, name, value, childTag, childValue)));
    });
}

// --- several attributes at once -----------------------------------------------------------------

namespace {

bool has_numbers(const Node& node, const Names& names, const std::vector<int>& values) {
    if (names.size() != values.size()) return false;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (node.number(names[i]) != values[i]) return false;
    }
    return true;
}
bool has_texts(const Node& node, const Names& names, const Names& values, bool caseSensitive) {
    if (names.size() != values.size()) return false;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string* value = node.find(names[i]);
        if (value == nullptr || !same_text(*value, values[i], caseSensitive)) return false;
    }
    return true;
}

template <typename Test>
const Node* occurrence_of(const Node& top, const Test& passes, bool recursive, int occurrence) {
    int count = 0;
    for (const Node& child : top.children) {
        if (passes(child)) {
            if (count == occurrence) return &child;
            ++count;
        }
        if (!recursive) continue;
        const Node* found = occurrence_of(child, passes, true, occurrence - count);
        if (found != nullptr) return found;
    }
    return nullptr;
}

template <typename T>
std::vector<T> random_list(Random& random, const std::vector<T>& from) {
    std::vector<T> out;
    for (int i = random.pick({0, 1, 1, 1, 2}); i > 0; --i) out.push_back(random.pick(from));
    return out;
}

}  // namespace

TEST(uxtree_find_node_with_int_attr, CountsOccurrencesAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const Names names = random_list<std::string>(random, {"DataID", "y", "x"});
        const std::vector<int> values = random_list<int>(random, {0, 1, 1, 2});
        const bool recursive = random.one_in(2);
        const int occurrence = random.below(5) - 1;
        auto nameObject = uxtest::script_texts(names);
        auto valueObject = uxtest::script_ints(values);
        const auto passes = [&](const Node& node) { return has_numbers(node, names, values); };

        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_find_node_with_int_attr(tree, out, &nameObject, &valueObject, recursive,
                                                  occurrence);
        }),
                  expected(occurrence_of(trees.model, passes, recursive, occurrence)));
        EXPECT_EQ(uxtree_check_node_int_attr(&trees.root, &nameObject, &valueObject),
                  passes(trees.model) ? 1 : 0);
    });
}

TEST(uxtree_find_node_with_str_attr, CountsOccurrencesAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const Names names = random_list<std::string>(random, {"x", "y"});
        const Names values = random_list<std::string>(random, {"", "1", "a", "A"});
        const bool recursive = random.one_in(2);
        const int occurrence = random.below(5) - 1;
        auto nameObject = uxtest::script_texts(names);
        auto valueObject = uxtest::script_texts(values);
        const auto passes = [&](const Node& node) { return has_texts(node, names, values, true); };

        EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
            return uxtree_find_node_with_str_attr(tree, out, &nameObject, &valueObject, recursive,
                                                  occurrence);
        }),
                  expected(occurrence_of(trees.model, passes, recursive, occurrence)));
        for (const int noCase : {0, 1}) {
            EXPECT_EQ(uxtree_check_node_str_attr(&trees.root, &nameObject, &valueObject, noCase),
                      has_texts(trees.model, names, values, noCase == 0) ? 1 : 0);
        }
    });
}

// --- find or create -----------------------------------------------------------------------------

namespace {

// A created node is found again by its number, which is beyond those of the tree.
Node* append(Node& parent, const std::string& tag) {
    if (!uxmodel::is_name(tag)) return nullptr;
    parent.children.push_back({tag});
    return &parent.children.back();
}

Node* child_or_new(Node& parent, const std::string& tag, int id, const std::string& name,
                   const std::string& value) {
    Node* child = nullptr;
    for (Node& one : parent.children) {
        if (child == nullptr && one.tag == tag) child = &one;
    }
    if (child == nullptr) {
        child = append(parent, tag);
        if (child != nullptr && id != 0 && id != -1) child->id = id;
    }
    if (child != nullptr && !name.empty() && !value.empty()) child->set(name, value);
    return child;
}

Node* by_text(Node& top, const std::string& name, const std::string& value, bool deep) {
    for (Node& child : top.children) {
        if (child.has(name) && child.value_of(name) == value) return &child;
        if (!deep) continue;
        if (Node* found = by_text(child, name, value, true)) return found;
    }
    return nullptr;
}

std::string cleaned(const std::string& text) {
    std::string out = text;
    for (char& c : out) {
        if (c == ':' || !uxmodel::is_name(std::string("a") + c)) c = '_';
    }
    return uxmodel::is_name(out) ? out : "_" + out;
}

Node* attribute_or_new(Node& parent, const std::string& name, const std::string& value, bool deep,
                       const char* newTag) {
    if (Node* found = by_text(parent, name, value, deep)) return found;
    const std::string tag = newTag == nullptr ? value : newTag;
    if (tag == "0" || tag.empty()) return nullptr;
    Node* child = append(parent, cleaned(tag));
    child->set(name, value);
    return child;
}

Node* data_id_or_new(Node& parent, const std::string& tag, int id, const std::string& name,
                     const std::string& value) {
    const Node* found = by_number(parent, "DataID", id, false, 0, -1);
    if (found != nullptr) return const_cast<Node*>(found);
    Node* child = append(parent, tag);
    if (child == nullptr) return nullptr;
    if (!name.empty() && !value.empty()) child->set(name, value);
    if (id > 0) child->set("DataID", std::to_string(id));
    return child;
}

}  // namespace

TEST(uxtree_tree_check_get_node, FindsAndCreatesAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const std::string tag = random.pick<std::string>({"a", "b", "n", "m", "", "1x"});
        const int id = random.pick({0, -1, 7});
        const std::string name = random.pick<std::string>({"", "x", "z"});
        const std::string value = random.pick<std::string>({"", "v", "w"});
        const Node* node = child_or_new(trees.model, tag, id, name, value);
        UXXmlWrapperBase out = trees.other;

        EXPECT_EQ(uxtree_tree_check_get_node(&out, &trees.root, tag.c_str(), id, name.c_str(),
                                             value.c_str()),
                  node != nullptr ? 1 : 0);
        EXPECT_EQ(to_text(out), node == nullptr ? "(invalid)" : to_xml(*node));
        EXPECT_EQ(trees.real.text(), to_xml(trees.model));
    });
}

TEST(uxtree_tree_check_get_node_by_attribute, FindsAndCreatesAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const std::string name = random.pick<std::string>({"x", "y"});
        const std::string value = random.pick<std::string>({"", "0", "A", "new", "1 <x:y>"});
        const int deep = random.below(2);
        const char* const newTag = random.pick<const char*>({nullptr, "", "0", "t", "-t:u"});
        const Node* node = attribute_or_new(trees.model, name, value, deep != 0, newTag);
        UXXmlWrapperBase out = trees.other;

        EXPECT_EQ(uxtree_tree_check_get_node_by_attribute(&out, &trees.root, name.c_str(),
                                                          value.c_str(), deep, newTag),
                  node != nullptr ? 1 : 0);
        EXPECT_EQ(to_text(out), node == nullptr ? "(invalid)" : to_xml(*node));
        EXPECT_EQ(trees.real.text(), to_xml(trees.model));
    });
}

TEST(uxtree_check_get_node_by_dataid, FindsAndCreatesAsThePlainDefinitionDoes) {
    for_every_tree([](Random& random, Trees& trees) {
        const std::string tag = random.pick<std::string>({"a", "n", "", "1x"});
        const int id = random.pick({0, 1, 2, 9, -1, -7});
        const std::string name = random.pick<std::string>({"", "x", "z"});
        const std::string value = random.pick<std::string>({"", "v"});
        const Node* node = data_id_or_new(trees.model, tag, id, name, value);
        UXXmlWrapperBase out = trees.other;

        EXPECT_EQ(uxtree_check_get_node_by_dataid(&trees.root, &out, tag.c_str(), id, name.c_str(),
                                                  value.c_str()),
                  1);
        EXPECT_EQ(to_text(out), node == nullptr ? trees.other.text() : to_xml(*node));
        EXPECT_EQ(trees.real.text(), to_xml(trees.model));
    });
}

// --- help ---------------------------------------------------------------------------------------

namespace {

// The DataID of a direct child; nothing when the rule for the rest applies.
std::optional<int> direct_help(int id, int category) {
    if (category == 256 && id == 440) return 310;
    if (id == 430 || id == 442 || id == 446 || id == 305) return id;
    if (category == 256 && id == 448) return 391;
    return std::nullopt;
}

}  // namespace

TEST(uxtree_get_help_node, FindsWhatThePlainDefinitionFinds) {
    const uxmodel::Words words{
        {"h"},
        {{"DataID", 1, {"305", "310", "391", "420", "420", "430", "440", "448", "5"}},
         {"RepeatID", 2, {"256", "257", "1024"}}},
        {""}};
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        Trees trees(random, words);
        for (int i = 0; i < 8; ++i) {
            const int id = random.pick({5, 305, 310, 391, 430, 440, 440, 442, 446, 448, 448});
            const int category = random.pick({256, 256, 257, 1024, 1025, 0, -1});
            const std::optional<int> direct = direct_help(id, category);
            const Node* node =
                direct ? by_number(trees.model, "DataID", *direct, false, 0, -1) : nullptr;
            std::string wanted = expected(node);
            if (!direct) {
                const auto [result, last] =
                    follow(trees.model, "DataID", {id, 420, category, 0, -1});
                wanted = result == 0 ? expected(last) : "0 at no node";
            }
            EXPECT_EQ(trees.found_by([&](auto* tree, auto* out) {
                return uxtree_get_help_node(out, tree, id, category);
            }),
                      wanted)
                << id << " " << category << " " << trees.real.text();
        }
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
}
