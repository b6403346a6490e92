#!/usr/bin/env python3
"""Writes the table of result codes behind ux_describe, out of the annotations of all headers.

Usage: tools/dev/make_codes.py SOURCE_FOLDER OUTPUT

The build runs it, so a declaration whose annotations are missing or contradict it fails the build.
"""

from makers import write_for_build
from public_headers import read_headers, read_kit_headers, read_vocabulary

LEAST = "INT_MIN"

# What a result says that is no failure: (code or the least one, stands for all further ones, name,
# sentence) by kind of result.
DONE = ("done", "It was done.")
GOOD = {
    "done": [(1, False, *DONE)],
    "zero": [(0, False, *DONE)],
    "yes": [(1, False, "yes", "The answer is yes.")],
    "count": [(0, True, "count", "So many, or the position.")],
    "stored": [(LEAST, True, "value", "The value as it is stored.")],
    "says_nothing": [(LEAST, True, "called", "The call was made; its result says no more.")],
}


def rows_of(returns, vocabulary):
    rows = [
        (LEAST if value is None else value, value is None, name, vocabulary[name])
        for name, value in returns.codes
    ]
    taken = {row[0] for row in rows if not row[1]}
    good = [row for row in GOOD.get(returns.kind, []) if row[1] or row[0] not in taken]
    return good + rows


def table(headers, vocabulary):
    """Function -> rows. Overloads share their rows; where they differ, a code says both."""
    functions = {}
    for header in headers:
        for each in header.declarations():
            rows = functions.setdefault(each.name, {})
            for code, further, name, sentence in rows_of(each.returns, vocabulary):
                known = rows.setdefault((code, further), [])
                if (name, sentence) not in known:
                    known.append((name, sentence))
    return functions


def cpp_row(function, code, further, meanings):
    name = "_or_".join(name for name, _ in meanings)
    sentence = " Or: ".join(sentence for _, sentence in meanings).replace('"', '\\"')
    return f'    {{"{function}", {str(further).lower()}, {code}, "{name}", "{sentence}"}},\n'


def source(functions):
    rows = [
        cpp_row(function, code, further, meanings)
        for function in sorted(functions, key=str.encode)
        for (code, further), meanings in functions[function].items()
    ]
    return (
        "// Made by tools/dev/make_codes.py.\n"
        '#include <climits>\n\n#include "kit/codes.h"\n\nnamespace ux::kit {\n\n'
        "const Code kCodes[] = {\n" + "".join(rows) + "};\n"
        f"const int kCodeCount = {len(rows)};\n\n}}  // namespace ux::kit\n"
    )


def codes(include):
    headers = read_headers(include) + read_kit_headers(include)
    return source(table(headers, read_vocabulary(include)))


if __name__ == "__main__":
    write_for_build(__doc__, codes)
