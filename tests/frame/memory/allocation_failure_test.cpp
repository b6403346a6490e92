// Every entry point with every one of its allocations failing in turn.
#include <filesystem>
#include <iterator>
#include <new>
#include <string>

#include "uxtree/host/embedded.h"

#include "frame/memory/failing_calls.h"
#include "frame/memory/failing_new.h"

namespace uxtest {
namespace {

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const auto& [name, calls] : all_calls().calls()) all.push_back(name);
    return all;
}

class AllocationFailure : public testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(AllocationFailure, LeavesSoundTrees) {
    for (const Call& call : all_calls().calls().at(GetParam())) fail_each_allocation(call);
}
INSTANTIATE_TEST_SUITE_P(Each, AllocationFailure, testing::ValuesIn(names()),
                         [](const auto& row) { return row.param; });

TEST(uxtree_sort_children_by_int_attribute, LeavesTheTreeAsItWasWhenMemoryRunsShort) {
    long index = 0;
    do {
        TestTree tree("<r><a n='3'><x/></a><b n='1'/><c n='2'/><d n='1'/></r>");
        const std::string before = tree.text();
        failed = false;
        untilFailure = index++;
        const bool sorted = uxtree_sort_children_by_int_attribute(&tree, "n", 1);
        untilFailure = -1;

        EXPECT_EQ(sorted, !failed);
        EXPECT_EQ(tree.text() == before, failed);
        expect_sound(tree);
    } while (failed && !HasFailure());
    EXPECT_GT(index, 4);
}

TEST(ArrangeChildContents, LeavesTheTreeAsItWasWhenMemoryRunsShort) {
    CArray<int, int> order;
    for (const int number : {2, 0, 1}) order.Add(number);
    long index = 0;
    do {
        TestTree tree("<r><a n='3'>t<x/></a><b n='1'/><c n='2'/></r>");
        const std::string before = tree.text();
        UXXmlWrapperBase x = tree.at("a/x");
        failed = false;
        untilFailure = index++;
        int arranged = 0;
        try {
            arranged = tree.ArrangeChildContents(order);
        } catch (const std::bad_alloc&) {
            EXPECT_TRUE(failed);
        }
        untilFailure = -1;

        EXPECT_EQ(arranged, failed ? 0 : 1);
        EXPECT_EQ(tree.text() == before, failed);
        EXPECT_EQ(x.IsNodeValid(), failed ? 1 : 0);
        expect_sound(tree);
    } while (failed && !HasFailure());
    EXPECT_EQ(index, 3);  // two allocations
}

namespace {

// Calls the action, which yields a host's result, with one after another of its allocations
// failing: the host lets the failure pass. The stage is set before each call.
template <typename Stage, typename Action, typename Check>
void fail_each_of_host(Stage stage, Action action, Check check) {
    long index = 0;
    do {
        auto scene = stage();
        failed = false;
        untilFailure = index++;
        int result = 0;
        bool passed = false;
        try {
            result = action(scene);
        } catch (const std::bad_alloc&) {
            passed = true;
        }
        untilFailure = -1;
        EXPECT_EQ(passed, failed);
        EXPECT_EQ(result, failed ? 0 : 1) << "allocation " << index - 1;
        check(scene, result);
    } while (failed && !testing::Test::HasFailure());
    EXPECT_GT(index, 1) << "nothing was allocated";
}

const std::string kLongText(100000, 'x');

}  // namespace

TEST(UXXmlWrapperBase, AddsNoNodeWithoutItsText) {
    fail_each_of_host([] { return TestTree("<r><a/></r>"); },
                      [](TestTree& tree) {
                          return tree.AddTextNode(nullptr, "b", kLongText.c_str(), 0, 0, nullptr);
                      },
                      [](const TestTree& tree, int result) {
                          expect_sound(tree);
                          const std::string added = "<b>" + kLongText + "</b>";
                          EXPECT_EQ(tree.text(),
                                    "<r><a></a>" + (result == 0 ? "" : added) + "</r>");
                      });
}

TEST(UXXmlWrapperBase, CopiesABranchWholeOrNotAtAll) {
    const std::string branch = "<b x=\"" + kLongText + "\"><c>" + kLongText + "</c><d></d></b>";
    struct Copied {
        TestTree from;
        TestTree to{"<r><a></a></r>"};
    };
    fail_each_of_host(
        [&] { return Copied{TestTree(branch.c_str())}; },
        [](Copied& scene) { return scene.to.AddNodeCopy(&scene.from, 1, nullptr); },
        [&](const Copied& scene, int result) {
            expect_sound(scene.to);
            EXPECT_TRUE(scene.to.text() == "<r><a></a>" + (result == 0 ? "" : branch) + "</r>");
            EXPECT_TRUE(scene.from.text() == branch);
        });
}

TEST(UXXmlWrapperBase, WritesItsTextWholeOrNotAtAll) {
    struct Written {
        TestTree tree{("<r>" + kLongText + "</r>").c_str()};
        CStringUTF8 text{"kept"};
    };
    fail_each_of_host(
        [] { return Written(); }, [](Written& scene) { return scene.tree.GetString(scene.text); },
        [](const Written& scene, int result) {
            EXPECT_EQ(std::string(scene.text), result == 0 ? "kept" : "<r>" + kLongText + "</r>");
        });
}

TEST(AllocationFailureProbe, FailsTheAllocationThatItNames) {
    failed = false;
    untilFailure = 1;
    const std::unique_ptr<int> first(new int(1));
    EXPECT_THROW(static_cast<void>(std::make_unique<int>(2)), std::bad_alloc);
    EXPECT_TRUE(failed);
    EXPECT_EQ(untilFailure, -1);
}

namespace {

// Writes an edited document that keeps its layout with one after another of the allocations failing:
// the old file stays whole, nothing lies beside it, and the document is as it was.
void fail_each_allocation_of_a_save(const std::string& document, UXSaveForm form) {
    const TemporaryFolder folder;
    const std::string path = folder.write("t.xml", document);
    UXXmlWrapperBase root;
    ASSERT_EQ(UXLoadForEditing(&root, path.c_str()), 1) << UXGetLastLoadError();
    UXXmlWrapperBase node;
    root.FirstChild(&node);
    node.SetPropertyValue("k", CStringUTF8("a<b"));
    root.AddNode(nullptr, "added", -1);
    UXXmlWrapperBase second;
    root.GetChild(&second, 1);
    second.RemoveNode();
    UXSaveOptions options;
    options.form = form;
    CStringUTF8 expected;
    ASSERT_EQ(UXSaveToMemory(&root, &expected, options, nullptr), 1) << UXGetLastSaveError();
    long index = 0;
    int saved = 0;
    do {
        failed = false;
        untilFailure = index++;
        saved = UXSaveAs(&root, path.c_str(), options, nullptr);
        untilFailure = -1;
        EXPECT_TRUE(failed || saved == 1) << index;
        EXPECT_EQ(read_file(path), saved == 0 ? document : std::string(expected)) << index;
        EXPECT_EQ(UXGetLastSaveError().IsEmpty(), saved == 1) << index;
        folder.write("t.xml", document);
        const std::filesystem::directory_iterator files(std::filesystem::path(path).parent_path());
        EXPECT_EQ(std::distance(begin(files), end(files)), 1) << index;
    } while (failed && !testing::Test::HasFailure());
    EXPECT_GT(index, 5);
}

}  // namespace

TEST(UXSaveAs, LeavesTheOldFileWholeWhenMemoryRunsShort) {
    const std::string lines = "<!-- c -->\n<r>\n  <a k='1'/> <!-- a -->\n  <b>text</b>\n</r>\n";
    for (const UXSaveForm form :
         {UXSaveForm::kKeepLayout, UXSaveForm::kPlain, UXSaveForm::kIndented}) {
        fail_each_allocation_of_a_save(lines, form);
    }
}

TEST(UXSaveAs, LeavesTheOldFileWholeInOtherEncodingsAndWithEntities) {
    fail_each_allocation_of_a_save(
        "<?xml version='1.0' encoding='ISO-8859-1'?>\n<r>\n  <\xFC/>\n  <b>\xE4</b>\n</r>\n",
        UXSaveForm::kKeepLayout);
    fail_each_allocation_of_a_save(
        "<!DOCTYPE r [<!ENTITY e 'x'><!ATTLIST a n NMTOKEN #IMPLIED>]>\n"
        "<r>\n  <a n=' 1 '>&e;</a>\n  <b/>\n  <c>&e;</c>\n</r>\n",
        UXSaveForm::kKeepLayout);
}

TEST(UXLoadForEditing, LeavesTheHandleWhenMemoryRunsShort) {
    const std::string document = "<!-- c -->\n<r>\n  <a k='1'/>\n  <b>text</b>\n</r>\n";
    long index = 0;
    do {
        UXXmlWrapperBase root;
        failed = false;
        untilFailure = index++;
        const int loaded = UXLoadForEditingFromMemory(&root, document.data(), document.size());
        untilFailure = -1;
        EXPECT_EQ(loaded, failed ? 0 : 1);
        EXPECT_EQ(root.IsNodeValid(), failed ? 0 : 1);
        EXPECT_EQ(UXGetLastLoadError().IsEmpty(), !failed);
    } while (failed && !HasFailure());
    EXPECT_GT(index, 5);
}

// An element that cannot be had leaves the document as it was, also where its memory was there and
// that of its place in the source was not.
TEST(UXLoadForEditing, AddsElementsWholeOrNotAtAllWhenMemoryRunsShort) {
    const std::string document = "<r>\n  <a/>\n</r>\n";
    UXXmlWrapperBase root;
    ASSERT_EQ(UXLoadForEditingFromMemory(&root, document.data(), document.size()), 1);
    constexpr int kNodes = 300;  // of several chunks of memory
    int failures = 0;
    std::string expected = "<r>\n  <a/>\n";
    for (int i = 0; i < kNodes; ++i) {
        for (long index = 0;; ++index) {
            failed = false;
            untilFailure = index;
            const int added = [&] {
                try {
                    return root.AddNode(nullptr, "b", -1);
                } catch (const std::bad_alloc&) {
                    return 0;
                }
            }();
            untilFailure = -1;
            ASSERT_EQ(added, failed ? 0 : 1);
            ASSERT_EQ(root.GetNodeCount(), i + 1 + added);
            if (!failed) break;
            ++failures;
        }
        expected += "  <b/>\n";
    }
    EXPECT_GT(failures, 5);
    CStringUTF8 text;
    ASSERT_EQ(UXSaveToMemory(&root, &text, UXSaveOptions{}, nullptr), 1) << UXGetLastSaveError();
    EXPECT_EQ(std::string(text), expected + "</r>\n");
}

}  // namespace uxtest
