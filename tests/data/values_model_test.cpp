// The engines over thousands of random trees, and a plain model of them.
#include "data/values_model.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/data/ids.h"
#include "uxtree/data/values.h"

#include "data/ids_detail.h"
#include "data/values_detail.h"
#include "support/test_tree.h"

namespace {

using uxmodel::Cargo;
using uxmodel::Entries;
using uxmodel::Entry;
using uxmodel::Node;
using uxmodel::Random;
using uxmodel::to_xml;
using uxmodel::Words;
using uxtest::TestTree;

constexpr unsigned kTrees = 2000;

// A tree in which the rules of repeated identifiers are broken seldom enough for most walks to get
// to the end, and often enough for some to stop anywhere.
Node random_values(Random& random) {
    static const Words kFew = uxmodel::value_words(20);
    static const Words kMany = uxmodel::value_words(5);
    return uxmodel::random_tree(random, random.one_in(3) ? kMany : kFew, 24);
}

int random_repeat(Random& random) {
    return random.pick({0, 0, 0, 1, 8, 32, -1, 65537});
}

std::string random_id_attribute(Random& random) {
    return random.pick<std::string>({"DataID", "DataID", "DataID", "NodeID", "none"});
}

Cargo random_cargo(Random& random) {
    Cargo cargo;
    if (random.one_in(2)) cargo.firstName = random.pick<std::string>({"v", "Label"});
    if (random.one_in(3)) cargo.secondName = "w";
    cargo.values = random.one_in(4) ? cargo.firstName.empty() : true;
    return cargo;
}

// The arrays of a call, with those that the cargo leaves out left out.
struct Arrays {
    explicit Arrays(const Cargo& cargo) : cargo_(cargo) {}

    ux::ValueRecord record() {
        ux::ValueRecord out;
        if (cargo_.values) out.values = &values;
        out.firstName = cargo_.firstName.c_str();
        out.secondName = cargo_.secondName.c_str();
        if (!cargo_.firstName.empty()) out.firstValues = &first;
        if (!cargo_.secondName.empty()) out.secondValues = &second;
        return out;
    }
    void add(const Entry& entry) {
        const auto add_to = [](CWBOStringArray& array, const std::string& text) {
            array.Add(CStringUTF8(text.c_str()));
        };
        ids.Add(entry.id);
        if (cargo_.values) add_to(values, entry.value);
        if (!cargo_.firstName.empty()) add_to(first, entry.first);
        if (!cargo_.secondName.empty()) add_to(second, entry.second);
    }
    Entries entries() const {
        Entries out;
        const auto at = [](const CWBOStringArray& array, int i) -> std::string {
            return array.IsEmpty() ? "" : static_cast<const char*>(array[i]);
        };
        for (int i = 0; i < ids.GetSize(); ++i) {
            out.push_back({ids[i], at(values, i), at(first, i), at(second, i), at(labels, i)});
        }
        for (const CWBOStringArray* array : {&values, &first, &second, &labels}) {
            EXPECT_TRUE(array->IsEmpty() || array->GetSize() == ids.GetSize());
        }
        return out;
    }

    CArray<int, int> ids;
    CWBOStringArray values;
    CWBOStringArray first;
    CWBOStringArray second;
    CWBOStringArray labels;

private:
    Cargo cargo_;
};

std::string text_of(const CStringUTF8& text) {
    return static_cast<const char*>(text);
}

template <typename Body>
void for_every_tree(Body body) {
    uxtest::FakeHostServices services;
    services->validateValue = [](UXXmlWrapperBase&, const CStringUTF8& value) {
        return value.Find(uxmodel::kRefused) < 0;
    };
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        Node model = random_values(random);
        TestTree tree(to_xml(model).c_str());
        body(random, model, tree);
        EXPECT_EQ(tree.text(), to_xml(model));
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
}

}  // namespace

// --- identifiers --------------------------------------------------------------------------------

TEST(uxtree_combine_treenode_id_with_repeat_id, CombinesAsTheModelDoes) {
    const Words words{{"a"},
                      {{"RepeatID", 1, {"0", "1", "2", "6", "32766", "32767", "32768", "-1", "x"}},
                       {"RepeatNodeID", 1, {"0", "1", "3", "128", "256", "259", "32766", "32767"}}},
                      {""}};
    for (unsigned seed = 0; seed < 20000; ++seed) {
        Random random(seed);
        Node model = uxmodel::random_tree(random, words, 1);
        if (random.one_in(4)) model.remove("RepeatID");
        if (random.one_in(4)) model.remove("RepeatNodeID");
        TestTree tree(to_xml(model).c_str());
        const int own = random.pick({-2, -1, 0, 7, 65535, 65536, 262151, 50593799, 2147483647});
        const int inherited = random.pick({-1, 0, 1, 2, 4, 32766, 65536, 65537, 2147483647});
        int id = own;
        int repeat = -77;

        const uxmodel::Combination branch = uxmodel::combine_with_repeat(model, own, inherited);
        EXPECT_EQ(uxtree_combine_treenode_id_with_repeat_id(&tree, &id, &repeat, inherited),
                  branch.code);
        EXPECT_EQ(id, branch.id);
        EXPECT_EQ(repeat, branch.repeat.value_or(-77));

        const uxmodel::Combination marked = uxmodel::combine_with_repeat_node(model, id);
        EXPECT_EQ(ux::_tree_apply_repeat_node_id(tree, id), marked.code);
        EXPECT_EQ(id, marked.id);
        ASSERT_FALSE(HasFailure()) << tree.text() << " " << own << " under " << inherited;
    }
}

TEST(_tree_find_dup_id, FindsTheDuplicateThatTheModelFinds) {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Random random(seed);
        Entries given;
        CArray<int, int> ids;
        const int range = random.pick({5, 50, 500});
        for (int i = random.below(30); i > 0; --i) {
            given.push_back({random.below(range) - range / 2, "", "", "", ""});
            ids.Add(given.back().id);
        }
        const std::optional<int> twice = uxmodel::first_duplicate(given);
        int duplicate = -77;

        EXPECT_EQ(ux::_tree_find_dup_id(ids, &duplicate), twice ? 0 : 1);
        ASSERT_EQ(duplicate, twice.value_or(-77)) << "seed " << seed;
    }
}

// --- the engines --------------------------------------------------------------------------------

TEST(_tree_get_values_by_ids, CollectsWhatTheModelCollects) {
    for_every_tree([](Random& random, Node& model, TestTree& tree) {
        uxmodel::CollectRules rules;
        rules.cargo = random_cargo(random);
        rules.recursive = !random.one_in(5);
        rules.onlyChanged = random.one_in(4);
        rules.inheritedRepeat = random_repeat(random);
        rules.idAttribute = random_id_attribute(random);
        rules.themeFlag = random.one_in(2);
        rules.useFlag = random.one_in(2);
        std::string error = random.pick<std::string>({"", "", "before"});
        CStringUTF8 errorText(error.c_str());
        if (random.one_in(2)) rules.error = &error;
        ux::CollectOptions options;
        options.recursive = rules.recursive;
        options.onlyChanged = rules.onlyChanged;
        options.inheritedRepeat = rules.inheritedRepeat;
        options.idAttribute = rules.idAttribute == "DataID" ? nullptr : rules.idAttribute.c_str();
        options.themeFlag = rules.themeFlag;
        options.useFlag = rules.useFlag;
        if (rules.error != nullptr) options.errorText = &errorText;
        Arrays arrays(rules.cargo);
        ux::ValueRecord record = arrays.record();
        record.labels = &arrays.labels;

        const Entries expected = uxmodel::collect(model, rules);

        EXPECT_EQ(ux::_tree_get_values_by_ids(tree, arrays.ids, record, options),
                  static_cast<int>(expected.size()));
        EXPECT_EQ(arrays.entries(), expected);
        EXPECT_EQ(text_of(errorText), error);
    });
}

namespace {

Entries random_entries(Random& random, const Cargo& cargo) {
    static const std::vector<std::string> kTexts = uxmodel::value_words(1).texts;
    Entries entries;
    for (int i = random.below(14); i > 0; --i) {
        const int id = random.pick({0, 0, 0, 1 << 16, 32 << 16, 33 << 16}) +
                       random.pick({0, 1, 2, 3, 4, 65535, 0x1000000, 0x1000001, -1, -2});
        const Entry entry{id, random.pick(kTexts), cargo.firstName.empty() ? "" : "new",
                          random.pick<std::string>({"", "2"}), ""};
        entries.push_back(entry);
        if (!random.one_in(3)) continue;
        entries.push_back(entry);
        entries.back().id = uxmodel::negated(id);
        entries.back().value = random.pick(kTexts);
    }
    if (random.one_in(2)) {  // without duplicates
        Entries different;
        for (const Entry& entry : entries) {
            different.push_back(entry);
            if (uxmodel::first_duplicate(different)) different.pop_back();
        }
        return different;
    }
    return entries;
}

// A callback record that does what the model's watch does.
struct RealWatch : _SETVALUESBYIDS {
    explicit RealWatch(int watched) : _SETVALUESBYIDS{&note, watched, 0, nullptr} {}

    static void note(_SETVALUESBYIDS* record) {
        auto* self = static_cast<RealWatch*>(record);
        EXPECT_EQ(self->inProgress, 1);
        self->seen.emplace_back(static_cast<const char*>(*self->value));
        *self->value += "+seen";
    }
    std::vector<std::string> seen;
};

}  // namespace

TEST(_tree_set_values_by_ids, WritesWhatTheModelWrites) {
    for_every_tree([](Random& random, Node& model, TestTree& tree) {
        uxmodel::SetRules rules;
        rules.cargo = random_cargo(random);
        rules.defaultFlags = random.pick({0U, 0U, 0x10000U, 0x20000U, 0x40000U, 0x100000U});
        rules.inheritedRepeat = random_repeat(random);
        rules.idAttribute = random_id_attribute(random);
        rules.refusesDuplicates = random.one_in(2);
        rules.resetsAuto = random.one_in(3);
        rules.checksDynaUse = random.one_in(3);
        rules.themeOff = random.one_in(3);
        rules.validateOff = random.one_in(2);
        std::string error = "before";
        CStringUTF8 errorText(error.c_str());
        if (random.one_in(2)) rules.error = &error;
        const int watched = random.pick({0, 1, 2, 65537});
        uxmodel::Watch watch{watched, {}};
        RealWatch realWatch(watched);
        if (random.one_in(2)) rules.watch = &watch;
        ux::SetOptions options;
        options.defaultFlags = rules.defaultFlags;
        options.inheritedRepeat = rules.inheritedRepeat;
        options.idAttribute = rules.idAttribute.c_str();
        if (rules.resetsAuto) options.callFlags |= ux::kResetAutomatic;
        if (rules.checksDynaUse) options.callFlags |= ux::kCheckDynaUse;
        if (rules.themeOff) options.callFlags |= ux::kThemeOff;
        options.validateOff = rules.validateOff;
        int reported = -77;
        if (rules.refusesDuplicates) options.duplicate = &reported;
        if (rules.error != nullptr) options.errorText = &errorText;
        if (rules.watch != nullptr) options.callback = &realWatch;
        const Entries given = random_entries(random, rules.cargo);
        Arrays arrays(rules.cargo);
        for (const Entry& entry : given) arrays.add(entry);
        int duplicate = -77;

        const int expected = uxmodel::set(model, given, rules, duplicate);

        EXPECT_EQ(ux::_tree_set_values_by_ids(tree, arrays.ids, arrays.record(), options),
                  expected);
        EXPECT_EQ(reported, duplicate);
        EXPECT_EQ(text_of(errorText), error);
        EXPECT_EQ(realWatch.seen, watch.seen);
        EXPECT_EQ(realWatch.inProgress, 0);
        EXPECT_EQ(realWatch.value, nullptr);
    });
}

// --- the other walks ----------------------------------------------------------------------------

namespace {

template <typename Action>
int each_leaf_below(Node& tree, const Action& action) {
    int count = 0;
    for (Node& child : tree.children) {
        count += child.leaf() ? (action(child) ? 1 : 0) : each_leaf_below(child, action);
    }
    return count;
}

int replaced(std::string& text, const std::string& from, const std::string& to) {
    int count = 0;
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
        ++count;
    }
    return count;
}

void replace_all(Node& node, const std::string& from, const std::string& to) {
    if (node.leaf() && !from.empty()) replaced(node.text, from, to);
    for (Node& child : node.children) replace_all(child, from, to);
}

void list(const Node& node, bool childrenOnly, std::vector<std::string>& out) {
    out.push_back(node.leaf() ? node.text : "");
    for (const Node& child : node.children) {
        if (childrenOnly) {
            out.push_back(child.text);
        } else {
            list(child, false, out);
        }
    }
}

}  // namespace

TEST(vctree_empty_values_with_ids, ClearsWhatTheModelClears) {
    for_every_tree([](Random&, Node& model, TestTree& tree) {
        const int expected = each_leaf_below(model, [](Node& leaf) {
            if (leaf.number("DataID").value_or(-1) == -1) return false;
            leaf.text.clear();
            return true;
        });
        EXPECT_EQ(vctree_empty_values_with_ids(&tree), expected);
    });
}

TEST(vctree_set_values_by_nodeids, WritesWhatTheModelWrites) {
    for_every_tree([](Random& random, Node& model, TestTree& tree) {
        const Entries given = random_entries(random, {});
        Arrays arrays({});
        for (const Entry& entry : given) arrays.add(entry);
        const int written = each_leaf_below(model, [&](Node& leaf) {
            for (const Entry& entry : given) {
                if (leaf.number("NodeID") != entry.id) continue;
                leaf.text = entry.value;
                return true;
            }
            return false;
        });
        EXPECT_EQ(vctree_set_values_by_nodeids(&tree, &arrays.ids, &arrays.values),
                  given.empty() ? -2 : written);
    });
}

TEST(uxtree_clear_all_value, ClearsWhatTheModelClears) {
    for_every_tree([](Random&, Node& model, TestTree& tree) {
        each_leaf_below(model, [](Node& leaf) {
            leaf.text.clear();
            return true;
        });
        uxtree_clear_all_value(&tree);
    });
}

TEST(uxtree_recursively_replace_values, ReplacesWhatTheModelReplaces) {
    for_every_tree([](Random& random, Node& model, TestTree& tree) {
        const std::string from = random.pick<std::string>({"", "x", "::{", "b", "="});
        const std::string to = random.pick<std::string>({"", "xx", "new"});
        replace_all(model, from, to);
        uxtree_recursively_replace_values(&tree, from.c_str(), to.c_str());
    });
}

TEST(VCTreeGetValues, ListsWhatTheModelLists) {
    for_every_tree([](Random& random, Node& model, TestTree& tree) {
        const bool childrenOnly = random.one_in(2);
        std::vector<std::string> expected{"before"};
        list(model, childrenOnly, expected);
        CWBOStringArray values = uxtest::string_list({"before"});

        EXPECT_EQ(VCTreeGetValues(&tree, &values, childrenOnly), 0);
        EXPECT_EQ(uxtest::texts(values), expected);
    });
}
