"""Runs the cases of one topic against the command-line tool.

    python3 tests/cli/harness.py build/dev/tools/uxtree/uxtree show [NAME_PART]

A topic is one file <topic>_cases.py with a list CASES, and functions test_*(tool) where a table row
does not say enough:

    from harness import case

    CASES = [
        case("PrintsTheRoot", ["show", "tree.xml"],
             files={"tree.xml": "<r/>"},          # written into the case's own folder, where it runs
             out="r\n"),                          # the whole standard output; default: nothing
        case("SaysWhereXmlIsBroken", ["show", "-"], stdin="<r>", code=3,
             err=["stdin:1:4: "]),                # parts of standard error; default: it is empty
        case("EditsInPlace", ["edit", "-i", "t.xml"], files={"t.xml": "<r><a/></r>"},
             after={"t.xml": "...", "t.xml.bak": None}),    # files afterwards; None: absent
        case("ListsAsJson", ["list", "-f", "json"], json=[{"command": "list"}]),
    ]

    def test_something(tool):                     # tool.run(args, ...) takes what case() takes
        result = tool.run(["list"])               # result.out, result.err, result.code
        assert "show" in result.out

A case that cannot be tried here raises Skip with the reason. The exit code is 1 when a case failed,
else 77 when one was skipped, else 0. Continuous integration (CI=true) skips nothing: there it fails.
"""
import difflib
import importlib
import json as json_module
import os
import pathlib
import resource
import subprocess
import sys
import tempfile
import traceback

ANY = object()  # out=ANY, err=ANY: whatever
SKIPPED = 77  # the exit code that CMakeLists.txt tells ctest about


class Skip(Exception):
    """What a case raises that cannot be tried here."""


class Result:
    def __init__(self, code, out, err, folder):
        self.code, self.out, self.err, self.folder = code, out, err, folder


class Tool:
    """The tool, run in a folder of its own."""

    def __init__(self, program, folder):
        self.program, self.folder = program, pathlib.Path(folder)

    def command(self):
        return [self.program]

    def path(self, name):
        return self.folder / name

    def write(self, name, content):
        path = self.path(name)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def environment(self, changes):
        kept = {k: v for k, v in os.environ.items() if k not in ("NO_COLOR", "CLICOLOR_FORCE")}
        kept.update({"LC_ALL": "C", "TERM": "xterm", "TMPDIR": str(self.folder)})
        kept.update(changes or {})
        return kept

    def run(self, args, stdin="", files=None, env=None, stdout_to=None, timeout=120,
            largest_file=None):
        for name, content in (files or {}).items():
            self.write(name, content)
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (largest_file, largest_file))

        target = open(stdout_to, "wb") if stdout_to else subprocess.PIPE
        try:
            done = subprocess.run(
                [*self.command(), *args], cwd=self.folder, env=self.environment(env),
                input=stdin if isinstance(stdin, bytes) else stdin.encode(),
                stdout=target, stderr=subprocess.PIPE, timeout=timeout,
                preexec_fn=limit if largest_file else None)
        finally:
            if stdout_to:
                target.close()
        return Result(done.returncode, (done.stdout or b"").decode("utf-8", "surrogateescape"),
                      done.stderr.decode("utf-8", "surrogateescape"), self.folder)


def difference(what, expected, actual):
    lines = difflib.unified_diff(expected.splitlines(), actual.splitlines(),
                                 "expected " + what, "actual " + what, lineterm="")
    return "\n".join(lines) or f"{what} differs in line ends: {expected!r} / {actual!r}"


def case(name, args, out=None, err=(), code=0, json=None, contains=(), after=None, **how):
    """One row: run the tool, compare everything that it did."""

    def check(tool):
        result = tool.run(args, **how)
        problems = []
        if result.code != code:
            problems.append(f"exit code {result.code}, expected {code}")
        if json is not None:
            if json_module.loads(result.out) != json:
                problems.append("JSON differs:\n" + result.out)
        elif out is not ANY and not contains and result.out != (out or ""):
            problems.append(difference("output", out or "", result.out))
        problems += [f"output lacks {part!r}:\n{result.out}" for part in contains
                     if part not in result.out]
        if err is not ANY and not err and result.err:
            problems.append("unexpected on standard error:\n" + result.err)
        if err is not ANY:
            problems += [f"standard error lacks {part!r}:\n{result.err}" for part in err
                         if part not in result.err]
        for file, content in (after or {}).items():
            path = tool.path(file)
            actual = path.read_text() if path.exists() else None
            if actual != content:
                problems.append(f"{file} afterwards: {actual!r}, expected {content!r}")
        if result.err and problems and err is not ANY:
            problems.append("standard error was:\n" + result.err)
        assert not problems, "\n".join(problems)

    check.__name__ = name
    return check


def main():
    program, topic = os.path.abspath(sys.argv[1]), sys.argv[2]
    wanted = sys.argv[3] if len(sys.argv) > 3 else ""
    if not os.access(program, os.X_OK):
        sys.exit(f"no such program: {program}")
    module = importlib.import_module(topic + "_cases")
    checks = list(getattr(module, "CASES", []))
    checks += [f for n, f in sorted(vars(module).items()) if n.startswith("test_") and callable(f)]
    checks = [check for check in checks if wanted in check.__name__]
    names = [check.__name__ for check in checks]
    twice = {name for name in names if names.count(name) > 1}
    if twice or not checks:
        sys.exit(f"no cases, or names used twice: {sorted(twice)}")
    failed = skipped = 0
    for check in checks:
        with tempfile.TemporaryDirectory(prefix="uxtree-case-") as folder:
            try:
                check(Tool(program, folder))
            except Skip as reason:
                if os.environ.get("CI") == "true":
                    failed += 1
                else:
                    skipped += 1
                print(f"SKIPPED {topic}: {check.__name__}: {reason}")
            except Exception as error:  # a failing case does not keep the others from running
                failed += 1
                told = str(error) if isinstance(error, AssertionError) and str(error) else \
                    traceback.format_exc()
                print(f"FAILED {topic}: {check.__name__}\n{told}\n")
    print(f"{len(checks) - failed - skipped} of {len(checks)} cases passed, {skipped} skipped")
    sys.exit(1 if failed else SKIPPED if skipped else 0)


if __name__ == "__main__":
    sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
    sys.modules["harness"] = sys.modules["__main__"]
    main()
