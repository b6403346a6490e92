#!/usr/bin/env python3
"""Writes docs/reference.md: every entry point by topic, out of the public headers.

Usage: tools/dev/make_reference.py [--check] SOURCE_FOLDER

The commands that reach an entry point are found in the sources of the command-line tool. With
--check nothing is written; fails when the file is not what would be written, when a listed entry
point is missing in it, when a declaration has no comment, and when a name of a code is not used.
"""

import re
import sys

from entry_points import read_entry_points
from makers import derived_file_options, tell, write_or_compare
from public_headers import (
    ARRAYS,
    EXPORT,
       plain_parameter,
    read_headers,
    read_kit_headers,
    read_vocabulary,
)

HEAD = """\
# Reference

Every entry point of uxtree_Utils by topic, and the functions for C: the declaration, what it does,
what may be null, what is written, the result and why there is none, and the commands of `uxtree`
and the script forms that call it. Written by `tools/dev/make_reference.py` from the headers below
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
    parts = {path for path in tool.glob("*.cpp") if not path.stem.endswith("_commands")}
    for path in sorted(parts | set((tool / "support").glob("*.cpp"))):
        shared |= functions_of(path.read_text(encoding="utf-8"))
    for path in sorted(tool.glob("*_commands.cpp")):
        for command, reached in calls_of_commands(path.read_text(encoding="utf-8"), shared):
            for name in reached & table.keys():
                table[name].append(command)
    return table


def script_forms(source, headers):
    """For each native entry point, the script ones whose definitions call it."""
    declared = [each for header in headers for each in header.declarations()]
    natives = {each.name for each in declared if not each.is_script}
    scripts = {each.name for each in declared if each.is_script}
    forms = {}
    for path in sorted((source / "src").rglob("*.cpp")):
        for name, called in functions_of(path.read_text(encoding="utf-8")).items():
            if name in scripts:
                for native in called & natives:
                    forms.setdefault(native, set()).add(name)
    return forms


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


# What becomes of an argument, by its direction.
WRITTEN = {
    "edits": "{} is edited",
    "out": "{}",
    "out_released": "{} (released on failure)",
    "inout": "{} (read first)",
    "appends": "{} (added to)",
    "getset": "{} (read or written)",
}
RESULTS = {
    "nothing": "none",
    "done": "1 when done",
    "yes": "1 for yes",
    "count": "a count or position",
    "zero": "0 when done",
    "stored": "a stored value",
    "number": "a code",
    "says_nothing": "always the same",
    "text": "a text",
    "handle": "a handle to free, or null",
    "borrowed": "a pointer to keep, not to free, or null",
}


def written(parameter):
    text = WRITTEN[parameter.direction].format(f"`{parameter.name}`")
    is_array = parameter.element or parameter.type.startswith(ARRAYS)
    if is_array and parameter.direction == "out":
        text += " (emptied first)"
    return text


def remarks(declaration):
    """Everything else that annotations say."""
    for each in declaration.parameters:
        if each.element:
            yield f"`{each.name}`: {each.element}s" if each.element != "any" else f"`{each.name}`: any"
        if each.file:
            yield f"`{each.name}`: a file"
        if each.may_be_invalid:
            yield f"`{each.name}`: may be invalid"
        if each.bits:
            values = (f"{value:#x} {name}" for name, value in each.bits)
            yield f"`{each.name}`: " + ", ".join(values)
    if declaration.blocks:
        yield "takes long and touches files"
    if declaration.native_only:
        yield f"no script form: {declaration.native_only}"


def facts(declaration):
    """A row of a section's table."""
    def null(each):
        return f"`{each.name}`" + (' (not as "")' if each.null_counts else "")

    returns = declaration.returns
    cells = [
        f"`{declaration.name}`",
        ", ".join(written(each) for each in declaration.parameters if each.direction not in ("", "in")),
        ", ".join(null(each) for each in declaration.parameters if each.optional),
        RESULTS[returns.kind],
        ", ".join(f"{'other' if value is None else value} {name}" for name, value in returns.codes),
        "; ".join(remarks(declaration)),
    ]
    return "| " + " | ".join(cell.replace("_", "\\_") if "`" not in cell else cell for cell in cells) + " |"


def section(group, commands, forms):
    names = list(dict.fromkeys(each.name for each in group.declarations))
    parts = ["### " + ", ".join(f"`{name}`" for name in names), "", "```cpp"]
    for each in group.declarations:
        parts += code(each)
    parts += ["```", ""]
    if group.comment:
        parts += [comment(group.comment), ""]
    functions = [each for each in group.declarations if not each.is_class()]
    if functions:
        parts += ["| Entry point | Writes | May be null | Result | On failure | Else |"]
        parts += ["|---|---|---|---|---|---|", *map(facts, functions), ""]
    used = sorted({command for name in names for command in commands.get(name, [])})
    if used:
        parts += ["Commands: " + ", ".join(f"`uxtree {command}`" for command in used), ""]
    reached = sorted({form for name in names for form in forms.get(name, [])})
    if reached:
        parts += ["From C and scripts: " + ", ".join(f"`{name}`" for name in reached), ""]
    return "\n".join(parts)


def code_names(vocabulary):
    rows = [f"| {name.replace('_', chr(92) + '_')} | {escaped(text)} |" for name, text in vocabulary.items()]
    return ["", "What the names of codes mean (`ux_describe` tells it to programs):", "",
            "| Name | Meaning |", "|---|---|", *rows]


def reference(headers, commands, forms, vocabulary):
    parts = [HEAD]
    for header in headers:
        title = header.path.removeprefix("uxtree/").removesuffix(".h")
        count = len({each.name for each in header.declarations()})
        anchor = re.sub(r"[^\w-]", "", title)
        parts.append(f"- [{title}](#{anchor}): {escaped(summary(header.about))} ({count})")
    parts += [*code_names(vocabulary), ""]
    for header in headers:
        parts += ["## " + header.path.removeprefix("uxtree/").removesuffix(".h"), ""]
        parts += [comment(header.about), "", f"Header: `<{header.path}>`", ""]
        parts += [section(group, commands, forms) for group in header.groups]
    return "\n".join(parts).rstrip() + "\n"


def unused_codes(source, headers):
    used = {
        code for header in headers for each in header.declarations() for code, _ in each.returns.codes
    }
    return [name for name in read_vocabulary(source / "include") if name not in used]


def main():
    options = derived_file_options(__doc__)
    include = options.source / "include"
    headers = read_headers(include)
    everything = headers + read_kit_headers(include)
    declared = [each.name for header in headers for each in header.declarations()]
    names = read_entry_points(options.source / "docs" / "entry_points.txt")
    problems = [f"not declared: {name}" for name in names if name not in declared]
    problems += [f"not listed: {name}" for name in declared if name not in names]
    problems += [
        f"without a comment: {each.name} ({header.path})"
        for header in everything
        for group in header.groups
        if not group.comment
        for each in group.declarations
    ]
    problems += [f"nothing yields the code {name}" for name in unused_codes(options.source, everything)]
    text = reference(
        everything,
        commands_by_entry_point(options.source, names),
        script_forms(options.source, headers),
        read_vocabulary(include),
    )
    problems += write_or_compare(options.source / "docs" / "reference.md", text, options.check)
    return tell(problems, f"reference: {len(set(declared))} entry points")


if __name__ == "__main__":
    sys.exit(main())
