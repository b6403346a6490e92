"""How the scripts that make files out of the sources are called, and what they say."""

import argparse
import pathlib
import sys


def derived_file_options(about):
    """What a maker of committed files takes: the folder of the sources, and --check."""
    parser = argparse.ArgumentParser(description=about.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="compare instead of writing")
    parser.add_argument("source", type=pathlib.Path)
    return parser.parse_args()


def write_or_compare(path, content, check):
    """Writes the file; with check, yields the problem that it holds something else, in a list."""
    if not check:
        path.write_text(content, encoding="utf-8")
    elif not path.exists() or path.read_text(encoding="utf-8") != content:
        return [f"{path.name} is stale: run tools/dev/make_derived ."]
    return []


def tell(problems, done=""):
    """Prints the problems, or what was done when there are none; yields the exit code."""
    if problems or done:
        print("\n".join(problems) or done)
    return 1 if problems else 0


def write_for_build(about, made):
    """What the build calls with the folder of the sources and a file: writes made(include folder)."""
    if len(sys.argv) != 3:
        sys.exit(about)
    source, target = map(pathlib.Path, sys.argv[1:])
    target.write_text(made(source / "include"), encoding="utf-8")
