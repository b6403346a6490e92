"""Tests of the checks in tools/dev/ on small trees and libraries.

Usage: checks_test.py TOOLS_FOLDER CXX_COMPILER
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOLS = pathlib.Path(sys.argv[1])
COMPILER = sys.argv[2]

LAYERS = """
# from the bottom up
base:
xml:     base
host:    base xml
frame:   base host
tree:    base host frame
data:    base host frame tree
outline: base host frame
kit:     base host frame tree data outline
"""

VOCABULARY = """// Marks.
// The names of codes:
//
//   none  There is none.
//   lost  It got lost.
#define UX_RETURNS(...)
"""


def run(script, *arguments):
    command = [sys.executable, str(TOOLS / script), *map(str, arguments)]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    return done.returncode, done.stdout + done.stderr


class Folder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def write(self, name, content):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content)
        return path


class CheckLayers(Folder):
    def check(self, name, content):
        self.write("docs/layers.txt", LAYERS)
        self.write_code(name, content)
        return run("check_layers.py", self.root)

    def write_code(self, name, content):
        self.write(name, "// What it is about.\n" + content)

    def assert_clean(self, name, content):
        self.assertEqual(self.check(name, content), (0, "layers: every include points downward\n"))

    def assert_refused(self, name, content, reason):
        code, output = self.check(name, content)
        self.assertEqual(code, 1)
        self.assertIn(reason, output)

    def test_downward_and_own_includes_are_fine(self):
        self.assert_clean(
            "src/tree/vectors.cpp",
            '#include "uxtree/tree/vectors.h"\n#include "tree/lookup.h"\n#include "frame/guards.h"\n'
            '#include "uxtree/host/node.h"\n#include <vector>\n#include <cerrno>\n',
        )

    def test_upward_includes_are_refused_in_any_form(self):
        reason = "frame does not see tree"
        for include in (
            '#include "uxtree/tree/lookup.h"',
            "  #  include <tree/lookup.h>",
            '/* why not */ #include "tree/lookup.h"',
            '#include /* a room */ "tree/lookup.h"',
            '#inc\\\nlude "tree/lookup.h"',
            '%:include "tree/lookup.h"',
            '#include_next "tree/lookup.h"',
        ):
            self.assert_refused("src/frame/guards.h", include + "\n", reason)

    def test_headers_of_the_system_belong_to_the_platform(self):
        for path in ("sys/stat.h", "unistd.h", "windows.h", "locale.h"):
            include = f"  # include <{path}>\n"
            self.assert_refused("src/host/arena.cpp", include, f"<{path}> is a header of the system")
            self.assert_refused("include/uxtree/tree/a.h", include, "is a header of the system")
            (self.root / "include/uxtree/tree/a.h").unlink()
            self.assert_refused("src/base/platform.h", include, "is a header of the system")
            (self.root / "src/base/platform.h").unlink()
            (self.root / "src/host/arena.cpp").unlink()
            self.assert_clean("src/base/platform_posix.cpp", include)
            self.assert_refused("tools/uxtree/show.cpp", include, f"<{path}> is a header of the system")
            (self.root / "tools/uxtree/show.cpp").unlink()
            self.assert_clean("tools/uxtree/support/platform_posix.cpp", include)
        self.assert_clean("src/xml/scan.cpp", "#include <expat.h>\n#include <emmintrin.h>\n")

    def test_includes_in_comments_and_texts_do_not_count(self):
        self.assert_clean(
            "src/frame/guards.cpp",
            '// #include "tree/lookup.h"\n/*\n#include "tree/lookup.h"\n*/\n'
            'const char* text = R"(\n#include "tree/lookup.h"\n)"; // "\n',
        )

    def test_includes_that_cannot_be_followed_are_refused(self):
        self.assert_refused("src/tree/lookup.cpp", "#include HEADER\n", "cannot be read: HEADER")
        for path in ("../host/document.h", "./lookup.h", "/usr/include/x.h", "tree/../host/arena.h"):
            reason = f'"{path}" is not written from the root' if path[0] != "/" else "in no room"
            self.assert_refused("src/tree/lookup.cpp", f'#include "{path}"\n', reason)
        self.assert_refused("src/tree/lookup.cpp", '#include "vectors.h"\n', "in no room")

    def test_public_headers_are_checked_too(self):
        reason = "tree does not see data"
        self.assert_refused("include/uxtree/tree/lookup.h", '#include "uxtree/data/ids.h"', reason)
        reason = "a public header includes public headers only"
        self.assert_refused("include/uxtree/data/ids.h", '#include "data/ids_detail.h"', reason)

    def test_headers_that_gather_all_stand_below_the_kit(self):
        self.write_code("src/kit/door.cpp", '#include "uxtree/uxtree_Utils.h"\n')
        layers = LAYERS.replace("kit:", "report:  base host frame tree data outline\nkit:")
        layers = layers.replace("data outline\n\"", "data outline report\n\"")
        self.write("docs/layers.txt", layers.rstrip() + " report\n")
        self.assertEqual(run("check_layers.py", self.root)[0], 0)
        self.write_code("src/tree/lookup.cpp", '#include "uxtree/uxtree_Utils.h"\n')
        self.assertIn("tree does not see report", run("check_layers.py", self.root)[1])

    def test_files_outside_the_rooms_are_refused(self):
        self.assert_refused("src/other/x.cpp", "", "src/other/x.cpp: no room")
        self.assert_refused("src/tree/lookup.cpp", '#include "other/x.h"', "in no room")

    def test_rooms_beside_each_other_do_not_meet(self):
        reason = "outline does not see data"
        self.assert_refused("src/outline/scanner.cpp", '#include "data/ids_detail.h"', reason)

    def test_a_room_is_listed_below_those_that_see_it(self):
        self.write("docs/layers.txt", "frame: tree\ntree:\n")
        code, output = run("check_layers.py", self.root)
        self.assertEqual(code, 1)
        self.assertIn("not below frame: tree", output)

    def test_the_store_is_the_hosts_own(self):
        reason = "it is the host's own"
        self.assert_refused("src/tree/lookup.cpp", '#include "host/arena.h"', reason)
        self.assert_refused("src/tree/lookup.cpp", "#include <host/document.h>", reason)
        self.assert_refused("src/kit/door.cpp", '#include "host/document.h"', reason)
        self.assert_refused("src/tree/lookup.cpp", '#include "xml/output.h"', "does not see xml")

    def test_the_store_is_not_named_under_any_alias(self):
        reason = "names the host's own storage ("
        for code in (
            "uxhost::Element* e;",
            "namespace store = uxhost;\nstore::Element* e;",
            "namespace store = ::uxhost ;",
            "using namespace uxhost;",
            "namespace uxhost { class Document; }",
        ):
            self.assert_refused("src/tree/lookup.cpp", code, reason)
        self.assert_refused("include/uxtree/host/node.h", "namespace uxhost { class D; }", reason)
        self.assert_refused("tools/uxtree/main.cpp", "uxhost::Document* d;", reason)

    def test_the_host_may_name_its_store(self):
        self.assert_clean("src/host/node.cpp", '#include "host/arena.h"\nuxhost::Element* e;')
        self.assert_clean("src/tree/lookup.cpp", 'auto t = "libuxhost.so uxhost"; // uxhost::x')

    def test_what_the_embedded_host_adds_is_for_the_kit(self):
        embedded = '#include "uxtree/host/embedded.h"\n'
        self.assert_clean("src/kit/door.cpp", embedded)
        self.assert_clean("src/host/node_files.cpp", embedded)
        reason = "the embedded host is not every host"
        self.assert_refused("src/tree/lookup.cpp", embedded, reason)
        self.assert_refused("include/uxtree/host/host.h", embedded, reason)

    def test_topics_that_include_each_other_are_refused(self):
        self.write("src/data/saved.h", '#include "data/copy.h"\n')
        reason = "a circle of includes: data/copy -> data/saved -> data/copy"
        self.assert_refused("src/data/copy.h", '#include "data/saved.h"\n', reason)
        self.write("src/data/copy.h", '#include "data/ids.h"\n')
        reason = "data/copy -> data/ids -> data/saved -> data/copy"
        self.assert_refused("src/data/ids.cpp", '#include "data/saved.h"\n', reason)

    def test_a_detail_belongs_to_its_topic(self):
        self.write("src/tree/lookup_detail.h", '#include "uxtree/tree/lookup.h"\n')
        self.assert_clean("src/tree/lookup.cpp", '#include "tree/lookup_detail.h"\n')

    def test_rooms_are_printed_from_the_bottom_up(self):
        self.write_code("src/tree/lookup.cpp", '#include "frame/walk.h"\n#include "base/ascii.h"\n')
        self.write("docs/layers.txt", LAYERS)
        code, output = run("check_layers.py", "--rooms", self.root)
        self.assertEqual(code, 0)
        self.assertIn("frame\ntree      base frame\ndata\n", output)

    def test_a_source_says_its_topic_in_its_first_line(self):
        reason = "src/tree/lookup.cpp: the first line does not say its topic"
        self.write("docs/layers.txt", LAYERS)
        for content in ("", "#include <vector>\n", "//\n", "\n// Late.\n", "// TODO\n"):
            self.write("src/tree/lookup.cpp", content)
            self.assertIn(reason, run("check_layers.py", self.root)[1])
        self.write("src/tree/lookup.cpp", "// Finding nodes.\n")
        self.assertEqual(run("check_layers.py", self.root)[0], 0)

    def test_tools_see_public_headers_only(self):
        reason = "only public headers"
        self.assert_clean("tools/uxtree/main.cpp", '#include "uxtree/uxtree_Utils.h"')
        for include in ('"tree/lookup.h"', "<host/document.h>", '"../../src/tree/lookup.h"'):
            self.assert_refused("tools/uxtree/main.cpp", f"#include {include}", reason)
            self.assert_refused("bindings/python/m.cpp", f"#include {include}", reason)


class CheckQuirks(Folder):
    def check(self, test="Suite.Sentence", topic="tree/lookup", advice="look twice"):
        self.write("tests/tree/lookup_test.cpp", "TEST_F(Suite, Sentence) {}")
        self.write("src/tree/lookup_detail.h", "// Intended: odd.")
        head = f"## Lookup (`{topic}`)\n\n| What happens | So do this | Test |\n|---|---|---|\n"
        self.write("docs/quirks.md", f"{head}| odd | {advice} | `{test}` |\n")
        return run("check_quirks.py", self.root)

    def test_rows_with_their_tests_are_fine(self):
        self.assertEqual(self.check(), (0, "quirks: every row has its tests\n"))

    def test_tests_that_do_not_exist_are_refused(self):
        code, output = self.check(test="Suite.Other")
        self.assertEqual(code, 1)
        self.assertIn("no such test: Suite.Other", output)

    def test_rows_without_a_test_are_refused(self):
        code, output = self.check(test="none")
        self.assertEqual(code, 1)
        self.assertIn("no test in: | odd", output)

    def test_rows_without_advice_are_refused(self):
        code, output = self.check(advice="")
        self.assertEqual(code, 1)
        self.assertIn("one of them advice", output)

    def test_marked_sources_without_a_section_are_refused(self):
        code, output = self.check(topic="tree/look")
        self.assertEqual(code, 1)
        self.assertIn("no section names tree/lookup_detail", output)


class CheckFuzzMap(Folder):
    def check(self, *rows):
        self.write("docs/entry_points.txt", "native\tf\ttopic\nscript\tg\ttopic\n")
        self.write("fuzz/texts_fuzz.cpp", "void run() { f(1); }")
        self.write("fuzz/README.md", "".join(row + "\n" for row in rows))
        return run("check_fuzz_map.py", self.root)

    def assert_refused(self, reason, *rows):
        code, output = self.check(*rows)
        self.assertEqual(code, 1)
        self.assertIn(reason, output)

    def test_called_through_and_none_are_fine(self):
        fine = (0, "fuzz map: every entry point has its row\n")
        called = "| texts | called | `f` |"
        self.assertEqual(self.check(called, "| texts | through `f` | `g` |"), fine)
        self.assertEqual(self.check(called, "| none | numbers | `g` |"), fine)

    def test_rows_that_are_not_true_are_refused(self):
        called = "| texts | called | `f` |"
        self.assert_refused("no row for g", called)
        self.assert_refused("never mentions g", "| texts | called | `f`, `g` |")
        self.assert_refused("never mentions h", called, "| texts | through `h` | `g` |")
        self.assert_refused("no such target: other", called, "| other | called | `g` |")
        self.assert_refused("more than one row for f", called, "| none | why | `f`, `g` |")
        self.assert_refused("no entry point: h", called, "| none | why | `g`, `h` |")


class NewTopic(Folder):
    def make(self, *arguments):
        self.write("docs/layers.txt", LAYERS + "report: base host frame tree\n")
        self.write("docs/entry_points.txt", "native\tb\tOther\nscript\ta\tOther\n")
        self.write("include/uxtree/uxtree_Utils.h", '#include "uxtree/frame/app.h"\n')
        return run("new_topic", *arguments, "--root", self.root)

    def test_makes_files_that_the_other_checks_accept(self):
        self.write("include/uxtree/frame/annotate.h", VOCABULARY.replace("none", "unusable"))
        self.write("tests/frame/calls/t.cpp", "// The rows of this topic.\nsweep.add(UX_ENTRY(VCTreeRotate), row, node());")
        code, output = self.make("tree/rotate", "VCTreeRotate")
        self.assertEqual(code, 0, output)
        self.write("include/uxtree/frame/app.h", "")
        self.assertEqual(run("check_layers.py", self.root), (0, "layers: every include points downward\n"))
        self.assertEqual(
            (self.root / "include/uxtree/uxtree_Utils.h").read_text(),
            '#include "uxtree/frame/app.h"\n#include "uxtree/tree/rotate.h"\n',
        )
        self.assertEqual(run("make_entry_points.py", self.root)[0], 0)
        self.assertEqual(
            (self.root / "docs/entry_points.txt").read_text(),
            "native\tVCTreeRotate\tuxtree/tree/rotate.h\t1\n",
        )
        for name in ("include/uxtree/tree/rotate.h", "tests/tree/rotate_test.cpp"):
            self.assertIn("VCTreeRotate", (self.root / name).read_text())

    def test_overwrites_nothing(self):
        self.write("src/tree/rotate.cpp", "mine")
        code, output = self.make("tree/rotate", "VCTreeRotate")
        self.assertEqual(code, 1)
        self.assertIn("src/tree/rotate.cpp: is there already", output)
        self.assertFalse((self.root / "include/uxtree/tree/rotate.h").exists())

    def test_refuses_names_that_are_taken_and_other_rooms(self):
        self.assertIn("entry point already", self.make("tree/rotate", "b")[1])
        self.assertIn("expected ROOM/TOPIC", self.make("host/rotate", "c")[1])
        self.assertIn("expected ROOM/TOPIC", self.make("marks/rotate", "c")[1])


class DerivedFiles(Folder):
    """Files that are made of the public headers."""

    def setUp(self):
        super().setUp()
        self.header = "// Things.\n#pragma once\n\n"
        self.header += "// Counts things. 0 when there are none.\n"
        self.header += "UXTREE_API int vc_count(UX_IN Tree& tree,\n                        int kind)\n"
        self.header += "    UX_RETURNS(count, none = 0);\n"
        self.header += 'extern "C" {\n// Script form.\nUXTREE_API int ux_count(int kind = 0) '
        self.header += "UX_RETURNS(count, none = 0, lost = -1);\n}\n"
        self.write("include/uxtree/frame/annotate.h", VOCABULARY)
        self.write("docs/entry_points.txt", "native\tvc_count\tT\nscript\tux_count\tT\n")
        command = 'int count() {\n    return ux_count();\n}\n'
        command += 'const Command kCount{"count all", "Count",\n    [] { return count(); }};\n'
        self.write("tools/uxtree/count_commands.cpp", command)

    def make(self, script, header=None):
        self.write("include/uxtree/tree/things.h", header or self.header)
        self.assertEqual(run(script, self.root)[0], 0)

    def read(self, name):
        return (self.root / name).read_text(encoding="utf-8")

    def test_reference_has_declarations_comments_and_commands(self):
        self.make("make_reference.py")
        text = self.read("docs/reference.md")
        self.assertIn("int vc_count(Tree& tree, int kind);\n", text)
        self.assertIn("Counts things. 0 when there are none.", text)
        self.assertIn("Commands: `uxtree count all`", text)

    def test_reference_wants_every_comment(self):
        bare = self.header.replace("// Script form.\n", "")
        self.write("include/uxtree/tree/things.h", bare)
        code, output = run("make_reference.py", self.root)
        self.assertEqual(code, 1)
        self.assertIn("without a comment: ux_count", output)

    def test_c_header_has_the_script_forms_without_defaults(self):
        self.make("make_c_header.py")
        text = self.read("include/uxtree/uxtree_c.h")
        self.assertIn("int ux_count(int kind);", text)
        self.assertNotIn("vc_count", text)

    def test_entry_points_want_a_row_of_the_sweep_each(self):
        row = "sweep.add(UX_ENTRY({}), done, node());\n"
        self.write("tests/frame/calls/a.cpp", row.format("vc_count"))
        self.write("include/uxtree/tree/things.h", self.header)
        self.assertIn("no row in tests/frame/calls: ux_count", run("make_entry_points.py", self.root)[1])
        self.write("tests/frame/calls/b.cpp", row.format("ux_count") + row.format("ux_other"))
        self.assertIn("a row for no entry point: ux_other", run("make_entry_points.py", self.root)[1])
        self.write("tests/frame/calls/b.cpp", 2 * row.format("ux_count"))
        self.assertEqual(run("make_entry_points.py", self.root)[0], 0)
        self.assertEqual(
            self.read("docs/entry_points.txt"),
            "native\tvc_count\tuxtree/tree/things.h\t1\nscript\tux_count\tuxtree/tree/things.h\t2\n",
        )
        self.write("tests/frame/calls/b.cpp", row.format("ux_count"))
        self.assertIn("is stale", run("make_entry_points.py", "--check", self.root)[1])

    def test_reference_says_what_annotations_say(self):
        header = self.header.replace("UX_IN Tree&", "UX_EDITS UXXmlWrapperBase&").replace(
            "int kind)\n", "UX_NULL_COUNTS const char* name)\n"
        )
        self.make("make_reference.py", header)
        self.assertIn(
            '| `vc_count` | `tree` is edited | `name` (not as "") | a count or position | 0 none |  |',
            self.read("docs/reference.md"),
        )

    def test_stale_files_are_refused(self):
        for script in ("make_reference.py", "make_c_header.py"):
            self.make(script)
            self.assertEqual(run(script, "--check", self.root)[0], 0)
            self.write("include/uxtree/tree/things.h", self.header.replace("kind", "sort"))
            code, output = run(script, "--check", self.root)
            self.assertEqual(code, 1)
            self.assertIn("is stale", output)


class Annotations(Folder):
    """What the header reader refuses."""

    def problem(self, declaration):
        self.write("include/uxtree/frame/annotate.h", VOCABULARY)
        self.write("include/uxtree/tree/things.h", f"// Things.\n\n// A thing.\n{declaration}\n")
        return run("make_c_header.py", self.root)[1].strip().removeprefix("uxtree/tree/things.h: ")

    def test_every_kind_of_parameter_is_fine(self):
        declaration = """UXTREE_API int f(
            UX_EDITS UXXmlWrapperBase* a, UX_OPT UX_OUT UX_STRINGS UXScriptObject* b,
            UX_NULL_COUNTS const char* c, UX_OPT UX_FILE const char* d, UX_APPENDS CArray<int, int>& e,
            const Point& f, std::function<bool(Tree&)> g, int h UX_BITS(x = 0x10, y = 2) = 0, ...)
            UXTREE_SENTINEL UX_RETURNS(count, none = 0, lost = other) UX_BLOCKS;"""
        self.assertEqual(self.problem(declaration), "")

    def test_what_is_missing_is_named(self):
        for declaration, problem in (
            ("void f(int* a);", "f: parameter a has no direction"),
            ("void f(Tree& a);", "f: parameter a has no direction"),
            ("void f(const char* a);", "f: parameter a has no direction"),
            ("void f(UX_OUT UXScriptObject* a);", "f: parameter a needs the type of its elements"),
            ("int f();", "f: the result has no UX_RETURNS"),
            ("int f() UX_RETURNS(count);", 'f: "count" needs the codes of failures'),
        ):
            self.assertEqual(self.problem("UXTREE_API " + declaration), problem)

    def test_contradictions_are_named(self):
        for declaration, problem in (
            ("void f(UX_OUT int a);", "is passed by value, so no annotation fits it"),
            ("void f(UX_OUT const char* a);", 'is constant, so it is not "out"'),
            ("void f(UX_EDITS int* a);", "is no handle of a tree that could be edited"),
            ("void f(UX_OUT_RELEASED int* a);", "is no handle that could be released"),
            ("void f(UX_APPENDS int* a);", "is no array that could be added to"),
            ("void f(UX_IN UX_INTS int* a);", "is no script array"),
            ("void f(UX_OPT UX_OUT int& a);", "is a reference, which is never null"),
            ("void f(UX_OUT UX_NULL_COUNTS int* a);", "is no text"),
            ("void f(UX_OUT UX_FILE int* a);", "is no name of a file"),
            ("void f(UX_OUT UX_MAY_BE_INVALID int* a);", "is no handle"),
        ):
            self.assertEqual(self.problem("UXTREE_API " + declaration), f"f: parameter a {problem}")

    def test_what_nobody_knows_is_named(self):
        for declaration, problem in (
            ("void f(UX_SIDEWAYS int* a);", "parameter a: UX_SIDEWAYS does not fit"),
            ("void f(UX_IN UX_OUT int* a);", "parameter a: UX_OUT does not fit"),
            ("void f(UX_OPT UX_NULL_COUNTS const char* a);",
             "parameter a: UX_NULL_COUNTS says optional already"),
            ("int f() UX_RETURNS(maybe, none = 0);", '"maybe" is no kind of result'),
            ("int f() UX_RETURNS(count, odd = 0);", "uxtree/frame/annotate.h does not say what odd means"),
            ("int f() UX_RETURNS(count, none = 0, lost = 0);", "a code has two names"),
            ("int f() UX_RETURNS(count, none);", 'expected name = value, not "none"'),
            ("void f() UX_RETURNS(done, none = 0);", "there is no result for UX_RETURNS"),
        ):
            self.assertEqual(self.problem("UXTREE_API " + declaration), f"f: {problem}")

    def test_names_of_codes_that_nothing_uses_are_refused(self):
        self.write("include/uxtree/tree/things.h", "// T.\n\n// A.\nUXTREE_API void f();\n")
        self.write("include/uxtree/frame/annotate.h", VOCABULARY)
        self.write("docs/entry_points.txt", "native\tf\tT\n")
        self.assertIn("nothing yields the code lost", run("make_reference.py", self.root)[1])


class CheckExports(Folder):
    HEADER = """
#define TEST_API __attribute__((visibility("default")))
TEST_API void f(int);
TEST_API void f(char);
class TEST_API C {
public:
    virtual ~C();
    int m() const;

private:
    struct Inner;
};
class TEST_API Whole {
    int half() { return twice(1); }
    int twice(int a) { return a; }
};
namespace n {
TEST_API const char* g(int a,
                       int b);
}
extern "C" {
TEST_API void s();
}
"""
    SOURCE = """
#include "names.h"
void f(int) {}
void f(char) {}
C::~C() {}
int C::m() const { return 0; }
const char* n::g(int, int) { return ""; }
void s() {}
"""

    def check(self, code, *flags):
        header = self.write("names.h", self.HEADER)
        source = self.write("library.cpp", code)
        library = self.root / "library.so"
        command = [COMPILER, "-shared", "-fPIC", *flags, "-o", library, source]
        subprocess.run(command, check=True)
        return run("check_exports.py", library, "TEST_API", header)

    def test_marked_functions_and_classes_are_fine(self):
        self.assertEqual(self.check(self.SOURCE), (0, "exports: 11 symbols of 5 names\n"))

    def test_names_that_no_header_marks_are_refused(self):
        code, output = self.check(self.SOURCE + "void h(int) {} void fg(int) {}")
        self.assertEqual(code, 1)
        self.assertIn("no header marks it: h(int)\n", output)
        self.assertIn("no header marks it: fg(int)\n", output)

    def test_classes_inside_a_class_are_refused(self):
        code, output = self.check(self.SOURCE + "struct C::Inner { int m(); }; int C::Inner::m() { return 0; }")
        self.assertEqual((code, output.splitlines()[1:]), (1, ["no header marks it: C::Inner::m()"]))

    def test_names_without_a_symbol_are_refused(self):
        code, output = self.check(self.SOURCE.replace("void s() {}", ""))
        self.assertEqual((code, output.splitlines()[1:]), (1, ["marked but not exported: s"]))

    def test_the_linker_lets_out_what_is_marked(self):
        header = self.write("names.h", self.HEADER)
        script = self.root / "names.map"
        self.assertEqual(run("make_version_script.py", "TEST_API", script, header), (0, ""))
        more = "#include <vector>\nstd::vector<int> v; void h() { v.push_back(1); }"
        code, output = self.check(self.SOURCE + more, f"-Wl,--version-script={script}")
        self.assertEqual((code, output), (0, "exports: 11 symbols of 5 names\n"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
