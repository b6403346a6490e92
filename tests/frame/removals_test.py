"""Nothing that the generators read or write can be lost unnoticed.

Takes away each annotation of the public headers, each row of the sweep of bad arguments, and each
line of the committed files that are made of them, one at a time, and asks the generators: each must
refuse what is left, or would write something else than what is committed.

Usage: removals_test.py SOURCE_FOLDER
"""

import collections
import pathlib
import re
import sys

SOURCE = pathlib.Path(sys.argv[1])
sys.path.insert(0, str(SOURCE / "tools/dev"))

import make_c_header  # noqa: E402
import make_entry_points  # noqa: E402
import make_reference  # noqa: E402
import public_headers  # noqa: E402
from entry_points import read_entry_points  # noqa: E402

INCLUDE = SOURCE / "include"
VOCABULARY = public_headers.read_vocabulary(INCLUDE)
ANNOTATION = re.compile(
    r"\bUX_(?:IN|EDITS|OUT|OUT_RELEASED|INOUT|APPENDS|GETSET|INTS|DOUBLES|BOOLS|STRINGS|ANY|OPT"
    r"|NULL_COUNTS|MAY_BE_INVALID|FILE|BLOCKS|BITS|RETURNS|NATIVE_ONLY)\b"
)


def without_annotation(text, match):
    """The text without one annotation and what stands in its brackets."""
    end = match.end()
    if end < len(text) and text[end] == "(":
        depth = 0
        while True:
            depth += (text[end] == "(") - (text[end] == ")")
            end += 1
            if depth == 0:
                break
    return text[: match.start()] + text[end:]


def told(text, path, export):
    """What the generators tell of a header's declarations; None when they refuse it."""
    try:
        header = public_headers.parse_header(text, path, VOCABULARY, export)
    except public_headers.Contradiction:
        return None
    declarations = header.declarations()
    rows = [make_reference.facts(each) for each in declarations if not each.is_class()]
    codes = {code for each in declarations for code, _ in each.returns.codes}
    return rows, codes


def lost_annotations(room_export):
    count = 0
    for rooms, export in room_export:
        for room in rooms:
            for path in sorted((INCLUDE / "uxtree" / room).glob("*.h")):
                name = path.relative_to(INCLUDE).as_posix()
                if name == public_headers.VOCABULARY:
                    continue
                text = path.read_text(encoding="utf-8")
                whole = told(text, name, export)
                for match in ANNOTATION.finditer(text):
                    count += 1
                    if told(without_annotation(text, match), name, export) == whole:
                        line = text.count("\n", 0, match.start()) + 1
                        yield f"{name}:{line}: nobody misses {match[0]}"
    print(f"annotations: {count}")


def lost_rows():
    rows = make_entry_points.sweep_rows(SOURCE)
    listed = (SOURCE / "docs/entry_points.txt").read_text(encoding="utf-8")
    headers = public_headers.read_headers(INCLUDE)
    for name, count in rows.items():
        fewer = collections.Counter(rows)
        fewer[name] = count - 1
        if make_entry_points.listing(headers, fewer) == listed:
            yield f"nobody misses a row for {name}"
    print(f"rows of the sweep: {rows.total()}")


def lost_lines():
    headers = public_headers.read_headers(INCLUDE)
    everything = headers + public_headers.read_kit_headers(INCLUDE)
    names = read_entry_points(SOURCE / "docs/entry_points.txt")
    made = {
        "docs/entry_points.txt": make_entry_points.listing(
            headers, make_entry_points.sweep_rows(SOURCE)
        ),
        "include/uxtree/uxtree_c.h": make_c_header.c_header(headers),
        "docs/reference.md": make_reference.reference(
            everything,
            make_reference.commands_by_entry_point(SOURCE, names),
            make_reference.script_forms(SOURCE, headers),
            VOCABULARY,
        ),
    }
    count = 0
    for name, text in made.items():
        committed = (SOURCE / name).read_text(encoding="utf-8")
        lines = committed.splitlines(keepends=True)
        at = 0
        for number, line in enumerate(lines, 1):
            count += 1
            # What is left is compared with what would be written, as the checks do.
            left = committed[:at] + committed[at + len(line) :]
            at += len(line)
            if left == text:
                yield f"{name}:{number}: nobody misses this line"
        if committed != text:
            yield f"{name} is stale: run tools/dev/make_derived ."
    print(f"lines of committed files: {count}")


def main():
    rooms = (
        (public_headers.ROOMS, public_headers.EXPORT),
        (public_headers.KIT_ROOMS, public_headers.KIT_EXPORT),
    )
    problems = [*lost_annotations(rooms), *lost_rows(), *lost_lines()]
    print("\n".join(problems) or "each of them is missed")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
