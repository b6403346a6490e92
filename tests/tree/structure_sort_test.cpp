// Sorting children, and the order that the exchange sort gives.
#include <climits>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/tree/structure.h"

#include "support/test_tree.h"
#include "tree/exchange_order_detail.h"

using namespace uxtest;

namespace {

std::string sorted(const char* tree, int ascending) {
    TestTree parsed(tree);
    EXPECT_TRUE(uxtree_sort_children_by_int_attribute(&parsed, "k", ascending));
    return parsed.text();
}

// The exchange sort itself, on whole nodes.
void exchange_sort(UXXmlWrapperBase& parent, const char* name, bool ascending) {
    const auto content_of = [](UXXmlWrapperBase& node) {
        UXXmlWrapperBase copy;
        node.Clone(&copy, 1);
        return copy;
    };
    for (int i = 0; i < parent.GetNodeCount(); ++i) {
        for (int j = i + 1; j < parent.GetNodeCount(); ++j) {
            UXXmlWrapperBase a;
            UXXmlWrapperBase b;
            int keyA = 0;
            int keyB = 0;
            parent.GetChild(&a, i);
            parent.GetChild(&b, j);
            if (!a.GetPropertyValue(name, keyA, 0) || !b.GetPropertyValue(name, keyB, 0)) continue;
            if (ascending ? keyA <= keyB : keyA >= keyB) continue;
            UXXmlWrapperBase saved = content_of(a);
            a.ReplaceByNodeCopy(&b, 1, 0);
            b.ReplaceByNodeCopy(&saved, 1, 0);
        }
    }
}

TEST(uxtree_sort_children_by_int_attribute, DescendingPutsTheLargestFirst) {
    EXPECT_EQ(sorted("<r><a k='1'/><b k='3'/><c k='2'/></r>", 0),
              tree_text("<r><b k='3'/><c k='2'/><a k='1'/></r>"));
}

TEST(uxtree_sort_children_by_int_attribute, AscendingPutsTheSmallestFirst) {
    EXPECT_EQ(sorted("<r><a k='2147483647'/><b k='-2147483648'/><c k='0'/><d k='-1'/></r>", 1),
              tree_text("<r><b k='-2147483648'/><d k='-1'/><c k='0'/><a k='2147483647'/></r>"));
}

TEST(uxtree_sort_children_by_int_attribute, IsNotStable) {
    EXPECT_EQ(sorted("<r><a k='2'/><b k='2'/><c k='1'/></r>", 1),
              tree_text("<r><c k='1'/><b k='2'/><a k='2'/></r>"));
}

TEST(uxtree_sort_children_by_int_attribute, ChildrenWithoutTheIntegerKeepTheirPlaces) {
    EXPECT_EQ(sorted("<r><a k='3'/><x/><b k='2'/><y k='text'/><c k='1'/></r>", 1),
              tree_text("<r><c k='1'/><x/><b k='2'/><y k='text'/><a k='3'/></r>"));
}

TEST(uxtree_sort_children_by_int_attribute, WholeContentsGoAlong) {
    EXPECT_EQ(sorted("<r><a k='2' _ux_id='5'>t<x><y/></x></a><b k='1'/></r>", 1),
              tree_text("<r><b k='1'/><a k='2' _ux_id='5'>t<x><y/></x></a></r>"));
}

TEST(uxtree_sort_children_by_int_attribute, HandlesKeepTheirPlacesAndSeeWhatStandsThere) {
    TestTree tree("<r><a k='2'><x/></a><b k='1'/><c k='3'><z/></c></r>");
    UXXmlWrapperBase first = tree.at("a");
    UXXmlWrapperBase moved = tree.at("a/x");
    UXXmlWrapperBase stayed = tree.at("c/z");

    EXPECT_TRUE(uxtree_sort_children_by_int_attribute(&tree, "k", 1));

    EXPECT_EQ(to_text(first), tree_text("<b k='1'/>"));
    EXPECT_TRUE(first == tree.at("b"));
    EXPECT_FALSE(moved.IsNodeValid());
    EXPECT_TRUE(stayed == tree.at("c/z"));
}

TEST(uxtree_sort_children_by_int_attribute, TwoChildrenWithoutTheAttributeAreEnough) {
    EXPECT_EQ(sorted("<r><a/><b/></r>", 1), tree_text("<r><a/><b/></r>"));
}

TEST(uxtree_sort_children_by_int_attribute, FailsForASingleChildOrWithoutAName) {
    TestTree tree("<r><a k='2'><x k='1'/></a><b k='1'/></r>");
    UXXmlWrapperBase single = tree.at("a");

    EXPECT_FALSE(uxtree_sort_children_by_int_attribute(&single, "k", 1));
    EXPECT_FALSE(uxtree_sort_children_by_int_attribute(&tree, "", 1));

    EXPECT_EQ(tree.text(), tree_text("<r><a k='2'><x k='1'/></a><b k='1'/></r>"));
}

TEST(uxtree_sort_children_by_int_attribute, EqualsTheExchangeSortOnRandomTrees) {
    std::mt19937 random(20);
    for (int round = 0; round < 150; ++round) {
        std::string text = "<r>";
        const auto count = 2 + random() % 14;
        for (unsigned long i = 0; i < count; ++i) {
            const std::string tag = "n" + std::to_string(i);
            const std::string key =
                random() % 5 == 0 ? "" : " k='" + std::to_string(random() % 6) + "'";
            text += "<" + tag + key + "><c/>" + std::to_string(i) + "</" + tag + ">";
        }
        text += "</r>";
        TestTree model(text.c_str());
        TestTree tree(text.c_str());
        const bool ascending = random() % 2 == 0;

        exchange_sort(model, "k", ascending);
        EXPECT_TRUE(uxtree_sort_children_by_int_attribute(&tree, "k", ascending ? 1 : 0));

        ASSERT_EQ(tree.text(), model.text()) << text;
    }
}

std::vector<std::uint32_t> exchanged(const std::vector<std::uint32_t>& keys) {
    std::vector<std::uint32_t> items(keys.size());
    for (std::uint32_t i = 0; i < items.size(); ++i) items[i] = i;
    for (std::size_t i = 0; i < items.size(); ++i) {
        for (std::size_t j = i + 1; j < items.size(); ++j) {
            if (keys[items[i]] > keys[items[j]]) std::swap(items[i], items[j]);
        }
    }
    return items;
}

// The numbers of the items in the order of exchange_sort; the items are numbered with a gap of two.
std::vector<std::uint32_t> exchange_sorted(const std::vector<std::uint32_t>& keys) {
    ux::LargeVector<ux::KeyedItem> items;
    for (const std::uint32_t key : keys) {
        items.push_back({key, static_cast<std::uint32_t>(3 * items.size() + 1)});
    }
    ux::exchange_sort(items);
    std::vector<std::uint32_t> order;
    for (const ux::KeyedItem& item : items) {
        EXPECT_EQ(keys[item.number / 3], item.key);
        order.push_back(item.number / 3);
    }
    return order;
}

TEST(exchange_sort, EqualsTheExchangesForEveryShortSequence) {
    for (std::uint32_t number = 0; number < 5 * 5 * 5 * 5 * 5 * 5; ++number) {
        std::vector<std::uint32_t> keys;
        for (std::uint32_t rest = number; keys.size() < 6; rest /= 5) keys.push_back(rest % 5);
        ASSERT_EQ(exchange_sorted(keys), exchanged(keys)) << number;
    }
}

TEST(exchange_sort, EqualsTheExchangesForRandomSequences) {
    std::mt19937 random(7);
    for (int round = 0; round < 1500; ++round) {
        std::vector<std::uint32_t> keys(random() % 90);
        const auto different = static_cast<std::uint32_t>(1 + random() % 30);
        for (std::uint32_t& key : keys) key = static_cast<std::uint32_t>(random() % different);
        ASSERT_EQ(exchange_sorted(keys), exchanged(keys));
    }
}

TEST(exchange_sort, EqualsTheExchangesForLongSequences) {
    std::mt19937 random(8);
    for (const std::uint32_t different : {1U, 2U, 3U, 10U, 40U, 300U, 3000U, 1U << 31}) {
        for (const std::size_t size : {255U, 256U, 257U, 2000U}) {
            std::vector<std::uint32_t> keys(size);
            for (std::uint32_t& key : keys) key = static_cast<std::uint32_t>(random()) % different;
            ASSERT_EQ(exchange_sorted(keys), exchanged(keys)) << different;
        }
    }
}

}  // namespace
