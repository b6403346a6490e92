"""The compiler itself finds nothing in a room's include root that docs/layers.txt does not allow.

Usage: include_roots_test.py SOURCE_FOLDER ROOTS_FOLDER CXX_COMPILER
"""

import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(sys.argv[1]) / "tools/dev"))
sys.dont_write_bytecode = True
from check_layers import File, hidden_from, read_rooms  # noqa: E402


def headers_of(source):
    for base in ("src", "include"):
        for path in sorted((source / base).rglob("*.h")):
            yield path.relative_to(source / base).as_posix()


def found(compiler, root, headers):
    """The headers that the compiler finds in an include root, in either form of an include."""
    lines = (f'#if __has_include("{name}") || __has_include(<{name}>)\n"{name}"\n#endif\n'
             for name in headers)
    run = subprocess.run([compiler, "-E", "-P", "-x", "c++", "-", "-I", root], input="".join(lines),
                         capture_output=True, text=True, check=True)
    return {line.strip('"') for line in run.stdout.splitlines() if line}


def main():
    source, roots, compiler = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    rooms = read_rooms(source / "docs/layers.txt")
    headers = list(headers_of(source))
    assert len(headers) > 100, "no headers to look for"
    wrong = 0
    for room in rooms:
        own = File(f"{room}/any.cpp", rooms)
        allowed = {name for name in headers if not hidden_from(own, File(name, rooms), rooms)}
        for name in sorted(found(compiler, roots / room, headers) ^ allowed):
            wrong += 1
            print(f"{room}: {name}: {'is not found' if name in allowed else 'is within reach'}")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
