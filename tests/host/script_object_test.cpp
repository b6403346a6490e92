// Objects and arrays that scripts hand over.
#include "uxtree/host/script_object.h"

#include <memory>

#include <gtest/gtest.h>

#include "uxtree/host/application.h"
#include "uxtree/host/vector_desc.h"

namespace {
constexpr unsigned int kAllCodes[] = {kUXTypeBoolVector, kUXTypeIntVector, kUXTypeDoubleVector,
                                      kUXTypeStringArray};

TEST(UXScriptObject, TypeCodesAreThePublishedOnes) {
    EXPECT_EQ(kUXTypeBoolVector, 0x10002U);
    EXPECT_EQ(kUXTypeIntVector, 0x10008U);
    EXPECT_EQ(kUXTypeDoubleVector, 0x1000BU);
    EXPECT_EQ(kUXTypeStringArray, 0x1001BU);
}

TEST(UXScriptObject, APlainObjectIsValidAndHasNoArray) {
    UXScriptObject object;

    EXPECT_EQ(object.IsValid(), 1);
    for (const unsigned int code : kAllCodes) EXPECT_EQ(object.GetInternalData(code), nullptr);
}

template <typename Array>
void expect_answers_only(unsigned int own) {
    UXScriptArray<Array> object;

    EXPECT_EQ(object.IsValid(), 1);
    EXPECT_EQ(object.GetInternalData(own), &object.array());
    EXPECT_EQ(object.GetInternalData(0), nullptr);
    EXPECT_EQ(object.GetInternalData(~0U), nullptr);
    for (const unsigned int code : kAllCodes) {
        if (code != own) {
            EXPECT_EQ(object.GetInternalData(code), nullptr) << code;
        }
    }
}

TEST(UXScriptArray, AnswersExactlyItsOwnTypeCode) {
    expect_answers_only<CArray<bool, bool>>(kUXTypeBoolVector);
    expect_answers_only<CArray<int, int>>(kUXTypeIntVector);
    expect_answers_only<CArray<double, double>>(kUXTypeDoubleVector);
    expect_answers_only<CWBOStringArray>(kUXTypeStringArray);
}

TEST(UXScriptArray, ChangesToItsArrayAreSeenByTheCaller) {
    UXScriptArray<CWBOStringArray> object;

    static_cast<CWBOStringArray*>(object.GetInternalData(kUXTypeStringArray))->Add("x");

    ASSERT_EQ(object.array().GetSize(), 1);
    EXPECT_STREQ(object.array()[0], "x");
}

TEST(UXScriptArray, ACopyHasAnArrayOfItsOwn) {
    CArray<int, int> initial;
    initial.Add(7);
    UXScriptArray<CArray<int, int>> object(initial);
    UXScriptArray<CArray<int, int>> copy(object);

    object.array()[0] = 8;

    EXPECT_EQ(copy.array()[0], 7);
    EXPECT_EQ(initial[0], 7);
}

TEST(UXScriptArray, IsDestroyedThroughItsBase) {
    const std::unique_ptr<UXScriptObject> object =
        std::make_unique<UXScriptArray<CArray<double, double>>>();

    EXPECT_NE(object->GetInternalData(kUXTypeDoubleVector), nullptr);
}

template <typename Array>
void expect_describes(UXVectorDesc::Element element) {
    Array array;
    const UXVectorDesc desc(array);

    EXPECT_EQ(desc.element, element);
    EXPECT_EQ(desc.array, &array);
}

TEST(UXVectorDesc, DescribesNothingByDefault) {
    const UXVectorDesc desc;

    EXPECT_EQ(desc.element, UXVectorDesc::Element::kNone);
    EXPECT_EQ(desc.array, nullptr);
}

TEST(UXVectorDesc, NamesTheElementTypeOfEveryArray) {
    using Element = UXVectorDesc::Element;
    expect_describes<CArray<bool, bool>>(Element::kBool);
    expect_describes<CArray<char, char>>(Element::kChar);
    expect_describes<CArray<unsigned char, unsigned char>>(Element::kUChar);
    expect_describes<CArray<short, short>>(Element::kShort);
    expect_describes<CArray<unsigned short, unsigned short>>(Element::kUShort);
    expect_describes<CArray<int, int>>(Element::kInt);
    expect_describes<CArray<unsigned int, unsigned int>>(Element::kUInt);
    expect_describes<CArray<std::int64_t, std::int64_t>>(Element::kInt64);
    expect_describes<CArray<std::uint64_t, std::uint64_t>>(Element::kUInt64);
    expect_describes<CArray<float, float>>(Element::kFloat);
    expect_describes<CArray<double, double>>(Element::kDouble);
    expect_describes<CWBOStringArray>(Element::kText);
}

TEST(UXHostApplication, IsDestroyedThroughItsBase) {
    struct Derived : UXHostApplication {
        explicit Derived(bool& flag) : ended(flag) {}
        Derived(const Derived&) = delete;
        Derived& operator=(const Derived&) = delete;
        ~Derived() override { ended = true; }
        bool& ended;
    };
    bool ended = false;
    std::unique_ptr<UXHostApplication> application = std::make_unique<Derived>(ended);

    application.reset();

    EXPECT_TRUE(ended);
}
}  // namespace
