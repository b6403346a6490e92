// Change marks of random trees, compared with a plain list of values.
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/data/changes.h"

#include "support/random_tree.h"
#include "support/test_tree.h"

namespace {

using uxtest::RandomTree;
using uxtest::Vocabulary;

const Vocabulary kWords{{"a", "b"}, {"OldValue", "OldName"}, {"", "1", "2", "text"}, {0}};

// The nodes below top, in document order.
void list_below(const UXXmlWrapperBase& top, std::vector<UXXmlWrapperBase>& out) {
    for (int i = 0; i < top.GetNodeCount(); ++i) {
        UXXmlWrapperBase child;
        top.GetChild(&child, i);
        out.push_back(child);
        list_below(child, out);
    }
}

std::string value_of(UXXmlWrapperBase& node) {
    CStringUTF8 text;
    if (node.GetNodeCount() == 0) node.NodeValue(text, 1, 1, nullptr);
    return static_cast<const char*>(text);
}

std::optional<std::string> mark_of(const UXXmlWrapperBase& node) {
    CStringUTF8 text;
    if (!node.GetPropertyValue("OldValue", text, 0)) return std::nullopt;
    return static_cast<const char*>(text);
}

}  // namespace

TEST(VCTreeUpdateChanges, MarksWhatThePlainComparisonFinds) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        RandomTree random(seed, kWords);
        UXXmlWrapperBase root = random.root();
        std::vector<UXXmlWrapperBase> nodes;
        list_below(root, nodes);
        CWBOStringArray old;
        const int length = random.number(0, static_cast<int>(nodes.size()) + 2);
        for (int i = 0; i < length; ++i) old.Add(CStringUTF8(random.value().c_str()));
        std::vector<std::optional<std::string>> expected(nodes.size());
        int count = 0;
        for (std::size_t i = 0; i < nodes.size() && static_cast<int>(i) < length; ++i) {
            const std::string before = static_cast<const char*>(old[static_cast<int>(i)]);
            if (before == value_of(nodes[i])) continue;
            expected[i] = before;
            ++count;
        }

        EXPECT_EQ(VCTreeUpdateChanges(&root, &old), count);

        for (std::size_t i = 0; i < nodes.size(); ++i) EXPECT_EQ(mark_of(nodes[i]), expected[i]);
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ": " << uxtest::to_text(root);
    }
}
