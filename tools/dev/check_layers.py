#!/usr/bin/env python3
"""Checks that includes point downward in the layers of docs/layers.txt.

Usage: tools/dev/check_layers.py [SOURCE_FOLDER]

Fails on a source file or header without a component, on an include of a higher component, and on
the few connections that the layers alone would allow.
"""

import pathlib
import re
import sys

ROOMS = ("base", "xml", "host", "frame", "marks", "tree", "data", "outline", "import", "analysis",
         "report", "kit")
WHOLE = ("base", "xml", "host", "kit")  # rooms that the list names as a whole
FORBIDDEN = [("outline", "tree"), ("outline", "data"), ("import", "analysis")]
# What belongs to the embedded host alone.
FORBIDDEN += [(room, "xml") for room in ROOMS if room not in ("xml", "host")]
STORE = re.compile(r"\buxhost\s*::\s*(Document|Element)\b")
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def read_layers(path):
    """Component -> (line, place within the line), from the bottom up."""
    ranks = {}
    rows = (row.split("#")[0] for row in path.read_text().splitlines())
    for line, row in enumerate(row for row in rows if row.strip()):
        for place, group in enumerate(row.split("<")):
            ranks.update((name, (line, place)) for name in group.split())
    return ranks


def component(stem, ranks):
    """The component of a file stem: a/b_detail and a/b_c belong to a/b unless they are listed."""
    room = stem.split("/")[0]
    if room in WHOLE:
        return f"{room}/*"
    while stem not in ranks:
        stem, underscore, _ = stem.rpartition("_")
        if not underscore:
            return None
    return stem


def stem_of(include):
    return include.removeprefix("uxtree/").rsplit(".", 1)[0]


def check_library_file(source, name, text, ranks):
    own = component(stem_of(name), ranks)
    if own is None:
        yield f"{source}: no component in docs/layers.txt"
        return
    room = own.split("/")[0]
    for include in INCLUDE.findall(text):
        other = component(stem_of(include), ranks)
        if other is None:
            yield f'{source}: "{include}" has no component in docs/layers.txt'
        elif ranks[other] > ranks[own]:
            yield f'{source}: {own} includes {other} above it ("{include}")'
        elif (room, other.split("/")[0]) in FORBIDDEN:
            yield f'{source}: {room} never includes {other.split("/")[0]} ("{include}")'
        elif include.startswith("host/") and room != "host":
            yield f'{source}: "{include}" is the host\'s own'
    if room != "host" and STORE.search(text):
        yield f"{source}: names the host's own storage"


def check_outside_file(source, text):
    for include in INCLUDE.findall(text):
        if include.startswith(tuple(room + "/" for room in ROOMS)):
            yield f'{source}: only public headers may be included, not "{include}"'


def check(root):
    ranks = read_layers(root / "docs/layers.txt")
    for base in ("src", "include/uxtree"):
        for path in sorted((root / base).rglob("*")):
            if path.suffix in (".cpp", ".h"):
                name = path.relative_to(root / base).as_posix()
                source = path.relative_to(root)
                yield from check_library_file(source, name, path.read_text(), ranks)
    for base in ("tools", "examples"):
        for path in sorted((root / base).rglob("*")):
            if path.suffix in (".cpp", ".h"):
                yield from check_outside_file(path.relative_to(root), path.read_text())


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    problems = list(check(root))
    print("\n".join(problems) or "layers: every include points downward")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
