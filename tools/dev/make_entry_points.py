#!/usr/bin/env python3
"""Writes docs/entry_points.txt, the list of what libuxtree_Utils exports, out of the headers.

Usage: tools/dev/make_entry_points.py [--check] SOURCE_FOLDER

Each line has a kind ("native" or "script"), a name, the header that declares it, and the number of
rows that the sweep of bad arguments has for it in tests/frame/calls, separated by TAB. With --check
nothing is written; fails when the file is not what would be written, and on an entry point without
a row.
"""

import collections
import re
import sys

from makers import derived_file_options, tell, write_or_compare
from public_headers import read_headers

ROW = re.compile(r'\.add\(\s*(?:UX_ENTRY\((\w+)\)|UX_ENTRY_AS\(\s*(\w+)|UX_(?:WRAPPED|CLASS)\((\w+))')


def sweep_rows(source):
    """How many rows the sweep has for each name."""
    rows = collections.Counter()
    for path in sorted((source / "tests/frame/calls").glob("*.cpp")):
        for match in ROW.finditer(path.read_text(encoding="utf-8")):
            rows[next(filter(None, match.groups()))] += 1
    return rows


def listing(headers, rows):
    lines = {
        f"{'script' if each.is_script else 'native'}\t{each.name}\t{header.path}\t{rows[each.name]}"
        for header in headers
        for each in header.declarations()
    }
    return "".join(line + "\n" for line in sorted(lines))


def main():
    options = derived_file_options(__doc__)
    headers = read_headers(options.source / "include")
    rows = sweep_rows(options.source)
    names = [each.name for header in headers for each in header.declarations()]
    problems = [f"no row in tests/frame/calls: {name}" for name in names if rows[name] == 0]
    problems += [f"a row for no entry point: {name}" for name in rows if name not in names]
    target = options.source / "docs" / "entry_points.txt"
    problems += write_or_compare(target, listing(headers, rows), options.check)
    return tell(problems, f"entry points: {len(set(names))} listed, {rows.total()} rows")


if __name__ == "__main__":
    sys.exit(main())
