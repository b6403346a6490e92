"""Reads which names a library exports out of its public headers, for the scripts that say so to the
linker and that look whether it followed.

A name is exported when its declaration bears the library's mark (UXTREE_API, UXHOST_API, UXKIT_API).
"""

import pathlib
import re
from dataclasses import dataclass

SCOPE = re.compile(r'(extern "C"|namespace (\w+)) \{')
CLASS = re.compile(r"(?:class|struct) MARK (\w+)")
FUNCTION = re.compile(r"MARK [^(]*?\b(\w+)\(")
DECLARED = re.compile(r"\)( const)?( noexcept)?;\s*$")


@dataclass(frozen=True)
class Name:
    name: str  # with its namespace
    kind: str  # "c", "function" or "class"
    inline: bool = False  # a class that is whole in its header has no symbols

    def patterns(self):
        """What the linker calls its symbols, in C++ demangled."""
        if self.kind == "c":
            return [self.name]
        if self.kind == "function":
            return [f"{self.name}?*"]  # "(" cannot be written there
        tables = [f"{table}?for?{self.name}" for table in ("vtable", "typeinfo", "typeinfo?name")]
        return [f"{self.name}::*", *tables]

    def covers(self, symbol):
        """Is the demangled symbol one of this name? Classes inside a class are its own affair."""
        if self.kind == "c":
            return symbol == self.name
        plain = re.escape(self.name)
        if self.kind == "function":
            return re.match(rf"{plain}(\[abi:\w+\])?\(", symbol) is not None
        member = rf"{plain}::(~?\w+|operator[^\w(]+)(\[abi:\w+\])?\("
        return re.match(rf"{member}|(vtable|typeinfo( name)?) for {plain}$", symbol) is not None


def read_names(mark, headers):
    """The exported names of headers, in their order; overloads count once."""
    names = {}
    for header in headers:
        text = pathlib.Path(header).read_text(encoding="utf-8")
        names.update(dict.fromkeys(names_in(text.replace(mark + " ", "MARK "))))
    return list(names)


def names_in(text):
    scopes = []
    lines = text.splitlines()
    for at, line in enumerate(lines):
        scope = SCOPE.match(line)
        if scope:
            scopes.append(scope[2] or "")
        elif re.match(r"\}(?!;)", line) and scopes:
            scopes.pop()
        space = "".join(f"{each}::" for each in scopes if each)
        found = CLASS.match(line)
        if found:
            yield Name(space + found[1], "class", is_whole(lines[at:]))
            continue
        found = FUNCTION.match(line)
        if found:
            yield Name(space + found[1], "c" if "" in scopes else "function")
        elif "MARK" in line and not line.startswith("#"):
            raise ValueError(f"an exported declaration that cannot be read: {line}")


def is_whole(lines):
    """Does the class that begins there define all its members?"""
    depth = 0
    for line in lines:
        code = line.split("//")[0]
        if depth == 1 and DECLARED.search(code):
            return False
        depth += code.count("{") - code.count("}")
        if depth == 0:
            return True
    return True
