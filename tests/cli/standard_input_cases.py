"""- is standard input, whatever file is called so; ./- is that file."""
import json

from analysis_cases import FIT, RANGES, STATS
from edit_select_cases import DIALOG
from n42_cases import SMALL
from xde_cases import TREE

from harness import case

XML = "<r k='1'><a k='2' DataID='3'>t</a><b k='1'/><p>x<b>b</b>y</p></r>"
PAIRS = "<r><a>1</a><b>2</b></r>"
THEME = '<Settings><id val="1">x</id></Settings>'
OLDER = DIALOG.replace("old b", "older b")
OTHERS = {"other.xml": DIALOG, "older.xml": OLDER, "values.csv": "id,value\n2,x\n", "theme.xml": THEME}
BROKEN = "<broken"

# The command with FILE where the file stands, and what the file holds.
ROWS = [
    ("attr FILE get k", XML),
    ("attr FILE set k 2", XML),
    ("changes FILE --against older.xml", DIALOG),
    ("changes other.xml --against FILE", OLDER),
    ("changes FILE --against older.xml --mark", DIALOG),
    ("check FILE", XML),
    ("check FILE", "<r>"),
    ("copy FILE other.xml", DIALOG),
    ("copy other.xml FILE", DIALOG),
    ("edit FILE --select //a delete", XML),
    ("edit FILE -n --select //a delete", XML),
    ("fitter show FILE", FIT),
    ("format FILE", XML),
    ("format -n FILE", XML),
    ("kv from FILE a=1", PAIRS),
    ("kv to FILE", PAIRS),
    ("label list FILE", DIALOG),
    ("label replace FILE old new", DIALOG),
    ("n42 detectors FILE", SMALL),
    ("n42 export FILE -f csv", SMALL),
    ("n42 export FILE -f spe -s 1.1", SMALL),
    ("n42 import FILE", SMALL),
    ("n42 info FILE", SMALL),
    ("n42 list FILE", SMALL),
    ("n42 plot --title T FILE", SMALL),
    ("n42 plot --title T FILE -f html", SMALL),
    ("names FILE", XML),
    ("outline FILE", XML),
    ("outline --lenient FILE", XML),
    ("outline --partial FILE", "<r><a/>"),
    ("query //p FILE", XML),
    ("query --xml //p FILE", XML),
    ("query /r|a FILE", XML),
    ("query -t //a FILE", XML),
    ("ranges show FILE --at InputData", RANGES),
    ("report table FILE --at InputData", RANGES),
    ("run FILE", 'void main() { print("run"); }'),
    ("show FILE", XML),
    ("show -f json FILE", XML),
    ("stats show FILE", STATS),
    ("theme apply FILE other.xml", THEME),
    ("theme apply theme.xml FILE", DIALOG),
    ("theme save FILE", DIALOG),
    ("theme show FILE", THEME),
    ("values export FILE", DIALOG),
    ("values import FILE values.csv", DIALOG),
    ("values import other.xml FILE", "id,value\n2,x\n"),
    ("values list FILE", DIALOG),
    ("view FILE -o -", XML),
    ("xde find FILE D\\|1|Counts", TREE),
    ("xde paths FILE", TREE),
    ("xde prepare FILE", XML),
]

# Their arguments are no inputs.
WITHOUT_FILES = {"completion", "label combine", "list", "man", "repl", "report label",
                 "report retype", "report string"}


def answer(tool, command, file, files, stdin):
    args = [file if word == "FILE" else word for word in command.split()]
    result = tool.run(args, files={**OTHERS, **files}, stdin=stdin)
    for name in files:
        tool.path(name).unlink()
    return result.code, result.out, result.err


def test_StandardInputIsDashAndNothingElse(tool):
    for command, content in ROWS:
        named = answer(tool, command, "stdin", {"stdin": content}, BROKEN)
        piped = answer(tool, command, "-", {"-": BROKEN}, content)
        assert piped == named, f"{command} with -: {piped}\nexpected {named}"


def renamed(text):
    for e, dash in (("./e", "./-"), ("<title>e<", "<title>-<"), ('"name":"e"', '"name":"-"')):
        text = text.replace(e, dash)
    return text


def test_DashInAFolderIsAFile(tool):
    for command, content in ROWS:
        named = answer(tool, command, "./e", {"e": content}, BROKEN)
        dash = answer(tool, command, "./-", {"-": content}, BROKEN)
        expected = (named[0], *(renamed(text) for text in named[1:]))
        assert dash == expected, f"{command} with ./-: {dash}\nexpected {expected}"


def test_EveryCommandIsTried(tool):
    commands = {row["command"] for row in json.loads(tool.run(["list", "-f", "json"]).out)}
    tried = {name for name in commands for command, _ in ROWS if command.startswith(name + " ")}
    assert tried == commands - WITHOUT_FILES, tried ^ (commands - WITHOUT_FILES)


def test_StandardInputIsNotEditedInPlace(tool):
    for command in ("attr - set k 2 -i", "changes - --against older.xml --mark -i",
                    "copy other.xml - -i", "edit - rename x -i", "format - -i", "kv from - a=1 -i",
                    "label replace - old new -i", "theme apply theme.xml - -i",
                    "values import - values.csv -i"):
        result = tool.run(command.split(), files={**OTHERS, "-": DIALOG}, stdin=DIALOG)
        assert result.code == 2 and not result.out, (command, result.code, result.out)
        assert "-i: standard input cannot be edited in place\n" in result.err, (command, result.err)
        assert tool.path("-").read_text() == DIALOG, command


CASES = [
    case("StandardInputIsReadOnce", ["query", "//r", "-", "-"], stdin="<r>1</r>", out="stdin: 1\n",
         code=2, err=["stdin: it is named twice and can be read only once", "save it to a file"]),
    case("AnOlderTreeIsNoOtherStandardInput", ["changes", "-", "--against", "-"], stdin="<r/>",
         code=2, err=["stdin: it is named twice"]),
]
