// Copies between pairs of random trees, and a plain model of them.
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/data/attribute_match.h"
#include "uxtree/data/copy.h"
#include "uxtree/data/saved.h"
#include "uxtree/data/themes.h"
#include "uxtree/data/values.h"

#include "data/values_model.h"
#include "support/test_tree.h"

namespace {

using uxmodel::Entries;
using uxmodel::Entry;
using uxmodel::Node;
using uxmodel::Random;
using uxmodel::to_xml;
using uxmodel::Words;
using uxtest::TestTree;
using uxtest::to_text;

constexpr unsigned kPairs = 2000;

// Mostly a tree in which few identifiers are shared by two nodes, so that most copies get past the
// test for duplicates.
Node random_values(Random& random) {
    static const Words kWords = uxmodel::value_words(20);
    Node node = uxmodel::random_tree(random, kWords, 16);
    if (random.one_in(4)) return node;
    int next = 0;
    const auto renumber = [&](Node& one, const auto& self) -> void {
        const bool counts = one.has("DataID");
        if (counts) one.set("DataID", std::to_string(random.one_in(8) ? next : next++));
        for (Node& child : one.children) self(child, self);
    };
    renumber(node, renumber);
    return node;
}

template <typename Body>
void for_every_pair(Body body) {
    uxtest::FakeHostServices services;
    services->validateValue = [](UXXmlWrapperBase&, const CStringUTF8& value) {
        return value.Find(uxmodel::kRefused) < 0;
    };
    for (unsigned seed = 0; seed < kPairs; ++seed) {
        Random random(seed);
        Node from = random_values(random);
        Node to = random_values(random);
        TestTree source(to_xml(from).c_str());
        TestTree destination(to_xml(to).c_str());
        body(random, from, to, source, destination);
        EXPECT_EQ(source.text(), to_xml(from));
        EXPECT_EQ(destination.text(), to_xml(to));
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
}

std::string random_id_attribute(Random& random) {
    return random.pick<std::string>({"DataID", "DataID", "NodeID"});
}

}  // namespace

// --- by identifier ------------------------------------------------------------------------------

namespace {

// A refused duplicate of 1 or more is the result, negated.
int set_or_duplicate(Node& to, const Entries& entries, uxmodel::SetRules rules) {
    rules.refusesDuplicates = true;
    int duplicate = 0;
    const int written = uxmodel::set(to, entries, rules, duplicate);
    return duplicate >= 1 ? uxmodel::negated(duplicate) : written;
}

int copy_values(Node& from, Node& to, const uxmodel::CollectRules& collecting,
                const uxmodel::SetRules& setting, bool skipEmpty) {
    Entries entries = uxmodel::collect(from, collecting);
    if (entries.empty()) return 0;
    if (skipEmpty) std::erase_if(entries, [](const Entry& entry) { return entry.value.empty(); });
    return set_or_duplicate(to, entries, setting);
}

const Node* by_id(const Node& top, int id) {
    for (const Node& child : top.children) {
        if (child.id == id || child.number("DataID") == id) return &child;
        if (const Node* found = by_id(child, id)) return found;
    }
    return nullptr;
}

void complete(const Node& from, Node& to) {
    const std::optional<int> id = from.number("DataID");
    if (id && by_id(to, *id) == nullptr) {
        Node added{from.tag};
        if (from.has("Label")) added.set("Label", from.value_of("Label"));
        added.set("DataID", std::to_string(*id));
        to.children.push_back(added);
    }
    for (const Node& child : from.children) complete(child, to);
}

}  // namespace

TEST(vctree_copy_values_by_id, CopiesWhatTheModelCopies) {
    for_every_pair([](Random& random, Node& from, Node& to, auto& source, auto& destination) {
        uxmodel::CollectRules collecting;
        collecting.idAttribute = random_id_attribute(random);
        collecting.themeFlag = random.one_in(2);
        collecting.useFlag = random.one_in(2);
        uxmodel::SetRules setting;
        setting.idAttribute = random_id_attribute(random);
        setting.validateOff = random.one_in(2);
        setting.themeOff = random.one_in(2);
        const bool skipEmpty = random.one_in(2);
        uxmodel::Watch watch{random.below(3), {}};
        if (random.one_in(2)) setting.watch = &watch;
        struct Record : _SETVALUESBYIDS {
            std::vector<std::string> seen;
        } record;
        record.callback = [](_SETVALUESBYIDS* self) {
            static_cast<Record*>(self)->seen.emplace_back(static_cast<const char*>(*self->value));
            *self->value += "+seen";
        };
        record.id = watch.id;
        record.inProgress = 1;  // reset by the copy
        record.value = nullptr;

        const int expected = copy_values(from, to, collecting, setting, skipEmpty);

        EXPECT_EQ(vctree_copy_values_by_id(
                      &source, &destination, 0, collecting.idAttribute.c_str(),
                      setting.idAttribute.c_str(), collecting.themeFlag ? 1 : 0,
                      setting.watch != nullptr ? &record : nullptr, setting.validateOff ? 1 : 0,
                      skipEmpty ? 1 : 0, collecting.useFlag ? 1 : 0, setting.themeOff ? 1 : 0),
                  expected);
        EXPECT_EQ(record.seen, watch.seen);
    });
}

TEST(uxtree_whole_copy_values_by_id, CopiesWhatTheModelCopies) {
    for_every_pair([](Random&, Node& from, Node& to, auto& source, auto& destination) {
        complete(from, to);
        uxmodel::CollectRules collecting;
        collecting.themeFlag = true;
        const int expected = copy_values(from, to, collecting, {}, false);

        EXPECT_EQ(uxtree_whole_copy_values_by_id(&source, &destination), expected);
    });
}

TEST(uxtree_copy_atts_by_id, CopiesWhatTheModelCopies) {
    for_every_pair([](Random& random, Node& from, Node& to, auto& source, auto& destination) {
        const std::string attribute = random.pick<std::string>({"", "v", "v", "Label"});
        const std::string second = random.pick<std::string>({"", "w", "w", "Name"});
        const bool rename = random.one_in(3);
        uxmodel::CollectRules collecting;
        collecting.cargo = {false, attribute, rename ? "" : second};
        collecting.idAttribute = random_id_attribute(random);
        collecting.themeFlag = true;
        uxmodel::SetRules setting;
        setting.cargo = {false, rename ? second : attribute, rename ? "" : second};
        setting.idAttribute = random_id_attribute(random);
        const Entries entries = uxmodel::collect(from, collecting);
        const bool nothing = entries.empty() || (rename && second.empty());
        if (!nothing) set_or_duplicate(to, entries, setting);
        const std::optional<int> twice = uxmodel::first_duplicate(entries);
        const int expected = nothing || !twice ? 0 : uxmodel::negated(*twice);

        EXPECT_EQ(uxtree_copy_atts_by_id(
                      &source, &destination, attribute.c_str(), collecting.idAttribute.c_str(),
                      setting.idAttribute.c_str(), second.c_str(), rename ? 1 : 0),
                  expected);
    });
}

// --- by tag -------------------------------------------------------------------------------------

namespace {

Node* by_tag(Node& node, const std::string& tag, bool leavesOnly) {
    if ((!leavesOnly || node.leaf()) && uxmodel::same_text(node.tag, tag, false)) return &node;
    for (Node& child : node.children) {
        if (Node* found = by_tag(child, tag, leavesOnly)) return found;
    }
    return nullptr;
}

int copy_ids(const Node& from, Node& to, bool leavesOnly) {
    int count = 0;
    for (const Node& child : from.children) {
        Node* const found =
            leavesOnly && !child.leaf() ? nullptr : by_tag(to, child.tag, leavesOnly);
        if (found != nullptr) {
            found->set("DataID", std::to_string(child.number("DataID").value_or(0)));
            ++count;
        }
        count += copy_ids(child, to, leavesOnly);
    }
    return count;
}

}  // namespace

TEST(uxtree_copy_ids_by_tagname, CopiesWhatTheModelCopies) {
    for_every_pair([](Random& random, Node& from, Node& to, auto& source, auto& destination) {
        const bool leavesOnly = random.one_in(2);
        const int expected = copy_ids(from, to, leavesOnly);

        EXPECT_EQ(uxtree_copy_ids_by_tagname(&source, &destination, leavesOnly), expected);
    });
}

// --- by a matching attribute --------------------------------------------------------------------

namespace {

struct Match {
    std::string target;
    std::string match;
    std::string extra;
    bool recursive;
    bool all;
    bool caseSensitive;
};

bool match_below(Node& top, const Node& leaf, const Match& rule) {
    bool matched = false;
    for (Node& node : top.children) {
        if (node.has(rule.match) &&
            uxmodel::same_text(node.value_of(rule.match), leaf.value_of(rule.match),
                               rule.caseSensitive)) {
            node.set(rule.target, leaf.text);
            if (!rule.extra.empty()) node.set(rule.extra, leaf.value_of(rule.extra));
            matched = true;
            if (!rule.all) return true;
        }
        if (!rule.recursive || node.leaf()) continue;
        matched = match_below(node, leaf, rule);
        if (matched && !rule.all) return true;
    }
    return matched;
}

bool match_all(const Node& from, Node& to, const Match& rule) {
    bool matched = false;
    for (const Node& child : from.children) {
        if (rule.recursive && !child.leaf()) matched = match_all(child, to, rule);
        if (child.leaf() && child.has(rule.match)) matched = match_below(to, child, rule);
    }
    return matched;
}

}  // namespace

TEST(uxtree_copy_values_to_attributes_by_attribute_matching, CopiesWhatTheModelCopies) {
    for_every_pair([](Random& random, Node& from, Node& to, auto& source, auto& destination) {
        const Match rule{random.pick<std::string>({"", "v", "new"}),
                         random.pick<std::string>({"", "Use", "v", "Label"}),
                         random.pick<std::string>({"", "w", "Name"}),
                         random.one_in(2),
                         random.one_in(2),
                         random.one_in(2)};
        Match full = rule;
        if (full.target.empty()) full.target = "Show";
        if (full.match.empty()) full.match = "DataID";
        const bool expected = match_all(from, to, full);

        EXPECT_EQ(
            uxtree_copy_values_to_attributes_by_attribute_matching(
                &source, &destination, rule.target.c_str(), rule.match.c_str(), rule.extra.c_str(),
                rule.recursive ? 1 : 0, rule.all ? 1 : 0, rule.caseSensitive ? 1 : 0),
            expected ? 1 : 0);
    });
}

// --- by place -----------------------------------------------------------------------------------

namespace {

struct PlaceRules {
    bool attributes;
    std::vector<std::string> kept;
    bool dynamicChecks;
};

void copy_node(const Node& from, Node& to, const PlaceRules& rules) {
    if (rules.attributes) {
        std::vector<std::string> saved;
        for (const std::string& name : rules.kept) saved.push_back(to.value_of(name));
        for (const auto& [name, value] : from.attributes) to.set(name, value);
        for (std::size_t i = 0; i < saved.size(); ++i) {
            if (!saved[i].empty()) to.set(rules.kept[i], saved[i]);
        }
    }
    const auto source = from.leaf() ? uxmodel::Source::kText : uxmodel::Source::kUse;
    uxmodel::WriteRules how;
    how.branch = !from.leaf();
    how.validateOff = true;
    how.resetsAuto = how.checksDynaUse = rules.dynamicChecks;
    uxmodel::write(to, *uxmodel::value_of(from, source, true), how);
}

// Pairs the nodes from the given places on; 1 when the destination ran out first.
int copy_by_place(const std::vector<Node>& from, std::size_t at, std::vector<Node>& to,
                  std::size_t toAt, PlaceRules rules) {
    for (; toAt < to.size(); ++at, ++toAt) {
        if (at >= from.size()) continue;  // a surplus destination takes nothing
        copy_node(from[at], to[toAt], rules);
        rules.dynamicChecks = false;
        if (from[at].leaf()) continue;
        const int below = copy_by_place(from[at].children, 0, to[toAt].children, 0, rules);
        if (below != 0) return below;
    }
    return at < from.size() ? 1 : 0;
}

}  // namespace

TEST(vctree_copy_values_between_homologous_trees, CopiesWhatTheModelCopies) {
    for_every_pair([](Random& random, Node& from, Node& to, auto& source, auto& destination) {
        if (random.one_in(2)) {  // of the same shape
            to.children = from.children;
            const std::function<void(Node&)> vary = [&](Node& node) {
                if (random.one_in(2)) node.text = "other";
                if (random.one_in(2)) node.attributes.clear();
                for (Node& child : node.children) vary(child);
                if (random.one_in(6)) node.children.push_back({"more"});
                if (!node.leaf() && random.one_in(12)) node.children.pop_back();
            };
            vary(to);
            TestTree changed(to_xml(to).c_str());
            destination.Replace(&changed, 0, 0, 0);
        }
        if (from.children.empty() || to.children.empty()) return;
        const int fromAt =
            random.one_in(4) ? random.below(static_cast<int>(from.children.size())) : 0;
        const int toAt = random.one_in(4) ? random.below(static_cast<int>(to.children.size())) : 0;
        const PlaceRules rules{random.one_in(2),
                               random.pick<std::vector<std::string>>({{}, {"Label", "Use"}, {"v"}}),
                               random.one_in(2)};
        CWBOStringArray kept = uxtest::string_list(rules.kept);
        UXXmlWrapperBase first;
        UXXmlWrapperBase firstTo;
        source.GetChild(&first, fromAt);
        destination.GetChild(&firstTo, toAt);
        const int expected = copy_by_place(from.children, static_cast<std::size_t>(fromAt),
                                           to.children, static_cast<std::size_t>(toAt), rules);

        EXPECT_EQ(vctree_copy_values_between_homologous_trees(
                      firstTo, first, rules.attributes ? 1 : 0,
                      rules.kept.empty() ? nullptr : &kept, rules.dynamicChecks ? 1 : 0),
                  expected);
    });
}

// --- through a saved theme ----------------------------------------------------------------------

namespace {

Node document_of(const Entries& entries, bool withLabels, const char* comment) {
    Node root{"Settings"};
    root.text = "Settings";
    for (const Entry& entry : entries) {
        Node node{"node" + std::to_string(entry.id)};
        node.text = entry.value;
        if (withLabels) node.set("Label", entry.label);
        root.children.push_back(node);
    }
    if (comment != nullptr) root.set("Comment", comment);
    return root;
}

// What the host's tags read as: the number at the start, as far as it fits.
int number_in(std::string tag) {
    if (tag.rfind("node", 0) == 0) tag = tag.substr(4);
    return static_cast<int>(
        std::clamp(std::strtoll(tag.c_str(), nullptr, 10), -2147483648LL, 2147483647LL));
}

}  // namespace

TEST(vctree_set_theme, AThemeCarriesValuesAsTheModelDoes) {
    for_every_pair([](Random& random, Node& from, Node& to, auto& source, auto& destination) {
        CArray<int, int> ids;
        CWBOStringArray values;
        uxmodel::CollectRules collecting;
        collecting.themeFlag = true;
        const Entries entries = uxmodel::collect(from, collecting);
        EXPECT_EQ(vctree_get_values_with_ids(&source, &ids, &values, 1, 0, 0, nullptr, 1, nullptr),
                  static_cast<int>(entries.size()));
        const char* const comment = random.pick<const char*>({nullptr, "", "a <comment>"});
        TestTree holder("<holder><theme old='1'><x/></theme><after/></holder>");
        UXXmlWrapperBase theme = holder.at("theme");
        CWBOStringArray labels;
        for (const Entry& entry : entries) labels.Add(CStringUTF8(entry.label.c_str()));
        const bool withLabels = random.one_in(2);

        const bool saved =
            withLabels ? vctree_save_values_with_ids(&theme, &ids, &values, comment, &labels)
                       : vctree_set_theme(&theme, &ids, &values, comment);
        EXPECT_EQ(saved, !entries.empty());
        if (!saved) return;
        EXPECT_EQ(holder.text(), "<holder>" + to_xml(document_of(entries, withLabels, comment)) +
                                     "<after></after></holder>");

        CArray<int, int> idsRead;
        CWBOStringArray valuesRead;
        CStringUTF8 commentRead("none");
        vctree_get_theme(&theme, &idsRead, &valuesRead, &commentRead, nullptr);
        EXPECT_STREQ(commentRead, comment == nullptr ? "none" : comment);
        int duplicate = 0;
        const int expected = uxmodel::set(to, entries, {}, duplicate);
        EXPECT_EQ(vctree_set_values_by_ids(&destination, &idsRead, &valuesRead, 0, nullptr, 0,
                                           nullptr, nullptr),
                  expected);
    });
}

TEST(vctree_get_theme, ReadsAnyTreeAsTheModelDoes) {
    const Words words{{"node1", "node-2", "node", "xnode7", "Node3", "node99999999999", "node4x"},
                      {{"Label", 2, {"", "L"}}, {"Comment", 2, {"", "c"}}},
                      {"", "v", "w"}};
    for (unsigned seed = 0; seed < kPairs; ++seed) {
        Random random(seed);
        const Node model = uxmodel::random_tree(random, words, 10);
        TestTree tree(to_xml(model).c_str());
        CArray<int, int> ids;
        CWBOStringArray values;
        CWBOStringArray labels;
        CStringUTF8 comment("none");

        vctree_get_theme(&tree, &ids, &values, &comment, &labels);

        std::vector<int> expectedIds;
        std::vector<std::string> expectedValues;
        std::vector<std::string> expectedLabels;
        for (const Node& child : model.children) {
            expectedIds.push_back(number_in(child.tag));
            expectedValues.push_back(child.text);
            expectedLabels.push_back(child.value_of("Label"));
        }
        EXPECT_EQ(uxtest::numbers(ids), expectedIds);
        EXPECT_EQ(uxtest::texts(values), expectedValues);
        EXPECT_EQ(uxtest::texts(labels), expectedLabels);
        EXPECT_STREQ(comment, model.has("Comment") ? model.value_of("Comment").c_str() : "none");
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ": " << tree.text();
    }
}

namespace {

// The depth is shared by the branches of one level and falls with each.
const Node* theme_node(const Node& top, int id, int depth, bool recursive) {
    if (top.leaf() || depth < 0) return nullptr;
    for (const Node& child : top.children) {
        const unsigned kind = static_cast<unsigned>(child.id.value_or(0)) & 0xFFFFU;
        const unsigned data = static_cast<unsigned>(child.number("DataID").value_or(0)) & 0xFFFFU;
        if (kind == static_cast<unsigned>(id) || data == static_cast<unsigned>(id)) return &child;
        if (!recursive || child.leaf()) continue;
        if (const Node* found = theme_node(child, id, --depth, true)) return found;
    }
    return nullptr;
}

}  // namespace

TEST(uxtree_theme_tree_get_node_by_index, FindsWhatTheModelFinds) {
    const Words words{{"t"},
                      {{"DataID", 1, {"1", "2", "3", "65537", "131074", "-65533", "x"}}},
                      {""},
                      {std::nullopt, 4, 5, 65542}};
    for (unsigned seed = 0; seed < kPairs; ++seed) {
        Random random(seed);
        Node model = uxmodel::random_tree(random, words, 16);
        int key = 0;
        const std::function<void(Node&)> give_keys = [&](Node& node) {
            node.set("key", std::to_string(key++));
            for (Node& child : node.children) give_keys(child);
        };
        give_keys(model);
        TestTree tree(to_xml(model).c_str());
        for (int i = 0; i < 6; ++i) {
            const int id = random.pick({0, 1, 2, 3, 4, 5, 6, 65537, -1});
            const int depth = random.below(6) - 1;
            const int index = random.below(4);
            const bool recursive = !random.one_in(4);
            const Node* node = theme_node(model, id, depth, recursive);
            const bool hasChild = node != nullptr && index >= 1 &&
                                  static_cast<std::size_t>(index) <= node->children.size();
            TestTree other("<kept/>");
            UXXmlWrapperBase out = other;
            UXXmlWrapperBase child = other;

            EXPECT_EQ(uxtree_theme_tree_get_node_by_id(&out, &tree, id, depth, recursive),
                      node != nullptr ? 1 : 0);
            EXPECT_EQ(to_text(out), node != nullptr ? to_xml(*node) : other.text());
            EXPECT_EQ(
                uxtree_theme_tree_get_node_by_index(&child, &tree, id, index, depth, recursive),
                hasChild ? 1 : 0);
            EXPECT_EQ(to_text(child),
                      hasChild ? to_xml(node->children[static_cast<std::size_t>(index) - 1])
                               : other.text());
        }
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ": " << tree.text();
    }
}
