"""Reads the declarations of the public headers, for the scripts that derive files from them.

A header starts with a comment about its topic. Declarations stand in groups: a comment, and the
declarations up to the next comment or blank line. A group is about all its declarations.
"""

import pathlib
import re
from dataclasses import dataclass, field

ROOMS = ["frame", "tree", "data", "outline", "import", "analysis", "report"]
EXPORT = "UXTREE_API"


@dataclass
class Declaration:
    name: str
    text: str  # one line, without the export mark
    is_script: bool
    lines: list = field(default_factory=list)  # as written in the header


@dataclass
class Group:
    comment: list  # lines without "// "
    declarations: list = field(default_factory=list)


@dataclass
class Header:
    path: str  # as it is included
    about: list  # the topic's comment
    groups: list = field(default_factory=list)
    structs: dict = field(default_factory=dict)  # name: text

    def declarations(self):
        return [each for group in self.groups for each in group.declarations]


def declared_name(text):
    """The name that a declaration introduces."""
    if text.startswith("class "):
        return re.match(r"class (\w+)", text).group(1)
    return re.search(r"(\w+)\s*\(", text).group(1)


def make_declaration(lines, is_script):
    text = " ".join(" ".join(lines).split())
    text = text.replace(EXPORT + " ", "").replace(" UXTREE_SENTINEL", "")
    return Declaration(declared_name(text), text, is_script, [line.rstrip() for line in lines])


def take_declaration(lines, start):
    """The lines of a declaration that starts there: to the first ";" outside braces."""
    depth = 0
    for end in range(start, len(lines)):
        code = lines[end].split("//")[0]
        depth += code.count("{") - code.count("}")
        if depth == 0 and code.rstrip().endswith(";"):
            return lines[start : end + 1]
    raise ValueError("declaration without an end: " + lines[start])


def comment_text(line):
    return line[3:] if line.startswith("// ") else line[2:]


def read_header(include_folder, path):
    lines = (pathlib.Path(include_folder) / path).read_text(encoding="utf-8").splitlines()
    header = Header(path, [])
    at = 0
    while at < len(lines) and lines[at].startswith("//"):
        header.about.append(comment_text(lines[at]))
        at += 1

    comment, group, is_script = [], None, False
    while at < len(lines):
        line = lines[at]
        at += 1
        if line.startswith("//"):
            comment.append(comment_text(line))
            group = None
            continue
        if line.startswith(EXPORT) or line.startswith("class " + EXPORT):
            taken = take_declaration(lines, at - 1)
            at += len(taken) - 1
            if group is None:
                group = Group(comment)
                header.groups.append(group)
            group.declarations.append(make_declaration(taken, is_script))
            comment = []
            continue
        if line.startswith("struct "):
            taken = take_declaration(lines, at - 1)
            at += len(taken) - 1
            header.structs[line.split()[1]] = "\n".join(taken)
        elif line.startswith('extern "C" {'):
            is_script = True
        elif line.startswith("}"):
            is_script = False
        elif line.startswith("#"):
            continue  # conditional compilation around a declaration keeps its comment
        comment, group = [], None
    return header


def read_headers(include_folder):
    """The headers of all topics, room by room."""
    folder = pathlib.Path(include_folder)
    paths = [
        path.relative_to(folder).as_posix()
        for room in ROOMS
        for path in sorted((folder / "uxtree" / room).glob("*.h"))
    ]
    headers = [read_header(folder, path) for path in paths]
    return [header for header in headers if header.groups]


def write_or_compare(path, content, check):
    """Writes the file, or with check tells whether it holds the content already."""
    path = pathlib.Path(path)
    if not check:
        path.write_text(content, encoding="utf-8")
        return True
    return path.exists() and path.read_text(encoding="utf-8") == content
