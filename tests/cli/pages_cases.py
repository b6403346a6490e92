"""The commands of README.md and of the pages in docs/ do what the pages show.

A fenced block whose lines begin with "$ " is a session: what is typed, then what it answers on
standard output and standard error, and "(exit code N)" when that is not 0. The sessions of a page
run one after the other in a folder with copies of the files in examples/.

    python3 tests/cli/pages_cases.py TOOL PAGE...      writes the answers of this build into pages

so that a change of the tool is reviewed as a difference of the pages that people read.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGES = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md")),
         ROOT / "examples" / "scripts" / "README.md"]
# Pages that consist of sessions: a page that loses its fences must not pass unseen.
EXPECTED = {"README.md": 6, "first_hour.md": 12, "concepts.md": 4, "themes.md": 6, "scripting.md": 10,
            "editing.md": 8}


SESSION = re.compile(r"^```\w*\n(\$ .*?)^```$", re.DOTALL | re.MULTILINE)


def copy_examples(folder):
    for pattern in ("*.xml", "*.n42", "scripts/*.as"):
        for example in sorted((ROOT / "examples").glob(pattern)):
            shutil.copy(example, folder)


def commands(session):
    """(command, what it answers) of one block."""
    out = []
    for line in session.splitlines(keepends=True):
        if line.startswith("$ "):
            out.append([line[2:].rstrip("\n"), ""])
        else:
            out[-1][1] += line
    return out


def answer_of(tool, command):
    program = os.path.dirname(tool.program)
    done = subprocess.run(["sh", "-c", command], cwd=tool.folder, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=120, env=tool.environment(
                              {"PATH": f"{program}:{os.environ['PATH']}", "TERM": "dumb"}))
    told = done.stdout.decode().replace("\r\n", "\n")
    if told and not told.endswith("\n"):
        told += "\n"
    return told + (f"(exit code {done.returncode})\n" if done.returncode else "")


def check_page(page):
    def check(tool):
        copy_examples(tool.folder)
        tried = [pair for block in SESSION.findall(page.read_text()) for pair in commands(block)]
        assert len(tried) >= EXPECTED.get(page.name, 1), f"{page.name}: {len(tried)} commands"
        for command, answer in tried:
            told = answer_of(tool, command)
            assert told == answer, f"{page.name}: $ {command}\n{told}"
    check.__name__ = "PageDoesWhatItShows_" + "_".join(page.relative_to(ROOT).with_suffix("").parts)
    return check


def write_answers(tool, page):
    def answered(match):
        lines = [f"$ {command}\n{answer_of(tool, command)}"
                 for command, _ in commands(match.group(1))]
        return match.group(0).replace(match.group(1), "".join(lines))
    page.write_text(SESSION.sub(answered, page.read_text()))


CASES = [check_page(page) for page in PAGES if page.name in EXPECTED or SESSION.search(page.read_text())]


def test_EveryPageOfSessionsIsThere(tool):
    assert set(EXPECTED) <= {page.name for page in PAGES}


if __name__ == "__main__":
    from harness import Tool
    for name in sys.argv[2:]:
        with tempfile.TemporaryDirectory() as scratch:
            copy_examples(scratch)
            write_answers(Tool(os.path.abspath(sys.argv[1]), scratch), pathlib.Path(name))
