#!/usr/bin/env python3
"""Compares what a library exports with what its public headers mark.

Usage: tools/dev/check_exports.py LIBRARY MARK HEADER...

Fails on a symbol that no header marks, such as those of the standard library and of classes inside
classes, and on a marked function or class without a symbol.
"""

import subprocess
import sys

from exported_names import read_names


def exported_symbols(library):
    command = ["nm", "-D", "--defined-only", "--demangle", library]
    output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    rows = (line.split(" ", 2) for line in output.splitlines())
    return [symbol for _, kind, symbol in rows if kind != "A"]  # "A": the name of a version


def main():
    library, mark, *headers = sys.argv[1:]
    names = read_names(mark, headers)
    symbols = exported_symbols(library)
    covered = {name: [each for each in symbols if name.covers(each)] for name in names}
    known = {symbol for group in covered.values() for symbol in group}
    problems = [f"no header marks it: {symbol}" for symbol in symbols if symbol not in known]
    problems += [
        f"marked but not exported: {name.name}"
        for name in names
        if not covered[name] and not name.inline
    ]
    print(f"exports: {len(symbols)} symbols of {len(names)} names")
    print("\n".join(problems), end="\n" if problems else "")
    return 1 if problems or not symbols else 0


if __name__ == "__main__":
    sys.exit(main())
