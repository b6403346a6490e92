// Change marks of random trees, and a plain model of them.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/data/changes.h"

#include "data/values_model.h"
#include "support/test_tree.h"

namespace {

using uxmodel::Entries;
using uxmodel::Node;
using uxmodel::Random;
using uxmodel::to_xml;
using uxmodel::Words;
using uxtest::TestTree;

constexpr unsigned kTrees = 2000;

// --- updating -----------------------------------------------------------------------------------

struct Update {
    std::vector<std::string> old;
    std::size_t next = 0;
    int marked = 0;
};

void mark_changes(Node& tree, Update& update) {
    for (Node& child : tree.children) {
        const std::string value = child.leaf() ? child.text : "";
        const std::size_t k = update.next++;
        if (k < update.old.size() && value != update.old[k]) {
            child.set("OldValue", update.old[k]);
            ++update.marked;
        } else {
            child.remove("OldValue");
            child.remove("OldName");
        }
        mark_changes(child, update);
    }
}

void list_below(const Node& tree, std::vector<std::string>& out) {
    for (const Node& child : tree.children) {
        out.push_back(child.leaf() ? child.text : "");
        list_below(child, out);
    }
}

// --- removing -----------------------------------------------------------------------------------

// The number of removed nodes, or -5.
int remove_unchanged(Node& tree, const Entries& reference, const std::string& idAttribute,
                     int inherited) {
    int removed = 0;
    for (std::size_t at = 0; at < tree.children.size();) {
        Node& child = tree.children[at];
        const uxmodel::TravelId id =
            uxmodel::travel_id(child, idAttribute, inherited, true, nullptr);
        if (id.broken) return -5;
        bool goes = false;
        if (child.leaf()) {
            const std::string value = *uxmodel::value_of(child, uxmodel::Source::kText, true);
            for (const uxmodel::Entry& entry : reference) {
                if (id.id < 0 || entry.id != id.id) continue;
                goes = uxmodel::same_text(entry.value, value, false);
                break;
            }
        } else {
            const int below = remove_unchanged(child, reference, idAttribute, id.repeat);
            if (below < 0) return below;
            removed += below;
            goes = child.leaf();
        }
        if (goes) {
            tree.children.erase(tree.children.begin() + static_cast<std::ptrdiff_t>(at));
            ++removed;
        } else {
            ++at;
        }
    }
    return removed;
}

int strip(const Entries& reference, Node& tree, const std::string& idAttribute) {
    if (reference.empty()) return 0;
    if (const std::optional<int> twice = uxmodel::first_duplicate(reference)) {
        return *twice >= 1 ? uxmodel::negated(*twice) : -4;
    }
    return remove_unchanged(tree, reference, idAttribute, 0);
}

// A tree like the given one, with some values and places changed.
void vary(Random& random, Node& node) {
    if (random.one_in(4)) node.text = random.pick<std::string>({"x", "X", "", "other"});
    if (random.one_in(12)) node.remove("DataID");
    if (random.one_in(12)) node.children.push_back({"more"});
    for (Node& child : node.children) vary(random, child);
}

void number_nodes(Random& random, Node& node, int& next) {
    const int id = random.one_in(40) ? next : next++;
    if (node.has("DataID")) node.set("DataID", std::to_string(id));
    for (Node& child : node.children) number_nodes(random, child, next);
}

}  // namespace

TEST(VCTreeUpdateChanges, MarksWhatTheModelMarks) {
    const Words words{{"a", "b"},
                      {{"OldValue", 3, {"", "1", "text"}}, {"OldName", 3, {"n"}}, {"x", 3, {""}}},
                      {"", "1", "2", "text", "Text"}};
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        Node model = uxmodel::random_tree(random, words, 20);
        TestTree tree(to_xml(model).c_str());
        Update update;
        list_below(model, update.old);
        for (std::string& old : update.old) {
            if (random.one_in(3)) old = random.pick(words.texts);
        }
        if (random.one_in(3)) update.old.resize(update.old.size() / 2);
        if (random.one_in(6)) update.old.emplace_back("beyond");
        CWBOStringArray old = uxtest::string_list(update.old);
        mark_changes(model, update);

        EXPECT_EQ(VCTreeUpdateChanges(&tree, &old), update.marked);
        ASSERT_EQ(tree.text(), to_xml(model)) << "seed " << seed;
    }
}

TEST(uxtree_node_changed, MarksAndClearsAsTheModelDoes) {
    const Words words{
        {"a"}, {{"OldValue", 2, {"", "1"}}, {"OldName", 2, {"n"}}, {"x", 2, {""}}}, {"", "v"}};
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        Node model = uxmodel::random_tree(random, words, 3);
        TestTree tree(to_xml(model).c_str());
        const int set = random.below(3);
        const char* const old = random.pick<const char*>({nullptr, "", "new"});
        const int expected = set != 0 || model.has("OldValue") ? 1 : 0;
        if (set != 0 && old != nullptr) model.set("OldValue", old);
        if (set != 0 && old == nullptr) {
            model.remove("OldValue");
            model.remove("OldName");
        }

        EXPECT_EQ(uxtree_node_changed(&tree, set, old), expected);
        ASSERT_EQ(tree.text(), to_xml(model)) << "seed " << seed;
    }
}

TEST(VCTreeGetChanged, FindsWhatTheModelFinds) {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        std::vector<std::string> first;
        for (int i = random.below(8); i > 0; --i) {
            first.push_back(random.pick<std::string>({"", "a", "A", "b"}));
        }
        std::vector<std::string> second = first;
        for (std::string& text : second) {
            if (random.one_in(6)) text = random.pick<std::string>({"", "a", "A", "b"});
        }
        if (random.one_in(8)) second.emplace_back("more");
        const bool caseSensitive = random.one_in(2);
        std::vector<__int64> changed;
        for (std::size_t i = 0; first.size() == second.size() && i < first.size(); ++i) {
            if (uxmodel::same_text(first[i], second[i], caseSensitive)) continue;
            changed.push_back(static_cast<__int64>(i));
        }
        const bool unequal = first.size() != second.size();
        CWBOStringArray a = uxtest::string_list(first);
        CWBOStringArray b = uxtest::string_list(second);
        CArray<__int64, __int64> indices = uxtest::number_list<__int64>({99});
        std::vector<__int64> expected{99};
        expected.insert(expected.end(), changed.begin(), changed.end());

        EXPECT_EQ(VCTreeGetChanged(indices, &a, &b, caseSensitive),
                  unequal ? -1 : static_cast<__int64>(expected.size()));
        EXPECT_EQ(uxtest::numbers(indices), expected);
        EXPECT_EQ(VCTreeGetChanged(&a, &b, caseSensitive), unequal           ? -2
                                                           : changed.empty() ? -1
                                                                             : changed[0]);
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
}

TEST(uxtree_remove_unchange_nodes_by_id, RemovesWhatTheModelRemoves) {
    const Words words = uxmodel::value_words(20);
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        Node reference = uxmodel::random_tree(random, words, 20);
        int next = 0;
        if (!random.one_in(4)) number_nodes(random, reference, next);
        Node model = reference;
        vary(random, model);
        const std::string referenceId = random.one_in(4) ? "NodeID" : "DataID";
        const std::string targetId = random.one_in(4) ? "NodeID" : "DataID";
        TestTree referenceTree(to_xml(reference).c_str());
        TestTree tree(to_xml(model).c_str());
        uxmodel::CollectRules collecting;
        collecting.idAttribute = referenceId;
        collecting.themeFlag = true;
        const int expected = strip(uxmodel::collect(reference, collecting), model, targetId);

        EXPECT_EQ(uxtree_remove_unchange_nodes_by_id(&referenceTree, &tree, referenceId.c_str(),
                                                     targetId.c_str()),
                  expected);
        EXPECT_EQ(referenceTree.text(), to_xml(reference));
        ASSERT_EQ(tree.text(), to_xml(model)) << "seed " << seed;
    }
}
