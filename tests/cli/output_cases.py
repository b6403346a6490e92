"""Shapes of JSON and CSV: the version that a program may ask for, and what docs/output.md promises."""
import json
import pathlib
import re

from harness import case

PAGE = pathlib.Path(__file__).parents[2] / "docs/output.md"
FILES = {
    "t.xml": "<r><a DataID='1' Label='A' k='x'>5</a><b DataID='2' Label='B'>6</b></r>",
    "u.xml": "<r><a DataID='1' Label='A' k='x'>7</a><b DataID='2' Label='B'>6</b></r>",
    "p.xml": "<s k='1'><a/></s>",
    "q.xml": "<s k='2'><a/></s>",
}
# The first column of the page, and a call that yields such entries.
CALLS = {
    "show": ["show", "t.xml"],
    "outline": ["outline", "t.xml"],
    "query PATH": ["query", "//@k", "t.xml"],
    "query -t PATH": ["query", "-t", "//a", "t.xml"],
    "query --schema PATH": ["query", "--schema", "//a", "t.xml"],
    "check": ["check", "t.xml"],
    "values list": ["values", "list", "t.xml"],
    "label list": ["label", "list", "t.xml"],
    "list": ["list"],
}

CASES = [
    case("AVersionIsAskedFor", ["label", "list", "-f", "json@1", "t.xml", "--select", "//b"],
         files=FILES, json=[{"node": "r.b", "label": "B"}]),
    case("AVersionOfCsvToo", ["label", "list", "-f", "csv@1", "t.xml", "--select", "//b"],
         files=FILES, out="node,label\nr.b,B\n"),
    case("AnotherVersionIsRefused", ["list", "-f", "json@2"], code=2,
         err=["json@2 is not known: this version writes json@1"]),
    case("AnEmptyVersionIsNone", ["list", "-f", "csv@"], code=2,
         err=["csv@ is not known: this version writes csv@1"]),
    case("TextHasNoVersion", ["list", "-f", "text@1"], code=2, err=["text@1"]),
]


def promised(row):
    """The keys of the first shape that the page tells for a command."""
    line = next(line for line in PAGE.read_text().splitlines() if line.startswith(f"| `{row}`"))
    shape = re.search(r"\{(.*?)\}(?!\])", line)
    keys = re.findall(r'"(\w+)"', shape[1]) if shape else ["name", "attributes", "children", "file"]
    return sorted(set(keys))


def test_entries_have_the_keys_of_the_page(tool):
    for name, content in FILES.items():
        tool.write(name, content)
    for row, arguments in CALLS.items():
        result = tool.run([*arguments, "-f", "json@1"])
        assert result.code == 0, (row, result.err)
        for entry in json.loads(result.out):
            assert sorted(entry) == promised(row), (row, sorted(entry), promised(row))


def test_changes_have_the_keys_of_the_page(tool):
    line = next(line for line in PAGE.read_text().splitlines() if line.startswith("| `changes`"))
    by_identifier, by_place = (sorted(re.findall(r'"(\w+)"', shape))
                               for shape in re.findall(r"\{(.*?)\}", line))
    for old, new, keys in (("t.xml", "u.xml", by_identifier), ("p.xml", "q.xml", by_place)):
        result = tool.run(["changes", new, "--against", old, "-f", "json@1"], files=FILES)
        entries = json.loads(result.out)
        assert entries and all(sorted(entry) == keys for entry in entries), (keys, entries)
