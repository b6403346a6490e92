// The Tree of scripts: paths, values, attributes, neighbours, changes, files.
#include "gmock/gmock.h"
#include "script/script_support.h"
#include "support/test_tree.h"

namespace uxtest {
namespace {

using testing::HasSubstr;

const char* const kTree =
    "Tree t; t.parse(\"<r><a n='1'>x</a><b><c Label='See'>2</c><c>3.5</c></b></r>\");\n";

std::string on_tree(const std::string& code) {
    return Script().body(kTree + code);
}

}  // namespace

TEST(ScriptTree, FollowsPaths) {
    EXPECT_EQ(
        on_tree("print(t[\"b/c[2]\"].value, t[\"\"].tag, t.has(\"b/d\"), t.find(\"x\") is null);"
                "print(t[\"b/c[2]\"].path, t[\"a\"].path, t.path == \"\");"),
        "3.5 r false true\nb/c[2] a true\n");
    EXPECT_THAT(on_tree("t[\"b/c[3]\"];"),
                HasSubstr("'b' has no child 'c[3]'; its children: c, c\n"));
    EXPECT_THAT(on_tree("t[\"b//c\"];"), HasSubstr("'b//c' is no path of tags"));
    EXPECT_THAT(on_tree("t[\"b/\"];"), HasSubstr("is no path of tags"));
    EXPECT_THAT(on_tree("t[\"c[0]\"];"), HasSubstr("is no path of tags"));
}

TEST(ScriptTree, CreatesWhatAPathLacks) {
    EXPECT_EQ(
        on_tree("t.create(\"b/x/y\").value = \"1\"; t.create(\"a\").value = \"2\"; print(t);"),
        "<r><a n=\"1\">2</a><b><c Label=\"See\">2</c><c>3.5</c><x><y>1</y></x></b></r>\n");
    EXPECT_THAT(on_tree("t.create(\"b/ x\");"), HasSubstr("' x' is no element name"));
}

TEST(ScriptTree, ReadsAndWritesValues) {
    EXPECT_EQ(
        on_tree("Tree@ c = t[\"b/c[2]\"]; print(c.number(), c.integer(), t[\"a\"].integer(-1));"
                "c.set_integer(7); print(c.value); c.set_number(0.5); print(c.value);"
                "c.value = \"\"; print(c.number(9)); c.tag = \"d\"; c.id = 5; c.data_id = 6;"
                "print(c.tag, c.id, c.data_id, t[\"a\"].data_id, t[\"b/c\"].label, c.label);"),
        "3.5 3 -1\n7\n0.5\n9\nd 5 6 -1 See d\n");
    EXPECT_THAT(on_tree("t.tag = \"1\";"), HasSubstr("'1' is no element name"));
}

TEST(ScriptTree, HasAttributes) {
    EXPECT_EQ(
        on_tree("Tree a = t[\"a\"]; a.set_attribute(\"m\", \"2\"); print(a.attributes());"
                "print(a.attribute(\"n\"), a.attribute(\"q\", \"none\"), a.has_attribute(\"m\"));"
                "print(a.remove_attribute(\"n\")); print(a.remove_attribute(\"n\"), a);"),
        "[n, m]\n1 none true\ntrue\nfalse <a m=\"2\">x</a>\n");
    EXPECT_THAT(on_tree("t.set_attribute(\"1\", \"\");"), HasSubstr("no attribute name"));
}

TEST(ScriptTree, LeadsToItsNeighbours) {
    EXPECT_EQ(on_tree("for (Tree@ n = t.first; n !is null; @n = n.next) print(n.tag, n.count);"
                      "Tree b = t[\"b\"]; print(b.previous.tag, b.parent.tag, b.first.root == t);"
                      "print(t.parent is null, b.children(\"c\").length(), t.child(1) == b);"
                      "array<Tree@>@ all = t.walk(); for (uint i = 0; i < all.length(); ++i) "
                      "print(all[i].tag);"
                      "print(t.walk(\"c\").length());"),
              "a 0\nb 2\na r true\ntrue 2 true\na\nb\nc\nc\n2\n");
    EXPECT_THAT(on_tree("t.child(2);"), HasSubstr("no child 2: 'r' has 2"));
}

TEST(ScriptTree, ChangesItsStructure) {
    EXPECT_EQ(on_tree("Tree b = t[\"b\"]; t.add(\"d\", \"4\"); t.add_copy(t[\"a\"]); b.remove();"
                      "print(t, b.valid); Tree other = t.copy(); other.remove_children();"
                      "print(other, t.count);"),
              "<r><a n=\"1\">x</a><d>4</d><a n=\"1\">x</a></r> false\n<r></r> 3\n");
}

TEST(ScriptTree, LoadsAndSaves) {
    TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "<r>\n  <!-- kept -->\n  <a x='1'/>\n</r>\n");
    EXPECT_EQ(
        Script().body("Tree t; t.load(\"" + path + "\"); t.save(\"" + folder.path("b.xml") +
                      "\"); t.load_for_editing(\"" + path +
                      "\"); t[\"a\"].value = \"2\"; print(t.keeps_layout); t.save_with_layout(\"" +
                      folder.path("c.xml") + "\");"),
        "true\n");
    EXPECT_EQ(read_file(folder.path("b.xml")),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><r><a x=\"1\"/></r>");
    EXPECT_EQ(read_file(folder.path("c.xml")), "<r>\n  <!-- kept -->\n  <a x='1'>2</a>\n</r>\n");
    EXPECT_THAT(Script().body("Tree t; t.load(\"" + folder.path("none.xml") + "\");"),
                HasSubstr("none.xml: "));
    EXPECT_THAT(Script().body("Tree t(\"r\"); t.save_with_layout(\"x.xml\");"),
                HasSubstr("keeps no layout"));
}

TEST(ScriptTree, StandsBesideTheVersion) {
    EXPECT_EQ(Script().body("print(uxtree_version);"), UXTREE_VERSION "\n");
}

TEST(ScriptTree, Selects) {
    EXPECT_EQ(
        on_tree(
            "print(t.select(\"//c[@Label]\"), t.select_texts(\"b/c\"), t.select_texts(\"a/@n\"));"),
        "[<c Label=\"See\">2</c>] [2, 3.5] [1]\n");
    EXPECT_THAT(on_tree("t.select(\"b[\");"), HasSubstr("'b[', behind 2 bytes: "));
}

TEST(ScriptTree, HandlesOfRemovedNodesReferToNothing) {
    EXPECT_EQ(on_tree("Tree c = t[\"b/c\"]; t[\"b\"].remove(); print(c.valid, "
                      "uxtree_all_nodes_has_attrib(c, \"n\"));"
                      "try { c.add(\"x\"); } catch { print(getExceptionInfo()); }"),
              "false 0\nthe Tree refers to no node\n");
}

}  // namespace uxtest
