// Inputs that once took time by the square of their size. The bounds are generous: what is linear
// takes a small part of them on any machine, also under sanitizers, and the square many times as
// much.
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/uxtree_Utils.h"

#include "data/id_index.h"
#include "support/test_tree.h"

namespace {

using uxtest::TestTree;

class Stopwatch {
public:
    double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

std::string with_attributes(int count) {
    std::string text = "<r";
    for (int i = 0; i < count; ++i) text += " a" + std::to_string(i) + "='1'";
    return text + " DataID='7'/>";
}

}  // namespace

TEST(Costs, ManyAttributesOfOneElementAreStrippedInOnePass) {
    TestTree tree(with_attributes(150000).c_str());
    const Stopwatch watch;

    uxtree_polish_tree_keep_DataID(&tree);

    EXPECT_LT(watch.seconds(), 3);
    EXPECT_EQ(tree.text(), "<r DataID=\"7\"></r>");
}

TEST(Costs, ManyAttributesOfOneElementAreCopiedInOnePass) {
    TestTree from(with_attributes(150000).c_str());
    TestTree to("<t a1='0' b='0'/>");
    const Stopwatch watch;

    EXPECT_EQ(to.CopyAllAttributes(from, 1), 1);
    EXPECT_EQ(to.CopyAllAttributes(from, 1), 1);

    EXPECT_LT(watch.seconds(), 3);
    CWBOStringArray names;
    to.GetPropertyNames(names);
    EXPECT_EQ(names.GetSize(), 150002);
    EXPECT_EQ(uxtest::texts(names)[2], "a0");
}

// Identifiers that a multiplication with the golden ratio puts into one place of a table.
TEST(Costs, ChosenIdentifiersAreFoundAsFastAsOthers) {
    constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15U;
    CArray<int, int> ids;
    for (std::uint64_t key = 0; ids.GetSize() < 65536; ++key) {
        if ((key * kGoldenRatio) >> 50 != 0) continue;
        for (unsigned low = 0; low < 16; ++low) ids.Add(static_cast<int>(key << 4 | low));
    }
    ids.Add(ids[0]);
    const Stopwatch watch;

    ux::IdIndex index(ids);

    EXPECT_EQ(index.first_repeated(), 0);
    EXPECT_EQ(index.find(ids[65000]), 65000);
    EXPECT_LT(watch.seconds(), 1);
}

TEST(Costs, AChainOfEscapedTokensIsJoinedInOnePass) {
    constexpr int kTokens = 50000;
    CWBOStringArray tokens;
    for (int i = 0; i < kTokens; ++i) tokens.Add("0123456789012345678901234567890123456789\\");
    tokens.Add("end");
    const Stopwatch watch;

    vctree_convert_escape_character(tokens, ',', false);

    EXPECT_LT(watch.seconds(), 3);
    ASSERT_EQ(tokens.GetSize(), 1);
    EXPECT_EQ(tokens[0].GetLength(), kTokens * 41 + 3);
}

TEST(Costs, AReplacedLabelThatWouldGrowBeyondAllMeasureIsRefused) {
    std::string text;
    for (int i = 0; i < 50000; ++i) text += "(A)";
    CStringUTF8 label((text + "B").c_str());
    CStringUTF8 out;
    UXScriptArray<CWBOStringArray> find(uxtest::string_list({"B", "A"}));
    UXScriptArray<CWBOStringArray> replacements(uxtest::string_list({"x"}));
    const Stopwatch watch;

    EXPECT_FALSE(uxtree_get_replaced_combined_label(&out, &label, &find, &replacements, nullptr));

    EXPECT_LT(watch.seconds(), 3);
    EXPECT_EQ(out, label);
}
