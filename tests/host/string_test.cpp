// Strings of the host.
#include "uxtree/host/string.h"

#include <climits>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "uxtree/host/utilities.h"

#include "support/test_tree.h"

namespace {
std::string text_of(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}

const char* const kNoText = nullptr;

static_assert(std::is_nothrow_move_constructible_v<CStringUTF8>);
static_assert(std::is_nothrow_move_assignable_v<CStringUTF8>);

TEST(CStringUTF8, IsEmptyWhenMadeFromNothingOrFromNull) {
    const CStringUTF8 nothing;
    const CStringUTF8 null(kNoText);

    EXPECT_EQ(nothing.GetLength(), 0);
    EXPECT_TRUE(nothing.IsEmpty());
    EXPECT_STREQ(nothing, "");
    EXPECT_EQ(null.GetLength(), 0);
    EXPECT_STREQ(null, "");
}

TEST(CStringUTF8, RepeatsACharacter) {
    EXPECT_STREQ(CStringUTF8('x', 3), "xxx");
    EXPECT_STREQ(CStringUTF8('x', 0), "");
    EXPECT_STREQ(CStringUTF8('x', -1), "");
    EXPECT_STREQ(CStringUTF8('x', INT_MIN), "");
}

TEST(CStringUTF8, CountsBytesNotCharacters) {
    EXPECT_EQ(CStringUTF8("\xC3\xA9").GetLength(), 2);
}

TEST(CStringUTF8, CopiesAreIndependent) {
    CStringUTF8 a("one");
    CStringUTF8 b(a);
    CStringUTF8 c;
    c = a;

    a.SetAt(0, 'X');

    EXPECT_STREQ(a, "Xne");
    EXPECT_STREQ(b, "one");
    EXPECT_STREQ(c, "one");
}

TEST(CStringUTF8, MovesItsText) {
    CStringUTF8 a("a text too long for any small buffer inside");
    CStringUTF8 b(std::move(a));
    CStringUTF8 c;
    c = std::move(b);

    EXPECT_STREQ(c, "a text too long for any small buffer inside");
}

TEST(CStringUTF8, AssignsTextNullAndCharacter) {
    CStringUTF8 text("before");

    text = "after";
    EXPECT_STREQ(text, "after");
    text = 'c';
    EXPECT_STREQ(text, "c");
    text = kNoText;
    EXPECT_STREQ(text, "");
}

TEST(CStringUTF8, AssignsItselfAndPiecesOfItself) {
    CStringUTF8 text("abcdef");
    CStringUTF8& same = text;

    text = same;
    EXPECT_STREQ(text, "abcdef");
    text = static_cast<const char*>(text) + 2;
    EXPECT_STREQ(text, "cdef");
    text.Assign(static_cast<const char*>(text) + 1, 2);
    EXPECT_STREQ(text, "de");
}

TEST(CStringUTF8, AssignTakesBytesWithoutAnEnd) {
    CStringUTF8 text("old");
    const char bytes[] = {'a', '\0', 'b'};

    text.Assign(bytes, sizeof bytes);
    EXPECT_EQ(text_of(text), std::string("a\0b", 3));
    text.Assign(kNoText, 5);
    EXPECT_EQ(text_of(text), "");
}

TEST(CStringUTF8, AppendsEveryKindOfText) {
    CStringUTF8 text("a");

    text += CStringUTF8("b");
    text += "c";
    text += 'd';
    text += kNoText;
    text.Append("e");
    text.Append(kNoText);
    text.AppendChar('f');

    EXPECT_STREQ(text, "abcdef");
}

TEST(CStringUTF8, AppendsItselfAndPiecesOfItself) {
    CStringUTF8 text("ab");
    for (int i = 0; i < 6; ++i) {
        const CStringUTF8& same = text;
        text += same;
    }
    EXPECT_EQ(text.GetLength(), 128);

    CStringUTF8 tail("0123456789abcdef");  // the append must move the text to a larger place
    tail += static_cast<const char*>(tail) + 10;
    EXPECT_STREQ(tail, "0123456789abcdefabcdef");
    tail.Append(tail);
    EXPECT_STREQ(tail, "0123456789abcdefabcdef0123456789abcdefabcdef");
}

TEST(CStringUTF8, EmptyDropsTheText) {
    CStringUTF8 text("abc");

    text.Empty();

    EXPECT_TRUE(text.IsEmpty());
    EXPECT_STREQ(text, "");
}

TEST(CStringUTF8, ReadsAndWritesCharacters) {
    CStringUTF8 text("abc");

    text.SetAt(2, 'X');

    EXPECT_EQ(text.GetAt(0), 'a');
    EXPECT_EQ(text[2], 'X');
    EXPECT_STREQ(text, "abX");
}

TEST(CStringUTF8, ThrowsForIndexOutsideTheText) {
    CStringUTF8 text("abc");

    EXPECT_THROW(text.GetAt(-1), std::invalid_argument);
    EXPECT_THROW(text.GetAt(3), std::invalid_argument);
    EXPECT_THROW(text[3], std::invalid_argument);
    EXPECT_THROW(text[INT_MIN], std::invalid_argument);
    EXPECT_THROW(text.SetAt(-1, 'x'), std::invalid_argument);
    EXPECT_THROW(text.SetAt(3, 'x'), std::invalid_argument);
    EXPECT_THROW(CStringUTF8().GetAt(0), std::invalid_argument);
    EXPECT_STREQ(text, "abc");
}

TEST(CStringUTF8, GivesABufferAndCutsAtTheFirstNul) {
    CStringUTF8 text("ab");
    char* const buffer = text.GetBuffer(10);
    EXPECT_STREQ(buffer, "ab");

    std::strcpy(buffer, "written");
    text.ReleaseBuffer();

    EXPECT_STREQ(text, "written");
    EXPECT_EQ(text.GetLength(), 7);
}

TEST(CStringUTF8, AFullBufferIsKeptWhole) {
    CStringUTF8 text;
    std::memset(text.GetBuffer(4), 'x', 4);

    text.ReleaseBuffer();

    EXPECT_STREQ(text, "xxxx");
}

TEST(CStringUTF8, ReleaseBufferCutsToTheGivenLength) {
    CStringUTF8 text("abcdef");

    text.GetBuffer();
    text.ReleaseBuffer(2);
    EXPECT_STREQ(text, "ab");
    text.GetBuffer(-5);
    text.ReleaseBuffer(100);
    EXPECT_STREQ(text, "ab");
    text.GetBuffer(5);
    text.ReleaseBuffer(0);
    EXPECT_STREQ(text, "");
}

TEST(CStringUTF8, ComparesBytesUnsigned) {
    EXPECT_EQ(CStringUTF8("abc").Compare("abc"), 0);
    EXPECT_LT(CStringUTF8("abc").Compare("abd"), 0);
    EXPECT_GT(CStringUTF8("abd").Compare("abc"), 0);
    EXPECT_LT(CStringUTF8("ab").Compare("abc"), 0);
    EXPECT_GT(CStringUTF8("\xC3\xA9").Compare("z"), 0);
    EXPECT_NE(CStringUTF8("a").Compare("A"), 0);
    EXPECT_EQ(CStringUTF8("").Compare(kNoText), 0);
    EXPECT_GT(CStringUTF8("a").Compare(kNoText), 0);
}

TEST(CStringUTF8, CompareNoCaseFoldsAsciiOnly) {
    EXPECT_EQ(CStringUTF8("AbC").CompareNoCase("aBc"), 0);
    EXPECT_NE(CStringUTF8("\xC3\xA9").CompareNoCase("\xC3\x89"), 0);  // e and E with acute accent
    EXPECT_NE(CStringUTF8("[").CompareNoCase("{"), 0);
    EXPECT_NE(CStringUTF8("@").CompareNoCase("`"), 0);
    EXPECT_LT(CStringUTF8("a").CompareNoCase("B"), 0);
    EXPECT_GT(CStringUTF8("B").CompareNoCase("a"), 0);
    EXPECT_LT(CStringUTF8("AB").CompareNoCase("abc"), 0);
    EXPECT_GT(CStringUTF8("abc").CompareNoCase("AB"), 0);
    EXPECT_GT(CStringUTF8("\xC3").CompareNoCase("z"), 0);
    EXPECT_EQ(CStringUTF8().CompareNoCase(kNoText), 0);
}

TEST(CStringUTF8, FindsCharacters) {
    const CStringUTF8 text("banana");

    EXPECT_EQ(text.Find('a'), 1);
    EXPECT_EQ(text.Find('a', 2), 3);
    EXPECT_EQ(text.Find('a', 6), -1);
    EXPECT_EQ(text.Find('x'), -1);
    EXPECT_EQ(text.Find('b', -3), 0);
    EXPECT_EQ(text.Find('b', INT_MAX), -1);
    EXPECT_EQ(text.ReverseFind('a'), 5);
    EXPECT_EQ(text.ReverseFind('x'), -1);
    EXPECT_EQ(CStringUTF8().ReverseFind('x'), -1);
}

TEST(CStringUTF8, FindsTexts) {
    const CStringUTF8 text("banana");

    EXPECT_EQ(text.Find("ana"), 1);
    EXPECT_EQ(text.Find("ana", 2), 3);
    EXPECT_EQ(text.Find("ana", 4), -1);
    EXPECT_EQ(text.Find("bananas"), -1);
    EXPECT_EQ(text.Find("b", -1), 0);
    EXPECT_EQ(CStringUTF8().Find("a"), -1);
}

TEST(CStringUTF8, FindsTheEmptyTextAtStart) {
    const CStringUTF8 text("abc");

    EXPECT_EQ(text.Find(""), 0);
    EXPECT_EQ(text.Find("", 2), 2);
    EXPECT_EQ(text.Find("", 3), 3);
    EXPECT_EQ(text.Find("", 100), 3);
    EXPECT_EQ(text.Find(kNoText, 1), 1);
    EXPECT_EQ(CStringUTF8().Find(""), 0);
}

TEST(CStringUTF8, CutsPiecesClipped) {
    const CStringUTF8 text("abcdef");

    EXPECT_STREQ(text.Mid(2), "cdef");
    EXPECT_STREQ(text.Mid(6), "");
    EXPECT_STREQ(text.Mid(99), "");
    EXPECT_STREQ(text.Mid(-1), "abcdef");
    EXPECT_STREQ(text.Mid(2, 3), "cde");
    EXPECT_STREQ(text.Mid(4, 99), "ef");
    EXPECT_STREQ(text.Mid(4, INT_MAX), "ef");
    EXPECT_STREQ(text.Mid(2, -1), "");
    EXPECT_STREQ(text.Mid(-2, 3), "abc");
    EXPECT_STREQ(text.Left(2), "ab");
    EXPECT_STREQ(text.Left(99), "abcdef");
    EXPECT_STREQ(text.Left(-1), "");
    EXPECT_STREQ(text.Right(2), "ef");
    EXPECT_STREQ(text.Right(99), "abcdef");
    EXPECT_STREQ(text.Right(-1), "");
}

TEST(CStringUTF8, APieceMayReplaceItsOwnText) {
    CStringUTF8 text("abcdef");

    text = text.Mid(1, 3);

    EXPECT_STREQ(text, "bcd");
}

TEST(CStringUTF8, InsertYieldsTheNewLengthAndClipsThePosition) {
    CStringUTF8 text("bd");

    EXPECT_EQ(text.Insert(1, 'c'), 3);
    EXPECT_EQ(text.Insert(-5, 'a'), 4);
    EXPECT_EQ(text.Insert(99, "ef"), 6);
    EXPECT_EQ(text.Insert(3, kNoText), 6);
    EXPECT_EQ(text.Insert(3, ""), 6);
    EXPECT_STREQ(text, "abcdef");
}

TEST(CStringUTF8, InsertsItself) {
    CStringUTF8 text("0123456789abcdef");

    EXPECT_EQ(text.Insert(8, static_cast<const char*>(text)), 32);

    EXPECT_STREQ(text, "012345670123456789abcdef89abcdef");
}

TEST(CStringUTF8, DeleteYieldsTheNewLengthAndClips) {
    CStringUTF8 text("abcdef");

    EXPECT_EQ(text.Delete(1), 5);
    EXPECT_STREQ(text, "acdef");
    EXPECT_EQ(text.Delete(3, 99), 3);
    EXPECT_STREQ(text, "acd");
    EXPECT_EQ(text.Delete(9), 3);
    EXPECT_EQ(text.Delete(0, -1), 3);
    EXPECT_EQ(text.Delete(0, 0), 3);
    EXPECT_EQ(text.Delete(-1, 2), 1);
    EXPECT_STREQ(text, "d");
}

TEST(CStringUTF8, ReplaceGoesLeftToRightWithoutRescanning) {
    CStringUTF8 overlapping("aaaaa");
    CStringUTF8 growing("a.a");

    EXPECT_EQ(overlapping.Replace("aa", "b"), 2);
    EXPECT_STREQ(overlapping, "bba");
    EXPECT_EQ(growing.Replace("a", "aa"), 2);
    EXPECT_STREQ(growing, "aa.aa");
}

TEST(CStringUTF8, ReplaceShortensLengthensAndRemoves) {
    CStringUTF8 text("one two one");

    EXPECT_EQ(text.Replace("one", "1"), 2);
    EXPECT_STREQ(text, "1 two 1");
    EXPECT_EQ(text.Replace("1", "three"), 2);
    EXPECT_STREQ(text, "three two three");
    EXPECT_EQ(text.Replace("three", ""), 2);
    EXPECT_STREQ(text, " two ");
    EXPECT_EQ(text.Replace(" ", kNoText), 2);
    EXPECT_STREQ(text, "two");
}

TEST(CStringUTF8, ReplaceOfNothingChangesNothing) {
    CStringUTF8 text("abc");

    EXPECT_EQ(text.Replace("", "x"), 0);
    EXPECT_EQ(text.Replace(kNoText, "x"), 0);
    EXPECT_EQ(text.Replace("d", "x"), 0);
    EXPECT_EQ(text.Replace("abcd", "x"), 0);
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(CStringUTF8().Replace("a", "b"), 0);
}

TEST(CStringUTF8, ReplaceTakesItselfAsEitherText) {
    CStringUTF8 whole("abc");
    CStringUTF8 doubled("abab");

    EXPECT_EQ(whole.Replace(whole, "x"), 1);
    EXPECT_STREQ(whole, "x");
    EXPECT_EQ(doubled.Replace("b", doubled), 2);
    EXPECT_STREQ(doubled, "aababaabab");
}

TEST(CStringUTF8, TrimsWhiteSpace) {
    CStringUTF8 left(" \t\r\n\v\fa b ");
    CStringUTF8 right(" a b \t\r\n\v\f");
    CStringUTF8 both("\t a b \n");
    CStringUTF8 blanks(" \t\n");
    CStringUTF8 unicode("\xC2\xA0x\xC2\xA0");  // no-break spaces are no ASCII white space

    EXPECT_STREQ(left.TrimLeft(), "a b ");
    EXPECT_STREQ(right.TrimRight(), " a b");
    EXPECT_STREQ(both.Trim(), "a b");
    EXPECT_STREQ(blanks.Trim(), "");
    EXPECT_STREQ(unicode.Trim(), "\xC2\xA0x\xC2\xA0");
    EXPECT_STREQ(CStringUTF8().TrimLeft().TrimRight().Trim(), "");
}

TEST(CStringUTF8, TrimsACharacter) {
    CStringUTF8 left("xxaxx");
    CStringUTF8 right("xxaxx");
    CStringUTF8 both("xxaxx");
    CStringUTF8 all("xxx");
    CStringUTF8 blanks(" x ");

    EXPECT_STREQ(left.TrimLeft('x'), "axx");
    EXPECT_STREQ(right.TrimRight('x'), "xxa");
    EXPECT_STREQ(both.Trim('x'), "a");
    EXPECT_STREQ(all.TrimLeft('x'), "");
    all = "xxx";
    EXPECT_STREQ(all.TrimRight('x'), "");
    EXPECT_STREQ(blanks.Trim('x'), " x ");
}

TEST(CStringUTF8, TrimYieldsTheStringItself) {
    CStringUTF8 text(" a ");

    EXPECT_EQ(&text.Trim(), &text);
    EXPECT_EQ(&text.TrimLeft('b'), &text);
    EXPECT_EQ(&text.TrimRight('b'), &text);
}

TEST(CStringUTF8, ChangesTheCaseOfAsciiOnly) {
    CStringUTF8 text("aZ@[`{\xC3\xA9");

    text.MakeUpper();
    EXPECT_STREQ(text, "AZ@[`{\xC3\xA9");
    text.MakeLower();
    EXPECT_STREQ(text, "az@[`{\xC3\xA9");
}

TEST(CStringUTF8, Formats) {
    CStringUTF8 text("old");

    text.Format("%s_%d %.2f %c%%", "node", 7, 1.5, 'x');
    EXPECT_STREQ(text, "node_7 1.50 x%");
    text.AppendFormat("|%03d", 4);
    EXPECT_STREQ(text, "node_7 1.50 x%|004");
}

TEST(CStringUTF8, FormatsItself) {
    CStringUTF8 text("ab");

    text.Format("<%s|%s>", static_cast<const char*>(text), static_cast<const char*>(text));
    EXPECT_STREQ(text, "<ab|ab>");
    text.AppendFormat("+%s", static_cast<const char*>(text));
    EXPECT_STREQ(text, "<ab|ab>+<ab|ab>");
}

TEST(CStringUTF8, FormatsItselfBeyondEveryBuffer) {
    CStringUTF8 text('x', 1000);

    text.Format("%s,%s", static_cast<const char*>(text), static_cast<const char*>(text));

    EXPECT_EQ(text_of(text), std::string(1000, 'x') + "," + std::string(1000, 'x'));
}

TEST(CStringUTF8, FormatsEveryLengthAroundTheInnerBuffer) {
    for (int length = 250; length < 260; ++length) {
        const std::string expected(static_cast<std::size_t>(length), 'y');
        CStringUTF8 text;

        text.Format("%s", expected.c_str());

        EXPECT_EQ(text_of(text), expected) << length;
    }
}

TEST(CStringUTF8, FormatsALongText) {
    const CStringUTF8 large('z', 1 << 20);
    CStringUTF8 text;

    text.Format("[%s]", static_cast<const char*>(large));

    EXPECT_EQ(text.GetLength(), (1 << 20) + 2);
    EXPECT_EQ(text.GetAt(text.GetLength() - 1), ']');
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat"
#pragma GCC diagnostic ignored "-Wformat-zero-length"
TEST(CStringUTF8, ANullOrEmptyFormatIsEmpty) {
    CStringUTF8 text("old");

    text.AppendFormat(kNoText);
    text.AppendFormat("");
    EXPECT_STREQ(text, "old");
    text.Format("");
    EXPECT_STREQ(text, "");
    text = "old";
    text.Format(kNoText);
    EXPECT_STREQ(text, "");
}
#pragma GCC diagnostic pop

// A locale with a decimal comma, for the life of the object.
class CommaLocale {
public:
    CommaLocale() : previous_(std::setlocale(LC_ALL, nullptr)) {
        // A locale of our own, because a small machine has none but C.
        const std::string made = folder_.path("de_DE.UTF-8");
        const std::string command = "localedef -i de_DE -f UTF-8 " + made + " > /dev/null 2>&1";
        static_cast<void>(std::system(command.c_str()));
        setenv("LOCPATH", folder_.path("").c_str(), 1);
        std::setlocale(LC_ALL, "de_DE.UTF-8");
    }
    ~CommaLocale() {
        std::setlocale(LC_ALL, previous_.c_str());
        unsetenv("LOCPATH");
    }
    static bool in_force() { return *std::localeconv()->decimal_point == ','; }

private:
    uxtest::TemporaryFolder folder_;
    std::string previous_;
};

TEST(CStringUTF8, FormatsWithAPointInEveryLocale) {
    const CommaLocale locale;
    ASSERT_TRUE(locale.in_force()) << "the package locales is missing";
    CStringUTF8 text;
    double value = 0;

    text.Format("%.1f", 1.5);
    EXPECT_STREQ(text, "1.5");
    UXFormatDouble(2.5, text);
    EXPECT_STREQ(text, "2.5");
    EXPECT_TRUE(UXParseDouble("3.5", value));
    EXPECT_EQ(value, 3.5);
    EXPECT_FALSE(UXParseDouble("3,5", value));
}

TEST(CStringUTF8, AddsAllCombinations) {
    const CStringUTF8 a("a");
    const CStringUTF8 b("b");

    EXPECT_STREQ(a + b, "ab");
    EXPECT_STREQ(a + "c", "ac");
    EXPECT_STREQ("c" + a, "ca");
    EXPECT_STREQ(a + 'd', "ad");
    EXPECT_STREQ('d' + a, "da");
    EXPECT_STREQ(a + kNoText, "a");
    EXPECT_STREQ(kNoText + a, "a");
    EXPECT_STREQ(a + a + a, "aaa");
}

TEST(CStringUTF8, ComparesWithOperators) {
    const CStringUTF8 a("a");
    const CStringUTF8 b("b");

    EXPECT_TRUE(a == CStringUTF8("a"));
    EXPECT_TRUE(a == "a");
    EXPECT_TRUE("a" == a);
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(a == "A");
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(a != "b");
    EXPECT_TRUE("b" != a);
    EXPECT_FALSE(a != "a");
    EXPECT_TRUE(a < b);
    EXPECT_TRUE(a < "b");
    EXPECT_TRUE("a" < b);
    EXPECT_FALSE(b < a);
    EXPECT_FALSE(a < a);
    EXPECT_TRUE(CStringUTF8("z") < "\xC3\xA9");  // unsigned bytes
}

TEST(CStringUTF8, ANullTextComparesAsEmpty) {
    const CStringUTF8 empty;
    const CStringUTF8 a("a");

    EXPECT_TRUE(empty == kNoText);
    EXPECT_TRUE(kNoText == empty);
    EXPECT_TRUE(a != kNoText);
    EXPECT_TRUE(kNoText < a);
    EXPECT_FALSE(a < kNoText);
}

TEST(CStringUTF8, ComparesStringsBeyondANul) {
    CStringUTF8 a;
    CStringUTF8 b;
    a.Assign("x\0a", 3);
    b.Assign("x\0b", 3);

    EXPECT_TRUE(a != b);
    EXPECT_TRUE(a < b);
    EXPECT_STREQ(a, "x");
    EXPECT_EQ((a + b).GetLength(), 6);
}
}  // namespace
