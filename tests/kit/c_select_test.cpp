// Selections through the door for C: what is found, by kind, and why nothing is.
#include <memory>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/kit/c.h"
#include "uxtree/kit/select.h"

namespace {

using HandlePtr = std::unique_ptr<UXXmlWrapperBase, decltype(&ux_node_free)>;
using TextPtr = std::unique_ptr<CStringUTF8, decltype(&ux_string_free)>;
using SelectionPtr = std::unique_ptr<UXSelection, decltype(&ux_select_free)>;
using SelectedPtr = std::unique_ptr<UXSelected, decltype(&ux_selected_free)>;

HandlePtr handle_of(const std::string& xml) {
    return {ux_load_memory(xml.data(), xml.size(), 0), &ux_node_free};
}
HandlePtr no_node() {
    return {ux_node_new(nullptr), &ux_node_free};
}
TextPtr new_text() {
    return {ux_string_new("kept"), &ux_string_free};
}
SelectionPtr compiled(const char* path) {
    return {ux_select_compile(path), &ux_select_free};
}
SelectedPtr nothing() {
    return {ux_selected_new(), &ux_selected_free};
}

// What a path finds, one line each: kind, tag of the node, name of the attribute, text.
std::string found_by(const HandlePtr& tree, const char* path) {
    const SelectionPtr selection = compiled(path);
    const SelectedPtr found = nothing();
    const int count = ux_select_run(selection.get(), tree.get(), found.get(), nullptr);
    EXPECT_EQ(ux_selected_count(found.get()), count) << path;
    std::string lines;
    for (int i = 0; i < count; ++i) {
        const HandlePtr node = no_node();
        const TextPtr tag = new_text();
        const TextPtr name = new_text();
        const TextPtr value = new_text();
        EXPECT_EQ(ux_selected_node(found.get(), i, node.get()), 1);
        EXPECT_EQ(ux_node_tag(node.get(), tag.get()), 1);
        EXPECT_EQ(ux_selected_attr(found.get(), i, name.get()), 1);
        EXPECT_EQ(ux_selected_text(found.get(), i, value.get()), 1) << ux_last_error();
        lines += std::to_string(ux_selected_kind(found.get(), i)) + " " +
                 ux_string_text(tag.get()) + " [" + ux_string_text(name.get()) + "] " +
                 ux_string_text(value.get()) + "\n";
    }
    return lines;
}

constexpr char kRows[] = "<r><b a='1' n='x'><c>one</c></b><b a='2'>two</b><b a='1'/></r>";

}  // namespace

TEST(ux_select_run, FindsElementsAttributesTextsAndTheDocument) {
    const HandlePtr tree = handle_of(kRows);

    EXPECT_EQ(found_by(tree, "//b[@a='1']"), "1 b [] one\n1 b [] \n");
    EXPECT_EQ(found_by(tree, "b/@*"), "2 b [a] 1\n2 b [n] x\n2 b [a] 2\n2 b [a] 1\n");
    EXPECT_EQ(found_by(tree, "//text()"), "3 c [] one\n3 b [] two\n");
    EXPECT_EQ(found_by(tree, "/"), "0 r [] onetwo\n");
    EXPECT_EQ(found_by(tree, "b[9]"), "");
}

TEST(ux_select_run, RefusesASelectionOfNothing) {
    const UXSelection selection;
    const HandlePtr tree = handle_of("<r/>");
    const SelectedPtr found = nothing();
    EXPECT_LT(ux_select_run(&selection, tree.get(), found.get(), nullptr), 0);
    EXPECT_STREQ(ux_last_error(), "nothing was compiled");
}

TEST(ux_select_run, RunsOneCompiledPathOnManyTreesAndFromAnyNode) {
    const SelectionPtr selection = compiled("c");
    const SelectedPtr found = nothing();
    const HandlePtr inner = no_node();
    const HandlePtr tree = handle_of(kRows);
    ASSERT_EQ(ux_node_child(tree.get(), "b", inner.get()), 1);

    EXPECT_EQ(ux_select_run(selection.get(), inner.get(), found.get(), nullptr), 1);
    EXPECT_EQ(ux_select_run(selection.get(), tree.get(), found.get(), nullptr), 0);
    for (const int count : {1, 2, 30}) {
        std::string xml = "<r>";
        for (int i = 0; i < count; ++i) xml += "<c/>";
        const HandlePtr other = handle_of(xml + "</r>");
        EXPECT_EQ(ux_select_run(selection.get(), other.get(), found.get(), nullptr), count);
    }
}

TEST(ux_select_run, ServesSeveralThreadsWithOneCompiledPath) {
    const SelectionPtr selection = compiled("//b[@a='1']");
    int right[4] = {};
    std::thread threads[4];
    for (int i = 0; i < 4; ++i) {
        threads[i] = std::thread([&selection, &count = right[i]] {
            const HandlePtr tree = handle_of(kRows);
            const SelectedPtr found = nothing();
            for (int k = 0; k < 50; ++k) {
                if (ux_select_run(selection.get(), tree.get(), found.get(), nullptr) == 2) ++count;
            }
        });
    }
    for (std::thread& each : threads) each.join();
    EXPECT_THAT(right, testing::Each(50));
}

TEST(ux_select_run, SaysWhichTextInMixedContentDecides) {
    const HandlePtr tree = handle_of("<r><a>x<b/>y</a><c>z</c></r>");
    const SelectionPtr selection = compiled("/r/a[. = 'xy']");
    const SelectedPtr found = nothing();
    const HandlePtr mixed = no_node();
    const TextPtr tag = new_text();
    ASSERT_EQ(ux_select_run(compiled("//c").get(), tree.get(), found.get(), nullptr), 1);

    EXPECT_EQ(ux_select_run(selection.get(), tree.get(), found.get(), mixed.get()), -2);
    EXPECT_THAT(ux_last_error(), testing::StartsWith("the answer depends on text"));
    EXPECT_EQ(ux_node_tag(mixed.get(), tag.get()), 1);
    EXPECT_STREQ(ux_string_text(tag.get()), "a");
    EXPECT_EQ(ux_selected_count(found.get()), 1);  // what it held stays
    EXPECT_EQ(ux_select_run(selection.get(), tree.get(), found.get(), nullptr), -2);
    EXPECT_STREQ(ux_code_name("ux_select_run", -2), "mixed_text");
}

TEST(ux_selected_text, IsNotToldWhereItDependsOnMixedContent) {
    const HandlePtr tree = handle_of("<r><a>x<b/>y</a><c>z</c></r>");
    const SelectedPtr found = nothing();
    const TextPtr out = new_text();
    ASSERT_EQ(ux_select_run(compiled("/r/*").get(), tree.get(), found.get(), nullptr), 2);

    EXPECT_EQ(ux_selected_text(found.get(), 0, out.get()), -2);
    EXPECT_STREQ(ux_string_text(out.get()), "kept");
    EXPECT_EQ(ux_selected_text(found.get(), 1, out.get()), 1);
    EXPECT_STREQ(ux_string_text(out.get()), "z");
}

TEST(ux_select_compile, TellsThePlaceOfAFault) {
    EXPECT_EQ(ux_select_compile("/a/b["), nullptr);
    EXPECT_EQ(ux_last_error_line(), 1);
    EXPECT_EQ(ux_last_error_column(), 6);
    EXPECT_STREQ(ux_last_error(), "the path ends too early at byte 5");
    EXPECT_EQ(ux_select_compile(""), nullptr);
    EXPECT_EQ(ux_last_error_column(), 1);
    EXPECT_EQ(ux_select_compile("a\xFF"), nullptr);
    EXPECT_STREQ(ux_last_error(), "the text is not UTF-8 at byte 1");
}

TEST(ux_selected_node, RefusesPositionsOutside) {
    const HandlePtr tree = handle_of(kRows);
    const SelectedPtr found = nothing();
    const HandlePtr node = no_node();
    const TextPtr out = new_text();
    EXPECT_EQ(ux_selected_count(found.get()), 0);
    ASSERT_EQ(ux_select_run(compiled("b").get(), tree.get(), found.get(), nullptr), 3);

    for (const int index : {-1, 3, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(ux_selected_kind(found.get(), index), -1);
        EXPECT_EQ(ux_selected_node(found.get(), index, node.get()), 0);
        EXPECT_EQ(ux_selected_attr(found.get(), index, out.get()), 0);
        EXPECT_EQ(ux_selected_text(found.get(), index, out.get()), 0);
        EXPECT_STREQ(ux_last_error(), "there is nothing at that position");
    }
    EXPECT_EQ(ux_node_valid(node.get()), 0);
    EXPECT_STREQ(ux_string_text(out.get()), "kept");
}

TEST(ux_selected_node, IsRefusedOnceTheNodeWasRemoved) {
    const HandlePtr tree = handle_of(kRows);
    const SelectedPtr found = nothing();
    const HandlePtr node = no_node();
    const TextPtr out = new_text();
    ASSERT_EQ(ux_select_run(compiled("b").get(), tree.get(), found.get(), nullptr), 3);
    ASSERT_EQ(ux_selected_node(found.get(), 1, node.get()), 1);
    ASSERT_EQ(ux_node_remove(node.get()), 1);

    EXPECT_EQ(ux_selected_node(found.get(), 1, node.get()), 0);
    EXPECT_EQ(ux_selected_text(found.get(), 1, out.get()), 0);
    EXPECT_STREQ(ux_last_error(), "the handle refers to no node");
    EXPECT_EQ(ux_selected_node(found.get(), 2, node.get()), 1);
}

TEST(ux_select_free, LeavesWhatWasFoundAndPassesOverNull) {
    const HandlePtr tree = handle_of(kRows);
    const SelectedPtr found = nothing();
    {
        const SelectionPtr selection = compiled("//c");
        ASSERT_EQ(ux_select_run(selection.get(), tree.get(), found.get(), nullptr), 1);
    }
    const TextPtr out = new_text();
    EXPECT_EQ(ux_selected_text(found.get(), 0, out.get()), 1);
    EXPECT_STREQ(ux_string_text(out.get()), "one");
    ux_select_free(nullptr);
    ux_selected_free(nullptr);
}
