#!/usr/bin/env python3
"""Writes docs/script_reference.md: everything that scripts can call, as they see it.

Usage: tools/dev/make_script_reference.py [--check] SOURCE_FOLDER

The functions come from the annotated headers, by the rules by which they are registered; types and
helpers out of the sources that register them, where a comment stands before each declaration. With
--check nothing is written; fails when the file is not what would be written.
"""

import re
import sys
import textwrap

from make_reference import escaped
from make_script_door import RECORDS, forms, may_be_left_out, script_functions
from makers import derived_file_options, tell, write_or_compare
from public_headers import read_headers, read_vocabulary

HEAD = """\
# Script reference

What scripts can call, as they see it; [scripting.md](scripting.md) teaches how. Written by
`tools/dev/make_script_reference.py`; do not edit.

`none` is the missing text, `null` the missing Tree or array. A parameter `&inout` is a variable: it
is as it was when the call fails. What each function does, and what its parameters mean, stands in the
[reference](reference.md) under the same name. Beside what is listed there are the types `string`,
`array`, `dictionary` and the functions of mathematics as the add-ons of the language have them; a
number becomes the text that a node would have as its value.
"""

DECLARED = re.compile(
    r'^((?: *//[^\n]*\n)*) *(?:\{|add\.(?:method|function)\((?:\s*"(\w+)",)?)\s*'
    r'"((?:[^"\\]|\\.)*)"((?:\s*"(?:[^"\\]|\\.)*")*),\s*\w',
    re.MULTILINE,
)
KINDS = {
    "done": "1 when it was done",
    "yes": "1 or true for yes, 0 or false for no",
    "count": "a number from 0 on",
    "zero": "0 when it was done",
    "stored": "a value as it is stored",
    "number": "one of the codes",
    "says_nothing": "the same whether it was done or not",
    "text": "a text",
}


def registered(text):
    """(comment, type, declaration) of everything that a source registers by hand."""
    for comment, type, first, rest in DECLARED.findall(text):
        parts = [first, *re.findall(r'"((?:[^"\\]|\\.)*)"', rest)]
        lines = [line.strip()[3:] for line in comment.strip().splitlines()]
        yield " ".join(lines), type, "".join(parts).replace('\\"', '"')


def as_property(declaration):
    """How a getter or setter is written: t.value instead of get_value()."""
    match = re.fullmatch(r"(\S+) get_(\w+)\(\)( const)? property", declaration)
    return f"{match[1]} {match[2]}" if match else declaration


def listed(rows):
    """Declarations as one block of code, each below its comment."""
    lines = []
    for comment, declaration in rows:
        if not re.match(r"\S+ set_\w+\(.*\) property", declaration):
            lines += textwrap.wrap(comment, 97, initial_indent="// ", subsequent_indent="// ")
            lines.append(as_property(declaration))
    return ["```cpp", *lines, "```", ""]


def types(source):
    folder = source / "bindings" / "script"
    read = {name: list(registered((folder / f"{name}.cpp").read_text(encoding="utf-8")))
            for name in ("tree", "kit", "functions", "register")}
    lines = ["## Tree", "", "`Tree t;` refers to nothing, `Tree t(\"tag\")` to the root of a new tree.", ""]
    lines += listed([(comment, text) for comment, _, text in read["tree"]])
    lines += ["With the embedded host:", ""]
    lines += listed([(comment, text) for comment, type, text in read["kit"] if type])
    lines += ["## text", "", "A string that may be missing; a string becomes one by itself.", ""]
    lines += listed([(c, text) for c, type, text in read["register"] if type == "text" and c])
    lines += ["## Printing and files", "", "```cpp", "void print(value, ...)", "```", "",
              "Prints up to eight values of any type with a blank between them.", ""]
    lines += listed([(c, text) for c, _, text in read["functions"] if c])
    lines += ["With the embedded host:", ""]
    lines += listed([(comment, text) for comment, type, text in read["kit"] if not type])
    lines += ["## Ranges", "", "```cpp",
              "VCRangeTreeIterator ranges(tree);  // int Get(Tree@ firstSubRange), int IsHierarchical()",
              "VCSubRangeTreeIterator parts(firstSubRange);  // int Get(Tree@ subRange)", "```", "",
              "`Get` yields 1 with the next one, 0 at the end.", ""]
    return lines


def records(headers):
    lines = ["## Records", "", "`tagDescStatResults r;` makes one; its fields:", ""]
    for header in headers:
        for name, text in header.structs.items():
            if name in RECORDS:
                lines += ["```cpp", *text.splitlines(), "```", ""]
    return lines


def result(each, vocabulary):
    if each.returns.kind == "nothing":
        return "Returns nothing."
    words = [KINDS[each.returns.kind]]
    for name, value in each.returns.codes:
        number = "any other number" if value is None else f"{value}"
        words.append(f"{number}: {vocabulary[name].rstrip('.')}")
    return "Returns " + "; ".join(words) + "."


def functions(headers, vocabulary):
    lines, path = [], ""
    for header, each in script_functions(headers):
        if header.path != path:
            path = header.path
            lines += [f"## {path.removeprefix('uxtree/').removesuffix('.h')}", ""]
        declaration = next(iter(forms(each)))[0]
        lines += [f"### {each.name}", "", "```cpp", declaration, "```", "",
                  escaped(result(each, vocabulary))]
        outputs = [f"`{p.name}`" for p in each.parameters if may_be_left_out(p)]
        if outputs:
            lines += ["", f"May be `none` instead of a variable: {', '.join(outputs)}."]
        lines.append("")
    return lines


def main():
    options = derived_file_options(__doc__)
    include = options.source / "include"
    headers = read_headers(include)
    parts = [HEAD, *types(options.source), *records(headers),
             *functions(headers, read_vocabulary(include))]
    text = "\n".join(parts).rstrip() + "\n"
    target = options.source / "docs" / "script_reference.md"
    count = len(list(script_functions(headers)))
    return tell(write_or_compare(target, text, options.check), f"script reference: {count} functions")


if __name__ == "__main__":
    sys.exit(main())
