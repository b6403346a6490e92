#!/usr/bin/env python3
"""Runs uxtree and other command-line tools on the same jobs and writes what came out as a page.

    tools/dev/compare_tools.py UXTREE [PAGE]       writes PAGE, or prints it

Every command runs on a small file, whose output is shown, and on a large one of the same kind, on
which it is timed: processor time and memory, the median of some runs in turn with the others.
"""
import difflib
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

BOOKS = 50_000
RUNS = 3
SLOW = 3  # seconds: what takes longer runs once
SHOWN = 14  # lines of an output

HEADER = """<?xml version="1.0"?>
<!-- the shelf -->
<shelf xmlns:dc="http://purl.org/dc/elements/1.1/">
"""


def book(i):
    language = ("en", "fr", "de")[i % 3]
    return (f"  <!-- number {i} -->\n  <book id='b{i}' lang='{language}'>\n"
            f"    <dc:title>Title {i}</dc:title>\n"
            f"    <price>{i % 97}.50</price>\n    <note/>\n  </book>\n")


def shelf(count):
    return HEADER + "".join(book(i) for i in range(count)) + "</shelf>\n"


# (job, what matters about it, [(tool, command)]); FILE is the file, OUT one to write.
JOBS = [
    ("list", "the value of an attribute of every element", [
        ("uxtree", "uxtree query //book/@id FILE"),
        ("xmlstarlet", "xmlstarlet sel -t -v //book/@id -n FILE"),
        ("xmllint", "xmllint --xpath //book/@id FILE"),
        ("xq", "xq -x //book/@id FILE"),
        ("yq", "xq-python -r '.shelf.book[].\"@id\"' FILE"),
    ]),
    ("table", "a table with a column for an attribute", [
        ("uxtree", "uxtree query -t -f csv //book FILE"),
        ("xmlstarlet", "xmlstarlet sel -N dc=http://purl.org/dc/elements/1.1/ -T -t -m //book -v @id "
                       "-o , -v @lang -o , -v dc:title -o , -v price -n FILE"),
        ("yq and jq", "xq-python -r '.shelf.book[] | [.\"@id\", .\"@lang\", .\"dc:title\", .price] | "
                      "@csv' FILE"),
        ("yq and mlr", "xq-python .shelf.book FILE | mlr --ijson --ocsv cat"),
    ]),
    ("structure", "which elements and attributes there are", [
        ("uxtree", "uxtree outline FILE"),
        ("xmlstarlet", "xmlstarlet el -u FILE"),
        ("xmlstarlet, attributes", "xmlstarlet el -a FILE | sort -u"),
        ("yq and jq", "xq-python -c '[paths | map(if type == \"number\" then \"[]\" else . end)] | "
                      "unique' FILE"),
    ]),
    ("namespaces", "elements by a name with a prefix", [
        ("uxtree", "uxtree query //dc:title FILE"),
        ("xmlstarlet", "xmlstarlet sel -N dc=http://purl.org/dc/elements/1.1/ -t -v //dc:title -n "
                       "FILE"),
        ("xmllint", "xmllint --xpath \"//*[name()='dc:title']/text()\" FILE"),
        ("yq", "xq-python -r '.shelf.book[].\"dc:title\"' FILE"),
    ]),
    ("predicate", "elements by a condition", [
        ("uxtree", "uxtree query \"//book[@lang='fr' and price < 3]/@id\" FILE"),
        ("xmlstarlet", "xmlstarlet sel -t -v \"//book[@lang='fr' and price < 3]/@id\" -n FILE"),
        ("xmllint", "xmllint --xpath \"//book[@lang='fr' and price < 3]/@id\" FILE"),
        ("xq", "xq -x \"//book[@lang='fr' and price < 3]/@id\" FILE"),
        ("yq", "xq-python -r '.shelf.book[] | select(.\"@lang\" == \"fr\" and (.price | tonumber) < "
               "3).\"@id\"' FILE"),
    ]),
    ("delete by attribute", "only what goes may change", [
        ("uxtree", "uxtree edit --select \"//book[@lang='fr']\" delete FILE -o OUT"),
        ("xmlstarlet", "xmlstarlet ed -d \"//book[@lang='fr']\" FILE > OUT"),
        ("yq", "xq-python -x 'del(.shelf.book[] | select(.\"@lang\" == \"fr\"))' FILE > OUT"),
    ]),
    ("set attribute", "only the value may change", [
        ("uxtree", "uxtree edit --select \"//book[@id='b1']/@lang\" set it FILE -o OUT"),
        ("xmlstarlet", "xmlstarlet ed -u \"//book[@id='b1']/@lang\" -v it FILE > OUT"),
        ("yq", "xq-python -x '(.shelf.book[] | select(.\"@id\" == \"b1\").\"@lang\") = \"it\"' FILE "
               "> OUT"),
    ]),
    ("pretty print", "comments and values stay", [
        ("uxtree", "uxtree format --indent 4 FILE"),
        ("xmlstarlet", "xmlstarlet fo -s 4 FILE"),
        ("xmllint", "XMLLINT_INDENT='    ' xmllint --format FILE"),
        ("xq", "xq --no-color --indent 4 FILE"),
    ]),
    ("well-formed", "one file, nothing but the answer", [
        ("uxtree", "uxtree check FILE"),
        ("xmlstarlet", "xmlstarlet val -w FILE"),
        ("xmllint", "xmllint --noout FILE"),
    ]),
    ("to JSON", "the whole document", [
        ("uxtree", "uxtree show -f json FILE"),
        ("yq", "xq-python . FILE"),
    ]),
    ("broken file", "where an end tag is wrong", [
        ("uxtree", "uxtree check BROKEN"),
        ("xmlstarlet", "xmlstarlet val -w -e BROKEN"),
        ("xmllint", "xmllint --noout BROKEN"),
        ("xq", "xq --no-color BROKEN"),
        ("yq", "xq-python . BROKEN"),
    ]),
]


# Processes that wait for their input.
WAITING = [("uxtree", "uxtree check -"), ("xmlstarlet", "xmlstarlet val -"), ("xmllint", "xmllint -"),
           ("xq", "xq")]


class Place:
    """A folder with the file of one size."""

    def __init__(self, folder, count):
        self.folder = pathlib.Path(folder) / str(count)
        self.folder.mkdir()
        text = shelf(count)
        (self.folder / "books.xml").write_text(text)
        wrong = book(count - 1)
        cut = len(text) - len("</shelf>\n") - len(wrong)
        (self.folder / "broken.xml").write_text(
            text[:cut] + wrong.replace("</price>", "</prize>") + "</shelf>\n")

    def command(self, command):
        return (command.replace("FILE", "books.xml").replace("BROKEN", "broken.xml")
                .replace("OUT", "out.xml"))


def measured(place, command, program):
    """Seconds of processor time and megabytes of one run, output left aside."""
    environment = {**os.environ, "PATH": f"{program.parent}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
    timed = subprocess.run(["/usr/bin/time", "-q", "-o", "time.txt", "-f", "%U %S %M",
                            "bash", "-c", place.command(command)], cwd=place.folder,
                           env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                           check=False)
    if timed.returncode > 125:
        sys.exit(f"cannot be run: {command}")
    user, system, kilobytes = (place.folder / "time.txt").read_text().split()
    return float(user) + float(system), int(kilobytes) / 1024


def amount(megabytes):
    return f"{megabytes:.1f} MB" if megabytes < 10 else f"{megabytes:.0f} MB"


def waiting(words):
    """The memory of a process that waits for its input, and how much of it no other process shares."""
    with subprocess.Popen(words, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL) as process:
        time.sleep(1)
        lines = pathlib.Path(f"/proc/{process.pid}/smaps_rollup").read_text().splitlines()[1:]
        kilobytes = {line.split(":")[0]: int(line.split()[1]) for line in lines}
        process.communicate(b"<r/>")
    return (f"{amount(kilobytes['Rss'] / 1024)} "
            f"({kilobytes['Private_Dirty'] / 1024:.1f} MB its own)")


def floors(program):
    return ", ".join(f"{tool} {waiting(command.replace('uxtree', str(program), 1).split())}"
                     for tool, command in WAITING)


def answer(place, command, program):
    """What a command writes on the small file, standard error included, and its exit code."""
    environment = {**os.environ, "PATH": f"{program.parent}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
    written = place.folder / "out.xml"
    written.unlink(missing_ok=True)
    done = subprocess.run(["bash", "-c", place.command(command)], cwd=place.folder, env=environment,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    text = done.stdout.decode(errors="replace")
    if written.exists():
        before = (place.folder / "books.xml").read_text().splitlines()
        lines = list(difflib.unified_diff(before, written.read_text().splitlines(), "books.xml",
                                          "out.xml", lineterm="", n=1))
        text += "\n".join(lines) + "\n"
    lines = [line if len(line) <= 110 else line[:107] + "..." for line in text.splitlines()]
    if len(lines) > SHOWN:
        lines = lines[:SHOWN] + [f"... ({len(lines) - SHOWN} more lines)"]
    if done.returncode:
        lines.append(f"(exit code {done.returncode})")
    return "\n".join(lines)


def versions(program):
    texts = []
    for package in ("xmlstarlet", "libxml2-utils", "xq", "yq", "jq", "miller"):
        asked = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], check=False,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        texts.append(f"{package} {asked.stdout or 'unknown'}")
    own = subprocess.run([program, "--version"], stdout=subprocess.PIPE, text=True, check=True)
    return f"{own.stdout.strip()}; {', '.join(texts)}"


def compared(program, folder):
    """For each job: [(tool, command, output, seconds, megabytes)]."""
    small, large = Place(folder, 4), Place(folder, BOOKS)
    for _, _, commands in JOBS:
        rows = []
        runs = {tool: [] for tool, _ in commands}
        for _ in range(RUNS):
            for tool, command in commands:
                if not runs[tool] or runs[tool][0][0] < SLOW:
                    runs[tool].append(measured(large, command, program))
        for tool, command in commands:
            seconds, megabytes = (statistics.median(values) for values in zip(*runs[tool]))
            rows.append((tool, command, answer(small, command, program), seconds, megabytes))
        yield rows


def page(program):
    with tempfile.TemporaryDirectory(prefix="uxtree-compare-") as folder:
        results = list(compared(program, folder))
        size = (pathlib.Path(folder) / str(BOOKS) / "books.xml").stat().st_size / 1e6
    out = [HEAD.format(versions=versions(program), books=f"{BOOKS:,}", size=f"{size:.0f}", runs=RUNS,
                       slow=SLOW, floors=floors(program))]
    out.append("| Job | uxtree | the others |\n|---|---|---|\n")
    for (job, _, _), rows in zip(JOBS, results):
        cells = [f"{tool} {seconds:.2f} s, {amount(megabytes)}"
                 for tool, _, _, seconds, megabytes in rows]
        own = cells[0].removeprefix("uxtree ")
        out.append(f"| [{job}](#{job.replace(' ', '-').lower()}) | {own} | {'; '.join(cells[1:])} |\n")
    small = shelf(4).rstrip("\n")
    out.append(f"\nThe small file:\n\n```\n{small}\n```\n")
    for (job, meaning, _), rows in zip(JOBS, results):
        out.append(f"\n## {job}\n\n{meaning[0].upper()}{meaning[1:]}.\n")
        for tool, command, text, seconds, megabytes in rows:
            shown = (command.replace("FILE", "books.xml").replace("BROKEN", "broken.xml")
                     .replace("OUT", "out.xml"))
            out.append(f"\n**{tool}**: {seconds:.2f} s, {amount(megabytes)}\n\n```\n# {shown}\n{text}\n"
                       "```\n")
    return "".join(out)


HEAD = """# uxtree beside other tools

The same jobs by `uxtree` and by the tools that people use for them: commands, what they write on a
small file (of files that are written, the difference), and processor time and largest memory on one of
{books} elements `book`, {size} MB; the median of {runs} runs, each in turn with the others, but one of
what takes more than {slow} seconds.
`./scripts/compare_tools` writes this page anew, on any Debian system. `xq` is the formatter of the
package of that name; `yq` stands for `xq-python` of the package yq, which runs jq.

Before it has read anything, a process takes: {floors}.
`uxtree` checks, outlines and formats files of any size with little more than it starts with; nearly
all of that is code, in pages that all its processes share.

Versions: {versions}.

"""


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    text = page(pathlib.Path(sys.argv[1]).resolve())
    if len(sys.argv) == 3:
        pathlib.Path(sys.argv[2]).write_text(text)
    else:
        sys.stdout.write(text)


if __name__ == "__main__":
    main()
