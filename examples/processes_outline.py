#!/usr/bin/env python3
"""The outline of many files, made by several processes of this machine.

Usage: processes_outline.py PROCESSES FILE...
"""

import sys

import uxtree


def main():
    outline, problems = uxtree.many.outline(sys.argv[2:], processes=int(sys.argv[1]),
                                            errors="collect")
    print(outline)
    for problem in problems:
        print(problem, file=sys.stderr)
    return 3 if problems else 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    sys.exit(main())
