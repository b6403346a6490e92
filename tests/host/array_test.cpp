// Arrays of the host.
#include "uxtree/host/array.h"

#include <climits>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_tree.h"

namespace {
using testing::ElementsAre;
using testing::IsEmpty;
using uxtest::number_list;
using uxtest::numbers;
using uxtest::string_list;
using uxtest::texts;
using Ints = CArray<int, int>;

TEST(CWBOStringArray, StartsEmpty) {
    const CWBOStringArray array;

    EXPECT_EQ(array.GetSize(), 0);
    EXPECT_EQ(array.GetCount(), 0);
    EXPECT_EQ(array.GetUpperBound(), -1);
    EXPECT_TRUE(array.IsEmpty());
}

TEST(CWBOStringArray, AddYieldsTheIndex) {
    CWBOStringArray array;
    const CStringUTF8 kept("b");

    EXPECT_EQ(array.Add("a"), 0);
    EXPECT_EQ(array.Add(kept), 1);

    EXPECT_THAT(texts(array), ElementsAre("a", "b"));
    EXPECT_EQ(array.GetSize(), 2);
    EXPECT_EQ(array.GetCount(), 2);
    EXPECT_EQ(array.GetUpperBound(), 1);
    EXPECT_FALSE(array.IsEmpty());
}

TEST(CWBOStringArray, AddsItsOwnElements) {
    CWBOStringArray array = string_list({"a text too long for any small buffer inside"});

    for (int i = 0; i < 100; ++i) array.Add(array[0]);

    EXPECT_EQ(array.GetSize(), 101);
    EXPECT_STREQ(array[100], "a text too long for any small buffer inside");
    EXPECT_STREQ(array[0], "a text too long for any small buffer inside");
}

TEST(CWBOStringArray, SetSizeAddsEmptyTextsAndCuts) {
    CWBOStringArray array = string_list({"a", "b"});

    array.SetSize(3);
    EXPECT_THAT(texts(array), ElementsAre("a", "b", ""));
    array.SetSize(1);
    EXPECT_THAT(texts(array), ElementsAre("a"));
    array.SetSize(2);
    EXPECT_THAT(texts(array), ElementsAre("a", ""));
    array.SetSize(0);
    EXPECT_TRUE(array.IsEmpty());
}

TEST(CWBOStringArray, ReadsAndWritesElements) {
    CWBOStringArray array = string_list({"a", "b", "c"});
    const CWBOStringArray& constant = array;

    array.SetAt(0, "A");
    array[1] = "B";
    array.ElementAt(2) = "C";

    EXPECT_STREQ(constant.GetAt(0), "A");
    EXPECT_STREQ(constant[1], "B");
    EXPECT_STREQ(array.GetAt(2), "C");
}

TEST(CWBOStringArray, SetAtGrowFillsWithEmptyTexts) {
    CWBOStringArray array = string_list({"a"});

    array.SetAtGrow(3, "d");
    array.SetAtGrow(0, "A");
    array.SetAtGrow(4, array[3]);

    EXPECT_THAT(texts(array), ElementsAre("A", "", "", "d", "d"));
}

TEST(CWBOStringArray, AppendYieldsTheFirstNewIndex) {
    CWBOStringArray array = string_list({"a"});

    EXPECT_EQ(array.Append(string_list({"b", "c"})), 1);
    EXPECT_EQ(array.Append(CWBOStringArray()), 3);

    EXPECT_THAT(texts(array), ElementsAre("a", "b", "c"));
}

TEST(CWBOStringArray, AppendsAndCopiesItself) {
    CWBOStringArray array = string_list({"a", "b"});

    EXPECT_EQ(array.Append(array), 2);
    EXPECT_THAT(texts(array), ElementsAre("a", "b", "a", "b"));
    array.Copy(array);
    EXPECT_THAT(texts(array), ElementsAre("a", "b", "a", "b"));
}

TEST(CWBOStringArray, CopiesAreIndependent) {
    CWBOStringArray array = string_list({"a", "b"});
    CWBOStringArray copied = string_list({"x", "y", "z"});
    const CWBOStringArray constructed(array);
    copied.Copy(array);

    array[0] = "changed";

    EXPECT_THAT(texts(copied), ElementsAre("a", "b"));
    EXPECT_THAT(texts(constructed), ElementsAre("a", "b"));
}

TEST(CWBOStringArray, InsertsSeveralAndPastTheEnd) {
    CWBOStringArray array = string_list({"a", "b"});

    array.InsertAt(1, "x", 2);
    EXPECT_THAT(texts(array), ElementsAre("a", "x", "x", "b"));
    array.InsertAt(0, array[3]);
    EXPECT_THAT(texts(array), ElementsAre("b", "a", "x", "x", "b"));
    array.InsertAt(7, "end");
    EXPECT_THAT(texts(array), ElementsAre("b", "a", "x", "x", "b", "", "", "end"));
    array.InsertAt(0, "none", 0);
    EXPECT_EQ(array.GetSize(), 8);
}

TEST(CWBOStringArray, RemovesSeveralAndNone) {
    CWBOStringArray array = string_list({"a", "b", "c", "d"});

    array.RemoveAt(1, 2);
    EXPECT_THAT(texts(array), ElementsAre("a", "d"));
    array.RemoveAt(2, 0);
    array.RemoveAt(0);
    EXPECT_THAT(texts(array), ElementsAre("d"));
    array.RemoveAll();
    EXPECT_THAT(texts(array), IsEmpty());
}

TEST(CWBOStringArray, MovingLeavesAnEmptyArray) {
    CWBOStringArray from = string_list({"a", "a text too long for any small buffer inside"});
    CWBOStringArray to = string_list({"x"});

    to = std::move(from);

    EXPECT_THAT(texts(to), ElementsAre("a", "a text too long for any small buffer inside"));
    EXPECT_THAT(texts(from), IsEmpty());
    from.Add("again");
    EXPECT_THAT(texts(CWBOStringArray(std::move(from))), ElementsAre("again"));
}

// Long enough for blocks of huge pages.
TEST(CWBOStringArray, GrowingKeepsShortAndLongTexts) {
    const auto text_at = [](int i) {
        return std::string(static_cast<std::size_t>(i % 40), 'x') + std::to_string(i);
    };
    constexpr int kCount = 200000;
    CWBOStringArray array;

    for (int i = 0; i < kCount; ++i) array.AddText(text_at(i));

    ASSERT_EQ(array.GetSize(), kCount);
    for (int i = 0; i < kCount; ++i) ASSERT_STREQ(array[i], text_at(i).c_str()) << i;
}

TEST(CWBOStringArray, AgreesWithAListOverManyRandomSteps) {
    std::mt19937 random(7);
    const auto below = [&](std::size_t bound) { return static_cast<int>(random() % bound); };
    CWBOStringArray array;
    std::vector<std::string> list;
    for (int step = 0; step < 3000; ++step) {
        const std::string text(static_cast<std::size_t>(below(40)), 'a');
        const int at = below(list.size() + 1);
        const int count = below(list.size() - static_cast<std::size_t>(at) + 1);
        switch (below(6)) {
            case 0:
                array.RemoveAt(at, count);
                list.erase(list.begin() + at, list.begin() + at + count);
                break;
            case 1:
                array.InsertAt(at, text.c_str(), count % 5);
                list.insert(list.begin() + at, static_cast<std::size_t>(count % 5), text);
                break;
            case 2:
                if (list.size() < 200) {
                    array.Append(CWBOStringArray(array));
                    const std::vector<std::string> same = list;
                    list.insert(list.end(), same.begin(), same.end());
                }
                break;
            default:
                array.Add(text.c_str());
                list.push_back(text);
        }
        ASSERT_EQ(texts(array), list) << step;
    }
}

TEST(CWBOStringArray, ThrowsForEveryIndexOutside) {
    CWBOStringArray array = string_list({"a", "b"});
    const CWBOStringArray& constant = array;

    for (const int index : {-1, 2, 3, INT_MIN, INT_MAX}) {
        EXPECT_THROW(constant.GetAt(index), std::invalid_argument) << index;
        EXPECT_THROW(constant[index], std::invalid_argument) << index;
        EXPECT_THROW(array[index], std::invalid_argument) << index;
        EXPECT_THROW(array.ElementAt(index), std::invalid_argument) << index;
        EXPECT_THROW(array.SetAt(index, "x"), std::invalid_argument) << index;
        EXPECT_THROW(array.RemoveAt(index), std::invalid_argument) << index;
    }
    EXPECT_THROW(array.SetSize(-1), std::invalid_argument);
    EXPECT_THROW(array.SetAtGrow(-1, "x"), std::invalid_argument);
    EXPECT_THROW(array.InsertAt(-1, "x"), std::invalid_argument);
    EXPECT_THROW(array.InsertAt(0, "x", -1), std::invalid_argument);
    EXPECT_THROW(array.RemoveAt(0, -1), std::invalid_argument);
    EXPECT_THROW(array.RemoveAt(0, 3), std::invalid_argument);
    EXPECT_THROW(array.RemoveAt(1, INT_MAX), std::invalid_argument);
    EXPECT_THAT(texts(array), ElementsAre("a", "b"));
}

TEST(CArray, StartsEmpty) {
    const Ints array;

    EXPECT_EQ(array.GetSize(), 0);
    EXPECT_EQ(array.GetCount(), 0);
    EXPECT_EQ(array.GetUpperBound(), -1);
    EXPECT_TRUE(array.IsEmpty());
}

TEST(CArray, AddYieldsTheIndex) {
    Ints array;

    for (int i = 0; i < 1000; ++i) ASSERT_EQ(array.Add(i * 2), i);

    EXPECT_EQ(array.GetSize(), 1000);
    EXPECT_EQ(array.GetUpperBound(), 999);
    EXPECT_EQ(array[0], 0);
    EXPECT_EQ(array[999], 1998);
}

TEST(CArray, AddsItsOwnElementsWhileGrowing) {
    CArray<std::string, std::string> array;
    array.Add("a text too long for any small buffer inside");

    for (int i = 0; i < 100; ++i) array.Add(array[0]);

    EXPECT_EQ(array[100], "a text too long for any small buffer inside");
}

TEST(CArray, NewElementsAreZero) {
    Ints array = number_list<int>({1, 2, 3, 4});

    array.SetSize(1);
    array.SetSize(6);

    EXPECT_THAT(numbers(array), ElementsAre(1, 0, 0, 0, 0, 0));
}

TEST(CArray, BoolsHaveAddresses) {
    CArray<bool, bool> array;
    array.SetSize(2);

    bool* const second = &array[1];
    *second = true;

    EXPECT_THAT(numbers(array), ElementsAre(false, true));
    EXPECT_EQ(array.GetData() + 1, second);
}

TEST(CArray, GivesItsData) {
    Ints array = number_list<int>({1, 2, 3});
    const Ints& constant = array;

    array.GetData()[1] = 20;

    EXPECT_EQ(constant.GetData()[1], 20);
    EXPECT_EQ(Ints().GetData(), nullptr);
}

TEST(CArray, ReadsAndWritesElements) {
    Ints array = number_list<int>({1, 2, 3});
    const Ints& constant = array;

    array.SetAt(0, 10);
    array[1] = 20;
    array.ElementAt(2) = 30;

    EXPECT_EQ(constant.GetAt(0), 10);
    EXPECT_EQ(constant[1], 20);
    EXPECT_EQ(array.GetAt(2), 30);
}

TEST(CArray, SetAtGrowFillsWithZeros) {
    Ints array = number_list<int>({1});

    array.SetAtGrow(3, 4);
    array.SetAtGrow(0, 9);
    array.SetAtGrow(4, array[3]);

    EXPECT_THAT(numbers(array), ElementsAre(9, 0, 0, 4, 4));
}

TEST(CArray, AppendYieldsTheFirstNewIndex) {
    Ints array = number_list<int>({1});

    EXPECT_EQ(array.Append(number_list<int>({2, 3})), 1);
    EXPECT_EQ(array.Append(Ints()), 3);
    EXPECT_EQ(array.Append(array), 3);

    EXPECT_THAT(numbers(array), ElementsAre(1, 2, 3, 1, 2, 3));
}

TEST(CArray, CopiesAreIndependent) {
    Ints array = number_list<int>({1, 2});
    const Ints constructed(array);
    Ints assigned = number_list<int>({7, 8, 9});
    Ints copied;
    assigned = array;
    copied.Copy(array);

    array[0] = 100;

    EXPECT_THAT(numbers(constructed), ElementsAre(1, 2));
    EXPECT_THAT(numbers(assigned), ElementsAre(1, 2));
    EXPECT_THAT(numbers(copied), ElementsAre(1, 2));
}

TEST(CArray, CopiesItself) {
    Ints array = number_list<int>({1, 2});
    const Ints& same = array;

    array = same;
    array.Copy(same);

    EXPECT_THAT(numbers(array), ElementsAre(1, 2));
}

TEST(CArray, Moves) {
    Ints array = number_list<int>({1, 2});
    Ints constructed(std::move(array));
    Ints assigned;
    assigned = std::move(constructed);

    EXPECT_THAT(numbers(assigned), ElementsAre(1, 2));
}

TEST(CArray, InsertsSeveralAndPastTheEnd) {
    Ints array = number_list<int>({1, 2});

    array.InsertAt(1, 5, 2);
    EXPECT_THAT(numbers(array), ElementsAre(1, 5, 5, 2));
    array.InsertAt(0, array[3]);
    EXPECT_THAT(numbers(array), ElementsAre(2, 1, 5, 5, 2));
    array.InsertAt(7, 9);
    EXPECT_THAT(numbers(array), ElementsAre(2, 1, 5, 5, 2, 0, 0, 9));
    array.InsertAt(0, 1, 0);
    EXPECT_EQ(array.GetSize(), 8);
}

TEST(CArray, RemovesSeveralAndNone) {
    Ints array = number_list<int>({1, 2, 3, 4});

    array.RemoveAt(1, 2);
    EXPECT_THAT(numbers(array), ElementsAre(1, 4));
    array.RemoveAt(2, 0);
    array.RemoveAt(0);
    EXPECT_THAT(numbers(array), ElementsAre(4));
    array.RemoveAll();
    EXPECT_THAT(numbers(array), IsEmpty());
    EXPECT_EQ(array.Add(5), 0);
}

TEST(CArray, GivesUpWhatRemovedElementsHold) {
    const auto held = std::make_shared<int>(1);
    using Holders = CArray<std::shared_ptr<int>, std::shared_ptr<int>>;
    Holders array;
    for (int i = 0; i < 4; ++i) array.Add(held);
    ASSERT_EQ(held.use_count(), 5);

    array.RemoveAt(0);
    EXPECT_EQ(held.use_count(), 4);
    array.SetSize(1);
    EXPECT_EQ(held.use_count(), 2);
    array.RemoveAll();
    EXPECT_EQ(held.use_count(), 1);
}

TEST(CArray, ThrowsForEveryIndexOutside) {
    Ints array = number_list<int>({1, 2});
    const Ints& constant = array;

    for (const int index : {-1, 2, 3, INT_MIN, INT_MAX}) {
        EXPECT_THROW(constant.GetAt(index), std::invalid_argument) << index;
        EXPECT_THROW(constant[index], std::invalid_argument) << index;
        EXPECT_THROW(array[index], std::invalid_argument) << index;
        EXPECT_THROW(array.ElementAt(index), std::invalid_argument) << index;
        EXPECT_THROW(array.SetAt(index, 9), std::invalid_argument) << index;
        EXPECT_THROW(array.RemoveAt(index), std::invalid_argument) << index;
    }
    EXPECT_THROW(array.SetSize(-1), std::invalid_argument);
    EXPECT_THROW(array.SetAtGrow(-1, 9), std::invalid_argument);
    EXPECT_THROW(array.InsertAt(-1, 9), std::invalid_argument);
    EXPECT_THROW(array.InsertAt(0, 9, -1), std::invalid_argument);
    EXPECT_THROW(array.RemoveAt(0, -1), std::invalid_argument);
    EXPECT_THROW(array.RemoveAt(0, 3), std::invalid_argument);
    EXPECT_THROW(array.RemoveAt(1, INT_MAX), std::invalid_argument);
    EXPECT_THAT(numbers(array), ElementsAre(1, 2));
}

TEST(CArray, RefusesSizesBeyondItsIndices) {
    Ints array = number_list<int>({1, 2});

    EXPECT_THROW(array.SetAtGrow(INT_MAX, 9), std::length_error);
    EXPECT_THROW(array.InsertAt(1, 9, INT_MAX), std::length_error);
    EXPECT_THROW(array.InsertAt(INT_MAX, 9), std::length_error);
    EXPECT_THAT(numbers(array), ElementsAre(1, 2));
}
}  // namespace
