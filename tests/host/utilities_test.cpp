// Tokens and files.
#include "uxtree/host/utilities.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/test_tree.h"

using namespace uxtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const kMissing = nullptr;

std::vector<std::string> tokens(const char* text, char separator, char quote = '"') {
    CWBOStringArray array = string_list({"old"});
    const int count = UXGetTokens(array, text, separator, quote);
    EXPECT_EQ(count, array.GetSize());
    return texts(array);
}

// --- tokens ------------------------------------------------------------------------------------

TEST(UXGetTokens, SplitsAtTheSeparator) {
    EXPECT_THAT(tokens("a.bc.d", '.'), ElementsAre("a", "bc", "d"));
    EXPECT_THAT(tokens("abc", '.'), ElementsAre("abc"));
}

TEST(UXGetTokens, KeepsEmptyTokens) {
    EXPECT_THAT(tokens(".", '.'), ElementsAre("", ""));
    EXPECT_THAT(tokens(".a..b.", '.'), ElementsAre("", "a", "", "b", ""));
}

TEST(UXGetTokens, FindsNoneInAnEmptyOrNullText) {
    EXPECT_THAT(tokens("", '.'), IsEmpty());
    EXPECT_THAT(tokens(kMissing, '.'), IsEmpty());
    EXPECT_THAT(tokens("", ' '), IsEmpty());
    EXPECT_THAT(tokens(kMissing, ' '), IsEmpty());
}

TEST(UXGetTokens, QuotesTurnSeparatorsIntoText) {
    EXPECT_THAT(tokens("\"a.b\".c", '.'), ElementsAre("a.b", "c"));
    EXPECT_THAT(tokens("a\".\"b.c", '.'), ElementsAre("a.b", "c"));
    EXPECT_THAT(tokens("a.'b.c'", '.', '\''), ElementsAre("a", "b.c"));
}

TEST(UXGetTokens, RemovesQuotesAnywhereInAToken) {
    EXPECT_THAT(tokens("a\"b\"c.d", '.'), ElementsAre("abc", "d"));
    EXPECT_THAT(tokens("\"\"", '.'), ElementsAre(""));
    EXPECT_THAT(tokens("\"\".\"\"", '.'), ElementsAre("", ""));
}

TEST(UXGetTokens, ADoubledQuoteInsideQuotesIsOneQuote) {
    EXPECT_THAT(tokens("\"a\"\"b\".c", '.'), ElementsAre("a\"b", "c"));
    EXPECT_THAT(tokens("\"\"\"\"", '.'), ElementsAre("\""));
    EXPECT_THAT(tokens("\"a\"\"\"", '.'), ElementsAre("a\""));
    EXPECT_THAT(tokens("a\"\"b", '.'), ElementsAre("ab"));  // outside: opened and closed
}

TEST(UXGetTokens, AnUnclosedQuoteRunsToTheEnd) {
    EXPECT_THAT(tokens("a.\"b.c", '.'), ElementsAre("a", "b.c"));
    EXPECT_THAT(tokens("a.\"", '.'), ElementsAre("a", ""));
    EXPECT_THAT(tokens("\"a\"\".b", '.'), ElementsAre("a\".b"));
    EXPECT_THAT(tokens("\"a.", '.'), ElementsAre("a."));
}

TEST(UXGetTokens, AZeroQuoteMeansNoQuoting) {
    EXPECT_THAT(tokens("\"a.b\"", '.', '\0'), ElementsAre("\"a", "b\""));
}

TEST(UXGetTokens, AZeroSeparatorLeavesOneToken) {
    EXPECT_THAT(tokens("a.b c", '\0'), ElementsAre("a.b c"));
}

TEST(UXGetTokens, ABlankSeparatesAtRunsOfWhiteSpace) {
    EXPECT_THAT(tokens(" a  b\t\r\n c ", ' '), ElementsAre("a", "b", "c"));
    EXPECT_THAT(tokens(" \t\r\n", ' '), IsEmpty());
    EXPECT_THAT(tokens("a\vb\fc", ' '), ElementsAre("a\vb\fc"));
}

TEST(UXGetTokens, ABlankKeepsQuotedWhiteSpaceButNoEmptyToken) {
    EXPECT_THAT(tokens("\"a b\" c", ' '), ElementsAre("a b", "c"));
    EXPECT_THAT(tokens("a \"\" b", ' '), ElementsAre("a", "b"));
}

TEST(UXGetTokens, AnotherSeparatorLeavesWhiteSpaceAlone) {
    EXPECT_THAT(tokens(" a , b\t", ','), ElementsAre(" a ", " b\t"));
    EXPECT_THAT(tokens("a\t b", '\t'), ElementsAre("a", " b"));
}

TEST(UXGetTokens, TextMayBeOneOfTheOldTokens) {
    CWBOStringArray array = string_list({"a.b", "x"});

    EXPECT_EQ(UXGetTokens(array, array[0], '.', 0), 2);

    EXPECT_THAT(texts(array), ElementsAre("a", "b"));
}

TEST(UXSeparateByString, SplitsAtEveryOccurrenceAndKeepsEmptyPieces) {
    CWBOStringArray pieces = string_list({"old"});

    EXPECT_EQ(UXSeparateByString(pieces, "a::b::::c", "::"), 4);
    EXPECT_THAT(texts(pieces), ElementsAre("a", "b", "", "c"));
    EXPECT_EQ(UXSeparateByString(pieces, "::", "::"), 2);
    EXPECT_THAT(texts(pieces), ElementsAre("", ""));
    EXPECT_EQ(UXSeparateByString(pieces, "|a|", "|"), 3);
    EXPECT_THAT(texts(pieces), ElementsAre("", "a", ""));
    EXPECT_EQ(UXSeparateByString(pieces, ":::", "::"), 2);
    EXPECT_THAT(texts(pieces), ElementsAre("", ":"));
}

TEST(UXSeparateByString, KnowsNoQuotes) {
    CWBOStringArray pieces;

    EXPECT_EQ(UXSeparateByString(pieces, "\"a|b\"", "|"), 2);

    EXPECT_THAT(texts(pieces), ElementsAre("\"a", "b\""));
}

TEST(UXSeparateByString, AnEmptyTextHasNoPieces) {
    CWBOStringArray pieces = string_list({"old"});

    EXPECT_EQ(UXSeparateByString(pieces, "", "|"), 0);
    EXPECT_THAT(texts(pieces), IsEmpty());
    pieces = string_list({"old"});
    EXPECT_EQ(UXSeparateByString(pieces, kMissing, "|"), 0);
    EXPECT_THAT(texts(pieces), IsEmpty());
}

TEST(UXSeparateByString, WithoutSeparatorThereIsOnePiece) {
    CWBOStringArray pieces;

    EXPECT_EQ(UXSeparateByString(pieces, "abc", ""), 1);
    EXPECT_THAT(texts(pieces), ElementsAre("abc"));
    EXPECT_EQ(UXSeparateByString(pieces, "abc", kMissing), 1);
    EXPECT_THAT(texts(pieces), ElementsAre("abc"));
}

TEST(UXSeparateByString, TextMayBeOneOfTheOldPieces) {
    CWBOStringArray pieces = string_list({"x", "a|b"});

    EXPECT_EQ(UXSeparateByString(pieces, pieces[1], "|"), 2);

    EXPECT_THAT(texts(pieces), ElementsAre("a", "b"));
}

TEST(UXJoinTokens, PutsTheSeparatorBetween) {
    CStringUTF8 out("old");

    EXPECT_EQ(UXJoinTokens(out, string_list({"a", "", "c"}), ", "), 3);
    EXPECT_STREQ(out, "a, , c");
    EXPECT_EQ(UXJoinTokens(out, string_list({"a"}), ", "), 1);
    EXPECT_STREQ(out, "a");
    EXPECT_EQ(UXJoinTokens(out, string_list({"a", "b"}), kMissing), 2);
    EXPECT_STREQ(out, "ab");
    EXPECT_EQ(UXJoinTokens(out, CWBOStringArray(), ", "), 0);
    EXPECT_STREQ(out, "");
}

TEST(UXJoinTokens, OutMayBeATokenOrTheSeparator) {
    CWBOStringArray array = string_list({"a", "b"});
    CStringUTF8 separator("-");

    EXPECT_EQ(UXJoinTokens(array[0], array, "+"), 2);
    EXPECT_THAT(texts(array), ElementsAre("a+b", "b"));
    EXPECT_EQ(UXJoinTokens(separator, string_list({"x", "y", "z"}), separator), 3);
    EXPECT_STREQ(separator, "x-y-z");
}

// --- files -------------------------------------------------------------------------------------

TEST(UXAccess, IsZeroForAReadableFile) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    ASSERT_EQ(symlink(folder.path("file").c_str(), folder.path("link").c_str()), 0);

    EXPECT_EQ(UXAccess(folder.path("file").c_str(), 0), 0);
    EXPECT_EQ(UXAccess(folder.path("file").c_str(), 4), 0);
    EXPECT_EQ(UXAccess(folder.path("link").c_str(), 0), 0);
}

TEST(UXAccess, IsMinusOneForEverythingElse) {
    const TemporaryFolder folder;
    std::string folderItself = folder.path("");
    folderItself.pop_back();
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);

    EXPECT_EQ(UXAccess(kMissing, 0), -1);
    EXPECT_EQ(UXAccess("", 0), -1);
    EXPECT_EQ(UXAccess(folder.path("missing").c_str(), 0), -1);
    EXPECT_EQ(UXAccess(folderItself.c_str(), 0), -1);
    EXPECT_EQ(UXAccess(folder.path("pipe").c_str(), 0), -1);
    EXPECT_EQ(UXAccess("/dev/null", 0), -1);
}

// Acts as a user without rights, when root runs the tests.
class PlainUser {
public:
    PlainUser() : switched_(geteuid() == 0 && seteuid(65534) == 0) {}
    ~PlainUser() {
        if (switched_ && seteuid(0) != 0) std::abort();
    }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;

private:
    bool switched_;
};

TEST(UXAccess, IsMinusOneForAFileThatMayNotBeRead) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    ASSERT_EQ(chmod(folder.path("").c_str(), 0755), 0);
    ASSERT_EQ(chmod(folder.path("file").c_str(), 0644), 0);
    {
        const PlainUser user;
        EXPECT_EQ(UXAccess(folder.path("file").c_str(), 0), 0);
    }
    ASSERT_EQ(chmod(folder.path("file").c_str(), 0200), 0);
    {
        const PlainUser user;
        EXPECT_EQ(UXAccess(folder.path("file").c_str(), 0), -1);
    }
}

}  // namespace
