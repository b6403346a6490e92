#!/usr/bin/env python3
"""Writes debian/*.symbols, the names that each library exports, after a change of exported names.

Usage: tools/dev/make_symbols.py SOURCE_FOLDER BUILD_FOLDER

A name keeps the version in which it came. Names with std::size_t or std::int64_t in them are other
ones on 32-bit machines, and so marked. scripts/package fails when the files are not up to date.
"""

import pathlib
import re
import subprocess
import sys


def run(*command, given=None):
    return subprocess.run(command, input=given, check=True, capture_output=True, text=True).stdout


def symbols_of(library):
    rows = (line.split(" ", 2) for line in run("nm", "-D", "--defined-only", library).splitlines())
    names = sorted(name for _, _, name in rows)
    plain = run("c++filt", given="\n".join(names)).splitlines()
    return [(name, " long" in f" {text}") for name, text in zip(names, plain)]


def main():
    source, build = map(pathlib.Path, sys.argv[1:])
    version = re.search(r"^project\(\S+ VERSION (\S+)", (source / "CMakeLists.txt").read_text(), re.M)[1]
    for library in ("host", "Utils", "kit", "script", "script_kit"):
        folder = "bindings/script" if library.startswith("script") else "src"
        built = (build / folder / f"libuxtree_{library}.so").resolve()
        soname = re.search(r"SONAME +(\S+)", run("objdump", "-p", str(built)))[1]
        package = f"libuxtree-{library.lower().replace('_', '-')}{soname.partition('.so.')[2]}"
        path = source / f"debian/{package}.symbols"
        old = path.read_text(encoding="utf-8") if path.exists() else ""
        since = dict(re.findall(r"^ (?:\(\S+\))?(\S+)@Base (\S+)", old, re.M))
        rows = [
            f" {'(arch-bits=64)' if wide else ''}{name}@Base {since.get(name, version)}\n"
            for name, wide in symbols_of(str(built))
        ]
        path.write_text(f"{soname} {package} #MINVER#\n" + "".join(rows), encoding="utf-8")


if __name__ == "__main__":
    main()
