#!/usr/bin/env python3
"""Prints the line coverage of a gcovr report, the worst file first.

Usage: tools/dev/print_coverage.py REPORT.json [GOAL]

Files below GOAL percent (97) come with the lines that were not reached. The result is 1 when all
files together are below it.
"""

import json
import pathlib
import sys


def ranges(numbers):
    """[1, 2, 3, 7] -> "1-3, 7"."""
    parts = []
    for number in sorted(numbers):
        if parts and parts[-1][1] == number - 1:
            parts[-1][1] = number
        else:
            parts.append([number, number])
    return ", ".join(str(a) if a == b else f"{a}-{b}" for a, b in parts)


def lines_of(file):
    """Line -> was it reached, by any of the instances that templates and inlining make of it?"""
    reached = {}
    for line in file["lines"]:
        if not line.get("gcovr/noncode") and not line.get("gcovr/excluded"):
            number = line["line_number"]
            reached[number] = reached.get(number, False) or line["count"] > 0
    return reached


def percent(reached):
    return 100.0 * sum(reached.values()) / len(reached)


def main():
    report = json.loads(pathlib.Path(sys.argv[1]).read_text())
    goal = float(sys.argv[2]) if len(sys.argv) > 2 else 97.0
    files = {file["file"]: lines_of(file) for file in report["files"]}
    files = {name: reached for name, reached in files.items() if reached}
    if not files:
        sys.exit("no lines in the report")
    for name, reached in sorted(files.items(), key=lambda item: percent(item[1])):
        print(f"{percent(reached):6.1f} %  {len(reached):5}  {name}")
        missed = [number for number, hit in reached.items() if not hit]
        if percent(reached) < goal:
            print(f"         not reached: {ranges(missed)}")
    total = sum(map(len, files.values()))
    whole = 100.0 * sum(sum(reached.values()) for reached in files.values()) / total
    print(f"{whole:6.1f} %  {total:5}  all {len(files)} files (goal {goal:g} %)")
    return 0 if whole >= goal else 1


if __name__ == "__main__":
    sys.exit(main())
