#!/usr/bin/env python3
"""Puts the tables of one benchmark, read from standard input, into docs/performance_details.md.

Usage: tools/dev/write_bench_tables.py NAME [DOCUMENT]

They replace what stands between the lines "<!-- bench:NAME -->" and "<!-- end -->"; a document
without them gets a section at its end. Everything else is left as it is.
"""

import pathlib
import re
import sys


def with_tables(document, name, tables):
    block = f"<!-- bench:{name} -->\n\n{tables.strip()}\n\n<!-- end -->"
    marked = re.compile(rf"<!-- bench:{re.escape(name)} -->.*?<!-- end -->", re.DOTALL)
    if marked.search(document):
        return marked.sub(lambda _: block, document, count=1)
    return f"{document.rstrip()}\n\n## {name}\n\n{block}\n"


def main():
    path = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else "docs/performance_details.md")
    tables = sys.stdin.read()
    if "|---" not in tables:
        sys.exit(f"{sys.argv[1]}: no table in its output")
    document = path.read_text() if path.exists() else "# Performance\n"
    path.write_text(with_tables(document, sys.argv[1], tables))


if __name__ == "__main__":
    main()
