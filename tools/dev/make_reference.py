#!/usr/bin/env python3
"""Writes docs/reference.md: every entry point by topic, out of the public headers.

Usage: tools/dev/make_reference.py [--check] SOURCE_FOLDER

The commands that reach an entry point are found in the sources of the command-line tool. With
--check nothing is written; fails when the file is not what would be written, when a listed entry
point is missing in it, and when a declaration has no comment.
"""

import argparse
import pathlib
import re
import sys

from entry_points import read_entry_points
from public_headers import EXPORT, plain_parameter, read_headers, read_vocabulary, write_or_compare

HEAD = """\
# Reference

Every entry point of uxtree_Utils by topic: its declaration, what it does, its results, and the
commands of `uxtree` that call it. Written by `tools/dev/make_reference.py` from the headers below
`include/uxtree/`, where each comment stands beside its declaration; do not edit.

Entry points in `extern "C"` are the script forms. Conventions that all entry points share (bad
arguments, outputs, script objects) stand in [conventions.md](conventions.md).
"""


# --- which command calls what -----------------------------------------------------------------


def blocks(text):
    """The top-level definitions of a source file: (first line, whole text)."""
    starts = [match.start() for match in re.finditer(r"^(?=[A-Za-z].*)", text, re.MULTILINE)]
    starts.append(len(text))
    for start, end in zip(starts, starts[1:]):
        yield text[start:end]


def words(text):
    return set(re.findall(r"\w+", text))


def functions_of(text):
    """The words of each function of a source file, by name."""
    functions = {}
    for block in blocks(text):
        function = re.match(r"[\w:<>,&*\s]*?(\w+)\(", block)
        if function:
            functions.setdefault(function.group(1), set()).update(words(block))
    return functions


def calls_of_commands(text, shared):
    """For each command of a source file, the words of all functions that it may call."""
    functions = shared | functions_of(text)
    for block in blocks(text):
        command = re.match(r'const Command \w+[^"]*"([^"]+)"', block)
        if not command:
            continue
        name, reached = command.group(1), words(block)
        waiting = list(reached)
        while waiting:
            found = functions.get(waiting.pop(), set()) - reached
            reached |= found
            waiting += found
        yield name, reached


def commands_by_entry_point(source, names):
    table = {name: [] for name in names}
    tool = source / "tools" / "uxtree"
    shared = {}
    for path in sorted((tool / "support").glob("*.cpp")):
        shared |= functions_of(path.read_text(encoding="utf-8"))
    for path in sorted(tool.glob("*_commands.cpp")):
        for command, reached in calls_of_commands(path.read_text(encoding="utf-8"), shared):
            for name in reached & table.keys():
                table[name].append(command)
    return table


# --- Markdown -----------------------------------------------------------------------------------


def escaped(line):
    """Text of a comment with the characters that Markdown would read, outside of backticks."""
    parts = line.split("`")
    for i in range(0, len(parts), 2):
        parts[i] = re.sub(r"([*<>|\\])", r"\\\1", parts[i])
    return "`".join(parts)


def comment(lines):
    """A comment as Markdown: its indented lines are tables, which keep their shape."""
    out, table = [], []
    for line in [*lines, ""]:
        if line.startswith("  ") and line.strip():
            table.append(line)
            continue
        if table:
            out += ["", "```text", *table, "```", ""]
            table = []
        out.append(escaped(line))
    return re.sub(r"\n{3,}", "\n\n", "\n".join(out)).strip()


def code(declaration):
    """A declaration without the marks of the library and without annotations."""
    if declaration.is_class():
        return [line.replace(EXPORT + " ", "") for line in declaration.lines]
    mark = 'extern "C" ' if declaration.is_script else ""
    start = f"{mark}{declaration.result} {declaration.name}("
    parameters = [plain_parameter(each) for each in declaration.parameters]
    whole = start + ", ".join(parameters) + ");"
    if len(whole) <= 100:
        return [whole]
    lines = [start]
    for place, parameter in enumerate(parameters):
        last = place + 1 == len(parameters)
        piece = parameter + (");" if last else ", ")
        if len((lines[-1] + piece).rstrip()) > 100:
            lines.append("    ")
        lines[-1] += piece
    return [line.rstrip() for line in lines]


def summary(about):
    """The first sentence of a topic's comment."""
    paragraph = " ".join(about).split("  ")[0]
    return re.match(r".*?\.(?= |$)|.*", paragraph).group(0)


def section(group, commands):
    names = list(dict.fromkeys(each.name for each in group.declarations))
    parts = ["### " + ", ".join(f"`{name}`" for name in names), "", "```cpp"]
    for each in group.declarations:
        parts += code(each)
    parts += ["```", ""]
    if group.comment:
        parts += [comment(group.comment), ""]
    used = sorted({command for name in names for command in commands.get(name, [])})
    if used:
        parts += ["Commands: " + ", ".join(f"`uxtree {command}`" for command in used), ""]
    return "\n".join(parts)


def reference(headers, commands):
    parts = [HEAD]
    for header in headers:
        title = header.path.removeprefix("uxtree/").removesuffix(".h")
        count = len({each.name for each in header.declarations()})
        anchor = re.sub(r"[^\w-]", "", title)
        parts.append(f"- [{title}](#{anchor}): {escaped(summary(header.about))} ({count})")
    parts.append("")
    for header in headers:
        parts += ["## " + header.path.removeprefix("uxtree/").removesuffix(".h"), ""]
        parts += [comment(header.about), "", f"Header: `<{header.path}>`", ""]
        parts += [section(group, commands) for group in header.groups]
    return "\n".join(parts).rstrip() + "\n"


def unused_codes(source, headers):
    used = {
        code for header in headers for each in header.declarations() for code, _ in each.returns.codes
    }
    return [name for name in read_vocabulary(source / "include") if name not in used]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="compare instead of writing")
    parser.add_argument("source", type=pathlib.Path)
    options = parser.parse_args()

    headers = read_headers(options.source / "include")
    declared = [each.name for header in headers for each in header.declarations()]
    names = read_entry_points(options.source / "docs" / "entry_points.txt")
    problems = [f"not declared: {name}" for name in names if name not in declared]
    problems += [f"not listed: {name}" for name in declared if name not in names]
    problems += [
        f"without a comment: {each.name} ({header.path})"
        for header in headers
        for group in header.groups
        if not group.comment
        for each in group.declarations
    ]
    problems += [f"nothing yields the code {name}" for name in unused_codes(options.source, headers)]
    text = reference(headers, commands_by_entry_point(options.source, names))
    if not write_or_compare(options.source / "docs" / "reference.md", text, options.check):
        problems.append("docs/reference.md is stale: run tools/dev/make_reference.py .")
    print("\n".join(problems) or f"reference: {len(set(declared))} entry points")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
