"""The cores that libuxtree_Utils and the kit both hold keep no state: there would be two of it.

Usage: stateless_test.py NAME=OBJECT[;OBJECT...] ...

Fails on an object with data of its own that can be written, in any section, for all threads or for
each of them.
"""

import re
import subprocess
import sys

# d, D, b, B: data that can be written; C: common; and the same per thread. What the compiler adds
# under a sanitizer or to count lines, and constants that only the loader relocates, are no state of
# ours.
WRITABLE = re.compile(r"^[0-9a-f]* +([dDbBCsSgG]) (.+)$")
NOT_OURS = re.compile(r"^(__odr_asan|__asan|__ubsan|__unnamed_|__gcov|\.L|DW\.ref|vtable |typeinfo |\.data\.rel\.ro)")


def state_of(path):
    output = subprocess.run(
        ["nm", "--demangle", path], check=True, capture_output=True, text=True
    ).stdout
    for line in output.splitlines():
        match = WRITABLE.match(line)
        if match and not NOT_OURS.match(match[2]) and not in_constant_section(path, match[2]):
            yield match[2]


def in_constant_section(path, name):
    """Tables of pointers stand in .data.rel.ro, which nm cannot tell from data."""
    output = subprocess.run(
        ["objdump", "-t", "--demangle", path], check=True, capture_output=True, text=True
    ).stdout
    rows = [line for line in output.splitlines() if line.rstrip().endswith(name)]
    return bool(rows) and all(".data.rel.ro" in line for line in rows)


def main():
    problems, count = [], 0
    for argument in sys.argv[1:]:
        core, _, paths = argument.partition("=")
        objects = [path for path in paths.split(";") if path]
        if not objects:
            problems.append(f"{core}: no objects")
        for path in objects:
            count += 1
            problems += [f"{core}: {path}: {name}" for name in state_of(path)]
    print("\n".join(problems) or f"{count} objects without a state")
    return 1 if problems or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
