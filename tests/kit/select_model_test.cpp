// Random selections over random documents answer as libxml2 does.
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"

#include "kit/select_reference.h"

namespace {

using uxtest::Choose;

struct Tally {
    int answered = 0;
    int refused = 0;  // expressions
    int mixed = 0;    // answers that depend on mixed content
    int notEmpty = 0;
};

// How documents and expressions are made, and whether the documents are loaded with their layout.
// Plain documents have no mixed content; without texts nothing depends on it.
struct Kind {
    bool mixed;
    bool texts;
    bool layout;
};

// One document with many expressions.
void compare(unsigned seed, const Kind& kind, Tally& tally) {
    std::mt19937 engine(seed);
    const Choose choose = [&](unsigned n) { return static_cast<unsigned>(engine() % n); };
    const std::string xml = uxtest::DocumentMaker(choose, kind.mixed).make();
    UXXmlWrapperBase root;
    ASSERT_NE(kind.layout ? UXLoadForEditingFromMemory(&root, xml.data(), xml.size())
                          : root.LoadFromMemory(xml.data(), xml.size()),
              0)
        << xml;
    uxtest::ReferenceDocument reference(xml);
    ASSERT_TRUE(reference.valid()) << xml;
    uxtest::ExpressionMaker maker(choose, kind.texts);
    for (int i = 0; i < 25; ++i) {
        const std::string expression = maker.make();
        SCOPED_TRACE(expression + "\nin " + xml);
        UXSelection selection;
        if (!selection.compile(expression.c_str())) {
            ++tally.refused;
            continue;
        }
        std::vector<std::string> theirs;
        ASSERT_TRUE(reference.select(expression, theirs));
        UXSelected result;
        const UXSelectOutcome outcome = selection.run(root, result);
        if (outcome == UXSelectOutcome::kMixedText) {
            ASSERT_TRUE(kind.mixed && kind.texts && !kind.layout);
            ASSERT_GT(result.mixed().GetNodeCount(), 0);
            ++tally.mixed;
            continue;
        }
        ASSERT_EQ(outcome, UXSelectOutcome::kDone);
        const std::vector<std::string> ours = uxtest::selected_places(result);
        ASSERT_TRUE(uxtest::agree(ours, theirs)) << testing::PrintToString(ours) << "\n"
                                                 << testing::PrintToString(theirs);
        ++tally.answered;
        tally.notEmpty += ours.empty() ? 0 : 1;
    }
}

TEST(UXSelection, AnswersAsLibxml2WithoutMixedContent) {
    Tally tally;
    for (unsigned seed = 0; seed < 1500; ++seed) {
        compare(seed, {false, true, seed % 4 == 0}, tally);
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(tally.mixed, 0);
    EXPECT_GT(tally.answered, 20000);
    EXPECT_GT(tally.notEmpty, 7000);
}

TEST(UXSelection, AnswersAsLibxml2OrNotAtAllWithMixedContent) {
    Tally tally;
    for (unsigned seed = 0; seed < 1500; ++seed) {
        compare(seed, {true, true, false}, tally);
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(tally.answered, 15000);
    EXPECT_GT(tally.mixed, 100);
}

TEST(UXSelection, AnswersAsLibxml2InMixedContentOfKnownOrder) {
    Tally tally;
    for (unsigned seed = 0; seed < 1500; ++seed) {
        compare(seed, {true, true, true}, tally);
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(tally.mixed, 0);
    EXPECT_GT(tally.answered, 20000);
    EXPECT_GT(tally.notEmpty, 7000);
}

TEST(UXSelection, AnswersWhatDoesNotDependOnMixedContent) {
    Tally tally;
    for (unsigned seed = 0; seed < 500; ++seed) {
        compare(seed, {true, false, false}, tally);
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(tally.mixed, 0);
    EXPECT_GT(tally.notEmpty, 2000);
}

}  // namespace
