"""Reads docs/entry_points.txt, for the scripts that check and derive files.

Each line begins with a kind and a name, separated by TAB; the kind is "script" (C linkage) or
"native" (C++ linkage; a function with its overloads, or a class with its members).
"""

import pathlib


def read_entry_points(path):
    """Name -> kind, in the order of the file."""
    rows = pathlib.Path(path).read_text(encoding="utf-8").splitlines()
    fields = (row.split("\t") for row in rows if row.strip())
    return {name: kind for kind, name, *_ in fields}
