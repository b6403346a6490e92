"""The C++ of README.md and of the pages of the guide compiles as it stands, and names exist.

    python3 tests/frame/page_programs_test.py SOURCE_FOLDER COMPILER

A block that is no whole program is taken for statements of a function: its includes go in front, and
a returned value may be of any type. What it calls is compiled, not run.
"""
import pathlib
import re
import subprocess
import sys
import unittest

ROOT, COMPILER = pathlib.Path(sys.argv[1]), sys.argv[2]
BLOCK = re.compile(r"^```cpp\n(.*?)^```$", re.DOTALL | re.MULTILINE)
NAME = re.compile(r"\b(?:(?:uxtree|vctree|wbxfu|ux)_\w*[a-z0-9]|(?:VCTree|UX)[A-Za-z]\w+)\b(?!\.\.\.)")
MADE = {"reference.md", "script_reference.md"}  # declarations out of headers that are compiled anyway


def program(block):
    if re.search(r"^int main\(", block, re.MULTILINE):
        return block
    includes = "".join(re.findall(r"^#include .*\n", block, re.MULTILINE))
    statements = re.sub(r"^#include .*\n", "", block, flags=re.MULTILINE)
    return f"#include <cstdio>\n{includes}auto page()\n{{\n{statements}}}\n"


def compile_error(text):
    done = subprocess.run([COMPILER, "-std=c++20", "-Wall", "-Werror", "-Wno-unused", "-fsyntax-only",
                           "-I", ROOT / "include", "-x", "c++", "-"],
                          input=text, capture_output=True, text=True)
    return done.stderr if done.returncode else ""


def pages():
    for page in [*sorted(ROOT.glob("*.md")), *sorted((ROOT / "docs").glob("*.md"))]:
        if page.name not in MADE:
            yield page, page.read_text()


def names_of_the_sources():
    names = set()
    for folder in ("include", "src", "tools", "bindings", "cmake", "examples"):
        for path in (ROOT / folder).rglob("*"):
            if path.suffix in (".h", ".cpp", ".c", ".py", ".txt", ".cmake"):
                names.update(re.findall(r"\w+", path.read_text()))
    return names


class Pages(unittest.TestCase):
    def test_names_are_those_of_the_sources(self):
        known = names_of_the_sources()
        named = {(page.name, name) for page, text in pages() for name in NAME.findall(text)}
        self.assertGreater(len(named), 100)
        self.assertEqual(sorted((page, name) for page, name in named if name not in known), [])

    def test_programs_compile(self):
        tried = 0
        for page, text in pages():
            for block in BLOCK.findall(text):
                tried += 1
                self.assertEqual(compile_error(program(block)), "", f"{page.name}:\n{block}")
        self.assertGreaterEqual(tried, 2)

    def test_a_name_that_is_not_there_is_found_out(self):
        self.assertIn("UXNoSuchThing", compile_error(program("UXNoSuchThing();\n")))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
