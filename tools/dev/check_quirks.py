#!/usr/bin/env python3
"""Checks docs/quirks.md against the sources and tests.

Usage: tools/dev/check_quirks.py [SOURCE_FOLDER]

Fails on a row without advice or without a test, on a test that does not exist, and on a source file with an
"Intended:" comment whose topic no section heading names.
"""

import pathlib
import re
import sys

TEST = re.compile(r"^\s*(?:TYPED_)?TEST(?:_[FP])?\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)
NAMED_TEST = re.compile(r"`(\w+\.\w+)`")
HEADING = re.compile(r"^## .*\((.*)\)$", re.MULTILINE)


def tests_of(root):
    for path in (root / "tests").rglob("*_test.cpp"):
        yield from (f"{suite}.{test}" for suite, test in TEST.findall(path.read_text()))


def rows_of(text):
    rows = (row for row in text.splitlines() if row.startswith("| "))
    return [row for row in rows if row != "| What happens | So do this | Test |"]


def has_section(stem, topics):
    """A file a/b_c.cpp belongs to the topic a/b_c or to a/b."""
    while stem not in topics:
        stem, underscore, _ = stem.rpartition("_")
        if not underscore:
            return False
    return True


def check(root):
    text = (root / "docs/quirks.md").read_text()
    known = set(tests_of(root))
    for row in rows_of(text):
        if row.count(" | ") != 2 or not row.split(" | ")[1].strip():
            yield f"docs/quirks.md: three columns, one of them advice, are expected in: {row}"
        named = NAMED_TEST.findall(row.split(" | ")[-1])
        if not named:
            yield f"docs/quirks.md: no test in: {row}"
        yield from (f"docs/quirks.md: no such test: {test}" for test in named if test not in known)
    topics = {name for heading in HEADING.findall(text) for name in re.findall(r"`(.*?)`", heading)}
    for path in sorted((root / "src").rglob("*")):
        if path.suffix in (".cpp", ".h") and "Intended:" in path.read_text():
            stem = path.relative_to(root / "src").with_suffix("").as_posix()
            if not has_section(stem, topics):
                yield f"docs/quirks.md: no section names {stem}, which has an Intended comment"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    problems = list(check(root))
    print("\n".join(problems) or "quirks: every row has its tests")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
