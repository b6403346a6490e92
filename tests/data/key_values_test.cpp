// Branches as key and value text, and the escapes in it.
#include "uxtree/data/key_values.h"

#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::TestTree;
using uxtest::tree_text;

// --- branch to text ----------------------------------------------------------------------------

TEST(uxtree_branch_to_key_value_pairs_str, EndsEveryPairWithThePairSeparator) {
    TestTree tree("<r>own<a>1</a><b>2</b><c/><d>x;=y<e>no</e></d></r>");
    CStringUTF8 out("old");

    EXPECT_EQ(uxtree_branch_to_key_value_pairs_str(&tree, &out, '=', ';'), 1);
    EXPECT_EQ(out, "a=1;b=2;c=;d=x;=y;");
}

TEST(uxtree_branch_to_key_value_pairs_str, EmptiesOutWhenThereIsNothing) {
    TestTree tree("<r>own</r>");
    UXXmlWrapperBase invalid;

    for (UXXmlWrapperBase* branch : std::vector<UXXmlWrapperBase*>{&tree, &invalid, nullptr}) {
        CStringUTF8 out("old");
        EXPECT_EQ(uxtree_branch_to_key_value_pairs_str(branch, &out, '=', ';'), 0);
        EXPECT_EQ(out, "");
    }
    EXPECT_EQ(uxtree_branch_to_key_value_pairs_str(&tree, nullptr, '=', ';'), 0);
}

// --- text to branch ----------------------------------------------------------------------------

using PairsOutcome = std::pair<int, std::string>;
PairsOutcome read(const char* text) {
    TestTree tree("<r k='1'>own<old/></r>");
    const int result = uxtree_key_value_pairs_str_to_branch(&tree, text, '=', ';');
    return {result, tree.text()};
}
PairsOutcome read_outcome(int result, const char* children) {
    return {result, tree_text((std::string("<r k='1'>own") + children + "</r>").c_str())};
}

TEST(uxtree_key_value_pairs_str_to_branch, ReplacesTheChildrenByTrimmedPairs) {
    EXPECT_EQ(read("a = 1 ; =x; b=2"), read_outcome(1, "<a>1</a><b>2</b>"));
    EXPECT_EQ(read("a=1;b=2;"), read_outcome(1, "<a>1</a><b>2</b>"));
    EXPECT_EQ(read("\t\n\r\v\fa\v\f=\t x y \r\n"), read_outcome(1, "<a>x y</a>"));
    EXPECT_EQ(read("a=b=c;d="), read_outcome(1, "<a>b=c</a><d/>"));
}

TEST(uxtree_key_value_pairs_str_to_branch, KeepsThePairSeparatorInQuotes) {
    EXPECT_EQ(read("a=\"1;2\";b=\"say \"\"hi\"\"\""),
              read_outcome(1, "<a>1;2</a><b>say \"hi\"</b>"));
    EXPECT_EQ(read("a=\"1;2"), read_outcome(1, "<a>1;2</a>"));
}

TEST(uxtree_key_value_pairs_str_to_branch, IgnoresPairsWithoutAKeyThatCanBeATag) {
    EXPECT_EQ(read("plain; =x;=y;1a=z;a b=w;;c=1"), read_outcome(1, "<c>1</c>"));
}

TEST(uxtree_key_value_pairs_str_to_branch, RemovesTheChildrenForATextWithoutPairs) {
    EXPECT_EQ(read(""), read_outcome(0, ""));
    EXPECT_EQ(read("no pairs"), read_outcome(0, ""));
}

// --- paths -------------------------------------------------------------------------------------

TEST(VCTreeGetPathStr, JoinsTheTagsFromTheTop) {
    TestTree tree("<r><a><b.c/></a></r>");
    UXXmlWrapperBase deep = tree.at("a/b.c");
    CStringUTF8 out;

    EXPECT_TRUE(VCTreeGetPathStr(out, &deep));
    EXPECT_EQ(out, "r.a.b.c");
    EXPECT_TRUE(VCTreeGetPathStr(out, &tree));
    EXPECT_EQ(out, "r");
    EXPECT_TRUE(deep == tree.at("a/b.c"));
}

TEST(VCTreeGetPathStr, EmptiesOutForUnusableNodes) {
    UXXmlWrapperBase invalid;
    CStringUTF8 out("old");

    EXPECT_FALSE(VCTreeGetPathStr(out, &invalid));
    EXPECT_EQ(out, "");
    out = "old";
    EXPECT_FALSE(VCTreeGetPathStr(out, nullptr));
    EXPECT_EQ(out, "");
}

std::string stamped(int recursive, int includeSelf) {
    TestTree tree("<r><a><b/><c p='old'/></a><d/></r>");
    EXPECT_EQ(uxtree_add_path_str(&tree, "p", recursive, includeSelf), 1);
    return tree.text();
}

TEST(uxtree_add_path_str, StampsTheBranchWithItsPaths) {
    EXPECT_EQ(stamped(1, 1), tree_text("<r p='r'><a p='r.a'><b p='r.a.b'/><c p='r.a.c'/></a>"
                                       "<d p='r.d'/></r>"));
    EXPECT_EQ(stamped(1, 0), tree_text("<r><a p='a'><b p='a.b'/><c p='a.c'/></a><d p='d'/></r>"));
    EXPECT_EQ(stamped(0, 1), tree_text("<r p='r'><a><b/><c p='old'/></a><d/></r>"));
    EXPECT_EQ(stamped(0, 0), tree_text("<r><a><b/><c p='old'/></a><d/></r>"));
}

TEST(uxtree_add_path_str, BeginsAtTheGivenNode) {
    TestTree tree("<r><a><b/></a></r>");
    UXXmlWrapperBase a = tree.at("a");

    EXPECT_EQ(uxtree_add_path_str(&a, "p", 1, 1), 1);
    EXPECT_EQ(tree.text(), tree_text("<r><a p='a'><b p='a.b'/></a></r>"));
}

TEST(uxtree_add_path_str, AddsNoEmptyPath) {
    TestTree tree("<r/>");

    EXPECT_EQ(uxtree_add_path_str(&tree, "", 1, 1), 0);
}

// --- escaped separators ------------------------------------------------------------------------

std::vector<std::string> rejoined(const std::vector<std::string>& tokens, bool keepEscapes = false,
                                  char separator = ',') {
    CWBOStringArray array = uxtest::string_list(tokens);
    vctree_convert_escape_character(array, separator, keepEscapes);
    return uxtest::texts(array);
}

TEST(vctree_convert_escape_character, JoinsATokenThatEndsInAnOddNumberOfBackslashes) {
    EXPECT_THAT(rejoined({"ab\\", "cd"}), ElementsAre("ab,cd"));
    EXPECT_THAT(rejoined({"ab\\\\", "cd"}), ElementsAre("ab\\", "cd"));
    EXPECT_THAT(rejoined({"ab\\\\\\", "cd"}), ElementsAre("ab\\,cd"));
    EXPECT_THAT(rejoined({"\\", "\\", "c", "d"}), ElementsAre(",,c", "d"));
    EXPECT_THAT(rejoined({"a", "b\\", "c", "d\\", "e", "f"}), ElementsAre("a", "b,c", "d,e", "f"));
}

TEST(vctree_convert_escape_character, KeepsDoubledBackslashesOnRequestButStillJoins) {
    EXPECT_THAT(rejoined({"ab\\\\", "cd"}, true), ElementsAre("ab\\\\", "cd"));
    EXPECT_THAT(rejoined({"a\\\\\\", "c"}, true), ElementsAre("a\\\\,c"));
}

// Token by token, each time over the whole text.
std::vector<std::string> plainly_joined(std::vector<std::string> tokens, char separator,
                                        bool keepEscapes) {
    std::size_t follower = tokens.size() - 1;
    for (std::size_t i = follower; i-- > 0;) {
        std::string token = tokens[i];
        const std::size_t text = token.find_last_not_of('\\') + 1;
        if ((token.size() - text) % 2 != 0) {
            token.back() = separator;
            token += tokens[follower];
        } else {
            --follower;
        }
        for (std::size_t at = 0; !keepEscapes && (at = token.find("\\\\", at)) != std::string::npos;
             ++at) {
            token.erase(at, 1);
        }
        tokens[follower] = token;
    }
    tokens.erase(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(follower));
    return tokens;
}

TEST(vctree_convert_escape_character, JoinsAsThePlainDefinitionDoes) {
    std::mt19937 random(11);
    for (int round = 0; round < 5000; ++round) {
        std::vector<std::string> tokens(1 + random() % 8);
        for (std::string& token : tokens) {
            for (auto i = random() % 6; i > 0; --i) token += "\\\\\\a,"[random() % 5];
        }
        const char separator = ",\\;"[random() % 3];
        const bool keepEscapes = random() % 2 == 0;
        CWBOStringArray array = uxtest::string_list(tokens);

        vctree_convert_escape_character(array, separator, keepEscapes);

        ASSERT_EQ(uxtest::texts(array), plainly_joined(tokens, separator, keepEscapes)) << round;
    }
}

TEST(vctree_convert_escape_character, UnescapesTheLastTokenOnlyWhenItIsTakenUp) {
    EXPECT_THAT(rejoined({"a", "b\\\\c"}), ElementsAre("a", "b\\\\c"));
    EXPECT_THAT(rejoined({"a\\", "b\\\\c"}), ElementsAre("a,b\\c"));
    EXPECT_THAT(rejoined({"a\\\\"}), ElementsAre("a\\\\"));
    EXPECT_THAT(rejoined({"a\\"}), ElementsAre("a\\"));
    EXPECT_THAT(rejoined({"a", "b\\"}), ElementsAre("a", "b\\"));
    EXPECT_THAT(rejoined({}), IsEmpty());
}

TEST(vctree_convert_escape_character, UnescapesATakenUpTextForTheSecondTime) {
    EXPECT_THAT(rejoined({"a\\", "b\\\\\\\\c", "d"}), ElementsAre("a,b\\c", "d"));
}

}  // namespace
