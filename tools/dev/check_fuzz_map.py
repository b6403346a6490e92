#!/usr/bin/env python3
"""Checks fuzz/README.md against docs/entry_points.txt and the fuzz targets.

Usage: tools/dev/check_fuzz_map.py [SOURCE_FOLDER]

Fails unless every entry point stands in exactly one row, every target named exists, and its source
mentions what the row says it calls.
"""

import collections
import pathlib
import re
import sys

from entry_points import read_entry_points

ROW = re.compile(r"^\| (\w+) \| (.+?) \| (`.*`) \|$", re.MULTILINE)
THROUGH = re.compile(r"^through `(\w+)`$")


def check_row(root, target, how, names):
    if target == "none":
        return
    source = root / "fuzz" / f"{target}_fuzz.cpp"
    if not source.exists():
        yield f"no such target: {target}"
        return
    through = THROUGH.match(how)
    if not through and how != "called":
        yield f"neither called nor through another: {how}"
        return
    text = source.read_text()
    for name in [through.group(1)] if through else names:
        if not re.search(rf"\b{name}\b", text):
            yield f"{source.name} never mentions {name}"


def check(root):
    seen = collections.Counter()
    for target, how, cell in ROW.findall((root / "fuzz/README.md").read_text()):
        names = re.findall(r"`(\w+)`", cell)
        seen.update(names)
        yield from check_row(root, target, how, names)
    known = set(read_entry_points(root / "docs/entry_points.txt"))
    yield from (f"no row for {name}" for name in sorted(known - set(seen)))
    yield from (f"no entry point: {name}" for name in sorted(set(seen) - known))
    yield from (f"more than one row for {name}" for name in sorted(seen) if seen[name] > 1)


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    problems = [f"fuzz/README.md: {problem}" for problem in check(root)]
    print("\n".join(problems) or "fuzz map: every entry point has its row")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
