#!/usr/bin/env python3
"""Prints the line coverage of the files in src/ after a run of the coverage build, the worst first.

Usage: tools/dev/print_coverage.py BUILD_DIR [GOAL]

Every file comes with the lines that were not reached. A line counts as reached when any object
file's copy of it was; a closing brace, to which the compiler books what an exception would clean
up, does not count. The result is 1 when all files together are below GOAL percent (99.5).
"""

import collections
import concurrent.futures
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def ranges(numbers):
    """[1, 2, 3, 7] -> "1-3, 7"."""
    parts = []
    for number in sorted(numbers):
        if parts and parts[-1][1] == number - 1:
            parts[-1][1] = number
        else:
            parts.append([number, number])
    return ", ".join(str(a) if a == b else f"{a}-{b}" for a, b in parts)


def lines_of(counters):
    """The lines of src/ in one counters file: [(file, line, reached)]."""
    run = subprocess.run(["gcov", "--json-format", "--stdout", counters.name],
                         cwd=counters.parent, capture_output=True, text=True, check=True)
    found = []
    for document in run.stdout.splitlines():
        report = json.loads(document)
        for file in report["files"]:
            path = (pathlib.Path(report["current_working_directory"]) / file["file"]).resolve()
            if path.is_relative_to(ROOT / "src"):
                name = str(path.relative_to(ROOT))
                found += [(name, line["line_number"], line["count"] > 0) for line in file["lines"]]
    return found


def without_braces(name, reached):
    source = (ROOT / name).read_text().splitlines()
    return {number: hit for number, hit in reached.items() if source[number - 1].strip() != "}"}


def percent(reached):
    return 100.0 * sum(reached.values()) / len(reached)


def main():
    goal = float(sys.argv[2]) if len(sys.argv) > 2 else 99.5
    files = collections.defaultdict(dict)
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for lines in pool.map(lines_of, pathlib.Path(sys.argv[1]).rglob("*.gcda")):
            for name, number, reached in lines:
                files[name][number] = files[name].get(number, False) or reached
    files = {name: without_braces(name, reached) for name, reached in files.items()}
    files = {name: reached for name, reached in files.items() if reached}
    if not files:
        sys.exit("no lines in the report")
    for name, reached in sorted(files.items(), key=lambda item: percent(item[1])):
        print(f"{percent(reached):6.1f} %  {len(reached):5}  {name}")
        missed = [number for number, hit in reached.items() if not hit]
        if missed:
            print(f"         not reached: {ranges(missed)}")
    total = sum(map(len, files.values()))
    whole = 100.0 * sum(sum(reached.values()) for reached in files.values()) / total
    print(f"{whole:6.1f} %  {total:5}  all {len(files)} files (goal {goal:g} %)")
    return 0 if whole >= goal else 1


if __name__ == "__main__":
    sys.exit(main())
