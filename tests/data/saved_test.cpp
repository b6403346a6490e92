// Saved values: documents of identifiers and values.
#include "uxtree/data/saved.h"

#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/data/themes.h"

#include "data/values_support.h"

namespace {

using testing::ElementsAre;
using uxtest::Entries;
using uxtest::entries;
using uxtest::number_list;
using uxtest::string_list;
using uxtest::TemporaryFolder;
using uxtest::TestTree;
using uxtest::texts;
using uxtest::tree_text;

struct Lists {
    CArray<int, int> ids;
    CWBOStringArray values;
};
Lists lists(const std::vector<int>& ids, const std::vector<std::string>& values) {
    return {number_list(ids), string_list(values)};
}

bool save(const UXXmlWrapperBase& target, Lists given, const char* comment = nullptr,
          CWBOStringArray* labels = nullptr) {
    UXXmlWrapperBase handle = target;
    return vctree_save_values_with_ids(&handle, &given.ids, &given.values, comment, labels);
}

Entries read_theme(const char* xml) {
    TestTree tree(xml);
    Lists out;
    vctree_get_theme(&tree, &out.ids, &out.values, nullptr, nullptr);
    return entries(out.ids, out.values);
}

// --- building ----------------------------------------------------------------------------------

TEST(vctree_save_values_with_ids, BuildsTheDocumentInPlaceOfTheTarget) {
    TestTree tree("<r><keep/><old a='1' _ux_id='7'>text<x/></old><keep/></r>");

    EXPECT_TRUE(save(tree.at("old"), lists({5, -2}, {"a", ""})));
    EXPECT_EQ(tree.text(), tree_text("<r><keep/><Settings>Settings<node5>a</node5><node-2/>"
                                     "</Settings><keep/></r>"));
}

TEST(vctree_save_values_with_ids, WritesCommentAndLabelsAsFarAsTheyGo) {
    TestTree tree("<r/>");
    CWBOStringArray labels = string_list({"First", ""});

    EXPECT_TRUE(save(tree, lists({1, 2, 3}, {"a", "b", "c"}), "by hand", &labels));
    EXPECT_EQ(tree.text(),
              tree_text("<Settings Comment='by hand'>Settings<node1 Label='First'>a</node1>"
                        "<node2 Label=''>b</node2><node3>c</node3></Settings>"));
}

TEST(vctree_save_values_with_ids, MakesTheAttributeOfAnEmptyComment) {
    TestTree tree("<r/>");

    EXPECT_TRUE(save(tree, lists({1}, {"a"}), ""));
    EXPECT_EQ(tree.text(), tree_text("<Settings Comment=''>Settings<node1>a</node1></Settings>"));
}

TEST(vctree_save_values_with_ids, WritesDuplicatesAndTheLimitsOfIdentifiers) {
    TestTree tree("<r/>");

    EXPECT_TRUE(save(tree, lists({INT_MIN, INT_MAX, 0, 0}, {"a", "b", "c", "d"})));
    EXPECT_EQ(tree.text(),
              tree_text("<Settings>Settings<node-2147483648>a</node-2147483648>"
                        "<node2147483647>b</node2147483647><node0>c</node0><node0>d</node0>"
                        "</Settings>"));
}

TEST(vctree_save_values_with_ids, LeavesTheTargetAloneWhenItFails) {
    TestTree tree("<r a='1'><b/></r>");

    EXPECT_FALSE(save(tree, lists({}, {})));
    EXPECT_FALSE(save(tree, lists({1}, {})));
    EXPECT_FALSE(save(tree, lists({}, {"a"})));
    EXPECT_FALSE(save(tree, lists({1, 2}, {"a"})));
    EXPECT_EQ(tree.text(), tree_text("<r a='1'><b/></r>"));
}

// --- files -------------------------------------------------------------------------------------

TEST(vctree_save_values_with_ids, WritesAFileThatReadsBackUnchanged) {
    const TemporaryFolder folder;
    const std::string path = folder.path("theme.xml");
    const Entries given{{12, "x < y & \"z\""},
                        {-3, ""},
                        {INT_MIN, "  blank  "},
                        {7, "two\nlines\r\tx"},
                        {0x50007, "\xC3\xA4\xF0\x9F\x8C\xB3"}};
    Lists in;
    for (const auto& [id, value] : given) {
        in.ids.Add(id);
        in.values.Add(CStringUTF8(value.c_str()));
    }
    Lists out = lists({99}, {"old"});
    CStringUTF8 comment("old");

    EXPECT_EQ(
        vctree_save_values_with_ids(path.c_str(), &in.ids, &in.values, "my \"theme\"", nullptr), 1);
    EXPECT_TRUE(vctree_read_values_with_ids(path.c_str(), &out.ids, &out.values, &comment));
    EXPECT_EQ(entries(out.ids, out.values), given);
    EXPECT_EQ(comment, "my \"theme\"");
}

TEST(vctree_save_values_with_ids, WritesNoFileWhenItFails) {
    const TemporaryFolder folder;
    const std::string path = folder.write("theme.xml", "old");
    Lists two = lists({1, 2}, {"a"});
    Lists control = lists({1}, {"a\x01"});
    Lists good = lists({1}, {"a"});

    EXPECT_EQ(vctree_save_values_with_ids(path.c_str(), &two.ids, &two.values, nullptr, nullptr),
              0);
    EXPECT_EQ(
        vctree_save_values_with_ids(path.c_str(), &control.ids, &control.values, nullptr, nullptr),
        0);
    EXPECT_EQ(vctree_save_values_with_ids(path.c_str(), nullptr, &good.values, nullptr, nullptr),
              0);
    EXPECT_EQ(vctree_save_values_with_ids(path.c_str(), &good.ids, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(vctree_save_values_with_ids("", &good.ids, &good.values, nullptr, nullptr), 0);
    EXPECT_EQ(vctree_save_values_with_ids(folder.path("no/such/folder.xml").c_str(), &good.ids,
                                          &good.values, nullptr, nullptr),
              0);
    EXPECT_EQ(uxtest::read_file(path), "old");
}

TEST(vctree_read_values_with_ids, EmptiesTheArraysInEveryCase) {
    const TemporaryFolder folder;
    for (const std::string& path :
         {folder.path("missing.xml"), folder.write("broken.xml", "<Settings><node1>"),
          folder.write("text.xml", "not xml"), std::string()}) {
        Lists out = lists({1}, {"a"});
        CStringUTF8 comment("kept");

        EXPECT_FALSE(vctree_read_values_with_ids(path.c_str(), &out.ids, &out.values, &comment));
        EXPECT_TRUE(out.ids.IsEmpty()) << path;
        EXPECT_TRUE(out.values.IsEmpty()) << path;
        EXPECT_EQ(comment, "kept");
    }
    Lists out = lists({1}, {"a"});
    EXPECT_FALSE(vctree_read_values_with_ids("x.xml", nullptr, &out.values, nullptr));
    EXPECT_TRUE(out.values.IsEmpty());
    EXPECT_FALSE(vctree_read_values_with_ids("x.xml", &out.ids, nullptr, nullptr));
    EXPECT_TRUE(out.ids.IsEmpty());
    EXPECT_FALSE(vctree_read_values_with_ids(nullptr, &out.ids, &out.values, nullptr));
}

TEST(vctree_read_values_with_ids, LeavesTheCommentAloneWhenThereIsNone) {
    const TemporaryFolder folder;
    const std::string path = folder.write("theme.xml", "<Settings><node1>a</node1></Settings>");
    Lists out;
    CStringUTF8 comment("kept");

    EXPECT_TRUE(vctree_read_values_with_ids(path.c_str(), &out.ids, &out.values, &comment));
    EXPECT_EQ(comment, "kept");
    EXPECT_EQ(entries(out.ids, out.values), (Entries{{1, "a"}}));
}

// --- themes ------------------------------------------------------------------------------------

TEST(vctree_set_theme, GivesAnInvalidTargetADocumentOfItsOwn) {
    UXXmlWrapperBase target;
    Lists one = lists({1}, {"a"});

    EXPECT_TRUE(vctree_set_theme(&target, &one.ids, &one.values, nullptr));
    EXPECT_EQ(uxtest::to_text(target), tree_text("<Settings>Settings<node1>a</node1></Settings>"));
    EXPECT_TRUE(target.IsRootNode());
}

TEST(vctree_set_theme, FailsWithoutValues) {
    UXXmlWrapperBase target;
    Lists none;

    EXPECT_FALSE(vctree_set_theme(&target, &none.ids, &none.values, nullptr));
    EXPECT_FALSE(target.IsNodeValid());
}

TEST(vctree_get_theme, ReadsTheNumberAtTheStartOfTheTag) {
    EXPECT_EQ(
        read_theme("<Settings><node5>a</node5><node-2/><xnode7>b</xnode7><node>c</node>"
                   "<Node8>d</Node8><node12x>e</node12x><nodex9>f</nodex9><node007>g</node007>"
                   "</Settings>"),
        (Entries{{5, "a"}, {-2, ""}, {0, "b"}, {0, "c"}, {0, "d"}, {12, "e"}, {0, "f"}, {7, "g"}}));
}

TEST(vctree_get_theme, TakesNumbersBeyond32BitsAsTheNearestOne) {
    EXPECT_EQ(read_theme("<s><node99999999999>a</node99999999999><node-99999999999/></s>"),
              (Entries{{INT_MAX, "a"}, {INT_MIN, ""}}));
}

TEST(vctree_get_theme, AppendsAndLooksAtNoTag) {
    TestTree tree("<any Comment='c'><node1 Label='L'>a</node1><node2>b</node2></any>");
    Lists out = lists({9}, {"kept"});
    CWBOStringArray labels = string_list({"kept"});
    CStringUTF8 comment;

    vctree_get_theme(&tree, &out.ids, &out.values, &comment, &labels);

    EXPECT_EQ(entries(out.ids, out.values), (Entries{{9, "kept"}, {1, "a"}, {2, "b"}}));
    EXPECT_THAT(texts(labels), ElementsAre("kept", "L", ""));
    EXPECT_EQ(comment, "c");
}

// --- script forms ------------------------------------------------------------------------------

TEST(uxtree_save_values_with_ids, IsTheTreeForm) {
    TestTree tree("<r/>");
    auto ids = uxtest::script_ints({1});
    auto values = uxtest::script_texts({"a"});
    auto labels = uxtest::script_texts({"L"});

    EXPECT_EQ(uxtree_save_values_with_ids(&tree, &ids, &values, "c", &labels), 1);
    EXPECT_EQ(tree.text(), tree_text("<Settings Comment='c'>Settings<node1 Label='L'>a</node1>"
                                     "</Settings>"));
}

TEST(uxtree_tree_save_values_with_ids, IsTheFileForm) {
    const TemporaryFolder folder;
    const std::string path = folder.path("theme.xml");
    auto ids = uxtest::script_ints({1});
    auto values = uxtest::script_texts({"a"});
    auto idsOut = uxtest::script_ints({});
    auto valuesOut = uxtest::script_texts({});

    EXPECT_EQ(uxtree_tree_save_values_with_ids(path.c_str(), &ids, &values, nullptr, &ids), 0);
    EXPECT_EQ(uxtree_tree_save_values_with_ids(path.c_str(), &ids, &ids, nullptr, nullptr), 0);
    EXPECT_EQ(uxtest::read_file(path), "");
    EXPECT_EQ(uxtree_tree_save_values_with_ids(path.c_str(), &ids, &values, nullptr, nullptr), 1);
    EXPECT_EQ(uxtree_tree_read_values_with_ids(path.c_str(), &idsOut, &valuesOut, nullptr), 1);
    EXPECT_EQ(entries(idsOut.array(), valuesOut.array()), (Entries{{1, "a"}}));
}

TEST(uxtree_tree_read_values_with_ids, NeedsBothArrays) {
    auto ids = uxtest::script_ints({});
    auto values = uxtest::script_texts({"a"});

    EXPECT_EQ(uxtree_tree_read_values_with_ids("x.xml", &values, &values, nullptr), 0);
    EXPECT_EQ(uxtree_tree_read_values_with_ids("x.xml", &ids, nullptr, nullptr), 0);
    EXPECT_EQ(uxtree_tree_read_values_with_ids(nullptr, &ids, &values, nullptr), 0);
}

TEST(uxtree_set_theme, TakesScriptArrays) {
    UXXmlWrapperBase target;
    auto ids = uxtest::script_ints({1});
    auto values = uxtest::script_texts({"a"});

    EXPECT_EQ(uxtree_set_theme(&target, &ids, &values, "c"), 1);
    EXPECT_EQ(uxtest::to_text(target),
              tree_text("<Settings Comment='c'>Settings<node1>a</node1></Settings>"));
}

TEST(uxtree_get_theme, FillsScriptArrays) {
    TestTree tree("<s><node1 Label='L'>a</node1></s>");
    auto ids = uxtest::script_ints({});
    auto values = uxtest::script_texts({});
    auto labels = uxtest::script_texts({});

    uxtree_get_theme(&tree, &ids, &values, nullptr, &labels);
    EXPECT_EQ(entries(ids.array(), values.array()), (Entries{{1, "a"}}));
    EXPECT_THAT(texts(labels.array()), ElementsAre("L"));
}

}  // namespace
