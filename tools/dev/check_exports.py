#!/usr/bin/env python3
"""Compares what a library exports with the listed entry points.

Usage: tools/dev/check_exports.py [--complete] LIBRARY LIST

LIST is docs/entry_points.txt. Fails on an export that is not listed or of the other kind; with
--complete also on a listed name that is not exported.
"""

import argparse
import re
import subprocess
import sys

from entry_points import read_entry_points

ABOUT_A_CLASS = re.compile(
    r"^(vtable|VTT|typeinfo|typeinfo name|guard variable|non-virtual thunk|virtual thunk) (for|to) "
)


def exported_symbols(library):
    command = ["nm", "-D", "--defined-only", "--demangle", library]
    output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    for line in output.splitlines():
        _, kind, symbol = line.split(" ", 2)
        if kind != "A":  # the name of a version, not a symbol
            yield symbol


def entry_point(symbol):
    """The name and the kind that a demangled symbol stands for."""
    plain = ABOUT_A_CLASS.sub("", symbol)
    is_native = plain != symbol or "(" in plain or "::" in plain
    name = re.split(r"\(|\[|::|@|<", plain, maxsplit=1)[0]
    return name, "native" if is_native else "script"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--complete", action="store_true", help="fail on missing names too")
    parser.add_argument("library")
    parser.add_argument("list")
    options = parser.parse_args()

    listed = read_entry_points(options.list)
    exported = {}
    wrong = []
    for symbol in exported_symbols(options.library):
        name, kind = entry_point(symbol)
        exported[name] = kind
        if name not in listed:
            wrong.append(f"not listed: {symbol}")
        elif listed[name] != kind:
            wrong.append(f"listed as {listed[name]} but exported as {kind}: {symbol}")
    missing = [name for name in listed if name not in exported]

    print(f"exports: {len(listed) - len(missing)} of {len(listed)} listed entry points")
    if missing:
        print("still to come: " + " ".join(missing))
    if wrong:
        print("\n".join(wrong))
    return 1 if wrong or (options.complete and missing) else 0


if __name__ == "__main__":
    sys.exit(main())
