#!/usr/bin/env python3
"""Checks that includes point downward in the rooms of docs/layers.txt.

Usage: tools/dev/check_layers.py [--rooms] [SOURCE_FOLDER]

Fails on an include of a room that the including room may not see, whatever the include looks like;
on topics of a room that include each other in a circle; on the host's own storage named, under any
alias, outside src/host/; on a header of include/ that needs one of src/; on tools, bindings and
examples that look into src/; on a header of the system outside platform_SYSTEM.cpp, examples left out; and on
a source without a first line that says its topic. With --rooms it prints which rooms include which.
"""

import argparse
import collections
import pathlib
import posixpath
import re
import sys

OUTSIDE = ("tools", "bindings", "examples")
TOPICS_SAID = ("src", *OUTSIDE, "tests", "bench", "fuzz")
CODE = (".cpp", ".h", ".hpp", ".cc", ".c", ".inl")
# The rooms of the headers right below include/uxtree/, most of which gather others.
GATHERING = {"version.h": "frame", "uxtree_Utils.h": "report", "uxtree_c.h": "kit", "script.h": "kit"}

# Headers with a suffix that are the same on every system: of C, of compilers and of libraries. Those
# of the C++ standard library have none.
EVERYWHERE = re.compile(
    r"(stdbool|stddef|stdint|emmintrin|expat|angelscript|editline/readline)\.h$"
    r"|(CLI|fmt|nlohmann|angelscript|fast_float|pybind11)/"
)
OF_SYSTEMS = re.compile(r"(src/base|tools/uxtree/support|bindings/script)/platform_\w+\.cpp$")

COMMENT_OR_TEXT = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"([^()\\\s]*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<!\w)\'(?:\\.|[^\'\\\n])*\'',
    re.DOTALL,
)
INCLUDE = re.compile(r"^\s*(?:#|%:)\s*(?:include|include_next|import)\b(.*)$", re.MULTILINE)
ALIAS = re.compile(r"\bnamespace\s+(\w+)\s*=\s*((?:::)?\s*\w+(?:\s*::\s*\w+)*)")
TOPIC = re.compile(r"// \S+ \S")


def read_rooms(path):
    """Room -> the rooms that it may include besides itself, in the order of the list."""
    rooms = {}
    for row in (row.split("#")[0].strip() for row in path.read_text().splitlines()):
        if not row:
            continue
        room, colon, below = row.partition(":")
        unknown = [name for name in below.split() if name not in rooms]
        if not colon or unknown:
            sys.exit(f"{path}: not below {room}: {' '.join(unknown)}")
        rooms[room] = below.split()
    return rooms


def without_comments(text, keep_texts):
    """The code alone: raw texts are always emptied, other ones kept or emptied."""

    def replaced(match):
        if match[0].startswith("/"):
            return " " + "\n" * match[0].count("\n")
        return match[0] if keep_texts and not match[0].startswith("R") else '""'

    return COMMENT_OR_TEXT.sub(replaced, text.replace("\\\n", ""))


def includes_of(text):
    """What stands behind every #include: ("quoted" or <angled>, path), path None for a macro."""
    for rest in INCLUDE.findall(without_comments(text, True)):
        path = re.match(r'\s*(?:"([^"]*)"|<([^>]*)>)', rest)
        yield rest.strip(), path and (path[1] or path[2] or "")


class File:
    """A file of src/ or include/uxtree/, by its place among the rooms."""

    def __init__(self, name, rooms):
        self.name = posixpath.normpath(name)
        self.public = self.name.startswith("uxtree/")
        path = self.name.removeprefix("uxtree/")
        self.stem = path.rsplit(".", 1)[0]
        self.room = path.split("/")[0] if "/" in path else GATHERING.get(path)
        self.known = self.room in rooms
        self.embedded = self.public and self.stem.startswith("host/embedded")


def topic_of(file, public_stems):
    """The files a/b_c and a/b_detail belong to a public header a/b, if there is one."""
    if file.public and file.room == "host":  # stands below what the host is made of
        return f"host/contract/{file.stem.removeprefix('host/')}"
    stem = file.stem.removesuffix("_detail")
    while stem and stem not in public_stems:
        stem = stem.rpartition("_")[0]
    return stem or file.stem.removesuffix("_detail")


def hidden_from(own, other, rooms):
    """Why one file may not include the other; None when it may."""
    if other.room != own.room and other.room not in rooms[own.room]:
        return f"{own.room} does not see {other.room}"
    if other.room == "host" and not other.public and own.room != "host":
        return "it is the host's own"
    if other.embedded and own.room != "kit" and not (own.room == "host" and not own.public) and (
        not own.embedded
    ):
        return "the embedded host is not every host"
    if own.public and not other.public:
        return "a public header includes public headers only"
    return None


def storage_names(text):
    """Names by which a text means the storage of the host: its namespace and aliases of it."""
    aliases = {name: re.sub(r"\s", "", target).lstrip(":") for name, target in ALIAS.findall(text)}
    names = {"uxhost"}
    for _ in aliases:
        names |= {name for name, target in aliases.items() if target.split("::")[0] in names}
    return [name for name in sorted(names) if re.search(rf"\b{name}\b", text)]


def check_storage(source, text):
    names = storage_names(without_comments(text, False))
    if names:
        yield f"{source}: names the host's own storage ({', '.join(names)})"


def check_library_file(source, own, text, rooms, files):
    if not own.known:
        yield f"{source}: no room of docs/layers.txt"
        return
    files[own] = []
    for written, path in includes_of(text):
        if path is None:
            yield f"{source}: an include that cannot be read: {written}"
            continue
        other = File(path, rooms)
        if path != other.name or path.startswith("."):
            yield f"{source}: {written} is not written from the root of its rooms"
        elif other.known:
            reason = hidden_from(own, other, rooms)
            if reason:
                yield f"{source}: includes {written}: {reason}"
            files[own].append(other)
        elif written.startswith('"') or path.startswith("uxtree/"):
            yield f"{source}: {written} is in no room of docs/layers.txt"
    if own.room != "host" or own.public:
        yield from check_storage(source, text)


def check_outside_file(root, source, text, rooms):
    for written, path in includes_of(text):
        if path is None:
            yield f"{source}: an include that cannot be read: {written}"
            continue
        beside = posixpath.normpath(posixpath.join(source.parent.as_posix(), path))
        other = File(path, rooms)
        inside = other.known and not other.public and not (root / beside).exists()
        if inside or beside.startswith("src/") or posixpath.isabs(path):
            yield f"{source}: only public headers may be included, not {written}"
    yield from check_storage(source, text)


def check_system(source, text):
    """Only sources of the platform know the system."""
    if OF_SYSTEMS.match(source.as_posix()):
        return
    for written, path in includes_of(text):
        if path and written.startswith("<") and "." in path and not EVERYWHERE.match(path):
            yield f"{source}: {written} is a header of the system, which belongs behind platform.h"


def circles(graph):
    """Circles of names, each as the path that leads back to its start."""
    done = set()
    for start in sorted(graph):
        trail = [(start, iter(sorted(graph[start])))] if start not in done else []
        on_trail = {start}
        while trail:
            name, below = trail[-1]
            done.add(name)
            following = next((other for other in below if other != name), None)
            if following is None:
                trail.pop()
                on_trail.discard(name)
            elif following in on_trail:
                names = [passed for passed, _ in trail]
                yield [*names[names.index(following):], following]
            elif following not in done:
                on_trail.add(following)
                trail.append((following, iter(sorted(graph.get(following, ())))))


def topic_graph(files):
    public_stems = {file.stem for file in files if file.public}
    graph = collections.defaultdict(set)
    for file, others in files.items():
        graph[topic_of(file, public_stems)] |= {topic_of(other, public_stems) for other in others}
    return graph


def header_graph(files):
    return {file.name: {other.name for other in others} for file, others in files.items()}


def check(root, rooms, files):
    for base in ("src", "include"):
        for path in code_below(root / base):
            source = path.relative_to(root)
            own = File(path.relative_to(root / base).as_posix(), rooms)
            yield from check_library_file(source, own, path.read_text(), rooms, files)
            yield from check_system(source, path.read_text())
    for base in OUTSIDE:
        for path in code_below(root / base):
            yield from check_outside_file(root, path.relative_to(root), path.read_text(), rooms)
            if base in ("bindings", "tools"):
                yield from check_system(path.relative_to(root), path.read_text())
    for circle in [*circles(topic_graph(files)), *circles(header_graph(files))]:
        yield f"a circle of includes: {' -> '.join(circle)}"
    for base in TOPICS_SAID:
        for path in code_below(root / base):
            if path.suffix == ".cpp" and not TOPIC.match(path.read_text().partition("\n")[0]):
                yield f"{path.relative_to(root)}: the first line does not say its topic"


def code_below(folder):
    return (path for path in sorted(folder.rglob("*")) if path.suffix in CODE)


def print_rooms(rooms, files):
    """From the bottom up: every room that stands behind another has its row above it."""
    seen = collections.defaultdict(set)
    for file, others in files.items():
        seen[file.room].update(other.room for other in others)
    for room in rooms:
        print(f"{room:9} {' '.join(name for name in rooms if name in seen[room] - {room})}".rstrip())


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("root", nargs="?", default=".", type=pathlib.Path)
    parser.add_argument("--rooms", action="store_true")
    arguments = parser.parse_args()
    rooms = read_rooms(arguments.root / "docs/layers.txt")
    files = {}
    problems = list(check(arguments.root, rooms, files))
    if arguments.rooms:
        print_rooms(rooms, files)
    print("\n".join(problems) or "layers: every include points downward")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
