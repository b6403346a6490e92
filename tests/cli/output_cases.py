"""Shapes of JSON and CSV: the version that a program may ask for, and what docs/output.md promises."""
import json
import pathlib
import re

from harness import case

PAGE = pathlib.Path(__file__).parents[2] / "docs/output.md"
FILES = {
    "t.xml": "<r><a DataID='1' Label='A' k='x' NAME='n'>5</a><b DataID='2' Label='B'>6</b></r>",
    "u.xml": "<r><a DataID='1' Label='A' k='x'>7</a><b DataID='2' Label='B'>6</b></r>",
    "p.xml": "<s k='1'><a/></s>",
    "q.xml": "<s k='2'><a/></s>",
    "theme.xml": "<Settings>Settings<node1 Label='A'>5</node1></Settings>",
    "ranges.xml": "<r><X>1</X></r>",
    "fit.xml": "<W WeightMethod='11' Weight_A='0.1'/>",
    "s.n42": (PAGE.parents[1] / "examples/spectrum.n42").read_bytes(),
}
# A call for each row of the page, which yields such entries; of two for a row the second one tells
# the second shape.
CALLS = {
    "show": [["show", "t.xml"]],
    "outline": [["outline", "t.xml"]],
    "query PATH": [["query", "//@k", "t.xml"]],
    "query -t PATH": [["query", "-t", "//a", "t.xml"]],
    "query --schema PATH": [["query", "--schema", "//a", "t.xml"]],
    "check": [["check", "t.xml"]],
    "changes": [["changes", "u.xml", "--against", "t.xml"],
                ["changes", "q.xml", "--against", "p.xml"]],
    "values list": [["values", "list", "t.xml"]],
    "values export": [["values", "export", "t.xml"]],
    "theme show": [["theme", "show", "theme.xml"]],
    "label list": [["label", "list", "t.xml"]],
    "attr get NAME": [["attr", "t.xml", "get", "NAME"]],
    "ranges show": [["ranges", "show", "ranges.xml"]],
    "fitter show": [["fitter", "show", "fit.xml"]],
    "stats show": [["stats", "show", "ranges.xml"]],
    "report table": [["report", "table", "ranges.xml"]],
    "n42 info": [["n42", "info", "s.n42"]],
    "n42 list": [["n42", "list", "s.n42"]],
    "n42 export": [["n42", "export", "s.n42"]],
    "list": [["list"]],
}
ELEMENT = ["name", "attributes", "children", "file"]
# Without a table of these columns.
NO_COLUMNS = {"show", "outline", "query PATH", "query -t PATH", "n42 export"}

CASES = [
    case("AVersionIsAskedFor", ["label", "list", "-f", "json@1", "t.xml", "--select", "//b"],
         files=FILES, json=[{"node": "r.b", "label": "B"}]),
    case("AVersionOfCsvToo", ["label", "list", "-f", "csv@1", "t.xml", "--select", "//b"],
         files=FILES, out="node,label\nr.b,B\n"),
    case("AnotherVersionIsRefused", ["list", "-f", "json@2"], code=2,
         err=["json@2 is not known: this version writes json@1"]),
    case("AFormatThatIsNotWrittenHasNoVersion", ["n42", "plot", "-f", "json@2", "-"], code=2,
         err=["json@2 not in {auto,svg,html}"]),
    case("AnEmptyVersionIsNone", ["list", "-f", "csv@"], code=2,
         err=["csv@ is not known: this version writes csv@1"]),
    case("TextHasNoVersion", ["list", "-f", "text@1"], code=2, err=["text@1"]),
]


def rows():
    """The rows of the page by what stands in their first column, several commands apart."""
    found = {}
    for line in PAGE.read_text().splitlines():
        if re.match(r"\| `", line):
            names, shape = line.strip("| ").split(" | ", 1)
            found.update((name, shape) for name in re.findall(r"`(.*?)`", names))
    return found


def shapes(row):
    """The keys of each shape that a row tells, in their order."""
    told = re.findall(r"`\{(.*?)\}`", row)
    plain = [re.sub(r"\[.*?\]|: \{.*", "", keys) for keys in told]
    return [["".join(key) for key in re.findall(r'"(.*?)"|(NAME)', keys)] for keys in plain]


def commands_with(tool, form):
    """The commands that write a form, with those below commands."""
    words = [row["command"].split() for row in json.loads(tool.run(["list", "-f", "json"]).out)]
    for command in list(words):
        below = re.search(r"^Subcommands:\n((?:  .*\n)*)", tool.run([*command, "--help"]).out, re.M)
        if below:
            words += [[*command, name] for name in re.findall(r"^  (\w\S*)", below[1], re.M)]
    known = {" ".join(command): re.search(r"not in \{(.*?)\}", tool.run([*command, "-f", "?"]).err)
             for command in words}
    return {command for command, forms in known.items() if forms and form in forms[1].split(",")}


def test_every_command_that_writes_for_programs_has_its_row(tool):
    page = rows()
    assert set(page) == set(CALLS), set(page) ^ set(CALLS)
    told = {re.sub(r" (-t|--schema|PATH|NAME)\b", "", row) for row in page}
    json_writers = commands_with(tool, "json")
    assert len(json_writers) > 15
    assert told == json_writers, told ^ json_writers
    assert commands_with(tool, "csv") <= json_writers


def test_entries_have_the_keys_of_the_page_and_columns_their_order(tool):
    for name, content in FILES.items():
        tool.write(name, content)
    for row, shape in rows().items():
        told = shapes(shape) or [ELEMENT]
        for arguments, keys in zip(CALLS[row], told, strict=True):
            result = tool.run([*arguments, "-f", "json@1"])
            entries = json.loads(result.out)
            assert result.code == 0 and entries, (row, result.err)
            for entry in entries:
                assert sorted(entry) == sorted(keys), (row, sorted(entry), keys)
            if row not in NO_COLUMNS:
                heading = tool.run([*arguments, "-f", "csv@1"]).out.splitlines()[0]
                assert heading == ",".join(keys), (row, heading, keys)
