#!/usr/bin/env python3
"""Writes what the linker lets out of a library: the names that its public headers mark.

Usage: tools/dev/make_version_script.py MARK OUTPUT HEADER...

What the standard library's headers make visible by themselves stays inside.
"""

import pathlib
import sys

from exported_names import read_names


def script(names):
    plain = sorted(pattern for name in names if name.kind == "c" for pattern in name.patterns())
    native = sorted(pattern for name in names if name.kind != "c" for pattern in name.patterns())
    rows = [f"    {pattern};" for pattern in plain]
    if native:
        rows += ['    extern "C++" {', *(f"      {pattern};" for pattern in native), "    };"]
    return "\n".join(["{", "  global:", *rows, "  local: *;", "};", ""])


def main():
    mark, output, *headers = sys.argv[1:]
    pathlib.Path(output).write_text(script(read_names(mark, headers)), encoding="utf-8")


if __name__ == "__main__":
    main()
